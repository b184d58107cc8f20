#include "lwhost/ItemId.h"

#include <cstdio>

namespace lwhost::itemid {

std::string ToString(LWItemID id) {
  char text[24];
  std::snprintf(text, sizeof text, "%08llX",
                static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(id)));
  return text;
}

}  // namespace lwhost::itemid
