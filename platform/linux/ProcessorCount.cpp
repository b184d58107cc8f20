#include "platform/ProcessorCount.h"

#include <sched.h>
#include <unistd.h>

namespace platform {

int ProcessorCount() {
  // The affinity mask is what a render actually gets (containers, taskset); fall back to online CPUs.
  cpu_set_t set;
  if (sched_getaffinity(0, sizeof set, &set) == 0) {
    int n = CPU_COUNT(&set);
    if (n > 0) return n;
  }
  long online = sysconf(_SC_NPROCESSORS_ONLN);
  return online > 0 ? static_cast<int>(online) : 1;
}

}  // namespace platform
