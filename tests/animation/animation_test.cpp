// Envelopes and animatable parameters as plug-ins use them, through "Animation Envelopes" and
// "LWVParmFuncs 2", and both in block files: scene-file text and binary.
#include <gtest/gtest.h>
#include <lwserver.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "lwhost/Animation.h"
#include "lwhost/BlockReader.h"
#include "lwhost/BlockWriter.h"
#include "lwhost/Host.h"

namespace {

using namespace lwhost;
using Rgb = std::array<double, 3>;

// The block a handler opens around its parameter.
const LWBlockIdent kOwnerBlock{LWID_('G', 'A', 'I', 'N'), "Gain"};
const LWBlockIdent kOwnerList[] = {kOwnerBlock, {0, nullptr}};

const char* ModeName(IOMode mode) { return mode == IOMode::Ascii ? "text" : "binary"; }

// One key; p holds tension, continuity and bias, or for Hermite and Bezier keys their params.
struct Keyframe { double time, value; int shape = kShapeTCB; std::array<double, 4> p{}; };

// A host with the animation component, and its services fetched the way a plug-in fetches them.
class AnimationTest : public ::testing::Test {
 protected:
  Host host;
  Animation animation{host};
  const LWEnvelopeFuncs* envf =
      static_cast<const LWEnvelopeFuncs*>(Host::lookupFunction()(LWENVELOPEFUNCS_GLOBAL, GFUSE_TRANSIENT));
  const LWVParmFuncs* vpf =
      static_cast<const LWVParmFuncs*>(Host::lookupFunction()(LWVPARMFUNCS_GLOBAL, GFUSE_TRANSIENT));

  void SetUp() override { ASSERT_TRUE(envf && vpf); }

  // Keys go in through the service table in the order given.
  void addKeys(LWEnvelopeID env, const std::vector<Keyframe>& keys) {
    for (Keyframe k : keys) {
      LWEnvKeyframeID key = envf->createKey(env, k.time, k.value);
      ASSERT_EQ(envf->keySet(env, key, LWKEY_SHAPE, &k.shape), 1);
      const bool handles = k.shape == kShapeHermite || k.shape == kShapeBezier2D;
      const int first = handles ? LWKEY_PARAM_0 : LWKEY_TENSION;
      for (int i = 0; i < 4; ++i) ASSERT_EQ(envf->keySet(env, key, static_cast<LWKeyTag>(first + i), &k.p[i]), 1);
    }
  }
  LWEnvelopeID makeEnvelope(const std::vector<Keyframe>& keys, int pre = kBehaviorConstant,
                            int post = kBehaviorConstant) {
    LWEnvelopeID env = envf->create(nullptr, "Test", LWET_FLOAT);
    addKeys(env, keys);
    EXPECT_EQ(envf->egSet(env, nullptr, LWENVTAG_PREBEHAVE, &pre), 1);
    EXPECT_EQ(envf->egSet(env, nullptr, LWENVTAG_POSTBEHAVE, &post), 1);
    return env;
  }

  // A parameter set up in a group, as a plug-in's create callback makes it.
  LWVParmID makeParameter(int type, const char* name, LWChanGroupID group = nullptr, int texType = LWVPDT_NOTXTR) {
    LWVParmID p = vpf->create(type, texType);
    vpf->setup(p, name, group, nullptr, nullptr, "VornTest", nullptr);
    return p;
  }

  std::array<double, 3> sample(LWVParmID p, double t) {
    std::array<double, 3> out{-1, -1, -1};
    EXPECT_EQ(vpf->getVal(p, t, nullptr, out.data()), 0.0);  // no texture opacity
    return out;
  }

  // What a handler's save callback writes: its own non-leaf block, the parameter inside.
  std::string saveParameter(LWVParmID p, IOMode mode) {
    BlockWriter writer(mode);
    const LWSaveState* s = writer.state();
    s->beginBlk(s->writeData, &kOwnerBlock, 0);
    EXPECT_EQ(vpf->save(p, s), nullptr);
    s->endBlk(s->writeData);
    return writer.data();
  }

