#include "workbench/options.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <cmath>

namespace workbench {

namespace {

constexpr double longestSeconds = 1e6;

class Texts {
    Q_DECLARE_TR_FUNCTIONS(workbench::Options)
};

void declare(QCommandLineParser& parser) {
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.setApplicationDescription(Texts::tr(
        "A front end for tracking controllers: connects, loads modules, shows and records data.\n"
        "\n"
        "Exit codes: 0 success, 2 bad options, 3 the simulator could not be started or has\n"
        "ended, 4 the picture could not be written, 5 the recording could not be written or\n"
        "has ended by itself, 6 data cannot be sent there."));
    parser.addOptions({
        {"connect",
         Texts::tr("Connect to a controller; the port is %1 unless given.")
             .arg(ControllerAddress::defaultPort),
         "HOST[:PORT]"},
        {"simulate",
         Texts::tr("Start a simulated controller of our own, connect to it, stop it at the "
                   "end.")},
        {"simulator-options",
         Texts::tr("Options for the simulated controller, separated by blanks."), "OPTIONS"},
        {"measure", Texts::tr("Start a measurement once connected.")},
        {"observer", Texts::tr("Let modules offer only what observes.")},
        {"module", Texts::tr("Load a module file; may be repeated."), "FILE"},
        {"plugins", Texts::tr("Look for modules in this folder instead of the usual ones."),
         "FOLDER"},
        {"language",
         Texts::tr(
             "The language of the user interface, such as de or en; the system's unless given."),
         "LANGUAGE"},
        {"settings", Texts::tr("Keep window and connection settings in this file."), "FILE"},
        {"record", Texts::tr("Record the data lines once connected."), "FILE"},
        {"overwrite", Texts::tr("Let --record replace a file that exists, without a question.")},
        {"send",
         Texts::tr("Send tools, references and results to udp://HOST, mqtt://HOST/PREFIX, "
                   "mqtts://HOST/PREFIX or igtl://; may be repeated."),
         "URL"},
        {"screenshot", Texts::tr("Write a picture of the window."), "FILE"},
        {"after", Texts::tr("When to take the picture, in seconds from the start (3)."), "SECONDS"},
        {"quit-after", Texts::tr("Quit after so many seconds."), "SECONDS"},
        {"print-rows", Texts::tr("Print the rows of the modules' tables every half second.")},
        {"open-docks", Texts::tr("Open the docks of all modules, whatever was remembered.")},
    });
    parser.addHelpOption();
    parser.addVersionOption();
    // Qt's own, taken by the application object.
    for (const char* name : {"platform", "style", "stylesheet", "qwindowgeometry"}) {
        QCommandLineOption option(QString::fromLatin1(name), QString(), QStringLiteral("value"));
        option.setFlags(QCommandLineOption::HiddenFromHelp);
        parser.addOption(option);
    }
}

bool readSeconds(const QCommandLineParser& parser, const QString& name, double* seconds,
                 QString* error) {
    if (!parser.isSet(name)) {
        return true;
    }
    bool good = false;
    const double value = parser.value(name).toDouble(&good);
    if (!good || !std::isfinite(value) || value < 0.0 || value > longestSeconds) {
        *error = Texts::tr("--%1 takes seconds from 0 to %2, not \"%3\"")
                     .arg(name, QString::number(longestSeconds, 'f', 0), parser.value(name));
        return false;
    }
    *seconds = value;
    return true;
}

QString readInto(const QCommandLineParser& parser, Options& options) {
    QString error;
    if (!parser.positionalArguments().isEmpty()) {
        return Texts::tr("unexpected argument \"%1\"")
            .arg(parser.positionalArguments().constFirst());
    }
    if (parser.isSet("connect")) {
        ControllerAddress address;
        if (!address.parse(parser.value("connect"))) {
            return Texts::tr("--connect takes HOST or HOST:PORT with a port from 1 to 65535, "
                             "not \"%1\"")
                .arg(parser.value("connect"));
        }
        options.connectTo = address;
    }
    if (!readSeconds(parser, QStringLiteral("after"), &options.screenshotAfter, &error) ||
        !readSeconds(parser, QStringLiteral("quit-after"), &options.quitAfter, &error)) {
        return error;
    }
    options.simulate = parser.isSet("simulate");
    options.simulatorOptions =
        parser.value("simulator-options").split(QLatin1Char(' '), Qt::SkipEmptyParts);
    options.measure = parser.isSet("measure");
    options.observer = parser.isSet("observer");
    options.modules = parser.values("module");
    if (parser.isSet("plugins")) {
        options.pluginFolder = parser.value("plugins");
    }
    options.settingsFile = parser.value("settings");
    options.recordFile = parser.value("record");
    options.overwrite = parser.isSet("overwrite");
    const QStringList urls = parser.values("send");
    for (const QString& url : urls) {
        OutletUrl outlet;
        if (!outlet.parse(url, &error)) {
            // What stands before "@" may be a secret that does not belong there.
            return Texts::tr("--send %1: %2").arg(url.section(QLatin1Char('@'), -1), error);
        }
        options.sendTo += outlet;
    }
    options.screenshotFile = parser.value("screenshot");
    options.printRows = parser.isSet("print-rows");
    options.openDocks = parser.isSet("open-docks");
    if (options.simulate && options.connectTo) {
        return Texts::tr("--simulate and --connect exclude each other");
    }
    if (parser.isSet("simulator-options") && !options.simulate) {
        return Texts::tr("--simulator-options needs --simulate");
    }
    if (options.overwrite && options.recordFile.isEmpty()) {
        return Texts::tr("--overwrite needs --record");
    }
    if (parser.isSet("after") && options.screenshotFile.isEmpty()) {
        return Texts::tr("--after needs --screenshot");
    }
    if ((options.measure || !options.recordFile.isEmpty()) && !options.simulate &&
        !options.connectTo) {
        return Texts::tr("--measure and --record need --connect or --simulate");
    }
    return error;
}

} // namespace

ParsedOptions parseOptions(const QStringList& arguments) {
    QCommandLineParser parser;
    declare(parser);
    ParsedOptions parsed;
    const bool good = parser.parse(arguments);
    parsed.options.language = parser.value("language");
    if (parser.isSet("help") || parser.isSet("version")) {
        parsed.action = ParsedOptions::Action::ShowText;
        parsed.text = parser.isSet("help") ? parser.helpText()
                                           : QStringLiteral("kestrel-workbench %1\n")
                                                 .arg(QCoreApplication::applicationVersion());
        return parsed;
    }
    parsed.text = good ? readInto(parser, parsed.options) : parser.errorText();
    parsed.action =
        parsed.text.isEmpty() ? ParsedOptions::Action::Run : ParsedOptions::Action::Fail;
    return parsed;
}

} // namespace workbench
