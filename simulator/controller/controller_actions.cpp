#include "simulator/controller/controller.h"
#include "simulator/controller/replaycommands.h"

namespace kestrel_simulator {

namespace {

using Stage = Calibration::Stage;
using kestrel_wire::Command;
using kestrel_wire::CommandKind;

constexpr const char* acceptCommand = "measurementtool accept_new_calibration";

Answer unknownAction() {
    return Answer::refuse(ErrorNumber::Unknown, "unknown command");
}

bool isStatusQuery(const Command& command) {
    return command.kind == CommandKind::Get &&
           (command.text == "status active" || command.text == "status step_active");
}

} // namespace

Answer Controller::act(const text::Words& words) {
    if (words.size() > 1 && words[0] == "sim" && words[1] == "replay") {
        return actOnReplay(m_replay.get(), {words.begin() + 2, words.end()}, m_state.now,
                           isSending());
    }
    if (words[0] == "sim") {
        return m_simCommands.act({words.begin() + 1, words.end()});
    }
    if (words[0] == "tracking") {
        return actOnTracking(words);
    }
    if (words[0] == "cal") {
        return actOnCalibration(words);
    }
    if (text::join(words) == acceptCommand) {
        const std::optional<Answer> refusal = refuseChange();
        return refusal ? *refusal : m_calibration.acceptResult();
    }
    return unknownAction();
}

Answer Controller::actOnTracking(const text::Words& words) {
    const std::string verb = text::join(words, 1);
    if (verb != "start" && verb != "stop") {
        return unknownAction();
    }
    if (m_calibration.isRunning()) {
        return Answer::wrongState("a calibration is running");
    }
    if (verb == "start" && !m_state.trackingAvailable) {
        return Answer::wrongState("tracking is not available");
    }
    m_calibration.leaveFinalStage();
    if (verb == "start" && !m_state.tracking) {
        m_frames->start(m_state.now);
    }
    m_state.tracking = verb == "start";
    return Answer::ok();
}

Answer Controller::actOnCalibration(const text::Words& words) {
    if (words.size() == 3 && words[2] == "start") {
        return startCalibration(words[1]);
    }
    if (words.size() == 4 && words[2] == "start_step") {
        return m_calibration.startStep(words[1], words[3], m_state.now);
    }
    if (words.size() == 3 && words[2] == "stop") {
        return m_calibration.stop(words[1], m_state.now);
    }
    return unknownAction();
}

Answer Controller::startCalibration(const std::string& type) {
    const std::optional<Answer> refusal = refuseChange();
    if (refusal) {
        return *refusal;
    }
    if (m_state.tracking) {
        return Answer::wrongState("tracking is running");
    }
    if (!m_state.sync) {
        return Answer::wrongState("waiting for the sync signal");
    }
    if (m_replay || (type == "measurementtool" && !isCalibrationAvailable())) {
        return Answer::wrongState("calibration is not available");
    }
    m_lastFinalStatus = m_calibration.hasFailed() ? "err" : "none";
    m_statusQueries = 0;
    return m_calibration.start(type, m_state.now);
}

bool Controller::dropsAt(const Command& command) {
    const auto drops = [&](bool here, Misbehaviour id) {
        return here && m_misbehaviours.takeOnce(id);
    };
    const bool isAction = command.kind == CommandKind::Action;
    const std::string& text = command.text;
    const Stage stage = m_calibration.stage();
    const bool isStart = isAction && text.rfind("cal ", 0) == 0 && stage != Stage::Idle &&
                         text::split(text).back() == "start";
    if (drops(isStart, Misbehaviour::CalDropStart) ||
        drops(isAction && text == acceptCommand, Misbehaviour::CalDropAccept) ||
        drops(text == "measurementtool calibration_body_id", Misbehaviour::CalDropResult)) {
        return true;
    }
    const bool status = isStatusQuery(command);
    return drops(status && stage == Stage::Step1, Misbehaviour::CalDropStep1) ||
           drops(status && stage == Stage::Pause, Misbehaviour::CalDropPause) ||
           drops(status && stage == Stage::Step2, Misbehaviour::CalDropStep2) ||
           drops(status && stage == Stage::Calculating, Misbehaviour::CalDropCalculating);
}

void Controller::spoilCalibration(const Command& command, ReplyPlan& plan) {
    plan.dropConnection = plan.dropConnection || dropsAt(command);
    if (!isStatusQuery(command) || m_calibration.stage() == Stage::Idle) {
        return;
    }
    const auto isNow = [&](Misbehaviour id) {
        return m_misbehaviours.has(id) && m_misbehaviours.number(id) == m_statusQueries;
    };
    if (isNow(Misbehaviour::CalLostStatus)) {
        plan.copies = 0;
    } else if (isNow(Misbehaviour::CalDuplicateStatus) && plan.copies > 0) {
        plan.copies = 2;
    }
}

} // namespace kestrel_simulator
