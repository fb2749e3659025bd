#pragma once

#include "workbench/controller/tools/recordingheaderquery.h"

#include <QObject>
#include <QString>
#include <QTimer>

namespace workbench {

class ControllerSession;
class LogModel;
class Recorder;

/// A recording from the user's side: asks the controller for the header, starts and stops the
/// recorder, and tells the log what becomes of it. A recording outlives a connection that is lost
/// and comes back soon; one that stays away, or is closed, ends it.
class RecordingControl : public QObject {
    Q_OBJECT

public:
    /// A controller that is away for longer is gone.
    static constexpr int usualGoneMs = 30000;
    /// Less room than for so long is told.
    static constexpr int shortRoomSeconds = 600;

    RecordingControl(ControllerSession& session, Recorder& recorder, LogModel& log,
                     QObject* parent = nullptr, int goneMs = usualGoneMs);

    /// changed() follows in any case, unless a recording is about to begin already; until then
    /// isStarting().
    void start(const QString& fileName);

    /// A path for the next recording: named after the present date and time, in the folder of the
    /// last one.
    QString suggestedFile() const;

    /// Takes no more frames; changed() follows when the last one is written. One that has not begun
    /// yet does not begin.
    void stop();

    /// stop() for a program that ends: changed() has been emitted on return. Waits for the disk,
    /// but not for one that does not answer.
    void finish();

    bool isStarting() const { return m_headerQuery.isAsking(); } ///< the controller is asked
    bool isRunning() const;      ///< from then on until the last frame is written
    QString stateText() const;   ///< "recording" and the like
    QString numbersText() const; ///< frames, room on the disk, file
    QString diskText() const;    ///< free space, for how long, what is missing; empty without one

Q_SIGNALS:
    /// A slow controller takes a while to tell what is to stand in the file; changed() follows.
    void starting();

    /// A recording has begun or ended; `error` is not empty when it could not begin or go on, or
    /// lacks frames.
    void changed(bool running, const QString& error);

    /// A recording has not begun although it should, has ended by itself or lacks frames: a
    /// sentence for the user, with the reason and what is in the file. After changed().
    void failed(const QString& text);

    /// How long the disk has room for at the present rate, as a text, when that is not long; empty
    /// when it is long again or the recording has ended.
    void roomIsShort(const QString& left);

private:
    void follow();
    void watchConnection();
    void endFor(const QString& reason);
    void tellRoom();
    void tellProgress();
    void tellEnd();
    void cancelStart();
    void tellNotBegun(const QString& sentence, const QString& error);

    ControllerSession& m_session;
    Recorder& m_recorder;
    LogModel& m_log;
    RecordingHeaderQuery m_headerQuery;
    QString m_startFile;  // while isStarting()
    QString m_folder;     // of the last recording
    QTimer m_followTimer; // runs while a recording does
    QTimer m_goneTimer;   // runs while the connection is lost
    QString m_endReason;  // of an end that the recorder does not know about
    QString m_room;       // the last roomIsShort()
    bool m_stopping = false;
    bool m_begun = false; // of what has been told
    bool m_stalled = false;
    bool m_incomplete = false;
};

/// How long the room lasts at a rate; -1: unknown.
qint64 secondsLeft(qint64 freeBytes, double bytesPerSecond);

/// A time for people: "3 min".
QString timeText(qint64 seconds);

} // namespace workbench
