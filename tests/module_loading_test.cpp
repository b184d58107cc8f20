// The host's refusal of broken module files, as a library call and as the lwhost command.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "lwhost/Host.h"
#include "lwhost/ModuleFile.h"
#include "support/ModulePaths.h"
#include "support/RunCommand.h"

namespace {

std::string Broken(const char* name) { return std::string(testpaths::kBrokenDir) + "/" + name; }

struct Refusal {
  std::string file;
  std::string reason;
};

const Refusal kRefusals[] = {
    {Broken("missing.p"), "no such file"},
    {Broken("not_a_module.p"), "not a loadable module"},
    {Broken("no_descriptor.p"), "no module descriptor"},
    {Broken("bad_sync.p"), "bad synchronisation word 0x12345678"},
    {Broken("bad_version.p"), "unsupported module system version 2"},
    {Broken("bad_machine.p"), "built for another platform (machine word 0x7777"},
    {Broken("null_startup.p"), "startup failed"},
    {testpaths::kBrokenDir, "not a regular file"},
};

// As a library call, then as the command, which says the same on one line and fails.
TEST(ModuleLoading, BrokenFilesAreRefusedWithTheirFault) {
  lwhost::Host host;
  for (const Refusal& r : kRefusals) {
    std::string what = "accepted";
    try {
      lwhost::ModuleFile module(r.file);
    } catch (const lwhost::ModuleError& e) {
      what = e.what();
    }
    EXPECT_EQ(what.rfind(r.file + ": ", 0), 0u) << what;  // names the file first
    EXPECT_NE(what.find(r.reason), std::string::npos) << what;
    EXPECT_EQ(what.find('\n'), std::string::npos) << what;
    const CommandResult run = RunCommand({LWHOST_PATH, "servers", r.file});
    EXPECT_EQ(run.status, 1) << run.output;
    EXPECT_EQ(run.output, "lwhost: " + what + "\n");
  }
}

TEST(ModuleLoading, CommandListsTheFixtureServers) {
  CommandResult result = RunCommand({LWHOST_PATH, "servers", testpaths::kFixture});
  ASSERT_EQ(result.status, 0) << result.output;
  EXPECT_THAT(result.output, ::testing::StartsWith("CLASS "));
  EXPECT_THAT(result.output, ::testing::ContainsRegex("\nFixtureProbe +probe +Fixture Probe\n"));
  EXPECT_THAT(result.output, ::testing::ContainsRegex("\nNodeHandler +fixtureStdThrower +Fixture Node +Fixture/Tests\n"));
}

}  // namespace
