# GoogleTest and GoogleMock compiled for the target from Debian's source package (libgtest-dev
# ships it in /usr/src/googletest): Debian packages no mingw build of them. Defines the same
# GTest:: targets as find_package(GTest).
set(VORN_GOOGLETEST_SOURCE /usr/src/googletest CACHE PATH "GoogleTest sources to build for the target")
if(NOT EXISTS "${VORN_GOOGLETEST_SOURCE}/CMakeLists.txt")
  message(FATAL_ERROR "No GoogleTest sources at ${VORN_GOOGLETEST_SOURCE} (install libgtest-dev)")
endif()
set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
add_subdirectory("${VORN_GOOGLETEST_SOURCE}" "${CMAKE_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL SYSTEM)
