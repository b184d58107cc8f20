// Registers the Growl Notifier, and lends the notification replacement the host's settings
// folder and message service.
#include <lwhost.h>
#include <lwmaster.h>

#include <string>

#include "hostkit/DirInfo.h"
#include "hostkit/LWMessage.h"
#include "hostkit/MasterAdaptor.h"
#include "hostkit/PluginRegistration.h"
#include "hostkit/XPanelAdaptor.h"
#include "masters/growl/GrowlMaster.h"
#include "platform/NotificationHost.h"

namespace {

ServerTagInfo tags[] = {
    {"Vorn Growl Notifier", SRVTAG_USERNAME},
    {"Vorn Tools", SRVTAG_CMDGROUP},
    {nullptr, 0},
};

hostkit::PluginRegistration registration(LWMASTER_HCLASS, hostkit::MasterAdaptor<vorn::GrowlMaster, 1>::Activate,
                                         LWMASTER_ICLASS, hostkit::XPanelAdaptor<vorn::GrowlMaster>::Interface, "Growl",
                                         tags);

const char* SettingsDirectory() {
  static std::string path;
  hostkit::DirInfo directories;
  path = directories.GetDirectory("Settings");
  return path.c_str();
}

void Report(const char* first, const char* second) {
  hostkit::GlobalBase<st_LWMessageFuncs> messages;
  if (messages.available()) messages.getGlobal()->info(first, second);
}

struct NotificationHostSetup {
  NotificationHostSetup() {
    platform::NotificationHost host;
    host.settingsDirectory = SettingsDirectory;
    host.report = Report;
    platform::SetNotificationHost(host);
  }
} notificationHost;

}  // namespace
