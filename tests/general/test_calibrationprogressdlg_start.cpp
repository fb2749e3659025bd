#include "tests/general/progressrig.h"
#include "tests/support/children.h"

#include <QLCDNumber>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QtTest>

namespace {

const std::string askPause = "cal step_pause measurementtool s01";
const std::string pause1 = "kestrel2 get cal step_pause measurementtool s01";
const std::string pause2 = "kestrel2 get cal step_pause measurementtool s02";
const std::string start = "kestrel2 cal measurementtool start";

} // namespace

class TestCalibrationProgressStart : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aOneStepProcedureIsDescribedAndStarted() {
        ProgressRig rig;
        scriptProcedure(rig.host, 1, {"none"});
        QCOMPARE(rig.run(), 1);
        QCOMPARE(rig.host.journal(),
                 Lines({"get_string cal type_desc measurementtool",
                        "get_int cal number_of_steps measurementtool",
                        "get_string cal step_pause measurementtool s01", "get_string status active",
                        "set_channel_option 0 5000 0", "send kestrel2 cal measurementtool start",
                        "get_string status active"}));
    }

    void twoStepsAskForTheFirstDescription() {
        ProgressRig rig;
        scriptProcedure(rig.host, 2, {"none"});
        QCOMPARE(rig.run(), 1);
        QCOMPARE(rig.host.journal(),
                 Lines({"get_string cal type_desc measurementtool",
                        "get_int cal number_of_steps measurementtool",
                        "get_string cal step_pause measurementtool s01",
                        "get_string cal step_desc measurementtool s01", "get_string status active",
                        "set_channel_option 0 5000 0", "send kestrel2 cal measurementtool start",
                        "get_string status active"}));
    }

    void twoStepModeAsksForBothPauses() {
        ProgressRig rig;
        rig.twoStep = true;
        scriptTwoStepProcedure(rig.host, {"none"});
        rig.answerCountdowns("pushButton_2");
        QCOMPARE(rig.run(), 1);
        QCOMPARE(rig.host.journal(),
                 Lines({"get_string cal type_desc measurementtool",
                        "get_int cal number_of_steps measurementtool",
                        "get_string cal step_pause measurementtool s01",
                        "send kestrel2 get cal step_pause measurementtool s01",
                        "send kestrel2 get cal step_pause measurementtool s02",
                        "get_string cal step_desc measurementtool s01", "get_string status active",
                        "set_channel_option 0 5000 0", "send kestrel2 cal measurementtool start",
                        "get_string status step_active"}));
        QCOMPARE(rig.countdowns, QList<int>{3});
    }

    void oneStepNeedsNoPausesInTwoStepMode() {
        ProgressRig rig;
        rig.twoStep = true;
        scriptProcedure(rig.host, 1, {"none"});
        QCOMPARE(rig.run(), 1);
        QCOMPARE(rig.host.operations().at(3), std::string("get_string status active"));
        QCOMPARE(rig.afterStart(), Lines({"get_string status active"}));
    }

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
        QTest::newRow("pauses") << line.arg(1).arg("yes 3") << good << true << QList<int>{3};
        QTest::newRow("0 is 5 s") << line.arg(1).arg("yes 0") << good << true << QList<int>{5};
        QTest::newRow("none is 5 s") << line.arg(1).arg("yes") << good << true << QList<int>{5};
        QTest::newRow("no number is 5 s")
            << line.arg(1).arg("yes 2.5") << good << true << QList<int>{5};
        QTest::newRow("decimal") << line.arg(1).arg("yes 010") << good << true << QList<int>{10};
        QTest::newRow("no first pause") << line.arg(1).arg("no 3") << good << false << QList<int>();
        QTest::newRow("whole word") << line.arg(1).arg("yes, 3") << good << false << QList<int>();
        QTest::newRow("no second pause keeps the first")
            << line.arg(1).arg("yes 3") << line.arg(2).arg("no") << false << QList<int>{3};
        QTest::newRow("word moved by a blank")
            << "kestrel2 set cal step_pause measurementtool  s01 yes 3" << good << false
            << QList<int>();
        QTest::newRow("error") << "kestrel2 err 7 \"unknown\"" << good << false << QList<int>();
        QTest::newRow("nothing") << "" << good << false << QList<int>();
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

    void theTrackingStateDecidesOnTheStart_data() {
        QTest::addColumn<QString>("state");
        QTest::addColumn<bool>("stopsTracking");
        QTest::newRow("none") << "none" << false;
        QTest::newRow("err") << "err" << false;
        QTest::newRow("tracking") << "track" << true;
        QTest::newRow("calibrating") << "cal" << true;
        QTest::newRow("none with a blank") << "none " << true;
        QTest::newRow("nothing") << "" << true;
    }
    void theTrackingStateDecidesOnTheStart() {
        QFETCH(QString, state);
        QFETCH(bool, stopsTracking);
        ProgressRig rig;
        scriptProcedure(rig.host, 1, {});
        rig.host.answerInTurn("status active", {state.toStdString(), "none"});
        QCOMPARE(rig.run(), 1);
        Lines expected = {"get_string status active"};
        if (stopsTracking) {
            expected.emplace_back("send kestrel2 tracking stop");
        }
        expected.emplace_back("set_channel_option 0 5000 0");
        expected.emplace_back("send " + start);
        const Lines all = rig.host.journal();
        const Lines rest(all.begin() + 3, all.end() - 1);
        QCOMPARE(rest, expected);
    }

    void aFailedStateQueryIsNoneOfTheKnownStates() {
        ProgressRig rig;
        scriptProcedure(rig.host, 1, {});
        rig.host.fail("status active");
        rig.whenShown([&](CalibrationProgressDlg&) { rig.host.succeed("status active"); });
        QCOMPARE(rig.run(), 1);
        QCOMPARE(rig.host.operations().at(4), std::string("send kestrel2 tracking stop"));
    }

    void waitingForTheSyncSignalStartsNothing() {
        ProgressRig rig;
        scriptProcedure(rig.host, 1, {});
        rig.host.answer("status active", "wait");
        QCOMPARE(rig.run(), 0);
        QCOMPARE(rig.host.journal(),
                 Lines({"get_string cal type_desc measurementtool",
                        "get_int cal number_of_steps measurementtool",
                        "get_string cal step_pause measurementtool s01", "get_string status active",
                        "log standard KESTREL3 1 cannot start calibration, waiting for sync "
                        "signal"}));
        QVERIFY(rig.timerActiveAtEnd);
        QCOMPARE(rig.dog.seen(), QStringList());
    }

    void aStartThatIsNotAcknowledgedEndsSilently_data() {
        QTest::addColumn<QString>("reply");
        QTest::newRow("error") << "kestrel2 err 5 \"busy\"";
        QTest::newRow("a blank too many") << "kestrel2 ok ";
        QTest::newRow("nothing") << "";
        QTest::newRow("failed") << "FAIL";
    }
    void aStartThatIsNotAcknowledgedEndsSilently() {
        QFETCH(QString, reply);
        ProgressRig rig;
        scriptProcedure(rig.host, 1, {"cal"});
        if (reply == "FAIL") {
            rig.host.fail(start);
        } else {
            rig.host.answerCommand(start, reply.toStdString());
        }
        QCOMPARE(rig.run(), 0);
        QCOMPARE(rig.host.logTexts(), Lines());
        QCOMPARE(rig.dog.seen(), QStringList());
        QCOMPARE(rig.afterStart(), Lines());
    }

    void theDescriptionTellsTheSteps_data() {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("description");
        QTest::addColumn<QString>("stepDescription");
        QTest::addColumn<bool>("stepBar");
        QTest::newRow("1") << "1"
                           << "Tip calibration" << QString() << false;
        QTest::newRow("2") << "2"
                           << "Tip calibration is a 2 step calibration."
                           << "Swing the tool" << true;
        QTest::newRow("3") << "3"
                           << "Tip calibration is a 3 step calibration." << QString() << true;
        QTest::newRow("0") << "0"
                           << "Tip calibration is a 0 step calibration." << QString() << true;
        QTest::newRow("unknown") << "FAIL"
                                 << "Tip calibration" << QString() << false;
    }
    void theDescriptionTellsTheSteps() {
        QFETCH(QString, steps);
        QFETCH(QString, description);
        QFETCH(QString, stepDescription);
        QFETCH(bool, stepBar);
        ProgressRig rig;
        scriptProcedure(rig.host, 1, {"other"});
        rig.host.answer("cal number_of_steps measurementtool", steps.toStdString());
        if (steps == "FAIL") {
            rig.host.fail("cal number_of_steps measurementtool");
        }
        QStringList texts;
        QList<bool> visible;
        rig.whenShown([&](CalibrationProgressDlg& dialog) {
            texts << child<QLabel>(dialog, "label_desc")->text();
            const auto* const step = child<QLabel>(dialog, "label_step_desc");
            texts << (step->isVisible() ? step->text() : QString());
            for (const char* name : {"progressBar_step", "label", "label_progress_step"}) {
                visible << child<QWidget>(dialog, name)->isVisible();
            }
            dialog.reject();
        });
        QCOMPARE(rig.run(), 0);
        QCOMPARE(texts, QStringList({description, stepDescription}));
        QCOMPARE(visible, QList<bool>({stepBar, stepBar, stepBar}));
    }

    void controllerTextsLoseTheirQuotesAndAreNoHtml() {
        ProgressRig rig;
        scriptProcedure(rig.host, 2, {"other"});
        rig.host.answer("cal type_desc measurementtool", "\"<b>\"%1\" %s %n</b>\"");
        rig.host.answer("cal step_desc measurementtool s01", "<i>\"\"%1</i>");
        QStringList texts;
        rig.whenShown([&](CalibrationProgressDlg& dialog) {
            for (const char* name : {"label_desc", "label_step_desc"}) {
                const auto* const label = child<QLabel>(dialog, name);
                texts << (label->textFormat() == Qt::PlainText ? label->text() : "HTML");
            }
            dialog.reject();
        });
        rig.run();
        QCOMPARE(texts, QStringList({"<b>%1 %s %n</b> is a 2 step calibration.", "<i>%1</i>"}));
    }

    void theBarsAndTheInfoBeginEmpty() {
        ProgressRig rig;
        scriptProcedure(rig.host, 1, {"other"});
        rig.prepare = [](CalibrationProgressDlg& dialog) {
            QCOMPARE(child<QProgressBar>(dialog, "progressBar_overall")->value(), 24);
            QCOMPARE(child<QProgressBar>(dialog, "progressBar_step")->value(), 24);
            dialog.show_custom_message("from the last run");
        };
        QStringList state;
        rig.whenShown([&](CalibrationProgressDlg& dialog) {
            state << child<QProgressBar>(dialog, "progressBar_overall")->text()
                  << child<QProgressBar>(dialog, "progressBar_step")->text()
                  << child<QLabel>(dialog, "label_info")->text()
                  << child<QLabel>(dialog, "label_remaining_time")->text();
            dialog.reject();
        });
        rig.run();
        QCOMPARE(state, QStringList({"", "", "", ""}));
    }

    void withoutAHostItEndsAtOnce() {
        CalibrationProgressDlg dialog(nullptr, nullptr, nullptr, true, true);
        const ModalWatchdog dog;
        QCOMPARE(dialog.update_and_execute("measurementtool"), 0);
        QCOMPARE(dog.seen(), QStringList());
    }
};

QTEST_MAIN(TestCalibrationProgressStart)
#include "test_calibrationprogressdlg_start.moc"
