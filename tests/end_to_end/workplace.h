#pragma once

#include "tests/end_to_end/processes.h"
#include "workbench/commandlinerun.h"
#include "workbench/window/mainwindow.h"

#include <QAction>
#include <QTemporaryDir>

#include <memory>

/// A place to work at: the workbench's window in this process, with the plug-ins as binaries and
/// settings of its own, in front of a simulator that is another process. What it has of them may be
/// replaced or ended one by one; at its own end window, simulator and folder go in this order.
struct Workplace {
    /// How the window is opened.
    struct Wishes {
        bool measure = false;   ///< as soon as it is connected
        bool openDocks = false; ///< all of them
    };

    /// Starts a simulator that listens at `host`; `before` is a program with its options that in
    /// turn starts it. False when it does not listen.
    bool simulate(const QStringList& options, const QStringList& before = {},
                  const QString& host = QStringLiteral("127.0.0.1"));

    /// Opens the window, connected to that simulator. False when the entries of the modules are not
    /// there in time.
    bool open(const Wishes& wishes);

    /// Ends the window.
    void close();

    /// Triggers an entry of the menu Tracking by its text; false when there is none.
    bool trigger(const QString& text);

    /// Triggers the entry of a dock unless the dock is shown already; false when there is none.
    bool show(const QString& text);

    /// A command of the simulator without its protocol word; whether it was acknowledged.
    bool order(const QString& command);

    /// A widget in one of the docks of modules, by both object names; null when there is none.
    template <typename Widget>
    Widget* find(const char* dock, const char* name) const {
        QWidget* const page = window ? window->findChild<QWidget*>(QLatin1String(dock)) : nullptr;
        return page != nullptr ? page->findChild<Widget*>(QLatin1String(name)) : nullptr;
    }

    QTemporaryDir folder;
    QString host; ///< where the simulator listens
    std::unique_ptr<processes::Simulator> simulator;
    std::unique_ptr<workbench::MainWindow> window;
    std::unique_ptr<workbench::CommandLineRun> run;

private:
    QAction* entry(const QString& text) const;
};