  // And its load callback: find its block, let the parameter read inside it, leave the block.
  void loadParameter(LWVParmID p, IOMode mode, const std::string& data) {
    BlockReader reader(mode, data);
    const LWLoadState* s = reader.state();
    ASSERT_EQ(s->findBlk(s->readData, kOwnerList), kOwnerBlock.id);
    EXPECT_EQ(vpf->load(p, s), nullptr);
    s->endBlk(s->readData);
    EXPECT_TRUE(reader.problems().empty()) << reader.problems().front();
  }
};

using EnvelopeTest = AnimationTest;
using VParmTest = AnimationTest;

// Values hand-derived with the Hermite basis h1 = 2u^3-3u^2+1, h2 = -2u^3+3u^2, h3 = u^3-2u^2+u,
// h4 = u^3-u^2 (at u = 0.5: 0.5, 0.5, 0.125, -0.125; at u = 0.25: 0.84375, 0.15625, 0.140625,
// -0.046875) and Kochanek-Bartels tangents in their form for unevenly spaced keys.
TEST_F(EnvelopeTest, EachSpanTakesTheShapeOfItsEndKey) {
  const struct { std::vector<Keyframe> keys; std::vector<std::pair<double, double>> probes; } cases[] = {
      // Made out of order; the stepped span holds its start value, the linear one interpolates.
      {{{3, 0, kShapeLinear}, {0, 10}, {1, 20, kShapeStepped}}, {{0.5, 10}, {1, 20}, {2.5, 5}}},
      // Default TCB on (0,0) (1,1) (2,0): tangents 1 and 0 on the first span, 0 and -1 on the second.
      {{{0, 0}, {1, 1}, {2, 0}}, {{0.5, 0.625}, {0.25, 0.15625 + 0.140625}, {1.75, 0.15625 + 0.140625}}},
      // Spans of 1 and 2 s. Tension 0.5: the middle key's incoming tangent is 1/(1+2) * (0.5*2 + 0.5*1)
      // (without the time weighting t = 0.5 gives 1.15625, with tension ignored 1.125).
      {{{0, 0}, {1, 2, kShapeTCB, {0.5}}, {3, 3}}, {{0.5, 1 + 0.25 - 0.125 * 0.5}}},
      // Bias 0.5: incoming 1/3 * (1.5*2 + 0.5*1) = 7/6, outgoing 2/3 * (1.5*2 + 0.5*1) = 7/3 (swapped
      // bias factors give 1.1458333 and 2.2916666).
      {{{0, 0}, {1, 2, kShapeTCB, {0, 0, 0.5}}, {3, 3}}, {{0.5, 1.25 - 0.125 * 7 / 6}, {1.5, 2.4375}}},
      // The TCB start leaves with its chord tangent, a handle at (1, 1); the end key's handle (-1, 0)
      // sits at (2, 3). x(s) = 3s, so t = 1.5 is s = 0.5 and y = (0 + 3*1 + 3*3 + 3) / 8.
      {{{0, 0}, {3, 3, kShapeBezier2D, {-1, 0}}}, {{1.5, 1.875}}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE("case " + std::to_string(&c - cases));
    LWEnvelopeID env = makeEnvelope(c.keys);
    for (auto [t, v] : c.probes) EXPECT_NEAR(envf->evaluate(env, t), v, 1e-9) << "t=" << t;
  }
}

TEST_F(EnvelopeTest, BehavioursOutsideTheKeyRange) {
  // Keys (1,10) and (3,20), linear: inside, v(t) = 10 + 5(t-1); the primary interval is 2 s.
  // Pre and post differ in every case, so that neither can stand in for the other.
  const struct { int pre, post; double time, expected; } cases[] = {
      {kBehaviorReset, kBehaviorConstant, 0.5, 0},         {kBehaviorReset, kBehaviorConstant, 4, 20},
      {kBehaviorConstant, kBehaviorReset, 0.5, 10},        {kBehaviorConstant, kBehaviorReset, 4, 0},
      {kBehaviorRepeat, kBehaviorOffsetRepeat, -2.5, 12.5}, {kBehaviorRepeat, kBehaviorOffsetRepeat, 5.5, 32.5},
      {kBehaviorOffsetRepeat, kBehaviorRepeat, 0.5, 7.5},   {kBehaviorOffsetRepeat, kBehaviorRepeat, 3.5, 12.5},
      {kBehaviorOscillate, kBehaviorLinear, 0.5, 12.5},     {kBehaviorOscillate, kBehaviorLinear, 4, 25},
      {kBehaviorLinear, kBehaviorOscillate, 0, 5},          {kBehaviorLinear, kBehaviorOscillate, 3.5, 17.5},
      {kBehaviorLinear, kBehaviorOscillate, 5.5, 12.5},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.pre) + "/" + std::to_string(c.post) + " t=" + std::to_string(c.time));
    LWEnvelopeID env = makeEnvelope({{1, 10}, {3, 20, kShapeLinear}}, c.pre, c.post);
    EXPECT_DOUBLE_EQ(envf->evaluate(env, c.time), c.expected);
    EXPECT_DOUBLE_EQ(envf->evaluate(env, 1), 10);  // the keys themselves are never extrapolated
    EXPECT_DOUBLE_EQ(envf->evaluate(env, 3), 20);
  }

