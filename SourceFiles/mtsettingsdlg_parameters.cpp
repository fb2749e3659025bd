#include "SourceFiles/mtsettingsdlg.h"
#include "general/hostlink.h"
#include "host_api/iomanager.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double defaultDuration = 1.0;
constexpr double defaultTipTolerance = 1.5;
constexpr double defaultStartAngle = 30.0;
constexpr double defaultStartLeadTime = 0.2;

int truncated(double value) {
    constexpr double farBeyondEveryRange = 1e6;
    return static_cast<int>(std::clamp(value, -farBeyondEveryRange, farBeyondEveryRange));
}

// The value of a query, or its default when the query has failed or brought no number.
double readOr(double fallback, int result, double value, const HostPointer& iom,
              const char* failure) {
    if (result == 0 && std::isfinite(value)) {
        return value;
    }
    hostlink::log(iom, QString::fromLatin1(failure));
    return fallback;
}

} // namespace

double MtSettingsDlg::getToolTipDiameterFromHub(int toolNumber) {
    if (toolNumber < 1 || !protocolIsAtLeast(1, 13)) {
        return 0.0;
    }
    double radius = 0.0;
    const int result =
        iom->get_parameter_double(&radius, "measurementtool tip_radius b%2.2d", toolNumber);
    const double diameter = 2.0 * radius;
    return result == 0 && radius > 0.0 && std::isfinite(diameter) ? diameter : 0.0;
}

double MtSettingsDlg::getToolTipDiameter(int toolIndex) const {
    return m_listToolTipDiameter.value(toolIndex, 0.0);
}

void MtSettingsDlg::setupListToolTipDiameter() {
    m_listToolTipDiameter.clear();
    for (int number = 1; number <= toolCount(); ++number) {
        m_listToolTipDiameter.append(getToolTipDiameterFromHub(number));
    }
}

void MtSettingsDlg::updateListToolTipDiameter() {
    QTableWidget* const table = ui.tableWidget_meaBodies;
    // A mnemonic reaches a button without taking the focus from a cell that is being edited.
    const auto editors = table->viewport()->findChildren<QDoubleSpinBox*>();
    for (QDoubleSpinBox* editor : editors) {
        Q_EMIT doubleSpinboxDelegate.commitData(editor);
    }
    for (int row = 0; row < table->rowCount(); ++row) {
        const double diameter =
            DoubleSpinboxDelegate::valueOf(cellText(table, row, DiameterColumn));
        if (row < m_listToolTipDiameter.size()) {
            m_listToolTipDiameter[row] = diameter;
        } else {
            m_listToolTipDiameter.append(diameter);
        }
    }
}

void MtSettingsDlg::writeToolTipDiameterToHub() {
    updateListToolTipDiameter();
    for (int row = 0; row < ui.tableWidget_meaBodies->rowCount(); ++row) {
        const int number = row + 1;
        const double radius = 0.5 * getToolTipDiameter(row);
        if (radius == 0.5 * getToolTipDiameterFromHub(number)) {
            continue;
        }
        if (iom->set_parameter("measurementtool tip_radius b%2.2d %.3f", number, radius) != 0) {
            hostlink::log(iom, "Error: Unable to set tip radius of mea tool b0%1",
                          QString::number(number));
        }
    }
}

bool MtSettingsDlg::showsTools() const {
    return ui.spinBox_noOfMeaBodies->value() >= 1;
}

void MtSettingsDlg::updateDoubleSpinboxDuration() {
    double value = defaultDuration;
    if (showsTools()) {
        const int result =
            iom->get_parameter_double(&value, "measurementtool measurement_duration b01");
        value = readOr(defaultDuration, result, value, iom, "Error: Unable to get mea duration");
    }
    ui.doubleSpinBox_duration->setValue(value);
}

void MtSettingsDlg::updateDoubleSpinBoxTipTolerance() {
    double value = defaultTipTolerance;
    if (showsTools()) {
        const int result =
            iom->get_parameter_double(&value, "measurementtool measurement_tip_tolerance b01");
        value = readOr(defaultTipTolerance, result, value, iom,
                       "Error: Unable to get mea tip tolerance");
    }
    ui.doubleSpinBox_tipTolerance->setValue(value);
}

void MtSettingsDlg::updateCheckBoxStartSimulation() {
    bool activated = false;
    if (showsTools()) {
        hostlink::Reply reply;
        const int result = iom->get_parameter_string(
            reply.buffer(), "measurementtool measurement_start_simulation b01");
        activated = result == 0 && reply.is("yes");
        if (result != 0) {
            hostlink::log(
                iom, QStringLiteral("Error: Unable to get state of measurement start simulation"));
        }
    }
    if (!activated) {
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
    double value = defaultStartAngle;
    if (showsTools()) {
        const int result =
            iom->get_parameter_double(&value, "measurementtool measurement_start_angle b01");
        value =
            readOr(defaultStartAngle, result, value, iom, "Error: Unable to get mea angular speed");
    }
    ui.spinBox_startAngle->setValue(truncated(value));
}

void MtSettingsDlg::updateDoubleSpinBoxStartLeadTime() {
    double value = defaultStartLeadTime;
    if (showsTools()) {
        const int result =
            iom->get_parameter_double(&value, "measurementtool measurement_start_lead_time b01");
        value = readOr(defaultStartLeadTime, result, value, iom,
                       "Error: Unable to get mea start lead time");
    }
    ui.doubleSpinBox_startLeadTime->setValue(value);
}

void MtSettingsDlg::updateCheckBoxUseOldOutputFormat() {
    if (!protocolIsAtLeast(1, 13)) {
        ui.checkBox_useOldOutputFormat->setChecked(true);
        ui.checkBox_useOldOutputFormat->setEnabled(false);
        return;
    }
    hostlink::Reply reply;
    const int result = iom->get_parameter_string(reply.buffer(), "measurementtool output_6dmt");
    ui.checkBox_useOldOutputFormat->setChecked(result != 0 || !reply.is("no"));
}

void MtSettingsDlg::setDefaultStartMeaSimuValues() {
    bUserAction = false;
    ui.doubleSpinBox_duration->setValue(defaultDuration);
    ui.doubleSpinBox_tipTolerance->setValue(defaultTipTolerance);
    ui.checkBox_startSimulation->setChecked(false);
    ui.spinBox_startAngle->setValue(truncated(defaultStartAngle));
    ui.doubleSpinBox_startLeadTime->setValue(defaultStartLeadTime);
    bUserAction = true;
}

void MtSettingsDlg::setActualStartMeaSimuValues() {
    bUserAction = false;
    ui.doubleSpinBox_duration->setValue(m_dMeasurementDuration);
    ui.doubleSpinBox_tipTolerance->setValue(m_dMeasurementTipTolerance);
    ui.checkBox_startSimulation->setChecked(m_bStartSimulation);
    ui.spinBox_startAngle->setValue(truncated(m_dMeasurementAngularSpeed));
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
