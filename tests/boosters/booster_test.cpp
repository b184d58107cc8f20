// The three boosters through vorn.p: their connections, the factor of each channel, the camera
// test, the form's values and what they keep in scenes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <lwnodes.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

#include "lwhost/NodalAccess.h"
#include "lwhost/PluginNode.h"
#include "lwhost/Session.h"
#include "lwhost/XPanel.h"
#include "support/ModulePaths.h"
#include "support/SavedBlocks.h"

namespace {

using lwhost::IOMode;
using namespace std::string_literals;

constexpr LWNodalMaterial kIn = {{0.1, 0.2, 0.3}, {0.4, 0.5, 0.6}, {0.15, 0.25, 0.35}, {0.45, 0.55, 0.65}, 0.4};

// A material's channels in order, each scaled by its factor.
std::vector<double> Flat(const LWNodalMaterial& m, std::vector<double> f = {1, 1, 1, 1, 1}) {
  const double* c[] = {m.diffuse, m.specular, m.reflection, m.refraction};
  std::vector<double> out;
  for (int k = 0; k < 4; ++k)
    for (int i = 0; i < 3; ++i) out.push_back(c[k][i] * f[k]);
  out.push_back(m.transparency * f[4]);
  return out;
}

// Each booster: its server, the id of its camera check box and that box's default.
struct Kind {
  const char* server;
  unsigned int cameraId;
  int cameraDefault;
};
const Kind kKinds[] = {{"vornMaterialBooster", 0x900a, 0}, {"vornColourBooster", 0x9002, 1}, {"vornScalarBooster", 0x9002, 1}};

class BoosterTest : public ::testing::Test {
 protected:
  lwhost::Session session;
  lwhost::ModuleFile& vorn = session.load(testpaths::kVorn);
  lwhost::NodeEditor& editor = session.nodes();
  LWNodalAccess access = lwhost::MakeNodalAccess();

