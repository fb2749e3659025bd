#include "SourceFiles/mtsettingsdlg.h"

double MtSettingsDlg::getToolTipDiameterFromHub(int toolNumber) {
    return parameters.diameterOnController(toolNumber);
}

double MtSettingsDlg::getToolTipDiameter(int toolIndex) const {
    return parameters.diameter(toolIndex);
}

void MtSettingsDlg::setupListToolTipDiameter() {
    parameters.readDiameters(tools.bounded());
}

void MtSettingsDlg::updateListToolTipDiameter() {
    QTableWidget* const table = ui.tableWidget_meaBodies;
    // A mnemonic reaches a button without taking the focus from a cell that is being edited.
    const auto editors = table->viewport()->findChildren<QDoubleSpinBox*>();
    for (QDoubleSpinBox* editor : editors) {
        Q_EMIT doubleSpinboxDelegate.commitData(editor);
    }
    for (int row = 0; row < table->rowCount(); ++row) {
        parameters.setDiameter(
            row, DoubleSpinboxDelegate::valueOf(cellText(table, row, DiameterColumn)));
    }
}

void MtSettingsDlg::writeToolTipDiameterToHub() {
    updateListToolTipDiameter();
    parameters.writeDiameters(ui.tableWidget_meaBodies->rowCount());
}

bool MtSettingsDlg::showsTools() const {
    return ui.spinBox_noOfMeaBodies->value() >= 1;
}

void MtSettingsDlg::updateDoubleSpinboxDuration() {
    ui.doubleSpinBox_duration->setValue(parameters.read(ToolParameters::Duration, showsTools()));
}

void MtSettingsDlg::updateDoubleSpinBoxTipTolerance() {
    ui.doubleSpinBox_tipTolerance->setValue(
        parameters.read(ToolParameters::TipTolerance, showsTools()));
}

void MtSettingsDlg::updateCheckBoxStartSimulation() {
    if (!parameters.readStartSimulation(showsTools())) {
        ui.checkBox_startSimulation->setChecked(false);
        return;
    }
    bUserAction = false;
    ui.checkBox_startSimulation->setChecked(true);
    m_bStartSimulation = true;
    // Also when the dialog is being filled: the two values read next then count as the user's.
    bUserAction = true;
}

void MtSettingsDlg::updateSpinBoxStartAngle() {
    ui.spinBox_startAngle->setValue(
        ToolParameters::truncated(parameters.read(ToolParameters::StartAngle, showsTools())));
}

void MtSettingsDlg::updateDoubleSpinBoxStartLeadTime() {
    ui.doubleSpinBox_startLeadTime->setValue(
        parameters.read(ToolParameters::StartLeadTime, showsTools()));
}

void MtSettingsDlg::updateCheckBoxUseOldOutputFormat() {
    ui.checkBox_useOldOutputFormat->setChecked(parameters.readOldOutputFormat());
    if (!parameters.hasOutputFormats()) {
        ui.checkBox_useOldOutputFormat->setEnabled(false);
    }
}

void MtSettingsDlg::setDefaultStartMeaSimuValues() {
    bUserAction = false;
    ui.doubleSpinBox_duration->setValue(ToolParameters::Duration.fallback);
    ui.doubleSpinBox_tipTolerance->setValue(ToolParameters::TipTolerance.fallback);
    ui.checkBox_startSimulation->setChecked(false);
    ui.spinBox_startAngle->setValue(ToolParameters::truncated(ToolParameters::StartAngle.fallback));
    ui.doubleSpinBox_startLeadTime->setValue(ToolParameters::StartLeadTime.fallback);
    bUserAction = true;
}

void MtSettingsDlg::setActualStartMeaSimuValues() {
    bUserAction = false;
    ui.doubleSpinBox_duration->setValue(m_dMeasurementDuration);
    ui.doubleSpinBox_tipTolerance->setValue(m_dMeasurementTipTolerance);
    ui.checkBox_startSimulation->setChecked(m_bStartSimulation);
    ui.spinBox_startAngle->setValue(ToolParameters::truncated(m_dMeasurementAngularSpeed));
    ui.doubleSpinBox_startLeadTime->setValue(m_dMeasurementStartLeadTime);
    bUserAction = true;
}

void MtSettingsDlg::on_doubleSpinBox_duration_valueChanged(double value) {
    if (bUserAction) {
        m_dMeasurementDuration = value;
    }
}

void MtSettingsDlg::on_doubleSpinBox_tipTolerance_valueChanged(double value) {
    if (bUserAction) {
        m_dMeasurementTipTolerance = value;
    }
}

void MtSettingsDlg::on_checkBox_startSimulation_stateChanged(int state) {
    const bool activated = state == Qt::Checked;
    if (bUserAction) {
        m_bStartSimulation = activated;
    }
    enableStartSimulationControls(activated);
}

void MtSettingsDlg::on_spinBox_startAngle_valueChanged(int value) {
    if (bUserAction) {
        m_dMeasurementAngularSpeed = value;
    }
}

void MtSettingsDlg::on_doubleSpinBox_startLeadTime_valueChanged(double value) {
    if (bUserAction) {
        m_dMeasurementStartLeadTime = value;
    }
}
