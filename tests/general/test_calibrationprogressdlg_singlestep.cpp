#include "tests/general/progressrig.h"
#include "tests/support/children.h"
#include "tests/support/datarows.h"

#include <QLabel>
#include <QProgressBar>
#include <QSignalSpy>
#include <QtTest>

namespace {

const std::string askState = "get_string status active";
const Lines pollOfStep1 = {askState, "get_double status progress",
                           "get_string status step_progress",
                           "get_string cal step_duration measurementtool s01"};

QString infoOf(const QWidget& dialog) {
    return child<QLabel>(dialog, "label_info")->text();
}

int overallOf(const QWidget& dialog) {
    return child<QProgressBar>(dialog, "progressBar_overall")->value();
}

int stepOf(const QWidget& dialog) {
    return child<QProgressBar>(dialog, "progressBar_step")->value();
}

// A dialog after one poll in the state "cal", which never becomes visible.
struct OnePoll {
    explicit OnePoll(ProgressRig& rig)
        : dialog(&rig.host, &rig.parent, &rig.versions, false, rig.remainingTime)
        , changed(&dialog, &CalibrationProgressDlg::progress_changed) {
        rig.host.answer("status active", "cal");
        child<QProgressBar>(dialog, "progressBar_overall")->reset();
        child<QProgressBar>(dialog, "progressBar_step")->reset();
        dialog.update_cal_status();
    }
    CalibrationProgressDlg dialog;
    QSignalSpy changed;
};

} // namespace

