#include "tests/windows/windowtour.h"

#include "SourceFiles/mthelpdlg.h"
#include "SourceFiles/mtresultdlg.h"
#include "tests/SourceFiles/calibration/calibrationrig.h"
#include "tests/SourceFiles/settings/settingsrig.h"
#include "tests/windows/workbenchwindows.h"

#include <QApplication>
#include <QtTest>

#include <cstring>

namespace {

constexpr double percent = 100.0;

void lookAtSettings(SettingsRig& rig, const Look& look) {
    rig.run([&] { look(*rig.dialog); });
}

TourStop settings(const char* name, const std::function<void(SettingsRig&)>& prepare) {
    return {name, [prepare](const Look& look) {
                SettingsRig rig;
                prepare(rig);
                lookAtSettings(rig, look);
            }};
}

std::vector<TourStop> settingsStops() {
    return {
        settings("settings", [](SettingsRig&) {}),
        settings("settings, locked",
                 [](SettingsRig& rig) { rig.host.answer("config is_changeable", "no"); }),
        settings("settings, unavailable",
                 [](SettingsRig& rig) { rig.host.answer("measurementtool available", "no"); }),
        settings("settings, as many as can be",
                 [](SettingsRig& rig) {
                     rig.host.answer("measurementtool number_of_tools", "4");
                     rig.host.answer("measurementtool number_of_references", "4");
                 }),
        settings("settings, devices",
                 [](SettingsRig& rig) {
                     rig.setDevices({"V M 00001", "V M 00002"});
                     rig.host.answer("zelwpan device_model_desc V M",
                                     "\"Probe with seven markers and two buttons\"");
                     rig.host.answer("measurementtool device b01", "zelwpan V M 00001");
                     rig.openTab(1);
                 }),
    };
}

TourStop calibration(const char* name, const std::function<void(ScriptedHost&)>& prepare) {
    return {name, [prepare](const Look& look) {
                CalibrationRig rig;
                prepare(rig.host);
                rig.open({[&] {
                    look(*rig.dialog);
                    if (rig.dialog->isVisible()) {
                        rig.click("pushButton_exit");
                    }
                }});
            }};
}

TourStop progress(const char* name, int steps, bool calculating) {
    return {name, [steps, calculating](const Look& look) {
                ProgressRig rig;
                scriptProcedure(rig.host, steps, {"cal"});
                rig.host.answer("cal step_duration measurementtool s01", "100000");
                rig.host.answer("status progress", calculating ? "1.0" : "0.375");
                rig.whenShown([&](CalibrationProgressDlg& dialog) {
                    dialog.update_cal_status();
                    look(dialog);
                    if (dialog.isVisible()) {
                        dialog.reject();
                    }
                });
                rig.run();
            }};
}

// A message box that the calibration dialog or the procedure shows.
void lookAtBox(CalibrationRig& rig, const char* box, const Look& look) {
    rig.on(box, [&](QWidget* shown) {
        look(*shown);
        shown->close();
    });
    rig.open({[&] { rig.click("pushButton_calibrate"); }});
}

std::vector<TourStop> calibrationStops() {
    return {
        calibration("calibration", [](ScriptedHost&) {}),
        calibration("calibration, locked",
                    [](ScriptedHost& host) { host.answer("config is_changeable", "no"); }),
        calibration("calibration, no tools",
                    [](ScriptedHost& host) { host.answer("measurementtool available", "no"); }),
        calibration("calibration, no tracking",
                    [](ScriptedHost& host) { host.answer("tracking available", "no"); }),
        calibration(
            "calibration, none defined",
            [](ScriptedHost& host) { host.answer("measurementtool number_of_tools", "0"); }),
        calibration(
            "calibration, none calibrated",
            [](ScriptedHost& host) { host.answer("body calibrated measurementtool b02", "no"); }),
        calibration("calibration, not possible",
                    [](ScriptedHost& host) { host.answer("cal available measurementtool", "no"); }),
        {"calibration refused",
         [](const Look& look) {
             CalibrationRig rig;
             rig.host.answerInTurn("cal available measurementtool", {"yes", "no"});
             lookAtBox(rig, "messageBox_notAvailable", look);
         }},
        {"calibration error",
         [](const Look& look) {
             CalibrationRig rig;
             scriptProcedure(rig.host, 1, {"none", "err"});
             rig.host.answerCommand("kestrel2 get status err",
                                    "kestrel2 set status err 5 \"too little movement\"");
             lookAtBox(rig, "messageBox_calibrationError", look);
         }},
        {"help",
         [](const Look& look) {
             MtHelpDlg dialog(nullptr);
             showAndLook(dialog, look);
         }},
        {"countdown",
         [](const Look& look) {
             CountdownDlg dialog(nullptr);
             dialog.setMessage(QString(), 5);
             showAndLook(dialog, look);
         }},
        progress("progress", 1, false),
        progress("progress, two steps", 2, false),
        progress("progress, calculating", 2, true),
        {"result",
         [](const Look& look) {
             ScriptedHost host;
             scriptCalibration(host);
             MtResultDlg dialog(&host, nullptr);
             ModalWatchdog dog;
             dog.on(QStringLiteral("MtResultDlgClass"), [&](QWidget* shown) {
                 look(*shown);
                 shown->close();
             });
             dialog.update_and_exec();
             QCOMPARE(dog.strays(), QStringList());
         }},
    };
}

} // namespace

const std::vector<TourStop>& tourStops() {
    static const std::vector<TourStop> stops = [] {
        std::vector<TourStop> all = workbenchStops();
        for (const auto& more : {settingsStops(), calibrationStops()}) {
            all.insert(all.end(), more.begin(), more.end());
        }
        return all;
    }();
    return stops;
}

void addTourRows() {
    QTest::addColumn<int>("stop");
    for (std::size_t i = 0; i < tourStops().size(); ++i) {
        QTest::newRow(tourStops()[i].name) << static_cast<int>(i);
    }
}

int stopNamed(const char* name) {
    for (std::size_t i = 0; i < tourStops().size(); ++i) {
        if (std::strcmp(tourStops()[i].name, name) == 0) {
            return static_cast<int>(i);
        }
    }
    qFatal("no stop %s", name);
}

void visit(int stop, const Look& look) {
    bool looked = false;
    tourStops().at(static_cast<std::size_t>(stop)).open([&](QWidget& window) {
        QApplication::setActiveWindow(&window);
        QTest::qWait(0);
        looked = true;
        look(window);
    });
    QVERIFY2(looked, "the window was not shown");
}

Surroundings::Surroundings(const char* language, int fontPercent)
    : m_before(QApplication::font())
    , m_translations(QLatin1String(language), {QStringLiteral(KESTREL_TRANSLATIONS_DIR)}) {
    if (m_translations.language() != QLatin1String(language)) {
        qFatal("no texts in %s", language);
    }
    QFont font = m_before;
    font.setPointSizeF(font.pointSizeF() * fontPercent / percent);
    QApplication::setFont(font);
}

Surroundings::~Surroundings() {
    QApplication::setFont(m_before);
}
