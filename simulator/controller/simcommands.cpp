#include "simulator/controller/simcommands.h"

namespace kestrel_simulator {

namespace {

constexpr std::size_t maxRefusals = 100;

Answer badValue(const char* reason) {
    return Answer::refuse(ErrorNumber::BadValue, reason);
}

Answer noSuchBody() {
    return Answer::refuse(ErrorNumber::BadBody, "no such body");
}

std::string vectorText(const Eigen::Vector3d& vector) {
    return text::fixed(vector.x(), 6) + " " + text::fixed(vector.y(), 6) + " " +
           text::fixed(vector.z(), 6);
}

} // namespace

SimCommands::SimCommands(ControllerState& state, Configuration& configuration, Scene& scene,
                         RadioNetwork& radio, Calibration& calibration,
                         Misbehaviours& misbehaviours)
    : m_state(state)
    , m_configuration(configuration)
    , m_scene(scene)
    , m_radio(radio)
    , m_calibration(calibration)
    , m_misbehaviours(misbehaviours) {}

void SimCommands::addParameters(ParameterTable& table) {
    addFlags(table);
    addTruths(table);
    addCalibrationSettings(table);
    addCalibrationStates(table);
    addNumber(table, "sim rate", m_state.rate, 0.1, 1000.0);
    addNumber(table, "sim noise", m_calibration.settings().noise.position, 0.0, 10.0);
}

void SimCommands::addFlag(ParameterTable& table, const std::string& name, std::function<bool()> get,
                          std::function<void(bool)> set) {
    table.add("sim " + name, {0,
                              {},
                              [get = std::move(get)](const text::Words&) {
                                  return Answer::value(text::yesNo(get()));
                              },
                              [set = std::move(set)](const text::Words&, const text::Words& value) {
                                  const auto flag = text::readYesNo(text::join(value));
                                  if (!flag) {
                                      return badValue("the value is neither yes nor no");
                                  }
                                  set(*flag);
                                  return Answer::ok();
                              }});
}

void SimCommands::addNumber(ParameterTable& table, const std::string& name, double& number,
                            double minimum, double maximum) {
    table.add(name,
              {0,
               {},
               [&number](const text::Words&) { return Answer::value(text::shortest(number)); },
               [&number, minimum, maximum](const text::Words&, const text::Words& value) {
                   double read = 0.0;
                   if (!text::readDouble(text::join(value), read) || read < minimum ||
                       read > maximum) {
                       return badValue("the value is no number or out of range");
                   }
                   number = read;
                   return Answer::ok();
               }});
}

void SimCommands::addFlags(ParameterTable& table) {
    const auto addState = [&](const char* name, bool& flag) {
        addFlag(
            table, name, [&flag] { return flag; }, [&flag](bool on) { flag = on; });
    };
    addState("sync", m_state.sync);
    addState("locked", m_state.locked);
    addState("measurementtool_available", m_state.toolsAvailable);
    addState("tracking_available", m_state.trackingAvailable);
    addState("cal_available", m_state.calibrationAvailable);
    addFlag(
        table, "radio_available", [this] { return m_radio.isAvailable(); },
        [this](bool on) { m_radio.setAvailable(on); });
    addFlag(
        table, "wandering_device", [this] { return m_radio.isWandering(); },
        [this](bool on) { m_radio.setWandering(on); });
    addFlag(
        table, "occlusion", [this] { return m_scene.hasOcclusions(); },
        [this](bool on) { m_scene.setOcclusions(on); });
}

void SimCommands::addTruths(ParameterTable& table) {
    table.add("sim commands_received",
              {0,
               {},
               [this](const text::Words&) {
                   return Answer::value(std::to_string(m_state.commandsReceived));
               },
               nullptr});
    table.add("sim misbehaviour",
              {0,
               {},
               [this](const text::Words&) { return Answer::value(m_misbehaviours.toString()); },
               nullptr});
    table.add("sim pose", {2,
                           {},
                           [this](const text::Words& arguments) {
                               return pose(findBody(arguments[0], arguments[1]));
                           },
                           nullptr});
    const auto addTip = [&](const char* name, Eigen::Vector3d Tool::*tip) {
        table.add(name, {1,
                         {},
                         [this, tip](const text::Words& arguments) {
                             const int index = m_configuration.toolIndex(arguments[0]);
                             return index < 0 ? noSuchBody()
                                              : Answer::value(
                                                    vectorText(m_configuration.tool(index).*tip));
                         },
                         nullptr});
    };
    addTip("sim tip", &Tool::trueTip);
    addTip("sim tip_used", &Tool::tip);
    table.add(
        "sim calibration",
        {0, {}, [this](const text::Words&) { return m_calibration.describeResult(); }, nullptr});
}

void SimCommands::addCalibrationSettings(ParameterTable& table) {
    Calibration::Settings& settings = m_calibration.settings();
    addNumber(table, "sim cal_duration", settings.stepSeconds, 0.05, 3600.0);
    addNumber(table, "sim cal_initial_pause", settings.initialPause, 0.0, 3600.0);
    table.add("sim cal_pause",
              {0,
               {},
               [&settings](const text::Words&) {
                   return Answer::value(std::to_string(settings.pauseSeconds));
               },
               [&settings](const text::Words&, const text::Words& value) {
                   int seconds = 0;
                   if (!text::readInt(text::join(value), seconds) || seconds < 0 ||
                       seconds > Calibration::maxPauseSeconds) {
                       return badValue("the value is no number of seconds or out of range");
                   }
                   settings.pauseSeconds = seconds;
                   return Answer::ok();
               }});
    table.add("sim pivot", {0,
                            {},
                            [&settings](const text::Words&) {
                                return Answer::value(std::string(pivotName(settings.pivot)));
                            },
                            [&settings](const text::Words&, const text::Words& value) {
                                const auto pivot = findPivot(text::join(value));
                                settings.pivot = pivot.value_or(settings.pivot);
                                return pivot ? Answer::ok() : badValue("no such motion");
                            }});
    table.add("sim calibration_tool",
              {0,
               {},
               [&settings](const text::Words&) {
                   return Answer::value(settings.tool ? text::numbered('b', settings.tool)
                                                      : "auto");
               },
               [this, &settings](const text::Words&, const text::Words& value) {
                   const std::string name = text::join(value);
                   const int index = m_configuration.toolIndex(name);
                   if (index < 0 && name != "auto") {
                       return noSuchBody();
                   }
                   settings.tool = index + 1;
                   return Answer::ok();
               }});
}

void SimCommands::addCalibrationStates(ParameterTable& table) {
    table.add("sim body_calibrated",
              {2, {}, nullptr, [this](const text::Words& arguments, const text::Words& value) {
                   const Body body = findBody(arguments[0], arguments[1]);
                   const auto calibrated = text::readYesNo(text::join(value));
                   if (body.index < 0 || !calibrated) {
                       return body.index < 0 ? noSuchBody()
                                             : badValue("the value is neither yes nor no");
                   }
                   if (body.isTool) {
                       m_configuration.tool(body.index).bodyCalibrated = *calibrated;
                   } else {
                       m_configuration.setReferenceCalibrated(body.index, *calibrated);
                   }
                   return Answer::ok();
               }});
    table.add("sim tip_calibrated",
              {1, {}, nullptr, [this](const text::Words& arguments, const text::Words& value) {
                   const int index = m_configuration.toolIndex(arguments[0]);
                   const auto calibrated = text::readYesNo(text::join(value));
                   if (index < 0 || !calibrated) {
                       return index < 0 ? noSuchBody()
                                        : badValue("the value is neither yes nor no");
                   }
                   m_configuration.tool(index).tipCalibrated = *calibrated;
                   return Answer::ok();
               }});
}

SimCommands::Body SimCommands::findBody(const std::string& kind, const std::string& name) const {
    if (kind == "tool") {
        return {true, m_configuration.toolIndex(name)};
    }
    return {false, kind == "reference" ? m_configuration.referenceIndex(name) : -1};
}

Answer SimCommands::pose(const Body& body) const {
    if (body.index < 0) {
        return noSuchBody();
    }
    const Pose pose = body.isTool ? m_scene.reportedTool(body.index, m_state.now)
                                  : m_scene.reference(body.index, m_state.now);
    return Answer::value(vectorText(pose.position) + " " +
                         vectorText(anglesFromRotation(pose.rotation)));
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

Answer SimCommands::misbehave(const text::Words& words) {
    const MisbehaviourInfo* const info = words.size() > 1 ? findMisbehaviour(words[1]) : nullptr;
    if (!info) {
        return badValue("no such misbehaviour");
    }
    int number = info->defaultNumber;
    if (words.size() > 3 ||
        (words.size() == 3 && (!text::readInt(words[2], number) || !info->allows(number)))) {
        return badValue("the number is none or out of range");
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
    if (verb != "place" && verb != "release" && verb != "occlude" && verb != "press") {
        return Answer::refuse(ErrorNumber::Unknown, "unknown command of the simulator");
    }
    if (body.index < 0) {
        return noSuchBody();
    }
    if (verb == "place") {
        return place(body, words);
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
