// What the corrector does to colours and scalars, read from its outputs after the settings were
// typed into its form. Every expected value is worked out by hand from the correction's steps:
// the colour's value scaled by brightness and contrast around 0.5, its hue rotated and its
// saturation scaled in hue/saturation/value space, then gamma, then inversion.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "colour/CorrectorSession.h"

namespace colourtest {
namespace {

using ::testing::DoubleNear;
using ::testing::ElementsAre;
using ::testing::Pointwise;

constexpr double kTight = 1e-12;

TEST_F(CorrectorTest, NeutralSettingsReturnTheInputBitForBit) {
  Corrector c = addCorrector();
  const std::vector<Colour> colours = {
      {0.1, 0.2, 0.3}, {1.5, -0.25, 0.3}, {-2.0, 3.75, 1e-310}, {0.0, -0.0, 1e300}, {7.0, 7.0, -7.5}};

  // A setting that was moved and put back is neutral again.
  set(c, kBrightnessId, 2.0);
  set(c, kBrightnessId, 1.0);
  for (const Colour& in : colours) {
    SCOPED_TRACE(::testing::PrintToString(in));
    EXPECT_EQ(Bits(correct(c, in)), Bits(in)) << "from the fallback";

    lwhost::Node& source = editor.addColor(in[0], in[1], in[2]);
    editor.connect(source, "Color", c.node, "Colour");
    EXPECT_EQ(Bits(colourOut(c)), Bits(in)) << "from a connected input";
    editor.disconnect(c.node, "Colour");
  }
  for (double x : {0.3, -3.5, 2.25, 1e-310, -0.0}) {
    SCOPED_TRACE(x);
    EXPECT_EQ(Bits(correctScalar(c, x)), Bits(x));
  }
}

TEST_F(CorrectorTest, GreyAndBlackHaveNoSaturationToRotate) {
  Corrector c = addCorrector();
  set(c, kBrightnessId, 1.5);
  set(c, kSaturationId, 3.0);
  // A grey becomes (V, V, V) whatever the hue: V = 1 x (0.4 x 1.5 - 0.5) + 0.5.
  for (double hue : {0.5, 2.0, -4.0, 2 * kPi}) {
    SCOPED_TRACE(hue);
    set(c, kHueId, hue);
    const Colour out = correct(c, {0.4, 0.4, 0.4});
    EXPECT_EQ(out[0], out[1]);
    EXPECT_EQ(out[1], out[2]);
    EXPECT_NEAR(out[0], 0.6, kTight);
  }
  // Above 1 and below 0 alike: 0.5 x (2 - 0.5) + 0.5, and 1 x (-0.5 - 0.5) + 0.5 (no clamping).
  set(c, kBrightnessId, 1.0);
  set(c, kContrastId, 0.5);
  EXPECT_THAT(correct(c, {2, 2, 2}), ElementsAre(1.25, 1.25, 1.25));
  set(c, kContrastId, 1.0);
  EXPECT_THAT(correct(c, {-0.5, -0.5, -0.5}), ElementsAre(-0.5, -0.5, -0.5));

  // Black: s = 0 and h = 0; with C = 1 it stays black at any brightness (0 x B - 0.5 + 0.5).
  set(c, kHueId, 1.0);
  set(c, kSaturationId, 0.5);
  EXPECT_THAT(correct(c, {0, 0, 0}), ElementsAre(0.0, 0.0, 0.0));
  set(c, kBrightnessId, 3.0);
  EXPECT_THAT(correct(c, {0, 0, 0}), ElementsAre(0.0, 0.0, 0.0));
  // ...but black is not special: contrast still pulls it toward 0.5.
  set(c, kContrastId, 0.5);
  EXPECT_THAT(correct(c, {0, 0, 0}), ElementsAre(0.25, 0.25, 0.25));
}

// Halving the saturation of a colour whose value is 0.8 and whose saturation is 0.75 moves each
// lesser channel halfway toward 0.8; which channels are p, q and t depends on the sextant.
TEST_F(CorrectorTest, EverySextantRebuildsItsOwnChannels) {
  Corrector c = addCorrector();
  set(c, kSaturationId, 0.5);
  struct Case {
    Colour in, want;
  };
  const Case cases[] = {
      {{0.8, 0.4, 0.2}, {0.8, 0.6, 0.5}},  // max red, sextant 1/3: (V, t, p)
      {{0.6, 0.8, 0.2}, {0.7, 0.8, 0.5}},  // max green, 1 + 1/3: (q, V, p)
      {{0.2, 0.8, 0.4}, {0.5, 0.8, 0.6}},  // max green, 2 + 1/3: (p, V, t)
      {{0.2, 0.6, 0.8}, {0.5, 0.7, 0.8}},  // max blue, 3 + 1/3: (p, q, V)
      {{0.4, 0.2, 0.8}, {0.6, 0.5, 0.8}},  // max blue, 4 + 1/3: (t, p, V)
      {{0.8, 0.2, 0.4}, {0.8, 0.5, 0.6}},  // max red, -1/3 + 6: (V, p, q)
  };
  for (const Case& k : cases) {
    SCOPED_TRACE(::testing::PrintToString(k.in));
    EXPECT_THAT(correct(c, k.in), Pointwise(DoubleNear(kTight), k.want));
  }

  // Saturation 0 leaves the value; above 1 it overshoots below 0: p = 0.8 x (1 - 1.5).
  set(c, kSaturationId, 0.0);
  EXPECT_THAT(correct(c, {0.8, 0.4, 0.2}), ElementsAre(0.8, 0.8, 0.8));
  set(c, kSaturationId, 2.0);
  EXPECT_THAT(correct(c, {0.8, 0.4, 0.2}), Pointwise(DoubleNear(kTight), Colour{0.8, 0.0, -0.4}));

  // Brightness scales the value and nothing clamps it: V = 0.8 x 2.
  set(c, kSaturationId, 1.0);
  set(c, kBrightnessId, 2.0);
  EXPECT_THAT(correct(c, {0.8, 0.4, 0.2}), Pointwise(DoubleNear(kTight), Colour{1.6, 0.8, 0.4}));

  // All four at once: V = 0.5 x (0.8 x 1.25 - 0.5) + 0.5 = 0.75, s' = 0.75 x 0.4 = 0.3, the hue
  // moves one sextant to 1 + 1/3, so (q, V, p) = (0.75 x 0.9, 0.75, 0.75 x 0.7).
  set(c, kBrightnessId, 1.25);
  set(c, kContrastId, 0.5);
  set(c, kSaturationId, 0.4);
  set(c, kHueId, kPi / 3);
  EXPECT_THAT(correct(c, {0.8, 0.4, 0.2}), Pointwise(DoubleNear(kTight), Colour{0.675, 0.75, 0.525}));
}

TEST_F(CorrectorTest, ContrastZeroPutsTheValueAtOneHalfBeforeGammaAndInvert) {
  Corrector c = addCorrector();
  set(c, kContrastId, 0.0);
  for (const Colour& grey : {Colour{0.3, 0.3, 0.3}, Colour{0, 0, 0}, Colour{4, 4, 4}}) {
    SCOPED_TRACE(grey[0]);
    EXPECT_THAT(correct(c, grey), ElementsAre(0.5, 0.5, 0.5));
  }
  set(c, kBrightnessId, 3.0);
  EXPECT_THAT(correct(c, {4, 4, 4}), ElementsAre(0.5, 0.5, 0.5));
  // A coloured input keeps its hue and saturation around V = 0.5: (V, t, p) with s = 0.75,
  // f = 1/3, so "0.5 on every channel" holds only where there is no saturation.
  set(c, kBrightnessId, 1.0);
  EXPECT_THAT(correct(c, {0.8, 0.4, 0.2}), Pointwise(DoubleNear(kTight), Colour{0.5, 0.25, 0.125}));
  EXPECT_EQ(correctScalar(c, 0.9), 0.5);

  // Gamma and inversion come after: 1 - 0.5^(1/2).
  set(c, kGammaId, 2.0);
  setInvert(c, true);
  EXPECT_THAT(correct(c, {0.3, 0.3, 0.3}), Pointwise(DoubleNear(kTight), Colour{1 - std::sqrt(0.5), 1 - std::sqrt(0.5),
                                                                               1 - std::sqrt(0.5)}));
  EXPECT_NEAR(correctScalar(c, 0.9), 1 - std::sqrt(0.5), kTight);
}

TEST_F(CorrectorTest, HueRotatesInSextantsAndAFullTurnMayLandOnSix) {
  Corrector c = addCorrector();
  const Colour red{1, 0, 0};
  struct Case {
    Colour in;
    double hue;
    Colour want;
  };
  const Case turns[] = {
      {red, 2 * kPi / 3, {0, 1, 0}},
      {red, 4 * kPi / 3, {0, 0, 1}},
      {red, -2 * kPi / 3, {0, 0, 1}},
      {red, kPi / 3, {1, 1, 0}},
      {red, kPi, {0, 1, 1}},
      {{0, 1, 0}, 2 * kPi / 3, {0, 0, 1}},
      {{0.8, 0.4, 0.2}, 2 * kPi, {0.8, 0.4, 0.2}},   // sextant 6 + 1/3 wraps to 1/3
      {{0.8, 0.4, 0.2}, -2 * kPi, {0.8, 0.4, 0.2}},  // -6 + 1/3 comes back the other way
      {{0.8, 0.4, 0.2}, 4 * kPi, {0.8, 0.4, 0.2}},
      {red, -2 * kPi, {1, 0, 0}},  // -6 wraps up to exactly 0
  };
  for (const Case& k : turns) {
    SCOPED_TRACE(::testing::PrintToString(k.in) + " turned by " + std::to_string(k.hue));
    set(c, kHueId, k.hue);
    EXPECT_THAT(correct(c, k.in), Pointwise(DoubleNear(kTight), k.want));
  }

  // 2pi x 0.954929658551372 is exactly 6.0 in doubles, and 4pi gives exactly 12.0, which wraps
  // down to 6 and stops there. x = 6 takes the last branch, (V, p, q), with f = 0, so q = V:
  // pure red comes out magenta.
  for (double hue : {2 * kPi, 4 * kPi}) {
    SCOPED_TRACE(hue);
    ASSERT_EQ(hue * 0.954929658551372, hue < 7 ? 6.0 : 12.0) << "the input no longer lands on a whole turn";
    set(c, kHueId, hue);
    EXPECT_THAT(correct(c, red), ElementsAre(1.0, 0.0, 1.0));
  }
  // A hue of its own: (1, 0.5, 0.75) sits at sextant 5.5 (s = 0.5); adding pi/6 reaches 6
  // exactly, giving (V, p, V) = (1, 0.5, 1); a hair more wraps to sextant 0, (V, t, p).
  const double sextant = 5.5 * 1.0471975511965976;
  ASSERT_EQ((sextant + kPi / 6) * 0.954929658551372, 6.0) << "the input no longer lands on 6";
  set(c, kHueId, kPi / 6);
  EXPECT_THAT(correct(c, {1, 0.5, 0.75}), ElementsAre(1.0, 0.5, 1.0));
  set(c, kHueId, kPi / 6 + 1e-9);
  EXPECT_THAT(correct(c, {1, 0.5, 0.75}), Pointwise(DoubleNear(1e-8), Colour{1, 0.5, 0.5}));
}

// Whatever a connected hue input delivers, the sample finishes with a colour of the same value and
// saturation: for pure red the largest channel stays V = 1 and the smallest p = 0. (Reducing a
// hue of 1e300 one turn at a time would never end; a NaN would reach the sextant index.)
TEST_F(CorrectorTest, HueFarOutsideATurnStillGivesAColour) {
  Corrector c = addCorrector();
  editor.connect(editor.addColor(1, 0, 0), "Color", c.node, "Colour");
  sample(c);
  for (double hue : {std::nan(""), 1e300, -1e300, 1e7 + 0.5, HUGE_VAL, -HUGE_VAL}) {
    SCOPED_TRACE(hue);
    editor.connect(editor.addScalar(hue), "Scalar", c.node, "Hue");
    const Colour out = colourOut(c);
    for (double channel : out) EXPECT_TRUE(std::isfinite(channel)) << channel;
    EXPECT_EQ(*std::max_element(out.begin(), out.end()), 1.0);
    EXPECT_EQ(*std::min_element(out.begin(), out.end()), 0.0);
  }
}

TEST_F(CorrectorTest, GammaThenInvertOnColourAndScalar) {
  Corrector c = addCorrector();
  set(c, kGammaId, 2.0);
  EXPECT_THAT(correct(c, {0.16, 0.64, 0.36}), Pointwise(DoubleNear(kTight), Colour{0.4, 0.8, 0.6}));
  EXPECT_NEAR(correctScalar(c, 0.16), 0.4, kTight);
  // 1/G in double precision: the cube root of 0.125 is 0.5 to the last few bits.
  set(c, kGammaId, 3.0);
  EXPECT_THAT(correct(c, {0.125, 8.0, 1.0}), Pointwise(DoubleNear(kTight), Colour{0.5, 2.0, 1.0}));
  EXPECT_NEAR(correctScalar(c, 8.0), 2.0, kTight);
  set(c, kGammaId, 0.5);
  EXPECT_THAT(correct(c, {0.4, 0.8, 0.6}), Pointwise(DoubleNear(kTight), Colour{0.16, 0.64, 0.36}));

  // Inverting alone: 1 - c, unclamped.
  set(c, kGammaId, 1.0);
  setInvert(c, true);
  EXPECT_THAT(correct(c, {1.5, -0.25, 0.5}), ElementsAre(-0.5, 1.25, 0.5));
  EXPECT_EQ(correctScalar(c, 1.5), -0.5);

  // Gamma first, then invert: 1 - sqrt(0.16), not sqrt(1 - 0.16).
  set(c, kGammaId, 2.0);
  EXPECT_THAT(correct(c, {0.16, 0.64, 0.36}), Pointwise(DoubleNear(kTight), Colour{0.6, 0.2, 0.4}));
  EXPECT_NEAR(correctScalar(c, 0.16), 0.6, kTight);

  // After the colour work: sqrt(1.5 x 0.4) on a grey.
  setInvert(c, false);
  set(c, kBrightnessId, 1.5);
  EXPECT_THAT(correct(c, {0.4, 0.4, 0.4}), Pointwise(DoubleNear(kTight), Colour{std::sqrt(0.6), std::sqrt(0.6),
                                                                               std::sqrt(0.6)}));
}

TEST_F(CorrectorTest, ScalarScalesByOnePlusBrightnessAndIgnoresHueAndSaturation) {
  Corrector c = addCorrector();
  // B = 1, C = 0.5: 0.5 x (2x - 0.5) + 0.5.
  set(c, kContrastId, 0.5);
  EXPECT_NEAR(correctScalar(c, 0.3), 0.55, kTight);
  EXPECT_NEAR(correctScalar(c, 0.8), 1.05, kTight);
  EXPECT_NEAR(correctScalar(c, -1.0), -0.75, kTight);
  // B = 2, C = 0.5: 0.5 x (3x - 0.5) + 0.5.
  set(c, kBrightnessId, 2.0);
  EXPECT_NEAR(correctScalar(c, 0.3), 0.7, kTight);
  // B = 2, C = 1: 3x.
  set(c, kContrastId, 1.0);
  EXPECT_NEAR(correctScalar(c, 0.3), 0.9, kTight);
  EXPECT_NEAR(correctScalar(c, 0.5), 1.5, kTight);
  // B = 0 keeps a scalar (0 x x + x) but blackens a colour (V = 0 x mx).
  set(c, kBrightnessId, 0.0);
  EXPECT_NEAR(correctScalar(c, 0.3), 0.3, kTight);
  EXPECT_THAT(correct(c, {0.8, 0.4, 0.2}), ElementsAre(0.0, 0.0, 0.0));

  // With B = C = 1 the scaling is skipped (it would double x); hue and saturation never apply.
  set(c, kBrightnessId, 1.0);
  set(c, kHueId, 1.0);
  set(c, kSaturationId, 0.25);
  EXPECT_EQ(Bits(correctScalar(c, 0.3)), Bits(0.3));
  EXPECT_EQ(Bits(correctScalar(c, -2.5)), Bits(-2.5));
}

}  // namespace
}  // namespace colourtest
