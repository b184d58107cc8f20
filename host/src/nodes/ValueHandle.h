#pragma once

// The NodeValue handed to a node's evaluate: where the requester wants the value and in which
// type. It lives on the evaluating thread's stack.

#include <lwnodes.h>

#include <cstdint>

#include "lwhost/NodeConnector.h"
#include "lwhost/NodeValue.h"

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

// The output functions' setValue; inline because the host's own nodes call it for every sample.
inline void SetNodeValue(NodeValue value, void* data) noexcept {
  ValueHandle* handle = ValueHandle::FromValue(value);
  if (!handle || !data) return;
  CopyNodeValue(handle->direct() ? handle->target : handle->staging, data, handle->produced);
  handle->written = true;
}

}  // namespace lwhost
