#pragma once

#include "simulator/controller/controller.h"

#include <QHostAddress>
#include <QString>
#include <QStringList>

#include <utility>
#include <vector>

namespace kestrel_simulator {

/// Exit codes of kestrel-simulator.
enum ExitCode {
    ExitOk = 0,           ///< stopped by a signal, or after --help and --version
    ExitBadOption = 2,    ///< unknown option or bad value
    ExitCannotListen = 3, ///< address or port not to be had
    ExitBadRecording = 4  ///< the file of --replay cannot be read or is malformed
};

struct SimulatorOptions {
    ControllerSetup controller;
    QHostAddress address = QHostAddress(QHostAddress::LocalHost);
    quint16 port = 47300; ///< 0: any free one
    std::vector<std::pair<Misbehaviour, int>> misbehaviours;
    QString replayFile; ///< empty: simulated frames
    Replay::AtEnd replayEnd = Replay::AtEnd::Loop;
};

struct ParsedOptions {
    enum class Action { Run, ShowText, Refuse };
    Action action = Action::Run;
    SimulatorOptions options;
    QString text; ///< what to show, or what is wrong
};

/// Reads a command line, the program's name first.
ParsedOptions parseOptions(const QStringList& arguments);

} // namespace kestrel_simulator
