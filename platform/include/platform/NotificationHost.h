#pragma once

namespace platform {

// What the notification replacement needs from the host it runs in, supplied by the module:
// the host's "Settings" directory (with a trailing separator; empty when unknown) and a way to
// tell the user something once (two lines, the second may be null).
struct NotificationHost {
  const char* (*settingsDirectory)() = nullptr;
  void (*report)(const char* first, const char* second) = nullptr;
};

void SetNotificationHost(const NotificationHost& host);

}  // namespace platform
