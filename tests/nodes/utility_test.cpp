// The node utility functions: Blend in every mode, and the mapping helpers.
#include <array>

#include "nodes/NodeTestSupport.h"

namespace {

using ::testing::DoubleNear;
using ::testing::ElementsAre;

// Blend gives alpha * bg + (1 - alpha) * the mode's effect (worked out by hand by the caller).
void ExpectBlend(const LWNodeUtilityFuncs& u, std::array<double, 3> bg, std::array<double, 3> fg, int mode,
                 const std::array<double, 3>& effect) {
  for (double alpha : {0.0, 0.25}) {
    double result[3] = {-99, -99, -99};
    u.Blend(result, bg.data(), fg.data(), alpha, static_cast<BlendingMode>(mode));
    for (int i = 0; i < 3; ++i)
      EXPECT_NEAR(result[i], alpha * bg[i] + (1 - alpha) * effect[i], 1e-12)
          << "mode " << mode << " alpha " << alpha << " channel " << i;
  }
}

TEST_F(NodeEditorTest, BlendModesMixBackgroundAndEffectByAlpha) {
  const LWNodeUtilityFuncs& u = *lwhost::NodeEditor::UtilityFuncsTable();
  const std::array<double, 3> bg = {0.2, 0.5, 0.8}, fg = {0.6, 0.0, 1.0};  // fg 0 and 1: dodge and burn edges
  const std::pair<int, std::array<double, 3>> cases[] = {
      {Blend_Normal, {0.6, 0.0, 1.0}},         {Blend_Additive, {0.8, 0.5, 1.8}},
      {Blend_Subtractive, {-0.4, 0.5, -0.2}},  {Blend_Multiply, {0.12, 0.0, 0.8}},
      {Blend_Screen, {0.68, 0.5, 1.0}},        {Blend_Darken, {0.2, 0.0, 0.8}},
      {Blend_Lighten, {0.6, 0.5, 1.0}},        {Blend_Difference, {0.4, 0.5, 0.2}},
      {Blend_Negative, {0.8, 0.5, 0.2}},       {Blend_ColorDodge, {0.5, 0.5, 1.0}},
      {Blend_ColorBurn, {1 - 0.8 / 0.6, 0.0, 0.8}}, {Blend_Red, {0.6, 0.5, 0.8}},
      {Blend_Green, {0.2, 0.0, 0.8}},          {Blend_Blue, {0.2, 0.5, 1.0}},
      {-1, {0.6, 0.0, 1.0}},                   {14, {0.6, 0.0, 1.0}},  // unknown: Normal
  };
  for (const auto& [mode, effect] : cases) ExpectBlend(u, bg, fg, mode, effect);
  // fg beyond 1 and below 0: the dodge and burn edges from the other side.
  ExpectBlend(u, {1.0, 0.0, 0.25}, {0.5, 1.5, -0.5}, Blend_ColorDodge, {2.0, 1.0, 0.25 / 1.5});
  ExpectBlend(u, {1.0, 0.0, 0.25}, {0.5, 1.5, -0.5}, Blend_ColorBurn, {1.0, 1 - 1 / 1.5, 0.0});

  double in[3] = {0.5, 0.5, 0.5}, over[3] = {0.2, 0.4, 1.0};
  u.Blend(in, in, over, 0.5, Blend_Multiply);  // the result may replace the background
  EXPECT_THAT(in, ElementsAre(DoubleNear(0.3, 1e-12), DoubleNear(0.35, 1e-12), DoubleNear(0.5, 1e-12)));
}

TEST_F(NodeEditorTest, MappingsFollowTheirAxes) {
  const LWNodeUtilityFuncs& u = *lwhost::NodeEditor::UtilityFuncsTable();
  auto mapped = [](auto map, std::array<double, 3> p, int axis) {
    double s = -1, t = -1;
    map(p.data(), axis, &s, &t);
    return std::vector<double>{s, t};
  };
  auto near = [](double s, double t) { return ElementsAre(DoubleNear(s, 1e-12), DoubleNear(t, 1e-12)); };
  EXPECT_THAT(mapped(u.PlanarMapping, {1, 2, 3}, 0), near(3, 2));
  EXPECT_THAT(mapped(u.PlanarMapping, {1, 2, 3}, 1), near(1, 3));
  EXPECT_THAT(mapped(u.PlanarMapping, {1, 2, 3}, 2), near(1, 2));
  EXPECT_THAT(mapped(u.SphericalMapping, {1, 0, 0}, 1), near(0.25, 0.5));  // a quarter turn from +Z toward +X
  EXPECT_THAT(mapped(u.SphericalMapping, {0, 5, 0}, 1), near(0, 1));
  const double seam = mapped(u.SphericalMapping, {-1e-18, 0, 1}, 1)[0];
  EXPECT_TRUE(seam >= 0.0 && seam < 1.0) << seam;
  EXPECT_THAT(mapped(u.CylindricalMapping, {1, 4, 0}, 1), near(0.25, 4));
  EXPECT_THAT(mapped(u.CubicMapping, {1, -5, 2}, 0), near(1, 2));  // planar along Y whatever the axis says

  double ahead[3] = {1, 1, 2}, back[3] = {0, 0, -1}, s = -1, t = -1;
  u.FrontMapping(ahead, 2.0, &s, &t, nullptr);
  EXPECT_THAT((std::vector<double>{s, t}), near(0.625, 0.75));
  u.ReflectionMapping(0.0, back, &s, &t);
  EXPECT_THAT((std::vector<double>{s, t}), near(0.5, 0.5));
  s = 42;
  EXPECT_EQ(u.UVMapping("Texture", &access, &s, &t), 0);  // no UV maps here
  EXPECT_EQ(s, 42);

  double m[4][4], scale[3], position[3];
  u.BuildCameraMatrix(0.0, nullptr, m);
  for (int i = 0; i < 16; ++i) EXPECT_EQ(m[i / 4][i % 4], i % 5 == 0 ? 1.0 : 0.0) << i;
  u.NodeAutosize(nullptr, scale, position);
  EXPECT_THAT(scale, ElementsAre(1, 1, 1));
  EXPECT_THAT(position, ElementsAre(0, 0, 0));
}

}  // namespace
