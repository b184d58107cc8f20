// Scenes rendered through the library, shaded by a plain-C SDK node that walks the lights and
// calls illuminate: what the object, light and camera services report, the light arriving at
// known spots, mirror rays, threads, and the sphere preview's polygon numbers; and through
// lwhost render: an unwritable output fails before the render, frame ranges write numbered
// files and stop at a failing frame without leaving part of it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <lwserver.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "cli/CliSupport.h"
#include "lwhost/NetworkFile.h"
#include "lwhost/NetworkRenderer.h"
#include "lwhost/SceneRenderer.h"
#include "lwhost/Session.h"

namespace {

using lwhost::RGB;

constexpr double kPi = 3.14159265358979323846;

const std::string kProbe = "module probe \"" LIGHT_PROBE_PATH "\"\nnode p = probe LightProbe\n";

struct SceneRun {
  lwhost::Session session;
  lwhost::BuiltNetwork built;
  lwhost::SceneRenderOptions options;

  explicit SceneRun(const std::string& text) {
    const lwhost::Network network = lwhost::ParseNetwork(kProbe + text, "test.scene");
    built = lwhost::BuildNetwork(session, network);
    options.width = options.height = 9;
    options.threads = 1;
    if (network.settings.depth >= 0) options.depth = network.settings.depth;
  }
  lwhost::Raster render(LWFrame frame = 0) {
    return lwhost::SceneRenderer(session.nodes(), session.scene(), built.surfaces).renderFrame(options, frame);
  }
  template <class T>
  T* global(const char* name) {
    return static_cast<T*>(session.host().globals().lookup(name, GFUSE_TRANSIENT));
  }
};

std::uint8_t Byte(double c) { return static_cast<std::uint8_t>(std::lround(255.0 * c)); }

// A floor seen straight down; the centre pixel is the spot at the origin, normal +Y.
const std::string kFloorView =
    "camera cam position 0 5 0 target 0 0 0\n"
    "object floor plane scale 4 1 4 surface p.Lambert emit\n";

TEST(SceneServices, ReportTheScenesItemsInLightWavesOrderAndUnits) {
  SceneRun run(
      "camera cam position 0 1 -5 target 0 1 0 zoom 2\n"
      "light key spot position 0 4 0 target 0 0 0 colour 1 0.5 0.25 intensity 0.8 cone 30 10\n"
      "light fill point falloff inverse2 3 shadows off\n"
      "object ball sphere scale 2 shadows off\n"
      "object floor plane scale 5 1 6\n");
  auto* items = run.global<LWItemInfo>(LWITEMINFO_GLOBAL);
  auto* lights = run.global<LWLightInfo>(LWLIGHTINFO_GLOBAL);
  auto* objects = run.global<LWObjectInfo>(LWOBJECTINFO_GLOBAL);
  auto* cameras = run.global<LWCameraInfo>(LWCAMERAINFO_GLOBAL);
  ASSERT_TRUE(items && lights && objects && cameras);
  EXPECT_EQ(run.global<void>("LW Light Info 3"), lights);
  EXPECT_EQ(run.global<void>("LW Object Info 4"), objects);
  EXPECT_EQ(run.global<void>("LW Camera Info 2"), cameras);

  const LWItemID key = items->first(LWI_LIGHT, LWITEM_NULL), fill = items->next(key);
  ASSERT_TRUE(key && fill);
  EXPECT_STREQ(items->name(key), "key");
  EXPECT_STREQ(items->name(fill), "fill");
  EXPECT_EQ(items->next(fill), LWITEM_NULL);
  EXPECT_EQ(lights->type(key), LWLIGHT_SPOT);
  EXPECT_EQ(lights->type(fill), LWLIGHT_POINT);
  LWDVector c;
  lights->color(key, 0, c);
  EXPECT_DOUBLE_EQ(c[1], 0.4);
  lights->rawColor(key, 0, c);
  EXPECT_DOUBLE_EQ(c[2], 0.25);
  double radius = 0, edge = 0;
  lights->coneAngles(key, 0, &radius, &edge);
  EXPECT_NEAR(radius, kPi / 6, 1e-12);
  EXPECT_NEAR(edge, kPi / 18, 1e-12);
  EXPECT_EQ(lights->falloff(fill), LWLFALL_INV_DIST_2);
  EXPECT_DOUBLE_EQ(lights->range(fill, 0), 3.0);
  EXPECT_EQ(lights->shadowType(key), LWLSHAD_RAYTRACE);
  EXPECT_EQ(lights->shadowType(fill), LWLSHAD_OFF);
  // The spot was aimed straight down at its target.
  items->param(key, LWIP_W_FORWARD, 0, c);
  EXPECT_NEAR(c[1], -1.0, 1e-12);

  const LWItemID ball = items->first(LWI_OBJECT, LWITEM_NULL), floor = items->next(ball);
  EXPECT_EQ(objects->numPolygons(ball), 288);
  EXPECT_EQ(objects->numPolygons(floor), 1);
  EXPECT_EQ(objects->shadowOpts(ball), 0u);
  EXPECT_EQ(objects->shadowOpts(floor), unsigned(LWOSHAD_SELF | LWOSHAD_CAST | LWOSHAD_RECEIVE));
  LWDVector lo, hi;
  objects->bounds(floor, lo, hi);
  EXPECT_EQ(hi[2], 6.0);
  EXPECT_EQ(hi[1], 0.0);
  EXPECT_EQ(objects->numPoints(key), 0);  // a light is no object

  const LWItemID cam = items->first(LWI_CAMERA, LWITEM_NULL);
  EXPECT_EQ(cameras->zoomFactor(cam, 0), 2.0);
  double h = 0, v = 0;
  cameras->fovAngles(cam, 0, &h, &v);
  EXPECT_NEAR(h, 2 * std::atan(0.5), 1e-12);
  EXPECT_NEAR(v, 2 * std::atan(0.5 * 480 / 640), 1e-12);

  run.session.host().actAs(lwhost::Application::Modeler);
  EXPECT_EQ(lights->type(key), 0);
  EXPECT_EQ(objects->numPolygons(ball), 0);
  EXPECT_EQ(cameras->zoomFactor(cam, 0), 0.0);
}

TEST(SceneRender, IlluminateGivesTheLightArrivingAtTheSpot) {
  auto centre = [](const std::string& scene) { return SceneRun(kFloorView + scene).render().get(4, 4); };
  // Inverse-square falloff from range 1 at distance 2, straight above.
  EXPECT_EQ(centre("light l point position 0 2 0 falloff inverse2 1\n").r, Byte(0.25));
  // Below the floor: it arrives, but on the back of the surface.
  EXPECT_EQ(centre("light l point position 0 -2 0 falloff inverse2 1\n").r, 0);
  // At 45 degrees: 1/8 of the light, times cos 45.
  const std::string slanted = "light l point position 2 2 0 falloff inverse2 1";
  const std::uint8_t lit = Byte(0.125 * std::sqrt(0.5));
  EXPECT_EQ(centre(slanted + "\n").g, lit);
  const std::string blocker = "object blocker sphere position 1 1 0 scale 0.3 colour 0 0 0\n";
  EXPECT_EQ(centre(slanted + "\n" + blocker).g, 0);
  EXPECT_EQ(centre(slanted + " shadows off\n" + blocker).g, lit);
  // Linear falloff ends at its range; a spot lights only inside its cone; lights add up.
  EXPECT_EQ(centre("light l point position 0 2 0 falloff linear 1.5\n").b, 0);
  EXPECT_EQ(centre("light l spot position 3 3 0 target 3 0 0 cone 30 0\n").r, 0);
  EXPECT_EQ(centre("light l spot position 0 3 0 target 0 0 0 colour 0.5 0 0\n"
                   "light d distant target 0 -1 0 colour 0 0.25 0\n"),
            (RGB{Byte(0.5), Byte(0.25), 0}));
}

TEST(SceneRender, MirrorRaysComeFromTheFloorOneLevelDeeperAndStopAtTheDepth) {
  // The camera looks at a mirror floor, or a floor tracing on its own (held to the same depth);
  // the reflected centre ray goes up to the ball. Between two mirrors the ball is two
  // reflections away: seen at level 2 from the top mirror. Seen directly, it is a camera ray's.
  const std::string view = "node mirror = Material reflection 1 1 1\ncamera cam position 0 1 -5 target 0 0 0\n",
                    floor = "object floor plane scale 50 1 50 surface ", mirror = floor + "mirror.Material\n",
                    ball = "object ball sphere position 0 1 5 scale 1.5 surface p.Ray emit\n",
                    plainBall = "object ball sphere position 0 1 5 scale 1.5 colour 0.6 0.2 0.2\n",
                    top = "object top plane position 0 2 0 scale 50 1 50 surface mirror.Material\n",
                    far = "object ball sphere position 0 1.5 12.5 scale 0.4 surface p.Ray emit\n";
  const std::pair<std::string, RGB> cases[] = {
      {view + mirror + ball + "depth 3\n", {Byte(0.25), 255, 255}},
      {view + mirror + ball + "depth 0\n", {0, 0, 0}},
      {view + floor + "p.Trace emit\n" + ball + "depth 1\n", {Byte(0.25), 255, 255}},
      {view + floor + "p.Trace emit\n" + ball + "depth 0\n", {0, 0, 0}},
      // rayShade finds the ball's own colour, unlit (no lights here), one level below the floor.
      {view + floor + "p.Shade emit\n" + plainBall + "depth 1\n", {Byte(0.6), Byte(0.25), 255}},
      {view + floor + "p.Shade emit\n" + plainBall + "depth 0\n", {0, 0, 0}},
      {"camera cam position 0 1 -5 target 0 1 5\nobject ball sphere position 0 1 5 surface p.Ray emit\n", {0, 0, 0}},
      {view + mirror + top + far + "depth 2\n", {Byte(0.5), 255, 0}},
      {view + mirror + top + far + "depth 1\n", {0, 0, 0}}};
  for (const auto& [scene, centre] : cases) EXPECT_EQ(SceneRun(scene).render().get(4, 4), centre) << scene;
}

TEST(SceneRender, ThreadsStayBelowTheReportedCountAndDoNotChangeThePicture) {
  SceneRun threads("camera cam position 0 5 0 target 0 0 0\nobject floor plane scale 9 1 9 surface p.Thread emit\n");
  threads.options.width = threads.options.height = 32;
  threads.options.threads = 3;
  const lwhost::Raster seen = threads.render();
  std::set<int> values;
  for (int y = 0; y < 32; ++y)
    for (int x = 0; x < 32; ++x) values.insert(seen.get(x, y).r);
  EXPECT_EQ(values, (std::set<int>{Byte(0.25), Byte(0.5), Byte(0.75)}));

  const std::string scene = kFloorView +
                            "node glass = Material diffuse 0.3 0.3 0.6 reflection 0.3 0.3 0.3 transparency 0.4\n"
                            "light l point position 1 2 1 falloff inverse 2\n"
                            "light s spot position -1 3 0 target 0 0 0\n"
                            "object ball sphere position 0.5 0.6 0 scale 0.5 surface glass.Material\n";
  SceneRun one(scene), many(scene);
  one.options.width = many.options.width = 40;
  one.options.height = many.options.height = 30;
  many.options.threads = 4;
  EXPECT_TRUE(one.render().encodePng() == many.render().encodePng());
}

TEST(SceneRender, OddScenesRenderAndBadOnesAreRefusedByLine) {
  // No light, a zero-size object, the camera inside a sphere: only the ambient light of the
  // default grey surface, seen from inside.
  SceneRun odd("camera cam\nobject flat sphere scale 0\nobject around sphere scale 3\n");
  EXPECT_EQ(odd.render().get(4, 4).r, Byte(0.05 * 200 / 255));

  const std::pair<std::string, std::string> bad[] = {
      {"camera c\nobject o cube\n", "test.scene:4: expected: object NAME sphere|plane"},
      {"camera c\nobject o sphere surface q.Colour\n", "test.scene:4: no node \"q\" is declared above"},
      {"camera c\nlight l distant falloff linear 2\n", "test.scene:4: \"falloff\" is not a setting of a distant light"},
      {"camera c\ndepth 99\n", "test.scene:4: expected: depth N, a whole number 0 to 32"},
      {"camera c position 1 1 1 target 1 1 1\n", "test.scene:3: the target is where the camera is"},
      {"object o sphere\n", "test.scene: a scene needs a camera line"},
      {"camera c\noutput p.Ray\n", "test.scene: a scene shades its objects through their surfaces"},
  };
  for (const auto& [text, error] : bad)
    EXPECT_THAT([&] { SceneRun{text}; }, ::testing::ThrowsMessage<lwhost::NetworkError>(::testing::StartsWith(error)))
        << text;
}

std::string WriteScene(const std::string& name, const std::string& body) {
  const std::string path = cli::OutputPath(name);
  std::ofstream(path) << kProbe << body;
  return path;
}

TEST(PreviewRender, SpotsCarryTheQuadOfTheSphereTheyLieOn) {
  // Three renders show polNum three bits at a time; the quad is worked out here afresh from the
  // spot's angles, away from the quads' edges.
  constexpr int kSide = 64;
  std::vector<int> polygon(kSide * kSide, 0);
  for (int part = 0; part < 3; ++part) {
    lwhost::Session session;
    const std::string text = kProbe + "output p.Poly" + std::to_string(part) + "\n";
    const lwhost::BuiltNetwork built = lwhost::BuildNetwork(session, lwhost::ParseNetwork(text, "preview.net"));
    const lwhost::Raster image =
        lwhost::NetworkRenderer(session.nodes(), session.scene(), *built.output).render({kSide, kSide, 0});
    for (int i = 0; i < kSide * kSide; ++i) {
      const RGB c = image.get(i % kSide, i / kSide);  // lit, so a set bit shows at 38 or more
      polygon[i] |= ((c.r > 19) | (c.g > 19) << 1 | (c.b > 19) << 2) << (3 * part);
    }
  }
  const double radius = 0.5 * lwhost::NetworkRenderer::kSphereFill * kSide;
  const double segment = 2 * kPi / lwhost::kSphereSegments, ring = kPi / lwhost::kSphereRings;
  int checked = 0;
  for (int y = 0; y < kSide; ++y)
    for (int x = 0; x < kSide; ++x) {
      const double u = (x + 0.5 - kSide / 2.0) / radius, v = (kSide / 2.0 - y - 0.5) / radius;
      if (u * u + v * v > 1.0) continue;
      // Round Y from -Z towards -X, and down from +Y.
      const double round = std::atan2(-u, -std::sqrt(1.0 - u * u - v * v)) + 2 * kPi, down = std::acos(v);
      const auto edge = [](double a, double step) { return std::fabs(std::remainder(a, step)) < 1e-9; };
      if (edge(round, segment) || edge(down, ring)) continue;
      const int expected = static_cast<int>(down / ring) * lwhost::kSphereSegments +
                           static_cast<int>(std::fmod(round, 2 * kPi) / segment);
      EXPECT_EQ(polygon[y * kSide + x], expected) << x << "," << y;
      ++checked;
    }
  EXPECT_GT(checked, 2500);
}

TEST(RenderFiles, UnwritableOutputsFailBeforeTheRender) {
  // Rendered in full this would take minutes: two facing mirrors at 8192 x 8192, depth 32.
  const std::string scene = WriteScene("slow.scene",
                                       "node mirror = Material reflection 1 1 1\ndepth 32\nsize 8192x8192\n"
                                       "camera cam position 0 1 0 target 0 1 1\n"
                                       "object a plane scale 99 1 99 surface mirror.Material\n"
                                       "object b plane position 0 2 0 scale 99 1 99 surface mirror.Material\n");
  const std::string missing = cli::OutputPath("no-such-folder") + "/x.png";
  std::vector<std::pair<std::string, std::string>> cases = {{missing, "No such file or directory"}};
#ifndef _WIN32
  cases.push_back({"/dev/full", "No space left on device"});  // Windows has no always-full device
#endif
  for (const auto& [out, why] : cases) {
    std::vector<std::string> words = {LWHOST_PATH, "render", scene, "-o", out};
#ifndef _WIN32
    words.insert(words.begin(), {"timeout", "20"});  // Windows has no timeout; ctest's bounds it there
#endif
    const CommandResult run = RunCommand(words);
    EXPECT_EQ(run.status, 1) << run.output;
    EXPECT_EQ(run.output, "lwhost: cannot write " + out + ": " + why + "\n");
  }
}

TEST(RenderFiles, FrameRangesWriteNumberedFilesAndStopAtAFailingFrame) {
  const std::string body = "camera cam position 0 5 0 target 0 0 0\nlight l point position 0 2 0\n"
                           "object floor plane scale 9 1 9 surface p.Lambert emit\n";
  const std::string scene = WriteScene("frames.scene", body), pattern = cli::OutputPath("f_%04d.png");
  const std::string dir = pattern.substr(0, pattern.rfind("f_"));  // with the separator the system put there
  for (const char* name : {"f_0011.png", "f_0012.png", "f_0013.png", "f_0013.png.partial"}) cli::OutputPath(name);

  const CommandResult run = cli::Lwhost({"render", scene, "-o", pattern, "--frames", "11-14", "--size", "300x200"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.output, "wrote " + dir + "f_0011.png (300x200)\nwrote " + dir +
                            "f_0012.png (300x200)\nlwhost: frame 13: node \"p\" failed: unlucky frame\n");
  EXPECT_FALSE(std::filesystem::exists(dir + "f_0013.png"));
  EXPECT_FALSE(std::filesystem::exists(dir + "f_0013.png.partial"));
  // The rows streamed to the file, in several stored blocks, are those of the frame encoded whole.
  SceneRun same(body);
  same.options.width = 300;
  same.options.height = 200;
  EXPECT_TRUE(cli::ReadFile(dir + "f_0012.png") == same.render(12).encodePng());

  // Failing on the first frame, whose file was opened before the render: nothing is left.
  EXPECT_EQ(cli::Lwhost({"render", scene, "-o", pattern, "--frames", "13-14"}).status, 1);
  EXPECT_FALSE(std::filesystem::exists(dir + "f_0013.png.partial"));
  EXPECT_EQ(cli::Lwhost({"render", scene, "-o", cli::OutputPath("plain.png"), "--frames", "1-2"}).status, 2);
  // A network is one frame on one thread: asking for more is refused, not ignored.
  const std::string network = WriteScene("one.net", "node c = Color 1 0 0\noutput c.Color\n");
  const std::vector<std::string> refused[] = {
      {"--frames", "1-2", "a network renders one frame (--frame N)"},
      {"--threads", "2", "a network renders on one thread"}};
  for (const auto& r : refused)
    EXPECT_EQ(cli::Lwhost({"render", network, "-o", cli::OutputPath("net.png"), r[0], r[1]}).output,
              "lwhost: " + r[0] + " renders scenes; " + r[2] + "; see lwhost --help\n");
}

}  // namespace
