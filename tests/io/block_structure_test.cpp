// How the load state walks block structure: what it skips, where a search stops, how far a
// read may go, and what it reports about damaged data.
#include <gtest/gtest.h>

#include <array>
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
using Problems = std::vector<std::string>;

const LWBlockIdent kOuter{LWID_('O', 'U', 'T', 'R'), "Outer"}, kA{LWID_('A', 'A', 'A', 'A'), "A"},
    kInner{LWID_('I', 'N', 'N', 'R'), "Inner"}, kX{LWID_('X', 'X', 'X', 'X'), "X"},
    kB{LWID_('B', 'B', 'B', 'B'), "B"}, kAfter{LWID_('A', 'F', 'T', 'R'), "After"},
    kUnknown{LWID_('U', 'N', 'K', 'N'), "Unknown"}, kJunk{LWID_('J', 'U', 'N', 'K'), "Junk"};
const LWBlockIdent kRootList[] = {kOuter, kAfter, {0, nullptr}};
const LWBlockIdent kOuterList[] = {kA, kInner, kB, {0, nullptr}};
const LWBlockIdent kInnerList[] = {kX, {0, nullptr}};
const LWBlockIdent kAfterOnly[] = {kAfter, {0, nullptr}};

void Leaf(const LWSaveState* s, const LWBlockIdent& id, int value) {
  LWSAVE_BEGIN(s, &id, 1);
  LWSAVE_I4(s, &value, 1);
  LWSAVE_END(s);
}

// Outer { A 1, Inner { X 7, Unknown 3, Junk { Junk { X 99 } } }, B 2 }, Junk { After 100 }, After 5.
// The unknown blocks hold blocks of the searched lists: only skipping them whole keeps those unseen.
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
  LWSAVE_BEGIN(s, &kJunk, 0);
  Leaf(s, kAfter, 100);
  LWSAVE_END(s);
  Leaf(s, kAfter, 5);
  return w.data();
}

// Walks like a plug-in, logging "<id>@<depth>" per block found (leaves with "=<value>") and
// "0@<depth>" per search that came back empty. With leaveEarly, Inner is left after one block and
// leaves are ended unread: endBlk must skip what was not read.
std::string Walk(const LWLoadState* ls, const LWBlockIdent* list, bool leaveEarly) {
  std::string log;
  while (LWID id = LWLOAD_FIND(ls, list)) {
    log += std::string{char(id >> 24), char(id >> 16), char(id >> 8), char(id)} + "@" +
           std::to_string(LWLOAD_DEPTH(ls));
    if (id == kOuter.id || id == kInner.id) {
      log += " " + Walk(ls, id == kOuter.id ? kOuterList : kInnerList, leaveEarly);
    } else {
      int v = -1;
      if (!leaveEarly) LWLOAD_I4(ls, &v, 1);
      log += "=" + std::to_string(v) + " ";
    }
    LWLOAD_END(ls);
    if (leaveEarly && list == kInnerList) return log;
  }
  return log + "0@" + std::to_string(LWLOAD_DEPTH(ls)) + " ";
}

TEST(BlockStructure, FindStopsAtANestedEndAndSkipsUnknownBlocksWhole) {
  for (IOMode mode : {IOMode::Ascii, IOMode::Binary}) {
    const std::string data = NestedData(mode);
    for (bool early : {false, true}) {
      SCOPED_TRACE(std::string(mode == IOMode::Ascii ? "text" : "binary") + (early ? ", leaving early" : ""));
      BlockReader reader(mode, data);
      EXPECT_EQ(Walk(reader.state(), kRootList, early),
                early ? "OUTR@1 AAAA@2=-1 INNR@2 XXXX@3=-1 BBBB@2=-1 0@1 AFTR@1=-1 0@0 "
                      : "OUTR@1 AAAA@2=1 INNR@2 XXXX@3=7 0@2 BBBB@2=2 0@1 AFTR@1=5 0@0 ");
      EXPECT_TRUE(reader.problems().empty()) << reader.problems().front();
    }
  }
}

TEST(TextLayout, HandWrittenQuirksAreTolerated) {
  // Tabs, odd indentation, CRLF endings, blank lines, a stray data line and a "{" with no blank.
  BlockReader reader(IOMode::Ascii, "\r\nUnknown 1 2 3\r\n\t{Junk\r\n\t\tAfter 100\r\n   }\r\n\r\n"
                                    "11 12 13\r\n      After\t5   \r\n");
  const LWLoadState* ls = reader.state();
  ASSERT_EQ(LWLOAD_FIND(ls, kAfterOnly), kAfter.id);
  std::array<int, 2> v{0, -1};
  EXPECT_EQ(LWLOAD_I4(ls, v.data(), 2), 1);
  EXPECT_EQ(v, (std::array<int, 2>{5, -1}));
  LWLOAD_END(ls);
  EXPECT_EQ(LWLOAD_FIND(ls, kAfterOnly), 0u);
  EXPECT_TRUE(reader.problems().empty()) << reader.problems().front();
}

