// Hint arrays read by arity: what each tag consumes, nesting, and lists that are malformed.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include "lwhost/HintList.h"

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using lwhost::HintParse;
using lwhost::HintWord;
using lwhost::ParseHints;
using Strings = std::vector<std::string>;

std::string Tag(LWXPanelHint h) { return lwhost::HintTagName(HintWord(h)); }

Strings Tags(const HintParse& p) {
  Strings tags;
  for (const lwhost::Hint& h : p.hints) tags.push_back(lwhost::HintTagName(h.tag));
  return tags;
}

// Every tag of the SDK through its macro, then tags unknown to the host (three zero words; a word
// and a list; an empty list alone; no words), then a label: had any tag taken a word too few or
// too many, what follows would be misread.
const LWXPanelHint kAllTags[] = {
    XPTAG_NEST, XpH(0x9000), XpLABEL(0x9000, "a"), XpCLASS(0x9000, "float"), XpADD(0x9000, "float", 0),
    XpDELETE(0), XpCHGNOTIFY(0), XpFOCUS(0), XpDESTROYNOTIFY(0), XpRESTORE(0x9000), XpVALUE(0x9000, 0),
    XpLINK(0x9000, 0x9001), XpIMMUPD(0x9000, 0x9001), XpTRACK(0x9000, 0), XpORIENT(0x9000, 0), XpMIN(0x9000, 0),
    XpMAX(0x9000, 0), XpSTEP(0x9000, 0), XpRANGE(0x9000, 0, 0, 0), XpSENS(0x9000, 0), XpSTRLIST(0x9000, 0),
    XpHARDMINMAX(0x9000, 0, 0), XpCLRMINMAX(0x9000, 0, 0), XpBUTNOTIFY(0x9000, 0), XpPOPCMDFUNC(0x9000, 0),
    XpPOPFUNCS(0x9000, 0, 0), XpINTXFORM(0x9000, 0, 0), XpDRAWCBFUNC(0x9000, 0), XpZOOMCBFUNC(0x9000, 0, 0),
    XpTEXTXFORMFUNC(0x9000, 0), XpVECLABEL(0x9000, 0), XpCTRLFRONT(0), XpCTRLCFG(0x9000, 0),
    XpXREQCFG(0x9000, 0, 0, 0), XpALIAS_(0x9100), XpH(0x9000), XpH(0x9001), XpEND, XpUNALIAS_(0x9100), XpEND,
    XpENABLE(0x9000, 0x9001), XpGROUP_(0x9100), XpH(0x9000), XpEND, XpORDER_(0), XpH(0x9001), XpEND,
    XpSTACK_(0x9100, 0x9000), XpH(0x9001), XpEND, XpTABS_(0x9100), XpH(0x9101), XpEND, XpLEFT_(), XpH(0x9000),
    XpEND, XpNARROW(0x9100), XpDIVADD(0x9000), XpDIVREM(0x9000), XpBORDER(0), XpDLOGTYPE(0),
    XpH(0x3D777703), XpH(0), XpH(0), XpH(0), XpH(0x3D777881), XpH(0), XpH(7), XpH(8), XpEND, XpH(0x3D777980), XpEND,
    XpH(0x3D777A00), XpLABEL(0, "last"), XpEND};

TEST(HintList, EveryTagConsumesItsArity) {
  const HintParse p = ParseHints(kAllTags);
  EXPECT_EQ(p.problems, Strings{});
  ASSERT_EQ(p.hints.size(), 51u);
  // A misread argument would show as a tag this host has no name for.
  const Strings tags = Tags(p);
  for (std::size_t i = 0; i < tags.size(); ++i)
    EXPECT_EQ(tags[i].rfind(i >= 46 && i < 50 ? "tag 0x3D777" : "XPTAG_", 0), 0u) << i << ": " << tags[i];
  EXPECT_EQ(std::string(static_cast<const char*>(p.hints.back().args[1])), "last");
  EXPECT_EQ(p.hints[47].list, (std::vector<LWXPanelHint>{XpH(7), XpH(8)}));
  // Lists keep their words in order, an empty one is just its 0, and fixed zeros before a list
  // do not end it.
  EXPECT_EQ(p.hints[33].list, (std::vector<LWXPanelHint>{XpH(0x9000), XpH(0x9001)})) << Tag(XPTAG_ALIAS);
  EXPECT_TRUE(p.hints[34].list.empty()) << Tag(XPTAG_UNALIAS);
  EXPECT_EQ(p.hints[35].list, (std::vector<LWXPanelHint>{XpH(0x9001)})) << Tag(XPTAG_ENABLE);

  // Tags the host acts on that no panel here uses; the others show in the panels' behaviour.
  EXPECT_EQ(lwhost::hint_tag::kPopCommand, HintWord(XPTAG_POPCMDFUNC));
  EXPECT_EQ(lwhost::hint_tag::kDividerRemove, HintWord(XPTAG_DIVREM));
}

