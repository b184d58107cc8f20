#include "hostkit/ChannelGroup.h"

namespace hostkit {

ChannelGroup::ChannelGroup(LWChanGroupID parent, const char* name) {
  if (available()) {
    id = getGlobal()->createGroup(parent, name);
    owned = id != nullptr;
  }
}

ChannelGroup::~ChannelGroup() noexcept(false) {
  if (owned) getGlobal()->destroyGroup(id);
}

}  // namespace hostkit
