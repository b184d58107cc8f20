// Connections, input events, evaluation and type conversion between nodes.
#include <array>
#include <climits>
#include <cstring>
#include <limits>

#include "nodes/NodeTestSupport.h"

namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::ThrowsMessage;
using lwhost::NodeError;
using Triple = std::array<double, 3>;

TEST_F(NodeEditorTest, InputEventsFollowConnectReplaceDisconnectAndUpstreamLoss) {
  lwhost::PluginNode& mix = addMix();
  lwhost::PluginNode& other = addMix();
  lwhost::Node& color = editor.addColor(1, 0, 0);
  lwhost::Node& scalar = editor.addScalar(0.5);

  editor.connect(color, "Color", mix, "Color");
  editor.connect(color, "Color", mix, "Color");  // the same pair again changes nothing
  EXPECT_THAT(takeEvents(mix), ElementsAre("Color 0 1"));
  EXPECT_EQ(inputs.check(mix.input("Color")), 1);
  // Replacing: the old connection goes first, and the old output forgets the input.
  editor.connect(scalar, "Scalar", mix, "Color");
  EXPECT_THAT(takeEvents(mix), ElementsAre("Color 1 0", "Color 0 2"));
  EXPECT_TRUE(color.outputs()[0]->targets().empty());
  editor.disconnect(mix, "Color");
  editor.disconnect(mix, "Color");
  EXPECT_THAT(takeEvents(mix), ElementsAre("Color 1 0"));

  // One output feeding inputs of two nodes; then its node goes.
  editor.connect(scalar, "Scalar", mix, "Amount");
  editor.connect(scalar, "Scalar", other, "Amount");
  editor.connect(scalar, "Scalar", mix, "Color");
  editor.removeNode(scalar);
  EXPECT_THAT(takeEvents(mix), ElementsAre("Amount 0 2", "Color 0 2", "Amount 2 0", "Color 2 0"));
  EXPECT_THAT(takeEvents(other), ElementsAre("Amount 0 2", "Amount 2 0"));
  EXPECT_EQ(inputs.check(mix.input("Color")), 0);

  // The plug-in's own output destroyed: the inputs it fed are told they were disconnected.
  editor.connect(color, "Color", other, "Amount");
  outputs.destroy(color.id(), color.outputs()[0].get());
  EXPECT_THAT(takeEvents(other), ElementsAre("Amount 0 1", "Amount 1 0"));
  EXPECT_TRUE(color.outputs().empty());

  // A plug-in node upstream goes: downstream hears of it, its feed forgets it, and its instance
  // is destroyed once (no event reaches it afterwards: ASan would see the write).
  editor.connect(mix, "Color", other, "Color");
  lwhost::Node& feed = editor.addColor(0, 1, 0);
  editor.connect(feed, "Color", mix, "Color");
  EXPECT_THAT(takeEvents(other), ElementsAre("Color 0 1"));
  takeMessages();
  editor.removeNode(mix);
  EXPECT_THAT(takeEvents(other), ElementsAre("Color 2 0"));
  EXPECT_TRUE(feed.outputs()[0]->targets().empty());
  EXPECT_THAT(takeMessages(), ElementsAre("TestMix destroyed"));

  // The callback may destroy inputs whose events are still pending: Color's event makes the
  // plug-in destroy Color and Amount, so Amount's event must not follow.
  editor.connect(feed, "Color", other, "Color");
  editor.connect(feed, "Color", other, "Amount");
  mixOf(other).dropInputsOnLoss = 1;
  editor.removeNode(feed);
  EXPECT_THAT(takeEvents(other), ElementsAre("Color 0 1", "Amount 0 1", "Color 2 0"));
  ASSERT_EQ(other.inputs().size(), 1u);
  EXPECT_EQ(other.inputs()[0]->name(), "Material");
}

TEST_F(NodeEditorTest, RefusedConnectionsLeaveTheGraphAsItWas) {
  lwhost::PluginNode& mix = addMix();
  lwhost::PluginNode& other = addMix();
  lwhost::Node& color = editor.addColor(1, 1, 1);
  lwhost::Node& material = editor.addMaterial(LWNodalMaterial{});
  editor.connect(color, "Color", mix, "Color");
  editor.connect(mix, "Color", other, "Color");
  takeEvents(mix);

  EXPECT_THAT([&] { editor.connect(other, "Color", mix, "Color"); },
              ThrowsMessage<NodeError>(AllOf(HasSubstr("loop"), HasSubstr("\"Test Mix (2)\""))));
  EXPECT_THROW(editor.connect(mix, "Color", mix, "Amount"), NodeError);  // onto itself
  EXPECT_THROW(editor.connect(material, "Material", mix, "Color"), NodeError);
  EXPECT_THROW(editor.connect(color, "Colour", mix, "Color"), NodeError);
  EXPECT_THROW(editor.connect(color, "Color", mix, "Nothing"), NodeError);
  EXPECT_THROW(editor.disconnect(mix, "Nothing"), NodeError);

  EXPECT_TRUE(takeEvents(mix).empty());
  EXPECT_EQ(mix.input("Color")->source(), color.outputs()[0].get());
  EXPECT_EQ(mix.input("Material")->source(), nullptr);
  EXPECT_EQ(other.input("Color")->source(), mix.output("Color"));
}

