#include "simulator/controller/simcommands.h"

#include "simulator/words/datalines.h"

namespace kestrel_simulator {

namespace {

bool readWithin(const text::Words& value, double minimum, double maximum, double& number) {
    double read = 0.0;
    if (value.size() != 1 || !text::readDouble(value[0], read) || read < minimum ||
        read > maximum) {
        return false;
    }
    number = read;
    return true;
}

bool readTip(const text::Words& value, Eigen::Vector3d& tip) {
    Eigen::Vector3d read;
    for (std::size_t i = 0; i < 3; ++i) {
        if (value.size() != 3 || !readWithin({value[i]}, -Probe::maxLength, Probe::maxLength,
                                             read(static_cast<Eigen::Index>(i)))) {
            return false;
        }
    }
    tip = read;
    return true;
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

Answer SimCommands::badValue(std::string reason) {
    return Answer::refuse(ErrorNumber::BadValue, std::move(reason));
}

Answer SimCommands::noSuchBody() {
    return Answer::refuse(ErrorNumber::BadBody, "no such body");
}

void SimCommands::addParameters(ParameterTable& table) {
    addFlags(table);
    addTruths(table);
    addWords(table);
    addProbes(table);
    addCalibrationSettings(table);
    addCalibrationStates(table);
    addNumber(table, "sim rate", m_state.rate, 0.1, 1000.0);
    addNumber(table, "sim noise", m_state.noise.position, 0.0, 10.0);
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
                                      return Answer::neitherYesNorNo();
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
                   return readWithin(value, minimum, maximum, number)
                              ? Answer::ok()
                              : Answer::outOfRange(minimum, maximum);
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
    table.add(
        "sim calibration",
        {0, {}, [this](const text::Words&) { return m_calibration.describeResult(); }, nullptr});
}

// What can be said to it, for whoever offers that to a user.
void SimCommands::addWords(ParameterTable& table) {
    const auto addList = [&](const char* name, std::string words) {
        table.add(name,
                  {0,
                   {},
                   [words = std::move(words)](const text::Words&) { return Answer::value(words); },
                   nullptr});
    };
    addList("sim motions", motionNames());
    addList("sim pivots", pivotNames());
    addList("sim misbehaviours", misbehaviourNames());
    addList("sim buttons", std::to_string(datalines::buttonCount));
}

void SimCommands::addOfTool(ParameterTable& table, const char* name, GetOfTool get, SetOfTool set) {
    table.add(name, {1,
                     {},
                     [this, get = std::move(get)](const text::Words& arguments) {
                         const int tool = m_configuration.toolIndex(arguments[0]);
                         return tool < 0 ? noSuchBody() : Answer::value(get(tool));
                     },
                     [this, set = std::move(set)](const text::Words& arguments,
                                                  const text::Words& value) {
                         const int tool = m_configuration.toolIndex(arguments[0]);
                         return tool < 0 ? noSuchBody() : set(tool, value);
                     }});
}

void SimCommands::addLength(ParameterTable& table, const char* name, double minimum, double maximum,
                            std::function<double(const Probe&)> get,
                            std::function<void(Probe&, double)> set) {
    addOfTool(
        table, name,
        [this, get = std::move(get)](int tool) { return text::fixed(get(m_scene.probe(tool)), 6); },
        [this, minimum, maximum, set = std::move(set)](int tool, const text::Words& value) {
            double length = 0.0;
            if (!readWithin(value, minimum, maximum, length)) {
                return Answer::outOfRange(minimum, maximum);
            }
            set(m_scene.probe(tool), length);
            return Answer::ok();
        });
}

void SimCommands::addProbes(ParameterTable& table) {
    const auto badTip = [] {
        const std::string limit = text::shortest(Probe::maxLength);
        return badValue("expected x y z from -" + limit + " to " + limit);
    };
    addOfTool(
        table, "sim tip", [this](int tool) { return vectorText(m_scene.probe(tool).tip); },
        [this, badTip](int tool, const text::Words& value) {
            return readTip(value, m_scene.probe(tool).tip) ? Answer::ok() : badTip();
        });
    addOfTool(
        table, "sim tip_used",
        [this](int tool) { return vectorText(m_configuration.tool(tool).usedTip()); },
        [this, badTip](int index, const text::Words& value) {
            Tool& tool = m_configuration.tool(index);
            if (!readTip(value, tool.tip)) {
                return badTip();
            }
            tool.tipCalibrated = true;
            return Answer::ok();
        });
    addLength(
        table, "sim lever", Probe::minLever, Probe::maxLength,
        [](const Probe& probe) { return probe.lever(); },
        [](Probe& probe, double length) { probe.setLever(length); });
    addLength(
        table, "sim slip", 0.0, Probe::maxSlip, [](const Probe& probe) { return probe.slip; },
        [](Probe& probe, double length) { probe.slip = length; });
}

void SimCommands::addCalibrationSettings(ParameterTable& table) {
    Calibration::Settings& settings = m_calibration.settings();
    addNumber(table, "sim cal_duration", settings.stepSeconds, 0.05, 3600.0);
    addNumber(table, "sim cal_initial_pause", settings.initialPause, 0.0, 3600.0);
    table.add("sim cal_pause", {0,
                                {},
                                [&settings](const text::Words&) {
                                    return Answer::value(std::to_string(settings.pauseSeconds));
                                },
                                [&settings](const text::Words&, const text::Words& value) {
                                    int seconds = 0;
                                    if (!text::readInt(text::join(value), seconds) || seconds < 0 ||
                                        seconds > Calibration::maxPauseSeconds) {
                                        return Answer::outOfRange(0, Calibration::maxPauseSeconds);
                                    }
                                    settings.pauseSeconds = seconds;
                                    return Answer::ok();
                                }});
    table.add("sim pivot", {0,
                            {},
                            [&settings](const text::Words&) {
                                return Answer::value(std::string(pivotName(settings.pivot)));
                            },
                            [this](const text::Words&, const text::Words& value) {
                                return setPivot(text::join(value));
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
                       return body.index < 0 ? noSuchBody() : Answer::neitherYesNorNo();
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
                       return index < 0 ? noSuchBody() : Answer::neitherYesNorNo();
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

} // namespace kestrel_simulator
