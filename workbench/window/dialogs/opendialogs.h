#pragma once

#include <QDialog>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <functional>
#include <vector>

namespace workbench {

/// Rejects the dialogs that are open when the program is to end, whoever has opened them, so that
/// each leaves the controller as its cancel does. The innermost goes first. A dialog that stays
/// although it was rejected is left alone. Lives on the GUI thread.
class OpenDialogs : public QObject {
    Q_OBJECT

public:
    explicit OpenDialogs(QObject* parent = nullptr);

    /// There is a dialog that has not been rejected yet.
    bool any() const { return next() != nullptr; }

    /// Rejects one dialog with each turn of the event loop, so that the code behind a dialog's
    /// exec() runs before the next one goes; then calls `done`.
    void rejectAll(const std::function<void()>& done);

    /// Rejects all of them before it returns: for an application whose loops have ended.
    void rejectNow();

private:
    QDialog* next() const;
    void rejectOne();

    std::vector<QPointer<QDialog>> m_rejected;
    std::function<void()> m_done;
    QTimer m_timer;
};

} // namespace workbench
