// Every member of the save and load states round trips, and what the writer does when a plug-in
// misuses it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <limits>
#include <sstream>
#include <string>

#include "lwhost/BlockReader.h"
#include "lwhost/BlockWriter.h"

namespace {

using lwhost::BlockReader;
using lwhost::BlockWriter;
using lwhost::IOMode;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

const LWBlockIdent kInts{LWID_('I', 'N', 'T', 'S'), "Ints"}, kHex{LWID_('H', 'E', 'X', 'S'), "Hex"},
    kReal{LWID_('R', 'E', 'A', 'L'), "Real"}, kNames{LWID_('N', 'A', 'M', 'E'), "Names"},
    kKind{LWID_('K', 'I', 'N', 'D'), "Kind"}, kRaw{LWID_('R', 'A', 'W', 'T'), "Raw"},
    kKeys{LWID_('K', 'E', 'Y', 'S'), "Keys"}, kDeep{LWID_('D', 'E', 'E', 'P'), "Deep"},
    kLevel{LWID_('L', 'E', 'V', 'L'), "Level"};
const LWBlockIdent kRootList[] = {kInts, kHex, kReal, kNames, kKind, kRaw, kKeys, {0, nullptr}};
const LWBlockIdent kDeepList[] = {kDeep, {0, nullptr}};
const LWBlockIdent kLevelList[] = {kLevel, {0, nullptr}};
const LWBlockIdent kKindList[] = {
    {LWID_('T', 'Y', 'P', 'E'), "Type"}, {LWID_('S', 'P', 'O', 'T'), "Spot"}, {0, nullptr}};

// A record that uses every member of the states and every value type at its extremes.
struct Sample {
  char i1[3];
  short i2[2];
  int i4[2];
  unsigned char u1[3];
  unsigned short u2[2];
  unsigned int u4[2];
  float fp[3];
  double dp[3];
  char name[16];   // odd size with its terminator: padded in binary
  char label[16];  // even size: not padded
  LWID kind;
  char raw[32];
  int rawLength, keyCount;
  float keys[4][3];
};

const Sample kFilled{{-128, 0, 127}, {-32768, 32767}, {INT_MIN, INT_MAX}, {0, 0x7F, 0xFF}, {0, 0xFFFF}, {0, 0xDEADBEEF},
                     {-122.55f, 1e-7f, FLT_MAX}, {0.1, -1.0 / 3, std::numeric_limits<double>::denorm_min()},
                     "Vorn", "Disc 12", LWID_('S', 'P', 'O', 'T'), "free text, kept as is", 21, 2,
                     {{0, 0.5f, -1}, {10, 20.25f, 30}}};

void Save(const LWSaveState* ss, const Sample& s) {
  auto leaf = [ss](const LWBlockIdent& id, auto write) {
    LWSAVE_BEGIN(ss, &id, 1);
    write();
    LWSAVE_END(ss);
  };
  leaf(kInts, [&] { LWSAVE_I1(ss, s.i1, 3), LWSAVE_I2(ss, s.i2, 2), LWSAVE_I4(ss, s.i4, 2); });
  leaf(kHex, [&] { LWSAVE_U1(ss, s.u1, 3), LWSAVE_U2(ss, s.u2, 2), LWSAVE_U4(ss, s.u4, 2); });
  leaf(kReal, [&] { LWSAVE_FP(ss, s.fp, 3), LWSAVE_DP(ss, s.dp, 3); });
  leaf(kNames, [&] { LWSAVE_STR(ss, s.name), LWSAVE_STR(ss, s.label); });
  leaf(kKind, [&] {
    for (const LWBlockIdent* k = kKindList; k->id; ++k)
      if (k->id == s.kind) LWSAVE_ID(ss, k);
  });
  leaf(kRaw, [&] { ss->write(ss->writeData, s.raw, s.rawLength); });
  LWSAVE_BEGIN(ss, &kKeys, 0);
  LWSAVE_I4(ss, &s.keyCount, 1);  // outside a leaf: lines of their own
  for (int k = 0; k < s.keyCount; ++k) LWSAVE_FP(ss, s.keys[k], 3);
  LWSAVE_BEGIN(ss, &kDeep, 0);
  LWSAVE_BEGIN(ss, &kLevel, 1);
  const int depth = LWSAVE_DEPTH(ss);
  LWSAVE_I4(ss, &depth, 1);
  LWSAVE_END(ss);
  LWSAVE_END(ss);
  LWSAVE_END(ss);
}

// Returns the counts each read call gave, so that a short read shows up in a comparison.
std::string Load(const LWLoadState* ls, Sample* s) {
  std::ostringstream counts;
  while (LWID id = LWLOAD_FIND(ls, kRootList)) {
    if (id == kInts.id) {
      counts << "i" << LWLOAD_I1(ls, s->i1, 3) << LWLOAD_I2(ls, s->i2, 2) << LWLOAD_I4(ls, s->i4, 2);
    } else if (id == kHex.id) {
      counts << "u" << LWLOAD_U1(ls, s->u1, 3) << LWLOAD_U2(ls, s->u2, 2) << LWLOAD_U4(ls, s->u4, 2);
    } else if (id == kReal.id) {
      counts << "r" << LWLOAD_FP(ls, s->fp, 3) << LWLOAD_DP(ls, s->dp, 3);
    } else if (id == kNames.id) {
      counts << "s" << LWLOAD_STR(ls, s->name, sizeof s->name) << ","
             << LWLOAD_STR(ls, s->label, sizeof s->label);
    } else if (id == kKind.id) {
      s->kind = LWLOAD_ID(ls, kKindList);
    } else if (id == kRaw.id) {
      s->rawLength = ls->read(ls->readData, s->raw, sizeof s->raw - 1);
      counts << "w" << s->rawLength;
    } else if (id == kKeys.id) {
      counts << "k" << LWLOAD_I4(ls, &s->keyCount, 1);
      for (int k = 0; k < s->keyCount && k < 4; ++k) counts << LWLOAD_FP(ls, s->keys[k], 3);
      if (LWLOAD_FIND(ls, kDeepList)) {
        int level = 0;
        if (LWLOAD_FIND(ls, kLevelList)) {
          counts << "d" << LWLOAD_DEPTH(ls) << LWLOAD_I4(ls, &level, 1) << "=" << level;
          LWLOAD_END(ls);
        }
        LWLOAD_END(ls);
      }
    }
    LWLOAD_END(ls);
  }
  return counts.str();
}

const char kSampleText[] =
    "Ints -128 0 127 -32768 32767 -2147483648 2147483647\n"
    "Hex 00 7F FF 0000 FFFF 00000000 DEADBEEF\n"
    "Real -122.55 1e-07 3.402823e+38 0.10000000000000001 -0.33333333333333331 4.9406564584124654e-324\n"
    "Names \"Vorn\" \"Disc 12\"\n"
    "Kind Spot\n"
    "Raw free text, kept as is\n"
    "{ Keys\n"
    "  2\n"
    "  0 0.5 -1\n"
    "  10 20.25 30\n"
    "  { Deep\n"
    "    Level 3\n"
    "  }\n"
    "}\n";

class RoundTrip : public ::testing::TestWithParam<IOMode> {};
INSTANTIATE_TEST_SUITE_P(Io, RoundTrip, ::testing::Values(IOMode::Ascii, IOMode::Binary),
                         [](const auto& info) { return info.param == IOMode::Ascii ? "Text" : "Binary"; });

// Saving what was loaded gives the same bytes: every value came back bit for bit (text keeps
// doubles exact; floats keep their seven digits).
TEST_P(RoundTrip, SaveLoadSaveGivesIdenticalBytes) {
  BlockWriter first(GetParam());
  Save(first.state(), kFilled);
  ASSERT_TRUE(first.problems().empty()) << first.problems().front();
  if (GetParam() == IOMode::Ascii) {
    EXPECT_EQ(first.data(), kSampleText);
  } else {
    // "Vorn" and its NUL are odd-sized, so a pad byte follows; "Disc 12" and its NUL are not.
    EXPECT_NE(first.data().find(std::string("NAME\0\x0EVorn\0\0Disc 12\0", 20)), std::string::npos);
  }

  BlockReader reader(GetParam(), first.data());
  Sample loaded{};
  EXPECT_EQ(Load(reader.state(), &loaded), "i322u322r33s4,7w21k133d31=3");
  EXPECT_TRUE(reader.problems().empty()) << reader.problems().front();
  BlockWriter second(GetParam());
  Save(second.state(), loaded);
  EXPECT_EQ(second.data(), first.data());
}

TEST_P(RoundTrip, WriterMisuseIsNotedAndKeepsTheStructure) {
  BlockWriter w(GetParam());
  const LWSaveState* s = w.state();
  LWSAVE_END(s);
  EXPECT_EQ(w.data(), "");

  // A block without an ident still pairs with its endBlk.
  LWSAVE_BEGIN(s, nullptr, 0);
  EXPECT_EQ(LWSAVE_DEPTH(s), 1);
  LWSAVE_END(s);
  const std::size_t afterNull = w.data().size();

  // Left open by the plug-in: finish() closes it for the host.
  LWSAVE_BEGIN(s, &kKeys, 0);
  LWSAVE_BEGIN(s, &kLevel, 1);
  const int one = 1;
  LWSAVE_I4(s, &one, 1);
  w.finish();
  const bool text = GetParam() == IOMode::Ascii;  // binary names blocks by their ID
  EXPECT_THAT(w.problems(), ElementsAre(HasSubstr("endBlk with no open block"),
                                        HasSubstr("beginBlk given no block ident"),
                                        HasSubstr(text ? "block Level was never ended" : "block LEVL was never ended"),
                                        HasSubstr(text ? "block Keys was never ended" : "block KEYS was never ended")));
  EXPECT_EQ(w.data().substr(afterNull),
            text ? std::string("{ Keys\n  Level 1\n}\n") : std::string("KEYS\0\x0ALEVL\0\x04\0\0\0\x01", 16));

  // Whatever the plug-in did, what came out reads back, the identless block included.
  BlockReader reader(GetParam(), w.data());
  EXPECT_EQ(LWLOAD_FIND(reader.state(), kRootList), kKeys.id);
  EXPECT_EQ(LWLOAD_FIND(reader.state(), kLevelList), kLevel.id);
  EXPECT_TRUE(reader.problems().empty()) << reader.problems().front();
}

TEST(BinaryWriter, OversizedBlockIsNotedWithoutCorruptingWhatFollows) {
  BlockWriter w(IOMode::Binary);
  const LWSaveState* s = w.state();
  const std::string big(70000, 'x');
  LWSAVE_BEGIN(s, &kRaw, 1);
  s->write(s->writeData, big.data(), static_cast<int>(big.size()));
  LWSAVE_END(s);
  LWSAVE_BEGIN(s, &kLevel, 1);
  const int seven = 7;
  LWSAVE_I4(s, &seven, 1);
  LWSAVE_END(s);

  ASSERT_EQ(w.data().size(), 6u + 70000 + 10);
  EXPECT_EQ(w.data().substr(0, 6), std::string("RAWT\xFF\xFF"));
  EXPECT_EQ(w.data().substr(70006), std::string("LEVL\0\x04\0\0\0\x07", 10));
  EXPECT_EQ(w.problems(), std::vector<std::string>{
                              "offset 70006: block RAWT holds 70000 bytes; a binary block holds at most 65535"});
}

TEST(TextWriter, LeafInsideLeafAndUnreadableStringsKeepLinesIntact) {
  BlockWriter w(IOMode::Ascii);
  const LWSaveState* s = w.state();
  const int one = 1, two = 2;
  LWSAVE_BEGIN(s, &kInts, 1);
  LWSAVE_I4(s, &one, 1);
  LWSAVE_BEGIN(s, &kLevel, 1);  // leaf lines hold no blocks
  LWSAVE_I4(s, &two, 1);
  LWSAVE_END(s);
  LWSAVE_END(s);
  LWSAVE_BEGIN(s, &kNames, 1);
  LWSAVE_STR(s, "two\nlines");
  LWSAVE_END(s);
  EXPECT_EQ(w.data(), "Ints 1\n  Level 2\nNames \"two lines\"\n");
  EXPECT_EQ(w.problems(), (std::vector<std::string>{"line 1: block Level begun inside leaf block Ints",
                                                    "line 3: string contains a line break; written as a blank"}));
}

}  // namespace
