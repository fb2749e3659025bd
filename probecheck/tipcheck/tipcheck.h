#pragma once

#include "libs/kestrel_probe/PivotFit.h"
#include "libs/kestrel_probe/Verdict.h"
#include "probecheck/data/linetap.h"
#include "probecheck/tipcheck/tiltrose.h"

#include <optional>

/// One check of a tool's tip, from the start to the result, without a window: poses in, words to
/// say and a result out. Times are LineTap::now(), in s. GUI thread only.
class TipCheck {
public:
    static constexpr double longestCheck = 120.0;       ///< s; then it ends by itself
    static constexpr double shortestVerdict = 10.0;     ///< s before which no verdict ends it
    static constexpr double verdictStands = 2.0;        ///< s for which a verdict must have stood
    static constexpr double longestHidden = 1.0;        ///< s without a pose before it says so
    static constexpr double longestSilence = 0.5;       ///< s without data before it says so
    static constexpr double mostPosesPerSecond = 250.0; ///< taken; the others tell nothing more
    static constexpr double slipStands = 0.5;           ///< s for which a slip must have been seen

    enum class State {
        Idle,          ///< not begun
        Measuring,     ///< poses come
        Hidden,        ///< the tool has not been seen for a second
        ReferenceLost, ///< its reference is not seen
        Silent,        ///< no data have come for half a second
        Finished       ///< there is a result
    };

    /// Why a check has ended.
    enum class End { Decided, TimeIsUp, Stopped, Slipped, MeasurementStopped };

    /// What a check has come to. Lengths in mm.
    struct Result {
        End end = End::Stopped;
        int tool = 0;
        int reference = -1;
        double tolerance = 0.0;
        /// Empty when the motion does not determine the tip; then there is no number at all.
        std::optional<kestrel_probe::PivotResult> pivot;
        double error = 0.0; ///< length of the tip's error; means nothing without `pivot`
        kestrel_probe::Verdict verdict = kestrel_probe::Verdict::Undecided;
        bool slipped = false; ///< then error and verdict mean nothing
        bool tooFast = false; ///< why there is no number
        double coverage = 0.0;
        std::size_t poses = 0;
        double duration = 0.0;    ///< s
        double hiddenShare = 0.0; ///< of the frames, 0 to 1
        TiltRose::View rose;
    };

    /// Begins anew, whatever was before. A tolerance that is not positive decides nothing.
    void start(int tool, double tolerance, double now);

    /// Ends it with the result of what there is.
    void stop(double now);

    /// The measurement has stopped, or nobody hands data over any more.
    void loseMeasurement(double now);

    /// A sample of any tool; those of others are left alone.
    void take(const ProbeSample& sample);

    /// Time goes on: to be called several times a second, with or without samples.
    void tick(double now);

    State state() const { return m_state; }
    bool isRunning() const { return m_state != State::Idle && m_state != State::Finished; }
    int tool() const { return m_running.tool; }

    /// How it stands: while it runs with what there is so far, afterwards the result.
    const Result& result() const { return m_running; }

private:
    void evaluate(double now);
    void judgePivot(double now);
    void finish(End end, double now);
    State stateAt(double now) const;

    State m_state = State::Idle;
    Result m_running;
    kestrel_probe::PivotFit m_fit;
    TiltRose m_rose;
    double m_begin = 0.0;
    double m_lastPose = 0.0;        ///< arrival of the last usable one
    double m_lastSample = 0.0;      ///< arrival of the last one at all
    double m_lastPoseTime = -1.0;   ///< of ProbeSample::seconds
    bool m_isReferenceLost = false; ///< in the last sample
    std::size_t m_frames = 0;
    std::size_t m_hiddenFrames = 0;
    double m_nextEvaluation = 0.0;
    std::size_t m_evaluatedPoses = 0;
    double m_verdictSince = -1.0; ///< -1: there is none
    double m_slipSince = -1.0;    ///< -1: none is seen
};
