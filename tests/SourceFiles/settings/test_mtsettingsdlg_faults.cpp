#include "SourceFiles/measurementtoolmodule.h"
#include "host_api/metatypes.h"
#include "tests/SourceFiles/settings/settingsflow.h"

#include <QDialog>
#include <QPointer>
#include <QSpinBox>
#include <QtTest>

namespace {

using faultsweep::Case;
using faultsweep::Outcome;
using Flow = SettingsFlow;
using Phase = SettingsFlow::Phase;
using Act = SettingsFlow::Act;

Act spin(const char* name, int value) {
    return [=](SettingsRig& rig) { rig.setSpin(name, value); };
}

Act doubleSpin(const char* name, double value) {
    return [=](SettingsRig& rig) { rig.setDoubleSpin(name, value); };
}

Act push(const char* name) {
    return [=](SettingsRig& rig) { rig.click(name); };
}

// A reference or a device, then Select or Deselect.
Act assign(int tab, int tool, int row, const char* button) {
    return [=](SettingsRig& rig) {
        rig.openTab(tab);
        rig.clickCell("tableWidget_meaBodies", tool);
        rig.clickCell(tab == 0 ? "tableWidget_refBodies" : "tableWidget_availableMt", row, 3 * tab);
        rig.click(button);
    };
}

Act setDiameter(int tool, const char* text) {
    return [=](SettingsRig& rig) { rig.setCell("tableWidget_meaBodies", tool, 1, text); };
}

Act both(const Act& first, const Act& second) {
    return [=](SettingsRig& rig) {
        first(rig);
        second(rig);
    };
}

} // namespace

Q_DECLARE_METATYPE(Flow)

namespace {

void addRow(const char* name, Phase phase, const Act& action, const Act& prepare = {},
            int protocol = 14) {
    Flow flow;
    flow.phase = phase;
    flow.action = action;
    flow.prepare = prepare;
    flow.protocol = protocol;
    QTest::newRow(name) << flow;
}

const char* const tools = "spinBox_noOfMeaBodies";
const char* const references = "spinBox_noOfRefBodies";

void addShowings() {
    const Phase phase = Phase::Showing;
    Flow first;
    first.neverFilled = true;
    QTest::newRow("first showing") << first;
    addRow("showing", phase, {});
    addRow("showing, protocol 1.13", phase, {}, {}, 13);
    addRow("showing, protocol 1.12", phase, {}, {}, 12);
    Flow locked;
    locked.locked = true;
    QTest::newRow("showing, locked") << locked;
    Flow unavailable;
    unavailable.available = false;
    QTest::newRow("showing, unavailable") << unavailable;
}

void addEdits() {
    const Phase phase = Phase::Edit;
    addRow("more tools", phase, spin(tools, 4));
    addRow("fewer tools", phase, spin(tools, 1));
    addRow("no tools", phase, spin(tools, 0));
    addRow("the first tool", phase, spin(tools, 1), spin(tools, 0));
    addRow("tools back again", phase, spin(tools, 2), spin(tools, 1));
    addRow("more references", phase, spin(references, 5));
    addRow("no references", phase, spin(references, 0));
    addRow("references back again", phase, spin(references, 3), spin(references, 0));
    Flow trade;
    trade.phase = phase;
    trade.action = spin(references, 5);
    trade.tradesBodies = true;
    QTest::newRow("references that take a tool away") << trade;
    addRow("tick", phase, [](SettingsRig& rig) { rig.tick(); });
    addRow("transceivers", phase,
           [](SettingsRig& rig) { rig.dialog->isRadioTransceiverAvailable(); });
}

// An edit that reaches the controller with OK alone is swept together with it.
void addOks() {
    const Phase phase = Phase::Ok;
    const Act ok = push("pushButton_ok");
    const Act oneTool = spin(tools, 1);
    const Act counts = both(spin(tools, 1), spin(references, 5));
    const auto afterEdit = [&](const char* name, const Act& edit) {
        addRow(name, phase, both(edit, ok), oneTool);
    };
    addRow("OK", phase, ok);
    addRow("OK, other counts", phase, ok, counts);
    addRow("OK, no tools", phase, ok, spin(tools, 0));
    addRow("OK, protocol 1.13", phase, ok, {}, 13);
    addRow("OK, protocol 1.12", phase, ok, {}, 12);
    afterEdit("select a reference, OK", assign(0, 0, 2, "pushButton_select"));
    afterEdit("deselect a reference, OK", assign(0, 0, 2, "pushButton_deselect"));
    afterEdit("select a device, OK", assign(1, 0, 1, "pushButton_select"));
    afterEdit("deselect a device, OK", assign(1, 0, 1, "pushButton_deselect"));
    afterEdit("diameter, OK", setDiameter(0, "8.0"));
    afterEdit("duration, OK", doubleSpin("doubleSpinBox_duration", 9.0));
    afterEdit("tip tolerance, OK", doubleSpin("doubleSpinBox_tipTolerance", 0.3));
    afterEdit("start simulation, OK", push("checkBox_startSimulation"));
    afterEdit("start angle, OK", spin("spinBox_startAngle", 99));
    afterEdit("start lead time, OK", doubleSpin("doubleSpinBox_startLeadTime", 0.9));
    afterEdit("output format, OK", push("checkBox_useOldOutputFormat"));
}

void addCancels() {
    const Act fewerTools = both(spin(tools, 1), spin(references, 5));
    const Act moreTools = both(spin(tools, 4), spin(references, 1));
    const Act escape = [](SettingsRig& rig) { QTest::keyClick(rig.dialog, Qt::Key_Escape); };
    const Act close = [](SettingsRig& rig) { rig.dialog->close(); };
    const std::string restoreTools = "set measurementtool number_of_tools 2";
    const std::string restoreReferences = "set measurementtool number_of_references 3";
    Flow flow;
    flow.phase = Phase::Cancel;
    const auto add = [&](const char* path, const Act& act) {
        flow.action = act;
        flow.prepare = fewerTools;
        flow.always = {restoreReferences, restoreTools};
        QTest::addRow("%s, fewer tools", path) << flow;
        flow.prepare = moreTools;
        flow.always = {restoreTools, restoreReferences};
        QTest::addRow("%s, more tools", path) << flow;
    };
    add("Cancel", push("pushButton_cancel"));
    add("Escape", escape);
    add("close button", close);
}

} // namespace