  lwhost::PluginNode& add(const Kind& kind) { return editor.addPluginNode(vorn, kind.server); }
  lwhost::XPanel& panel(lwhost::PluginNode& node) {
    lwhost::XPanel* p = session.xpanels().find(node.activateInterface().local.panel);
    if (!p) throw std::runtime_error(node.serverName() + " gave no panel");
    return *p;
  }
  // As a user types it; the next render pass samples it.
  void set(lwhost::PluginNode& node, unsigned int cid, double value) {
    EXPECT_TRUE(panel(node).setNumber(cid, value)) << std::hex << cid;
    EXPECT_EQ(node.newTime(0, 0.0), "");
  }
  lwhost::Node& feed(lwhost::PluginNode& node, const std::string& input, double value) {
    lwhost::Node& source = input == "Material" ? editor.addMaterial(kIn) : editor.addScalar(value);
    editor.connect(source, source.outputs()[0]->name(), node, input);
    return source;
  }
  // The node's output: a material's channels, or a colour (a scalar comes as three).
  std::vector<double> out(lwhost::PluginNode& node) {
    LWNodalMaterial m{{-9, -9, -9}};
    const bool material = node.outputs()[0]->type() == NOT_MATERIAL;
    EXPECT_TRUE(editor.evaluate(*node.outputs()[0], access, &m, material ? NOT_MATERIAL : NOT_COLOR));
    return material ? Flat(m) : std::vector<double>(m.diffuse, m.diffuse + 3);
  }
  // A booster fed 0.1 (the material in its diffuse red) with its first boost at 200 %.
  lwhost::PluginNode& fed(const Kind& kind) {
    lwhost::PluginNode& node = add(kind);
    feed(node, node.inputs()[0]->name(), 0.1);
    set(node, 0x9000, 2.0);
    return node;
  }
};

TEST_F(BoosterTest, ConnectorsNodeColoursAndTheVersionGate) {
  std::vector<std::string> seen;
  for (const Kind& kind : kKinds) {
    lwhost::PluginNode& node = add(kind);
    std::string line = std::to_string(node.color()[0]) + ":";
    for (const auto& i : node.inputs()) line += i->name() + "/" + std::to_string(i->type()) + ",";
    seen.push_back(line + " out " + node.outputs()[0]->name() + "/" + std::to_string(node.outputs()[0]->type()));
  }
  std::string material = "11:Material/6,";
  for (const char* c : {"Diffuse", "Specular", "Reflection", "Refraction", "Transparency"})
    material += c + " Boost/2,"s + c + " Curve/2," + c + " Maximum/2,";
  EXPECT_THAT(seen, ::testing::ElementsAre(material + " out Material/6",
                                           "0:Colour/1,Colour Boost/2,Colour Curve/2,Colour Maximum/2, out Colour/1",
                                           "0:Scalar/2,Scalar Boost/2,Scalar Curve/2,Scalar Maximum/2, out Scalar/2"));
  session.host().setVersion(9, 1);
  EXPECT_THROW(add(kKinds[0]), lwhost::CreationError);
  EXPECT_EQ(add(kKinds[2]).inputs().size(), 4u) << "only the Material Booster needs 9.2";
}

TEST_F(BoosterTest, EachChannelScalesByItsBoostOrByTheCurveBetweenBoostAndMaximum) {
  lwhost::PluginNode& node = add(kKinds[0]);
  feed(node, "Material", 0);
  EXPECT_EQ(out(node), Flat(kIn)) << "the defaults pass the material through";
  feed(node, "Diffuse Curve", 0.5);
  set(node, 0x9001, 3.0);                                      // 100 % to 300 % half way: 2
  feed(node, "Specular Curve", 0.5);
  set(node, 0x9003, 5.0);
  editor.disconnect(node, "Specular Curve");                   // no curve: no maximum,
  lwhost::Node& unused = feed(node, "Specular Maximum", 9.0);  // and its input is not asked
  feed(node, "Reflection Boost", 2.0);                         // the input wins over 100 %
  feed(node, "Reflection Curve", 2.0);
  set(node, 0x9005, 0.5);                                      // (0.5 - 2) x 2 + 2: -1
  feed(node, "Refraction Curve", 0.25);
  feed(node, "Refraction Maximum", 4.0);                       // (4 - 1) x 0.25 + 1
  set(node, 0x9008, 1.5);                                      // transparency like the colours
  EXPECT_EQ(out(node), Flat(kIn, {2.0, 1.0, -1.0, 1.75, 1.5}));
  EXPECT_EQ(unused.evaluations(), 0u);

  // Boosts always show; a maximum only while a curve uses it and no input replaces it.
  lwhost::XPanel& form = panel(node);
  std::string shown;
  for (unsigned int cid = 0x9000; cid < 0x900a; ++cid) shown += form.value(cid).isNull() ? '-' : 'v';
  EXPECT_EQ(shown, "vvv-vvv-v-");
  for (unsigned int cid = 0x9001; cid < 0x900a; cid += 2) EXPECT_EQ(form.hasDividerAfter(cid), cid != 0x9009);
}

TEST_F(BoosterTest, CameraRaysOnlyBoostsRaysFromTheRenderCameraOrWithoutSource) {
  lwhost::Scene& scene = session.scene();
  const LWItemID floor = scene.addObject("Floor");
  const LWItemID front = scene.addCamera("Front"), side = scene.addCamera("Side");
  scene.switchCamera(0.0, side);
  for (const Kind& kind : kKinds) {
    SCOPED_TRACE(kind.server);
    lwhost::PluginNode& node = fed(kind);
    lwhost::XPanel& form = panel(node);
    EXPECT_EQ(form.value(kind.cameraId).integer[0], kind.cameraDefault);
    EXPECT_TRUE(form.setInteger(kind.cameraId, 5));
    EXPECT_EQ(form.value(kind.cameraId).integer[0], 1);
    std::string boosted;
    for (LWItemID source : {LWITEM_NULL, side, front, floor}) {
      access.sourceID = source;
      boosted += out(node)[0] == 0.2 ? 'b' : out(node)[0] == 0.1 ? '-' : '?';
    }
    EXPECT_EQ(boosted, "bb--");
    EXPECT_TRUE(form.setInteger(kind.cameraId, 0));
    EXPECT_EQ(out(node)[0], 0.2) << "off: a reflection is boosted too";
  }

  // The camera of the last time step counts; the modeller has none and keeps it.
  lwhost::PluginNode& node = fed(kKinds[1]);
  scene.switchCamera(1.0, front);
  access.sourceID = side;
  for (lwhost::Application app : {lwhost::Application::Modeler, lwhost::Application::Layout}) {
    session.host().actAs(app);
    node.activateInterface();
    EXPECT_EQ(node.newTime(30, 1.0), "");
    EXPECT_EQ(out(node)[0], app == lwhost::Application::Layout ? 0.1 : 0.2);
  }
}

TEST_F(BoosterTest, ScenesKeepEachNodesBlocksInItsOwnOrder) {
  const std::string kBinary[] = {"CDIF:BASE RANG |CSPC:BASE RANG |CRFL:BASE RANG |CRFR:BASE RANG |CTRN:BASE RANG |CAMO:\1|",
                                 "CAMO:\0|COLR:BASE RANG |"s, "CAMO:\0|SCLR:BASE RANG |"s};
  const std::string kText[] = {"Diffuse Specular Reflection Refrection Transparency CameraOnly 01 ",
                               "CameraOnly 00 Colour ", "CameraOnly 00 Scalar "};
  for (int n = 0; n < 3; ++n) {
    SCOPED_TRACE(kKinds[n].server);
    lwhost::PluginNode& node = fed(kKinds[n]);
    EXPECT_TRUE(panel(node).setInteger(kKinds[n].cameraId, !kKinds[n].cameraDefault));
    std::string binary, text;
    for (const std::string& block : Split(node.instance().save(IOMode::Binary), IOMode::Binary)) {
      binary += block.substr(0, 4) + ":" + (block.substr(0, 4) == "CAMO" ? block.substr(6) : "");
      for (const std::string& b : Split(block.substr(0, 4) == "CAMO" ? "" : block.substr(6), IOMode::Binary))
        binary += b.substr(0, 4) + " ";
      binary += "|";
    }
    EXPECT_EQ(binary, kBinary[n]);
    for (const std::string& block : Split(node.instance().save(IOMode::Ascii), IOMode::Ascii))
      text += block.substr(block.find_first_not_of("{ "), block.find('\n') - block.find_first_not_of("{ ")) + " ";
    EXPECT_EQ(text, kText[n]);

    for (IOMode mode : {IOMode::Ascii, IOMode::Binary}) {
      // Reversed, past a block no booster knows: the same node again, as is a copy.
      const std::string saved = node.instance().save(mode);
      std::vector<std::string> blocks = Split(saved, mode);
      std::reverse(blocks.begin(), blocks.end());
      blocks.insert(blocks.begin() + 1, mode == IOMode::Ascii ? "Stranger 01\n"s : "STRG\0\1\1"s);
      lwhost::PluginNode& loaded = add(kKinds[n]);
      EXPECT_EQ(loaded.instance().load(mode, Join(blocks)), "");
      EXPECT_EQ(loaded.instance().save(mode), saved);
      lwhost::PluginNode& copy = add(kKinds[n]);
      EXPECT_EQ(copy.instance().copyFrom(node.instance()), "");
      EXPECT_EQ(copy.instance().save(mode), saved);
      // Only a byte of 1 is on.
      EXPECT_TRUE(panel(loaded).setInteger(kKinds[n].cameraId, 1));
      EXPECT_EQ(loaded.instance().load(mode, mode == IOMode::Ascii ? "CameraOnly 02\n" : "CAMO\0\1\2"s), "");
      EXPECT_EQ(panel(loaded).value(kKinds[n].cameraId).integer[0], 0);
    }
  }
}

}  // namespace
