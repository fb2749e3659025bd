#pragma once

#include <benchmark/benchmark.h>
#include <cstddef>
#include <map>
#include <string>

/// A comparison of two benchmarks of one run: time of `numerator` / time of `denominator` / scale.
struct Ratio {
    const char* name;
    const char* numerator;
    const char* denominator;
    double scale;
    double least;
    double most;
};

/// Prints as usual and keeps the best time of every benchmark over its repetitions: noise only ever
/// adds to a time.
class BestTimes : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override;
    /// Negative when there is none, or when one repetition failed.
    double of(const std::string& name) const;

private:
    std::map<std::string, double> m_nanoseconds;
};

/// Prints the ratios; 1 when one is missing or outside its limits, else 0.
int reportRatios(const BestTimes& times, const Ratio* ratios, std::size_t count);

/// The whole main(): runs the benchmarks (repeated and interleaved, unless the arguments say
/// otherwise), then prints the ratios.
template <std::size_t count>
int runWithRatios(int argc, char** argv, const Ratio (&ratios)[count]);

int runBenchmarks(int argc, char** argv, BestTimes& times);

template <std::size_t count>
int runWithRatios(int argc, char** argv, const Ratio (&ratios)[count]) {
    BestTimes times;
    const int failed = runBenchmarks(argc, argv, times);
    return failed != 0 ? failed : reportRatios(times, ratios, count);
}
