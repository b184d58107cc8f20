#pragma once

#include <cstdio>
#include <string>

namespace lwhost {

// What `lwhost validate` runs. Levels add checks: 1 records, activation, creation; 2 copy and
// save/load round trips; 3 damaged saved data and every global service withheld in turn;
// 4 the modeller, ScreamerNet and panels; 5 extreme node inputs and evaluation on all threads.
struct ValidationOptions {
  std::string server;  // only the records of this server name; empty for all
  unsigned long seed = 1;
  int level = 3;
  unsigned timeoutSeconds = 120;  // per check
};

// Checks every server record of a module file, each check in a process of its own, printing
// one "PASS|FAIL|SKIP  CLASS NAME: check[: why]" line per check and a closing
// "N passed, N failed" line to `out`. Returns the number of failed checks.
int Validate(const std::string& modulePath, const ValidationOptions& options, std::FILE* out);

}  // namespace lwhost
