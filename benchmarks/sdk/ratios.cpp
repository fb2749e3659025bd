#include "benchmarks/sdk/ratios.h"

#include <algorithm>
#include <cstdio>

void Times::ReportRuns(const std::vector<Run>& runs) {
    std::vector<Run> shown;
    for (const Run& run : runs) {
        if (run.run_type != Run::RT_Iteration || run.error_occurred) {
            shown.push_back(run);
        }
        if (run.run_type != Run::RT_Iteration) {
            continue;
        }
        const std::string name = run.run_name.function_name + '/' + run.run_name.args;
        m_nanoseconds[name].push_back(run.error_occurred ? -1.0 : run.GetAdjustedCPUTime());
    }
    ConsoleReporter::ReportRuns(shown);
}

double Times::of(const std::string& name) const {
    const auto found = m_nanoseconds.find(name);
    if (found == m_nanoseconds.end()) {
        return -1.0;
    }
    std::vector<double> sorted = found->second;
    std::sort(sorted.begin(), sorted.end());
    return sorted.front() < 0 ? -1.0 : sorted[sorted.size() / 2];
}

int reportRatios(const Times& times, const Ratio* ratios, std::size_t count) {
    int result = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const Ratio& ratio = ratios[i];
        const double numerator = times.of(ratio.numerator);
        const double denominator = times.of(ratio.denominator);
        if (numerator <= 0 || denominator <= 0) {
            std::printf("%-42s not measured\n", ratio.name);
            result = 1;
            continue;
        }
        const double value = numerator / denominator / ratio.scale;
        const bool within = value >= ratio.least && value <= ratio.most;
        std::printf("%-42s %6.3f  %s\n", ratio.name, value, within ? "ok" : "OUT OF LIMITS");
        result = within ? result : 1;
    }
    return result;
}

int runBenchmarks(int argc, char** argv, Times& times) {
    std::vector<std::string> texts = {argv[0], "--benchmark_repetitions=31",
                                      "--benchmark_min_time=0.02",
                                      "--benchmark_enable_random_interleaving=true"};
    texts.insert(texts.end(), argv + 1, argv + argc);
    std::vector<char*> arguments;
    arguments.reserve(texts.size());
    for (std::string& text : texts) {
        arguments.push_back(text.data());
    }
    int argumentCount = static_cast<int>(arguments.size());
    benchmark::Initialize(&argumentCount, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(argumentCount, arguments.data())) {
        return 2;
    }
    benchmark::RunSpecifiedBenchmarks(&times);
    benchmark::Shutdown();
    return 0;
}
