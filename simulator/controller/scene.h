#pragma once

#include "simulator/geometry/motion.h"
#include "simulator/words/configuration.h"

#include <optional>
#include <vector>

namespace kestrel_simulator {

/// Where everything truly is: the bodies on their seeded paths, or where somebody put them.
///
/// A tool is reported in the coordinates of its reference when it has one, else in the room's; a
/// placed tool is held in whichever coordinates it is reported in.
class Scene {
public:
    Scene(const Configuration& configuration, std::uint64_t seed, int standardBodies);

    /// Pose of the tool with its body's origin, in the coordinates that it is reported in.
    Pose toolBody(int tool, double time) const;

    /// The same with the tip that the controller uses as origin: what a data line without noise
    /// says.
    Pose reportedTool(int tool, double time) const;

    Pose reference(int index, double time) const;
    Pose standardBody(int index, double time) const;
    int standardBodyCount() const { return static_cast<int>(m_standardBodies.size()); }

    /// Whether the tool is seen, and its reference calibrated if it has one.
    bool isToolTracked(int tool, double time) const;
    bool isReferenceTracked(int index) const;

    unsigned buttons(int tool, double time) const;

    /// Holds the tool so that reportedTool() is `pose`, out of the way of occlusions.
    void placeTool(int tool, const Pose& pose);
    void placeReference(int index, const Pose& pose);
    void press(int tool, unsigned mask);
    void occludeTool(int tool, bool occluded);
    void occludeReference(int index, bool occluded);

    /// Gives the tool back to its own motion, buttons and occlusions.
    void releaseTool(int tool);
    void releaseReference(int index);

    /// Occlusions that come by themselves.
    void setOcclusions(bool on) { m_occlusions = on; }
    bool hasOcclusions() const { return m_occlusions; }

private:
    struct ToolScene {
        ToolMotion motion;
        std::optional<Pose> body; // placed
        std::optional<unsigned> buttons;
        std::optional<bool> occluded;
    };
    struct StandingScene {
        StandingMotion motion;
        std::optional<Pose> placed;
        bool occluded = false;
    };

    ToolScene& tool(int index) { return m_tools[static_cast<std::size_t>(index)]; }
    const ToolScene& tool(int index) const { return m_tools[static_cast<std::size_t>(index)]; }

    const Configuration& m_configuration;
    std::vector<ToolScene> m_tools;
    std::vector<StandingScene> m_references;
    std::vector<StandingMotion> m_standardBodies;
    bool m_occlusions = true;
};

} // namespace kestrel_simulator
