// The node editor and the handler instances behind plug-in nodes, driven through a small module
// of test nodes: connections, input events, evaluation and type conversion between nodes;
// creation, activation, instance data, items, interface, render calls and the node functions;
// and the node utility functions, Blend in every mode and the mapping helpers.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <lwenvel.h>
#include <lwxpanel.h>

#include <array>
#include <climits>
#include <cstring>
#include <limits>
#include <string>
#include <tuple>
#include <vector>

#include "lwhost/Host.h"
#include "lwhost/ModuleFile.h"
#include "lwhost/NodalAccess.h"
#include "lwhost/NodeEditor.h"
#include "lwhost/PluginNode.h"
#include "nodes/NodeTestPlugin.h"

namespace {

using ::testing::AllOf;
using ::testing::DoubleNear;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Pair;
using ::testing::StrEq;
using ::testing::ThrowsMessage;
using lwhost::CreationError;
using lwhost::IOMode;
using lwhost::NodeError;
using Triple = std::array<double, 3>;

// A host with a node editor and the node test module. The editor goes first on teardown: its
// plug-in nodes need the module's code.
class NodeEditorTest : public ::testing::Test {
 protected:
  lwhost::Host host;
  lwhost::ModuleFile module{NODE_TEST_MODULE_PATH};
  lwhost::NodeEditor editor{host};
  LWNodalAccess access = lwhost::MakeNodalAccess();
  // The services' tables (the test module fetches them by name).
  const LWNodeInputFuncs& inputs = *lwhost::NodeEditor::InputFuncsTable();
  const LWNodeOutputFuncs& outputs = *lwhost::NodeEditor::OutputFuncsTable();
  const LWNodeFuncs& nodeFuncs = *lwhost::NodeEditor::NodeFuncsTable();

  lwhost::PluginNode& addMix() { return editor.addPluginNode(module, "TestMix"); }
  static MixInstance& mixOf(lwhost::PluginNode& node) { return *static_cast<MixInstance*>(node.instance().get()); }

