#pragma once

namespace hostkit {

// The maker's web page: the label of every panel's web button and where it leads.
inline constexpr char kMakerPage[] = "http://www.vorn.example/";

}  // namespace hostkit
