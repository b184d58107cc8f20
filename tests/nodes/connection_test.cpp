// Connections, input events, evaluation and type conversion between nodes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <limits>

#include "nodes/NodeTestSupport.h"

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using lwhost::NodeError;

TEST_F(NodeEditorTest, InputEventsFollowConnectReplaceDisconnectAndUpstreamLoss) {
  lwhost::PluginNode& mix = addMix();
  lwhost::Node& color = editor.addColor(1, 0, 0);
  lwhost::Node& scalar = editor.addScalar(0.5);
  EXPECT_TRUE(takeEvents(mix).empty());

  editor.connect(color, "Color", mix, "Color");
  EXPECT_THAT(takeEvents(mix), ElementsAre("Color 0 1"));
  editor.connect(color, "Color", mix, "Color");  // the same pair again changes nothing
  EXPECT_TRUE(takeEvents(mix).empty());

  // Replacing: the old connection goes first, and the old output forgets the input.
  editor.connect(scalar, "Scalar", mix, "Color");
  EXPECT_THAT(takeEvents(mix), ElementsAre("Color 1 0", "Color 0 2"));
  EXPECT_TRUE(color.outputs()[0]->targets().empty());

  editor.disconnect(mix, "Color");
  EXPECT_THAT(takeEvents(mix), ElementsAre("Color 1 0"));
  editor.disconnect(mix, "Color");
  EXPECT_TRUE(takeEvents(mix).empty());

  // One output feeding inputs of two nodes; then its node goes.
  lwhost::PluginNode& other = addMix();
  editor.connect(scalar, "Scalar", mix, "Amount");
  editor.connect(scalar, "Scalar", other, "Amount");
  editor.connect(scalar, "Scalar", mix, "Color");
  takeEvents(mix);
  takeEvents(other);
  editor.removeNode(scalar);
  EXPECT_THAT(takeEvents(mix), ElementsAre("Amount 2 0", "Color 2 0"));
  EXPECT_THAT(takeEvents(other), ElementsAre("Amount 2 0"));
  EXPECT_EQ(inputs().check(mix.input("Amount")), 0);
  EXPECT_EQ(inputs().check(mix.input("Color")), 0);

  // The plug-in's own output destroyed: the inputs it fed are told they were disconnected.
  editor.connect(color, "Color", other, "Amount");
  takeEvents(other);
  outputs().destroy(color.id(), color.outputs()[0].get());
  EXPECT_THAT(takeEvents(other), ElementsAre("Amount 1 0"));
  EXPECT_TRUE(color.outputs().empty());

  // A plug-in node upstream goes: downstream hears of it, its feed forgets it, and its instance
  // is destroyed once (no event reaches it afterwards: ASan would see the write).
  editor.connect(mix, "Color", other, "Color");
  lwhost::Node& feed = editor.addColor(0, 1, 0);
  editor.connect(feed, "Color", mix, "Color");
  takeEvents(mix);
  EXPECT_THAT(takeEvents(other), ElementsAre("Color 0 1"));
  host.messages().clear();
  editor.removeNode(mix);
  EXPECT_THAT(takeEvents(other), ElementsAre("Color 2 0"));
  EXPECT_TRUE(feed.outputs()[0]->targets().empty());
  ASSERT_EQ(host.messages().messages().size(), 1u);
  EXPECT_EQ(host.messages().messages()[0].first, "TestMix destroyed");
}

TEST_F(NodeEditorTest, EventCallbackMayDestroyInputsWhoseEventsArePending) {
  lwhost::PluginNode& mix = addMix();
  lwhost::Node& scalar = editor.addScalar(1);
  editor.connect(scalar, "Scalar", mix, "Color");
  editor.connect(scalar, "Scalar", mix, "Amount");
  MixInstance& state = mixOf(mix);
  state.eventCount = 0;
  state.dropInputsOnLoss = 1;

  // Color's event makes the plug-in destroy Color and Amount; Amount's event must not follow.
  editor.removeNode(scalar);
  ASSERT_EQ(state.eventCount, 1);
  EXPECT_EQ(state.events[0].event, NIE_INPUTNODEDESTROY);
  ASSERT_EQ(mix.inputs().size(), 1u);
  EXPECT_EQ(mix.inputs()[0]->name(), "Material");
}

