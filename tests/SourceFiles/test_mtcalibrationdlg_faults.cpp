#include "tests/SourceFiles/calibrationrig.h"
#include "tests/support/children.h"

#include <QApplication>
#include <QPushButton>
#include <QtTest>

namespace {

using Fault = ScriptedHost::Fault;

constexpr int patiencePolls = 6; // after which a user gives up a procedure that does not end

struct Named {
    const char* name;
    Fault fault;
};
constexpr Named faults[] = {
    {"error", Fault::Error},
    {"empty", Fault::EmptyReply},
    {"garbage", Fault::Garbage},
    {"unterminated", Fault::Unterminated},
    {"huge number", Fault::HugeNumber},
    {"minus one", Fault::MinusOne},
};

// A procedure that needs every operation of the flow: pause, two steps, progress, result.
void scriptWholeFlow(ScriptedHost& host) {
    scriptCalibration(host);
    host.answer("cal number_of_steps measurementtool", "2");
    host.answer("cal step_pause measurementtool s01", "yes 5");
    host.answerInTurn("status active", {"track", "none", "cal", "cal", "none", "none", "track"});
    host.answerInTurn("status step_progress", {"1 0.5", "2 0.5"});
}

// A user who calibrates once, starts each countdown at once, accepts the result, confirms boxes,
// loses patience with a procedure that does not end, and leaves.
void play(CalibrationRig& rig) {
    rig.on("CountdownDialog",
           [](QWidget* shown) { child<QPushButton>(*shown, "pushButton_2")->click(); });
    rig.on("MtResultDlgClass",
           [](QWidget* shown) { child<QPushButton>(*shown, "pushButton_accept")->click(); });
    for (const char* box : {"messageBox_calibrationError", "messageBox_notAvailable"}) {
        rig.on(box, [](QWidget* shown) { shown->close(); });
    }
    rig.on("CalibrationProgressDialog", [&rig](QWidget* shown) {
        auto* const progress = qobject_cast<CalibrationProgressDlg*>(shown);
        hurry(*progress);
        auto* const polls = new QTimer(progress);
        const int before = rig.host.operationCount();
        QObject::connect(polls, &QTimer::timeout, progress, [&rig, progress, before] {
            const bool rests = !CalibrationProgressProbe::timer(*progress).isActive();
            const bool stuck = rig.host.operationCount() - before > 4 * patiencePolls;
            if (QApplication::activeModalWidget() == progress && (rests || stuck)) {
                progress->reject();
            }
        });
        polls->start(2);
    });
    rig.open({[&rig] {
        // Also when the checks have disabled the button: a slot can be reached in other ways.
        QVERIFY(QMetaObject::invokeMethod(rig.dialog, "on_pushButton_calibrate_clicked"));
        if (QApplication::activeModalWidget() == rig.dialog) {
            rig.click("pushButton_exit");
        }
    }});
}

std::ptrdiff_t countOf(const Lines& lines, const std::string& text) {
    return std::count(lines.begin(), lines.end(), text);
}

int operationsOfTheWholeFlow() {
    CalibrationRig rig;
    scriptWholeFlow(rig.host);
    play(rig);
    return rig.host.operationCount();
}

} // namespace

class TestMtCalibrationFaults : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theUndisturbedFlowIsWhole() {
        CalibrationRig rig;
        scriptWholeFlow(rig.host);
        play(rig);
        const Lines operations = rig.host.operations();
        QCOMPARE(countOf(operations, "send kestrel2 measurementtool accept_new_calibration"), 1);
        QCOMPARE(countOf(operations, "send kestrel2 tracking start"), 1);
        QCOMPARE(countOf(operations, "send kestrel2 tracking stop"), 1);
        QCOMPARE(countOf(operations, "get_string cal step_desc measurementtool s02"), 1);
        QVERIFY(rig.dog.seen().contains("CountdownDialog"));
    }

    void everyFaultEndsInOrder_data() {
        QTest::addColumn<int>("operation");
        QTest::addColumn<int>("fault");
        QTest::addColumn<bool>("stays");
        const int operations = operationsOfTheWholeFlow();
        QVERIFY(operations > 25);
        for (const Named& fault : faults) {
            for (int operation = 0; operation < operations; ++operation) {
                for (const bool stays : {false, true}) {
                    QTest::addRow("%s at %d%s", fault.name, operation, stays ? " and after" : "")
                        << operation << int(fault.fault) << stays;
                }
            }
        }
    }
    void everyFaultEndsInOrder() {
        QFETCH(int, operation);
        QFETCH(int, fault);
        QFETCH(bool, stays);
        CalibrationRig rig;
        scriptWholeFlow(rig.host);
        rig.host.injectFault(operation, static_cast<Fault>(fault), stays);
        play(rig);

        QVERIFY(rig.dialog->isHidden());
        QVERIFY(QApplication::activeModalWidget() == nullptr);
        QVERIFY(!MtCalibrationProbe::timer(*rig.dialog).isActive());
        QCOMPARE(rig.dialog->findChildren<QDialog*>().size(), 0);

        const Lines logs = rig.host.logTexts();
        const auto started = countOf(logs, "Measurement Tool calibration started");
        const auto finished = countOf(logs, "Measurement Tool calibration finished");
        const auto aborted = countOf(logs, "Measurement Tool calibration aborted");
        QCOMPARE(finished + aborted, started);

        const Lines operations = rig.host.operations();
        const auto accepted =
            countOf(operations, "send kestrel2 measurementtool accept_new_calibration");
        QCOMPARE(accepted, finished);
        QCOMPARE(rig.dog.seen().count("MtResultDlgClass"), int(finished));
        QVERIFY(countOf(operations, "send kestrel2 cal measurementtool start") <= started);
        QCOMPARE(operations.back().rfind("get_string status active", 0) == 0 ||
                     operations.back() == "send kestrel2 tracking stop",
                 true);
        for (const std::string& text : logs) {
            QVERIFY2(text.rfind("Error: ", 0) == 0 || text.rfind("Measurement Tool ", 0) == 0 ||
                         text == "cannot start calibration, waiting for sync signal",
                     text.c_str());
        }
    }
};

QTEST_MAIN(TestMtCalibrationFaults)
#include "test_mtcalibrationdlg_faults.moc"
