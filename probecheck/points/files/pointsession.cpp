#include "probecheck/points/files/pointsession.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QStandardPaths>

#include <algorithm>
#include <utility>

namespace points {

PointSession::PointSession(QString folder, SessionFile::Sync sync)
    : m_writer(std::make_shared<SessionWriter>(*this, std::move(folder), std::move(sync)))
    , m_thread([writer = m_writer] { writer->run(); }) {}

PointSession::~PointSession() {
    m_writer->end(m_removeAtEnd);
    m_thread.end(m_patience);
}

QString PointSession::defaultFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) +
           QStringLiteral("/probecheck");
}

void PointSession::lookForLeft() {
    m_writer->lookForLeft();
}

void PointSession::rememberSounds(bool wanted) {
    m_writer->rememberSounds(wanted);
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

SessionWriter::Unwritten PointSession::waitForDisk() {
    QElapsedTimer waited;
    waited.start();
    SessionWriter::Unwritten unwritten = m_writer->waitUntilWritten(m_patience);
    m_patience -= std::min(m_patience, std::chrono::milliseconds(waited.elapsed()));
    return unwritten;
}

void PointSession::dropLeft() {
    m_writer->dropLeft();
}

void PointSession::append(const QByteArray& line) {
    ++m_steps;
    m_writer->add(line);
}

void PointSession::settle(quint64 steps) {
    m_stepsOnDisk = steps;
    Q_EMIT settled();
}

void PointSession::customEvent(QEvent* /*event*/) {
    const QPointer<PointSession> self = this;
    const std::deque<SessionWriter::Report> reports = m_writer->takeReports();
    for (const SessionWriter::Report& report : reports) {
        if (!self.isNull()) {
            report(*this);
        }
    }
}

} // namespace points
