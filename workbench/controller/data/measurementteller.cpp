#include "workbench/controller/data/measurementteller.h"

#include "workbench/controller/data/requesterregistry.h"

namespace workbench {

void MeasurementTeller::setMeasuring(bool measuring) {
    std::unique_lock<std::mutex> lock(m_mutex);
    m_measuring = measuring;
    m_dataStopped = false;
    tell(lock);
}

void MeasurementTeller::stopData() {
    std::unique_lock<std::mutex> lock(m_mutex);
    m_dataStopped = m_measuring;
    tell(lock);
}

void MeasurementTeller::dataCame() {
    if (!m_dataStopped) {
        return;
    }
    std::unique_lock<std::mutex> lock(m_mutex);
    m_dataStopped = false;
    tell(lock);
}

// Whoever comes while somebody tells leaves his news to him: a later word never overtakes an
// earlier one, and nobody waits.
void MeasurementTeller::tell(std::unique_lock<std::mutex>& lock) {
    const bool word = m_measuring && !m_dataStopped;
    if (word != m_lastWord) {
        m_lastWord = word;
        m_changes.push_back(word);
    }
    if (m_telling) {
        return;
    }
    m_telling = true;
    while (!m_changes.empty()) {
        const bool started = m_changes.front();
        m_changes.pop_front();
        lock.unlock();
        if (started) {
            m_registry.notifyStarted();
        } else {
            m_registry.notifyStopped();
        }
        lock.lock();
    }
    m_telling = false;
}

} // namespace workbench