class TestCalibrationProgressSingleStep : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void itFollowsTheProcedureToItsEnd() {
        ProgressRig rig;
        scriptProcedure(rig.host, 1, {"cal", "other", "", "cal", "none"});
        QCOMPARE(rig.run(), 1);
        Lines expected = pollOfStep1;
        expected.insert(expected.end(), {askState, askState});
        expected.insert(expected.end(), pollOfStep1.begin(), pollOfStep1.end());
        expected.push_back(askState);
        QCOMPARE(rig.afterStart(), expected);
        QVERIFY(!rig.timerActiveAtEnd);
        QCOMPARE(rig.host.logTexts(), Lines());
        QCOMPARE(rig.dog.seen().count("CountdownDialog"), 0);
    }

    void itPollsFiveTimesASecond() {
        ProgressRig rig;
        CalibrationProgressDlg dialog(&rig.host, &rig.parent, &rig.versions, false, true);
        QCOMPARE(CalibrationProgressProbe::timer(dialog).interval(), 200);
        QVERIFY(!CalibrationProgressProbe::timer(dialog).isSingleShot());
        QVERIFY(!CalibrationProgressProbe::timer(dialog).isActive());
    }

    void progressIsShownAndTold_data() {
        QTest::addColumn<QString>("overall");
        QTest::addColumn<QString>("step");
        QTest::addColumn<int>("overallBar");
        QTest::addColumn<int>("stepBar");
        QTest::addColumn<double>("overallTold");
        QTest::addColumn<double>("stepTold");
        row("fractions", "0.375", "1 0.75", 37, 75, 0.375, 0.75);
        row("floored", "0.999", "1 0.009", 99, 0, 0.999, 0.009);
        row("blanks", "0.5", "  1   0.25", 50, 25, 0.5, 0.25);
        row("begin", "0", "1 0", 0, 0, 0.0, 0.0);
        row("end", "1", "1 1.0", 100, 100, 1.0, 1.0);
        row("exponent", "1e-1", "1 2.5e-1", 10, 25, 0.1, 0.25);
        row("rest ignored", "0.5", "1 0.25 x", 50, 25, 0.5, 0.25);
        row("bars show nothing beyond their range", "1.5", "1 -0.005", -1, -1, 1.5, -0.005);
        row("far beyond it", "1e300", "1 -1e300", -1, -1, 1e300, -1e300);
        row("no step number", "0.5", "x 0.25", 50, 0, 0.5, 0.0);
        row("no step fraction", "0.5", "1", 50, 0, 0.5, 0.0);
        row("a comma ends a number", "0.5", "1 0,75", 50, 0, 0.5, 0.0);
        row("nothing", "0.5", "", 50, 0, 0.5, 0.0);
    }
    void progressIsShownAndTold() {
        QFETCH(QString, overall);
        QFETCH(QString, step);
        QFETCH(int, overallBar);
        QFETCH(int, stepBar);
        QFETCH(double, overallTold);
        QFETCH(double, stepTold);
        ProgressRig rig;
        scriptProcedure(rig.host, 1, {});
        rig.host.answer("status progress", overall.toStdString());
        rig.host.answer("status step_progress", step.toStdString());
        const OnePoll poll(rig);
        QCOMPARE(overallOf(poll.dialog), overallBar);
        QCOMPARE(stepOf(poll.dialog), stepBar);
        QCOMPARE(poll.changed.count(), 1);
        QCOMPARE(poll.changed.at(0).at(0).toDouble(), overallTold);
        QCOMPARE(poll.changed.at(0).at(1).toDouble(), stepTold);
    }

    void notANumberIsNoProgress() {
        ProgressRig rig;
        scriptProcedure(rig.host, 1, {});
        rig.host.answer("status progress", "nan");
        rig.host.answer("status step_progress", "1 nan");
        const OnePoll poll(rig);
        QCOMPARE(overallOf(poll.dialog), 0);
        QCOMPARE(stepOf(poll.dialog), 0);
        QCOMPARE(child<QLabel>(poll.dialog, "label_remaining_time")->text(),
                 QString("remaining time: 0 seconds"));
    }

    void theRemainingTimeIsTruncated_data() {
        QTest::addColumn<QString>("duration");
        QTest::addColumn<QString>("fraction");
        QTest::addColumn<QString>("text");
        row("whole", "20", "0.75", "remaining time: 5 seconds");
        row("truncated", "10", "0.05", "remaining time: 9 seconds");
        row("towards zero", "10", "1.05", "remaining time: 0 seconds");
        row("with a unit", "20 s", "0.75", "remaining time: 5 seconds");
        row("with a fraction", "7.9", "0", "remaining time: 7 seconds");
        row("no number", "long", "0.5", "remaining time: 0 seconds");
        row("unknown", "FAIL", "0.5", "remaining time: 0 seconds");
        row("very long", "1e300", "0", "remaining time: 2147483647 seconds");
    }
    void theRemainingTimeIsTruncated() {
        QFETCH(QString, duration);
        QFETCH(QString, fraction);
        QFETCH(QString, text);
        ProgressRig rig;
        scriptProcedure(rig.host, 1, {});
        const std::string parameter = "cal step_duration measurementtool s01";
        rig.host.answer(parameter, duration.toStdString());
        if (duration == "FAIL") {
            rig.host.fail(parameter);
        }
        rig.host.answer("status step_progress", "1 " + fraction.toStdString());
        // The type is known to a dialog that runs; one poll is made by hand in addition.
        QString shown;
        rig.host.answerInTurn("status active", {"none", "other"});
        rig.whenShown([&](CalibrationProgressDlg& dialog) {
            rig.host.answer("status active", "cal");
            dialog.update_cal_status();
            shown = child<QLabel>(dialog, "label_remaining_time")->text();
            dialog.reject();
        });
        rig.run();
        QCOMPARE(shown, text);
    }

    void theRemainingTimeNeedsProtocolAndFlag_data() {
        QTest::addColumn<int>("minor");
        QTest::addColumn<int>("patch");
        QTest::addColumn<bool>("flag");
        QTest::addColumn<bool>("asked");
        row("1.4.0", 4, 0, true, true);
        row("an unknown patch passes", 4, -1, true, true);
        row("1.4.-2", 4, -2, true, false);
        row("1.3.99", 3, 99, true, false);
        row("1.14.0", 14, 0, true, true);
        row("not wanted", 14, 0, false, false);
    }
    void theRemainingTimeNeedsProtocolAndFlag() {
        QFETCH(int, minor);
        QFETCH(int, patch);
        QFETCH(bool, flag);
        QFETCH(bool, asked);
        ProgressRig rig;
        rig.versions =
            BackendVersions(VersionInfo(), VersionInfo(1, minor, patch), VersionInfo(), QString());
        rig.remainingTime = flag;
        scriptProcedure(rig.host, 1, {"cal", "none"});
        QCOMPARE(rig.run(), 1);
        QCOMPARE(rig.afterStart().size(), std::size_t(asked ? 5 : 4));
    }

    void aFullBarInTheFirstStepMeansCalculating_data() {
        QTest::addColumn<QString>("overall");
        QTest::addColumn<QString>("step");
        QTest::addColumn<QString>("info");
        row("exactly 100", "1", "1 1", "calculating...");
        row("floored to 100", "1.009", "1 1", "calculating...");
        row("99", "0.999", "1 1", "mine");
        row("101", "1.01", "1 1", "mine");
        row("no step", "1", "0 1", "mine");
    }
    void aFullBarInTheFirstStepMeansCalculating() {
        QFETCH(QString, overall);
        QFETCH(QString, step);
        QFETCH(QString, info);
        ProgressRig rig;
        scriptProcedure(rig.host, 1, {});
        rig.host.answer("status progress", overall.toStdString());
        rig.host.answer("status step_progress", step.toStdString());
        OnePoll poll(rig);
        poll.dialog.show_custom_message("mine");
        QCOMPARE(infoOf(poll.dialog), info);
        // Told once: what another writer puts there later stays.
        child<QLabel>(poll.dialog, "label_info")->setText("later");
        poll.dialog.update_cal_status();
        QCOMPARE(infoOf(poll.dialog), QString("later"));
    }

    void failedQueriesKeepTheLastProgressOfTheProgramRun() {
        ProgressRig rig;
        scriptProcedure(rig.host, 1, {});
        { const OnePoll first(rig); }
        rig.host.fail("status progress");
        rig.host.fail("status step_progress");
        const OnePoll second(rig);
        QCOMPARE(overallOf(second.dialog), 37);
        QCOMPARE(stepOf(second.dialog), 75);
        QCOMPARE(second.changed.at(0).at(0).toDouble(), 0.375);
        QCOMPARE(second.changed.at(0).at(1).toDouble(), 0.75);
    }
};

QTEST_MAIN(TestCalibrationProgressSingleStep)
#include "test_calibrationprogressdlg_singlestep.moc"
