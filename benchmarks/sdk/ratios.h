#pragma once

#include <benchmark/benchmark.h>
#include <cstddef>
#include <map>
#include <string>
#include <vector>

/// A comparison of two benchmarks of one run: time of `numerator` / time of `denominator` / scale.
struct Ratio {
    const char* name;
    const char* numerator;
    const char* denominator;
    double scale;
    double least;
    double most;
};

/// Prints the aggregates and keeps every repetition's time. The median of interleaved repetitions
/// is what a busy machine moves least.
class Times : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override;
    /// The median; negative when there is none or when a repetition failed.
    double of(const std::string& name) const;

private:
    std::map<std::string, std::vector<double>> m_nanoseconds;
};

/// Prints the ratios; 1 when one is missing or outside its limits, else 0.
int reportRatios(const Times& times, const Ratio* ratios, std::size_t count);

/// Runs the benchmarks, repeated and interleaved unless the arguments say otherwise; 0 when it did.
int runBenchmarks(int argc, char** argv, Times& times);

/// The whole main().
template <std::size_t count>
int runWithRatios(int argc, char** argv, const Ratio (&ratios)[count]) {
    Times times;
    const int failed = runBenchmarks(argc, argv, times);
    return failed != 0 ? failed : reportRatios(times, ratios, count);
}
