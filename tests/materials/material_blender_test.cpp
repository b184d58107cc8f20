// The Material Blender through vorn.p: what reaches the host's blend, which upstream nodes are
// asked and what each output carries; its form, played by the host as the user, and the host
// version it needs; what it keeps in scenes and copies.
#include <lwnodes.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <numeric>
#include <string>
#include <vector>

#include "lwhost/Blend.h"
#include "support/SavedBlocks.h"
#include "support/VornNodeTest.h"

namespace {

using lwhost::IOMode;
using namespace std::string_literals;
using ::testing::ElementsAre;
using Colour = std::array<double, 3>;

constexpr int kChannels = 5;
constexpr int kTransparency = 4;
const char* const kChannel[kChannels] = {"Diffuse", "Specular", "Reflection", "Refraction", "Transparency"};
// Channel k's opacity control is 0x9000 + 2k, its mode the odd id after it.
constexpr unsigned int OpacityId(int k) { return 0x9000u + 2u * static_cast<unsigned int>(k); }
constexpr unsigned int ModeId(int k) { return OpacityId(k) + 1u; }

constexpr LWNodalMaterial kBg = {{0.1, 0.2, 0.3}, {0.4, 0.5, 0.6}, {0.15, 0.25, 0.35}, {0.45, 0.55, 0.65}, 0.2};
constexpr LWNodalMaterial kFg = {{0.9, 0.8, 0.7}, {0.6, 0.5, 0.4}, {0.3, 0.6, 0.9}, {0.05, 0.1, 0.95}, 0.7};

Colour ChannelOf(const LWNodalMaterial& m, int k) {
  const double* c = k == 0 ? m.diffuse : k == 1 ? m.specular : k == 2 ? m.reflection : m.refraction;
  return {c[0], c[1], c[2]};
}

// The host's blend of a channel at `opacity`: the node hands it 1 - opacity. The transparency
// channel travels as the first component of a vector.
Colour Blended(const Colour& bg, const Colour& fg, double opacity, int mode) {
  Colour out{};
  lwhost::Blend(out.data(), bg.data(), fg.data(), 1.0 - opacity, mode);
  return out;
}
double BlendedScalar(double bg, double fg, double opacity, int mode) {
  return Blended({bg, 0, 0}, {fg, 0, 0}, opacity, mode)[0];
}

// The host's node utilities with Blend counted. Installed before the nodes it watches are made
// (they keep the table they were given); static, as nodes may outlive a test's locals.
struct BlendSpy {
  static inline LWNodeUtilityFuncs table{};
  static inline int calls = 0;

  static void Blend(LWDVector result, LWDVector bg, LWDVector fg, double alpha, BlendingMode mode) {
    ++calls;
    lwhost::NodeEditor::UtilityFuncsTable()->Blend(result, bg, fg, alpha, mode);
  }
  static void Install(lwhost::Host& host) {
    table = *lwhost::NodeEditor::UtilityFuncsTable();
    table.Blend = Blend;
    calls = 0;
    host.globals().provide(LWNODEUTILITYFUNCS_GLOBAL, &table);
  }
};

class MaterialBlenderTest : public VornNodeTest {
 protected:
  lwhost::PluginNode& addBlender() { return add("MaterialBlender"); }
  // As the user does it: edit the control; the next render pass samples the opacity.
  void setOpacity(lwhost::PluginNode& node, int k, double opacity) {
    ASSERT_TRUE(panel(node).setNumber(OpacityId(k), opacity)) << kChannel[k];
    EXPECT_EQ(node.newTime(0, 0.0), "");
  }
  void setMode(lwhost::PluginNode& node, int k, int mode) {
    ASSERT_TRUE(panel(node).setInteger(ModeId(k), mode)) << kChannel[k];
  }

  lwhost::Node& feed(lwhost::PluginNode& node, const char* input, const LWNodalMaterial& m) {
    lwhost::Node& source = editor.addMaterial(m);
    editor.connect(source, "Material", node, input);
    return source;
  }

