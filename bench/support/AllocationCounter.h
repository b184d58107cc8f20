#pragma once

#include <cstdint>

namespace bench {

// Calls of any form of operator new in this process so far, the loaded modules' included: the
// benchmark executables replace the global allocation functions with counting ones.
std::uint64_t AllocationCount() noexcept;

}  // namespace bench
