#pragma once

#include "workbench/controller/simulator/simulatorwords.h"

#include <QObject>
#include <QPointer>
#include <QString>

#include <optional>
#include <vector>

class QMenu;
class QWidget;

namespace workbench {

class CommandDock;
class ControllerSession;
class EntryStates;
class MenuArranger;

/// The menu of what only a simulated controller can be told: what its tools do, what goes wrong,
/// how the next calibration turns out. Each entry is a line of the command line, and is seen there.
class SimulatorMenu : public QObject {
    Q_OBJECT

public:
    /// What the menu works with, all of which outlives it.
    struct Room {
        ControllerSession& session;
        CommandDock& commands;
        MenuArranger& menus;
        EntryStates& states;
    };

    SimulatorMenu(const Room& room, QWidget* window);

    /// The controller that is ready is taken for a simulator: the menu is there once it has told
    /// its words, and gone when it does not know any.
    void offer();

    /// Gone at once.
    void withdraw();

    /// The number of tools may have changed.
    void refresh();

private:
    void build(const SimulatorWords& words);
    void buildTools(int count);
    QMenu* addMenu(int order, const QString& title);
    QMenu* addToolMenu(int number);
    void addLine(QMenu& menu, const QString& text, const QString& line);
    void addWords(QMenu& menu, const QStringList& words, const QString& linePattern);

    Room m_room;
    QWidget* m_window;
    std::optional<SimulatorWords> m_words; // of the menu that is there
    std::vector<QMenu*> m_menus;           // the window's
    QMenu* m_tools = nullptr;
    int m_toolCount = -1;
    int m_asked = 0; // answers to earlier questions do not count
};

} // namespace workbench