  // Linear follows the curve's own slope at the end key, not the chord: tension 0.5 halves the
  // chords (+1 and -1) of the TCB hump's end spans; a flat Bezier handle continues flat.
  LWEnvelopeID hump =
      makeEnvelope({{0, 0, kShapeTCB, {0.5}}, {1, 1}, {2, 0, kShapeTCB, {0.5}}}, kBehaviorLinear, kBehaviorLinear);
  EXPECT_DOUBLE_EQ(envf->evaluate(hump, -1), -0.5);
  EXPECT_DOUBLE_EQ(envf->evaluate(hump, 3), -0.5);
  LWEnvelopeID bezier = makeEnvelope({{0, 0}, {3, 3, kShapeBezier2D, {-1, 0}}}, kBehaviorConstant, kBehaviorLinear);
  EXPECT_NEAR(envf->evaluate(bezier, 5), 3.0, 1e-12);

  // One key is a constant, whatever the behaviours; no key is 0.
  LWEnvelopeID single = makeEnvelope({{2, 7}}, kBehaviorReset, kBehaviorOffsetRepeat);
  EXPECT_DOUBLE_EQ(envf->evaluate(single, -5), 7);
  EXPECT_DOUBLE_EQ(envf->evaluate(single, 50), 7);
  EXPECT_DOUBLE_EQ(envf->evaluate(makeEnvelope({}), 1), 0);
}

// Records every event an envelope sends.
using Events = std::vector<std::pair<LWEnvEvent, void*>>;
int Record(void* events, LWEnvelopeID, LWEnvEvent event, void* eventData) {
  static_cast<Events*>(events)->emplace_back(event, eventData);
  return 0;
}

