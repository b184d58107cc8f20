// The corrector as a node: connectors, parameters and form, connected inputs against the form's
// values, the "Default" button and envelopes.
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "colour/CorrectorSession.h"

namespace colourtest {
namespace {

TEST_F(CorrectorTest, ANewNodeShowsItsConnectorsParametersAndForm) {
  Corrector c = addCorrector();
  EXPECT_EQ(c.node.color(), (std::array<int, 3>{11, 8, 51}));
  EXPECT_EQ(Connectors(c.node),
            "Colour/1 Scalar/2 Brightness/2 Contrast/2 Hue/2 Saturation/2 Gamma/2 Invert/4 > Colour/1 Scalar/2");
  // The five settings and the two fallbacks live in the node's channel group.
  std::vector<std::pair<std::string, int>> parameters;
  for (lwhost::VParm* p : session.animation().parameters(session.animation().group(c.node.channelGroup())))
    parameters.emplace_back(p->name(), p->envType());
  EXPECT_THAT(parameters, ElementsAre(Pair("Colour", LWVP_COLOR), Pair("Scalar", LWVP_FLOAT),
                                      Pair("Brightness", LWVP_PERCENT), Pair("Contrast", LWVP_PERCENT),
                                      Pair("Hue", LWVP_ANGLE), Pair("Saturation", LWVP_PERCENT),
                                      Pair("Gamma", LWVP_FLOAT)));

  std::vector<std::string> controls;
  for (const lwhost::XPControl& x : c.panel.controls()) {
    std::ostringstream line;
    line << std::hex << x.cid << ' ' << x.controlClass << ' ' << x.dataType << ' ' << x.label;
    controls.push_back(line.str());
    // Dividers under the web button, the scalar and the "Default" button only.
    EXPECT_EQ(c.panel.hasDividerAfter(x.cid), x.cid == kWebButtonId || x.cid == kScalarId || x.cid == kDefaultId)
        << std::hex << x.cid;
  }
  EXPECT_THAT(controls, ElementsAre("9901 dThumbnail  ", "9900 vButton  http://www.vorn.example/",
                                    "9000 color-env float3-env Colour", "9001 float-env float-env Scalar",
                                    "9002 percent-env float-env Brightness", "9003 percent-env float-env Contrast",
                                    "9004 angle-env float-env Hue", "9005 percent-env float-env Saturation",
                                    "9006 float-env float-env Gamma", "9007 iBoolean integer Invert",
                                    "9008 vButton  Default"));
  EXPECT_EQ(c.node.activateInterface().local.panel, c.panel.handle()) << "the form is made once";

  // Any non-zero integer inverts; the set's refresh shows it.
  EXPECT_TRUE(c.panel.setInteger(kInvertId, 5));
  EXPECT_EQ(c.panel.shownValue(kInvertId).integer[0], 1);
  EXPECT_THAT(correct(c, {0.25, 0.5, 1.5}), ElementsAre(0.75, 0.5, -0.5));
  EXPECT_TRUE(c.panel.problems().empty()) << c.panel.problems().front();
}

TEST_F(CorrectorTest, AConnectedInputHidesExactlyItsOwnControl) {
  Corrector c = addCorrector();
  const char* const inputs[] = {"Colour", "Scalar", "Brightness", "Contrast", "Hue", "Saturation", "Gamma", "Invert"};
  for (unsigned int cid = kColourId; cid <= kInvertId; ++cid) {
    const char* input = inputs[cid - kColourId];
    SCOPED_TRACE(input);
    if (cid == kColourId)
      editor.connect(editor.addColor(0.5, 0.5, 0.5), "Color", c.node, input);
    else if (cid == kInvertId)
      editor.connect(editor.addInteger(1), "Integer", c.node, input);
    else
      editor.connect(editor.addScalar(0.5), "Scalar", c.node, input);
    // The connection refreshed the open form by itself.
    for (unsigned int other = kColourId; other <= kInvertId; ++other)
      EXPECT_EQ(c.panel.shownValue(other).isNull(), other == cid) << inputs[other - kColourId];
    editor.disconnect(c.node, input);
    EXPECT_FALSE(c.panel.shownValue(cid).isNull()) << "back after disconnecting";
  }
}

TEST_F(CorrectorTest, ConnectedInputsReplaceTheFormValuesPerSpot) {
  Corrector c = addCorrector();
  set(c, kBrightnessId, 2.0);
  set(c, kScalarId, 0.2);
  setColour(c, {0.1, 0.1, 0.1});
  sample(c);
  editor.connect(editor.addColor(0.8, 0.4, 0.2), "Color", c.node, "Colour");
  editor.connect(editor.addScalar(0.3), "Scalar", c.node, "Scalar");
  EXPECT_THAT(colourOut(c), Pointwise(DoubleNear(kTight), Colour{1.6, 0.8, 0.4}));
  EXPECT_NEAR(scalarOut(c), 0.9, kTight);

  // Brightness from the spot's position (the mean of its coordinates), per spot.
  editor.connect(editor.addSpotPosition(), "Position", c.node, "Brightness");
  const double here[3] = {0.5, 0.5, 0.5}, there[3] = {1.5, 1.5, 1.5}, up[3] = {0, 0, 1};
  access = lwhost::MakeNodalAccess(here, up);
  EXPECT_THAT(colourOut(c), Pointwise(DoubleNear(kTight), Colour{0.4, 0.2, 0.1}));
  access = lwhost::MakeNodalAccess(there, up);
  EXPECT_THAT(colourOut(c), Pointwise(DoubleNear(kTight), Colour{1.2, 0.6, 0.3}));
  // Without the input the form's value is back, with no new sampling pass.
  editor.disconnect(c.node, "Brightness");
  EXPECT_THAT(colourOut(c), Pointwise(DoubleNear(kTight), Colour{1.6, 0.8, 0.4}));

  // Each other setting's input, one at a time, on (0.64, 0.16, 0.04): V = 0.64, s = 0.9375.
  set(c, kBrightnessId, 1.0);
  sample(c);
  editor.connect(editor.addColor(0.64, 0.16, 0.04), "Color", c.node, "Colour");
  const std::pair<const char*, double> feeds[] = {
      {"Hue", 2 * kPi / 3}, {"Saturation", 0.0}, {"Contrast", 0.0}, {"Gamma", 2.0}};
  const Colour wanted[] = {{0.04, 0.64, 0.16}, {0.64, 0.64, 0.64}, {0.5, 0.125, 0.03125}, {0.8, 0.4, 0.2}};
  for (int k = 0; k < 4; ++k) {
    SCOPED_TRACE(feeds[k].first);
    editor.connect(editor.addScalar(feeds[k].second), "Scalar", c.node, feeds[k].first);
    EXPECT_THAT(colourOut(c), Pointwise(DoubleNear(kTight), wanted[k]));
    editor.disconnect(c.node, feeds[k].first);
  }
  // A connected 1 inverts; a connected 0 overrides the form's tick.
  editor.connect(editor.addInteger(1), "Integer", c.node, "Invert");
  EXPECT_THAT(colourOut(c), Pointwise(DoubleNear(kTight), Colour{0.36, 0.84, 0.96}));
  setInvert(c, true);
  sample(c);
  editor.connect(editor.addInteger(0), "Integer", c.node, "Invert");
  EXPECT_THAT(colourOut(c), ElementsAre(0.64, 0.16, 0.04));
}

TEST_F(CorrectorTest, DefaultResetsTheFiveSettingsButKeepsInvertAndTheFallbacks) {
  Corrector c = addCorrector();
  apply(c, {2.0, 0.5, 1.0, 0.3, 2.2, true});
  setColour(c, {0.1, 0.2, 0.3});
  // Brightness and the scalar fallback animated, as in the graph editor.
  parameter(c, kBrightnessId).addKey(0, 0.0, 1.5);
  parameter(c, kBrightnessId).addKey(0, 1.0, 3.0);
  parameter(c, kScalarId).addKey(0, 0.0, 0.4);
  parameter(c, kScalarId).addKey(0, 1.0, 0.8);
  ASSERT_TRUE(parameter(c, kBrightnessId).enveloped());
  session.host().clearInstanceUpdates();
  ASSERT_TRUE(c.panel.click(kDefaultId));

  const std::pair<unsigned int, double> neutral[] = {
      {kBrightnessId, 1.0}, {kContrastId, 1.0}, {kHueId, 0.0}, {kSaturationId, 1.0}, {kGammaId, 1.0}};
  for (const auto& [cid, value] : neutral) {
    EXPECT_FALSE(parameter(c, cid).enveloped()) << std::hex << cid;
    // Shown already: the form was refreshed after the reset.
    EXPECT_EQ(c.panel.shownValue(cid).number[0], value) << std::hex << cid;
  }
  EXPECT_THAT(session.host().instanceUpdates(), ElementsAre(Pair("NodeHandler", c.node.instance().get())));

  // Kept: the tick, both fallbacks and the scalar's envelope (keyed 0.4 -> 0.8).
  sample(c, 0.5, 15);
  EXPECT_THAT(colourOut(c), Pointwise(DoubleNear(kTight), Colour{0.9, 0.8, 0.7}));
  const double scalarAtHalf = parameter(c, kScalarId).valueAt(0.5)[0];
  EXPECT_GT(scalarAtHalf, 0.4);
  EXPECT_NEAR(scalarOut(c), 1 - scalarAtHalf, kTight);
}

TEST_F(CorrectorTest, EnvelopesAreSampledAtTheTimeOfEachPass) {
  Corrector c = addCorrector();
  setColour(c, {0.8, 0.4, 0.2});
  set(c, kScalarId, 0.3);
  lwhost::VParm& brightness = parameter(c, kBrightnessId);
  brightness.addKey(0, 0.0, 1.0);
  brightness.envelope(0)->addKey(1.0, 3.0, lwhost::kShapeLinear);

  // Frame numbers far from the times: sampling must go by time.
  sample(c, 0.25, 6);
  EXPECT_THAT(colourOut(c), Pointwise(DoubleNear(kTight), Colour{1.2, 0.6, 0.3}));  // B = 1.5
  EXPECT_NEAR(scalarOut(c), 0.75, kTight);
  sample(c, 0.0, 24);
  EXPECT_THAT(colourOut(c), Pointwise(DoubleNear(kTight), Colour{0.8, 0.4, 0.2}));

  // The colour fallback in the same pass: red keyed 0.8 -> 0.4. At 0.5 s, B = 2 on
  // (0.6, 0.4, 0.2): V = 1.2, s = 2/3, sextant 1/2.
  lwhost::VParm& colour = parameter(c, kColourId);
  colour.addKey(0, 0.0, 0.8);
  colour.envelope(0)->addKey(1.0, 0.4, lwhost::kShapeLinear);
  sample(c, 0.5, 1);
  EXPECT_THAT(colourOut(c), Pointwise(DoubleNear(kTight), Colour{1.2, 0.8, 0.4}));
}

}  // namespace
}  // namespace colourtest
