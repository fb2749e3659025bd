#pragma once

#include "probecheck/points/record/pointrecord.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace points {

/// An open file descriptor that is closed at the end.
class Descriptor {
public:
    explicit Descriptor(int number = -1)
        : m_number(number) {}
    ~Descriptor();
    Descriptor(Descriptor&& other) noexcept;
    Descriptor& operator=(Descriptor&& other) noexcept;
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int get() const { return m_number; }
    bool isOpen() const { return m_number >= 0; }

private:
    int m_number;
};

/// A file of lines that only grows, locked for others. Made with the first write. Any thread, one
/// at a time; all calls wait for the disk.
class SessionFile {
public:
    using Sync = std::function<int(int)>;
    static Sync systemSync();

    SessionFile(QString folder, Sync sync);

    void add(const QByteArray& line) { m_pending += line; }
    bool hasPending() const { return !m_pending.isEmpty(); }

    /// Brings what was added to the disk. When that fails nothing of it is in the file, the reason
    /// is returned, and the next call tries all of it again. Empty when all is well.
    QString write();

    /// Takes the file away, whatever is in it.
    void remove();

    const QString& folder() const { return m_folder; }

private:
    QString create();
    QString fail();

    QString m_folder;
    Sync m_sync;
    QString m_path;
    Descriptor m_file;
    qint64 m_size = 0; ///< what is on the disk for sure
    bool m_folderIsSynced = false;
    QByteArray m_pending;
};

/// Not open when there is no such folder.
Descriptor openFolder(const QString& folder);

/// Whether all of it was written; `errno` says why not.
bool writeAt(int file, const QByteArray& bytes, qint64 place);

/// What cannot be cut off does no harm: it is written over, or is no line.
void cutOff(int file, qint64 size);

/// One line of a session file for each change of the list.
QByteArray pointLine(const PointRecord& point);
QByteArray renamingLine(int number, const QString& name);
QByteArray deletionLine(const std::vector<int>& numbers);
QByteArray restoringLine(const std::vector<int>& numbers);

/// The file has what these files of its folder had; where they are still there, they do not count.
QByteArray mergedLine(const QStringList& files);

/// What such lines tell.
struct SessionContent {
    std::vector<PointRecord> points; ///< numbers ascending
    QStringList merged;              ///< files
    QByteArray strange;              ///< lines that make no sense, whole ones
};
SessionContent contentOfLines(const QByteArray& lines);

} // namespace points
