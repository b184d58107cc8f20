#pragma once

#include <lwnodes.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <string>

#include "support/VornNodeTest.h"

namespace colourtest {

using ::testing::DoubleNear;
using ::testing::ElementsAre;
using ::testing::Pair;
using ::testing::Pointwise;
using Colour = std::array<double, 3>;

constexpr double kPi = 3.14159265358979323846;
constexpr double kTight = 1e-12;

// Bit patterns, so that -0.0 and 0.0 differ.
template <class T>
std::array<std::uint64_t, sizeof(T) / 8> Bits(const T& value) {
  std::array<std::uint64_t, sizeof(T) / 8> bits{};
  std::memcpy(bits.data(), &value, sizeof value);
  return bits;
}

// Form ids; the inputs of the same names follow the same order.
enum : unsigned int { kColourId = 0x9000, kScalarId, kBrightnessId, kContrastId, kHueId, kSaturationId, kGammaId };
enum : unsigned int { kInvertId = 0x9007, kDefaultId, kWebButtonId = 0x9900, kLogoId };

struct Settings {
  double brightness, contrast, hue, saturation, gamma;
  bool invert;
};

struct Corrector {
  lwhost::PluginNode& node;
  lwhost::XPanel& panel;
};

// Settings go in through the node's form, as a user types them, and come out of the node's
// outputs after a sampling pass, as the renderer reads them.
class CorrectorTest : public VornNodeTest {
 protected:
  Corrector addCorrector() {
    lwhost::PluginNode& node = add("SimpleColourCorrector");
    return {node, panel(node)};
  }

  lwhost::VParm& parameter(Corrector& c, unsigned int cid) {
    lwhost::VParm* p = session.animation().parameter(c.panel.value(cid).vparm);
    if (!p) throw std::runtime_error("control " + std::to_string(cid) + " shows no parameter");
    return *p;
  }

  static void set(Corrector& c, unsigned int cid, double value) {
    EXPECT_TRUE(c.panel.setNumber(cid, value)) << std::hex << cid;
  }
  static void setColour(Corrector& c, const Colour& rgb) { EXPECT_TRUE(c.panel.setVector(kColourId, rgb.data())); }
  static void setInvert(Corrector& c, bool on) { EXPECT_TRUE(c.panel.setInteger(kInvertId, on ? 1 : 0)); }
  static void apply(Corrector& c, const Settings& s) {
    set(c, kBrightnessId, s.brightness);
    set(c, kContrastId, s.contrast);
    set(c, kHueId, s.hue);
    set(c, kSaturationId, s.saturation);
    set(c, kGammaId, s.gamma);
    setInvert(c, s.invert);
  }

  static void sample(Corrector& c, LWTime time = 0.0, LWFrame frame = 0) {
    EXPECT_EQ(c.node.newTime(frame, time), "");
  }

  // A value the node does not write stays at -7.
  Colour colourOut(Corrector& c) {
    Colour out{-7, -7, -7};
    EXPECT_TRUE(editor.evaluate(c.node, "Colour", access, out.data(), NOT_COLOR));
    return out;
  }
  double scalarOut(Corrector& c) {
    double out = -7;
    EXPECT_TRUE(editor.evaluate(c.node, "Scalar", access, &out, NOT_SCALAR));
    return out;
  }

  // The output for a value on the form's fallback, after a fresh sampling pass.
  Colour correct(Corrector& c, const Colour& in) {
    setColour(c, in);
    sample(c);
    return colourOut(c);
  }
  double correctScalar(Corrector& c, double in) {
    set(c, kScalarId, in);
    sample(c);
    return scalarOut(c);
  }
};

}  // namespace colourtest
