#include "tests/SourceFiles/settings/settingsrig.h"

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QSpinBox>
#include <QtTest>

class TestMtSettingsDlgCounts : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void raisingTheToolsAsksForTheNewOnes_data() { addProtocolRows(); }
    void raisingTheToolsAsksForTheNewOnes() {
        QFETCH(VersionInfo, protocol);
        SettingsRig rig(protocol);
        rig.host.answer("measurementtool device b04", "zelwpan V M 7");
        rig.host.answer("zelwpan device_model_desc V M", "pen");
        rig.run([&] {
            rig.setSpin("spinBox_noOfMeaBodies", 4);
            COMPARE_LINES(rig.operations(),
                          forProtocol({"set measurementtool number_of_tools 4",
                                       "get_int measurementtool max_number_of_references",
                                       "get_string measurementtool reference_of_tool b03",
                                       "get_string measurementtool device b03",
                                       "get_string measurementtool reference_of_tool b04",
                                       "get_string measurementtool device b04",
                                       "get_string zelwpan device_model_desc V M"},
                                      protocol));
        });
    }

    void loweringTheToolsAsksForNoBody_data() { addProtocolRows(); }
    void loweringTheToolsAsksForNoBody() {
        QFETCH(VersionInfo, protocol);
        SettingsRig rig(protocol);
        rig.run([&] {
            rig.setSpin("spinBox_noOfMeaBodies", 1);
            COMPARE_LINES(rig.operations(),
                          forProtocol({"set measurementtool number_of_tools 1",
                                       "get_int measurementtool max_number_of_references"},
                                      protocol));
        });
    }

    void theFirstToolReadsThePointMeasurement_data() { addProtocolRows(); }
    void theFirstToolReadsThePointMeasurement() {
        QFETCH(VersionInfo, protocol);
        SettingsRig rig(protocol);
        rig.host.answer("measurementtool number_of_tools", "0");
        rig.run([&] {
            rig.setSpin("spinBox_noOfMeaBodies", 1);
            COMPARE_LINES(
                rig.operations(),
                forProtocol({"set measurementtool number_of_tools 1",
                             "get_int measurementtool max_number_of_references",
                             "get_string measurementtool reference_of_tool b01",
                             "get_string measurementtool device b01",
                             "get_double measurementtool measurement_duration b01",
                             "get_double measurementtool measurement_tip_tolerance b01",
                             "get_string measurementtool measurement_start_simulation b01",
                             "get_double measurementtool measurement_start_angle b01",
                             "get_double measurementtool measurement_start_lead_time b01"},
                            protocol));
        });
    }

    void loweringTheReferencesAsksForTheOtherMaximumOnly_data() { addProtocolRows(); }
    void loweringTheReferencesAsksForTheOtherMaximumOnly() {
        QFETCH(VersionInfo, protocol);
        SettingsRig rig(protocol);
        rig.run([&] {
            rig.setSpin("spinBox_noOfRefBodies", 1);
            COMPARE_LINES(rig.operations(),
                          forProtocol({"set measurementtool number_of_references 1",
                                       "get_int measurementtool max_number_of_tools"},
                                      protocol));
        });
    }

    void raisingTheReferencesAsksAgainForToolsWithoutOne_data() { addProtocolRows(); }
    void raisingTheReferencesAsksAgainForToolsWithoutOne() {
        QFETCH(VersionInfo, protocol);
        SettingsRig rig(protocol);
        rig.host.answerInTurn("measurementtool reference_of_tool b02", {"none", "b04"});
        rig.run([&] {
            rig.setSpin("spinBox_noOfRefBodies", 4);
            COMPARE_LINES(rig.operations(),
                          forProtocol({"set measurementtool number_of_references 4",
                                       "get_int measurementtool max_number_of_tools",
                                       "get_string measurementtool reference_of_tool b02"},
                                      protocol));
            if (protocol.mi != 2) {
                QCOMPARE(rig.column("tableWidget_meaBodies", 2), QStringList({"MR2", "MR4"}));
            }
        });
    }

    void aRefusedToolCountIsLoggedAndNothingElseHappens() {
        SettingsRig rig;
        rig.host.fail("measurementtool number_of_tools 4");
        rig.run([&] {
            rig.setSpin("spinBox_noOfMeaBodies", 4);
            COMPARE_LINES(rig.host.journal(),
                          Lines{"set measurementtool number_of_tools 4",
                                "log standard KESTREL3 1 Error: Unable to set number of mea "
                                "tools = 4"});
            QCOMPARE(rig.child<QSpinBox>("spinBox_noOfMeaBodies")->value(), 4);
            QCOMPARE(rig.child<QTableWidget>("tableWidget_meaBodies")->rowCount(), 2);
        });
        COMPARE_LINES(rig.operations(), Lines{"set measurementtool number_of_tools 4"});
    }

    void aRefusedReferenceCountIsLoggedAsOneOfTools() {
        SettingsRig rig;
        rig.host.fail("measurementtool number_of_references 1");
        rig.run([&] {
            rig.setSpin("spinBox_noOfRefBodies", 1);
            COMPARE_LINES(rig.host.journal(),
                          Lines{"set measurementtool number_of_references 1",
                                "log standard KESTREL3 1 Error: Unable to set number of mea "
                                "tools = 1"});
            QCOMPARE(rig.child<QTableWidget>("tableWidget_refBodies")->rowCount(), 3);
            QCOMPARE(rig.cell("tableWidget_meaBodies", 0, 2), QString("MR2"));
        });
    }

    void theOtherMaximumIsTakenOver() {
        SettingsRig rig;
        rig.run([&] {
            rig.host.answer("measurementtool max_number_of_references", "6");
            rig.setSpin("spinBox_noOfMeaBodies", 1);
            QCOMPARE(rig.child<QSpinBox>("spinBox_noOfRefBodies")->maximum(), 6);
            rig.host.answer("measurementtool max_number_of_tools", "9");
            rig.setSpin("spinBox_noOfRefBodies", 2);
            QCOMPARE(rig.child<QSpinBox>("spinBox_noOfMeaBodies")->maximum(), 9);
            rig.host.fail("measurementtool max_number_of_tools");
            rig.setSpin("spinBox_noOfRefBodies", 1);
            QCOMPARE(rig.child<QSpinBox>("spinBox_noOfMeaBodies")->maximum(), 9);
        });
        COMPARE_LINES(rig.host.logTexts(), Lines());
    }

    void aLowerMaximumTakesTheOtherCountWithIt() {
        SettingsRig rig;
        rig.run([&] {
            rig.host.answer("measurementtool max_number_of_references", "1");
            rig.setSpin("spinBox_noOfMeaBodies", 3);
            COMPARE_LINES(rig.operations(),
                          Lines{"set measurementtool number_of_tools 3",
                                "get_int measurementtool max_number_of_references",
                                "set measurementtool number_of_references 1",
                                "get_int measurementtool max_number_of_tools",
                                "get_string measurementtool reference_of_tool b03",
                                "get_string measurementtool device b03"});
            QCOMPARE(rig.column("tableWidget_refBodies", 0), QStringList({"MR1"}));
            QCOMPARE(rig.column("tableWidget_meaBodies", 2), QStringList({"none", "none", "none"}));
        });
    }

    void countsThatLowerEachOtherEndWithWhatTheControllerWasToldLast() {
        SettingsRig rig;
        rig.run([&] {
            rig.host.answer("measurementtool max_number_of_references", "1");
            rig.host.answer("measurementtool max_number_of_tools", "1");
            rig.setSpin("spinBox_noOfMeaBodies", 3);
            QCOMPARE(rig.child<QSpinBox>("spinBox_noOfMeaBodies")->value(), 1);
            QCOMPARE(rig.column("tableWidget_meaBodies", 0), QStringList({"M1"}));
            const Lines lines = rig.operations();
            QVERIFY(std::find(lines.begin(), lines.end(),
                              "set measurementtool number_of_tools 1") != lines.end());
        });
    }

    void assignmentsOfHiddenToolsComeBack() {
        SettingsRig rig;
        rig.host.answer("measurementtool number_of_tools", "3");
        rig.run([&] {
            rig.clickCell("tableWidget_meaBodies", 2);
            rig.clickCell("tableWidget_refBodies", 2);
            rig.click("pushButton_select");
            rig.setSpin("spinBox_noOfMeaBodies", 1);
            QCOMPARE(rig.column("tableWidget_meaBodies", 2), QStringList({"MR2"}));
            rig.operations();
            rig.setSpin("spinBox_noOfMeaBodies", 3);
            QCOMPARE(rig.column("tableWidget_meaBodies", 2), QStringList({"MR2", "none", "MR3"}));
            COMPARE_LINES(rig.operations(),
                          Lines{"set measurementtool number_of_tools 3",
                                "get_int measurementtool max_number_of_references"});
        });
    }

    void aHiddenReferenceComesBackWithoutAskingTheController() {
        SettingsRig rig;
        rig.host.answer("measurementtool reference_of_tool b01", "b03");
        rig.host.answer("measurementtool reference_of_tool b02", "b01");
        rig.run([&] {
            rig.setSpin("spinBox_noOfRefBodies", 2);
            QCOMPARE(rig.column("tableWidget_meaBodies", 2), QStringList({"none", "MR1"}));
            rig.operations();
            rig.setSpin("spinBox_noOfRefBodies", 3);
            QCOMPARE(rig.column("tableWidget_meaBodies", 2), QStringList({"MR3", "MR1"}));
            COMPARE_LINES(rig.operations(), Lines{"set measurementtool number_of_references 3",
                                                  "get_int measurementtool max_number_of_tools"});
        });
    }

    void aReferenceThatIsStillHiddenIsAskedForAgain() {
        SettingsRig rig;
        rig.host.answerInTurn("measurementtool reference_of_tool b01", {"b03", "none"});
        rig.host.answer("measurementtool reference_of_tool b02", "b01");
        rig.run([&] {
            rig.setSpin("spinBox_noOfRefBodies", 1);
            rig.operations();
            rig.setSpin("spinBox_noOfRefBodies", 2);
            QCOMPARE(rig.column("tableWidget_meaBodies", 2), QStringList({"none", "MR1"}));
            COMPARE_LINES(rig.operations(),
                          Lines{"set measurementtool number_of_references 2",
                                "get_int measurementtool max_number_of_tools",
                                "get_string measurementtool reference_of_tool b01"});
        });
    }

    void theAnswerOnRaisingTheReferencesIsRememberedToo() {
        SettingsRig rig;
        rig.host.answerInTurn("measurementtool reference_of_tool b02", {"none", "b04", "none"});
        rig.run([&] {
            rig.setSpin("spinBox_noOfRefBodies", 4);
            rig.setSpin("spinBox_noOfRefBodies", 3);
            QCOMPARE(rig.cell("tableWidget_meaBodies", 1, 2), QString("none"));
            rig.operations();
            rig.setSpin("spinBox_noOfRefBodies", 4);
            QCOMPARE(rig.cell("tableWidget_meaBodies", 1, 2), QString("MR4"));
            COMPARE_LINES(rig.operations(), Lines{"set measurementtool number_of_references 4",
                                                  "get_int measurementtool max_number_of_tools"});
        });
    }

    void aReferenceThatDoesNotExistIsDroppedWhenToolsAreAdded() {
        SettingsRig rig;
        rig.host.answer("measurementtool reference_of_tool b02", "b05");
        rig.host.answer("measurementtool reference_of_tool b03", "b04");
        rig.run([&] {
            QCOMPARE(rig.column("tableWidget_meaBodies", 2), QStringList({"MR2", "MR5"}));
            rig.setSpin("spinBox_noOfMeaBodies", 1);
            rig.setSpin("spinBox_noOfMeaBodies", 3);
            QCOMPARE(rig.column("tableWidget_meaBodies", 2), QStringList({"MR2", "none", "none"}));
        });
    }

    void aReferenceThatDoesNotExistStaysWhenTheToolsAreNotRaised() {
        SettingsRig rig;
        rig.host.answer("measurementtool reference_of_tool b02", "b05");
        rig.host.fail("measurementtool number_of_tools 3");
        rig.run([&] {
            rig.setSpin("spinBox_noOfMeaBodies", 3);
            rig.setSpin("spinBox_noOfMeaBodies", 2); // back, after a refusal: the same number
            QCOMPARE(rig.column("tableWidget_meaBodies", 2), QStringList({"MR2", "MR5"}));
        });
    }

    void aNegativeReferenceIsNoneAndAskedForAgain() {
        SettingsRig rig;
        rig.host.answerInTurn("measurementtool reference_of_tool b02", {"b-5", "b01"});
        rig.run([&] {
            QCOMPARE(rig.cell("tableWidget_meaBodies", 1, 2), QString("none"));
            rig.setSpin("spinBox_noOfRefBodies", 4);
            QCOMPARE(rig.cell("tableWidget_meaBodies", 1, 2), QString("MR1"));
        });
    }

    void theCurrentRowFollowsTheTable() {
        SettingsRig rig;
        rig.host.answer("measurementtool number_of_tools", "4");
        rig.run([&] {
            rig.clickCell("tableWidget_meaBodies", 3);
            rig.setSpin("spinBox_noOfMeaBodies", 3);
            QCOMPARE(rig.child<QTableWidget>("tableWidget_meaBodies")->currentRow(), 2);
            rig.setSpin("spinBox_noOfMeaBodies", 0);
            QCOMPARE(rig.child<QTableWidget>("tableWidget_meaBodies")->currentRow(), -1);
            rig.setSpin("spinBox_noOfMeaBodies", 4);
            QCOMPARE(rig.child<QTableWidget>("tableWidget_meaBodies")->currentRow(), 2);
        });
    }
};

QTEST_MAIN(TestMtSettingsDlgCounts)
#include "test_mtsettingsdlg_counts.moc"
