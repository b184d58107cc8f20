#pragma once

#include <gtest/gtest.h>
#include <lwnodes.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>

#include "lwhost/Animation.h"
#include "lwhost/NodalAccess.h"
#include "lwhost/PluginNode.h"
#include "lwhost/Session.h"
#include "lwhost/XPanel.h"
#include "support/ModulePaths.h"

namespace colourtest {

using Colour = std::array<double, 3>;

constexpr double kPi = 3.14159265358979323846;

// The bits of each channel, so that -0.0 and 0.0 differ when compared.
inline std::array<std::uint64_t, 3> Bits(const Colour& c) {
  std::array<std::uint64_t, 3> bits{};
  std::memcpy(bits.data(), c.data(), sizeof bits);
  return bits;
}
inline std::uint64_t Bits(double x) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &x, sizeof bits);
  return bits;
}

// Form ids of the corrector; the inputs of the same names follow the same order.
enum : unsigned int {
  kColourId = 0x9000,
  kScalarId = 0x9001,
  kBrightnessId = 0x9002,
  kContrastId = 0x9003,
  kHueId = 0x9004,
  kSaturationId = 0x9005,
  kGammaId = 0x9006,
  kInvertId = 0x9007,
  kDefaultId = 0x9008,
  kWebButtonId = 0x9900,
  kLogoId = 0x9901,
};

// One corrector node with its form, as a user of the node editor sees it.
struct Corrector {
  lwhost::PluginNode& node;
  lwhost::XPanel& panel;
};

// A headless Layout with vorn.p loaded. Settings go in through the node's form, as a user types
// them, and come out of the node's outputs after a sampling pass, as the renderer reads them.
class CorrectorTest : public ::testing::Test {
 protected:
  lwhost::Session session;
  lwhost::ModuleFile& vorn = session.load(testpaths::kVorn);
  lwhost::NodeEditor& editor = session.nodes();
  LWNodalAccess access = lwhost::MakeNodalAccess();

  Corrector addCorrector() {
    lwhost::PluginNode& node = editor.addPluginNode(vorn, "SimpleColourCorrector");
    const lwhost::InterfaceActivation ui = node.activateInterface();
    EXPECT_EQ(ui.result, AFUNC_OK);
    lwhost::XPanel* panel = session.xpanels().find(ui.local.panel);
    if (!panel) throw std::runtime_error("the corrector gave no form panel");
    return {node, *panel};
  }

  // The host's side of a parameter the form is bound to.
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

  // Samples the parameters as the renderer does before each pass.
  static void sample(Corrector& c, LWTime time = 0.0, LWFrame frame = 0) {
    EXPECT_EQ(c.node.newTime(frame, time), "");
  }

  // The outputs for the current access record; a value the node does not write stays at -7.
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

  // The colour output for a colour on the "Colour" fallback, after a fresh sampling pass.
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
