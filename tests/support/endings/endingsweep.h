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

/// Where a host may end it.
enum class Places {
    EveryCall, ///< inside every call that the host gets, log lines included
    Pauses     ///< inside EndingHost::pause() alone: between the plug-in's calls
};

/// A host with its window from the loading of the plug-in to its end.
class EndingHost {
public:
    /// The plug-in, a file, is ended in the `place`-th place; negative: never.
    EndingHost(const QString& plugin, EndBy endBy, int place, Places places);
    ~EndingHost();

    /// Loads, sets up and takes the menu entries; docks are put into the window, hidden.
    void load();

    /// Triggers a menu entry by its index. Nothing after the end.
    void trigger(int entry);

    /// A moment in which the plug-in is in a certain state; also a place of Places::EveryCall.
    void pause();

    /// Runs an action of the user or the host, unless the end has come.
    void act(const std::function<void()>& action);

    /// What is wrong when all is over; empty: nothing.
    QString objection();

    bool hasEnded() const { return m_ended; }
    int places() const { return m_calls; } ///< until now
    QWidget* content(int entry) const { return m_contents.at(entry); }

    ScriptedHost io;
    ModalWatchdog dog;
    ModuleInterface* module = nullptr;

private:
    void end();
    void deleteContentsLater();
    void closeByUser();
    void unload();

    QString m_plugin;
    EndBy m_endBy;
    int m_place;
    Places m_places;
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

/// A flow on a scripted controller, to be ended everywhere.
struct EndingSweep {
    QString plugin; ///< the file
    QString name;   ///< of the flow
    std::function<void(ScriptedHost&)> script;
    std::function<void(EndingHost&)> flow;
    Places places = Places::EveryCall;

    /// Plays the flow once to its own end and then once for each place in it, with an end there.
    /// Prints the number of places; returns the first objection.
    QString run(EndBy endBy) const;

private:
    QString play(EndingHost& host) const;
};

/// A row for each way to end each of these flows, in the order of the ways, in the columns "endBy",
/// "flow" (its index) and "name"; with or without EndBy::DeleteLater.
void addEndingRows(const QStringList& flows, bool deleteLater = true);

Q_DECLARE_METATYPE(EndBy)
