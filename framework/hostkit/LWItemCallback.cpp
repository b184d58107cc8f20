#include "hostkit/LWItemCallback.h"

#include <memory>

#include "hostkit/LightWave.h"

namespace hostkit {

namespace {
constexpr char kNone[] = "(none)";
}

int LWItemCallback::popCount() { return item.info.CountItems(item.type) + withNone; }

const char* LWItemCallback::popName(int index) {
  if (LightWave::IsModeler()) return kNone;
  if (withNone) {
    if (index == 0) return kNone;
    --index;
  }
  std::unique_ptr<LWItem> found(item.info.GetItemN(index, item.type));
  if (!found || !found->id) return kNone;
  const char* name = item.info.Name(found->id);
  return name ? name : kNone;
}

}  // namespace hostkit
