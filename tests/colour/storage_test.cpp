// How the corrector keeps its state: the block layout of a save in both forms, loading in any
// block order, the invert byte, and the host's copy.
#include <algorithm>
#include <numeric>
#include <string>
#include <vector>

#include "colour/CorrectorSession.h"
#include "support/SavedBlocks.h"

namespace colourtest {
namespace {

using lwhost::IOMode;


class CorrectorStorage : public CorrectorTest {
 protected:
  // Every setting away from its default, the hue animated.
  Corrector addMovedCorrector() {
    Corrector c = addCorrector();
    setColour(c, {0.8, 0.4, 0.2});
    set(c, kScalarId, 0.3);
    apply(c, {1.25, 0.5, 1.0, 0.4, 2.0, true});
    parameter(c, kHueId).addKey(0, 0.0, 1.0);
    parameter(c, kHueId).envelope(0)->addKey(1.0, 2.0, lwhost::kShapeLinear);
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
  Corrector c = addCorrector();
  // Text: each block's first line, two levels deep; a parameter's own lines sit deeper.
  const auto heads = [](const std::vector<std::string>& blocks) {
    std::string out;
    for (const std::string& b : blocks) out += b.substr(0, b.find('\n')) + "|";
    return out;
  };
  const std::vector<std::string> top = Split(save(c, IOMode::Ascii), IOMode::Ascii);
  ASSERT_EQ(heads(top), "Version 1|{ InColour|{ InScala|{ SimpleColourCorrection|");
  const std::vector<std::string> inner = Split(Inner(top[3], IOMode::Ascii), IOMode::Ascii);
  EXPECT_EQ(heads(inner), "  { Brightness|  { Contrast|  { Hue|  { Saturation|  { Gamma|  Invert 00|");

  // Binary: the version one big-endian I2, the invert one unsigned byte; "+" marks a block
  // holding a parameter's own blocks.
  const std::string binary = save(c, IOMode::Binary);
  std::vector<std::string> ids;
  for (const std::string& b : Split(binary, IOMode::Binary)) ids.push_back(b.substr(0, 4));
  for (const std::string& b : Split(Split(binary, IOMode::Binary).back().substr(6), IOMode::Binary))
    ids.push_back(b.substr(0, 4) + (b.substr(6, 4) == "VALU" ? "+" : ""));
  EXPECT_THAT(ids, ElementsAre("VERS", "ICOL", "ISCL", "SICC", "CBRT+", "CCNT+", "CHUE+", "CSAT+", "CGAM+", "CINV"));
  EXPECT_EQ(binary.substr(0, 8), std::string("VERS\0\2\0\1", 8));
  EXPECT_EQ(binary.substr(binary.size() - 7), std::string("CINV\0\1\0", 7));
}

TEST_F(CorrectorStorage, LoadsEitherFormInAnyBlockOrderAndCopies) {
  Corrector original = addMovedCorrector();
  const auto expected = outputsAtHalf(original);
  EXPECT_NE(expected.first, (Colour{0.8, 0.4, 0.2})) << "the settings do change the colour";

  for (IOMode mode : {IOMode::Ascii, IOMode::Binary}) {
    SCOPED_TRACE(mode == IOMode::Ascii ? "text" : "binary");
    const std::string saved = save(original, mode);
    // Both levels reversed, with a block the corrector does not know at each.
    const std::string stranger = mode == IOMode::Ascii ? "Unknown 7 7\n" : std::string("XTRA\0\2\0\7", 8);
    std::vector<std::string> blocks = Split(saved, mode);
    ASSERT_EQ(blocks.size(), 4u);
    std::vector<std::string> inner = Split(Inner(blocks[3], mode), mode);
    ASSERT_EQ(inner.size(), 6u);
    std::reverse(inner.begin(), inner.end());
    inner.insert(inner.begin() + 2, stranger);
    blocks[3] = Rewrap(blocks[3], std::accumulate(inner.begin(), inner.end(), std::string()), mode);
    std::reverse(blocks.begin(), blocks.end());
    blocks.insert(blocks.begin() + 1, stranger);

    Corrector loaded = addCorrector();
    EXPECT_EQ(loaded.node.instance().load(mode, std::accumulate(blocks.begin(), blocks.end(), std::string())), "");
    EXPECT_EQ(save(loaded, mode), saved);
    EXPECT_EQ(outputsAtHalf(loaded), expected);
  }

  // Nothing to read leaves the defaults and is no error.
  Corrector empty = addCorrector();
  const std::string defaults = save(empty, IOMode::Ascii);
  EXPECT_EQ(empty.node.instance().load(IOMode::Ascii, ""), "");
  EXPECT_EQ(save(empty, IOMode::Ascii), defaults);

  // A copy takes fallbacks, parameters and invert, into parameters of its own.
  const std::string saved = save(original, IOMode::Ascii);
  Corrector copy = addCorrector();
  EXPECT_EQ(copy.node.instance().copyFrom(original.node.instance()), "");
  EXPECT_EQ(save(copy, IOMode::Ascii), saved);
  EXPECT_EQ(outputsAtHalf(copy), expected);
  EXPECT_EQ(original.node.instance().copyFrom(original.node.instance()), "");
  EXPECT_EQ(save(original, IOMode::Ascii), saved) << "a copy onto itself changed something";
  set(original, kBrightnessId, 3.0);
  setColour(original, {0, 0, 1});
  setInvert(original, false);
  parameter(original, kHueId).setState(0);
  EXPECT_EQ(save(copy, IOMode::Ascii), saved);
  EXPECT_EQ(outputsAtHalf(copy), expected);
}

// A host that makes no parameters: every handle stays null. The table outlives the test, because
// the module's parameters keep the last table they were given until they go.
struct RefusingParameters {
  static inline const LWVParmFuncs* real = nullptr;
  static inline int copies = 0;
  static inline LWVParmFuncs table;

