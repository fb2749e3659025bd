#include "workbench/window/dialogs/modulelistdialog.h"

#include "ui_modulelistdialog.h"
#include "workbench/modules/modulehost.h"
#include "workbench/text/plaintip.h"

#include <QHeaderView>
#include <QPushButton>

#include <algorithm>

namespace workbench {

namespace {

constexpr int stateColumn = 2;
constexpr int widestStateInCharacters = 40;
constexpr int widthInCharacters = 100;
constexpr int heightInLines = 12;

} // namespace

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
            item->setToolTip(plainTip(cells[column])); // may be longer than the column is wide
            ui.tableWidget_modules->setItem(row, column, item);
        }
    }
    ui.tableWidget_modules->resizeColumnsToContents();
    // A long reason is wrapped, so that the files stay in sight.
    const int widest = widestStateInCharacters * fontMetrics().averageCharWidth();
    ui.tableWidget_modules->setColumnWidth(
        stateColumn, std::min(ui.tableWidget_modules->columnWidth(stateColumn), widest));
    ui.tableWidget_modules->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    resize(size().expandedTo(QSize(widthInCharacters * fontMetrics().averageCharWidth(),
                                   heightInLines * fontMetrics().height())));
    ui.buttonBox->button(QDialogButtonBox::Close)->setText(tr("Close"));
    ui.label_none->setVisible(modules.isEmpty());
}

} // namespace workbench
