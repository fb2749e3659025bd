#pragma once

#include <QFile>
#include <QList>
#include <QString>

/// The processes that the main thread of `parent` has started and that still run.
inline QList<qint64> childProcesses(qint64 parent) {
    QFile file(QStringLiteral("/proc/%1/task/%1/children").arg(parent));
    QList<qint64> children;
    if (file.open(QIODevice::ReadOnly)) {
        const QList<QByteArray> words = file.readAll().simplified().split(' ');
        for (const QByteArray& word : words) {
            if (!word.isEmpty()) {
                children += word.toLongLong();
            }
        }
    }
    return children;
}
