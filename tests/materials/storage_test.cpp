// What the Material Blender keeps in scenes and copies: the five channel blocks, read back in
// any order past blocks it does not know, in both file forms.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "lwhost/Animation.h"
#include "lwhost/ChannelGroup.h"
#include "lwhost/VParm.h"
#include "materials/MaterialBlenderTest.h"

namespace materials {
namespace {

using ::testing::ElementsAre;
using lwhost::IOMode;

const int kModes[kChannels] = {Blend_Additive, Blend_Multiply, Blend_Screen, Blend_Difference, Blend_Blue};
const double kOpacities[kChannels] = {0.1, 0.2, 0.3, 0.4, 0.5};

// ---- Text form: blocks are "{ Token" ... "}" lines or single leaf lines, indented by nesting.

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

std::string Join(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

// The blocks of `lines` at indentation `indent`, each as its lines.
std::vector<std::vector<std::string>> TextBlocks(const std::vector<std::string>& lines, std::size_t indent) {
  const std::string open = std::string(indent, ' ') + "{ ", close = std::string(indent, ' ') + "}";
  std::vector<std::vector<std::string>> blocks;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    std::vector<std::string> block{lines[i]};
    if (lines[i].compare(0, open.size(), open) == 0)
      while (++i < lines.size()) {
        block.push_back(lines[i]);
        if (lines[i] == close) break;
      }
    blocks.push_back(block);
  }
  return blocks;
}

std::vector<std::string> Flatten(const std::vector<std::vector<std::string>>& blocks) {
  std::vector<std::string> lines;
  for (const auto& b : blocks) lines.insert(lines.end(), b.begin(), b.end());
  return lines;
}

// ---- Binary form: 4-byte ID, 2-byte big-endian size, content.

struct Chunk {
  std::string id;
  std::string content;
};

std::vector<Chunk> Chunks(const std::string& data) {
  std::vector<Chunk> chunks;
  std::size_t at = 0;
  while (at + 6 <= data.size()) {
    const std::size_t size = (static_cast<unsigned char>(data[at + 4]) << 8) | static_cast<unsigned char>(data[at + 5]);
    chunks.push_back({data.substr(at, 4), data.substr(at + 6, size)});
    at += 6 + size;
  }
  EXPECT_EQ(at, data.size()) << "blocks fill the data exactly";
  return chunks;
}

std::string Encode(const Chunk& c) {
  std::string out = c.id;
  out += static_cast<char>(c.content.size() >> 8);
  out += static_cast<char>(c.content.size() & 0xFF);
  return out + c.content;
}

std::string Encode(const std::vector<Chunk>& chunks) {
  std::string out;
  for (const Chunk& c : chunks) out += Encode(c);
  return out;
}

std::vector<std::string> Ids(const std::vector<Chunk>& chunks) {
  std::vector<std::string> ids;
  for (const Chunk& c : chunks) ids.push_back(c.id);
  return ids;
}

class MaterialStorage : public MaterialBlenderTest {
 protected:
  lwhost::PluginNode& configured() {
    lwhost::PluginNode& node = addBlender();
    for (int k = 0; k < kChannels; ++k) {
      setMode(node, k, kModes[k]);
      setOpacity(node, k, kOpacities[k]);
    }
    return node;
  }

