// The module's nodes per shading sample, in the networks users build: each node asked for an
// output through the host's full evaluation path, its inputs fed by host constant nodes, and
// next to it the node's arithmetic alone.
#include <benchmark/benchmark.h>
#include <lwnodes.h>

#include <cstdint>
#include <cstring>
#include <exception>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>

#include "lwhost/Blend.h"
#include "lwhost/NodalAccess.h"
#include "lwhost/PluginNode.h"
#include "lwhost/Session.h"
#include "lwhost/XPanels.h"
#include "nodes/colour/ColourCorrection.h"
#include "support/Measure.h"
#include "support/Summary.h"
#include "support/SampleMaterial.h"

namespace {

// ---- Settings shared by both sides of each comparison.

// Simple Colour Corrector: brightness, hue and saturation away from neutral.
constexpr double kCorrectorIn[3] = {0.8, 0.4, 0.2};
vorn::CorrectionSettings CorrectorSettings() {
  vorn::CorrectionSettings s;
  s.brightness = 0.8;
  s.hue = 0.6;
  s.saturation = 0.5;
  return s;
}

// Material Blender: every channel at half opacity, each in a different mode.
constexpr int kChannels = 5;
constexpr double kOpacity = 0.5;
constexpr int kModes[kChannels] = {Blend_Multiply, Blend_Screen, Blend_Additive, Blend_Normal, Blend_Difference};

const LWNodalMaterial kBackground = SampleMaterial(0.6);
const LWNodalMaterial kForeground = SampleMaterial(0.3);

// The blender's five blends: the four colours, then transparency as the first channel of a vector.
void BlendMaterials(const LWNodalMaterial& bg, const LWNodalMaterial& fg, LWNodalMaterial& result) {
  const double alpha = 1.0 - kOpacity;
  lwhost::Blend(result.diffuse, bg.diffuse, fg.diffuse, alpha, kModes[0]);
  lwhost::Blend(result.specular, bg.specular, fg.specular, alpha, kModes[1]);
  lwhost::Blend(result.reflection, bg.reflection, fg.reflection, alpha, kModes[2]);
  lwhost::Blend(result.refraction, bg.refraction, fg.refraction, alpha, kModes[3]);
  double r[3] = {result.transparency, 0.0, 0.0};
  const double b[3] = {bg.transparency, 0.0, 0.0}, f[3] = {fg.transparency, 0.0, 0.0};
  lwhost::Blend(r, b, f, alpha, kModes[4]);
  result.transparency = r[0];
}

// Time Info: the time given at NewTime.
constexpr LWFrame kFrame = 48;
constexpr LWTime kTime = 2.0;

// ---- The host side.

// A session with vorn.p and one of its nodes, set up by the caller, asked for one output.
struct Network {
  lwhost::Session session;
  lwhost::PluginNode* node = nullptr;
  lwhost::NodeOutput* output = nullptr;
  LWNodalAccess access = lwhost::MakeNodalAccess();

  lwhost::NodeEditor& editor() { return session.nodes(); }

