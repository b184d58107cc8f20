// What a Windows LightWave checks before loading vorn.p: the descriptor's machine word and a file
// that really is a 64-bit DLL.
#include <gtest/gtest.h>
#include <lwmodule.h>

#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>

#include "lwhost/Host.h"
#include "lwhost/ModuleFile.h"
#include "support/ModulePaths.h"

namespace {

TEST(WindowsModule, DescriptorNamesTheWindowsFamily) {
  lwhost::Host host;
  lwhost::ModuleFile module(testpaths::kVorn);
  EXPECT_EQ(module.descriptor()->sysMachine, 0x300u);
}

TEST(WindowsModule, FileIsAnX64Dll) {
  std::ifstream in(testpaths::kVorn, std::ios::binary);
  const std::string file{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  auto word = [&](std::size_t at) { return std::uint16_t(std::uint8_t(file.at(at)) | std::uint8_t(file.at(at + 1)) << 8); };
  ASSERT_EQ(file.substr(0, 2), "MZ");
  const std::size_t pe = word(0x3c) | std::size_t(word(0x3e)) << 16;
  ASSERT_EQ(file.substr(pe, 4), std::string("PE\0\0", 4));
  EXPECT_EQ(word(pe + 4), 0x8664);               // IMAGE_FILE_MACHINE_AMD64
  EXPECT_NE(word(pe + 4 + 18) & 0x2000, 0);      // IMAGE_FILE_DLL
}

}  // namespace
