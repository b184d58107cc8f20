#pragma once

namespace hostkit {

inline constexpr char kNeedsNewerHost[] =
    "This plugin needs a newer version of LightWave 3D (9.2 as a minimum)";

// True for LightWave 9.2 and later, given the host's "Product Info".
bool IsAtLeast92(unsigned int productInfo);

// For constructors of plug-ins that need 9.2: on an older host writes the refusal into the
// creation error slot and returns false.
bool RequireHost92(const char** err);

// Hosts from 9.5 on offer the newer node input service.
bool UsesNodeInputFuncs2(unsigned int productInfo);

}  // namespace hostkit