  // An output as a connected input reads it; what the node does not write stays as given.
  template <class T>
  T evaluate(lwhost::PluginNode& node, const char* output, ConnectionType type, T value) {
    EXPECT_TRUE(editor.evaluate(node, output, access, &value, type)) << output;
    return value;
  }
  LWNodalMaterial material(lwhost::PluginNode& node) {
    return evaluate(node, "Material", NOT_MATERIAL, LWNodalMaterial{});
  }
  Colour colour(lwhost::PluginNode& node, const char* output) {
    return evaluate(node, output, NOT_COLOR, Colour{-9, -9, -9});
  }
  double scalar(lwhost::PluginNode& node, const char* output) { return evaluate(node, output, NOT_SCALAR, -9.0); }
};

// ---- Evaluation ----

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

// ---- The form, played by the host as the user, and the host version it needs before it builds
// anything ----

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

// ---- Storage: the five channel blocks, read back in any order past blocks it does not know, in
// both file forms, and the enveloped opacities ----

const int kModes[kChannels] = {Blend_Additive, Blend_Multiply, Blend_Screen, Blend_Difference, Blend_Blue};
const double kOpacities[kChannels] = {0.1, 0.2, 0.3, 0.4, 0.5};


class MaterialStorage : public MaterialBlenderTest {
 protected:
  // Every channel moved, the diffuse opacity fading in over a second.
  lwhost::PluginNode& configured() {
    lwhost::PluginNode& node = addBlender();
    for (int k = 0; k < kChannels; ++k) {
      setMode(node, k, kModes[k]);
      setOpacity(node, k, kOpacities[k]);
    }
    lwhost::VParm* diffuse = session.animation().parameter(panel(node).value(OpacityId(0)).vparm);
    if (!diffuse) throw std::runtime_error("no diffuse opacity parameter");
    diffuse->addKey(0, 0.0, 0.0);
    diffuse->addKey(0, 1.0, 1.0);
    return node;
  }
};

TEST_F(MaterialStorage, SaveWritesTheFiveChannelBlocksInOrder) {
  lwhost::PluginNode& node = configured();
  std::string error = "stale";
  const std::string text = node.instance().save(IOMode::Ascii, &error);
  EXPECT_EQ(error, "");
  // Text: each block's first line, two levels deep.
  std::string heads;
  for (const std::string& block : Split(text, IOMode::Ascii)) {
    heads += block.substr(0, block.find('\n')) + "|";
    for (const std::string& b : Split(Inner(block, IOMode::Ascii), IOMode::Ascii))
      heads += b.substr(0, b.find('\n')) + "|";
  }
  EXPECT_EQ(heads,
            "{ Diffuse|  Mode 1|  { Opacity|{ Specular|  Mode 3|  { Opacity|{ Reflection|  Mode 4|  { Opacity|"
            "{ Refrection|  Mode 7|  { Opacity|{ Transparency|  Mode 13|  { Opacity|");

  // Binary: the mode one big-endian I4.
  std::string ids;
  for (const std::string& block : Split(node.instance().save(IOMode::Binary), IOMode::Binary)) {
    ids += block.substr(0, 4) + ":";
    for (const std::string& b : Split(block.substr(6), IOMode::Binary)) ids += b.substr(0, 4) + " ";
    ids += block.substr(12, 4) + "|";
  }
  EXPECT_EQ(ids, "CDIF:MODE OPAC \0\0\0\1|CSPC:MODE OPAC \0\0\0\3|CRFL:MODE OPAC \0\0\0\4|"
                 "CRFR:MODE OPAC \0\0\0\7|CTRN:MODE OPAC \0\0\0\15|"s);
}

TEST_F(MaterialStorage, LoadsInAnyOrderPastUnknownBlocksAndKeepsMissingOnesAtTheirDefaults) {
  lwhost::PluginNode& original = configured();
  for (IOMode mode : {IOMode::Ascii, IOMode::Binary}) {
    SCOPED_TRACE(mode == IOMode::Ascii ? "text" : "binary");
    const std::string saved = original.instance().save(mode);
    // Both levels reversed, with an unknown block at each that holds a "Mode" of its own.
    const std::string stranger = mode == IOMode::Ascii ? "{ Bump\n  Mode 12\n}\n" : "BUMP\0\12MODE\0\4\0\0\0\14"s;
    std::vector<std::string> blocks = Split(saved, mode);
    ASSERT_EQ(blocks.size(), 5u);
    std::vector<std::string> inner = Split(Inner(blocks[0], mode), mode);
    ASSERT_EQ(inner.size(), 2u);
    std::reverse(inner.begin(), inner.end());
    inner.insert(inner.begin() + 1, stranger);
    blocks[0] = Rewrap(blocks[0], std::accumulate(inner.begin(), inner.end(), std::string()), mode);
    std::reverse(blocks.begin(), blocks.end());
    blocks.insert(blocks.begin() + 2, stranger);
    lwhost::PluginNode& loaded = addBlender();
    EXPECT_EQ(loaded.instance().load(mode, std::accumulate(blocks.begin(), blocks.end(), std::string())), "");
    EXPECT_EQ(loaded.instance().save(mode), saved);

    // The specular mode alone: everything else keeps its default.
    const std::string specular = Split(saved, mode)[1];
    lwhost::PluginNode& partial = addBlender();
    EXPECT_EQ(partial.instance().load(mode, Rewrap(specular, Split(Inner(specular, mode), mode)[0], mode)), "");
    lwhost::PluginNode& reference = addBlender();
    setMode(reference, 1, Blend_Multiply);
    EXPECT_EQ(partial.instance().save(mode), reference.instance().save(mode));
  }
}

TEST_F(MaterialStorage, OpacitiesAreEnvelopedParametersThatCopiesKeep) {
  lwhost::PluginNode& node = addBlender();
  std::vector<std::string> names;
  for (const lwhost::VParm* p : session.animation().parameters(session.animation().group(node.channelGroup())))
    names.push_back(p->pluginName() + "/" + p->name() + (p->envType() == LWVP_PERCENT ? " %" : ""));
  EXPECT_THAT(names, ElementsAre("MaterialBlender/DiffuseOpacity %", "MaterialBlender/SpecularOpacity %",
                                 "MaterialBlender/ReflectionOpacity %", "MaterialBlender/RefractionOpacity %",
                                 "MaterialBlender/TransparencyOpacity %"));

  // Each pass takes the diffuse opacity at its own time: full at 1 s, none at 0 s.
  lwhost::PluginNode& original = configured();
  feed(original, "Bg Material", kBg);
  feed(original, "Fg Material", kFg);
  EXPECT_EQ(original.newTime(30, 1.0), "");
  EXPECT_EQ(colour(original, "Diffuse"), Blended(ChannelOf(kBg, 0), ChannelOf(kFg, 0), 1.0, Blend_Additive));
  EXPECT_EQ(original.newTime(0, 0.0), "");
  EXPECT_EQ(colour(original, "Diffuse"), ChannelOf(kBg, 0));

  // A copy takes the settings, envelope included, not the connections, into parameters of
  // its own.
  editor.connect(editor.addInteger(Blend_Lighten), "Integer", original, "Specular Mode");
  lwhost::PluginNode& copy = addBlender();
  EXPECT_EQ(copy.instance().copyFrom(original.instance()), "");
  EXPECT_FALSE(copy.input("Specular Mode")->connected());
  const std::string saved = copy.instance().save(IOMode::Ascii);
  EXPECT_EQ(saved, original.instance().save(IOMode::Ascii));
  setOpacity(original, 2, 0.95);
  setMode(original, 0, Blend_Red);
  EXPECT_EQ(copy.instance().save(IOMode::Ascii), saved);
}

}  // namespace
