#include "tests/SourceFiles/settings/settingsrig.h"
#include "tests/support/datarows.h"

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QSpinBox>
#include <QTimer>
#include <QtTest>

namespace {

// Two tools, three references, two devices on a controller of 1.14.
Lines wholeShowing() {
    return {
        "get_string config is_changeable",
        "get_string measurementtool available",
        "get_int measurementtool max_number_of_tools",
        "get_int measurementtool number_of_tools",
        "get_int measurementtool max_number_of_references",
        "get_int measurementtool number_of_references",
        "get_string measurementtool reference_of_tool b01",
        "get_string measurementtool device b01",
        "get_string zelwpan device_model_desc V M",
        "get_string measurementtool reference_of_tool b02",
        "get_string measurementtool device b02",
        "get_double measurementtool tip_radius b01",
        "get_double measurementtool tip_radius b02",
        "get_double measurementtool measurement_duration b01",
        "get_double measurementtool measurement_tip_tolerance b01",
        "get_string measurementtool measurement_start_simulation b01",
        "get_double measurementtool measurement_start_angle b01",
        "get_double measurementtool measurement_start_lead_time b01",
        "get_string measurementtool output_6dmt",
        "get_int measurementtool number_of_zelwpan_devices",
        "get_string measurementtool zelwpan_device d01",
        "get_string zelwpan device_model_desc V M",
        "get_string measurementtool zelwpan_device d02",
        "get_string zelwpan device_model_desc V N",
    };
}

Lines unavailableShowing() {
    return {
        "get_string config is_changeable",
        "get_string measurementtool available",
    };
}

bool timerRuns(const SettingsRig& rig) {
    return rig.dialog->findChild<QTimer*>()->isActive();
}

} // namespace

