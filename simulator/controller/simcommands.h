#pragma once

#include "simulator/controller/calibration.h"
#include "simulator/controller/controllerstate.h"
#include "simulator/controller/radionetwork.h"
#include "simulator/controller/scene/scene.h"

namespace kestrel_simulator {

/// The simulator's own vocabulary, "sim ...": what tests and demonstrations need to know the truth
/// and to bring about situations. docs/wire_protocol.md lists it.
class SimCommands {
public:
    SimCommands(ControllerState& state, Configuration& configuration, Scene& scene,
                RadioNetwork& radio, Calibration& calibration, Misbehaviours& misbehaviours);

    /// Adds the "sim" parameters. This object must outlive the table.
    void addParameters(ParameterTable& table);

    /// An action; `words` are those behind "sim".
    Answer act(const text::Words& words);

private:
    void addFlag(ParameterTable& table, const std::string& name, std::function<bool()> get,
                 std::function<void(bool)> set);
    void addNumber(ParameterTable& table, const std::string& name, double& number, double minimum,
                   double maximum);
    void addFlags(ParameterTable& table);
    void addTruths(ParameterTable& table);
    void addWords(ParameterTable& table);
    void addProbes(ParameterTable& table);
    void addCalibrationSettings(ParameterTable& table);
    void addCalibrationStates(ParameterTable& table);

    struct Body {
        bool isTool = false;
        int index = -1; ///< -1: there is no such body
    };
    Body findBody(const std::string& kind, const std::string& name) const;

    using GetOfTool = std::function<std::string(int tool)>;
    using SetOfTool = std::function<Answer(int tool, const text::Words& value)>;
    void addOfTool(ParameterTable& table, const char* name, GetOfTool get, SetOfTool set);
    void addLength(ParameterTable& table, const char* name, double minimum, double maximum,
                   std::function<double(const Probe&)> get,
                   std::function<void(Probe&, double)> set);

    static std::string motionNames();
    static Answer badValue(std::string reason);
    static Answer noSuchBody();

    Answer pose(const Body& body) const;
    Answer refuse(const text::Words& words);
    Answer setPivot(const std::string& name);
    Answer misbehave(const text::Words& words);
    Answer behave(const text::Words& words);
    Answer device(const text::Words& words);
    Answer bodyAction(const text::Words& words);
    Answer place(const Body& body, const text::Words& words);
    Answer move(const Body& body, const text::Words& words);
    Answer occlude(const Body& body, const text::Words& words);
    Answer press(const Body& body, const text::Words& words);

    ControllerState& m_state;
    Configuration& m_configuration;
    Scene& m_scene;
    RadioNetwork& m_radio;
    Calibration& m_calibration;
    Misbehaviours& m_misbehaviours;
};

} // namespace kestrel_simulator
