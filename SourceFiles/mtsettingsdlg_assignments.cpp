#include "SourceFiles/bodytexts.h"
#include "SourceFiles/mtsettingsdlg.h"
#include "general/dpiscaling.h"
#include "general/hostlink.h"
#include "host_api/iomanager.h"

#include <algorithm>

namespace {

constexpr int modelExtraWidth = 85;
constexpr int noReference = -1;
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

int MtSettingsDlg::toolCount() const {
    return std::clamp(m_iNumberOfMeaBodies, 0, MaxEntries);
}

int MtSettingsDlg::referenceCount() const {
    return std::clamp(m_iNumberOfRefBodies, 0, MaxEntries);
}

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

bool MtSettingsDlg::readMaxNumberOfMeaBodies() {
    int maximum = 0;
    if (iom->get_parameter_int(&maximum, "measurementtool max_number_of_tools") != 0) {
        return false;
    }
    m_iMaxNumberOfMeaBodies = maximum;
    ui.spinBox_noOfMeaBodies->setMaximum(std::max(0, maximum));
    return true;
}

bool MtSettingsDlg::readMaxNumberOfRefBodies() {
    int maximum = 0;
    if (iom->get_parameter_int(&maximum, "measurementtool max_number_of_references") != 0) {
        return false;
    }
    m_iMaxNumberOfRefBodies = maximum;
    ui.spinBox_noOfRefBodies->setMaximum(std::max(0, maximum));
    return true;
}

void MtSettingsDlg::updateSpinBoxNoOfMeaBodies() {
    readMaxNumberOfMeaBodies();
    int count = 0;
    if (iom->get_parameter_int(&count, "measurementtool number_of_tools") == 0) {
        m_iNumberOfMeaBodies = count;
        m_iPrimaryNumberOfMeaBodies = count;
        ui.spinBox_noOfMeaBodies->setValue(count);
    }
    update_max_body_num_warning();
}

void MtSettingsDlg::updateSpinBoxNoOfRefBodies() {
    readMaxNumberOfRefBodies();
    m_iNumberOfRefBodies = 0;
    int count = 0;
    if (iom->get_parameter_int(&count, "measurementtool number_of_references") == 0) {
        m_iNumberOfRefBodies = count;
        m_iPrimaryNumberOfRefBodies = count;
        ui.spinBox_noOfRefBodies->setValue(count);
    }
    update_max_body_num_warning();
}

int MtSettingsDlg::getRefIdFromHub(int toolIndex) {
    hostlink::Reply reply;
    const int result = iom->get_parameter_string(
        reply.buffer(), "measurementtool reference_of_tool b%2.2d", toolIndex + 1);
    if (result != 0 || reply.is("none")) {
        return noReference;
    }
    return std::max(0, bodytexts::bodyNumber(reply.toString())) - 1;
}

void MtSettingsDlg::setupListAssingmentsMeaToRef() {
    m_listMeaBodyToRefBody.clear();
    m_listMeaBodyToRefBodySic.clear();
    m_listMtRadioDevices.clear();
    appendAssignmentsFromHub(toolCount());
}

void MtSettingsDlg::appendAssignmentsFromHub(int count) {
    for (int i = m_listMeaBodyToRefBody.size(); i < std::min(count, MaxEntries); ++i) {
        // All asked before anything is stored: a host may act on the dialog inside a question.
        const int reference = getRefIdFromHub(i);
        MtRadioDevice device;
        getAssignedMtDeviceFromHub(i, device);
        m_listMeaBodyToRefBody.append(reference);
        m_listMeaBodyToRefBodySic.append(reference);
        m_listMtRadioDevices.append(device);
    }
}

QString MtSettingsDlg::getRefBodyForMeaBody(int toolIndex) const {
    const int reference = m_listMeaBodyToRefBody.value(toolIndex, noReference);
    return reference < 0 ? tr("none") : bodytexts::referenceName(reference);
}

void MtSettingsDlg::updateTableMeaBodies(bool /*unused*/) {
    QTableWidget* const table = ui.tableWidget_meaBodies;
    resizeTable(table, toolCount());
    for (int row = 0; row < table->rowCount(); ++row) {
        const MtRadioDevice device = m_listMtRadioDevices.value(row);
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
    resizeTable(table, referenceCount());
    for (int row = 0; row < table->rowCount(); ++row) {
        setCell(table, row, 0, bodytexts::referenceName(row));
    }
}

void MtSettingsDlg::on_spinBox_noOfMeaBodies_valueChanged(int count) {
    if (!bUserAction) {
        return;
    }
    if (iom->set_parameter("measurementtool number_of_tools %d", count) != 0) {
        hostlink::log(iom, "Error: Unable to set number of mea tools = %1", QString::number(count));
        return;
    }
    const int before = m_iNumberOfMeaBodies;
    if (readMaxNumberOfRefBodies()) {
        update_max_body_num_warning();
    }
    if (m_iNumberOfMeaBodies != before) {
        return; // the new maximum has led to another change of this very number
    }
    appendAssignmentsFromHub(count);
    updatePointMeasurement(count);
    if (count > before) {
        hideAssignmentsFrom(m_iNumberOfRefBodies);
    }
    m_iNumberOfMeaBodies = count;
    refreshAfterAssignment();
}

void MtSettingsDlg::updatePointMeasurement(int count) {
    if (count == 0) {
        setDefaultStartMeaSimuValues();
    } else if (m_iNumberOfMeaBodies == 0) {
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
    if (!bUserAction) {
        return;
    }
    if (iom->set_parameter("measurementtool number_of_references %d", count) != 0) {
        hostlink::log(iom, "Error: Unable to set number of mea tools = %1", QString::number(count));
        return;
    }
    const int before = m_iNumberOfRefBodies;
    if (readMaxNumberOfMeaBodies()) {
        update_max_body_num_warning();
    }
    if (m_iNumberOfRefBodies != before) {
        return; // as above
    }
    if (count < before) {
        hideAssignmentsFrom(count);
    } else {
        restoreHiddenAssignments(count);
    }
    m_iNumberOfRefBodies = count;
    updateListToolTipDiameter();
    updateTableMeaBodies(false);
    updateTableRefBodies();
    setSelection_tableWidget(ui.tableWidget_meaBodies, m_iLastSelection_tableWidget_meaBodies);
    setSelection_tableWidget(ui.tableWidget_refBodies, m_iLastSelection_tableWidget_refBodies);
    activateSelectButton();
    activateDeSelectButton();
}

void MtSettingsDlg::hideAssignmentsFrom(int firstHidden) {
    for (int& reference : m_listMeaBodyToRefBody) {
        if (reference >= firstHidden) {
            reference = noReference;
        }
    }
}

void MtSettingsDlg::restoreHiddenAssignments(int count) {
    for (int i = 0; i < m_listMeaBodyToRefBody.size(); ++i) {
        if (m_listMeaBodyToRefBodySic.at(i) < count) {
            m_listMeaBodyToRefBody[i] = m_listMeaBodyToRefBodySic.at(i);
        }
    }
    for (int i = 0; i < std::min(toolCount(), m_listMeaBodyToRefBody.size()); ++i) {
        if (m_listMeaBodyToRefBody.at(i) == noReference) {
            m_listMeaBodyToRefBody[i] = getRefIdFromHub(i);
            m_listMeaBodyToRefBodySic[i] = m_listMeaBodyToRefBody.at(i);
        }
    }
}

void MtSettingsDlg::update_max_body_num_warning() {
    const int tools = ui.spinBox_noOfMeaBodies->value();
    const int maxTools = ui.spinBox_noOfMeaBodies->maximum();
    const int references = ui.spinBox_noOfRefBodies->value();
    const int maxReferences = ui.spinBox_noOfRefBodies->maximum();

    const QString text = bodyWarning(tools, maxTools, references, maxReferences);
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
        enable = reference >= 0 && reference != m_listMeaBodyToRefBody.value(tool, noReference);
    } else if (tool >= 0) {
        const int row = ui.tableWidget_availableMt->currentRow();
        enable = row >= 0 && !m_listMtRadioDevices.contains(deviceInRow(row));
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
    if (tool < 0 || tool >= m_listMeaBodyToRefBody.size()) {
        return;
    }
    if (isReferenceTabCurrent()) {
        const int reference = ui.tableWidget_refBodies->currentRow();
        if (reference < 0) {
            return;
        }
        m_listMeaBodyToRefBodySic[tool] = reference;
        m_listMeaBodyToRefBody[tool] = reference;
    } else {
        const int row = ui.tableWidget_availableMt->currentRow();
        if (row < 0) {
            return;
        }
        m_listMtRadioDevices[tool] = deviceInRow(row);
    }
    refreshAfterAssignment();
}

void MtSettingsDlg::on_pushButton_deselect_clicked() {
    const int tool = ui.tableWidget_meaBodies->currentRow();
    if (tool < 0 || tool >= m_listMeaBodyToRefBody.size()) {
        return;
    }
    if (isReferenceTabCurrent()) {
        m_listMeaBodyToRefBodySic[tool] = noReference;
        m_listMeaBodyToRefBody[tool] = noReference;
    } else {
        m_listMtRadioDevices[tool] = MtRadioDevice();
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
