// The one symbol a LightWave module exports. The records are published by Startup.
#include <lwmodule.h>

#include "hostkit/LWServer.h"

#if defined(_WIN32)
#define VORN_EXPORT __declspec(dllexport)
#else
#define VORN_EXPORT __attribute__((visibility("default")))
#endif

extern "C" {
VORN_EXPORT ModuleDescriptor _mod_descrip = {
    MOD_SYSSYNC, MOD_SYSVER, MOD_MACHINE, hostkit::LWServer::Startup, hostkit::LWServer::Shutdown, nullptr};
}
