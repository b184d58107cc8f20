// The server records of vorn.p against the module's registry table, and the class versions each
// record's activation accepts. The utility nodes: Time Info (the time, frame and rate of the last
// render pass, in Layout and in the modeller) and Extended Spot Info (the identifiers of the spot
// being shaded), their outputs and their shared form; the Channel Blender (a vector split into
// components, any of which a scalar connection replaces, every input read for every output).
#include <lwhandler.h>
#include <lwmaster.h>

#include <array>
#include <type_traits>
#include <utility>
#include <vector>

#include "lwhost/FormRenderer.h"
#include "support/RawHandler.h"
#include "support/VornNodeTest.h"

namespace {

constexpr const char* kSceneInfo = "LW Scene Info 3";

// The host's output functions with setValue counted; static, as nodes may outlive a test's
// locals.
LWNodeOutputFuncs spy;
int writes = 0;

class UtilityNodeTest : public VornNodeTest {
 protected:
  // An output read as a connected input reads it; -999 shows when the node writes nothing.
  template <class T>
  T read(lwhost::PluginNode& node, const char* output) {
    T value = -999;
    EXPECT_TRUE(editor.evaluate(node, output, access, &value, std::is_same_v<T, int> ? NOT_INTEGER : NOT_SCALAR))
        << output;
    return value;
  }
  void expectReading(lwhost::PluginNode& node, double time, int frame, double fps) {
    EXPECT_EQ(read<double>(node, "Time"), time);
    EXPECT_EQ(read<int>(node, "Frame"), frame);
    EXPECT_EQ(read<double>(node, "Frames per Second"), fps);
  }
};

TEST_F(UtilityNodeTest, BothNodesShowTheirOutputsAndOnlyTheLogoAndTheWebButton) {
  for (const auto& [server, outputs] : {std::pair{"vornTimeInfo", "> Time/2 Frame/4 Frames per Second/2"},
                                        {"vornExSpotInfo", "> Object ID/4 Ray Source ID/4 Polygon Number/4"}}) {
    SCOPED_TRACE(server);
    lwhost::PluginNode& node = add(server);
    EXPECT_EQ(node.color(), (std::array<int, 3>{11, 8, 51}));
    EXPECT_EQ(Connectors(node), outputs);

    lwhost::XPanel& form = panel(node);
    EXPECT_EQ(session.xpanels().find(node.activateInterface().local.panel), &form) << "the panel is made once";
    std::string controls;
    for (const lwhost::XPControl& c : form.controls()) controls += std::to_string(c.cid) + " " + c.controlClass + " " + c.label + ";";
    EXPECT_EQ(controls, std::to_string(0x9901) + " dThumbnail ;" + std::to_string(0x9900) + " vButton http://www.vorn.example/;");
    EXPECT_TRUE(form.hasDividerAfter(0x9900)) << "the logo's hints are in";
    std::string error;
    EXPECT_TRUE(lwhost::RenderForm(form).writePng(UTILITY_TEST_OUTPUT_DIR "/" + std::string(server) + ".png", &error)) << error;
    EXPECT_TRUE(form.problems().empty()) << form.problems().front();
  }
}

TEST_F(UtilityNodeTest, TimeInfoReadsTheScenesRateOnEveryNewTimeInLayoutAndCopiesIt) {
  session.scene().setFramesPerSecond(30.0);
  lwhost::PluginNode& node = add("vornTimeInfo");
  expectReading(node, 0.0, 0, 24.0);  // the rate is not read until NewTime

  session.scene().setFramesPerSecond(25.0);
  session.host().globals().resetCounts();
  EXPECT_EQ(node.newTime(12, 0.48), "");
  expectReading(node, 0.48, 12, 25.0);
  // A later pass sees a changed rate; negative frames and times pass as they are.
  session.scene().setFramesPerSecond(29.97);
  EXPECT_EQ(node.newTime(-3, -0.1), "");
  expectReading(node, -0.1, -3, 29.97);
  const lwhost::LookupCounts counts = session.host().globals().counts(kSceneInfo);
  EXPECT_EQ(counts.acquire, 2);
  EXPECT_EQ(counts.release, 2);
  EXPECT_EQ(counts.transient, 0);

  // Evaluation itself looks nothing up.
  session.host().globals().resetCounts();
  expectReading(node, -0.1, -3, 29.97);
  EXPECT_TRUE(session.host().globals().namesAsked().empty());

  // A copy takes the last reading and keeps it while the source moves on; nothing is saved.
  lwhost::PluginNode& copy = add("vornTimeInfo");
  EXPECT_EQ(copy.instance().copyFrom(node.instance()), "");
  session.scene().setFramesPerSecond(48.0);
  node.newTime(10, 0.4);
  expectReading(copy, -0.1, -3, 29.97);
  std::string error = "stale";
  EXPECT_EQ(node.instance().save(lwhost::IOMode::Ascii, &error), "");
  EXPECT_EQ(error, "");
}

TEST_F(UtilityNodeTest, TimeInfoInTheModellerKeepsTheLastRateWhateverTheScenesRate) {
  session.host().actAs(lwhost::Application::Modeler);
  lwhost::PluginNode& modelled = add("vornTimeInfo");
  session.scene().setFramesPerSecond(50.0);
  EXPECT_EQ(modelled.newTime(7, 0.35), "");
  expectReading(modelled, 0.35, 7, 24.0);

  // A node that learnt a rate in Layout keeps it once the host is the modeller.
  session.host().actAs(lwhost::Application::Layout);
  lwhost::PluginNode& node = add("vornTimeInfo");
  EXPECT_EQ(node.newTime(1, 0.04), "");
  expectReading(node, 0.04, 1, 50.0);
  session.host().actAs(lwhost::Application::Modeler);
  node.activateInterface();  // any activation tells the module which program it runs in
  session.scene().setFramesPerSecond(60.0);
  session.host().globals().resetCounts();
  EXPECT_EQ(node.newTime(2, 0.08), "");
  expectReading(node, 0.08, 2, 50.0);
  EXPECT_EQ(session.host().globals().counts(kSceneInfo).acquire, 0);
}

TEST_F(UtilityNodeTest, SpotInfoReportsTheObjectRaySourceAndPolygonOfEachSample) {
  lwhost::Scene& scene = session.scene();
  const LWItemID floor = scene.addObject("Floor"), ball = scene.addObject("Ball");
  const LWItemID key = scene.addLight("Key"), camera = scene.addCamera("Camera");
  lwhost::PluginNode& node = add("vornExSpotInfo");
  auto ids = [&](lwhost::PluginNode& n) {
    return std::vector<int>{read<int>(n, "Object ID"), read<int>(n, "Ray Source ID"), read<int>(n, "Polygon Number")};
  };
  // Distinct values, so that a field read in place of another shows.
  access.objID = ball, access.sourceID = key, access.polNum = 4242;
  EXPECT_EQ(ids(node), (std::vector<int>{0x10000001, 0x20000000, 4242}));
  // Every sample is read afresh; polygon 0 and a null item are values like any other.
  access.objID = floor, access.sourceID = camera, access.polNum = 0;
  EXPECT_EQ(ids(node), (std::vector<int>{0x10000000, 0x30000000, 0}));
  access.sourceID = LWITEM_NULL;
  // A copy answers for its own outputs.
  lwhost::PluginNode& twin = add("vornExSpotInfo");
  EXPECT_EQ(twin.instance().copyFrom(node.instance()), "");
  EXPECT_EQ(ids(twin), (std::vector<int>{0x10000000, 0, 0}));
}

// Each node writes its own outputs only, not those of a twin (named alike) or another node.
TEST_F(UtilityNodeTest, AnOutputOfAnotherNodeWritesNothing) {
  // Plug-ins keep the table they were given at creation: it goes in before the nodes are made.
  spy = *lwhost::NodeEditor::OutputFuncsTable();
  spy.setValue = [](NodeValue value, void* data) { ++writes, lwhost::NodeEditor::OutputFuncsTable()->setValue(value, data); };
  session.host().globals().provide(LWNODEOUTPUTFUNCS_GLOBAL, &spy);
  lwhost::PluginNode& timeInfo = add("vornTimeInfo");
  lwhost::PluginNode& spotInfo = add("vornExSpotInfo");
  lwhost::Node& colour = editor.addColor(0.1, 0.2, 0.3);
  for (const auto& [server, own] :
       {std::pair{"vornTimeInfo", "Frame"}, std::pair{"vornExSpotInfo", "Polygon Number"}}) {
    SCOPED_TRACE(server);
    lwhost::PluginNode& node = add(server);
    writes = 0;
    read<int>(node, own);
    EXPECT_EQ(writes, 1) << "the spy sees the node's own writes";

    std::vector<lwhost::NodeOutput*> foreign{colour.outputs().front().get()};
    for (const lwhost::PluginNode* other : {&timeInfo, &spotInfo})
      for (const auto& o : other->outputs()) foreign.push_back(o.get());
    char unused = 0;
    writes = 0;
    for (lwhost::NodeOutput* output : foreign) node.evaluate(access, *output, &unused);
    EXPECT_EQ(writes, 0);
    EXPECT_EQ(unused, 0);
  }
}

TEST_F(UtilityNodeTest, ChannelBlenderScalarInputsReplaceTheVectorsComponentsForEveryOutput) {
  lwhost::PluginNode& node = add("vornChannelBlender");
  EXPECT_EQ(Connectors(node), "Vector/3 X/2 Y/2 Z/2 > Vector/3 X/2 Y/2 Z/2");
  EXPECT_EQ(node.color(), (std::array<int, 3>{11, 8, 51}));
  EXPECT_EQ(node.activateInterface().local.panel, nullptr);
  EXPECT_EQ(node.instance().save(lwhost::IOMode::Binary), "");

  // "Vector", "X", "Y", "Z", each asked on its own; -9 shows one the node did not write.
  auto outputs = [&] {
    std::array<double, 6> out{-9, -9, -9, -9, -9, -9};
    EXPECT_TRUE(editor.evaluate(node, "Vector", access, out.data(), NOT_VECTOR));
    for (int i = 0; i < 3; ++i)
      EXPECT_TRUE(editor.evaluate(node, std::string(1, "XYZ"[i]).c_str(), access, &out[3 + i], NOT_SCALAR));
    return out;
  };
  EXPECT_EQ(outputs(), (std::array<double, 6>{0, 0, 0, 0, 0, 0}));
  editor.connect(editor.addScalar(-4.5), "Scalar", node, "Z");
  EXPECT_EQ(outputs(), (std::array<double, 6>{0, 0, -4.5, 0, 0, -4.5}));
  editor.disconnect(node, "Z");
  lwhost::Node& v = editor.addVector(1.5, 2.5, 3.5);
  editor.connect(v, "Vector", node, "Vector");
  EXPECT_EQ(outputs(), (std::array<double, 6>{1.5, 2.5, 3.5, 1.5, 2.5, 3.5}));
  lwhost::Node& y = editor.addScalar(7.0);
  editor.connect(y, "Scalar", node, "Y");
  v.resetEvaluations();
  EXPECT_EQ(outputs(), (std::array<double, 6>{1.5, 7.0, 3.5, 1.5, 7.0, 3.5}));
  EXPECT_EQ(v.evaluations() + y.evaluations(), 8u) << "every input read for every output";
}

// One plug-in as the module must register it: handler record, then interface record.
struct Row {
  const char* handlerClass;
  const char* server;
  const char* userName;
  const char* nodeGroup;    // null: no node group tag
  const char* description;  // null: no description tag
  int minVersion, maxVersion;  // handler class versions accepted (nodes only)
};

constexpr const char* kNode = LWNODE_HCLASS;
constexpr const char* kNodeUI = LWNODE_ICLASS;
constexpr const char* kMaster = LWMASTER_HCLASS;
constexpr const char* kMasterUI = LWMASTER_ICLASS;

// The whole module, in registration order.
const Row kRegistry[] = {
    {kNode, "MaterialBlender", "Material Blender", "Vorn/Materials", nullptr, 1, 2},
    {kNode, "SimpleColourCorrector", "Simple Colour Corrector", "Vorn/Colour", "Simple Colour Corrector", 1, 1},
    {kMaster, "Growl", "Vorn Growl Notifier", nullptr, nullptr, 0, 0},
    {kMaster, "CommandStatistics", "Vorn Command Statistics", nullptr, nullptr, 0, 0},
    {kNode, "vornChannelBlender", "Channel Blender", "Vorn/Tools", nullptr, 1, 1},
    {kNode, "vornSingleLambertNode", "Single Light Lambert", "Vorn/Shading", nullptr, 1, 1},
    {kNode, "vornMaterialBooster", "Material Booster", "Vorn/Materials", nullptr, 1, 2},
    {kNode, "vornColourBooster", "Colour Booster", "Vorn/Colour", nullptr, 1, 2},
    {kNode, "vornScalarBooster", "Scalar Booster", "Vorn/Scalar", nullptr, 1, 2},
    {kNode, "vornCache", "Cache", "Vorn/Tools", nullptr, 1, 2},
    {kNode, "vornExSpotInfo", "Extended Spot Info", "Vorn/Spot", nullptr, 1, 2},
    {kNode, "vornTimeInfo", "Time Info", "Vorn/Additional", nullptr, 1, 2},
};
constexpr int kRows = sizeof kRegistry / sizeof kRegistry[0];

using Tags = std::vector<std::pair<std::string, unsigned int>>;

// Tags in the order the module must give them: user name, command group, node group,
// description, then an end mark of code 0.
Tags ExpectedTags(const Row& row) {
  Tags tags{{row.userName, SRVTAG_USERNAME}, {"Vorn Tools", SRVTAG_CMDGROUP}};
  if (row.nodeGroup) tags.emplace_back(row.nodeGroup, SRVTAG_NODEGROUP);
  if (row.description) tags.emplace_back(row.description, SRVTAG_DESCRIPTION);
  tags.emplace_back("<end>", 0);
  return tags;
}

// A record's tags up to the end mark (a null text), the end mark's code last.
Tags TagsOf(const ServerRecord& record) {
  Tags tags;
  const ServerTagInfo* t = record.tagInfo;
  for (; t && t->string; ++t) tags.emplace_back(t->string, t->tag);
  tags.emplace_back("<end>", t ? t->tag : 0xFFFFFFFFu);
  return tags;
}

using Registration = VornNodeTest;

TEST_F(Registration, RecordsFollowTheRegistryInPairs) {
  const std::vector<const ServerRecord*>& records = vorn.records();
  ASSERT_EQ(records.size(), 2u * kRows) << "every plug-in has a handler and an interface record";
  for (int row = 0; row < kRows; ++row) {
    const ServerRecord& handler = *records[2 * row];
    const ServerRecord& ui = *records[2 * row + 1];
    const Row& expected = kRegistry[row];
    SCOPED_TRACE(expected.server);
    EXPECT_STREQ(handler.name, expected.server);
    EXPECT_STREQ(ui.name, expected.server);
    EXPECT_STREQ(handler.className, expected.handlerClass);
    EXPECT_STREQ(ui.className, expected.handlerClass == kNode ? kNodeUI : kMasterUI);
    EXPECT_NE(handler.activate, ui.activate);
    EXPECT_EQ(handler.tagInfo, ui.tagInfo) << "both records share one tag array";
    EXPECT_EQ(TagsOf(handler), ExpectedTags(expected));
  }
}

TEST_F(Registration, NodeActivationsAcceptExactlyTheirClassVersions) {
  for (const Row& row : kRegistry) {
    if (row.handlerClass != kNode) continue;
    // What a refused version leaves alone and what each version's record holds is the adaptor's,
    // checked on the fixture module.
    for (int version = 0; version <= 3; ++version) {
      RawNodeHandler raw;
      EXPECT_EQ(raw.activate(vorn, row.server, version),
                version >= row.minVersion && version <= row.maxVersion ? AFUNC_OK : AFUNC_BADVERSION)
          << row.server << " version " << version;
    }

    // Interfaces count up from 1 and accept only the current interface version.
    const ServerRecord& ui = vorn.require(kNodeUI, row.server);
    for (int version = 1; version <= LWINTERFACE_VERSION; ++version)
      EXPECT_EQ(vorn.activate(ui, version, nullptr), version < LWINTERFACE_VERSION ? AFUNC_BADVERSION : AFUNC_OK)
          << row.server << " interface version " << version;
  }
}

}  // namespace