TEST_F(EnvelopeTest, KeysEventsAndDeadHandlesThroughTheServiceTable) {
  LWEnvelopeID env = envf->create(nullptr, "Keys", LWET_DISTANCE);
  Events log, other;
  EXPECT_EQ(envf->setEnvEvent(env, &Record, &log), 1);
  EXPECT_EQ(envf->setEnvEvent(env, &Record, &other), 1);

  const int age0 = envf->envAge(env);
  LWEnvKeyframeID late = envf->createKey(env, 2.0, 5.0);
  LWEnvKeyframeID early = envf->createKey(env, 1.0, 3.0);
  EXPECT_EQ(envf->createKey(env, 2.0, 6.0), late);  // a key at an existing time is that key
  EXPECT_GT(envf->envAge(env), age0);

  int code = 6;  // not a behaviour; and the key count can only be read
  EXPECT_EQ(envf->egSet(env, nullptr, LWENVTAG_POSTBEHAVE, &code), 0);
  EXPECT_EQ(envf->egSet(env, nullptr, LWENVTAG_KEYCOUNT, &code), 0);
  EXPECT_EQ(envf->nextKey(env, nullptr), early);
  EXPECT_EQ(envf->nextKey(env, early), late);
  EXPECT_EQ(envf->nextKey(env, late), nullptr);
  EXPECT_EQ(envf->prevKey(env, nullptr), late);

  // Moving the early key onto the late one is refused; past it reorders them.
  double t = 2.0, got = 0;
  EXPECT_EQ(envf->keySet(env, early, LWKEY_TIME, &t), 0);
  t = 4.0;
  EXPECT_EQ(envf->keySet(env, early, LWKEY_TIME, &t), 1);
  EXPECT_EQ(envf->nextKey(env, nullptr), late);
  EXPECT_EQ(envf->keyGet(env, early, LWKEY_TIME, &got), 1);
  EXPECT_EQ(got, 4.0);

  // The shape is an int from 0 to 5; other attributes doubles.
  int shape = kShapeStepped;
  EXPECT_EQ(envf->keySet(env, early, LWKEY_SHAPE, &shape), 1);
  shape = 6;
  EXPECT_EQ(envf->keySet(env, early, LWKEY_SHAPE, &shape), 0);
  EXPECT_EQ(envf->keyGet(env, early, LWKEY_SHAPE, &shape), 1);
  EXPECT_EQ(shape, kShapeStepped);
  EXPECT_DOUBLE_EQ(envf->evaluate(env, 2.5), 6.0);  // the stepped span holds the late key's new value

  // The other listener leaves; only ours hears the rest. Null value pointers, a stale key and a
  // key of another envelope are refused.
  EXPECT_EQ(envf->setEnvEvent(env, nullptr, &other), 0);
  envf->destroyKey(env, late);
  EXPECT_EQ(envf->keyGet(env, late, LWKEY_VALUE, &t), 0);
  EXPECT_EQ(envf->keySet(env, early, LWKEY_VALUE, nullptr), 0);
  EXPECT_EQ(envf->keyGet(env, early, LWKEY_VALUE, nullptr), 0);
  EXPECT_EQ(envf->egGet(env, nullptr, LWENVTAG_KEYCOUNT, nullptr), 0);
  EXPECT_EQ(envf->keySet(makeEnvelope({{0, 2}}), early, LWKEY_VALUE, &t), 0);
  envf->destroy(env);
  EXPECT_EQ(log, (Events{{LWEEVNT_KEY_INSERT, late}, {LWEEVNT_KEY_INSERT, early}, {LWEEVNT_KEY_VALUE, late},
                          {LWEEVNT_KEY_TIME, early}, {LWEEVNT_KEY_VALUE, early}, {LWEEVNT_KEY_DELETE, late},
                          {LWEEVNT_DESTROY, nullptr}}));
  EXPECT_EQ(other.size(), 5u);

  // Null and destroyed envelopes fail quietly everywhere; per sample, only null is checked.
  for (LWEnvelopeID dead : {static_cast<LWEnvelopeID>(nullptr), env}) {
    envf->destroy(dead);
    EXPECT_NE(envf->copy(dead, dead), nullptr);
    EXPECT_NE(envf->load(dead, nullptr), nullptr);
    EXPECT_NE(envf->save(dead, nullptr), nullptr);
    EXPECT_EQ(envf->envAge(dead), 0);
    EXPECT_EQ(envf->createKey(dead, 0, 1), nullptr);
    envf->destroyKey(dead, late);
    EXPECT_EQ(envf->findKey(dead, 0), nullptr);
    EXPECT_EQ(envf->nextKey(dead, nullptr), nullptr);
    EXPECT_EQ(envf->prevKey(dead, nullptr), nullptr);
    EXPECT_EQ(envf->keySet(dead, late, LWKEY_VALUE, &t), 0);
    EXPECT_EQ(envf->keyGet(dead, late, LWKEY_VALUE, &t), 0);
    EXPECT_EQ(envf->setEnvEvent(dead, &Record, &other), 0);
    EXPECT_EQ(envf->egSet(dead, nullptr, LWENVTAG_VISIBLE, &code), 0);
    EXPECT_EQ(envf->egGet(dead, nullptr, LWENVTAG_VISIBLE, &code), 0);
  }
  EXPECT_EQ(envf->evaluate(nullptr, 0), 0.0);
  EXPECT_EQ(log.size(), 7u);
  EXPECT_FALSE(animation.problems().empty());
}

