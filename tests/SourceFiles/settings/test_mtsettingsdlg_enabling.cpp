#include "tests/SourceFiles/settings/settingsrig.h"
#include "tests/support/datarows.h"

#include <QtTest>

namespace {

const char* const availability = "measurementtool available";
const char* const lock = "config is_changeable";
const char* const startSimulation = "measurementtool measurement_start_simulation b01";

using Script = std::function<void(SettingsRig&)>;

} // namespace

Q_DECLARE_METATYPE(Script)

class TestMtSettingsDlgEnabling : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void eachStateEnablesTheseControls_data() {
        QTest::addColumn<VersionInfo>("protocol");
        QTest::addColumn<Script>("before"); // a showing before the one that is looked at
        QTest::addColumn<Script>("script");
        QTest::addColumn<QStringList>("enabled");
        const VersionInfo today(1, 14, 0);
        const VersionInfo old(1, 12, 0);
        const VersionInfo ancient(1, 2, 0);
        const Script normal;
        const auto answers = [](const char* parameter, const char* value) {
            return [=](SettingsRig& rig) { rig.host.answer(parameter, value); };
        };
        const Script locked = answers(lock, "no");
        const Script unavailable = answers(availability, "no");
        const Script noTools = answers("measurementtool number_of_tools", "0");
        const Script off = answers(startSimulation, "no");
        const Script lockedUnavailable = [=](SettingsRig& rig) {
            locked(rig);
            unavailable(rig);
        };
        const Script lockedOff = [=](SettingsRig& rig) {
            locked(rig);
            off(rig);
        };
        const QStringList all = counts + tables + point + simulation + format + ok + buttons;
        const QStringList allButSimulation = counts + tables + point + format + ok + buttons;

        row("normal", today, normal, normal, all);
        row("start simulation off", today, normal, off, allButSimulation);
        row("no tools", today, normal, noTools, counts + tables + ok);
        row("unavailable", today, normal, unavailable, QStringList());
        row("locked", today, normal, locked, countLabels);
        row("locked and unavailable", today, normal, lockedUnavailable, countLabels);
        row("1.13", VersionInfo(1, 13, 0), normal, normal, all);
        row("1.13, unknown patch", VersionInfo(1, 13, -1), normal, normal, all);
        row("1.12", old, normal, normal, counts + tables + point + simulation + ok + buttons);
        row("1.12, no tools", old, normal, noTools, counts + tables + ok);
        row("1.12, locked", old, normal, locked, countLabels);
        row("1.12, unavailable", old, normal, unavailable, QStringList());
        row("1.2", ancient, normal, normal, QStringList());
        row("1.8 has no lock", VersionInfo(1, 8, 0), normal, locked,
            counts + tables + point + simulation + ok + buttons);

