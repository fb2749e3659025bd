#include "general/CalibrationProgressDlg.h"

#include "general/CountdownDlg.h"
#include "general/host/hostlink.h"
#include "general/host/replyreading.h"
#include "general/widgets/dpiscaling.h"
#include "general/widgets/growtofit.h"
#include "general/widgets/openbeside.h"
#include "host_api/iomanager.h"

#include <QEvent>
#include <QMessageBox>

#include <algorithm>
#include <cmath>
#include <utility>

using hostlink::Reply;
using namespace replyreading;

double CalibrationProgressDlg::progress = 0.0;
double CalibrationProgressDlg::step_prog = 0.0;
int CalibrationProgressDlg::iCount = 0;

namespace {

constexpr int pollMs = 200;
constexpr unsigned defaultPause = 5;
constexpr int stepChangePause = 5;
constexpr int startTimeoutMs = 5000;
constexpr double percent = 100.0;

} // namespace

CalibrationProgressDlg::CalibrationProgressDlg(HostPointer host, QWidget* parent,
                                               const BackendVersions* versions,
                                               bool twoStepCalibration, bool remainingTime)
    : QDialog(parent)
    , iom(std::move(host))
    , bv(versions, iom)
    , uiCalPause1(defaultPause)
    , uiCalPause2(defaultPause)
    , m_bTwoStepCalavailable(twoStepCalibration)
    , m_bShowRemainingTime(remainingTime) {
    setupUi(this);
    scaleFormToDpi(*this);
    timer.setInterval(pollMs);
    connect(&timer, &QTimer::timeout, this, &CalibrationProgressDlg::update_cal_status);
    label_remaining_time->clear();
    // The bars begin at the same place, also when a text needs more than its minimum.
    const int width = std::max({label->minimumWidth(), label->sizeHint().width(),
                                label_progress_step->sizeHint().width()});
    label->setMinimumWidth(width);
    label_progress_step->setMinimumWidth(width);
}

int CalibrationProgressDlg::update_and_execute(const char* calibrationType) {
    cal_id = calibrationType;
    m_bCountDown = true;
    m_cancelled = false;

    Reply reply;
    const QString typeDescription = textOf(
        iom->get_parameter_string(reply.buffer(), "cal type_desc %s", cal_id.constData()), reply);
    int steps = 0;
    if (iom->get_parameter_int(&steps, "cal number_of_steps %s", cal_id.constData()) == 0) {
        num_steps = steps;
    }
    readPause();
    if (num_steps == 2 && m_bTwoStepCalavailable) {
        readTwoStepPauses();
    }
    if (uiCalPause1 != 0 && !countBeforeStart()) {
        return 0;
    }

    label_info->clear();
    describe(typeDescription);
    progressBar_overall->reset();
    progressBar_step->reset();
    bCalculating = false;
    timer.start();
    return startProcedure() ? run() : 0;
}

void CalibrationProgressDlg::readPause() {
    Reply reply;
    const QString pause = textOf(
        iom->get_parameter_string(reply.buffer(), "cal step_pause %s s%02d", cal_id.constData(), 1),
        reply);
    // A float, for the controller may write "5.0". Only the first three characters decide.
    uiCalPause1 = pause.startsWith(QLatin1String("yes"))
                      ? static_cast<unsigned>(toInt(wordOf(pause, 1).toFloat()))
                      : 0;
}

void CalibrationProgressDlg::readTwoStepPauses() {
    if (!readStepPause(1, uiCalPause1) || !readStepPause(2, uiCalPause2)) {
        num_steps = 1;
    }
}

bool CalibrationProgressDlg::readStepPause(int step, unsigned& pause) {
    const QString command =
        QString::asprintf("kestrel2 get cal step_pause %s s%02d", cal_id.constData(), step);
    Reply reply;
    const QString answer =
        textOf(iom->send_command(reply.buffer(), command.toUtf8().constData()), reply);
    if (wordOf(answer, 6) != QLatin1String("yes")) {
        return false;
    }
    pause = static_cast<unsigned>(wordOf(answer, 7).toInt());
    if (pause == 0) {
        pause = defaultPause;
    }
    return true;
}

QString CalibrationProgressDlg::stepDescription(int step) {
    Reply reply;
    return textOf(iom->get_parameter_string(reply.buffer(), "cal step_desc %s s%02d",
                                            cal_id.constData(), step),
                  reply)
        .remove(QLatin1Char('"'));
}

