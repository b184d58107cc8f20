#pragma once

#include <gtest/gtest.h>
#include <lwserver.h>

#include <initializer_list>

#include "lwhost/Animation.h"
#include "lwhost/Host.h"

namespace animtest {

// One key as a test writes it; unspecified fields are LightWave's defaults.
struct KeySpec {
  double time;
  double value;
  int shape = lwhost::kShapeTCB;
  double tension = 0, continuity = 0, bias = 0;
};

// A host with the animation component, and its services fetched the way a plug-in fetches them.
class AnimationTest : public ::testing::Test {
 protected:
  lwhost::Host host;
  lwhost::Animation animation{host};
  const LWEnvelopeFuncs* envf =
      static_cast<const LWEnvelopeFuncs*>(lwhost::Host::lookupFunction()(LWENVELOPEFUNCS_GLOBAL, GFUSE_TRANSIENT));
  const LWVParmFuncs* vpf =
      static_cast<const LWVParmFuncs*>(lwhost::Host::lookupFunction()(LWVPARMFUNCS_GLOBAL, GFUSE_TRANSIENT));

  void SetUp() override {
    ASSERT_NE(envf, nullptr);
    ASSERT_NE(vpf, nullptr);
  }

  // Keys go in through the service table in the order given.
  LWEnvelopeID makeEnvelope(std::initializer_list<KeySpec> keys, LWChanGroupID group = nullptr,
                            const char* name = "Test") {
    LWEnvelopeID env = envf->create(group, name, LWET_FLOAT);
    for (const KeySpec& k : keys) {
      LWEnvKeyframeID key = envf->createKey(env, k.time, k.value);
      int shape = k.shape;
      double t = k.tension, c = k.continuity, b = k.bias;
      EXPECT_EQ(envf->keySet(env, key, LWKEY_SHAPE, &shape), 1);
      EXPECT_EQ(envf->keySet(env, key, LWKEY_TENSION, &t), 1);
      EXPECT_EQ(envf->keySet(env, key, LWKEY_CONTINUITY, &c), 1);
      EXPECT_EQ(envf->keySet(env, key, LWKEY_BIAS, &b), 1);
    }
    return env;
  }

  void setBehaviors(LWEnvelopeID env, int pre, int post) {
    EXPECT_EQ(envf->egSet(env, nullptr, LWENVTAG_PREBEHAVE, &pre), 1);
    EXPECT_EQ(envf->egSet(env, nullptr, LWENVTAG_POSTBEHAVE, &post), 1);
  }

  // A parameter set up in a group, as a plug-in's create callback makes it.
  LWVParmID makeParameter(int type, const char* name, LWChanGroupID group = nullptr,
                          int texType = LWVPDT_NOTXTR) {
    LWVParmID p = vpf->create(type, texType);
    vpf->setup(p, name, group, nullptr, nullptr, "VornTest", nullptr);
    return p;
  }
};

}  // namespace animtest