extern LWXPanelHint g_cycleB[];
LWXPanelHint g_cycleA[] = {XpMIN(0x9000, 1), XpCALL(g_cycleB), XpEND};
LWXPanelHint g_cycleB[] = {XpMAX(0x9000, 2), XpCALL(g_cycleA), XpSTEP(0x9000, 3), XpEND};

TEST(HintList, CallsSpliceNestedListsInPlaceButNotForever) {
  static const LWXPanelHint deepest[] = {XpMIN(0, 1), XpEND};
  static const LWXPanelHint inner[] = {XpLABEL(0x9001, "inner"), XpCALL(deepest), XpEND};
  static const LWXPanelHint other[] = {XpCTRLCFG(0, 2), XpEND};
  const LWXPanelHint outer[] = {XpLABEL(0x9000, "first"), XpCALL(inner), XpCALL(0), XpSUBCALL(0x9005, other),
                                XpVALUE(0x9002, 0x9003),  XpCALL(inner), XpEND};
  HintParse p = ParseHints(outer, 0x9009);
  EXPECT_EQ(p.problems, Strings{});
  EXPECT_EQ(Tags(p), (Strings{Tag(XPTAG_LABEL), Tag(XPTAG_LABEL), Tag(XPTAG_MIN), Tag(XPTAG_CTRLCFG),
                              Tag(XPTAG_VALUE), Tag(XPTAG_LABEL), Tag(XPTAG_MIN)}))
      << "calling the same list twice in a row is no cycle";
  // Lists called with id 0 apply where the caller applies; XpSUBCALL names its own id.
  EXPECT_EQ(p.hints[2].target(0), 0x9009u) << "id 0 stands for the scope";
  EXPECT_EQ(p.hints[3].target(0), 0x9005u);
  EXPECT_EQ(p.hints[4].target(0), 0x9002u) << "a named id stays itself";

  // A calls B calls A: each list is read once; the call closing the cycle is refused and parsing
  // goes on.
  p = ParseHints(g_cycleA);
  EXPECT_EQ(Tags(p), (Strings{Tag(XPTAG_MIN), Tag(XPTAG_MAX), Tag(XPTAG_STEP)}));
  EXPECT_THAT(p.problems, ElementsAre(HasSubstr("cycle")));

  // A chain deeper than the limit: the lists within it are read, the one beyond is not.
  std::vector<std::vector<LWXPanelHint>> chain(lwhost::kMaxHintDepth + 5, {XpMIN(0x9000, 1), XpCALL(0), XpEND});
  for (std::size_t i = 0; i + 1 < chain.size(); ++i) chain[i][5] = chain[i + 1].data();
  p = ParseHints(chain[0].data());
  EXPECT_EQ(p.hints.size(), static_cast<std::size_t>(lwhost::kMaxHintDepth + 1));
  EXPECT_THAT(p.problems, ElementsAre(HasSubstr("deeper")));
}

void NotifyStub(void*) {}

TEST(HintList, MalformedListsAreCaughtNotOverrun) {
  // A destroy notification written as if its mandatory 0 were the end marker. Each vector holds
  // exactly its words, so reading one more is caught by the address sanitizer. Without a known
  // length the same mistake runs on into whatever follows; a pointer cannot be a tag (64-bit).
  const auto stub = reinterpret_cast<LWXPanelHint>(&NotifyStub);
  const std::tuple<std::vector<LWXPanelHint>, bool, Strings, const char*> cases[] = {
      {{XpLABEL(0, "t"), XPTAG_DESTROYNOTIFY, stub, XPTAG_NULL}, true, {Tag(XPTAG_LABEL), Tag(XPTAG_DESTROYNOTIFY)},
       "without XPTAG_END"},
      {{XpLABEL(0, "t"), XPTAG_DESTROYNOTIFY, stub}, true, {Tag(XPTAG_LABEL)}, "XPTAG_DESTROYNOTIFY: 1 of 2"},
      {{XpDIVADD_(0x9000), XpH(0x9001)}, true, {}, "id list of XPTAG_DIVADD"},
      {{XPTAG_DESTROYNOTIFY, stub, XPTAG_NULL, stub, XpLABEL(0, "never"), XpEND}, false,
       {Tag(XPTAG_DESTROYNOTIFY)}, "cannot be a hint tag"},
  };
  for (const auto& [words, bounded, tags, problem] : cases) {
    if (!bounded && sizeof(void*) != 8) continue;
    const HintParse p = bounded ? lwhost::ParseBoundedHints(words.data(), words.size()) : ParseHints(words.data());
    EXPECT_EQ(Tags(p), tags);
    EXPECT_THAT(p.problems, ElementsAre(HasSubstr(problem)));
  }

  // A list with no end at all stops at the word limit instead of reading forever.
  std::vector<LWXPanelHint> endless(lwhost::kMaxHintWords + 10, XPTAG_NEST);
  const HintParse p = lwhost::ParseBoundedHints(endless.data(), endless.size());
  EXPECT_LE(p.hints.size(), lwhost::kMaxHintWords / 2);
  EXPECT_THAT(p.problems, ElementsAre(HasSubstr("longer than")));
}

}  // namespace
