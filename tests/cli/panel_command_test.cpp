// lwhost panel: the picture it writes is the panel the host library draws, values typed with
// --set land in the plug-in in the plug-in's own units, and bad requests get one line each.
#include <gtest/gtest.h>
#include <lwmaster.h>
#include <lwnodes.h>
#include <lwpanel.h>

#include <cmath>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "CliSupport.h"
#include "PngFile.h"
#include "lwhost/FormRenderer.h"
#include "lwhost/HandlerInstance.h"
#include "lwhost/PluginNode.h"
#include "lwhost/Session.h"
#include "support/RawHandler.h"

namespace {

using cli::Lwhost;
using cli::OutputPath;

constexpr double kPi = 3.14159265358979323846;

// How the host draws a node's panel after `edit` acted on it through the panel's own API.
PngImage NodeReference(const std::string& server, const std::function<void(lwhost::XPanel&)>& edit) {
  lwhost::Session session;
  const lwhost::ModuleFile& module = session.load(testpaths::kVorn);
  lwhost::PluginNode& node = session.nodes().addPluginNode(module, server);
  lwhost::XPanel* panel = session.xpanels().find(node.activateInterface().local.panel);
  if (!panel) {
    ADD_FAILURE() << server << " gave no form panel";
    return {};
  }
  if (edit) edit(*panel);
  return FromRaster(lwhost::RenderForm(*panel));
}

// One of the test module's masters with its interface activated, as LightWave would hold it.
struct MasterReference {
  static const lwhost::ModuleFile& LoadAs(lwhost::Session& session, bool modeler) {
    if (modeler) {
      session.host().actAs(lwhost::Application::Modeler);
      session.host().setVersion(9, 2);
    }
    return session.load(CLI_PROBE_MODULE_PATH);
  }

  explicit MasterReference(const char* server, bool modeler = false) : module(LoadAs(session, modeler)) {
    EXPECT_EQ(raw.activate(module, server, LWMASTER_VERSION), AFUNC_OK);
    instance = std::make_unique<lwhost::HandlerInstance>(module, raw.inst, &raw.item, nullptr, server);
    face = instance->activateInterface(module.require(LWMASTER_ICLASS, server));
  }

