#include "tests/SourceFiles/settingsrig.h"

#include <QtTest>

#include <map>

namespace {

using Fault = ScriptedHost::Fault;

enum Phase { Showing, Edit, Tick, Cancel, Ok };

std::string lastWord(const std::string& text) {
    return text.substr(text.rfind(' ') + 1);
}

bool contains(const std::string& text, const char* fragment) {
    return text.find(fragment) != std::string::npos;
}

// The log line that the failure of an operation of a phase asks for; empty: none.
std::string logOf(const std::string& operation, int phase) {
    const std::string verb = operation.substr(0, operation.find(' '));
    const std::string text = operation.substr(verb.size() + 1);
    const bool isSet = verb == "set";
    if (isSet && contains(text, "number_of_tools ")) {
        return "Error: Unable to set number of mea tools = " + lastWord(text);
    }
    if (isSet && contains(text, "number_of_references ")) {
        const char* const what = phase == Cancel ? "references"
                                 : phase == Ok   ? "mea references"
                                                 : "mea tools";
        return std::string("Error: Unable to set number of ") + what + " = " + lastWord(text);
    }
    if (contains(text, "number_of_zelwpan_devices")) {
        return "Error: Unable to get number of Measurementtools";
    }
    if (contains(text, "zelwpan_device d")) {
        return "Error: Unable to get device info of MeasurementTool " + lastWord(text);
    }
    if (contains(text, "device_model_desc")) {
        const std::string vendorAndModel = text.substr(text.find("desc ") + 5);
        return "Error: Unable to get model description of vendor " +
               vendorAndModel.substr(0, vendorAndModel.find(' ')) + " model " +
               lastWord(vendorAndModel);
    }
    const std::map<std::string, std::string> whileReading = {
        {"measurementtool measurement_duration b01", "Error: Unable to get mea duration"},
        {"measurementtool measurement_tip_tolerance b01", "Error: Unable to get mea tip tolerance"},
        {"measurementtool measurement_start_simulation b01",
         "Error: Unable to get state of measurement start simulation"},
        {"measurementtool measurement_start_angle b01", "Error: Unable to get mea angular speed"},
        {"measurementtool measurement_start_lead_time b01",
         "Error: Unable to get mea start lead time"},
    };
    if (!isSet) {
        const auto found = whileReading.find(text);
        return found != whileReading.end() && phase != Ok ? found->second : std::string();
    }
    const std::size_t body = text.find(" b");
    const std::string parameter = text.substr(0, body);
    const std::string number =
        body == std::string::npos ? "" : text.substr(body + 2, text.find(' ', body + 1) - body - 2);
    const std::map<std::string, std::string> whileWriting = {
        {"measurementtool reference_of_tool", "Error: Unable to set ref. body"},
        {"measurementtool device", "Error: Unable to set radio device"},
        {"measurementtool measurement_duration",
         "Error: Unable to set mea duration for body b" + number},
        {"measurementtool measurement_tip_tolerance",
         "Error: Unable to set tip tolerance for body b" + number},
        {"measurementtool measurement_start_simulation",
         "Error: Unable to activate start simulation for body b" + number},
        {"measurementtool measurement_start_angle",
         "Error: Unable to set mea angular speed for body b" + number},
        {"measurementtool measurement_start_lead_time",
         "Error: Unable to set mea. start lead time for body b" + number},
        {"measurementtool output_6dmt no", "Error: Unable to (un)set to old output format"},
        {"measurementtool output_6dmt yes", "Error: Unable to set to old output format"},
        {"measurementtool tip_radius", "Error: Unable to set tip radius of mea tool b0" +
                                           std::to_string(std::atoi(number.c_str()))},
    };
    return whileWriting.at(parameter);
}

// The operations of a journal with the log line that each failed one asks for behind it.
Lines withLogs(const Lines& operations, int firstFailed, bool allThatFollow, int phase) {
    Lines journal;
    for (int i = 0; i < static_cast<int>(operations.size()); ++i) {
        const std::string& operation = operations[static_cast<std::size_t>(i)];
        journal.push_back(operation);
        const bool failed = i == firstFailed || (allThatFollow && i > firstFailed);
        const std::string log = failed ? logOf(operation, phase) : std::string();
        if (!log.empty()) {
            journal.push_back("log standard KESTREL3 1 " + log);
        }
    }
    return journal;
}

struct Scenario {
    int phase = Showing;
    std::function<void(SettingsRig&)> action;  ///< what is under test, inside the dialog's loop
    std::function<void(SettingsRig&)> prepare; ///< edits before it
};

void script(SettingsRig& rig) {
    rig.setDevices({"V M 1", "V N 2"});
    rig.host.answer("measurementtool device b01", "zelwpan V M 00001");
}

// Runs a scenario with a fault in its `index`-th operation; the journal holds the faulty phase.
// Returns the number of its operations.
int runWithFault(SettingsRig& rig, const Scenario& scenario, int index, Fault fault, bool stays) {
    script(rig);
    int count = 0;
    const auto inject = [&] {
        rig.host.clearJournal();
        if (index >= 0) {
            rig.host.injectFault(index, fault, stays);
        }
    };
    bool shown = false;
    Lines journal;
    QTimer::singleShot(0, rig.dialog, [&] {
        shown = true;
        if (scenario.phase != Showing) {
            if (scenario.prepare) {
                scenario.prepare(rig);
            }
            inject();
            scenario.action(rig);
        }
        count = rig.host.operationCount();
        journal = rig.host.journal();
        rig.host.clearFault();
        if (rig.dialog->isVisible()) {
            rig.dialog->reject();
        }
    });
    if (scenario.phase == Showing) {
        inject();
    }
    const int result = rig.dialog->update_and_exec();
    if (result != 0 || !shown || rig.dialog->isVisible()) {
        qFatal("the dialog did not close with 0");
    }
    if (index >= 0 && fault == Fault::Error) {
        const Lines operations = without(journal, "log ");
        const Lines expected = withLogs(operations, index, stays, scenario.phase);
        if (journal != expected) {
            qFatal("operation %d: journal\n%s\nexpected\n%s", index, qPrintable(asText(journal)),
                   qPrintable(asText(expected)));
        }
    }
    for (const std::string& line : journal) {
        if (line.rfind("log ", 0) == 0 && line.rfind("log standard KESTREL3 1 Error", 0) != 0) {
            qFatal("odd log line %s", line.c_str());
        }
    }
    return count;
}

} // namespace

