#include "simulator/controller/calibration.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace kestrel_simulator {

struct Calibration::Type {
    std::string_view name;
    std::string_view description;
    int steps;
    std::array<std::string_view, 2> stepDescriptions;
};

namespace {

constexpr std::string_view tipType = "measurementtool";
constexpr double patience = 60.0; // seconds of waiting for step 2 after the announced pause

Answer noSuchStep() {
    return Answer::refuse(ErrorNumber::BadBody, "no such calibration step");
}

std::string quoted(std::string_view text) {
    return "\"" + std::string(text) + "\"";
}

const char* reasonOf(TipSolution::Outcome outcome) {
    switch (outcome) {
    case TipSolution::Outcome::TooFewPoses:
        return "The Measurement Tool was not seen often enough";
    case TipSolution::Outcome::Still:
        return "The Measurement Tool was not moved, the tip cannot be determined";
    case TipSolution::Outcome::Twist:
        return "The Measurement Tool was only turned about its own axis, the tip cannot be "
               "determined";
    case TipSolution::Outcome::Planar:
        return "The Measurement Tool was only swung in one plane, the tip cannot be determined";
    case TipSolution::Outcome::Solved:
        break;
    }
    return "";
}

} // namespace

const Calibration::Type* Calibration::findType(const std::string& name) {
    static const std::array<Type, 2> types = {
        {{tipType, "Measurement Tool tip calibration", 1, {"Pivot the tool about its tip", ""}},
         {"volume",
          "Volume calibration",
          2,
          {"Lay the frame on the floor and keep it still",
           "Move the bar through the whole volume"}}}};
    const auto* found = std::find_if(types.begin(), types.end(),
                                     [&](const Type& type) { return type.name == name; });
    return found == types.end() ? nullptr : found;
}

Calibration::Calibration(Configuration& configuration, Scene& scene, Cameras& cameras,
                         const ControllerState& state, Misbehaviours& misbehaviours)
    : m_configuration(configuration)
    , m_scene(scene)
    , m_cameras(cameras)
    , m_state(state)
    , m_misbehaviours(misbehaviours) {}

void Calibration::addParameters(ParameterTable& table) {
    using OfType = std::function<std::string(const Type&)>;
    const auto addOfType = [&](const char* name, OfType get) {
        table.add(name, {1,
                         {},
                         [get = std::move(get)](const text::Words& arguments) {
                             const Type* type = findType(arguments[0]);
                             return type ? Answer::value(get(*type))
                                         : Answer::refuse(ErrorNumber::BadBody,
                                                          "no such calibration type");
                         },
                         nullptr});
    };
    using OfStep = std::function<std::string(const Type&, int step)>;
    const auto addOfStep = [&](const char* name, Version since, OfStep get) {
        table.add(name, {2, since,
                         [get = std::move(get)](const text::Words& arguments) {
                             const Type* type = findType(arguments[0]);
                             const int step = text::readNumbered(arguments[1], 's');
                             const bool exists = type && step >= 1 && step <= type->steps;
                             return exists ? Answer::value(get(*type, step)) : noSuchStep();
                         },
                         nullptr});
    };
    addOfType("cal type_desc", [](const Type& type) { return quoted(type.description); });
    addOfType("cal number_of_steps", [](const Type& type) { return std::to_string(type.steps); });
    addOfStep("cal step_pause", {}, [this](const Type&, int) {
        const int seconds = m_settings.pauseSeconds;
        return seconds > 0 ? "yes " + std::to_string(seconds) : std::string("no");
    });
    addOfStep("cal step_desc", {}, [](const Type& type, int step) {
        return quoted(type.stepDescriptions[static_cast<std::size_t>(step - 1)]);
    });
    addOfStep("cal step_duration", {1, 4, 0},
              [this](const Type&, int) { return text::shortest(m_settings.stepSeconds); });

    const auto noResult = [] { return Answer::wrongState("there is no calibration result"); };
    table.add("measurementtool calibration_body_id",
              {0,
               {1, 3, 0},
               [this, noResult](const text::Words&) {
                   return m_result ? Answer::value(text::numbered('b', m_result->tool + 1))
                                   : noResult();
               },
               nullptr});
    table.add("measurementtool calibration_tip_residual",
              {0,
               {1, 3, 0},
               [this, noResult](const text::Words&) {
                   return m_result ? Answer::value(text::fixed(m_result->solution.residual, 4))
                                   : noResult();
               },
               nullptr});
}

