#include "tests/end_to_end/workplace.h"

#include <QMenu>
#include <QMenuBar>
#include <QSignalSpy>

using workbench::MainWindow;

bool Workplace::simulate(const QStringList& options, const QStringList& before,
                         const QString& address) {
    host = address;
    simulator = std::make_unique<processes::Simulator>(
        before, options + QStringList{QStringLiteral("--listen"), address});
    return simulator->isListening();
}

bool Workplace::open(const Wishes& wishes) {
    workbench::Options options;
    options.pluginFolder = QStringLiteral(KESTREL_PLUGINS);
    options.connectTo = {host, simulator->port()};
    options.measure = wishes.measure;
    window = std::make_unique<MainWindow>(MainWindow::Setup{
        folder.filePath(QStringLiteral("workbench.ini")), false, wishes.openDocks});
    run = std::make_unique<workbench::CommandLineRun>(*window, options);
    window->show();
    QSignalSpy built(window.get(), &MainWindow::modulesBuilt);
    run->start();
    return !built.isEmpty() || built.wait(processes::startTimeoutMs);
}

void Workplace::close() {
    run.reset();
    window.reset();
}

QAction* Workplace::entry(const QString& text) const {
    const QList<QAction*> menus = window->menuBar()->actions();
    for (const QAction* menu : menus) {
        if (menu->menu() == nullptr || menu->text() != QLatin1String("&Tracking")) {
            continue;
        }
        const QList<QAction*> actions = menu->menu()->actions();
        for (QAction* action : actions) {
            if (action->text() == text) {
                return action;
            }
        }
    }
    return nullptr;
}

bool Workplace::trigger(const QString& text) {
    QAction* const action = entry(text);
    if (action != nullptr) {
        action->trigger();
    }
    return action != nullptr;
}

bool Workplace::show(const QString& text) {
    const QAction* const action = entry(text);
    return action != nullptr && (action->isChecked() || trigger(text));
}

bool Workplace::order(const QString& command) {
    return simulator->ask(command) == QLatin1String("kestrel2 ok");
}
