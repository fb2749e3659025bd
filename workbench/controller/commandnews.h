#pragma once

#include "workbench/controller/command/commandchannel.h"

#include <QObject>

#include <functional>
#include <string>

namespace workbench {

class ControllerSession;
class LogModel;

/// Tells the log what passes between the workbench and its controller, whoever has sent it: each
/// command with its reply when that is wanted, and in any case what becomes of a calibration.
///
/// "kestrel2 cal T start" begins one; "status active" tells its end; it is accepted by a command of
/// its own, and discarded without any: by closing the dialog, or by the next start. Lives on the
/// GUI thread.
class CommandNews : public QObject {
    Q_OBJECT

public:
    /// Both outlive this object.
    CommandNews(ControllerSession& session, LogModel& log);

    /// Each command with its reply; off at first.
    void setTrafficWanted(bool wanted) { m_isTrafficWanted = wanted; }

    /// Tells whether a dialog is open in which a result may still be accepted. Without it only the
    /// next start discards one. Called from inside queries too.
    void setDialogQuestion(std::function<bool()> question);

private:
    enum class Calibration { None, Running, Ended };

    void take(const std::string& command, const CommandChannel::Answer& answer);
    void tellTraffic(const std::string& command, const CommandChannel::Answer& answer);
    void takeAction(const std::string& words);
    void takeStatus(const std::string& status);
    bool isDialogOpen() const;
    void tellOfDiscarded();
    void forgetIfAway();

    ControllerSession& m_session;
    LogModel& m_log;
    bool m_isTrafficWanted = false;
    std::function<bool()> m_dialogQuestion;
    Calibration m_calibration = Calibration::None;
    bool m_dialogSeen = false; // at or since the start of the calibration
};

} // namespace workbench
