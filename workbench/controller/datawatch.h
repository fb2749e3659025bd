#pragma once

#include "workbench/controller/data/bootclock.h"

#include <QObject>
#include <QString>
#include <QTimer>

namespace workbench {

class DataReceiver;
class MeasurementMonitor;
class MeasurementTeller;

/// Sees while the controller measures that its data come. Without a readable frame for `oldAfter`,
/// or without a line that came before and has a subscriber, the data are old and age() says so;
/// after `stoppedAfter` the requesters are told that the measurement stopped, until the next frame
/// that has these lines. A controller whose frames come that seldom is given the time of two
/// frames, and of three. Lives on the GUI thread.
class DataWatch : public QObject {
    Q_OBJECT

public:
    static constexpr double oldAfter = 0.5;     ///< seconds
    static constexpr double stoppedAfter = 2.0; ///< seconds

    /// What most likely keeps the data away, as far as it can be told from here.
    enum class Cause {
        NoPort,       ///< none could be opened
        WaitsForSync, ///< the controller says that it waits for its sync signal
        LineMissing,  ///< frames arrive without line()
        LineRefused,  ///< who could read line() before cannot any more
        Unreadable,   ///< frames arrive that cannot be read
        Foreign,      ///< datagrams arrive from somebody else
        NeverCame,    ///< none since the connection was made
        Stopped       ///< they came before
    };

    DataWatch(DataReceiver& receiver, const MeasurementMonitor& monitor, MeasurementTeller& teller,
              QObject* parent = nullptr);

    /// Seconds without a readable frame, or without line(), while the controller measures; 0 while
    /// the data are not old.
    double age() const { return m_age; }
    Cause cause() const { return m_cause; } ///< while age() is above 0
    QString line() const {
        return m_line;
    } ///< its channel, such as "6dmt2"; where cause() names it

    /// Frames are not to be expected though the controller measures: a replay that the user has
    /// paused. Once they are expected again, ages are counted from that moment.
    void setPaused(bool paused);

    /// A replay in slow motion: at a speed below 1 all these times are as much longer, for its
    /// frames are as far apart, and no loss is estimated. Ages are counted from this moment.
    void setSpeed(double speed);

    /// age() as it is shown: tenths below a second, then whole seconds.
    QString ageText() const;

Q_SIGNALS:
    /// ageText() or cause() has another value.
    void changed();

private:
    friend struct DataWatchProbe; // lets a test drive the time

    void onMeasuring(bool measuring);
    void look() { lookAt(BootClock::now()); }
    void lookAt(BootClock::time_point now);
    Cause likelyCause() const;
    void show(double age, Cause cause = Cause::Stopped);
    void expectFrames();

    DataReceiver& m_receiver;
    const MeasurementMonitor& m_monitor;
    MeasurementTeller& m_teller;
    QTimer m_timer;
    BootClock::time_point m_since; // begin of the measurement, end of a pause, change of speed
    double m_age = 0.0;
    Cause m_cause = Cause::Stopped;
    QString m_line;
    double m_slowness = 1.0; // times
    bool m_paused = false;
    bool m_told = false;
    quint64 m_unreadableThen = 0; // counts when the data became old
    quint64 m_foreignThen = 0;
};

} // namespace workbench
