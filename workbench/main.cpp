#include "workbench/commandlinerun.h"
#include "workbench/mainwindow.h"
#include "workbench/options.h"

#include <QApplication>

#include <cstdio>

int main(int argc, char* argv[]) {
    QCoreApplication::setApplicationName(QStringLiteral("kestrel-workbench"));
    QCoreApplication::setApplicationVersion(QStringLiteral(KESTREL_VERSION));
    QStringList arguments;
    for (int i = 0; i < argc; ++i) {
        arguments += QString::fromLocal8Bit(argv[i]);
    }
    // Before the application object, which needs a display: help and errors do not.
    const workbench::ParsedOptions parsed = workbench::parseOptions(arguments);
    if (parsed.action == workbench::ParsedOptions::Action::ShowText) {
        std::fputs(parsed.text.toLocal8Bit().constData(), stdout);
        return workbench::ExitSuccess;
    }
    if (parsed.action == workbench::ParsedOptions::Action::Fail) {
        std::fprintf(stderr, "kestrel-workbench: %s (see --help)\n",
                     parsed.text.toLocal8Bit().constData());
        return workbench::ExitBadOptions;
    }

    const QApplication application(argc, argv);
    const workbench::Options& options = parsed.options;
    workbench::MainWindow window({options.settingsFile, options.observer, options.openDocks});
    workbench::CommandLineRun run(window, options);
    run.watchSignals();
    window.show();
    run.start();
    return QApplication::exec();
}
