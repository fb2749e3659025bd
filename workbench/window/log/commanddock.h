#pragma once

#include "workbench/window/log/commandhistory.h"

#include <QDockWidget>

#include <memory>

namespace Ui {
class CommandDock;
}

namespace workbench {

class ControllerSession;

/// A raw command line to the controller with a history. What the controller says is shown as it is,
/// as plain text.
class CommandDock : public QDockWidget {
    Q_OBJECT

public:
    explicit CommandDock(ControllerSession& session, QWidget* parent = nullptr);
    ~CommandDock() override;

    CommandHistory& history() { return m_history; }

    /// As if the line had been typed: it is sent and shown, its reply too, and the history has it.
    void run(const QString& command);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void sendTyped();
    void append(const QString& line);

    ControllerSession& m_session;
    std::unique_ptr<Ui::CommandDock> m_ui;
    CommandHistory m_history;
};

} // namespace workbench
