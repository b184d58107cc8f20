// Desktop notices through the freedesktop notification service on the session bus. libdbus is
// loaded when the first notice is shown, so the module needs no D-Bus to load: a render node
// without one simply shows nothing.
#include "platform/DesktopNotification.h"

#include <dlfcn.h>
#include <sys/stat.h>

#include <cstdint>
#include <cstdlib>
#include <string>

namespace platform {

namespace {

// libdbus's own declarations, for the few functions used. DBusError's public layout is two
// texts and then private words; the buffers below are larger than libdbus's structures.
struct DBusError {
  const char* name;
  const char* message;
  alignas(8) unsigned char rest[64];
};
struct DBusMessageIter {
  alignas(8) unsigned char opaque[128];
};
struct DBusConnection;
struct DBusMessage;
using dbus_bool_t = std::uint32_t;

constexpr int kSessionBus = 0;  // DBUS_BUS_SESSION
constexpr int kTypeString = 's', kTypeUint32 = 'u', kTypeInt32 = 'i', kTypeArray = 'a', kTypeDictEntry = 'e',
              kTypeVariant = 'v';
constexpr int kTimeoutMs = 200;  // the interface thread waits no longer than this

struct DBus {
  void (*error_init)(DBusError*);
  void (*error_free)(DBusError*);
  DBusConnection* (*bus_get_private)(int, DBusError*);
  void (*connection_set_exit_on_disconnect)(DBusConnection*, dbus_bool_t);
  void (*connection_close)(DBusConnection*);
  void (*connection_unref)(DBusConnection*);
  DBusMessage* (*message_new_method_call)(const char*, const char*, const char*, const char*);
  void (*message_unref)(DBusMessage*);
  void (*message_iter_init_append)(DBusMessage*, DBusMessageIter*);
  dbus_bool_t (*message_iter_append_basic)(DBusMessageIter*, int, const void*);
  dbus_bool_t (*message_iter_open_container)(DBusMessageIter*, int, const char*, DBusMessageIter*);
  dbus_bool_t (*message_iter_close_container)(DBusMessageIter*, DBusMessageIter*);
  dbus_bool_t (*message_iter_init)(DBusMessage*, DBusMessageIter*);
  int (*message_iter_get_arg_type)(DBusMessageIter*);
  void (*message_iter_get_basic)(DBusMessageIter*, void*);
  DBusMessage* (*connection_send_with_reply_and_block)(DBusConnection*, DBusMessage*, int, DBusError*);
};

template <class F>
bool Load(void* library, const char* name, F*& slot) {
  slot = reinterpret_cast<F*>(dlsym(library, name));
  return slot != nullptr;
}

bool LoadDBus(DBus& d, std::string* problem) {
  void* library = dlopen("libdbus-1.so.3", RTLD_NOW | RTLD_LOCAL);
  if (!library) {
    *problem = "libdbus-1.so.3 is not installed; notifications are not shown on the desktop";
    return false;
  }
  // The library stays loaded: it may keep threads and handlers of its own.
  const bool all = Load(library, "dbus_error_init", d.error_init) && Load(library, "dbus_error_free", d.error_free) &&
                   Load(library, "dbus_bus_get_private", d.bus_get_private) &&
                   Load(library, "dbus_connection_set_exit_on_disconnect", d.connection_set_exit_on_disconnect) &&
                   Load(library, "dbus_connection_close", d.connection_close) &&
                   Load(library, "dbus_connection_unref", d.connection_unref) &&
                   Load(library, "dbus_message_new_method_call", d.message_new_method_call) &&
                   Load(library, "dbus_message_unref", d.message_unref) &&
                   Load(library, "dbus_message_iter_init_append", d.message_iter_init_append) &&
                   Load(library, "dbus_message_iter_append_basic", d.message_iter_append_basic) &&
                   Load(library, "dbus_message_iter_open_container", d.message_iter_open_container) &&
                   Load(library, "dbus_message_iter_close_container", d.message_iter_close_container) &&
                   Load(library, "dbus_message_iter_init", d.message_iter_init) &&
                   Load(library, "dbus_message_iter_get_arg_type", d.message_iter_get_arg_type) &&
                   Load(library, "dbus_message_iter_get_basic", d.message_iter_get_basic) &&
                   Load(library, "dbus_connection_send_with_reply_and_block", d.connection_send_with_reply_and_block);
  if (!all) *problem = "libdbus-1.so.3 lacks functions it should have; notifications are not shown on the desktop";
  return all;
}

// Without an address libdbus would try to start a bus of its own; a host without a desktop
// session has none to offer.
bool HasSessionBus() {
  const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
  if (address && *address) return true;
  const char* runtime = std::getenv("XDG_RUNTIME_DIR");
  struct stat info {};
  return runtime && *runtime && stat((std::string(runtime) + "/bus").c_str(), &info) == 0;
}

class Notifier {
 public:
  ~Notifier() {
    if (connection_) {
      dbus_.connection_close(connection_);
      dbus_.connection_unref(connection_);
    }
  }

