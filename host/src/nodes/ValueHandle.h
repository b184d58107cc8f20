#pragma once

// The NodeValue handed to a node's evaluate: where the requester wants the value and in which
// type. It lives on the evaluating thread's stack.

#include <lwnodes.h>

#include <cstdint>

#include "lwhost/NodeConnector.h"

namespace lwhost {

struct ValueHandle {
  static constexpr std::uint32_t kTag = 0x4E56414Cu;  // "NVAL"

  std::uint32_t tag = kTag;
  ConnectionType requested;  // the requesting input's type (what getType reports)
  ConnectionType produced;   // the evaluated output's type (what setValue copies)
  void* target;              // the requester's buffer
  bool written = false;
  // Same types: values go straight to `target`. Otherwise they wait here in the output's type
  // and are converted once the node returns, so a node that writes nothing changes nothing.
  alignas(double) unsigned char staging[sizeof(LWNodalMaterial)];

  static ValueHandle* FromValue(NodeValue value) {
    auto* handle = static_cast<ValueHandle*>(value);
    return handle && handle->tag == kTag ? handle : nullptr;
  }
  bool direct() const { return requested == produced; }
};

// Asks the output's node for its value as `requested` into `target`; counts the evaluation.
// Returns false (and leaves `target` alone) when the output's type does not convert.
bool EvaluateOutput(NodeOutput& output, LWNodalAccess& access, void* target, ConnectionType requested) noexcept;

}  // namespace lwhost
