#pragma once

#include "workbench/controller/command/controlleraddress.h"
#include "workbench/outlets/sending/outleturl.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

namespace workbench {

/// Exit codes of the program.
enum ExitCode : int {
    ExitSuccess = 0,
    ExitBadOptions = 2,
    ExitNoSimulator = 3,  ///< --simulate: it could not be started or has ended
    ExitNoScreenshot = 4, ///< --screenshot: the picture was not made
    ExitNoRecording = 5,  ///< --record: the recording was not made
    ExitNoOutlet = 6      ///< --send: there is no such outlet here
};

/// What the command line asks for.
struct Options {
    std::optional<ControllerAddress> connectTo;
    bool simulate = false;
    QStringList simulatorOptions;
    bool measure = false;
    bool observer = false;
    QStringList modules; ///< files, besides those of the plug-in folder
    std::optional<QString> pluginFolder;
    QString language;     ///< empty: the system's; set even when something is wrong
    QString settingsFile; ///< empty: the user's own
    QString recordFile;
    bool overwrite = false;    ///< a file that exists is recorded to without a question
    QVector<OutletUrl> sendTo; ///< outlets, besides those that are remembered
    QString screenshotFile;
    double screenshotAfter = 3.0; ///< seconds from the start
    double quitAfter = -1.0;      ///< seconds from the start, below 0: never
    bool printRows = false;
    bool openDocks = false;
};

struct ParsedOptions {
    enum class Action { Run, ShowText, Fail };
    Action action = Action::Run;
    QString text; ///< help, version, or what is wrong
    Options options;
};

/// Reads the command line, the program's name first. Needs the application object; the texts are in
/// its language.
ParsedOptions parseOptions(const QStringList& arguments);

} // namespace workbench
