#include "tests/support/modalwatchdog.h"

#include <QApplication>
#include <QDateTime>
#include <QWidget>

namespace {
constexpr int pollMs = 5;
}

ModalWatchdog::ModalWatchdog(int patienceMs)
    : m_patience(patienceMs) {
    QObject::connect(&m_timer, &QTimer::timeout, this, &ModalWatchdog::look);
    m_timer.start(pollMs);
}

void ModalWatchdog::on(const QString& objectName, const std::function<void(QWidget*)>& action) {
    m_actions[objectName] = action;
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
        m_seen << modal->objectName();
        const auto action = m_actions.find(modal->objectName());
        if (action != m_actions.end()) {
            // The action may run a modal loop of its own, in which this watchdog must go on
            // looking; a timer does not fire while its own slot runs, so leave the slot first.
            QTimer::singleShot(0, modal, [run = action->second, modal] { run(modal); });
        }
    } else if (now - m_since > m_patience) {
        m_strays << modal->objectName();
        m_since = now;
        modal->close();
    }
}