bool CalibrationProgressDlg::countBeforeStart() {
    const Countdown pause(parentWidget());
    pause->setMessage(QString(), static_cast<int>(uiCalPause1));
    return count(pause) == Counted::Elapsed;
}

void CalibrationProgressDlg::describe(QString typeDescription) {
    typeDescription.remove(QLatin1Char('"'));
    if (num_steps == 1) {
        progressBar_step->hide();
        label->hide();
        label_progress_step->hide();
    } else {
        typeDescription += tr(" is a %1 step calibration.").arg(num_steps);
    }
    label_desc->setText(typeDescription);
    label_step_desc->setVisible(num_steps == 2);
    if (num_steps == 2) {
        label_step_desc->setText(stepDescription(1));
    }
}

bool CalibrationProgressDlg::startProcedure() {
    Reply reply;
    const QString state = textOf(iom->get_parameter_string(reply.buffer(), "status active"), reply);
    if (state == QLatin1String("wait")) {
        // The poll timer goes on until this object dies, which its caller lets it do at once.
        hostlink::log(iom, QStringLiteral("cannot start calibration, waiting for sync signal"));
        return false;
    }
    if (state != QLatin1String("none") && state != QLatin1String("err")) {
        send("kestrel2 tracking stop");
    }
    iom->set_channel_option(0, startTimeoutMs, 0);
    const QByteArray start = "kestrel2 cal " + cal_id + " start";
    return iom->send_command(reply.buffer(), start.constData()) == 0 && reply.is(hostlink::ok);
}

int CalibrationProgressDlg::run() {
    const QPointer<QDialog> self = this;
    const int result = runModally(*this, iom);
    if (self.isNull()) {
        return 0;
    }
    if (isVisible()) {
        reject(); // the application quits: nobody has closed the dialog
    }
    return result;
}

void CalibrationProgressDlg::show_custom_message(const QString& text) {
    if (!bCalculating) {
        label_info->setText(text);
    }
}

void CalibrationProgressDlg::update_cal_status() {
    const Countdown pause(parentWidget());
    pause->setMessage(QString(), static_cast<int>(uiCalPause2));
    if (num_steps == 1 || !m_bTwoStepCalavailable) {
        pollSingleStep();
    } else {
        pollTwoStep(pause);
    }
}

void CalibrationProgressDlg::pollSingleStep() {
    Reply reply;
    const QString state = textOf(iom->get_parameter_string(reply.buffer(), "status active"), reply);
    if (state == QLatin1String("none")) {
        finish();
    } else if (state == QLatin1String("err")) {
        timer.stop();
        fail(askError());
    } else if (state == QLatin1String("cal")) {
        const int step = showProgress(std::floor);
        Q_EMIT progress_changed(progress, step_prog);
        showRemainingTime();
        followStep(step);
    }
}

void CalibrationProgressDlg::pollTwoStep(const Countdown& pause) {
    Reply reply;
    const QString state =
        textOf(iom->get_parameter_string(reply.buffer(), "status step_active"), reply);
    if (state == QLatin1String("cal 1") || state == QLatin1String("cal 2")) {
        showProgress(std::trunc);
        showRemainingTime();
        ++iCount;
    } else if (state == QLatin1String("pause 1")) {
        pauseBeforeFirstStep(pause);
    } else if (state == QLatin1String("pause 2")) {
        pauseBeforeSecondStep(pause);
    } else if (state == QLatin1String("none")) {
        finish();
    } else if (state == QLatin1String("err")) {
        timer.stop();
        const QString error = askError();
        send("kestrel2 tracking start");
        send("kestrel2 tracking stop");
        fail(error);
    }
}

int CalibrationProgressDlg::showProgress(double (*round)(double)) {
    double overall = 0.0;
    if (iom->get_parameter_double(&overall, "status progress") == 0) {
        progress = overall;
    }
    progressBar_overall->setValue(toInt(round(progress * percent)));

    Reply reply;
    int step = 0;
    readStepProgress(
        textOf(iom->get_parameter_string(reply.buffer(), "status step_progress"), reply), step,
        step_prog);
    progressBar_step->setValue(toInt(round(step_prog * percent)));
    return step;
}

void CalibrationProgressDlg::showRemainingTime() {
    if (!m_bShowRemainingTime || !hostlink::protocolPasses(bv, 1, 4)) {
        return;
    }
    Reply reply;
    double duration = 0.0;
    readDouble(textOf(iom->get_parameter_string(reply.buffer(), "cal step_duration %s s%02d",
                                                cal_id.constData(), m_iCurrStep),
                      reply),
               duration);
    label_remaining_time->setText(
        tr("remaining time: %1 seconds").arg(toInt((1.0 - step_prog) * duration)));
}

