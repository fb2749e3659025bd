#include "benchmarks/probecheck/looks.h"

#include <QApplication>
#include <QStandardPaths>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <cstring>

int main(int argc, char** argv) {
    // --looks [RUNS]: the table instead of the times.
    if (argc > 1 && std::strcmp(argv[1], "--looks") == 0) {
        return looks::printTable(argc > 2 ? std::max(1, std::atoi(argv[2])) : 200);
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QStandardPaths::setTestModeEnabled(true); // a point is captured
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
