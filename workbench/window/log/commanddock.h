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

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void send();
    void append(const QString& line);

    ControllerSession& m_session;
    std::unique_ptr<Ui::CommandDock> m_ui;
    CommandHistory m_history;
};

} // namespace workbench
