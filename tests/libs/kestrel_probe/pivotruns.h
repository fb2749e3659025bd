#pragma once

#include "libs/kestrel_probe/PivotFit.h"

#include <Eigen/Core>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// Pivoting motions of a probe whose tip is known, seen by a noisy tracker.
namespace pivotruns {

/// How the probe is moved, and how well it is seen.
struct Cell {
    double cone = 30.0;      ///< greatest tilt, degrees
    double lever = 250.0;    ///< from the body's origin to its tip, mm
    double rate = 60.0;      ///< frames per second
    double seconds = 10.0;   ///< length of a run
    double noise = 0.05;     ///< standard deviation of a coordinate, mm
    bool correlated = false; ///< the noise lasts 0.075 s instead of one frame
    bool human = false;      ///< irregular motion instead of a steady cone
    double missing = 0.0;    ///< share of the frames that do not come
    double slip = 0.0;       ///< mm by which the tip moves half-way
    double distance = 0.0;   ///< mm from the room's origin to the resting point, along x
    bool alongShaft = false; ///< the tip is wrong along the shaft, where it is known least

    std::string name() const;
};

/// Standard deviation of a component of a rotation vector for each mm of the noise, rad/mm: that of
/// markers 100 mm around the origin.
inline constexpr double rotationNoise = 0.01;

/// The error of the simulated tip, mm, in the tool's axes; 0.5 mm long.
inline constexpr double tipError[3] = {0.3, -0.4, 0.0};
inline constexpr double tipErrorLength = 0.5;

/// The same for this cell: of that length too.
Eigen::Vector3d tipErrorOf(const Cell& cell);

/// The poses of one run. The same seed gives the same run.
std::vector<kestrel_probe::Pose> poses(const Cell& cell, std::uint64_t seed);

/// A tool that turns as `turn` (a rotation vector in rad at a time in s) says, without noise. Its
/// tip, which is at `tip` in its axes, rests in the origin.
std::vector<kestrel_probe::Pose> posesOf(const std::function<Eigen::Vector3d(double)>& turn,
                                         double rate, double seconds,
                                         const Eigen::Vector3d& tip = Eigen::Vector3d(tipError));

/// Tilted by `tilt` rad into directions that go round `hertz` times a second.
Eigen::Vector3d cone(double seconds, double tilt, double hertz);

/// What many runs of one cell came to.
struct Tally {
    int runs = 0;
    int solved = 0;
    int held = 0;          ///< the region held the true error
    int wrongConforms = 0; ///< judged to conform to a tolerance a little below the true error
    double rmsError = 0.0; ///< of the found tip, mm
    double meanRadius = 0.0;
    double greatestSlipRatio = 0.0; ///< slip over residual

    double heldShare() const { return solved == 0 ? 1.0 : static_cast<double>(held) / solved; }
    double wrongShare() const {
        return solved == 0 ? 0.0 : static_cast<double>(wrongConforms) / solved;
    }
};

/// Tries `runs` runs with the seeds from `firstSeed` on.
Tally tally(const Cell& cell, int runs, std::uint64_t firstSeed);

/// All combinations: cones of 5 to 45 degrees, two levers, 60, 240 and 1 000 frames a second, 5 to
/// 20 s, two noises, independent and correlated, steady and human motion, whole and with a fifth of
/// the frames missing.
std::vector<Cell> allCells();

} // namespace pivotruns