TEST_F(NodeEditorTest, RefusedConnectionsLeaveTheGraphAsItWas) {
  lwhost::PluginNode& mix = addMix();
  lwhost::PluginNode& other = addMix();
  lwhost::Node& color = editor.addColor(1, 1, 1);
  LWNodalMaterial m{};
  lwhost::Node& material = editor.addMaterial(m);
  editor.connect(color, "Color", mix, "Color");
  editor.connect(mix, "Color", other, "Color");
  takeEvents(mix);
  takeEvents(other);

  EXPECT_THROW(editor.connect(material, "Material", mix, "Color"), NodeError);
  EXPECT_THROW(editor.connect(color, "Color", mix, "Material"), NodeError);
  try {
    editor.connect(other, "Color", mix, "Color");
    ADD_FAILURE() << "a loop was connected";
  } catch (const NodeError& e) {
    EXPECT_THAT(e.what(), HasSubstr("loop"));
    EXPECT_THAT(e.what(), HasSubstr("\"Test Mix (2)\""));
  }
  EXPECT_THROW(editor.connect(mix, "Color", mix, "Amount"), NodeError);  // onto itself
  EXPECT_THROW(editor.connect(color, "Colour", mix, "Color"), NodeError);
  EXPECT_THROW(editor.connect(color, "Color", mix, "Nothing"), NodeError);
  EXPECT_THROW(editor.disconnect(mix, "Nothing"), NodeError);

  EXPECT_TRUE(takeEvents(mix).empty());
  EXPECT_TRUE(takeEvents(other).empty());
  EXPECT_EQ(mix.input("Color")->source(), color.outputs()[0].get());
  EXPECT_EQ(mix.input("Material")->source(), nullptr);
  EXPECT_EQ(other.input("Color")->source(), mix.output("Color"));
}

TEST_F(NodeEditorTest, UnconnectedOrSilentInputsLeaveTheValueAlone) {
  lwhost::PluginNode& mix = addMix();
  MixInstance& state = mixOf(mix);

  double v[3] = {9, 9, 9};
  EXPECT_EQ(inputs().evaluate(mix.input("Color"), &access, v), 0);
  EXPECT_THAT(v, ElementsAre(9, 9, 9));

  ASSERT_TRUE(editor.evaluate(mix, "Color", access, v, NOT_COLOR));
  EXPECT_EQ(state.colorResult, 0);
  EXPECT_EQ(state.amountResult, 0);
  EXPECT_THAT(state.colorSeen, ElementsAre(0.1, 0.2, 0.3));
  EXPECT_EQ(state.amountSeen, 1.0);
  EXPECT_THAT(v, ElementsAre(0.1, 0.2, 0.3));

  // Connected to an output that writes nothing: connected, yet nothing changes, not even
  // through a conversion (colour into the scalar input).
  lwhost::PluginNode& quiet = addMix();
  editor.connect(quiet, "Silent", mix, "Color");
  editor.connect(quiet, "Silent", mix, "Amount");
  ASSERT_TRUE(editor.evaluate(mix, "Color", access, v, NOT_COLOR));
  EXPECT_EQ(state.colorResult, 1);
  EXPECT_EQ(state.amountResult, 1);
  EXPECT_THAT(state.colorSeen, ElementsAre(0.1, 0.2, 0.3));
  EXPECT_EQ(state.amountSeen, 1.0);
  double s = 5;
  ASSERT_TRUE(editor.evaluate(quiet, "Silent", access, &s, NOT_SCALAR));
  EXPECT_EQ(s, 5);

  // Unknown outputs and handles of the wrong kind fail without touching anything.
  EXPECT_FALSE(editor.evaluate(mix, "Nothing", access, v, NOT_COLOR));
  EXPECT_EQ(inputs().evaluate(nullptr, &access, v), 0);
  EXPECT_EQ(inputs().evaluate(mix.output("Color"), &access, v), 0);
  EXPECT_EQ(inputs().evaluate(mix.id(), &access, v), 0);
  EXPECT_EQ(inputs().evaluate(mix.input("Color"), nullptr, v), 0);
  outputs().setValue(nullptr, v);
  outputs().setValue(mix.input("Color"), v);
  EXPECT_EQ(outputs().getValue(mix.id()), nullptr);
  EXPECT_THAT(v, ElementsAre(0.1, 0.2, 0.3));
}

