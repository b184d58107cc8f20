#pragma once

#include <lwrender.h>

#include "hostkit/GlobalBase.h"
#include "hostkit/ServiceNames.h"

namespace hostkit {

template <>
struct GlobalName<st_LWSceneInfo> {
  static constexpr const char* value = service::SceneInfo;
};
template <>
struct GlobalName<st_LWTimeInfo> {
  static constexpr const char* value = service::TimeInfo;
};

// The scene's settings as the host keeps them current.
class SceneInfo : public GlobalBase<st_LWSceneInfo> {};
// The time and frame being rendered.
class TimeInfo : public GlobalBase<st_LWTimeInfo> {};

}  // namespace hostkit
