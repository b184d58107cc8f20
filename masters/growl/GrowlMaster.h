#pragma once

#include <lwmaster.h>

#include <map>

#include "hostkit/XPanelMasterHandler.h"
#include "platform/Growl.h"

namespace vorn {

// Tells Growl when a scene is loaded or saved and when a render or one of its frames starts
// or finishes, so that a render can be followed from any application.
class GrowlMaster : public hostkit::XPanelMasterHandler {
 public:
  GrowlMaster(void* priv, void* context, LWError* err);
  GrowlMaster& operator=(const GrowlMaster& other);

  double Event(const LWMasterAccess* access) override;
  unsigned int Flags() override;
  int Interface(int version, LWInterface* local, void* serverData) override;

  // Host event code to Growl notification name.
  std::map<int, CFStringRef> notificationNames;
  // The registration ticket; Growl reads it for as long as the instance lives.
  CFMutableDictionaryRef registration = nullptr;
  Growl_Delegate delegate{};
};

}  // namespace vorn
