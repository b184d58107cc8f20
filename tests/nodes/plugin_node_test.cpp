// Plug-in nodes and the handler instances behind them: creation, activation, instance data,
// items, interface, render calls and the node functions.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <lwenvel.h>
#include <lwxpanel.h>

#include <cstring>

#include "nodes/NodeTestSupport.h"

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using lwhost::CreationError;
using lwhost::IOMode;

LWItemID Item(unsigned int id) { return reinterpret_cast<LWItemID>(static_cast<std::size_t>(id)); }

TEST_F(NodeEditorTest, RefusedCreationShowsThePluginTextAndLeavesNoNode) {
  editor.addScalar(1);
  try {
    editor.addPluginNode(module, "TestRefuse");
    ADD_FAILURE() << "creation was not refused";
  } catch (const CreationError& e) {
    EXPECT_STREQ(e.what(), NODE_TEST_REFUSAL_TEXT);
  }
  ASSERT_EQ(editor.nodes().size(), 1u);
  EXPECT_EQ(editor.findNode("Test Refuse (1)"), nullptr);
  EXPECT_THROW(editor.addPluginNode(module, "NoSuchServer"), lwhost::ModuleError);

  // A missing global refuses the activation; the reason is ours and names the code.
  host.globals().withhold(LWNODEFUNCS_GLOBAL);
  try {
    addMix();
    ADD_FAILURE() << "activation without NodeFuncs succeeded";
  } catch (const CreationError& e) {
    EXPECT_THAT(e.what(), HasSubstr("\"TestMix\""));
    EXPECT_THAT(e.what(), HasSubstr("code 2"));
  }
  host.globals().withhold(LWNODEFUNCS_GLOBAL, false);
  EXPECT_EQ(editor.nodes().size(), 1u);
  EXPECT_EQ(addMix().name(), "Test Mix (1)");
}

TEST_F(NodeEditorTest, HandlerActivationStepsDownFromVersionTwo) {
  lwhost::PluginNode& mix = addMix();
  EXPECT_EQ(mix.version(), 2);
  EXPECT_EQ(mix.flags(), static_cast<unsigned int>(NF_TRANSP));
  EXPECT_EQ(mixOf(mix).hadItemFuncs, 1);
  EXPECT_EQ(mixOf(mix).node, mix.id());

  lwhost::PluginNode& old = editor.addPluginNode(module, "TestOldStyle");
  auto& offered = *static_cast<OldStyleInstance*>(old.instance().get());
  ASSERT_EQ(offered.offeredCount, 2);
  EXPECT_EQ(offered.offered[0], 2);
  EXPECT_EQ(offered.offered[1], 1);
  EXPECT_EQ(old.version(), 1);
  EXPECT_EQ(old.flags(), 0u);
  EXPECT_EQ(old.name(), "TestOldStyle (1)");  // no user name: the server name
  double seven = 0;
  ASSERT_TRUE(editor.evaluate(old, "Seven", access, &seven, NOT_SCALAR));
  EXPECT_EQ(seven, 7.0);

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
  lwhost::PluginNode& modeled = addMix();
  EXPECT_EQ(mixOf(modeled).hadItemFuncs, 0);
  mixOf(modeled).useMode = 1;
  EXPECT_TRUE(modeled.instance().useItems().empty());
  EXPECT_FALSE(modeled.instance().changeID({{Item(0x10000000), Item(0x10000001)}}));
}

TEST_F(NodeEditorTest, InstanceDataSurvivesSaveLoadAndCopy) {
  lwhost::PluginNode& original = addMix();
  MixInstance& a = mixOf(original);
  a.gain = 2.5;
  a.mode = 3;
  std::strcpy(a.label, "warm light");

  for (IOMode mode : {IOMode::Ascii, IOMode::Binary}) {
    SCOPED_TRACE(mode == IOMode::Ascii ? "text" : "binary");
    std::string error = "stale";
    const std::string data = original.instance().save(mode, &error);
    EXPECT_EQ(error, "");
    ASSERT_FALSE(data.empty());
    if (mode == IOMode::Ascii) {
      EXPECT_THAT(data, HasSubstr("Label \"warm light\""));
    }

    lwhost::PluginNode& copy = addMix();
    EXPECT_EQ(copy.instance().load(mode, data), "");
    MixInstance& b = mixOf(copy);
    EXPECT_EQ(b.gain, 2.5);
    EXPECT_EQ(b.mode, 3);
    EXPECT_STREQ(b.label, "warm light");
    EXPECT_EQ(copy.instance().description(), "gain 2.5, mode 3, warm light");
  }

  // The plug-in's own complaint comes back as is.
  lwhost::PluginNode& empty = addMix();
  EXPECT_EQ(empty.instance().load(IOMode::Ascii, "Mode 4\n"), "TestMix: the data has no gain");
  EXPECT_EQ(mixOf(empty).mode, 4);

  EXPECT_EQ(empty.instance().copyFrom(original.instance()), "");
  EXPECT_EQ(mixOf(empty).gain, 2.5);
  EXPECT_STREQ(mixOf(empty).label, "warm light");
}

