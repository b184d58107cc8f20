#include "support/Summary.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

#include "support/Measure.h"

namespace bench {

namespace {

// What the summary needs of each benchmark, averaged over repetitions.
struct Outcome {
  double cpuNanoseconds = 0.0;
  double allocationsPerSample = 0.0;
  int runs = 0;
  bool failed = false;
};

bool StdoutIsTerminal() {
#if defined(_WIN32)
  return _isatty(_fileno(stdout)) != 0;
#else
  return isatty(fileno(stdout)) != 0;
#endif
}

// A display reporter of our own replaces the library's, so it must honour --benchmark_color
// itself: "auto" (the default) colours a terminal only.
benchmark::ConsoleReporter::OutputOptions DisplayOptions(int argc, char** argv) {
  constexpr char kFlag[] = "--benchmark_color=";
  std::string choice = "auto";
  for (int i = 1; i < argc; ++i)
    if (std::strncmp(argv[i], kFlag, sizeof kFlag - 1) == 0) choice = argv[i] + sizeof kFlag - 1;
  bool colour;
  if (choice == "true" || choice == "yes" || choice == "1" || choice == "on") {
    colour = true;
  } else if (choice == "auto") {
    const char* term = std::getenv("TERM");
    colour = StdoutIsTerminal() && !(term && std::strcmp(term, "dumb") == 0);
  } else {
    colour = false;
  }
  return colour ? benchmark::ConsoleReporter::OO_ColorTabular : benchmark::ConsoleReporter::OO_Tabular;
}

class RecordingReporter : public benchmark::ConsoleReporter {
 public:
  explicit RecordingReporter(OutputOptions options) : ConsoleReporter(options) {}

  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration) continue;
      Outcome& o = outcomes_[run.run_name.function_name];
      if (run.error_occurred) {
        o.failed = true;
        continue;
      }
      const double ns = run.GetAdjustedCPUTime() * 1e9 / benchmark::GetTimeUnitMultiplier(run.time_unit);
      const auto counter = run.counters.find(kAllocationsPerSample);
      const double allocations = counter == run.counters.end() ? 0.0 : counter->second.value;
      o.cpuNanoseconds = (o.cpuNanoseconds * o.runs + ns) / (o.runs + 1);
      o.allocationsPerSample = (o.allocationsPerSample * o.runs + allocations) / (o.runs + 1);
      ++o.runs;
    }
  }

  const Outcome* find(const char* name) const {
    auto it = outcomes_.find(name);
    return it == outcomes_.end() ? nullptr : &it->second;
  }
  bool anyFailed() const {
    for (const auto& entry : outcomes_)
      if (entry.second.failed) return true;
    return false;
  }

 private:
  std::map<std::string, Outcome> outcomes_;
};

void PrintSummary(const RecordingReporter& reporter, const std::vector<Comparison>& comparisons) {
  bool header = false, allocated = false;
  for (const Comparison& c : comparisons) {
    const Outcome* host = reporter.find(c.hostPath);
    const Outcome* direct = reporter.find(c.direct);
    if (!host || !direct || host->runs == 0 || direct->runs == 0) continue;  // filtered out or failed
    if (!header) {
      std::printf("\nPer shading sample (CPU time): the host's full evaluation path against the arithmetic alone\n");
      std::printf("  %-28s %14s %14s %9s %14s\n", "", "host path", "direct", "ratio", "allocs/sample");
      header = true;
    }
    std::printf("  %-28s %11.2f ns %11.2f ns %8.1fx %14g\n", c.label, host->cpuNanoseconds, direct->cpuNanoseconds,
                host->cpuNanoseconds / direct->cpuNanoseconds, host->allocationsPerSample);
    allocated = allocated || host->allocationsPerSample != 0.0 || direct->allocationsPerSample != 0.0;
  }
  if (header && !allocated) std::printf("  No allocation in these timed loops, host path or direct.\n");
  std::fflush(stdout);
}

}  // namespace

int RunBenchmarks(int argc, char** argv, const std::vector<Comparison>& comparisons) {
  RecordingReporter reporter(DisplayOptions(argc, argv));
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  PrintSummary(reporter, comparisons);
  if (reporter.anyFailed()) {
    std::fprintf(stderr, "\nFAILED: at least one benchmark reported an error (see above)\n");
    return 1;
  }
  return 0;
}

}  // namespace bench
