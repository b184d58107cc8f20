#include "platform/ProcessorCount.h"

#include <sys/sysctl.h>

namespace platform {

int ProcessorCount() {
  int n = 0;
  size_t size = sizeof n;
  if (sysctlbyname("hw.activecpu", &n, &size, nullptr, 0) == 0 && n > 0) return n;
  return 1;
}

}  // namespace platform
