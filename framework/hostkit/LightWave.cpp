#include "hostkit/LightWave.h"

#include <cstdint>

#include "hostkit/LWMessage.h"
#include "hostkit/ServiceNames.h"
#include "platform/ProcessorCount.h"

namespace hostkit {

unsigned int LightWave::systemID = 0;
unsigned int LightWave::productInfo = 0;
GlobalFunc* LightWave::SuperGlobal = nullptr;

namespace {
unsigned int ReadNumber(const char* name) {
  // These globals are numbers dressed as pointers.
  return static_cast<unsigned int>(
      reinterpret_cast<std::uintptr_t>(LightWave::SuperGlobal(name, GFUSE_TRANSIENT)));
}
}  // namespace

void LightWave::Init() {
  if (!SuperGlobal) return;
  systemID = ReadNumber(service::SystemID);
  productInfo = ReadNumber(service::ProductInfo);
}

int LightWave::GetNumCores() { return platform::ProcessorCount(); }

void SetSuperGlobal(GlobalFunc* global) {
  LightWave::SuperGlobal = global;
  LWMessage::CreateModuleInstance();
  LightWave::Init();
}

namespace detail {
void* AcquireGlobal(const char* name) {
  return LightWave::SuperGlobal && name ? LightWave::SuperGlobal(name, GFUSE_ACQUIRE) : nullptr;
}
void ReleaseGlobal(const char* name) {
  if (LightWave::SuperGlobal && name) LightWave::SuperGlobal(name, GFUSE_RELEASE);
}
}  // namespace detail

}  // namespace hostkit
