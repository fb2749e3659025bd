#include "tests/general/progressrig.h"
#include "tests/support/children.h"

#include <QLCDNumber>
#include <QLabel>
#include <QPushButton>
#include <QtTest>

#include <algorithm>

namespace {

const std::string askState = "get_string status active";
const std::string stop = "send kestrel2 cal measurementtool stop";
const std::string describe2 = "get_string cal step_desc measurementtool s02";

std::ptrdiff_t countOf(const ProgressRig& rig, const std::string& line) {
    const Lines lines = rig.host.operations();
    return std::count(lines.begin(), lines.end(), line);
}

// A procedure of two steps that is followed in single-step mode and has just begun its second.
void scriptSecondStep(ProgressRig& rig) {
    scriptProcedure(rig.host, 2, {"cal"});
    rig.host.answerInTurn("status step_progress", {"1 0.5", "2 0.25"});
}

} // namespace

class TestCalibrationProgressSteps : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aNewStepIsDescribedAndCountedDown() {
        ProgressRig rig;
        scriptSecondStep(rig);
        rig.dog.on("CountdownDialog", [&](QWidget* window) {
            rig.countdowns << child<QLCDNumber>(*window, "lcdNumber")->intValue();
            QCOMPARE(window->parentWidget(), &rig.parent);
            rig.host.answer("status active", "none");
            child<QPushButton>(*window, "pushButton_2")->click();
        });
        QString description;
        rig.prepare = [&](CalibrationProgressDlg& dialog) {
            connect(&dialog, &QDialog::accepted,
                    [&] { description = child<QLabel>(dialog, "label_step_desc")->text(); });
        };
        QCOMPARE(rig.run(), 1);
        QCOMPARE(rig.countdowns, QList<int>{5});
        QCOMPARE(description, QString("Turn the tool"));
        QCOMPARE(countOf(rig, describe2), 1);
    }

    void theRemainingTimeOfTheChangingPollIsThatOfTheOldStep() {
        ProgressRig rig;
        scriptSecondStep(rig);
        rig.answerCountdowns("pushButton");
        rig.whenShown([](CalibrationProgressDlg&) {});
        rig.dog.on("CountdownDialog", [&](QWidget* window) {
            rig.host.answer("status active", "none");
            child<QPushButton>(*window, "pushButton_2")->click();
        });
        QCOMPARE(rig.run(), 1);
        const Lines expected = {askState,
                                "get_double status progress",
                                "get_string status step_progress",
                                "get_string cal step_duration measurementtool s01",
                                askState,
                                "get_double status progress",
                                "get_string status step_progress",
                                "get_string cal step_duration measurementtool s01",
                                describe2};
        const Lines all = rig.afterStart();
        QCOMPARE(Lines(all.begin(), all.begin() + 9), expected);
    }

    void pollingGoesOnDuringTheCountdown() {
        ProgressRig rig;
        scriptSecondStep(rig);
        constexpr int enough = 10;
        int pollsBefore = 0;
        rig.dog.on("CountdownDialog", [&](QWidget* window) {
            pollsBefore = static_cast<int>(countOf(rig, askState));
            QTRY_VERIFY(countOf(rig, askState) >= pollsBefore + enough);
            QVERIFY(window->isVisible());
            rig.host.answer("status active", "none");
            child<QPushButton>(*window, "pushButton_2")->click();
        });
        QCOMPARE(rig.run(), 1);
        QVERIFY(pollsBefore > 0);
        QCOMPARE(rig.dog.seen().count("CountdownDialog"), 1);
    }

    void aFurtherStepDuringTheCountdownOpensNoSecondOne() {
        ProgressRig rig;
        scriptSecondStep(rig);
        rig.dog.on("CountdownDialog", [&](QWidget* window) {
            rig.host.answer("cal step_desc measurementtool s03", "third");
            rig.host.answer("status step_progress", "3 0.1");
            QTRY_COMPARE(countOf(rig, "get_string cal step_desc measurementtool s03"), 1);
            QTRY_VERIFY(countOf(rig, "get_string cal step_duration measurementtool s03") > 3);
            rig.host.answer("status active", "none");
            child<QPushButton>(*window, "pushButton_2")->click();
        });
        QCOMPARE(rig.run(), 1);
        QCOMPARE(rig.dog.seen().count("CountdownDialog"), 1);
    }

    void aCountdownThatRanOutGoesOnPolling() {
        ProgressRig rig;
        scriptSecondStep(rig);
        rig.dog.on("CountdownDialog", [&](QWidget* window) {
            CountdownProbe::timer(*qobject_cast<CountdownDlg*>(window)).setInterval(1);
        });
        // The countdown has gone when the progress dialog is the active one again.
        rig.whenShown([&](CalibrationProgressDlg& dialog) {
            if (rig.dog.seen().contains("CountdownDialog")) {
                const auto polls = countOf(rig, askState);
                QTRY_VERIFY(countOf(rig, askState) > polls);
                dialog.reject();
            }
        });
        QCOMPARE(rig.run(), 0);
        QCOMPARE(rig.dog.seen().count("CountdownDialog"), 1);
        QCOMPARE(countOf(rig, stop), 1);
    }

    void aCountdownThatDiesAloneCountsAsCancelled() {
        ProgressRig rig;
        scriptSecondStep(rig);
        rig.dog.on("CountdownDialog", [](QWidget* window) { window->deleteLater(); });
        bool polled = true;
        rig.whenShown([&](CalibrationProgressDlg& dialog) {
            if (rig.dog.seen().contains("CountdownDialog")) {
                polled = CalibrationProgressProbe::timer(dialog).isActive();
                dialog.reject();
            }
        });
        QCOMPARE(rig.run(), 0);
        QVERIFY(!polled);
        QCOMPARE(rig.dog.seen().count("CountdownDialog"), 1);
        QCOMPARE(countOf(rig, stop), 1);
    }

    void aHostThatStopsItInsideAQueryOfTheNewStepSeesNoCountdown() {
        ProgressRig rig;
        scriptSecondStep(rig);
        CalibrationProgressDlg* dialog = nullptr;
        rig.prepare = [&](CalibrationProgressDlg& made) { dialog = &made; };
        rig.host.onOperation = [&](const std::string& line) {
            if (line == describe2) {
                dialog->close();
            }
        };
        QCOMPARE(rig.run(), 0);
        QCOMPARE(countOf(rig, stop), 1);
        QCOMPARE(rig.dog.seen().count("CountdownDialog"), 0);
        QVERIFY(!rig.timerActiveAtEnd);
    }

    void stepsThatAreNotNewChangeNothing_data() {
        QTest::addColumn<QString>("progress");
        QTest::newRow("first") << "1 0.5";
        QTest::newRow("none") << "0 0.5";
        QTest::newRow("negative") << "-2 0.5";
        QTest::newRow("unreadable") << "two 0.5";
    }
    void stepsThatAreNotNewChangeNothing() {
        QFETCH(QString, progress);
        ProgressRig rig;
        scriptProcedure(rig.host, 2, {"cal", "none"});
        rig.host.answer("status step_progress", progress.toStdString());
        QCOMPARE(rig.run(), 1);
        QCOMPARE(rig.afterStart().size(), std::size_t(5));
        QCOMPARE(rig.dog.seen().count("CountdownDialog"), 0);
    }
};

QTEST_MAIN(TestCalibrationProgressSteps)
#include "test_calibrationprogressdlg_steps.moc"
