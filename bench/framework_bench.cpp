// What the framework and the host cost per shading sample. A node built on hostkit ("benchScale":
// a scalar input times an animatable factor, a colour input times a tint and the factor) is
// asked for each output the way a renderer asks: NodeEditor::evaluate, the framework's
// evaluate adaptor, the node's Evaluate, its inputs evaluated from host constant nodes, the
// value handed back through setValue. Next to it runs the same arithmetic called directly.
#include <benchmark/benchmark.h>
#include <lwnodes.h>

#include <cstdint>
#include <exception>
#include <memory>
#include <string>

#include "lwhost/NodalAccess.h"
#include "lwhost/PluginNode.h"
#include "lwhost/Session.h"
#include "plugins/ScaleArithmetic.h"
#include "support/Measure.h"
#include "support/Summary.h"

namespace {

constexpr double kScalarIn = 0.75;
constexpr double kColourIn[3] = {0.8, 0.4, 0.2};
constexpr double kFactor = 1.25;
constexpr double kTint[3] = {0.9, 0.6, 0.3};

// Sets a parameter the node made, as the graph editor would; the node reads it at its next
// NewTime.
bool SetParameter(lwhost::Session& session, lwhost::PluginNode& node, const char* name, const double* value) {
  lwhost::ChannelGroup* group = session.animation().group(node.channelGroup());
  if (!group) return false;
  for (lwhost::VParm* p : session.animation().parameters(group))
    if (p->name() == name) return p->setValue(value) != 0;
  return false;
}

// A bench-scale node fed by a constant scalar and a constant colour, its factor and tint set
// through the host and sampled for frame 0.
struct ScaleNetwork {
  lwhost::Session session;
  lwhost::PluginNode* node = nullptr;
  lwhost::NodeOutput* scalarOut = nullptr;
  lwhost::NodeOutput* colourOut = nullptr;
  LWNodalAccess access = lwhost::MakeNodalAccess();

