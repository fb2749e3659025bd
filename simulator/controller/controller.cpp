#include "simulator/controller/controller.h"

#include "libs/kestrel_wire/reply.h"

#include <algorithm>
#include <limits>

namespace kestrel_simulator {

namespace {

using kestrel_wire::Command;
using kestrel_wire::CommandKind;

bool isOwn(const Command& command) {
    return command.text.substr(0, command.text.find(' ')) == "sim";
}

std::string replyTo(const Command& command, const Answer& answer) {
    if (answer.error) {
        return kestrel_wire::errorReply(*answer.error, answer.text);
    }
    if (command.kind == CommandKind::Get) {
        return kestrel_wire::valueReply(command.text, answer.text);
    }
    return std::string(kestrel_wire::okReply);
}

// recordings may say -1 for an unknown patch; controllers leave it out
std::string sayable(const std::string& recorded) {
    Version version;
    return Version::parse(recorded, version) ? version.toString() : recorded;
}

} // namespace

Controller::Controller(const ControllerSetup& setup)
    : m_configuration(setup.limits, setup.tools, setup.references)
    , m_scene(m_configuration, setup.seed, setup.standardBodies)
    , m_cameras(m_scene, m_state.noise, setup.seed)
    , m_radio(m_configuration, setup.devices)
    , m_calibration(m_configuration, m_scene, m_cameras, m_state, m_misbehaviours)
    , m_simulatedFrames(m_configuration, m_scene, m_cameras, m_channels, m_state.rate)
    , m_simCommands(m_state, m_configuration, m_scene, m_radio, m_calibration, m_misbehaviours)
    , m_replyFaults(m_misbehaviours)
    , m_dataFaults(m_misbehaviours, setup.seed)
    , m_parameters(setup.protocol)
    , m_frames(&m_simulatedFrames) {
    m_state.rate = setup.rate;
    m_state.noise = setup.noise;
    m_scene.setOcclusions(setup.occlusions);
    m_calibration.settings() = setup.calibration;
    m_configuration.setUsesOldFormat(!setup.protocol.atLeast(1, 13));
    shapeProbes(setup.probes);
    addVersions(setup);
    addParameters();
}

void Controller::shapeProbes(const std::vector<ProbeSetup>& probes) {
    for (int i = 0; i < m_configuration.toolLimit(); ++i) {
        Probe& probe = m_scene.probe(i);
        for (const ProbeSetup& setup : probes) {
            if (setup.tool != 0 && setup.tool != i + 1) {
                continue;
            }
            probe.slip = setup.slip.value_or(probe.slip);
            probe.tip = setup.tip.value_or(probe.tip);
            if (setup.lever) {
                probe.setLever(*setup.lever);
            }
        }
        m_configuration.tool(i).tip = m_scene.believedTip(i);
    }
}

void Controller::setReplay(std::unique_ptr<Replay> replay) {
    const kestrel_wire::RecordingHeader& header = replay->header();
    m_recorded.clear();
    for (const auto& [name, value] : header.parameters) {
        m_recorded[text::join(text::split(name))] = value;
    }
    m_recorded["version system"] = sayable(header.system);
    m_recorded["version protocol"] = sayable(header.protocol);
    m_recorded["version system_ct"] = sayable(header.systemCt);
    m_recorded["version model"] = header.model;
    m_parameters.setProtocol(replay->protocol());
    m_replay = std::move(replay);
    m_frames = m_replay.get();
}

void Controller::advance(double now) {
    m_state.now = std::max(m_state.now, now);
    m_calibration.advance(m_state.now);
    m_radio.advance(m_state.now);
}

bool Controller::isSending() const {
    return m_state.tracking && m_state.sync;
}

double Controller::secondsToNextFrame(double now) const {
    return isSending() ? std::max(0.0, m_frames->nextDue() - now)
                       : std::numeric_limits<double>::infinity();
}

bool Controller::takeFrame(double now, std::vector<std::string>& lines) {
    if (secondsToNextFrame(now) > 0.0) {
        return false;
    }
    lines = m_frames->take(now);
    if (m_replay) {
        const auto isInactive = [&](const std::string& line) {
            const std::string_view channel = kestrel_wire::channelOf(line);
            return std::find(outputChannels.begin(), outputChannels.end(), channel) !=
                       outputChannels.end() &&
                   m_channels.count(channel) == 0;
        };
        lines.erase(std::remove_if(lines.begin(), lines.end(), isInactive), lines.end());
    }
    if (!m_dataFaults.apply(lines)) {
        lines.clear();
    }
    return true;
}

ReplyPlan Controller::execute(std::string_view line, Session& session, double now) {
    advance(now);
    Command command;
    std::string reason;
    if (!kestrel_wire::parseCommand(line, command, reason)) {
        ++m_state.commandsReceived;
        return m_replyFaults.plan(line, kestrel_wire::errorReply(ErrorNumber::Malformed, reason));
    }
    m_session = &session;
    const Answer result = answer(command);
    m_session = nullptr;
    std::string reply = replyTo(command, result);
    if (isOwn(command)) {
        ReplyPlan plan;
        plan.reply = std::move(reply);
        return plan;
    }
    ++m_state.commandsReceived;
    ReplyPlan plan = m_replyFaults.plan(line, std::move(reply));
    spoilCalibration(command, plan);
    return plan;
}

Answer Controller::answer(const Command& command) {
    for (const std::string& start : m_state.refused) {
        if (!isOwn(command) && command.text.rfind(start, 0) == 0) {
            return Answer::refuse(ErrorNumber::Internal, "refused on request");
        }
    }
    const text::Words words = text::split(command.text);
    switch (command.kind) {
    case CommandKind::Get:
        if (const auto recorded = m_recorded.find(text::join(words));
            recorded != m_recorded.end()) {
            return Answer::value(recorded->second);
        }
        return m_parameters.get(words);
    case CommandKind::Set:
        return isRecorded(words) ? Answer::wrongState("a recording is being replayed")
                                 : m_parameters.set(words);
    case CommandKind::Action:
        break;
    }
    return act(words);
}

bool Controller::isRecorded(const text::Words& words) const {
    constexpr std::size_t longestName = 12; // words
    text::Words name = words;
    name.resize(std::min(name.size(), longestName));
    while (!m_recorded.empty() && !name.empty()) {
        name.pop_back();
        if (m_recorded.count(text::join(name)) > 0) {
            return true;
        }
    }
    return false;
}

std::optional<Answer> Controller::refuseChange() const {
    if (m_state.locked) {
        return Answer::refuse(ErrorNumber::Locked, "the configuration is locked");
    }
    if (m_calibration.isRunning()) {
        return Answer::wrongState("a calibration is running");
    }
    return std::nullopt;
}

} // namespace kestrel_simulator
