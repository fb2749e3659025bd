#include "SourceFiles/mtsettingsdlg.h"
#include "general/hostlink.h"
#include "host_api/iomanager.h"

namespace {

// A tool number as log lines name it: "b%1" becomes b01.
QString twoDigits(int number) {
    return QString::number(number).rightJustified(2, QLatin1Char('0'));
}

struct PointParameter {
    const char* query;
    const char* setting;
    double unchanged; // the value on the controller that makes a write unnecessary
    double value;
    const char* failure;
};

void write(const HostPointer& iom, int tools, const PointParameter& parameter) {
    for (int number = 1; number <= tools; ++number) {
        double current = 0.0;
        if (iom->get_parameter_double(&current, parameter.query, number) != 0) {
            current = -1.0;
        }
        if (current != parameter.unchanged &&
            iom->set_parameter(parameter.setting, number, parameter.value) != 0) {
            hostlink::log(iom, parameter.failure, twoDigits(number));
        }
    }
}

} // namespace

void MtSettingsDlg::on_pushButton_ok_clicked() {
    writeCounts();
    writeReferences();
    writeRadioDevices();
    writePointMeasurement();
    if (protocolIsAtLeast(1, 13)) {
        writeOutputFormat();
        writeToolTipDiameterToHub();
    }
    onHideDlg();
    done(Rejected); // the same result as cancel: the host expects it
}

void MtSettingsDlg::writeCounts() {
    int count = 0;
    if (iom->get_parameter_int(&count, "measurementtool number_of_tools") != 0) {
        count = -1;
    }
    if (count != m_iNumberOfMeaBodies &&
        iom->set_parameter("measurementtool number_of_tools %d", m_iNumberOfMeaBodies) != 0) {
        hostlink::log(iom, "Error: Unable to set number of mea tools = %1",
                      QString::number(m_iNumberOfMeaBodies));
    }
    if (iom->get_parameter_int(&count, "measurementtool number_of_references") != 0) {
        count = -1;
    }
    if (count != m_iNumberOfRefBodies &&
        iom->set_parameter("measurementtool number_of_references %d", m_iNumberOfRefBodies) != 0) {
        hostlink::log(iom, "Error: Unable to set number of mea references = %1",
                      QString::number(m_iNumberOfRefBodies));
    }
    // From here on there is nothing left that a cancel could restore.
    m_iPrimaryNumberOfMeaBodies = m_iNumberOfMeaBodies;
    m_iPrimaryNumberOfRefBodies = m_iNumberOfRefBodies;
}

void MtSettingsDlg::writeReferences() {
    for (int number = 1; number <= toolCount(); ++number) {
        const int reference = m_listMeaBodyToRefBody.value(number - 1, -1);
        const int result =
            reference < 0
                ? iom->set_parameter("measurementtool reference_of_tool b%2.2d none", number)
                : iom->set_parameter("measurementtool reference_of_tool b%2.2d b%2.2d", number,
                                     reference + 1);
        if (result != 0) {
            hostlink::log(iom, QStringLiteral("Error: Unable to set ref. body"));
        }
    }
}

void MtSettingsDlg::writeRadioDevices() {
    if (!protocolIsAtLeast(1, 14)) {
        return;
    }
    for (int number = 1; number <= toolCount(); ++number) {
        const MtRadioDevice device = m_listMtRadioDevices.value(number - 1);
        const int result =
            device == MtRadioDevice()
                ? iom->set_parameter("measurementtool device b%2.2d none", number)
                : iom->set_parameter("measurementtool device b%2.2d zelwpan %s %s %s", number,
                                     device.vendor.toUtf8().constData(),
                                     device.model.toUtf8().constData(),
                                     device.serial.toUtf8().constData());
        if (result != 0) {
            hostlink::log(iom, QStringLiteral("Error: Unable to set radio device"));
        }
    }
}

void MtSettingsDlg::writePointMeasurement() {
    const double duration = ui.doubleSpinBox_duration->value();
    const double tolerance = ui.doubleSpinBox_tipTolerance->value();
    const double angle = ui.spinBox_startAngle->value();
    const double leadTime = ui.doubleSpinBox_startLeadTime->value();

    write(iom, toolCount(),
          {"measurementtool measurement_duration b%2.2d",
           "measurementtool measurement_duration b%2.2d %.3f", duration, duration,
           "Error: Unable to set mea duration for body b%1"});
    write(iom, toolCount(),
          {"measurementtool measurement_tip_tolerance b%2.2d",
           "measurementtool measurement_tip_tolerance b%2.2d %.3f", tolerance, tolerance,
           "Error: Unable to set tip tolerance for body b%1"});
    writeStartSimulation();
    write(iom, toolCount(),
          {"measurementtool measurement_start_angle b%2.2d",
           "measurementtool measurement_start_angle b%2.2d %.3f", angle, angle,
           "Error: Unable to set mea angular speed for body b%1"});
    // Compared with the start angle, not with the lead time: required, so it is nearly always
    // written.
    write(iom, toolCount(),
          {"measurementtool measurement_start_lead_time b%2.2d",
           "measurementtool measurement_start_lead_time b%2.2d %.3f", angle, leadTime,
           "Error: Unable to set mea. start lead time for body b%1"});
}

void MtSettingsDlg::writeStartSimulation() {
    const bool activate = ui.checkBox_startSimulation->isChecked();
    for (int number = 1; number <= toolCount(); ++number) {
        hostlink::Reply reply;
        const int result = iom->get_parameter_string(
            reply.buffer(), "measurementtool measurement_start_simulation b%2.2d", number);
        if (result == 0 && reply.is("yes") == activate) {
            continue;
        }
        if (iom->set_parameter("measurementtool measurement_start_simulation b%2.2d %s", number,
                               activate ? "yes" : "no") != 0) {
            hostlink::log(iom, "Error: Unable to activate start simulation for body b%1",
                          twoDigits(number));
        }
    }
}

void MtSettingsDlg::writeOutputFormat() {
    bool isOld = true;
    if (iom->get_parameter_bool(&isOld, "measurementtool output_6dmt") != 0) {
        isOld = true;
    }
    const bool wantsOld = ui.checkBox_useOldOutputFormat->isChecked();
    if (!wantsOld && isOld) {
        if (iom->set_parameter("measurementtool output_6dmt no") != 0) {
            hostlink::log(iom, QStringLiteral("Error: Unable to (un)set to old output format"));
        }
    } else if (wantsOld && !isOld) {
        if (iom->set_parameter("measurementtool output_6dmt yes") != 0) {
            hostlink::log(iom, QStringLiteral("Error: Unable to set to old output format"));
        }
    }
}