class TestMtSettingsDlgFaults : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QGuiApplication::setQuitOnLastWindowClosed(false); }

    void whateverGoesWrongTheDialogLogsItAndEndsAsItShould_data() {
        QTest::addColumn<Flow>("flow");
        addShowings();
        addEdits();
        addOks();
        addCancels();
    }
    void whateverGoesWrongTheDialogLogsItAndEndsAsItShould() {
        QFETCH(Flow, flow);
        SettingsPlayer player(flow);
        const auto playIt = [&](const Case& fault) { return player.play(fault); };
        QCOMPARE(m_sweep.run(QTest::currentDataTag(), playIt), QString());
    }

    void theOwnerGoesAfterAnything_data() {
        QTest::addColumn<bool>("module");
        QTest::newRow("fewer references, the parent dies") << false;
        QTest::newRow("fewer references, the module exits") << true;
    }
    void theOwnerGoesAfterAnything() {
        QFETCH(bool, module);
        const auto playIt = [&](const Case& fault) { return playToTheOwnersEnd(fault, module); };
        QCOMPARE(m_sweep.run(QTest::currentDataTag(), playIt), QString());
    }

    void logLinesNameTheTwelfthToolAsTheyDo() {
        SettingsRig rig;
        rig.host.answer("measurementtool max_number_of_tools", "12");
        rig.host.answer("measurementtool number_of_tools", "12");
        rig.run([&] {
            rig.host.fail("measurementtool measurement_duration b12 2.000");
            rig.host.fail("measurementtool measurement_start_simulation b12 yes");
            rig.host.fail("measurementtool tip_radius b12 0.500");
            rig.host.fail("measurementtool tip_radius b03 0.500");
            rig.setCell("tableWidget_meaBodies", 2, 1, "1.0");
            rig.setCell("tableWidget_meaBodies", 11, 1, "1.0");
            rig.logs();
            rig.click("pushButton_ok");
            COMPARE_LINES(rig.logs(),
                          Lines{"Error: Unable to set mea duration for body b12",
                                "Error: Unable to activate start simulation for body b12",
                                "Error: Unable to set tip radius of mea tool b03",
                                "Error: Unable to set tip radius of mea tool b012"});
        });
    }

    void cleanupTestCase() { QVERIFY(m_sweep.report("settings")); }

private:
    static Outcome playToTheOwnersEnd(const Case& fault, bool moduleExits);

    faultsweep::NoPainting m_noPainting;
    faultsweep::Sweep m_sweep;
};

Outcome TestMtSettingsDlgFaults::playToTheOwnersEnd(const Case& fault, bool moduleExits) {
    SettingsRig rig;
    SettingsPlayer::script(rig, {});
    MeasurementToolModule module;
    QPointer<QDialog> dialog(rig.dialog);
    if (moduleExits) {
        module.set_param("CommandManager", QVariant::fromValue<IOManager*>(&rig.host));
        module.set_param("ModuleParent", QVariant::fromValue(rig.parent.get()));
        module.set_param("BackendVersions", QVariant::fromValue(&rig.versions));
        dialog = qobject_cast<QDialog*>(module.get_gui_elements().at(0)->content);
    }
    Outcome outcome;
    std::size_t asked = 0;
    QTimer::singleShot(0, dialog, [&] {
        fault.inject(rig.host);
        dialog->findChild<QSpinBox*>(QLatin1String(references))->setValue(1);
        outcome.journal = rig.host.journal();
        moduleExits ? module.exit_module() : rig.parent.reset();
        asked = outcome.journal.size();
    });
    int result = -1;
    QMetaObject::invokeMethod(dialog, "update_and_exec", Qt::DirectConnection,
                              Q_RETURN_ARG(int, result));
    if (result != 0) {
        outcome.objection = QStringLiteral("result");
    }
    if (!dialog.isNull()) {
        outcome.objection = QStringLiteral("still there");
    }
    const Lines all = without(rig.host.journal(), "register"); // the display's farewell
    if (asked == 0 || all.size() != asked) {
        outcome.objection = QStringLiteral("talks on");
    }
    return outcome;
}

QTEST_MAIN(TestMtSettingsDlgFaults)
#include "test_mtsettingsdlg_faults.moc"
