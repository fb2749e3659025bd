#include "soak/processfigures.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/prctl.h>
#include <unistd.h>

namespace {

QByteArray content(const QString& file) {
    QFile source(file);
    return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray();
}

qint64 residentKb(const QString& folder) {
    const QList<QByteArray> lines = content(folder + QLatin1String("/status")).split('\n');
    for (const QByteArray& line : lines) {
        if (line.startsWith("VmRSS:")) {
            return line.mid(6).trimmed().split(' ').constFirst().toLongLong();
        }
    }
    return 0;
}

// From the state on, which stands behind the name in brackets.
QList<QByteArray> statFields(const QString& folder) {
    const QByteArray stat = content(folder + QLatin1String("/stat"));
    return stat.mid(stat.lastIndexOf(')') + 2).split(' ');
}

double cpuSeconds(const QString& folder) {
    constexpr int userTime = 11;
    const QList<QByteArray> fields = statFields(folder);
    const double ticks = fields.value(userTime).toDouble() + fields.value(userTime + 1).toDouble();
    return ticks / static_cast<double>(::sysconf(_SC_CLK_TCK));
}

// Numbers that differ from one socket or pipe to the next would make all of them look new.
QString kindOf(const QString& target) {
    const int bracket = target.indexOf(QLatin1String(":["));
    return bracket < 0 ? target : target.left(bracket);
}

} // namespace

ProcessFigures ProcessFigures::of(qint64 pid) {
    ProcessFigures figures;
    const QString folder = QStringLiteral("/proc/%1").arg(pid);
    figures.residentKb = ::residentKb(folder);
    figures.cpuSeconds = ::cpuSeconds(folder);
    const QString tasks = folder + QLatin1String("/task");
    const QStringList threads = QDir(tasks).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& thread : threads) {
        figures.threads += QString::fromLocal8Bit(
            content(tasks + QLatin1Char('/') + thread + QLatin1String("/comm")).trimmed());
    }
    const QDir descriptors(folder + QLatin1String("/fd"));
    const QStringList numbers =
        descriptors.entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System);
    for (const QString& number : numbers) {
        char target[4096];
        const ssize_t size = ::readlink(QFile::encodeName(descriptors.filePath(number)).constData(),
                                        target, sizeof(target));
        if (size > 0) {
            figures.files += kindOf(QString::fromLocal8Bit(target, static_cast<int>(size)));
        }
    }
    figures.threads.sort();
    figures.files.sort();
    return figures;
}

QStringList ProcessFigures::added(QStringList earlier, const QStringList& later) {
    QStringList result;
    for (const QString& item : later) {
        if (!earlier.removeOne(item)) {
            result += item;
        }
    }
    return result;
}

void adoptOrphans() {
    ::prctl(PR_SET_CHILD_SUBREAPER, 1);
}

QStringList remainingChildren() {
    QStringList result;
    const QString tasks = QStringLiteral("/proc/self/task");
    const QStringList threads = QDir(tasks).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& thread : threads) {
        const QList<QByteArray> children =
            content(tasks + QLatin1Char('/') + thread + QLatin1String("/children"))
                .simplified()
                .split(' ');
        for (const QByteArray& child : children) {
            const QString folder = QStringLiteral("/proc/%1").arg(QString::fromLatin1(child));
            if (!child.isEmpty() && statFields(folder).constFirst() != "Z") {
                result +=
                    QString::fromLocal8Bit(content(folder + QLatin1String("/comm")).trimmed());
            }
        }
    }
    return result;
}