TEST_F(NodeEditorTest, ValuesConvertBetweenConnectorTypes) {
  lwhost::Node& scalar = editor.addScalar(0.4);
  lwhost::Node& color = editor.addColor(0.2, 0.4, 0.9);
  lwhost::Node& vector = editor.addVector(1, 2, 4);
  lwhost::Node& integer = editor.addInteger(-3);
  auto as3 = [&](lwhost::Node& node, const char* out, ConnectionType type) {
    std::vector<double> v(3, -1.0);
    EXPECT_TRUE(editor.evaluate(node, out, access, v.data(), type)) << out;
    return v;
  };
  auto as1 = [&](lwhost::Node& node, const char* out) {
    double v = -1;
    EXPECT_TRUE(editor.evaluate(node, out, access, &v, NOT_SCALAR)) << out;
    return v;
  };
  auto asInt = [&](lwhost::Node& node, const char* out) {
    int v = -1;
    EXPECT_TRUE(editor.evaluate(node, out, access, &v, NOT_INTEGER)) << out;
    return v;
  };

  EXPECT_THAT(as3(scalar, "Scalar", NOT_COLOR), ElementsAre(0.4, 0.4, 0.4));
  EXPECT_THAT(as3(scalar, "Scalar", NOT_VECTOR), ElementsAre(0.4, 0.4, 0.4));
  EXPECT_DOUBLE_EQ(as1(color, "Color"), 0.5);
  EXPECT_DOUBLE_EQ(as1(vector, "Vector"), 7.0 / 3.0);
  EXPECT_THAT(as3(color, "Color", NOT_VECTOR), ElementsAre(0.2, 0.4, 0.9));
  EXPECT_THAT(as3(vector, "Vector", NOT_COLOR), ElementsAre(1, 2, 4));
  EXPECT_EQ(as1(integer, "Integer"), -3.0);
  EXPECT_THAT(as3(integer, "Integer", NOT_COLOR), ElementsAre(-3, -3, -3));
  EXPECT_EQ(asInt(vector, "Vector"), 2);  // mean 2.33, truncated

  // Scalar to integer truncates toward zero and saturates.
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const std::pair<double, int> truncations[] = {{2.7, 2},        {-2.7, -2},      {0.99, 0},
                                                {nan, 0},        {1e300, INT_MAX}, {-1e300, INT_MIN}};
  for (const auto& [value, expected] : truncations) {
    lwhost::Node& source = editor.addScalar(value);
    EXPECT_EQ(asInt(source, "Scalar"), expected) << value;
  }

  // Material goes only to material, whole.
  LWNodalMaterial m;
  for (int i = 0; i < 3; ++i) m.diffuse[i] = m.specular[i] = m.reflection[i] = m.refraction[i] = i + 0.5;
  m.transparency = 0.75;
  lwhost::Node& material = editor.addMaterial(m);
  LWNodalMaterial got{};
  ASSERT_TRUE(editor.evaluate(material, "Material", access, &got, NOT_MATERIAL));
  EXPECT_EQ(std::memcmp(&got, &m, sizeof m), 0);
  double untouched[3] = {7, 7, 7};
  EXPECT_FALSE(editor.evaluate(material, "Material", access, untouched, NOT_COLOR));
  EXPECT_FALSE(editor.evaluate(color, "Color", access, &got, NOT_MATERIAL));
  EXPECT_THAT(untouched, ElementsAre(7, 7, 7));

  // The same rules through a plug-in's inputs.
  lwhost::PluginNode& mix = addMix();
  MixInstance& state = mixOf(mix);
  editor.connect(scalar, "Scalar", mix, "Color");
  editor.connect(color, "Color", mix, "Amount");
  editor.connect(material, "Material", mix, "Material");
  double out[3];
  ASSERT_TRUE(editor.evaluate(mix, "Color", access, out, NOT_COLOR));
  EXPECT_THAT(state.colorSeen, ElementsAre(0.4, 0.4, 0.4));
  EXPECT_DOUBLE_EQ(state.amountSeen, 0.5);
  EXPECT_DOUBLE_EQ(out[1], 0.2);
  ASSERT_TRUE(editor.evaluate(mix, "Material", access, &got, NOT_MATERIAL));
  EXPECT_EQ(state.materialResult, 1);
  EXPECT_EQ(std::memcmp(&got, &m, sizeof m), 0);
  editor.connect(integer, "Integer", mix, "Amount");
  ASSERT_TRUE(editor.evaluate(mix, "Color", access, out, NOT_COLOR));
  EXPECT_EQ(state.amountSeen, -3.0);

  // getType reports the requester's type; getValue hands out a buffer in the output's type.
  EXPECT_EQ(as1(mix, "Type"), static_cast<double>(NOT_SCALAR));
  EXPECT_EQ(asInt(mix, "Type"), static_cast<int>(NOT_INTEGER));
  EXPECT_THAT(as3(mix, "Direct", NOT_COLOR), ElementsAre(0.3, 0.6, 0.9));
  EXPECT_DOUBLE_EQ(as1(mix, "Direct"), 0.6);
}

