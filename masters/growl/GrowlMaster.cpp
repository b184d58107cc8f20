#include "masters/growl/GrowlMaster.h"

#include <cstdint>
#include <sstream>
#include <string>

#include "hostkit/Logo.h"
#include "hostkit/SceneInfo.h"

namespace vorn {

namespace {

// The host's event codes, as numbers.
constexpr int kFrameStarting = 265;   // 0x109
constexpr int kFrameRendered = 272;   // 0x110
constexpr int kRenderStarting = 273;  // 0x111
constexpr int kRenderDone = 274;      // 0x112
constexpr int kSceneLoaded = 278;     // 0x116
constexpr int kSceneSaved = 280;      // 0x118

// Growl's record sizes as its published interface fixes them.
constexpr std::size_t kDelegateSize = 56;
constexpr std::size_t kNotificationSize = 40;

LWXPanelControl controls[] = {hostkit::kLogoControl, hostkit::kWebButtonControl, {0, nullptr, nullptr}};
LWXPanelDataDesc data[] = {{0, nullptr, nullptr}};

const char* SceneName(const hostkit::SceneInfo& scene) {
  const char* name = scene.available() ? scene.getGlobal()->name : nullptr;
  return name ? name : "";
}

LWFrame CurrentFrame() {
  hostkit::TimeInfo time;
  return time.available() ? time.getGlobal()->frame : 0;
}

CFMutableStringRef MacRomanString(const std::string& text) {
  CFMutableStringRef string = CFStringCreateMutable(kCFAllocatorDefault, 0);
  CFStringAppendCString(string, text.c_str(), kCFStringEncodingMacRoman);
  return string;
}

}  // namespace

GrowlMaster::GrowlMaster(void*, void*, LWError*) {
  registration = CFDictionaryCreateMutable(kCFAllocatorDefault, 0, &kCFTypeDictionaryKeyCallBacks,
                                           &kCFTypeDictionaryValueCallBacks);
  const int ticketVersion = 1;
  CFNumberRef version = CFNumberCreate(kCFAllocatorDefault, kCFNumberIntType, &ticketVersion);
  CFDictionarySetValue(registration, CFSTR("TicketVersion"), version);
  CFRelease(version);

  notificationNames[kFrameStarting] = CFSTR("Starting Frame Render");
  notificationNames[kFrameRendered] = CFSTR("Frame Rendered");
  notificationNames[kRenderStarting] = CFSTR("Starting Render");
  notificationNames[kRenderDone] = CFSTR("Render Done");
  notificationNames[kSceneLoaded] = CFSTR("Scene Loaded");
  notificationNames[kSceneSaved] = CFSTR("Scene Saved");

  const void* names[6];
  CFIndex count = 0;
  for (const auto& entry : notificationNames) names[count++] = entry.second;
  CFArrayRef all = CFArrayCreate(kCFAllocatorDefault, names, count, &kCFTypeArrayCallBacks);
  CFDictionarySetValue(registration, CFSTR("AllNotifications"), all);
  // Every notification is on until the user turns it off.
  CFDictionarySetValue(registration, CFSTR("DefaultNotifications"), all);
  CFRelease(all);

  delegate.size = kDelegateSize;
  delegate.applicationName = CFSTR("LightWave 3D");
  delegate.registrationDictionary = registration;
  delegate.referenceCount = 1;
  Growl_SetDelegate(&delegate);
}

GrowlMaster& GrowlMaster::operator=(const GrowlMaster& other) {
  notificationNames = other.notificationNames;
  items = other.items;
  return *this;
}

unsigned int GrowlMaster::Flags() { return 3; }

double GrowlMaster::Event(const LWMasterAccess* access) {
  hostkit::SceneInfo scene;
  std::ostringstream text;
  const char* title = nullptr;
  const int code = access->eventCode;
  switch (code) {
    case kFrameStarting:
      text << "Scene: " << SceneName(scene) << "\nFrame: " << CurrentFrame();
      title = "Starting Frame";
      break;
    case kFrameRendered:
      text << "Scene: " << SceneName(scene) << "\nFrame: "
           << static_cast<unsigned int>(reinterpret_cast<std::uintptr_t>(access->eventData));
      title = "Frame Rendered";
      break;
    case kRenderStarting:
      text << "Scene: " << SceneName(scene);
      title = "Render Starting";
      break;
    case kRenderDone:
      text << "Scene: " << SceneName(scene);
      title = "Render Finished";
      break;
    case kSceneLoaded:
    case kSceneSaved:
      if (access->eventData) text << static_cast<const char*>(access->eventData);
      title = code == kSceneLoaded ? "Scene Loaded" : "Scene Saved";
      break;
    default:
      return 0.0;
  }

  Growl_Notification notification{};
  notification.size = kNotificationSize;
  notification.name = notificationNames.find(code) != notificationNames.end() ? notificationNames[code] : nullptr;
  CFMutableStringRef titleString = MacRomanString(title);
  CFMutableStringRef description = MacRomanString(text.str());
  notification.title = titleString;
  notification.description = description;
  Growl_PostNotification(&notification);
  CFRelease(description);
  CFRelease(titleString);
  return 0.0;
}

int GrowlMaster::Interface(int, LWInterface* local, void*) {
  if (!panel) CreateViewXPanel(controls, data, hostkit::LogoHints(), false);
  local->panel = panel;
  return 0;
}

}  // namespace vorn
