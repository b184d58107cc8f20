// What the corrector does to colours and scalars, read from its outputs after the settings were
// typed into its form. Expected values are worked out by hand: the colour's value scaled by
// brightness and contrast around 0.5, its hue rotated and its saturation scaled in HSV, then
// gamma, then inversion.
#include <algorithm>
#include <cmath>

#include "colour/CorrectorSession.h"

namespace colourtest {
namespace {

TEST_F(CorrectorTest, NeutralSettingsReturnTheInputBitForBit) {
  Corrector c = addCorrector();
  EXPECT_EQ(Bits(correct(c, {0.1, -0.0, 1e-310})), Bits(Colour{0.1, -0.0, 1e-310})) << "a new node";
  // A setting moved and put back is neutral again.
  set(c, kBrightnessId, 2.0);
  set(c, kBrightnessId, 1.0);
  for (const Colour& in : {Colour{1.5, -0.25, 0.3}, Colour{-2.0, 3.75, 1e-310}, Colour{0.0, -0.0, 1e300}}) {
    SCOPED_TRACE(::testing::PrintToString(in));
    EXPECT_EQ(Bits(correct(c, in)), Bits(in)) << "from the fallback";
    editor.connect(editor.addColor(in[0], in[1], in[2]), "Color", c.node, "Colour");
    EXPECT_EQ(Bits(colourOut(c)), Bits(in)) << "from a connected input";
    editor.disconnect(c.node, "Colour");
  }
  for (double x : {-3.5, 1e-310, -0.0}) EXPECT_EQ(Bits(correctScalar(c, x)), Bits(x)) << x;
}

TEST_F(CorrectorTest, CorrectsColoursAndScalars) {
  struct Case {
    Settings set;
    Colour in, want;
  };
  const Case colours[] = {
      // Greys and black have no saturation to rotate; nothing clamps.
      {{1.5, 1, 2.0, 3, 1, 0}, {0.4, 0.4, 0.4}, {0.6, 0.6, 0.6}},
      {{1, 0.5, 2.0, 3, 1, 0}, {2, 2, 2}, {1.25, 1.25, 1.25}},
      {{1, 1, 1.0, 3, 1, 0}, {-0.5, -0.5, -0.5}, {-0.5, -0.5, -0.5}},
      {{3, 1, 1.0, 0.5, 1, 0}, {0, 0, 0}, {0, 0, 0}},
      {{3, 0.5, 1.0, 0.5, 1, 0}, {0, 0, 0}, {0.25, 0.25, 0.25}},
      // Halving a saturation of 0.75 at V = 0.8 in each sextant: which channels are p, q, t.
      {{1, 1, 0, 0.5, 1, 0}, {0.8, 0.4, 0.2}, {0.8, 0.6, 0.5}},
      {{1, 1, 0, 0.5, 1, 0}, {0.6, 0.8, 0.2}, {0.7, 0.8, 0.5}},
      {{1, 1, 0, 0.5, 1, 0}, {0.2, 0.8, 0.4}, {0.5, 0.8, 0.6}},
      {{1, 1, 0, 0.5, 1, 0}, {0.2, 0.6, 0.8}, {0.5, 0.7, 0.8}},
      {{1, 1, 0, 0.5, 1, 0}, {0.4, 0.2, 0.8}, {0.6, 0.5, 0.8}},
      {{1, 1, 0, 0.5, 1, 0}, {0.8, 0.2, 0.4}, {0.8, 0.5, 0.6}},
      {{1, 1, 0, 0.0, 1, 0}, {0.8, 0.4, 0.2}, {0.8, 0.8, 0.8}},
      {{1, 1, 0, 2.0, 1, 0}, {0.8, 0.4, 0.2}, {0.8, 0.0, -0.4}},
      {{2, 1, 0, 1, 1, 0}, {0.8, 0.4, 0.2}, {1.6, 0.8, 0.4}},
      {{0, 1, 0, 1, 1, 0}, {0.8, 0.4, 0.2}, {0, 0, 0}},
      // V = 0.5 x (0.8 x 1.25 - 0.5) + 0.5, s = 0.3, one sextant on: (q, V, p).
      {{1.25, 0.5, kPi / 3, 0.4, 1, 0}, {0.8, 0.4, 0.2}, {0.675, 0.75, 0.525}},
      // Contrast 0 puts V at one half, before gamma and inversion.
      {{3, 0, 0, 1, 1, 0}, {4, 4, 4}, {0.5, 0.5, 0.5}},
      {{1, 0, 0, 1, 1, 0}, {0.8, 0.4, 0.2}, {0.5, 0.25, 0.125}},
      {{1, 0, 0, 1, 2, 1}, {0.3, 0.3, 0.3}, {1 - std::sqrt(0.5), 1 - std::sqrt(0.5), 1 - std::sqrt(0.5)}},
      // Hue turns in sextants of pi/3; whole turns wrap into [0, 6], and exactly 6 is the last
      // sextant with f = 0 (2pi and 4pi land there in doubles): red comes out magenta.
      {{1, 1, 2 * kPi / 3, 1, 1, 0}, {1, 0, 0}, {0, 1, 0}},
      {{1, 1, -2 * kPi / 3, 1, 1, 0}, {1, 0, 0}, {0, 0, 1}},
      {{1, 1, kPi / 3, 1, 1, 0}, {1, 0, 0}, {1, 1, 0}},
      {{1, 1, 2 * kPi, 1, 1, 0}, {0.8, 0.4, 0.2}, {0.8, 0.4, 0.2}},
      {{1, 1, -2 * kPi, 1, 1, 0}, {0.8, 0.4, 0.2}, {0.8, 0.4, 0.2}},
      {{1, 1, -2 * kPi, 1, 1, 0}, {1, 0, 0}, {1, 0, 0}},
      {{1, 1, 2 * kPi, 1, 1, 0}, {1, 0, 0}, {1, 0, 1}},
      {{1, 1, 4 * kPi, 1, 1, 0}, {1, 0, 0}, {1, 0, 1}},
      {{1, 1, kPi / 6, 1, 1, 0}, {1, 0.5, 0.75}, {1, 0.5, 1}},  // sextant 5.5 + 0.5
      // Gamma as 1/G in double precision, then inversion, unclamped.
      {{1, 1, 0, 1, 2, 0}, {0.16, 0.64, 0.36}, {0.4, 0.8, 0.6}},
      {{1, 1, 0, 1, 3, 0}, {0.125, 8.0, 1.0}, {0.5, 2.0, 1.0}},
      {{1, 1, 0, 1, 1, 1}, {1.5, -0.25, 0.5}, {-0.5, 1.25, 0.5}},
      {{1, 1, 0, 1, 2, 1}, {0.16, 0.64, 0.36}, {0.6, 0.2, 0.4}},
      {{1.5, 1, 0, 1, 2, 0}, {0.4, 0.4, 0.4}, {std::sqrt(0.6), std::sqrt(0.6), std::sqrt(0.6)}},
  };
  Corrector c = addCorrector();
  for (const Case& k : colours) {
    SCOPED_TRACE(&k - colours);
    apply(c, k.set);
    EXPECT_THAT(correct(c, k.in), Pointwise(DoubleNear(kTight), k.want));
  }
  // A hair past 6 wraps to sextant 0: (V, t, p).
  apply(c, {1, 1, kPi / 6 + 1e-9, 1, 1, false});
  EXPECT_THAT(correct(c, {1, 0.5, 0.75}), Pointwise(DoubleNear(1e-8), Colour{1, 0.5, 0.5}));

  // Scalars: C x ((1 + B) x, skipped when B = C = 1) - 0.5) + 0.5, then gamma and inversion;
  // hue and saturation never apply.
  struct ScalarCase {
    Settings set;
    double in, want;
  };
  const ScalarCase scalars[] = {
      {{1, 0.5, 1, 0.25, 1, 0}, 0.3, 0.55},  {{1, 0.5, 1, 0.25, 1, 0}, -1.0, -0.75},
      {{2, 1, 1, 0.25, 1, 0}, 0.3, 0.9},     {{0, 1, 1, 0.25, 1, 0}, 0.3, 0.3},
      {{1, 1, 1, 0.25, 1, 0}, 0.3, 0.3},     {{1, 0, 1, 0.25, 2, 1}, 0.9, 1 - std::sqrt(0.5)},
      {{1, 1, 0, 1, 2, 0}, 0.16, 0.4},       {{1, 1, 0, 1, 3, 0}, 8.0, 2.0},
      {{1, 1, 0, 1, 1, 1}, 1.5, -0.5},       {{1, 1, 0, 1, 2, 1}, 0.16, 0.6},
  };
  for (const ScalarCase& k : scalars) {
    SCOPED_TRACE(&k - scalars);
    apply(c, k.set);
    EXPECT_NEAR(correctScalar(c, k.in), k.want, kTight);
  }
}

// Pure red keeps V = 1 and p = 0 whatever the hue input delivers. (Reducing 1e300 one turn at a
// time would never end; a NaN would reach the sextant index.)
TEST_F(CorrectorTest, HueFarOutsideATurnStillGivesAColour) {
  Corrector c = addCorrector();
  editor.connect(editor.addColor(1, 0, 0), "Color", c.node, "Colour");
  sample(c);
  for (double hue : {std::nan(""), HUGE_VAL, 1e300, -1e300, 1e7 + 0.5}) {
    SCOPED_TRACE(hue);
    editor.connect(editor.addScalar(hue), "Scalar", c.node, "Hue");
    const Colour out = colourOut(c);
    for (double channel : out) EXPECT_TRUE(std::isfinite(channel)) << channel;
    EXPECT_EQ(*std::max_element(out.begin(), out.end()), 1.0);
    EXPECT_EQ(*std::min_element(out.begin(), out.end()), 0.0);
  }
  // 200000 whole turns: past the shortcut, yet it lands on 6 as the loops do (magenta).
  editor.connect(editor.addScalar(1256637.0614359174), "Scalar", c.node, "Hue");
  EXPECT_EQ(colourOut(c), (Colour{1, 0, 1}));
}

}  // namespace
}  // namespace colourtest
