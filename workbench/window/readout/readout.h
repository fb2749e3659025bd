#pragma once

#include "KestrelAngles.h"

#include <array>
#include <optional>

namespace workbench {

struct TrackedFrame;

/// What is known at the moment at which a read-out is refreshed.
struct ReadoutNews {
    double now = 0.0; ///< seconds of a clock that never stands still
    bool isConnected = false;
    bool isMeasuring = false;
    bool isOld = false;                  ///< it measures, but its data have stopped to come
    bool isReplay = false;               ///< what comes was recorded
    const TrackedFrame* frame = nullptr; ///< the latest one of this measurement, if there is one
    double frameCame = 0.0;              ///< on the same clock
    std::optional<bool> isCalibrated;    ///< the chosen tool; nothing: not known yet
    std::optional<int> reference;        ///< its reference's number, 0: none, nothing: not known
};

/// What a read-out is about.
enum class ReadoutState {
    NotConnected,
    NotMeasuring,
    NoData, ///< none have come yet, or what they mean is not known yet
    NoTool, ///< the data have no such tool
    NotCalibrated,
    Live,
    Hidden, ///< the tool cannot be seen
    Old
};
constexpr int readoutStates = 8;

/// What is to be shown.
struct ReadoutView {
    struct Figures {
        std::array<double, 3> position{}; ///< mm
        KestrelSDK_Angles::RotationAngles angles;
        double measured = 0.0; ///< when, in seconds
    };
    enum class Sight { Unknown, Seen, Hidden };

    int tool = 1;
    ReadoutState state = ReadoutState::NotConnected;
    bool isReplay = false;
    bool isFrozen = false;
    std::optional<Figures> figures; ///< of this tool, this measurement; live in one state alone
    double age = 0.0;               ///< of the figures, seconds
    std::optional<int> reference;   ///< as in ReadoutNews
    Sight referenceSight = Sight::Unknown;
    int buttonCount = 0; ///< those of the moment: none in other states than Live and Hidden
    unsigned pressedButtons = 0;

    /// Whether the figures are those of this moment.
    bool isLive() const { return state == ReadoutState::Live && !isFrozen; }
};

/// One tool's position in the state in which it is, without widgets. Figures that are not of this
/// moment stay for as long as the measurement lasts, and their age says so; nothing of one tool,
/// controller or measurement shows in the next.
class Readout {
public:
    int tool() const { return m_view.tool; }

    /// A tool by its number, from 1. Ends the freezing.
    void choose(int tool);

    /// Keeps the figures as they are. Without any there is nothing to be kept: then false.
    bool setFrozen(bool isFrozen);

    /// There is another controller. Ends the freezing.
    void forget();

    void update(const ReadoutNews& news);

    const ReadoutView& view() const { return m_view; }

private:
    ReadoutState stateOf(const ReadoutNews& news) const;
    void takeFrame(const ReadoutNews& news);
    void dropFigures();

    ReadoutView m_view;
};

} // namespace workbench
