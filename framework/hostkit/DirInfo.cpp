#include "hostkit/DirInfo.h"

namespace hostkit {

const std::string& DirInfo::GetDirectory(const char* type) {
  result_.clear();
  const char* answer = available() ? getGlobal()(type ? type : defaultType_) : nullptr;
  if (!answer) return result_;
  result_ = answer;
  if (!result_.empty() && result_.find_last_of('/') != result_.size() - 1) result_ += '/';
  return result_;
}

}  // namespace hostkit
