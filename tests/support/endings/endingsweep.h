#pragma once

#include "host_api/backendversions.h"
#include "host_api/moduleinterface.h"
#include "tests/support/modalwatchdog.h"
#include "tests/support/scriptedhost.h"

#include <QAction>
#include <QList>
#include <QMainWindow>
#include <QPluginLoader>
#include <QPointer>

#include <functional>
#include <memory>
#include <string>
#include <vector>

/// A host that ends the plug-in from inside one of the calls that it gets, each time from inside
/// another one. The plug-in is the file that a host loads.

/// How the host ends it.
enum class EndBy {
    Exit,            ///< exit_module()
    EventsThenExit,  ///< the same after handling events
    ExitThenUnload,  ///< unloads the library when what the user has triggered is through
    ParentDeath,     ///< deletes its window
    EventsThenClose, ///< handles events, in which the user closes the window, which that deletes
    RootDeath,       ///< deletes the root object
    DeleteLater,     ///< calls deleteLater() of all contents and handles what is due
    ExitAndUnload,   ///< exits and unloads at once; from then on the library stays mapped
};

/// A host with its window from the loading of the plug-in to its end.
class EndingHost {
public:
    /// The plug-in is ended from inside the `place`-th call, log lines included; negative: never.
    EndingHost(EndBy endBy, int place);
    ~EndingHost();

    /// Loads, sets up and takes the menu entries; the dock is put into the window, hidden.
    void load();

    /// Triggers a menu entry: 0 settings, 1 calibration, 2 display. Nothing after the end.
    void trigger(int entry);

    /// Runs an action of the user or the host, unless the end has come.
    void act(const std::function<void()>& action);

    /// What is wrong when all is over; empty: nothing.
    QString objection();

    bool hasEnded() const { return m_ended; }
    QWidget* content(int entry) const { return m_contents.at(entry); }

    ScriptedHost io;
    ModalWatchdog dog;
    ModuleInterface* module = nullptr;

private:
    void end();
    void deleteContentsLater();
    void closeByUser();
    void unload();

    EndBy m_endBy;
    int m_place;
    int m_calls = 0;
    bool m_ended = false;
    std::size_t m_saidAtEnd = 0;
    QPluginLoader m_loader;
    std::unique_ptr<BackendVersions> m_versions;
    QPointer<QMainWindow> m_window;
    QList<QPointer<QAction>> m_entries;
    QList<QPointer<QWidget>> m_contents;
    QList<QPointer<QWidget>>
        m_builtEarly; ///< what could be found before the entries were handed out
};

/// Whether the plug-in's file is mapped into this process.
bool isPluginMapped();

/// Plays the flow on a scripted controller once to its own end and then once for each call that the
/// host has got, with an end there. Prints the number of places; returns the first objection.
QString sweepEndings(const QString& name, EndBy endBy,
                     const std::function<void(ScriptedHost&)>& script,
                     const std::function<void(EndingHost&)>& flow);

/// A row for each way to end each of these flows, in the order of the ways, in the columns "endBy",
/// "flow" (its index) and "name"; with or without EndBy::DeleteLater.
void addEndingRows(const QStringList& flows, bool deleteLater = true);

Q_DECLARE_METATYPE(EndBy)
