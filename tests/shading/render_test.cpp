// Single Light Lambert and the Cache in whole renders on every render thread: a Lambert must
// light a white ball exactly as the renderer's own diffuse shading does, directly and in its
// mirror image (ray level 1), with the Cache between it and the surface or not.
// ThreadSanitizer runs this one too.
#include <gtest/gtest.h>
#include <lwnodes.h>

#include <algorithm>
#include <string>
#include <thread>

#include "lwhost/SceneRenderer.h"
#include "lwhost/Session.h"
#include "support/ModulePaths.h"

namespace {

TEST(ShadingRender, LambertAndCacheMatchTheRenderersLightOnAllThreads) {
  lwhost::Session session;
  lwhost::Scene& scene = session.scene();
  lwhost::NodeEditor& editor = session.nodes();
  const double origin[3] = {0, 0, 0};
  scene.setAmbient(origin, 0.0);
  const LWItemID camera = scene.addCamera("Camera"), ball = scene.addObject("Ball");
  const LWItemID mirror = scene.addObject("Mirror"), key = scene.addLight("Key");
  scene.setPosition(camera, 0.0, 4.0, -12.0);
  scene.aim(camera, origin);
  scene.setPosition(mirror, 0.0, -1.0, 0.0);
  scene.setObjectLook(mirror, {lwhost::ObjectShape::Plane, {4.0, 1.0, 4.0}});
  scene.setLightLook(key, {LWLIGHT_POINT});
  scene.setPosition(key, -3.0, 5.0, -4.0);
  scene.setPosition(ball, 0.5, 0.0, 0.0);  // so that world and object positions differ

  lwhost::PluginNode& lambert = editor.addPluginNode(session.load(testpaths::kVorn), "vornSingleLambertNode");
  lwhost::PluginNode& cache = editor.addPluginNode(lambert.module(), "vornCache");
  ASSERT_TRUE(session.xpanels().find(lambert.activateInterface().local.panel)->choose(0x9000, 1));
  editor.connect(lambert, "Colour", cache, "Colour");
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
  EXPECT_EQ(render(lambert.output("Colour")), own);
  EXPECT_EQ(render(cache.output("Colour")), own);
  EXPECT_EQ(render(cache.output("Colour")), own) << "a second render starts from a fresh cache";
}

}  // namespace
