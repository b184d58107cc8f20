// What the Cache node saves. Per request: a hit, a miss and a pass-through request against the
// cheapest realistic upstream (a Material Blender over two constant materials) asked directly;
// a hit must cost at most a fifth of that upstream. Per spot: three consumers of one expensive
// network, with and without the Cache, on 1 and 2 render threads; the speed-up, and the
// scaling from 1 to 2 threads, which false sharing between threads' slots would spoil.
#include <benchmark/benchmark.h>
#include <lwnodes.h>

#include <cstdio>
#include <cstring>
#include <exception>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "lwhost/NodalAccess.h"
#include "lwhost/PluginNode.h"
#include "lwhost/Session.h"
#include "lwhost/XPanels.h"
#include "support/Measure.h"

namespace {

constexpr double kHitBudget = 0.2;  // of the upstream a hit saves

LWNodalMaterial Material(double base) {
  LWNodalMaterial m;
  std::memset(&m, 0, sizeof m);
  for (int k = 0; k < 3; ++k) m.diffuse[k] = m.specular[k] = m.reflection[k] = m.refraction[k] = base + 0.1 * k;
  m.transparency = base;
  return m;
}

// ---- Per request: Material Blender -> Cache.

struct BlenderNet {
  lwhost::Session session;
  lwhost::PluginNode* blender = nullptr;
  lwhost::PluginNode* cache = nullptr;

  BlenderNet() {
    const lwhost::ModuleFile& vorn = session.load(VORN_MODULE_PATH);
    lwhost::NodeEditor& editor = session.nodes();
    blender = &editor.addPluginNode(vorn, "MaterialBlender");
    cache = &editor.addPluginNode(vorn, "vornCache");
    editor.connect(editor.addMaterial(Material(0.6)), "Material", *blender, "Bg Material");
    editor.connect(editor.addMaterial(Material(0.3)), "Material", *blender, "Fg Material");
    editor.connect(*blender, "Material", *cache, "Material");
    session.scene().setThreadCount(1);
    for (lwhost::PluginNode* node : {blender, cache})
      if (node->init(LWINIT_RENDER) != "" || node->newTime(0, 0.0) != "") throw std::runtime_error("init refused");
  }
};

enum class Request { Hit, Miss, PassThrough, Upstream };

void BM_Request(benchmark::State& state, Request kind) {
  std::unique_ptr<BlenderNet> net;
  try {
    net = std::make_unique<BlenderNet>();
  } catch (const std::exception& e) {
    state.SkipWithError(e.what());
    return;
  }
  if (kind == Request::PassThrough) {
    lwhost::XPanel* panel = net->session.xpanels().find(net->cache->activateInterface().local.panel);
    if (!panel || !panel->setInteger(0x9000, 1)) return state.SkipWithError("Pass Through refused");
  }
  const lwhost::NodeEditor& editor = net->session.nodes();
  lwhost::NodeOutput& blended = *net->blender->output("Material");
  lwhost::NodeOutput& output = kind == Request::Upstream ? blended : *net->cache->output("Material");
  LWNodalAccess access = lwhost::MakeNodalAccess();
  LWNodalMaterial out, expected;
  std::memset(&expected, 0, sizeof expected);
  editor.evaluate(blended, access, &expected, NOT_MATERIAL);
  for (int i = 0; i < 2; ++i) {
    std::memset(&out, 0xFF, sizeof out);
    if (!editor.evaluate(output, access, &out, NOT_MATERIAL) || std::memcmp(&out, &expected, sizeof out) != 0)
      return state.SkipWithError("the material differs from the blender's");
  }
  // A miss moves the spot every time; the others stay on it.
  const double step = kind == Request::Miss ? 1.0 : 0.0;
  bench::MeasureAllocationFree(state, [&] {
    access.wPos[0] += step;
    editor.evaluate(output, access, &out, NOT_MATERIAL);
    benchmark::DoNotOptimize(&out);
  });
}

// ---- Per spot: an expensive chain of correctors, read by three consumers.

constexpr int kChain = 8;

struct ConsumersNet {
  lwhost::Session session;
  std::vector<lwhost::PluginNode*> consumers;
  std::vector<lwhost::PluginNode*> started;

