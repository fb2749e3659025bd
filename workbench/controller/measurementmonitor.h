#pragma once

#include "workbench/controller/commandchannel.h"

#include <QObject>

#include <deque>
#include <string>

namespace workbench {

class RequesterRegistry;

/// Knows whether the controller measures, whoever started or stopped it: it sees each command with
/// its reply and draws its conclusions from acknowledged "tracking start" and "tracking stop" and
/// from each answer to "status active". "none" and "err" mean no, "cal" (a calibration) too;
/// anything else means yes, also "wait": it tracks, only the sync signal is missing.
///
/// The requesters are told once per change, in order, from the event loop of the GUI thread.
class MeasurementMonitor : public QObject {
    Q_OBJECT

public:
    explicit MeasurementMonitor(RequesterRegistry& registry, QObject* parent = nullptr);

    void observe(const std::string& command, const CommandChannel::Answer& answer);

    /// The controller is given up: as far as anybody here is concerned it measures no more.
    void forget() { learn(false); }

    bool isMeasuring() const { return m_measuring; }

Q_SIGNALS:
    void changed(bool measuring);

private:
    void learn(bool measuring);
    void notify();

    RequesterRegistry& m_registry;
    bool m_measuring = false;
    std::deque<bool> m_changes; // not yet told
};

} // namespace workbench
