// The corrector as a node: activation, connectors and look, connected inputs against the form's
// values, the "Default" button, envelopes, and the form itself.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "colour/CorrectorSession.h"
#include "lwhost/Envelope.h"
#include "lwhost/FormRenderer.h"
#include "support/RawHandler.h"

namespace colourtest {
namespace {

using ::testing::DoubleNear;
using ::testing::ElementsAre;
using ::testing::Pair;
using ::testing::Pointwise;

constexpr double kTight = 1e-12;

std::vector<std::pair<std::string, int>> Connectors(const lwhost::Node& node, bool inputs) {
  std::vector<std::pair<std::string, int>> list;
  if (inputs)
    for (const auto& in : node.inputs()) list.emplace_back(in->name(), in->type());
  else
    for (const auto& out : node.outputs()) list.emplace_back(out->name(), out->type());
  return list;
}

TEST_F(CorrectorTest, ActivatesOnlyAsVersionOneAndBuildsItsNode) {
  for (int version : {0, 2, 3}) {
    RawNodeHandler raw;
    EXPECT_EQ(raw.activate(vorn, "SimpleColourCorrector", version), AFUNC_BADVERSION) << version;
    EXPECT_EQ(raw.handler.evaluate, nullptr) << "a refused activation fills nothing";
  }
  RawNodeHandler raw;
  ASSERT_EQ(raw.activate(vorn, "SimpleColourCorrector", 1), AFUNC_OK);
  EXPECT_NE(raw.handler.evaluate, nullptr);
  EXPECT_NE(raw.inst.create, nullptr);
  EXPECT_EQ(raw.handler.flags, nullptr) << "version 1 records have no flags entry";

  // The interface answers from version 4 on, and not without a record to fill.
  const ServerRecord& ui = vorn.require(LWNODE_ICLASS, "SimpleColourCorrector");
  EXPECT_EQ(vorn.activate(ui, 3, nullptr), AFUNC_BADVERSION);
  EXPECT_EQ(vorn.activate(ui, 4, nullptr), AFUNC_OK);

  Corrector c = addCorrector();
  EXPECT_EQ(c.node.version(), 1);
  EXPECT_EQ(c.node.flags(), 0u);
  EXPECT_EQ(c.node.name(), "Simple Colour Corrector (1)");
  EXPECT_EQ(c.node.color(), (std::array<int, 3>{11, 8, 51}));
  EXPECT_THAT(Connectors(c.node, true),
              ElementsAre(Pair("Colour", NOT_COLOR), Pair("Scalar", NOT_SCALAR), Pair("Brightness", NOT_SCALAR),
                          Pair("Contrast", NOT_SCALAR), Pair("Hue", NOT_SCALAR), Pair("Saturation", NOT_SCALAR),
                          Pair("Gamma", NOT_SCALAR), Pair("Invert", NOT_INTEGER)));
  EXPECT_THAT(Connectors(c.node, false), ElementsAre(Pair("Colour", NOT_COLOR), Pair("Scalar", NOT_SCALAR)));
  EXPECT_EQ(c.node.activateInterface().version, 4);
  EXPECT_EQ(c.node.instance().panels().size(), 1u) << "every activation hands back the same form";

  // The five settings and the two fallbacks live in the node's channel group, with their types.
  std::vector<std::pair<std::string, int>> parameters;
  for (lwhost::VParm* p : session.animation().parameters(session.animation().group(c.node.channelGroup())))
    parameters.emplace_back(p->name(), p->envType());
  EXPECT_THAT(parameters, ElementsAre(Pair("Colour", LWVP_COLOR), Pair("Scalar", LWVP_FLOAT),
                                      Pair("Brightness", LWVP_PERCENT), Pair("Contrast", LWVP_PERCENT),
                                      Pair("Hue", LWVP_ANGLE), Pair("Saturation", LWVP_PERCENT),
                                      Pair("Gamma", LWVP_FLOAT)));
}

TEST_F(CorrectorTest, FormShowsNeutralSettingsAndTakesEdits) {
  Corrector c = addCorrector();
  const std::pair<unsigned int, double> neutral[] = {
      {kScalarId, 0.0}, {kBrightnessId, 1.0}, {kContrastId, 1.0}, {kHueId, 0.0}, {kSaturationId, 1.0}, {kGammaId, 1.0}};
  for (const auto& [cid, value] : neutral) {
    const lwhost::XPValue v = c.panel.value(cid);
    ASSERT_EQ(v.kind, lwhost::ValueKind::VParm) << std::hex << cid;
    EXPECT_TRUE(v.numbersKnown);
    EXPECT_EQ(v.number[0], value) << std::hex << cid;
  }
  EXPECT_THAT(c.panel.value(kColourId).number, ElementsAre(0.0, 0.0, 0.0));
  EXPECT_EQ(c.panel.value(kInvertId).kind, lwhost::ValueKind::Integer);
  EXPECT_EQ(c.panel.value(kInvertId).integer[0], 0);

  // Each setting lands in its own parameter; the set callback asks for a refresh.
  set(c, kHueId, 0.25);
  EXPECT_EQ(c.panel.lastSetResult(), 1);
  EXPECT_EQ(parameter(c, kHueId).value()[0], 0.25);
  EXPECT_EQ(parameter(c, kSaturationId).value()[0], 1.0);
  setInvert(c, true);
  EXPECT_EQ(c.panel.lastSetResult(), 1);
  EXPECT_EQ(c.panel.shownValue(kInvertId).integer[0], 1);
  EXPECT_TRUE(c.panel.setInteger(kInvertId, 5)) << "any non-zero integer inverts";
  EXPECT_EQ(c.panel.value(kInvertId).integer[0], 1);
  setInvert(c, false);
  EXPECT_EQ(c.panel.value(kInvertId).integer[0], 0);
  EXPECT_TRUE(c.panel.problems().empty()) << c.panel.problems().front();
}

// Each input, fed by a host node, and its form control (same order, ids from 0x9000).
struct Feed {
  unsigned int cid;
  const char* input;
};
constexpr Feed kFeeds[] = {{kColourId, "Colour"},         {kScalarId, "Scalar"}, {kBrightnessId, "Brightness"},
                           {kContrastId, "Contrast"},     {kHueId, "Hue"},       {kSaturationId, "Saturation"},
                           {kGammaId, "Gamma"},           {kInvertId, "Invert"}};

TEST_F(CorrectorTest, AConnectedInputHidesExactlyItsOwnControl) {
  Corrector c = addCorrector();
  lwhost::Node& colour = editor.addColor(0.5, 0.5, 0.5);
  lwhost::Node& scalar = editor.addScalar(0.5);
  lwhost::Node& integer = editor.addInteger(1);
  for (const Feed& feed : kFeeds) {
    SCOPED_TRACE(feed.input);
    const int refreshes = c.panel.refreshCount();
    if (feed.cid == kColourId)
      editor.connect(colour, "Color", c.node, feed.input);
    else if (feed.cid == kInvertId)
      editor.connect(integer, "Integer", c.node, feed.input);
    else
      editor.connect(scalar, "Scalar", c.node, feed.input);
    // The connection refreshed the open form by itself, and the control now shows nothing.
    EXPECT_GT(c.panel.refreshCount(), refreshes);
    for (const Feed& other : kFeeds) {
      EXPECT_EQ(c.panel.shownValue(other.cid).isNull(), other.cid == feed.cid) << other.input;
      EXPECT_EQ(c.panel.value(other.cid).isNull(), other.cid == feed.cid) << other.input;
    }
    editor.disconnect(c.node, feed.input);
    EXPECT_FALSE(c.panel.shownValue(feed.cid).isNull()) << "back after disconnecting";
  }
}

TEST_F(CorrectorTest, ConnectedInputsReplaceTheFormValuesPerSpot) {
  Corrector c = addCorrector();
  set(c, kBrightnessId, 2.0);
  set(c, kScalarId, 0.2);
  setColour(c, {0.1, 0.1, 0.1});
  sample(c);

  // Inputs replace the fallbacks: a neutral path would give them back untouched, but B = 2.
  editor.connect(editor.addColor(0.8, 0.4, 0.2), "Color", c.node, "Colour");
  editor.connect(editor.addScalar(0.3), "Scalar", c.node, "Scalar");
  EXPECT_THAT(colourOut(c), Pointwise(DoubleNear(kTight), Colour{1.6, 0.8, 0.4}));
  EXPECT_NEAR(scalarOut(c), 0.9, kTight);  // (2 x 0.3 + 0.3)

  // Brightness from the spot's position (the mean of its three coordinates): 0.5 here, 1.5 there.
  editor.connect(editor.addSpotPosition(), "Position", c.node, "Brightness");
  const double here[3] = {0.5, 0.5, 0.5}, there[3] = {1.5, 1.5, 1.5}, up[3] = {0, 0, 1};
  access = lwhost::MakeNodalAccess(here, up);
  EXPECT_THAT(colourOut(c), Pointwise(DoubleNear(kTight), Colour{0.4, 0.2, 0.1}));
  EXPECT_NEAR(scalarOut(c), 0.45, kTight);
  access = lwhost::MakeNodalAccess(there, up);
  EXPECT_THAT(colourOut(c), Pointwise(DoubleNear(kTight), Colour{1.2, 0.6, 0.3}));
  EXPECT_NEAR(scalarOut(c), 0.75, kTight);
  // For that spot only: without the input the form's B = 2 is back, with no new sampling pass.
  editor.disconnect(c.node, "Brightness");
  EXPECT_THAT(colourOut(c), Pointwise(DoubleNear(kTight), Colour{1.6, 0.8, 0.4}));

  // Hue, contrast, saturation and gamma inputs, one at a time on a neutral brightness.
  set(c, kBrightnessId, 1.0);
  sample(c);
  editor.connect(editor.addColor(1, 0, 0), "Color", c.node, "Colour");
  editor.connect(editor.addScalar(2 * kPi / 3), "Scalar", c.node, "Hue");
  EXPECT_THAT(colourOut(c), Pointwise(DoubleNear(kTight), Colour{0, 1, 0}));
  editor.disconnect(c.node, "Hue");
  editor.connect(editor.addScalar(0.0), "Scalar", c.node, "Saturation");
  EXPECT_THAT(colourOut(c), ElementsAre(1.0, 1.0, 1.0));
  editor.disconnect(c.node, "Saturation");
  editor.connect(editor.addScalar(0.0), "Scalar", c.node, "Contrast");
  EXPECT_THAT(colourOut(c), ElementsAre(0.5, 0.0, 0.0));
  EXPECT_EQ(scalarOut(c), 0.5);
  editor.disconnect(c.node, "Contrast");
  editor.connect(editor.addScalar(2.0), "Scalar", c.node, "Gamma");
  editor.connect(editor.addColor(0.25, 0.64, 0.09), "Color", c.node, "Colour");
  EXPECT_THAT(colourOut(c), Pointwise(DoubleNear(kTight), Colour{0.5, 0.8, 0.3}));
  editor.disconnect(c.node, "Gamma");

  // Invert: a connected 1 inverts, a connected 0 overrides the form's tick.
  editor.connect(editor.addInteger(1), "Integer", c.node, "Invert");
  EXPECT_THAT(colourOut(c), Pointwise(DoubleNear(kTight), Colour{0.75, 0.36, 0.91}));
  EXPECT_NEAR(scalarOut(c), 0.7, kTight);
  editor.disconnect(c.node, "Invert");
  setInvert(c, true);
  sample(c);
  editor.connect(editor.addInteger(0), "Integer", c.node, "Invert");
  EXPECT_THAT(colourOut(c), ElementsAre(0.25, 0.64, 0.09));
  EXPECT_EQ(scalarOut(c), 0.3);
}

TEST_F(CorrectorTest, DefaultResetsTheFiveSettingsButKeepsInvertAndTheFallbacks) {
  Corrector c = addCorrector();
  const std::pair<unsigned int, double> moved[] = {
      {kBrightnessId, 2.0}, {kContrastId, 0.5}, {kHueId, 1.0}, {kSaturationId, 0.3}, {kGammaId, 2.2}};
  for (const auto& [cid, value] : moved) set(c, cid, value);
  setInvert(c, true);
  setColour(c, {0.1, 0.2, 0.3});
  set(c, kScalarId, 0.4);
  // Brightness and the scalar fallback animated, as in the graph editor.
  parameter(c, kBrightnessId).addKey(0, 0.0, 1.5);
  parameter(c, kBrightnessId).addKey(0, 1.0, 3.0);
  parameter(c, kScalarId).addKey(0, 0.0, 0.4);
  parameter(c, kScalarId).addKey(0, 1.0, 0.8);
  ASSERT_TRUE(parameter(c, kBrightnessId).enveloped());
  void* instance = c.node.instance().get();

  session.host().clearInstanceUpdates();
  const int refreshes = c.panel.refreshCount();
  ASSERT_TRUE(c.panel.click(kDefaultId));

  const std::pair<unsigned int, double> neutral[] = {
      {kBrightnessId, 1.0}, {kContrastId, 1.0}, {kHueId, 0.0}, {kSaturationId, 1.0}, {kGammaId, 1.0}};
  for (const auto& [cid, value] : neutral) {
    SCOPED_TRACE(std::to_string(cid));
    lwhost::VParm& p = parameter(c, cid);
    EXPECT_EQ(p.state(), 0);
    EXPECT_FALSE(p.enveloped());
    EXPECT_EQ(p.valueAt(0.5)[0], value);
    // The form was refreshed after the reset, so it shows the neutral value already.
    EXPECT_EQ(c.panel.shownValue(cid).number[0], value);
  }
  EXPECT_GT(c.panel.refreshCount(), refreshes);
  EXPECT_THAT(session.host().instanceUpdates(), ElementsAre(Pair("NodeHandler", instance)));

  // Kept: the tick and both fallbacks, the scalar's envelope included.
  EXPECT_EQ(c.panel.value(kInvertId).integer[0], 1);
  EXPECT_THAT(c.panel.value(kColourId).number, ElementsAre(0.1, 0.2, 0.3));
  EXPECT_TRUE(parameter(c, kScalarId).enveloped());

  // Rendering agrees: neutral settings, inverted fallbacks; the scalar keyed 0.4 -> 0.8.
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
  // Brightness 1 at 0 s rising linearly to 3 at 1 s.
  lwhost::VParm& brightness = parameter(c, kBrightnessId);
  brightness.addKey(0, 0.0, 1.0);
  ASSERT_NE(brightness.envelope(0), nullptr);
  brightness.envelope(0)->addKey(1.0, 3.0, lwhost::kShapeLinear);

  // Frame numbers far from the times: sampling must go by time.
  sample(c, 0.25, 6);
  EXPECT_THAT(colourOut(c), Pointwise(DoubleNear(kTight), Colour{1.2, 0.6, 0.3}));  // B = 1.5
  EXPECT_NEAR(scalarOut(c), 0.75, kTight);                                           // 1.5 x 0.3 + 0.3
  sample(c, 0.75, 18);
  EXPECT_THAT(colourOut(c), Pointwise(DoubleNear(kTight), Colour{2.0, 1.0, 0.5}));  // B = 2.5
  sample(c, 0.0, 24);
  EXPECT_THAT(colourOut(c), Pointwise(DoubleNear(kTight), Colour{0.8, 0.4, 0.2}));

  // The fallbacks are sampled in the same pass: red keyed 0.8 -> 0.4 over the second.
  lwhost::VParm& colour = parameter(c, kColourId);
  colour.addKey(0, 0.0, 0.8);
  colour.envelope(0)->addKey(1.0, 0.4, lwhost::kShapeLinear);
  sample(c, 0.5, 1);
  // B = 2 and the colour (0.6, 0.4, 0.2): V = 1.2, s = 2/3, sextant 1/2: (V, t, p) = (1.2, 0.8, 0.4).
  EXPECT_THAT(colourOut(c), Pointwise(DoubleNear(kTight), Colour{1.2, 0.8, 0.4}));
}

TEST_F(CorrectorTest, FormListsItsElevenControlsAndRendersThem) {
  Corrector c = addCorrector();
  std::vector<std::pair<unsigned int, std::string>> controls;
  for (const lwhost::XPControl& control : c.panel.controls()) controls.emplace_back(control.cid, control.controlClass);
  EXPECT_THAT(controls, ElementsAre(Pair(kLogoId, "dThumbnail"), Pair(kWebButtonId, "vButton"),
                                    Pair(kColourId, "color-env"), Pair(kScalarId, "float-env"),
                                    Pair(kBrightnessId, "percent-env"), Pair(kContrastId, "percent-env"),
                                    Pair(kHueId, "angle-env"), Pair(kSaturationId, "percent-env"),
                                    Pair(kGammaId, "float-env"), Pair(kInvertId, "iBoolean"),
                                    Pair(kDefaultId, "vButton")));
  EXPECT_EQ(c.panel.control(kDefaultId)->label, "Default");
  EXPECT_EQ(c.panel.control(kHueId)->label, "Hue");
  EXPECT_EQ(c.panel.control(kColourId)->dataType, "float3-env");
  EXPECT_EQ(c.panel.control(kGammaId)->dataType, "float-env");
  EXPECT_EQ(c.panel.control(kInvertId)->dataType, "integer");
  EXPECT_EQ(c.panel.control(kDefaultId)->vid, 0u);
  // Dividers under the web button, the scalar and the "Default" button only.
  for (const lwhost::XPControl& control : c.panel.controls())
    EXPECT_EQ(c.panel.hasDividerAfter(control.cid),
              control.cid == kWebButtonId || control.cid == kScalarId || control.cid == kDefaultId)
        << std::hex << control.cid;
  EXPECT_EQ(c.panel.thumbnailOptions(kLogoId), 0x80000601u);

  set(c, kHueId, kPi / 4);
  setInvert(c, true);
  setColour(c, {1.0, 0.5, 0.0});
  std::vector<lwhost::FormRow> layout;
  const lwhost::Raster form = lwhost::RenderForm(c.panel, &layout);
  std::vector<unsigned int> rows;
  for (const lwhost::FormRow& row : layout) rows.push_back(row.cid);
  EXPECT_THAT(rows, ElementsAre(kLogoId, kWebButtonId, kColourId, kScalarId, kBrightnessId, kContrastId, kHueId,
                                kSaturationId, kGammaId, kInvertId, kDefaultId));
  EXPECT_EQ(lwhost::FormatValue("angle-env", c.panel.value(kHueId)), "45.0\xB0");
  EXPECT_EQ(lwhost::FormatValue("percent-env", c.panel.value(kBrightnessId)), "100.0 %");
  std::string error;
  EXPECT_TRUE(form.writePng(std::string(COLOUR_TEST_OUTPUT_DIR) + "/simple_colour_corrector_form.png", &error))
      << error;
  EXPECT_TRUE(c.panel.problems().empty()) << c.panel.problems().front();
}

}  // namespace
}  // namespace colourtest
