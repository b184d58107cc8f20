// Envelopes and parameters written and read through the host's own block writer and reader,
// in scene-file text and in binary.
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "AnimationTestSupport.h"
#include "lwhost/BlockReader.h"
#include "lwhost/BlockWriter.h"

namespace {

using animtest::AnimationTest;
using namespace lwhost;

// The block a handler opens around its parameter.
const LWBlockIdent kOwnerBlock{LWID_('G', 'A', 'I', 'N'), "Gain"};
const LWBlockIdent kOwnerList[] = {kOwnerBlock, {0, nullptr}};

const char* ModeName(IOMode mode) { return mode == IOMode::Ascii ? "text" : "binary"; }

class AnimationIOTest : public AnimationTest {
 protected:
  // What a handler's save callback writes: its own non-leaf block, the parameter inside.
  std::string saveParameter(LWVParmID p, IOMode mode) {
    BlockWriter writer(mode);
    const LWSaveState* s = writer.state();
    s->beginBlk(s->writeData, &kOwnerBlock, 0);
    EXPECT_EQ(vpf->save(p, s), nullptr);
    s->endBlk(s->writeData);
    EXPECT_EQ(writer.depth(), 0);
    EXPECT_TRUE(writer.problems().empty()) << writer.problems().front();
    return writer.data();
  }

  // And its load callback: find its block, let the parameter read inside it, leave the block.
  void loadParameter(LWVParmID p, IOMode mode, const std::string& data) {
    BlockReader reader(mode, data);
    const LWLoadState* s = reader.state();
    ASSERT_EQ(s->findBlk(s->readData, kOwnerList), kOwnerBlock.id);
    EXPECT_EQ(vpf->load(p, s), nullptr);
    s->endBlk(s->readData);
    EXPECT_EQ(s->depth(s->readData), 0);
    EXPECT_TRUE(reader.problems().empty()) << reader.problems().front();
  }

  void key(LWEnvelopeID env, double time, double value, int shape, std::initializer_list<double> params = {}) {
    LWEnvKeyframeID k = envf->createKey(env, time, value);
    ASSERT_EQ(envf->keySet(env, k, LWKEY_SHAPE, &shape), 1);
    int tag = shape == kShapeBezier2D || shape == kShapeHermite ? LWKEY_PARAM_0 : LWKEY_TENSION;
    for (double v : params) ASSERT_EQ(envf->keySet(env, k, static_cast<LWKeyTag>(tag++), &v), 1);
  }

