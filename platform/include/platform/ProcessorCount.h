#pragma once

namespace platform {

// Processors available to this process, as the operating system counts them; at least 1.
int ProcessorCount();

}  // namespace platform