TEST_F(NodeEditorTest, EachConnectedInputEvaluatesItsUpstreamNodeOnce) {
  lwhost::Node& scalar = editor.addScalar(0.5);
  lwhost::Node& unused = editor.addColor(1, 1, 1);
  lwhost::PluginNode& first = addMix();
  lwhost::PluginNode& second = addMix();
  editor.connect(scalar, "Scalar", first, "Color");
  editor.connect(scalar, "Scalar", first, "Amount");
  editor.connect(first, "Color", second, "Color");

  double v[3];
  for (int i = 0; i < 3; ++i) ASSERT_TRUE(editor.evaluate(second, "Color", access, v, NOT_COLOR));
  EXPECT_EQ(second.evaluations(), 3u);
  EXPECT_EQ(first.evaluations(), 3u);
  EXPECT_EQ(scalar.evaluations(), 6u);
  EXPECT_EQ(unused.evaluations(), 0u);
  EXPECT_THAT(v, ElementsAre(0.25, 0.25, 0.25));  // (0.5, 0.5, 0.5) * 0.5, passed through

  scalar.resetEvaluations();
  double s;
  ASSERT_TRUE(editor.evaluate(scalar, "Scalar", access, &s, NOT_SCALAR));
  EXPECT_EQ(scalar.evaluations(), 1u);
}

