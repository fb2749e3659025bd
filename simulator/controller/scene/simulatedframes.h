#pragma once

#include "simulator/controller/scene/cameras.h"
#include "simulator/controller/scene/framesource.h"
#include "simulator/words/datalines.h"

#include <array>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>

namespace kestrel_simulator {

/// The data lines that can be switched on and off; those of the frame itself are always sent.
inline constexpr std::array<std::string_view, 4> outputChannels = {"6d", "6dmt", "6dmt2", "6dmtr"};

using ActiveChannels = std::set<std::string, std::less<>>;

/// Frames of the scene as the cameras see it, in the lines of the active channels. Tools go into
/// "6dmt" or "6dmt2", whichever the output format says, and only if that one is active.
class SimulatedFrames : public FrameSource {
public:
    /// All of these outlive the frames; they are read anew for each frame.
    SimulatedFrames(const Configuration& configuration, const Scene& scene, Cameras& cameras,
                    const ActiveChannels& channels, const double& rate);

    void start(double now) override;
    double nextDue() const override { return m_nextDue; }
    std::vector<std::string> take(double now) override;

private:
    std::vector<datalines::ToolRecord> measureTools(double time);
    std::vector<datalines::BodyRecord> measureReferences(double time);
    std::vector<datalines::BodyRecord> measureStandardBodies(double time);

    const Configuration& m_configuration;
    const Scene& m_scene;
    Cameras& m_cameras;
    const ActiveChannels& m_channels;
    const double& m_rate;
    std::uint32_t m_counter = 0;
    double m_nextDue = 0.0;
};

} // namespace kestrel_simulator