  lwhost::Session session;
  const lwhost::ModuleFile& module;
  RawMasterHandler raw;
  std::unique_ptr<lwhost::HandlerInstance> instance;  // goes before the session
  lwhost::InterfaceActivation face;
};

std::vector<std::string> NodeServers() {
  lwhost::Host host;
  lwhost::ModuleFile module(testpaths::kVorn);
  std::vector<std::string> names;
  for (const ServerRecord* r : module.records())
    if (std::string(r->className) == LWNODE_HCLASS) names.push_back(r->name);
  return names;
}

int NotBackground(const PngImage& image) {
  const lwhost::RGB background = lwhost::PaletteColour(LWP_BG);
  int n = 0;
  for (const lwhost::RGB& p : image.pixels) n += p != background;
  return n;
}

// Runs "lwhost panel", expecting success, and reads the picture back.
PngImage Panel(const std::string& module, const std::string& server, const std::string& file,
               const std::vector<std::string>& extra = {}) {
  const std::string out = OutputPath(file);
  std::vector<std::string> args{"panel", module, server, "-o", out};
  args.insert(args.end(), extra.begin(), extra.end());
  const CommandResult run = Lwhost(args);
  EXPECT_EQ(run.status, 0) << run.output;
  const PngImage image = ReadPng(out);
  EXPECT_EQ(run.output,
            "wrote " + out + " (" + std::to_string(image.width) + "x" + std::to_string(image.height) + ")\n");
  return image;
}

TEST(PanelCommand, DrawsEveryNodePanelAndTypesValuesInTheUnitsLightWaveShows) {
  struct Typed {
    std::vector<std::string> sets;                    // as the user types them
    std::function<void(lwhost::XPanel&)> sameValues;  // the values the plug-in should end up with
  };
  const std::map<std::string, Typed> typed{
      {"SimpleColourCorrector",
       {{"--set", "Hue=90", "--set", "brightness=50 %", "--set", "Colour=255 128 0", "--set", "Invert=on"},
        [](lwhost::XPanel& p) {
          p.setNumber(0x9004, kPi / 2);
          p.setNumber(0x9002, 0.5);
          const double orange[3] = {1.0, 128.0 / 255.0, 0.0};
          p.setVector(0x9000, orange);
          p.setInteger(0x9007, 1);
        }}},
      {"MaterialBlender",
       {{"--set", "Diffuse Mode=multiply", "--set", "Specular Opacity=12.5%", "--set", "Transparency Mode=13"},
        [](lwhost::XPanel& p) {
          p.setInteger(0x9001, 3);
          p.setNumber(0x9002, 0.125);
          p.setInteger(0x9009, 13);
        }}},
  };

  const std::vector<std::string> servers = NodeServers();
  ASSERT_FALSE(servers.empty());
  for (const std::string& server : servers) {
    SCOPED_TRACE(server);
    const PngImage plain = Panel(testpaths::kVorn, server, "node-" + server + ".png");
    ASSERT_FALSE(plain.empty());
    EXPECT_EQ(plain, NodeReference(server, nullptr)) << "the command drew something else than the panel";
    EXPECT_GT(NotBackground(plain), plain.width * 10) << "hardly anything drawn";

    auto it = typed.find(server);
    if (it == typed.end()) continue;
    const PngImage edited = Panel(testpaths::kVorn, server, "node-" + server + "-set.png", it->second.sets);
    EXPECT_NE(edited, plain) << "--set changed nothing that shows";
    EXPECT_EQ(edited, NodeReference(server, it->second.sameValues))
        << "the typed values did not arrive in the plug-in's own units";
  }
}

TEST(PanelCommand, DrawsMasterFormsAndTheClassicPanelItsOptionsOpen) {
  const PngImage form = Panel(CLI_PROBE_MODULE_PATH, "cliForm", "master-form.png");
  const PngImage typed = Panel(CLI_PROBE_MODULE_PATH, "cliForm", "master-form-set.png",
                               {"--set", "Strength=80%", "--set", "Enabled=yes", "--set", "Style=Dotted"});
  {
    MasterReference reference("cliForm");
    lwhost::XPanel* panel = reference.session.xpanels().find(reference.face.local.panel);
    ASSERT_NE(panel, nullptr);
    EXPECT_EQ(form, FromRaster(lwhost::RenderForm(*panel)));
    panel->setNumber(0x8001, 0.8);
    panel->setInteger(0x8002, 1);
    panel->choose(0x8003, 2);
    EXPECT_EQ(typed, FromRaster(lwhost::RenderForm(*panel)));
  }
  EXPECT_NE(form, typed);

  // The program and version the host claims reach the plug-in.
  const PngImage modeler =
      Panel(CLI_PROBE_MODULE_PATH, "cliForm", "master-form-modeler.png", {"--modeler", "--version", "9.2"});
  {
    MasterReference reference("cliForm", true);
    lwhost::XPanel* panel = reference.session.xpanels().find(reference.face.local.panel);
    ASSERT_NE(panel, nullptr);
    EXPECT_EQ(panel->value(0x8004).text, "Modeler 9.2");
    EXPECT_EQ(modeler, FromRaster(lwhost::RenderForm(*panel)));
  }
  EXPECT_NE(modeler, form);

  // The classic panel exists only while its blocking open runs, so it must be drawn then.
  const PngImage classic = Panel(CLI_PROBE_MODULE_PATH, "cliClassic", "master-classic.png");
  ASSERT_FALSE(classic.empty());
  MasterReference reference("cliClassic");
  ASSERT_NE(reference.face.local.options, nullptr);
  std::optional<lwhost::Raster> shown;
  reference.session.panels().script({lwhost::UserAction::inspect([&](lwhost::Panels& panels, LWPanelID id) {
                                       EXPECT_EQ(panels.panel(id).title, "CLI Classic");
                                       shown = panels.renderPanel(id);
                                     }),
                                     lwhost::UserAction::close()});
  EXPECT_EQ(reference.face.local.options(reference.instance->get()), nullptr);
  ASSERT_TRUE(shown);
  EXPECT_EQ(classic, FromRaster(*shown));
  EXPECT_GT(NotBackground(classic), classic.width * 10);
}

TEST(PanelCommand, RefusesBadRequestsWithOneLineNamingTheFault) {
  const std::string vorn = testpaths::kVorn, masters = CLI_PROBE_MODULE_PATH;
  struct Case {
    std::vector<std::string> args;  // after "panel"; -o FILE is added unless "nooutput"
    int status;
    std::string says;
  };
  const std::vector<Case> cases{
      {{vorn, "NoSuchNode"}, 1, "has no server \"NoSuchNode\" (servers with panels: \"MaterialBlender\""},
      {{vorn, "SimpleColourCorrector", "--set", "Hoo=1"}, 1, "no control labelled \"Hoo\"; the panel has"},
      {{vorn, "SimpleColourCorrector", "--set", "Hue=ninety"}, 1, "\"Hue\" expects an angle in degrees"},
      {{vorn, "SimpleColourCorrector", "--set", "Brightness=50%%"}, 1, "\"Brightness\" expects a percentage"},
      {{vorn, "SimpleColourCorrector", "--set", "Colour=255 128"}, 1, "\"Colour\" expects 3 numbers"},
      {{vorn, "SimpleColourCorrector", "--set", "Invert=maybe"}, 1, "\"Invert\" expects on or off"},
      {{vorn, "SimpleColourCorrector", "--set", "Default=1"}, 1, "\"Default\" holds no value (its class is vButton)"},
      {{vorn, "MaterialBlender", "--set", "Diffuse Mode=Sideways"}, 1, "has no entry \"Sideways\" (entries: Normal,"},
      {{vorn, "MaterialBlender", "--set", "Diffuse Mode=14"}, 1, "has no entry \"14\""},
      {{vorn, "MaterialBlender", "--version", "9.1"}, 1, "refused to be created: This plugin needs a newer version"},
      {{vorn + ".missing", "MaterialBlender"}, 1, vorn + ".missing"},
      {{masters, "cliBare"}, 1, "\"cliBare\" has no panel"},
      {{masters, "cliNoFace"}, 1, "has no MasterInterface server"},
      {{masters, "cliFilter"}, 1, "\"cliFilter\" is a server of class ImageFilterHandler"},
      {{masters, "cliClassic", "--set", "Export=1"}, 1, "--set types into form panels"},
      {{vorn, "MaterialBlender", "-o", "/nonexistent-folder/panel.png", "nooutput"},
       1,
       "cannot write /nonexistent-folder/panel.png"},
      {{vorn, "MaterialBlender", "nooutput"}, 2, "panel needs -o FILE.png"},
      {{vorn, "MaterialBlender", "--set", "NoEquals"}, 2, "--set expects \"Label=value\""},
      {{vorn, "MaterialBlender", "--version", "nine"}, 2, "--version expects MAJOR.MINOR"},
      {{vorn, "MaterialBlender", "--frobnicate"}, 2, "unknown option --frobnicate"},
  };
  for (const Case& c : cases) {
    std::vector<std::string> args{"panel"};
    bool withOutput = true;
    for (const std::string& a : c.args) {
      if (a == "nooutput")
        withOutput = false;
      else
        args.push_back(a);
    }
    const std::string out = OutputPath("refused.png");
    if (withOutput) args.insert(args.end(), {"-o", out});
    const CommandResult run = Lwhost(args);
    SCOPED_TRACE(run.output);
    EXPECT_EQ(run.status, c.status);
    EXPECT_EQ(cli::Lines(run.output), 1);
    EXPECT_NE(run.output.find(c.says), std::string::npos) << "expected: " << c.says;
    EXPECT_FALSE(cli::Exists(out)) << "a picture was written anyway";
  }
}

}  // namespace
