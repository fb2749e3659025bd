#include "probecheck/points/files/leftsessions.h"

#include <QDir>
#include <QFile>
#include <QUuid>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace points {

namespace {

/// Not open when somebody holds it, or has taken it away meanwhile.
Descriptor lockedFile(const QByteArray& path) {
    Descriptor file(::open(path.constData(), O_RDWR | O_CLOEXEC));
    struct stat what = {};
    const bool isOurs = file.isOpen() && ::flock(file.get(), LOCK_EX | LOCK_NB) == 0 &&
                        ::fstat(file.get(), &what) == 0 && what.st_nlink > 0;
    return isOurs ? std::move(file) : Descriptor();
}

QStringList namesIn(const QString& folder, const QString& pattern) {
    return QDir(folder).entryList({pattern}, QDir::Files, QDir::Name);
}

} // namespace

LeftSessions::LeftSessions(QString folder, SessionFile::Sync sync)
    : m_folder(std::move(folder))
    , m_sync(std::move(sync)) {}

std::vector<PointRecord> LeftSessions::find() {
    m_held.clear(); // unlocks
    m_content = {};
    m_place = openFolder(m_folder);
    if (!m_place.isOpen() ||
        (::flock(m_place.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)) {
        return {};
    }
    takePartsAway();
    bool isOne = true;
    const QStringList names = namesIn(m_folder, QStringLiteral("points-*.jsonl"));
    for (const QString& name : names) {
        if (hold(name) && m_held.size() >= mostAtOnce) {
            isOne = makeOne();
            if (!isOne) {
                break;
            }
        }
    }
    if (isOne && m_held.size() > 1) {
        makeOne();
    }
    m_place = Descriptor();
    return std::exchange(m_content, {}).points;
}

void LeftSessions::remove() {
    for (auto session = m_held.rbegin(); session != m_held.rend(); ++session) {
        takeAway(session->name);
    }
    m_held.clear();
}

// Those without points are of no interest, and stay.
bool LeftSessions::hold(const QString& name) {
    Descriptor lock = lockedFile(pathOf(name));
    QFile file;
    if (!lock.isOpen() || !file.open(lock.get(), QIODevice::ReadOnly)) {
        return false;
    }
    if (m_content.merged.contains(name)) {
        if (m_sync(m_place.get()) == 0 && takeAway(name)) {
            return false;
        }
    } else {
        QByteArray text = file.readAll();
        const int whole = text.lastIndexOf('\n') + 1;
        if (whole < text.size()) {
            text.truncate(whole);
            cutOff(lock.get(), whole);
        }
        SessionContent content = contentOfLines(text);
        if (content.points.empty()) {
            return false;
        }
        const int before = m_content.points.empty() ? 0 : m_content.points.back().number;
        for (PointRecord& point : content.points) {
            point.number += before;
            m_content.points.push_back(std::move(point));
        }
        m_content.merged += content.merged;
        m_content.strange += content.strange;
    }
    m_held.push_back({name, std::move(lock)});
    return true;
}

// The first session is replaced by all of them in one step. Until the others are gone its first
// line tells that it has theirs.
bool LeftSessions::makeOne() {
    QStringList others = m_content.merged;
    for (std::size_t i = 1; i < m_held.size(); ++i) {
        others += m_held[i].name;
    }
    others.removeDuplicates();
    QStringList present;
    for (const QString& name : qAsConst(others)) {
        if (QFile::exists(QDir(m_folder).filePath(name))) {
            present += name;
        }
    }
    QByteArray text = mergedLine(present);
    for (const PointRecord& point : m_content.points) {
        text += pointLine(point);
    }
    text += m_content.strange;

    const QByteArray path = pathOf(
        QStringLiteral("points-%1.part").arg(QUuid::createUuid().toString(QUuid::Id128).left(8)));
    Descriptor part(
        ::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!part.isOpen()) {
        return false;
    }
    if (::flock(part.get(), LOCK_EX | LOCK_NB) != 0 || !writeAt(part.get(), text, 0) ||
        m_sync(part.get()) != 0 ||
        std::rename(path.constData(), pathOf(m_held.front().name).constData()) != 0) {
        ::unlink(path.constData());
        return false;
    }
    m_held.front().lock = std::move(part);
    m_content.merged = present;
    if (m_sync(m_place.get()) != 0) {
        return false;
    }
    std::vector<Held> rest;
    for (Held& session : m_held) {
        if (rest.empty() || !takeAway(session.name)) {
            rest.push_back(std::move(session));
        }
    }
    m_held = std::move(rest);
    m_sync(m_place.get());
    return m_held.size() == 1;
}

bool LeftSessions::takeAway(const QString& name) const {
    return ::unlink(pathOf(name).constData()) == 0;
}

// What a crash has left of making one.
void LeftSessions::takePartsAway() const {
    const QStringList names = namesIn(m_folder, QStringLiteral("points-*.part"));
    for (const QString& name : names) {
        if (lockedFile(pathOf(name)).isOpen()) {
            takeAway(name);
        }
    }
}

QByteArray LeftSessions::pathOf(const QString& name) const {
    return QFile::encodeName(QDir(m_folder).filePath(name));
}

} // namespace points
