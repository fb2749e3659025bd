#pragma once

#include <QObject>
#include <QTimer>

class QLabel;
class QMainWindow;

namespace Ui {
class MainWindow;
}

namespace workbench {

struct Backend;
class ModuleHost;
class RecordingControl;
class SymbolLabel;
enum class Symbol;

/// What goes on, each thing in one place: connection, measurement and recording are a symbol and a
/// word in the status bar; what the controller is, its data and what is recorded stand in the
/// panel. Where there is no room for the panel, the status bar has lost frames and free space. The
/// numbers follow by themselves.
class StateWords : public QObject {
    Q_OBJECT

public:
    struct Sources {
        Backend& backend;
        const RecordingControl& recording;
        const ModuleHost& modules;
    };

    /// Belongs to the window, whose form is `ui`.
    StateWords(const Sources& sources, const Ui::MainWindow& ui, QMainWindow* window);

    void showState();   ///< connection, measurement, controller
    void showNumbers(); ///< data and recording
    void showModules();
    void setPanelShown(bool isShown);

private:
    struct Place {
        SymbolLabel* symbol;
        QLabel* word;
    };

    Place add(QLabel* word, const char* name, const QString& accessibleName, int stretch);
    static void show(const Place& place, Symbol symbol, const QString& word);
    static void setVisible(const Place& place, bool isVisible);
    void showConnection();
    void showMeasurement();
    void showInShort();
    void tellOfLongLines();

    const Sources m_sources;
    const Ui::MainWindow& m_ui;
    QMainWindow* const m_window;
    const Place m_connection;
    const Place m_measurement;
    const Place m_recording;
    const Place m_inShort; // of the panel, while it is not in sight
    QTimer m_numbersTimer;
    bool m_isPanelShown = true;
    bool m_longLinesTold = false;
};

} // namespace workbench
