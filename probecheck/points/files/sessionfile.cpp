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
    if (!writeAt(m_file.get(), m_pending, m_size)) {
        return fail();
    }
    if (m_sync(m_file.get()) != 0) {
        return fail();
    }
    if (!m_folderIsSynced) {
        const Descriptor folder = openFolder(m_folder);
        if (!folder.isOpen() || m_sync(folder.get()) != 0) {
            return fail();
        }
        m_folderIsSynced = true;
    }
    m_size += m_pending.size();
    m_pending.clear();
    return {};
}

void SessionFile::remove() {
    if (m_file.isOpen()) {
        QFile::remove(m_path);
    }
}

Descriptor openFolder(const QString& folder) {
    return Descriptor(
        ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

bool writeAt(int file, const QByteArray& bytes, qint64 place) {
    qint64 written = 0;
    while (written < bytes.size()) {
        const ssize_t part =
            ::pwrite(file, bytes.constData() + written,
                     static_cast<std::size_t>(bytes.size() - written), place + written);
        if (part < 0 && errno != EINTR) {
            return false;
        }
        written += part > 0 ? part : 0;
    }
    return true;
}

void cutOff(int file, qint64 size) {
    [[maybe_unused]] const int result = ::ftruncate(file, size);
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

QByteArray mergedLine(const QStringList& files) {
    return lineOf({{QStringLiteral("type"), QStringLiteral("merged")},
                   {QStringLiteral("files"), QJsonArray::fromStringList(files)}});
}

SessionContent contentOfLines(const QByteArray& lines) {
    SessionContent content;
    std::map<int, PointRecord> points;
    std::set<int> deleted;
    const QList<QByteArray> all = lines.split('\n');
    for (const QByteArray& line : all) {
        const QJsonObject object = QJsonDocument::fromJson(line).object();
        const QString type = object.value(QLatin1String("type")).toString();
        const std::optional<PointRecord> point =
            type == QLatin1String("point") ? fromJson(object) : std::nullopt;
        if (point) {
            points.insert_or_assign(point->number, *point);
        } else if (type == QLatin1String("name")) {
            const auto named = points.find(object.value(QLatin1String("number")).toInt());
            if (named != points.end()) {
                named->second.name = object.value(QLatin1String("name")).toString();
            }
        } else if (type == QLatin1String("deleted")) {
            deleted.merge(numbersOf(object));
        } else if (type == QLatin1String("restored")) {
            for (const int number : numbersOf(object)) {
                deleted.erase(number);
            }
        } else if (type == QLatin1String("merged")) {
            const QJsonArray files = object.value(QLatin1String("files")).toArray();
            for (const QJsonValue& file : files) {
                content.merged += file.toString();
            }
        } else if (!line.isEmpty()) {
            content.strange += line + '\n';
        }
    }
    for (const auto& [number, point] : points) {
        if (deleted.count(number) == 0) {
            content.points.push_back(point);
        }
    }
    return content;
}

} // namespace points
