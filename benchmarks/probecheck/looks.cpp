#include "benchmarks/probecheck/looks.h"

#include "probecheck/data/probedata.h"
#include "probecheck/tipcheck/tipcheck.h"
#include "tests/libs/kestrel_probe/pivotruns.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace looks {

namespace {

using kestrel_probe::Verdict;
using pivotruns::Cell;

// Tolerances as shares of the true error. Below 1 "conforms" is wrong, above it "does not conform"
// is; the nearer to 1, the longer a check goes on looking.
constexpr double tolerances[] = {0.5, 0.8, 0.999, 1.25, 2.0, 4.0};
constexpr double wideTolerance = 4.0;  // so far from the error that every check has to decide,
constexpr double surelyDecided = 10.0; // from this cone on, in degrees
constexpr double mostWrong = 0.025;
constexpr double fewestHeld = 0.93;
constexpr double tickSeconds = ProbeData::refreshMs / 1000.0;

// One check, handed its poses and ticks as the page does.
TipCheck::Result runCheck(const Cell& cell, std::uint64_t seed, double tolerance) {
    TipCheck check;
    check.start(0, tolerance, 0.0);
    double tick = 0.0;
    ProbeSample sample;
    sample.tracked = true;
    for (const kestrel_probe::Pose& pose : pivotruns::poses(cell, seed)) {
        for (; tick < pose.seconds && check.isRunning(); tick += tickSeconds) {
            check.tick(tick);
        }
        std::copy_n(pose.position, 3, sample.position.begin());
        std::copy_n(pose.rotation, 9, sample.rotation.begin());
        sample.seconds = pose.seconds;
        sample.arrival = pose.seconds;
        check.take(sample);
    }
    check.tick(TipCheck::longestCheck);
    return check.result();
}

struct Tally {
    int runs = 0;
    int decided = 0; ///< ended by a verdict
    int determined = 0;
    int held = 0; ///< of the determined ones: the last region holds the truth
    int conforms = 0;
    int wrong = 0;
    double seconds = 0.0; ///< all together

    void add(const TipCheck::Result& result, const Eigen::Vector3d& truth) {
        ++runs;
        seconds += result.duration;
        decided += result.end == TipCheck::End::Decided ? 1 : 0;
        conforms += result.verdict == Verdict::Conforms ? 1 : 0;
        const bool isRight = truth.norm() <= result.tolerance;
        wrong += result.verdict == (isRight ? Verdict::DoesNotConform : Verdict::Conforms) ? 1 : 0;
        if (result.pivot) {
            ++determined;
            const Eigen::Vector3d tip(result.pivot->tip);
            held += (tip - truth).norm() <= result.pivot->radius95 ? 1 : 0;
        }
    }
    void add(const Tally& other) {
        runs += other.runs;
        decided += other.decided;
        determined += other.determined;
        held += other.held;
        conforms += other.conforms;
        wrong += other.wrong;
        seconds += other.seconds;
    }
    double heldShare() const { return static_cast<double>(held) / std::max(1, determined); }
    double share(int count) const { return static_cast<double>(count) / std::max(1, runs); }
    bool keepsPromise() const {
        return determined > 0 && heldShare() >= fewestHeld && share(wrong) <= mostWrong;
    }
    void print(const std::string& name, const char* remark) const {
        std::printf("%-72s %6d %8.3f %7.3f %9.3f %7.3f %7.1f%s\n", name.c_str(), runs,
                    share(decided), heldShare(), share(conforms), share(wrong),
                    seconds / std::max(1, runs), remark);
        std::fflush(stdout);
    }
};

std::vector<Cell> cells() {
    std::vector<Cell> all;
    for (const bool alongShaft : {false, true}) {
        for (const double cone : {5.0, 10.0, 20.0, 30.0, 45.0}) {
            for (const double noise : {0.05, 0.3}) {
                for (const bool human : {false, true}) {
                    Cell cell;
                    cell.cone = cone;
                    cell.seconds = TipCheck::longestCheck;
                    cell.noise = noise;
                    cell.correlated = true;
                    cell.human = human;
                    cell.missing = human ? 0.2 : 0.0;
                    cell.alongShaft = alongShaft;
                    all.push_back(cell);
                }
            }
        }
    }
    return all;
}

} // namespace

int printTable(int runs) {
    std::printf("%-72s %6s %8s %7s %9s %7s %7s\n", "cell", "runs", "decided", "held", "conforms",
                "wrong", "s");
    std::map<double, Tally> byTolerance;
    int broken = 0;
    for (const Cell& cell : cells()) {
        const Eigen::Vector3d truth = pivotruns::tipErrorOf(cell);
        Tally ofCell;
        bool good = true;
        unsigned seed = 0;
        for (const double tolerance : tolerances) {
            Tally tally;
            for (int run = 0; run < runs; ++run) {
                tally.add(runCheck(cell, ++seed, tolerance * truth.norm()), truth);
            }
            if (tolerance >= wideTolerance && cell.cone >= surelyDecided) {
                good = good && tally.conforms == tally.runs;
            }
            ofCell.add(tally);
            byTolerance[tolerance].add(tally);
        }
        good = good && ofCell.keepsPromise();
        broken += good ? 0 : 1;
        ofCell.print(cell.name() + (cell.alongShaft ? " along" : " across"), good ? "" : "  <--");
    }
    for (const auto& [tolerance, tally] : byTolerance) {
        char name[40];
        std::snprintf(name, sizeof name, "all, tolerance %.3f of the error", tolerance);
        broken += tally.keepsPromise() ? 0 : 1;
        tally.print(name, tally.keepsPromise() ? "" : "  <--");
    }
    std::printf("%d rows break the promise\n", broken);
    return broken == 0 ? 0 : 1;
}

} // namespace looks
