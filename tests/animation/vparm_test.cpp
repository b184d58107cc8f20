// Animatable parameters through "LWVParmFuncs 2", as a plug-in's XPanel "-env" controls use them.
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "AnimationTestSupport.h"

namespace {

using animtest::AnimationTest;
using namespace lwhost;

using VParmTest = AnimationTest;

std::array<double, 3> Sample(const LWVParmFuncs* vpf, LWVParmID p, double t) {
  std::array<double, 3> out{-1, -1, -1};
  EXPECT_EQ(vpf->getVal(p, t, nullptr, out.data()), 0.0);  // no texture opacity
  return out;
}

TEST_F(VParmTest, EnvelopingAColourAndBack) {
  LWChanGroupID group = envf->createGroup(nullptr, "Grade");
  LWVParmID tint = makeParameter(LWVP_COLOR, "Tint", group);
  double rgb[3] = {0.25, 0.5, 1.0};
  EXPECT_EQ(vpf->setVal(tint, rgb), 3);
  EXPECT_EQ(vpf->getState(tint), 0);
  EXPECT_EQ(Sample(vpf, tint, 3), (std::array<double, 3>{0.25, 0.5, 1.0}));
  LWEnvelopeID envs[3] = {&rgb, &rgb, &rgb};
  vpf->getEnv(tint, envs);
  EXPECT_EQ(envs[0], nullptr);
  EXPECT_EQ(envs[2], nullptr);

  // Enveloping makes one channel per component, each holding the value in a key at time 0.
  vpf->setState(tint, LWVPSF_ENV);
  EXPECT_EQ(vpf->getState(tint), LWVPSF_ENV);
  vpf->getEnv(tint, envs);
  const char* names[3] = {"Grade/Tint.R", "Grade/Tint.G", "Grade/Tint.B"};
  for (int ch = 0; ch < 3; ++ch) {
    ASSERT_NE(envs[ch], nullptr);
    EXPECT_EQ(animation.findChannel(names[ch]), envs[ch]) << names[ch];
    int keys = 0;
    envf->egGet(envs[ch], nullptr, LWENVTAG_KEYCOUNT, &keys);
    EXPECT_EQ(keys, 1);
    double keyTime = -1;
    envf->keyGet(envs[ch], envf->nextKey(envs[ch], nullptr), LWKEY_TIME, &keyTime);
    EXPECT_EQ(keyTime, 0.0);
  }
  EXPECT_EQ(Sample(vpf, tint, 7), (std::array<double, 3>{0.25, 0.5, 1.0}));

  // While enveloped, setVal is ignored; keys drive the value per channel.
  double other[3] = {9, 9, 9};
  EXPECT_EQ(vpf->setVal(tint, other), 0);
  EXPECT_EQ(Sample(vpf, tint, 0), (std::array<double, 3>{0.25, 0.5, 1.0}));
  envf->createKey(envs[1], 2.0, 0.0);
  int linear = kShapeLinear;
  envf->keySet(envs[1], envf->findKey(envs[1], 2.0), LWKEY_SHAPE, &linear);
  EXPECT_EQ(Sample(vpf, tint, 1.0), (std::array<double, 3>{0.25, 0.25, 1.0}));

  // Clearing the bit drops the envelopes (from the tree too) and the stored value returns.
  vpf->setState(tint, 0);
  EXPECT_EQ(vpf->getState(tint), 0);
  EXPECT_EQ(animation.findChannel("Grade/Tint.G"), nullptr);
  EXPECT_EQ(animation.envelope(envs[1]), nullptr);
  EXPECT_EQ(Sample(vpf, tint, 1.0), (std::array<double, 3>{0.25, 0.5, 1.0}));
  EXPECT_EQ(vpf->setVal(tint, other), 3);
  EXPECT_EQ(Sample(vpf, tint, 1.0), (std::array<double, 3>{9, 9, 9}));
}

TEST_F(VParmTest, ScalarsAndVectorsNameAndTakeTheirChannels) {
  LWVParmID gain = makeParameter(LWVP_PERCENT, "Gain");
  double v[3] = {0.5, 7, 7};
  EXPECT_EQ(vpf->setVal(gain, v), 1);  // a scalar takes one number ...
  EXPECT_EQ(Sample(vpf, gain, 0), (std::array<double, 3>{0.5, 0, 0}));  // ... and fills three
  vpf->setState(gain, LWVPSF_ENV);
  LWEnvelopeID envs[3];
  vpf->getEnv(gain, envs);
  EXPECT_EQ(animation.findChannel("Gain"), envs[0]);
  EXPECT_EQ(envs[1], nullptr);
  EXPECT_EQ(animation.envelope(envs[0])->type(), LWET_PERCENT);

  LWVParmID offset = makeParameter(LWVP_DIST | LWVPF_VECTOR, "Offset");
  LWVParmID bare = makeParameter(LWVP_ANGLE | LWVPF_VECTOR | LWVPF_VECTOR_NONAMES, "Turn");
  vpf->setState(offset, LWVPSF_ENV);
  vpf->setState(bare, LWVPSF_ENV);
  EXPECT_NE(animation.findChannel("Offset.Z"), nullptr);
  EXPECT_EQ(animation.findChannel("Offset.Z")->type(), LWET_DISTANCE);
  EXPECT_NE(animation.findChannel("Y"), nullptr);
  EXPECT_EQ(animation.findChannel("Y")->type(), LWET_ANGLE);

  // Host side: keys on one channel envelope that channel only; parameters are listed by group.
  LWVParmID scale = makeParameter(LWVP_FLOAT | LWVPF_VECTOR, "Scale");
  VParm* p = animation.parameter(scale);
  ASSERT_NE(p->addKey(2, 1.0, 4.0), nullptr);
  EXPECT_EQ(p->envelope(0), nullptr);
  EXPECT_NE(p->envelope(2), nullptr);
  EXPECT_EQ(p->addKey(3, 1.0, 4.0), nullptr);
  EXPECT_EQ(vpf->getState(scale), LWVPSF_ENV);
  EXPECT_DOUBLE_EQ(p->valueAt(1.0)[2], 4.0);
  const std::vector<VParm*> listed = animation.parameters(animation.root());
  ASSERT_EQ(listed.size(), 4u);
  EXPECT_EQ(listed.front()->name(), "Gain");
  EXPECT_EQ(listed.back(), p);

  // A type that is none of LWVP_* is refused.
  EXPECT_EQ(vpf->create(0x70, LWVPDT_NOTXTR), nullptr);
}

TEST_F(VParmTest, CopyIsDeep) {
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
  LWEnvelopeID dst[3];
  vpf->getEnv(to, dst);
  for (int ch = 0; ch < 3; ++ch) EXPECT_NE(dst[ch], src[ch]);
  EXPECT_EQ(animation.findChannel("To.R"), dst[0]);  // the copy's own names
  EXPECT_DOUBLE_EQ(Sample(vpf, to, 1.0)[0], 10.0);

  // Changing the source afterwards leaves the copy alone.
  double v = 99;
  envf->keySet(src[0], envf->findKey(src[0], 1.0), LWKEY_VALUE, &v);
  envf->createKey(src[1], 1.0, 50.0);
  EXPECT_DOUBLE_EQ(Sample(vpf, from, 1.0)[0], 99.0);
  EXPECT_EQ(Sample(vpf, to, 1.0), (std::array<double, 3>{10.0, 2.0, 3.0}));

  // Copying an unenveloped parameter takes the envelopes away again.
  LWVParmID plain = makeParameter(LWVP_COLOR, "Plain");
  ASSERT_EQ(vpf->copy(to, plain), nullptr);
  EXPECT_EQ(vpf->getState(to), 0);
  EXPECT_EQ(animation.findChannel("To.R"), nullptr);
  EXPECT_EQ(Sample(vpf, to, 1.0), (std::array<double, 3>{0, 0, 0}));
}

// Counts the parameter events a plug-in's setup callback hears.
struct ParamEvents {
  std::vector<int> codes;
  static int Record(LWVParmID, void* data, en_lwvpec code, void*) {
    static_cast<ParamEvents*>(data)->codes.push_back(code);
    return 0;
  }
};

TEST_F(VParmTest, EnvelopeLifecycleIsReportedAndSurvivesOutsideDestroy) {
  ParamEvents heard;
  LWVParmID p = vpf->create(LWVP_COLOR, LWVPDT_NOTXTR);
  vpf->setup(p, "Glow", nullptr, nullptr, &ParamEvents::Record, "VornTest", &heard);
  vpf->setState(p, LWVPSF_ENV | LWVPSF_TEX);  // no texture for a NOTXTR parameter
  EXPECT_EQ(vpf->getState(p), LWVPSF_ENV);
  EXPECT_EQ(heard.codes, (std::vector<int>{LWVPEC_ENVNEW, LWVPEC_ENVNEW, LWVPEC_ENVNEW}));

  // Someone destroys one channel's envelope through the envelope service: the parameter
  // must not keep the dead id.
  LWEnvelopeID envs[3];
  vpf->getEnv(p, envs);
  double value[3] = {0.1, 0.2, 0.3};
  envf->destroy(envs[1]);
  vpf->getEnv(p, envs);
  EXPECT_EQ(envs[1], nullptr);
  EXPECT_EQ(heard.codes.back(), LWVPEC_ENVOLD);
  EXPECT_EQ(vpf->getState(p), LWVPSF_ENV);  // two channels still enveloped
  EXPECT_EQ(vpf->setVal(p, value), 0);

  heard.codes.clear();
  vpf->destroy(p);
  EXPECT_EQ(heard.codes, (std::vector<int>{LWVPEC_ENVOLD, LWVPEC_ENVOLD}));
  EXPECT_EQ(animation.findChannel("Glow.R"), nullptr);
  EXPECT_EQ(animation.parameterCount(), 0u);
}

TEST_F(VParmTest, NullAndStaleHandlesFailQuietly) {
  // Made first, so that the dead parameter's memory cannot come back as this one.
  LWVParmID live = makeParameter(LWVP_FLOAT, "Live");
  LWVParmID dead = makeParameter(LWVP_FLOAT, "Dead");
  vpf->destroy(dead);
  double v[3] = {1, 2, 3};
  for (LWVParmID p : {static_cast<LWVParmID>(nullptr), dead}) {
    vpf->destroy(p);
    vpf->setup(p, "X", nullptr, nullptr, nullptr, "VornTest", nullptr);
    EXPECT_NE(vpf->copy(p, p), nullptr);
    EXPECT_NE(vpf->load(p, nullptr), nullptr);
    EXPECT_NE(vpf->save(p, nullptr), nullptr);
    EXPECT_EQ(vpf->setVal(p, v), 0);
    vpf->setState(p, LWVPSF_ENV);
    vpf->editEnv(p);
    vpf->editTex(p);
    EXPECT_EQ(vpf->getTex(p), nullptr);
  }
  // The per-sample queries only check for null.
  double out[3] = {5, 5, 5};
  EXPECT_EQ(vpf->getVal(nullptr, 0, nullptr, out), 0.0);
  EXPECT_EQ(out[0], 0.0);
  EXPECT_EQ(vpf->getState(nullptr), 0);
  LWEnvelopeID envs[3] = {v, v, v};
  vpf->getEnv(nullptr, envs);
  EXPECT_EQ(envs[2], nullptr);
  vpf->getEnv(nullptr, nullptr);
  vpf->initMP(nullptr);

  EXPECT_EQ(vpf->setVal(live, nullptr), 0);
  EXPECT_EQ(vpf->getVal(live, 0, nullptr, nullptr), 0.0);
  EXPECT_NE(vpf->load(live, nullptr), nullptr);
  EXPECT_NE(vpf->copy(live, dead), nullptr);
  EXPECT_EQ(animation.parameterCount(), 1u);
  EXPECT_FALSE(animation.problems().empty());
}

}  // namespace