  unsigned int show(const DesktopNotice& notice, std::string* problem) {
    if (failed_ || !connect(problem)) return 0;
    DBusMessage* call = dbus_.message_new_method_call("org.freedesktop.Notifications", "/org/freedesktop/Notifications",
                                                      "org.freedesktop.Notifications", "Notify");
    if (!call || !fill(call, notice)) {
      if (call) dbus_.message_unref(call);
      return 0;
    }
    DBusError error;
    dbus_.error_init(&error);
    DBusMessage* reply = dbus_.connection_send_with_reply_and_block(connection_, call, kTimeoutMs, &error);
    dbus_.message_unref(call);
    if (!reply) {
      fail(problem, std::string("the desktop's notification service did not answer (") +
                        (error.message ? error.message : "no reason given") + ")");
      dbus_.error_free(&error);
      return 0;
    }
    unsigned int id = 0;
    DBusMessageIter it;
    if (dbus_.message_iter_init(reply, &it) && dbus_.message_iter_get_arg_type(&it) == kTypeUint32) {
      std::uint32_t value = 0;
      dbus_.message_iter_get_basic(&it, &value);
      id = value;
    }
    dbus_.message_unref(reply);
    return id;
  }

 private:
  void fail(std::string* problem, const std::string& why) {
    failed_ = true;
    *problem = why + "; notifications are not shown on the desktop";
  }

  bool connect(std::string* problem) {
    if (connection_) return true;
    if (!HasSessionBus()) {
      fail(problem, "there is no desktop session bus");
      return false;
    }
    std::string why;
    if (!LoadDBus(dbus_, &why)) {
      failed_ = true;
      *problem = why;
      return false;
    }
    DBusError error;
    dbus_.error_init(&error);
    connection_ = dbus_.bus_get_private(kSessionBus, &error);
    if (!connection_) {
      fail(problem, std::string("cannot reach the session bus (") + (error.message ? error.message : "no reason") + ")");
      dbus_.error_free(&error);
      return false;
    }
    // libdbus would end the host when the bus goes away.
    dbus_.connection_set_exit_on_disconnect(connection_, 0);
    return true;
  }

  bool appendString(DBusMessageIter* it, const std::string& text) {
    const char* value = text.c_str();
    return dbus_.message_iter_append_basic(it, kTypeString, &value);
  }

  // Notify(app_name, replaces_id, app_icon, summary, body, actions, hints, expire_timeout)
  bool fill(DBusMessage* call, const DesktopNotice& n) {
    DBusMessageIter args, actions, hints, entry, variant;
    dbus_.message_iter_init_append(call, &args);
    const std::uint32_t replaces = n.replaces;
    const std::int32_t expire = -1;  // the server's default
    if (!appendString(&args, n.application) || !dbus_.message_iter_append_basic(&args, kTypeUint32, &replaces) ||
        !appendString(&args, "") || !appendString(&args, n.title) || !appendString(&args, n.body))
      return false;
    if (!dbus_.message_iter_open_container(&args, kTypeArray, "s", &actions) ||
        !dbus_.message_iter_close_container(&args, &actions))
      return false;
    if (!dbus_.message_iter_open_container(&args, kTypeArray, "{sv}", &hints) ||
        !dbus_.message_iter_open_container(&hints, kTypeDictEntry, nullptr, &entry) || !appendString(&entry, "category") ||
        !dbus_.message_iter_open_container(&entry, kTypeVariant, "s", &variant) || !appendString(&variant, n.category) ||
        !dbus_.message_iter_close_container(&entry, &variant) || !dbus_.message_iter_close_container(&hints, &entry) ||
        !dbus_.message_iter_close_container(&args, &hints))
      return false;
    return dbus_.message_iter_append_basic(&args, kTypeInt32, &expire);
  }

  DBus dbus_{};
  DBusConnection* connection_ = nullptr;
  bool failed_ = false;
};

}  // namespace

unsigned int ShowDesktopNotice(const DesktopNotice& notice, std::string* problem) {
  static Notifier notifier;
  return notifier.show(notice, problem);
}

}  // namespace platform
