#include "tests/SourceFiles/settings/settingsrig.h"
#include "tests/support/datarows.h"

#include <QCheckBox>
#include <QSpinBox>
#include <QtTest>

#include <algorithm>

namespace {

// What OK asks of a controller of 1.14 when nothing was edited: two tools, M1 with a device.
Lines unchanged() {
    return {
        "get_int measurementtool number_of_tools",
        "get_int measurementtool number_of_references",
        "set measurementtool reference_of_tool b01 b02",
        "set measurementtool reference_of_tool b02 none",
        "set measurementtool device b01 zelwpan V M 00001",
        "set measurementtool device b02 none",
        "get_double measurementtool measurement_duration b01",
        "get_double measurementtool measurement_duration b02",
        "get_double measurementtool measurement_tip_tolerance b01",
        "get_double measurementtool measurement_tip_tolerance b02",
        "get_string measurementtool measurement_start_simulation b01",
        "get_string measurementtool measurement_start_simulation b02",
        "get_double measurementtool measurement_start_angle b01",
        "get_double measurementtool measurement_start_angle b02",
        "get_double measurementtool measurement_start_lead_time b01",
        "set measurementtool measurement_start_lead_time b01 0.500",
        "get_double measurementtool measurement_start_lead_time b02",
        "set measurementtool measurement_start_lead_time b02 0.500",
        "get_bool measurementtool output_6dmt",
        "get_double measurementtool tip_radius b01",
        "get_double measurementtool tip_radius b02",
    };
}

Lines onlySets(const Lines& lines) {
    return without(lines, "get_");
}

// Edits, presses OK and returns the operations of OK.
Lines applied(
    SettingsRig& rig, const std::function<void()>& edit = [] {}) {
    Lines lines;
    rig.run([&] {
        edit();
        rig.host.clearJournal();
        rig.click("pushButton_ok");
        lines = rig.host.operations();
        QVERIFY(!rig.dialog->isVisible());
    });
    return lines;
}

} // namespace

