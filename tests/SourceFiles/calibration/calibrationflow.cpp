#include "tests/SourceFiles/calibration/calibrationflow.h"

#include "host_api/metatypes.h"
#include "tests/support/children.h"

#include <QApplication>
#include <QDialog>
#include <QPushButton>
#include <QtTest>

#include <algorithm>

using faultsweep::Case;
using faultsweep::Outcome;
using Stage = CalibrationFlow::Stage;
using Way = CalibrationFlow::Way;

namespace {

constexpr int neverMs = 3600 * 1000;

std::ptrdiff_t countOf(const Lines& lines, const std::string& text) {
    return std::count(lines.begin(), lines.end(), text);
}

std::ptrdiff_t logged(const Lines& journal, const std::string& text) {
    return countOf(journal, "log standard KESTREL3 1 " + text);
}

const std::string startCommand = "send kestrel2 cal measurementtool start";

// Whether the procedure was started in a journal without log lines before its start.
bool wasStarted(const Lines& journal, const Case& fault) {
    const auto start = std::find(journal.begin(), journal.end(), startCommand);
    return start != journal.end() && !fault.isFaulty(static_cast<int>(start - journal.begin()));
}

const char* dialogOf(Stage stage) {
    switch (stage) {
    case Stage::Refused:
        return "messageBox_notAvailable";
    case Stage::FirstCountdown:
    case Stage::StepCountdown:
        return "CountdownDialog";
    case Stage::Progress:
        return "CalibrationProgressDialog";
    case Stage::Error:
        return "messageBox_calibrationError";
    case Stage::Result:
        return "MtResultDlgClass";
    default:
        return "";
    }
}

void press(QWidget* dialog, const char* button) {
    child<QPushButton>(*dialog, button)->click();
}

} // namespace

void PollDriver::hold(CalibrationProgressDlg& dialog) {
    CalibrationProgressProbe::timer(dialog).setInterval(neverMs);
}

void PollDriver::follow(CalibrationProgressDlg& dialog, int polls,
                        const std::function<void()>& giveUp) {
    hold(dialog);
    m_polls = polls;
    m_giveUp = giveUp;
    step(dialog, ++m_chain);
}

void PollDriver::step(CalibrationProgressDlg& dialog, int chain) {
    QTimer::singleShot(0, &dialog, [this, &dialog, chain] {
        if (chain != m_chain || QApplication::activeModalWidget() != &dialog) {
            return; // goes on when the dialog is on top again
        }
        if (!CalibrationProgressProbe::timer(dialog).isActive() || m_polls == 0) {
            m_giveUp();
            return;
        }
        --m_polls;
        const QPointer<QDialog> alive(&dialog);
        dialog.update_cal_status();
        if (!alive.isNull()) {
            step(dialog, chain);
        }
    });
}

bool isProcedureOver(bool runs, const Lines& journal, const Case& fault) {
    int operation = -1;
    for (const std::string& line : journal) {
        if (line.rfind("log ", 0) == 0) {
            runs = runs && line.find("calibration finished") == std::string::npos;
            continue;
        }
        ++operation;
        if (line == startCommand) {
            runs = !fault.isFaulty(operation);
        } else if (line == "send kestrel2 cal measurementtool stop" ||
                   line == "send kestrel2 get status err") {
            runs = false;
        }
    }
    return !runs;
}

CalibrationPlayer::CalibrationPlayer(const CalibrationFlow& flow)
    : m_flow(flow) {}

void CalibrationPlayer::prepare() {
    if (!m_rig || m_flow.ownerDies() || m_fault.operation == 0) {
        if (m_module) {
            m_module->exit_module();
        }
        m_rig = std::make_unique<CalibrationRig>();
    }
    if (m_flow.way == Way::ModuleExits) {
        m_module = std::make_unique<MeasurementToolModule>();
        m_module->set_param("CommandManager", QVariant::fromValue<IOManager*>(&m_rig->host));
        m_module->set_param("ModuleParent", QVariant::fromValue(m_rig->window.data()));
        m_module->set_param("BackendVersions", QVariant::fromValue(&m_rig->versions));
        delete m_rig->dialog.data();
        m_rig->dialog = qobject_cast<MtCalibrationDlg*>(m_module->get_gui_elements()[1]->content);
    }
    m_results = 0;
    m_saidAtDeath = 0;
    m_injected = false;
    script();
    answerDialogs();
}