        row("unlocked again", today, locked, normal, all);
        row("available again", today, unavailable, normal, all);
        row("no longer available", today, off, unavailable, QStringList());
        row("tools again", today, noTools, normal, all);
    }
    void eachStateEnablesTheseControls() {
        QFETCH(VersionInfo, protocol);
        QFETCH(Script, before);
        QFETCH(Script, script);
        QFETCH(QStringList, enabled);
        SettingsRig rig(protocol);
        if (before) {
            before(rig);
            rig.run();
            rig.host.answer(lock, "yes");
            rig.host.answer(availability, "yes");
            rig.host.answer("measurementtool number_of_tools", "2");
            rig.host.answer(startSimulation, "yes");
        }
        if (script) {
            script(rig);
        }
        rig.run([&] {
            QStringList sorted = enabled;
            sorted.sort();
            QStringList found = enabledControls(rig);
            found.sort();
            QCOMPARE(found, sorted);
            QVERIFY(rig.isEnabled("pushButton_cancel"));
            QVERIFY(rig.isEnabled("tabWidget"));
        });
    }

    void aLockLeavesTheLabelsOfTheStartSimulationAlone() {
        SettingsRig rig;
        rig.run();
        rig.host.answer(lock, "no");
        rig.run([&] {
            for (const QString& name : simulationLabels) {
                QVERIFY2(rig.isEnabled(qPrintable(name)), qPrintable(name));
            }
        });
    }

    void theSelectionModeTellsALock_data() {
        QTest::addColumn<QString>("changeable");
        QTest::addColumn<QString>("available");
        QTest::addColumn<bool>("single");
        row("normal", "yes", "yes", true);
        row("unavailable", "yes", "no", true);
        row("locked", "no", "yes", false);
        row("locked and unavailable", "no", "no", false);
    }
    void theSelectionModeTellsALock() {
        QFETCH(QString, changeable);
        QFETCH(QString, available);
        QFETCH(bool, single);
        SettingsRig rig;
        rig.host.answer("config is_changeable", changeable.toStdString());
        rig.host.answer("measurementtool available", available.toStdString());
        rig.run([&] {
            for (const QString& name : tables) {
                QCOMPARE(rig.child<QTableWidget>(qPrintable(name))->selectionMode(),
                         single ? QAbstractItemView::SingleSelection
                                : QAbstractItemView::NoSelection);
            }
        });
    }

    void theStartSimulationEnablesItsValues() {
        SettingsRig rig;
        rig.run([&] {
            for (const bool on : {false, true}) {
                rig.click("checkBox_startSimulation");
                for (const QString& name : simulation) {
                    QCOMPARE(rig.isEnabled(qPrintable(name)), on);
                }
            }
            COMPARE_LINES(rig.operations(), Lines());
        });
    }

    void withTheLastToolThePointMeasurementIsDisabledAndBackWithTheFirst() {
        SettingsRig rig;
        rig.run([&] {
            rig.setSpin("spinBox_noOfMeaBodies", 0);
            QCOMPARE(enabledControls(rig), counts + tables + ok);
            rig.setSpin("spinBox_noOfMeaBodies", 1);
            const QStringList all = point + simulation + format;
            for (const QString& name : all) {
                QVERIFY2(rig.isEnabled(qPrintable(name)), qPrintable(name));
            }
        });
    }

    void inALockTheButtonsStayDisabledWhateverHappens() {
        SettingsRig rig;
        rig.host.answer(lock, "no");
        rig.run([&] {
            rig.openTab(1);
            rig.openTab(0);
            rig.clickCell("tableWidget_meaBodies", 1);
            rig.clickCell("tableWidget_refBodies", 0);
            rig.tick();
            QVERIFY(!rig.isEnabled("pushButton_select"));
            QVERIFY(!rig.isEnabled("pushButton_deselect"));
            QVERIFY(!rig.isEnabled("pushButton_ok"));
        });
    }

private:
    QStringList enabledControls(const SettingsRig& rig) const {
        QStringList enabled;
        for (const QString& name : controls) {
            if (rig.isEnabled(qPrintable(name))) {
                enabled << name;
            }
        }
        return enabled;
    }

    const QStringList counts = {"label_noOfMeaBodies", "spinBox_noOfMeaBodies",
                                "label_noOfRefBodies", "spinBox_noOfRefBodies"};
    const QStringList countLabels = {"label_noOfMeaBodies", "label_noOfRefBodies"};
    const QStringList tables = {"tableWidget_meaBodies", "tableWidget_refBodies",
                                "tableWidget_availableMt"};
    const QStringList point = {"label_pointMeasurement",     "label_duration",
                               "label_tipTolerance",         "doubleSpinBox_duration",
                               "doubleSpinBox_tipTolerance", "checkBox_startSimulation"};
    const QStringList simulation = {"label_minAngularSpeed", "spinBox_startAngle",
                                    "label_meaStartDelay", "doubleSpinBox_startLeadTime"};
    const QStringList simulationLabels = {"label_minAngularSpeed", "label_meaStartDelay"};
    const QStringList format = {"checkBox_useOldOutputFormat"};
    const QStringList ok = {"pushButton_ok"};
    const QStringList buttons = {"pushButton_select", "pushButton_deselect"};

    // Everything whose enabling is the dialog's business; Cancel and the tabs are always enabled.
    const QStringList controls = counts + tables + point + simulation + format + ok + buttons;
};

QTEST_MAIN(TestMtSettingsDlgEnabling)
#include "test_mtsettingsdlg_enabling.moc"
