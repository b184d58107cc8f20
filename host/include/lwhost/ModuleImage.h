#pragma once

#include <cstddef>
#include <string>

namespace lwhost {

// Checks that a shared object's loadable parts lie inside the file, before the system loader
// maps it: the loader maps segments past a truncated file's end, and touching them kills the
// process with SIGBUS. Each returns an empty string when the image is whole (or is not of
// that format, which the loader then refuses itself), else one line naming the fault.
std::string CheckElfImage(const unsigned char* bytes, std::size_t size);
std::string CheckPeImage(const unsigned char* bytes, std::size_t size);

}  // namespace lwhost
