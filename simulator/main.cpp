#include "simulator/options.h"
#include "simulator/signalwatcher.h"
#include "simulator/simulator.h"

#include <QCoreApplication>

#include <cstdio>

using namespace kestrel_simulator;

namespace {

void tell(const QString& text) {
    std::fprintf(stderr, "kestrel-simulator: %s\n", qPrintable(text));
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("kestrel-simulator"));
    QCoreApplication::setApplicationVersion(QStringLiteral(KESTREL_VERSION));
    const ParsedOptions parsed = parseOptions(QCoreApplication::arguments());
    if (parsed.action == ParsedOptions::Action::Refuse) {
        tell(parsed.text + QStringLiteral(" (see --help)"));
        return ExitBadOption;
    }
    if (parsed.action == ParsedOptions::Action::ShowText) {
        std::fputs(qPrintable(parsed.text), stdout);
        return ExitOk;
    }
    const SignalWatcher signalWatcher;
    QObject::connect(&signalWatcher, &SignalWatcher::stopRequested, &application,
                     &QCoreApplication::quit);
    Simulator simulator(parsed.options);
    QString error;
    const ExitCode started = simulator.start(error);
    if (started != ExitOk) {
        tell(error);
        return started;
    }
    QObject::connect(&simulator, &Simulator::noticed, &tell);
    if (!simulator.notice().isEmpty()) {
        tell(simulator.notice());
    }
    std::printf("listening on %s:%d\n", qPrintable(simulator.address().toString()),
                static_cast<int>(simulator.port()));
    std::fflush(stdout);
    return QCoreApplication::exec();
}
