#pragma once

#include "general/CalibrationProgressDlg.h"
#include "general/CountdownDlg.h"
#include "host_api/backendversions.h"
#include "tests/support/modalwatchdog.h"
#include "tests/support/scriptedhost.h"

#include <QPair>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <string>
#include <vector>

using Lines = std::vector<std::string>;

struct CountdownProbe {
    static QTimer& timer(CountdownDlg& dialog) { return dialog.my_timer; }
};

struct CalibrationProgressProbe {
    static QTimer& timer(CalibrationProgressDlg& dialog) { return dialog.timer; }
    static bool isCalculating(const CalibrationProgressDlg& dialog) { return dialog.bCalculating; }
    static int step(const CalibrationProgressDlg& dialog) { return dialog.m_iCurrStep; }
    static void setSecondPause(CalibrationProgressDlg& dialog, unsigned seconds) {
        dialog.uiCalPause2 = seconds;
    }
    static int polls() { return CalibrationProgressDlg::iCount; }
    static void forgetProgress() {
        CalibrationProgressDlg::progress = 0.0;
        CalibrationProgressDlg::step_prog = 0.0;
    }
};

/// The polls of a progress dialog follow each other at once.
void hurry(CalibrationProgressDlg& dialog);

/// A controller that is ready to run a calibration of this number of steps without pauses; "status
/// active" is "none" at the start and from then on what `states` say, the last one for ever.
void scriptProcedure(ScriptedHost& host, int steps, const Lines& states);

/// The same for a two-step calibration with a pause of 3 s before step 1 and 4 s before step 2,
/// followed by "status step_active".
void scriptTwoStepProcedure(ScriptedHost& host, const Lines& states);

/// A scripted controller with a calibration progress dialog in front of it.
class ProgressRig {
public:
    ProgressRig();
    ~ProgressRig(); ///< fails the test when a dialog had to be closed for it

    /// Makes a dialog and runs the type "measurementtool" with polls that follow at once.
    int run();

    /// From now on a countdown is ended by this button as soon as it is shown.
    void answerCountdowns(const char* button);
    /// An error box is noted and closed.
    void answerBoxes();
    /// Runs `action` when the progress dialog is shown.
    void whenShown(const std::function<void(CalibrationProgressDlg&)>& action);

    /// The controller operations after the start command.
    Lines afterStart() const;

    ScriptedHost host;
    BackendVersions versions;
    QWidget parent;
    ModalWatchdog dog;
    bool twoStep = false;
    bool remainingTime = true;
    std::function<void(CalibrationProgressDlg&)> prepare; ///< called before the run
    bool timerActiveAtEnd = false;

    QList<int> countdowns; ///< what the countdowns showed when they appeared
    QStringList boxes;     ///< the texts of the error boxes
};
