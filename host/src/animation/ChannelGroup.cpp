#include "lwhost/ChannelGroup.h"

#include "lwhost/Envelope.h"

namespace lwhost {

ChannelGroup* ChannelGroup::group(const std::string& name) const {
  for (ChannelGroup* g : groups_)
    if (g->name() == name) return g;
  return nullptr;
}

Envelope* ChannelGroup::channel(const std::string& name) const {
  for (Envelope* e : channels_)
    if (e->name() == name) return e;
  return nullptr;
}

std::string ChannelGroup::path() const {
  if (!parent_) return name_;
  const std::string above = parent_->path();
  return above.empty() ? name_ : above + "/" + name_;
}

}  // namespace lwhost