TEST_F(NodeEditorTest, SpotNodesReadTheSample) {
  const double position[3] = {1, 2, 3};
  const double normal[3] = {0, 0, 2};
  LWNodalAccess na = lwhost::MakeNodalAccess(position, normal);
  EXPECT_THAT(na.wNorm, ElementsAre(0, 0, 1));
  EXPECT_THAT(na.raySource, ElementsAre(1, 2, 4));
  EXPECT_EQ(na.ResourceContextIndex, 0);
  EXPECT_EQ(na.bounces, 0);
  EXPECT_NE(na.objID, nullptr);
  EXPECT_EQ(na.illuminate, nullptr);

  lwhost::Node& spot = editor.addSpotPosition();
  lwhost::Node& facing = editor.addSpotNormal();
  double v[3];
  ASSERT_TRUE(editor.evaluate(spot, "Position", na, v, NOT_VECTOR));
  EXPECT_THAT(v, ElementsAre(1, 2, 3));
  ASSERT_TRUE(editor.evaluate(facing, "Normal", na, v, NOT_COLOR));
  EXPECT_THAT(v, ElementsAre(0, 0, 1));
  double s;
  ASSERT_TRUE(editor.evaluate(spot, "Position", na, &s, NOT_SCALAR));
  EXPECT_DOUBLE_EQ(s, 2.0);
}

TEST_F(NodeEditorTest, ConnectorFunctionsWalkAndCountInCreationOrder) {
  lwhost::PluginNode& mix = addMix();
  lwhost::PluginNode& other = addMix();
  const LWNodeInputFuncs& in = inputs();
  const LWNodeOutputFuncs& out = outputs();
  NodeID node = mix.id();

  ASSERT_EQ(in.numInputs(node), 3);
  NodeInputID color = in.first(node);
  NodeInputID amount = in.next(color);
  NodeInputID material = in.next(amount);
  EXPECT_EQ(color, mix.input("Color"));
  EXPECT_EQ(amount, mix.input("Amount"));
  EXPECT_EQ(material, mix.input("Material"));
  EXPECT_EQ(in.next(material), nullptr);
  EXPECT_EQ(in.previous(material), amount);
  EXPECT_EQ(in.previous(color), nullptr);
  EXPECT_EQ(in.byIndex(node, 1), color);
  EXPECT_EQ(in.byIndex(node, 3), material);
  EXPECT_EQ(in.byIndex(node, 0), nullptr);
  EXPECT_EQ(in.byIndex(node, 4), nullptr);
  EXPECT_EQ(in.getIndex(node, material), 3);
  EXPECT_EQ(in.getIndex(other.id(), material), 0);
  EXPECT_EQ(in.node(amount), node);

  EXPECT_EQ(out.numInputs(node), 5);  // counts outputs
  EXPECT_EQ(out.first(node), mix.output("Color"));
  EXPECT_EQ(out.byIndex(node, 5), mix.output("Direct"));
  EXPECT_EQ(out.getIndex(node, mix.output("Material")), 3);
  EXPECT_EQ(out.previous(out.first(node)), nullptr);
  EXPECT_EQ(out.node(mix.output("Type")), node);

  // Destroying keeps the order; an input is only destroyed by its own node.
  in.destroy(other.id(), amount);
  EXPECT_EQ(in.numInputs(node), 3);
  in.destroy(node, amount);
  EXPECT_EQ(in.numInputs(node), 2);
  EXPECT_EQ(in.next(color), material);
  EXPECT_EQ(in.getIndex(node, material), 2);

  EXPECT_EQ(in.create(node, static_cast<ConnectionType>(0), "Bad", nullptr), nullptr);
  EXPECT_EQ(in.create(node, static_cast<ConnectionType>(7), "Bad", nullptr), nullptr);
  EXPECT_EQ(out.create(nullptr, NOT_COLOR, "Bad"), nullptr);
  EXPECT_EQ(in.numInputs(node), 2);

  // Null and mixed-up handles answer the failure value.
  EXPECT_EQ(in.first(nullptr), nullptr);
  EXPECT_EQ(in.numInputs(color), 0);
  EXPECT_EQ(in.check(mix.output("Color")), 0);
  EXPECT_EQ(in.node(node), nullptr);
  EXPECT_EQ(out.numInputs(nullptr), 0);
  EXPECT_EQ(out.next(color), nullptr);
  in.disconnect(node, nullptr);
  out.destroy(node, color);
  EXPECT_EQ(in.numInputs(node), 2);
}

}  // namespace