TEST_F(EnvelopeTest, ChannelTreeFindsGroupsAndDetachesOnGroupDestroy) {
  LWChanGroupID vorn = envf->createGroup(nullptr, "Vorn");
  LWChanGroupID grade = envf->createGroup(vorn, "Grade");
  LWEnvelopeID gamma = envf->create(grade, "Gamma", LWET_FLOAT);
  envf->createKey(gamma, 0, 2.2);
  EXPECT_EQ(animation.findGroup("Vorn/Grade"), grade);
  EXPECT_EQ(animation.group(grade)->path(), "Vorn/Grade");
  EXPECT_EQ(animation.findGroup("Vorn/Nothing"), nullptr);
  EXPECT_EQ(animation.findChannel("Vorn/Grade/Gamma"), gamma);

  // Destroying a group that still holds things detaches them (and says so): the envelope stays
  // usable by its owner and can still be destroyed later.
  envf->destroyGroup(vorn);
  EXPECT_EQ(animation.findGroup("Vorn"), nullptr);
  EXPECT_FALSE(animation.problems().empty());
  EXPECT_EQ(animation.envelope(gamma)->group(), grade);
  envf->destroyGroup(grade);
  EXPECT_EQ(animation.envelope(gamma)->group(), nullptr);
  envf->destroy(gamma);
  EXPECT_EQ(animation.envelope(gamma), nullptr);

  // Unknown groups are refused rather than trusted; the root cannot be destroyed.
  EXPECT_EQ(envf->create(grade, "Late", LWET_FLOAT), nullptr);
  EXPECT_EQ(envf->createGroup(grade, "Late"), nullptr);
  envf->destroyGroup(animation.root());
  EXPECT_EQ(animation.findGroup(""), animation.root());
}

TEST_F(EnvelopeTest, EnvelopeBlocksFromSceneTextAndMalformedData) {
  // As LightWave writes a channel in a scene file (single precision, nine numbers per key).
  LWEnvelopeID env = envf->create(nullptr, "Scene", LWET_FLOAT);
  BlockReader scene(IOMode::Ascii,
                    "{ Envelope\n  2\n  Key 0.5905706 0 0 0 0 0 0 0 0\n  Key 1.5 2 3 0 0 0 0 0 0\n"
                    "  { ChannelHandler\n    Key 99 1 3 0 0 0 0 0 0\n  }\n  Behaviors 1 4\n}\n");
  EXPECT_EQ(envf->load(env, scene.state()), nullptr);
  EXPECT_TRUE(scene.problems().empty()) << scene.problems().front();
  int count = 0, post = 0;
  envf->egGet(env, nullptr, LWENVTAG_POSTBEHAVE, &post);
  EXPECT_EQ(post, kBehaviorOffsetRepeat);
  // Two keys, the second linear: the handler's own Key inside its block is not the envelope's.
  EXPECT_DOUBLE_EQ(envf->evaluate(env, 1.0), 0.5905706 + (1.5 - 0.5905706) / 2);

  // A wrong count, a short key, a key with an unknown shape, impossible behaviours: what is
  // usable is kept (only that) and every fault is reported, those above included.
  LWEnvelopeID bad = makeEnvelope({{5, 5}});
  BlockReader malformed(IOMode::Ascii, "{ Envelope\n  3\n  Key 1\n  Key 2 1 9 0 0 0 0 0 0\n  Behaviors 7 1\n}\n");
  EXPECT_EQ(envf->load(bad, malformed.state()), nullptr);
  EXPECT_EQ(envf->egGet(bad, nullptr, LWENVTAG_KEYCOUNT, &count), 1);
  EXPECT_EQ(count, 1);
  EXPECT_DOUBLE_EQ(envf->evaluate(bad, 0), 2);
  EXPECT_EQ(animation.problems().size(), 4u);

  // No Envelope block at all is an error, and the envelope keeps what it had.
  BlockReader none(IOMode::Ascii, "Something 1\n");
  EXPECT_NE(envf->load(bad, none.state()), nullptr);
  EXPECT_DOUBLE_EQ(envf->evaluate(bad, 0), 2);
}

