#include "libs/kestrel_probe/PivotFit.h"
#include "tests/libs/kestrel_probe/pivotruns.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>

// How long a gauge takes to look at the run so far, and how well the regions hold the truth.

namespace {

void solve(benchmark::State& state) {
    pivotruns::Cell cell;
    cell.seconds = static_cast<double>(state.range(0)) / cell.rate;
    kestrel_probe::PivotFit fit;
    for (const kestrel_probe::Pose& pose : pivotruns::poses(cell, 1)) {
        fit.add(pose);
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(fit.solve());
    }
    state.counters["poses"] = static_cast<double>(fit.poses());
}
BENCHMARK(solve)->Arg(600)->Arg(7200)->Unit(benchmark::kMillisecond);

void add(benchmark::State& state) {
    const std::vector<kestrel_probe::Pose> poses = pivotruns::poses(pivotruns::Cell{}, 1);
    for (auto _ : state) {
        kestrel_probe::PivotFit fit;
        for (const kestrel_probe::Pose& pose : poses) {
            fit.add(pose);
        }
        benchmark::DoNotOptimize(fit.coverage());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(poses.size()));
}
BENCHMARK(add);

// 0 when every cell keeps what docs promise.
int printTable(int runs) {
    std::printf("%-66s %6s %6s %6s %8s %8s %6s %6s\n", "cell", "solved", "held", "wrong", "rms mm",
                "radius", "ratio", "slip");
    int broken = 0;
    int cells = 0;
    long solved = 0;
    long held = 0;
    for (const pivotruns::Cell& cell : pivotruns::allCells()) {
        const pivotruns::Tally tally = pivotruns::tally(cell, runs, 1);
        const double ratio = tally.solved > 0 ? tally.meanRadius / tally.rmsError : 0.0;
        const bool good = tally.heldShare() >= 0.93 && tally.wrongShare() <= 0.025 && ratio <= 6.0;
        broken += good ? 0 : 1;
        ++cells;
        solved += tally.solved;
        held += tally.held;
        std::printf("%-66s %6d %6.3f %6.3f %8.4f %8.4f %6.2f %6.2f%s\n", cell.name().c_str(),
                    tally.solved, tally.heldShare(), tally.wrongShare(), tally.rmsError,
                    tally.meanRadius, ratio, tally.greatestSlipRatio, good ? "" : "  <--");
        std::fflush(stdout);
    }
    std::printf("%d cells, %ld of %ld results held the truth, %d cells break the promise\n", cells,
                held, solved, broken);
    return broken == 0 ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    // --regions [RUNS]: the table instead of the times.
    if (argc > 1 && std::strcmp(argv[1], "--regions") == 0) {
        return printTable(argc > 2 ? std::max(1, std::atoi(argv[2])) : 200);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
