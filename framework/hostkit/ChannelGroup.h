#pragma once

#include <lwenvel.h>

#include "hostkit/GlobalBase.h"
#include "hostkit/ServiceNames.h"

namespace hostkit {

template <>
struct GlobalName<st_LWEnvelopeFuncs> {
  static constexpr const char* value = service::EnvelopeFuncs;
};

// A group of animation channels in the host's graph editor: either one the host gave us, or
// one we made inside another (which we then destroy with us).
class ChannelGroup : public GlobalBase<st_LWEnvelopeFuncs> {
 public:
  explicit ChannelGroup(LWChanGroupID existing) : id(existing) {}
  ChannelGroup(LWChanGroupID parent, const char* name);
  ~ChannelGroup() noexcept(false) override;
  ChannelGroup(const ChannelGroup&) = delete;
  ChannelGroup& operator=(const ChannelGroup&) = delete;

  LWChanGroupID id = nullptr;
  bool owned = false;
};

}  // namespace hostkit
