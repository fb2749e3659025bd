#include "tests/general/progressrig.h"

#include "tests/support/children.h"

#include <QLCDNumber>
#include <QMessageBox>
#include <QPushButton>
#include <QtTest>

#include <algorithm>

namespace {

constexpr int fastPollMs = 1;
const std::string startCommand = "send kestrel2 cal measurementtool start";

} // namespace

void hurry(CalibrationProgressDlg& dialog) {
    CalibrationProgressProbe::timer(dialog).setInterval(fastPollMs);
}

void scriptProcedure(ScriptedHost& host, int steps, const Lines& states) {
    host.answer("cal type_desc measurementtool", "\"Tip calibration\"");
    host.answer("cal number_of_steps measurementtool", std::to_string(steps));
    host.answer("cal step_pause measurementtool s01", "no");
    host.answer("cal step_desc measurementtool s01", "\"Swing the tool\"");
    host.answer("cal step_desc measurementtool s02", "\"Turn the tool\"");
    host.answer("cal step_duration measurementtool s01", "20");
    host.answer("cal step_duration measurementtool s02", "10");
    host.answer("status progress", "0.375");
    host.answer("status step_progress", "1 0.75");
    Lines replies = {"none"};
    replies.insert(replies.end(), states.begin(), states.end());
    host.answerInTurn("status active", replies);
}

void scriptTwoStepProcedure(ScriptedHost& host, const Lines& states) {
    scriptProcedure(host, 2, {"none"});
    host.answerCommand("kestrel2 get cal step_pause measurementtool s01",
                       "kestrel2 set cal step_pause measurementtool s01 yes 3");
    host.answerCommand("kestrel2 get cal step_pause measurementtool s02",
                       "kestrel2 set cal step_pause measurementtool s02 yes 4");
    host.answerInTurn("status step_active", states);
}

ProgressRig::ProgressRig()
    : versions(VersionInfo(3, 0, 0), VersionInfo(1, 14, 0), VersionInfo(3, 0, 0), "KESTREL") {
    CalibrationProgressProbe::forgetProgress();
}

ProgressRig::~ProgressRig() {
    QTest::qCompare(dog.strays(), QStringList(), "strays", "none", __FILE__, __LINE__);
}

int ProgressRig::run() {
    CalibrationProgressDlg dialog(&host, &parent, &versions, twoStep, remainingTime);
    hurry(dialog);
    if (prepare) {
        prepare(dialog);
    }
    const int result = dialog.update_and_execute("measurementtool");
    timerActiveAtEnd = CalibrationProgressProbe::timer(dialog).isActive();
    return result;
}

void ProgressRig::answerCountdowns(const char* button) {
    dog.on("CountdownDialog", [this, button](QWidget* window) {
        countdowns << child<QLCDNumber>(*window, "lcdNumber")->intValue();
        child<QPushButton>(*window, button)->click();
    });
}

void ProgressRig::answerBoxes() {
    dog.on("messageBox_calibrationError", [this](QWidget* window) {
        auto* const box = qobject_cast<QMessageBox*>(window);
        boxes << box->text();
        box->button(QMessageBox::Ok)->click();
    });
}

void ProgressRig::whenShown(const std::function<void(CalibrationProgressDlg&)>& action) {
    dog.on("CalibrationProgressDialog",
           [action](QWidget* window) { action(*qobject_cast<CalibrationProgressDlg*>(window)); });
}

Lines ProgressRig::afterStart() const {
    const Lines all = host.operations();
    const auto start = std::find(all.begin(), all.end(), startCommand);
    return start == all.end() ? Lines() : Lines(start + 1, all.end());
}
