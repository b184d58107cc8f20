#pragma once

#include <lwhost.h>

#include <string>

#include "hostkit/GlobalBase.h"
#include "hostkit/ServiceNames.h"

namespace hostkit {

template <>
struct GlobalName<LWDirInfoFunc> {
  static constexpr const char* value = service::DirectoryInfo;
};

// The host's configured directories, each returned with one trailing separator in the host's
// style ('/', or a backslash after a Windows path).
class DirInfo : public GlobalBase<LWDirInfoFunc> {
 public:
  explicit DirInfo(const char* defaultType = "Settings") : defaultType_(defaultType) {}

  // The directory of `type` (the default type when null); empty when the host knows none.
  const std::string& GetDirectory(const char* type = nullptr);

 private:
  const char* defaultType_;
  std::string result_;
};

}  // namespace hostkit
