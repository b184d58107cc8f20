#include "validate/IsolatedRun.h"

namespace lwhost::validate {

// No fork here: the checks run in this process, so a crash ends the run.
Outcome RunIsolated(const std::function<Outcome()>& body, unsigned) { return RunGuarded(body); }

}  // namespace lwhost::validate