TEST_F(NodeEditorTest, UnconnectedSilentOrMixedUpSourcesLeaveTheValueAlone) {
  lwhost::PluginNode& mix = addMix();
  lwhost::PluginNode& quiet = addMix();
  MixInstance& state = mixOf(mix);
  EXPECT_THAT(evaluated(mix, "Color", Triple{9, 9, 9}, NOT_COLOR), ElementsAre(0.1, 0.2, 0.3));
  EXPECT_EQ(state.colorResult + state.amountResult, 0);  // unconnected

  // Connected to an output that writes nothing: connected, yet nothing changes, not even
  // through a conversion (colour into the scalar input).
  editor.connect(quiet, "Silent", mix, "Color");
  editor.connect(quiet, "Silent", mix, "Amount");
  EXPECT_THAT(evaluated(mix, "Color", Triple{}, NOT_COLOR), ElementsAre(0.1, 0.2, 0.3));
  EXPECT_EQ(state.colorResult + state.amountResult, 2);

  // Unknown outputs, a missing sample and handles of the wrong kind touch nothing.
  double v[3] = {9, 9, 9};
  EXPECT_FALSE(editor.evaluate(mix, "Nothing", access, v, NOT_COLOR));
  EXPECT_EQ(inputs.evaluate(mix.input("Color"), nullptr, v), 0);
  EXPECT_EQ(inputs.evaluate(mix.output("Color"), &access, v), 0);
  outputs.setValue(mix.input("Color"), v);
  EXPECT_EQ(outputs.getValue(mix.id()), nullptr);
  EXPECT_THAT(v, ElementsAre(9, 9, 9));
}

TEST_F(NodeEditorTest, ValuesConvertBetweenConnectorTypes) {
  lwhost::Node& scalar = editor.addScalar(0.4);
  lwhost::Node& color = editor.addColor(0.2, 0.4, 0.9);
  lwhost::Node& vector = editor.addVector(1, 2, 4);
  EXPECT_THAT(evaluated(scalar, "Scalar", Triple{}, NOT_VECTOR), ElementsAre(0.4, 0.4, 0.4));
  EXPECT_DOUBLE_EQ(evaluated(vector, "Vector", 0.0, NOT_SCALAR), 7.0 / 3.0);
  EXPECT_EQ(evaluated(editor.addInteger(-3), "Integer", 0.0, NOT_SCALAR), -3.0);
  EXPECT_EQ(evaluated(vector, "Vector", 0, NOT_INTEGER), 2);  // mean 2.33, truncated

  // Scalar to integer truncates toward zero and saturates.
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const std::pair<double, int> truncations[] = {{2.7, 2}, {-2.7, -2}, {nan, 0}, {1e300, INT_MAX}, {-1e300, INT_MIN}};
  for (const auto& [value, expected] : truncations)
    EXPECT_EQ(evaluated(editor.addScalar(value), "Scalar", -1, NOT_INTEGER), expected) << value;

  // Material goes only to material, and whole (checked through a plug-in below).
  const LWNodalMaterial m = {{0.1, 0.2, 0.3}, {0.4, 0.5, 0.6}, {0.7, 0.8, 0.9}, {1.1, 1.2, 1.3}, 0.75};
  lwhost::Node& material = editor.addMaterial(m);
  LWNodalMaterial got{};
  double untouched[3] = {7, 7, 7};
  EXPECT_FALSE(editor.evaluate(material, "Material", access, untouched, NOT_COLOR));
  EXPECT_FALSE(editor.evaluate(color, "Color", access, &got, NOT_MATERIAL));
  EXPECT_THAT(untouched, ElementsAre(7, 7, 7));

  // Inputs ask for their own type.
  lwhost::PluginNode& mix = addMix();
  MixInstance& state = mixOf(mix);
  editor.connect(scalar, "Scalar", mix, "Color");
  editor.connect(color, "Color", mix, "Amount");
  editor.connect(material, "Material", mix, "Material");
  EXPECT_DOUBLE_EQ(evaluated(mix, "Color", Triple{}, NOT_COLOR)[1], 0.2);
  EXPECT_THAT(state.colorSeen, ElementsAre(0.4, 0.4, 0.4));
  EXPECT_DOUBLE_EQ(state.amountSeen, 0.5);
  got = evaluated(mix, "Material", got, NOT_MATERIAL);
  EXPECT_EQ(std::memcmp(&got, &m, sizeof m), 0);

  // getType reports the requester's type; getValue hands out a buffer in the output's type.
  EXPECT_EQ(evaluated(mix, "Type", 0.0, NOT_SCALAR), static_cast<double>(NOT_SCALAR));
  EXPECT_THAT(evaluated(mix, "Direct", Triple{}, NOT_COLOR), ElementsAre(0.3, 0.6, 0.9));
  EXPECT_DOUBLE_EQ(evaluated(mix, "Direct", 0.0, NOT_SCALAR), 0.6);
}