class TestMtSettingsDlgShowing : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theControllerIsAskedInThisOrder_data() { addProtocolRows(); }
    void theControllerIsAskedInThisOrder() {
        QFETCH(VersionInfo, protocol);
        SettingsRig rig(protocol);
        rig.setDevices({"V M 00001", "V N 00002"});
        rig.host.answer("measurementtool device b01", "zelwpan V M 00001");
        COMPARE_LINES(rig.showing(), forProtocol(wholeShowing(), protocol));
        COMPARE_LINES(rig.logs(), Lines());
    }

    void theSecondShowingAsksEverythingAgain() {
        SettingsRig rig;
        const Lines first = rig.showing();
        COMPARE_LINES(rig.showing(), first);
    }

    void noPerToolValueIsReadWithoutTools() {
        SettingsRig rig;
        rig.host.answer("measurementtool number_of_tools", "0");
        COMPARE_LINES(rig.showing(), Lines{
                                         "get_string config is_changeable",
                                         "get_string measurementtool available",
                                         "get_int measurementtool max_number_of_tools",
                                         "get_int measurementtool number_of_tools",
                                         "get_int measurementtool max_number_of_references",
                                         "get_int measurementtool number_of_references",
                                         "get_string measurementtool output_6dmt",
                                         "get_int measurementtool number_of_zelwpan_devices",
                                     });
    }

    void anUnavailableMeasurementToolIsNotReadAndNoTimerRuns_data() {
        QTest::addColumn<QString>("reply");
        row("no", "no");
        row("a blank behind yes", "yes ");
        row("empty", "");
    }
    void anUnavailableMeasurementToolIsNotReadAndNoTimerRuns() {
        QFETCH(QString, reply);
        SettingsRig rig;
        rig.host.answer("measurementtool available", reply.toStdString());
        COMPARE_LINES(rig.showing(), unavailableShowing());
        rig.run([&] {
            QVERIFY(!timerRuns(rig));
            QCOMPARE(rig.child<QLabel>("label_error")->text(),
                     QString("<b><font color=red>Measurement Tool is not available!</font></b>"));
            QVERIFY(rig.child<QLabel>("label_error")->isVisible());
        });
    }

    void theErrorGoesWhenTheMeasurementToolIsBack() {
        SettingsRig rig;
        rig.host.answerInTurn("measurementtool available", {"no", "yes"});
        rig.run();
        rig.run([&] {
            QCOMPARE(rig.child<QLabel>("label_error")->text(), QString());
            QVERIFY(rig.child<QLabel>("label_error")->isHidden());
        });
    }

    void aLockedControllerIsReadAllTheSameAndTheTimerRuns() {
        SettingsRig rig;
        const Lines unlocked = rig.showing();
        rig.host.answer("config is_changeable", "no");
        COMPARE_LINES(rig.showing(), unlocked);
        rig.run([&] {
            QVERIFY(timerRuns(rig));
            QCOMPARE(rig.cell("tableWidget_meaBodies", 0, 2), QString("MR2"));
        });
    }

    void theLockIsTheWindowIconOnlyWhileLocked() {
        SettingsRig rig;
        QPixmap picture(16, 16);
        picture.fill(Qt::blue);
        rig.parent->setWindowIcon(QIcon(picture));
        rig.host.answerInTurn("config is_changeable", {"no", "yes"});
        QIcon locked;
        rig.run([&] { locked = rig.dialog->windowIcon(); });
        QCOMPARE(locked.pixmap(16).toImage(), QIcon(":/lock.png").pixmap(16).toImage());
        QVERIFY(!locked.isNull());
        rig.run([&] {
            QCOMPARE(rig.dialog->windowIcon().cacheKey(), rig.parent->windowIcon().cacheKey());
        });
    }

    void theWidgetsShowWhatTheControllerHolds() {
        SettingsRig rig;
        rig.run([&] {
            QCOMPARE(rig.child<QSpinBox>("spinBox_noOfMeaBodies")->value(), 2);
            QCOMPARE(rig.child<QSpinBox>("spinBox_noOfMeaBodies")->maximum(), 4);
            QCOMPARE(rig.child<QSpinBox>("spinBox_noOfRefBodies")->value(), 3);
            QCOMPARE(rig.child<QSpinBox>("spinBox_noOfRefBodies")->maximum(), 5);
            const char* const tools = "tableWidget_meaBodies";
            QCOMPARE(rig.column(tools, 0), QStringList({"M1", "M2"}));
            QCOMPARE(rig.column(tools, 1), QStringList({"1.5", "3.0"}));
            QCOMPARE(rig.column(tools, 2), QStringList({"MR2", "none"}));
            QCOMPARE(rig.column("tableWidget_refBodies", 0), QStringList({"MR1", "MR2", "MR3"}));
            QCOMPARE(rig.child<QDoubleSpinBox>("doubleSpinBox_duration")->value(), 2.0);
            QCOMPARE(rig.child<QDoubleSpinBox>("doubleSpinBox_tipTolerance")->value(), 2.5);
            QVERIFY(rig.child<QCheckBox>("checkBox_startSimulation")->isChecked());
            QCOMPARE(rig.child<QSpinBox>("spinBox_startAngle")->value(), 45);
            QCOMPARE(rig.child<QDoubleSpinBox>("doubleSpinBox_startLeadTime")->value(), 0.5);
            QVERIFY(!rig.child<QCheckBox>("checkBox_useOldOutputFormat")->isChecked());
        });
    }

    void aFailedReadOfTheToolCountKeepsTheOldOne() {
        SettingsRig rig;
        rig.run();
        rig.host.fail("measurementtool number_of_tools");
        rig.run([&] {
            QCOMPARE(rig.child<QTableWidget>("tableWidget_meaBodies")->rowCount(), 2);
            QCOMPARE(rig.child<QSpinBox>("spinBox_noOfMeaBodies")->value(), 2);
        });
        COMPARE_LINES(rig.host.logTexts(), Lines());
    }

    void aFailedReadOfTheReferenceCountMakesItZero() {
        SettingsRig rig;
        rig.run();
        rig.host.fail("measurementtool number_of_references");
        rig.run([&] {
            QCOMPARE(rig.child<QTableWidget>("tableWidget_refBodies")->rowCount(), 0);
            QCOMPARE(rig.child<QSpinBox>("spinBox_noOfRefBodies")->value(), 3);
        });
        COMPARE_LINES(rig.host.logTexts(), Lines());
    }

    void aFailedReadOfAMaximumKeepsTheOldOne() {
        SettingsRig rig;
        rig.host.fail("measurementtool max_number_of_tools");
        rig.run();
        QCOMPARE(rig.child<QSpinBox>("spinBox_noOfMeaBodies")->maximum(), 4);
        rig.host.succeed("measurementtool max_number_of_tools");
        rig.host.answer("measurementtool max_number_of_tools", "7");
        rig.run();
        rig.host.fail("measurementtool max_number_of_tools");
        rig.run();
        QCOMPARE(rig.child<QSpinBox>("spinBox_noOfMeaBodies")->maximum(), 7);
        COMPARE_LINES(rig.host.logTexts(), Lines());
    }

    void theReferenceOfAToolIsReadFromTheReply_data() {
        QTest::addColumn<QString>("reply");
        QTest::addColumn<QString>("shown");
        row("b03", "b03", "MR3");
        row("none", "none", "none");
        row("decimal", "b010", "MR10");
        row("leading zero is not octal", "b08", "MR8");
        row("any first character", "x02", "MR2");
        row("no number", "bxy", "none");
        row("only the letter", "b", "none");
        row("empty", "", "none");
        row("zero", "b0", "none");
        row("negative", "b-2147483648", "none");
        row("none with a blank is no number either", "none ", "none");
    }
    void theReferenceOfAToolIsReadFromTheReply() {
        QFETCH(QString, reply);
        SettingsRig rig;
        rig.host.answer("measurementtool reference_of_tool b01", reply.toStdString());
        rig.run([&] { QTEST(rig.cell("tableWidget_meaBodies", 0, 2), "shown"); });
    }

    void aFailedReadOfAReferenceShowsNoneSilently() {
        SettingsRig rig;
        rig.host.fail("measurementtool reference_of_tool b01");
        rig.run([&] { QCOMPARE(rig.cell("tableWidget_meaBodies", 0, 2), QString("none")); });
        COMPARE_LINES(rig.host.logTexts(), Lines());
    }

    void aTableWithoutRowsHasNoSelectionToRestore() {
        QTableWidget table(0, 1);
        int row = 5;
        MtSettingsDlg::setSelection_tableWidget(&table, row);
        QCOMPARE(row, 5);
        QCOMPARE(table.currentRow(), -1);
    }

    void theLastSelectionIsCorrectedToTheTable_data() {
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("last");
        QTest::addColumn<int>("corrected");
        row("inside", 3, 1, 1);
        row("one beyond", 3, 3, 2);
        row("far beyond", 3, 5, 2);
        row("only row", 1, 1, 0);
    }
    void theLastSelectionIsCorrectedToTheTable() {
        QFETCH(int, rows);
        QFETCH(int, last);
        QTableWidget table(rows, 2);
        MtSettingsDlg::setSelection_tableWidget(&table, last);
        QTEST(last, "corrected");
        QCOMPARE(table.currentRow(), last);
        QCOMPARE(table.currentColumn(), 0);
    }

    void theLastSelectedRowsSurviveBetweenShowings() {
        SettingsRig rig;
        rig.run([&] {
            QCOMPARE(rig.child<QTableWidget>("tableWidget_meaBodies")->currentRow(), 0);
            rig.clickCell("tableWidget_meaBodies", 1, 2);
            rig.clickCell("tableWidget_refBodies", 2);
        });
        rig.run([&] {
            QCOMPARE(rig.child<QTableWidget>("tableWidget_meaBodies")->currentRow(), 1);
            QCOMPARE(rig.child<QTableWidget>("tableWidget_refBodies")->currentRow(), 2);
        });
    }

    void aClickOnADeviceIsRememberedForTheReferenceTable() {
        SettingsRig rig;
        rig.setDevices({"V M 1", "V M 2"});
        rig.run([&] { rig.clickCell("tableWidget_availableMt", 1, 3); });
        rig.run(
            [&] { QCOMPARE(rig.child<QTableWidget>("tableWidget_refBodies")->currentRow(), 1); });
    }
};

QTEST_MAIN(TestMtSettingsDlgShowing)
#include "test_mtsettingsdlg_showing.moc"
