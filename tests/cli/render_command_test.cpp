// lwhost render: the colour at the sphere's centre is the output's value under the documented
// lighting; typed values, keyed envelopes and --frame reach the plug-ins; every plug-in node is
// started and cleaned up around the pixels. And every bad request, network or command line,
// gets one line naming the fault.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "CliSupport.h"

namespace {

using cli::Lwhost;
using cli::OutputPath;
using lwhost::RGB;

constexpr int kSide = 33, kCentre = kSide / 2;  // odd, so the centre pixel sits on the pole

// host/RENDERING.md's lighting at the pole (normal (0, 0, 1)): ambient 0.15, the rest Lambert
// towards (-1, 1, 2).
RGB Lit(double r, double g, double b) {
  const double shade = 0.15 + 0.85 * 2.0 / std::sqrt(6.0);
  auto lit = [&](double c) { return static_cast<std::uint8_t>(std::lround(255.0 * c * shade)); };
  return RGB{lit(r), lit(g), lit(b)};
}

// The set variable must win over the default, which would not load.
const std::string kVornLine = "module vorn ${VORN_MODULE:-nowhere}\n";
const std::vector<std::string> kEnvironment{std::string("VORN_MODULE=") + testpaths::kVorn, "LWHOST_TEST_EMPTY="};

std::string WriteNetwork(const std::string& name, const std::string& text) {
  const std::string path = OutputPath(name);
  std::ofstream(path, std::ios::binary) << text;
  return path;
}

cli::Picture Render(const std::string& name, const std::string& text, int frame) {
  const std::string network = WriteNetwork(name + ".net", text), out = OutputPath(name + ".png");
  const CommandResult run = Lwhost(
      {"render", network, "-o", out, "--size", "33x33", "--frame", std::to_string(frame)}, kEnvironment);
  EXPECT_EQ(run.status, 0) << run.output;
  EXPECT_EQ(run.output, "wrote " + out + " (33x33)\n");
  return cli::Picture{cli::ReadFile(out)};
}

TEST(RenderCommand, ShowsTheOutputLitWithTypedAndKeyedValuesAtTheFrame) {
  // 50 % Multiply of the diffuse channels, 0.5 bg + 0.5 bg fg; connector names with blanks.
  const cli::Picture blend = Render("blend",
                                    kVornLine + "node bg = Material diffuse 0.9 0.6 0.2 specular 1 1 1\n"
                                                "node fg = Material diffuse 0.3 0.5 1.0 transparency 0.5\n"
                                                "node mix = vorn MaterialBlender\n"
                                                "set mix \"Diffuse Mode\" Multiply  # a comment\n"
                                                "set mix \"Diffuse Opacity\" 50 %\n"
                                                "connect bg.Material -> mix.\"Bg Material\"\n"
                                                "connect fg.Material->mix.Fg Material\noutput mix.Material\n",
                                    0);
  EXPECT_EQ(blend.at(kCentre, kCentre), Lit(0.585, 0.45, 0.2));
  // Outside the sphere the checker, unlit: 16-pixel squares, the light one at the top left.
  EXPECT_EQ(blend.at(0, 0), (RGB{112, 112, 112}));
  EXPECT_EQ(blend.at(kCentre, 0), (RGB{72, 72, 72}));
  EXPECT_GT(blend.at(6, kCentre - 6).r, blend.at(kSide - 7, kCentre + 6).r) << "the light is upper left";

  // Brightness keyed 0 % at frame 4, 100 % at 14, 50 % at 24: held before the first key (the
  // parameter's own 100 % plays no part), straight in between, held after the last. Keys and
  // frames both go by the file's rate.
  const std::string keyed = kVornLine +
                            "fps 24\nnode white = Color 1 1 1\nnode cc = vorn SimpleColourCorrector\n"
                            "key cc \"Brightness\" 4 0 14 100 24 50\nconnect white.Color -> cc.Colour\n"
                            "output cc.Colour\n";
  struct Case {
    std::string name, network;
    int frame;
    RGB centre;
  };
  const std::vector<Case> cases{
      // Red turned by 120 degrees is green: the angle arrives in radians.
      {"hue",
       kVornLine + "node base = Color 1 0 0\nnode cc = vorn SimpleColourCorrector\nset cc \"Hue\" 120\n"
                   "connect base.Color -> cc.Colour\noutput cc.Colour\n",
       0, Lit(0, 1, 0)},
      {"time", kVornLine + "fps 24\nnode t = vorn vornTimeInfo\noutput t.Time\n", 12, Lit(0.5, 0.5, 0.5)},
      {"keyed-0", keyed, 0, RGB{0, 0, 0}},
      {"keyed-19", keyed, 19, Lit(0.75, 0.75, 0.75)},
      {"keyed-30", keyed, 30, Lit(0.5, 0.5, 0.5)},
  };
  for (const Case& c : cases) EXPECT_EQ(Render(c.name, c.network, c.frame).at(kCentre, kCentre), c.centre) << c.name;
}

TEST(RenderCommand, StartsTimesAndCleansUpEveryPluginNodeAroundThePixels) {
  const std::string network = WriteNetwork("probes.net", std::string("module probe \"") + CLI_PROBE_MODULE_PATH +
                                                             "\"\nnode shown = probe cliProbe\n"
                                                             "node idle = probe cliProbe\noutput shown.Colour\n");
  const std::string log = OutputPath("probes.log"), out = OutputPath("probes.png");
  auto render = [&](const char* failInit) {
    std::filesystem::remove(log);
    return Lwhost({"render", network, "-o", out, "--size", "4x3", "--frame", "12"},
                  {"CLI_PROBE_LOG=" + log, std::string("CLI_PROBE_FAIL_INIT=") + failInit});
  };
  // The default scene runs at 30 frames per second; clean-up goes in reverse order; 6 pixel
  // centres of a 4x3 picture lie on the sphere (within 0.45 x 3 of the middle).
  CommandResult run = render("0");
  EXPECT_EQ(run.output, "wrote " + out + " (4x3)\n");
  EXPECT_EQ(cli::ReadFile(log),
            "1 init 1\n2 init 1\n1 newTime 12 0.4\n2 newTime 12 0.4\n2 cleanup evaluations=0\n"
            "1 cleanup evaluations=6\n");

  // The second refuses: the first, already started, is cleaned up, and nothing is written.
  std::filesystem::remove(out);
  run = render("2");
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.output, "lwhost: node \"idle\" could not start rendering: cliProbe refuses to render\n");
  EXPECT_EQ(cli::ReadFile(log), "1 init 1\n2 init 1\n1 cleanup evaluations=0\n");
  EXPECT_FALSE(std::filesystem::exists(out));
}

