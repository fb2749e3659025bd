#pragma once

#include <string>
#include <vector>

namespace kestrel_simulator {

/// Where the frames of a measurement come from. Times are seconds since the simulator's start.
class FrameSource {
public:
    FrameSource() = default;
    FrameSource(const FrameSource&) = delete;
    FrameSource& operator=(const FrameSource&) = delete;
    virtual ~FrameSource() = default;

    /// A measurement begins.
    virtual void start(double now) = 0;

    /// When the next frame is due; infinity when none will come any more.
    virtual double nextDue() const = 0;

    /// The lines of the next frame, due or not, and on to the one behind it.
    virtual std::vector<std::string> take(double now) = 0;
};

} // namespace kestrel_simulator
