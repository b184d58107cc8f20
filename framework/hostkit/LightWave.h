#pragma once

#include <lwserver.h>

namespace hostkit {

// What the module knows of its host, refreshed on every activation.
struct LightWave {
  static unsigned int systemID;     // "System ID": application kind in the top four bits
  static unsigned int productInfo;  // "Product Info": major version in bits 20..23, minor in 16..19
  static GlobalFunc* SuperGlobal;   // the lookup function of the latest activation

  static void Init();
  static int GetNumCores();

  static bool IsModeler() { return (systemID & 0xF0000000u) == 0x10000000u; }
  static int MajorVersion() { return static_cast<int>((productInfo >> 20) & 0xF); }
  static int MinorVersion() { return static_cast<int>((productInfo >> 16) & 0xF); }
};

// Called first by every activation function with the lookup function the host passed.
void SetSuperGlobal(GlobalFunc* global);

}  // namespace hostkit
