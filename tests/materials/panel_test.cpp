// The Material Blender's form through vorn.p, played by the host as the user, and the host
// version it needs before it builds anything.
#include <cstdio>

#include "materials/MaterialBlenderTest.h"

namespace materials {
namespace {

TEST_F(MaterialBlenderTest, TheFormListsModeThenOpacityPerChannel) {
  lwhost::PluginNode& node = addBlender();
  lwhost::XPanel& form = panel(node);
  EXPECT_EQ(&panel(node), &form) << "one panel for the node's life";
  const auto line = [](unsigned int cid, const std::string& rest) {
    char id[8];
    std::snprintf(id, sizeof id, "%04X ", cid);
    return id + rest;
  };
  std::vector<std::string> controls, expected{"9901 dThumbnail  ", "9900 vButton  http://www.vorn.example/"};
  for (const lwhost::XPControl& c : form.controls())
    controls.push_back(line(c.cid, c.controlClass + " " + c.dataType + " " + c.label));
  for (int k = 0; k < kChannels; ++k) {
    expected.push_back(line(ModeId(k), "iPopChoice integer " + std::string(kChannel[k]) + " Mode"));
    expected.push_back(line(OpacityId(k), "percent-env float-env " + std::string(kChannel[k]) + " Opacity"));
  }
  EXPECT_EQ(controls, expected);
  // The host's blending modes in the host's order.
  for (int k = 0; k < kChannels; ++k)
    EXPECT_THAT(form.popupEntries(ModeId(k)),
                ElementsAre("Normal", "Additive", "Subtractive", "Multiply", "Screen", "Darken", "Lighten",
                            "Difference", "Negative", "Colour Dodge", "Colour Burn", "Red", "Green", "Blue"))
        << kChannel[k];
  EXPECT_TRUE(form.hasDividerAfter(0x9900)) << "the module's common heading";
  EXPECT_TRUE(form.problems().empty()) << form.problems().front();
}

// A connection hides its input's control and asks the host to evaluate the node again, as does
// an edit in the form; a plain disconnection asks nothing, losing the upstream node does.
TEST_F(MaterialBlenderTest, ConnectionsHideTheirControlsAndAskForUpdates) {
  lwhost::PluginNode& node = addBlender();
  lwhost::XPanel& form = panel(node);
  lwhost::Host& host = session.host();
  const std::pair<std::string, void*> update{"NodeHandler", node.instance().get()};
  host.clearInstanceUpdates();
  setMode(node, 0, Blend_Darken);
  EXPECT_THAT(host.instanceUpdates(), ElementsAre(update));

  lwhost::Node& opacity = editor.addScalar(0.5);
  host.clearInstanceUpdates();
  editor.connect(editor.addInteger(Blend_Red), "Integer", node, "Diffuse Mode");
  editor.connect(opacity, "Scalar", node, "Refraction Opacity");
  EXPECT_THAT(host.instanceUpdates(), ElementsAre(update, update));
  // The connections refreshed the open form: what it shows has gone already, and only there.
  for (int k = 0; k < kChannels; ++k) {
    SCOPED_TRACE(kChannel[k]);
    EXPECT_EQ(form.shownValue(ModeId(k)).isNull(), k == 0);
    EXPECT_EQ(form.shownValue(OpacityId(k)).isNull(), k == 3);
  }
  // The stored mode was hidden, not touched.
  host.clearInstanceUpdates();
  editor.disconnect(node, "Diffuse Mode");
  EXPECT_TRUE(host.instanceUpdates().empty());
  EXPECT_EQ(form.shownValue(ModeId(0)).integer[0], Blend_Darken);
  editor.removeNode(opacity);
  EXPECT_THAT(host.instanceUpdates(), ElementsAre(update));
  EXPECT_FALSE(node.input("Refraction Opacity")->connected());
  EXPECT_FALSE(form.shownValue(OpacityId(3)).isNull());
}

TEST_F(MaterialBlenderTest, HostsBefore92AreRefusedBeforeAnythingIsBuilt) {
  lwhost::Host& host = session.host();
  struct Version {
    unsigned int major, minor;
    bool accepted;
  };
  for (const Version v : {Version{9, 1, false}, Version{8, 5, false}, Version{9, 2, true}, Version{10, 0, true}}) {
    SCOPED_TRACE(std::to_string(v.major) + "." + std::to_string(v.minor));
    host.setVersion(v.major, v.minor);
    host.globals().resetCounts();
    if (v.accepted) {
      EXPECT_NO_THROW(addBlender());
      continue;
    }
    EXPECT_THAT([&] { addBlender(); }, ::testing::ThrowsMessage<lwhost::CreationError>(::testing::StrEq(
                                           "This plugin needs a newer version of LightWave 3D (9.2 as a minimum)")));
    EXPECT_TRUE(editor.nodes().empty());
    // Neither connections nor parameters were begun.
    EXPECT_EQ(host.globals().counts("NodeInputFuncs").acquire + host.globals().counts("NodeInputFuncs 2").acquire, 0);
    EXPECT_EQ(host.globals().counts(LWVPARMFUNCS_GLOBAL).acquire, 0);
    EXPECT_TRUE(session.xpanels().panels().empty());
  }
}

}  // namespace
}  // namespace materials
