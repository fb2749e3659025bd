#include "probecheck/points/files/sessionwriter.h"

#include "probecheck/points/files/pointsession.h"

#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QFile>

#include <utility>

namespace points {

namespace {

/// An empty file that is there while no sounds are wanted.
QString soundsOffIn(const QString& folder) {
    return folder + QStringLiteral("/sounds-off");
}

} // namespace

SessionWriter::SessionWriter(PointSession& session, QString folder, SessionFile::Sync sync)
    : m_session(&session)
    , m_file(folder, sync)
    , m_left(std::move(folder), std::move(sync)) {}

void SessionWriter::add(const QByteArray& line) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        ++m_stepsAdded;
    }
    post([this, line] {
        m_file.add(line);
        ++m_stepsGiven;
    });
}

void SessionWriter::lookForLeft() {
    post([this] { findLeft(); });
}

void SessionWriter::rememberSounds(bool wanted) {
    post([this, wanted] {
        QFile mark(soundsOffIn(m_file.folder()));
        if (wanted) {
            mark.remove();
        } else {
            QDir().mkpath(m_file.folder());
            mark.open(QIODevice::WriteOnly);
        }
    });
}

void SessionWriter::dropLeft() {
    post([this] { m_dropWhenWritten = true; });
}

std::deque<SessionWriter::Report> SessionWriter::takeReports() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return std::exchange(m_reports, {});
}

SessionWriter::Unwritten SessionWriter::waitUntilWritten(std::chrono::milliseconds patience) {
    std::unique_lock<std::mutex> lock(m_mutex);
    const bool isRested =
        m_rested.wait_for(lock, patience, [this] { return m_jobs.empty() && !m_isBusy; });
    Unwritten unwritten;
    unwritten.steps = m_stepsAdded - m_stepsWritten;
    unwritten.reason =
        isRested ? m_reason : QCoreApplication::translate("points", "the disk does not answer");
    return unwritten;
}

void SessionWriter::end(bool removes) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_session = nullptr;
        m_removes = removes;
    }
    m_wake.notify_one();
}

void SessionWriter::post(Job job) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_jobs.push_back(std::move(job));
    }
    m_wake.notify_one();
}

void SessionWriter::tell(Report report) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_session != nullptr) {
        m_reports.push_back(std::move(report));
        QCoreApplication::postEvent(m_session, new QEvent(QEvent::User));
    }
}

void SessionWriter::run() {
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        const auto isCalled = [this] { return m_session == nullptr || !m_jobs.empty(); };
        if (m_file.hasPending()) {
            m_wake.wait_for(lock, std::chrono::milliseconds(retryMs), isCalled);
        } else {
            m_wake.wait(lock, isCalled);
        }
        const std::deque<Job> jobs = std::exchange(m_jobs, {});
        const bool isEnding = m_session == nullptr;
        const bool removes = m_removes;
        m_isBusy = true;
        lock.unlock();
        for (const Job& job : jobs) {
            job();
        }
        flush();
        if (isEnding && removes) {
            m_file.remove();
        }
        lock.lock();
        m_isBusy = false;
        m_reason = m_lastReason;
        m_rested.notify_all();
        if (isEnding) {
            return;
        }
    }
}

void SessionWriter::findLeft() {
    if (QFile::exists(soundsOffIn(m_file.folder()))) {
        tell([](PointSession& session) { Q_EMIT session.soundsFoundOff(); });
    }
    const std::vector<PointRecord> points = m_left.find();
    if (!points.empty()) {
        tell([points](PointSession& session) { Q_EMIT session.leftFound(points); });
    }
}

void SessionWriter::flush() {
    const bool wasPending = m_file.hasPending();
    const QString reason = m_file.write();
    if (!reason.isEmpty()) {
        const bool isNew = reason != m_lastReason || m_stepsGiven != m_stepsTried;
        m_lastReason = reason;
        m_stepsTried = m_stepsGiven;
        if (isNew) {
            tell([reason](PointSession& session) { Q_EMIT session.failed(reason); });
        }
        return;
    }
    m_lastReason.clear();
    if (m_dropWhenWritten) {
        m_left.remove();
        m_dropWhenWritten = false;
    }
    if (wasPending) {
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_stepsWritten = m_stepsGiven;
        }
        tell([steps = m_stepsGiven](PointSession& session) { session.settle(steps); });
    }
}

} // namespace points
