#include "hostkit/VParm.h"

#include "hostkit/ChannelGroup.h"
#include "hostkit/LoadState.h"
#include "hostkit/SaveState.h"

namespace hostkit {

VParm::VParm(int type, std::string name, std::string pluginName, void* group, double initial) {
  value[0] = value[1] = value[2] = initial;
  create(type, std::move(name), std::move(pluginName), group);
}

VParm::VParm(int type, std::string name, std::string pluginName, void* group, const Vector3<double>& initial) {
  value[0] = initial.x;
  value[1] = initial.y;
  value[2] = initial.z;
  create(type, std::move(name), std::move(pluginName), group);
}

VParm::VParm(int type, std::string name, std::string pluginName, ChannelGroup& group, double initial)
    : VParm(type, std::move(name), std::move(pluginName), group.id, initial) {}

VParm::VParm(int type, std::string name, std::string pluginName, ChannelGroup& group,
             const Vector3<double>& initial)
    : VParm(type, std::move(name), std::move(pluginName), group.id, initial) {}

VParm::~VParm() noexcept(false) {
  if (id) getGlobal()->destroy(id);
}

bool VParm::create(int type, std::string name, std::string pluginName, void* group) {
  if (!available()) return false;
  id = getGlobal()->create(type, LWVPDT_NOTXTR);
  if (!id) return false;
  getGlobal()->setup(id, name.c_str(), group, nullptr, nullptr, pluginName.c_str(), nullptr);
  getGlobal()->setVal(id, value);
  return true;
}

VParm& VParm::operator=(const VParm& other) {
  if (this == &other) return *this;
  if (id && other.id) getGlobal()->copy(id, other.id);
  value[0] = other.value[0];
  value[1] = other.value[1];
  value[2] = other.value[2];
  return *this;
}

LWError VParm::Load(const LoadState& state) { return getGlobal()->load(id, state.state); }

LWError VParm::Save(const SaveState& state) { return getGlobal()->save(id, state.state); }

void VParm::Sample(LWTime time) {
  if (id) getGlobal()->getVal(id, time, nullptr, value);
}

void VParm::SetState(int state) {
  if (id) getGlobal()->setState(id, state);
}

void VParm::Push() {
  if (id) getGlobal()->setVal(id, value);
}

void VParm::Set(double v) {
  value[0] = value[1] = value[2] = v;
  Push();
}

void VParm::Set(const Vector3<double>& v) {
  value[0] = v.x;
  value[1] = v.y;
  value[2] = v.z;
  Push();
}

}  // namespace hostkit
