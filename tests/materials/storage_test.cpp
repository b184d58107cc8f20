// What the Material Blender keeps in scenes and copies: the five channel blocks, read back in
// any order past blocks it does not know, in both file forms, and its enveloped opacities.
#include <algorithm>
#include <numeric>

#include "materials/MaterialBlenderTest.h"
#include "support/SavedBlocks.h"

namespace materials {
namespace {

using lwhost::IOMode;

using namespace std::string_literals;

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
}  // namespace materials
