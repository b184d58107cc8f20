// Plug-in nodes and the handler instances behind them: creation, activation, instance data,
// items, interface, render calls and the node functions.
#include <lwenvel.h>
#include <lwxpanel.h>

#include <cstring>
#include <tuple>

#include "nodes/NodeTestSupport.h"

namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Pair;
using ::testing::StrEq;
using ::testing::ThrowsMessage;
using lwhost::CreationError;
using lwhost::IOMode;

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

}  // namespace
