#include "lwhost/SceneRenderer.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>

#include "RayTracer.h"
#include "RenderWorld.h"
#include "lwhost/NodeConnector.h"
#include "lwhost/NodeEditor.h"
#include "lwhost/NodeValue.h"
#include "lwhost/PluginNode.h"
#include "lwhost/Scene.h"

namespace lwhost {

namespace {

std::uint8_t Byte(double c) {
  if (!(c > 0.0)) return 0;  // NaN as well
  return static_cast<std::uint8_t>(std::min(c, 1.0) * 255.0 + 0.5);
}

int DefaultThreads() { return static_cast<int>(std::max(1u, std::thread::hardware_concurrency())); }

}  // namespace

SceneRenderer::SceneRenderer(NodeEditor& editor, Scene& scene, std::map<LWItemID, Surface> surfaces)
    : editor_(editor), scene_(scene), surfaces_(std::move(surfaces)) {
  for (const auto& [id, surface] : surfaces_) {
    if (!surface.output) continue;
    const ConnectionType type = surface.output->type();
    if (type == NOT_FUNCTION || NodeValueSize(type) == 0)
      throw RenderError("output \"" + surface.output->name() + "\" of \"" + surface.output->node().name() +
                        "\" is a " + ConnectionTypeName(type) + ", which cannot shade a surface");
  }
  for (const auto& node : editor.nodes())
    if (auto* plugin = dynamic_cast<PluginNode*>(node.get())) plugins_.push_back(plugin);
}

SceneRenderer::~SceneRenderer() = default;

Raster SceneRenderer::renderFrame(const SceneRenderOptions& options, LWFrame frame) {
  SceneRenderOptions one = options;
  one.first = one.last = frame;
  Raster result(0, 0);
  render(one, [&result](LWFrame, const Raster& image) { result = image; });
  return result;
}

void SceneRenderer::render(const SceneRenderOptions& options, const FrameDone& done, const Progress& progress) {
  if (options.width < 1 || options.height < 1 || options.width > Raster::kMaxSide || options.height > Raster::kMaxSide)
    throw RenderError("the image must be 1 to " + std::to_string(Raster::kMaxSide) + " pixels a side, not " +
                      std::to_string(options.width) + "x" + std::to_string(options.height));
  if (options.depth < 0 || options.depth > kMaxDepth)
    throw RenderError("the ray recursion depth must be 0 to " + std::to_string(kMaxDepth) + ", not " +
                      std::to_string(options.depth));
  if (options.threads < 0 || options.threads > kMaxThreads)
    throw RenderError("the thread count must be 1 to " + std::to_string(kMaxThreads) + ", not " +
                      std::to_string(options.threads));
  if (options.last < options.first)
    throw RenderError("the last frame (" + std::to_string(options.last) + ") comes before the first (" +
                      std::to_string(options.first) + ")");
  if (scene_.items(LWI_CAMERA).empty()) throw RenderError("the scene has no camera to render with");
  const int threads = options.threads > 0 ? options.threads : DefaultThreads();

  // Plug-ins read the render's settings at init, as in LightWave.
  const LWSceneInfo before = scene_.sceneInfo();
  scene_.editSceneInfo([&](LWSceneInfo& info) {
    info.frameWidth = options.width;
    info.frameHeight = options.height;
    info.limitedRegion[0] = info.limitedRegion[1] = 0;
    info.limitedRegion[2] = options.width - 1;
    info.limitedRegion[3] = options.height - 1;
    info.frameStart = options.first;
    info.frameEnd = options.last;
    info.frameStep = 1;
    info.recursionDepth = options.depth;
    info.numThreads = threads;
    info.renderOpts |= LWROPT_SHADOWTRACE | LWROPT_REFLECTTRACE | LWROPT_REFRACTTRACE | LWROPT_RTTRANSPARENCIES;
    info.rendermode = options.first == options.last ? lwrm_Frame : lwrm_Scene;
  });

  std::vector<PluginNode*> started;
  auto stop = [&] {
    for (auto it = started.rbegin(); it != started.rend(); ++it) (*it)->cleanup();
    started.clear();
    scene_.editSceneInfo([&](LWSceneInfo& info) { info.rendermode = before.rendermode; });
  };
  try {
    for (PluginNode* node : plugins_) {
      const std::string error = node->init(LWINIT_RENDER);
      if (!error.empty()) throw RenderError("node \"" + node->name() + "\" could not start rendering: " + error);
      started.push_back(node);
    }
    const double frames = static_cast<double>(options.last) - options.first + 1.0;
    for (LWFrame frame = options.first; frame <= options.last; ++frame) {
      scene_.setFrame(frame);
      const LWTime time = scene_.time();
      for (PluginNode* node : plugins_) {
        const std::string error = node->newTime(frame, time);
        if (!error.empty())
          throw RenderError("frame " + std::to_string(frame) + ": node \"" + node->name() + "\" failed: " + error);
      }
      const World world(scene_, surfaces_, options, editor_);
      Raster image(options.width, options.height);
      const double base = (frame - options.first) / frames;
      renderPixels(world, image, threads, [&](int rows) {
        if (progress) progress(base + rows / (frames * options.height));
      });
      done(frame, image);
      if (frame == options.last) break;  // LWFrame's largest value
    }
  } catch (...) {
    stop();
    throw;
  }
  stop();
}

void SceneRenderer::renderPixels(const World& world, Raster& image, int threads,
                                 const std::function<void(int rows)>& tick) const {
  std::atomic<int> nextRow{threads}, rowsDone{0};
  std::mutex mutex;
  std::condition_variable finished;
  int running = threads;

  // Each thread starts on its own row, so that every thread takes part even in a small image;
  // the rest are handed out one at a time, so that threads meeting slow rows hold no one up.
  auto work = [&](int thread) {
    RayTracer tracer(world, thread);
    for (int y = thread; y < world.height; y = nextRow++) {
      for (int x = 0; x < world.width; ++x) {
        double c[3];
        tracer.pixel(x, y, c);
        image.set(x, y, RGB{Byte(c[0]), Byte(c[1]), Byte(c[2])});
      }
      rowsDone.fetch_add(1, std::memory_order_relaxed);
    }
    std::lock_guard<std::mutex> lock(mutex);
    if (--running == 0) finished.notify_one();
  };

  std::vector<std::thread> pool;
  pool.reserve(threads);
  int started = 0;
  try {
    for (; started < threads; ++started) pool.emplace_back(work, started);
  } catch (const std::system_error&) {
    // The system would not give us more threads: this one does the rest of the work.
    for (int t = started; t < threads; ++t) work(t);
  }
  // A progress callback that throws must not leave threads running over this frame.
  std::exception_ptr failure;
  auto report = [&](int rows) {
    if (failure) return;
    try {
      tick(rows);
    } catch (...) {
      failure = std::current_exception();
    }
  };
  {
    std::unique_lock<std::mutex> lock(mutex);
    while (!finished.wait_for(lock, std::chrono::milliseconds(100), [&] { return running == 0; })) {
      lock.unlock();
      report(rowsDone.load(std::memory_order_relaxed));
      lock.lock();
    }
  }
  for (auto& t : pool) t.join();
  report(world.height);
  if (failure) std::rethrow_exception(failure);
}

}  // namespace lwhost
