#include "hostkit/ExceptionGuard.h"

#include <string>

#include "hostkit/LWMessage.h"

namespace hostkit {

void ReportException(const char* operation, const std::exception& e) {
  const std::string first = operation;
  const std::string second = e.what();
  LWMessage::ModuleInstance().error(first.c_str(), second.c_str());
}

}  // namespace hostkit
