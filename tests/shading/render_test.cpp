// Single Light Lambert and the Cache in whole renders on every render thread: one Lambert per
// light, summed, must light a white ball exactly as the renderer's own diffuse shading does,
// directly and in its mirror image (ray level 1), with the Cache between network and surface
// or not. ThreadSanitizer runs this one too.
#include <gtest/gtest.h>
#include <lwnodes.h>

#include <algorithm>
#include <string>
#include <thread>

#include "lwhost/SceneRenderer.h"
#include "lwhost/Session.h"
#include "support/ModulePaths.h"

namespace {

TEST(ShadingRender, LambertsAndCacheMatchTheRenderersLightOnAllThreads) {
  lwhost::Session session;
  lwhost::ModuleFile& vorn = session.load(testpaths::kVorn);
  lwhost::Scene& scene = session.scene();
  lwhost::NodeEditor& editor = session.nodes();
  const double origin[3] = {0, 0, 0}, keyAt[3] = {-0.5, -1.0, 1.0};
  scene.setAmbient(origin, 0.0);
  const LWItemID camera = scene.addCamera("Camera"), ball = scene.addObject("Ball");
  const LWItemID mirror = scene.addObject("Mirror"), key = scene.addLight("Key"), fill = scene.addLight("Fill");
  scene.setPosition(camera, 0.0, 4.0, -12.0);
  scene.aim(camera, origin);
  scene.setPosition(mirror, 0.0, -1.0, 0.0);
  scene.setObjectLook(mirror, {lwhost::ObjectShape::Plane, {4.0, 1.0, 4.0}});
  scene.aim(key, keyAt);
  scene.setLightLook(fill, {LWLIGHT_POINT, {1.0, 1.0, 0.5}, 0.4});
  scene.setPosition(fill, 3.0, 2.0, -2.0);

  // Key + Fill through a Material Blender's additive diffuse, then the Cache.
  lwhost::PluginNode& sum = editor.addPluginNode(vorn, "MaterialBlender");
  lwhost::PluginNode& cache = editor.addPluginNode(vorn, "vornCache");
  for (int i = 0; i < 2; ++i) {
    lwhost::PluginNode& lambert = editor.addPluginNode(vorn, "vornSingleLambertNode");
    ASSERT_TRUE(session.xpanels().find(lambert.activateInterface().local.panel)->choose(0x9000, i + 1));
    editor.connect(lambert, "Colour", sum, i == 0 ? "Bg Diffuse" : "Fg Diffuse");
  }
  lwhost::XPanel& mix = *session.xpanels().find(sum.activateInterface().local.panel);
  ASSERT_TRUE(mix.setNumber(0x9000, 1.0) && mix.choose(0x9001, Blend_Additive));
  editor.connect(sum, "Material", cache, "Material");
  const LWNodalMaterial glass{{}, {}, {0.5, 0.5, 0.5}, {}, 0.0};
  const lwhost::Surface mirrorSurface{editor.addMaterial(glass).outputs().front().get()};

  auto render = [&](lwhost::NodeOutput* network) {
    const lwhost::Surface ballSurface{network, {1.0, 1.0, 1.0}, network != nullptr};
    lwhost::SceneRenderOptions options{64, 48, std::max(2, static_cast<int>(std::thread::hardware_concurrency()))};
    return lwhost::SceneRenderer(editor, scene, {{ball, ballSurface}, {mirror, mirrorSurface}})
        .renderFrame(options, 0)
        .encodePng();
  };
  const std::string own = render(nullptr);
  EXPECT_EQ(render(sum.output("Material")), own);
  EXPECT_EQ(render(cache.output("Material")), own);
  EXPECT_EQ(render(cache.output("Material")), own) << "a second render starts from a fresh cache";
}

}  // namespace
