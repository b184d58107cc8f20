// lwhost render: the colour at the sphere's centre is the output's value under the documented
// lighting, values typed into panels and keyed envelopes reach the plug-ins, --frame drives
// time, and every bad network gets one line naming its line.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "CliSupport.h"
#include "PngFile.h"

namespace {

using cli::Lwhost;
using cli::OutputPath;
using lwhost::RGB;

// The lighting host/RENDERING.md documents: ambient 0.15, the rest Lambert towards (-1, 1, 2).
// At the centre of the sphere the normal is (0, 0, 1).
const double kShadeAtCentre = 0.15 + 0.85 * 2.0 / std::sqrt(6.0);
constexpr int kSide = 33;  // odd, so the centre pixel sits exactly on the sphere's pole
constexpr int kCentre = kSide / 2;

std::uint8_t Lit(double c) { return static_cast<std::uint8_t>(std::lround(255.0 * c * kShadeAtCentre)); }
RGB LitColour(double r, double g, double b) { return RGB{Lit(r), Lit(g), Lit(b)}; }

std::string WriteNetwork(const std::string& name, const std::string& text) {
  const std::string path = OutputPath(name);
  std::ofstream(path, std::ios::binary) << text;
  return path;
}

std::string VornLine() { return std::string("module vorn \"") + testpaths::kVorn + "\"\n"; }

// Renders a network at a frame and reads the picture back.
PngImage Render(const std::string& name, const std::string& text, int frame = 0, const std::string& environment = "") {
  const std::string network = WriteNetwork(name + ".net", text), out = OutputPath(name + ".png");
  const CommandResult run =
      Lwhost({"render", network, "-o", out, "--size", std::to_string(kSide) + "x" + std::to_string(kSide), "--frame",
              std::to_string(frame)},
             environment);
  EXPECT_EQ(run.status, 0) << run.output;
  EXPECT_EQ(run.output, "wrote " + out + " (33x33)\n");
  return ReadPng(out);
}

RGB Centre(const PngImage& image) { return image.empty() ? RGB{} : image.at(kCentre, kCentre); }

std::string Text(const RGB& c) { return std::to_string(c.r) + " " + std::to_string(c.g) + " " + std::to_string(c.b); }

TEST(RenderCommand, ConstantColourThroughANeutralCorrectorIsLitAtTheCentre) {
  const PngImage image = Render("neutral",
                                "module vorn ${CLI_TEST_MODULE}\n"
                                "node base = Color 0.8 0.3 0.1\n"
                                "node cc = vorn SimpleColourCorrector\n"
                                "connect base.Color -> cc.Colour\n"
                                "output cc.Colour\n",
                                0, "CLI_TEST_MODULE=" + cli::ShellQuoted(testpaths::kVorn));
  ASSERT_FALSE(image.empty());
  EXPECT_EQ(Text(Centre(image)), Text(LitColour(0.8, 0.3, 0.1)));
  // Outside the sphere: the checker, unlit (16-pixel squares, light one at the top left).
  EXPECT_EQ(Text(image.at(0, 0)), "112 112 112");
  EXPECT_EQ(Text(image.at(kCentre, 0)), "72 72 72");
  // The light comes from the upper left: that side of the sphere is the brighter one.
  EXPECT_GT(image.at(6, kCentre - 6).r, image.at(kSide - 7, kCentre + 6).r);
}

TEST(RenderCommand, TypedValuesAndMaterialsReachThePicture) {
  // Pure red turned by 120 degrees is pure green: the angle arrives in radians.
  const PngImage hue = Render("hue", VornLine() +
                                         "node base = Color 1 0 0\n"
                                         "node cc = vorn SimpleColourCorrector\n"
                                         "set cc \"Hue\" 120\n"
                                         "connect base.Color -> cc.Colour\n"
                                         "output cc.Colour\n");
  EXPECT_EQ(Text(Centre(hue)), Text(LitColour(0, 1, 0)));

  // 50 % Multiply of the diffuse channels: 0.5 * bg + 0.5 * bg * fg; a material shows its diffuse.
  const PngImage blend = Render("blend", VornLine() +
                                             "node bg = Material diffuse 0.9 0.6 0.2 specular 1 1 1\n"
                                             "node fg = Material diffuse 0.3 0.5 1.0 transparency 0.5\n"
                                             "node mix = vorn MaterialBlender\n"
                                             "set mix \"Diffuse Mode\" Multiply\n"
                                             "set mix \"Diffuse Opacity\" 50 %\n"
                                             "connect bg.Material -> mix.\"Bg Material\"\n"
                                             "connect fg.Material -> mix.Fg Material\n"
                                             "output mix.Material\n");
  EXPECT_EQ(Text(Centre(blend)), Text(LitColour(0.585, 0.45, 0.2)));
}

TEST(RenderCommand, FrameDrivesTimeInfoAndKeyedEnvelopes) {
  const std::string time = VornLine() +
                           "fps 24\n"
                           "node t = vorn vornTimeInfo\n"
                           "output t.Time\n";
  EXPECT_EQ(Text(Centre(Render("time-0", time, 0))), "0 0 0");
  EXPECT_EQ(Text(Centre(Render("time-12", time, 12))), Text(LitColour(0.5, 0.5, 0.5)));
  EXPECT_EQ(Text(Centre(Render("time-24", time, 24))), Text(LitColour(1, 1, 1)));

  // Brightness keyed 0 % at frame 4, 100 % at 14, 50 % at 24: held before the first key (the
  // parameter's own 100 % plays no part), straight lines in between, held after the last.
  const std::string keyed = VornLine() +
                            "node white = Color 1 1 1\n"
                            "node cc = vorn SimpleColourCorrector\n"
                            "key cc \"Brightness\" 4 0 14 100 24 50\n"
                            "connect white.Color -> cc.Colour\n"
                            "output cc.Colour\n";
  EXPECT_EQ(Text(Centre(Render("keyed-0", keyed, 0))), "0 0 0");
  EXPECT_EQ(Text(Centre(Render("keyed-7", keyed, 7))), Text(LitColour(0.3, 0.3, 0.3)));
  EXPECT_EQ(Text(Centre(Render("keyed-19", keyed, 19))), Text(LitColour(0.75, 0.75, 0.75)));
  EXPECT_EQ(Text(Centre(Render("keyed-30", keyed, 30))), Text(LitColour(0.5, 0.5, 0.5)));
}

std::string ReadText(const std::string& path) {
  std::ifstream in(path);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// Pixels whose centre falls on the sphere, which fills 0.9 of the picture's side.
long SpherePixels(int side) {
  const double radius = 0.45 * side, centre = 0.5 * side;
  long n = 0;
  for (int y = 0; y < side; ++y)
    for (int x = 0; x < side; ++x) {
      const double u = x + 0.5 - centre, v = y + 0.5 - centre;
      n += u * u + v * v <= radius * radius;
    }
  return n;
}

TEST(RenderCommand, EveryPluginNodeIsStartedTimedAndCleanedUpAroundThePixels) {
  const std::string network = WriteNetwork("probes.net", std::string("module probe \"") + CLI_PROBE_MODULE_PATH +
                                                             "\"\n"
                                                             "node shown = probe cliProbe\n"
                                                             "node idle = probe cliProbe\n"
                                                             "output shown.Colour\n");
  const std::string log = OutputPath("probes.log"), out = OutputPath("probes.png");
  CommandResult run = Lwhost({"render", network, "-o", out, "--size", "33x33", "--frame", "12"},
                             "CLI_PROBE_LOG=" + cli::ShellQuoted(log));
  ASSERT_EQ(run.status, 0) << run.output;
  // The default scene runs at 30 frames per second; clean-up goes in reverse order.
  EXPECT_EQ(ReadText(log),
            "1 init 1\n2 init 1\n1 newTime 12 0.4\n2 newTime 12 0.4\n2 cleanup evaluations=0\n"
            "1 cleanup evaluations=" +
                std::to_string(SpherePixels(33)) + "\n");
  EXPECT_EQ(Text(Centre(ReadPng(out))), Text(LitColour(1, 1, 1)));

  // The second refuses: the first, already started, is cleaned up, and nothing is rendered.
  const std::string failedLog = OutputPath("probes-failed.log");
  const std::string refusedOut = OutputPath("probes-failed.png");
  run = Lwhost({"render", network, "-o", refusedOut, "--size", "33x33"},
               "CLI_PROBE_LOG=" + cli::ShellQuoted(failedLog) + " CLI_PROBE_FAIL_INIT=2");
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.output, "lwhost: node \"idle\" could not start rendering: cliProbe refuses to render\n");
  EXPECT_EQ(ReadText(failedLog), "1 init 1\n2 init 1\n1 cleanup evaluations=0\n");
  EXPECT_FALSE(cli::Exists(refusedOut));
}

TEST(RenderCommand, BadNetworksGetOneLineNamingTheLine) {
  static const char kJunk[] =
      "\x7f"
      "ELF\x02\x01\x01\0\0\0\n\xff\xfe\n";  // a shared object, say
  const std::string vorn = VornLine();
  struct Case {
    std::string text;
    std::string where;  // ":LINE: " or ": " for the whole file
    std::string says;
  };
  const std::vector<Case> cases{
      {vorn + "node a = Color 1 0 0\nshade a\noutput a.Color\n", ":3: ", "unknown statement \"shade\""},
      {vorn + "node a = Color 1 0\noutput a.Color\n", ":2: ", "expected: node NAME = Color R G B"},
      {vorn + "node a = Color 1 0 zero\noutput a.Color\n", ":2: ", "\"zero\" is not a number"},
      {vorn + "node a = Color 1 0 0\nconnect a.Color -> b.Colour\noutput a.Color\n",
       ":3: ", "no node \"b\" is declared above"},
      {vorn + "node a = Color 1 0 0\nnode cc = vorn SimpleColourCorrector\nconnect a.Colour -> cc.Colour\n"
              "output cc.Colour\n",
       ":4: ", "node \"a\" has no output \"Colour\""},
      {vorn + "node cc = vorn SimpleColourCorrector\nconnect cc.Colour -> cc.Brightness\noutput cc.Colour\n",
       ":3: ", "the graph would loop"},
      {vorn + "node cc = vorn SimpleColourCorrector\nset cc \"Hoo\" 1\noutput cc.Colour\n",
       ":3: ", "no control labelled \"Hoo\""},
      {vorn + "node cc = vorn SimpleColourCorrector\nset cc Hue abc\noutput cc.Colour\n",
       ":3: ", "\"Hue\" expects an angle in degrees"},
      {vorn + "node cc = vorn SimpleColourCorrector\nkey cc Invert 0 1\noutput cc.Colour\n",
       ":3: ", "\"Invert\" cannot be keyed"},
      {vorn + "node cc = vorn SimpleColourCorrector\nkey cc Hue 0 0 10 90\nset cc Hue 4\noutput cc.Colour\n",
       ":4: ", "\"Hue\" has keys"},
      {vorn + "node a = Color 1 0 0\nnode cc = vorn SimpleColourCorrector\nconnect a.Color -> cc.Colour\n"
              "set cc Colour 255 0 0\noutput cc.Colour\n",
       ":5: ", "\"Colour\" shows no value"},
      {vorn + "node x = vorn NoSuchNode\noutput x.Colour\n", ":2: ", "module \"vorn\" has no node \"NoSuchNode\""},
      {vorn + "node a = Color 1 0 0\nset a Hue 4\noutput a.Color\n", ":3: ", "one of the host's own"},
      {vorn + "node a = Color 1 0 0\noutput a.Color\noutput a.Color\n", ":4: ", "a second output line"},
      {vorn + "node a = Color 1 0 0 \"red\noutput a.Color\n", ":2: ", "a quote is not closed"},
      {vorn + "node a = Color 1 0 0\n", ": ", "no output line"},
      {"module vorn /nonexistent-folder/vorn.p\nnode a = Color 1 0 0\noutput a.Color\n",
       ":1: ", "cannot load module: /nonexistent-folder/vorn.p"},
      {"module vorn ${LWHOST_TEST_UNSET_VARIABLE}/vorn.p\n",
       ":1: ", "environment variable LWHOST_TEST_UNSET_VARIABLE is not set"},
      {std::string(kJunk, sizeof kJunk - 1), ":1: ", "unknown statement"},
  };
  for (std::size_t i = 0; i < cases.size(); ++i) {
    const Case& c = cases[i];
    const std::string network = WriteNetwork("bad.net", c.text), out = OutputPath("bad.png");
    const CommandResult run = Lwhost({"render", network, "-o", out});
    SCOPED_TRACE("case " + std::to_string(i) + ": " + run.output);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(cli::Lines(run.output), 1);
    EXPECT_EQ(run.output.rfind(network + c.where, 0), 0u) << "expected to start with " << network + c.where;
    EXPECT_NE(run.output.find(c.says), std::string::npos) << "expected: " << c.says;
    EXPECT_FALSE(cli::Exists(out)) << "a picture was written anyway";
  }

  const std::string missing = OutputPath("missing.net");
  CommandResult run = Lwhost({"render", missing, "-o", OutputPath("missing.png")});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.output, missing + ": cannot read the file: No such file or directory\n");
  run = Lwhost({"render", missing, "-o", OutputPath("missing.png"), "--size", "0x10"});
  EXPECT_EQ(run.status, 2);
  EXPECT_NE(run.output.find("--size expects WxH"), std::string::npos) << run.output;
}

}  // namespace
