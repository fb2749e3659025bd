#pragma once

#include "host_api/backendversions.h"
#include "workbench/controller/command/commandchannel.h"
#include "workbench/controller/command/controlleraddress.h"

#include <QByteArray>
#include <QMap>
#include <QObject>
#include <QSet>
#include <QTimer>

#include <map>
#include <optional>
#include <string>

namespace workbench {

class DataReceiver;
class LogModel;
class MeasurementMonitor;

/// The connection to the controller that the user has chosen, for as long as he wants it: connects,
/// reads the versions, names the data port, asks twice a second whether a measurement runs,
/// and comes back by itself when the connection was lost. Nothing of that blocks. While it is lost
/// nothing measures, as far as anybody here is concerned.
///
/// On the way back the versions are read again into the same record, and the output channels that
/// were switched through this session are switched again: a controller that was restarted meanwhile
/// has forgotten them, and nobody else would tell it.
class ControllerSession : public QObject {
    Q_OBJECT

public:
    enum class State {
        Disconnected,
        Connecting, ///< for the first time since connectTo()
        Reading,    ///< connected, the versions are being read
        Ready,      ///< commands are taken
        Failed,     ///< could not connect; tries again
        Lost        ///< was ready before; tries again
    };
    static constexpr int retryIntervalMs = 500;
    static constexpr int pollIntervalMs = 500;

    ControllerSession(DataReceiver& receiver, MeasurementMonitor& monitor, LogModel& log,
                      QObject* parent = nullptr);
    ~ControllerSession() override;

    void connectTo(const ControllerAddress& address);
    void disconnectFromController();

    State state() const { return m_state; }
    bool isReady() const { return m_state == State::Ready; }
    QString stateText() const; ///< in words, plain text
    const ControllerAddress& address() const { return m_address; }
    quint16 boundDataPort() const { return m_boundDataPort; } ///< 0: no data can be received

    /// While isReady(), after the connection was lost: whether the controller has forgotten
    /// meanwhile what it was told before, as one does that was started anew. Nothing when nobody
    /// can tell.
    std::optional<bool> wasStartedAnew() const { return m_startedAnew; }

    /// One record for the session's whole life; its content follows the controller.
    BackendVersions* versions() { return &m_versions; }

    /// Only to be used for commands while isReady().
    CommandChannel& channel() { return m_channel; }

Q_SIGNALS:
    void stateChanged();
    /// Commands are taken from now on. `first`: the first time since connectTo().
    void ready(bool first);
    /// A command of anybody here has its reply, or has failed without one. Also from inside a
    /// query: who hears it must not call the channel.
    void answered(const std::string& command, const workbench::CommandChannel::Answer& answer);

private:
    friend struct ConnectionProbe; // lets a test drive the time

    using VersionTexts = QMap<QByteArray, QString>; // what was answered, by name

    void setState(State state, const QString& reason = {});
    void openChannel();
    void onOpened();
    void onLost(const QString& reason);
    void readVersions();
    void takeVersions(const VersionTexts& texts);
    quint16 bindDataPort(quint16 port, QString* error);
    void nameDataPort();
    void restoreOutputs();
    void askForOutput(const std::string& setting);
    void finishHandshake(const VersionTexts& texts);
    void poll();
    void observe(const std::string& command, const CommandChannel::Answer& answer);
    void report(const std::string& command, const CommandChannel::Answer& answer);
    void problemOnce(const QString& line);

    DataReceiver& m_receiver;
    MeasurementMonitor& m_monitor;
    LogModel& m_log;
    CommandChannel m_channel;
    QTimer m_retryTimer;
    QTimer m_pollTimer;
    State m_state = State::Disconnected;
    QString m_reason; // of Failed and Lost
    ControllerAddress m_address;
    BackendVersions m_versions;
    quint16 m_boundDataPort = 0;
    bool m_wasReady = false;
    bool m_polling = false;
    std::optional<bool> m_startedAnew;
    std::map<std::string, std::string>
        m_outputs;            // "output active chmon 6dmt" and its "yes" or "no"
    QSet<QString> m_reported; // problems that the log has since the last success
};

} // namespace workbench
