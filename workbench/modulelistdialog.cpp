#include "workbench/modulelistdialog.h"

#include "ui_modulelistdialog.h"
#include "workbench/modulehost.h"

#include <QPushButton>

namespace workbench {

ModuleListDialog::ModuleListDialog(const QVector<ModuleInfo>& modules, QWidget* parent)
    : QDialog(parent) {
    Ui::ModuleListDialog ui;
    ui.setupUi(this);
    ui.tableWidget_modules->setRowCount(modules.size());
    for (int row = 0; row < modules.size(); ++row) {
        const ModuleInfo& info = modules.at(row);
        const QString name = info.name.isEmpty() ? info.className : info.name;
        const QString cells[] = {
            name.isEmpty() ? tr("unknown") : name, info.version,
            info.isLoaded() ? tr("loaded") : tr("not loaded: %1").arg(info.reason), info.file};
        for (int column = 0; column < 4; ++column) {
            auto* const item = new QTableWidgetItem(cells[column]);
            item->setToolTip(cells[column]); // may be longer than the column is wide
            ui.tableWidget_modules->setItem(row, column, item);
        }
    }
    ui.tableWidget_modules->resizeColumnsToContents();
    ui.tableWidget_modules->resizeRowsToContents();
    ui.buttonBox->button(QDialogButtonBox::Close)->setText(tr("Close"));
    ui.label_none->setVisible(modules.isEmpty());
}

} // namespace workbench
