// The Simple Colour Corrector through vorn.p: the node, what it does to colours and scalars,
// what it keeps in scenes, and a per-sample path that allocates nothing.
#include <lwnodes.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <numeric>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "support/SavedBlocks.h"
#include "support/VornNodeTest.h"

// Every operator new of the process is counted while the render path test evaluates samples.
namespace {

std::atomic<bool> g_counting{false};
std::atomic<long> g_allocations{0};

void* Counted(std::size_t size) noexcept {
  if (g_counting.load(std::memory_order_relaxed)) g_allocations.fetch_add(1, std::memory_order_relaxed);
  return std::malloc(size ? size : 1);
}
void* Allocate(std::size_t size) {
  if (void* p = Counted(size)) return p;
  throw std::bad_alloc();
}

}  // namespace

// The module calls operator new through the process's dynamic symbols, so these replace its
// allocations too. Every form is replaced, so that sanitizers see matching pairs.
void* operator new(std::size_t size) { return Allocate(size); }
void* operator new[](std::size_t size) { return Allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Counted(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return Counted(size); }
void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t) noexcept { std::free(p); }
void operator delete(void* p, const std::nothrow_t&) noexcept { std::free(p); }
void operator delete[](void* p, const std::nothrow_t&) noexcept { std::free(p); }

namespace {

using lwhost::IOMode;
using ::testing::DoubleNear;
using ::testing::ElementsAre;
using ::testing::Pair;
using ::testing::Pointwise;
using Colour = std::array<double, 3>;

constexpr double kPi = 3.14159265358979323846;
constexpr double kTight = 1e-12;

// Bit patterns, so that -0.0 and 0.0 differ.
template <class T>
std::array<std::uint64_t, sizeof(T) / 8> Bits(const T& value) {
  std::array<std::uint64_t, sizeof(T) / 8> bits{};
  std::memcpy(bits.data(), &value, sizeof value);
  return bits;
}

// Form ids; the inputs of the same names follow the same order.
enum : unsigned int { kColourId = 0x9000, kScalarId, kBrightnessId, kContrastId, kHueId, kSaturationId, kGammaId };
enum : unsigned int { kInvertId = 0x9007, kDefaultId, kWebButtonId = 0x9900, kLogoId };

struct Settings {
  double brightness, contrast, hue, saturation, gamma;
  bool invert;
};

struct Corrector {
  lwhost::PluginNode& node;
  lwhost::XPanel& panel;
};

// Settings go in through the node's form, as a user types them, and come out of the node's
// outputs after a sampling pass, as the renderer reads them.
class CorrectorTest : public VornNodeTest {
 protected:
  Corrector addCorrector() {
    lwhost::PluginNode& node = add("SimpleColourCorrector");
    return {node, panel(node)};
  }

  lwhost::VParm& parameter(Corrector& c, unsigned int cid) {
    lwhost::VParm* p = session.animation().parameter(c.panel.value(cid).vparm);
    if (!p) throw std::runtime_error("control " + std::to_string(cid) + " shows no parameter");
    return *p;
  }

  static void set(Corrector& c, unsigned int cid, double value) {
    EXPECT_TRUE(c.panel.setNumber(cid, value)) << std::hex << cid;
  }
  static void setColour(Corrector& c, const Colour& rgb) { EXPECT_TRUE(c.panel.setVector(kColourId, rgb.data())); }
  static void setInvert(Corrector& c, bool on) { EXPECT_TRUE(c.panel.setInteger(kInvertId, on ? 1 : 0)); }
  static void apply(Corrector& c, const Settings& s) {
    set(c, kBrightnessId, s.brightness);
    set(c, kContrastId, s.contrast);
    set(c, kHueId, s.hue);
    set(c, kSaturationId, s.saturation);
    set(c, kGammaId, s.gamma);
    setInvert(c, s.invert);
  }

  static void sample(Corrector& c, LWTime time = 0.0, LWFrame frame = 0) {
    EXPECT_EQ(c.node.newTime(frame, time), "");
  }

  // A value the node does not write stays at -7.
  Colour colourOut(Corrector& c) {
    Colour out{-7, -7, -7};
    EXPECT_TRUE(editor.evaluate(c.node, "Colour", access, out.data(), NOT_COLOR));
    return out;
  }
  double scalarOut(Corrector& c) {
    double out = -7;
    EXPECT_TRUE(editor.evaluate(c.node, "Scalar", access, &out, NOT_SCALAR));
    return out;
  }

