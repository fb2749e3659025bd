#pragma once

#include "general/host/hostpointer.h"
#include "general/widgets/modalrun.h"
#include "ui_calibrationprogressdlg.h"

#include <QByteArray>
#include <QDialog>
#include <QString>
#include <QTimer>

class BackendVersions;
class CountdownDlg;

/// Runs one calibration procedure of the controller from start to end: describes it, starts it,
/// follows it every 200 ms, counts down the pauses between its steps, reports errors and stops it
/// on cancel. The controller does the work. GUI thread only; one object per run.
///
/// Two ways to follow a procedure (`T` is its type, such as "measurementtool"):
///
/// single-step, by "status active"          two-step, by "status step_active"
///   cal   progress; a new step counts 5 s    cal 1, cal 2  progress
///   none  accept                             pause 1       countdown, go on
///   err   error box, 0                       pause 2       countdown, start step 2
///                                            none          accept
///                                            err           tracking start, stop; error box, 0
///
/// Step 2 starts by "kestrel2 cal T start_step s02".
///
/// Two-step is on when it is asked for and the controller reports two steps with a pause before
/// each. Cancel, Escape and closing send "kestrel2 cal T stop" in every state and give 0.
class CalibrationProgressDlg : public QDialog, private Ui::CalibrationProgressDialog {
    Q_OBJECT

public:
    /// `host` and `versions` stay the host's. The countdowns get the same `parent` as this dialog.
    CalibrationProgressDlg(HostPointer host, QWidget* parent, const BackendVersions* versions,
                           bool twoStepCalibration, bool showRemainingTime);

    /// Starts the procedure of this type and runs the dialog. Non-zero when the procedure ran to
    /// its end; 0 when it could not start, was cancelled or failed, or the dialog has died.
    int update_and_execute(const char* calibrationType);

Q_SIGNALS:
    /// Fractions from 0 to 1 as the controller reports them, on each poll in single-step mode.
    void progress_changed(double overall, double step);

public Q_SLOTS:
    /// Shows a caller's text, unless the controller is already computing the result.
    void show_custom_message(const QString& text);
    void update_cal_status();
    void reject() override;

protected:
    bool event(QEvent* event) override;

private:
    friend struct CalibrationProgressProbe; // lets a test drive the time

    enum class Counted {
        Elapsed,   ///< or started at once
        Cancelled, ///< by the user
        Over,      ///< stopped, the application quits or this object has died: touch nothing
    };
    using Countdown = ModalRun<CountdownDlg>;
    Counted count(const Countdown& pause);

    void readPause();
    void readTwoStepPauses();
    bool readStepPause(int step, unsigned& pause);
    QString stepDescription(int step);
    bool countBeforeStart();
    void describe(QString typeDescription);
    bool startProcedure();
    int run();

    void pollSingleStep();
    void pollTwoStep(const Countdown& pause);
    int showProgress(double (*round)(double));
    void showRemainingTime();
    void followStep(int step);
    void pauseBeforeFirstStep(const Countdown& pause);
    void pauseBeforeSecondStep(const Countdown& pause);
    void finish();
    QString askError();
    void fail(const QString& error);
    void send(const QByteArray& command);

    // What the last poll of any calibration of this program run has read: the next calibration
    // begins with it.
    static double progress;
    static double step_prog;
    static int iCount;

    HostPointer iom;
    VersionsPointer bv;
    QTimer timer;
    QByteArray cal_id;
    int num_steps = 1;
    int m_iCurrStep = 1;
    bool bCalculating = false;
    unsigned uiCalPause1 = 5;
    unsigned uiCalPause2 = 5;
    bool m_bTwoStepCalavailable;
    bool m_bCountDown = true;
    bool m_bShowRemainingTime;
    bool m_counting = false;  ///< a countdown of a poll is open
    bool m_cancelled = false; ///< the procedure was told to stop
};
