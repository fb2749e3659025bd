#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>
#include <vector>

namespace workbench {
class MainWindow;
}

/// Steps through the window and its dialogs. Each waits until its condition holds and then acts;
/// the walk goes on inside the dialogs' own loops. A condition that does not come ends the program.
class Walk : public QObject {
public:
    /// Pictures go to `folder`.
    Walk(workbench::MainWindow& window, QString folder);

protected:
    void step(const char* name, std::function<bool()> condition, std::function<void()> act);

    int waitedMs() const { return m_waitedMs; } ///< for the present step's condition
    static QWidget* dialog();                   ///< the one that is open, or null
    static bool shown(const char* className);   ///< a dialog of this class

    /// Presses a button of the dialog, afterwards: what it opens has its own loop, in which the
    /// walk goes on.
    static void press(const char* button);

    void openEntry(int index); ///< of the menu Tracking
    void command(const char* line);
    void take(QWidget& widget, const char* name); ///< a picture of this name

    workbench::MainWindow& m_window;

private:
    struct Step {
        const char* name;
        std::function<bool()> condition;
        std::function<void()> act;
    };

    void poll();

    const QString m_folder;
    std::vector<Step> m_steps;
    std::size_t m_next = 0;
    int m_waitedMs = 0;
    QTimer m_timer;
};
