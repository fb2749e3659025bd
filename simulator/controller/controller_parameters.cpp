#include "simulator/controller/controller.h"
#include "simulator/controller/replaycommands.h"

#include <algorithm>

namespace kestrel_simulator {

namespace {

Parameter readOnly(Version since, std::function<std::string()> get) {
    return {0, since, [get = std::move(get)](const text::Words&) { return Answer::value(get()); },
            nullptr};
}

} // namespace

void Controller::addVersions(const ControllerSetup& setup) {
    const auto add = [&](const char* name, const std::string& value) {
        m_parameters.add(name, readOnly({}, [value] { return value; }));
    };
    add("version system", setup.system.toString());
    add("version protocol", setup.protocol.toString());
    add("version system_ct", setup.systemCt.toString());
    add("version model", setup.model);
}

void Controller::addParameters() {
    const auto guard = [this] { return refuseChange(); };
    m_configuration.addParameters(m_parameters, guard);
    m_radio.addParameters(m_parameters, guard);
    m_calibration.addParameters(m_parameters);
    m_simCommands.addParameters(m_parameters);
    addOutput();
    addStatus();
    addAvailability();
}

void Controller::addOutput() {
    m_parameters.add(
        "data_port",
        {0,
         {},
         [this](const text::Words&) { return Answer::value(std::to_string(m_session->dataPort)); },
         [this](const text::Words&, const text::Words& value) { return setDataPort(value); }});
    const auto isChannel = [](const text::Words& arguments) {
        return arguments[0] == "chmon" && std::find(outputChannels.begin(), outputChannels.end(),
                                                    arguments[1]) != outputChannels.end();
    };
    const auto noSuchChannel = [] {
        return Answer::refuse(ErrorNumber::Unknown, "no such output channel");
    };
    m_parameters.add(
        "output active",
        {2,
         {},
         [this, isChannel, noSuchChannel](const text::Words& arguments) {
             return isChannel(arguments)
                        ? Answer::value(text::yesNo(m_channels.count(arguments[1]) > 0))
                        : noSuchChannel();
         },
         [this, isChannel, noSuchChannel](const text::Words& arguments, const text::Words& value) {
             const auto active = text::readYesNo(text::join(value));
             if (!isChannel(arguments)) {
                 return noSuchChannel();
             }
             if (!active) {
                 return Answer::neitherYesNorNo();
             }
             if (*active) {
                 m_channels.insert(arguments[1]);
             } else {
                 m_channels.erase(arguments[1]);
             }
             return Answer::ok();
         }});
}

Answer Controller::setDataPort(const text::Words& value) {
    int port = 0;
    if (value.size() != 1 || !text::readInt(value[0], port) || port < 0 || port > 65535) {
        return Answer::refuse(ErrorNumber::BadValue, "the port must be from 0 to 65535");
    }
    m_session->dataPort = port;
    return Answer::ok();
}

void Controller::addStatus() {
    m_parameters.add("status active", {0,
                                       {},
                                       [this](const text::Words&) {
                                           return answerStatusQuery(&Controller::statusActive);
                                       },
                                       nullptr});
    m_parameters.add("status step_active", {0,
                                            {},
                                            [this](const text::Words&) {
                                                return answerStatusQuery(&Controller::stepActive);
                                            },
                                            nullptr});
    m_parameters.add("status progress",
                     readOnly({}, [this] { return text::fixed(m_calibration.progress(), 3); }));
    m_parameters.add("status step_progress",
                     readOnly({}, [this] { return m_calibration.stepProgress(); }));
    m_parameters.add(
        "sim replay",
        {0, {}, [this](const text::Words&) { return describeReplay(m_replay.get()); }, nullptr});
    m_parameters.add("status err",
                     readOnly({}, [this] { return "\"" + m_calibration.failure() + "\""; }));
}

void Controller::addAvailability() {
    m_parameters.add("measurementtool available",
                     readOnly({1, 3, 0}, [this] { return text::yesNo(m_state.toolsAvailable); }));
    m_parameters.add("tracking available", readOnly({0, 17, 0}, [this] {
                         return text::yesNo(m_state.trackingAvailable);
                     }));
    m_parameters.add("config is_changeable",
                     readOnly({1, 9, 0}, [this] { return text::yesNo(!m_state.locked); }));
    m_parameters.add("cal available",
                     {1,
                      {},
                      [this](const text::Words& arguments) {
                          if (arguments[0] == "measurementtool") {
                              return Answer::value(text::yesNo(isCalibrationAvailable()));
                          }
                          if (arguments[0] == "volume") {
                              return Answer::value(text::yesNo(m_state.trackingAvailable));
                          }
                          return Answer::refuse(ErrorNumber::BadBody, "no such calibration type");
                      },
                      nullptr});
}

bool Controller::isCalibrationAvailable() const {
    return m_calibration.toolToCalibrate() && m_state.calibrationAvailable &&
           m_state.toolsAvailable && m_state.trackingAvailable && !m_replay;
}

std::string Controller::statusActive() const {
    if (m_calibration.hasFailed()) {
        return "err";
    }
    if (m_calibration.isRunning()) {
        return "cal";
    }
    if (m_state.tracking) {
        return m_state.sync ? "tracking" : "wait";
    }
    return "none";
}

Answer Controller::answerStatusQuery(std::string (Controller::*status)() const) {
    const bool ofCalibration = m_calibration.stage() != Calibration::Stage::Idle;
    if (ofCalibration) {
        ++m_statusQueries;
    }
    const bool stale = ofCalibration && m_misbehaviours.has(Misbehaviour::CalStaleStatus) &&
                       m_statusQueries <= m_misbehaviours.number(Misbehaviour::CalStaleStatus);
    return Answer::value(stale ? m_lastFinalStatus : (this->*status)());
}

} // namespace kestrel_simulator
