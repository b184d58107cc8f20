// The Material Blender's evaluation through vorn.p: what reaches the host's blend, which
// upstream nodes are asked, and what each output carries.
#include "materials/MaterialBlenderTest.h"

namespace materials {
namespace {

// The host's input and output functions with destroy counted, installed before the node is made.
struct ConnectorSpy {
  static inline LWNodeInputFuncs inputs{};
  static inline LWNodeOutputFuncs outputs{};
  static inline int destroyed = 0;

  static void Install(lwhost::Host& host) {
    inputs = *lwhost::NodeEditor::InputFuncsTable();
    outputs = *lwhost::NodeEditor::OutputFuncsTable();
    inputs.destroy = [](NodeID node, NodeInputID input) {
      ++destroyed;
      lwhost::NodeEditor::InputFuncsTable()->destroy(node, input);
    };
    outputs.destroy = [](NodeID node, NodeOutputID output) {
      ++destroyed;
      lwhost::NodeEditor::OutputFuncsTable()->destroy(node, output);
    };
    destroyed = 0;
    host.globals().provide(LWNODEINPUTFUNCS_GLOBAL, &inputs);
    host.globals().provide(LWNODEOUTPUTFUNCS_GLOBAL, &outputs);
  }
};

TEST_F(MaterialBlenderTest, ANewNodePassesTheBackgroundAndNeverAsksTheForeground) {
  lwhost::PluginNode& node = addBlender();
  EXPECT_EQ(node.flags(), static_cast<unsigned int>(NF_TRANSP));
  EXPECT_EQ(node.color(), (std::array<int, 3>{11, 8, 51}));
  EXPECT_EQ(Connectors(node),
            "Bg Material/6 Bg Diffuse/1 Bg Specular/1 Bg Reflection/1 Bg Refraction/1 Bg Transparency/2 "
            "Fg Material/6 Fg Diffuse/1 Fg Specular/1 Fg Reflection/1 Fg Refraction/1 Fg Transparency/2 "
            "Diffuse Opacity/2 Diffuse Mode/4 Specular Opacity/2 Specular Mode/4 Reflection Opacity/2 Reflection Mode/4 "
            "Refraction Opacity/2 Refraction Mode/4 Transparency Opacity/2 Transparency Mode/4 "
            "> Material/6 Diffuse/1 Specular/1 Reflection/1 Refraction/1 Transparency/2");

  // Before any render pass has sampled the opacities, every channel is the background's.
  feed(node, "Bg Material", kBg);
  lwhost::Node& fg = feed(node, "Fg Material", kFg);
  const LWNodalMaterial m = material(node);
  for (int k = 0; k < kTransparency; ++k) EXPECT_EQ(ChannelOf(m, k), ChannelOf(kBg, k)) << kChannel[k];
  EXPECT_EQ(m.transparency, kBg.transparency);
  EXPECT_EQ(fg.evaluations(), 0u);
}

TEST_F(MaterialBlenderTest, OnlyAnOpacityOfExactlyZeroSkipsTheBlend) {
  BlendSpy::Install(session.host());
  lwhost::PluginNode& node = addBlender();
  feed(node, "Bg Material", kBg);
  lwhost::Node& fg = feed(node, "Fg Material", kFg);
  setMode(node, 0, Blend_Multiply);

  // Zero: the background as it is, whatever the mode; no foreground asked, no blend.
  setOpacity(node, 0, 0.0);
  EXPECT_EQ(colour(node, "Diffuse"), ChannelOf(kBg, 0));
  EXPECT_EQ(fg.evaluations(), 0u);
  EXPECT_EQ(BlendSpy::calls, 0);

  // A tiny opacity blends, with the complement as alpha and the foreground read.
  setOpacity(node, 0, 1e-12);
  EXPECT_EQ(colour(node, "Diffuse"), Blended(ChannelOf(kBg, 0), ChannelOf(kFg, 0), 1e-12, Blend_Multiply));
  EXPECT_EQ(BlendSpy::calls, 1);

  // A negative one blends too, with alpha above 1. The foreground material is read only for
  // positive opacities, so the channel's own input supplies the foreground here.
  lwhost::Node& fgDiffuse = editor.addColor(0.9, 0.4, 0.05);
  editor.connect(fgDiffuse, "Color", node, "Fg Diffuse");
  setOpacity(node, 0, -0.5);
  fg.resetEvaluations();
  BlendSpy::calls = 0;
  EXPECT_EQ(colour(node, "Diffuse"), Blended(ChannelOf(kBg, 0), {0.9, 0.4, 0.05}, -0.5, Blend_Multiply));
  EXPECT_EQ(BlendSpy::calls, 1);
  EXPECT_EQ(fg.evaluations(), 0u);
  EXPECT_EQ(fgDiffuse.evaluations(), 1u);

  // The scalar channel draws the same line.
  setMode(node, kTransparency, Blend_Additive);
  setOpacity(node, kTransparency, 1e-12);
  EXPECT_EQ(scalar(node, "Transparency"), BlendedScalar(kBg.transparency, kFg.transparency, 1e-12, Blend_Additive));
  setOpacity(node, kTransparency, 0.0);
  BlendSpy::calls = 0;
  EXPECT_EQ(scalar(node, "Transparency"), kBg.transparency);
  EXPECT_EQ(BlendSpy::calls, 0);
}

// Opacities are fractions, yet the background is skipped only from 100 (10000 %) on: a full
// opacity of 1.0 still reads it, and so does any mode but Normal.
TEST_F(MaterialBlenderTest, TheBackgroundIsSkippedOnlyFromAnOpacityOf100) {
  lwhost::PluginNode& node = addBlender();
  lwhost::Node& bg = feed(node, "Bg Material", kBg);
  feed(node, "Fg Material", kFg);
  for (double opacity : {1.0, 99.5, 100.0}) {
    SCOPED_TRACE(opacity);
    for (int k = 0; k < kChannels; ++k) setOpacity(node, k, opacity);
    const bool read = opacity < 100.0;
    // Unread, the background is the zero-filled record.
    const Colour expected = Blended(read ? ChannelOf(kBg, 0) : Colour{}, ChannelOf(kFg, 0), opacity, Blend_Normal);
    bg.resetEvaluations();
    EXPECT_EQ(ChannelOf(material(node), 0), expected);
    EXPECT_EQ(bg.evaluations(), read ? 1u : 0u);
    bg.resetEvaluations();
    EXPECT_EQ(colour(node, "Diffuse"), expected);
    EXPECT_EQ(bg.evaluations(), read ? 1u : 0u);
  }
  setMode(node, kTransparency, Blend_Multiply);
  bg.resetEvaluations();
  material(node);
  EXPECT_EQ(bg.evaluations(), 1u);
}

TEST_F(MaterialBlenderTest, ConnectedChannelInputsTakeThePlaceOfTheMaterials) {
  ConnectorSpy::Install(session.host());
  lwhost::PluginNode& node = addBlender();
  lwhost::Node& bg = feed(node, "Bg Material", kBg);
  lwhost::Node& fg = feed(node, "Fg Material", kFg);
  lwhost::Node& bgDiffuse = editor.addColor(0.9, 0.05, 0.5);
  editor.connect(bgDiffuse, "Color", node, "Bg Diffuse");
  editor.connect(editor.addScalar(0.85), "Scalar", node, "Bg Transparency");

  // The connected channels replace the background's, the rest is its own.
  const LWNodalMaterial m = material(node);
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

  // A connected opacity overrides the parameter both ways: full where it is 0, none at 0.5.
  // Asking for one channel leaves the other channels' inputs alone.
  lwhost::Node& none = editor.addScalar(0.0);
  editor.connect(editor.addScalar(1.0), "Scalar", node, "Specular Opacity");
  editor.connect(none, "Scalar", node, "Diffuse Opacity");
  bgDiffuse.resetEvaluations();
  EXPECT_EQ(colour(node, "Specular"), ChannelOf(kFg, 1));
  EXPECT_EQ(bgDiffuse.evaluations() + none.evaluations(), 0u);
  EXPECT_EQ(colour(node, "Diffuse"), (Colour{0.9, 0.05, 0.5}));

  // With every channel input connected, the whole material needs neither material.
  for (int k = 1; k < kTransparency; ++k) {
    editor.connect(editor.addColor(0.1, 0.2, 0.3), "Color", node, std::string("Bg ") + kChannel[k]);
    editor.connect(editor.addColor(0.1, 0.2, 0.3), "Color", node, std::string("Fg ") + kChannel[k]);
  }
  editor.connect(editor.addColor(0.1, 0.2, 0.3), "Color", node, "Fg Diffuse");
  editor.connect(editor.addScalar(0.5), "Scalar", node, "Fg Transparency");
  bg.resetEvaluations();
  fg.resetEvaluations();
  material(node);
  EXPECT_EQ(bg.evaluations() + fg.evaluations(), 0u);

  // Removed, the fully built node gives back its 22 inputs and 6 outputs and lets go of every
  // service it took (its holders share one count, released once; the module keeps only its
  // message service) and of the nodes that fed it.
  node.activateInterface();
  editor.removeNode(node);
  EXPECT_EQ(ConnectorSpy::destroyed, 28);
  for (const std::string& name : session.host().globals().namesAsked()) {
    const lwhost::LookupCounts c = session.host().globals().counts(name);
    if (c.acquire > 0 && name != "Info Messages 2") {
      EXPECT_EQ(c.release, 1) << name;
    }
  }
  EXPECT_TRUE(bg.outputs()[0]->targets().empty());
}

// Deciding whether the background is needed reads the modes in channel order and stops at the
// first that is not Normal.
TEST_F(MaterialBlenderTest, ModesAreReadOnlyUntilOneIsNotNormal) {
  lwhost::PluginNode& node = addBlender();
  feed(node, "Bg Material", kBg);
  lwhost::Node& diffuse = editor.addInteger(Blend_Normal);
  lwhost::Node& specular = editor.addInteger(Blend_Multiply);
  lwhost::Node& reflection = editor.addInteger(Blend_Screen);
  editor.connect(diffuse, "Integer", node, "Diffuse Mode");
  editor.connect(specular, "Integer", node, "Specular Mode");
  editor.connect(reflection, "Integer", node, "Reflection Mode");
  material(node);
  EXPECT_EQ(diffuse.evaluations(), 1u);
  EXPECT_EQ(specular.evaluations(), 1u);
  EXPECT_EQ(reflection.evaluations(), 0u);
}

TEST_F(MaterialBlenderTest, ModesOutsideTheHostsRangeAreClampedAtBlendTime) {
  lwhost::PluginNode& node = addBlender();
  feed(node, "Bg Material", kBg);
  feed(node, "Fg Material", kFg);
  setOpacity(node, 0, 1.0);
  const Colour bg = ChannelOf(kBg, 0), fg = ChannelOf(kFg, 0);
  const Colour blue{bg[0], bg[1], fg[2]};

  editor.connect(editor.addInteger(20), "Integer", node, "Diffuse Mode");
  EXPECT_EQ(colour(node, "Diffuse"), blue);
  editor.connect(editor.addInteger(-1), "Integer", node, "Diffuse Mode");
  EXPECT_EQ(colour(node, "Diffuse"), fg);

  // The input wins over the stored mode; without it the stored mode counts again, and one out
  // of range is kept as it is but blends clamped.
  setMode(node, 0, 12);
  EXPECT_EQ(colour(node, "Diffuse"), fg);
  editor.disconnect(node, "Diffuse Mode");
  EXPECT_EQ(colour(node, "Diffuse"), (Colour{bg[0], fg[1], bg[2]}));
  setMode(node, 0, 20);
  EXPECT_EQ(colour(node, "Diffuse"), blue);
  EXPECT_EQ(panel(node).value(ModeId(0)).integer[0], 20);
}

// Modes picked from the form's pop-ups, each channel its own mode and opacity.
TEST_F(MaterialBlenderTest, EachOutputBlendsItsOwnChannelOnly) {
  lwhost::PluginNode& node = addBlender();
  lwhost::XPanel& form = panel(node);
  feed(node, "Bg Material", kBg);
  feed(node, "Fg Material", kFg);
  const int modes[kChannels] = {Blend_Additive, Blend_Multiply, Blend_Green, Blend_ColorBurn, Blend_Subtractive};
  const double opacities[kChannels] = {0.5, 0.25, 0.75, 0.4, 0.6};
  for (int k = 0; k < kChannels; ++k) {
    ASSERT_TRUE(form.choose(ModeId(k), modes[k]));
    EXPECT_EQ(form.lastSetResult(), 1) << "a stored mode asks for a refresh";
    // Setting the opacity after must not take the parameter's handle for a mode.
    setOpacity(node, k, opacities[k]);
  }

  const LWNodalMaterial whole = material(node);
  for (int k = 0; k < kTransparency; ++k) {
    SCOPED_TRACE(kChannel[k]);
    const Colour expected = Blended(ChannelOf(kBg, k), ChannelOf(kFg, k), opacities[k], modes[k]);
    EXPECT_EQ(colour(node, kChannel[k]), expected);
    EXPECT_EQ(ChannelOf(whole, k), expected);
  }
  EXPECT_EQ(whole.transparency, BlendedScalar(kBg.transparency, kFg.transparency, 0.6, Blend_Subtractive));
}

}  // namespace
}  // namespace materials
