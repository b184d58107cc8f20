// Desktop notices through the system's Notification Center, asked by AppleScript.
#include "platform/DesktopNotification.h"

#include "platform/StartProgram.h"

namespace platform {

unsigned int ShowDesktopNotice(const DesktopNotice& notice, std::string* problem) {
  // The texts travel as arguments, never inside the script.
  static const char kScript[] =
      "on run argv\n"
      "display notification (item 2 of argv) with title (item 1 of argv)\n"
      "end run";
  if (!StartProgram({"/usr/bin/osascript", "-e", kScript, notice.title, notice.body}))
    *problem = "osascript cannot be started; notifications are not shown on the desktop";
  return 0;
}

}  // namespace platform
