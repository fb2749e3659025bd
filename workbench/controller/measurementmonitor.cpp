#include "workbench/controller/measurementmonitor.h"

#include "libs/kestrel_wire/command.h"
#include "workbench/controller/data/measurementteller.h"

namespace workbench {

MeasurementMonitor::MeasurementMonitor(MeasurementTeller& teller, QObject* parent)
    : QObject(parent)
    , m_teller(teller) {}

void MeasurementMonitor::observe(const std::string& command, const CommandChannel::Answer& answer) {
    // Most commands need no closer look.
    if (answer.result != Success || (command.find("tracking") == std::string::npos &&
                                     command.find("active") == std::string::npos)) {
        return;
    }
    const std::string words = kestrel_wire::withSingleBlanks(command);
    if (words == "kestrel2 tracking start") {
        learn(true);
    } else if (words == "kestrel2 tracking stop") {
        learn(false);
    } else if (words == "kestrel2 get status active") {
        const std::string& value = answer.reply.value;
        setStatus(value);
        if (value == "none" || value == "err" || value == "cal") {
            learn(false);
        } else if (!value.empty()) {
            learn(true);
        }
    }
}

void MeasurementMonitor::setStatus(const std::string& status) {
    if (status != m_status) {
        m_status = status;
        QMetaObject::invokeMethod(this, &MeasurementMonitor::statusChanged, Qt::QueuedConnection);
    }
}

void MeasurementMonitor::forget() {
    setStatus({});
    learn(false);
}

void MeasurementMonitor::learn(bool measuring) {
    if (measuring == m_measuring) {
        return;
    }
    m_measuring = measuring;
    m_changes.push_back(measuring);
    QMetaObject::invokeMethod(this, &MeasurementMonitor::notify, Qt::QueuedConnection);
}

void MeasurementMonitor::notify() {
    while (!m_changes.empty()) {
        const bool measuring = m_changes.front();
        m_changes.pop_front();
        Q_EMIT changed(measuring);
        m_teller.setMeasuring(measuring);
    }
}

} // namespace workbench