// A procedure that needs every operation: pause, two steps, progress, result. One that ends early
// comes there with its first poll.
void CalibrationPlayer::script() {
    ScriptedHost& host = m_rig->host;
    host.clearFault();
    scriptCalibration(host);
    host.answer("cal number_of_steps measurementtool", "2");
    host.answer("cal step_pause measurementtool s01", "yes 5");
    host.answerInTurn("status active", {"track", "none", "cal", "cal", "none", "none", "track"});
    host.answerInTurn("status step_progress", {"1 0.5", "2 0.5"});
    switch (m_flow.stage) {
    case Stage::Opening:
        host.answerInTurn("status active", {"none", "track"});
        break;
    case Stage::Refused:
        host.answerInTurn("cal available measurementtool", {"yes", "no"});
        break;
    case Stage::StepCountdown:
        host.answer("cal step_pause measurementtool s01", "no");
        host.answer("status step_progress", "2 0.5");
        break;
    case Stage::Error:
        host.answerInTurn("status active", {"track", "none", "err", "none", "track"});
        break;
    case Stage::Result:
        host.answerInTurn("status active", {"track", "none", "none", "none", "track"});
        break;
    default:
        break;
    }
}

void CalibrationPlayer::answerDialogs() {
    CalibrationRig& rig = *m_rig;
    rig.on("CountdownDialog", [](QWidget* shown) { press(shown, "pushButton_2"); });
    rig.on("MtResultDlgClass", [this](QWidget* shown) {
        ++m_results;
        press(shown, "pushButton_accept");
    });
    for (const char* box : {"messageBox_calibrationError", "messageBox_notAvailable"}) {
        rig.on(box, [](QWidget* shown) { shown->close(); });
    }
    rig.on("CalibrationProgressDialog", [this](QWidget* shown) {
        auto* const progress = qobject_cast<CalibrationProgressDlg*>(shown);
        if (m_flow.isSweptFromProgress()) {
            injectOnce();
        }
        const bool early = m_flow.stage == Stage::Progress;
        m_polls.follow(*progress, early ? 1 : PollDriver::enough, [this, progress, early] {
            early ? endEarly(progress) : progress->reject();
        });
    });
    if (m_flow.stage > Stage::Whole && m_flow.stage != Stage::Progress) {
        rig.on(dialogOf(m_flow.stage), [this](QWidget* shown) {
            m_results += m_flow.stage == Stage::Result ? 1 : 0;
            endEarly(shown);
        });
    }
}

void CalibrationPlayer::endEarly(QWidget* topmost) {
    switch (m_flow.way) {
    case Way::Cancel:
        m_flow.stage == Stage::Result ? press(topmost, "pushButton_cancel")
                                      : qobject_cast<QDialog*>(topmost)->reject();
        return;
    case Way::Escape:
        QTest::keyClick(topmost, Qt::Key_Escape);
        return;
    case Way::Close:
        m_rig->dialog->close();
        return;
    case Way::ParentDies:
        delete m_rig->window.data();
        break;
    case Way::ModuleExits:
        m_module->exit_module();
        break;
    }
    m_saidAtDeath = m_rig->host.journal().size();
}

void CalibrationPlayer::calibrate() {
    // Also when the checks have disabled the button: a slot can be reached in other ways.
    const QPointer<MtCalibrationDlg> alive = m_rig->dialog;
    QMetaObject::invokeMethod(alive, "on_pushButton_calibrate_clicked", Qt::DirectConnection);
    if (!alive.isNull() && QApplication::activeModalWidget() == alive) {
        m_rig->click("pushButton_exit");
    }
}

void CalibrationPlayer::injectOnce() {
    if (!m_injected) {
        m_injected = true;
        m_fault.inject(m_rig->host);
    }
}

Outcome CalibrationPlayer::play(const Case& fault) {
    m_fault = fault;
    prepare();
    if (m_flow.isSweptFromOpening()) {
        injectOnce();
    }
    const int result = m_rig->open({[this] {
        if (m_flow.stage == Stage::Opening) {
            m_flow.way == Way::Cancel ? m_rig->click("pushButton_exit") : endEarly(m_rig->dialog);
            return;
        }
        if (!m_flow.isSweptFromProgress()) {
            injectOnce();
        }
        calibrate();
    }});
    Outcome outcome;
    outcome.journal = m_rig->host.journal();
    outcome.objection =
        result == 0 ? objectionTo(outcome.journal) : QStringLiteral("result %1").arg(result);
    return outcome;
}

