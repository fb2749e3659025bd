#pragma once

#include "SourceFiles/mtcalibrationdlg.h"
#include "tests/general/progressrig.h"

#include <QPointer>

struct MtCalibrationProbe {
    static QTimer& timer(MtCalibrationDlg& dialog) { return *dialog.animate_timer; }
    static void setCounter(MtCalibrationDlg& dialog, int value) { dialog.m_counter = value; }
    static int counter(const MtCalibrationDlg& dialog) { return dialog.m_counter; }
};

/// A controller on which everything is ready for a tip calibration: two tools, of which the second
/// is calibrated, a one-step procedure without pauses and a result. "status active" is "none" until
/// told otherwise.
void scriptCalibration(ScriptedHost& host);

/// A scripted controller with a calibration dialog in front of it, in a visible host window.
class CalibrationRig {
public:
    CalibrationRig();
    ~CalibrationRig(); ///< fails the test when a dialog had to be closed for it

    /// Opens the dialog. Each time it becomes the active window the next of these actions is run;
    /// when there is none left the dialog is closed.
    int open(const std::vector<std::function<void()>>& actions = {});

    void click(const char* button);

    /// Runs `action` on the dialog of this object name when it appears.
    void on(const char* objectName, const std::function<void(QWidget*)>& action);

    /// The progress dialog's polls follow at once.
    void hurryProgress();

    ScriptedHost host;
    BackendVersions versions;
    QPointer<QWidget> window;
    QPointer<MtCalibrationDlg> dialog;
    ModalWatchdog dog;

    /// What showing the dialog asks when everything is ready, tracking start included.
    static const Lines opening;
};
