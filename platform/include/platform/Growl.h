#pragma once

// The Growl notification system's C interface, as the notifier calls it. Where Growl itself is
// not available the module carries a replacement (platform/common/Growl.cpp) that shows each
// notification on the desktop and can forward it to a program (see NotificationForwarding.h).

#include "platform/CoreFoundation.h"

// The application's registration; Growl keeps what it needs, so the record may go afterwards.
struct Growl_Delegate {
  std::size_t size;
  CFStringRef applicationName;
  CFDictionaryRef registrationDictionary;
  CFDataRef applicationIconData;
  CFStringRef growlInstallationWindowTitle;
  CFStringRef growlInstallationInformation;
  CFStringRef growlUpdateWindowTitle;
  CFStringRef growlUpdateInformation;
  unsigned int referenceCount;
  void* (*retain)(void*);
  void (*release)(void*);
  void (*growlIsReady)(void);
  void (*growlNotificationWasClicked)(CFPropertyListRef clickContext);
  void (*growlNotificationTimedOut)(CFPropertyListRef clickContext);
};

struct Growl_Notification {
  std::size_t size;
  CFStringRef name;         // the registered notification name
  CFStringRef title;
  CFStringRef description;
  CFDataRef iconData;
  signed int priority;
  unsigned int reserved : 31;
  unsigned int isSticky : 1;
  CFPropertyListRef clickContext;
  void (*clickCallback)(CFPropertyListRef clickContext);
  CFStringRef identifier;
};

// Registers the application; the latest delegate wins. False for a null delegate.
Boolean Growl_SetDelegate(struct Growl_Delegate* newDelegate);
// Shows one notification. Never blocks for long and never fails visibly.
void Growl_PostNotification(const struct Growl_Notification* notification);
