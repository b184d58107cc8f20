// How the corrector keeps its state: the block layout of a save in both forms, loading in any
// block order, the invert byte, and the host's copy.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "colour/CorrectorSession.h"
#include "lwhost/Envelope.h"

namespace colourtest {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using lwhost::IOMode;

// ---- Text form: "{ Token" opens a block, "}" closes it, any other line is a leaf.
struct TextBlock {
  std::string token;
  std::string rest;  // a leaf's values
  bool leaf = true;
  std::vector<TextBlock> children;
};

std::vector<TextBlock> ParseText(const std::string& text) {
  std::vector<TextBlock> top;
  std::vector<std::vector<TextBlock>*> open{&top};
  std::istringstream lines(text);
  std::string line;
  while (std::getline(lines, line)) {
    line.erase(0, line.find_first_not_of(' '));
    if (line.empty()) continue;
    if (line == "}") {
      if (open.size() < 2) throw std::runtime_error("unbalanced }");
      open.pop_back();
      continue;
    }
    TextBlock block;
    if (line.compare(0, 2, "{ ") == 0) {
      block.token = line.substr(2);
      block.leaf = false;
      open.back()->push_back(block);
      open.push_back(&open.back()->back().children);
    } else {
      const std::size_t blank = line.find(' ');
      block.token = line.substr(0, blank);
      block.rest = blank == std::string::npos ? "" : line.substr(blank + 1);
      open.back()->push_back(block);
    }
  }
  if (open.size() != 1) throw std::runtime_error("unclosed block");
  return top;
}

void PrintText(const std::vector<TextBlock>& blocks, int depth, std::string& out) {
  const std::string indent(2 * depth, ' ');
  for (const TextBlock& b : blocks) {
    if (b.leaf) {
      out += indent + b.token + (b.rest.empty() ? "" : " " + b.rest) + "\n";
    } else {
      out += indent + "{ " + b.token + "\n";
      PrintText(b.children, depth + 1, out);
      out += indent + "}\n";
    }
  }
}

std::string PrintText(const std::vector<TextBlock>& blocks) {
  std::string out;
  PrintText(blocks, 0, out);
  return out;
}

std::vector<std::string> Tokens(const std::vector<TextBlock>& blocks) {
  std::vector<std::string> tokens;
  for (const TextBlock& b : blocks) tokens.push_back(b.token);
  return tokens;
}

TextBlock& Find(std::vector<TextBlock>& blocks, const std::string& token) {
  for (TextBlock& b : blocks)
    if (b.token == token) return b;
  throw std::runtime_error("no block " + token);
}

// ---- Binary form: a 4-byte ID, a 16-bit big-endian size, then the content.
struct BinaryBlock {
  std::string id;
  std::string content;
};

std::vector<BinaryBlock> ParseBinary(const std::string& data) {
  std::vector<BinaryBlock> blocks;
  std::size_t at = 0;
  while (at < data.size()) {
    if (data.size() - at < 6) throw std::runtime_error("truncated block header");
    const std::size_t size = (static_cast<unsigned char>(data[at + 4]) << 8) | static_cast<unsigned char>(data[at + 5]);
    if (data.size() - at - 6 < size) throw std::runtime_error("block runs past its parent");
    blocks.push_back({data.substr(at, 4), data.substr(at + 6, size)});
    at += 6 + size;
  }
  return blocks;
}

std::string JoinBinary(const std::vector<BinaryBlock>& blocks) {
  std::string out;
  for (const BinaryBlock& b : blocks) {
    out += b.id;
    out += static_cast<char>(b.content.size() >> 8);
    out += static_cast<char>(b.content.size() & 0xFF);
    out += b.content;
  }
  return out;
}

std::vector<std::string> Ids(const std::vector<BinaryBlock>& blocks) {
  std::vector<std::string> ids;
  for (const BinaryBlock& b : blocks) ids.push_back(b.id);
  return ids;
}

BinaryBlock& Find(std::vector<BinaryBlock>& blocks, const std::string& id) {
  for (BinaryBlock& b : blocks)
    if (b.id == id) return b;
  throw std::runtime_error("no block " + id);
}

class CorrectorStorage : public CorrectorTest {
 protected:
  // Every setting away from its default, one of them animated.
  Corrector addMovedCorrector() {
    Corrector c = addCorrector();
    setColour(c, {0.8, 0.4, 0.2});
    set(c, kScalarId, 0.3);
    set(c, kBrightnessId, 1.25);
    set(c, kContrastId, 0.5);
    set(c, kHueId, 1.0);
    set(c, kSaturationId, 0.4);
    set(c, kGammaId, 2.0);
    setInvert(c, true);
    lwhost::VParm& hue = parameter(c, kHueId);
    hue.addKey(0, 0.0, 1.0);
    hue.envelope(0)->addKey(1.0, 2.0, lwhost::kShapeLinear);
    return c;
  }

