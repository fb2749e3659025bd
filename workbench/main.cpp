#include "workbench/commandlinerun.h"
#include "workbench/options.h"
#include "workbench/startup.h"
#include "workbench/translations.h"
#include "workbench/window/mainwindow.h"

#include <QApplication>
#include <QThreadPool>

#include <cstdio>

using workbench::ParsedOptions;
using workbench::Translations;

namespace {

// With an application object that needs no display, for the sake of help and error texts.
ParsedOptions readCommandLine(int argc, char* argv[]) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString language = workbench::parseOptions(arguments).options.language;
    const Translations translations(language, Translations::usualFolders());
    ParsedOptions parsed = workbench::parseOptions(arguments);
    if (parsed.action == ParsedOptions::Action::Run && !language.isEmpty() &&
        !translations.isIn(language)) {
        parsed.action = ParsedOptions::Action::Fail;
        parsed.text = QCoreApplication::translate("workbench::Options",
                                                  "there are no texts in the language \"%1\"")
                          .arg(language);
    }
    return parsed;
}

int complain(const QString& text) {
    std::fprintf(stderr, "kestrel-workbench: %s (see --help)\n", text.toLocal8Bit().constData());
    return workbench::ExitBadOptions;
}

} // namespace

int main(int argc, char* argv[]) {
    QCoreApplication::setApplicationName(QStringLiteral("kestrel-workbench"));
    QCoreApplication::setApplicationVersion(QStringLiteral(KESTREL_VERSION));
    const ParsedOptions parsed = readCommandLine(argc, argv);
    const workbench::Options& options = parsed.options;
    if (parsed.action == ParsedOptions::Action::Fail) {
        return complain(parsed.text);
    }
    if (parsed.action == ParsedOptions::Action::ShowText) {
        std::fputs(parsed.text.toLocal8Bit().constData(), stdout);
        return workbench::ExitSuccess;
    }

    workbench::prepareForWindows();
    const QApplication application(argc, argv);
    const Translations translations(options.language, Translations::usualFolders());
    workbench::MainWindow window({options.settingsFile, options.observer, options.openDocks});
    workbench::CommandLineRun run(window, options);
    run.watchSignals();
    window.show();
    run.start();
    const int exitCode = run.finish(QApplication::exec());
    // Qt converts pictures on pool threads; they end before the process does.
    QThreadPool::globalInstance()->waitForDone();
    return exitCode;
}
