#pragma once

#include "general/leavablethread.h"
#include "probecheck/points/record/pointrecord.h"

#include <QString>

#include <atomic>
#include <memory>
#include <utility>
#include <vector>

namespace points {

/// Writes points as a CSV file on a thread of its own. The file appears when it is whole, or not at
/// all: what was written of one that is cancelled or fails is removed. GUI thread only.
class PointExport {
public:
    static constexpr int longestWaitMs = 500; ///< of the destructor

    enum class Ending { Written, Cancelled, Failed };

    /// Begins at once, and replaces the file in the end.
    PointExport(std::vector<PointRecord> points, const QString& path);
    /// Cancels. A thread that hangs in a disk is left to itself.
    ~PointExport();
    PointExport(const PointExport&) = delete;
    PointExport& operator=(const PointExport&) = delete;

    int count() const { return static_cast<int>(m_job->points.size()); } ///< of the points
    double progress() const;                                             ///< 0 to 1
    bool isOver() const { return m_thread.isOver(); }
    /// It is over as soon as the disk answers, and has written nothing unless it was over already.
    void cancel();

    // Once it is over.
    Ending ending() const { return m_job->ending; }
    /// Why it failed, in the system's words.
    const QString& reason() const { return m_job->reason; }

private:
    struct Job {
        Job(std::vector<PointRecord> thePoints, QString thePath)
            : points(std::move(thePoints))
            , path(std::move(thePath)) {}
        std::vector<PointRecord> points;
        QString path;
        std::atomic<std::size_t> done{0};
        std::atomic<bool> isCancelled{false};
        Ending ending = Ending::Failed; ///< the thread's until it is over, as is the next
        QString reason;
    };

    static void run(Job& job);

    std::shared_ptr<Job> m_job;
    LeavableThread m_thread;
};

} // namespace points