TEST(TextLayout, ShortLinesGiveShortCountsAndNeverWrap) {
  const LWBlockIdent list[] = {{LWID_('E', 'P', 'O', 'C'), "Epoch"}, {LWID_('N', 'A', 'M', 'E'), "Name"}, {0, nullptr}};
  BlockReader reader(IOMode::Ascii, "Epoch 1999\n7 8\nName raw text  here\n9 10\n11\n");
  const LWLoadState* ls = reader.state();

  // A short line gives a short count, and a used-up leaf stays used up: the data line after it
  // is not the block's.
  ASSERT_EQ(LWLOAD_FIND(ls, list), list[0].id);
  float epoch[2] = {};
  EXPECT_EQ(LWLOAD_FP(ls, epoch, 2), 1);
  EXPECT_EQ(LWLOAD_FP(ls, epoch, 1), 0);
  LWLOAD_END(ls);

  // Raw reads hand out the rest of the leaf line piecewise, then report its end.
  ASSERT_EQ(LWLOAD_FIND(ls, list), list[1].id);
  char raw[8] = {};
  EXPECT_EQ(ls->read(ls->readData, raw, 4), 4);
  EXPECT_EQ(std::string(raw, 4), "raw ");
  EXPECT_EQ(ls->read(ls->readData, raw, 8), 8);
  EXPECT_EQ(ls->read(ls->readData, raw, 8), 2);
  EXPECT_EQ(std::string(raw, 2), "re");
  EXPECT_EQ(ls->read(ls->readData, raw, 8), -1);
  LWLOAD_END(ls);

  // Data lines outside blocks are read where the cursor stands, each read from one line.
  int v[3] = {0, 0, 0};
  EXPECT_EQ(LWLOAD_I4(ls, v, 3), 2);
  EXPECT_EQ(v[1], 10);
  EXPECT_EQ(LWLOAD_I4(ls, v, 3), 1);
  EXPECT_EQ(v[0], 11);
  EXPECT_EQ(ls->read(ls->readData, raw, 8), -1);
  EXPECT_EQ(reader.problems(), Problems{"<memory>: line 1: readFP: nothing left to read in block Epoch"});
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

  // A string missing its closing quote is taken to the end of the line, and noted.
  EXPECT_EQ(LWLOAD_STR(ls, buf, sizeof buf), 4);
  EXPECT_STREQ(buf, "open");
  EXPECT_EQ(reader.problems(), Problems{"<memory>: line 1: readStr: string has no closing quote"});
  EXPECT_EQ(LWLOAD_STR(ls, buf, sizeof buf), 0);
}

TEST(TextLayout, NumbersAcceptEveryWrittenFormAndRejectTheRest) {
  const LWBlockIdent list[] = {{LWID_('H', 'E', 'X', ' '), "Hex"},
                               {LWID_('B', 'Y', 'T', 'E'), "Bytes"},
                               {LWID_('R', 'E', 'A', 'L'), "Real"},
                               {LWID_('I', 'N', 'T', ' '), "Int"},
                               {0, nullptr}};
  BlockReader reader(IOMode::Ascii,
                     "Hex ff 0x1A 0XbEeF FFFFFFFF\nBytes 7F 0x80 1FF\n"
                     "Real +2.5 -1e3 0x1p-2 inf 1.5x\nInt -128 127 128 +5\n",
                     "num.lws");
  const LWLoadState* ls = reader.state();

  ASSERT_EQ(LWLOAD_FIND(ls, list), list[0].id);
  std::array<unsigned int, 4> u4{};
  EXPECT_EQ(LWLOAD_U4(ls, u4.data(), 4), 4);
  EXPECT_EQ(u4, (std::array<unsigned int, 4>{0xFF, 0x1A, 0xBEEF, 0xFFFFFFFF}));
  LWLOAD_END(ls);

  ASSERT_EQ(LWLOAD_FIND(ls, list), list[1].id);
  std::array<unsigned char, 3> u1{0, 0, 0x55};
  EXPECT_EQ(LWLOAD_U1(ls, u1.data(), 3), 2);  // 0x1FF does not fit a byte
  EXPECT_EQ(u1, (std::array<unsigned char, 3>{0x7F, 0x80, 0x55}));
  unsigned short u2 = 0;
  EXPECT_EQ(LWLOAD_U2(ls, &u2, 1), 1);  // the rejected value is still there for a wider read
  EXPECT_EQ(u2, 0x1FF);
  LWLOAD_END(ls);

  ASSERT_EQ(LWLOAD_FIND(ls, list), list[2].id);
  std::array<double, 5> dp{};
  EXPECT_EQ(LWLOAD_DP(ls, dp.data(), 5), 4);
  EXPECT_EQ(dp, (std::array<double, 5>{2.5, -1000.0, 0.25, HUGE_VAL, 0}));
  LWLOAD_END(ls);

  ASSERT_EQ(LWLOAD_FIND(ls, list), list[3].id);
  std::array<char, 3> i1{0, 0, 9};
  EXPECT_EQ(LWLOAD_I1(ls, i1.data(), 3), 2);
  EXPECT_EQ(i1, (std::array<char, 3>{-128, 127, 9}));
  std::array<short, 2> i2{};
  EXPECT_EQ(LWLOAD_I2(ls, i2.data(), 2), 2);
  EXPECT_EQ(i2, (std::array<short, 2>{128, 5}));
  LWLOAD_END(ls);

  EXPECT_EQ(reader.problems(), (Problems{"num.lws: line 2: readU1: \"1FF\" is out of range",
                                         "num.lws: line 3: readDP: \"1.5x\" is not a number",
                                         "num.lws: line 4: readI1: \"128\" is out of range"}));
}