Q_DECLARE_METATYPE(Scenario)

class TestMtSettingsDlgFaults : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whateverGoesWrongTheDialogLogsItAndClosesWithZero_data() {
        QTest::addColumn<Scenario>("scenario");
        const auto spin = [](const char* name, int value) {
            return [=](SettingsRig& rig) { rig.setSpin(name, value); };
        };
        const auto editEverything = [](SettingsRig& rig) {
            rig.setDoubleSpin("doubleSpinBox_duration", 9.0);
            rig.setDoubleSpin("doubleSpinBox_tipTolerance", 0.3);
            rig.setSpin("spinBox_startAngle", 99);
            rig.click("checkBox_startSimulation");
            rig.click("checkBox_useOldOutputFormat");
            rig.setCell("tableWidget_meaBodies", 0, 1, "8.0");
            rig.setCell("tableWidget_meaBodies", 1, 1, "9.0");
        };
        const auto editCounts = [](SettingsRig& rig) {
            rig.setSpin("spinBox_noOfMeaBodies", 1);
            rig.setSpin("spinBox_noOfRefBodies", 5);
        };
        const auto push = [](const char* name) {
            return [=](SettingsRig& rig) { rig.click(name); };
        };
        const auto row = [](const char* name, int phase,
                            const std::function<void(SettingsRig&)>& action,
                            const std::function<void(SettingsRig&)>& prepare = {}) {
            QTest::newRow(name) << Scenario{phase, action, prepare};
        };
        const char* const tools = "spinBox_noOfMeaBodies";
        const char* const references = "spinBox_noOfRefBodies";
        row("showing", Showing, {});
        row("more tools", Edit, spin(tools, 4));
        row("fewer tools", Edit, spin(tools, 1));
        row("no tools", Edit, spin(tools, 0));
        row("the first tool", Edit, spin(tools, 1), spin(tools, 0));
        row("more references", Edit, spin(references, 5));
        row("fewer references", Edit, spin(references, 0));
        row("tick", Tick, [](SettingsRig& rig) { rig.tick(); });
        row("OK", Ok, push("pushButton_ok"));
        row("OK with edits", Ok, push("pushButton_ok"), editEverything);
        row("OK with other counts", Ok, push("pushButton_ok"), editCounts);
        row("Cancel", Cancel, push("pushButton_cancel"), editCounts);
        row(
            "Escape", Cancel, [](SettingsRig& rig) { QTest::keyClick(rig.dialog, Qt::Key_Escape); },
            editCounts);
        row(
            "close button", Cancel, [](SettingsRig& rig) { rig.dialog->close(); }, editCounts);
    }
    void whateverGoesWrongTheDialogLogsItAndClosesWithZero() {
        QFETCH(Scenario, scenario);
        SettingsRig sound;
        const int operations = runWithFault(sound, scenario, -1, Fault::Error, false);
        QVERIFY(operations > 0);
        for (const Fault fault : {Fault::Error, Fault::EmptyReply, Fault::Garbage,
                                  Fault::Unterminated, Fault::HugeNumber, Fault::MinusOne}) {
            for (int index = 0; index < operations; ++index) {
                SettingsRig rig;
                runWithFault(rig, scenario, index, fault, false);
            }
            // An error from each operation on; replies that are nonsense all along.
            const int last = fault == Fault::Error ? operations : 1;
            for (int index = 0; index < last; ++index) {
                SettingsRig rig;
                runWithFault(rig, scenario, index, fault, true);
            }
        }
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
};

QTEST_MAIN(TestMtSettingsDlgFaults)
#include "test_mtsettingsdlg_faults.moc"
