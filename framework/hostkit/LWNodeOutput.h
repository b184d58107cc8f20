#pragma once

#include <lwnodes.h>

#include "hostkit/NodeServices.h"

namespace hostkit {

// One output of a node in the host's node editor, owned by the node that made it.
class LWNodeOutput {
 public:
  LWNodeOutput(NodeID node, ConnectionType type, const char* name);
  ~LWNodeOutput();
  LWNodeOutput(const LWNodeOutput&) = delete;
  LWNodeOutput& operator=(const LWNodeOutput&) = delete;

  // Hands a value to whoever asked for this output: a double for scalars, three for colours
  // and vectors, a 32-bit integer for integers, a whole material for materials.
  void setValue(NodeValue handle, void* value) const { set(handle, value); }
  void setValue(NodeValue handle, double value) const { set(handle, &value); }
  void setValue(NodeValue handle, int value) const { set(handle, &value); }

  bool is(NodeOutputID id) const { return id == output; }

  // Next to the id the sample compares with: the host's setValue, read once at construction. A C
  // function never throws, and saying so lets a noexcept Evaluate end in a jump to it.
  NodeOutputID output;
  void (*set)(NodeValue value, void* data) noexcept;
  LWNodeOutputService service;
  LWNodeOutputFuncs* funcs;
  NodeID node;
  int owned = 0;
};

}  // namespace hostkit
