#include "platform/ProcessorCount.h"

#include <windows.h>

namespace platform {

int ProcessorCount() {
  // The affinity mask is what a render actually gets (start /affinity, job objects); it spans one
  // processor group, which is where a process's threads run unless it places them itself.
  DWORD_PTR mask = 0, system = 0;
  if (GetProcessAffinityMask(GetCurrentProcess(), &mask, &system) && mask) {
    int n = 0;
    for (; mask; mask &= mask - 1) ++n;
    return n;
  }
  DWORD n = GetActiveProcessorCount(ALL_PROCESSOR_GROUPS);
  return n > 0 ? static_cast<int>(n) : 1;
}

}  // namespace platform
