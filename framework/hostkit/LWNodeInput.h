#pragma once

#include <lwnodes.h>

#include <memory>

#include "hostkit/GlobalBase.h"

namespace hostkit {

// One input of a node in the host's node editor, owned by the node that made it.
class LWNodeInput {
 public:
  LWNodeInput(NodeID node, ConnectionType type, const char* name, NodeInputEvent* callback);
  ~LWNodeInput();
  LWNodeInput(const LWNodeInput&) = delete;
  LWNodeInput& operator=(const LWNodeInput&) = delete;

  // Evaluates the connected output into `value`; leaves it untouched and answers false when
  // nothing is connected. Safe on every render thread.
  bool evaluate(LWNodalAccess* access, void* value) const { return evaluateInput(input, access, value) != 0; }
  bool connected() const { return funcs->check(input) != 0; }

  // Side by side for the sample: the input and the host's evaluate, read once at construction
  // (a C function: it never throws).
  NodeInputID input;
  int (*evaluateInput)(NodeInputID input, LWNodalAccess* access, void* value) noexcept;
  LWNodeInputFuncs* funcs;
  std::unique_ptr<GlobalBase<LWNodeInputFuncs>> service;
  NodeID node;
  int owned = 0;
};

}  // namespace hostkit
