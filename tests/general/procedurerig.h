#pragma once

#include "tests/general/progressrig.h"

#include <QPointer>

#include <deque>
#include <memory>

/// One calibration of two steps that is led by hand to a place and meets an event there: the poll
/// timer does not run out by itself. A place is one letter:
///   S  countdown before the start           1, 2  the step runs, the timer polls
///   C  calculating, the timer polls         H     countdown of a step change, the timer polls
///   P, Q  pause before step 1, 2: countdown, the timer rests
///   R  the timer rests, nobody is asked     E     error box, the timer rests
///   +, -  update_and_execute() has returned non-zero, 0
///   ?  none of these
/// An event that a place cannot have (no countdown is shown, the timer rests) does nothing.
class ProcedureRig {
public:
    enum class Event {
        Cal1, ///< a poll finds this: step 1 runs
        Full, ///< step 1 runs and the overall progress is 100 %
        Cal2, ///< step 2 runs
        Pause1,
        Pause2,
        None,
        Err,
        Other,  ///< a state that means nothing here
        Failed, ///< no state
        CountdownElapsed,
        CountdownStarted, ///< at once, by the user
        CountdownCancelled,
        Cancel, ///< or Escape, or the window's close
        BoxClosed,
        Message, ///< a caller's text
        ParentDies,
        ApplicationQuits
    };

    explicit ProcedureRig(bool twoStep);

    /// The place after the event; it was stable, and `before` was reached.
    QString meet(QChar before, Event event, QChar expected);

    bool pollsAtEnd() const { return m_polls; }              ///< the timer still runs
    bool hasBegun() const { return m_begun; }                ///< `before` was reached
    const Lines& operations() const { return m_operations; } ///< since the event
    const QString& info() const { return m_info; }           ///< label_info after the event

private:
    struct Step {
        QChar at;
        std::function<void()> action;
    };
    QChar place() const;
    QWidget* countdown() const;
    void plan(QChar place);
    void tick();
    void happen(Event event);
    void poll(const char* state, const char* progress, const char* stepProgress);
    void endRun();

    ProgressRig m_rig;
    bool m_twoStep;
    QPointer<QWidget> m_parent;
    QPointer<CalibrationProgressDlg> m_dialog;
    std::deque<Step> m_steps;
    QObject m_clock;
    bool m_begun = false;
    bool m_stable = false;
    bool m_polls = false;
    std::size_t m_before = 0;
    Lines m_operations;
    QString m_info;
};
