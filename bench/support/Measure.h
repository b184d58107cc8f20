#pragma once

// The timed loop every benchmark here uses: one shading sample per iteration, with the
// allocations made meanwhile reported per sample.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>

#include "support/AllocationCounter.h"

namespace bench {

// The counter every benchmark reports, and the summary reads.
inline constexpr char kAllocationsPerSample[] = "allocs/sample";

// Runs `sample` once per iteration; returns how many allocations happened in the loop.
template <class Sample>
std::uint64_t MeasureSamples(benchmark::State& state, Sample&& sample) {
  const std::uint64_t before = AllocationCount();
  for (auto _ : state) sample();
  const std::uint64_t allocations = AllocationCount() - before;
  state.counters[kAllocationsPerSample] =
      benchmark::Counter(static_cast<double>(allocations), benchmark::Counter::kAvgIterations);
  return allocations;
}

// For the evaluation paths, which must never allocate: one allocation fails the benchmark.
template <class Sample>
void MeasureAllocationFree(benchmark::State& state, Sample&& sample) {
  const std::uint64_t allocations = MeasureSamples(state, sample);
  if (allocations != 0)
    state.SkipWithError(("the path allocated " + std::to_string(allocations) + " times in " +
                         std::to_string(state.iterations()) + " samples")
                            .c_str());
}

}  // namespace bench
