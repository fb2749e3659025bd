#include "probecheck/points/files/pointsession.h"

#include <QCoreApplication>
#include <QEvent>
#include <QFile>
#include <QPointer>
#include <QStandardPaths>

#include <chrono>
#include <utility>

namespace points {

PointSession::PointSession(QString folder, SessionFile::Sync sync)
    : m_file(std::move(folder), std::move(sync))
    , m_thread([this] { run(); }) {}

PointSession::~PointSession() {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isEnding = true;
    }
    m_wake.notify_one();
    m_thread.join();
    if (m_removeAtEnd) {
        m_file.remove();
    }
}

QString PointSession::defaultFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) +
           QStringLiteral("/probecheck");
}

void PointSession::lookForLeft() {
    post([this] {
        m_left.clear(); // unlocks
        m_left = leftSessions(m_file.folder());
        std::vector<PointRecord> points;
        int before = 0;
        for (const LeftSession& session : m_left) {
            for (PointRecord point : session.points) {
                point.number += before;
                points.push_back(std::move(point));
            }
            before = points.back().number;
        }
        if (!points.empty()) {
            tell([this, points] { Q_EMIT leftFound(points); });
        }
    });
}

void PointSession::addPoints(const std::vector<PointRecord>& points) {
    QByteArray lines;
    for (const PointRecord& point : points) {
        lines += pointLine(point);
    }
    append(lines);
}

void PointSession::addRenaming(int number, const QString& name) {
    append(renamingLine(number, name));
}

void PointSession::addDeletion(const std::vector<int>& numbers) {
    append(deletionLine(numbers));
}

void PointSession::addRestoring(const std::vector<int>& numbers) {
    append(restoringLine(numbers));
}

void PointSession::dropLeft() {
    post([this] { m_dropWhenWritten = true; });
}

void PointSession::append(const QByteArray& line) {
    ++m_steps;
    post([this, line] {
        m_file.add(line);
        ++m_stepsGiven;
    });
}

void PointSession::post(Job job) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_jobs.push_back(std::move(job));
    }
    m_wake.notify_one();
}

void PointSession::tell(Job report) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_reports.push_back(std::move(report));
    }
    QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

void PointSession::customEvent(QEvent* /*event*/) {
    std::deque<Job> reports;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        reports.swap(m_reports);
    }
    const QPointer<PointSession> self = this;
    for (const Job& report : reports) {
        if (!self.isNull()) {
            report();
        }
    }
}

void PointSession::run() {
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        const auto isCalled = [this] { return m_isEnding || !m_jobs.empty(); };
        if (m_file.hasPending()) {
            m_wake.wait_for(lock, std::chrono::milliseconds(retryMs), isCalled);
        } else {
            m_wake.wait(lock, isCalled);
        }
        const std::deque<Job> jobs = std::exchange(m_jobs, {});
        const bool isEnding = m_isEnding;
        lock.unlock();
        for (const Job& job : jobs) {
            job();
        }
        flush();
        lock.lock();
        if (isEnding) {
            return;
        }
    }
}

void PointSession::flush() {
    const bool wasPending = m_file.hasPending();
    const QString reason = m_file.write();
    if (!reason.isEmpty()) {
        const bool isNew = reason != m_lastReason || m_stepsGiven != m_stepsTried;
        m_lastReason = reason;
        m_stepsTried = m_stepsGiven;
        if (isNew) {
            tell([this, reason] { Q_EMIT failed(reason); });
        }
        return;
    }
    m_lastReason.clear();
    if (m_dropWhenWritten) {
        for (const LeftSession& session : m_left) {
            QFile::remove(session.path);
        }
        m_left.clear();
        m_dropWhenWritten = false;
    }
    if (wasPending) {
        tell([this, steps = m_stepsGiven] {
            m_stepsOnDisk = steps;
            Q_EMIT settled();
        });
    }
}

} // namespace points