void CalibrationProgressDlg::followStep(int step) {
    if (step == 1) {
        if (!bCalculating && toInt(std::floor(progress * percent)) == 100) {
            bCalculating = true;
            label_info->setText(tr("calculating..."));
        }
    } else if (step > m_iCurrStep) {
        m_iCurrStep = step;
        label_step_desc->setText(stepDescription(step));
        const Countdown pause(parentWidget());
        pause->setMessage(QString(), stepChangePause);
        if (timer.isActive()) {
            // Polling goes on during this countdown. A timer does not fire while its own slot
            // runs; one that was started anew does.
            timer.start();
        }
        if (count(pause) == Counted::Cancelled) {
            timer.stop();
        }
    }
}

CalibrationProgressDlg::Counted CalibrationProgressDlg::count(const Countdown& pause) {
    if (m_counting || m_cancelled) {
        return Counted::Over; // one countdown at a time, and none after a stop
    }
    const QPointer<QDialog> self = this;
    pause.endWith(this, &QDialog::finished);
    m_counting = true;
    const int result = pause.run(iom);
    if (self.isNull()) {
        return Counted::Over;
    }
    m_counting = false;
    const bool quits = pause.operator->() != nullptr && pause->isVisible();
    if (m_cancelled || quits) {
        return Counted::Over; // when the application quits, run() stops the procedure
    }
    return result != 0 ? Counted::Elapsed : Counted::Cancelled;
}

void CalibrationProgressDlg::pauseBeforeFirstStep(const Countdown& pause) {
    timer.stop();
    pause->setMessage(QString(), static_cast<int>(uiCalPause1));
    const Counted counted = count(pause);
    if (counted == Counted::Over) {
        return;
    }
    if (counted == Counted::Cancelled) {
        done(Rejected);
    }
    bCalculating = false;
    timer.start();
}

void CalibrationProgressDlg::pauseBeforeSecondStep(const Countdown& pause) {
    timer.stop();
    m_iCurrStep = 2;
    label_step_desc->setText(stepDescription(2));
    if (uiCalPause2 == 0 || !m_bCountDown) {
        return;
    }
    const Counted counted = count(pause);
    if (counted == Counted::Over) {
        return;
    }
    if (counted == Counted::Cancelled) {
        timer.stop();
        done(Rejected);
    }
    // Also after a cancelled countdown: the controller gets out of its pause.
    m_bCountDown = false;
    send("kestrel2 cal " + cal_id + " start_step s02");
    timer.start();
}

void CalibrationProgressDlg::finish() {
    timer.stop();
    accept();
}

QString CalibrationProgressDlg::askError() {
    // Whatever the result: a host may tell of the error by its number as well.
    Reply reply;
    iom->send_command(reply.buffer(), "kestrel2 get status err");
    return reply.toString().section(QLatin1Char('"'), 1, 1);
}

void CalibrationProgressDlg::fail(const QString& error) {
    if (m_cancelled) {
        return; // stopped while it asked
    }
    const QPointer<QDialog> self = this;
    const ModalRun<QMessageBox> box(QMessageBox::Critical, tr("Calibration Error"),
                                    tr(error.toUtf8().constData()), QMessageBox::Ok, this);
    // No QStringLiteral: who keeps the name may live longer than the library.
    box->setObjectName(QLatin1String("messageBox_calibrationError"));
    box->setTextFormat(Qt::PlainText);
    box.endWith(this, &QDialog::finished);
    box.run(iom);
    if (!self.isNull() && !m_cancelled) {
        done(Rejected);
    }
}

void CalibrationProgressDlg::reject() {
    timer.stop();
    m_cancelled = true;
    send("kestrel2 cal " + cal_id + " stop");
    done(Rejected);
}

void CalibrationProgressDlg::send(const QByteArray& command) {
    Reply ignored;
    iom->send_command(ignored.buffer(), command.constData());
}

bool CalibrationProgressDlg::event(QEvent* event) {
    const bool handled = QDialog::event(event);
    if (event->type() == QEvent::Show || event->type() == QEvent::LayoutRequest) {
        growToFit(*this);
    }
    if (event->type() == QEvent::Show && !event->spontaneous()) {
        openBeside(*this); // the caller's picture shows what is to be done meanwhile
    }
    return handled;
}
