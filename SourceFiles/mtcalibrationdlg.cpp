#include "SourceFiles/mtcalibrationdlg.h"

#include "SourceFiles/mthelpdlg.h"
#include "SourceFiles/mtresultdlg.h"
#include "general/CalibrationProgressDlg.h"
#include "general/host/bodytexts.h"
#include "general/host/hostlink.h"
#include "general/widgets/dpiscaling.h"
#include "general/widgets/growtofit.h"
#include "general/widgets/modalrun.h"
#include "general/widgets/widgetending.h"
#include "host_api/iomanager.h"

#include <QEvent>
#include <QMessageBox>

#include <algorithm>

using hostlink::Reply;

namespace {

constexpr int pictureMs = 300;

} // namespace

MtCalibrationDlg::MtCalibrationDlg(IOManager* host, QWidget* parent, BackendVersions* versions)
    : QDialog(parent)
    , iom(host)
    , beVers(versions, iom)
    , animate_timer(new QTimer)
    , m_parent(parent) {
    new WidgetEnding(this, [this] { iom.hangUp(); });
    ui.setupUi(this);
    scaleFormToDpi(*this);
    ui.label_fixedTip->setText(tr("as shown in the picture with <b>fixed tip!</b>"));
    m_icon_lock.addFile(QStringLiteral(":/lock.png"));
    animate_timer->setInterval(pictureMs);
    connect(animate_timer, &QTimer::timeout, this, &MtCalibrationDlg::update_image);
    m_images = {QPixmap(QStringLiteral(":/image1.png")), QPixmap(QStringLiteral(":/image2.png")),
                QPixmap(QStringLiteral(":/image3.png")), QPixmap(QStringLiteral(":/image4.png"))};
    for (QPixmap& image : m_images) {
        image = scaledToDpi(image, *this);
    }
}

MtCalibrationDlg::~MtCalibrationDlg() {
    delete animate_timer;
}

int MtCalibrationDlg::set_ascii_data(const char*, const char*) {
    return 0;
}

void MtCalibrationDlg::set_mea_started() {}

void MtCalibrationDlg::set_mea_stopped() {}

int MtCalibrationDlg::update_and_exec() {
    if (m_open) {
        raise();
        activateWindow();
        return 0;
    }
    const QPointer<QDialog> self = this;
    m_open = true;
    onShowDlg();
    const int result = runModally(*this, iom);
    if (self.isNull()) {
        return result;
    }
    m_open = false;
    if (isVisible()) {
        on_pushButton_exit_clicked(); // the application quits: nobody has closed the dialog
    }
    return result;
}

void MtCalibrationDlg::update_image() {
    const int phase = m_counter % 4;
    if (phase >= 0) {
        ui.label_picMesstaster->setPixmap(m_images.at(static_cast<std::size_t>(phase)));
    }
    m_counter = phase == 0 ? 1 : m_counter + 1;
}

void MtCalibrationDlg::onShowDlg() {
    animate_timer->start();
    m_is_config_locked = is_config_locked();
    if (!isMtAvailable()) {
        enableDialog(false, QString());
    } else if (!isTrackingAvailable()) {
        enableDialog(false, QStringLiteral("Tracking is not available!"));
    } else if (!is_any_mttool_defined()) {
        enableDialog(false, QStringLiteral("No Measurement Tool is defined!"));
    } else if (!is_any_mttool_calibrated()) {
        enableDialog(false, QStringLiteral("No Measurement Tool is calibrated!"));
    } else {
        enableDialog(true, QString());
        activateCalibrateButton();
        try_start_tracking();
    }
}

void MtCalibrationDlg::onHideDlg() {
    animate_timer->stop();
    try_stop_tracking();
}

void MtCalibrationDlg::enableDialog(bool enable, QString reason) {
    if (m_is_config_locked) {
        setWindowIcon(m_icon_lock);
        ui.pushButton_calibrate->setEnabled(false);
    } else {
        setWindowIcon(m_parent.isNull() ? QIcon() : m_parent->windowIcon());
    }
    if (enable) {
        ui.label_error->clear();
        ui.label_error->hide();
    } else if (reason == QLatin1String("Tracking is not available!")) {
        showError(tr("Tracking is not available!"));
    } else if (reason == QLatin1String("No Measurement Tool is defined!")) {
        showError(tr("No Measurement Tool is defined!"));
    } else if (reason == QLatin1String("No Measurement Tool is calibrated!")) {
        showError(tr("No Measurement Tool is calibrated!"));
    } else {
        showError(tr("Measurement Tool is not available!"));
    }
    if (!m_is_config_locked) {
        ui.pushButton_calibrate->setEnabled(enable);
    }
}

void MtCalibrationDlg::showError(const QString& text) {
    ui.label_error->setText(bodytexts::redMessage(text));
    ui.label_error->show();
}

void MtCalibrationDlg::activateCalibrateButton() {
    int count = 0;
    if (!readToolCount(count)) {
        return;
    }
    Reply available;
    if (iom->get_parameter_string(available.buffer(), "cal available measurementtool") != 0) {
        hostlink::log(iom, QStringLiteral("Error: Unable to get info calibration for Measurement "
                                          "Tool is available"));
        return;
    }
    if (count <= 0) {
        ui.pushButton_calibrate->setEnabled(false);
    } else if (!available.is("yes")) {
        showError(tr("Calibration Measurement Tool is not available!"));
        ui.pushButton_calibrate->setEnabled(false);
    } else if (!m_is_config_locked) {
        ui.pushButton_calibrate->setEnabled(true);
    }
}

