#pragma once

#include <gtest/gtest.h>
#include <lwserver.h>

#include "ProbeRequest.h"
#include "lwhost/Host.h"
#include "lwhost/ModuleFile.h"
#include "support/ModulePaths.h"

// The fixture module's probe server, driven through its activation function.
class FixtureProbe {
 public:
  FixtureProbe() : module_(testpaths::kFixture), record_(module_.require("FixtureProbe", "probe")) {}

  ProbeRequest run(const char* op, int count = 0, const char* text = nullptr) {
    ProbeRequest request{op, count, -1, text};
    EXPECT_EQ(record_.activate(1, lwhost::Host::lookupFunction(), &request, module_.serverData()), AFUNC_OK) << op;
    return request;
  }

  lwhost::ModuleFile& module() { return module_; }
  // A copy that stays usable after the module's own array is freed by shutdown.
  ServerRecord record() const { return record_; }

 private:
  lwhost::ModuleFile module_;
  ServerRecord record_;
};
