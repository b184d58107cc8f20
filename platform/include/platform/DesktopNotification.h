#pragma once

#include <string>

namespace platform {

// One notification for the desktop, texts in UTF-8.
struct DesktopNotice {
  std::string application;  // "LightWave 3D"
  std::string category;     // the notification's registered name
  std::string title;
  std::string body;
  unsigned int replaces = 0;  // an id this notice takes the place of; 0: a new one
};

// Shows a notice with the system's notification service. Returns the id the service gave it
// (0 when it gives none). `problem` gets why nothing was shown; once the service has failed
// the backend stops trying, so a host without one pays for the first attempt only.
unsigned int ShowDesktopNotice(const DesktopNotice& notice, std::string* problem);

}  // namespace platform