TEST(TextLayout, BrokenStructureIsReportedWhereItIs) {
  const LWBlockIdent list[] = {
      {LWID_('H', 'R', 'Z', 'N'), "Horizon"}, {LWID_('T', 'Y', 'P', 'E'), "Type"}, {0, nullptr}};
  BlockReader reader(IOMode::Ascii, "Type 1\n}\n{ Skipped\n  Type 2\n}\n{ Horizon\n  Type 3\n  { Unclosed\n",
                     "scene.lws");
  reader.setOrigin(41);  // the region starts on line 41 of the scene file
  const LWLoadState* ls = reader.state();
  ASSERT_EQ(LWLOAD_FIND(ls, list), list[1].id);
  LWLOAD_END(ls);
  ASSERT_EQ(LWLOAD_FIND(ls, list), list[0].id);  // past the stray "}" and the unknown block
  ASSERT_EQ(LWLOAD_FIND(ls, list), list[1].id);
  int v = 0;
  EXPECT_EQ(LWLOAD_I4(ls, &v, 1), 1);
  EXPECT_EQ(v, 3);
  LWLOAD_END(ls);
  EXPECT_EQ(LWLOAD_FIND(ls, list), 0u);  // the unclosed unknown block runs to the end
  EXPECT_EQ(LWLOAD_DEPTH(ls), 1);
  LWLOAD_END(ls);
  LWLOAD_END(ls);  // one too many
  EXPECT_EQ(LWLOAD_DEPTH(ls), 0);
  EXPECT_EQ(LWLOAD_FIND(ls, list), 0u);
  EXPECT_EQ(reader.problems(), (Problems{"scene.lws: line 42: '}' without a matching '{'",
                                         "scene.lws: line 48: block Unclosed is never closed (missing '}')",
                                         "scene.lws: line 46: block Horizon is never closed (missing '}')",
                                         "scene.lws: line 48: endBlk with no open block"}));
}

TEST(BinaryLayout, DamagedSizesStayInsideTheirParent) {
  // HRZN (20 bytes) holds TYPE claiming 0x100 bytes: the damage must end with HRZN so that EPOC
  // after it is still found; then a header cut short at the end of the data.
  const std::string bytes("HRZN\0\x14" "TYPE\x01\0\0\0\0\1\0\0\0\2\0\0\0\3\0\0" "EPOC\0\4\x44\xFA\0\0" "TZO", 39);
  const LWBlockIdent root[] = {
      {LWID_('H', 'R', 'Z', 'N'), "Horizon"}, {LWID_('E', 'P', 'O', 'C'), "Epoch"}, {0, nullptr}};
  const LWBlockIdent sub[] = {{LWID_('T', 'Y', 'P', 'E'), "Type"}, {0, nullptr}};
  BlockReader reader(IOMode::Binary, bytes, "obj.lwo");
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
  EXPECT_EQ(reader.problems(),
            (Problems{"obj.lwo: offset 1006: block TYPE claims 256 bytes but only 14 remain in block HRZN",
                      "obj.lwo: offset 1012: readI4: reading past the end of block TYPE (asked for 8, 3 there)",
                      "obj.lwo: offset 1036: 3 stray byte(s) where a block header was expected in the data"}));
}

}  // namespace
