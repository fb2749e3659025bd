#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QFile>

/// Reads what the workbench prints: the beats and orders of the soak's user and the live rows.
class WorkbenchOutput {
public:
    /// Orders and what became of them go to `events`.
    explicit WorkbenchOutput(QFile& events)
        : m_events(events) {}

    void read(const QByteArray& bytes);

    /// From here on gaps between beats count.
    void watch();

    const QByteArray& state() const { return m_state; } ///< "away", "idle", "measuring"
    const QByteArray& modal() const { return m_modal; } ///< "-" for none
    quint64 frames() const { return m_frames; }
    int rowChanges() const { return m_rowChanges; } ///< printed rows that differ from those before
    int ordersDone() const { return m_ordersDone; }

    qint64 longestGapMs() const { return m_longestGapMs; }
    /// The longest gap without a dialog of the calibration, whose start has a longer time-out.
    qint64 longestUsualGapMs() const { return m_longestUsualGapMs; }
    bool wasFrozen() const { return m_wasFrozen; } ///< a gap of more than one time-out
    /// Since the last beat, by this process's clock.
    qint64 silentMs() const { return m_sinceBeat.isValid() ? m_sinceBeat.elapsed() : 0; }

private:
    void readLine(const QByteArray& line);
    void readBeat(const QList<QByteArray>& words);

    QFile& m_events;
    QByteArray m_pending;
    QByteArray m_state;
    QByteArray m_modal;
    quint64 m_frames = 0;
    quint64 m_beats = 0;
    qint64 m_lastBeatMs = -1;
    qint64 m_longestGapMs = 0;
    qint64 m_longestUsualGapMs = 0;
    bool m_wasFrozen = false;
    bool m_watching = false;
    QElapsedTimer m_sinceBeat;
    QByteArray m_rows; // printed since the last beat
    QByteArray m_lastRows;
    int m_rowChanges = 0;
    int m_ordersDone = 0;
};