TEST(Lwhost, RefusesBadRequestsWithOneLineNamingTheFault) {
  static const char kJunk[] = "\x7f" "ELF\x02\x01\x01\0\0\0\n\xff\xfe\n";  // a shared object, say
  const std::string vorn = testpaths::kVorn, masters = CLI_PROBE_MODULE_PATH, missing = OutputPath("missing.net");
  const std::string cc = "SimpleColourCorrector", mb = "MaterialBlender", out = OutputPath("refused.png");
  const std::string a = "node a = Color 1 0 0\n", oa = "output a.Color\n", oc = "output cc.Colour\n";
  const std::string v = kVornLine, na = v + a, nc = v + "node cc = vorn " + cc + "\n", nca = nc + a;
  // Relative module paths start at the network's folder.
  const auto native = [](const std::string& path) { return std::filesystem::path(path).make_preferred().string(); };
  const std::string elsewhere = native(std::filesystem::path(CLI_TEST_OUTPUT_DIR).parent_path().string() + "/elsewhere/$x.p");
  struct Case {
    std::vector<std::string> args;  // "-o FILE" goes after the command, so that a later -o wins
    int status;
    std::string says;
    std::string network = "", where = "";  // a network file goes after -o; errors start "FILE:LINE: "
  };
  const std::vector<Case> cases{
      {{"panel", vorn, "NoSuchNode"}, 1, "has no server \"NoSuchNode\" (servers with panels: \"MaterialBlender\""},
      {{"panel", vorn, cc, "--set", "Hue=ninety"}, 1, "\"Hue\" expects an angle in degrees"},
      {{"panel", vorn, cc, "--set", "Brightness=50%%"}, 1, "\"Brightness\" expects a percentage"},
      {{"panel", vorn, cc, "--set", "Colour=255 128"}, 1, "\"Colour\" expects 3 numbers"},
      {{"panel", vorn, cc, "--set", "Invert=maybe"}, 1, "\"Invert\" expects on or off"},
      {{"panel", vorn, cc, "--set", "Default=1"}, 1, "\"Default\" holds no value (its class is vButton)"},
      {{"panel", vorn, mb, "--set", "Diffuse Mode=Sideways"}, 1, "has no entry \"Sideways\" (entries: Normal,"},
      {{"panel", vorn, mb, "--set", "Diffuse Mode=14"}, 1, "has no entry \"14\""},
      {{"panel", vorn, mb, "--version", "9.1"}, 1, "refused to be created: This plugin needs a newer version"},
      {{"panel", vorn + ".missing", mb}, 1, vorn + ".missing"},
      {{"panel", masters, "cliBare"}, 1, "\"cliBare\" has no panel"},
      {{"panel", masters, "cliNoFace"}, 1, "has no MasterInterface server"},
      {{"panel", masters, "cliFilter"}, 1, "\"cliFilter\" is a server of class ImageFilterHandler"},
      {{"panel", masters, "cliClassic", "--set", "Export=1"}, 1, "--set types into form panels"},
      {{"panel", vorn, mb, "-o", "/nonexistent-folder/panel.png"}, 1, "cannot write /nonexistent-folder/panel.png"},
      {{"panel", vorn, mb, "-o", ""}, 2, "panel needs -o FILE.png"},
      {{"panel", vorn, mb, "--set", "NoEquals"}, 2, "--set expects \"Label=value\""},
      {{"panel", vorn, mb, "--version", "nine"}, 2, "--version expects MAJOR.MINOR"},
      {{"panel", vorn, mb, "--frobnicate"}, 2, "unknown option --frobnicate"},
      {{"render", missing}, 1, missing + ": cannot read the file: No such file or directory"},
      {{"render", missing, "--size", "0x10"}, 2, "--size expects WxH"},
      {{"render"}, 1, "unknown statement \"shade\"", na + "\n  # blank and comment lines count\nshade a\n", ":5: "},
      {{"render"}, 1, "expected: node NAME = Color R G B", v + "node a = Color 1 0\n", ":2: "},
      {{"render"}, 1, "\"zero\" is not a number", v + "node a = Color 1 0 zero\n", ":2: "},
      {{"render"}, 1, "no node \"b\" is declared above", na + "connect a.Color -> b.Colour\n", ":3: "},
      {{"render"}, 1, "node \"a\" has no output \"Colour\"", nca + "connect a.Colour -> cc.Colour\n" + oc, ":4: "},
      {{"render"}, 1, "the graph would loop", nc + "connect cc.Colour -> cc.Brightness\n" + oc, ":3: "},
      {{"render"}, 1, "no control labelled \"H#o\"", nc + "set cc \"H#o\" 1\n" + oc, ":3: "},  // # in quotes
      {{"render"}, 1, "\"Invert\" cannot be keyed", nc + "key cc Invert 0 1\n" + oc, ":3: "},
      {{"render"}, 1, "\"Hue\" has keys", nc + "key cc Hue 0 0 10 90\nset cc Hue 4\n" + oc, ":4: "},
      {{"render"}, 1, "\"Colour\" shows no value", nca + "connect a.Color -> cc.Colour\nset cc Colour 1 0 0\n" + oc,
       ":5: "},
      {{"render"}, 1, "has no node \"NoSuchNode\"", v + "node x = vorn NoSuchNode\noutput x.Colour\n", ":2: "},
      {{"render"}, 1, "one of the host's own", na + "set a Hue 4\n", ":3: "},
      {{"render"}, 1, "a second output line", na + oa + oa, ":4: "},
      {{"render"}, 1, "a quote is not closed", v + "node a = Color 1 0 0 \"red\n", ":2: "},
      {{"render"}, 1, "no output line", na, ": "},
      // An empty variable does not win over the default; $$ is a dollar sign.
      {{"render"}, 1, "cannot load module: " + elsewhere,
       "module v ${LWHOST_TEST_EMPTY:-../elsewhere}/$$x.p\n" + a + oa, ":1: "},
      {{"render"}, 1, "cannot load module: /no such" + vorn, "module v \"/no such$VORN_MODULE\"\n" + a + oa, ":1: "},
      {{"render"}, 1, "variable LWHOST_TEST_UNSET is not set", "module vorn ${LWHOST_TEST_UNSET}/vorn.p\n", ":1: "},
      {{"render"}, 1, "unknown statement", std::string(kJunk, sizeof kJunk - 1), ":1: "},
  };
  for (const Case& c : cases) {
    std::vector<std::string> args{c.args[0], "-o", out};
    if (!c.network.empty()) args.push_back(WriteNetwork("bad.net", c.network));
    args.insert(args.end(), c.args.begin() + 1, c.args.end());
    const CommandResult run = Lwhost(args, kEnvironment);
    SCOPED_TRACE(run.output);
    EXPECT_EQ(run.status, c.status);
    EXPECT_EQ(std::count(run.output.begin(), run.output.end(), '\n'), 1);
    EXPECT_EQ(run.output.rfind(c.network.empty() ? "" : args[3] + c.where, 0), 0u) << "expected FILE" << c.where;
    EXPECT_NE(run.output.find(c.says), std::string::npos) << "expected: " << c.says;
    EXPECT_FALSE(std::filesystem::exists(out)) << "a picture was written anyway";
  }
}

}  // namespace
