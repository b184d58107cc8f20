#include "lwhost/LayoutSession.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <utility>

#include "lwhost/NetworkFile.h"
#include "lwhost/XPanel.h"

namespace lwhost {

namespace {

std::string Quoted(const std::string& text) {
  std::string out = "\"";
  for (char c : text) {
    if (c == '"' || c == '\\') out += '\\';
    if (c == '\n') {
      out += "\\n";
      continue;
    }
    out += c;
  }
  return out + "\"";
}

std::string Hex(int code) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%x", static_cast<unsigned int>(code));
  return text;
}

// What the event's data word carries, as the log shows it.
std::string DataText(int code, void* data) {
  switch (code) {
    case LWEVNT_COMMAND:
    case LWEVNT_NOTIFY_SCENE_CLEAR_STARTING:
    case LWEVNT_NOTIFY_SCENE_CLEAR_COMPLETE:
    case LWEVNT_NOTIFY_SCENE_LOAD_STARTING:
    case LWEVNT_NOTIFY_SCENE_LOAD_COMPLETE:
    case LWEVNT_NOTIFY_SCENE_SAVE_STARTING:
    case LWEVNT_NOTIFY_SCENE_SAVE_COMPLETE:
      return data ? " " + Quoted(static_cast<const char*>(data)) : " null";
    case LWEVNT_NOTIFY_RENDER_FRAME_STARTING:
    case LWEVNT_NOTIFY_RENDER_FRAME_COMPLETE:
      return " " + std::to_string(static_cast<LWFrame>(reinterpret_cast<std::intptr_t>(data)));
    default:
      return "";
  }
}

std::string NumberText(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", value);
  return text;
}

void* FrameWord(LWFrame frame) { return reinterpret_cast<void*>(static_cast<std::intptr_t>(frame)); }

LWCommandCode NoLookup(void*, const char*) { return 0; }
int NoExecute(void*, LWCommandCode, int, const DynaValue*, DynaValue*) { return 0; }

std::string FreshSettingsDirectory() {
  // No mkdtemp on every system: a random name, retried while it is taken.
  std::error_code ec;
  const std::filesystem::path base = std::filesystem::temp_directory_path(ec);
  if (ec) throw SessionError("cannot find a temporary folder: " + ec.message());
  std::random_device seed;
  std::mt19937_64 random(seed());
  for (int attempt = 0; attempt < 100; ++attempt) {
    char name[40];
    std::snprintf(name, sizeof name, "lwhost-settings-%016llx", static_cast<unsigned long long>(random()));
    const std::filesystem::path dir = base / name;
    if (std::filesystem::create_directory(dir, ec)) return dir.string();
    if (ec) throw SessionError("cannot make a settings folder in " + Quoted(base.string()) + ": " + ec.message());
  }
  throw SessionError("cannot make a settings folder in " + Quoted(base.string()));
}

}  // namespace

LayoutSession::LayoutSession(LayoutSessionOptions options) : options_(std::move(options)) {
  settings_ = options_.settingsDirectory;
  std::error_code ec;
  if (!settings_.empty() && !std::filesystem::is_directory(settings_, ec))
    throw SessionError("the settings folder " + Quoted(settings_) + " does not exist");
  if (settings_.empty()) {
    settings_ = FreshSettingsDirectory();
    ownSettings_ = true;
  }
  session_ = std::make_unique<Session>();
  if (options_.screamerNet) session_->host().actAs(Application::ScreamerNet);
  session_->scene().directories().setSettingsDirectory(settings_);
}

LayoutSession::~LayoutSession() {
  try {
    quit();
  } catch (...) {
    // Destruction must not throw; the plug-ins had their say in the log.
  }
}

void LayoutSession::require(const char* what) const {
  if (quitted_) throw SessionError(std::string(what) + " after quit");
}

void LayoutSession::log(const std::string& line) {
  if (log_) log_(line);
}

void LayoutSession::logMessages() {
  if (!session_) return;
  const auto& messages = session_->host().messages().messages();
  for (; messagesSeen_ < messages.size(); ++messagesSeen_) {
    const Message& m = messages[messagesSeen_];
    log("message " + m.kind + " " + Quoted(m.first) + (m.hasSecond ? " " + Quoted(m.second) : ""));
  }
}

