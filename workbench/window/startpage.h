#pragma once

#include "workbench/controller/command/controlleraddress.h"

#include <QScrollArea>
#include <QVector>

class QAction;
class QGridLayout;
class QHBoxLayout;
class QLabel;

namespace workbench {

/// What stands in the middle of the window while there is no controller: how the connection is,
/// what can be done now, and the controllers of the last times. Where the window is too small for
/// it, it scrolls.
class StartPage : public QScrollArea {
    Q_OBJECT

public:
    explicit StartPage(QWidget* parent = nullptr);

    /// One more thing to be done: a button that triggers `action` and can be pressed when the
    /// action can, with a sentence about it.
    void addChoice(QAction* action, const QString& objectName, const QString& text,
                   const QString& description);

    /// The last one first; all are shown.
    void setControllers(const QVector<ControllerAddress>& controllers);

    /// Plain text.
    void setState(const QString& text);

Q_SIGNALS:
    void controllerWanted(const workbench::ControllerAddress& address);

private:
    QLabel* m_state = nullptr;
    QGridLayout* m_choices = nullptr;
    QLabel* m_controllersLabel = nullptr;
    QHBoxLayout* m_controllers = nullptr;
};

} // namespace workbench
