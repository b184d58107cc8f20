#pragma once

#include <vector>

namespace bench {

// A benchmark of the host's full evaluation path and the benchmark of the same arithmetic
// called directly, by their registered names.
struct Comparison {
  const char* label;
  const char* hostPath;
  const char* direct;
};

// The main of every benchmark executable: runs the benchmarks the command line selects, then
// prints each comparison as ns per sample and the ratio of the two. Returns non-zero when a
// benchmark failed (a wrong result or an allocation on a measured path).
int RunBenchmarks(int argc, char** argv, const std::vector<Comparison>& comparisons);

}  // namespace bench
