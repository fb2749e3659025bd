#include "soak/processfigures.h"
#include "soak/soak.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>

#include <cstdio>
#include <random>

namespace {

constexpr int badOptions = 2;

} // namespace

int main(int argc, char* argv[]) {
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Runs simulator, workbench and plug-in together while everything goes wrong "
                       "that can, and fails when one of them crashes, freezes, grows or leaves "
                       "something over."));
    parser.addOptions({{"minutes", "How long (30).", "MINUTES", "30"},
                       {"seed", "Repeats an earlier run's random choices.", "N"},
                       {"rate", "Frames per second, up to 1000 (1000).", "HZ", "1000"},
                       {"folder", "Where logs and samples go; emptied first.", "FOLDER", "soak"}});
    parser.addHelpOption();
    parser.process(application);

    Soak::Options options;
    bool goodMinutes = false;
    bool goodSeed = true;
    bool goodRate = false;
    options.minutes = parser.value("minutes").toDouble(&goodMinutes);
    options.rate = parser.value("rate").toInt(&goodRate);
    options.seed =
        parser.isSet("seed") ? parser.value("seed").toULongLong(&goodSeed) : std::random_device()();
    options.folder = QDir(parser.value("folder")).absolutePath();
    if (!goodMinutes || options.minutes <= 0.0 || !goodSeed || !goodRate || options.rate < 1 ||
        options.rate > 1000) {
        std::fputs("soak: bad value of an option, see --help\n", stderr);
        return badOptions;
    }
    adoptOrphans();
    Soak soak(options);
    soak.start();
    return QCoreApplication::exec();
}
