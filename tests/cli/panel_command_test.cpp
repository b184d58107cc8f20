// lwhost panel: the picture it writes is the panel the host library draws, and values typed
// with --set land in the plug-in in the plug-in's own units.
#include <gtest/gtest.h>
#include <lwmaster.h>
#include <lwnodes.h>

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "CliSupport.h"
#include "lwhost/FormRenderer.h"
#include "lwhost/HandlerInstance.h"
#include "lwhost/PluginNode.h"
#include "lwhost/Session.h"
#include "support/RawHandler.h"

namespace {

using Edit = std::function<void(lwhost::XPanel&)>;

// Masters come from the test module, nodes from vorn.p.
std::string ModuleOf(const std::string& server) {
  return server.rfind("cli", 0) == 0 ? CLI_PROBE_MODULE_PATH : testpaths::kVorn;
}

// The PNG the host library makes of a server's panel after `edit` acted through the panel's
// own API; a classic panel is drawn while its blocking open runs, as it exists only then.
std::string Reference(const std::string& server, const Edit& edit = nullptr, bool modeler = false) {
  lwhost::Session session;
  if (modeler) {
    session.host().actAs(lwhost::Application::Modeler);
    session.host().setVersion(9, 2);
  }
  const lwhost::ModuleFile& module = session.load(ModuleOf(server));
  RawMasterHandler raw;
  std::unique_ptr<lwhost::HandlerInstance> master;  // goes before the session
  lwhost::InterfaceActivation face;
  if (module.find(LWNODE_HCLASS, server)) {
    face = session.nodes().addPluginNode(module, server).activateInterface();
  } else {
    EXPECT_EQ(raw.activate(module, server.c_str(), LWMASTER_VERSION), AFUNC_OK);
    master = std::make_unique<lwhost::HandlerInstance>(module, raw.inst, &raw.item, nullptr, server);
    face = master->activateInterface(module.require(LWMASTER_ICLASS, server));
  }
  if (lwhost::XPanel* panel = session.xpanels().find(face.local.panel)) {
    if (edit) edit(*panel);
    return lwhost::RenderForm(*panel).encodePng();
  }
  std::string shown;
  session.panels().script({lwhost::UserAction::inspect([&](lwhost::Panels& panels, LWPanelID id) {
                             shown = panels.renderPanel(id).encodePng();
                           }),
                           lwhost::UserAction::close()});
  EXPECT_TRUE(master && face.local.options && !face.local.options(master->get())) << "the options window failed";
  EXPECT_FALSE(shown.empty()) << server << " showed no panel";
  return shown;
}

// Runs "lwhost panel", expecting success, and gives the file it wrote.
std::string Panel(const std::string& server, const std::vector<std::string>& extra = {}) {
  const std::string out = cli::OutputPath(server + (extra.empty() ? ".png" : "-set.png"));
  std::vector<std::string> args{"panel", ModuleOf(server), server, "-o", out};
  args.insert(args.end(), extra.begin(), extra.end());
  const CommandResult run = cli::Lwhost(args);
  EXPECT_EQ(run.status, 0) << run.output;
  // One line: what plug-ins report as errors would follow it.
  EXPECT_EQ(run.output.rfind("wrote " + out + " (", 0), 0u) << run.output;
  EXPECT_EQ(std::count(run.output.begin(), run.output.end(), '\n'), 1) << run.output;
  return cli::ReadFile(out);
}

TEST(PanelCommand, DrawsEveryPanelAsTheHostDoesWithTypedValuesInThePluginsUnits) {
  std::vector<std::string> servers{"cliForm", "cliClassic"};
  {
    lwhost::Host host;
    lwhost::ModuleFile vorn(testpaths::kVorn);
    for (const ServerRecord* r : vorn.records())
      // The Channel Blender has no settings and shows no panel.
      if (std::string(r->className) == LWNODE_HCLASS && std::string(r->name) != "vornChannelBlender")
        servers.push_back(r->name);
  }
  ASSERT_GT(servers.size(), 2u);
  std::map<std::string, std::string> plain;
  for (const std::string& server : servers) {
    plain[server] = Panel(server);
    EXPECT_TRUE(plain[server] == Reference(server)) << server << ": the command drew something else";
  }

  struct Typed {
    std::string server;
    std::vector<std::string> args;  // as the user types them
    Edit sameValues;                // the values the plug-in should end up with
    bool modeler = false;
  };
  const std::vector<Typed> typed{
      {"SimpleColourCorrector",
       {"--set", "Hue=90", "--set", "brightness=50 %", "--set", "Colour=255 128 0", "--set", "Invert=on"},
       [](lwhost::XPanel& p) {
         const double orange[3] = {1.0, 128.0 / 255.0, 0.0};
         p.setVector(0x9000, orange);
         p.setNumber(0x9004, 3.14159265358979323846 / 2); p.setNumber(0x9002, 0.5); p.setInteger(0x9007, 1);
       }},
      {"MaterialBlender",
       {"--set", "Diffuse Mode=multiply", "--set", "Specular Opacity=12.5%", "--set", "Transparency Mode=13"},
       [](lwhost::XPanel& p) { p.setInteger(0x9001, 3); p.setNumber(0x9002, 0.125); p.setInteger(0x9009, 13); }},
      // A form panel keeps the values itself rather than in the plug-in.
      {"cliForm",
       {"--set", "Strength=80%", "--set", "Enabled=yes", "--set", "Style=Dotted"},
       [](lwhost::XPanel& p) { p.setNumber(0x8001, 0.8); p.setInteger(0x8002, 1); p.choose(0x8003, 2); }},
      // The program and version the host claims reach the plug-in.
      {"cliForm",
       {"--modeler", "--version", "9.2"},
       [](lwhost::XPanel& p) { EXPECT_EQ(p.value(0x8004).text, "Modeler 9.2"); },
       true},
  };
  for (const Typed& t : typed) {
    SCOPED_TRACE(t.server + " " + t.args[1]);
    const std::string picture = Panel(t.server, t.args);
    EXPECT_FALSE(picture == plain[t.server]) << "nothing that shows changed";
    EXPECT_TRUE(picture == Reference(t.server, t.sameValues, t.modeler)) << "the values did not arrive as typed";
  }
}

}  // namespace
