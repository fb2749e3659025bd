#include "tests/SourceFiles/settings/settingsrig.h"
#include "tests/support/datarows.h"

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QSpinBox>
#include <QtTest>

#include <limits>

namespace {

const char* const tools = "tableWidget_meaBodies";

// What the five widgets of the point measurement show: "2.0 2.5 on 45 0.5".
QString pointMeasurement(const SettingsRig& rig) {
    const auto value = [&rig](const char* name) {
        return QString::number(rig.child<QDoubleSpinBox>(name)->value(), 'f', 1);
    };
    const bool on = rig.child<QCheckBox>("checkBox_startSimulation")->isChecked();
    return QStringList({value("doubleSpinBox_duration"), value("doubleSpinBox_tipTolerance"),
                        on ? "on" : "off",
                        QString::number(rig.child<QSpinBox>("spinBox_startAngle")->value()),
                        value("doubleSpinBox_startLeadTime")})
        .join(QLatin1Char(' '));
}

constexpr const char* defaults = "1.0 1.5 off 30 0.2";

} // namespace

class TestMtSettingsDlgParameters : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theDiameterIsTwiceTheRadius_data() {
        QTest::addColumn<QString>("radius");
        QTest::addColumn<QString>("diameter");
        row("0.75", "0.75", "1.5");
        row("zero", "0", "0.0");
        row("rounded", "0.768", "1.5");
        row("negative", "-1.5", "0.0");
        row("negative zero", "-0.0", "0.0");
        row("nan", "nan", "0.0");
        row("infinite", "inf", "0.0");
        row("infinite when doubled", "1e308", "0.0");
    }
    void theDiameterIsTwiceTheRadius() {
        QFETCH(QString, radius);
        SettingsRig rig;
        rig.host.answer("measurementtool tip_radius b01", radius.toStdString());
        rig.run([&] { QTEST(rig.cell(tools, 0, 1), "diameter"); });
    }

    void aDiameterIsAskedForOnlyForATool_data() {
        QTest::addColumn<VersionInfo>("protocol");
        QTest::addColumn<int>("number");
        QTest::addColumn<double>("diameter");
        QTest::addColumn<QString>("question");
        const VersionInfo now(1, 14, 0);
        const QString question = "get_double measurementtool tip_radius b01";
        row("the first tool", now, 1, 1.5, question);
        row("1.13 knows it", VersionInfo(1, 13, -1), 1, 1.5, question);
        row("1.12 does not", VersionInfo(1, 12, 9), 1, 0.0, "");
        row("no tool", now, 0, 0.0, "");
        row("less than none", now, -1, 0.0, "");
        row("far less", now, std::numeric_limits<int>::min(), 0.0, "");
    }
    void aDiameterIsAskedForOnlyForATool() {
        QFETCH(VersionInfo, protocol);
        QFETCH(int, number);
        SettingsRig rig(protocol);
        for (const char* const body : {"b00", "b-01", "b-2147483648"}) {
            rig.host.answer(std::string("measurementtool tip_radius ") + body, "9.0");
        }
        QTEST(rig.dialog->getToolTipDiameterFromHub(number), "diameter");
        QTEST(asText(rig.operations()), "question");
    }

    void aFailedRadiusShowsZeroSilently() {
        SettingsRig rig;
        rig.host.fail("measurementtool tip_radius b02");
        rig.run([&] { QCOMPARE(rig.column(tools, 1), QStringList({"1.5", "0.0"})); });
        COMPARE_LINES(rig.host.logTexts(), Lines());
    }

    void below113EveryDiameterIsZeroAndTheOldFormatFixed() {
        SettingsRig rig(VersionInfo(1, 12, 5));
        rig.run([&] {
            QCOMPARE(rig.column(tools, 1), QStringList({"0.0", "0.0"}));
            QVERIFY(rig.child<QCheckBox>("checkBox_useOldOutputFormat")->isChecked());
            QVERIFY(!rig.isEnabled("checkBox_useOldOutputFormat"));
        });
    }

    void anEditedDiameterSurvivesEveryRefill_data() {
        QTest::addColumn<int>("edit");
        row("more tools", 0);
        row("fewer references", 1);
        row("more references", 2);
        row("select", 3);
        row("deselect", 4);
        row("tools lowered and raised", 5);
    }
    void anEditedDiameterSurvivesEveryRefill() {
        QFETCH(int, edit);
        SettingsRig rig;
        const std::function<void()> edits[] = {
            [&] { rig.setSpin("spinBox_noOfMeaBodies", 3); },
            [&] { rig.setSpin("spinBox_noOfRefBodies", 1); },
            [&] { rig.setSpin("spinBox_noOfRefBodies", 4); },
            [&] { rig.click("pushButton_select"); },
            [&] { rig.click("pushButton_deselect"); },
            [&] {
                rig.setSpin("spinBox_noOfMeaBodies", 1);
                rig.setSpin("spinBox_noOfMeaBodies", 2);
            },
        };
        rig.run([&] {
            rig.setCell(tools, 1, 1, "7.5");
            edits[edit]();
            QCOMPARE(rig.cell(tools, 0, 1), QString("1.5"));
            QCOMPARE(rig.cell(tools, 1, 1), QString("7.5"));
        });
    }

    void aNewToolShowsZero() {
        SettingsRig rig;
        rig.run([&] {
            rig.setSpin("spinBox_noOfMeaBodies", 3);
            QCOMPARE(rig.cell(tools, 2, 1), QString("0.0"));
        });
    }

    void aDiameterThatIsNoNumberCountsAsZero() {
        SettingsRig rig;
        rig.run([&] {
            rig.setCell(tools, 0, 1, "wide");
            rig.click("pushButton_deselect");
            QCOMPARE(rig.cell(tools, 0, 1), QString("0.0"));
        });
    }

    void aFailedReadIsLoggedAndShowsTheDefault_data() {
        QTest::addColumn<QString>("parameter");
        QTest::addColumn<QString>("log");
        QTest::addColumn<QString>("shown");
        const auto parameter = [](const char* name, const char* log, const char* shown) {
            row(name, QString("measurementtool measurement_%1 b01").arg(name), log, shown);
        };
        parameter("duration", "Error: Unable to get mea duration", "1.0 2.5 on 45 0.5");
        parameter("tip_tolerance", "Error: Unable to get mea tip tolerance", "2.0 1.5 on 45 0.5");
        parameter("start_simulation", "Error: Unable to get state of measurement start simulation",
                  "2.0 2.5 off 45 0.5");
        parameter("start_angle", "Error: Unable to get mea angular speed", "2.0 2.5 on 30 0.5");
        parameter("start_lead_time", "Error: Unable to get mea start lead time",
                  "2.0 2.5 on 45 0.2");
    }
    void aFailedReadIsLoggedAndShowsTheDefault() {
        QFETCH(QString, parameter);
        QFETCH(QString, log);
        SettingsRig rig;
        rig.host.fail(parameter.toStdString());
        rig.showing();
        COMPARE_LINES(rig.host.logTexts(), Lines{log.toStdString()});
        rig.run([&] { QTEST(pointMeasurement(rig), "shown"); });
    }

    void theStartAngleIsTruncatedAndEveryValueKeptInRange_data() {
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("shown");
        row("truncated", "45.99", "5.0 5.0 on 45 0.5");
        row("above", "2000000000", "5.0 5.0 on 120 0.5");
        row("far above", "1e300", "5.0 5.0 on 120 0.5");
        row("below", "-1e300", "5.0 5.0 on 10 0.5");
        row("not a number", "nan", "5.0 5.0 on 30 0.5");
    }
    void theStartAngleIsTruncatedAndEveryValueKeptInRange() {
        QFETCH(QString, value);
        SettingsRig rig;
        rig.host.answer("measurementtool measurement_duration b01", "5");
        rig.host.answer("measurementtool measurement_tip_tolerance b01", "5");
        rig.host.answer("measurementtool measurement_start_angle b01", value.toStdString());
        rig.run([&] { QTEST(pointMeasurement(rig), "shown"); });
    }

    void onlyYesChecksTheStartSimulation_data() {
        QTest::addColumn<QString>("reply");
        QTest::addColumn<bool>("checked");
        row("yes", "yes", true);
        row("no", "no", false);
        row("Yes", "Yes", false);
        row("yes with a blank", "yes ", false);
        row("empty", "", false);
    }
    void onlyYesChecksTheStartSimulation() {
        QFETCH(QString, reply);
        SettingsRig rig;
        rig.host.answer("measurementtool measurement_start_simulation b01", reply.toStdString());
        rig.run([&] {
            QTEST(rig.child<QCheckBox>("checkBox_startSimulation")->isChecked(), "checked");
        });
    }

    void onlyNoUnchecksTheOldFormat_data() {
        QTest::addColumn<QString>("reply");
        QTest::addColumn<bool>("checked");
        row("no", "no", false);
        row("yes", "yes", true);
        row("no with a blank", "no ", true);
        row("empty", "", true);
        row("failed", "(fails)", true);
    }
    void onlyNoUnchecksTheOldFormat() {
        QFETCH(QString, reply);
        SettingsRig rig;
        rig.host.answer("measurementtool output_6dmt", reply.toStdString());
        if (reply == "(fails)") {
            rig.host.fail("measurementtool output_6dmt");
        }
        rig.run([&] {
            QTEST(rig.child<QCheckBox>("checkBox_useOldOutputFormat")->isChecked(), "checked");
            QVERIFY(rig.isEnabled("checkBox_useOldOutputFormat"));
        });
        COMPARE_LINES(rig.host.logTexts(), Lines());
    }

    void withoutToolsTheDefaultsAreShown() {
        SettingsRig rig;
        QCOMPARE(rig.child<QSpinBox>("spinBox_startAngle")->value(), 40);
        rig.host.answer("measurementtool number_of_tools", "0");
        rig.run([&] { QCOMPARE(pointMeasurement(rig), QString(defaults)); });
    }

    void theLastToolTakesThePointMeasurementWithIt() {
        SettingsRig rig;
        rig.run([&] {
            QCOMPARE(pointMeasurement(rig), QString("2.0 2.5 on 45 0.5"));
            rig.setSpin("spinBox_noOfMeaBodies", 0);
            QCOMPARE(pointMeasurement(rig), QString(defaults));
        });
    }

    void theFirstToolBringsTheControllersValuesBack() {
        SettingsRig rig;
        rig.run([&] {
            rig.setSpin("spinBox_noOfMeaBodies", 0);
            rig.setSpin("spinBox_noOfMeaBodies", 1);
            QCOMPARE(pointMeasurement(rig), QString("2.0 2.5 on 45 0.5"));
            // Read after an edit, the values are the dialog's own from now on.
            rig.setSpin("spinBox_noOfMeaBodies", 2);
            QCOMPARE(pointMeasurement(rig), QString("2.0 2.5 on 45 0.5"));
        });
    }

    void anotherNumberOfToolsBringsTheUsersValuesBack() {
        SettingsRig rig;
        rig.run([&] {
            rig.setDoubleSpin("doubleSpinBox_duration", 3.0);
            rig.setDoubleSpin("doubleSpinBox_tipTolerance", 4.0);
            rig.click("checkBox_startSimulation");
            rig.setSpin("spinBox_startAngle", 50);
            rig.setDoubleSpin("doubleSpinBox_startLeadTime", 0.7);
            rig.setSpin("spinBox_noOfMeaBodies", 3);
            QCOMPARE(pointMeasurement(rig), QString("3.0 4.0 off 50 0.7"));
        });
    }

    // What is read while the dialog is being filled is no edit - except after a start simulation
    // that is on.
    void onlyTheValuesReadAfterAnActiveStartSimulationCountAsEdited_data() {
        QTest::addColumn<QString>("reply");
        QTest::addColumn<QString>("shown");
        row("on", "yes", "1.0 1.5 on 45 0.5");
        row("off", "no", "1.0 1.5 off 30 0.2");
    }
    void onlyTheValuesReadAfterAnActiveStartSimulationCountAsEdited() {
        QFETCH(QString, reply);
        SettingsRig rig;
        rig.host.answer("measurementtool measurement_start_simulation b01", reply.toStdString());
        rig.run([&] {
            rig.setSpin("spinBox_noOfMeaBodies", 3);
            QTEST(pointMeasurement(rig), "shown");
        });
    }
};

QTEST_MAIN(TestMtSettingsDlgParameters)
#include "test_mtsettingsdlg_parameters.moc"
