#pragma once

#include "libs/kestrel_wire/command.h"
#include "simulator/controller/calibration.h"
#include "simulator/controller/controllerstate.h"
#include "simulator/controller/radionetwork.h"
#include "simulator/controller/replay.h"
#include "simulator/controller/scene/simulatedframes.h"
#include "simulator/controller/simcommands.h"
#include "simulator/words/faults.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestrel_simulator {

/// What is known of the probe of one tool or of those of all; the rest is random.
struct ProbeSetup {
    int tool = 0;                       ///< 1-based; 0: all
    std::optional<Eigen::Vector3d> tip; ///< mm, body coordinates
    std::optional<double> lever;        ///< mm
    std::optional<double> slip;         ///< mm
};

/// What a controller is made with.
struct ControllerSetup {
    BodyLimits limits;
    int tools = 4;
    int references = 2;
    int standardBodies = 2;
    int devices = 4;
    double rate = 60.0;
    std::uint64_t seed = 1;
    std::string model = kestrel_wire::simulatorModel;
    Version protocol = {1, 14, 0};
    Version system = {3, 1, 0};
    Version systemCt = {3, 1, 0};
    bool occlusions = true;
    PoseNoise noise;
    std::vector<ProbeSetup> probes; ///< a later one goes before an earlier one
    Calibration::Settings calibration;
};

/// What belongs to one connection.
struct Session {
    int dataPort = 0; ///< UDP port of the client that data lines go to; 0: none
};

/// The simulated controller without its sockets: commands in, replies and frames out. All of it is
/// driven by the times that it is called with, in seconds since its start, never backwards. One
/// thread.
class Controller {
public:
    explicit Controller(const ControllerSetup& setup);

    Misbehaviours& misbehaviours() { return m_misbehaviours; }

    /// From now on frames and the recorded parameters come from a recording.
    void setReplay(std::unique_ptr<Replay> replay);

    /// See Replay::isChanged().
    bool isReplayChanged() const { return m_replay && m_replay->isChanged(); }

    /// Carries out one command line of the connection that `session` belongs to.
    ReplyPlan execute(std::string_view line, Session& session, double now);

    /// Lets time pass where nobody asks: calibration, coming and going radio devices.
    void advance(double now);

    /// Seconds until the next frame, 0 when it is due already; infinity while none will come.
    double secondsToNextFrame(double now) const;

    /// The lines of a frame that is due. False when none is due; no lines when the frame is lost.
    bool takeFrame(double now, std::vector<std::string>& lines);

private:
    void shapeProbes(const std::vector<ProbeSetup>& probes);
    void addParameters();
    void addVersions(const ControllerSetup& setup);
    void addOutput();
    void addStatus();
    void addAvailability();

    std::optional<Answer> refuseChange() const;
    Answer answer(const kestrel_wire::Command& command);
    Answer act(const text::Words& words);
    Answer actOnTracking(const text::Words& words);
    Answer actOnCalibration(const text::Words& words);
    Answer startCalibration(const std::string& type);
    Answer setDataPort(const text::Words& value);
    bool isCalibrationAvailable() const;
    bool isSending() const;

    std::string statusActive() const;
    Answer answerStatusQuery(std::string (Controller::*status)() const);
    std::string stepActive() const { return m_calibration.stepActive(); }
    bool isRecorded(const text::Words& words) const;
    void spoilCalibration(const kestrel_wire::Command& command, ReplyPlan& plan);
    bool dropsAt(const kestrel_wire::Command& command);

    ControllerState m_state;
    Misbehaviours m_misbehaviours;
    Configuration m_configuration;
    Scene m_scene;
    Cameras m_cameras;
    RadioNetwork m_radio;
    Calibration m_calibration;
    ActiveChannels m_channels;
    SimulatedFrames m_simulatedFrames;
    SimCommands m_simCommands;
    ReplyFaults m_replyFaults;
    DataFaults m_dataFaults;
    ParameterTable m_parameters;
    std::unique_ptr<Replay> m_replay;
    FrameSource* m_frames;
    std::map<std::string, std::string> m_recorded; // parameters that a recording answers
    Session* m_session = nullptr;                  // of the command in work
    std::string m_lastFinalStatus = "none";        // of the calibration before this one
    int m_statusQueries = 0;                       // since the start of a calibration
};

} // namespace kestrel_simulator
