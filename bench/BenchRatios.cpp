#include "BenchRatios.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <limits>

namespace {

/// Keeps the least time per iteration of each benchmark over all repetitions.
class BestReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        benchmark::ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration || run.error_occurred || run.iterations == 0)
                continue;
            double& best = times_.emplace(run.run_name.function_name, std::numeric_limits<double>::max()).first->second;
            // What others do to the processor meanwhile counts for those alone that ask for it.
            const bool byClock = !run.run_name.time_type.empty();
            const double seconds = byClock ? run.real_accumulated_time : run.cpu_accumulated_time;
            best = std::min(best, seconds / static_cast<double>(run.iterations));
        }
    }

    const BenchTimes& GetAll() const { return times_; }
    /// Seconds per iteration; 0 if the benchmark did not run.
    double Get(const std::string& name) const
    {
        const auto found = times_.find(name);
        return found == times_.end() ? 0 : found->second;
    }

private:
    BenchTimes times_;
};

const char* Verdict(bool kept)
{
    return kept ? "kept" : "NOT KEPT";
}

}  // namespace

int RunBenchRatios(int argc, char** argv, const std::vector<BenchRatio>& ratios, BenchTimes* bestTimes)
{
    // Defaults in front, so that the command line may override them.
    std::vector<std::string> texts = {argv[0], "--benchmark_repetitions=9", "--benchmark_enable_random_interleaving=true",
                                      "--benchmark_report_aggregates_only=false"};
    texts.insert(texts.end(), argv + 1, argv + argc);
    std::vector<char*> arguments;
    for (std::string& text : texts)
        arguments.push_back(text.data());
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data()))
        return 1;
    BestReporter best;
    benchmark::RunSpecifiedBenchmarks(&best);
    if (bestTimes != nullptr)
        *bestTimes = best.GetAll();

    int status = 0;
    std::printf("\n%-34s %-24s %10s %10s  %s\n", "benchmark", "against", "ratio", "promised", "");
    for (const BenchRatio& ratio : ratios) {
        const double time = best.Get(ratio.name);
        const double reference = best.Get(ratio.reference);
        if (time <= 0 || reference <= 0) {
            std::printf("%-34s %-24s did not run\n", ratio.name.c_str(), ratio.reference.c_str());
            status = 1;
            continue;
        }
        const double figure = ratio.atLeast ? reference / time : time / reference;
        const bool kept = ratio.atLeast ? figure >= ratio.limit : figure <= ratio.limit;
        std::printf("%-34s %-24s %10.3f %s %8.3g  %s\n", ratio.name.c_str(), ratio.reference.c_str(), figure,
                    ratio.atLeast ? ">=" : "<=", ratio.limit, Verdict(kept));
    }
    return status;
}