  std::string save(Corrector& c, IOMode mode) {
    std::string error = "stale";
    std::string data = c.node.instance().save(mode, &error);
    EXPECT_EQ(error, "");
    return data;
  }

  // Both outputs halfway through the hue's animation.
  std::pair<Colour, double> outputsAtHalf(Corrector& c) {
    sample(c, 0.5, 12);
    return {colourOut(c), scalarOut(c)};
  }
};

TEST_F(CorrectorStorage, SavesVersionFallbacksAndTheCorrectionInThatOrder) {
  Corrector plain = addCorrector();
  Corrector moved = addMovedCorrector();

  for (Corrector* c : {&plain, &moved}) {
    const bool inverted = c == &moved;
    SCOPED_TRACE(inverted ? "moved" : "plain");
    std::vector<TextBlock> text = ParseText(save(*c, IOMode::Ascii));
    ASSERT_THAT(Tokens(text), ElementsAre("Version", "InColour", "InScala", "SimpleColourCorrection"));
    EXPECT_TRUE(text[0].leaf);
    EXPECT_EQ(text[0].rest, "1");
    for (int k = 1; k <= 3; ++k) EXPECT_FALSE(text[k].leaf) << text[k].token;
    const std::vector<TextBlock>& inner = text[3].children;
    ASSERT_THAT(Tokens(inner), ElementsAre("Brightness", "Contrast", "Hue", "Saturation", "Gamma", "Invert"));
    for (int k = 0; k < 5; ++k) {
      EXPECT_FALSE(inner[k].leaf) << inner[k].token;
      ASSERT_FALSE(inner[k].children.empty()) << inner[k].token;
      EXPECT_EQ(inner[k].children.front().token, "Value") << "a parameter's own sub-blocks";
    }
    EXPECT_TRUE(inner[5].leaf);
    EXPECT_EQ(inner[5].rest, inverted ? "01" : "00");

    std::vector<BinaryBlock> binary = ParseBinary(save(*c, IOMode::Binary));
    ASSERT_THAT(Ids(binary), ElementsAre("VERS", "ICOL", "ISCL", "SICC"));
    EXPECT_EQ(binary[0].content, std::string("\x00\x01", 2)) << "one big-endian I2";
    std::vector<BinaryBlock> sicc = ParseBinary(binary[3].content);
    ASSERT_THAT(Ids(sicc), ElementsAre("CBRT", "CCNT", "CHUE", "CSAT", "CGAM", "CINV"));
    EXPECT_EQ(sicc[5].content, std::string(1, inverted ? '\x01' : '\x00')) << "one unsigned byte";
    for (int k = 1; k <= 2; ++k) EXPECT_EQ(Ids(ParseBinary(binary[k].content)).front(), "VALU");
  }
}

TEST_F(CorrectorStorage, LoadsEitherFormInAnyBlockOrder) {
  Corrector original = addMovedCorrector();
  const auto expected = outputsAtHalf(original);
  EXPECT_NE(expected.first, (Colour{0.8, 0.4, 0.2})) << "the settings do change the colour";

  {
    SCOPED_TRACE("text");
    const std::string saved = save(original, IOMode::Ascii);
    std::vector<TextBlock> blocks = ParseText(saved);
    std::reverse(blocks.begin(), blocks.end());
    std::vector<TextBlock>& inner = Find(blocks, "SimpleColourCorrection").children;
    std::reverse(inner.begin(), inner.end());
    // Blocks the corrector does not know are passed over at both levels.
    TextBlock stranger{"Unknown", "7 7", true, {}};
    inner.insert(inner.begin() + 2, stranger);
    blocks.insert(blocks.begin() + 1, stranger);
    const std::string shuffled = PrintText(blocks);
    ASSERT_NE(shuffled, saved);

    Corrector loaded = addCorrector();
    EXPECT_EQ(loaded.node.instance().load(IOMode::Ascii, shuffled), "");
    EXPECT_EQ(save(loaded, IOMode::Ascii), saved);
    EXPECT_EQ(outputsAtHalf(loaded), expected);
    EXPECT_EQ(loaded.panel.value(kInvertId).integer[0], 1);
    EXPECT_TRUE(parameter(loaded, kHueId).enveloped());
  }
  {
    SCOPED_TRACE("binary");
    const std::string saved = save(original, IOMode::Binary);
    std::vector<BinaryBlock> blocks = ParseBinary(saved);
    std::reverse(blocks.begin(), blocks.end());
    BinaryBlock& sicc = Find(blocks, "SICC");
    std::vector<BinaryBlock> inner = ParseBinary(sicc.content);
    std::rotate(inner.begin(), inner.begin() + 3, inner.end());  // CSAT CGAM CINV CBRT CCNT CHUE
    inner.insert(inner.begin() + 1, BinaryBlock{"XTRA", std::string("\x00\x07", 2)});
    sicc.content = JoinBinary(inner);
    const std::string shuffled = JoinBinary(blocks);

    Corrector loaded = addCorrector();
    EXPECT_EQ(loaded.node.instance().load(IOMode::Binary, shuffled), "");
    EXPECT_EQ(save(loaded, IOMode::Binary), saved);
    EXPECT_EQ(outputsAtHalf(loaded), expected);
    EXPECT_EQ(loaded.panel.value(kInvertId).integer[0], 1);
  }

  // Nothing to read leaves the defaults and is no error.
  Corrector empty = addCorrector();
  const std::string defaults = save(empty, IOMode::Ascii);
  EXPECT_EQ(empty.node.instance().load(IOMode::Ascii, ""), "");
  EXPECT_EQ(save(empty, IOMode::Ascii), defaults);
}

TEST_F(CorrectorStorage, OnlyAnInvertByteOfOneSetsInvert) {
  Corrector plain = addCorrector();
  const std::string text = save(plain, IOMode::Ascii);
  const std::string binary = save(plain, IOMode::Binary);
  ASSERT_THAT(text, HasSubstr("  Invert 00\n"));
  ASSERT_EQ(binary.substr(binary.size() - 7), std::string("CINV\x00\x01\x00", 7));

  auto withByte = [&](IOMode mode, const char* hex, char byte) {
    if (mode == IOMode::Binary) return binary.substr(0, binary.size() - 1) + byte;
    std::string edited = text;
    edited.replace(edited.find("Invert 00"), 9, std::string("Invert ") + hex);
    return edited;
  };
  for (IOMode mode : {IOMode::Ascii, IOMode::Binary}) {
    SCOPED_TRACE(mode == IOMode::Ascii ? "text" : "binary");
    Corrector one = addCorrector();
    EXPECT_EQ(one.node.instance().load(mode, withByte(mode, "01", '\x01')), "");
    EXPECT_EQ(one.panel.value(kInvertId).integer[0], 1);

    Corrector two = addCorrector();
    EXPECT_EQ(two.node.instance().load(mode, withByte(mode, "02", '\x02')), "");
    EXPECT_EQ(two.panel.value(kInvertId).integer[0], 0) << "2 is not 1";
    sample(two);
    EXPECT_THAT(colourOut(two), ElementsAre(0.0, 0.0, 0.0)) << "the black fallback stays uninverted";

    // A 0 does not clear the switch: the byte only ever sets it.
    Corrector inverted = addCorrector();
    setInvert(inverted, true);
    EXPECT_EQ(inverted.node.instance().load(mode, withByte(mode, "00", '\x00')), "");
    EXPECT_EQ(inverted.panel.value(kInvertId).integer[0], 1);
  }
}

TEST_F(CorrectorStorage, CopyTakesFallbacksParametersAndInvert) {
  Corrector original = addMovedCorrector();
  const std::string saved = save(original, IOMode::Ascii);
  const auto expected = outputsAtHalf(original);

  Corrector copy = addCorrector();
  EXPECT_EQ(copy.node.instance().copyFrom(original.node.instance()), "");
  EXPECT_EQ(save(copy, IOMode::Ascii), saved);
  EXPECT_EQ(outputsAtHalf(copy), expected);
  EXPECT_EQ(copy.panel.value(kInvertId).integer[0], 1);

  // The copy has parameters of its own: editing the original afterwards leaves it alone.
  for (unsigned int cid : {kColourId, kScalarId, kBrightnessId, kContrastId, kHueId, kSaturationId, kGammaId})
    EXPECT_NE(copy.panel.value(cid).vparm, original.panel.value(cid).vparm) << std::hex << cid;
  set(original, kBrightnessId, 3.0);
  setColour(original, {0, 0, 1});
  setInvert(original, false);
  parameter(original, kHueId).setState(0);
  EXPECT_EQ(save(copy, IOMode::Ascii), saved);
  EXPECT_EQ(outputsAtHalf(copy), expected);
}

}  // namespace
}  // namespace colourtest
