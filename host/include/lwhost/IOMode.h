#pragma once

#include <lwio.h>

namespace lwhost {

// The two forms of LightWave's block-structured files: scene files are text, objects binary.
enum class IOMode : int { Binary = LWIO_BINARY, Ascii = LWIO_ASCII };

}  // namespace lwhost
