// The node utility functions: Blend in every mode, and the mapping helpers.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "nodes/NodeTestSupport.h"

namespace {

using ::testing::DoubleNear;
using ::testing::ElementsAre;

struct BlendCase {
  int mode;
  double effect[3];  // the blend at alpha 0, worked out by hand
};

void ExpectBlends(const LWNodeUtilityFuncs& utility, const double (&bgIn)[3], const double (&fgIn)[3],
                  const BlendCase (&cases)[14]) {
  for (const BlendCase& c : cases) {
    SCOPED_TRACE("mode " + std::to_string(c.mode));
    for (double alpha : {0.0, 0.5, 1.0}) {
      double bg[3] = {bgIn[0], bgIn[1], bgIn[2]}, fg[3] = {fgIn[0], fgIn[1], fgIn[2]};
      double result[3] = {-99, -99, -99};
      utility.Blend(result, bg, fg, alpha, static_cast<BlendingMode>(c.mode));
      for (int i = 0; i < 3; ++i)
        EXPECT_NEAR(result[i], alpha * bg[i] + (1 - alpha) * c.effect[i], 1e-12)
            << "alpha " << alpha << " channel " << i;
    }
  }
}

TEST_F(NodeEditorTest, BlendModesMixBackgroundAndEffectByAlpha) {
  // fg 1 and 0 hit the dodge and burn edges.
  const double bg1[3] = {0.2, 0.5, 0.8}, fg1[3] = {0.6, 0.0, 1.0};
  const BlendCase cases1[14] = {
      {Blend_Normal, {0.6, 0.0, 1.0}},         {Blend_Additive, {0.8, 0.5, 1.8}},
      {Blend_Subtractive, {-0.4, 0.5, -0.2}},  {Blend_Multiply, {0.12, 0.0, 0.8}},
      {Blend_Screen, {0.68, 0.5, 1.0}},        {Blend_Darken, {0.2, 0.0, 0.8}},
      {Blend_Lighten, {0.6, 0.5, 1.0}},        {Blend_Difference, {0.4, 0.5, 0.2}},
      {Blend_Negative, {0.8, 0.5, 0.2}},       {Blend_ColorDodge, {0.5, 0.5, 1.0}},
      {Blend_ColorBurn, {1 - 0.8 / 0.6, 0.0, 0.8}}, {Blend_Red, {0.6, 0.5, 0.8}},
      {Blend_Green, {0.2, 0.0, 0.8}},          {Blend_Blue, {0.2, 0.5, 1.0}},
  };
  ExpectBlends(utility(), bg1, fg1, cases1);

  // fg beyond 1 and below 0: the edges again, from the other side.
  const double bg2[3] = {1.0, 0.0, 0.25}, fg2[3] = {0.5, 1.5, -0.5};
  const BlendCase cases2[14] = {
      {Blend_Normal, {0.5, 1.5, -0.5}},        {Blend_Additive, {1.5, 1.5, -0.25}},
      {Blend_Subtractive, {0.5, -1.5, 0.75}},  {Blend_Multiply, {0.5, 0.0, -0.125}},
      {Blend_Screen, {1.0, 1.5, -0.125}},      {Blend_Darken, {0.5, 0.0, -0.5}},
      {Blend_Lighten, {1.0, 1.5, 0.25}},       {Blend_Difference, {0.5, 1.5, 0.75}},
      {Blend_Negative, {0.5, 0.5, -0.25}},     {Blend_ColorDodge, {2.0, 1.0, 0.25 / 1.5}},
      {Blend_ColorBurn, {1.0, 1 - 1 / 1.5, 0.0}}, {Blend_Red, {0.5, 0.0, 0.25}},
      {Blend_Green, {1.0, 1.5, 0.25}},         {Blend_Blue, {1.0, 0.0, -0.5}},
  };
  ExpectBlends(utility(), bg2, fg2, cases2);
}

TEST_F(NodeEditorTest, BlendTreatsUnknownModesAsNormalAndMayWriteOverItsInput) {
  for (int mode : {-1, 14, 99}) {
    double bg[3] = {0.2, 0.4, 0.6}, fg[3] = {1.0, 0.0, 0.5}, result[3];
    utility().Blend(result, bg, fg, 0.25, static_cast<BlendingMode>(mode));
    EXPECT_THAT(result, ElementsAre(DoubleNear(0.8, 1e-12), DoubleNear(0.1, 1e-12), DoubleNear(0.525, 1e-12)))
        << mode;
  }
  double bg[3] = {0.5, 0.5, 0.5}, fg[3] = {0.2, 0.4, 1.0};
  utility().Blend(bg, bg, fg, 0.5, Blend_Multiply);  // the result replaces the background
  EXPECT_THAT(bg, ElementsAre(DoubleNear(0.3, 1e-12), DoubleNear(0.35, 1e-12), DoubleNear(0.5, 1e-12)));
}

TEST_F(NodeEditorTest, MappingsFollowTheirAxes) {
  const LWNodeUtilityFuncs& u = utility();
  double s = -1, t = -1;
  double p[3] = {1, 2, 3};
  u.PlanarMapping(p, 0, &s, &t);
  EXPECT_THAT((std::vector<double>{s, t}), ElementsAre(3, 2));
  u.PlanarMapping(p, 1, &s, &t);
  EXPECT_THAT((std::vector<double>{s, t}), ElementsAre(1, 3));
  u.PlanarMapping(p, 2, &s, &t);
  EXPECT_THAT((std::vector<double>{s, t}), ElementsAre(1, 2));

  // Around Y: a quarter turn from +Z toward +X, on the equator; the seam stays inside [0, 1).
  double side[3] = {1, 0, 0};
  u.SphericalMapping(side, 1, &s, &t);
  EXPECT_NEAR(s, 0.25, 1e-12);
  EXPECT_NEAR(t, 0.5, 1e-12);
  double top[3] = {0, 5, 0};
  u.SphericalMapping(top, 1, &s, &t);
  EXPECT_NEAR(t, 1.0, 1e-12);
  double seam[3] = {-1e-18, 0, 1};
  u.SphericalMapping(seam, 1, &s, &t);
  EXPECT_GE(s, 0.0);
  EXPECT_LT(s, 1.0);
  double high[3] = {1, 4, 0};
  u.CylindricalMapping(high, 1, &s, &t);
  EXPECT_NEAR(s, 0.25, 1e-12);
  EXPECT_EQ(t, 4);

  double yMost[3] = {1, -5, 2};
  u.CubicMapping(yMost, 0, &s, &t);  // planar along Y whatever the axis says
  EXPECT_THAT((std::vector<double>{s, t}), ElementsAre(1, 2));

  double ahead[3] = {1, 1, 2};
  u.FrontMapping(ahead, 2.0, &s, &t, nullptr);
  EXPECT_NEAR(s, 0.625, 1e-12);
  EXPECT_NEAR(t, 0.75, 1e-12);
  double back[3] = {0, 0, -1};
  u.ReflectionMapping(0.0, back, &s, &t);
  EXPECT_NEAR(s, 0.5, 1e-12);
  EXPECT_NEAR(t, 0.5, 1e-12);

  s = t = 42;
  EXPECT_EQ(u.UVMapping("Texture", &access, &s, &t), 0);
  EXPECT_EQ(s, 42);
  double m[4][4];
  u.BuildCameraMatrix(0.0, nullptr, m);
  for (int i = 0; i < 4; ++i)
    for (int j = 0; j < 4; ++j) EXPECT_EQ(m[i][j], i == j ? 1.0 : 0.0);
  double scale[3], position[3];
  u.NodeAutosize(nullptr, scale, position);
  EXPECT_THAT(scale, ElementsAre(1, 1, 1));
  EXPECT_THAT(position, ElementsAre(0, 0, 0));
}

}  // namespace
