// Growl's C interface for systems without Growl: each notification goes to the desktop's own
// notification service and, when VornNotify.cfg asks for it, to a program.
#include "platform/Growl.h"

#include <set>
#include <string>
#include <vector>

#include "platform/DesktopNotification.h"
#include "platform/NotificationForwarding.h"
#include "platform/NotificationHost.h"
#include "platform/StartProgram.h"

namespace platform {

namespace {

struct Registration {
  bool registered = false;
  std::string application;
  std::set<std::string> enabled;  // the ticket's default notifications
};

// The frames of one render replace each other on the desktop; the render's start and finish
// stay separate notices.
bool IsFrameNotice(const std::string& name) { return name == "Starting Frame Render" || name == "Frame Rendered"; }
bool StartsRender(const std::string& name) { return name == "Starting Render"; }
bool EndsRender(const std::string& name) { return name == "Render Done"; }

struct State {
  NotificationHost host;
  Registration registration;
  unsigned int frameNotice = 0;
  std::set<std::string> reported;
};

State& TheState() {
  static State state;
  return state;
}

// Each distinct problem is told once per session of the host.
void ReportOnce(const std::string& problem) {
  State& state = TheState();
  if (!state.reported.insert(problem).second || !state.host.report) return;
  state.host.report("Vorn Growl Notifier:", problem.c_str());
}

void Forward(const std::string& title, const std::string& description) {
  State& state = TheState();
  const char* settings = state.host.settingsDirectory ? state.host.settingsDirectory() : nullptr;
  if (!settings || !*settings) return;
  ForwardingConfig config = ReadForwardingConfig(settings);
  if (config.command.empty()) {
    if (!config.problem.empty()) ReportOnce(config.problem);
    return;
  }
  config.command.push_back(title);
  config.command.push_back(description);
  if (!StartProgram(config.command)) ReportOnce("cannot start " + config.command[0] + " to forward notifications");
}

}  // namespace

void SetNotificationHost(const NotificationHost& host) { TheState().host = host; }

}  // namespace platform

Boolean Growl_SetDelegate(struct Growl_Delegate* newDelegate) {
  if (!newDelegate) return false;
  // Copied, not kept: the delegate may go before we do.
  platform::Registration r;
  r.registered = true;
  r.application = platform::cf::Utf8(newDelegate->applicationName);
  CFArrayRef defaults = newDelegate->registrationDictionary
                            ? static_cast<CFArrayRef>(CFDictionaryGetValue(newDelegate->registrationDictionary,
                                                                           CFSTR("DefaultNotifications")))
                            : nullptr;
  for (CFIndex i = 0; i < CFArrayGetCount(defaults); ++i)
    r.enabled.insert(platform::cf::Utf8(static_cast<CFStringRef>(CFArrayGetValueAtIndex(defaults, i))));
  platform::TheState().registration = std::move(r);
  return true;
}

void Growl_PostNotification(const struct Growl_Notification* notification) {
  platform::State& state = platform::TheState();
  if (!notification || !state.registration.registered) return;
  const std::string name = platform::cf::Utf8(notification->name);
  // Growl shows only what the application registered and the user left on.
  if (!state.registration.enabled.count(name)) return;

  platform::DesktopNotice notice;
  notice.application = state.registration.application;
  notice.category = name;
  notice.title = platform::cf::Utf8(notification->title);
  notice.body = platform::cf::Utf8(notification->description);
  if (platform::StartsRender(name)) state.frameNotice = 0;
  if (platform::IsFrameNotice(name)) notice.replaces = state.frameNotice;
  std::string problem;
  const unsigned int id = platform::ShowDesktopNotice(notice, &problem);
  if (platform::IsFrameNotice(name)) state.frameNotice = id;
  if (platform::EndsRender(name)) state.frameNotice = 0;
  if (!problem.empty()) platform::ReportOnce(problem);

  platform::Forward(notice.title, notice.body);
}
