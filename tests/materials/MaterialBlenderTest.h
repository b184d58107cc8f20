#pragma once

#include <lwnodes.h>

#include <array>
#include <string>
#include <vector>

#include "lwhost/Blend.h"
#include "support/VornNodeTest.h"

namespace materials {

using ::testing::ElementsAre;
using Colour = std::array<double, 3>;

constexpr int kChannels = 5;
constexpr int kTransparency = 4;
inline const char* const kChannel[kChannels] = {"Diffuse", "Specular", "Reflection", "Refraction", "Transparency"};
// Channel k's opacity control is 0x9000 + 2k, its mode the odd id after it.
constexpr unsigned int OpacityId(int k) { return 0x9000u + 2u * static_cast<unsigned int>(k); }
constexpr unsigned int ModeId(int k) { return OpacityId(k) + 1u; }

constexpr LWNodalMaterial kBg = {{0.1, 0.2, 0.3}, {0.4, 0.5, 0.6}, {0.15, 0.25, 0.35}, {0.45, 0.55, 0.65}, 0.2};
constexpr LWNodalMaterial kFg = {{0.9, 0.8, 0.7}, {0.6, 0.5, 0.4}, {0.3, 0.6, 0.9}, {0.05, 0.1, 0.95}, 0.7};

inline Colour ChannelOf(const LWNodalMaterial& m, int k) {
  const double* c = k == 0 ? m.diffuse : k == 1 ? m.specular : k == 2 ? m.reflection : m.refraction;
  return {c[0], c[1], c[2]};
}

// The host's blend of a channel at `opacity`: the node hands it 1 - opacity. The transparency
// channel travels as the first component of a vector.
inline Colour Blended(const Colour& bg, const Colour& fg, double opacity, int mode) {
  Colour out{};
  lwhost::Blend(out.data(), bg.data(), fg.data(), 1.0 - opacity, mode);
  return out;
}
inline double BlendedScalar(double bg, double fg, double opacity, int mode) {
  return Blended({bg, 0, 0}, {fg, 0, 0}, opacity, mode)[0];
}

// The host's node utilities with Blend counted. Installed before the nodes it watches are made
// (they keep the table they were given); static, as nodes may outlive a test's locals.
struct BlendSpy {
  static inline LWNodeUtilityFuncs table{};
  static inline int calls = 0;

  static void Blend(LWDVector result, LWDVector bg, LWDVector fg, double alpha, BlendingMode mode) {
    ++calls;
    lwhost::NodeEditor::UtilityFuncsTable()->Blend(result, bg, fg, alpha, mode);
  }
  static void Install(lwhost::Host& host) {
    table = *lwhost::NodeEditor::UtilityFuncsTable();
    table.Blend = Blend;
    calls = 0;
    host.globals().provide(LWNODEUTILITYFUNCS_GLOBAL, &table);
  }
};

class MaterialBlenderTest : public VornNodeTest {
 protected:
  lwhost::PluginNode& addBlender() { return add("MaterialBlender"); }
  // As the user does it: edit the control; the next render pass samples the opacity.
  void setOpacity(lwhost::PluginNode& node, int k, double opacity) {
    ASSERT_TRUE(panel(node).setNumber(OpacityId(k), opacity)) << kChannel[k];
    EXPECT_EQ(node.newTime(0, 0.0), "");
  }
  void setMode(lwhost::PluginNode& node, int k, int mode) {
    ASSERT_TRUE(panel(node).setInteger(ModeId(k), mode)) << kChannel[k];
  }

  lwhost::Node& feed(lwhost::PluginNode& node, const char* input, const LWNodalMaterial& m) {
    lwhost::Node& source = editor.addMaterial(m);
    editor.connect(source, "Material", node, input);
    return source;
  }

  // An output as a connected input reads it; what the node does not write stays as given.
  template <class T>
  T evaluate(lwhost::PluginNode& node, const char* output, ConnectionType type, T value) {
    EXPECT_TRUE(editor.evaluate(node, output, access, &value, type)) << output;
    return value;
  }
  LWNodalMaterial material(lwhost::PluginNode& node) {
    return evaluate(node, "Material", NOT_MATERIAL, LWNodalMaterial{});
  }
  Colour colour(lwhost::PluginNode& node, const char* output) {
    return evaluate(node, output, NOT_COLOR, Colour{-9, -9, -9});
  }
  double scalar(lwhost::PluginNode& node, const char* output) { return evaluate(node, output, NOT_SCALAR, -9.0); }
};

}  // namespace materials
