#pragma once

#include "SourceFiles/measurementtoolmodule.h"
#include "tests/SourceFiles/calibration/calibrationrig.h"
#include "tests/support/faultsweep.h"

#include <functional>
#include <memory>

/// Something that a user does with the calibration dialog.
struct CalibrationFlow {
    /// Where it ends early: the dialog that is on top then. `Whole` is accepted, `Opening` closes
    /// the dialog without a calibration.
    enum class Stage {
        Opening,
        Whole,
        Refused,
        FirstCountdown,
        Progress,
        StepCountdown,
        Error,
        Result
    };
    /// How it ends there: with the topmost dialog's Cancel, its Escape key, by closing the
    /// calibration dialog under it, or with the owner of that.
    enum class Way { Cancel, Escape, Close, ParentDies, ModuleExits };

    Stage stage = Stage::Whole;
    Way way = Way::Cancel;

    bool ownerDies() const { return way == Way::ParentDies || way == Way::ModuleExits; }

    /// An early end is swept from the click on or, when it comes during the procedure, from the
    /// moment in which the progress is shown. The way there is swept in the whole flow.
    bool isSweptFromOpening() const { return stage <= Stage::Whole; }
    bool isSweptFromProgress() const { return stage > Stage::Progress || way == Way::ModuleExits; }
};

/// Shows the polls of a progress dialog to a test, one after the other and without waiting, for as
/// long as the dialog is on top. When it has stopped polling, or after so many polls, `giveUp` is
/// called: a user waits no longer.
class PollDriver {
public:
    /// So many polls show every state of a procedure that goes well.
    static constexpr int enough = 6;

    /// No poll comes by itself any more.
    static void hold(CalibrationProgressDlg& dialog);

    void follow(CalibrationProgressDlg& dialog, int polls, const std::function<void()>& giveUp);

private:
    void step(CalibrationProgressDlg& dialog, int chain);

    std::function<void()> m_giveUp;
    int m_polls = 0;
    int m_chain = 0; ///< the one that goes on; others have been overtaken
};

/// What a journal says about a procedure that `runs` at its beginning: true when it does not run,
/// was never started, has ended or was told to stop.
bool isProcedureOver(bool runs, const Lines& journal, const faultsweep::Case& fault);

/// Plays a flow: the dialog is opened, used and closed.
class CalibrationPlayer {
public:
    explicit CalibrationPlayer(const CalibrationFlow& flow);

    faultsweep::Outcome play(const faultsweep::Case& fault);

private:
    void prepare();
    void script();
    void answerDialogs();
    void calibrate();
    void endEarly(QWidget* topmost);
    void injectOnce();
    QString objectionTo(const Lines& journal) const;

    CalibrationFlow m_flow;
    std::unique_ptr<MeasurementToolModule> m_module;
    std::unique_ptr<CalibrationRig> m_rig;
    PollDriver m_polls;
    faultsweep::Case m_fault;
    bool m_injected = false;
    std::size_t m_saidAtDeath = 0; ///< lines of the journal when the owner had died
    int m_results = 0;             ///< shown
};

/// A two-step procedure that is followed with its pauses, from its description to its end. The
/// plug-in itself does not ask for that mode. It ends its dialog and stops polling; only a pause
/// that the user cancels sends no stop and leaves the timer to the end of the dialog, as a start
/// that fails does.
struct TwoStepFlow {
    int cancelled = 0;    ///< the countdown that is cancelled, 1 to 3
    bool givesUp = false; ///< the progress is cancelled at its second poll
    bool endsWell = true; ///< the controller reports no error

    faultsweep::Outcome play(const faultsweep::Case& fault) const;
};