TEST_F(NodeEditorTest, ChangedItemsArriveAsANullEndedPairList) {
  lwhost::PluginNode& mix = addMix();
  MixInstance& state = mixOf(mix);
  const LWItemID a = Item(0x10000000), b = Item(0x10000001), light = Item(0x20000000);

  ASSERT_TRUE(mix.instance().changeID({{a, b}, {light, light}}));
  EXPECT_EQ(state.changeCalls, 1);
  ASSERT_EQ(state.changedCount, 4);
  EXPECT_THAT(std::vector<LWItemID>(state.changed, state.changed + 4), ElementsAre(a, b, light, light));

  // A null old id would end the list early, so that pair is dropped; a null new id stays.
  ASSERT_TRUE(mix.instance().changeID({{nullptr, a}, {b, nullptr}, {a, light}}));
  ASSERT_EQ(state.changedCount, 4);
  EXPECT_THAT(std::vector<LWItemID>(state.changed, state.changed + 4), ElementsAre(b, nullptr, a, light));

  EXPECT_FALSE(mix.instance().changeID({}));
  EXPECT_FALSE(mix.instance().changeID({{nullptr, a}}));
  EXPECT_EQ(state.changeCalls, 2);
}

TEST_F(NodeEditorTest, UsedItemsStopAtTheEndMarkAndRecogniseAll) {
  lwhost::PluginNode& mix = addMix();
  MixInstance& state = mixOf(mix);
  const LWItemID a = Item(0x10000000), b = Item(0x40020001);
  state.usedList[0] = a;
  state.usedList[1] = b;
  state.usedList[2] = LWITEM_NULL;
  state.usedList[3] = Item(0x30000000);  // beyond the end mark

  state.useMode = 0;
  EXPECT_TRUE(mix.instance().useItems().empty());
  state.useMode = 2;
  EXPECT_THAT(mix.instance().useItems(), ElementsAre(a, b));
  state.useMode = 1;  // the pointer itself: must not be read through
  EXPECT_THAT(mix.instance().useItems(), ElementsAre(LWITEM_ALL));
  state.useMode = 3;  // inside the list
  EXPECT_THAT(mix.instance().useItems(), ElementsAre(LWITEM_ALL));
}

// A stand-in for the XPanel service that only notes when panels are destroyed.
void NotePanelDestroyed(LWXPanelID) { lwhost::Host::current()->messages().record("info", "panel destroyed", nullptr); }

TEST_F(NodeEditorTest, InterfaceActivationCountsVersionsUpAndThePanelGoesFirst) {
  LWXPanelFuncs xpanels{};
  xpanels.destroy = NotePanelDestroyed;
  host.globals().provide(LWXPANELFUNCS_GLOBAL, &xpanels);

  lwhost::PluginNode& mix = addMix();
  MixInstance& state = mixOf(mix);
  ASSERT_TRUE(mix.hasInterface());
  lwhost::InterfaceActivation ui = mix.activateInterface();
  EXPECT_EQ(ui.result, AFUNC_OK);
  EXPECT_EQ(ui.version, 4);
  EXPECT_THAT(std::vector<int>(state.interfaceVersions, state.interfaceVersions + state.interfaceCalls),
              ElementsAre(1, 2, 3, 4));
  EXPECT_EQ(ui.local.inst, mix.instance().get());
  EXPECT_EQ(ui.local.panel, &state.panelToken);
  EXPECT_EQ(ui.local.options, nullptr);

  // The same panel handed back again is kept once.
  ui = mix.activateInterface();
  EXPECT_EQ(ui.version, 4);
  EXPECT_EQ(state.interfaceCalls, 8);
  EXPECT_EQ(mix.instance().panels().size(), 1u);

  host.messages().clear();
  editor.removeNode(mix);
  std::vector<std::string> order;
  for (const lwhost::Message& m : host.messages().messages()) order.push_back(m.first);
  EXPECT_THAT(order, ElementsAre("panel destroyed", "TestMix destroyed"));

  // Without the service the instance still goes.
  host.globals().withhold(LWXPANELFUNCS_GLOBAL);
  lwhost::PluginNode& again = addMix();
  again.activateInterface();
  host.messages().clear();
  editor.removeNode(again);
  ASSERT_EQ(host.messages().messages().size(), 1u);
  EXPECT_EQ(host.messages().messages()[0].first, "TestMix destroyed");
}