  // The settings as the node's form shows them.
  void expectSettings(lwhost::PluginNode& node, const int (&modes)[kChannels], const double (&opacities)[kChannels]) {
    lwhost::XPanel& panel = panelOf(node);
    for (int k = 0; k < kChannels; ++k) {
      SCOPED_TRACE(kChannel[k]);
      EXPECT_EQ(panel.value(ModeId(k)).integer[0], modes[k]);
      const lwhost::XPValue opacity = panel.value(OpacityId(k));
      ASSERT_TRUE(opacity.numbersKnown);
      EXPECT_EQ(opacity.number[0], opacities[k]);
    }
  }
  void expectConfigured(lwhost::PluginNode& node) {
    expectSettings(node, kModes, kOpacities);
    // And the node blends with them once a render pass has sampled the opacities.
    feed(node, "Bg Material", kBg);
    feed(node, "Fg Material", kFg);
    EXPECT_EQ(node.newTime(0, 0.0), "");
    EXPECT_EQ(colour(node, "Reflection"), Blended(ChannelOf(kBg, 2), ChannelOf(kFg, 2), 0.3, Blend_Screen));
  }
};

TEST_F(MaterialStorage, SaveWritesTheFiveChannelBlocksInOrder) {
  lwhost::PluginNode& node = configured();
  std::string error = "stale";

  const std::string text = node.instance().save(IOMode::Ascii, &error);
  EXPECT_EQ(error, "");
  const auto blocks = TextBlocks(Lines(text), 0);
  std::vector<std::string> heads;
  for (const auto& b : blocks) heads.push_back(b.front());
  EXPECT_THAT(heads, ElementsAre("{ Diffuse", "{ Specular", "{ Reflection", "{ Refrection", "{ Transparency"));
  for (std::size_t k = 0; k < blocks.size(); ++k) {
    SCOPED_TRACE(heads[k]);
    const auto inner = TextBlocks(std::vector<std::string>(blocks[k].begin() + 1, blocks[k].end() - 1), 2);
    ASSERT_EQ(inner.size(), 2u);
    EXPECT_EQ(inner[0], std::vector<std::string>{"  Mode " + std::to_string(kModes[k])});
    EXPECT_EQ(inner[1].front(), "  { Opacity");
  }

  const std::string binary = node.instance().save(IOMode::Binary, &error);
  EXPECT_EQ(error, "");
  const std::vector<Chunk> chunks = Chunks(binary);
  EXPECT_THAT(Ids(chunks), ElementsAre("CDIF", "CSPC", "CRFL", "CRFR", "CTRN"));
  for (std::size_t k = 0; k < chunks.size(); ++k) {
    SCOPED_TRACE(chunks[k].id);
    const std::vector<Chunk> inner = Chunks(chunks[k].content);
    ASSERT_THAT(Ids(inner), ElementsAre("MODE", "OPAC"));
    EXPECT_EQ(inner[0].content, std::string("\0\0\0", 3) + static_cast<char>(kModes[k])) << "one big-endian I4";
  }
}

TEST_F(MaterialStorage, TextDataLoadsInAnyOrderPastUnknownBlocks) {
  lwhost::PluginNode& original = configured();
  auto blocks = TextBlocks(Lines(original.instance().save(IOMode::Ascii)), 0);
  ASSERT_EQ(blocks.size(), 5u);

  // Diffuse: opacity before mode, with an unknown leaf and an unknown block holding a "Mode".
  auto& diffuse = blocks[0];
  auto inner = TextBlocks(std::vector<std::string>(diffuse.begin() + 1, diffuse.end() - 1), 2);
  ASSERT_EQ(inner.size(), 2u);
  std::reverse(inner.begin(), inner.end());
  inner.insert(inner.begin() + 1, std::vector<std::string>{"  Gain 5 5"});
  inner.insert(inner.begin() + 1, std::vector<std::string>{"  { Texture", "    Mode 12", "  }"});
  std::vector<std::string> rebuilt{diffuse.front()};
  for (const std::string& line : Flatten(inner)) rebuilt.push_back(line);
  rebuilt.push_back("}");
  diffuse = rebuilt;

  std::reverse(blocks.begin(), blocks.end());
  blocks.insert(blocks.begin() + 2,
                std::vector<std::string>{"{ Bump", "  Mode 12", "  { Opacity", "    Value 0.9 0 0", "  }", "}"});
  blocks.insert(blocks.begin(), std::vector<std::string>{"Colour 1 2 3"});

  lwhost::PluginNode& copy = addBlender();
  EXPECT_EQ(copy.instance().load(IOMode::Ascii, Join(Flatten(blocks))), "");
  expectConfigured(copy);
}

TEST_F(MaterialStorage, BinaryDataLoadsInAnyOrderPastUnknownBlocks) {
  lwhost::PluginNode& original = configured();
  std::vector<Chunk> chunks = Chunks(original.instance().save(IOMode::Binary));
  ASSERT_EQ(chunks.size(), 5u);

  std::vector<Chunk> inner = Chunks(chunks[0].content);
  ASSERT_EQ(inner.size(), 2u);
  std::reverse(inner.begin(), inner.end());
  inner.insert(inner.begin() + 1, Chunk{"GAIN", std::string("\0\0\0\5", 4)});
  inner.insert(inner.begin() + 1, Chunk{"TXTR", Encode(Chunk{"MODE", std::string("\0\0\0\x0C", 4)})});
  chunks[0].content = Encode(inner);

  std::reverse(chunks.begin(), chunks.end());
  chunks.insert(chunks.begin() + 2, Chunk{"BUMP", Encode(Chunk{"MODE", std::string("\0\0\0\x0C", 4)})});
  chunks.insert(chunks.begin(), Chunk{"COLR", std::string("\0\0\0\1", 4)});

  lwhost::PluginNode& copy = addBlender();
  EXPECT_EQ(copy.instance().load(IOMode::Binary, Encode(chunks)), "");
  expectConfigured(copy);
}

TEST_F(MaterialStorage, MissingBlocksLeaveTheirDefaults) {
  lwhost::PluginNode& original = configured();
  for (IOMode mode : {IOMode::Ascii, IOMode::Binary}) {
    SCOPED_TRACE(mode == IOMode::Ascii ? "text" : "binary");
    std::string data;
    if (mode == IOMode::Ascii) {
      data = Join(TextBlocks(Lines(original.instance().save(mode)), 0)[1]);
    } else {
      const std::vector<Chunk> inner = Chunks(Chunks(original.instance().save(mode))[1].content);
      data = Encode(Chunk{"CSPC", Encode(inner[0])});  // the specular mode alone
    }
    lwhost::PluginNode& node = addBlender();
    EXPECT_EQ(node.instance().load(mode, data), "");
    if (mode == IOMode::Ascii)
      expectSettings(node, {0, Blend_Multiply, 0, 0, 0}, {0, 0.2, 0, 0, 0});
    else
      expectSettings(node, {0, Blend_Multiply, 0, 0, 0}, {0, 0, 0, 0, 0});
  }
}

TEST_F(MaterialStorage, CopyTakesTheSettingsButNotTheConnections) {
  lwhost::PluginNode& original = configured();
  lwhost::Node& mode = editor.addInteger(Blend_Lighten);
  editor.connect(mode, "Integer", original, "Specular Mode");

  lwhost::PluginNode& copy = addBlender();
  EXPECT_EQ(copy.instance().copyFrom(original.instance()), "");
  EXPECT_FALSE(copy.input("Specular Mode")->connected());
  expectSettings(copy, kModes, kOpacities);

  // The copy has parameters of its own: editing the original leaves it alone.
  setOpacity(original, 2, 0.95);
  setMode(original, 0, Blend_Red);
  expectConfigured(copy);
}

TEST_F(MaterialStorage, OpacitiesAreEnvelopedParametersSampledEachPass) {
  lwhost::PluginNode& node = addBlender();
  lwhost::Animation& animation = session.animation();
  const lwhost::ChannelGroup* group = animation.group(node.channelGroup());
  ASSERT_NE(group, nullptr);
  std::vector<std::string> names;
  for (const lwhost::VParm* p : animation.parameters(group)) {
    names.push_back(p->name());
    EXPECT_EQ(p->pluginName(), "MaterialBlender");
    EXPECT_EQ(p->envType(), LWVP_PERCENT);
    EXPECT_EQ(p->value()[0], 0.0);
  }
  EXPECT_THAT(names, ElementsAre("DiffuseOpacity", "SpecularOpacity", "ReflectionOpacity", "RefractionOpacity",
                                 "TransparencyOpacity"));

  // Diffuse fades in over a second: each pass takes the value at its own time.
  lwhost::VParm* diffuse = animation.parameter(panelOf(node).value(OpacityId(0)).vparm);
  ASSERT_NE(diffuse, nullptr);
  ASSERT_NE(diffuse->addKey(0, 0.0, 0.0), nullptr);
  ASSERT_NE(diffuse->addKey(0, 1.0, 1.0), nullptr);
  feed(node, "Bg Material", kBg);
  feed(node, "Fg Material", kFg);
  const auto diffuseAt = [&](lwhost::PluginNode& n, LWFrame frame, LWTime time) {
    EXPECT_EQ(n.newTime(frame, time), "");
    return colour(n, "Diffuse");
  };
  EXPECT_EQ(diffuseAt(node, 30, 1.0), ChannelOf(kFg, 0));
  EXPECT_EQ(diffuseAt(node, 0, 0.0), ChannelOf(kBg, 0));

  // The envelope goes with copies and through both file forms.
  lwhost::PluginNode& copy = addBlender();
  ASSERT_EQ(copy.instance().copyFrom(node.instance()), "");
  std::vector<lwhost::PluginNode*> others{&copy};
  for (IOMode mode : {IOMode::Ascii, IOMode::Binary}) {
    lwhost::PluginNode& loaded = addBlender();
    ASSERT_EQ(loaded.instance().load(mode, node.instance().save(mode)), "");
    others.push_back(&loaded);
  }
  for (lwhost::PluginNode* other : others) {
    SCOPED_TRACE(other->name());
    feed(*other, "Bg Material", kBg);
    feed(*other, "Fg Material", kFg);
    EXPECT_EQ(diffuseAt(*other, 30, 1.0), ChannelOf(kFg, 0));
    EXPECT_EQ(diffuseAt(*other, 0, 0.0), ChannelOf(kBg, 0));
  }
}

}  // namespace
}  // namespace materials