// Collects the parameter events a plug-in's setup callback hears.
int RecordCode(LWVParmID, void* codes, en_lwvpec code, void*) {
  static_cast<std::vector<int>*>(codes)->push_back(code);
  return 0;
}

TEST_F(VParmTest, EnvelopingAColourAndBack) {
  std::vector<int> heard;
  LWVParmID tint = vpf->create(LWVP_COLOR, LWVPDT_NOTXTR);
  vpf->setup(tint, "Tint", envf->createGroup(nullptr, "Grade"), nullptr, &RecordCode, "VornTest", &heard);
  double rgb[3] = {0.25, 0.5, 1.0};
  EXPECT_EQ(vpf->setVal(tint, rgb), 3);

  // Enveloping makes one channel per component, each holding the value in a key at time 0 (and
  // no texture for a NOTXTR parameter).
  vpf->setState(tint, LWVPSF_ENV | LWVPSF_TEX);
  EXPECT_EQ(vpf->getState(tint), LWVPSF_ENV);
  EXPECT_EQ(heard, (std::vector<int>{LWVPEC_ENVNEW, LWVPEC_ENVNEW, LWVPEC_ENVNEW}));
  LWEnvelopeID envs[3];
  vpf->getEnv(tint, envs);
  for (int ch = 0; ch < 3; ++ch) EXPECT_EQ(animation.findChannel(std::string("Grade/Tint.") + "RGB"[ch]), envs[ch]);

  // While enveloped, setVal is ignored; keys drive the value per channel.
  double other[3] = {9, 9, 9};
  EXPECT_EQ(vpf->setVal(tint, other), 0);
  addKeys(envs[1], {{2.0, 0.0, kShapeLinear}});
  EXPECT_EQ(sample(tint, 1.0), (Rgb{0.25, 0.25, 1.0}));

  // An envelope destroyed through the envelope service: the parameter must not keep the dead id.
  heard.clear();
  envf->destroy(envs[2]);
  vpf->getEnv(tint, envs);
  EXPECT_EQ(envs[2], nullptr);
  EXPECT_EQ(vpf->getState(tint), LWVPSF_ENV);  // the other two channels stay enveloped

  // Clearing the bit drops the rest (from the tree too) and the stored value returns.
  vpf->setState(tint, 0);
  EXPECT_EQ(heard, (std::vector<int>{LWVPEC_ENVOLD, LWVPEC_ENVOLD, LWVPEC_ENVOLD}));
  EXPECT_EQ(animation.envelope(envs[1]), nullptr);
  EXPECT_EQ(sample(tint, 1.0), (Rgb{0.25, 0.5, 1.0}));
  EXPECT_EQ(vpf->setVal(tint, other), 3);
  EXPECT_EQ(sample(tint, 1.0), (Rgb{9, 9, 9}));
}

TEST_F(VParmTest, ScalarsAndVectorsNameAndTypeTheirChannels) {
  LWVParmID gain = makeParameter(LWVP_PERCENT, "Gain");
  double v[3] = {0.5, 7, 7};
  EXPECT_EQ(vpf->setVal(gain, v), 1);            // a scalar takes one number ...
  EXPECT_EQ(sample(gain, 0), (Rgb{0.5, 0, 0}));  // ... and fills three
  for (LWVParmID p : {gain, makeParameter(LWVP_DIST | LWVPF_VECTOR, "Offset"),
                      makeParameter(LWVP_ANGLE | LWVPF_VECTOR | LWVPF_VECTOR_NONAMES, "Turn")})
    vpf->setState(p, LWVPSF_ENV);
  const std::pair<const char*, int> channels[] = {
      {"Gain", LWET_PERCENT}, {"Offset.Z", LWET_DISTANCE}, {"Y", LWET_ANGLE}};
  for (auto [name, type] : channels) {
    ASSERT_NE(animation.findChannel(name), nullptr) << name;
    EXPECT_EQ(animation.findChannel(name)->type(), type) << name;
  }

  // Host side: keys on one channel envelope that channel only.
  LWVParmID scale = makeParameter(LWVP_FLOAT | LWVPF_VECTOR, "Scale");
  VParm* p = animation.parameter(scale);
  ASSERT_NE(p->addKey(2, 1.0, 4.0), nullptr);
  EXPECT_EQ(p->addKey(3, 1.0, 4.0), nullptr);
  EXPECT_EQ(p->envelope(0), nullptr);
  EXPECT_EQ(sample(scale, 1.0), (Rgb{0, 0, 4.0}));
  EXPECT_EQ(vpf->create(0x70, LWVPDT_NOTXTR), nullptr);  // none of LWVP_*
}

