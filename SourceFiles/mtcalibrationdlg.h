#pragma once

#include "general/host/hostpointer.h"
#include "host_api/requester.h"
#include "ui_mtcalibrationdlg.h"

#include <QDialog>
#include <QIcon>
#include <QPixmap>
#include <QPointer>
#include <QTimer>

#include <array>

class BackendVersions;
class IOManager;

/// The entry of the tip calibration: checks that a calibration can be run, shows how the tool is to
/// be moved, keeps tracking on while it is open, and runs the procedure and its result dialog.
/// Built once, opened by update_and_exec(); closing stops tracking, whoever has started it.
/// GUI thread only, except for the Requester operations, which do nothing.
///
/// At most one inner dialog (help, message, calibration) is open at a time, and none outlives this
/// dialog or its being open.
class MtCalibrationDlg : public QDialog, public Requester {
    Q_OBJECT

public:
    /// `host` and `versions` stay the host's.
    MtCalibrationDlg(IOManager* host, QWidget* parent, BackendVersions* versions);
    ~MtCalibrationDlg() override;

    int set_ascii_data(const char* type, const char* data) override;
    void set_mea_started() override;
    void set_mea_stopped() override;

public Q_SLOTS:
    /// Reads the controller's state and runs the dialog; the result of exec(). While it is open
    /// another call only brings it to the front and returns 0.
    int update_and_exec();
    void reject() override;

Q_SIGNALS:
    void aboutToClose(); ///< what is open inside this dialog has to go

protected:
    bool event(QEvent* event) override;

private Q_SLOTS:
    void on_pushButton_help_clicked();
    void on_pushButton_calibrate_clicked();
    void on_pushButton_exit_clicked();
    void update_image();
    void onShowDlg();
    void onHideDlg();

private:
    friend struct MtCalibrationProbe; // lets a test drive the time

    void enableDialog(bool enable, QString reason);
    void showError(const QString& text);
    void activateCalibrateButton();
    bool isMtAvailable();
    bool isTrackingAvailable();
    bool is_config_locked();
    bool is_any_mttool_defined();
    bool is_any_mttool_calibrated();
    bool readToolCount(int& count);
    void try_start_tracking();
    void try_stop_tracking();

    void runAlone(void (MtCalibrationDlg::*inner)());
    void help();
    void calibrate();
    void runProcedure();
    void showResult();
    void refuse();

    Ui_MtCalibrationDlgClass ui;
    HostPointer iom;
    VersionsPointer beVers;
    QTimer* animate_timer;
    QPointer<QWidget> m_parent;
    int m_counter = 0;
    std::array<QPixmap, 4> m_images;
    bool m_is_config_locked = false;
    QIcon m_icon_lock;
    bool m_open = false;      ///< update_and_exec is running
    bool m_innerOpen = false; ///< an inner dialog is open or about to be
    bool m_closed = false;    ///< closed since the inner dialog was opened
};
