#include "hostkit/HostVersion.h"

#include "hostkit/LightWave.h"

namespace hostkit {

namespace {
unsigned int Major(unsigned int info) { return (info >> 20) & 0xF; }
unsigned int Minor(unsigned int info) { return (info >> 16) & 0xF; }
}  // namespace

bool IsAtLeast92(unsigned int productInfo) {
  unsigned int major = Major(productInfo), minor = Minor(productInfo);
  if (major <= 8) return false;
  if (major == 9 && minor <= 1) return false;
  return true;
}

bool RequireHost92(const char** err) {
  if (IsAtLeast92(LightWave::productInfo)) return true;
  if (err) *err = kNeedsNewerHost;
  return false;
}

bool UsesNodeInputFuncs2(unsigned int productInfo) {
  unsigned int major = Major(productInfo), minor = Minor(productInfo);
  return !(major < 10 && (major < 9 || minor < 5));
}

}  // namespace hostkit
