#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

#include <optional>
#include <string>

namespace workbench {

class ControllerSession;
class DataReceiver;
class DataWatch;
class MeasurementMonitor;

/// While the session leads to a simulator of our own that replays a recording: where the replay is,
/// asked for several times a second, and what the user does with it. A pause and the end are told
/// to the data watch: then no frames are to be expected.
class ReplayControl : public QObject {
    Q_OBJECT

public:
    enum class State {
        None,    ///< no replay
        Opening, ///< the simulator reads the recording, or is being connected to
        Stopped, ///< no answer, or no measurement; a new one begins with the first frame
        Playing,
        Paused,
        Ended ///< the last frame has been shown, or there is none
    };

    static constexpr int pollIntervalMs = 200;
    static constexpr double minSpeed = 0.1;
    static constexpr double maxSpeed = 10.0;

    ReplayControl(ControllerSession& session, DataReceiver& receiver, DataWatch& watch,
                  const MeasurementMonitor& monitor, QObject* parent = nullptr);

    /// The session will lead to a replay of this recording, until end(). `name` is for people.
    void begin(const QString& name);
    void end();

    State state() const;
    bool isActive() const { return m_active; }
    const QString& name() const { return m_name; }

    double position() const { return m_told.position; } ///< seconds behind the first frame
    double duration() const { return m_told.duration; } ///< seconds; 0: not known, or one frame
    double speed() const { return m_told.speed; }

    /// Whether it has ended before its end: the file has been changed since it was opened.
    bool isCutShort() const { return state() == State::Ended && m_told.isCutShort; }

    /// When the frame at position() was recorded, "2026-11-22 03:40:24 UTC"; empty when the
    /// recording does not know.
    const QString& recordedAt() const { return m_told.recordedAt; }

    /// What is replayed and how, in words: "REPLAY name, paused at 12.3 s". Empty for None.
    QString text() const;

    /// The same for places with little room: that it plays, and how fast, is not said.
    QString shortText() const;

    /// Goes on; at the end from the beginning.
    void play();
    void pause();
    void step(); ///< one frame
    void setSpeed(double speed);

    /// What is wanted while another seek is under way follows it; of several the last one.
    void seek(double position);

Q_SIGNALS:
    void changed(); ///< text() or state() has another value
    void moved();   ///< position(), duration() or speed() may have

private:
    struct Told {
        State state = State::Opening;
        double position = 0.0;
        double duration = 0.0;
        double speed = 1.0;
        QString recordedAt = {};
        bool isCutShort = false;
    };

    void poll();
    void take(const std::string& value);
    void command(const std::string& words);
    void sendSeek();
    void tell();

    ControllerSession& m_session;
    DataReceiver& m_receiver;
    DataWatch& m_watch;
    const MeasurementMonitor& m_monitor;
    QTimer m_timer;
    QString m_name;
    Told m_told;
    QString m_lastText;
    State m_lastState = State::None;
    std::optional<double> m_wanted; // a seek
    bool m_active = false;
    bool m_polling = false;
    bool m_seeking = false;
    bool m_jumped = false; // since the last poll
    int m_number = 0;      // of replays, for answers that come late
};

} // namespace workbench