TEST_F(NodeEditorTest, RenderCallsAndNodeFunctionsReachTheNode) {
  lwhost::PluginNode& mix = addMix();
  MixInstance& state = mixOf(mix);
  EXPECT_EQ(mix.init(LWINIT_RENDER), "");
  EXPECT_EQ(state.initMode, LWINIT_RENDER);
  EXPECT_EQ(mix.init(7), "TestMix: unknown render mode");
  EXPECT_EQ(mix.newTime(12, 0.5), "");
  EXPECT_EQ(state.newTimeFrame, 12);
  EXPECT_EQ(state.newTimeTime, 0.5);
  mix.cleanup();
  EXPECT_EQ(state.cleanupCalls, 1);
  EXPECT_TRUE(mix.customPreview(64, 32));
  EXPECT_EQ(state.previewWidth, 64);
  EXPECT_EQ(state.previewHeight, 32);

  const LWNodeFuncs& nf = nodeFuncs();
  lwhost::PluginNode& second = addMix();
  EXPECT_STREQ(nf.nodeName(mix.id()), "Test Mix (1)");
  EXPECT_STREQ(nf.nodeName(second.id()), "Test Mix (2)");
  EXPECT_STREQ(nf.serverUserName(second.id()), "Test Mix");
  EXPECT_EQ(nf.nodeName(nullptr), nullptr);
  EXPECT_EQ(nf.nodeName(mix.input("Color")), nullptr);

  EXPECT_EQ(mix.color(), (std::array<int, 3>{11, 8, 51}));  // set during create
  int rgb[3] = {1, 2, 3};
  nf.setNodeColor(mix.id(), rgb);
  EXPECT_EQ(mix.color(), (std::array<int, 3>{1, 2, 3}));
  nf.setNodePreviewType(mix.id(), NPT_CUSTOM);
  nf.setNodePreviewType(mix.id(), static_cast<NodePreviewType>(9));
  EXPECT_EQ(mix.previewType(), NPT_CUSTOM);
  nf.UpdateNodePreview(mix.id());
  nf.UpdateNodePreview(mix.id());
  EXPECT_EQ(mix.previewUpdates(), 2);
  EXPECT_EQ(second.previewUpdates(), 0);

  EXPECT_NE(nf.chanGrp(mix.id()), nullptr);
  EXPECT_NE(nf.chanGrp(mix.id()), nf.chanGrp(second.id()));

  // A freed number is given out again.
  editor.removeNode(mix);
  EXPECT_EQ(addMix().name(), "Test Mix (1)");
}

// A stand-in for "Animation Envelopes" that only makes and frees channel groups.
struct GroupLog {
  std::vector<std::pair<LWChanGroupID, std::string>> made;
  std::vector<LWChanGroupID> freed;
  int tokens[4];
  int next = 0;
} g_groups;

LWChanGroupID MakeGroup(LWChanGroupID parent, const char* name) {
  g_groups.made.emplace_back(parent, name);
  return &g_groups.tokens[g_groups.next++];
}
void FreeGroup(LWChanGroupID group) { g_groups.freed.push_back(group); }

TEST_F(NodeEditorTest, ChannelGroupsComeFromAnimationEnvelopesWhenServed) {
  g_groups = GroupLog{};
  LWEnvelopeFuncs envelopes{};
  envelopes.createGroup = MakeGroup;
  envelopes.destroyGroup = FreeGroup;
  host.globals().provide(LWENVELOPEFUNCS_GLOBAL, &envelopes);

  lwhost::PluginNode& mix = addMix();
  ASSERT_EQ(g_groups.made.size(), 1u);
  EXPECT_EQ(g_groups.made[0].first, nullptr);
  EXPECT_EQ(g_groups.made[0].second, "Test Mix (1)");
  EXPECT_EQ(nodeFuncs().chanGrp(mix.id()), &g_groups.tokens[0]);

  editor.removeNode(mix);
  EXPECT_THAT(g_groups.freed, ElementsAre(&g_groups.tokens[0]));

  // Groups made while the service was there are not freed through it once it is gone.
  lwhost::Node& scalar = editor.addScalar(1);
  host.globals().provide(LWENVELOPEFUNCS_GLOBAL, nullptr);
  editor.removeNode(scalar);
  EXPECT_EQ(g_groups.freed.size(), 1u);
}

}  // namespace
