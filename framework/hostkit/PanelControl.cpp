#include "hostkit/PanelControl.h"

#include <vector>

namespace hostkit {

int PanelControl::GetInt(int tag) const {
  if (!control) return 0;
  LWValue value{};
  value.intv.type = LWT_INTEGER;
  control->get(control, static_cast<cTag>(tag), &value);
  return value.intv.value;
}

void PanelControl::SetInt(int tag, int v) const {
  if (!control) return;
  LWValue value{};
  value.intv.type = LWT_INTEGER;
  value.intv.value = v;
  control->set(control, static_cast<cTag>(tag), &value);
}

void* PanelControl::GetPointer(int tag) const {
  if (!control) return nullptr;
  LWValue value{};
  value.ptr.type = LWT_POINTER;
  control->get(control, static_cast<cTag>(tag), &value);
  return value.ptr.ptr;
}

void PanelControl::SetPointer(int tag, void* v) const {
  if (!control) return;
  LWValue value{};
  value.ptr.type = LWT_POINTER;
  value.ptr.ptr = v;
  control->set(control, static_cast<cTag>(tag), &value);
}

std::string PanelControl::GetString(const std::string& current) const {
  if (!control) return current;
  int size = static_cast<int>(current.size()) + 1;
  if (size < 2) size = 2048;
  std::vector<char> buffer(static_cast<size_t>(size), '\0');
  LWValue value{};
  value.str.type = LWT_STRING;
  value.str.buf = buffer.data();
  value.str.bufLen = size;
  control->get(control, CTL_VALUE, &value);
  buffer.back() = '\0';
  return std::string(buffer.data());
}

}  // namespace hostkit