  // The instance's input events since the last call.
  std::vector<std::string> takeEvents(lwhost::PluginNode& node) {
    MixInstance& mix = mixOf(node);
    std::vector<std::string> seen(mix.events, mix.events + mix.eventCount);
    mix.eventCount = 0;
    return seen;
  }
  // An output's value as `type`, starting from `value`; evaluation must succeed.
  template <class T>
  T evaluated(lwhost::Node& node, const char* output, T value, ConnectionType type) {
    EXPECT_TRUE(editor.evaluate(node, output, access, &value, type)) << output;
    return value;
  }
  // The host's messages since the last call.
  std::vector<std::string> takeMessages() {
    std::vector<std::string> texts;
    for (const lwhost::Message& m : host.messages().messages()) texts.push_back(m.first);
    host.messages().clear();
    return texts;
  }
};

// ---- Connections, input events, evaluation and type conversion between nodes ----

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

// ---- Plug-in nodes and their handler instances: creation, activation, instance data, items,
// interface, render calls and the node functions ----

LWItemID Item(unsigned int id) { return reinterpret_cast<LWItemID>(static_cast<std::size_t>(id)); }

TEST_F(NodeEditorTest, ActivationStepsDownAndRefusalsLeaveNoNode) {
  editor.addScalar(1);
  EXPECT_THAT([&] { editor.addPluginNode(module, "TestRefuse"); },
              ThrowsMessage<CreationError>(StrEq(NODE_TEST_REFUSAL_TEXT)));
  EXPECT_THROW(editor.addPluginNode(module, "NoSuchServer"), lwhost::ModuleError);
  // A missing global refuses the activation; the reason is ours and names the code.
  host.globals().withhold(LWNODEFUNCS_GLOBAL);
  EXPECT_THAT([&] { addMix(); }, ThrowsMessage<CreationError>(AllOf(HasSubstr("\"TestMix\""), HasSubstr("code 2"))));
  host.globals().withhold(LWNODEFUNCS_GLOBAL, false);
  EXPECT_EQ(editor.nodes().size(), 1u);

  lwhost::PluginNode& mix = addMix();
  EXPECT_EQ(mix.name(), "Test Mix (1)");  // the refusal used up no number
  EXPECT_EQ(mix.version(), 2);
  EXPECT_EQ(mix.flags(), static_cast<unsigned int>(NF_TRANSP));
  EXPECT_EQ(mix.instance().load(IOMode::Binary, ""), "TestMix: no such data");  // as it is

  lwhost::PluginNode& old = editor.addPluginNode(module, "TestOldStyle");
  EXPECT_EQ(evaluated(old, "Offered", 0.0, NOT_SCALAR), 21.0);
  EXPECT_EQ(old.version(), 1);
  EXPECT_EQ(old.flags(), 0u);
  EXPECT_EQ(old.name(), "TestOldStyle (1)");  // no user name: the server name

  // Members it did not fill are simply not there.
  EXPECT_EQ(old.instance().description(), "");
  std::string error = "stale";
  EXPECT_EQ(old.instance().save(IOMode::Ascii, &error), "");
  EXPECT_EQ(error, "");
  EXPECT_THAT(old.instance().load(IOMode::Ascii, "Gain 1\n"), HasSubstr("cannot load"));
  EXPECT_THAT(old.instance().copyFrom(mix.instance()), HasSubstr("cannot copy"));
  EXPECT_TRUE(old.instance().useItems().empty());
  EXPECT_FALSE(old.customPreview(8, 8));
  EXPECT_EQ(old.init(LWINIT_RENDER), "");
  EXPECT_FALSE(old.hasInterface());
  EXPECT_THROW(old.activateInterface(), lwhost::ModuleError);

  // Modeler: no item functions in the record.
  host.actAs(lwhost::Application::Modeler);
  EXPECT_EQ(mixOf(addMix()).hadItemFuncs, 0);
}

TEST_F(NodeEditorTest, HandlerCallsAndNodeFunctionsReachThePlugin) {
  lwhost::PluginNode& mix = addMix();
  lwhost::PluginNode& second = addMix();
  MixInstance& state = mixOf(mix);
  const LWItemID a = Item(0x10000000), b = Item(0x10000001), light = Item(0x20000000);

  // changeID gets a null-ended pair list: a pair with a null old id would end it early, so it
  // is dropped; a null new id stays. Nothing left to say: no call.
  ASSERT_TRUE(mix.instance().changeID({{nullptr, a}, {b, nullptr}, {a, light}}));
  EXPECT_THAT(std::vector<LWItemID>(state.changed, state.changed + state.changedCount),
              ElementsAre(b, nullptr, a, light));
  EXPECT_FALSE(mix.instance().changeID({{nullptr, a}}));
  EXPECT_EQ(state.changedCount, 4);  // not called again

  // useItems stops at the end mark; LWITEM_ALL as the pointer itself must not be read through.
  const LWItemID used[4] = {a, b, LWITEM_NULL, light};
  std::memcpy(state.usedList, used, sizeof used);
  const std::pair<int, std::vector<LWItemID>> uses[] = {{0, {}}, {2, {a, b}}, {1, {LWITEM_ALL}}, {3, {LWITEM_ALL}}};
  for (const auto& [mode, expected] : uses) {
    state.useMode = mode;
    EXPECT_EQ(mix.instance().useItems(), expected) << "mode " << mode;
  }

  EXPECT_EQ(mix.init(LWINIT_RENDER), "");
  EXPECT_EQ(mix.init(7), "TestMix: unknown render mode");
  mix.cleanup();
  EXPECT_TRUE(mix.customPreview(64, 32));
  EXPECT_EQ(std::make_tuple(state.initMode, state.cleanupCalls, state.previewWidth, state.previewHeight),
            std::make_tuple(LWINIT_RENDER, 1, 64, 32));

  EXPECT_STREQ(nodeFuncs.nodeName(second.id()), "Test Mix (2)");
  EXPECT_STREQ(nodeFuncs.serverUserName(second.id()), "Test Mix");
  EXPECT_EQ(mix.color(), (std::array<int, 3>{11, 8, 51}));  // set during create
  int rgb[3] = {1, 2, 3};
  nodeFuncs.setNodeColor(mix.id(), rgb);
  EXPECT_EQ(mix.color(), (std::array<int, 3>{1, 2, 3}));
  nodeFuncs.setNodePreviewType(mix.id(), NPT_CUSTOM);
  nodeFuncs.setNodePreviewType(mix.id(), static_cast<NodePreviewType>(9));
  EXPECT_EQ(mix.previewType(), NPT_CUSTOM);
  nodeFuncs.UpdateNodePreview(mix.id());
  EXPECT_EQ(mix.previewUpdates(), 1);
  EXPECT_EQ(second.previewUpdates(), 0);
  // Without "Animation Envelopes" each node still has a group of its own.
  EXPECT_NE(nodeFuncs.chanGrp(mix.id()), nullptr);
  EXPECT_NE(nodeFuncs.chanGrp(mix.id()), nodeFuncs.chanGrp(second.id()));

  // A freed number is given out again.
  editor.removeNode(mix);
  EXPECT_EQ(addMix().name(), "Test Mix (1)");
}

// Stand-ins for the XPanel and envelope services: panels destroyed are noted as messages,
// channel groups made and freed in lists.
std::vector<std::pair<LWChanGroupID, std::string>> g_made;
std::vector<LWChanGroupID> g_freed;
int g_group;

TEST_F(NodeEditorTest, InterfacePanelAndChannelGroupComeFromTheServicesAndGoFirst) {
  LWXPanelFuncs xpanels{};
  xpanels.destroy = [](LWXPanelID) { lwhost::Host::current()->messages().record("info", "panel destroyed", nullptr); };
  host.globals().provide(LWXPANELFUNCS_GLOBAL, &xpanels);
  LWEnvelopeFuncs envelopes{};
  envelopes.createGroup = [](LWChanGroupID parent, const char* name) -> LWChanGroupID {
    g_made.emplace_back(parent, name);
    return &g_group;
  };
  envelopes.destroyGroup = [](LWChanGroupID group) { g_freed.push_back(group); };
  host.globals().provide(LWENVELOPEFUNCS_GLOBAL, &envelopes);
  g_made.clear();
  g_freed.clear();

  lwhost::PluginNode& mix = addMix();
  MixInstance& state = mixOf(mix);
  EXPECT_THAT(g_made, ElementsAre(Pair(nullptr, "Test Mix (1)")));
  EXPECT_EQ(nodeFuncs.chanGrp(mix.id()), &g_group);
  lwhost::InterfaceActivation ui = mix.activateInterface();
  EXPECT_EQ(ui.result, AFUNC_OK);
  EXPECT_EQ(ui.version, 4);
  EXPECT_THAT(std::vector<int>(state.interfaceVersions, state.interfaceVersions + state.interfaceCalls),
              ElementsAre(1, 2, 3, 4));

  // The same panel handed back again is kept once; it goes before the instance.
  mix.activateInterface();
  EXPECT_EQ(mix.instance().panels().size(), 1u);
  takeMessages();
  editor.removeNode(mix);
  EXPECT_THAT(takeMessages(), ElementsAre("panel destroyed", "TestMix destroyed"));
  EXPECT_THAT(g_freed, ElementsAre(&g_group));

  // Services gone: the instance still goes, and its group is not freed through them.
  lwhost::PluginNode& again = addMix();
  again.activateInterface();
  host.globals().withhold(LWXPANELFUNCS_GLOBAL);
  host.globals().provide(LWENVELOPEFUNCS_GLOBAL, nullptr);
  takeMessages();
  editor.removeNode(again);
  EXPECT_THAT(takeMessages(), ElementsAre("TestMix destroyed"));
  EXPECT_EQ(g_freed.size(), 1u);
}

// ---- The node utility functions: Blend in every mode, and the mapping helpers ----

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
