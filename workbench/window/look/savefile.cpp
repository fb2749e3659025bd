#include "workbench/window/look/savefile.h"

#include <QDateTime>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QStandardPaths>

namespace workbench {

QString suggestedFile(const QString& word, const QString& suffix, const QString& folder) {
    const auto isThere = [](const QString& path) {
        return !path.isEmpty() && QFileInfo(path).isDir();
    };
    QString place = folder;
    if (!isThere(place)) {
        place = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    }
    if (!isThere(place)) {
        place = QDir::homePath();
    }
    // No colons: not every file system takes them.
    const QString time =
        QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd_HH-mm-ss"));
    return QDir(place).filePath(QStringLiteral("%1_%2.%3").arg(word, time, suffix));
}

QString askForFileToSave(const SaveFileTexts& texts, const QString& suggested, QWidget* parent) {
    const QFileInfo file(suggested);
    QFileDialog dialog(parent, texts.title, file.absolutePath(), texts.filter);
    // One of the desktop asks about the name as typed, before it gets its suffix.
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setDefaultSuffix(texts.suffix);
    dialog.selectFile(file.fileName());
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
        return {};
    }
    return dialog.selectedFiles().constFirst();
}

} // namespace workbench