  ConsumersNet(bool cached, int threads) {
    const lwhost::ModuleFile& vorn = session.load(VORN_MODULE_PATH);
    lwhost::NodeEditor& editor = session.nodes();
    lwhost::Node* last = &editor.addColor(0.8, 0.4, 0.2);
    const char* lastOutput = "Color";
    for (int i = 0; i < kChain; ++i) {
      lwhost::PluginNode& cc = editor.addPluginNode(vorn, "SimpleColourCorrector");
      lwhost::XPanel* panel = session.xpanels().find(cc.activateInterface().local.panel);
      if (!panel || !panel->setNumber(0x9004, 0.3) || !panel->setNumber(0x9005, 0.9))
        throw std::runtime_error("a corrector refused its settings");
      editor.connect(*last, lastOutput, cc, "Colour");
      last = &cc;
      lastOutput = "Colour";
      started.push_back(&cc);
    }
    if (cached) {
      lwhost::PluginNode& cache = editor.addPluginNode(vorn, "vornCache");
      editor.connect(*last, lastOutput, cache, "Colour");
      last = &cache;
      started.push_back(&cache);
    }
    for (int i = 0; i < 3; ++i) {
      lwhost::PluginNode& consumer = editor.addPluginNode(vorn, "SimpleColourCorrector");
      editor.connect(*last, lastOutput, consumer, "Colour");
      consumers.push_back(&consumer);
      started.push_back(&consumer);
    }
    session.scene().setThreadCount(threads);
    for (lwhost::PluginNode* node : started)
      if (node->init(LWINIT_RENDER) != "" || node->newTime(0, 0.0) != "") throw std::runtime_error("init refused");
  }
  ~ConsumersNet() {
    for (lwhost::PluginNode* node : started) node->cleanup();
  }
};

std::unique_ptr<ConsumersNet> consumersNet;
std::string setUpFault;

void SetUpConsumers(const benchmark::State& state) {
  setUpFault.clear();
  try {
    consumersNet = std::make_unique<ConsumersNet>(state.range(0) != 0, state.threads());
  } catch (const std::exception& e) {
    setUpFault = e.what();
  }
}
void TearDownConsumers(const benchmark::State&) { consumersNet.reset(); }

// One spot per iteration on each thread, every spot new: with the Cache the first consumer
// misses and the other two hit.
void BM_ThreeConsumers(benchmark::State& state) {
  if (!consumersNet) return state.SkipWithError(setUpFault.c_str());
  const lwhost::NodeEditor& editor = consumersNet->session.nodes();
  lwhost::NodeOutput* outputs[3];
  for (int i = 0; i < 3; ++i) outputs[i] = consumersNet->consumers[i]->output("Colour");
  LWNodalAccess access = lwhost::MakeNodalAccess();
  access.ResourceContextIndex = state.thread_index();
  double colour[3];
  auto spot = [&] {
    access.wPos[0] += 1.0;
    for (lwhost::NodeOutput* output : outputs) {
      editor.evaluate(*output, access, colour, NOT_COLOR);
      benchmark::DoNotOptimize(colour);
    }
  };
  // The allocation count is process-wide, so only a lone thread's loop can be checked by it.
  if (state.threads() == 1) {
    bench::MeasureAllocationFree(state, spot);
  } else {
    for (auto _ : state) spot();
  }
  state.SetItemsProcessed(state.iterations());
}

BENCHMARK_CAPTURE(BM_Request, Hit, Request::Hit)->MinTime(0.2);
BENCHMARK_CAPTURE(BM_Request, Miss, Request::Miss)->MinTime(0.2);
BENCHMARK_CAPTURE(BM_Request, PassThrough, Request::PassThrough)->MinTime(0.2);
BENCHMARK_CAPTURE(BM_Request, Upstream, Request::Upstream)->MinTime(0.2);
BENCHMARK(BM_ThreeConsumers)
    ->ArgName("cached")
    ->Arg(0)
    ->Arg(1)
    ->Threads(1)
    ->Threads(2)
    ->UseRealTime()
    ->MinTime(0.3)
    ->Setup(SetUpConsumers)
    ->Teardown(TearDownConsumers);

// Keeps what the summary needs: ns per request (CPU time) and spots per second.
class Recorder : public benchmark::ConsoleReporter {
 public:
  Recorder() : ConsoleReporter(OO_Tabular) {}
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration) continue;
      if (run.error_occurred) failed = true;
      if (run.error_occurred) continue;
      const std::string name = run.benchmark_name();
      ns[name] = run.GetAdjustedCPUTime() * 1e9 / benchmark::GetTimeUnitMultiplier(run.time_unit);
      const auto rate = run.counters.find("items_per_second");
      if (rate != run.counters.end()) perSecond[name] = rate->second.value;
    }
  }
  // The first result whose full name (options included) starts and ends so.
  static double find(const std::map<std::string, double>& in, const std::string& start, const std::string& end = "") {
    for (const auto& [name, value] : in)
      if (name.rfind(start, 0) == 0 && name.size() >= end.size() &&
          name.compare(name.size() - end.size(), end.size(), end) == 0)
        return value;
    return 0.0;
  }
  std::map<std::string, double> ns, perSecond;
  bool failed = false;
};

