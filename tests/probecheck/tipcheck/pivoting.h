#pragma once

#include "probecheck/data/linetap.h"

#include <random>

/// A tool that is tilted about its resting tip, as samples of a noisy tracker.
class Pivoting {
public:
    enum class Motion { Cone, AcrossX, AcrossY, AcrossDiagonal, Twist, Still };

    Motion motion = Motion::Cone;
    double tilt = 25.0;                              ///< degrees
    std::array<double, 3> tipError = {0.3, -0.4, 0}; ///< mm, in the tool's axes
    double noise = 0.05;                             ///< mm
    double slip = 0.0;                               ///< mm along x, from `slipTime` on
    double slipTime = 5.0;                           ///< s
    double frequency = 0.4;                          ///< swings in a second

    /// The sample at a time from the beginning; arrival and seconds are `begin` later.
    ProbeSample at(double time, double begin = 0.0);

private:
    std::mt19937 m_random{7};
};
