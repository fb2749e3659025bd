#include "tests/SourceFiles/settings/settingsrig.h"

#include <QLabel>
#include <QSpinBox>
#include <QtTest>

namespace {

const char* const toolTable = "tableWidget_meaBodies";
const char* const referenceTable = "tableWidget_refBodies";
const char* const deviceTable = "tableWidget_availableMt";

} // namespace

class TestMtSettingsDlgAssignments : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void selectAssignsTheReferenceToTheTool() {
        SettingsRig rig;
        rig.run([&] {
            rig.clickCell(toolTable, 1);
            rig.clickCell(referenceTable, 2);
            rig.click("pushButton_select");
            QCOMPARE(rig.column(toolTable, 2), QStringList({"MR2", "MR3"}));
            QVERIFY(!rig.isEnabled("pushButton_select"));
            QVERIFY(rig.isEnabled("pushButton_deselect"));
            COMPARE_LINES(rig.operations(), Lines());
        });
    }

    void deselectTakesTheReferenceAway() {
        SettingsRig rig;
        rig.run([&] {
            rig.clickCell(toolTable, 0);
            rig.click("pushButton_deselect");
            QCOMPARE(rig.column(toolTable, 2), QStringList({"none", "none"}));
            QVERIFY(rig.isEnabled("pushButton_select"));
            QVERIFY(!rig.isEnabled("pushButton_deselect"));
            COMPARE_LINES(rig.operations(), Lines());
        });
    }

    void aChosenReferenceIsTheOneThatIsRemembered() {
        SettingsRig rig;
        rig.run([&] {
            rig.clickCell(toolTable, 0);
            rig.clickCell(referenceTable, 2);
            rig.click("pushButton_select");
            rig.setSpin("spinBox_noOfRefBodies", 1);
            QCOMPARE(rig.cell(toolTable, 0, 2), QString("none"));
            rig.setSpin("spinBox_noOfRefBodies", 3);
            QCOMPARE(rig.cell(toolTable, 0, 2), QString("MR3"));
        });
    }

    void aDeselectedReferenceIsAskedForAgainWhenReferencesAreAdded() {
        SettingsRig rig;
        rig.run([&] {
            rig.clickCell(toolTable, 0);
            rig.click("pushButton_deselect");
            rig.setSpin("spinBox_noOfRefBodies", 4);
            COMPARE_LINES(rig.operations(),
                          Lines{"set measurementtool number_of_references 4",
                                "get_int measurementtool max_number_of_tools",
                                "get_string measurementtool reference_of_tool b01",
                                "get_string measurementtool reference_of_tool b02"});
            QCOMPARE(rig.cell(toolTable, 0, 2), QString("MR2"));
        });
    }

    void selectAssignsADeviceAndDeselectTakesItAway() {
        SettingsRig rig;
        rig.setDevices({"V M 1", "V N 2"});
        rig.run([&] {
            rig.openTab(1);
            rig.clickCell(toolTable, 1);
            rig.clickCell(deviceTable, 1, 3);
            rig.click("pushButton_select");
            QCOMPARE(rig.column(toolTable, 3), QStringList({"", "desc N"}));
            QCOMPARE(rig.column(toolTable, 4), QStringList({"", "00002"}));
            QVERIFY(!rig.isEnabled("pushButton_select"));
            QVERIFY(rig.isEnabled("pushButton_deselect"));
            QCOMPARE(rig.column(toolTable, 2), QStringList({"MR2", "none"}));
            rig.click("pushButton_deselect");
            QCOMPARE(rig.column(toolTable, 3), QStringList({"", ""}));
            QVERIFY(rig.isEnabled("pushButton_select"));
            QVERIFY(!rig.isEnabled("pushButton_deselect"));
        });
    }

    void aDeviceBelongsToOneToolOnly() {
        SettingsRig rig;
        rig.setDevices({"V M 1", "V N 2"});
        rig.host.answer("measurementtool device b02", "zelwpan V M 00001");
        rig.run([&] {
            rig.openTab(1);
            rig.clickCell(toolTable, 0);
            rig.clickCell(deviceTable, 0, 3);
            QVERIFY(!rig.isEnabled("pushButton_select"));
            rig.clickCell(deviceTable, 1, 3);
            QVERIFY(rig.isEnabled("pushButton_select"));
        });
    }

    void aDeviceOfAHiddenToolIsStillTaken() {
        SettingsRig rig;
        rig.setDevices({"V M 1"});
        rig.host.answer("measurementtool device b02", "zelwpan V M 00001");
        rig.run([&] {
            rig.openTab(1);
            rig.setSpin("spinBox_noOfMeaBodies", 1);
            rig.clickCell(deviceTable, 0, 3);
            QVERIFY(!rig.isEnabled("pushButton_select"));
        });
    }

    void theSerialTellsDevicesOfOneModelApart() {
        SettingsRig rig;
        rig.setDevices({"V M 1", "V M 2"});
        rig.host.answer("measurementtool device b02", "zelwpan V M 00001");
        rig.run([&] {
            rig.openTab(1);
            rig.clickCell(deviceTable, 0, 3);
            QVERIFY(!rig.isEnabled("pushButton_select"));
            rig.clickCell(deviceTable, 1, 3);
            QVERIFY(rig.isEnabled("pushButton_select"));
        });
    }

    void theDescriptionDoesNotTellDevicesApart() {
        SettingsRig rig;
        rig.setDevices({"V M 1"});
        rig.host.answer("measurementtool device b02", "zelwpan V M 00001");
        rig.host.answerInTurn("zelwpan device_model_desc V M", {"one", "another"});
        rig.run([&] {
            rig.openTab(1);
            rig.clickCell(deviceTable, 0, 3);
            QCOMPARE(rig.cell(deviceTable, 0, 3), QString("another"));
            QVERIFY(!rig.isEnabled("pushButton_select"));
        });
    }

    void anEmptyDeviceRowEqualsNoDevice() {
        SettingsRig rig;
        rig.setDevices({"none", "V M 1"});
        rig.host.answer("measurementtool number_of_tools", "1");
        rig.run([&] {
            rig.openTab(1);
            rig.clickCell(deviceTable, 0, 3);
            QVERIFY(!rig.isEnabled("pushButton_select"));
            rig.clickCell(deviceTable, 1, 3);
            rig.click("pushButton_select");
            rig.clickCell(deviceTable, 0, 3);
            QVERIFY(rig.isEnabled("pushButton_select"));
            rig.click("pushButton_select");
            QCOMPARE(rig.cell(toolTable, 0, 4), QString());
        });
    }

    void aTickThatPutsATakenDeviceIntoTheCurrentRowDisablesSelect() {
        SettingsRig rig;
        rig.setDevices({"V N 2"});
        rig.host.answer("measurementtool device b02", "zelwpan V M 00001");
        rig.run([&] {
            rig.openTab(1);
            rig.clickCell(deviceTable, 0, 3);
            QVERIFY(rig.isEnabled("pushButton_select"));
            rig.setDevices({"V N 2", "V M 1"});
            rig.tick();
            QVERIFY(!rig.isEnabled("pushButton_select"));
        });
    }

    void theTabDecidesWhatTheButtonsAreAbout() {
        SettingsRig rig;
        rig.setDevices({"V M 1"});
        rig.run([&] {
            rig.clickCell(toolTable, 0);
            rig.clickCell(referenceTable, 0);
            QVERIFY(rig.isEnabled("pushButton_select"));
            QVERIFY(rig.isEnabled("pushButton_deselect"));
            rig.openTab(1);
            QVERIFY(!rig.isEnabled("pushButton_select")); // no device row is current
            QVERIFY(!rig.isEnabled("pushButton_deselect"));
            rig.clickCell(deviceTable, 0, 3);
            QVERIFY(rig.isEnabled("pushButton_select"));
            rig.openTab(0);
            QVERIFY(rig.isEnabled("pushButton_select"));
            QVERIFY(rig.isEnabled("pushButton_deselect"));
        });
    }

    void theAssignedReferenceCannotBeSelectedAgain() {
        SettingsRig rig;
        rig.run([&] {
            rig.clickCell(toolTable, 0);
            rig.clickCell(referenceTable, 1);
            QVERIFY(!rig.isEnabled("pushButton_select"));
            rig.clickCell(referenceTable, 0);
            QVERIFY(rig.isEnabled("pushButton_select"));
        });
    }

    void withoutACurrentToolBothButtonsAreDisabledAndDoNothing() {
        SettingsRig rig;
        rig.host.answer("measurementtool number_of_tools", "0");
        rig.run([&] {
            for (const char* button : {"pushButton_select", "pushButton_deselect"}) {
                QVERIFY(!rig.isEnabled(button));
                QMetaObject::invokeMethod(rig.dialog,
                                          qPrintable(QString("on_%1_clicked").arg(button)));
            }
            COMPARE_LINES(rig.operations(), Lines());
        });
    }

    void withoutACurrentRowBesideTheToolSelectDoesNothing_data() {
        QTest::addColumn<int>("tab");
        QTest::newRow("reference") << 0;
        QTest::newRow("device") << 1;
    }
    void withoutACurrentRowBesideTheToolSelectDoesNothing() {
        QFETCH(int, tab);
        SettingsRig rig;
        rig.setDevices({"V M 1"});
        rig.host.answer("measurementtool device b01", "zelwpan V N 00002");
        rig.run([&] {
            rig.openTab(tab);
            rig.clickCell(toolTable, 0);
            rig.child<QTableWidget>(tab == 0 ? "tableWidget_refBodies" : deviceTable)
                ->setCurrentCell(-1, -1);
            QVERIFY(QMetaObject::invokeMethod(rig.dialog, "on_pushButton_select_clicked"));
            QCOMPARE(rig.column(toolTable, 2), QStringList({"MR2", "none"}));
            QCOMPARE(rig.column(toolTable, 4), QStringList({"00002", ""}));
        });
    }

    void theWarningIsThatOfTheTable_data() {
        QTest::addColumn<int>("tools");
        QTest::addColumn<int>("maxTools");
        QTest::addColumn<int>("references");
        QTest::addColumn<int>("maxReferences");
        QTest::addColumn<QString>("warning");
        const QString both = "Max. number of Measurement Tools and references are reached!";
        const QString bodies = "Max. number of bodies is reached!";
        const QString ofTools = "Max. number of Measurement Tools is reached!";
        const QString ofReferences = "Max. number of references is reached!";
        QTest::newRow("both maxima 0") << 0 << 0 << 0 << 0 << "";
        QTest::newRow("4 and 4") << 4 << 6 << 4 << 6 << both;
        QTest::newRow("4 and 4, both at the maximum") << 4 << 4 << 4 << 4 << both;
        QTest::newRow("4 tools, references at the maximum") << 4 << 6 << 2 << 2 << bodies;
        QTest::newRow("tools at the maximum, 4 references") << 3 << 3 << 4 << 6 << bodies;
        QTest::newRow("4 tools") << 4 << 6 << 1 << 6 << ofTools;
        QTest::newRow("4 tools are the limit, not the maximum") << 4 << 4 << 1 << 6 << ofTools;
        QTest::newRow("4 references") << 1 << 6 << 4 << 6 << ofReferences;
        QTest::newRow("room for both") << 1 << 3 << 1 << 3 << "";
        QTest::newRow("5 and 5 with room") << 5 << 8 << 5 << 8 << "";
        QTest::newRow("tools at the maximum") << 3 << 3 << 1 << 3 << bodies;
        QTest::newRow("references at the maximum") << 1 << 3 << 3 << 3 << bodies;
        QTest::newRow("no tools possible") << 0 << 0 << 1 << 3 << bodies;
        QTest::newRow("beyond 4, at both maxima") << 5 << 5 << 6 << 6 << bodies;
    }
    void theWarningIsThatOfTheTable() {
        QFETCH(int, tools);
        QFETCH(int, maxTools);
        QFETCH(int, references);
        QFETCH(int, maxReferences);
        QFETCH(QString, warning);
        SettingsRig rig;
        rig.host.answer("measurementtool max_number_of_tools", std::to_string(maxTools));
        rig.host.answer("measurementtool number_of_tools", std::to_string(tools));
        rig.host.answer("measurementtool max_number_of_references", std::to_string(maxReferences));
        rig.host.answer("measurementtool number_of_references", std::to_string(references));
        rig.run([&] {
            QCOMPARE(rig.child<QLabel>("label_max_error")->text(),
                     warning.isEmpty() ? QString()
                                       : QString("<b><font color=red>%1</font></b>").arg(warning));
        });
    }

    void theWarningFollowsAnEditOnceTheOtherMaximumIsRead() {
        SettingsRig rig;
        rig.run([&] {
            rig.setSpin("spinBox_noOfMeaBodies", 4);
            QCOMPARE(rig.child<QLabel>("label_max_error")->text(),
                     QString("<b><font color=red>Max. number of Measurement Tools is "
                             "reached!</font></b>"));
            rig.host.fail("measurementtool max_number_of_references");
            rig.setSpin("spinBox_noOfMeaBodies", 1);
            QVERIFY(!rig.child<QLabel>("label_max_error")->text().isEmpty());
        });
    }
};

QTEST_MAIN(TestMtSettingsDlgAssignments)
#include "test_mtsettingsdlg_assignments.moc"
