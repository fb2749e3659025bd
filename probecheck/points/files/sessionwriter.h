#pragma once

#include "probecheck/points/files/leftsessions.h"
#include "probecheck/points/files/sessionfile.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

namespace points {

class PointSession;

/// What the thread of a session does, and what it shares with the GUI thread: works off jobs in
/// their order, brings what they add to the file to the disk, and leaves reports behind. Shared, so
/// that a disk that hangs may keep it longer than the session lives.
class SessionWriter {
public:
    using Report = std::function<void(PointSession&)>;

    static constexpr int retryMs = 1000; ///< after which a write that failed is tried again

    /// Reports are announced to `session` by an event.
    SessionWriter(PointSession& session, QString folder, SessionFile::Sync sync);

    // The GUI thread's. None of them waits for the disk but waitUntilWritten().

    void add(const QByteArray& line); ///< one more step
    void lookForLeft();
    void rememberSounds(bool wanted);
    void dropLeft();
    std::deque<Report> takeReports();

    /// What is not on the disk, and why; no steps when all is well.
    struct Unwritten {
        quint64 steps = 0;
        QString reason;
    };
    Unwritten waitUntilWritten(std::chrono::milliseconds patience);

    /// No more jobs and reports: run() comes to its end. `removes`: and takes the file away.
    void end(bool removes);

    /// The thread: until end() has been called and all was tried once more.
    void run();

private:
    using Job = std::function<void()>;

    void post(Job job);
    void tell(Report report);
    void findLeft();
    void flush();

    std::mutex m_mutex; ///< guards the following
    std::condition_variable m_wake;
    std::condition_variable m_rested;
    PointSession* m_session; ///< null when it has ended
    std::deque<Job> m_jobs;
    std::deque<Report> m_reports;
    bool m_isBusy = false;
    bool m_removes = false;
    quint64 m_stepsAdded = 0;
    quint64 m_stepsWritten = 0;
    QString m_reason; ///< why those between are not; empty when it is not known

    // The thread's alone.
    SessionFile m_file;
    quint64 m_stepsGiven = 0;
    quint64 m_stepsTried = 0; ///< when it last failed
    QString m_lastReason;
    bool m_dropWhenWritten = false;
    LeftSessions m_left;
};

} // namespace points
