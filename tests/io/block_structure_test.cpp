// How the load state walks block structure: what it skips, where a search stops, how far a
// read may go, and what it reports about damaged data.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "lwhost/BlockReader.h"
#include "lwhost/BlockWriter.h"

namespace {

using lwhost::BlockReader;
using lwhost::BlockWriter;
using lwhost::IOMode;

constexpr LWID ID_OUTR = LWID_('O', 'U', 'T', 'R');
constexpr LWID ID_AAAA = LWID_('A', 'A', 'A', 'A');
constexpr LWID ID_INNR = LWID_('I', 'N', 'N', 'R');
constexpr LWID ID_XXXX = LWID_('X', 'X', 'X', 'X');
constexpr LWID ID_BBBB = LWID_('B', 'B', 'B', 'B');
constexpr LWID ID_AFTR = LWID_('A', 'F', 'T', 'R');
constexpr LWID ID_UNKN = LWID_('U', 'N', 'K', 'N');
constexpr LWID ID_JUNK = LWID_('J', 'U', 'N', 'K');

const LWBlockIdent kOuter = {ID_OUTR, "Outer"};
const LWBlockIdent kA = {ID_AAAA, "A"};
const LWBlockIdent kInner = {ID_INNR, "Inner"};
const LWBlockIdent kX = {ID_XXXX, "X"};
const LWBlockIdent kB = {ID_BBBB, "B"};
const LWBlockIdent kAfter = {ID_AFTR, "After"};
const LWBlockIdent kUnknown = {ID_UNKN, "Unknown"};
const LWBlockIdent kJunk = {ID_JUNK, "Junk"};

const LWBlockIdent kRootList[] = {kOuter, kAfter, {0, nullptr}};
const LWBlockIdent kOuterList[] = {kA, kInner, kB, {0, nullptr}};
const LWBlockIdent kInnerList[] = {kX, {0, nullptr}};

void Leaf(const LWSaveState* s, const LWBlockIdent& id, int value) {
  LWSAVE_BEGIN(s, &id, 1);
  LWSAVE_I4(s, &value, 1);
  LWSAVE_END(s);
}

// Outer { A 1, Inner { X 7, Unknown 3, Junk { Junk { X 99 } } }, B 2 }, After 5. The X deep
// inside the unknown block is in Inner's list: only skipping whole blocks keeps it unseen.
std::string NestedData(IOMode mode) {
  BlockWriter w(mode);
  const LWSaveState* s = w.state();
  LWSAVE_BEGIN(s, &kOuter, 0);
  Leaf(s, kA, 1);
  LWSAVE_BEGIN(s, &kInner, 0);
  Leaf(s, kX, 7);
  Leaf(s, kUnknown, 3);
  LWSAVE_BEGIN(s, &kJunk, 0);
  LWSAVE_BEGIN(s, &kJunk, 0);
  Leaf(s, kX, 99);
  LWSAVE_END(s);
  LWSAVE_END(s);
  LWSAVE_END(s);
  Leaf(s, kB, 2);
  LWSAVE_END(s);
  Leaf(s, kAfter, 5);
  EXPECT_TRUE(w.problems().empty());
  return w.data();
}

std::string Name(LWID id) {
  if (!id) return "0";
  std::string s;
  for (int shift = 24; shift >= 0; shift -= 8) s += static_cast<char>((id >> shift) & 0xFF);
  return s;
}

// Walks the nested data like a plug-in, logging "<id>@<depth>=<value>" for each block found
// and "0@<depth>" for each search that came back empty.
std::string Walk(const LWLoadState* ls, bool leaveInnerEarly) {
  std::string log;
  auto entry = [&](LWID id) {
    log += Name(id) + "@" + std::to_string(LWLOAD_DEPTH(ls));
    if (id && id != ID_OUTR && id != ID_INNR) {
      int v = -1;
      LWLOAD_I4(ls, &v, 1);
      log += "=" + std::to_string(v);
    }
    log += " ";
  };
  while (LWID id = LWLOAD_FIND(ls, kRootList)) {
    entry(id);
    if (id == ID_OUTR) {
      LWID sub;
      while ((sub = LWLOAD_FIND(ls, kOuterList))) {
        entry(sub);
        if (sub == ID_INNR) {
          LWID x;
          while ((x = LWLOAD_FIND(ls, kInnerList))) {
            entry(x);
            LWLOAD_END(ls);
            if (leaveInnerEarly) break;
          }
          if (!x) entry(0);
        }
        LWLOAD_END(ls);
      }
      entry(sub);
    }
    LWLOAD_END(ls);
  }
  entry(0);
  return log;
}

class BlockStructure : public ::testing::TestWithParam<IOMode> {};
INSTANTIATE_TEST_SUITE_P(Io, BlockStructure, ::testing::Values(IOMode::Ascii, IOMode::Binary),
                         [](const auto& info) { return info.param == IOMode::Ascii ? "Text" : "Binary"; });

TEST_P(BlockStructure, FindStopsAtANestedEndWithoutTakingTheParentsEnd) {
  const std::string data = NestedData(GetParam());
  {
    BlockReader reader(GetParam(), data);
    EXPECT_EQ(Walk(reader.state(), false), "OUTR@1 AAAA@2=1 INNR@2 XXXX@3=7 0@2 BBBB@2=2 0@1 AFTR@1=5 0@0 ");
    EXPECT_TRUE(reader.problems().empty()) << reader.problems().front();
  }
  {
    // Leaving Inner after its first block skips the rest of it, unknown nesting included.
    BlockReader reader(GetParam(), data);
    EXPECT_EQ(Walk(reader.state(), true), "OUTR@1 AAAA@2=1 INNR@2 XXXX@3=7 BBBB@2=2 0@1 AFTR@1=5 0@0 ");
    EXPECT_TRUE(reader.problems().empty()) << reader.problems().front();
  }
  {
    // Ending Outer right after entering it, then a leaf after reading only part of it.
    BlockReader reader(GetParam(), data);
    const LWLoadState* ls = reader.state();
    ASSERT_EQ(LWLOAD_FIND(ls, kRootList), ID_OUTR);
    LWLOAD_END(ls);
    EXPECT_EQ(LWLOAD_DEPTH(ls), 0);
    ASSERT_EQ(LWLOAD_FIND(ls, kRootList), ID_AFTR);
    LWLOAD_END(ls);
    EXPECT_EQ(LWLOAD_FIND(ls, kRootList), 0u);
    EXPECT_TRUE(reader.problems().empty()) << reader.problems().front();
  }
}

TEST_P(BlockStructure, SkipsUnknownLeafAndNestedBlocks) {
  // Every root block but After is unknown to the reader, and the unknown ones hold blocks
  // named like known ones.
  BlockWriter w(GetParam());
  const LWSaveState* s = w.state();
  Leaf(s, kUnknown, 1);
  LWSAVE_BEGIN(s, &kJunk, 0);
  Leaf(s, kAfter, 100);
  LWSAVE_BEGIN(s, &kJunk, 0);
  Leaf(s, kAfter, 200);
  LWSAVE_END(s);
  LWSAVE_END(s);
  if (GetParam() == IOMode::Ascii) {
    const int values[] = {11, 12, 13};
    LWSAVE_I4(s, values, 3);  // a data line outside any block
  }
  Leaf(s, kAfter, 5);
  Leaf(s, kUnknown, 6);

  BlockReader reader(GetParam(), w.data());
  const LWLoadState* ls = reader.state();
  const LWBlockIdent afterOnly[] = {kAfter, {0, nullptr}};
  ASSERT_EQ(LWLOAD_FIND(ls, afterOnly), ID_AFTR);
  int v = 0;
  EXPECT_EQ(LWLOAD_I4(ls, &v, 1), 1);
  EXPECT_EQ(v, 5);
  LWLOAD_END(ls);
  EXPECT_EQ(LWLOAD_FIND(ls, afterOnly), 0u);
  EXPECT_EQ(LWLOAD_DEPTH(ls), 0);
  EXPECT_TRUE(reader.problems().empty()) << reader.problems().front();
}

TEST(TextLayout, HandWrittenQuirksAreTolerated) {
  // Tabs, odd indentation, CRLF endings, blank lines, a stray data line and a "{" with no blank.
  const std::string data =
      "\r\n"
      "Unknown 1 2 3\r\n"
      "\t{Junk\r\n"
      "\t\tAfter 100\r\n"
      "   }\r\n"
      "\r\n"
      "11 12 13\r\n"
      "      After\t5   \r\n";
  BlockReader reader(IOMode::Ascii, data);
  const LWLoadState* ls = reader.state();
  const LWBlockIdent afterOnly[] = {kAfter, {0, nullptr}};
  ASSERT_EQ(LWLOAD_FIND(ls, afterOnly), ID_AFTR);
  int v[2] = {0, -1};
  EXPECT_EQ(LWLOAD_I4(ls, v, 2), 1);
  EXPECT_EQ(v[0], 5);
  EXPECT_EQ(v[1], -1);
  LWLOAD_END(ls);
  EXPECT_EQ(LWLOAD_FIND(ls, afterOnly), 0u);
  EXPECT_TRUE(reader.problems().empty()) << reader.problems().front();
}

TEST(TextLayout, ShortLinesGiveShortCountsAndNeverWrap) {
  const LWBlockIdent list[] = {{LWID_('L', 'T', 'I', 'M'), "LocalTime"},
                               {LWID_('E', 'P', 'O', 'C'), "Epoch"},
                               {LWID_('N', 'A', 'M', 'E'), "Name"},
                               {0, nullptr}};
  BlockReader reader(IOMode::Ascii,
                     "LocalTime 2000 4 24 2 5\n"
                     "Epoch 1999\n"
                     "7 8\n"
                     "Name raw text  here\n"
                     "9 10\n"
                     "11\n");
  const LWLoadState* ls = reader.state();

  ASSERT_EQ(LWLOAD_FIND(ls, list), list[0].id);
  int ltim[6] = {-1, -1, -1, -1, -1, -1};
  EXPECT_EQ(LWLOAD_I4(ls, ltim, 6), 5);
  EXPECT_EQ(ltim[4], 5);
  EXPECT_EQ(ltim[5], -1);  // not 1999 from the next line
  EXPECT_TRUE(reader.problems().empty());
  LWLOAD_END(ls);

  // A used-up leaf stays used up: the data line after it is not the block's.
  ASSERT_EQ(LWLOAD_FIND(ls, list), list[1].id);
  float epoch[2] = {0, -1};
  EXPECT_EQ(LWLOAD_FP(ls, epoch, 2), 1);
  EXPECT_EQ(epoch[0], 1999.0f);
  EXPECT_EQ(epoch[1], -1.0f);
  EXPECT_EQ(LWLOAD_FP(ls, epoch, 1), 0);
  EXPECT_EQ(epoch[0], 1999.0f);
  LWLOAD_END(ls);

  // Data lines outside blocks are read where the cursor stands.
  int v[3] = {0, 0, 0};
  EXPECT_EQ(LWLOAD_I4(ls, v, 3), 2);
  EXPECT_EQ(v[1], 8);

  // Raw reads hand out the rest of the leaf line piecewise, then report its end.
  ASSERT_EQ(LWLOAD_FIND(ls, list), list[2].id);
  char raw[8] = {};
  EXPECT_EQ(ls->read(ls->readData, raw, 4), 4);
  EXPECT_EQ(std::string(raw, 4), "raw ");
  EXPECT_EQ(ls->read(ls->readData, raw, 8), 8);
  EXPECT_EQ(std::string(raw, 8), "text  he");
  EXPECT_EQ(ls->read(ls->readData, raw, 8), 2);
  EXPECT_EQ(std::string(raw, 2), "re");
  EXPECT_EQ(ls->read(ls->readData, raw, 8), -1);
  LWLOAD_END(ls);

  // Each read takes from one line, and a used-up line is left behind.
  EXPECT_EQ(LWLOAD_I4(ls, v, 3), 2);
  EXPECT_EQ(v[1], 10);
  EXPECT_EQ(LWLOAD_I4(ls, v, 3), 1);
  EXPECT_EQ(v[0], 11);
  EXPECT_EQ(ls->read(ls->readData, raw, 8), -1);

  const std::vector<std::string> expected = {"<memory>: line 2: readFP: nothing left to read in block Epoch"};
  EXPECT_EQ(reader.problems(), expected);
}

TEST(TextLayout, StringsLoseTheirQuotesAndNeverOverflow) {
  const LWBlockIdent list[] = {{LWID_('N', 'A', 'M', 'E'), "Names"}, {0, nullptr}};
  BlockReader reader(IOMode::Ascii, "Names \"two words\" bare \"\" \"longer than four\" \"open\n");
  const LWLoadState* ls = reader.state();
  ASSERT_EQ(LWLOAD_FIND(ls, list), list[0].id);

  char buf[16];
  EXPECT_EQ(LWLOAD_STR(ls, buf, sizeof buf), 9);
  EXPECT_STREQ(buf, "two words");
  EXPECT_EQ(LWLOAD_STR(ls, buf, sizeof buf), 4);
  EXPECT_STREQ(buf, "bare");
  std::memset(buf, 'x', sizeof buf);
  EXPECT_EQ(LWLOAD_STR(ls, buf, sizeof buf), 0);
  EXPECT_STREQ(buf, "");

  // max counts the terminator; nothing past it is touched.
  char small[8];
  std::memset(small, '#', sizeof small);
  EXPECT_EQ(LWLOAD_STR(ls, small, 4), 3);
  EXPECT_STREQ(small, "lon");
  EXPECT_EQ(small[4], '#');
  EXPECT_TRUE(reader.problems().empty());

  // A string missing its closing quote is taken to the end of the line, and noted.
  EXPECT_EQ(LWLOAD_STR(ls, buf, sizeof buf), 4);
  EXPECT_STREQ(buf, "open");
  ASSERT_EQ(reader.problems().size(), 1u);
  EXPECT_EQ(reader.problems()[0], "<memory>: line 1: readStr: string has no closing quote");
  EXPECT_EQ(LWLOAD_STR(ls, buf, sizeof buf), 0);
}

TEST(TextLayout, NumbersAcceptEveryWrittenFormAndRejectTheRest) {
  const LWBlockIdent list[] = {{LWID_('H', 'E', 'X', ' '), "Hex"},
                               {LWID_('B', 'Y', 'T', 'E'), "Bytes"},
                               {LWID_('R', 'E', 'A', 'L'), "Real"},
                               {LWID_('I', 'N', 'T', ' '), "Int"},
                               {0, nullptr}};
  BlockReader reader(IOMode::Ascii,
                     "Hex ff 0x1A 0XbEeF 7 00000001 FFFFFFFF\n"
                     "Bytes 7F 0x80 1FF\n"
                     "Real +2.5 -1e3 0x1p-2 inf 1.5x\n"
                     "Int -128 127 128 +5\n",
                     "num.lws");
  const LWLoadState* ls = reader.state();

  ASSERT_EQ(LWLOAD_FIND(ls, list), list[0].id);
  unsigned int u4[6] = {};
  EXPECT_EQ(LWLOAD_U4(ls, u4, 6), 6);
  EXPECT_EQ(u4[0], 0xFFu);
  EXPECT_EQ(u4[1], 0x1Au);
  EXPECT_EQ(u4[2], 0xBEEFu);
  EXPECT_EQ(u4[3], 7u);
  EXPECT_EQ(u4[4], 1u);
  EXPECT_EQ(u4[5], 0xFFFFFFFFu);
  LWLOAD_END(ls);

  ASSERT_EQ(LWLOAD_FIND(ls, list), list[1].id);
  unsigned char u1[3] = {0, 0, 0x55};
  EXPECT_EQ(LWLOAD_U1(ls, u1, 3), 2);  // 0x1FF does not fit a byte
  EXPECT_EQ(u1[0], 0x7F);
  EXPECT_EQ(u1[1], 0x80);
  EXPECT_EQ(u1[2], 0x55);
  unsigned short u2 = 0;
  EXPECT_EQ(LWLOAD_U2(ls, &u2, 1), 1);  // the rejected value is still there for a wider read
  EXPECT_EQ(u2, 0x1FF);
  LWLOAD_END(ls);

  ASSERT_EQ(LWLOAD_FIND(ls, list), list[2].id);
  double dp[5] = {};
  EXPECT_EQ(LWLOAD_DP(ls, dp, 5), 4);
  EXPECT_EQ(dp[0], 2.5);
  EXPECT_EQ(dp[1], -1000.0);
  EXPECT_EQ(dp[2], 0.25);
  EXPECT_TRUE(std::isinf(dp[3]));
  LWLOAD_END(ls);

  ASSERT_EQ(LWLOAD_FIND(ls, list), list[3].id);
  char i1[3] = {0, 0, 9};
  EXPECT_EQ(LWLOAD_I1(ls, i1, 3), 2);
  EXPECT_EQ(i1[0], static_cast<char>(-128));
  EXPECT_EQ(i1[1], 127);
  EXPECT_EQ(i1[2], 9);
  short i2[2] = {};
  EXPECT_EQ(LWLOAD_I2(ls, i2, 2), 2);
  EXPECT_EQ(i2[0], 128);
  EXPECT_EQ(i2[1], 5);
  LWLOAD_END(ls);

  const std::vector<std::string> expected = {
      "num.lws: line 2: readU1: \"1FF\" is out of range",
      "num.lws: line 3: readDP: \"1.5x\" is not a number",
      "num.lws: line 4: readI1: \"128\" is out of range",
  };
  EXPECT_EQ(reader.problems(), expected);
}

TEST(TextLayout, BrokenStructureIsReportedWhereItIs) {
  const LWBlockIdent list[] = {
      {LWID_('H', 'R', 'Z', 'N'), "Horizon"}, {LWID_('T', 'Y', 'P', 'E'), "Type"}, {0, nullptr}};
  BlockReader reader(IOMode::Ascii,
                     "Type 1\n"
                     "}\n"
                     "{ Skipped\n"
                     "  Type 2\n"
                     "}\n"
                     "{ Horizon\n"
                     "  Type 3\n"
                     "  { Unclosed\n",
                     "scene.lws");
  reader.setOrigin(41);  // the region starts on line 41 of the scene file
  const LWLoadState* ls = reader.state();
  int v = 0;
  ASSERT_EQ(LWLOAD_FIND(ls, list), list[1].id);
  LWLOAD_END(ls);
  ASSERT_EQ(LWLOAD_FIND(ls, list), list[0].id);  // past the stray "}" and the unknown block
  ASSERT_EQ(LWLOAD_FIND(ls, list), list[1].id);
  EXPECT_EQ(LWLOAD_I4(ls, &v, 1), 1);
  EXPECT_EQ(v, 3);
  LWLOAD_END(ls);
  EXPECT_EQ(LWLOAD_FIND(ls, list), 0u);  // the unclosed unknown block runs to the end
  EXPECT_EQ(LWLOAD_DEPTH(ls), 1);
  LWLOAD_END(ls);
  LWLOAD_END(ls);  // one too many
  EXPECT_EQ(LWLOAD_DEPTH(ls), 0);
  EXPECT_EQ(LWLOAD_FIND(ls, list), 0u);

  const std::vector<std::string> expected = {
      "scene.lws: line 42: '}' without a matching '{'",
      "scene.lws: line 48: block Unclosed is never closed (missing '}')",
      "scene.lws: line 46: block Horizon is never closed (missing '}')",
      "scene.lws: line 48: endBlk with no open block",
  };
  EXPECT_EQ(reader.problems(), expected);
}

TEST(BinaryLayout, DamagedSizesStayInsideTheirParent) {
  // HRZN (size 20) holds TYPE claiming 0x100 bytes: the damage must end with HRZN so that
  // EPOC after it is still found; then a header cut short at the end of the data.
  const unsigned char bytes[] = {
      'H', 'R', 'Z', 'N', 0x00, 0x14,                                      //
      'T', 'Y', 'P', 'E', 0x01, 0x00, 0,    0,    0,    1,    0, 0, 0, 2,  //
      0,   0,   0,   3,   0,    0,                                         // 14 + 6 = 20 bytes of HRZN
      'E', 'P', 'O', 'C', 0x00, 0x04, 0x44, 0xFA, 0x00, 0x00,              //
      'T', 'Z', 'O',                                                       // a header cut short
  };
  const LWBlockIdent root[] = {
      {LWID_('H', 'R', 'Z', 'N'), "Horizon"}, {LWID_('E', 'P', 'O', 'C'), "Epoch"}, {0, nullptr}};
  const LWBlockIdent sub[] = {{LWID_('T', 'Y', 'P', 'E'), "Type"}, {0, nullptr}};
  BlockReader reader(IOMode::Binary, std::string(reinterpret_cast<const char*>(bytes), sizeof bytes),
                     "obj.lwo");
  reader.setOrigin(1, 1000);
  const LWLoadState* ls = reader.state();

  ASSERT_EQ(LWLOAD_FIND(ls, root), root[0].id);
  ASSERT_EQ(LWLOAD_FIND(ls, sub), sub[0].id);
  int v[8] = {};
  EXPECT_EQ(LWLOAD_I4(ls, v, 8), 3);  // only what lies inside HRZN
  EXPECT_EQ(v[2], 3);
  char raw[8];
  EXPECT_EQ(ls->read(ls->readData, raw, 8), 2);
  EXPECT_EQ(ls->read(ls->readData, raw, 8), -1);
  LWLOAD_END(ls);
  EXPECT_EQ(LWLOAD_FIND(ls, sub), 0u);
  LWLOAD_END(ls);

  ASSERT_EQ(LWLOAD_FIND(ls, root), root[1].id);
  float epoch = 0;
  EXPECT_EQ(LWLOAD_FP(ls, &epoch, 1), 1);
  EXPECT_EQ(epoch, 2000.0f);
  LWLOAD_END(ls);
  EXPECT_EQ(LWLOAD_FIND(ls, root), 0u);
  EXPECT_EQ(LWLOAD_FIND(ls, root), 0u);  // noted once, not once per call

  const std::vector<std::string> expected = {
      "obj.lwo: offset 1006: block TYPE claims 256 bytes but only 14 remain in block HRZN",
      "obj.lwo: offset 1012: readI4: reading past the end of block TYPE (asked for 8, 3 there)",
      "obj.lwo: offset 1036: 3 stray byte(s) where a block header was expected in the data",
  };
  EXPECT_EQ(reader.problems(), expected);
}

}  // namespace
