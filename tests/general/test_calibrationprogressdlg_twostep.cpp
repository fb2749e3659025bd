#include "tests/general/progressrig.h"
#include "tests/support/children.h"

#include <QLabel>
#include <QProgressBar>
#include <QSignalSpy>
#include <QtTest>

namespace {

const std::string askState = "get_string status step_active";
const std::string describe2 = "get_string cal step_desc measurementtool s02";
const std::string startStep2 = "send kestrel2 cal measurementtool start_step s02";

struct TwoStepRig : ProgressRig {
    explicit TwoStepRig(const Lines& states) {
        twoStep = true;
        scriptTwoStepProcedure(host, states);
        answerCountdowns("pushButton_2");
    }
};

} // namespace

class TestCalibrationProgressTwoStep : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aWholeRunTriggersTheSecondStep() {
        TwoStepRig rig({"cal 1", "pause 2", "cal 2", "none"});
        QCOMPARE(rig.run(), 1);
        QCOMPARE(rig.countdowns, QList<int>({3, 4}));
        QCOMPARE(rig.afterStart(),
                 Lines({askState, "get_double status progress", "get_string status step_progress",
                        "get_string cal step_duration measurementtool s01", askState, describe2,
                        startStep2, askState, "get_double status progress",
                        "get_string status step_progress",
                        "get_string cal step_duration measurementtool s02", askState}));
        QVERIFY(!rig.timerActiveAtEnd);
        QCOMPARE(rig.host.logTexts(), Lines());
    }

    void progressIsTruncatedAndNotTold() {
        TwoStepRig rig({"other"});
        rig.host.answer("status progress", "-0.005");
        rig.host.answer("status step_progress", "2 0.759");
        QStringList shown;
        int told = -1;
        int polls = CalibrationProgressProbe::polls();
        rig.whenShown([&](CalibrationProgressDlg& dialog) {
            const QSignalSpy changed(&dialog, &CalibrationProgressDlg::progress_changed);
            rig.host.answer("status step_active", "cal 1");
            polls = CalibrationProgressProbe::polls();
            dialog.update_cal_status();
            polls = CalibrationProgressProbe::polls() - polls;
            shown << child<QProgressBar>(dialog, "progressBar_overall")->text()
                  << child<QProgressBar>(dialog, "progressBar_step")->text()
                  << child<QLabel>(dialog, "label_remaining_time")->text()
                  << child<QLabel>(dialog, "label_step_desc")->text();
            told = changed.count();
            dialog.reject();
        });
        rig.run();
        // A step number opens nothing here: the controller says when a step begins.
        QCOMPARE(shown, QStringList({"0%", "75%", "remaining time: 4 seconds", "Swing the tool"}));
        QCOMPARE(told, 0);
        QCOMPARE(polls, 1);
    }

    void withoutASecondPauseItStopsPollingAndStartsNothing() {
        TwoStepRig rig({"other"});
        bool polls = true;
        Lines asked;
        rig.whenShown([&](CalibrationProgressDlg& dialog) {
            CalibrationProgressProbe::setSecondPause(dialog, 0);
            rig.host.answer("status step_active", "pause 2");
            rig.host.clearJournal();
            dialog.update_cal_status();
            asked = rig.host.operations();
            polls = CalibrationProgressProbe::timer(dialog).isActive();
            dialog.reject();
        });
        rig.run();
        QCOMPARE(rig.countdowns, QList<int>({3}));
        QCOMPARE(asked, Lines({askState, describe2}));
        QVERIFY(!polls);
    }

    void aFullBarIsNotCalculating() {
        TwoStepRig rig({"cal 1", "none"});
        rig.host.answer("status progress", "1");
        QString info = "unread";
        rig.prepare = [&](CalibrationProgressDlg& dialog) {
            connect(&dialog, &QDialog::accepted,
                    [&] { info = child<QLabel>(dialog, "label_info")->text(); });
        };
        QCOMPARE(rig.run(), 1);
        QCOMPARE(info, QString());
    }

    void anErrorRestartsTrackingAndShowsTheFirstReply() {
        TwoStepRig rig({"cal 1", "err"});
        rig.remainingTime = false;
        rig.host.answerCommand("kestrel2 get status err", "7 \"first\"");
        rig.host.answerCommand("kestrel2 tracking start", "7 \"second\"");
        rig.host.answerCommand("kestrel2 tracking stop", "7 \"third\"");
        rig.answerBoxes();
        QCOMPARE(rig.run(), 0);
        QCOMPARE(rig.boxes, QStringList("first"));
        QCOMPARE(rig.afterStart(),
                 Lines({askState, "get_double status progress", "get_string status step_progress",
                        askState, "send kestrel2 get status err", "send kestrel2 tracking start",
                        "send kestrel2 tracking stop"}));
        QVERIFY(!rig.timerActiveAtEnd);
    }

    void otherStatesAndFailedQueriesChangeNothing() {
        TwoStepRig rig({"cal", "cal 3", "pause", "none ", "", "cal 1 ", "none"});
        QCOMPARE(rig.run(), 1);
        QCOMPARE(rig.afterStart(), Lines(7, askState));
    }
};

QTEST_MAIN(TestCalibrationProgressTwoStep)
#include "test_calibrationprogressdlg_twostep.moc"
