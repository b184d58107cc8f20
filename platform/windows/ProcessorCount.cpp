#include "platform/ProcessorCount.h"

#include <windows.h>

namespace platform {

int ProcessorCount() {
  DWORD n = GetActiveProcessorCount(ALL_PROCESSOR_GROUPS);
  return n > 0 ? static_cast<int>(n) : 1;
}

}  // namespace platform
