// The three boosters through vorn.p: the factor of each channel, their connections, the camera
// test, the form's values and what they keep in scenes.
#include <algorithm>

#include "support/SavedBlocks.h"
#include "support/VornNodeTest.h"

namespace {

using lwhost::IOMode;
using namespace std::string_literals;

constexpr LWNodalMaterial kIn = {{0.1, 0.2, 0.3}, {0.4, 0.5, 0.6}, {0.15, 0.25, 0.35}, {0.45, 0.55, 0.65}, 0.4};
// Per node: the server and its camera check box (on by default but for the Material Booster).
const char* const kServer[] = {"vornMaterialBooster", "vornColourBooster", "vornScalarBooster"};
const unsigned int kCameraId[] = {0x900a, 0x9002, 0x9002};

std::vector<double> Flat(const LWNodalMaterial& m) {
  std::vector<double> v(m.diffuse, m.diffuse + 3);
  for (const double* c : {m.specular, m.reflection, m.refraction}) v.insert(v.end(), c, c + 3);
  v.push_back(m.transparency);
  return v;
}

class BoosterTest : public VornNodeTest {
 protected:
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
  // The output: a material's channels, or a colour (a scalar comes as three).
  std::vector<double> out(lwhost::PluginNode& node) {
    LWNodalMaterial m{{-9, -9, -9}, {}, {}, {}, 0};
    const bool material = node.outputs()[0]->type() == NOT_MATERIAL;
    EXPECT_TRUE(editor.evaluate(*node.outputs()[0], access, &m, material ? NOT_MATERIAL : NOT_COLOR));
    return material ? Flat(m) : std::vector<double>(m.diffuse, m.diffuse + 3);
  }
  // Fed 0.1 (the material in its diffuse red), the first boost at 200 %.
  lwhost::PluginNode& fed(int n) {
    lwhost::PluginNode& node = add(kServer[n]);
    feed(node, node.inputs()[0]->name(), 0.1);
    set(node, 0x9000, 2.0);
    return node;
  }
};

TEST_F(BoosterTest, EachChannelScalesByItsBoostOrByTheCurveBetweenBoostAndMaximum) {
  lwhost::PluginNode& node = add(kServer[0]);
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
  std::vector<double> expected = Flat(kIn);
  for (int j = 0; j < 13; ++j) expected[j] *= std::vector<double>{2.0, 1.0, -1.0, 1.75, 1.5}[j / 3];
  EXPECT_EQ(out(node), expected);
  EXPECT_EQ(unused.evaluations(), 0u);

  // Boosts always show; a maximum only while a curve uses it and no input replaces it.
  lwhost::XPanel& form = panel(node);
  std::string shown;
  for (unsigned int cid = 0x9000; cid < 0x900a; ++cid) shown += form.value(cid).isNull() ? '-' : 'v';
  EXPECT_EQ(shown, "vvv-vvv-v-");
  for (unsigned int cid = 0x9001; cid < 0x900a; cid += 2) EXPECT_EQ(form.hasDividerAfter(cid), cid != 0x9009);
  session.host().setVersion(9, 1);  // only the Material Booster needs 9.2
  EXPECT_THROW(add(kServer[0]), lwhost::CreationError);
  EXPECT_NO_THROW(add(kServer[2]));
}

// Per node: connections and colour, "Camera Rays Only", and the scene blocks in the node's order.
TEST_F(BoosterTest, ConnectionsCameraTestAndScenesOfEachBooster) {
  std::string inputs = "Material/6 ";
  for (const char* c : {"Diffuse", "Specular", "Reflection", "Refraction", "Transparency"})
    inputs += c + " Boost/2 "s + c + " Curve/2 " + c + " Maximum/2 ";
  const std::string kConnectors[] = {"11: " + inputs + "> Material/6",
                                     "0: Colour/1 Colour Boost/2 Colour Curve/2 Colour Maximum/2 > Colour/1",
                                     "0: Scalar/2 Scalar Boost/2 Scalar Curve/2 Scalar Maximum/2 > Scalar/2"};
  // A channel: its boost ("BASE") at 1 or 2, then its maximum ("RANG") at 1, as parameters save.
  const auto text = [](const char* token, const char* boost) {
    return "{ "s + token + "\n  { Base\n    Value " + boost + " 0 0\n    State 0\n  }\n" +
           "  { Range\n    Value 1 0 0\n    State 0\n  }\n}\n";
  };
  const auto binary = [](const char* id, bool doubled) {
    const std::string zeros(22, '\0'), state = "STAT\0\4\0\0\0\0"s;
    return id + "\0\x5c" "BASE\0\x28" "VALU\0\x18"s + (doubled ? "\x40\0"s : "\x3f\xf0"s) + zeros + state +
           "RANG\0\x28" "VALU\0\x18\x3f\xf0"s + zeros + state;
  };
  const std::string kSaved[3][2] = {
      {text("Diffuse", "2") + text("Specular", "1") + text("Reflection", "1") + text("Refrection", "1") +
           text("Transparency", "1") + "CameraOnly 01\n",
       binary("CDIF", true) + binary("CSPC", false) + binary("CRFL", false) + binary("CRFR", false) +
           binary("CTRN", false) + "CAMO\0\1\1"s},
      {"CameraOnly 00\n" + text("Colour", "2"), "CAMO\0\1\0"s + binary("COLR", true)},
      {"CameraOnly 00\n" + text("Scalar", "2"), "CAMO\0\1\0"s + binary("SCLR", true)}};
  lwhost::Scene& scene = session.scene();
  const LWItemID floor = scene.addObject("Floor");
  const LWItemID front = scene.addCamera("Front"), side = scene.addCamera("Side");
  scene.switchCamera(0.0, side);
  for (int n = 0; n < 3; ++n) {
    SCOPED_TRACE(kServer[n]);
    lwhost::PluginNode& node = fed(n);
    EXPECT_EQ(std::to_string(node.color()[0]) + ": " + Connectors(node), kConnectors[n]);

    // Boosted straight from the render camera or with no source, passed as is from elsewhere.
    lwhost::XPanel& form = panel(node);
    EXPECT_EQ(form.value(kCameraId[n]).integer[0], n != 0) << "on by default but for materials";
    EXPECT_TRUE(form.setInteger(kCameraId[n], 5));
    EXPECT_EQ(form.value(kCameraId[n]).integer[0], 1);
    std::string boosted;
    for (LWItemID source : {LWITEM_NULL, side, front, floor}) {
      access.sourceID = source;
      boosted += out(node)[0] == 0.2 ? 'b' : out(node)[0] == 0.1 ? '-' : '?';
    }
    EXPECT_EQ(boosted, "bb--");
    EXPECT_TRUE(form.setInteger(kCameraId[n], 0));
    EXPECT_EQ(out(node)[0], 0.2) << "off: a reflection is boosted too";
    EXPECT_TRUE(form.setInteger(kCameraId[n], n == 0));

    for (IOMode mode : {IOMode::Ascii, IOMode::Binary}) {
      // Reversed, past a block no booster knows: the same node again, as is a copy.
      const std::string saved = node.instance().save(mode);
      EXPECT_EQ(saved, kSaved[n][mode == IOMode::Binary]);
      std::vector<std::string> blocks = Split(saved, mode);
      std::reverse(blocks.begin(), blocks.end());
      blocks.insert(blocks.begin() + 1, mode == IOMode::Ascii ? "Stranger 01\n"s : "STRG\0\1\1"s);
      lwhost::PluginNode& loaded = add(kServer[n]);
      EXPECT_EQ(loaded.instance().load(mode, Join(blocks)), "");
      EXPECT_EQ(loaded.instance().save(mode), saved);
      lwhost::PluginNode& copy = add(kServer[n]);
      EXPECT_EQ(copy.instance().copyFrom(node.instance()), "");
      EXPECT_EQ(copy.instance().save(mode), saved);
      // Only a byte of 1 is on.
      EXPECT_TRUE(panel(loaded).setInteger(kCameraId[n], 1));
      EXPECT_EQ(loaded.instance().load(mode, mode == IOMode::Ascii ? "CameraOnly 02\n" : "CAMO\0\1\2"s), "");
      EXPECT_EQ(panel(loaded).value(kCameraId[n]).integer[0], 0);
    }
  }

  // The camera of the last time step counts; the modeller has none and keeps it.
  lwhost::PluginNode& node = fed(1);
  scene.switchCamera(1.0, front);
  access.sourceID = side;
  for (lwhost::Application app : {lwhost::Application::Modeler, lwhost::Application::Layout}) {
    session.host().actAs(app);
    node.activateInterface();
    EXPECT_EQ(node.newTime(30, 1.0), "");
    EXPECT_EQ(out(node)[0], app == lwhost::Application::Layout ? 0.1 : 0.2);
  }
}

}  // namespace
