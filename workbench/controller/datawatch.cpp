#include "workbench/controller/datawatch.h"

#include "workbench/controller/data/datareceiver.h"
#include "workbench/controller/data/measurementteller.h"
#include "workbench/controller/measurementmonitor.h"

#include <algorithm>
#include <cmath>

namespace workbench {

namespace {

constexpr int lookIntervalMs = 100;

}

DataWatch::DataWatch(DataReceiver& receiver, const MeasurementMonitor& monitor,
                     MeasurementTeller& teller, QObject* parent)
    : QObject(parent)
    , m_receiver(receiver)
    , m_monitor(monitor)
    , m_teller(teller) {
    m_timer.setInterval(lookIntervalMs);
    connect(&m_timer, &QTimer::timeout, this, &DataWatch::look);
    connect(&monitor, &MeasurementMonitor::changed, this, &DataWatch::onMeasuring);
}

void DataWatch::onMeasuring(bool measuring) {
    m_told = false;
    m_receiver.forgetLines();
    if (measuring) {
        m_timer.start();
    } else {
        m_timer.stop();
    }
    expectFrames();
}

void DataWatch::setPaused(bool paused) {
    m_paused = paused;
    expectFrames();
}

void DataWatch::setSpeed(double speed) {
    m_slowness = std::max(1.0, 1.0 / speed);
    expectFrames();
}

void DataWatch::expectFrames() {
    m_since = BootClock::now();
    m_receiver.statistics().setMeasuring(m_monitor.isMeasuring() && !m_paused && m_slowness <= 1.0);
    show(0.0);
}

void DataWatch::lookAt(BootClock::time_point now) {
    if (!m_monitor.isMeasuring() || m_paused) {
        return;
    }
    const FrameStatistics::Snapshot counts = m_receiver.statistics().snapshot(now);
    const double watched = BootClock::seconds(now - m_since);
    const double frameAge =
        counts.lastFrameAge < 0.0 ? watched : std::min(watched, counts.lastFrameAge);
    const std::optional<LineTimes::Oldest> line = m_receiver.oldestLine(now);
    const double age = line ? std::max(frameAge, std::min(watched, line->age)) : frameAge;
    const double limit = std::max(m_slowness * oldAfter, 2.0 * counts.usualInterval);
    if (age < limit) {
        m_told = false;
        m_unreadableThen = counts.unreadable;
        m_foreignThen = counts.foreign;
        show(0.0);
        return;
    }
    if (frameAge < limit) {
        m_line = QString::fromStdString(line->channel);
        show(age, line->isRefused ? Cause::LineRefused : Cause::LineMissing);
    } else {
        show(age, likelyCause());
    }
    if (age >= std::max(m_slowness * stoppedAfter, 3.0 * counts.usualInterval) && !m_told) {
        m_told = true;
        m_teller.stopData();
    }
}

DataWatch::Cause DataWatch::likelyCause() const {
    const FrameStatistics::Snapshot counts = m_receiver.statistics().snapshot();
    if (!m_receiver.isReceiving()) {
        return Cause::NoPort;
    }
    if (m_monitor.status() == "wait") {
        return Cause::WaitsForSync;
    }
    if (counts.unreadable > m_unreadableThen) {
        return Cause::Unreadable;
    }
    if (counts.foreign > m_foreignThen) {
        return Cause::Foreign;
    }
    return counts.lastFrameAge < 0.0 ? Cause::NeverCame : Cause::Stopped;
}

void DataWatch::show(double age, Cause cause) {
    const QString before = m_age > 0.0 ? ageText() : QString();
    const Cause causeBefore = m_cause;
    m_age = age;
    if (age > 0.0) {
        m_cause = cause;
    }
    if (before != (age > 0.0 ? ageText() : QString()) || m_cause != causeBefore) {
        Q_EMIT changed();
    }
}

// Rounded down: data are never said to be older than they are.
QString DataWatch::ageText() const {
    return m_age < 1.0 ? QString::number(std::floor(m_age * 10.0) / 10.0, 'f', 1)
                       : QString::number(std::floor(m_age), 'f', 0);
}

} // namespace workbench
