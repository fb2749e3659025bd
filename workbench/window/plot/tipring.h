#pragma once

#include <cstddef>
#include <vector>

namespace workbench {

/// Where a tool's tip was at a time; nowhere when the tool was hidden.
struct TipSample {
    double seconds = 0.0;
    bool isSeen = false;
    double position[3] = {}; ///< mm
};

/// The latest samples of one tool, in the order of their times. All of its memory is there from the
/// beginning: it does not grow with the time of a measurement.
class TipRing {
public:
    /// Ten minutes at 1 000 frames/s. With more of them, it is less time.
    static constexpr std::size_t usualCapacity = 600 * 1000;

    explicit TipRing(std::size_t capacity = usualCapacity);

    /// A sample of the same time as the last one is left out. One of an earlier time begins anew:
    /// a replay that went back, a controller that was started anew.
    void add(const TipSample& sample);
    void clear();

    std::size_t capacity() const { return m_samples.size(); }
    std::size_t size() const { return m_size; }
    bool isEmpty() const { return m_size == 0; }

    /// The oldest is 0.
    const TipSample& at(std::size_t index) const;
    const TipSample& newest() const { return at(m_size - 1); }

    /// The index of the first one that is not earlier than this; size() when there is none.
    std::size_t firstSince(double seconds) const;

private:
    std::vector<TipSample> m_samples;
    std::size_t m_begin = 0;
    std::size_t m_size = 0;
};

} // namespace workbench