TEST_F(VParmTest, CopyIsDeepAndDestroyedParametersAreRefused) {
  LWVParmID from = makeParameter(LWVP_COLOR, "From", nullptr, LWVPDT_COLOR);
  LWVParmID to = makeParameter(LWVP_COLOR, "To", nullptr, LWVPDT_COLOR);
  double rgb[3] = {1, 2, 3};
  vpf->setVal(from, rgb);
  vpf->setState(from, LWVPSF_ENV | LWVPSF_TEX);
  LWEnvelopeID src[3];
  vpf->getEnv(from, src);
  envf->createKey(src[0], 1.0, 10.0);
  ASSERT_EQ(vpf->copy(to, from), nullptr);
  EXPECT_EQ(vpf->getState(to), LWVPSF_ENV | LWVPSF_TEX);

  // Changing the source afterwards leaves the copy alone.
  double v = 99;
  envf->keySet(src[0], envf->findKey(src[0], 1.0), LWKEY_VALUE, &v);
  envf->createKey(src[1], 1.0, 50.0);
  EXPECT_EQ(sample(from, 1.0), (Rgb{99, 50, 3}));
  EXPECT_EQ(sample(to, 1.0), (Rgb{10, 2, 3}));

  // Copying an unenveloped parameter takes the envelopes away again; so does destroying one.
  ASSERT_EQ(vpf->copy(to, makeParameter(LWVP_COLOR, "Plain")), nullptr);
  EXPECT_EQ(vpf->getState(to), 0);
  EXPECT_EQ(animation.findChannel("To.R"), nullptr);
  EXPECT_EQ(sample(to, 1.0), (Rgb{0, 0, 0}));
  vpf->destroy(from);
  EXPECT_EQ(animation.findChannel("From.G"), nullptr);

  // Null and destroyed parameters fail quietly (nothing is made after the destroy, so that its
  // memory cannot come back as a parameter); per sample, only null is checked.
  for (LWVParmID dead : {static_cast<LWVParmID>(nullptr), from}) {
    vpf->destroy(dead);
    vpf->setup(dead, "X", nullptr, nullptr, nullptr, "VornTest", nullptr);
    EXPECT_NE(vpf->copy(dead, dead), nullptr);
    EXPECT_NE(vpf->load(dead, nullptr), nullptr);
    EXPECT_NE(vpf->save(dead, nullptr), nullptr);
    EXPECT_EQ(vpf->setVal(dead, rgb), 0);
    vpf->setState(dead, LWVPSF_ENV);
  }
  EXPECT_EQ(sample(nullptr, 0), (Rgb{0, 0, 0}));
  EXPECT_EQ(vpf->getState(nullptr), 0);
  vpf->getEnv(nullptr, src);
  EXPECT_EQ(src[2], nullptr);
  vpf->getEnv(nullptr, nullptr);
  // Null value pointers and a destroyed source are refused for a live one too.
  EXPECT_EQ(vpf->setVal(to, nullptr), 0);
  EXPECT_EQ(vpf->getVal(to, 0, nullptr, nullptr), 0.0);
  EXPECT_NE(vpf->load(to, nullptr), nullptr);
  EXPECT_NE(vpf->copy(to, from), nullptr);
  EXPECT_EQ(animation.parameterCount(), 2u);
  EXPECT_FALSE(animation.problems().empty());
}

