#include "SourceFiles/mtsettingsdlg.h"
#include "general/host/bodytexts.h"
#include "general/widgets/dpiscaling.h"

namespace {

constexpr int modelExtraWidth = 85;
constexpr int limitPerKind = 4; // of the warning alone; the maxima are the controller's

// The first rule that holds decides.
QString bodyWarning(int tools, int maxTools, int references, int maxReferences) {
    if (maxTools == 0 && maxReferences == 0) {
        return {};
    }
    if (tools == limitPerKind && references == limitPerKind) {
        return MtSettingsDlg::tr("Max. number of Measurement Tools and references are reached!");
    }
    if ((tools == limitPerKind && references == maxReferences) ||
        (tools == maxTools && references == limitPerKind)) {
        return MtSettingsDlg::tr("Max. number of bodies is reached!");
    }
    if (tools == limitPerKind) {
        return MtSettingsDlg::tr("Max. number of Measurement Tools is reached!");
    }
    if (references == limitPerKind) {
        return MtSettingsDlg::tr("Max. number of references is reached!");
    }
    if (tools < maxTools && references < maxReferences) {
        return {};
    }
    return MtSettingsDlg::tr("Max. number of bodies is reached!");
}

} // namespace

void MtSettingsDlg::setupTableMeaBodies() {
    QTableWidget* const table = ui.tableWidget_meaBodies;
    setUpTable(table,
               {tr("ID"), tr("Tip diameter [mm]"), tr("Reference ID"), tr("Model"), tr("Serial")});
    table->setItemDelegateForColumn(DiameterColumn, &doubleSpinboxDelegate);
    table->resizeColumnsToContents();
    table->setColumnWidth(ModelColumn,
                          table->columnWidth(ModelColumn) + scaledToDpi(modelExtraWidth, *table));
}

void MtSettingsDlg::setupTableRefBodies() {
    setUpTable(ui.tableWidget_refBodies, {tr("Reference ID")});
}

bool MtSettingsDlg::readMaximum(const BodyCount& count, QSpinBox* spinBox) {
    const std::optional<int> maximum = count.readMaximum();
    if (maximum) {
        spinBox->setMaximum(*maximum);
    }
    return maximum.has_value();
}

void MtSettingsDlg::updateSpinBoxNoOfMeaBodies() {
    readMaximum(tools, ui.spinBox_noOfMeaBodies);
    if (tools.read()) {
        ui.spinBox_noOfMeaBodies->setValue(tools.current());
    }
    update_max_body_num_warning();
}

void MtSettingsDlg::updateSpinBoxNoOfRefBodies() {
    readMaximum(references, ui.spinBox_noOfRefBodies);
    if (references.read()) {
        ui.spinBox_noOfRefBodies->setValue(references.current());
    }
    update_max_body_num_warning();
}

int MtSettingsDlg::getRefIdFromHub(int toolIndex) {
    return assignments.readReference(toolIndex);
}

void MtSettingsDlg::setupListAssingmentsMeaToRef() {
    assignments.read(tools.bounded());
}

QString MtSettingsDlg::getRefBodyForMeaBody(int toolIndex) const {
    const int reference = assignments.reference(toolIndex);
    return reference < 0 ? tr("none") : bodytexts::referenceName(reference);
}

void MtSettingsDlg::updateTableMeaBodies(bool /*unused*/) {
    QTableWidget* const table = ui.tableWidget_meaBodies;
    resizeTable(table, tools.bounded());
    for (int row = 0; row < table->rowCount(); ++row) {
        const MtRadioDevice device = assignments.device(row);
        setCell(table, row, IdColumn, bodytexts::toolName(row));
        setCell(table, row, DiameterColumn, DoubleSpinboxDelegate::textOf(getToolTipDiameter(row)),
                CellStyle::Editable);
        setCell(table, row, ReferenceColumn, getRefBodyForMeaBody(row));
        setCell(table, row, ModelColumn, device.desc, CellStyle::Told);
        setCell(table, row, SerialColumn, device.serial, CellStyle::Centred);
    }
}

void MtSettingsDlg::updateTableRefBodies() {
    QTableWidget* const table = ui.tableWidget_refBodies;
    resizeTable(table, references.bounded());
    for (int row = 0; row < table->rowCount(); ++row) {
        setCell(table, row, 0, bodytexts::referenceName(row));
    }
}

void MtSettingsDlg::on_spinBox_noOfMeaBodies_valueChanged(int count) {
    if (!bUserAction || !tools.set(count)) {
        return;
    }
    const int before = tools.current();
    if (readMaximum(references, ui.spinBox_noOfRefBodies)) {
        update_max_body_num_warning();
    }
    if (tools.current() != before) {
        return; // the new maximum has led to another change of this very number
    }
    assignments.growTo(count);
    updatePointMeasurement(count);
    if (count > before) {
        assignments.hideFrom(references.current());
    }
    tools.accept(count);
    refreshAfterAssignment();
}

