#include "libs/kestrel_probe/PivotFit.h"
#include "tests/libs/kestrel_probe/pivotruns.h"

#include <gtest/gtest.h>

// A part of the benchmark's table with fixed seeds: the corners, fewer runs.

namespace {

std::vector<pivotruns::Cell> corners() {
    std::vector<pivotruns::Cell> cells;
    for (const pivotruns::Cell& cell : pivotruns::allCells()) {
        const bool slow =
            (cell.cone == 5.0 || cell.cone == 20.0 || cell.cone == 45.0) && cell.rate == 60.0;
        const bool fast = cell.cone == 10.0 && cell.rate == 240.0 && cell.noise == 0.3;
        if (cell.lever == 250.0 && cell.seconds == 5.0 && (slow || fast)) {
            cells.push_back(cell);
        }
    }
    return cells;
}

} // namespace

TEST(PivotFitRegions, holdTheTruthAndAreNoLargerThanNeeded) {
    constexpr int runs = 100;
    long solved = 0;
    long held = 0;
    for (const pivotruns::Cell& cell : corners()) {
        const pivotruns::Tally tally = pivotruns::tally(cell, runs, 1);
        SCOPED_TRACE(cell.name());
        EXPECT_GE(tally.heldShare(), 0.93);
        EXPECT_LE(tally.wrongShare(), 0.025);
        EXPECT_LE(tally.meanRadius, 6.0 * tally.rmsError);
        EXPECT_LE(tally.greatestSlipRatio, kestrel_probe::PivotFit::slipOverResidual);
        solved += tally.solved;
        held += tally.held;
    }
    EXPECT_GT(solved, 0.9 * runs * static_cast<double>(corners().size()));
    EXPECT_GT(static_cast<double>(held), 0.97 * static_cast<double>(solved));
}
