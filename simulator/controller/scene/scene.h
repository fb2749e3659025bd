#pragma once

#include "simulator/geometry/motion.h"
#include "simulator/geometry/pivot.h"
#include "simulator/words/configuration.h"

#include <optional>
#include <variant>
#include <vector>

namespace kestrel_simulator {

/// Where everything truly is: the bodies on their seeded paths, or where somebody put or moves
/// them. All that is reported of bodies comes from here.
///
/// A tool is reported in the coordinates of its reference when it has one, else in the room's; a
/// tool that is placed, held or swung is so in whichever coordinates it is reported in.
class Scene {
public:
    Scene(const Configuration& configuration, std::uint64_t seed, int standardBodies);

    /// The probe of a tool as it truly is.
    Probe& probe(int tool) { return toolScene(tool).probe; }
    const Probe& probe(int tool) const { return toolScene(tool).probe; }

    /// What a controller believes of the tip at the start: near the true one, not equal to it.
    Eigen::Vector3d believedTip(int tool) const;

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

    /// Holds the tool where it is.
    void holdTool(int tool, double now);

    /// Swings the tool about its tip, which rests where it is.
    void swingTool(int tool, Pivot pivot, double now, double period);

    /// Moves the tool on its own path, also while it is being calibrated.
    void letToolWander(int tool);

    void placeReference(int index, const Pose& pose);
    void press(int tool, unsigned mask);
    void occludeTool(int tool, bool occluded);
    void occludeReference(int index, bool occluded);

    /// Gives the tool back to its own motion, buttons and occlusions.
    void releaseTool(int tool);
    void releaseReference(int index);

    /// While a tool is being calibrated it is swung, unless something else was ordered for it.
    void beginCalibration(int tool, Pivot pivot, double now, double period);
    void endCalibration(int tool);

    /// Occlusions that come by themselves.
    void setOcclusions(bool on) { m_occlusions = on; }
    bool hasOcclusions() const { return m_occlusions; }

private:
    struct Wandering {};
    struct Held {
        Pose body;
        bool isPlaced; // then it is always seen
    };
    using Movement = std::variant<Wandering, Held, Swing>;

    struct ToolScene {
        ToolMotion path;
        Probe probe;
        std::optional<Movement> ordered;
        std::optional<Movement> calibrated; // by the hand that calibrates it
        std::optional<unsigned> buttons;
        std::optional<bool> occluded;

        const Movement& movement() const;
        bool isPlaced() const;
    };
    struct StandingScene {
        StandingMotion motion;
        std::optional<Pose> placed;
        bool occluded = false;
    };

    ToolScene& toolScene(int index) { return m_tools[static_cast<std::size_t>(index)]; }
    const ToolScene& toolScene(int index) const { return m_tools[static_cast<std::size_t>(index)]; }
    Swing swingFromHere(int tool, Pivot pivot, double now, double period) const;
    Pose bodyOnItsPath(int tool, double time) const;

    const Configuration& m_configuration;
    std::vector<ToolScene> m_tools;
    std::vector<StandingScene> m_references;
    std::vector<StandingMotion> m_standardBodies;
    bool m_occlusions = true;
};

} // namespace kestrel_simulator