  static void Install(lwhost::Host& host, const LWVParmFuncs* hostTable) {
    real = hostTable;
    copies = 0;
    table = *hostTable;
    table.create = [](int, int) -> LWVParmID { return nullptr; };
    table.copy = [](LWVParmID to, LWVParmID from) -> LWError {
      ++copies;
      return real->copy(to, from);
    };
    host.globals().provide(LWVPARMFUNCS_GLOBAL, &table);
  }
};

// Without handles only the sampled values can travel, and the host's copy is never asked.
TEST_F(CorrectorStorage, CopiesWithoutParameterHandlesStillTakeTheValues) {
  Corrector real = addMovedCorrector();
  const auto expected = outputsAtHalf(real);
  RefusingParameters::Install(session.host(), session.animation().vparmFuncs());
  Corrector first = addCorrector(), second = addCorrector();
  EXPECT_EQ(first.node.instance().copyFrom(real.node.instance()), "");
  EXPECT_EQ(second.node.instance().copyFrom(first.node.instance()), "");
  EXPECT_EQ(outputsAtHalf(second), expected);
  EXPECT_EQ(RefusingParameters::copies, 0);
}

TEST_F(CorrectorStorage, OnlyAnInvertByteOfOneSetsInvert) {
  Corrector plain = addCorrector();
  const std::string text = save(plain, IOMode::Ascii), binary = save(plain, IOMode::Binary);
  const auto withByte = [&](IOMode mode, char byte) {
    if (mode == IOMode::Binary) return binary.substr(0, binary.size() - 1) + byte;
    std::string edited = text;
    return edited.replace(edited.find("Invert 00"), 9, "Invert 0" + std::string(1, '0' + byte));
  };
  for (IOMode mode : {IOMode::Ascii, IOMode::Binary}) {
    SCOPED_TRACE(mode == IOMode::Ascii ? "text" : "binary");
    Corrector one = addCorrector(), two = addCorrector(), inverted = addCorrector();
    EXPECT_EQ(one.node.instance().load(mode, withByte(mode, 1)), "");
    EXPECT_EQ(one.panel.value(kInvertId).integer[0], 1);
    EXPECT_EQ(two.node.instance().load(mode, withByte(mode, 2)), "");
    EXPECT_EQ(two.panel.value(kInvertId).integer[0], 0) << "2 is not 1";
    sample(two);
    EXPECT_THAT(colourOut(two), ElementsAre(0.0, 0.0, 0.0)) << "the black fallback stays uninverted";
    // A 0 does not clear the switch: the byte only ever sets it.
    setInvert(inverted, true);
    EXPECT_EQ(inverted.node.instance().load(mode, withByte(mode, 0)), "");
    EXPECT_EQ(inverted.panel.value(kInvertId).integer[0], 1);
  }
}

}  // namespace
}  // namespace colourtest
