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

/// Asks for a file to be written; empty when the user wants none. What exists already is replaced
/// only when the user agrees, the added suffix included. `suggested` is a path.
QString askForFileToSave(const SaveFileTexts& texts, const QString& suggested, QWidget* parent);

} // namespace workbench
