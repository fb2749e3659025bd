#pragma once

#include "probecheck/points/files/sessionfile.h"

#include <QString>
#include <QStringList>

#include <cstddef>
#include <vector>

namespace points {

/// What instances of a folder have left that are gone, made one file. Any thread, one at a time;
/// all calls wait for the disk.
class LeftSessions {
public:
    /// Sessions that are read, and so open, before they are made one.
    static constexpr std::size_t mostAtOnce = 32;

    /// `sync` is fsync(), but for tests.
    LeftSessions(QString folder, SessionFile::Sync sync);

    /// The points of the sessions that nobody holds, one session's after the other's. The sessions
    /// are one file from here on, locked for others as long as this lives. When the disk does not
    /// let them become one, they stay as they are and are all locked, `mostAtOnce` at most; the
    /// others are for a later look. Nothing while another instance looks: it finds them all.
    ///
    /// A last line without an end, which was not written whole, is cut off; lines that make no
    /// sense are passed over, and kept.
    std::vector<PointRecord> find();

    /// Takes what was found away.
    void remove();

private:
    struct Held {
        QString name;
        Descriptor lock;
    };

    bool hold(const QString& name);
    bool makeOne();
    bool takeAway(const QString& name) const;
    void takePartsAway() const;
    QByteArray pathOf(const QString& name) const;

    QString m_folder;
    SessionFile::Sync m_sync;
    std::vector<Held> m_held; ///< the first one takes what the others have

    // While it looks.
    Descriptor m_place; ///< the folder; locked, so that one instance looks at a time
    SessionContent m_content;
};

} // namespace points
