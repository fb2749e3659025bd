#include "tests/general/progressrig.h"
#include "tests/support/children.h"
#include "tests/support/datarows.h"

#include <QLabel>
#include <QProgressBar>
#include <QtTest>

namespace {

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

    void theTrackingStateDecidesOnTheStart_data() {
        QTest::addColumn<QString>("state");
        QTest::addColumn<bool>("stopsTracking");
        row("none", "none", false);
        row("err", "err", false);
        row("tracking", "track", true);
        row("calibrating", "cal", true);
        row("none with a blank", "none ", true);
        row("nothing", "", true);
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
        QCOMPARE(rig.host.operations(), Lines({"get_string cal type_desc measurementtool",
                                               "get_int cal number_of_steps measurementtool",
                                               "get_string cal step_pause measurementtool s01",
                                               "get_string status active"}));
        QCOMPARE(rig.host.logTexts(), Lines({"cannot start calibration, waiting for sync signal"}));
        QVERIFY(rig.timerActiveAtEnd);
        QCOMPARE(rig.dog.seen(), QStringList());
    }

    void aStartThatIsNotAcknowledgedEndsSilently_data() {
        QTest::addColumn<QString>("reply");
        row("error", "kestrel2 err 5 \"busy\"");
        row("a blank too many", "kestrel2 ok ");
        row("nothing", "");
        row("failed", "FAIL");
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
        row("1", "1", "Tip calibration", QString(), false);
        row("2", "2", "Tip calibration is a 2 step calibration.", "Swing the tool", true);
        row("3", "3", "Tip calibration is a 3 step calibration.", QString(), true);
        row("0", "0", "Tip calibration is a 0 step calibration.", QString(), true);
        row("unknown", "FAIL", "Tip calibration", QString(), false);
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