TEST_F(VParmTest, SaveLoadSaveGivesTheSameBytesInBothModes) {
  for (IOMode mode : {IOMode::Ascii, IOMode::Binary}) {
    SCOPED_TRACE(ModeName(mode));
    LWChanGroupID group = envf->createGroup(nullptr, ModeName(mode));
    LWVParmID tint = makeParameter(LWVP_COLOR, "Tint", group, LWVPDT_COLOR);
    double rgb[3] = {1.0, 0.1, 1.0 / 3.0};  // not exact in decimal: the text must keep every bit
    vpf->setVal(tint, rgb);
    vpf->setState(tint, LWVPSF_ENV | LWVPSF_TEX);
    LWEnvelopeID envs[3];
    vpf->getEnv(tint, envs);
    addKeys(envs[0], {{1.0, 0.5, kShapeLinear}, {2.5, 0.2, kShapeStepped}});
    addKeys(envs[1], {{0.5, 0.9, kShapeTCB, {0.3, -0.4, 0.25}}, {2.0, 0.2, kShapeBezier2D, {-0.5, 0.1, 0.4, -0.05}}});
    addKeys(envs[2], {{1.5, 0.6, kShapeHermite, {0.7, -1.2}}});
    int pre = kBehaviorRepeat, post = kBehaviorOscillate;
    envf->egSet(envs[1], nullptr, LWENVTAG_PREBEHAVE, &pre);
    envf->egSet(envs[1], nullptr, LWENVTAG_POSTBEHAVE, &post);

    const std::string first = saveParameter(tint, mode);
    if (mode == IOMode::Ascii)  // written as LightWave writes them, though this loader would manage without
      for (const char* line : {"  Channel 0\n", "    Behaviors 1 1\n"}) {
        EXPECT_NE(first.find(line), first.npos) << line;
      }
    LWVParmID loaded = makeParameter(LWVP_COLOR, "Loaded", group, LWVPDT_COLOR);
    loadParameter(loaded, mode, first);
    EXPECT_EQ(saveParameter(loaded, mode), first);  // state, values, keys and behaviours alike
  }
  EXPECT_TRUE(animation.problems().empty()) << animation.problems().front();
}

// Blocks in any order: a Channel block names the next envelope's channel, without one an
// envelope takes the first; unknown blocks are skipped whole, even one hiding an Envelope.
TEST_F(VParmTest, ParameterBlocksInAnyOrderReplaceWhatWasThere) {
  LWVParmID p = makeParameter(LWVP_COLOR, "Shuffled");
  vpf->setState(p, LWVPSF_ENV);  // what the data does not hold must not survive the load
  loadParameter(p, IOMode::Ascii,
                "{ Gain\n  Mystery 7\n"
                "  { Envelope\n    2\n    Key 0.25 0 0 0 0 0 0 0 0\n    Key 0.75 1 3 0 0 0 0 0 0\n  }\n"
                "  State 1\n"
                "  { Mystery\n    { Envelope\n      1\n      Key -100 0 0 0 0 0 0 0 0\n    }\n  }\n"
                "  Channel 2\n"
                "  { Envelope\n    1\n    Key 4 0 0 0 0 0 0 0 0\n  }\n"
                "  Value 0.5 0.6 0.7\n}\n");
  EXPECT_EQ(sample(p, 1.0), (Rgb{0.75, 0.6, 4}));  // G from Value: its old envelope is gone

  // A State that promises an envelope no block delivers is worth telling the plug-in author about.
  LWVParmID bare = makeParameter(LWVP_COLOR, "Bare");
  vpf->setState(bare, LWVPSF_ENV);
  loadParameter(bare, IOMode::Ascii, "{ Gain\n  State 1\n  Value 1 2 3\n}\n");
  EXPECT_EQ(sample(bare, 3), (Rgb{1, 2, 3}));
  EXPECT_EQ(animation.problems().size(), 1u);  // and only that one
}

}  // namespace