bool MtCalibrationDlg::isMtAvailable() {
    return hostlink::isMtAvailable(iom, beVers);
}

bool MtCalibrationDlg::isTrackingAvailable() {
    return hostlink::isTrackingAvailable(iom, beVers);
}

bool MtCalibrationDlg::is_config_locked() {
    return hostlink::isConfigLocked(iom, beVers);
}

bool MtCalibrationDlg::is_any_mttool_defined() {
    int count = 0;
    return readToolCount(count) && count > 0;
}

bool MtCalibrationDlg::is_any_mttool_calibrated() {
    int count = 0;
    if (!readToolCount(count)) {
        return false;
    }
    for (int tool = 1; tool <= std::min(count, hostlink::mostBodies); ++tool) {
        Reply reply;
        if (iom->get_parameter_string(reply.buffer(), "body calibrated measurementtool b%02d",
                                      tool) != 0) {
            hostlink::log(
                iom, QStringLiteral("Error: Unable to get calibration info for Measurement Tool"));
            return false;
        }
        if (reply.is("yes")) {
            return true;
        }
    }
    return false;
}

bool MtCalibrationDlg::readToolCount(int& count) {
    count = 0;
    if (iom->get_parameter_int(&count, "measurementtool number_of_tools") != 0) {
        hostlink::log(iom, QStringLiteral("Error: Unable to get number of mea tools"));
        return false;
    }
    return true;
}

void MtCalibrationDlg::try_start_tracking() {
    Reply reply;
    if (iom->get_parameter_string(reply.buffer(), "status active") == 0 &&
        (reply.is("none") || reply.is("err"))) {
        iom->send_command(reply.buffer(), "kestrel2 tracking start");
    }
}

void MtCalibrationDlg::try_stop_tracking() {
    Reply reply;
    if (iom->get_parameter_string(reply.buffer(), "status active") == 0 && !reply.is("none") &&
        !reply.is("err")) {
        iom->send_command(reply.buffer(), "kestrel2 tracking stop");
    }
}

void MtCalibrationDlg::on_pushButton_exit_clicked() {
    m_closed = true;
    Q_EMIT aboutToClose();
    onHideDlg();
    done(0);
}

void MtCalibrationDlg::reject() {
    on_pushButton_exit_clicked();
}

void MtCalibrationDlg::on_pushButton_help_clicked() {
    runAlone(&MtCalibrationDlg::help);
}

void MtCalibrationDlg::on_pushButton_calibrate_clicked() {
    runAlone(&MtCalibrationDlg::calibrate);
}

void MtCalibrationDlg::runAlone(void (MtCalibrationDlg::*inner)()) {
    if (m_innerOpen) {
        return;
    }
    const QPointer<QDialog> self = this;
    m_innerOpen = true;
    m_closed = false;
    (this->*inner)();
    if (!self.isNull()) {
        m_innerOpen = false;
    }
}

void MtCalibrationDlg::help() {
    const ModalRun<MtHelpDlg> dialog(this);
    dialog.endWith(this, &MtCalibrationDlg::aboutToClose);
    dialog.run(iom);
}

void MtCalibrationDlg::calibrate() {
    Reply available;
    if (iom->get_parameter_string(available.buffer(), "cal available measurementtool") != 0) {
        hostlink::log(iom, QStringLiteral("Error: Calibration mea tool"));
    } else if (available.is("no")) {
        refuse();
    } else {
        hostlink::log(iom, QStringLiteral("Measurement Tool calibration started"));
        runProcedure();
    }
}

void MtCalibrationDlg::refuse() {
    const ModalRun<QMessageBox> box(QMessageBox::Critical, tr("Measurement Tool Calibration"),
                                    tr("Measurement Tool calibration is not available"),
                                    QMessageBox::Ok, this);
    // No QStringLiteral: who keeps the name may live longer than the library.
    box->setObjectName(QLatin1String("messageBox_notAvailable"));
    box.endWith(this, &MtCalibrationDlg::aboutToClose);
    box.run(iom);
}

void MtCalibrationDlg::runProcedure() {
    const QPointer<QDialog> self = this;
    const ModalRun<CalibrationProgressDlg> procedure(iom, this, beVers, false, true);
    procedure.endWith(this, &MtCalibrationDlg::aboutToClose);
    const bool completed = procedure->update_and_execute("measurementtool") != 0;
    if (self.isNull()) {
        return;
    }
    hostlink::log(iom, completed ? QStringLiteral("Measurement Tool calibration finished")
                                 : QStringLiteral("Measurement Tool calibration aborted"));
    if (m_closed) {
        return;
    }
    if (completed) {
        showResult();
    } else {
        try_start_tracking();
    }
}

void MtCalibrationDlg::showResult() {
    const QPointer<QDialog> self = this;
    const ModalRun<MtResultDlg> result(iom, this);
    result.endWith(this, &MtCalibrationDlg::aboutToClose);
    result->update_and_exec();
    if (!self.isNull() && !m_closed) {
        try_start_tracking(); // the result dialog outlives this
    }
}

bool MtCalibrationDlg::event(QEvent* event) {
    const bool handled = QDialog::event(event);
    if (event->type() == QEvent::Show || event->type() == QEvent::LayoutRequest) {
        growToFit(*this);
    }
    return handled;
}
