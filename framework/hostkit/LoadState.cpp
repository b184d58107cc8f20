#include "hostkit/LoadState.h"

#include "hostkit/Storeable.h"

namespace hostkit {

LWError LoadState::read(Storeable& item) const { return item.Load(*this); }

}  // namespace hostkit
