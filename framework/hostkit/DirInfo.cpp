#include "hostkit/DirInfo.h"

namespace hostkit {

const std::string& DirInfo::GetDirectory(const char* type) {
  result_.clear();
  const char* answer = available() ? getGlobal()(type ? type : defaultType_) : nullptr;
  if (!answer) return result_;
  result_ = answer;
  // Ended with the separator the host's path already uses: LightWave on Windows answers "C:\...".
  const size_t last = result_.find_last_of("/\\");
  if (!result_.empty() && last != result_.size() - 1) result_ += last != std::string::npos ? result_[last] : '/';
  return result_;
}

}  // namespace hostkit
