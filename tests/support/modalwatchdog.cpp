#include "tests/support/modalwatchdog.h"

#include <QApplication>
#include <QDateTime>
#include <QDialog>
#include <QEvent>
#include <QWidget>

namespace {
constexpr int pollMs = 1;
}

ModalWatchdog::ModalWatchdog(int patienceMs)
    : m_patience(patienceMs) {
    QObject::connect(&m_timer, &QTimer::timeout, this, &ModalWatchdog::look);
    m_timer.start(pollMs);
    qApp->installEventFilter(this);
}

void ModalWatchdog::on(const QString& objectName, const std::function<void(QWidget*)>& action) {
    m_actions[objectName] = action;
}

bool ModalWatchdog::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    if (type == QEvent::Hide && watched == m_current) {
        m_current = nullptr; // shown again at once it appears anew
    }
    if ((type == QEvent::Show || type == QEvent::Hide) && qobject_cast<QDialog*>(watched)) {
        QTimer::singleShot(0, this, &ModalWatchdog::look); // sooner than the next poll
    }
    return false;
}

void ModalWatchdog::look() {
    QWidget* const modal = QApplication::activeModalWidget();
    if (modal == nullptr) {
        m_current = nullptr;
        return;
    }
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    if (modal != m_current) {
        m_current = modal;
        m_since = now;
        // The action may run a modal loop of its own, in which this watchdog must go on looking; a
        // timer does not fire while its own slot runs, so leave the slot first.
        QTimer::singleShot(0, this, [this, seen = QPointer<QWidget>(modal)] { act(seen); });
    } else if (now - m_since > m_patience) {
        m_strays << modal->objectName();
        m_since = now;
        modal->close();
    }
}

void ModalWatchdog::act(QWidget* modal) {
    // A dialog that was on top only between the end of one dialog and the start of the next does
    // not count: nobody could have seen it.
    if (modal == nullptr || modal != QApplication::activeModalWidget()) {
        return;
    }
    m_seen << modal->objectName();
    const auto action = m_actions.find(modal->objectName());
    if (action != m_actions.end()) {
        const auto run = action->second; // may be replaced while it runs
        run(modal);
    }
}