// Prints the summary; false when a hit costs more than its budget.
bool Summarise(const Recorder& r) {
  const double hit = r.find(r.ns, "BM_Request/Hit/"), upstream = r.find(r.ns, "BM_Request/Upstream/");
  bool ok = true;
  if (hit > 0.0 && upstream > 0.0) {
    std::printf(
        "\nCache, per request (CPU time): hit %.1f ns, miss %.1f ns, pass-through %.1f ns; "
        "the Material Blender it saves %.1f ns\n",
        hit, r.find(r.ns, "BM_Request/Miss/"), r.find(r.ns, "BM_Request/PassThrough/"), upstream);
    ok = hit <= kHitBudget * upstream;
    std::printf("  a hit costs %.2f of the upstream (budget %.2f): %s\n", hit / upstream, kHitBudget,
                ok ? "within" : "OVER BUDGET");
  }
  auto name = [](int cached) { return "BM_ThreeConsumers/cached:" + std::to_string(cached) + "/"; };
  auto threads = [](int n) { return "/threads:" + std::to_string(n); };
  auto rate = [&](int cached, int n) { return r.find(r.perSecond, name(cached), threads(n)); };
  auto cpu = [&](int cached, int n) { return r.find(r.ns, name(cached), threads(n)); };
  if (rate(0, 1) > 0.0 && rate(1, 1) > 0.0 && rate(0, 2) > 0.0 && rate(1, 2) > 0.0) {
    // CPU time per spot shows false sharing even on a busy machine, where wall-clock scaling
    // only shows how many cores were free.
    std::printf("\nThree consumers of %d chained correctors: spots per second, and CPU ns per spot\n", kChain);
    std::printf("  %-10s %12s %12s %9s %12s %12s\n", "", "1 thread", "2 threads", "scaling", "CPU 1", "CPU 2");
    for (int cached : {0, 1})
      std::printf("  %-10s %12.0f %12.0f %8.2fx %9.1f ns %9.1f ns\n", cached ? "cached" : "uncached", rate(cached, 1),
                  rate(cached, 2), rate(cached, 2) / rate(cached, 1), cpu(cached, 1), cpu(cached, 2));
    std::printf("  speed-up from the Cache: %.2fx on 1 thread, %.2fx on 2 threads\n", rate(1, 1) / rate(0, 1),
                rate(1, 2) / rate(0, 2));
  }
  std::fflush(stdout);
  return ok;
}

}  // namespace

int main(int argc, char** argv) {
  Recorder recorder;
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks(&recorder);
  benchmark::Shutdown();
  const bool withinBudget = Summarise(recorder);
  if (recorder.failed) std::fprintf(stderr, "\nFAILED: at least one benchmark reported an error (see above)\n");
  return recorder.failed || !withinBudget ? 1 : 0;
}
