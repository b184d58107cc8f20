// How long Command Statistics takes to load a large statistics file at the start of a Layout
// session and write it back at the end. A file of 100,000 lines, every tenth of them not
// starting with a number, must load completely and in well under a second: a bad line is
// skipped, never waited on.
#include <benchmark/benchmark.h>
#include <lwmaster.h>
#include <stdlib.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>

#include "lwhost/Session.h"
#include "support/Summary.h"

namespace {

namespace fs = std::filesystem;

constexpr int kLines = 100000;
constexpr int kWellFormed = kLines - kLines / 10;
constexpr std::chrono::milliseconds kLoadBudget{1000};

struct StatisticsSession {
  lwhost::Session session;
  lwhost::ModuleFile& vorn = session.load(VORN_MODULE_PATH);
  LWInstanceFuncs inst{};
  LWItemFuncs item{};
  LWMasterHandler handler{};
  fs::path dir;

  explicit StatisticsSession(const std::string& pattern) : dir(pattern) {
    session.scene().directories().setSettingsDirectory(dir.string());
    handler.inst = &inst;
    handler.item = &item;
    vorn.activate(vorn.require(LWMASTER_HCLASS, "CommandStatistics"), LWMASTER_VERSION, &handler);
  }
  ~StatisticsSession() { fs::remove_all(dir); }

  void writeLargeFile() const {
    std::ofstream out(dir / "CommandStats.txt");
    for (int i = 0; i < kLines; ++i)
      if (i % 10 == 5)
        out << "Command" << i << " without a count\n";
      else
        out << (i + 1) << "\tCommand" << i << '\n';
  }
  // One run of Layout: the instance loads the file when created and rewrites it when destroyed.
  void run() { lwhost::HandlerInstance master(vorn, inst, &item, nullptr, "CommandStatistics"); }
  long linesWritten() const {
    std::ifstream in(dir / "CommandStats.txt");
    return static_cast<long>(std::count(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>(), '\n'));
  }
};

std::unique_ptr<StatisticsSession> Start() {
  std::string pattern = (fs::temp_directory_path() / "cmdstats-bench-XXXXXX").string();
  if (!mkdtemp(pattern.data())) return nullptr;
  return std::make_unique<StatisticsSession>(pattern);
}

void BM_LoadAndRewriteLargeFile(benchmark::State& state) {
  auto stats = Start();
  if (!stats) return state.SkipWithError("no temporary directory");
  stats->writeLargeFile();
  const auto begin = std::chrono::steady_clock::now();
  stats->run();
  const auto took = std::chrono::steady_clock::now() - begin;
  if (stats->linesWritten() != kWellFormed)
    return state.SkipWithError(("kept " + std::to_string(stats->linesWritten()) + " of " +
                                std::to_string(kWellFormed) + " well-formed lines").c_str());
  if (took > kLoadBudget)
    return state.SkipWithError(
        ("one load and rewrite took " +
         std::to_string(std::chrono::duration_cast<std::chrono::milliseconds>(took).count()) + " ms")
            .c_str());
  for (auto _ : state) {
    state.PauseTiming();
    stats->writeLargeFile();
    state.ResumeTiming();
    stats->run();
  }
}

BENCHMARK(BM_LoadAndRewriteLargeFile)->Unit(benchmark::kMillisecond)->MinTime(0.5);

}  // namespace

int main(int argc, char** argv) { return bench::RunBenchmarks(argc, argv, {}); }
