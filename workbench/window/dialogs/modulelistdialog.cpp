#include "workbench/window/dialogs/modulelistdialog.h"

#include "ui_modulelistdialog.h"
#include "workbench/modules/modulehost.h"
#include "workbench/text/plaintip.h"
#include "workbench/window/look/dialogroom.h"

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

ModuleListDialog::ModuleListDialog(const QVector<ModuleInfo>& modules,
                                   const std::vector<ChannelMaker::Way>& ways, QWidget* parent)
    : QDialog(parent) {
    Ui::ModuleListDialog ui;
    ui.setupUi(this);
    const auto addRow = [&ui](const QString& name, const QString& version, const QString& reason,
                              const QString& file) {
        const QString cells[] = {name, version,
                                 reason.isEmpty() ? tr("loaded") : tr("not loaded: %1").arg(reason),
                                 file};
        const int row = ui.tableWidget_modules->rowCount();
        ui.tableWidget_modules->insertRow(row);
        for (int column = 0; column < 4; ++column) {
            auto* const item = new QTableWidgetItem(cells[column]);
            item->setToolTip(plainTip(cells[column])); // may be longer than the column is wide
            ui.tableWidget_modules->setItem(row, column, item);
        }
    };
    for (const ModuleInfo& info : modules) {
        const QString name = info.name.isEmpty() ? info.className : info.name;
        addRow(name.isEmpty() ? tr("unknown") : name, info.version, info.reason, info.file);
    }
    for (const ChannelMaker::Way& way : ways) {
        addRow(tr("Sending by %1").arg(way.name), way.version, way.reason, way.file);
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
    new DialogRoom(*this);
}

} // namespace workbench
