// The module descriptor, startup/shutdown and the capture of the host, through the real file.
#include <gtest/gtest.h>
#include <lwmodule.h>
#ifdef _WIN32
#include <windows.h>
#else
#include <sched.h>
#endif

#include "lwhost/Host.h"
#include "lwhost/ModuleFile.h"
#include "support/FixtureProbe.h"
#include "support/ModulePaths.h"

namespace {

TEST(ModuleEntry, StartupPublishesOneTerminatedArray) {
  lwhost::Host host;
  for (const char* path : {testpaths::kVorn, testpaths::kFixture}) {
    lwhost::ModuleFile module(path);
    // The host checks the descriptor's words and walks the records to the terminator itself.
    ModuleDescriptor* d = module.descriptor();
    EXPECT_EQ(static_cast<void*>(d->serverDefs), module.serverData()) << path;
    const ServerRecord& end = d->serverDefs[module.records().size()];
    EXPECT_EQ(end.activate, nullptr);
    EXPECT_EQ(end.tagInfo, nullptr);
  }
}

TEST(ModuleEntry, StartupAndShutdownHooksRunEvenForANullArray) {
  lwhost::Host host;
  FixtureProbe probe;
  ServerRecord record = probe.record();
  EXPECT_EQ(probe.run("hooks").result, 100);  // one startup, no shutdown yet

  // LightWave may hand shutdown a null pointer: nothing to free, the hooks still run.
  probe.module().descriptor()->shutdown(nullptr);
  ProbeRequest request{"hooks", 0, -1, nullptr};
  ASSERT_EQ(record.activate(1, lwhost::Host::lookupFunction(), &request, nullptr), AFUNC_OK);
  EXPECT_EQ(request.result, 101);
}

TEST(ModuleEntry, RegistryOutlivesTheModulesStaticDestructors) {
  lwhost::Host host;
  int seen[2] = {0, 0};
  host.globals().provide(FIXTURE_LATE_REGISTRATION, seen);
  size_t records = 0;
  {
    FixtureProbe probe;
    records = probe.module().records().size();
    probe.run("hooks");
  }
  EXPECT_EQ(seen[0], static_cast<int>(records));
  EXPECT_EQ(seen[1], static_cast<int>(records) + 1);
}

TEST(ModuleEntry, ActivationCapturesTheHostEachTime) {
  lwhost::Host host;
  {
    FixtureProbe probe;
    host.globals().resetCounts();
    probe.run("hooks");
    probe.run("hooks");
    probe.run("hooks");
    // The message service is acquired once for the life of the module...
    EXPECT_EQ(host.globals().counts("Info Messages 2").acquire, 1);
    EXPECT_EQ(host.globals().counts("Info Messages 2").release, 0);
    // ...while the host's identity is re-read, never held, on every activation.
    EXPECT_EQ(host.globals().counts("System ID").transient, 3);
    EXPECT_EQ(host.globals().counts("Product Info").transient, 3);
    EXPECT_EQ(host.globals().counts("System ID").acquire, 0);

    // The latest lookup function wins: services taken later go through it.
    static int viaSecond;
    viaSecond = 0;
    GlobalFunc* second = [](const char* name, int use) -> void* {
      viaSecond += use == GFUSE_ACQUIRE;
      return lwhost::Host::lookupFunction()(name, use);
    };
    ProbeRequest request{"input-service", 0, -1, nullptr};
    ASSERT_EQ(probe.record().activate(1, second, &request, probe.module().serverData()), AFUNC_OK);
    EXPECT_EQ(viaSecond, 1);  // the input service

    // The processor count is what this process may run on.
#ifdef _WIN32
    DWORD_PTR all = 0, system = 0;
    ASSERT_TRUE(GetProcessAffinityMask(GetCurrentProcess(), &all, &system));
    ASSERT_TRUE(SetProcessAffinityMask(GetCurrentProcess(), all & (~all + 1)));
    EXPECT_EQ(probe.run("cores").result, 1);
    ASSERT_TRUE(SetProcessAffinityMask(GetCurrentProcess(), all));
    EXPECT_EQ(probe.run("cores").result, __builtin_popcountll(all));
#else
    cpu_set_t all, one;
    ASSERT_EQ(sched_getaffinity(0, sizeof all, &all), 0);
    CPU_ZERO(&one);
    for (int cpu = 0; cpu < CPU_SETSIZE; ++cpu)
      if (CPU_ISSET(cpu, &all)) {
        CPU_SET(cpu, &one);
        break;
      }
    ASSERT_EQ(sched_setaffinity(0, sizeof one, &one), 0);
    EXPECT_EQ(probe.run("cores").result, 1);
    ASSERT_EQ(sched_setaffinity(0, sizeof all, &all), 0);
    EXPECT_EQ(probe.run("cores").result, CPU_COUNT(&all));
#endif
  }
  // Unloading the module releases the message service.
  EXPECT_EQ(host.globals().counts("Info Messages 2").release, 1);
}

}  // namespace