QString CalibrationPlayer::objectionTo(const Lines& journal) const {
    const MtCalibrationDlg* const dialog = m_rig->dialog;
    if (QApplication::activeModalWidget() != nullptr) {
        return QStringLiteral("a dialog is still open");
    }
    const bool dead = m_saidAtDeath > 0;
    if (dead) {
        return dialog != nullptr                 ? QStringLiteral("lives on")
               : m_saidAtDeath != journal.size() ? QStringLiteral("talks on")
                                                 : QString();
    }
    if (dialog->isVisible() || MtCalibrationProbe::timer(*m_rig->dialog).isActive()) {
        return QStringLiteral("still open");
    }
    if (!dialog->findChildren<QDialog*>().isEmpty()) {
        return QStringLiteral("a dialog is left over");
    }
    const auto finished = logged(journal, "Measurement Tool calibration finished");
    const bool runs = m_flow.isSweptFromProgress(); // already
    if (logged(journal, "Measurement Tool calibration started") + (runs ? 1 : 0) !=
        finished + logged(journal, "Measurement Tool calibration aborted")) {
        return QStringLiteral("started, but neither finished nor aborted");
    }
    if (m_results != finished) {
        return QStringLiteral("%1 results").arg(m_results);
    }
    const bool accepts = m_flow.stage != Stage::Result;
    if (countOf(journal, "send kestrel2 measurementtool accept_new_calibration") !=
        (accepts ? finished : 0)) {
        return QStringLiteral("acceptance");
    }
    if (!isProcedureOver(runs, journal, m_fault)) {
        return QStringLiteral("the procedure runs on");
    }
    const Lines operations = m_rig->host.operations();
    return operations.back() == "get_string status active" ||
                   operations.back() == "send kestrel2 tracking stop"
               ? QString()
               : QStringLiteral("tracking was not looked at");
}

Outcome TwoStepFlow::play(const Case& fault) const {
    ProgressRig rig;
    rig.twoStep = true;
    const Lines well = {"pause 1", "cal 1", "pause 2", "cal 2", "none"};
    scriptTwoStepProcedure(rig.host, givesUp    ? Lines{"cal 1"}
                                     : endsWell ? well
                                                : Lines{"cal 1", "err"});
    rig.host.answer("status active", "track");
    rig.prepare = &PollDriver::hold;
    rig.answerBoxes();
    int countdowns = 0;
    bool pauseCancelled = false;
    rig.dog.on("CountdownDialog", [&](QWidget* shown) {
        const bool cancels = ++countdowns == cancelled;
        pauseCancelled = pauseCancelled || (cancels && wasStarted(rig.host.journal(), fault));
        press(shown, cancels ? "pushButton" : "pushButton_2");
    });
    PollDriver driver;
    rig.whenShown([&](CalibrationProgressDlg& dialog) {
        driver.follow(dialog, givesUp ? 2 : PollDriver::enough, [&dialog] { dialog.reject(); });
    });

    fault.inject(rig.host);
    const int result = rig.run();
    Outcome outcome;
    outcome.journal = rig.host.journal();
    const bool accepted = result == QDialog::Accepted;
    if (QApplication::activeModalWidget() != nullptr) {
        outcome.objection = QStringLiteral("a dialog is still open");
    } else if (fault.isSound() && accepted != (endsWell && cancelled == 0 && !givesUp)) {
        outcome.objection = QStringLiteral("result %1").arg(result);
    } else if (accepted && outcome.journal.back() != "get_string status step_active" &&
               outcome.journal.back() != "get_string status active") {
        outcome.objection = QStringLiteral("accepted before its end");
    } else if (!accepted && !pauseCancelled && !isProcedureOver(false, outcome.journal, fault)) {
        outcome.objection = QStringLiteral("the procedure runs on");
    } else if (rig.timerActiveAtEnd && !pauseCancelled && wasStarted(outcome.journal, fault)) {
        outcome.objection = QStringLiteral("polls on");
    }
    return outcome;
}
