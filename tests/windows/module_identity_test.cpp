// What a Windows LightWave checks before loading vorn.p: the descriptor's machine word. (That the
// file is a 64-bit DLL every other suite shows, loading it into 64-bit programs; the logo's
// "Windows-x86_64" label is checked with the form panels.)
#include <gtest/gtest.h>
#include <lwmodule.h>

#include "lwhost/Host.h"
#include "lwhost/ModuleFile.h"
#include "support/ModulePaths.h"

namespace {

TEST(WindowsModule, DescriptorNamesTheWindowsFamily) {
  lwhost::Host host;
  lwhost::ModuleFile module(testpaths::kVorn);
  EXPECT_EQ(module.descriptor()->sysMachine, 0x300u);
}

}  // namespace
