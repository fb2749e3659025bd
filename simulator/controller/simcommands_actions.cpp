#include "simulator/controller/simcommands.h"

namespace kestrel_simulator {

namespace {

constexpr std::size_t maxRefusals = 100;

// Besides the pivots.
constexpr const char* holdName = "hold";
constexpr const char* wanderName = "wander";

} // namespace

std::string SimCommands::motionNames() {
    return pivotNames() + ", " + holdName + ", " + wanderName;
}

Answer SimCommands::act(const text::Words& words) {
    const std::string verb = words.empty() ? "" : words[0];
    if (verb == "misbehave") {
        return misbehave(words);
    }
    if (verb == "behave") {
        return behave(words);
    }
    if (verb == "device") {
        return device(words);
    }
    if (verb == "lock") {
        const auto locked = text::readYesNo(text::join(words, 1));
        m_state.locked = locked.value_or(m_state.locked);
        return locked ? Answer::ok() : badValue("expected yes or no");
    }
    if (verb == "refuse") {
        return refuse(words);
    }
    if (verb == "pivot") {
        return setPivot(text::join(words, 1));
    }
    return bodyAction(words);
}

Answer SimCommands::refuse(const text::Words& words) {
    if (words.size() == 1) {
        m_state.refused.clear();
        return Answer::ok();
    }
    if (m_state.refused.size() >= maxRefusals) {
        return Answer::refuse(ErrorNumber::TooMany, "too many refused commands");
    }
    m_state.refused.push_back(text::join(words, 1));
    return Answer::ok();
}

Answer SimCommands::setPivot(const std::string& name) {
    const std::optional<Pivot> pivot = findPivot(name);
    Calibration::Settings& settings = m_calibration.settings();
    settings.pivot = pivot.value_or(settings.pivot);
    return pivot ? Answer::ok() : badValue("expected one of " + pivotNames());
}

Answer SimCommands::misbehave(const text::Words& words) {
    const MisbehaviourInfo* const info = words.size() > 1 ? findMisbehaviour(words[1]) : nullptr;
    if (!info) {
        return badValue("no such misbehaviour");
    }
    int number = info->defaultNumber;
    if (words.size() > 3 ||
        (words.size() == 3 && (!text::readInt(words[2], number) || !info->allows(number)))) {
        return Answer::outOfRange(0, info->maximum);
    }
    m_misbehaviours.switchOn(info->id, number);
    return Answer::ok();
}

Answer SimCommands::behave(const text::Words& words) {
    if (words.size() == 1) {
        m_misbehaviours.clear();
        return Answer::ok();
    }
    const MisbehaviourInfo* const info = findMisbehaviour(words[1]);
    if (!info) {
        return badValue("no such misbehaviour");
    }
    m_misbehaviours.switchOff(info->id);
    return Answer::ok();
}

Answer SimCommands::device(const text::Words& words) {
    if (words.size() >= 5) {
        const RadioDevice device = {words[2], words[3], words[4]};
        if (words[1] == "add") {
            return m_radio.add(device, text::join(words, 5));
        }
        if (words[1] == "remove" && words.size() == 5) {
            return m_radio.remove(device);
        }
    }
    return Answer::refuse(ErrorNumber::Malformed, "expected add or remove, vendor, model, serial");
}

Answer SimCommands::bodyAction(const text::Words& words) {
    if (words.size() < 3) {
        return Answer::refuse(ErrorNumber::Unknown, "unknown command of the simulator");
    }
    const std::string& verb = words[0];
    const Body body = findBody(words[1], words[2]);
    if (verb != "place" && verb != "move" && verb != "release" && verb != "occlude" &&
        verb != "press") {
        return Answer::refuse(ErrorNumber::Unknown, "unknown command of the simulator");
    }
    if (body.index < 0) {
        return noSuchBody();
    }
    if (verb == "place") {
        return place(body, words);
    }
    if (verb == "move") {
        return move(body, words);
    }
    if (verb == "occlude") {
        return occlude(body, words);
    }
    if (verb == "press") {
        return press(body, words);
    }
    if (body.isTool) {
        m_scene.releaseTool(body.index);
    } else {
        m_scene.releaseReference(body.index);
    }
    return Answer::ok();
}

Answer SimCommands::place(const Body& body, const text::Words& words) {
    Eigen::Matrix<double, 6, 1> numbers;
    if (words.size() != 9) {
        return Answer::refuse(ErrorNumber::Malformed, "expected x y z rx ry rz");
    }
    for (int i = 0; i < 6; ++i) {
        if (!text::readDouble(words[static_cast<std::size_t>(i) + 3], numbers(i))) {
            return badValue("a coordinate is no number");
        }
    }
    const Pose pose = {numbers.head<3>(), rotationFromAngles(numbers.tail<3>())};
    if (body.isTool) {
        m_scene.placeTool(body.index, pose);
    } else {
        m_scene.placeReference(body.index, pose);
    }
    return Answer::ok();
}

Answer SimCommands::move(const Body& body, const text::Words& words) {
    const std::string motion = words.size() > 3 ? words[3] : "";
    const std::optional<Pivot> pivot = findPivot(motion);
    if (!body.isTool || (!pivot && motion != holdName && motion != wanderName)) {
        return badValue("expected a tool and one of " + motionNames());
    }
    double period = Swing::usualPeriod;
    const bool hasPeriod = words.size() == 5 && pivot && text::readDouble(words[4], period);
    if (words.size() != 4 && !hasPeriod) {
        return Answer::refuse(ErrorNumber::Malformed, "expected at most seconds behind a pivot");
    }
    if (period < Swing::minPeriod || period > Swing::maxPeriod) {
        return Answer::outOfRange(Swing::minPeriod, Swing::maxPeriod);
    }
    if (pivot) {
        m_scene.swingTool(body.index, *pivot, m_state.now, period);
    } else if (motion == holdName) {
        m_scene.holdTool(body.index, m_state.now);
    } else {
        m_scene.letToolWander(body.index);
    }
    return Answer::ok();
}

Answer SimCommands::occlude(const Body& body, const text::Words& words) {
    const auto occluded = text::readYesNo(text::join(words, 3));
    if (!occluded) {
        return badValue("expected yes or no");
    }
    if (body.isTool) {
        m_scene.occludeTool(body.index, *occluded);
    } else {
        m_scene.occludeReference(body.index, *occluded);
    }
    return Answer::ok();
}

Answer SimCommands::press(const Body& body, const text::Words& words) {
    int mask = 0;
    if (!body.isTool || !text::readInt(text::join(words, 3), mask) || mask < 0 || mask > 15) {
        return badValue("expected a tool and a mask from 0 to 15");
    }
    m_scene.press(body.index, static_cast<unsigned>(mask));
    return Answer::ok();
}

} // namespace kestrel_simulator