  // The output for a value on the form's fallback, after a fresh sampling pass.
  Colour correct(Corrector& c, const Colour& in) {
    setColour(c, in);
    sample(c);
    return colourOut(c);
  }
  double correctScalar(Corrector& c, double in) {
    set(c, kScalarId, in);
    sample(c);
    return scalarOut(c);
  }
};

// ---- The node: connectors, parameters and form, connected inputs against the form's values, the
// "Default" button and envelopes ----

TEST_F(CorrectorTest, ANewNodeShowsItsConnectorsParametersAndForm) {
  Corrector c = addCorrector();
  EXPECT_EQ(c.node.color(), (std::array<int, 3>{11, 8, 51}));
  EXPECT_EQ(Connectors(c.node),
            "Colour/1 Scalar/2 Brightness/2 Contrast/2 Hue/2 Saturation/2 Gamma/2 Invert/4 > Colour/1 Scalar/2");
  // The five settings and the two fallbacks live in the node's channel group.
  std::vector<std::pair<std::string, int>> parameters;
  for (lwhost::VParm* p : session.animation().parameters(session.animation().group(c.node.channelGroup())))
    parameters.emplace_back(p->name(), p->envType());
  EXPECT_THAT(parameters, ElementsAre(Pair("Colour", LWVP_COLOR), Pair("Scalar", LWVP_FLOAT),
                                      Pair("Brightness", LWVP_PERCENT), Pair("Contrast", LWVP_PERCENT),
                                      Pair("Hue", LWVP_ANGLE), Pair("Saturation", LWVP_PERCENT),
                                      Pair("Gamma", LWVP_FLOAT)));

  std::vector<std::string> controls;
  for (const lwhost::XPControl& x : c.panel.controls()) {
    std::ostringstream line;
    line << std::hex << x.cid << ' ' << x.controlClass << ' ' << x.dataType << ' ' << x.label;
    controls.push_back(line.str());
    // Dividers under the web button, the scalar and the "Default" button only.
    EXPECT_EQ(c.panel.hasDividerAfter(x.cid), x.cid == kWebButtonId || x.cid == kScalarId || x.cid == kDefaultId)
        << std::hex << x.cid;
  }
  EXPECT_THAT(controls, ElementsAre("9901 dThumbnail  ", "9900 vButton  http://www.vorn.example/",
                                    "9000 color-env float3-env Colour", "9001 float-env float-env Scalar",
                                    "9002 percent-env float-env Brightness", "9003 percent-env float-env Contrast",
                                    "9004 angle-env float-env Hue", "9005 percent-env float-env Saturation",
                                    "9006 float-env float-env Gamma", "9007 iBoolean integer Invert",
                                    "9008 vButton  Default"));
  EXPECT_EQ(c.node.activateInterface().local.panel, c.panel.handle()) << "the form is made once";

  // Any non-zero integer inverts; the set's refresh shows it.
  EXPECT_TRUE(c.panel.setInteger(kInvertId, 5));
  EXPECT_EQ(c.panel.shownValue(kInvertId).integer[0], 1);
  EXPECT_THAT(correct(c, {0.25, 0.5, 1.5}), ElementsAre(0.75, 0.5, -0.5));
  EXPECT_TRUE(c.panel.problems().empty()) << c.panel.problems().front();
}

TEST_F(CorrectorTest, AConnectedInputHidesExactlyItsOwnControl) {
  Corrector c = addCorrector();
  const char* const inputs[] = {"Colour", "Scalar", "Brightness", "Contrast", "Hue", "Saturation", "Gamma", "Invert"};
  for (unsigned int cid = kColourId; cid <= kInvertId; ++cid) {
    const char* input = inputs[cid - kColourId];
    SCOPED_TRACE(input);
    if (cid == kColourId)
      editor.connect(editor.addColor(0.5, 0.5, 0.5), "Color", c.node, input);
    else if (cid == kInvertId)
      editor.connect(editor.addInteger(1), "Integer", c.node, input);
    else
      editor.connect(editor.addScalar(0.5), "Scalar", c.node, input);
    // The connection refreshed the open form by itself.
    for (unsigned int other = kColourId; other <= kInvertId; ++other)
      EXPECT_EQ(c.panel.shownValue(other).isNull(), other == cid) << inputs[other - kColourId];
    editor.disconnect(c.node, input);
    EXPECT_FALSE(c.panel.shownValue(cid).isNull()) << "back after disconnecting";
  }
}

TEST_F(CorrectorTest, ConnectedInputsReplaceTheFormValuesPerSpot) {
  Corrector c = addCorrector();
  set(c, kBrightnessId, 2.0);
  set(c, kScalarId, 0.2);
  setColour(c, {0.1, 0.1, 0.1});
  sample(c);
  editor.connect(editor.addColor(0.8, 0.4, 0.2), "Color", c.node, "Colour");
  editor.connect(editor.addScalar(0.3), "Scalar", c.node, "Scalar");
  EXPECT_THAT(colourOut(c), Pointwise(DoubleNear(kTight), Colour{1.6, 0.8, 0.4}));
  EXPECT_NEAR(scalarOut(c), 0.9, kTight);

  // Brightness from the spot's position (the mean of its coordinates), per spot.
  editor.connect(editor.addSpotPosition(), "Position", c.node, "Brightness");
  const double here[3] = {0.5, 0.5, 0.5}, there[3] = {1.5, 1.5, 1.5}, up[3] = {0, 0, 1};
  access = lwhost::MakeNodalAccess(here, up);
  EXPECT_THAT(colourOut(c), Pointwise(DoubleNear(kTight), Colour{0.4, 0.2, 0.1}));
  access = lwhost::MakeNodalAccess(there, up);
  EXPECT_THAT(colourOut(c), Pointwise(DoubleNear(kTight), Colour{1.2, 0.6, 0.3}));
  // Without the input the form's value is back, with no new sampling pass.
  editor.disconnect(c.node, "Brightness");
  EXPECT_THAT(colourOut(c), Pointwise(DoubleNear(kTight), Colour{1.6, 0.8, 0.4}));

  // Each other setting's input, one at a time, on (0.64, 0.16, 0.04): V = 0.64, s = 0.9375.
  set(c, kBrightnessId, 1.0);
  sample(c);
  editor.connect(editor.addColor(0.64, 0.16, 0.04), "Color", c.node, "Colour");
  const std::pair<const char*, double> feeds[] = {
      {"Hue", 2 * kPi / 3}, {"Saturation", 0.0}, {"Contrast", 0.0}, {"Gamma", 2.0}};
  const Colour wanted[] = {{0.04, 0.64, 0.16}, {0.64, 0.64, 0.64}, {0.5, 0.125, 0.03125}, {0.8, 0.4, 0.2}};
  for (int k = 0; k < 4; ++k) {
    SCOPED_TRACE(feeds[k].first);
    editor.connect(editor.addScalar(feeds[k].second), "Scalar", c.node, feeds[k].first);
    EXPECT_THAT(colourOut(c), Pointwise(DoubleNear(kTight), wanted[k]));
    editor.disconnect(c.node, feeds[k].first);
  }
  // A connected 1 inverts; a connected 0 overrides the form's tick.
  editor.connect(editor.addInteger(1), "Integer", c.node, "Invert");
  EXPECT_THAT(colourOut(c), Pointwise(DoubleNear(kTight), Colour{0.36, 0.84, 0.96}));
  setInvert(c, true);
  sample(c);
  editor.connect(editor.addInteger(0), "Integer", c.node, "Invert");
  EXPECT_THAT(colourOut(c), ElementsAre(0.64, 0.16, 0.04));
}

TEST_F(CorrectorTest, DefaultResetsTheFiveSettingsButKeepsInvertAndTheFallbacks) {
  Corrector c = addCorrector();
  apply(c, {2.0, 0.5, 1.0, 0.3, 2.2, true});
  setColour(c, {0.1, 0.2, 0.3});
  // Brightness and the scalar fallback animated, as in the graph editor.
  parameter(c, kBrightnessId).addKey(0, 0.0, 1.5);
  parameter(c, kBrightnessId).addKey(0, 1.0, 3.0);
  parameter(c, kScalarId).addKey(0, 0.0, 0.4);
  parameter(c, kScalarId).addKey(0, 1.0, 0.8);
  ASSERT_TRUE(parameter(c, kBrightnessId).enveloped());
  session.host().clearInstanceUpdates();
  ASSERT_TRUE(c.panel.click(kDefaultId));

  const std::pair<unsigned int, double> neutral[] = {
      {kBrightnessId, 1.0}, {kContrastId, 1.0}, {kHueId, 0.0}, {kSaturationId, 1.0}, {kGammaId, 1.0}};
  for (const auto& [cid, value] : neutral) {
    EXPECT_FALSE(parameter(c, cid).enveloped()) << std::hex << cid;
    // Shown already: the form was refreshed after the reset.
    EXPECT_EQ(c.panel.shownValue(cid).number[0], value) << std::hex << cid;
  }
  EXPECT_THAT(session.host().instanceUpdates(), ElementsAre(Pair("NodeHandler", c.node.instance().get())));

  // Kept: the tick, both fallbacks and the scalar's envelope (keyed 0.4 -> 0.8).
  sample(c, 0.5, 15);
  EXPECT_THAT(colourOut(c), Pointwise(DoubleNear(kTight), Colour{0.9, 0.8, 0.7}));
  const double scalarAtHalf = parameter(c, kScalarId).valueAt(0.5)[0];
  EXPECT_GT(scalarAtHalf, 0.4);
  EXPECT_NEAR(scalarOut(c), 1 - scalarAtHalf, kTight);
}

TEST_F(CorrectorTest, EnvelopesAreSampledAtTheTimeOfEachPass) {
  Corrector c = addCorrector();
  setColour(c, {0.8, 0.4, 0.2});
  set(c, kScalarId, 0.3);
  lwhost::VParm& brightness = parameter(c, kBrightnessId);
  brightness.addKey(0, 0.0, 1.0);
  brightness.envelope(0)->addKey(1.0, 3.0, lwhost::kShapeLinear);

  // Frame numbers far from the times: sampling must go by time.
  sample(c, 0.25, 6);
  EXPECT_THAT(colourOut(c), Pointwise(DoubleNear(kTight), Colour{1.2, 0.6, 0.3}));  // B = 1.5
  EXPECT_NEAR(scalarOut(c), 0.75, kTight);
  sample(c, 0.0, 24);
  EXPECT_THAT(colourOut(c), Pointwise(DoubleNear(kTight), Colour{0.8, 0.4, 0.2}));

  // The colour fallback in the same pass: red keyed 0.8 -> 0.4. At 0.5 s, B = 2 on
  // (0.6, 0.4, 0.2): V = 1.2, s = 2/3, sextant 1/2.
  lwhost::VParm& colour = parameter(c, kColourId);
  colour.addKey(0, 0.0, 0.8);
  colour.envelope(0)->addKey(1.0, 0.4, lwhost::kShapeLinear);
  sample(c, 0.5, 1);
  EXPECT_THAT(colourOut(c), Pointwise(DoubleNear(kTight), Colour{1.2, 0.8, 0.4}));
}

// ---- Corrections, read from the outputs after the settings were typed into the form. Expected
// values are worked out by hand: the colour's value scaled by brightness and contrast around 0.5,
// its hue rotated and its saturation scaled in HSV, then gamma, then inversion ----

TEST_F(CorrectorTest, NeutralSettingsReturnTheInputBitForBit) {
  Corrector c = addCorrector();
  EXPECT_EQ(Bits(correct(c, {0.1, -0.0, 1e-310})), Bits(Colour{0.1, -0.0, 1e-310})) << "a new node";
  // A setting moved and put back is neutral again.
  set(c, kBrightnessId, 2.0);
  set(c, kBrightnessId, 1.0);
  for (const Colour& in : {Colour{1.5, -0.25, 0.3}, Colour{-2.0, 3.75, 1e-310}, Colour{0.0, -0.0, 1e300}}) {
    SCOPED_TRACE(::testing::PrintToString(in));
    EXPECT_EQ(Bits(correct(c, in)), Bits(in)) << "from the fallback";
    editor.connect(editor.addColor(in[0], in[1], in[2]), "Color", c.node, "Colour");
    EXPECT_EQ(Bits(colourOut(c)), Bits(in)) << "from a connected input";
    editor.disconnect(c.node, "Colour");
  }
  for (double x : {-3.5, 1e-310, -0.0}) EXPECT_EQ(Bits(correctScalar(c, x)), Bits(x)) << x;
}

TEST_F(CorrectorTest, CorrectsColoursAndScalars) {
  struct Case {
    Settings set;
    Colour in, want;
  };
  const Case colours[] = {
      // Greys and black have no saturation to rotate; nothing clamps.
      {{1.5, 1, 2.0, 3, 1, 0}, {0.4, 0.4, 0.4}, {0.6, 0.6, 0.6}},
      {{1, 0.5, 2.0, 3, 1, 0}, {2, 2, 2}, {1.25, 1.25, 1.25}},
      {{1, 1, 1.0, 3, 1, 0}, {-0.5, -0.5, -0.5}, {-0.5, -0.5, -0.5}},
      {{3, 1, 1.0, 0.5, 1, 0}, {0, 0, 0}, {0, 0, 0}},
      {{3, 0.5, 1.0, 0.5, 1, 0}, {0, 0, 0}, {0.25, 0.25, 0.25}},
      // Halving a saturation of 0.75 at V = 0.8 in each sextant: which channels are p, q, t.
      {{1, 1, 0, 0.5, 1, 0}, {0.8, 0.4, 0.2}, {0.8, 0.6, 0.5}},
      {{1, 1, 0, 0.5, 1, 0}, {0.6, 0.8, 0.2}, {0.7, 0.8, 0.5}},
      {{1, 1, 0, 0.5, 1, 0}, {0.2, 0.8, 0.4}, {0.5, 0.8, 0.6}},
      {{1, 1, 0, 0.5, 1, 0}, {0.2, 0.6, 0.8}, {0.5, 0.7, 0.8}},
      {{1, 1, 0, 0.5, 1, 0}, {0.4, 0.2, 0.8}, {0.6, 0.5, 0.8}},
      {{1, 1, 0, 0.5, 1, 0}, {0.8, 0.2, 0.4}, {0.8, 0.5, 0.6}},
      {{1, 1, 0, 0.0, 1, 0}, {0.8, 0.4, 0.2}, {0.8, 0.8, 0.8}},
      {{1, 1, 0, 2.0, 1, 0}, {0.8, 0.4, 0.2}, {0.8, 0.0, -0.4}},
      {{2, 1, 0, 1, 1, 0}, {0.8, 0.4, 0.2}, {1.6, 0.8, 0.4}},
      {{0, 1, 0, 1, 1, 0}, {0.8, 0.4, 0.2}, {0, 0, 0}},
      // V = 0.5 x (0.8 x 1.25 - 0.5) + 0.5, s = 0.3, one sextant on: (q, V, p).
      {{1.25, 0.5, kPi / 3, 0.4, 1, 0}, {0.8, 0.4, 0.2}, {0.675, 0.75, 0.525}},
      // Contrast 0 puts V at one half, before gamma and inversion.
      {{3, 0, 0, 1, 1, 0}, {4, 4, 4}, {0.5, 0.5, 0.5}},
      {{1, 0, 0, 1, 1, 0}, {0.8, 0.4, 0.2}, {0.5, 0.25, 0.125}},
      {{1, 0, 0, 1, 2, 1}, {0.3, 0.3, 0.3}, {1 - std::sqrt(0.5), 1 - std::sqrt(0.5), 1 - std::sqrt(0.5)}},
      // Hue turns in sextants of pi/3; whole turns wrap into [0, 6], and exactly 6 is the last
      // sextant with f = 0 (2pi and 4pi land there in doubles): red comes out magenta.
      {{1, 1, 2 * kPi / 3, 1, 1, 0}, {1, 0, 0}, {0, 1, 0}},
      {{1, 1, -2 * kPi / 3, 1, 1, 0}, {1, 0, 0}, {0, 0, 1}},
      {{1, 1, kPi / 3, 1, 1, 0}, {1, 0, 0}, {1, 1, 0}},
      {{1, 1, 2 * kPi, 1, 1, 0}, {0.8, 0.4, 0.2}, {0.8, 0.4, 0.2}},
      {{1, 1, -2 * kPi, 1, 1, 0}, {0.8, 0.4, 0.2}, {0.8, 0.4, 0.2}},
      {{1, 1, -2 * kPi, 1, 1, 0}, {1, 0, 0}, {1, 0, 0}},
      {{1, 1, 2 * kPi, 1, 1, 0}, {1, 0, 0}, {1, 0, 1}},
      {{1, 1, 4 * kPi, 1, 1, 0}, {1, 0, 0}, {1, 0, 1}},
      {{1, 1, kPi / 6, 1, 1, 0}, {1, 0.5, 0.75}, {1, 0.5, 1}},  // sextant 5.5 + 0.5
      // Gamma as 1/G in double precision, then inversion, unclamped.
      {{1, 1, 0, 1, 2, 0}, {0.16, 0.64, 0.36}, {0.4, 0.8, 0.6}},
      {{1, 1, 0, 1, 3, 0}, {0.125, 8.0, 1.0}, {0.5, 2.0, 1.0}},
      {{1, 1, 0, 1, 1, 1}, {1.5, -0.25, 0.5}, {-0.5, 1.25, 0.5}},
      {{1, 1, 0, 1, 2, 1}, {0.16, 0.64, 0.36}, {0.6, 0.2, 0.4}},
      {{1.5, 1, 0, 1, 2, 0}, {0.4, 0.4, 0.4}, {std::sqrt(0.6), std::sqrt(0.6), std::sqrt(0.6)}},
  };
  Corrector c = addCorrector();
  for (const Case& k : colours) {
    SCOPED_TRACE(&k - colours);
    apply(c, k.set);
    EXPECT_THAT(correct(c, k.in), Pointwise(DoubleNear(kTight), k.want));
  }
  // A hair past 6 wraps to sextant 0: (V, t, p).
  apply(c, {1, 1, kPi / 6 + 1e-9, 1, 1, false});
  EXPECT_THAT(correct(c, {1, 0.5, 0.75}), Pointwise(DoubleNear(1e-8), Colour{1, 0.5, 0.5}));

  // Scalars: C x ((1 + B) x, skipped when B = C = 1) - 0.5) + 0.5, then gamma and inversion;
  // hue and saturation never apply.
  struct ScalarCase {
    Settings set;
    double in, want;
  };
  const ScalarCase scalars[] = {
      {{1, 0.5, 1, 0.25, 1, 0}, 0.3, 0.55},  {{1, 0.5, 1, 0.25, 1, 0}, -1.0, -0.75},
      {{2, 1, 1, 0.25, 1, 0}, 0.3, 0.9},     {{0, 1, 1, 0.25, 1, 0}, 0.3, 0.3},
      {{1, 1, 1, 0.25, 1, 0}, 0.3, 0.3},     {{1, 0, 1, 0.25, 2, 1}, 0.9, 1 - std::sqrt(0.5)},
      {{1, 1, 0, 1, 2, 0}, 0.16, 0.4},       {{1, 1, 0, 1, 3, 0}, 8.0, 2.0},
      {{1, 1, 0, 1, 1, 1}, 1.5, -0.5},       {{1, 1, 0, 1, 2, 1}, 0.16, 0.6},
  };
  for (const ScalarCase& k : scalars) {
    SCOPED_TRACE(&k - scalars);
    apply(c, k.set);
    EXPECT_NEAR(correctScalar(c, k.in), k.want, kTight);
  }
}

// Pure red keeps V = 1 and p = 0 whatever the hue input delivers. (Reducing 1e300 one turn at a
// time would never end; a NaN would reach the sextant index.)
TEST_F(CorrectorTest, HueFarOutsideATurnStillGivesAColour) {
  Corrector c = addCorrector();
  editor.connect(editor.addColor(1, 0, 0), "Color", c.node, "Colour");
  sample(c);
  for (double hue : {std::nan(""), HUGE_VAL, 1e300, -1e300, 1e7 + 0.5}) {
    SCOPED_TRACE(hue);
    editor.connect(editor.addScalar(hue), "Scalar", c.node, "Hue");
    const Colour out = colourOut(c);
    for (double channel : out) EXPECT_TRUE(std::isfinite(channel)) << channel;
    EXPECT_EQ(*std::max_element(out.begin(), out.end()), 1.0);
    EXPECT_EQ(*std::min_element(out.begin(), out.end()), 0.0);
  }
  // 200000 whole turns: past the shortcut, yet it lands on 6 as the loops do (magenta).
  editor.connect(editor.addScalar(1256637.0614359174), "Scalar", c.node, "Hue");
  EXPECT_EQ(colourOut(c), (Colour{1, 0, 1}));
}

// ---- Storage: the block layout of a save in both forms, loading in any block order, the invert
// byte, and the host's copy ----

class CorrectorStorage : public CorrectorTest {
 protected:
  // Every setting away from its default, the hue animated.
  Corrector addMovedCorrector() {
    Corrector c = addCorrector();
    setColour(c, {0.8, 0.4, 0.2});
    set(c, kScalarId, 0.3);
    apply(c, {1.25, 0.5, 1.0, 0.4, 2.0, true});
    parameter(c, kHueId).addKey(0, 0.0, 1.0);
    parameter(c, kHueId).envelope(0)->addKey(1.0, 2.0, lwhost::kShapeLinear);
    return c;
  }

