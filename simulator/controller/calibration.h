#pragma once

#include "simulator/geometry/pivot.h"
#include "simulator/geometry/tipsolver.h"
#include "simulator/words/configuration.h"
#include "simulator/words/misbehaviour.h"

#include <optional>
#include <random>
#include <string>

namespace kestrel_simulator {

/// One run of a calibration procedure at a time, and the result of the last tip calibration.
///
/// Stages of the one-step type "measurementtool":
///   Step1 -> Calculating -> Finished | Failed
/// and of the two-step type "volume":
///   Step1 -> Pause (until start_step s02, at most a minute longer than announced) -> Step2 ->
///   Calculating -> Finished
/// An initial pause before step 1 can be configured for both. A stop leads to Idle from anywhere.
class Calibration {
public:
    enum class Stage { Idle, InitialPause, Step1, Pause, Step2, Calculating, Finished, Failed };

    struct Settings {
        double stepSeconds = 6.0;  ///< duration of each step
        int pauseSeconds = 5;      ///< "cal step_pause"; 0: none
        double initialPause = 0.0; ///< seconds of "pause 1" after the start
        Pivot pivot = Pivot::Cone;
        PoseNoise noise;
        int tool = 0; ///< 1-based; 0: the first with a calibrated body and no calibrated tip, else
                      ///< the first
    };

    /// Above this residual (mm) the calibration fails: the tip was not fixed.
    static constexpr double maxResidual = 5.0;
    static constexpr int maxPauseSeconds = 3600;
    static constexpr std::size_t poseCount = 240;

    Calibration(Configuration& configuration, Misbehaviours& misbehaviours, std::uint64_t seed);

    /// Adds the "cal" parameters that describe the types, and the result's parameters.
    void addParameters(ParameterTable& table);

    Answer start(const std::string& type, double now);
    Answer startStep(const std::string& type, const std::string& step, double now);
    Answer stop(const std::string& type);
    Answer acceptResult();

    /// Leaves a failed or finished run behind, as the start of tracking does.
    void clearFailure();

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
    void enter(Stage stage, double now);
    void finishCollecting(double now);
    void finish(double now);
    void fail(std::string reason);
    double shareOfStage(double now) const;
    int chooseTool() const;
    bool isTipCalibration() const;
    std::optional<std::string> solve();

    Configuration& m_configuration;
    Misbehaviours& m_misbehaviours;
    Settings m_settings;
    std::mt19937_64 m_random;
    const Type* m_type = nullptr;
    Stage m_stage = Stage::Idle;
    double m_stageBegin = 0.0;
    double m_progress = 0.0;
    double m_stepProgress = 0.0;
    int m_step = 1;
    int m_tool = 0;
    std::string m_failure;
    std::optional<Result> m_result;
};

} // namespace kestrel_simulator
