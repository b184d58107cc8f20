#pragma once

#include <lwserver.h>

#include "hostkit/LWServer.h"

namespace hostkit {

// Registers one plug-in from a static initialiser: its handler record, then its interface
// record, under one server name and one tag array.
struct PluginRegistration {
  PluginRegistration(const char* handlerClass, ActivateFunc* handler, const char* interfaceClass,
                     ActivateFunc* interface, const char* serverName, ServerTagInfo* tags) {
    LWServer::AddPlugin(handlerClass, serverName, handler, tags);
    LWServer::AddPlugin(interfaceClass, serverName, interface, tags);
  }
};

}  // namespace hostkit
