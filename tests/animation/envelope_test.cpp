// Envelope evaluation and the "Animation Envelopes" service as a plug-in sees it.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "AnimationTestSupport.h"

namespace {

using animtest::AnimationTest;
using namespace lwhost;

using EnvelopeTest = AnimationTest;

TEST_F(EnvelopeTest, LinearAndSteppedSpansTakeTheShapeOfTheirEndKey) {
  // Created out of time order; the middle key is stepped, the last linear.
  LWEnvelopeID env = makeEnvelope({{3, 0, kShapeLinear}, {0, 10}, {1, 20, kShapeStepped}});
  struct Probe {
    double time, expected;
  } probes[] = {
      {0.0, 10}, {0.5, 10}, {0.999, 10},  // stepped span holds the start key's value ...
      {1.0, 20},                          // ... until its end key
      {2.0, 10}, {2.5, 5},  {3.0, 0},     // linear from 20 down to 0
  };
  for (const Probe& p : probes) EXPECT_DOUBLE_EQ(envf->evaluate(env, p.time), p.expected) << "t=" << p.time;
}

// Hand-derived with the Kochanek-Bartels tangents (uneven-spacing form) and the Hermite basis
// h1 = 2u^3-3u^2+1, h2 = -2u^3+3u^2, h3 = u^3-2u^2+u, h4 = u^3-u^2:
//   u = 0.5:  h = (0.5, 0.5, 0.125, -0.125)      u = 0.25: h = (0.84375, 0.15625, 0.140625, -0.046875)
TEST_F(EnvelopeTest, TcbWithDefaultParametersIsCatmullRomLike) {
  // Keys (0,0) (1,1) (2,0). Span 0-1: outgoing at the first key is the chord, 1; incoming at the
  // middle key is 1/(1+1) * (1*1 + 1*(0-1)) = 0. Span 1-2 mirrors it.
  LWEnvelopeID env = makeEnvelope({{0, 0}, {1, 1}, {2, 0}});
  EXPECT_DOUBLE_EQ(envf->evaluate(env, 0.5), 0.5 * 1 + 0.125 * 1);                // 0.625
  EXPECT_DOUBLE_EQ(envf->evaluate(env, 0.25), 0.15625 * 1 + 0.140625 * 1);        // 0.296875
  EXPECT_DOUBLE_EQ(envf->evaluate(env, 1.5), 0.5 * 1 + -0.125 * -1);              // 0.625
  EXPECT_DOUBLE_EQ(envf->evaluate(env, 1.75), 0.15625 * 1 + -0.140625 * -1);      // u = 0.75: 0.296875
  EXPECT_DOUBLE_EQ(envf->evaluate(env, 1.0), 1.0);
}

TEST_F(EnvelopeTest, TcbTensionAndBiasWithUnevenKeySpacing) {
  // Keys (0,0) (1,2) (3,3): spans of 1 and 2 seconds, so the time weighting matters.
  {
    // Tension 0.5 on the middle key. Incoming there: 1/(1+2) * (0.5*2 + 0.5*1) = 0.5.
    // At t = 0.5: 0.5*2 + 0.125*2 - 0.125*0.5 = 1.1875.
    // (Without the time weighting it would be 1.15625; with tension ignored 1.125.)
    LWEnvelopeID env = makeEnvelope({{0, 0}, {1, 2, kShapeTCB, 0.5}, {3, 3}});
    EXPECT_NEAR(envf->evaluate(env, 0.5), 1.1875, 1e-12);
  }
  {
    // Bias 0.5 on the middle key weighs the span before it: incoming 1/3 * (1.5*2 + 0.5*1) = 7/6,
    // outgoing 2/3 * (1.5*2 + 0.5*1) = 7/3; the last key's incoming is its chord, 1.
    //   t = 0.5:  1 + 0.25 - 0.125 * 7/6                    = 1.1041666...
    //   t = 1.5:  0.84375*2 + 0.15625*3 + 0.140625*7/3 - 0.046875 = 2.4375
    // Swapping the two bias factors would give 1.1458333 and 2.2916666.
    LWEnvelopeID env = makeEnvelope({{0, 0}, {1, 2, kShapeTCB, 0, 0, 0.5}, {3, 3}});
    EXPECT_NEAR(envf->evaluate(env, 0.5), 1.25 - 0.125 * 7.0 / 6.0, 1e-12);
    EXPECT_NEAR(envf->evaluate(env, 1.5), 2.4375, 1e-12);
  }
}

TEST_F(EnvelopeTest, BezierSpanUsesHandlesRelativeToItsKeys) {
  // The first key (TCB) leaves with its chord tangent 3, i.e. a handle at (1, 1); the end key's
  // incoming handle is (-1, 0), i.e. at (2, 3). Times 0,1,2,3 make x(s) = 3s, so t = 1.5 is
  // s = 0.5 and y = (0 + 3*1 + 3*3 + 3) / 8 = 1.875.
  LWEnvelopeID env = makeEnvelope({{0, 0}, {3, 3, kShapeBezier2D}});
  LWEnvKeyframeID last = envf->findKey(env, 3);
  double in[2] = {-1, 0};
  ASSERT_EQ(envf->keySet(env, last, LWKEY_PARAM_0, &in[0]), 1);
  ASSERT_EQ(envf->keySet(env, last, LWKEY_PARAM_1, &in[1]), 1);
  EXPECT_NEAR(envf->evaluate(env, 1.5), 1.875, 1e-9);
  // The flat handle also means a Linear post behaviour continues flat.
  setBehaviors(env, kBehaviorConstant, kBehaviorLinear);
  EXPECT_NEAR(envf->evaluate(env, 5), 3.0, 1e-12);
}

TEST_F(EnvelopeTest, BehavioursOutsideTheKeyRange) {
  // Keys (1,10) and (3,20), linear: inside, v(t) = 10 + 5(t-1). Primary interval 2 seconds.
  struct Case {
    int behavior;
    double time, expected;
  } cases[] = {
      {kBehaviorReset, 0.5, 0},          {kBehaviorReset, 4, 0},
      {kBehaviorConstant, 0.5, 10},      {kBehaviorConstant, 4, 20},
      {kBehaviorRepeat, 3.5, 12.5},      {kBehaviorRepeat, 0.5, 17.5},      {kBehaviorRepeat, -2.5, 12.5},
      {kBehaviorOscillate, 3.5, 17.5},   {kBehaviorOscillate, 0.5, 12.5},   {kBehaviorOscillate, 5.5, 12.5},
      {kBehaviorOffsetRepeat, 3.5, 22.5}, {kBehaviorOffsetRepeat, 0.5, 7.5}, {kBehaviorOffsetRepeat, 5.5, 32.5},
      {kBehaviorLinear, 0, 5},           {kBehaviorLinear, 4, 25},
  };
  LWEnvelopeID env = makeEnvelope({{1, 10}, {3, 20, kShapeLinear}});
  for (const Case& c : cases) {
    setBehaviors(env, c.behavior, c.behavior);
    EXPECT_DOUBLE_EQ(envf->evaluate(env, c.time), c.expected) << "behaviour " << c.behavior << " t=" << c.time;
    // The keys themselves are never extrapolated.
    EXPECT_DOUBLE_EQ(envf->evaluate(env, 1), 10);
    EXPECT_DOUBLE_EQ(envf->evaluate(env, 3), 20);
  }

  // Linear follows the curve's own slope at the end key, not the chord: on the TCB hump
  // (0,0) (1,1) (2,0) that is +1 leaving the first key and -1 reaching the last.
  LWEnvelopeID hump = makeEnvelope({{0, 0}, {1, 1}, {2, 0}});
  setBehaviors(hump, kBehaviorLinear, kBehaviorLinear);
  EXPECT_DOUBLE_EQ(envf->evaluate(hump, -1), -1);
  EXPECT_DOUBLE_EQ(envf->evaluate(hump, 3), -1);

  // One key is a constant, whatever the behaviours; no key is 0.
  LWEnvelopeID single = makeEnvelope({{2, 7}});
  setBehaviors(single, kBehaviorReset, kBehaviorOffsetRepeat);
  EXPECT_DOUBLE_EQ(envf->evaluate(single, -5), 7);
  EXPECT_DOUBLE_EQ(envf->evaluate(single, 50), 7);
  EXPECT_DOUBLE_EQ(envf->evaluate(makeEnvelope({}), 1), 0);

  int code = 6;
  EXPECT_EQ(envf->egSet(env, nullptr, LWENVTAG_POSTBEHAVE, &code), 0);
}

// Records every event an envelope sends.
struct EventLog {
  std::vector<std::pair<LWEnvEvent, void*>> events;
  static int Record(void* data, LWEnvelopeID, LWEnvEvent event, void* eventData) {
    static_cast<EventLog*>(data)->events.emplace_back(event, eventData);
    return 0;
  }
};

TEST_F(EnvelopeTest, KeysAndEventsThroughTheServiceTable) {
  LWEnvelopeID env = envf->create(nullptr, "Keys", LWET_DISTANCE);
  EventLog log, other;
  EXPECT_EQ(envf->setEnvEvent(env, &EventLog::Record, &log), 1);
  EXPECT_EQ(envf->setEnvEvent(env, &EventLog::Record, &other), 1);

  const int age0 = envf->envAge(env);
  LWEnvKeyframeID late = envf->createKey(env, 2.0, 5.0);
  LWEnvKeyframeID early = envf->createKey(env, 1.0, 3.0);
  // A key at an existing time is that key, given the new value.
  EXPECT_EQ(envf->createKey(env, 2.0, 6.0), late);
  EXPECT_GT(envf->envAge(env), age0);

  int count = 0;
  ASSERT_EQ(envf->egGet(env, nullptr, LWENVTAG_KEYCOUNT, &count), 1);
  EXPECT_EQ(count, 2);
  EXPECT_EQ(envf->egSet(env, nullptr, LWENVTAG_KEYCOUNT, &count), 0);  // read-only
  EXPECT_EQ(envf->nextKey(env, nullptr), early);
  EXPECT_EQ(envf->nextKey(env, early), late);
  EXPECT_EQ(envf->nextKey(env, late), nullptr);
  EXPECT_EQ(envf->prevKey(env, nullptr), late);
  EXPECT_EQ(envf->findKey(env, 1.0), early);
  EXPECT_EQ(envf->findKey(env, 1.5), nullptr);

  // Moving the early key past the late one reorders them; onto the late one is refused.
  double t = 2.0;
  EXPECT_EQ(envf->keySet(env, early, LWKEY_TIME, &t), 0);
  t = 3.0;
  EXPECT_EQ(envf->keySet(env, early, LWKEY_TIME, &t), 1);
  EXPECT_EQ(envf->nextKey(env, nullptr), late);
  double got = 0;
  EXPECT_EQ(envf->keyGet(env, early, LWKEY_TIME, &got), 1);
  EXPECT_EQ(got, 3.0);

  // The shape is an int; other attributes doubles.
  int shape = kShapeStepped, shapeOut = -1;
  EXPECT_EQ(envf->keySet(env, early, LWKEY_SHAPE, &shape), 1);
  EXPECT_EQ(envf->keyGet(env, early, LWKEY_SHAPE, &shapeOut), 1);
  EXPECT_EQ(shapeOut, kShapeStepped);
  shape = 6;
  EXPECT_EQ(envf->keySet(env, early, LWKEY_SHAPE, &shape), 0);
  EXPECT_DOUBLE_EQ(envf->evaluate(env, 2.5), 6.0);  // stepped span holds the start value

  // The other listener leaves; only ours hears the delete.
  EXPECT_EQ(envf->setEnvEvent(env, nullptr, &other), 0);
  const std::size_t heardByOther = other.events.size();
  envf->destroyKey(env, late);
  EXPECT_EQ(envf->keyGet(env, late, LWKEY_VALUE, &got), 0);  // stale key handle
  envf->destroy(env);

  const std::vector<std::pair<LWEnvEvent, void*>> expected = {
      {LWEEVNT_KEY_INSERT, late}, {LWEEVNT_KEY_INSERT, early}, {LWEEVNT_KEY_VALUE, late},
      {LWEEVNT_KEY_TIME, early},  {LWEEVNT_KEY_VALUE, early},  {LWEEVNT_KEY_DELETE, late},
      {LWEEVNT_DESTROY, nullptr}};
  EXPECT_EQ(log.events, expected);
  EXPECT_EQ(heardByOther, 5u);
  EXPECT_EQ(other.events.size(), heardByOther);
}

TEST_F(EnvelopeTest, ChannelTreeFindsGroupsAndDetachesOnGroupDestroy) {
  LWChanGroupID vorn = envf->createGroup(nullptr, "Vorn");
  LWChanGroupID grade = envf->createGroup(vorn, "Grade");
  LWEnvelopeID gamma = envf->create(grade, "Gamma", LWET_FLOAT);
  envf->createKey(gamma, 0, 2.2);

  ASSERT_EQ(animation.findGroup("Vorn/Grade"), grade);
  EXPECT_EQ(animation.findGroup(""), animation.root());
  EXPECT_EQ(animation.findGroup("Vorn/Nothing"), nullptr);
  EXPECT_EQ(animation.findChannel("Vorn/Grade/Gamma"), gamma);
  EXPECT_EQ(animation.findGroup("Vorn/Grade")->path(), "Vorn/Grade");
  ASSERT_EQ(animation.root()->groups().size(), 1u);

  // Destroying a group that still holds things detaches them (and says so): the envelope
  // stays usable by its owner and can still be destroyed later.
  envf->destroyGroup(vorn);
  EXPECT_EQ(animation.findGroup("Vorn"), nullptr);
  EXPECT_TRUE(animation.root()->groups().empty());
  EXPECT_EQ(animation.group(grade)->parent(), nullptr);
  EXPECT_FALSE(animation.problems().empty());
  EXPECT_DOUBLE_EQ(envf->evaluate(gamma, 1), 2.2);
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

TEST_F(EnvelopeTest, NullAndStaleHandlesFailQuietly) {
  LWEnvelopeID dead = envf->create(nullptr, "Dead", LWET_FLOAT);
  LWEnvKeyframeID deadKey = envf->createKey(dead, 0, 1);
  envf->destroy(dead);
  double d = 1;
  int i = 1;
  for (LWEnvelopeID env : {static_cast<LWEnvelopeID>(nullptr), dead}) {
    envf->destroy(env);
    EXPECT_NE(envf->copy(env, env), nullptr);
    EXPECT_NE(envf->load(env, nullptr), nullptr);
    EXPECT_NE(envf->save(env, nullptr), nullptr);
    if (!env) {
      EXPECT_EQ(envf->evaluate(env, 0), 0.0);  // per sample: only null is checked
    }
    EXPECT_EQ(envf->envAge(env), 0);
    EXPECT_EQ(envf->createKey(env, 0, 1), nullptr);
    envf->destroyKey(env, deadKey);
    EXPECT_EQ(envf->findKey(env, 0), nullptr);
    EXPECT_EQ(envf->nextKey(env, nullptr), nullptr);
    EXPECT_EQ(envf->prevKey(env, nullptr), nullptr);
    EXPECT_EQ(envf->keySet(env, deadKey, LWKEY_VALUE, &d), 0);
    EXPECT_EQ(envf->keyGet(env, deadKey, LWKEY_VALUE, &d), 0);
    EXPECT_EQ(envf->setEnvEvent(env, &EventLog::Record, &d), 0);
    EXPECT_EQ(envf->egSet(env, nullptr, LWENVTAG_VISIBLE, &i), 0);
    EXPECT_EQ(envf->egGet(env, nullptr, LWENVTAG_VISIBLE, &i), 0);
  }
  envf->destroyGroup(nullptr);
  // Null value pointers and keys of another envelope are refused too.
  LWEnvelopeID live = makeEnvelope({{0, 1}});
  LWEnvelopeID other = makeEnvelope({{0, 2}});
  LWEnvKeyframeID key = envf->findKey(live, 0);
  EXPECT_EQ(envf->keySet(live, key, LWKEY_VALUE, nullptr), 0);
  EXPECT_EQ(envf->keyGet(live, key, LWKEY_VALUE, nullptr), 0);
  EXPECT_EQ(envf->egGet(live, nullptr, LWENVTAG_KEYCOUNT, nullptr), 0);
  EXPECT_EQ(envf->keySet(other, key, LWKEY_VALUE, &d), 0);
  EXPECT_DOUBLE_EQ(envf->evaluate(other, 0), 2);
  EXPECT_EQ(envf->edit(nullptr, live, 0, nullptr), 0);
  EXPECT_FALSE(animation.problems().empty());
}

}  // namespace
