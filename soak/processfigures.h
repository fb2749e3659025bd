#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

/// What the operating system knows of a process.
struct ProcessFigures {
    qint64 residentKb = 0;
    double cpuSeconds = 0.0; ///< user and system, since its start
    QStringList threads;     ///< their names, sorted
    QStringList files;       ///< what its file descriptors are open to, sorted

    /// Empty figures when there is no such process.
    static ProcessFigures of(qint64 pid);

    /// What `later` has and `earlier` has not, as often as it has it more often.
    static QStringList added(QStringList earlier, const QStringList& later);
};

/// Processes that were started, directly or not, by this one and have not ended.
QStringList remainingChildren();

/// Makes this process inherit what its children leave behind, so that remainingChildren() sees it.
void adoptOrphans();
