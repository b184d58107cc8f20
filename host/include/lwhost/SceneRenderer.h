#pragma once

#include <lwnodes.h>
#include <lwrender.h>

#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "lwhost/NetworkRenderer.h"
#include "lwhost/Raster.h"

namespace lwhost {

class NodeEditor;
class NodeOutput;
class PluginNode;
class Scene;

// How an object's surface is shaded: a node output, or a plain colour when there is none.
// A material output's channels are coefficients that the renderer lights and traces; a colour
// (or scalar, vector, integer) output is a diffuse colour lit by the lights, unless `emit`
// says that the network lights itself, and the value is then shown as it is.
struct Surface {
  NodeOutput* output = nullptr;
  double colour[3] = {200.0 / 255.0, 200.0 / 255.0, 200.0 / 255.0};  // LightWave's default grey
  bool emit = false;
};

struct SceneRenderOptions {
  int width = 640;
  int height = 480;
  int threads = 0;  // 0: one per processor
  int depth = 16;   // ray recursion: secondary rays reach at most this level
  LWFrame first = 0, last = 0;
  double backdrop[3] = {0.0, 0.0, 0.0};
};

// Renders the scene's objects, lit by its lights and seen by its render camera, on several
// threads at once (see host/RENDERING.md). Every plug-in node of the editor is started once
// with init(LWINIT_RENDER), gets newTime for each frame and cleanup at the end, also when a
// frame fails or the frame callback throws.
class SceneRenderer {
 public:
  using FrameDone = std::function<void(LWFrame frame, const Raster& image)>;
  // The share of the whole range done, 0..1; called on the calling thread several times a
  // second while pixels are rendered.
  using Progress = std::function<void(double done)>;

  // Objects not in `surfaces` get the default Surface. Throws RenderError for a surface whose
  // output cannot be shown (functions).
  SceneRenderer(NodeEditor& editor, Scene& scene, std::map<LWItemID, Surface> surfaces = {});
  ~SceneRenderer();

  // Renders options.first..options.last in order, handing each finished image to `done`.
  // Throws RenderError for bad options, a scene without a camera, or a plug-in refusing init
  // or newTime (naming the frame); what `done` throws is passed on.
  void render(const SceneRenderOptions& options, const FrameDone& done, const Progress& progress = {});
  // One frame.
  Raster renderFrame(const SceneRenderOptions& options, LWFrame frame);

  // The largest recursion depth and thread count accepted.
  static constexpr int kMaxDepth = 32;
  static constexpr int kMaxThreads = 256;

  struct World;

 private:
  void renderPixels(const World& world, Raster& image, int threads, const std::function<void(int rows)>& tick) const;

  NodeEditor& editor_;
  Scene& scene_;
  std::map<LWItemID, Surface> surfaces_;
  std::vector<PluginNode*> plugins_;
};

}  // namespace lwhost
