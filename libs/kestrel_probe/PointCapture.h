#pragma once

#include <cstddef>
#include <optional>
#include <vector>

namespace kestrel_probe {

/// One reported position of a tip.
struct TipSample {
    double position[3]; ///< mm
    double seconds;     ///< of any steady clock
};

/// A tip that was held still. All lengths in mm.
struct CapturedPoint {
    double mean[3];          ///< of the samples
    double deviation[3];     ///< standard deviation of a sample, per axis
    double greatestDistance; ///< of a sample from the mean
    std::size_t samples;     ///< how many; at least two
    double duration;         ///< s from the first sample to the last
};

/// Captures a point from the samples of a tip that is held still for some time. It begins anew when
/// a sample leaves the tolerance, and gives up when tracking is lost or nothing comes for a second.
///
/// A point's samples are all within the tolerance of their mean: a slow drift, too, begins anew.
///
/// Not thread-safe: one thread at a time. Nothing throws but the memory's allocation.
class PointCapture {
public:
    static constexpr double longestSilence = 1.0; ///< s without a sample

    /// Where a capture stands.
    enum class State {
        Idle,     ///< not begun, or cancelled
        Holding,  ///< collecting samples
        Captured, ///< point() has the result
        Lost,     ///< given up: tracking was lost
        Silent    ///< given up: nothing came for a second
    };

    /// Begins a capture at the time `seconds` of the samples' clock: the tip is to be held for
    /// `duration` s within `tolerance` mm of its mean. Negative values count as 0, values that are
    /// not numbers too.
    void begin(double duration, double tolerance, double seconds);

    /// Ends the capture without a result.
    void cancel() { m_state = State::Idle; }

    /// Takes a sample while holding. One that is not finite, or not later than the last one, is as
    /// if it had not come.
    void add(const TipSample& sample);

    /// The tool or its reference is tracked no more.
    void lose();

    /// Tells the time when no sample comes.
    void wait(double seconds);

    /// Where the capture stands.
    State state() const { return m_state; }

    /// Share of the duration for which the tip has been held, 0 to 1.
    double progress() const;

    /// How often the tip left the tolerance since the beginning.
    std::size_t restarts() const { return m_restarts; }

    /// The result of a capture that has ended well; at least two samples.
    const std::optional<CapturedPoint>& point() const { return m_point; }

private:
    void beginAnew(const TipSample& sample);
    void take(const TipSample& sample);
    double heldFor() const;
    CapturedPoint summary() const;

    State m_state = State::Idle;
    double m_duration = 0.0;
    double m_tolerance = 0.0;
    double m_lastSeconds = 0.0;
    std::size_t m_restarts = 0;
    std::vector<TipSample> m_samples;
    double m_sum[3] = {}; // of the positions from the first one
    std::optional<CapturedPoint> m_point;
};

} // namespace kestrel_probe