  std::string save(Corrector& c, IOMode mode) {
    std::string error = "stale";
    std::string data = c.node.instance().save(mode, &error);
    EXPECT_EQ(error, "");
    return data;
  }

  // Both outputs halfway through the hue's animation.
  std::pair<Colour, double> outputsAtHalf(Corrector& c) {
    sample(c, 0.5, 12);
    return {colourOut(c), scalarOut(c)};
  }
};

TEST_F(CorrectorStorage, SavesVersionFallbacksAndTheCorrectionInThatOrder) {
  Corrector c = addCorrector();
  // Text: each block's first line, two levels deep; a parameter's own lines sit deeper.
  const auto heads = [](const std::vector<std::string>& blocks) {
    std::string out;
    for (const std::string& b : blocks) out += b.substr(0, b.find('\n')) + "|";
    return out;
  };
  const std::vector<std::string> top = Split(save(c, IOMode::Ascii), IOMode::Ascii);
  ASSERT_EQ(heads(top), "Version 1|{ InColour|{ InScala|{ SimpleColourCorrection|");
  const std::vector<std::string> inner = Split(Inner(top[3], IOMode::Ascii), IOMode::Ascii);
  EXPECT_EQ(heads(inner), "  { Brightness|  { Contrast|  { Hue|  { Saturation|  { Gamma|  Invert 00|");

  // Binary: the version one big-endian I2, the invert one unsigned byte; "+" marks a block
  // holding a parameter's own blocks.
  const std::string binary = save(c, IOMode::Binary);
  std::vector<std::string> ids;
  for (const std::string& b : Split(binary, IOMode::Binary)) ids.push_back(b.substr(0, 4));
  for (const std::string& b : Split(Split(binary, IOMode::Binary).back().substr(6), IOMode::Binary))
    ids.push_back(b.substr(0, 4) + (b.substr(6, 4) == "VALU" ? "+" : ""));
  EXPECT_THAT(ids, ElementsAre("VERS", "ICOL", "ISCL", "SICC", "CBRT+", "CCNT+", "CHUE+", "CSAT+", "CGAM+", "CINV"));
  EXPECT_EQ(binary.substr(0, 8), std::string("VERS\0\2\0\1", 8));
  EXPECT_EQ(binary.substr(binary.size() - 7), std::string("CINV\0\1\0", 7));
}

TEST_F(CorrectorStorage, LoadsEitherFormInAnyBlockOrderAndCopies) {
  Corrector original = addMovedCorrector();
  const auto expected = outputsAtHalf(original);
  EXPECT_NE(expected.first, (Colour{0.8, 0.4, 0.2})) << "the settings do change the colour";

  for (IOMode mode : {IOMode::Ascii, IOMode::Binary}) {
    SCOPED_TRACE(mode == IOMode::Ascii ? "text" : "binary");
    const std::string saved = save(original, mode);
    // Both levels reversed, with a block the corrector does not know at each.
    const std::string stranger = mode == IOMode::Ascii ? "Unknown 7 7\n" : std::string("XTRA\0\2\0\7", 8);
    std::vector<std::string> blocks = Split(saved, mode);
    ASSERT_EQ(blocks.size(), 4u);
    std::vector<std::string> inner = Split(Inner(blocks[3], mode), mode);
    ASSERT_EQ(inner.size(), 6u);
    std::reverse(inner.begin(), inner.end());
    inner.insert(inner.begin() + 2, stranger);
    blocks[3] = Rewrap(blocks[3], std::accumulate(inner.begin(), inner.end(), std::string()), mode);
    std::reverse(blocks.begin(), blocks.end());
    blocks.insert(blocks.begin() + 1, stranger);

    Corrector loaded = addCorrector();
    EXPECT_EQ(loaded.node.instance().load(mode, std::accumulate(blocks.begin(), blocks.end(), std::string())), "");
    EXPECT_EQ(save(loaded, mode), saved);
    EXPECT_EQ(outputsAtHalf(loaded), expected);
  }

  // Nothing to read leaves the defaults and is no error.
  Corrector empty = addCorrector();
  const std::string defaults = save(empty, IOMode::Ascii);
  EXPECT_EQ(empty.node.instance().load(IOMode::Ascii, ""), "");
  EXPECT_EQ(save(empty, IOMode::Ascii), defaults);

  // A copy takes fallbacks, parameters and invert, into parameters of its own.
  const std::string saved = save(original, IOMode::Ascii);
  Corrector copy = addCorrector();
  EXPECT_EQ(copy.node.instance().copyFrom(original.node.instance()), "");
  EXPECT_EQ(save(copy, IOMode::Ascii), saved);
  EXPECT_EQ(outputsAtHalf(copy), expected);
  EXPECT_EQ(original.node.instance().copyFrom(original.node.instance()), "");
  EXPECT_EQ(save(original, IOMode::Ascii), saved) << "a copy onto itself changed something";
  set(original, kBrightnessId, 3.0);
  setColour(original, {0, 0, 1});
  setInvert(original, false);
  parameter(original, kHueId).setState(0);
  EXPECT_EQ(save(copy, IOMode::Ascii), saved);
  EXPECT_EQ(outputsAtHalf(copy), expected);
}

// A host that makes no parameters: every handle stays null. The table outlives the test, because
// the module's parameters keep the last table they were given until they go.
struct RefusingParameters {
  static inline const LWVParmFuncs* real = nullptr;
  static inline int copies = 0;
  static inline LWVParmFuncs table;

