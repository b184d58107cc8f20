// lwhost panel: draws a server's panel as LightWave would show it.
#include <lwhandler.h>
#include <lwmaster.h>
#include <lwnodes.h>

#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Commands.h"
#include "lwhost/FormRenderer.h"
#include "lwhost/HandlerInstance.h"
#include "lwhost/NetworkFile.h"
#include "lwhost/PluginNode.h"
#include "lwhost/Session.h"

namespace lwhost::tools {

namespace {

struct PanelRequest {
  std::string module, server, output;
  std::vector<std::pair<std::string, std::string>> sets;  // label, value
  bool modeler = false;
  bool setVersion = false;
  unsigned int major = 9, minor = 6;
};

// "9.6": both parts 0..15, as "Product Info" holds them.
void ParseVersion(const std::string& text, PanelRequest& r) {
  auto part = [](const std::string& digits, unsigned int* value) {
    if (digits.empty() || digits.size() > 2 || digits.find_first_not_of("0123456789") != std::string::npos)
      return false;
    *value = static_cast<unsigned int>(std::stoul(digits));
    return *value <= 15;
  };
  const std::size_t dot = text.find('.');
  if (dot == std::string::npos || !part(text.substr(0, dot), &r.major) || !part(text.substr(dot + 1), &r.minor))
    throw UsageError("--version expects MAJOR.MINOR such as 9.6, not " + text);
  r.setVersion = true;
}

PanelRequest ParseArguments(const std::vector<std::string>& args) {
  PanelRequest r;
  Arguments in("panel", args);
  std::vector<std::string> positional;
  while (!in.done()) {
    if (!in.atOption()) {
      positional.push_back(in.next());
      continue;
    }
    const std::string option = in.next();
    if (option == "-o" || option == "--output") {
      r.output = in.valueOf(option);
    } else if (option == "--set") {
      const std::string assignment = in.valueOf(option);
      const std::size_t equals = assignment.find('=');
      if (equals == std::string::npos || equals == 0)
        throw UsageError("--set expects \"Label=value\", not \"" + assignment + "\"");
      r.sets.emplace_back(assignment.substr(0, equals), assignment.substr(equals + 1));
    } else if (option == "--modeler") {
      r.modeler = true;
    } else if (option == "--version") {
      ParseVersion(in.valueOf(option), r);
    } else {
      in.unknown(option);
    }
  }
  if (positional.size() < 2) in.missing("a MODULE file and a SERVER name");
  if (positional.size() > 2) in.unknown(positional[2]);
  if (r.output.empty()) in.missing("-o FILE.png");
  r.module = positional[0];
  r.server = positional[1];
  return r;
}

std::string Quoted(const std::string& s) { return "\"" + s + "\""; }

std::string ActivationAnswer(int result) {
  switch (result) {
    case AFUNC_BADVERSION: return "no interface version it supports";
    case AFUNC_BADGLOBAL: return "a global service it needs is missing";
    case AFUNC_BADLOCAL: return "it did not accept the interface record";
    case AFUNC_BADAPP:
    case AFUNC_BADAPP_SILENT: return "it does not run in this program";
    default: return "answer " + std::to_string(result);
  }
}

// The picture of whatever the interface activation produced: a form panel (after the --set
// values), or the classic panel its options window opens.
Raster Show(Session& session, const InterfaceActivation& activation, HandlerInstance& instance, const PanelRequest& r) {
  const std::string server = Quoted(r.server);
  if (activation.result != AFUNC_OK)
    throw CommandError("the interface of " + server + " refused activation: " + ActivationAnswer(activation.result));

  if (activation.local.panel) {
    XPanel* panel = session.xpanels().find(activation.local.panel);
    if (!panel) throw CommandError("the interface of " + server + " handed back a panel the host did not make");
    for (const auto& [label, value] : r.sets) {
      const std::string error = SetControlFromText(*panel, label, value);
      if (!error.empty()) throw CommandError("--set " + label + "=" + value + ": " + error);
    }
    return RenderForm(*panel);
  }

  if (activation.local.options) {
    if (!r.sets.empty()) throw CommandError("--set types into form panels, and " + server + " shows a classic panel");
    // Nobody sits at the headless host: the modal panel is drawn while it is up, then closed.
    std::optional<Raster> picture;
    std::string failure;
    session.panels().script({UserAction::inspect([&](Panels& panels, LWPanelID id) {
                               try {
                                 picture = panels.renderPanel(id);
                               } catch (const std::exception& e) {
                                 failure = e.what();
                               }
                             }),
                             UserAction::close()});
    const LWError error = activation.local.options(instance.get());
    if (error) throw CommandError("the options window of " + server + " failed: " + error);
    if (!failure.empty()) throw CommandError("cannot draw the panel of " + server + ": " + failure);
    if (!picture) throw CommandError("the options window of " + server + " opened no panel");
    return *picture;
  }
  throw CommandError(server + " has no panel: its interface gave neither a form panel nor an options window");
}

Raster NodePanel(Session& session, const ModuleFile& module, const PanelRequest& r) {
  PluginNode* node = nullptr;
  try {
    node = &session.nodes().addPluginNode(module, r.server);
  } catch (const CreationError& e) {
    throw CommandError("node " + Quoted(r.server) + " refused to be created: " + e.what());
  }
  if (!node->hasInterface()) throw CommandError("node " + Quoted(r.server) + " has no " LWNODE_ICLASS " server");
  return Show(session, node->activateInterface(), node->instance(), r);
}

// A master instance for the life of `holder`, which the caller keeps until the picture is made
// (the session must outlive it).
Raster MasterPanel(Session& session, const ModuleFile& module, const PanelRequest& r,
                   std::unique_ptr<HandlerInstance>& holder) {
  const ServerRecord& record = module.require(LWMASTER_HCLASS, r.server);
  LWInstanceFuncs inst{};
  LWItemFuncs item{};
  LWMasterHandler handler{};
  handler.inst = &inst;
  handler.item = session.host().isModeler() ? nullptr : &item;
  int result = AFUNC_BADVERSION;
  if (!module.activateFirst(record, {LWMASTER_VERSION}, &handler, &result))
    throw CommandError("master " + Quoted(r.server) + " refused activation: " + ActivationAnswer(result));
  if (!handler.inst) throw CommandError("master " + Quoted(r.server) + " left no instance functions");
  try {
    holder = std::make_unique<HandlerInstance>(module, *handler.inst, handler.item, nullptr, r.server);
  } catch (const CreationError& e) {
    throw CommandError("master " + Quoted(r.server) + " refused to be created: " + e.what());
  }
  const ServerRecord* face = module.find(LWMASTER_ICLASS, r.server);
  if (!face) throw CommandError("master " + Quoted(r.server) + " has no " LWMASTER_ICLASS " server");
  return Show(session, holder->activateInterface(*face), *holder, r);
}

[[noreturn]] void UnknownServer(const ModuleFile& module, const std::string& server) {
  std::string classes, known;
  for (const ServerRecord* record : module.records()) {
    if (!record->name || !record->className) continue;
    const std::string className = record->className;
    if (server == record->name) classes += (classes.empty() ? "" : ", ") + className;
    if ((className == LWNODE_HCLASS || className == LWMASTER_HCLASS) &&
        known.find(Quoted(record->name)) == std::string::npos)
      known += (known.empty() ? "" : ", ") + Quoted(record->name);
  }
  if (!classes.empty())
    throw CommandError(Quoted(server) + " is a server of class " + classes +
                       "; panel draws " LWNODE_HCLASS " and " LWMASTER_HCLASS " servers");
  throw CommandError(module.path() + " has no server " + Quoted(server) +
                     (known.empty() ? "" : " (servers with panels: " + known + ")"));
}

}  // namespace

int PanelCommand(const std::vector<std::string>& args) {
  const PanelRequest r = ParseArguments(args);
  Session session;
  if (r.modeler) session.host().actAs(Application::Modeler);
  if (r.setVersion) session.host().setVersion(r.major, r.minor);
  const ModuleFile& module = session.load(r.module);
  // Declared after the session, so it goes first.
  std::unique_ptr<HandlerInstance> master;
  Raster picture(0, 0);
  if (module.find(LWNODE_HCLASS, r.server))
    picture = NodePanel(session, module, r);
  else if (module.find(LWMASTER_HCLASS, r.server))
    picture = MasterPanel(session, module, r, master);
  else
    UnknownServer(module, r.server);
  WritePicture(picture, r.output);
  ReportPluginErrors(session.host());
  return 0;
}

}  // namespace lwhost::tools
