#include "SourceFiles/mtsettingsdlg.h"

void MtSettingsDlg::on_pushButton_ok_clicked() {
    tools.write();
    references.write();
    // From here on there is nothing left that a cancel could restore.
    tools.settle();
    references.settle();
    assignments.writeReferences(tools.bounded());
    assignments.writeDevices(tools.bounded());
    writePointMeasurement();
    if (parameters.hasOutputFormats()) {
        parameters.writeOldOutputFormat(ui.checkBox_useOldOutputFormat->isChecked());
        writeToolTipDiameterToHub();
    }
    onHideDlg();
    done(Rejected); // the same result as cancel: the host expects it
}

void MtSettingsDlg::writePointMeasurement() {
    const double duration = ui.doubleSpinBox_duration->value();
    const double tolerance = ui.doubleSpinBox_tipTolerance->value();
    const double angle = ui.spinBox_startAngle->value();
    const double leadTime = ui.doubleSpinBox_startLeadTime->value();

    parameters.write(ToolParameters::Duration, tools.bounded(), duration, duration);
    parameters.write(ToolParameters::TipTolerance, tools.bounded(), tolerance, tolerance);
    parameters.writeStartSimulation(tools.bounded(), ui.checkBox_startSimulation->isChecked());
    parameters.write(ToolParameters::StartAngle, tools.bounded(), angle, angle);
    // Compared with the start angle, not with the lead time: required, so it is nearly always
    // written.
    parameters.write(ToolParameters::StartLeadTime, tools.bounded(), leadTime, angle);
}
