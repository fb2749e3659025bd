#pragma once

#include "libs/kestrel_wire/utctime.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace workbench {

/// A Measurement Tool or a reference in one frame.
struct TrackedBody {
    enum class Kind { Tool, Reference };

    Kind kind = Kind::Tool;
    int number = 1;          ///< from 1, as in "M1" and "MR1"
    double quality = -1.0;   ///< -1 when it is not tracked
    double position[3] = {}; ///< mm; of a tool its tip, seen from its reference if it has one
    double rotation[9] = {}; ///< matrix, column by column
    int buttonCount = 0;
    unsigned pressedButtons = 0;  ///< the first one in the lowest bit
    std::optional<double> radius; ///< of a tool's tip in mm; nothing when the line does not tell
    /// Of a tool: the number of its reference, 0 when it has none, nothing when that is not known.
    std::optional<int> reference;

    bool isTracked() const { return quality != -1.0; }
};

/// What one frame of data lines says about tools and references.
struct TrackedFrame {
    kestrel_wire::UtcMilliseconds arrival = 0; ///< when it came to this computer
    std::optional<double> seconds;             ///< the controller's time stamp
    std::optional<unsigned> counter;           ///< the controller's frame counter
    std::vector<TrackedBody> bodies;           ///< tools first, each kind by its numbers

    int toolCount() const {
        return static_cast<int>(
            std::count_if(bodies.begin(), bodies.end(), [](const TrackedBody& body) {
                return body.kind == TrackedBody::Kind::Tool;
            }));
    }
};

} // namespace workbench
