#pragma once

#include <QByteArray>
#include <QSaveFile>
#include <QString>

namespace workbench {

/// Puts a written file into its place; false when not all of it could be written, and then nothing
/// is there. Committing alone forgets flush()'s error.
inline bool finish(QSaveFile& file) {
    return file.flush() && file.commit();
}

/// The same with all that is to be in it. False with a reason in `*error`.
inline bool saveWhole(const QString& fileName, const QByteArray& bytes, QString* error) {
    QSaveFile file(fileName);
    const bool isGood =
        file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && finish(file);
    *error = file.errorString();
    return isGood;
}

} // namespace workbench
