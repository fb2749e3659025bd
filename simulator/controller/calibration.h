#pragma once

#include "simulator/controller/controllerstate.h"
#include "simulator/controller/scene/cameras.h"
#include "simulator/geometry/tipsolver.h"
#include "simulator/words/misbehaviour.h"

#include <optional>
#include <string>
#include <vector>

namespace kestrel_simulator {

/// One run of a calibration procedure at a time, and the result of the last tip calibration.
///
/// Stages of the one-step type "measurementtool":
///   Step1 -> Calculating -> Finished | Failed
/// and of the two-step type "volume":
///   Step1 -> Pause (until start_step s02, at most a minute longer than announced) -> Step2 ->
///   Calculating -> Finished
/// Without an announced pause step 2 follows by itself. An initial pause before step 1 can be
/// configured for both. A stop leads to Idle from anywhere.
///
/// In step 1 of a tip calibration the tool is swung, and what the cameras see of it goes into the
/// computation, frame by frame; frames that do not come (no sync signal) are missing there too.
class Calibration {
public:
    enum class Stage { Idle, InitialPause, Step1, Pause, Step2, Calculating, Finished, Failed };

    struct Settings {
        double stepSeconds = 6.0;  ///< duration of each step
        int pauseSeconds = 5;      ///< "cal step_pause"; 0: none
        double initialPause = 0.0; ///< seconds of "pause 1" after the start
        Pivot pivot = Pivot::Cone;
        int tool = 0; ///< 1-based; see toolToCalibrate()
    };

    /// Above this residual (mm) the calibration fails: the tip was not fixed.
    static constexpr double maxResidual = 5.0;
    static constexpr int maxPauseSeconds = 3600;

    /// At most this many poses are computed with; of a longer run only every n-th frame is used.
    static constexpr std::size_t maxPoses = 10000;

    /// Time that computing takes, long enough to be seen by somebody who asks five times a second.
    static constexpr double calculatingSeconds = 0.5;

    /// All of these outlive the calibration.
    Calibration(Configuration& configuration, Scene& scene, Cameras& cameras,
                const ControllerState& state, Misbehaviours& misbehaviours);

    /// Adds the "cal" parameters that describe the types, and the result's parameters.
    void addParameters(ParameterTable& table);

    Answer start(const std::string& type, double now);
    Answer startStep(const std::string& type, const std::string& step, double now);
    Answer stop(const std::string& type, double now);
    Answer acceptResult();

    /// Index of the tool that a tip calibration is of: the one in the settings, else the first
    /// without a calibrated tip, else the first; none whose body is not calibrated.
    std::optional<int> toolToCalibrate() const;

    /// Back to Idle from a failed or finished run, as the start of tracking does.
    void leaveFinalStage();

    /// Lets time pass.
    void advance(double now);

    Stage stage() const { return m_stage; }
    bool isRunning() const;
    bool hasFailed() const { return m_stage == Stage::Failed; }

    /// "cal 1", "pause 2", "none", "err"...
    std::string stepActive() const;
    double progress() const { return m_progress; }

    /// "1 0.250": the step and the share of it that has passed.
    std::string stepProgress() const;
    const std::string& failure() const { return m_failure; }

    Settings& settings() { return m_settings; }

    /// The last tip calibration's result as text, for tests and the curious.
    Answer describeResult() const;

private:
    struct Type;
    struct Result {
        int tool = 0; // index
        TipSolution solution;
        bool accepted = false;
    };

    static const Type* findType(const std::string& name);
    bool isTipCalibration() const;
    bool isCalibratable(int tool) const;
    void enter(Stage stage, double now);
    void enterStep(int step, double now);
    void leaveStep(double now);
    void fail(const std::string& reason, double now);
    void advanceStage(double now);
    void advanceStep(double now);
    void collectPoses(double until);
    void conclude(double now);

    Configuration& m_configuration;
    Scene& m_scene;
    Cameras& m_cameras;
    const ControllerState& m_state;
    Misbehaviours& m_misbehaviours;
    Settings m_settings;
    const Type* m_type = nullptr;
    Stage m_stage = Stage::Idle;
    double m_stageBegin = 0.0;
    double m_progress = 0.0;
    double m_stepProgress = 0.0;
    int m_step = 1;
    int m_tool = 0; // index
    std::vector<Pose> m_poses;
    double m_nextFrame = 0.0;
    std::string m_failure;
    std::optional<Result> m_result;
};

} // namespace kestrel_simulator
