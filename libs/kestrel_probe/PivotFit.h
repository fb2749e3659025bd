#pragma once

#include <array>
#include <cstddef>
#include <deque>
#include <optional>

namespace kestrel_probe {

/// One reported pose of a tool.
struct Pose {
    double position[3]; ///< mm; of the tip when the tool is calibrated
    double rotation[9]; ///< column by column, as data lines have it: tool's axes into the room's
    double seconds;     ///< of any steady clock
};

/// What a pivoting motion says about the tip. All lengths in mm.
struct PivotResult {
    double tip[3];          ///< in the tool's axes, from the reported position
    double restingPoint[3]; ///< in the room
    double residual;        ///< RMS distance of the poses' tips from the resting point
    double covariance[9];   ///< of `tip`, mm²; symmetric
    double radius95;        ///< of the sphere around `tip` that holds the truth 95 times in 100
    double slip;            ///< greatest distance between the resting points of the run's thirds
};

/// Finds the tip of a tool that pivots about it: R t + p = c for every pose, with the rotation R,
/// the reported position p, the tip t and its resting point c. For a calibrated tool, whose
/// reported position is the tip, t is the error of that tip.
///
/// Noise in the rotations would pull a plain least squares fit towards the reported position. The
/// rotations some time before and after each pose have noise of their own and serve as instruments,
/// so that it cancels. The covariance counts the scatter of whole blocks of poses, so that noise
/// which lasts over many frames is not taken for many independent readings.
///
/// The radius covers the tracker's noise, not errors that repeat with the tool's orientation.
///
/// Not thread-safe: one thread at a time. Nothing throws but the memory's allocation.
class PivotFit {
public:
    static constexpr double longestRun = 120.0;       ///< s; beyond it the oldest poses fall out
    static constexpr double shortestRun = 2.0;        ///< s; a shorter one has no result
    static constexpr std::size_t fewestPoses = 60;    ///< fewer have no result
    static constexpr double leastCoverage = 0.002;    ///< less has no result
    static constexpr double instrumentDistance = 0.1; ///< s between a pose and its instruments
    static constexpr double rotationTolerance = 0.01; ///< of each element of RᵀR
    /// A tip has slipped when its slip exceeds the residual this many times.
    static constexpr double slipOverResidual = 1.2;

    /// Forgets all poses.
    void clear();

    /// Takes a pose. One that is not finite, whose matrix is no rotation, or whose time is not
    /// later than the last one's is as if it had not come.
    void add(const Pose& pose);

    /// Those taken and not fallen out.
    std::size_t poses() const { return m_samples.size(); }

    /// Seconds from the first pose to the last.
    double duration() const;

    /// How far the tool has turned about all of its axes, 0 to 1: the smallest eigenvalue of the
    /// rotations' scatter. 0 for a swing in one plane or a twist, 0.003 for a cone of 5 degrees,
    /// 0.034 for 20, 0.14 for 45.
    double coverage() const;

    /// The tool's axis, a unit vector, along which the tip stays unknown longest: the tool has
    /// turned only about it, tilting across it is missing. Zero without poses.
    std::array<double, 3> weakestAxis() const;

    /// Empty when the motion does not determine the tip: too few poses, too short, too little
    /// coverage, or too fast for its instruments. About 1 µs for each pose.
    std::optional<PivotResult> solve() const;

    /// There are poses, time and coverage enough, but the motion is too fast or too jerky to tell
    /// it from noise: moving slower will help. As costly as solve().
    bool isTooFast() const;

private:
    struct Sample {
        double position[3]; // from the first pose's
        double rotation[9];
        double seconds;
    };
    struct Fit;

    void count(const Sample& sample, double sign);
    bool hasEnough() const;

    std::deque<Sample> m_samples;
    double m_origin[3] = {};      // the first pose's position
    double m_rotationSum[9] = {}; // Σ R
    double m_squareSum[9] = {};   // Σ RᵀR
};

} // namespace kestrel_probe
