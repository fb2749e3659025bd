#include "probecheck/points/files/sessionfile.h"

#include "probecheck/points/files/pointjson.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QUuid>

#include <cerrno>
#include <fcntl.h>
#include <map>
#include <set>
#include <sys/file.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace points {

namespace {

QString reasonOf(int error) {
    return QString::fromStdString(std::generic_category().message(error));
}

/// What cannot be cut off does no harm: it is written over, or is no line.
void cutOff(int file, qint64 size) {
    [[maybe_unused]] const int result = ::ftruncate(file, size);
}

QByteArray lineOf(const QJsonObject& object) {
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

QByteArray numbersLine(const QString& type, const std::vector<int>& numbers) {
    QJsonArray array;
    for (const int number : numbers) {
        array.append(number);
    }
    return lineOf({{QStringLiteral("type"), type}, {QStringLiteral("numbers"), array}});
}

std::set<int> numbersOf(const QJsonObject& object) {
    std::set<int> numbers;
    const QJsonArray array = object.value(QLatin1String("numbers")).toArray();
    for (const QJsonValue& value : array) {
        numbers.insert(value.toInt());
    }
    return numbers;
}

} // namespace

Descriptor::~Descriptor() {
    if (isOpen()) {
        ::close(m_number);
    }
}

Descriptor::Descriptor(Descriptor&& other) noexcept
    : m_number(std::exchange(other.m_number, -1)) {}

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
    std::swap(m_number, other.m_number);
    return *this;
}

SessionFile::Sync SessionFile::systemSync() {
    return [](int file) { return ::fsync(file); };
}

SessionFile::SessionFile(QString folder, Sync sync)
    : m_folder(std::move(folder))
    , m_sync(std::move(sync)) {}

QString SessionFile::create() {
    if (!QDir().mkpath(m_folder)) {
        return QCoreApplication::translate("points", "the folder %1 cannot be made").arg(m_folder);
    }
    const QString name =
        QStringLiteral("points-%1-%2.jsonl")
            .arg(QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z'")),
                 QUuid::createUuid().toString(QUuid::Id128).left(8));
    m_path = QDir(m_folder).filePath(name);
    Descriptor file(::open(QFile::encodeName(m_path).constData(),
                           O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!file.isOpen() || ::flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
        return reasonOf(errno);
    }
    m_file = std::move(file);
    return {};
}

QString SessionFile::fail() {
    const QString reason = reasonOf(errno);
    cutOff(m_file.get(), m_size);
    return reason;
}

QString SessionFile::write() {
    if (!hasPending()) {
        return {};
    }
    if (!m_file.isOpen()) {
        const QString reason = create();
        if (!reason.isEmpty()) {
            return reason;
        }
    }
    qint64 written = 0;
    while (written < m_pending.size()) {
        const ssize_t part =
            ::pwrite(m_file.get(), m_pending.constData() + written,
                     static_cast<std::size_t>(m_pending.size() - written), m_size + written);
        if (part < 0 && errno != EINTR) {
            return fail();
        }
        written += part > 0 ? part : 0;
    }
    if (m_sync(m_file.get()) != 0) {
        return fail();
    }
    if (!m_folderIsSynced) {
        const Descriptor folder(
            ::open(QFile::encodeName(m_folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (!folder.isOpen() || m_sync(folder.get()) != 0) {
            return fail();
        }
        m_folderIsSynced = true;
    }
    m_size += written;
    m_pending.clear();
    return {};
}

void SessionFile::remove() {
    if (m_file.isOpen()) {
        QFile::remove(m_path);
    }
}

std::vector<LeftSession> leftSessions(const QString& folder) {
    std::vector<LeftSession> found;
    const QDir place(folder);
    const QStringList names =
        place.entryList({QStringLiteral("points-*.jsonl")}, QDir::Files, QDir::Name);
    for (const QString& name : names) {
        const QString path = place.filePath(name);
        Descriptor lock(::open(QFile::encodeName(path).constData(), O_RDWR | O_CLOEXEC));
        if (!lock.isOpen() || ::flock(lock.get(), LOCK_EX | LOCK_NB) != 0) {
            continue;
        }
        QFile file;
        if (!file.open(lock.get(), QIODevice::ReadOnly)) {
            continue;
        }
        QByteArray text = file.readAll();
        const int whole = text.lastIndexOf('\n') + 1;
        if (whole < text.size()) {
            text.truncate(whole);
            cutOff(lock.get(), whole);
        }
        std::vector<PointRecord> points = pointsOfLines(text);
        if (!points.empty()) {
            found.push_back({path, std::move(lock), std::move(points)});
        }
    }
    return found;
}

QByteArray pointLine(const PointRecord& point) {
    return lineOf(toJson(point));
}

QByteArray renamingLine(int number, const QString& name) {
    return lineOf({{QStringLiteral("type"), QStringLiteral("name")},
                   {QStringLiteral("number"), number},
                   {QStringLiteral("name"), name}});
}

QByteArray deletionLine(const std::vector<int>& numbers) {
    return numbersLine(QStringLiteral("deleted"), numbers);
}

QByteArray restoringLine(const std::vector<int>& numbers) {
    return numbersLine(QStringLiteral("restored"), numbers);
}

std::vector<PointRecord> pointsOfLines(const QByteArray& lines) {
    std::map<int, PointRecord> points;
    std::set<int> deleted;
    const QList<QByteArray> all = lines.split('\n');
    for (const QByteArray& line : all) {
        const QJsonObject object = QJsonDocument::fromJson(line).object();
        const QString type = object.value(QLatin1String("type")).toString();
        if (type == QLatin1String("point")) {
            if (const std::optional<PointRecord> point = fromJson(object)) {
                points.insert_or_assign(point->number, *point);
            }
        } else if (type == QLatin1String("name")) {
            const auto point = points.find(object.value(QLatin1String("number")).toInt());
            if (point != points.end()) {
                point->second.name = object.value(QLatin1String("name")).toString();
            }
        } else if (type == QLatin1String("deleted")) {
            deleted.merge(numbersOf(object));
        } else if (type == QLatin1String("restored")) {
            for (const int number : numbersOf(object)) {
                deleted.erase(number);
            }
        }
    }
    std::vector<PointRecord> rest;
    for (const auto& [number, point] : points) {
        if (deleted.count(number) == 0) {
            rest.push_back(point);
        }
    }
    return rest;
}

} // namespace points