  std::array<double, 3> sample(LWVParmID p, double t) {
    std::array<double, 3> out{};
    vpf->getVal(p, t, nullptr, out.data());
    return out;
  }
};

TEST_F(AnimationIOTest, ParameterTextFollowsTheSceneFileLayout) {
  LWVParmID gain = makeParameter(LWVP_PERCENT, "Gain");
  double v[3] = {0.75, 0, 0};
  vpf->setVal(gain, v);
  vpf->setState(gain, LWVPSF_ENV);
  LWEnvelopeID envs[3];
  vpf->getEnv(gain, envs);
  envf->createKey(envs[0], 1.0, 0.5);
  EXPECT_EQ(saveParameter(gain, IOMode::Ascii),
            "{ Gain\n"
            "  Value 0.75 0 0\n"
            "  State 1\n"
            "  Channel 0\n"
            "  { Envelope\n"
            "    2\n"
            "    Key 0.75 0 0 0 0 0 0 0 0\n"
            "    Key 0.5 1 0 0 0 0 0 0 0\n"
            "    Behaviors 1 1\n"
            "  }\n"
            "}\n");
}

TEST_F(AnimationIOTest, SaveLoadSaveGivesTheSameBytesInBothModes) {
  for (IOMode mode : {IOMode::Ascii, IOMode::Binary}) {
    SCOPED_TRACE(ModeName(mode));
    LWChanGroupID group = envf->createGroup(nullptr, ModeName(mode));
    LWVParmID tint = makeParameter(LWVP_COLOR, "Tint", group, LWVPDT_COLOR);
    double rgb[3] = {1.0, 0.1, 1.0 / 3.0};  // not exact in decimal: the text must keep every bit
    vpf->setVal(tint, rgb);
    vpf->setState(tint, LWVPSF_ENV | LWVPSF_TEX);
    LWEnvelopeID envs[3];
    vpf->getEnv(tint, envs);
    key(envs[0], 1.0, 0.5, kShapeLinear);
    key(envs[0], 2.5, 0.2, kShapeStepped);
    key(envs[1], 0.5, 0.9, kShapeTCB, {0.3, -0.4, 0.25});
    key(envs[1], 2.0, 0.2, kShapeBezier2D, {-0.5, 0.1, 0.4, -0.05});
    key(envs[2], 1.5, 0.6, kShapeHermite, {0.7, -1.2});
    int pre = kBehaviorRepeat, post = kBehaviorOscillate;
    envf->egSet(envs[1], nullptr, LWENVTAG_PREBEHAVE, &pre);
    envf->egSet(envs[1], nullptr, LWENVTAG_POSTBEHAVE, &post);

    const std::string first = saveParameter(tint, mode);
    LWVParmID loaded = makeParameter(LWVP_COLOR, "Loaded", group, LWVPDT_COLOR);
    loadParameter(loaded, mode, first);
    EXPECT_EQ(saveParameter(loaded, mode), first);

    EXPECT_EQ(vpf->getState(loaded), LWVPSF_ENV | LWVPSF_TEX);
    for (double t : {-1.0, 0.0, 0.7, 1.2, 1.9, 2.6, 4.0})
      EXPECT_EQ(sample(loaded, t), sample(tint, t)) << "t=" << t;
    // The loaded envelopes are the new parameter's own channels.
    EXPECT_NE(animation.findChannel(std::string(ModeName(mode)) + "/Loaded.G"), nullptr);
  }
  EXPECT_TRUE(animation.problems().empty()) << animation.problems().front();
}

TEST_F(AnimationIOTest, BlocksInAnyOrderAndUnknownBlocksAreSkipped) {
  const LWBlockIdent mystery{LWID_('M', 'Y', 'S', 'T'), "Mystery"};
  const LWBlockIdent extra{LWID_('X', 'T', 'R', 'A'), "Extra"};
  const LWBlockIdent value{LWID_('V', 'A', 'L', 'U'), "Value"};
  const LWBlockIdent state{LWID_('S', 'T', 'A', 'T'), "State"};
  const LWBlockIdent channel{LWID_('C', 'H', 'A', 'N'), "Channel"};
  LWEnvelopeID red = makeEnvelope({{0, 0.25}, {1, 0.75, kShapeLinear}}, nullptr, "red");
  LWEnvelopeID blue = makeEnvelope({{0, 4}}, nullptr, "blue");
  LWEnvelopeID decoy = makeEnvelope({{0, -100}}, nullptr, "decoy");

  for (IOMode mode : {IOMode::Ascii, IOMode::Binary}) {
    SCOPED_TRACE(ModeName(mode));
    BlockWriter writer(mode);
    const LWSaveState* s = writer.state();
    void* w = s->writeData;
    const int one = 1, two = 2, seven = 7;
    const double rgb[3] = {0.5, 0.6, 0.7};
    s->beginBlk(w, &kOwnerBlock, 0);
    s->beginBlk(w, &mystery, 1), s->writeI4(w, &seven, 1), s->endBlk(w);
    envf->save(red, s);  // no Channel block first: the first channel
    s->beginBlk(w, &state, 1), s->writeI4(w, &one, 1), s->endBlk(w);
    s->beginBlk(w, &extra, 0);  // a nested unknown block hiding an Envelope of its own
    envf->save(decoy, s);
    s->endBlk(w);
    s->beginBlk(w, &channel, 1), s->writeI4(w, &two, 1), s->endBlk(w);
    envf->save(blue, s);
    s->beginBlk(w, &value, 1), s->writeDP(w, rgb, 3), s->endBlk(w);
    s->endBlk(w);

    LWVParmID p = makeParameter(LWVP_COLOR, "Shuffled");
    loadParameter(p, mode, writer.data());
    EXPECT_EQ(vpf->getState(p), LWVPSF_ENV);
    LWEnvelopeID envs[3];
    vpf->getEnv(p, envs);
    EXPECT_NE(envs[0], nullptr);
    EXPECT_EQ(envs[1], nullptr);
    EXPECT_NE(envs[2], nullptr);
    EXPECT_EQ(sample(p, 0.5), (std::array<double, 3>{0.5, 0.6, 4}));
    vpf->destroy(p);
  }
  EXPECT_TRUE(animation.problems().empty()) << animation.problems().front();
}

TEST_F(AnimationIOTest, WithoutAnEnvelopeBlockTheParameterIsUnenveloped) {
  const LWBlockIdent value{LWID_('V', 'A', 'L', 'U'), "Value"};
  const LWBlockIdent state{LWID_('S', 'T', 'A', 'T'), "State"};
  for (IOMode mode : {IOMode::Ascii, IOMode::Binary}) {
    SCOPED_TRACE(ModeName(mode));
    BlockWriter writer(mode);
    const LWSaveState* s = writer.state();
    void* w = s->writeData;
    const int enveloped = LWVPSF_ENV;
    const double rgb[3] = {1, 2, 3};
    s->beginBlk(w, &kOwnerBlock, 0);
    s->beginBlk(w, &state, 1), s->writeI4(w, &enveloped, 1), s->endBlk(w);
    s->beginBlk(w, &value, 1), s->writeDP(w, rgb, 3), s->endBlk(w);
    s->endBlk(w);

    // Enveloped before the load: what was there must not survive it.
    LWVParmID p = makeParameter(LWVP_COLOR, "Bare");
    vpf->setState(p, LWVPSF_ENV);
    const std::size_t problemsBefore = animation.problems().size();
    loadParameter(p, mode, writer.data());
    EXPECT_EQ(vpf->getState(p), 0);
    EXPECT_EQ(animation.findChannel("Bare.R"), nullptr);
    EXPECT_EQ(sample(p, 3), (std::array<double, 3>{1, 2, 3}));
    double again[3] = {4, 5, 6};
    EXPECT_EQ(vpf->setVal(p, again), 3);
    // The State that promised an envelope is worth telling the plug-in author about.
    EXPECT_EQ(animation.problems().size(), problemsBefore + 1);
    vpf->destroy(p);
  }
}

TEST_F(AnimationIOTest, EnvelopeBlocksFromSceneTextAndMalformedData) {
  // As LightWave writes a channel in a scene file (single precision, nine numbers per key).
  LWEnvelopeID env = envf->create(nullptr, "Scene", LWET_FLOAT);
  {
    BlockReader reader(IOMode::Ascii,
                       "{ Envelope\n"
                       "  2\n"
                       "  Key 0.5905706 0 0 0 0 0 0 0 0\n"
                       "  Key 1.5 2 3 0 0 0 0 0 0\n"
                       "  { ChannelHandler\n"
                       "    Key 99 1 3 0 0 0 0 0 0\n"
                       "  }\n"
                       "  Behaviors 1 4\n"
                       "}\n");
    EXPECT_EQ(envf->load(env, reader.state()), nullptr);
    EXPECT_TRUE(reader.problems().empty()) << reader.problems().front();
  }
  int count = 0, post = 0;
  envf->egGet(env, nullptr, LWENVTAG_KEYCOUNT, &count);
  envf->egGet(env, nullptr, LWENVTAG_POSTBEHAVE, &post);
  EXPECT_EQ(count, 2);
  EXPECT_EQ(post, kBehaviorOffsetRepeat);
  EXPECT_DOUBLE_EQ(envf->evaluate(env, 1.0), 0.5905706 + (1.5 - 0.5905706) / 2);
  EXPECT_TRUE(animation.problems().empty()) << animation.problems().front();

  // Malformed: a short key, a key with an unknown shape, impossible behaviours, a wrong count.
  // What is usable is kept, every fault is reported, and nothing crashes.
  LWEnvelopeID bad = envf->create(nullptr, "Bad", LWET_FLOAT);
  envf->createKey(bad, 5, 5);
  {
    BlockReader reader(IOMode::Ascii,
                       "{ Envelope\n"
                       "  3\n"
                       "  Key 1\n"
                       "  Key 2 1 9 0 0 0 0 0 0\n"
                       "  Behaviors 7 1\n"
                       "}\n");
    EXPECT_EQ(envf->load(bad, reader.state()), nullptr);
  }
  envf->egGet(bad, nullptr, LWENVTAG_KEYCOUNT, &count);
  EXPECT_EQ(count, 1);
  EXPECT_DOUBLE_EQ(envf->evaluate(bad, 0), 2);
  EXPECT_EQ(animation.problems().size(), 4u);

  // No Envelope block at all is an error, and the envelope keeps what it had.
  {
    BlockReader reader(IOMode::Ascii, "Something 1\n");
    EXPECT_NE(envf->load(bad, reader.state()), nullptr);
  }
  EXPECT_DOUBLE_EQ(envf->evaluate(bad, 0), 2);
}

}  // namespace
