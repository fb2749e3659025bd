#include "workbench/commandlinerun.h"
#include "workbench/mainwindow.h"
#include "workbench/options.h"
#include "workbench/translations.h"

#include <QApplication>

#include <cstdio>

using workbench::ParsedOptions;
using workbench::Translations;

namespace {

// Without a window, and so without a display.
int showText(const ParsedOptions& parsed) {
    const bool failed = parsed.action == ParsedOptions::Action::Fail;
    const QByteArray text = parsed.text.toLocal8Bit();
    if (failed) {
        std::fprintf(stderr, "kestrel-workbench: %s (see --help)\n", text.constData());
    } else {
        std::fputs(text.constData(), stdout);
    }
    return failed ? workbench::ExitBadOptions : workbench::ExitSuccess;
}

int refuseLanguage(const QString& language) {
    return showText({ParsedOptions::Action::Fail,
                     QCoreApplication::translate("workbench::Options",
                                                 "there are no texts in the language \"%1\"")
                         .arg(language),
                     {}});
}

} // namespace

int main(int argc, char* argv[]) {
    QCoreApplication::setApplicationName(QStringLiteral("kestrel-workbench"));
    QCoreApplication::setApplicationVersion(QStringLiteral(KESTREL_VERSION));
    QStringList arguments;
    for (int i = 0; i < argc; ++i) {
        arguments += QString::fromLocal8Bit(argv[i]);
    }
    const ParsedOptions parsed = workbench::parseOptions(arguments);
    const workbench::Options& options = parsed.options;
    if (parsed.action != ParsedOptions::Action::Run) {
        const QCoreApplication application(argc, argv);
        const Translations translations(options.language, Translations::usualFolders());
        return showText(workbench::parseOptions(arguments));
    }

    const QApplication application(argc, argv);
    const Translations translations(options.language, Translations::usualFolders());
    if (!options.language.isEmpty() && !translations.isIn(options.language)) {
        return refuseLanguage(options.language);
    }
    workbench::MainWindow window({options.settingsFile, options.observer, options.openDocks});
    workbench::CommandLineRun run(window, options);
    run.watchSignals();
    window.show();
    run.start();
    return QApplication::exec();
}
