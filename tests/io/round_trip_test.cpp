// Every member of the save and load states, round trips, the embedding of plug-in data in a
// scene, and what the writer does when a plug-in misuses it.
#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <sstream>
#include <string>

#include "io/Observer.h"
#include "lwhost/BlockReader.h"
#include "lwhost/BlockWriter.h"

namespace {

using lwhost::BlockReader;
using lwhost::BlockWriter;
using lwhost::IOMode;

const LWBlockIdent kInts = {LWID_('I', 'N', 'T', 'S'), "Ints"};
const LWBlockIdent kHex = {LWID_('H', 'E', 'X', 'S'), "Hex"};
const LWBlockIdent kReal = {LWID_('R', 'E', 'A', 'L'), "Real"};
const LWBlockIdent kNames = {LWID_('N', 'A', 'M', 'E'), "Names"};
const LWBlockIdent kKind = {LWID_('K', 'I', 'N', 'D'), "Kind"};
const LWBlockIdent kRaw = {LWID_('R', 'A', 'W', 'T'), "Raw"};
const LWBlockIdent kKeys = {LWID_('K', 'E', 'Y', 'S'), "Keys"};
const LWBlockIdent kDeep = {LWID_('D', 'E', 'E', 'P'), "Deep"};
const LWBlockIdent kLevel = {LWID_('L', 'E', 'V', 'L'), "Level"};
const LWBlockIdent kRootList[] = {kInts, kHex, kReal, kNames, kKind, kRaw, kKeys, {0, nullptr}};
const LWBlockIdent kDeepList[] = {kDeep, {0, nullptr}};
const LWBlockIdent kLevelList[] = {kLevel, {0, nullptr}};
const LWBlockIdent kKindList[] = {
    {LWID_('T', 'Y', 'P', 'E'), "Type"}, {LWID_('S', 'P', 'O', 'T'), "Spot"}, {0, nullptr}};

// A record that uses every member of the states and every value type at its extremes.
struct Sample {
  char i1[3] = {};
  short i2[2] = {};
  int i4[2] = {};
  unsigned char u1[3] = {};
  unsigned short u2[2] = {};
  unsigned int u4[2] = {};
  float fp[3] = {};
  double dp[3] = {};
  char name[16] = {};   // odd size with its terminator: padded in binary
  char label[16] = {};  // even size: not padded
  LWID kind = 0;
  char raw[32] = {};
  int rawLength = 0;
  int keyCount = 0;
  float keys[4][3] = {};
  int level = 0;
};

Sample Filled() {
  Sample s;
  const char i1[] = {-128, 0, 127};
  std::memcpy(s.i1, i1, sizeof i1);
  s.i2[0] = -32768;
  s.i2[1] = 32767;
  s.i4[0] = std::numeric_limits<int>::min();
  s.i4[1] = std::numeric_limits<int>::max();
  s.u1[1] = 0x7F;
  s.u1[2] = 0xFF;
  s.u2[1] = 0xFFFF;
  s.u4[1] = 0xDEADBEEF;
  s.fp[0] = -122.55f;
  s.fp[1] = 1e-7f;
  s.fp[2] = std::numeric_limits<float>::max();
  s.dp[0] = 0.1;
  s.dp[1] = -1.0 / 3;
  s.dp[2] = std::numeric_limits<double>::denorm_min();
  std::strcpy(s.name, "Vorn");
  std::strcpy(s.label, "Disc 12");
  s.kind = kKindList[1].id;
  std::strcpy(s.raw, "free text, kept as is");
  s.rawLength = static_cast<int>(std::strlen(s.raw));
  s.keyCount = 2;
  const float keys[2][3] = {{0, 0.5f, -1}, {10, 20.25f, 30}};
  std::memcpy(s.keys, keys, sizeof keys);
  return s;
}

void Save(const LWSaveState* ss, const Sample& s) {
  LWSAVE_BEGIN(ss, &kInts, 1);
  LWSAVE_I1(ss, s.i1, 3);
  LWSAVE_I2(ss, s.i2, 2);
  LWSAVE_I4(ss, s.i4, 2);
  LWSAVE_END(ss);
  LWSAVE_BEGIN(ss, &kHex, 1);
  LWSAVE_U1(ss, s.u1, 3);
  LWSAVE_U2(ss, s.u2, 2);
  LWSAVE_U4(ss, s.u4, 2);
  LWSAVE_END(ss);
  LWSAVE_BEGIN(ss, &kReal, 1);
  LWSAVE_FP(ss, s.fp, 3);
  LWSAVE_DP(ss, s.dp, 3);
  LWSAVE_END(ss);
  LWSAVE_BEGIN(ss, &kNames, 1);
  LWSAVE_STR(ss, s.name);
  LWSAVE_STR(ss, s.label);
  LWSAVE_END(ss);
  LWSAVE_BEGIN(ss, &kKind, 1);
  for (const LWBlockIdent* k = kKindList; k->id; ++k)
    if (k->id == s.kind) LWSAVE_ID(ss, k);
  LWSAVE_END(ss);
  LWSAVE_BEGIN(ss, &kRaw, 1);
  ss->write(ss->writeData, s.raw, s.rawLength);
  LWSAVE_END(ss);
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
        if (LWLOAD_FIND(ls, kLevelList)) {
          counts << "d" << LWLOAD_DEPTH(ls) << LWLOAD_I4(ls, &s->level, 1);
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

TEST_P(RoundTrip, SaveLoadSaveGivesIdenticalBytes) {
  const Sample original = Filled();
  BlockWriter first(GetParam());
  Save(first.state(), original);
  ASSERT_TRUE(first.problems().empty()) << first.problems().front();
  if (GetParam() == IOMode::Ascii) {
    EXPECT_EQ(first.data(), kSampleText);
  } else {
    // "Vorn" and its NUL are odd-sized, so a pad byte follows; "Disc 12" and its NUL are not.
    EXPECT_NE(first.data().find(std::string("NAME\0\x0EVorn\0\0Disc 12\0", 20)), std::string::npos);
  }

  BlockReader reader(GetParam(), first.data());
  Sample loaded;
  EXPECT_EQ(Load(reader.state(), &loaded), "i322u322r33s4,7w21k133d31");
  EXPECT_TRUE(reader.problems().empty()) << reader.problems().front();

  EXPECT_EQ(std::memcmp(loaded.i1, original.i1, sizeof loaded.i1), 0);
  EXPECT_EQ(loaded.i2[0], original.i2[0]);
  EXPECT_EQ(loaded.i4[0], original.i4[0]);
  EXPECT_EQ(loaded.i4[1], original.i4[1]);
  EXPECT_EQ(std::memcmp(loaded.u1, original.u1, sizeof loaded.u1), 0);
  EXPECT_EQ(loaded.u2[1], original.u2[1]);
  EXPECT_EQ(loaded.u4[1], original.u4[1]);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(loaded.dp[i], original.dp[i]) << i;  // exact in both forms
  if (GetParam() == IOMode::Binary) {
    for (int i = 0; i < 3; ++i) EXPECT_EQ(loaded.fp[i], original.fp[i]) << i;
  }
  EXPECT_STREQ(loaded.name, original.name);
  EXPECT_STREQ(loaded.label, original.label);
  EXPECT_EQ(loaded.kind, original.kind);
  EXPECT_EQ(std::string(loaded.raw, loaded.rawLength), original.raw);
  EXPECT_EQ(loaded.keys[1][1], original.keys[1][1]);
  EXPECT_EQ(loaded.level, 3);

  BlockWriter second(GetParam());
  Save(second.state(), loaded);
  EXPECT_EQ(second.data(), first.data());

  // The observer example too.
  BlockWriter obsFirst(GetParam());
  iotest::WriteObserver(obsFirst.state(), iotest::ReferenceObserver());
  BlockReader obsReader(GetParam(), obsFirst.data());
  iotest::Observer obs;
  iotest::ReadObserver(obsReader.state(), &obs);
  BlockWriter obsSecond(GetParam());
  iotest::WriteObserver(obsSecond.state(), obs);
  EXPECT_EQ(obsSecond.data(), obsFirst.data());
}

TEST_P(RoundTrip, WriterMisuseIsNotedAndKeepsTheStructure) {
  BlockWriter w(GetParam());
  const LWSaveState* s = w.state();
  LWSAVE_END(s);
  EXPECT_EQ(w.data(), "");
  EXPECT_EQ(w.depth(), 0);

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
  EXPECT_EQ(w.depth(), 0);
  ASSERT_EQ(w.problems().size(), 4u);
  EXPECT_NE(w.problems()[0].find("endBlk with no open block"), std::string::npos);
  EXPECT_NE(w.problems()[1].find("beginBlk given no block ident"), std::string::npos);
  const bool text = GetParam() == IOMode::Ascii;  // binary names blocks by their ID
  EXPECT_NE(w.problems()[2].find(text ? "block Level was never ended" : "block LEVL was never ended"),
            std::string::npos);
  EXPECT_NE(w.problems()[3].find(text ? "block Keys was never ended" : "block KEYS was never ended"),
            std::string::npos);

  if (text) {
    EXPECT_EQ(w.data().substr(afterNull), "{ Keys\n  Level 1\n}\n");
  } else {
    EXPECT_EQ(w.data().substr(afterNull), std::string("KEYS\0\x0ALEVL\0\x04\0\0\0\x01", 16));
  }

  // Whatever the plug-in did, what came out reads back.
  BlockReader reader(GetParam(), w.data());
  const LWLoadState* ls = reader.state();
  ASSERT_EQ(LWLOAD_FIND(ls, kRootList), kKeys.id);
  ASSERT_EQ(LWLOAD_FIND(ls, kLevelList), kLevel.id);
  int v = 0;
  EXPECT_EQ(LWLOAD_I4(ls, &v, 1), 1);
  EXPECT_EQ(v, 1);
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
  ASSERT_EQ(w.problems().size(), 1u);
  EXPECT_EQ(w.problems()[0],
            "offset 70006: block RAWT holds 70000 bytes; a binary block holds at most 65535");
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
  ASSERT_EQ(w.problems().size(), 2u);
  EXPECT_EQ(w.problems()[0], "line 1: block Level begun inside leaf block Ints");
  EXPECT_EQ(w.problems()[1], "line 3: string contains a line break; written as a blank");
}

TEST(SceneEmbedding, PluginDataIsIndentedAndReadFromItsRegion) {
  // The host writes "Plugin ..." and "EndPlugin"; the plug-in's data sits one level in.
  BlockWriter w(IOMode::Ascii, 1);
  const LWSaveState* s = w.state();
  EXPECT_EQ(LWSAVE_DEPTH(s), 0);
  iotest::WriteObserver(s, iotest::ReferenceObserver());
  w.finish();
  EXPECT_TRUE(w.problems().empty());

  std::string indented;
  std::istringstream lines(iotest::kObserverText);
  for (std::string line; std::getline(lines, line);) indented += "  " + line + "\n";
  EXPECT_EQ(w.data(), indented);

  // The region between the wrapper lines is what the plug-in reads; problems name scene lines.
  const std::string scene = "Plugin MasterHandler 1 Observer\n" + w.data() + "  }\n" + "EndPlugin\n";
  const std::size_t begin = scene.find('\n') + 1;
  const std::size_t end = scene.find("EndPlugin");
  BlockReader reader(IOMode::Ascii, scene.substr(begin, end - begin), "scene.lws");
  reader.setOrigin(2);
  iotest::Observer obs;
  iotest::ReadObserver(reader.state(), &obs);
  EXPECT_EQ(iotest::Difference(iotest::ReferenceObserver(), obs), "");
  const std::vector<std::string> expected = {"scene.lws: line 13: '}' without a matching '{'"};
  EXPECT_EQ(reader.problems(), expected);
}

}  // namespace
