#pragma once

#include <gtest/gtest.h>
#include <lwserver.h>

#include <algorithm>
#include <string>
#include <vector>

#include "ClassicProbe.h"
#include "lwhost/Host.h"
#include "lwhost/ModuleFile.h"
#include "lwhost/Panels.h"

// A host with classic panels and the probe module, whose panel is "Probe Statistics": a list box
// "Rows" (200 wide, 5 rows, its own user data), buttons "Clear" and "Done" and a save button
// "Save..." moved flush right beside "Clear".
class ClassicProbeFixture : public ::testing::Test {
 protected:
  lwhost::Host host;
  lwhost::Panels panels{host};
  lwhost::ModuleFile module{CLASSIC_PROBE_PATH};
  ClassicProbeLog log{};
  std::vector<const char*> rows{"   12 - SaveScene\n", "    7 - RenderFrame\n", "    3 - Undo\n"};

  ClassicProbeRequest run(const char* op, int openFlags = 0) {
    ClassicProbeRequest request{};
    request.op = op;
    request.openFlags = openFlags;
    EXPECT_EQ(activate(request), AFUNC_OK) << op;
    return request;
  }

  // Builds the probe's panel (not yet open).
  ClassicProbeRequest build(bool throwFromName = false) {
    ClassicProbeRequest request{};
    request.op = "build";
    request.log = &log;
    request.rows = rows.data();
    request.rowCount = static_cast<int>(rows.size());
    request.throwFromName = throwFromName ? 1 : 0;
    EXPECT_EQ(activate(request), AFUNC_OK);
    return request;
  }

  std::string events() const { return log.events; }

 private:
  int activate(ClassicProbeRequest& request) {
    const ServerRecord& record = module.require("ClassicProbe", "panels");
    return module.activate(record, 1, &request);
  }
};

inline bool Mentions(const std::vector<std::string>& problems, const std::string& text) {
  return std::any_of(problems.begin(), problems.end(),
                     [&](const std::string& p) { return p.find(text) != std::string::npos; });
}

inline std::string Joined(const std::vector<std::string>& problems) {
  std::string all;
  for (const std::string& p : problems) all += p + "\n";
  return all;
}
