#include "workbench/window/recording/savefile.h"

#include <QFileDialog>
#include <QFileInfo>

namespace workbench {

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
