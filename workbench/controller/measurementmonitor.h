#pragma once

#include "workbench/controller/command/commandchannel.h"

#include <QObject>

#include <deque>
#include <string>

namespace workbench {

class MeasurementTeller;

/// Knows whether the controller measures, whoever started or stopped it: it sees each command with
/// its reply and draws its conclusions from acknowledged "tracking start" and "tracking stop" and
/// from each answer to "status active". "none" and "err" mean no, "cal" (a calibration) too;
/// anything else means yes, also "wait": it tracks, only the sync signal is missing.
///
/// The requesters are told of each change, in order, from the event loop of the GUI thread; see
/// MeasurementTeller for who else has a word in it.
class MeasurementMonitor : public QObject {
    Q_OBJECT

public:
    explicit MeasurementMonitor(MeasurementTeller& teller, QObject* parent = nullptr);

    void observe(const std::string& command, const CommandChannel::Answer& answer);

    /// The controller is lost or given up: as far as anybody here is concerned it measures no more.
    void forget();

    bool isMeasuring() const { return m_measuring; }

    /// The last answer to "status active"; empty when there was none.
    const std::string& status() const { return m_status; }

    bool isCalibrating() const { return m_status == "cal"; }

Q_SIGNALS:
    void changed(bool measuring);
    void statusChanged(); ///< from the event loop

private:
    void setStatus(const std::string& status);
    void learn(bool measuring);
    void notify();

    MeasurementTeller& m_teller;
    std::string m_status;
    bool m_measuring = false;
    std::deque<bool> m_changes; // not yet told
};

} // namespace workbench
