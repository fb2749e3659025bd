#pragma once

#include <array>
#include <cstddef>
#include <vector>

/// Into which directions a tool has been tilted around its shaft, for people: sectors seen from
/// above along the middle of its positions, with "right" and "front" fixed in the room.
///
/// A data line does not tell which of the tool's axes is its shaft: it is the one whose directions
/// have spread most to all sides.
class TiltRose {
public:
    static constexpr std::size_t sectors = 12; ///< counter-clockwise, the first around "right"
    static constexpr std::size_t rings = 3;    ///< from the inside
    /// Degrees of tilt at which each ring begins.
    static constexpr std::array<double, rings> ringBegins = {3.0, 8.0, 15.0};
    static constexpr double period = 0.1;               ///< s between two positions that are kept
    static constexpr std::size_t mostDirections = 1300; ///< kept, then the first ones go

    /// Where tilting is missing most.
    enum class Missing {
        Nothing,
        AllSides,
        LeftRight,
        FrontBack,
        FrontRightBackLeft,
        FrontLeftBackRight
    };

    /// A tilt in degrees to the right and to the front.
    struct Tilt {
        double right = 0.0;
        double front = 0.0;
    };

    /// What there is to see.
    struct View {
        std::array<std::array<bool, rings>, sectors> reached{};
        Tilt current;
        Missing missing = Missing::AllSides;
        double greatest = 0.0; ///< tilt in degrees that nine tenths of the positions do not exceed
    };

    /// A position of the tool, rotation column by column. Too soon after the last one it only
    /// becomes the current one.
    void add(const std::array<double, 9>& rotation, double seconds);

    View view() const;

private:
    using Vector = std::array<double, 3>;
    struct Position {
        std::array<Vector, 3> axes; ///< the tool's, in the room
    };
    struct Spread; ///< of one axis' directions

    Spread spreadOf(std::size_t axis) const;

    std::vector<Position> m_positions;
    Position m_current{};
    double m_lastKept = 0.0;
};