const ModuleFile& LayoutSession::loadModule(const std::string& alias, const std::string& path) {
  require("module");
  if (modules_.count(alias)) throw SessionError("module " + Quoted(alias) + " is already loaded");
  ModuleFile& module = session_->load(path);
  modules_[alias] = &module;
  return module;
}

MasterInstance& LayoutSession::addMaster(const std::string& alias, const std::string& server, const std::string& name) {
  require("master");
  auto module = modules_.find(alias);
  if (module == modules_.end()) throw SessionError("no module " + Quoted(alias) + " is loaded");
  if (!module->second->find(LWMASTER_HCLASS, server))
    throw SessionError(module->second->path() + " has no " LWMASTER_HCLASS " server " + Quoted(server));
  std::string unique = name.empty() ? server : name;
  if (findMaster(unique)) {
    if (!name.empty()) throw SessionError("there is already a master instance " + Quoted(name));
    for (int n = 2; findMaster(unique); ++n) unique = server + " (" + std::to_string(n) + ")";
  }
  try {
    masters_.push_back(std::make_unique<MasterInstance>(*module->second, server, unique, !session_->host().isModeler()));
  } catch (const CreationError& e) {
    logMessages();
    throw SessionError("master " + Quoted(server) + " refused to be created: " + e.what());
  }
  log("create " + Quoted(unique) + " " + alias + " " + server);
  logMessages();
  return *masters_.back();
}

MasterInstance* LayoutSession::findMaster(const std::string& name) {
  for (auto& m : masters_)
    if (m->name() == name) return m.get();
  return nullptr;
}

void LayoutSession::removeMaster(const std::string& name) {
  require("remove");
  for (auto it = masters_.begin(); it != masters_.end(); ++it) {
    if ((*it)->name() != name) continue;
    std::unique_ptr<MasterInstance> gone = std::move(*it);
    masters_.erase(it);
    gone.reset();
    log("destroy " + Quoted(name));
    logMessages();
    return;
  }
  throw SessionError("no master instance " + Quoted(name));
}

void LayoutSession::sendEvent(int code, void* data) {
  // Commands plug-ins evaluate while hearing an event are queued, so the list stays put while
  // it is walked.
  for (auto& master : masters_) {
    bool wanted = master->wants(code);
    logMessages();
    if (!wanted) continue;
    LWMasterAccess access{};
    access.eventCode = code;
    access.eventData = data;
    access.data = this;
    access.lookup = NoLookup;
    access.execute = NoExecute;
    access.evaluate = Evaluate;
    const double result = master->event(access);
    log("event " + Quoted(master->name()) + " " + Hex(code) + DataText(code, data) + " -> " + NumberText(result));
    logMessages();
  }
}

int LayoutSession::Evaluate(void* data, const char* command) {
  if (!data || !command) return 0;
  static_cast<LayoutSession*>(data)->queued_.emplace_back(command);
  return 1;
}

void LayoutSession::runQueuedCommands() {
  // Bounded, so that two plug-ins answering each other's commands cannot hang the host.
  for (int round = 0; !queued_.empty() && round < 100; ++round) {
    std::vector<std::string> now;
    now.swap(queued_);
    for (const std::string& line : now) sendEvent(LWEVNT_COMMAND, const_cast<char*>(line.c_str()));
  }
  if (!queued_.empty()) {
    queued_.clear();
    throw SessionError("plug-ins kept issuing commands; stopped after 100 rounds");
  }
}

void LayoutSession::issueCommand(const std::string& line) {
  require("command");
  std::string text = line;
  sendEvent(LWEVNT_COMMAND, text.data());
  runQueuedCommands();
}

