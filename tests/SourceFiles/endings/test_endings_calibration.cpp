#include "tests/support/children.h"
#include "tests/support/endings/endingsweep.h"
#include "tests/support/faultsweep.h"

#include <QApplication>
#include <QDialog>
#include <QPushButton>
#include <QTimer>
#include <QtTest>

#include <map>

namespace {

enum class Flow { Accepted, Discarded, Cancelled, Error, Refused, Failing };
using Lines = std::vector<std::string>;

const std::map<Flow, Lines>& activeStates() {
    // On opening, on the start of the procedure, for each poll, after it, on closing.
    static const std::map<Flow, Lines> states = {
        {Flow::Accepted, {"none", "track", "cal", "cal", "none", "none", "track"}},
        {Flow::Discarded, {"none", "none", "none", "none", "track"}},
        {Flow::Cancelled, {"none", "none", "cal", "none", "track"}},
        {Flow::Error, {"none", "none", "err", "none", "track"}},
        {Flow::Refused, {"none", "track"}},
    };
    return states;
}

void script(ScriptedHost& io, Flow flow) {
    io.answer("config is_changeable", "yes");
    io.answer("measurementtool available", "yes");
    io.answer("tracking available", "yes");
    if (flow == Flow::Failing) {
        return;
    }
    io.answer("measurementtool number_of_tools", "2");
    io.answer("body calibrated measurementtool b01", "no");
    io.answer("body calibrated measurementtool b02", "yes");
    io.answerInTurn("cal available measurementtool", {"yes", flow == Flow::Refused ? "no" : "yes"});
    io.answerInTurn("status active", activeStates().at(flow));
    io.answer("cal type_desc measurementtool", "\"Tip calibration\"");
    io.answer("cal number_of_steps measurementtool", "2");
    io.answer("cal step_pause measurementtool s01", "yes 5");
    io.answer("cal step_desc measurementtool s01", "\"Swing the tool\"");
    io.answer("cal step_desc measurementtool s02", "\"Turn the tool\"");
    io.answer("cal step_duration measurementtool s01", "20");
    io.answer("cal step_duration measurementtool s02", "10");
    io.answer("status progress", "0.375");
    io.answerInTurn("status step_progress", {"1 0.5", "2 0.5"});
    io.answerCommand("kestrel2 get status err", "kestrel2 set status err \"too fast\"");
    io.answer("measurementtool calibration_body_id", "b02");
    io.answer("measurementtool reference_of_tool b02", "b01");
    io.answer("measurementtool calibration_tip_residual", "0.12");
}

// The polls of a progress dialog, one after the other for as long as it is on top.
void poll(EndingHost& host, const QPointer<QWidget>& dialog, Flow flow) {
    QTimer::singleShot(0, dialog, [&host, dialog, flow] {
        if (host.hasEnded() || dialog.isNull() || !dialog->isVisible()) {
            return;
        }
        if (QApplication::activeModalWidget() == dialog) {
            QMetaObject::invokeMethod(dialog, "update_cal_status", Qt::DirectConnection);
            if (flow == Flow::Cancelled) {
                host.act([&] { qobject_cast<QDialog*>(dialog)->reject(); });
            }
        }
        poll(host, dialog, flow);
    });
}

void press(QWidget* dialog, const char* button) {
    child<QPushButton>(*dialog, button)->click();
}

void calibrate(EndingHost& host, Flow flow) {
    int appearances = 0;
    host.dog.on("MtCalibrationDlgClass", [&](QWidget* dialog) {
        if (appearances++ > 0) {
            press(dialog, "pushButton_exit");
            return;
        }
        QMetaObject::invokeMethod(dialog, "on_pushButton_calibrate_clicked", Qt::DirectConnection);
        if (QApplication::activeModalWidget() == dialog) {
            press(dialog, "pushButton_exit"); // nothing was opened
        }
    });
    host.dog.on("CountdownDialog", [](QWidget* dialog) { press(dialog, "pushButton_2"); });
    host.dog.on("CalibrationProgressDialog", [&](QWidget* dialog) { poll(host, dialog, flow); });
    host.dog.on("MtResultDlgClass", [&](QWidget* dialog) {
        press(dialog, flow == Flow::Discarded ? "pushButton_cancel" : "pushButton_accept");
    });
    for (const char* box : {"messageBox_calibrationError", "messageBox_notAvailable"}) {
        host.dog.on(box, [](QWidget* shown) { shown->close(); });
    }
    host.trigger(1);
}

} // namespace

class TestEndingsCalibration : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QGuiApplication::setQuitOnLastWindowClosed(false); }

    void theHostMayEndACalibrationInsideAnyCall_data() {
        addEndingRows(
            {QStringLiteral("calibration, accepted"), QStringLiteral("calibration, discarded"),
             QStringLiteral("calibration, cancelled"), QStringLiteral("calibration, error"),
             QStringLiteral("calibration, refused"), QStringLiteral("calibration, failing")});
    }
    void theHostMayEndACalibrationInsideAnyCall() {
        QFETCH(EndBy, endBy);
        QFETCH(int, flow);
        QFETCH(QString, name);
        const auto kind = static_cast<Flow>(flow);
        const auto prepare = [=](ScriptedHost& io) { script(io, kind); };
        const auto play = [=](EndingHost& host) { calibrate(host, kind); };
        const EndingSweep sweep{QStringLiteral(KESTREL_PLUGIN_FILE), name, prepare, play};
        QCOMPARE(sweep.run(endBy), QString());
    }

private:
    faultsweep::NoPainting m_noPainting;
};

QTEST_MAIN(TestEndingsCalibration)
#include "test_endings_calibration.moc"
