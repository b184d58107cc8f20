#pragma once

#include <lwvparm.h>

#include <string>

#include "hostkit/GlobalBase.h"
#include "hostkit/ServiceNames.h"
#include "hostkit/Storeable.h"
#include "hostkit/Vector3.h"

namespace hostkit {

class ChannelGroup;

template <>
struct GlobalName<st_LWVParmFuncs> {
  static constexpr const char* value = service::VParmFuncs;
};

// An animatable parameter: a value the user can envelope or texture, held by the host. The
// plug-in samples it at a time (Sample, in NewTime); render threads then read `value` only.
class VParm : public GlobalBase<st_LWVParmFuncs>, public Storeable {
 public:
  // type: the host's envelope type (0x10 number, 0x20 percentage, 0x40 angle, 0x51 colour).
  // name: the channel the user sees in the graph editor; pluginName: the owner.
  VParm(int type, std::string name, std::string pluginName, void* group, double initial);
  VParm(int type, std::string name, std::string pluginName, void* group, const Vector3<double>& initial);
  VParm(int type, std::string name, std::string pluginName, ChannelGroup& group, double initial);
  VParm(int type, std::string name, std::string pluginName, ChannelGroup& group, const Vector3<double>& initial);
  ~VParm() noexcept(false) override;
  VParm(const VParm&) = delete;

  // Copies envelopes, textures and state through the host when both sides have a handle; the
  // three values are copied in any case.
  VParm& operator=(const VParm& other);

  bool create(int type, std::string name, std::string pluginName, void* group);

  LWError Load(const LoadState& state) override;
  LWError Save(const SaveState& state) override;

  // Reads the parameter at `time`, envelope applied, into `value`.
  void Sample(LWTime time);
  // Turns enveloping and texturing off (0) or on.
  void SetState(int state);
  // Pushes `value` to the host (no effect while enveloped).
  void Push();
  // Sets all three channels and pushes them.
  void Set(double v);
  void Set(const Vector3<double>& v);

  double value[3] = {0.0, 0.0, 0.0};
  LWVParmID id = nullptr;
};

}  // namespace hostkit
