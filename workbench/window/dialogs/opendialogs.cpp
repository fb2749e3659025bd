#include "workbench/window/dialogs/opendialogs.h"

#include <QApplication>

#include <algorithm>

namespace workbench {

namespace {

// One that opens another dialog whenever it is rejected must not keep the program from ending.
constexpr std::size_t maxRejected = 100;

} // namespace

OpenDialogs::OpenDialogs(QObject* parent)
    : QObject(parent) {
    // A timer, since a queued call would be made inside the loop that has just been told to end.
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &OpenDialogs::rejectOne);
}

QDialog* OpenDialogs::next() const {
    if (m_rejected.size() >= maxRejected) {
        return nullptr;
    }
    const auto isOpen = [this](const QDialog* dialog) {
        return dialog != nullptr && dialog->isVisible() &&
               std::find(m_rejected.begin(), m_rejected.end(), dialog) == m_rejected.end();
    };
    auto* const modal = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (isOpen(modal)) {
        return modal;
    }
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows) {
        if (auto* const dialog = qobject_cast<QDialog*>(window); isOpen(dialog)) {
            return dialog;
        }
    }
    return nullptr;
}

void OpenDialogs::rejectAll(const std::function<void()>& done) {
    m_done = done;
    m_timer.start(0);
}

void OpenDialogs::rejectOne() {
    QDialog* const dialog = next();
    if (dialog == nullptr) {
        m_done();
        return;
    }
    m_rejected.emplace_back(dialog);
    m_timer.start(0); // first: the dialog may ask back, in a loop of its own
    dialog->reject();
}

void OpenDialogs::rejectNow() {
    m_timer.stop();
    while (QDialog* const dialog = next()) {
        m_rejected.emplace_back(dialog);
        dialog->reject();
    }
}

} // namespace workbench
