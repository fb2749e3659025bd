#pragma once

#include "workbench/controller/recordingheaderquery.h"

#include <QObject>
#include <QString>
#include <QTimer>

namespace workbench {

class ControllerSession;
class LogModel;
class Recorder;

/// A recording from the user's side: asks the controller for the header, starts and stops the
/// recorder, and tells the log what becomes of it.
class RecordingControl : public QObject {
    Q_OBJECT

public:
    RecordingControl(ControllerSession& session, Recorder& recorder, LogModel& log,
                     QObject* parent = nullptr);

    /// changed() follows in any case, unless a recording is about to begin already.
    void start(const QString& fileName);

    /// Takes no more frames; changed() follows when the last one is written.
    void stop();

    /// stop() for a program that ends: changed() has been emitted on return. Waits for the disk,
    /// but not for one that does not answer.
    void finish();

    bool isRunning() const;      ///< from start() until the last frame is written
    QString stateText() const;   ///< "recording" and the like
    QString numbersText() const; ///< how many frames to which file

Q_SIGNALS:
    /// A recording has begun or ended; `error` is not empty when it could not begin or go on, or
    /// lacks frames.
    void changed(bool running, const QString& error);

private:
    void follow();
    void tellProgress();
    void tellEnd();
    void refuse(const QString& fileName, const QString& error);

    Recorder& m_recorder;
    LogModel& m_log;
    RecordingHeaderQuery m_headerQuery;
    QTimer m_followTimer; // runs while a recording does
    bool m_begun = false; // of what has been told
    bool m_stalled = false;
    bool m_incomplete = false;
};

} // namespace workbench
