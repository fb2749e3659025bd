#pragma once

#include "simulator/geometry/posenoise.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kestrel_simulator {

/// The conditions that the controller works under. Times are seconds since its start.
struct ControllerState {
    double now = 0.0;
    double rate = 60.0;                 ///< frames per second
    PoseNoise noise;                    ///< of all that is measured
    bool tracking = false;              ///< a measurement was started
    bool sync = true;                   ///< the sync signal is there; without it "wait"
    bool locked = false;                ///< the configuration may not be changed
    bool toolsAvailable = true;         ///< "measurementtool available"
    bool trackingAvailable = true;      ///< "tracking available"
    bool calibrationAvailable = true;   ///< without it "cal available" says no, whatever else holds
    std::uint64_t commandsReceived = 0; ///< own commands ("sim ...") not counted
    std::vector<std::string> refused;   ///< commands that begin so are refused, whatever they ask
};

} // namespace kestrel_simulator
