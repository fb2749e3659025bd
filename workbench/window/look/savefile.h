#pragma once

#include <QString>

class QWidget;

namespace workbench {

/// What a dialog for a file to be written shows at first.
struct SaveFileTexts {
    QString title;
    QString filter; ///< as QFileDialog takes it
    QString suffix; ///< is added to a name without one, without its dot
};

/// The path of a file in this folder: this word, date and time, and the suffix. Where there is no
/// such folder it is that of the user's documents, and without that the user's own.
QString suggestedFile(const QString& word, const QString& suffix, const QString& folder = {});

/// Asks for a file to be written; empty when the user wants none. What exists already is replaced
/// only when the user agrees, the added suffix included. `suggested` is a path.
QString askForFileToSave(const SaveFileTexts& texts, const QString& suggested, QWidget* parent);

} // namespace workbench
