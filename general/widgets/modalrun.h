#pragma once

#include <QDialog>
#include <QPointer>

#include <utility>

class HostPointer;

/// Runs a dialog until it is closed; the result of its exec(). When the application quits the
/// dialog is still shown then. Once the host has been hung up no dialog is opened any more: 0 then.
int runModally(QDialog& dialog, const HostPointer& host);

/// An inner dialog for one modal run: made by its caller, gone at the end of the caller's scope.
///
/// It stands on the heap. A dialog on the caller's stack would be destroyed twice when its parent
/// dies in the middle of the run (the host closes, the module exits); this one is then destroyed
/// once, by its parent, and its run returns 0. The caller is usually that parent, so after the
/// run it must check a QPointer to itself before it touches a member.
template <typename Dialog>
class ModalRun {
public:
    template <typename... Arguments>
    explicit ModalRun(Arguments&&... arguments)
        : m_dialog(new Dialog(std::forward<Arguments>(arguments)...)) {}
    ~ModalRun() { delete m_dialog.data(); }
    ModalRun(const ModalRun&) = delete;
    ModalRun& operator=(const ModalRun&) = delete;

    /// Null once the dialog has died with its parent.
    Dialog* operator->() const { return m_dialog.data(); }

    /// The dialog exists.
    int run(const HostPointer& host) const { return runModally(*m_dialog, host); }

    /// The dialog is cancelled when `owner` emits `closing`, and taken away when `owner` dies, so
    /// that it never outlives its run.
    template <typename Owner, typename Signal>
    void endWith(const Owner* owner, Signal closing) const {
        QDialog* const dialog = m_dialog.data();
        QObject::connect(owner, closing, dialog, [dialog] {
            // What a dialog does on being cancelled concerns one that the user has seen.
            if (dialog->isVisible()) {
                dialog->reject();
            } else {
                dialog->done(QDialog::Rejected);
            }
        });
        QObject::connect(owner, &QObject::destroyed, dialog, &QWidget::hide);
    }

private:
    QPointer<Dialog> m_dialog;
};
