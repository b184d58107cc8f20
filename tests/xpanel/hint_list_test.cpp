// Hint arrays read by arity: what each tag consumes, nesting, and lists that are malformed.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "lwhost/HintList.h"

namespace {

using lwhost::HintParse;
using lwhost::HintWord;
using lwhost::ParseHints;

std::string Tag(LWXPanelHint h) { return lwhost::HintTagName(HintWord(h)); }

// Tag names read better than numbers when a comparison fails.
std::vector<std::string> Tags(const HintParse& p) {
  std::vector<std::string> tags;
  for (const lwhost::Hint& h : p.hints) tags.push_back(lwhost::HintTagName(h.tag));
  return tags;
}

std::string Problems(const HintParse& p) {
  std::string all;
  for (const std::string& s : p.problems) all += s + "\n";
  return all;
}

// Every tag of the SDK, with the words its macro takes (the arity must agree with the low byte).
const LWXPanelHint kAllTags[] = {
    XPTAG_NEST,
    XpH(0x9000),
    XpLABEL(0x9000, "a"),
    XpCLASS(0x9000, "float"),
    XpADD(0x9000, "float", 0),
    XpDELETE(0),
    XpCHGNOTIFY(0),
    XpFOCUS(0),
    XpDESTROYNOTIFY(0),
    XpRESTORE(0x9000),
    XpVALUE(0x9000, 0),
    XpLINK(0x9000, 0x9001),
    XpIMMUPD(0x9000, 0x9001),
    XpTRACK(0x9000, 0),
    XpORIENT(0x9000, 0),
    XpMIN(0x9000, 0),
    XpMAX(0x9000, 0),
    XpSTEP(0x9000, 0),
    XpRANGE(0x9000, 0, 0, 0),
    XpSENS(0x9000, 0),
    XpSTRLIST(0x9000, 0),
    XpHARDMINMAX(0x9000, 0, 0),
    XpCLRMINMAX(0x9000, 0, 0),
    XpBUTNOTIFY(0x9000, 0),
    XpPOPCMDFUNC(0x9000, 0),
    XpPOPFUNCS(0x9000, 0, 0),
    XpINTXFORM(0x9000, 0, 0),
    XpDRAWCBFUNC(0x9000, 0),
    XpZOOMCBFUNC(0x9000, 0, 0),
    XpTEXTXFORMFUNC(0x9000, 0),
    XpVECLABEL(0x9000, 0),
    XpCTRLFRONT(0),
    XpCTRLCFG(0x9000, 0x80000601),
    XpXREQCFG(0x9000, 0, 0, 0),
    XpALIAS_(0x9100),
    XpH(0x9000),
    XpH(0x9001),
    XpEND,
    XpUNALIAS_(0x9100),
    XpEND,
    XpENABLE(0x9000, 0x9001),
    XpGROUP_(0x9100),
    XpH(0x9000),
    XpEND,
    XpORDER_(0),
    XpH(0x9001),
    XpH(0x9000),
    XpEND,
    XpSTACK_(0x9100, 0x9000),
    XpH(0x9001),
    XpEND,
    XpTABS_(0x9100),
    XpH(0x9101),
    XpEND,
    XpLEFT_(),
    XpH(0x9000),
    XpEND,
    XpNARROW(0x9100),
    XpDIVADD(0x9000),
    XpDIVREM(0x9000),
    XpBORDER(0),
    XpDLOGTYPE(0),
    XpLABEL(0, "last"),
    XpEND,
};

TEST(HintList, EveryTagConsumesItsArity) {
  const HintParse p = ParseHints(kAllTags);
  EXPECT_TRUE(p.problems.empty()) << Problems(p);
  // Had any tag taken one word too few or too many, the following tags would be misread.
  // clang-format off
  const std::vector<std::string> expected = {
      Tag(XPTAG_NEST),    Tag(XPTAG_LABEL),     Tag(XPTAG_CLASS),      Tag(XPTAG_ADD),         Tag(XPTAG_DELETE),
      Tag(XPTAG_CHGNOTIFY), Tag(XPTAG_FOCUS),   Tag(XPTAG_DESTROYNOTIFY), Tag(XPTAG_AUTORESTORE), Tag(XPTAG_VALUE),
      Tag(XPTAG_LINK),    Tag(XPTAG_IMMUPD),    Tag(XPTAG_TRACK),      Tag(XPTAG_ORIENT),      Tag(XPTAG_MIN),
      Tag(XPTAG_MAX),     Tag(XPTAG_STEP),      Tag(XPTAG_RANGE),      Tag(XPTAG_SENS),        Tag(XPTAG_STRLIST),
      Tag(XPTAG_HARDMINMAX), Tag(XPTAG_CLRMINMAX), Tag(XPTAG_BUTNOTIFY), Tag(XPTAG_POPCMDFUNC), Tag(XPTAG_POPFUNCS),
      Tag(XPTAG_INTXFORM), Tag(XPTAG_DRAWCBFUNC), Tag(XPTAG_ZOOMCBFUNC), Tag(XPTAG_TEXTXFORMFUNC), Tag(XPTAG_VECLABEL),
      Tag(XPTAG_CTRLFRONT), Tag(XPTAG_CTRLCFG), Tag(XPTAG_XREQCFG),    Tag(XPTAG_ALIAS),       Tag(XPTAG_UNALIAS),
      Tag(XPTAG_ENABLE),  Tag(XPTAG_GROUP),     Tag(XPTAG_ORDER),      Tag(XPTAG_STACK),       Tag(XPTAG_TABS),
      Tag(XPTAG_LEFT),    Tag(XPTAG_NARROW),    Tag(XPTAG_DIVADD),     Tag(XPTAG_DIVREM),      Tag(XPTAG_BORDER),
      Tag(XPTAG_DLOGTYPE), Tag(XPTAG_LABEL),
  };
  // clang-format on
  ASSERT_EQ(Tags(p), expected);
  for (const lwhost::Hint& h : p.hints)
    EXPECT_EQ(static_cast<int>(h.args.size()), lwhost::HintFixedArgs(h.tag)) << lwhost::HintTagName(h.tag);

  auto find = [&](LWXPanelHint tag) -> const lwhost::Hint& {
    for (const lwhost::Hint& h : p.hints)
      if (h.tag == HintWord(tag)) return h;
    static lwhost::Hint none;
    ADD_FAILURE() << "missing " << Tag(tag);
    return none;
  };
  // Lists keep their words in order; an empty list is just its 0.
  EXPECT_EQ(find(XPTAG_ALIAS).list, (std::vector<LWXPanelHint>{XpH(0x9000), XpH(0x9001)}));
  EXPECT_TRUE(find(XPTAG_UNALIAS).list.empty());
  EXPECT_EQ(find(XPTAG_ORDER).list, (std::vector<LWXPanelHint>{XpH(0x9001), XpH(0x9000)}));
  EXPECT_EQ(find(XPTAG_ENABLE).list, (std::vector<LWXPanelHint>{XpH(0x9001)}));
  EXPECT_EQ(find(XPTAG_STACK).list, (std::vector<LWXPanelHint>{XpH(0x9001)}));
  EXPECT_EQ(find(XPTAG_LEFT).list, (std::vector<LWXPanelHint>{XpH(0x9000)}));
  EXPECT_EQ(find(XPTAG_CTRLCFG).id(2), 0x80000601u);
  EXPECT_EQ(std::string(static_cast<const char*>(p.hints.back().args[1])), "last");

  // The host's own tag constants agree with the SDK's.
  namespace t = lwhost::hint_tag;
  const std::pair<std::uint32_t, LWXPanelHint> constants[] = {
      {t::kCall, XPTAG_CALL},
      {t::kLabel, XPTAG_LABEL},
      {t::kChangeNotify, XPTAG_CHGNOTIFY},
      {t::kDestroyNotify, XPTAG_DESTROYNOTIFY},
      {t::kValue, XPTAG_VALUE},
      {t::kStringList, XPTAG_STRLIST},
      {t::kButtonNotify, XPTAG_BUTNOTIFY},
      {t::kPopCommand, XPTAG_POPCMDFUNC},
      {t::kPopFuncs, XPTAG_POPFUNCS},
      {t::kDrawFunc, XPTAG_DRAWCBFUNC},
      {t::kZoomFunc, XPTAG_ZOOMCBFUNC},
      {t::kControlConfig, XPTAG_CTRLCFG},
      {t::kDividerAdd, XPTAG_DIVADD},
      {t::kDividerRemove, XPTAG_DIVREM},
  };
  for (const auto& [value, tag] : constants) EXPECT_EQ(value, HintWord(tag)) << Tag(tag);

  // Options written through a negative int are sign-extended on 64-bit; ids compare on 32 bits.
  const LWXPanelHint signExtended[] = {XpCTRLCFG(0x9000, THUM_FULL | THUM_BORDER_NONE | THUM_SML), XpEND};
  const HintParse s = ParseHints(signExtended);
  ASSERT_EQ(s.hints.size(), 1u);
  EXPECT_EQ(s.hints[0].id(2), 0x80000601u);
}

TEST(HintList, CallsSpliceNestedListsInPlace) {
  static const LWXPanelHint deepest[] = {XpMIN(0, 1), XpEND};
  static const LWXPanelHint inner[] = {XpLABEL(0x9001, "inner"), XpCALL(deepest), XpEND};
  static const LWXPanelHint other[] = {XpCTRLCFG(0, 2), XpEND};
  const LWXPanelHint outer[] = {XpLABEL(0x9000, "first"), XpCALL(inner), XpCALL(0), XpSUBCALL(0x9005, other),
                                XpVALUE(0x9002, 0x9003),  XpCALL(inner), XpEND};
  const HintParse p = ParseHints(outer, 0x9009);
  EXPECT_TRUE(p.problems.empty()) << Problems(p);
  EXPECT_EQ(Tags(p), (std::vector<std::string>{Tag(XPTAG_LABEL), Tag(XPTAG_LABEL), Tag(XPTAG_MIN), Tag(XPTAG_CTRLCFG),
                                               Tag(XPTAG_VALUE), Tag(XPTAG_LABEL), Tag(XPTAG_MIN)}));
  // Lists called with id 0 apply where the caller applies; XpSUBCALL names its own id.
  EXPECT_EQ(p.hints[2].scope, 0x9009u);
  EXPECT_EQ(p.hints[2].target(0), 0x9009u) << "id 0 stands for the scope";
  EXPECT_EQ(p.hints[3].scope, 0x9005u);
  EXPECT_EQ(p.hints[3].target(0), 0x9005u);
  EXPECT_EQ(p.hints[4].target(0), 0x9002u) << "a named id stays itself";
  // Calling the same list twice in sequence is not a cycle.
  EXPECT_EQ(std::string(static_cast<const char*>(p.hints[5].args[1])), "inner");
}

TEST(HintList, UnknownTagsAreSkippedByTheirArity) {
  const LWXPanelHint hints[] = {
      XpH(0x3D777703),        XpH(0), XpH(0), XpH(0),         // three fixed words, all 0
      XpH(0x3D777881),        XpH(0), XpH(7), XpH(8), XpEND,  // one fixed word, then a list
      XpH(0x3D777980),        XpEND,                          // an empty list only
      XpH(0x3D777A00),                                        // no words at all
      XpBUTNOTIFY(0x9000, 0), XpEND,
  };
  const HintParse p = ParseHints(hints);
  EXPECT_TRUE(p.problems.empty()) << Problems(p);
  ASSERT_EQ(Tags(p), (std::vector<std::string>{"tag 0x3D777703", "tag 0x3D777881", "tag 0x3D777980", "tag 0x3D777A00",
                                               "XPTAG_BUTNOTIFY"}));
  EXPECT_EQ(p.hints[1].list, (std::vector<LWXPanelHint>{XpH(7), XpH(8)}));
  EXPECT_EQ(lwhost::HintTagName(0x3D777703u), "tag 0x3D777703");
}

void NotifyStub(void*) {}

TEST(HintList, ListEndingInsideAHintIsCaughtNotOverrun) {
  // A destroy notification written as if its mandatory 0 were the end marker. The vector holds
  // exactly these words, so reading one more would be caught by the address sanitizer.
  const std::vector<LWXPanelHint> truncated = {XpLABEL(0, "t"), XPTAG_DESTROYNOTIFY,
                                               reinterpret_cast<LWXPanelHint>(&NotifyStub), XPTAG_NULL};
  HintParse p = lwhost::ParseBoundedHints(truncated.data(), truncated.size());
  EXPECT_EQ(Tags(p), (std::vector<std::string>{Tag(XPTAG_LABEL), Tag(XPTAG_DESTROYNOTIFY)}))
      << "the destroy hint itself is complete";
  ASSERT_EQ(p.problems.size(), 1u);
  EXPECT_NE(p.problems[0].find("without XPTAG_END"), std::string::npos) << p.problems[0];

  const std::vector<LWXPanelHint> midArgs = {XpLABEL(0, "t"), XPTAG_DESTROYNOTIFY,
                                             reinterpret_cast<LWXPanelHint>(&NotifyStub)};
  p = lwhost::ParseBoundedHints(midArgs.data(), midArgs.size());
  EXPECT_EQ(Tags(p), (std::vector<std::string>{Tag(XPTAG_LABEL)}));
  ASSERT_EQ(p.problems.size(), 1u);
  EXPECT_NE(p.problems[0].find("XPTAG_DESTROYNOTIFY"), std::string::npos) << p.problems[0];
  EXPECT_NE(p.problems[0].find("1 of 2"), std::string::npos) << p.problems[0];

  const std::vector<LWXPanelHint> midList = {XpDIVADD_(0x9000), XpH(0x9001)};
  p = lwhost::ParseBoundedHints(midList.data(), midList.size());
  EXPECT_TRUE(p.hints.empty());
  ASSERT_EQ(p.problems.size(), 1u);
  EXPECT_NE(p.problems[0].find("XPTAG_DIVADD"), std::string::npos) << p.problems[0];

  if (sizeof(void*) == 8) {
    // Without a known length the same mistake runs into whatever follows the array; a word that
    // is a pointer cannot be a tag, and parsing stops there.
    const LWXPanelHint runOn[] = {XPTAG_DESTROYNOTIFY, reinterpret_cast<LWXPanelHint>(&NotifyStub),
                                  XPTAG_NULL,          reinterpret_cast<LWXPanelHint>(&NotifyStub),
                                  XpLABEL(0, "never"), XpEND};
    p = ParseHints(runOn);
    EXPECT_EQ(Tags(p), (std::vector<std::string>{Tag(XPTAG_DESTROYNOTIFY)}));
    ASSERT_EQ(p.problems.size(), 1u);
    EXPECT_NE(p.problems[0].find("cannot be a hint tag"), std::string::npos) << p.problems[0];
  }
}

// A calls B, B calls A.
extern LWXPanelHint g_cycleB[];
LWXPanelHint g_cycleA[] = {XpMIN(0x9000, 1), XpCALL(g_cycleB), XpEND};
LWXPanelHint g_cycleB[] = {XpMAX(0x9000, 2), XpCALL(g_cycleA), XpSTEP(0x9000, 3), XpEND};

TEST(HintList, CallCyclesAndRunawayNestingAreStopped) {
  // Each list is read once; the call closing the cycle is refused and parsing goes on.
  HintParse p = ParseHints(g_cycleA);
  EXPECT_EQ(Tags(p), (std::vector<std::string>{Tag(XPTAG_MIN), Tag(XPTAG_MAX), Tag(XPTAG_STEP)}));
  ASSERT_EQ(p.problems.size(), 1u);
  EXPECT_NE(p.problems[0].find("cycle"), std::string::npos) << p.problems[0];

  // A chain deeper than the limit: the lists within it are read, the one beyond is not.
  const int levels = lwhost::kMaxHintDepth + 5;
  std::vector<std::vector<LWXPanelHint>> chain(levels);
  for (int i = levels - 1; i >= 0; --i) {
    chain[i] = {XpMIN(0x9000, static_cast<std::intptr_t>(i))};
    if (i + 1 < levels) chain[i].insert(chain[i].end(), {XPTAG_CALL, XPTAG_NULL, chain[i + 1].data()});
    chain[i].push_back(XpEND);
  }
  p = ParseHints(chain[0].data());
  EXPECT_EQ(p.hints.size(), static_cast<std::size_t>(lwhost::kMaxHintDepth + 1));
  ASSERT_EQ(p.problems.size(), 1u);
  EXPECT_NE(p.problems[0].find("deeper"), std::string::npos) << p.problems[0];

  // A list with no end at all stops at the word limit instead of reading forever.
  std::vector<LWXPanelHint> endless(lwhost::kMaxHintWords + 10, XPTAG_NEST);
  p = lwhost::ParseBoundedHints(endless.data(), endless.size());
  EXPECT_LE(p.hints.size(), lwhost::kMaxHintWords / 2);
  ASSERT_EQ(p.problems.size(), 1u);
  EXPECT_NE(p.problems[0].find("longer than"), std::string::npos) << p.problems[0];
}

}  // namespace
