#include "tests/SourceFiles/calibration/calibrationrig.h"

#include "tests/support/children.h"

#include <QPushButton>
#include <QtTest>

const Lines CalibrationRig::opening = {"get_string config is_changeable",
                                       "get_string measurementtool available",
                                       "get_string tracking available",
                                       "get_int measurementtool number_of_tools",
                                       "get_int measurementtool number_of_tools",
                                       "get_string body calibrated measurementtool b01",
                                       "get_string body calibrated measurementtool b02",
                                       "get_int measurementtool number_of_tools",
                                       "get_string cal available measurementtool",
                                       "get_string status active",
                                       "send kestrel2 tracking start"};

void scriptCalibration(ScriptedHost& host) {
    host.answer("config is_changeable", "yes");
    host.answer("measurementtool available", "yes");
    host.answer("tracking available", "yes");
    host.answer("measurementtool number_of_tools", "2");
    host.answer("body calibrated measurementtool b01", "no");
    host.answer("body calibrated measurementtool b02", "yes");
    host.answer("cal available measurementtool", "yes");
    scriptProcedure(host, 1, {});
    host.answer("measurementtool calibration_body_id", "b02");
    host.answer("measurementtool reference_of_tool b02", "b01");
    host.answer("measurementtool calibration_tip_residual", "0.12");
}

CalibrationRig::CalibrationRig()
    : versions(VersionInfo(3, 0, 0), VersionInfo(1, 14, 0), VersionInfo(3, 0, 0), "KESTREL")
    , window(new QWidget)
    , dialog(new MtCalibrationDlg(&host, window, &versions)) {
    CalibrationProgressProbe::forgetProgress();
    scriptCalibration(host);
    window->setObjectName(QStringLiteral("hostWindow"));
    window->show();
    hurryProgress();
}

CalibrationRig::~CalibrationRig() {
    delete window.data();
    QTest::qCompare(dog.strays(), QStringList(), "strays", "none", __FILE__, __LINE__);
}

int CalibrationRig::open(const std::vector<std::function<void()>>& actions) {
    std::size_t next = 0;
    on("MtCalibrationDlgClass", [&](QWidget*) {
        if (next < actions.size()) {
            actions[next++]();
        } else {
            click("pushButton_exit");
        }
    });
    return dialog->update_and_exec();
}

void CalibrationRig::click(const char* button) {
    child<QPushButton>(*dialog, button)->click();
}

void CalibrationRig::on(const char* objectName, const std::function<void(QWidget*)>& action) {
    dog.on(QLatin1String(objectName), action);
}

void CalibrationRig::hurryProgress() {
    on("CalibrationProgressDialog",
       [](QWidget* shown) { hurry(*qobject_cast<CalibrationProgressDlg*>(shown)); });
}