  // Throws the host's errors; returns false, with `why`, for a node that is not as built.
  bool build(std::string& why) {
    lwhost::ModuleFile& module = session.load(BENCH_MODULE_PATH);
    lwhost::NodeEditor& editor = session.nodes();
    node = &editor.addPluginNode(module, "benchScale");
    editor.connect(editor.addScalar(kScalarIn), "Scalar", *node, "Scalar");
    editor.connect(editor.addColor(kColourIn[0], kColourIn[1], kColourIn[2]), "Color", *node, "Colour");
    if (!SetParameter(session, *node, "Factor", &kFactor) || !SetParameter(session, *node, "Tint", kTint)) {
      why = "the node's Factor and Tint parameters could not be set through the host";
      return false;
    }
    why = node->newTime(0, 0.0);
    scalarOut = node->output("Scalar");
    colourOut = node->output("Colour");
    if (!scalarOut || !colourOut) why = "the node has no Scalar or Colour output";
    return why.empty();
  }
};

// Builds the network or fails the benchmark with the reason.
std::unique_ptr<ScaleNetwork> Build(benchmark::State& state) {
  std::string why;
  try {
    auto network = std::make_unique<ScaleNetwork>();
    if (network->build(why)) return network;
  } catch (const std::exception& e) {
    why = e.what();
  }
  state.SkipWithError(why.c_str());
  return nullptr;
}

bool SameColour(const double a[3], const double b[3]) { return a[0] == b[0] && a[1] == b[1] && a[2] == b[2]; }

void BM_ScaleScalar_HostPath(benchmark::State& state) {
  auto net = Build(state);
  if (!net) return;
  const lwhost::NodeEditor& editor = net->session.nodes();
  double out = -1.0;
  if (!editor.evaluate(*net->scalarOut, net->access, &out, NOT_SCALAR) ||
      out != benchnodes::ScaleScalar(kScalarIn, kFactor)) {
    state.SkipWithError(("the host path gave " + std::to_string(out)).c_str());
    return;
  }
  bench::MeasureAllocationFree(state, [&] {
    editor.evaluate(*net->scalarOut, net->access, &out, NOT_SCALAR);
    benchmark::DoNotOptimize(out);
  });
}

void BM_ScaleScalar_Direct(benchmark::State& state) {
  double x = kScalarIn, factor = kFactor;
  bench::MeasureAllocationFree(state, [&] {
    benchmark::DoNotOptimize(x);
    benchmark::DoNotOptimize(factor);
    double out = benchnodes::ScaleScalar(x, factor);
    benchmark::DoNotOptimize(out);
  });
}

void BM_TintColour_HostPath(benchmark::State& state) {
  auto net = Build(state);
  if (!net) return;
  const lwhost::NodeEditor& editor = net->session.nodes();
  double out[3] = {-1.0, -1.0, -1.0}, expected[3];
  benchnodes::TintColour(kColourIn, kTint, kFactor, expected);
  if (!editor.evaluate(*net->colourOut, net->access, out, NOT_COLOR) || !SameColour(out, expected)) {
    state.SkipWithError("the host path's colour differs from the arithmetic's");
    return;
  }
  bench::MeasureAllocationFree(state, [&] {
    editor.evaluate(*net->colourOut, net->access, out, NOT_COLOR);
    benchmark::DoNotOptimize(out);
  });
}

void BM_TintColour_Direct(benchmark::State& state) {
  double colour[3] = {kColourIn[0], kColourIn[1], kColourIn[2]};
  double tint[3] = {kTint[0], kTint[1], kTint[2]};
  double factor = kFactor;
  bench::MeasureAllocationFree(state, [&] {
    benchmark::DoNotOptimize(colour);
    benchmark::DoNotOptimize(tint);
    benchmark::DoNotOptimize(factor);
    double out[3];
    benchnodes::TintColour(colour, tint, factor, out);
    benchmark::DoNotOptimize(out);
  });
}

// The control for every zero above: a node that allocates once per evaluation, inside the
// loaded module, must show at least one allocation per sample, or the counter is blind.
void BM_CounterSeesModuleAllocations(benchmark::State& state) {
  std::string why;
  try {
    lwhost::Session session;
    lwhost::NodeEditor& editor = session.nodes();
    lwhost::PluginNode& node = editor.addPluginNode(session.load(BENCH_MODULE_PATH), "benchAllocating");
    lwhost::NodeOutput* out = node.output("Value");
    LWNodalAccess access = lwhost::MakeNodalAccess();
    double value = 0.0;
    if (!out || !editor.evaluate(*out, access, &value, NOT_SCALAR) || value != 1.0) {
      state.SkipWithError("the allocating node did not answer");
      return;
    }
    const std::uint64_t allocations = bench::MeasureSamples(state, [&] {
      editor.evaluate(*out, access, &value, NOT_SCALAR);
      benchmark::DoNotOptimize(value);
    });
    if (allocations < static_cast<std::uint64_t>(state.iterations()))
      state.SkipWithError("the counter missed allocations made inside the module: its zeros prove nothing");
    return;
  } catch (const std::exception& e) {
    why = e.what();
  }
  state.SkipWithError(why.c_str());
}

BENCHMARK(BM_ScaleScalar_HostPath)->MinTime(0.2);
BENCHMARK(BM_ScaleScalar_Direct)->MinTime(0.2);
BENCHMARK(BM_TintColour_HostPath)->MinTime(0.2);
BENCHMARK(BM_TintColour_Direct)->MinTime(0.2);
BENCHMARK(BM_CounterSeesModuleAllocations)->Iterations(10000);

}  // namespace

int main(int argc, char** argv) {
  return bench::RunBenchmarks(argc, argv,
                              {{"Scale: scalar x factor", "BM_ScaleScalar_HostPath", "BM_ScaleScalar_Direct"},
                               {"Scale: colour x tint", "BM_TintColour_HostPath", "BM_TintColour_Direct"}});
}
