#pragma once

#include "lwhost/Animation.h"
#include "lwhost/Host.h"

namespace lwhost {

// The animation component of the current host: the service functions get no handle to it.
inline Animation* CurrentAnimation() { return Host::currentComponent<Animation>(); }

}  // namespace lwhost
