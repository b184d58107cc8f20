#pragma once

#include <lwmaster.h>
#include <lwnodes.h>

#include <cstring>

#include "lwhost/Host.h"
#include "lwhost/ModuleFile.h"

// Handler tables activated straight from a module's record, the way LightWave fills them, for
// tests that call a plug-in's functions one by one.
struct RawNodeHandler {
  LWInstanceFuncs inst{};
  LWItemFuncs item{};
  LWRenderFuncs rend{};
  LWNodeHandler handler{};

  RawNodeHandler() {
    handler.inst = &inst;
    handler.item = &item;
    handler.rend = &rend;
  }

  int activate(const lwhost::ModuleFile& module, const char* server, int version) {
    return module.activate(module.require(LWNODE_HCLASS, server), version, &handler);
  }
};

struct RawMasterHandler {
  LWInstanceFuncs inst{};
  LWItemFuncs item{};
  LWMasterHandler handler{};

  RawMasterHandler() {
    handler.inst = &inst;
    handler.item = &item;
  }

  int activate(const lwhost::ModuleFile& module, const char* server, int version) {
    return module.activate(module.require(LWMASTER_HCLASS, server), version, &handler);
  }
};

// Fills a table with a recognisable non-null pattern, to see which fields an activation wrote.
template <class T>
void Poison(T& table) {
  std::memset(&table, 0x5A, sizeof table);
}

template <class T>
bool IsPoisoned(const T& table) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(&table);
  for (size_t i = 0; i < sizeof table; ++i)
    if (bytes[i] != 0x5A) return false;
  return true;
}