class TestMtSettingsDlgApply : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anOkWithoutEditsWritesOnlyWhatIsAlwaysWritten_data() { addProtocolRows(); }
    void anOkWithoutEditsWritesOnlyWhatIsAlwaysWritten() {
        QFETCH(VersionInfo, protocol);
        SettingsRig rig(protocol);
        rig.host.answer("measurementtool device b01", "zelwpan V M 1");
        rig.host.answer("zelwpan device_model_desc V M", "pen");
        if (protocol.ma == 1 && protocol.mi == 2) {
            rig.run([&] {
                rig.click("pushButton_ok"); // disabled: nothing happens
                QVERIFY(rig.dialog->isVisible());
                COMPARE_LINES(rig.operations(), Lines());
            });
            return;
        }
        COMPARE_LINES(applied(rig), forProtocol(unchanged(), protocol));
        COMPARE_LINES(rig.logs(), Lines());
    }

    void everythingEditedIsWrittenInThisOrder_data() { addProtocolRows(); }
    void everythingEditedIsWrittenInThisOrder() {
        QFETCH(VersionInfo, protocol);
        if (protocol.ma == 1 && protocol.mi == 2) {
            return; // no edit is possible there
        }
        SettingsRig rig(protocol);
        rig.setDevices({"V M 1"});
        rig.host.answer("measurementtool number_of_tools", "1");
        const Lines lines = applied(rig, [&] {
            rig.clickCell("tableWidget_refBodies", 2);
            rig.click("pushButton_select");
            if (rig.child<QTableWidget>("tableWidget_availableMt")->rowCount() > 0) {
                rig.openTab(1);
                rig.clickCell("tableWidget_availableMt", 0, 3);
                rig.click("pushButton_select");
            }
            rig.setDoubleSpin("doubleSpinBox_duration", 1.5);
            rig.setDoubleSpin("doubleSpinBox_tipTolerance", 0.1);
            rig.setSpin("spinBox_startAngle", 120);
            rig.setDoubleSpin("doubleSpinBox_startLeadTime", 1.0);
            rig.click("checkBox_startSimulation");
            rig.click("checkBox_useOldOutputFormat");
            rig.setCell("tableWidget_meaBodies", 0, 1, "3.0");
            // Someone else has changed the counts meanwhile.
            rig.host.answer("measurementtool number_of_tools", "4");
            rig.host.answer("measurementtool number_of_references", "5");
        });
        COMPARE_LINES(onlySets(lines),
                      forProtocol({"set measurementtool number_of_tools 1",
                                   "set measurementtool number_of_references 3",
                                   "set measurementtool reference_of_tool b01 b03",
                                   "set measurementtool device b01 zelwpan V M 00001",
                                   "set measurementtool measurement_duration b01 1.500",
                                   "set measurementtool measurement_tip_tolerance b01 0.100",
                                   "set measurementtool measurement_start_simulation b01 no",
                                   "set measurementtool measurement_start_angle b01 120.000",
                                   "set measurementtool measurement_start_lead_time b01 1.000",
                                   "set measurementtool output_6dmt yes",
                                   "set measurementtool tip_radius b01 1.500"},
                                  protocol));
    }

    void withoutToolsOnlyTheCountsAndTheFormatAreLookedAt() {
        SettingsRig rig;
        rig.host.answer("measurementtool number_of_tools", "0");
        COMPARE_LINES(applied(rig), Lines{"get_int measurementtool number_of_tools",
                                          "get_int measurementtool number_of_references",
                                          "get_bool measurementtool output_6dmt"});
    }

    void eachToolIsComparedByItself() {
        SettingsRig rig;
        rig.host.answer("measurementtool measurement_duration b02", "9.0");
        rig.host.answer("measurementtool measurement_start_simulation b02", "no");
        COMPARE_LINES(onlySets(applied(rig)),
                      Lines{"set measurementtool reference_of_tool b01 b02",
                            "set measurementtool reference_of_tool b02 none",
                            "set measurementtool device b01 none",
                            "set measurementtool device b02 none",
                            "set measurementtool measurement_duration b02 2.000",
                            "set measurementtool measurement_start_simulation b02 yes",
                            "set measurementtool measurement_start_lead_time b01 0.500",
                            "set measurementtool measurement_start_lead_time b02 0.500"});
    }

    void theLeadTimeIsComparedWithTheStartAngle() {
        SettingsRig rig;
        rig.host.answer("measurementtool measurement_start_lead_time b02", "45.0");
        const Lines lines = applied(rig);
        QVERIFY(std::find(lines.begin(), lines.end(),
                          "set measurementtool measurement_start_lead_time b01 0.500") !=
                lines.end());
        for (const std::string& line : lines) {
            QVERIFY(line.find("set measurementtool measurement_start_lead_time b02") ==
                    std::string::npos);
        }
    }

    void anUnreadStartSimulationIsWrittenWhateverTheBoxShows_data() {
        QTest::addColumn<bool>("checked");
        QTest::addColumn<QString>("written");
        row("checked", true, "yes");
        row("unchecked", false, "no");
    }
    void anUnreadStartSimulationIsWrittenWhateverTheBoxShows() {
        QFETCH(bool, checked);
        QFETCH(QString, written);
        SettingsRig rig;
        const Lines lines = applied(rig, [&] {
            rig.child<QCheckBox>("checkBox_startSimulation")->setChecked(checked);
            rig.host.fail("measurementtool measurement_start_simulation b01");
        });
        const std::string expected =
            "set measurementtool measurement_start_simulation b01 " + written.toStdString();
        QVERIFY(std::find(lines.begin(), lines.end(), expected) != lines.end());
    }

    void aStateThatIsNeitherYesNorNoCountsAsOff_data() {
        QTest::addColumn<QString>("reply");
        QTest::addColumn<bool>("written");
        row("maybe", "maybe", false);
        row("no", "no", false);
        row("yes", "yes", true);
    }
    void aStateThatIsNeitherYesNorNoCountsAsOff() {
        QFETCH(QString, reply);
        SettingsRig rig;
        rig.host.answer("measurementtool measurement_start_simulation b01", "no");
        const Lines lines = applied(rig, [&] {
            rig.host.answer("measurementtool measurement_start_simulation b02",
                            reply.toStdString());
        });
        QTEST(std::find(lines.begin(), lines.end(),
                        "set measurementtool measurement_start_simulation b02 no") != lines.end(),
              "written");
    }

    void theOutputFormatIsWrittenOnlyWhenItDiffers_data() {
        QTest::addColumn<bool>("old");
        QTest::addColumn<QString>("controller");
        QTest::addColumn<QString>("written");
        row("new on new", false, "no", "");
        row("new on old", false, "yes", "set measurementtool output_6dmt no");
        row("old on new", true, "no", "set measurementtool output_6dmt yes");
        row("old on old", true, "yes", "");
        row("new, unread", false, "(fails)", "set measurementtool output_6dmt no");
        row("old, unread", true, "(fails)", "");
    }
    void theOutputFormatIsWrittenOnlyWhenItDiffers() {
        QFETCH(bool, old);
        QFETCH(QString, controller);
        SettingsRig rig;
        rig.host.answer("measurementtool number_of_tools", "0");
        rig.host.answer("measurementtool output_6dmt", old ? "yes" : "no");
        const Lines lines = applied(rig, [&] {
            rig.host.answer("measurementtool output_6dmt", controller.toStdString());
            if (controller == "(fails)") {
                rig.host.fail("measurementtool output_6dmt");
            }
        });
        QTEST(asText(onlySets(lines)), "written");
    }

    void onlyChangedDiametersAreWritten() {
        SettingsRig rig;
        const Lines lines =
            applied(rig, [&] { rig.setCell("tableWidget_meaBodies", 1, 1, "4.5"); });
        COMPARE_LINES(Lines(lines.end() - 3, lines.end()),
                      Lines{"get_double measurementtool tip_radius b01",
                            "get_double measurementtool tip_radius b02",
                            "set measurementtool tip_radius b02 2.250"});
    }

    void aRadiusThatTheTableRoundsIsRewritten() {
        SettingsRig rig;
        rig.host.answer("measurementtool tip_radius b01", "0.768");
        const Lines lines = applied(rig);
        QCOMPARE(std::count(lines.begin(), lines.end(), "set measurementtool tip_radius b01 0.750"),
                 1);
    }

    void theZeroOfANewToolIsWritten() {
        SettingsRig rig;
        const Lines lines = applied(rig, [&] { rig.setSpin("spinBox_noOfMeaBodies", 3); });
        QCOMPARE(lines.back(), std::string("set measurementtool tip_radius b03 0.000"));
    }

    void devicesAndTheirTextsTravelAsUtf8() {
        SettingsRig rig;
        rig.host.answer("measurementtool device b01", "zelwpan V\xc3\xa9 M%s 1");
        const Lines lines = applied(rig);
        QCOMPARE(std::count(lines.begin(), lines.end(),
                            "set measurementtool device b01 zelwpan V\xc3\xa9 M%s 00001"),
                 1);
    }

    void aFailedReadMakesAValueCountAsChanged() {
        SettingsRig rig;
        const Lines lines = applied(rig, [&] {
            for (const std::string& line : unchanged()) {
                if (line.rfind("get_", 0) == 0 && line.find("tip_radius") == std::string::npos) {
                    rig.host.fail(line.substr(line.find(' ') + 1));
                }
            }
        });
        COMPARE_LINES(onlySets(lines),
                      Lines{"set measurementtool number_of_tools 2",
                            "set measurementtool number_of_references 3",
                            "set measurementtool reference_of_tool b01 b02",
                            "set measurementtool reference_of_tool b02 none",
                            "set measurementtool device b01 none",
                            "set measurementtool device b02 none",
                            "set measurementtool measurement_duration b01 2.000",
                            "set measurementtool measurement_duration b02 2.000",
                            "set measurementtool measurement_tip_tolerance b01 2.500",
                            "set measurementtool measurement_tip_tolerance b02 2.500",
                            "set measurementtool measurement_start_simulation b01 yes",
                            "set measurementtool measurement_start_simulation b02 yes",
                            "set measurementtool measurement_start_angle b01 45.000",
                            "set measurementtool measurement_start_angle b02 45.000",
                            "set measurementtool measurement_start_lead_time b01 0.500",
                            "set measurementtool measurement_start_lead_time b02 0.500",
                            "set measurementtool output_6dmt no"});
    }
};

QTEST_MAIN(TestMtSettingsDlgApply)
#include "test_mtsettingsdlg_apply.moc"
