#pragma once

#include <lwrender.h>

#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "lwhost/FrameRenderer.h"
#include "lwhost/MasterInstance.h"
#include "lwhost/Session.h"

namespace lwhost {

// A request a Layout session cannot carry out; what() says what and why, in one line.
class SessionError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct LayoutSessionOptions {
  bool screamerNet = false;       // a render node: no panels, only the render-complete notice
  std::string settingsDirectory;  // an existing folder; empty: a fresh temporary one, removed at the end
};

// One thing the user does in a master's options panel.
struct OptionsAction {
  enum class Kind {
    Set,     // type `value` into the form control `label` (as lwhost panel --set)
    Click,   // a form's button, or a classic panel's button
    Select,  // a classic list box row
    File,    // a classic file button answered with `value`
    Cancel,  // close a classic panel with Cancel instead of Continue
  };
  Kind kind = Kind::Click;
  std::string label, value;
  int row = -1;
};

// Layout over time: master plug-in instances hearing the commands issued, the scenes loaded and
// saved and the renders made, as LightWave sends them. Events 0x100 and above go only to
// instances whose flags ask for notifications (LWMASTF_RECEIVE_NOTIFICATIONS); the others go
// to every instance. Every event delivered, every instance made or destroyed and every message
// a plug-in sends is written to the log, one line each.
class LayoutSession {
 public:
  using LogSink = std::function<void(const std::string& line)>;

  explicit LayoutSession(LayoutSessionOptions options = {});
  // Quits if the script did not.
  ~LayoutSession();
  LayoutSession(const LayoutSession&) = delete;
  LayoutSession& operator=(const LayoutSession&) = delete;

  Session& session() { return *session_; }
  const std::string& settingsDirectory() const { return settings_; }
  void setLog(LogSink sink) { log_ = std::move(sink); }
  // The frame renderer the render statement uses (not owned); null renders nothing but events.
  void setRenderer(FrameRenderer* renderer) { renderer_ = renderer; }

  // A module under a short name for the master statements. Throws ModuleError or SessionError.
  const ModuleFile& loadModule(const std::string& alias, const std::string& path);
  // A new instance named `name`, or the server's name ("Growl", then "Growl (2)", ...).
  MasterInstance& addMaster(const std::string& alias, const std::string& server, const std::string& name = "");
  MasterInstance* findMaster(const std::string& name);
  void removeMaster(const std::string& name);
  const std::vector<std::unique_ptr<MasterInstance>>& masters() const { return masters_; }

  // Opens the instance's options as LightWave does and performs the actions; a classic panel
  // closes with Continue afterwards unless the actions cancelled it.
  void openOptions(const std::string& name, const std::vector<OptionsAction>& actions);

  // Event 1 to every instance, with the line as typed; commands plug-ins evaluate while they
  // hear it follow once the round is over.
  void issueCommand(const std::string& line);
  // 0x115/0x116 around reading the scene file, 0x117/0x118 around writing it; the scene info's
  // name (the file's name without folders) and file name follow. A save writes the lines of the
  // scene last loaded, with the frame range and rate as they are now, so nothing of a real
  // LightWave scene is lost.
  void loadScene(const std::string& path);
  void saveScene(const std::string& path);
  // Moves Layout's current frame and tells every instance (event 2).
  void goToFrame(LWFrame frame);
  // 0x111; per frame 0x109, the picture, 0x110; then 0x112. The scene's current frame stays
  // where Layout had it until the first frame is rendered, moves to each frame as it renders,
  // and returns afterwards. A failing frame sends 0x123 and 0x112, then throws SessionError.
  void render(LWFrame first, LWFrame last, int step = 1);

  // Every instance destroyed (newest first), the modules shut down. Nothing works afterwards.
  void quit();
  bool quitted() const { return quitted_; }

  // One event to the instances its code reaches.
  void sendEvent(int code, void* data);

 private:
  void require(const char* what) const;
  void log(const std::string& line);
  void logMessages();
  void runQueuedCommands();
  static int Evaluate(void* data, const char* command);

  LayoutSessionOptions options_;
  std::string settings_;
  bool ownSettings_ = false;
  std::unique_ptr<Session> session_;
  std::map<std::string, ModuleFile*> modules_;
  std::vector<std::unique_ptr<MasterInstance>> masters_;
  std::vector<std::string> queued_;
  std::vector<std::string> sceneLines_;  // the scene file last read, for what lwhost does not use
  FrameRenderer* renderer_ = nullptr;
  LogSink log_;
  std::size_t messagesSeen_ = 0;
  bool quitted_ = false;
};

}  // namespace lwhost
