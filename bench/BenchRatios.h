#pragma once

#include <map>
#include <string>
#include <vector>

/// One ratio of two benchmarks of a program: the time of `name` over the time of `reference`, or for rates the rate of
/// `name` over that of `reference` when the benchmarks count bytes or items.
struct BenchRatio
{
    std::string name;
    std::string reference;
    double limit;          ///< what the project promises
    bool atLeast = false;  ///< the ratio must not be below the limit; otherwise not above it
};

/// Seconds that an iteration took in the best run, by the benchmark's name: of the processor, or by the clock for benchmarks
/// that ask for it (`UseRealTime`, `UseManualTime`).
using BenchTimes = std::map<std::string, double>;

/// Runs the program's benchmarks several times in random order and prints, for each ratio, the figure of the best runs
/// beside what is promised. Nothing is promised against the clock: a machine may be twice as slow tomorrow.
/// `--benchmark_...` arguments go to the benchmark library.
/// @param best  takes what was measured; may be null
/// @return the process's exit status: 0, or 1 if a benchmark that is asked for did not run
int RunBenchRatios(int argc, char** argv, const std::vector<BenchRatio>& ratios, BenchTimes* best = nullptr);
