#include "tests/SourceFiles/calibration/calibrationrig.h"
#include "tests/support/children.h"
#include "tests/support/datarows.h"

#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QtTest>

namespace {

const std::string logged = "log standard KESTREL3 1 ";
const Lines description = {"get_string cal type_desc measurementtool",
                           "get_int cal number_of_steps measurementtool",
                           "get_string cal step_pause measurementtool s01"};
const Lines results = {"get_string measurementtool calibration_body_id",
                       "get_string measurementtool reference_of_tool b02",
                       "get_double measurementtool calibration_tip_residual"};

Lines joined(const std::vector<Lines>& parts) {
    Lines all;
    for (const Lines& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

// What the journal holds behind the opening of the dialog.
Lines afterOpening(const CalibrationRig& rig) {
    const Lines all = rig.host.journal();
    return {all.begin() + static_cast<std::ptrdiff_t>(CalibrationRig::opening.size()), all.end()};
}

// Opens the dialog, calibrates and closes it.
void calibrateOnce(CalibrationRig& rig) {
    rig.open({[&] { rig.click("pushButton_calibrate"); }});
}

void clickOn(CalibrationRig& rig, const char* dialog, const char* button) {
    rig.on(dialog, [button](QWidget* shown) { child<QPushButton>(*shown, button)->click(); });
}

} // namespace

class TestMtCalibrationFlow : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aFinishedCalibrationIsAccepted() {
        CalibrationRig rig;
        // Opening; start of the procedure; two polls; tracking again; closing.
        rig.host.answerInTurn("status active", {"none", "track", "cal", "none", "none", "track"});
        clickOn(rig, "MtResultDlgClass", "pushButton_accept");
        calibrateOnce(rig);
        QCOMPARE(
            afterOpening(rig),
            joined({{"get_string cal available measurementtool",
                     logged + "Measurement Tool calibration started"},
                    description,
                    {"get_string status active", "send kestrel2 tracking stop",
                     "set_channel_option 0 5000 0", "send kestrel2 cal measurementtool start",
                     "get_string status active", "get_double status progress",
                     "get_string status step_progress",
                     "get_string cal step_duration measurementtool s01", "get_string status active",
                     logged + "Measurement Tool calibration finished"},
                    results,
                    {"send kestrel2 measurementtool accept_new_calibration",
                     "get_string status active", "send kestrel2 tracking start",
                     "get_string status active", "send kestrel2 tracking stop"}}));
        QCOMPARE(rig.dog.seen().count("MtResultDlgClass"), 1);
    }

    void theResultDialogGoesWhenTrackingHasStartedAgain() {
        CalibrationRig rig;
        rig.host.answerInTurn("status active", {"none", "none", "none", "none", "track"});
        clickOn(rig, "MtResultDlgClass", "pushButton_accept");
        QList<bool> thereAtStart; // of tracking
        QPointer<QObject> result;
        rig.host.onOperation = [&](const std::string& line) {
            if (line == "send kestrel2 tracking start") {
                result = rig.dialog->findChild<QDialog*>("MtResultDlgClass");
                thereAtStart << !result.isNull();
            }
        };
        rig.open({[&] { rig.click("pushButton_calibrate"); },
                  [&] {
                      QVERIFY(result.isNull());
                      rig.click("pushButton_exit");
                  }});
        QCOMPARE(thereAtStart, QList<bool>({false, true})); // on opening, after the result
    }

    void aDiscardedResultIsNotAccepted() {
        CalibrationRig rig;
        rig.host.answerInTurn("status active", {"none", "none", "none"});
        clickOn(rig, "MtResultDlgClass", "pushButton_cancel");
        calibrateOnce(rig);
        QCOMPARE(afterOpening(rig),
                 joined({{"get_string cal available measurementtool",
                          logged + "Measurement Tool calibration started"},
                         description,
                         {"get_string status active", "set_channel_option 0 5000 0",
                          "send kestrel2 cal measurementtool start", "get_string status active",
                          logged + "Measurement Tool calibration finished"},
                         results,
                         {"get_string status active", "send kestrel2 tracking start",
                          "get_string status active"}}));
    }

    void aCancelledCalibrationStartsTrackingAgain() {
        CalibrationRig rig;
        rig.host.answerInTurn("status active", {"none", "none", "other", "none", "track"});
        rig.on("CalibrationProgressDialog", [](QWidget* shown) {
            QVERIFY(QMetaObject::invokeMethod(shown, "update_cal_status"));
            child<QPushButton>(*shown, "pb_cancel")->click();
        });
        calibrateOnce(rig);
        QCOMPARE(afterOpening(rig),
                 joined({{"get_string cal available measurementtool",
                          logged + "Measurement Tool calibration started"},
                         description,
                         {"get_string status active", "set_channel_option 0 5000 0",
                          "send kestrel2 cal measurementtool start", "get_string status active",
                          "send kestrel2 cal measurementtool stop",
                          logged + "Measurement Tool calibration aborted",
                          "get_string status active", "send kestrel2 tracking start",
                          "get_string status active", "send kestrel2 tracking stop"}}));
        QCOMPARE(rig.dog.seen().count("MtResultDlgClass"), 0);
    }

    void whatCannotStartIsAborted_data() {
        QTest::addColumn<QString>("state");
        QTest::addColumn<QString>("reply");
        row("waiting for the sync signal", "wait", "kestrel2 ok");
        row("refused", "none", "kestrel2 err 1 \"no\"");
    }
    void whatCannotStartIsAborted() {
        QFETCH(QString, state);
        QFETCH(QString, reply);
        CalibrationRig rig;
        rig.host.answerInTurn("status active", {"none", state.toStdString(), "none"});
        rig.host.answerCommand("kestrel2 cal measurementtool start", reply.toStdString());
        rig.open({[&] {
            rig.click("pushButton_calibrate");
            rig.click("pushButton_exit");
        }});
        QCOMPARE(rig.host.logTexts().back(), std::string("Measurement Tool calibration aborted"));
        QCOMPARE(rig.dog.seen(), QStringList("MtCalibrationDlgClass"));
        const Lines operations = rig.host.operations();
        const Lines tail(operations.end() - 3, operations.end());
        QCOMPARE(tail, Lines({"get_string status active", "send kestrel2 tracking start",
                              "get_string status active"}));
    }

    void anUnavailableCalibrationIsRefused() {
        CalibrationRig rig;
        rig.host.answerInTurn("cal available measurementtool", {"yes", "no"});
        bool right = false;
        rig.on("messageBox_notAvailable", [&](QWidget* shown) {
            const auto* const box = qobject_cast<QMessageBox*>(shown);
            right = box->windowTitle() == "Measurement Tool Calibration" &&
                    box->text() == "Measurement Tool calibration is not available" &&
                    box->icon() == QMessageBox::Critical && box->parentWidget() == rig.dialog &&
                    box->standardButtons() == QMessageBox::Ok;
            box->button(QMessageBox::Ok)->click();
        });
        calibrateOnce(rig);
        QVERIFY(right);
        QCOMPARE(afterOpening(rig),
                 Lines({"get_string cal available measurementtool", "get_string status active"}));
        QCOMPARE(rig.dog.seen().count("CalibrationProgressDialog"), 0);
    }

    void aFailedAvailabilityQueryIsLogged() {
        CalibrationRig rig;
        rig.open({[&] {
            rig.host.fail("cal available measurementtool");
            rig.click("pushButton_calibrate");
            rig.click("pushButton_exit");
        }});
        QCOMPARE(afterOpening(rig),
                 Lines({"get_string cal available measurementtool",
                        logged + "Error: Calibration mea tool", "get_string status active"}));
    }

    void anyOtherReplyProceeds_data() {
        QTest::addColumn<QString>("reply");
        row("unexpected", "perhaps");
        row("nothing", "");
        row("no with a blank", "no ");
    }
    void anyOtherReplyProceeds() {
        QFETCH(QString, reply);
        CalibrationRig rig;
        rig.host.answerInTurn("cal available measurementtool", {"yes", reply.toStdString()});
        clickOn(rig, "MtResultDlgClass", "pushButton_cancel");
        calibrateOnce(rig);
        QCOMPARE(rig.host.logTexts(), Lines({"Measurement Tool calibration started",
                                             "Measurement Tool calibration finished"}));
    }

    void twoStepsAreFollowedInSingleStepMode() {
        CalibrationRig rig;
        rig.host.answer("cal number_of_steps measurementtool", "2");
        clickOn(rig, "MtResultDlgClass", "pushButton_cancel");
        calibrateOnce(rig);
        for (const std::string& line : rig.host.operations()) {
            QVERIFY(line.find("step_active") == std::string::npos);
            QVERIFY(line.find("send kestrel2 get cal step_pause") == std::string::npos);
        }
        QCOMPARE(rig.host.logTexts().back(), std::string("Measurement Tool calibration finished"));
    }

    void aHostThatClosesTheDialogWhenToldOfTheEndSeesNoResult() {
        CalibrationRig rig;
        rig.host.onOperation = [&](const std::string& line) {
            if (line == logged + "Measurement Tool calibration finished") {
                rig.dialog->reject();
            }
        };
        calibrateOnce(rig);
        QCOMPARE(rig.dog.seen(),
                 QStringList({"MtCalibrationDlgClass", "CalibrationProgressDialog"}));
        QCOMPARE(rig.host.logTexts().back(), std::string("Measurement Tool calibration finished"));
    }

    void helpIsShownUntilExit() {
        CalibrationRig rig;
        bool isChild = false;
        rig.on("MtHelpDlgClass", [&](QWidget* shown) {
            isChild = shown->parentWidget() == rig.dialog;
            child<QPushButton>(*shown, "pushButton_exit")->click();
        });
        rig.open({[&] { rig.click("pushButton_help"); }});
        QVERIFY(isChild);
        QCOMPARE(afterOpening(rig), Lines({"get_string status active"}));
        QCOMPARE(rig.dog.seen(),
                 QStringList({"MtCalibrationDlgClass", "MtHelpDlgClass", "MtCalibrationDlgClass"}));
    }

    void oneInnerDialogAtATime_data() {
        QTest::addColumn<QByteArray>("slot");
        row("calibrate", QByteArray("on_pushButton_calibrate_clicked"));
        row("help", QByteArray("on_pushButton_help_clicked"));
        row("open", QByteArray("update_and_exec"));
    }
    void oneInnerDialogAtATime() {
        QFETCH(QByteArray, slot);
        for (const char* inner : {"MtHelpDlgClass", "CalibrationProgressDialog"}) {
            CalibrationRig rig;
            rig.host.answerInTurn("status active", {"none", "none", "other"});
            std::size_t asked = 1;
            rig.on(inner, [&](QWidget* shown) {
                const std::size_t before = rig.host.journal().size();
                QVERIFY(QMetaObject::invokeMethod(rig.dialog, slot));
                asked = rig.host.journal().size() - before;
                shown->close();
            });
            const bool help = QByteArray(inner).startsWith("MtHelp");
            rig.open({[&] { rig.click(help ? "pushButton_help" : "pushButton_calibrate"); }});
            QCOMPARE(asked, std::size_t(0));
            QCOMPARE(rig.dog.seen(),
                     QStringList({"MtCalibrationDlgClass", inner, "MtCalibrationDlgClass"}));
        }
    }

    void aSecondCalibrationCanFollow() {
        CalibrationRig rig;
        clickOn(rig, "MtResultDlgClass", "pushButton_accept");
        rig.open({[&] { rig.click("pushButton_calibrate"); },
                  [&] { rig.click("pushButton_calibrate"); }});
        QCOMPARE(rig.host.logTexts(), Lines({"Measurement Tool calibration started",
                                             "Measurement Tool calibration finished",
                                             "Measurement Tool calibration started",
                                             "Measurement Tool calibration finished"}));
    }

    void thePictureKeepsMovingDuringTheCalibration() {
        CalibrationRig rig;
        rig.host.answerInTurn("status active", {"none", "none", "other"});
        MtCalibrationProbe::timer(*rig.dialog).setInterval(1);
        bool moved = false;
        rig.on("CalibrationProgressDialog", [&](QWidget* shown) {
            QTRY_COMPARE(MtCalibrationProbe::counter(*rig.dialog), 4);
            QTRY_COMPARE(MtCalibrationProbe::counter(*rig.dialog), 1);
            moved = true;
            shown->close();
        });
        calibrateOnce(rig);
        QVERIFY(moved);
    }
};

QTEST_MAIN(TestMtCalibrationFlow)
#include "test_mtcalibrationdlg_flow.moc"
