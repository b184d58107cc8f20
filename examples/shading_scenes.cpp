// Two scenes that show the shading nodes of vorn.p at work, rendered by lwhost's scene renderer
// on every processor:
//   two-lights.png      a ball lit by a warm key and a cool fill, its diffuse term built by one
//                       Single Light Lambert per light; the floor is lit by the renderer itself
//   cached-network.png  an expensive network (eight chained colour correctors) feeds three
//                       consumers that make up one material, through a Cache; rendered without
//                       the Cache too, to show what it saves and that the picture is the same
//
//   shading_scenes MODULE OUTPUT_DIR
#include <chrono>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>

#include "lwhost/SceneRenderer.h"
#include "lwhost/Session.h"

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr unsigned int kLightChoice = 0x9000;                       // Single Light Lambert
constexpr unsigned int kBrightness = 0x9002, kHue = 0x9004, kSaturation = 0x9005, kInvert = 0x9007;  // corrector
constexpr unsigned int kDiffuseOpacity = 0x9000, kDiffuseMode = 0x9001;  // Material Blender

lwhost::XPanel& PanelOf(lwhost::Session& session, lwhost::PluginNode& node) {
  lwhost::XPanel* panel = session.xpanels().find(node.activateInterface().local.panel);
  if (!panel) throw std::runtime_error("\"" + node.name() + "\" gave no panel");
  return *panel;
}

void Require(bool done, const std::string& what) {
  if (!done) throw std::runtime_error("could not " + what);
}

// A camera, a floor, a ball at the origin and two lights: a warm distant key from the upper
// left and a cool point fill from the right. Returns the ball.
LWItemID Stage(lwhost::Scene& scene) {
  const double origin[3] = {0, 0, 0}, keyTowards[3] = {0.6, -1.0, 0.8}, dim[3] = {1, 1, 1};
  scene.setAmbient(dim, 0.03);
  const LWItemID camera = scene.addCamera("Camera"), ball = scene.addObject("Ball");
  scene.setPosition(camera, 0.0, 2.5, -9.0);
  scene.aim(camera, origin);
  const LWItemID floor = scene.addObject("Floor");
  scene.setPosition(floor, 0.0, -1.0, 0.0);
  scene.setObjectLook(floor, {lwhost::ObjectShape::Plane, {6.0, 1.0, 6.0}});
  const LWItemID key = scene.addLight("Key"), fill = scene.addLight("Fill");
  scene.aim(key, keyTowards);
  scene.setLightLook(key, {LWLIGHT_DISTANT, {1.0, 0.85, 0.6}, 0.9});
  scene.setLightLook(fill, {LWLIGHT_POINT, {0.4, 0.55, 1.0}, 0.6});
  scene.setPosition(fill, 4.0, 1.0, -2.0);
  return ball;
}

lwhost::SceneRenderOptions Options() {
  lwhost::SceneRenderOptions options;
  options.width = 480;
  options.height = 360;
  return options;
}

void Write(const lwhost::Raster& image, const std::string& path) {
  std::string error;
  if (!image.writePng(path, &error)) throw std::runtime_error(error);
  std::printf("wrote %s (%dx%d)\n", path.c_str(), image.width(), image.height());
}

void TwoLights(const std::string& module, const std::string& out) {
  lwhost::Session session;
  const lwhost::ModuleFile& vorn = session.load(module);
  const LWItemID ball = Stage(session.scene());
  lwhost::NodeEditor& editor = session.nodes();
  // Key's term and Fill's term, added as the diffuse channel of a material.
  lwhost::PluginNode& sum = editor.addPluginNode(vorn, "MaterialBlender");
  lwhost::XPanel& mix = PanelOf(session, sum);
  Require(mix.setNumber(kDiffuseOpacity, 1.0) && mix.choose(kDiffuseMode, Blend_Additive), "set the blender");
  const char* inputs[] = {"Bg Diffuse", "Fg Diffuse"};
  for (int light = 0; light < 2; ++light) {
    lwhost::PluginNode& lambert = editor.addPluginNode(vorn, "vornSingleLambertNode");
    Require(PanelOf(session, lambert).choose(kLightChoice, light + 1), "choose a light");
    editor.connect(lambert, "Colour", sum, inputs[light]);
  }
  lwhost::SceneRenderer renderer(editor, session.scene(), {{ball, {sum.output("Material"), {}, true}}});
  Write(renderer.renderFrame(Options(), 0), out + "/two-lights.png");
}

