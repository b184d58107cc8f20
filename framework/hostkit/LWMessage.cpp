#include "hostkit/LWMessage.h"

#include <memory>

namespace hostkit {

namespace {
std::unique_ptr<LWMessage>& Instance() {
  static std::unique_ptr<LWMessage> instance;  // destroyed at unload, which releases the service
  return instance;
}
}  // namespace

void LWMessage::CreateModuleInstance() {
  if (!Instance()) Instance() = std::make_unique<LWMessage>();
}

LWMessage& LWMessage::ModuleInstance() { return *Instance(); }

}  // namespace hostkit