void LayoutSession::loadScene(const std::string& path) {
  require("load");
  std::string name = path;
  sendEvent(LWEVNT_NOTIFY_SCENE_LOAD_STARTING, name.data());
  std::ifstream in(path);
  std::string header;
  if (!in || !std::getline(in, header)) throw SessionError("cannot read scene " + Quoted(path));
  if (header != "LWSC") throw SessionError(Quoted(path) + " is not a LightWave scene (it does not start with LWSC)");
  Scene& scene = session_->scene();
  sceneLines_.assign(1, header);
  for (std::string line; std::getline(in, line);) {
    sceneLines_.push_back(line);
    std::istringstream words(line);
    std::string key;
    double value = 0;
    if (!(words >> key >> value)) continue;
    if (key == "FirstFrame")
      scene.editSceneInfo([&](LWSceneInfo& info) { info.frameStart = static_cast<LWFrame>(value); });
    else if (key == "LastFrame")
      scene.editSceneInfo([&](LWSceneInfo& info) { info.frameEnd = static_cast<LWFrame>(value); });
    else if (key == "FramesPerSecond" && value > 0)
      scene.setFramesPerSecond(value);
  }
  scene.setName(std::filesystem::path(path).filename().string());
  scene.setFilename(path);
  sendEvent(LWEVNT_NOTIFY_SCENE_LOAD_COMPLETE, name.data());
  runQueuedCommands();
}

void LayoutSession::saveScene(const std::string& path) {
  require("save");
  std::string name = path;
  sendEvent(LWEVNT_NOTIFY_SCENE_SAVE_STARTING, name.data());
  const LWSceneInfo& info = session_->scene().sceneInfo();
  std::ostringstream number;
  number << info.framesPerSecond;
  const std::pair<std::string, std::string> keys[] = {{"FirstFrame", std::to_string(info.frameStart)},
                                                      {"LastFrame", std::to_string(info.frameEnd)},
                                                      {"FramesPerSecond", number.str()}};
  std::vector<std::string> lines = sceneLines_.empty() ? std::vector<std::string>{"LWSC", "3", ""} : sceneLines_;
  for (const auto& [key, value] : keys) {
    const std::string prefix = key + " ";
    auto same = [&prefix](const std::string& line) { return line.rfind(prefix, 0) == 0; };
    auto at = std::find_if(lines.begin(), lines.end(), same);
    if (at == lines.end()) at = lines.insert(lines.end(), "");
    *at = key + " " + value;
  }
  std::ofstream out(path, std::ios::trunc | std::ios::binary);
  for (const std::string& line : lines) out << line << '\n';
  out.close();
  if (!out) throw SessionError("cannot write scene " + Quoted(path));
  session_->scene().setName(std::filesystem::path(path).filename().string());
  session_->scene().setFilename(path);
  sendEvent(LWEVNT_NOTIFY_SCENE_SAVE_COMPLETE, name.data());
  runQueuedCommands();
}

void LayoutSession::goToFrame(LWFrame frame) {
  require("frame");
  session_->scene().setFrame(frame);
  sendEvent(LWEVNT_TIME, nullptr);
  runQueuedCommands();
}

void LayoutSession::render(LWFrame first, LWFrame last, int step) {
  require("render");
  if (step < 1) throw SessionError("a render step must be 1 or more, not " + std::to_string(step));
  if (last < first)
    throw SessionError("the last frame " + std::to_string(last) + " comes before the first " + std::to_string(first));
  // A render node tells its masters only that the render is complete.
  const bool layout = !options_.screamerNet;
  Scene& scene = session_->scene();
  const LWTime layoutTime = scene.time();
  if (layout) sendEvent(LWEVNT_NOTIFY_RENDER_STARTING, nullptr);
  for (LWFrame frame = first; frame <= last; frame += step) {
    if (layout) sendEvent(LWEVNT_NOTIFY_RENDER_FRAME_STARTING, FrameWord(frame));
    scene.setFrame(frame);
    try {
      if (renderer_) renderer_->renderFrame(*session_, frame);
    } catch (const std::exception& e) {
      if (layout) sendEvent(LWEVNT_NOTIFY_RENDER_ABORTED, nullptr);
      sendEvent(LWEVNT_NOTIFY_RENDER_COMPLETE, nullptr);
      scene.setTime(layoutTime);
      throw SessionError("frame " + std::to_string(frame) + " failed: " + e.what());
    }
    if (layout) sendEvent(LWEVNT_NOTIFY_RENDER_FRAME_COMPLETE, FrameWord(frame));
    if (last - frame < step) break;  // no overflow past the last frame
  }
  sendEvent(LWEVNT_NOTIFY_RENDER_COMPLETE, nullptr);
  scene.setTime(layoutTime);
  runQueuedCommands();
}

