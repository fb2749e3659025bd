#pragma once

#include <QDialog>
#include <QPointer>

#include <utility>

/// When the application quits, exec() returns with the dialog still shown, no longer modal. Hidden
/// or destroyed like that, its window would stay in Qt's list of modal windows for ever.
inline void makeModalAgainAfterQuit(QDialog& dialog) {
    if (dialog.isVisible()) {
        dialog.setModal(true);
    }
}

/// An inner dialog for one modal run: made by its caller, gone at the end of the caller's scope.
///
/// It stands on the heap. A dialog on the caller's stack would be destroyed twice when its parent
/// dies in the middle of the run (the host closes, the module exits); this one is then destroyed
/// once, by its parent, and its exec() returns 0. The caller is usually that parent, so after
/// exec() it must check a QPointer to itself before it touches a member.
template <typename Dialog>
class ModalRun {
public:
    template <typename... Arguments>
    explicit ModalRun(Arguments&&... arguments)
        : m_dialog(new Dialog(std::forward<Arguments>(arguments)...)) {}
    ~ModalRun() {
        if (!m_dialog.isNull()) {
            makeModalAgainAfterQuit(*m_dialog);
            delete m_dialog.data();
        }
    }
    ModalRun(const ModalRun&) = delete;
    ModalRun& operator=(const ModalRun&) = delete;

    /// Null once the dialog has died with its parent.
    Dialog* operator->() const { return m_dialog.data(); }

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
