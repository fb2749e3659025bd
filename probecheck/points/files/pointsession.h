#pragma once

#include "probecheck/points/files/sessionfile.h"

#include <QObject>
#include <QString>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace points {

/// Keeps what happens to the list in a file, so that nothing is lost when the program or the
/// machine stops. A thread of its own writes, so that no disk makes the window wait; what it
/// reports comes as signals of the event loop. GUI thread only.
///
/// Instances do not meet: each has a file of its own, locked as long as it lives. What one that has
/// crashed leaves is unlocked, and is offered to whoever looks for it first.
class PointSession : public QObject {
    Q_OBJECT

public:
    static constexpr int retryMs = 1000; ///< after which a write that failed is tried again

    /// `sync` is fsync(), but for tests.
    explicit PointSession(QString folder, SessionFile::Sync sync = SessionFile::systemSync());

    /// Tries once more to write what is not written yet. Waits for the disk.
    ~PointSession() override;

    /// Where sessions are kept: a folder of the host's own data.
    static QString defaultFolder();

    /// Looks for sessions that others have left; leftFound() tells when there are points.
    void lookForLeft();

    /// Keeps these points. Each call is a step: settled() tells when it is on the disk.
    void addPoints(const std::vector<PointRecord>& points);
    void addRenaming(int number, const QString& name);
    void addDeletion(const std::vector<int>& numbers);
    void addRestoring(const std::vector<int>& numbers);

    /// Steps so far, and those of them that are on the disk as far as reported.
    quint64 steps() const { return m_steps; }
    quint64 stepsOnDisk() const { return m_stepsOnDisk; }

    /// What was found goes: its points have been added to this session, or nobody wants them. Those
    /// that were added are on the disk here before the others are taken away.
    void dropLeft();

    /// At the end, nobody wants this session's points any more: its file goes with this object.
    void removeAtEnd() { m_removeAtEnd = true; }

Q_SIGNALS:
    /// All steps up to stepsOnDisk() are on the disk.
    void settled();

    /// The newest steps are not on the disk for this reason, in the system's words. They are tried
    /// again each second until settled() tells of them.
    void failed(const QString& reason);

    /// Points that others have left, in the order of their sessions, numbers ascending.
    void leftFound(const std::vector<points::PointRecord>& points);

protected:
    void customEvent(QEvent* event) override;

private:
    using Job = std::function<void()>;

    void post(Job job);
    void tell(Job report);
    void append(const QByteArray& line);
    void run();
    void flush();

    quint64 m_steps = 0;
    quint64 m_stepsOnDisk = 0;
    bool m_removeAtEnd = false;

    std::mutex m_mutex; ///< guards the next three
    std::condition_variable m_wake;
    std::deque<Job> m_jobs;
    std::deque<Job> m_reports; ///< for the event loop
    bool m_isEnding = false;

    // The writing thread's.
    SessionFile m_file;
    quint64 m_stepsGiven = 0;
    quint64 m_stepsTried = 0; ///< when it last failed
    QString m_lastReason;
    bool m_dropWhenWritten = false;
    std::vector<LeftSession> m_left;

    std::thread m_thread; // last: it uses all of the others
};

} // namespace points