TEST_F(NodeEditorTest, EachConnectedInputEvaluatesItsUpstreamNodeOnce) {
  lwhost::Node& scalar = editor.addScalar(0.5);
  lwhost::Node& unused = editor.addColor(1, 1, 1);
  lwhost::PluginNode& first = addMix();
  lwhost::PluginNode& second = addMix();
  editor.connect(scalar, "Scalar", first, "Color");
  editor.connect(scalar, "Scalar", first, "Amount");
  editor.connect(first, "Color", second, "Color");

  Triple v;
  for (int i = 0; i < 3; ++i) v = evaluated(second, "Color", Triple{}, NOT_COLOR);
  EXPECT_EQ(first.evaluations(), 3u);
  EXPECT_EQ(scalar.evaluations(), 6u);
  EXPECT_EQ(unused.evaluations(), 0u);
  EXPECT_THAT(v, ElementsAre(0.25, 0.25, 0.25));  // (0.5, 0.5, 0.5) * 0.5, passed through
}

TEST_F(NodeEditorTest, SpotNodesReadTheSample) {
  const double position[3] = {1, 2, 3}, normal[3] = {0, 0, 2};
  access = lwhost::MakeNodalAccess(position, normal);
  EXPECT_THAT(access.raySource, ElementsAre(1, 2, 4));
  EXPECT_NE(access.objID, nullptr);
  EXPECT_THAT(evaluated(editor.addSpotPosition(), "Position", Triple{}, NOT_VECTOR), ElementsAre(1, 2, 3));
  EXPECT_THAT(evaluated(editor.addSpotNormal(), "Normal", Triple{}, NOT_COLOR), ElementsAre(0, 0, 1));
}

TEST_F(NodeEditorTest, ConnectorFunctionsWalkAndCountInCreationOrder) {
  lwhost::PluginNode& mix = addMix();
  lwhost::PluginNode& other = addMix();
  const NodeID node = mix.id();
  NodeInputID color = mix.input("Color"), amount = mix.input("Amount"), material = mix.input("Material");

  EXPECT_EQ(inputs.first(node), color);
  EXPECT_EQ(inputs.next(color), amount);
  EXPECT_EQ(inputs.previous(material), amount);
  EXPECT_EQ(inputs.byIndex(node, 1), color);  // 1-based
  EXPECT_EQ(inputs.byIndex(node, 0), nullptr);
  EXPECT_EQ(inputs.byIndex(node, 4), nullptr);
  EXPECT_EQ(inputs.getIndex(node, material), 3);
  EXPECT_EQ(inputs.getIndex(other.id(), material), 0);
  EXPECT_EQ(inputs.node(amount), node);
  // The output table's own entries (the walking itself is shared with inputs).
  EXPECT_EQ(outputs.numInputs(node), 5);  // counts outputs
  EXPECT_EQ(outputs.first(node), mix.output("Color"));
  EXPECT_EQ(outputs.next(mix.output("Color")), mix.output("Silent"));
  EXPECT_EQ(outputs.byIndex(node, 5), mix.output("Direct"));
  EXPECT_EQ(outputs.getIndex(node, mix.output("Material")), 3);
  EXPECT_EQ(outputs.node(mix.output("Type")), node);

  // Destroying keeps the order; an input is only destroyed by its own node.
  inputs.destroy(other.id(), amount);
  EXPECT_EQ(inputs.numInputs(node), 3);
  inputs.destroy(node, amount);
  EXPECT_EQ(inputs.next(color), material);

  EXPECT_EQ(inputs.create(node, static_cast<ConnectionType>(0), "Bad", nullptr), nullptr);
  EXPECT_EQ(inputs.create(node, static_cast<ConnectionType>(7), "Bad", nullptr), nullptr);
  EXPECT_EQ(inputs.numInputs(node), 2);

  // Mixed-up handles answer the failure value.
  EXPECT_EQ(inputs.numInputs(color), 0);
  EXPECT_EQ(inputs.node(node), nullptr);
  EXPECT_EQ(outputs.next(color), nullptr);
}

}  // namespace
