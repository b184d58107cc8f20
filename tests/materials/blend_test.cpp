// The Material Blender's evaluation through vorn.p: what reaches the host's blend, which
// upstream nodes are asked, and what each output carries.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "materials/MaterialBlenderTest.h"

namespace materials {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

void ExpectMaterial(const LWNodalMaterial& actual, const LWNodalMaterial& expected) {
  for (int k = 0; k < kTransparency; ++k) EXPECT_EQ(ChannelOf(actual, k), ChannelOf(expected, k)) << kChannel[k];
  EXPECT_EQ(actual.transparency, expected.transparency);
}

std::vector<std::string> Connectors(const lwhost::Node& node) {
  std::vector<std::string> names;
  for (const auto& i : node.inputs()) names.push_back("in " + i->name() + ":" + std::to_string(i->type()));
  for (const auto& o : node.outputs()) names.push_back("out " + o->name() + ":" + std::to_string(o->type()));
  return names;
}

TEST_F(MaterialBlenderTest, ANewNodePassesTheBackgroundAndNeverAsksTheForeground) {
  lwhost::PluginNode& node = addBlender();
  EXPECT_EQ(node.version(), 2);
  EXPECT_EQ(node.flags(), static_cast<unsigned int>(NF_TRANSP));
  EXPECT_EQ(node.color(), (std::array<int, 3>{11, 8, 51}));
  EXPECT_THAT(Connectors(node),
              ElementsAreArray<std::string>(
                  {"in Bg Material:6",        "in Bg Diffuse:1",         "in Bg Specular:1",
                   "in Bg Reflection:1",      "in Bg Refraction:1",      "in Bg Transparency:2",
                   "in Fg Material:6",        "in Fg Diffuse:1",         "in Fg Specular:1",
                   "in Fg Reflection:1",      "in Fg Refraction:1",      "in Fg Transparency:2",
                   "in Diffuse Opacity:2",    "in Diffuse Mode:4",       "in Specular Opacity:2",
                   "in Specular Mode:4",      "in Reflection Opacity:2", "in Reflection Mode:4",
                   "in Refraction Opacity:2", "in Refraction Mode:4",    "in Transparency Opacity:2",
                   "in Transparency Mode:4",  "out Material:6",          "out Diffuse:1",
                   "out Specular:1",          "out Reflection:1",        "out Refraction:1",
                   "out Transparency:2"}));

  lwhost::Node& bg = feed(node, "Bg Material", kBg);
  lwhost::Node& fg = feed(node, "Fg Material", kFg);
  // Before any render pass and after one, every channel is the background's.
  for (int pass = 0; pass < 2; ++pass) {
    SCOPED_TRACE(pass ? "after NewTime" : "before NewTime");
    if (pass) {
      EXPECT_EQ(node.newTime(1, 1.0 / 30), "");
    }
    ExpectMaterial(material(node), kBg);
    for (int k = 0; k < kTransparency; ++k) EXPECT_EQ(colour(node, kChannel[k]), ChannelOf(kBg, k)) << kChannel[k];
    EXPECT_EQ(scalar(node, "Transparency"), kBg.transparency);
  }
  EXPECT_GT(bg.evaluations(), 0u);
  EXPECT_EQ(fg.evaluations(), 0u);
}

TEST_F(MaterialBlenderTest, OnlyAnOpacityOfExactlyZeroSkipsTheBlend) {
  BlendSpy::Install(session.host());
  lwhost::PluginNode& node = addBlender();
  feed(node, "Bg Material", kBg);
  lwhost::Node& fg = feed(node, "Fg Material", kFg);
  lwhost::Node& fgDiffuse = editor.addColor(0.9, 0.4, 0.05);
  setMode(node, 0, Blend_Multiply);
  const Colour bgDiffuse = ChannelOf(kBg, 0);

  // Zero: the background as it is, whatever the mode; no foreground asked, no blend.
  setOpacity(node, 0, 0.0);
  BlendSpy::calls = 0;
  EXPECT_EQ(colour(node, "Diffuse"), bgDiffuse);
  EXPECT_EQ(ChannelOf(material(node), 0), bgDiffuse);
  EXPECT_EQ(fg.evaluations(), 0u);
  EXPECT_EQ(BlendSpy::calls, 0);

  // A tiny opacity blends: the foreground is read and the result moves off the background.
  setOpacity(node, 0, 1e-12);
  BlendSpy::calls = 0;
  const Colour tiny = colour(node, "Diffuse");
  EXPECT_EQ(BlendSpy::calls, 1);
  EXPECT_EQ(BlendSpy::alpha, 1.0 - 1e-12);
  EXPECT_EQ(BlendSpy::mode, Blend_Multiply);
  EXPECT_EQ(tiny, Blended(bgDiffuse, ChannelOf(kFg, 0), 1e-12, Blend_Multiply));
  EXPECT_NE(tiny, bgDiffuse);
  EXPECT_GT(fg.evaluations(), 0u);

  // A negative opacity blends too, with alpha above 1. The foreground material is only read for
  // positive opacities, so the channel's own input supplies the foreground here.
  editor.connect(fgDiffuse, "Color", node, "Fg Diffuse");
  setOpacity(node, 0, -0.5);
  fg.resetEvaluations();
  BlendSpy::calls = 0;
  const Colour negative = colour(node, "Diffuse");
  EXPECT_EQ(BlendSpy::calls, 1);
  EXPECT_EQ(BlendSpy::alpha, 1.5);
  EXPECT_EQ(fg.evaluations(), 0u);
  EXPECT_EQ(fgDiffuse.evaluations(), 1u);
  for (int i = 0; i < 3; ++i) {
    const double expected = 1.5 * bgDiffuse[i] - 0.5 * bgDiffuse[i] * Colour{0.9, 0.4, 0.05}[i];
    EXPECT_DOUBLE_EQ(negative[i], expected) << i;
  }
  EXPECT_EQ(negative, Blended(bgDiffuse, {0.9, 0.4, 0.05}, -0.5, Blend_Multiply));
  // The other channels still pass the background through.
  const LWNodalMaterial m = material(node);
  for (int k = 1; k < kTransparency; ++k) EXPECT_EQ(ChannelOf(m, k), ChannelOf(kBg, k)) << kChannel[k];
  EXPECT_EQ(m.transparency, kBg.transparency);

  // The scalar channel draws the same line.
  setMode(node, kTransparency, Blend_Additive);
  setOpacity(node, kTransparency, 1e-12);
  const double tinyTransparency = scalar(node, "Transparency");
  EXPECT_EQ(tinyTransparency, BlendedScalar(kBg.transparency, kFg.transparency, 1e-12, Blend_Additive));
  EXPECT_NE(tinyTransparency, kBg.transparency);
  setOpacity(node, kTransparency, 0.0);
  BlendSpy::calls = 0;
  EXPECT_EQ(scalar(node, "Transparency"), kBg.transparency);
  EXPECT_EQ(BlendSpy::calls, 0);
}

// The background is skipped only for opacities of 100 and more (10000 %): opacities are
// fractions, so that is almost never, and a full opacity of 1.0 still reads the background.
TEST_F(MaterialBlenderTest, TheBackgroundIsSkippedOnlyFromAnOpacityOf100) {
  lwhost::PluginNode& node = addBlender();
  lwhost::Node& bg = feed(node, "Bg Material", kBg);
  feed(node, "Fg Material", kFg);
  for (double opacity : {1.0, 99.5, 100.0}) {
    SCOPED_TRACE(opacity);
    for (int k = 0; k < kChannels; ++k) setOpacity(node, k, opacity);
    const bool read = opacity < 100.0;
    // Unread, the background is the zero-filled record.
    const Colour background = read ? ChannelOf(kBg, 0) : Colour{0, 0, 0};
    const Colour expected = Blended(background, ChannelOf(kFg, 0), opacity, Blend_Normal);

    bg.resetEvaluations();
    EXPECT_EQ(ChannelOf(material(node), 0), expected);
    EXPECT_EQ(bg.evaluations(), read ? 1u : 0u);
    bg.resetEvaluations();
    EXPECT_EQ(colour(node, "Diffuse"), expected);
    EXPECT_EQ(bg.evaluations(), read ? 1u : 0u);
  }
  // Any mode other than Normal needs the background whatever the opacity.
  setMode(node, kTransparency, Blend_Multiply);
  bg.resetEvaluations();
  material(node);
  EXPECT_EQ(bg.evaluations(), 1u);
}

TEST_F(MaterialBlenderTest, ConnectedChannelInputsTakeThePlaceOfTheMaterials) {
  lwhost::PluginNode& node = addBlender();
  lwhost::Node& bg = feed(node, "Bg Material", kBg);
  lwhost::Node& fg = feed(node, "Fg Material", kFg);
  lwhost::Node& bgDiffuse = editor.addColor(0.9, 0.05, 0.5);
  lwhost::Node& bgTransparency = editor.addScalar(0.85);
  editor.connect(bgDiffuse, "Color", node, "Bg Diffuse");
  editor.connect(bgTransparency, "Scalar", node, "Bg Transparency");

  // The whole material: the connected channels replace the background's, the rest is its own.
  LWNodalMaterial m = material(node);
  EXPECT_EQ(ChannelOf(m, 0), (Colour{0.9, 0.05, 0.5}));
  EXPECT_EQ(m.transparency, 0.85);
  for (int k = 1; k < kTransparency; ++k) EXPECT_EQ(ChannelOf(m, k), ChannelOf(kBg, k)) << kChannel[k];

  // One channel whose background input is connected needs no background material at all.
  bg.resetEvaluations();
  EXPECT_EQ(colour(node, "Diffuse"), (Colour{0.9, 0.05, 0.5}));
  EXPECT_EQ(scalar(node, "Transparency"), 0.85);
  EXPECT_EQ(bg.evaluations(), 0u);
  EXPECT_EQ(fg.evaluations(), 0u);

  // Blending starts from the connected background too.
  setOpacity(node, 0, 0.5);
  EXPECT_EQ(colour(node, "Diffuse"), Blended({0.9, 0.05, 0.5}, ChannelOf(kFg, 0), 0.5, Blend_Normal));
  EXPECT_EQ(fg.evaluations(), 1u);

  // A connected opacity input overrides the parameter, in both directions: full where the
  // parameter is 0, none where it is 0.5.
  lwhost::Node& full = editor.addScalar(1.0);
  lwhost::Node& none = editor.addScalar(0.0);
  editor.connect(full, "Scalar", node, "Specular Opacity");
  editor.connect(none, "Scalar", node, "Diffuse Opacity");
  EXPECT_EQ(colour(node, "Specular"), ChannelOf(kFg, 1));
  EXPECT_EQ(colour(node, "Diffuse"), (Colour{0.9, 0.05, 0.5}));
  m = material(node);
  EXPECT_EQ(ChannelOf(m, 0), (Colour{0.9, 0.05, 0.5}));
  EXPECT_EQ(ChannelOf(m, 1), ChannelOf(kFg, 1));
}

TEST_F(MaterialBlenderTest, ModesOutsideTheHostsRangeAreClampedAtBlendTime) {
  BlendSpy::Install(session.host());
  lwhost::PluginNode& node = addBlender();
  feed(node, "Bg Material", kBg);
  feed(node, "Fg Material", kFg);
  setOpacity(node, 0, 1.0);
  const Colour bg = ChannelOf(kBg, 0), fg = ChannelOf(kFg, 0);
  const Colour blue{bg[0], bg[1], fg[2]};

  lwhost::Node& twenty = editor.addInteger(20);
  editor.connect(twenty, "Integer", node, "Diffuse Mode");
  EXPECT_EQ(colour(node, "Diffuse"), blue);
  EXPECT_EQ(BlendSpy::mode, Blend_Blue);
  EXPECT_EQ(BlendSpy::alpha, 0.0);
  EXPECT_EQ(ChannelOf(material(node), 0), blue);

  lwhost::Node& minusOne = editor.addInteger(-1);
  editor.connect(minusOne, "Integer", node, "Diffuse Mode");
  EXPECT_EQ(colour(node, "Diffuse"), fg);
  EXPECT_EQ(BlendSpy::mode, Blend_Normal);

  // The input wins over the stored mode; without it the stored mode counts again, and a stored
  // mode out of range is kept as it is but blends clamped.
  setMode(node, 0, 12);
  EXPECT_EQ(colour(node, "Diffuse"), fg);
  editor.disconnect(node, "Diffuse Mode");
  EXPECT_EQ(colour(node, "Diffuse"), (Colour{bg[0], fg[1], bg[2]}));
  setMode(node, 0, 20);
  EXPECT_EQ(colour(node, "Diffuse"), blue);
  EXPECT_EQ(BlendSpy::mode, Blend_Blue);
  EXPECT_EQ(panelOf(node).value(ModeId(0)).integer[0], 20);

  // The transparency channel clamps the same way.
  setOpacity(node, kTransparency, 1.0);
  setMode(node, kTransparency, 99);
  EXPECT_EQ(scalar(node, "Transparency"), BlendedScalar(kBg.transparency, kFg.transparency, 1.0, Blend_Blue));
  EXPECT_EQ(BlendSpy::mode, Blend_Blue);
}

TEST_F(MaterialBlenderTest, EachOutputBlendsItsOwnChannelOnly) {
  lwhost::PluginNode& node = addBlender();
  feed(node, "Bg Material", kBg);
  feed(node, "Fg Material", kFg);
  const int modes[kChannels] = {Blend_Additive, Blend_Multiply, Blend_Screen, Blend_Difference, Blend_Subtractive};
  const double opacities[kChannels] = {0.5, 0.25, 0.75, 0.4, 0.6};
  for (int k = 0; k < kChannels; ++k) {
    setMode(node, k, modes[k]);
    setOpacity(node, k, opacities[k]);
  }

  const LWNodalMaterial whole = material(node);
  for (int k = 0; k < kTransparency; ++k) {
    SCOPED_TRACE(kChannel[k]);
    const Colour expected = Blended(ChannelOf(kBg, k), ChannelOf(kFg, k), opacities[k], modes[k]);
    EXPECT_EQ(colour(node, kChannel[k]), expected);
    EXPECT_EQ(ChannelOf(whole, k), expected);
  }
  const double transparency = BlendedScalar(kBg.transparency, kFg.transparency, 0.6, Blend_Subtractive);
  EXPECT_EQ(whole.transparency, transparency);

  // Transparency is one double; the host copies no more than the output's type holds, so what
  // matters is that it is declared scalar and carries the transparency blend.
  double two[2] = {-9, -9};
  ASSERT_TRUE(editor.evaluate(node, "Transparency", access, two, NOT_SCALAR));
  EXPECT_EQ(two[0], transparency);
  EXPECT_EQ(two[1], -9);
  EXPECT_EQ(node.output("Transparency")->type(), NOT_SCALAR);

  // Asking for one channel leaves the other channels' inputs alone.
  lwhost::Node& bgDiffuse = editor.addColor(1, 1, 1);
  lwhost::Node& fgSpecular = editor.addColor(1, 1, 1);
  lwhost::Node& diffuseMode = editor.addInteger(Blend_Normal);
  editor.connect(bgDiffuse, "Color", node, "Bg Diffuse");
  editor.connect(fgSpecular, "Color", node, "Fg Specular");
  editor.connect(diffuseMode, "Integer", node, "Diffuse Mode");
  EXPECT_EQ(scalar(node, "Transparency"), transparency);
  EXPECT_EQ(colour(node, "Reflection"), ChannelOf(whole, 2));
  EXPECT_EQ(bgDiffuse.evaluations(), 0u);
  EXPECT_EQ(fgSpecular.evaluations(), 0u);
  EXPECT_EQ(diffuseMode.evaluations(), 0u);
}

TEST_F(MaterialBlenderTest, InputEventsAskForAnUpdateOnConnectAndLostUpstreamOnly) {
  lwhost::PluginNode& node = addBlender();
  lwhost::Node& upstream = editor.addMaterial(kFg);
  lwhost::Host& host = session.host();
  const std::pair<std::string, void*> update{"NodeHandler", node.instance().get()};
  host.clearInstanceUpdates();

  editor.connect(upstream, "Material", node, "Fg Material");
  EXPECT_THAT(host.instanceUpdates(), ElementsAre(update));
  host.clearInstanceUpdates();
  editor.disconnect(node, "Fg Material");
  EXPECT_TRUE(host.instanceUpdates().empty());

  editor.connect(upstream, "Material", node, "Fg Material");
  host.clearInstanceUpdates();
  editor.removeNode(upstream);
  EXPECT_THAT(host.instanceUpdates(), ElementsAre(update));
  EXPECT_FALSE(node.input("Fg Material")->connected());
}

}  // namespace
}  // namespace materials