  // The node's panel, as a user would open it.
  lwhost::XPanel& panel() {
    lwhost::InterfaceActivation a = node->activateInterface();
    lwhost::XPanel* p = session.xpanels().find(a.local.panel);
    if (!p) throw std::runtime_error("\"" + node->name() + "\" gave no panel");
    return *p;
  }
};

// Builds a network with the node of `server`, lets `setUp` connect and set it (returning an
// error text or ""), samples frame kFrame and picks `output`; fails the benchmark on any fault.
std::unique_ptr<Network> Build(benchmark::State& state, const char* server, const char* output,
                               const std::function<std::string(Network&)>& setUp) {
  std::string why;
  try {
    auto net = std::make_unique<Network>();
    net->node = &net->editor().addPluginNode(net->session.load(VORN_MODULE_PATH), server);
    why = setUp(*net);
    if (why.empty()) why = net->node->newTime(kFrame, kTime);
    net->output = net->node->output(output);
    if (why.empty() && !net->output) why = std::string("no output \"") + output + "\"";
    if (why.empty()) return net;
  } catch (const std::exception& e) {
    why = e.what();
  }
  state.SkipWithError(why.c_str());
  return nullptr;
}

std::string PanelFault(lwhost::XPanel& panel) {
  return panel.problems().empty() ? "the panel refused a value" : panel.problems().back();
}

// ---- Simple Colour Corrector, "Colour" output, colour input connected.

std::string SetUpCorrector(Network& net) {
  lwhost::NodeEditor& editor = net.editor();
  editor.connect(editor.addColor(kCorrectorIn[0], kCorrectorIn[1], kCorrectorIn[2]), "Color", *net.node, "Colour");
  lwhost::XPanel& panel = net.panel();
  const vorn::CorrectionSettings s = CorrectorSettings();
  if (!panel.setNumber(0x9002, s.brightness) || !panel.setNumber(0x9004, s.hue) ||
      !panel.setNumber(0x9005, s.saturation))
    return PanelFault(panel);
  return "";
}

void BM_ColourCorrector_HostPath(benchmark::State& state) {
  auto net = Build(state, "SimpleColourCorrector", "Colour", SetUpCorrector);
  if (!net) return;
  double out[3] = {-1, -1, -1}, expected[3] = {kCorrectorIn[0], kCorrectorIn[1], kCorrectorIn[2]};
  vorn::CorrectColour(expected, CorrectorSettings());
  const lwhost::NodeEditor& editor = net->editor();
  if (!editor.evaluate(*net->output, net->access, out, NOT_COLOR) || std::memcmp(out, expected, sizeof out) != 0) {
    state.SkipWithError("the corrected colour differs from CorrectColour's");
    return;
  }
  bench::MeasureAllocationFree(state, [&] {
    editor.evaluate(*net->output, net->access, out, NOT_COLOR);
    benchmark::DoNotOptimize(out);
  });
}

void BM_ColourCorrector_Direct(benchmark::State& state) {
  vorn::CorrectionSettings s = CorrectorSettings();
  double in[3] = {kCorrectorIn[0], kCorrectorIn[1], kCorrectorIn[2]};
  bench::MeasureAllocationFree(state, [&] {
    benchmark::DoNotOptimize(in);
    benchmark::DoNotOptimize(s);
    double c[3] = {in[0], in[1], in[2]};
    vorn::CorrectColour(c, s);
    benchmark::DoNotOptimize(c);
  });
}

// ---- Material Blender, "Material" output, two constant materials.

std::string SetUpBlender(Network& net) {
  lwhost::NodeEditor& editor = net.editor();
  editor.connect(editor.addMaterial(kBackground), "Material", *net.node, "Bg Material");
  editor.connect(editor.addMaterial(kForeground), "Material", *net.node, "Fg Material");
  lwhost::XPanel& panel = net.panel();
  for (int k = 0; k < kChannels; ++k) {
    const unsigned int opacityId = 0x9000 + 2 * k, modeId = opacityId + 1;
    if (!panel.setNumber(opacityId, kOpacity) || !panel.setInteger(modeId, kModes[k])) return PanelFault(panel);
  }
  return "";
}

void BM_MaterialBlender_HostPath(benchmark::State& state) {
  auto net = Build(state, "MaterialBlender", "Material", SetUpBlender);
  if (!net) return;
  LWNodalMaterial out, expected;
  std::memset(&out, 0xFF, sizeof out);
  std::memset(&expected, 0, sizeof expected);
  BlendMaterials(kBackground, kForeground, expected);
  const lwhost::NodeEditor& editor = net->editor();
  if (!editor.evaluate(*net->output, net->access, &out, NOT_MATERIAL) ||
      std::memcmp(&out, &expected, sizeof out) != 0) {
    state.SkipWithError("the blended material differs from the host's five blends");
    return;
  }
  bench::MeasureAllocationFree(state, [&] {
    editor.evaluate(*net->output, net->access, &out, NOT_MATERIAL);
    benchmark::DoNotOptimize(&out);
    benchmark::ClobberMemory();
  });
}

void BM_MaterialBlender_Direct(benchmark::State& state) {
  LWNodalMaterial bg = kBackground, fg = kForeground;
  bench::MeasureAllocationFree(state, [&] {
    benchmark::DoNotOptimize(&bg);
    benchmark::DoNotOptimize(&fg);
    benchmark::ClobberMemory();
    LWNodalMaterial result;
    result.transparency = 0.0;
    BlendMaterials(bg, fg, result);
    benchmark::DoNotOptimize(&result);
    benchmark::ClobberMemory();
  });
}

// ---- Time Info, "Time".

void BM_TimeInfo_HostPath(benchmark::State& state) {
  auto net = Build(state, "vornTimeInfo", "Time", [](Network&) { return std::string(); });
  if (!net) return;
  double out = -1.0;
  const lwhost::NodeEditor& editor = net->editor();
  if (!editor.evaluate(*net->output, net->access, &out, NOT_SCALAR) || out != kTime) {
    state.SkipWithError(("Time gave " + std::to_string(out)).c_str());
    return;
  }
  bench::MeasureAllocationFree(state, [&] {
    editor.evaluate(*net->output, net->access, &out, NOT_SCALAR);
    benchmark::DoNotOptimize(out);
  });
}

void BM_TimeInfo_Direct(benchmark::State& state) {
  double time = kTime;
  bench::MeasureAllocationFree(state, [&] {
    benchmark::DoNotOptimize(time);
    double out = time;
    benchmark::DoNotOptimize(out);
  });
}

// ---- Extended Spot Info, "Object ID".

void BM_ExSpotInfo_HostPath(benchmark::State& state) {
  auto net = Build(state, "vornExSpotInfo", "Object ID", [](Network&) { return std::string(); });
  if (!net) return;
  int out = -1;
  const int expected = LWITEMID2INT(net->access.objID);
  const lwhost::NodeEditor& editor = net->editor();
  if (!editor.evaluate(*net->output, net->access, &out, NOT_INTEGER) || out != expected || expected == 0) {
    state.SkipWithError(("Object ID gave " + std::to_string(out)).c_str());
    return;
  }
  bench::MeasureAllocationFree(state, [&] {
    editor.evaluate(*net->output, net->access, &out, NOT_INTEGER);
    benchmark::DoNotOptimize(out);
  });
}

void BM_ExSpotInfo_Direct(benchmark::State& state) {
  LWNodalAccess access = lwhost::MakeNodalAccess();
  bench::MeasureAllocationFree(state, [&] {
    benchmark::DoNotOptimize(access.objID);
    int out = LWITEMID2INT(access.objID);
    benchmark::DoNotOptimize(out);
  });
}

// ---- Material Booster, "Material" output, every channel's curve connected.

// Every channel blends half way from 100 % to its own maximum.
constexpr double kCurve = 0.5;
constexpr double kMaxima[kChannels] = {3.0, 2.0, 1.5, 0.5, 4.0};

void BoostMaterial(LWNodalMaterial& m, double curve) {
  double factor[kChannels];
  for (int k = 0; k < kChannels; ++k) factor[k] = (kMaxima[k] - 1.0) * curve + 1.0;
  double* colours[4] = {m.diffuse, m.specular, m.reflection, m.refraction};
  for (int k = 0; k < 4; ++k)
    for (int i = 0; i < 3; ++i) colours[k][i] *= factor[k];
  m.transparency *= factor[4];
}

std::string SetUpBooster(Network& net) {
  lwhost::NodeEditor& editor = net.editor();
  editor.connect(editor.addMaterial(kBackground), "Material", *net.node, "Material");
  lwhost::Node& curve = editor.addScalar(kCurve);
  const char* channels[kChannels] = {"Diffuse", "Specular", "Reflection", "Refraction", "Transparency"};
  for (int k = 0; k < kChannels; ++k) editor.connect(curve, "Scalar", *net.node, std::string(channels[k]) + " Curve");
  lwhost::XPanel& panel = net.panel();
  for (int k = 0; k < kChannels; ++k)
    if (!panel.setNumber(0x9001 + 2 * k, kMaxima[k])) return PanelFault(panel);
  return "";
}

void BM_MaterialBooster_HostPath(benchmark::State& state) {
  auto net = Build(state, "vornMaterialBooster", "Material", SetUpBooster);
  if (!net) return;
  LWNodalMaterial out, expected = kBackground;
  std::memset(&out, 0xFF, sizeof out);
  BoostMaterial(expected, kCurve);
  const lwhost::NodeEditor& editor = net->editor();
  if (!editor.evaluate(*net->output, net->access, &out, NOT_MATERIAL) ||
      std::memcmp(&out, &expected, sizeof out) != 0) {
    state.SkipWithError("the boosted material differs from the curve's factors");
    return;
  }
  bench::MeasureAllocationFree(state, [&] {
    editor.evaluate(*net->output, net->access, &out, NOT_MATERIAL);
    benchmark::DoNotOptimize(&out);
    benchmark::ClobberMemory();
  });
}

void BM_MaterialBooster_Direct(benchmark::State& state) {
  LWNodalMaterial in = kBackground;
  double curve = kCurve;
  bench::MeasureAllocationFree(state, [&] {
    benchmark::DoNotOptimize(&in);
    benchmark::DoNotOptimize(curve);
    benchmark::ClobberMemory();
    LWNodalMaterial m = in;
    BoostMaterial(m, curve);
    benchmark::DoNotOptimize(&m);
    benchmark::ClobberMemory();
  });
}

// ---- Channel Blender, "Vector" output, the vector with its Y replaced.

constexpr double kVectorIn[3] = {0.25, -1.5, 3.0};
constexpr double kY = 0.75;

void BM_ChannelBlender_HostPath(benchmark::State& state) {
  auto net = Build(state, "vornChannelBlender", "Vector", [](Network& n) {
    lwhost::NodeEditor& editor = n.editor();
    editor.connect(editor.addVector(kVectorIn[0], kVectorIn[1], kVectorIn[2]), "Vector", *n.node, "Vector");
    editor.connect(editor.addScalar(kY), "Scalar", *n.node, "Y");
    return std::string();
  });
  if (!net) return;
  double out[3] = {-1, -1, -1};
  const double expected[3] = {kVectorIn[0], kY, kVectorIn[2]};
  const lwhost::NodeEditor& editor = net->editor();
  if (!editor.evaluate(*net->output, net->access, out, NOT_VECTOR) || std::memcmp(out, expected, sizeof out) != 0) {
    state.SkipWithError("the rebuilt vector differs from the input with Y replaced");
    return;
  }
  bench::MeasureAllocationFree(state, [&] {
    editor.evaluate(*net->output, net->access, out, NOT_VECTOR);
    benchmark::DoNotOptimize(out);
  });
}

void BM_ChannelBlender_Direct(benchmark::State& state) {
  double in[3] = {kVectorIn[0], kVectorIn[1], kVectorIn[2]}, y = kY;
  bench::MeasureAllocationFree(state, [&] {
    benchmark::DoNotOptimize(in);
    benchmark::DoNotOptimize(y);
    double v[3] = {in[0], y, in[2]};
    benchmark::DoNotOptimize(v);
  });
}

BENCHMARK(BM_ColourCorrector_HostPath)->MinTime(0.2);
BENCHMARK(BM_ColourCorrector_Direct)->MinTime(0.2);
BENCHMARK(BM_MaterialBlender_HostPath)->MinTime(0.2);
BENCHMARK(BM_MaterialBlender_Direct)->MinTime(0.2);
BENCHMARK(BM_MaterialBooster_HostPath)->MinTime(0.2);
BENCHMARK(BM_MaterialBooster_Direct)->MinTime(0.2);
BENCHMARK(BM_ChannelBlender_HostPath)->MinTime(0.2);
BENCHMARK(BM_ChannelBlender_Direct)->MinTime(0.2);
BENCHMARK(BM_TimeInfo_HostPath)->MinTime(0.2);
BENCHMARK(BM_TimeInfo_Direct)->MinTime(0.2);
BENCHMARK(BM_ExSpotInfo_HostPath)->MinTime(0.2);
BENCHMARK(BM_ExSpotInfo_Direct)->MinTime(0.2);

}  // namespace

int main(int argc, char** argv) {
  return bench::RunBenchmarks(
      argc, argv,
      {{"Simple Colour Corrector", "BM_ColourCorrector_HostPath", "BM_ColourCorrector_Direct"},
       {"Material Blender", "BM_MaterialBlender_HostPath", "BM_MaterialBlender_Direct"},
       {"Material Booster: curves on", "BM_MaterialBooster_HostPath", "BM_MaterialBooster_Direct"},
       {"Channel Blender: Vector", "BM_ChannelBlender_HostPath", "BM_ChannelBlender_Direct"},
       {"Time Info: Time", "BM_TimeInfo_HostPath", "BM_TimeInfo_Direct"},
       {"Extended Spot Info: Object ID", "BM_ExSpotInfo_HostPath", "BM_ExSpotInfo_Direct"}});
}
