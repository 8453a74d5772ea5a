#include "support/Measurement.h"

#include <benchmark/benchmark.h>

#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <limits>
#include <memory>
#include <vector>

namespace Bench {

namespace {

constexpr std::size_t keysPerRow = 200000;
constexpr std::size_t fewestRepetitions = 3;

// The C library keeps small free blocks apart until a large one is wanted, and hands the last freed one out
// first. Joined, they give every turn the same orderly memory, whatever was freed before.
void joinFreeBlocks() {
    constexpr std::size_t large = std::size_t{1} << 20U;
    const auto block = std::make_unique<char[]>(large);
    benchmark::DoNotOptimize(block.get());
}

double secondsOf(const std::function<void()>& action) {
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// The first turn warms caches and the heap and does not count.
void measure(benchmark::State& state, const Operation& operation, Timed timed, std::size_t warmUps) {
    const auto turn = [&] {
        operation.before();
        joinFreeBlocks();
        const double there = secondsOf(operation.there);
        joinFreeBlocks();
        const double back = secondsOf(operation.back);
        return timed == Timed::there ? there : back;
    };
    for (std::size_t i = 0; i < warmUps; ++i) {
        turn();
    }
    std::vector<double> turns;
    for ([[maybe_unused]] const auto iteration : state) {
        turns.push_back(turn());
        state.SetIterationTime(turns.back());
    }
    // Unlike the mean, it is not moved by the turns in which another program had the processor.
    const auto middle = turns.begin() + static_cast<std::ptrdiff_t>(turns.size() / 2);
    std::nth_element(turns.begin(), middle, turns.end());
    state.counters["median"] = *middle * 1e9;
}

} // namespace

void addRow(const std::string& name, const std::string& size, std::size_t keys,
            const std::function<Operation()>& make, Timed timed, std::size_t leastRepetitions) {
    const std::size_t wanted = std::max(keysPerRow / keys, fewestRepetitions);
    const std::size_t repetitions = (wanted + leastRepetitions - 1) / leastRepetitions * leastRepetitions;
    const std::size_t warmUps = keys < keysPerRow ? leastRepetitions : 0;
    benchmark::RegisterBenchmark((name + '|' + size).c_str(),
                                 [=](benchmark::State& state) {
                                     measure(state, make(), timed, warmUps);
                                     state.counters["keys"] = static_cast<double>(keys);
                                 })
        ->UseManualTime()
        ->Iterations(static_cast<benchmark::IterationCount>(repetitions))
        ->Unit(benchmark::kNanosecond);
}

int runRows(int argc, char** argv) {
    // Memory that goes back to the system between two turns would be paid for with page faults in the time of
    // the next one.
    mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
    mallopt(M_MMAP_MAX, 0);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

} // namespace Bench