void MtSettingsDlg::updatePointMeasurement(int count) {
    if (count == 0) {
        setDefaultStartMeaSimuValues();
    } else if (tools.current() == 0) {
        updateDoubleSpinboxDuration();
        updateDoubleSpinBoxTipTolerance();
        updateCheckBoxStartSimulation();
        updateSpinBoxStartAngle();
        updateDoubleSpinBoxStartLeadTime();
    } else {
        setActualStartMeaSimuValues();
    }
    enableControls(count != 0);
}

void MtSettingsDlg::on_spinBox_noOfRefBodies_valueChanged(int count) {
    if (!bUserAction || !references.set(count)) {
        return;
    }
    const int before = references.current();
    if (readMaximum(tools, ui.spinBox_noOfMeaBodies)) {
        update_max_body_num_warning();
    }
    if (references.current() != before) {
        return; // as above
    }
    if (count < before) {
        assignments.hideFrom(count);
    } else {
        assignments.restoreBelow(count, tools.bounded());
    }
    references.accept(count);
    updateListToolTipDiameter();
    updateTableMeaBodies(false);
    updateTableRefBodies();
    setSelection_tableWidget(ui.tableWidget_meaBodies, m_iLastSelection_tableWidget_meaBodies);
    setSelection_tableWidget(ui.tableWidget_refBodies, m_iLastSelection_tableWidget_refBodies);
    activateSelectButton();
    activateDeSelectButton();
}

void MtSettingsDlg::update_max_body_num_warning() {
    const QString text =
        bodyWarning(ui.spinBox_noOfMeaBodies->value(), ui.spinBox_noOfMeaBodies->maximum(),
                    ui.spinBox_noOfRefBodies->value(), ui.spinBox_noOfRefBodies->maximum());
    ui.label_max_error->setText(text.isEmpty() ? text : bodytexts::redMessage(text));
}

bool MtSettingsDlg::isReferenceTabCurrent() const {
    return ui.tabWidget->currentIndex() == 0;
}

void MtSettingsDlg::activateSelectButton() {
    if (m_is_config_locked) {
        return;
    }
    const int tool = ui.tableWidget_meaBodies->currentRow();
    bool enable = false;
    if (tool >= 0 && isReferenceTabCurrent()) {
        const int reference = ui.tableWidget_refBodies->currentRow();
        enable = reference >= 0 && reference != assignments.reference(tool);
    } else if (tool >= 0) {
        const int row = ui.tableWidget_availableMt->currentRow();
        enable = row >= 0 && !assignments.isAssigned(deviceInRow(row));
    }
    ui.pushButton_select->setEnabled(enable);
}

void MtSettingsDlg::activateDeSelectButton() {
    if (m_is_config_locked) {
        return;
    }
    const QTableWidget* const table = ui.tableWidget_meaBodies;
    const int tool = table->currentRow();
    bool enable = false;
    if (tool >= 0) {
        enable = isReferenceTabCurrent() ? cellText(table, tool, ReferenceColumn) != tr("none")
                                         : !cellText(table, tool, SerialColumn).isEmpty();
    }
    ui.pushButton_deselect->setEnabled(enable);
}

void MtSettingsDlg::on_pushButton_select_clicked() {
    const int tool = ui.tableWidget_meaBodies->currentRow();
    if (!assignments.holds(tool)) {
        return;
    }
    if (isReferenceTabCurrent()) {
        const int reference = ui.tableWidget_refBodies->currentRow();
        if (reference < 0) {
            return;
        }
        assignments.choose(tool, reference);
    } else {
        const int row = ui.tableWidget_availableMt->currentRow();
        if (row < 0) {
            return;
        }
        assignments.choose(tool, deviceInRow(row));
    }
    refreshAfterAssignment();
}

void MtSettingsDlg::on_pushButton_deselect_clicked() {
    const int tool = ui.tableWidget_meaBodies->currentRow();
    if (!assignments.holds(tool)) {
        return;
    }
    if (isReferenceTabCurrent()) {
        assignments.choose(tool, ToolAssignments::none);
    } else {
        assignments.choose(tool, MtRadioDevice());
    }
    refreshAfterAssignment();
}

void MtSettingsDlg::refreshAfterAssignment() {
    updateListToolTipDiameter();
    updateTableMeaBodies(false);
    setSelection_tableWidget(ui.tableWidget_meaBodies, m_iLastSelection_tableWidget_meaBodies);
    activateSelectButton();
    activateDeSelectButton();
}
