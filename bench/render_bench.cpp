// The demo scene (examples/showroom.scene) ray-traced by lwhost's scene renderer: samples per
// second on one thread and on every core, and the speed-up between them. A render allocates per
// frame (the flattened scene, the image, the threads), never per sample: a frame twice as tall
// must not allocate more.
#include <benchmark/benchmark.h>

#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <string>
#include <thread>

#include "lwhost/NetworkFile.h"
#include "lwhost/SceneRenderer.h"
#include "lwhost/Session.h"
#include "support/AllocationCounter.h"

namespace {

struct DemoScene {
  lwhost::Session session;
  lwhost::BuiltNetwork built;
  std::unique_ptr<lwhost::SceneRenderer> renderer;
  lwhost::SceneRenderOptions options;

  DemoScene() {
    setenv("VORN_MODULE", VORN_MODULE_PATH, 1);
    const lwhost::Network network = lwhost::ReadNetworkFile(DEMO_SCENE_PATH);
    built = lwhost::BuildNetwork(session, network);
    renderer = std::make_unique<lwhost::SceneRenderer>(session.nodes(), session.scene(), built.surfaces);
    options.width = 320;
    options.height = 180;
    options.depth = network.settings.depth;
  }
  lwhost::Raster frame(int threads) {
    options.threads = threads;
    return renderer->renderFrame(options, 0);
  }
};

int Cores() { return static_cast<int>(std::max(1u, std::thread::hardware_concurrency())); }

void BM_DemoScene(benchmark::State& state) {
  DemoScene scene;
  const int threads = static_cast<int>(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(scene.frame(threads));
  state.counters["samples/s"] = benchmark::Counter(double(scene.options.width) * scene.options.height,
                                                   benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(BM_DemoScene)->Arg(1)->Arg(Cores())->UseRealTime()->Unit(benchmark::kMillisecond)->MinTime(1.0);

double CpuSeconds() {
  rusage usage;
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_utime.tv_sec + usage.ru_stime.tv_sec + 1e-6 * (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec);
}

// Wall-clock seconds per frame; `cpu` gets the processor time all threads spent per frame, which
// a busy machine does not distort: threads that add no work of their own keep it level.
double SecondsPerFrame(DemoScene& scene, int threads, double* cpu) {
  scene.frame(threads);  // warm
  const auto start = std::chrono::steady_clock::now();
  const double cpuStart = CpuSeconds();
  constexpr int kFrames = 8;
  for (int i = 0; i < kFrames; ++i) scene.frame(threads);
  *cpu = (CpuSeconds() - cpuStart) / kFrames;
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count() / kFrames;
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();

  DemoScene scene;
  double cpuOne = 0, cpuAll = 0;
  const double one = SecondsPerFrame(scene, 1, &cpuOne), all = SecondsPerFrame(scene, Cores(), &cpuAll);
  std::printf("\ndemo scene %dx%d: %.0f samples/s on 1 thread, %.0f on %d; speed-up %.2fx\n", scene.options.width,
              scene.options.height, scene.options.width * scene.options.height / one,
              scene.options.width * scene.options.height / all, Cores(), one / all);
  std::printf("processor time per frame: %.1f ms on 1 thread, %.1f ms on %d (threads add %.1f %%)\n", cpuOne * 1e3,
              cpuAll * 1e3, Cores(), (cpuAll / cpuOne - 1.0) * 100.0);

  const std::uint64_t before = bench::AllocationCount();
  scene.frame(2);
  const std::uint64_t small = bench::AllocationCount() - before;
  scene.options.height *= 2;
  scene.frame(2);
  const std::uint64_t tall = bench::AllocationCount() - before - small;
  std::printf("allocations per frame: %llu at %d rows, %llu at %d\n", static_cast<unsigned long long>(small),
              scene.options.height / 2, static_cast<unsigned long long>(tall), scene.options.height);
  if (tall > small) {
    std::printf("FAILED: a taller frame allocated more, so something allocates per row or sample\n");
    return 1;
  }
  return 0;
}
