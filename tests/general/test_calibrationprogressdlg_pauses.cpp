#include "tests/general/progressrig.h"
#include "tests/support/children.h"
#include "tests/support/datarows.h"

#include <QLabel>
#include <QPushButton>
#include <QtTest>

namespace {

const std::string askPause = "cal step_pause measurementtool s01";
const std::string pause1 = "kestrel2 get cal step_pause measurementtool s01";
const std::string pause2 = "kestrel2 get cal step_pause measurementtool s02";

} // namespace

class TestCalibrationProgressPauses : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void thePauseReplyGivesTheFirstCountdown_data() {
        QTest::addColumn<QString>("reply");
        QTest::addColumn<QList<int>>("countdowns");
        QTest::newRow("yes") << "yes 5" << QList<int>{5};
        QTest::newRow("a float is truncated") << "yes 2.9" << QList<int>{2};
        QTest::newRow("three characters decide") << "yesterday 4" << QList<int>{4};
        QTest::newRow("more words") << "yes 7 seconds" << QList<int>{7};
        QTest::newRow("a line break behind it") << "yes 6\r\n" << QList<int>{6};
        QTest::newRow("yes alone") << "yes" << QList<int>();
        QTest::newRow("zero") << "yes 0" << QList<int>();
        QTest::newRow("less than a second") << "yes 0.9" << QList<int>();
        QTest::newRow("an empty second word") << "yes  5" << QList<int>();
        QTest::newRow("no number") << "yes five" << QList<int>();
        QTest::newRow("not a number") << "yes nan" << QList<int>();
        QTest::newRow("no") << "no 5" << QList<int>();
        QTest::newRow("case counts") << "Yes 5" << QList<int>();
        QTest::newRow("nothing") << "" << QList<int>();
        QTest::newRow("beyond the range") << "yes 1e30" << QList<int>{2147483647};
    }
    void thePauseReplyGivesTheFirstCountdown() {
        QFETCH(QString, reply);
        QFETCH(QList<int>, countdowns);
        ProgressRig rig;
        scriptProcedure(rig.host, 1, {"none"});
        rig.host.answer(askPause, reply.toStdString());
        rig.answerCountdowns("pushButton_2");
        QCOMPARE(rig.run(), 1);
        QCOMPARE(rig.countdowns, countdowns);
    }

    void aFailedPauseQueryMeansNoPause() {
        ProgressRig rig;
        scriptProcedure(rig.host, 1, {"none"});
        rig.host.fail(askPause);
        QCOMPARE(rig.run(), 1);
        QCOMPARE(rig.dog.seen().count("CountdownDialog"), 0);
    }

    void theWholePauseLinesDecideOnTwoStepMode_data() {
        QTest::addColumn<QString>("first");
        QTest::addColumn<QString>("second");
        QTest::addColumn<bool>("twoStep");
        QTest::addColumn<QList<int>>("countdowns");
        const QString line = "kestrel2 set cal step_pause measurementtool s0%1 %2";
        const QString good = line.arg(2).arg("yes 4");
        row("pauses", line.arg(1).arg("yes 3"), good, true, QList<int>{3});
        row("0 is 5 s", line.arg(1).arg("yes 0"), good, true, QList<int>{5});
        row("none is 5 s", line.arg(1).arg("yes"), good, true, QList<int>{5});
        row("no number is 5 s", line.arg(1).arg("yes 2.5"), good, true, QList<int>{5});
        row("decimal", line.arg(1).arg("yes 010"), good, true, QList<int>{10});
        row("no first pause", line.arg(1).arg("no 3"), good, false, QList<int>());
        row("whole word", line.arg(1).arg("yes, 3"), good, false, QList<int>());
        row("no second pause keeps the first", line.arg(1).arg("yes 3"), line.arg(2).arg("no"),
            false, QList<int>{3});
        row("word moved by a blank", "kestrel2 set cal step_pause measurementtool  s01 yes 3", good,
            false, QList<int>());
        row("error", "kestrel2 err 7 \"unknown\"", good, false, QList<int>());
        row("nothing", "", good, false, QList<int>());
    }
    void theWholePauseLinesDecideOnTwoStepMode() {
        QFETCH(QString, first);
        QFETCH(QString, second);
        QFETCH(bool, twoStep);
        QFETCH(QList<int>, countdowns);
        ProgressRig rig;
        rig.twoStep = true;
        scriptTwoStepProcedure(rig.host, {"none"});
        rig.host.answerCommand(pause1, first.toStdString());
        rig.host.answerCommand(pause2, second.toStdString());
        rig.answerCountdowns("pushButton_2");
        QCOMPARE(rig.run(), 1);
        QCOMPARE(rig.countdowns, countdowns);
        const std::string state = twoStep ? "status step_active" : "status active";
        QCOMPARE(rig.afterStart(), Lines({"get_string " + state}));
    }

    void afterANoTheSecondPauseIsNotAsked() {
        ProgressRig rig;
        rig.twoStep = true;
        scriptTwoStepProcedure(rig.host, {"none"});
        rig.host.fail(pause1);
        QCOMPARE(rig.run(), 1);
        for (const std::string& operation : rig.host.operations()) {
            QVERIFY(operation != "send " + pause2);
        }
    }

    void aCancelledFirstCountdownStartsNothing() {
        ProgressRig rig;
        scriptProcedure(rig.host, 1, {"none"});
        rig.host.answer(askPause, "yes 5");
        rig.answerCountdowns("pushButton");
        QCOMPARE(rig.run(), 0);
        QCOMPARE(rig.host.journal(), Lines({"get_string cal type_desc measurementtool",
                                            "get_int cal number_of_steps measurementtool",
                                            "get_string cal step_pause measurementtool s01"}));
        QVERIFY(!rig.timerActiveAtEnd);
        QCOMPARE(rig.dog.seen(), QStringList("CountdownDialog"));
    }

    void theFirstCountdownComesBeforeAnyLabelIsSet() {
        ProgressRig rig;
        scriptProcedure(rig.host, 1, {"none"});
        rig.host.answer(askPause, "yes 5");
        CalibrationProgressDlg* dialog = nullptr;
        rig.prepare = [&](CalibrationProgressDlg& made) {
            dialog = &made;
            made.show_custom_message("earlier");
        };
        bool checked = false;
        rig.dog.on("CountdownDialog", [&](QWidget* window) {
            checked = window->parentWidget() == &rig.parent && !dialog->isVisible() &&
                      child<QLabel>(*dialog, "label_desc")->text() == "TextLabel" &&
                      child<QLabel>(*dialog, "label_info")->text() == "earlier" &&
                      child<QLabel>(*window, "msg")->text().isEmpty();
            child<QPushButton>(*window, "pushButton_2")->click();
        });
        QCOMPARE(rig.run(), 1);
        QVERIFY(checked);
    }
};

QTEST_MAIN(TestCalibrationProgressPauses)
#include "test_calibrationprogressdlg_pauses.moc"