void CachedNetwork(const std::string& module, const std::string& out) {
  lwhost::Session session;
  const lwhost::ModuleFile& vorn = session.load(module);
  const LWItemID ball = Stage(session.scene());
  lwhost::NodeEditor& editor = session.nodes();

  // The expensive part: the spot's normal through eight hue-turning colour correctors.
  lwhost::Node* upstream = &editor.addSpotNormal();
  const char* upstreamOutput = "Normal";
  for (int i = 0; i < 8; ++i) {
    lwhost::PluginNode& cc = editor.addPluginNode(vorn, "SimpleColourCorrector");
    lwhost::XPanel& panel = PanelOf(session, cc);
    // The first turns the normal's -1..1 into 0..2 so that the ball shows every side in colour.
    Require(panel.setNumber(kHue, kPi / 8) && panel.setNumber(kSaturation, 1.1) && panel.setInteger(kInvert, i == 0),
            "set a corrector");
    editor.connect(*upstream, upstreamOutput, cc, "Colour");
    upstream = &cc;
    upstreamOutput = "Colour";
  }
  lwhost::PluginNode& cache = editor.addPluginNode(vorn, "vornCache");
  editor.connect(*upstream, upstreamOutput, cache, "Colour");

  // Three consumers make one material: two diffuse layers and the specular colour.
  lwhost::PluginNode& material = editor.addPluginNode(vorn, "MaterialBlender");
  Require(PanelOf(session, material).setNumber(kDiffuseOpacity, 0.5), "set the blender");
  const char* channels[] = {"Bg Diffuse", "Fg Diffuse", "Bg Specular"};
  lwhost::PluginNode* consumers[3];
  for (int i = 0; i < 3; ++i) {
    consumers[i] = &editor.addPluginNode(vorn, "SimpleColourCorrector");
    lwhost::XPanel& panel = PanelOf(session, *consumers[i]);
    Require(panel.setNumber(kHue, i * 2 * kPi / 3) && panel.setNumber(kBrightness, 1.0 - 0.3 * i) &&
                panel.setInteger(kInvert, i == 2),
            "set a consumer");
    editor.connect(*consumers[i], "Colour", material, channels[i]);
  }

  auto render = [&](lwhost::Node& source, const char* output) {
    for (lwhost::PluginNode* consumer : consumers) editor.connect(source, output, *consumer, "Colour");
    upstream->resetEvaluations();
    lwhost::SceneRenderer renderer(editor, session.scene(), {{ball, {material.output("Material")}}});
    const auto start = std::chrono::steady_clock::now();
    lwhost::Raster image = renderer.renderFrame(Options(), 0);
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    std::printf("  %-13s the network ran %llu times, %.0f ms\n", &source == &cache ? "with Cache:" : "without:",
                static_cast<unsigned long long>(upstream->evaluations()), took.count());
    return image;
  };
  const lwhost::Raster without = render(*upstream, upstreamOutput);
  const lwhost::Raster with = render(cache, "Colour");
  std::printf("  the pictures are %s\n", with.encodePng() == without.encodePng() ? "identical" : "DIFFERENT");
  Write(with, out + "/cached-network.png");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: shading_scenes MODULE OUTPUT_DIR\n");
    return 2;
  }
  try {
    TwoLights(argv[1], argv[2]);
    CachedNetwork(argv[1], argv[2]);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "shading_scenes: %s\n", e.what());
    return 1;
  }
  return 0;
}