  static void Install(lwhost::Host& host, const LWVParmFuncs* hostTable) {
    real = hostTable;
    copies = 0;
    table = *hostTable;
    table.create = [](int, int) -> LWVParmID { return nullptr; };
    table.copy = [](LWVParmID to, LWVParmID from) -> LWError {
      ++copies;
      return real->copy(to, from);
    };
    host.globals().provide(LWVPARMFUNCS_GLOBAL, &table);
  }
};

// Without handles only the sampled values can travel, and the host's copy is never asked.
TEST_F(CorrectorStorage, CopiesWithoutParameterHandlesStillTakeTheValues) {
  Corrector real = addMovedCorrector();
  const auto expected = outputsAtHalf(real);
  RefusingParameters::Install(session.host(), session.animation().vparmFuncs());
  Corrector first = addCorrector(), second = addCorrector();
  EXPECT_EQ(first.node.instance().copyFrom(real.node.instance()), "");
  EXPECT_EQ(second.node.instance().copyFrom(first.node.instance()), "");
  EXPECT_EQ(outputsAtHalf(second), expected);
  EXPECT_EQ(RefusingParameters::copies, 0);
}

TEST_F(CorrectorStorage, OnlyAnInvertByteOfOneSetsInvert) {
  Corrector plain = addCorrector();
  const std::string text = save(plain, IOMode::Ascii), binary = save(plain, IOMode::Binary);
  const auto withByte = [&](IOMode mode, char byte) {
    if (mode == IOMode::Binary) return binary.substr(0, binary.size() - 1) + byte;
    std::string edited = text;
    return edited.replace(edited.find("Invert 00"), 9, "Invert 0" + std::string(1, '0' + byte));
  };
  for (IOMode mode : {IOMode::Ascii, IOMode::Binary}) {
    SCOPED_TRACE(mode == IOMode::Ascii ? "text" : "binary");
    Corrector one = addCorrector(), two = addCorrector(), inverted = addCorrector();
    EXPECT_EQ(one.node.instance().load(mode, withByte(mode, 1)), "");
    EXPECT_EQ(one.panel.value(kInvertId).integer[0], 1);
    EXPECT_EQ(two.node.instance().load(mode, withByte(mode, 2)), "");
    EXPECT_EQ(two.panel.value(kInvertId).integer[0], 0) << "2 is not 1";
    sample(two);
    EXPECT_THAT(colourOut(two), ElementsAre(0.0, 0.0, 0.0)) << "the black fallback stays uninverted";
    // A 0 does not clear the switch: the byte only ever sets it.
    setInvert(inverted, true);
    EXPECT_EQ(inverted.node.instance().load(mode, withByte(mode, 0)), "");
    EXPECT_EQ(inverted.panel.value(kInvertId).integer[0], 1);
  }
}

// ---- The per-sample path, host side included, allocates nothing ----

TEST_F(CorrectorTest, EvaluatingSamplesAllocatesNothing) {
  Corrector c = addCorrector();
  apply(c, {1.5, 1, 0, 1, 2.0, false});
  sample(c);
  Colour colour{};
  double scalar = 0;
  const auto allocationsDuring = [&](auto&& body) {
    g_allocations = 0;
    g_counting = true;
    body();
    g_counting = false;
    return g_allocations.load();
  };
  const auto evaluate = [&] {
    for (int i = 0; i < 100; ++i) {
      editor.evaluate(c.node, "Colour", access, colour.data(), NOT_COLOR);
      editor.evaluate(c.node, "Scalar", access, &scalar, NOT_SCALAR);
    }
  };
  // The counter works (a direct call: new-expressions may be elided).
  EXPECT_EQ(allocationsDuring([] { ::operator delete(::operator new(64)); }), 1);
  EXPECT_EQ(allocationsDuring(evaluate), 0) << "unconnected";

  // Every input connected, with conversions (vector to scalar) on the way.
  editor.connect(editor.addColor(0.8, 0.4, 0.2), "Color", c.node, "Colour");
  editor.connect(editor.addSpotPosition(), "Position", c.node, "Scalar");
  editor.connect(editor.addSpotPosition(), "Position", c.node, "Brightness");
  editor.connect(editor.addScalar(0.9), "Scalar", c.node, "Contrast");
  editor.connect(editor.addScalar(0.5), "Scalar", c.node, "Hue");
  editor.connect(editor.addScalar(0.7), "Scalar", c.node, "Saturation");
  editor.connect(editor.addScalar(1.2), "Scalar", c.node, "Gamma");
  editor.connect(editor.addInteger(1), "Integer", c.node, "Invert");
  const double spot[3] = {1, 2, 3}, up[3] = {0, 0, 1};
  access = lwhost::MakeNodalAccess(spot, up);
  EXPECT_EQ(allocationsDuring(evaluate), 0) << "connected";
  // The samples were really computed: B = 2 from the spot, inverted.
  EXPECT_NE(colour, (Colour{0, 0, 0}));
  EXPECT_LT(scalar, 0.0);
}

}  // namespace
