#pragma once

// Where the build put the module files the tests load (set by tests/CMakeLists.txt).
#ifndef VORN_MODULE_PATH
#error "VORN_MODULE_PATH must name the built vorn.p"
#endif

namespace testpaths {
inline constexpr const char* kVorn = VORN_MODULE_PATH;
inline constexpr const char* kFixture = FIXTURE_MODULE_PATH;
inline constexpr const char* kBrokenDir = BROKEN_MODULE_DIR;
}  // namespace testpaths