Answer Calibration::start(const std::string& type, double now) {
    const Type* const found = findType(type);
    if (!found) {
        return Answer::refuse(ErrorNumber::BadBody, "no such calibration type");
    }
    if (isRunning()) {
        return Answer::wrongState("a calibration is running");
    }
    const std::optional<int> tool = toolToCalibrate();
    if (found->name == tipType && !tool) {
        return Answer::wrongState("no Measurement Tool is calibrated");
    }
    m_type = found;
    m_tool = tool.value_or(0);
    m_result.reset();
    m_failure.clear();
    m_progress = 0.0;
    m_step = 1;
    m_stepProgress = 0.0;
    if (m_settings.initialPause > 0.0) {
        enter(Stage::InitialPause, now);
    } else {
        enterStep(1, now);
    }
    return Answer::ok();
}

Answer Calibration::startStep(const std::string& type, const std::string& step, double now) {
    if (!m_type || m_type->name != type || m_stage != Stage::Pause || step != "s02") {
        return Answer::wrongState("the calibration does not wait for this");
    }
    enterStep(2, now);
    return Answer::ok();
}

Answer Calibration::stop(const std::string& type, double now) {
    if (!findType(type)) {
        return Answer::refuse(ErrorNumber::BadBody, "no such calibration type");
    }
    if (isRunning() && m_type->name != type) {
        return Answer::wrongState("another calibration is running");
    }
    enter(Stage::Idle, now);
    if (m_result && !m_result->accepted) {
        m_result.reset();
    }
    return Answer::ok();
}

Answer Calibration::acceptResult() {
    if (!m_result || m_result->accepted || isRunning()) {
        return Answer::wrongState("there is no new calibration");
    }
    Tool& tool = m_configuration.tool(m_result->tool);
    tool.tip = m_result->solution.tip;
    tool.tipCalibrated = true;
    m_result->accepted = true;
    return Answer::ok();
}

void Calibration::leaveFinalStage() {
    if (m_stage == Stage::Failed || m_stage == Stage::Finished) {
        m_stage = Stage::Idle;
    }
}

bool Calibration::isRunning() const {
    return m_stage != Stage::Idle && m_stage != Stage::Finished && m_stage != Stage::Failed;
}

bool Calibration::isTipCalibration() const {
    return m_type && m_type->name == tipType;
}

bool Calibration::isCalibratable(int tool) const {
    return tool >= 0 && tool < m_configuration.toolCount() &&
           m_configuration.tool(tool).bodyCalibrated;
}

std::optional<int> Calibration::toolToCalibrate() const {
    if (isCalibratable(m_settings.tool - 1)) {
        return m_settings.tool - 1;
    }
    for (const bool withTip : {false, true}) {
        for (int i = 0; i < m_configuration.toolCount(); ++i) {
            if (isCalibratable(i) && m_configuration.tool(i).tipCalibrated == withTip) {
                return i;
            }
        }
    }
    return std::nullopt;
}

std::string Calibration::stepActive() const {
    switch (m_stage) {
    case Stage::InitialPause:
        return "pause 1";
    case Stage::Pause:
        return "pause 2";
    case Stage::Step1:
    case Stage::Step2:
    case Stage::Calculating:
        return "cal " + std::to_string(m_step);
    case Stage::Failed:
        return "err";
    case Stage::Idle:
    case Stage::Finished:
        break;
    }
    return "none";
}

std::string Calibration::stepProgress() const {
    return std::to_string(m_step) + " " + text::fixed(m_stepProgress, 3);
}

void Calibration::enter(Stage stage, double now) {
    m_stage = stage;
    m_stageBegin = now;
    if (isTipCalibration()) {
        m_scene.endCalibration(m_tool);
    }
}

void Calibration::enterStep(int step, double now) {
    enter(step == 1 ? Stage::Step1 : Stage::Step2, now);
    m_step = step;
    m_stepProgress = 0.0;
    m_poses.clear();
    m_nextFrame = now;
    if (isTipCalibration()) {
        m_scene.beginCalibration(m_tool, m_settings.pivot, now, m_settings.stepSeconds);
    }
}

