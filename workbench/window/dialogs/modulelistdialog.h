#pragma once

#include <QDialog>
#include <QVector>

namespace workbench {

struct ModuleInfo;

/// Lists the modules that were found: name, version, state in words, file.
class ModuleListDialog : public QDialog {
    Q_OBJECT

public:
    explicit ModuleListDialog(const QVector<ModuleInfo>& modules, QWidget* parent = nullptr);
};

} // namespace workbench
