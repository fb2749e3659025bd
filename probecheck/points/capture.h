#pragma once

#include "probecheck/data/linetap.h"
#include "probecheck/points/record/pointrecord.h"

#include <QVector>

#include <array>
#include <functional>
#include <optional>

namespace points {

/// What a capture tells its owner, as it happens.
enum class Notice {
    Begun,            ///< by key or button
    BegunAnew,        ///< the tip has left the tolerance
    Captured,         ///< record() has the point, which is to be kept now
    Kept,             ///< it is on the disk
    NotKept,          ///< it is in memory only
    Cancelled,        ///< by the user
    ToolHidden,       ///< given up
    ReferenceLost,    ///< given up
    ReferenceChanged, ///< given up: the positions before are of other axes
    Silent,           ///< given up: no data for a second
    MeasurementEnded, ///< given up
    OutOfSight,       ///< given up: nobody can see what happens
    NotMeasuring,     ///< refused
    NotCalibrated,    ///< refused: such a tool has no tip
    StillBusy         ///< refused: one thing at a time
};

/// How a point is captured, without widgets and files.
///
///   Off      no measurement runs, or nobody can see what happens
///   Ready    waits for a key or a button or, by holding still, for the first good sample
///   Holding  collects samples; begins anew when the tip leaves the tolerance
///   Keeping  a point is complete and on its way to the disk
///   Leaving  by holding still: waits for the tip to leave the point, so that it is captured once
///
/// A sample that is older than 0.5 s, of a hidden tool or of a lost reference is never part of a
/// point. Samples of other tools than the chosen one change nothing. GUI thread only.
class Capture {
public:
    static constexpr double oldestSample = 0.5; ///< s

    enum class State { Off, Ready, Holding, Keeping, Leaving };
    enum class Mode {
        Trigger,     ///< begins with a key or a button
        HoldingStill ///< begins by itself
    };
    using Tell = std::function<void(Notice)>;

    /// `tell` is called last in each step; it may call back.
    explicit Capture(Tell tell)
        : m_tell(std::move(tell)) {}

    void start();                                     ///< a measurement runs
    void stop(Notice why = Notice::MeasurementEnded); ///< no more, which is told when it holds
    void setMode(Mode mode);                          ///< gives up what is being held
    void setTool(int tool);                           ///< the same, when it is another tool
    void setHold(double duration, double tolerance);  ///< s, mm; the same, when they are others
    void setCalibrated(QVector<bool> tools);

    // `now` is LineTap::now().
    void trigger(double now);           ///< the key
    void trigger(int tool, double now); ///< this tool's button: it becomes the chosen one
    void cancel();                      ///< the user does not want what is being held
    void feed(const ProbeSample& sample, double now);
    void wait(double now);    ///< time goes on, also without samples
    void kept(bool isOnDisk); ///< the answer to Captured

    State state() const { return m_state; }
    Mode mode() const { return m_mode; }
    int tool() const { return m_tool; }
    double duration() const { return m_duration; }
    double tolerance() const { return m_tolerance; }
    double progress() const; ///< 0 to 1

    /// The last captured point, without number and name; UTC is the owner's to fill in.
    const PointRecord& record() const { return m_record; }

    /// Where the chosen tool's tip is now, mm; empty when it is not known or older than 0.5 s.
    std::optional<std::array<double, 3>> position() const { return m_position; }

private:
    void begin();
    void giveUp(Notice notice);
    void drop();
    void hold(const ProbeSample& sample);
    bool isBad(const ProbeSample& sample);

    Tell m_tell;
    State m_state = State::Off;
    Mode m_mode = Mode::Trigger;
    int m_tool = 0;
    double m_duration = 1.0;
    double m_tolerance = 1.5;
    QVector<bool> m_calibrated;
    bool m_isKeeping = false; ///< Captured has no answer yet
    kestrel_probe::PointCapture m_capture;
    std::optional<int> m_reference; ///< of the samples being held
    double m_lastArrival = 0.0;     ///< of the chosen tool's last sample, or of the beginning
    std::optional<std::array<double, 3>> m_position;
    std::array<double, 3> m_left{}; ///< from where the tip has to go away
    PointRecord m_record;
};

} // namespace points