void Calibration::leaveStep(double now) {
    if (m_step == m_type->steps) {
        enter(Stage::Calculating, now);
    } else if (m_settings.pauseSeconds > 0) {
        enter(Stage::Pause, now);
    } else {
        enterStep(m_step + 1, now);
    }
}

void Calibration::fail(const std::string& reason, double now) {
    m_failure = reason;
    enter(Stage::Failed, now);
}

void Calibration::advance(double now) {
    for (Stage before = Stage::Idle; before != m_stage;) {
        before = m_stage;
        advanceStage(now);
    }
}

void Calibration::advanceStage(double now) {
    switch (m_stage) {
    case Stage::InitialPause:
        if (now - m_stageBegin >= m_settings.initialPause) {
            enterStep(1, m_stageBegin + m_settings.initialPause);
        }
        break;
    case Stage::Step1:
    case Stage::Step2:
        advanceStep(now);
        break;
    case Stage::Pause:
        if (now - m_stageBegin >= m_settings.pauseSeconds + patience) {
            fail("The second step was not started in time", now);
        }
        break;
    case Stage::Calculating:
        if (now - m_stageBegin >= calculatingSeconds) {
            conclude(now);
        }
        break;
    case Stage::Idle:
    case Stage::Finished:
    case Stage::Failed:
        break;
    }
}

void Calibration::advanceStep(double now) {
    const double end = m_stageBegin + m_settings.stepSeconds;
    collectPoses(std::min(now, end));
    m_stepProgress = std::clamp((now - m_stageBegin) / m_settings.stepSeconds, 0.0, 1.0);
    m_progress = (m_step - 1 + m_stepProgress) / m_type->steps;
    // how far this step may go before the whole stands still
    const double endlessAt = m_misbehaviours.number(Misbehaviour::CalEndless) / 100.0;
    const double stepLimit = endlessAt * m_type->steps - (m_step - 1);
    const int errorAt = m_misbehaviours.number(Misbehaviour::CalError);
    if (m_misbehaviours.has(Misbehaviour::CalError) && m_progress * 100.0 >= errorAt) {
        m_progress = std::min(m_progress, errorAt / 100.0);
        fail("The markers of the Measurement Tool were lost", now);
    } else if (m_misbehaviours.has(Misbehaviour::CalEndless) && stepLimit <= 1.0) {
        m_progress = std::min(m_progress, endlessAt);
        m_stepProgress = std::clamp(stepLimit, 0.0, m_stepProgress);
    } else if (m_stepProgress >= 1.0) {
        leaveStep(end);
    }
}

void Calibration::collectPoses(double until) {
    if (!isTipCalibration()) {
        return;
    }
    const double frames = m_settings.stepSeconds * m_state.rate;
    const double framesPerPose = std::ceil(std::max(1.0, frames / static_cast<double>(maxPoses)));
    for (; m_nextFrame < until && m_poses.size() < maxPoses;
         m_nextFrame += framesPerPose / m_state.rate) {
        const std::optional<Pose> seen =
            m_state.sync ? m_cameras.toolBody(m_tool, m_nextFrame) : std::nullopt;
        if (seen) {
            m_poses.push_back(*seen);
        }
    }
}

void Calibration::conclude(double now) {
    if (isTipCalibration()) {
        const TipSolution solution = solveTip(m_poses);
        if (solution.outcome != TipSolution::Outcome::Solved) {
            fail(reasonOf(solution.outcome), now);
            return;
        }
        if (solution.residual > maxResidual) {
            fail("The tip was not fixed, residual " + text::fixed(solution.residual, 2) + " mm",
                 now);
            return;
        }
        m_result = Result{m_tool, solution, false};
    }
    enter(Stage::Finished, now);
}

Answer Calibration::describeResult() const {
    if (!m_result) {
        return Answer::wrongState("there is no calibration result");
    }
    const TipSolution& solution = m_result->solution;
    std::string text = text::numbered('b', m_result->tool + 1);
    for (const double number : {solution.tip.x(), solution.tip.y(), solution.tip.z(),
                                solution.residual, solution.uncertainty()}) {
        text += " " + text::fixed(number, 6);
    }
    return Answer::value(text + (m_result->accepted ? " accepted" : " new"));
}

} // namespace kestrel_simulator