namespace {

const XPControl* FindFormControl(XPanel& panel, const std::string& label) {
  auto lower = [](std::string s) {
    for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
  };
  for (const XPControl& c : panel.controls())
    if (c.label == label) return &c;
  for (const XPControl& c : panel.controls())
    if (lower(c.label) == lower(label)) return &c;
  return nullptr;
}

void RunFormActions(XPanel& panel, const std::string& who, const std::vector<OptionsAction>& actions) {
  for (const OptionsAction& a : actions) {
    if (a.kind == OptionsAction::Kind::Set) {
      const std::string error = SetControlFromText(panel, a.label, a.value);
      if (!error.empty()) throw SessionError("set " + Quoted(a.label) + " " + Quoted(a.value) + ": " + error);
    } else if (a.kind == OptionsAction::Kind::Click) {
      const XPControl* control = FindFormControl(panel, a.label);
      if (!control) throw SessionError(who + " has no control " + Quoted(a.label));
      if (!panel.click(control->cid)) throw SessionError(Quoted(a.label) + " of " + who + " cannot be clicked");
    } else {
      throw SessionError(who + " shows a form panel, which takes only set and click");
    }
  }
}

std::vector<UserAction> ClassicActions(const std::string& who, const std::vector<OptionsAction>& actions) {
  std::vector<UserAction> user;
  bool cancelled = false;
  for (const OptionsAction& a : actions) {
    if (cancelled) throw SessionError("nothing can follow cancel: the panel is closed");
    switch (a.kind) {
      case OptionsAction::Kind::Set:
        throw SessionError(who + " shows a classic panel, which takes click, select, file and cancel");
      case OptionsAction::Kind::Click: user.push_back(UserAction::press(a.label)); break;
      case OptionsAction::Kind::Select: user.push_back(UserAction::selectRow(a.label, a.row)); break;
      case OptionsAction::Kind::File: user.push_back(UserAction::chooseFile(a.label, a.value)); break;
      case OptionsAction::Kind::Cancel:
        user.push_back(UserAction::cancel());
        cancelled = true;
        break;
    }
  }
  if (!cancelled) user.push_back(UserAction::close());
  return user;
}

}  // namespace

void LayoutSession::openOptions(const std::string& name, const std::vector<OptionsAction>& actions) {
  require("options");
  if (options_.screamerNet) throw SessionError("a render node has no interface: options cannot be opened");
  MasterInstance* master = findMaster(name);
  if (!master) throw SessionError("no master instance " + Quoted(name));
  const std::string who = Quoted(name);
  if (!master->interfaceRecord()) throw SessionError(who + " has no " LWMASTER_ICLASS " server");
  const InterfaceActivation activation = master->instance().activateInterface(*master->interfaceRecord());
  logMessages();
  if (activation.result != AFUNC_OK)
    throw SessionError("the interface of " + who + " refused activation (answer " + std::to_string(activation.result) + ")");
  if (activation.local.panel) {
    XPanel* panel = session_->xpanels().find(activation.local.panel);
    if (!panel) throw SessionError("the interface of " + who + " handed back a panel the host did not make");
    RunFormActions(*panel, who, actions);
  } else if (activation.local.options) {
    Panels& panels = session_->panels();
    const std::size_t problemsBefore = panels.problems().size();
    const std::size_t queuedBefore = panels.pendingSessions();
    panels.script(ClassicActions(who, actions));
    const LWError error = activation.local.options(master->instance().get());
    logMessages();
    if (error) throw SessionError("the options window of " + who + " failed: " + error);
    if (panels.pendingSessions() > queuedBefore) throw SessionError("the options window of " + who + " opened no panel");
    const auto problems = panels.problems();
    if (problems.size() > problemsBefore) throw SessionError(who + ": " + problems[problemsBefore]);
  } else {
    throw SessionError(who + " has no panel: its interface gave neither a form panel nor an options window");
  }
  runQueuedCommands();
}

void LayoutSession::quit() {
  if (quitted_) return;
  quitted_ = true;
  while (!masters_.empty()) {
    const std::string name = masters_.back()->name();
    masters_.pop_back();
    log("destroy " + Quoted(name));
    logMessages();
  }
  modules_.clear();
  session_.reset();
  log("quit");
  if (ownSettings_) {
    std::error_code ignored;
    std::filesystem::remove_all(settings_, ignored);
  }
}

}  // namespace lwhost
