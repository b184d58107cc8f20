// The Material Blender's form through vorn.p, played by the host as the user, and the host
// version it needs before it builds anything.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "lwhost/FormRenderer.h"
#include "materials/MaterialBlenderTest.h"

namespace materials {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

const std::vector<std::string> kModeNames = {"Normal",     "Additive", "Subtractive", "Multiply",     "Screen",
                                             "Darken",     "Lighten",  "Difference",  "Negative",     "Colour Dodge",
                                             "Colour Burn", "Red",     "Green",       "Blue"};

TEST_F(MaterialBlenderTest, TheFormListsModeThenOpacityPerChannelAndRenders) {
  lwhost::PluginNode& node = addBlender();
  lwhost::XPanel& panel = panelOf(node);
  EXPECT_EQ(&panelOf(node), &panel) << "one panel for the node's life";

  std::vector<std::string> controls;
  for (const lwhost::XPControl& c : panel.controls()) {
    char id[16];
    std::snprintf(id, sizeof id, "%04X", c.cid);
    controls.push_back(std::string(id) + " " + c.controlClass + " " + c.dataType + " " + c.label);
  }
  EXPECT_THAT(controls, ElementsAreArray<std::string>({
                            "9901 dThumbnail  ",
                            "9900 vButton  http://www.vorn.example/",
                            "9001 iPopChoice integer Diffuse Mode",
                            "9000 percent-env float-env Diffuse Opacity",
                            "9003 iPopChoice integer Specular Mode",
                            "9002 percent-env float-env Specular Opacity",
                            "9005 iPopChoice integer Reflection Mode",
                            "9004 percent-env float-env Reflection Opacity",
                            "9007 iPopChoice integer Refraction Mode",
                            "9006 percent-env float-env Refraction Opacity",
                            "9009 iPopChoice integer Transparency Mode",
                            "9008 percent-env float-env Transparency Opacity",
                        }));
  for (int k = 0; k < kChannels; ++k) EXPECT_EQ(panel.popupEntries(ModeId(k)), kModeNames) << kChannel[k];
  // The module's common heading: the logo drawn by the plug-in, a divider under the button.
  EXPECT_TRUE(panel.hasDividerAfter(0x9900));
  const lwhost::Raster logo = panel.drawThumbnail(0x9901, lwhost::kFormWidth);
  EXPECT_EQ(logo.get(0, 0), (lwhost::RGB{255, 255, 255})) << "the logo's white ground";

  // A picture with a setting or two, for a person to look at.
  setMode(node, 1, Blend_Screen);
  setOpacity(node, 1, 0.5);
  std::vector<lwhost::FormRow> rows;
  const lwhost::Raster form = lwhost::RenderForm(panel, &rows);
  ASSERT_EQ(rows.size(), 12u);
  for (std::size_t i = 1; i < rows.size(); ++i) EXPECT_GT(rows[i].top, rows[i - 1].top) << "row " << i;
  EXPECT_EQ(lwhost::FormatValue("percent-env", panel.value(OpacityId(1))), "50.0 %");
  EXPECT_TRUE(panel.problems().empty()) << panel.problems().front();
  std::string error;
  EXPECT_TRUE(form.writePng(std::string(MATERIAL_TEST_OUTPUT_DIR) + "/material_blender_form.png", &error)) << error;
}

TEST_F(MaterialBlenderTest, TheFormShowsNoValueForAConnectedInput) {
  lwhost::PluginNode& node = addBlender();
  lwhost::XPanel& panel = panelOf(node);
  setMode(node, 0, Blend_Darken);
  for (int k = 0; k < kChannels; ++k) {
    EXPECT_FALSE(panel.value(ModeId(k)).isNull()) << kChannel[k];
    EXPECT_FALSE(panel.value(OpacityId(k)).isNull()) << kChannel[k];
  }

  lwhost::Node& mode = editor.addInteger(Blend_Red);
  lwhost::Node& opacity = editor.addScalar(0.5);
  const int refreshes = panel.refreshCount();
  editor.connect(mode, "Integer", node, "Diffuse Mode");
  editor.connect(opacity, "Scalar", node, "Refraction Opacity");
  // The connections refreshed the open form: what it shows has gone already.
  EXPECT_GE(panel.refreshCount(), refreshes + 2);
  EXPECT_TRUE(panel.shownValue(ModeId(0)).isNull());
  EXPECT_TRUE(panel.shownValue(OpacityId(3)).isNull());
  for (int k = 0; k < kChannels; ++k) {
    SCOPED_TRACE(kChannel[k]);
    EXPECT_EQ(panel.value(ModeId(k)).isNull(), k == 0);
    EXPECT_EQ(panel.value(OpacityId(k)).isNull(), k == 3);
  }
  // The connection hides the stored mode without touching it.
  editor.disconnect(node, "Diffuse Mode");
  EXPECT_FALSE(panel.shownValue(ModeId(0)).isNull());
  EXPECT_EQ(panel.shownValue(ModeId(0)).integer[0], Blend_Darken);
  // Losing the upstream node counts as a disconnection too.
  editor.removeNode(opacity);
  EXPECT_FALSE(panel.shownValue(OpacityId(3)).isNull());
}

TEST_F(MaterialBlenderTest, ModesSetOnTheFormGoToTheirOwnChannel) {
  lwhost::PluginNode& node = addBlender();
  lwhost::XPanel& panel = panelOf(node);
  feed(node, "Bg Material", kBg);
  feed(node, "Fg Material", kFg);
  const int modes[kChannels] = {Blend_Lighten, Blend_Subtractive, Blend_Green, Blend_ColorBurn, Blend_Additive};
  for (int k = 0; k < kChannels; ++k) {
    SCOPED_TRACE(kChannel[k]);
    const int refreshes = panel.refreshCount();
    ASSERT_TRUE(panel.choose(ModeId(k), modes[k]));
    EXPECT_EQ(panel.lastSetResult(), 1) << "a stored mode asks for a refresh";
    EXPECT_EQ(panel.refreshCount(), refreshes + 1);
  }
  // Opacities reach the parameter through the control itself; the set that follows must not
  // take the parameter's handle for a mode.
  for (int k = 0; k < kChannels; ++k) setOpacity(node, k, 1.0);
  for (int k = 0; k < kChannels; ++k) EXPECT_EQ(panel.value(ModeId(k)).integer[0], modes[k]) << kChannel[k];

  // Full opacity: each channel is its own mode's effect alone.
  const LWNodalMaterial m = material(node);
  for (int k = 0; k < kTransparency; ++k)
    EXPECT_EQ(ChannelOf(m, k), Blended(ChannelOf(kBg, k), ChannelOf(kFg, k), 1.0, modes[k])) << kChannel[k];
  EXPECT_EQ(m.transparency, BlendedScalar(kBg.transparency, kFg.transparency, 1.0, Blend_Additive));

  // A committed edit asks the host to re-evaluate the node.
  session.host().clearInstanceUpdates();
  ASSERT_TRUE(panel.setInteger(ModeId(2), Blend_Normal));
  EXPECT_THAT(session.host().instanceUpdates(),
              ElementsAre(std::pair<std::string, void*>{"NodeHandler", node.instance().get()}));
}

TEST_F(MaterialBlenderTest, HostsBefore92AreRefusedBeforeAnythingIsBuilt) {
  lwhost::Host& host = session.host();
  editor.addScalar(1.0);
  struct Version {
    unsigned int major, minor;
    bool accepted;
  };
  for (const Version v : {Version{9, 1, false}, Version{8, 5, false}, Version{9, 2, true}, Version{10, 0, true}}) {
    SCOPED_TRACE(std::to_string(v.major) + "." + std::to_string(v.minor));
    host.setVersion(v.major, v.minor);
    const std::size_t before = editor.nodes().size();
    host.globals().resetCounts();
    if (v.accepted) {
      lwhost::PluginNode& node = addBlender();
      EXPECT_EQ(node.inputs().size(), 22u);
      EXPECT_EQ(node.outputs().size(), 6u);
      EXPECT_EQ(editor.nodes().size(), before + 1);
      continue;
    }
    try {
      addBlender();
      ADD_FAILURE() << "created";
    } catch (const lwhost::CreationError& e) {
      EXPECT_STREQ(e.what(), "This plugin needs a newer version of LightWave 3D (9.2 as a minimum)");
    }
    EXPECT_EQ(editor.nodes().size(), before);
    // Neither connections nor parameters were begun.
    EXPECT_EQ(host.globals().counts("NodeInputFuncs").acquire + host.globals().counts("NodeInputFuncs 2").acquire, 0);
    EXPECT_EQ(host.globals().counts(LWVPARMFUNCS_GLOBAL).acquire, 0);
    EXPECT_TRUE(session.xpanels().panels().empty());
  }
}

}  // namespace
}  // namespace materials
