#include "probecheck/tipcheck/tiltrose.h"

#include <algorithm>
#include <cmath>

namespace {

using Vector = std::array<double, 3>;

constexpr double pi = 3.14159265358979323846;
constexpr double degrees = 180.0 / pi;
constexpr std::size_t usualShaft = 2; // the tool's z axis, until another one is plainly it
constexpr double plainly = 1.5;       // so many times the spread
constexpr double littleTilt = 2.0;    // degrees (RMS) that count as no tilting
constexpr double unevenTilt = 0.4;    // of the greater spread; below it a direction is missing
constexpr double ordinaryShare = 0.9; // of the positions, for the greatest tilt

double dot(const Vector& a, const Vector& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Vector cross(const Vector& a, const Vector& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

Vector scaledToOne(const Vector& a) {
    const double length = std::sqrt(dot(a, a));
    return length > 0.0 ? Vector{a[0] / length, a[1] / length, a[2] / length} : Vector{0, 0, 1};
}

} // namespace

// Seen along the middle of the directions; "right" is the room's x axis as far as it can be.
struct TiltRose::Spread {
    Vector middle{};
    Vector right{};
    Vector front{};
    std::vector<Tilt> tilts;
    double rightSquares = 0.0;
    double frontSquares = 0.0;
    double products = 0.0;

    Tilt tiltOf(const Vector& direction) const {
        const double x = dot(direction, right);
        const double y = dot(direction, front);
        const double across = std::hypot(x, y);
        const double angle = std::atan2(across, dot(direction, middle)) * degrees;
        return across > 0.0 ? Tilt{angle * x / across, angle * y / across} : Tilt{};
    }
    double greater() const { return half() + difference(); }
    double smaller() const { return std::max(half() - difference(), 0.0); }
    double half() const { return (rightSquares + frontSquares) / 2.0; }
    double difference() const { return std::hypot((rightSquares - frontSquares) / 2.0, products); }
};

void TiltRose::add(const std::array<double, 9>& rotation, double seconds) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
        std::copy_n(rotation.begin() + static_cast<std::ptrdiff_t>(3 * axis), 3,
                    m_current.axes[axis].begin());
    }
    if (!m_positions.empty() && seconds - m_lastKept < period) {
        return;
    }
    m_lastKept = seconds;
    if (m_positions.size() == mostDirections) {
        m_positions.erase(m_positions.begin());
    }
    m_positions.push_back(m_current);
}

TiltRose::Spread TiltRose::spreadOf(std::size_t axis) const {
    Spread spread;
    Vector sum{};
    for (const Position& position : m_positions) {
        for (std::size_t i = 0; i < 3; ++i) {
            sum[i] += position.axes[axis][i];
        }
    }
    spread.middle = scaledToOne(sum);
    const bool isAlongX = std::abs(spread.middle[0]) > 0.9;
    const Vector towards = isAlongX ? Vector{0, 1, 0} : Vector{1, 0, 0};
    spread.front = scaledToOne(cross(spread.middle, towards));
    spread.right = cross(spread.front, spread.middle);
    for (const Position& position : m_positions) {
        const Tilt tilt = spread.tiltOf(position.axes[axis]);
        spread.tilts.push_back(tilt);
        spread.rightSquares += tilt.right * tilt.right;
        spread.frontSquares += tilt.front * tilt.front;
        spread.products += tilt.right * tilt.front;
    }
    const double count = static_cast<double>(std::max<std::size_t>(m_positions.size(), 1));
    spread.rightSquares /= count;
    spread.frontSquares /= count;
    spread.products /= count;
    return spread;
}

namespace {

// Across the direction of the greater spread.
TiltRose::Missing missingAcross(double rightSquares, double frontSquares, double products) {
    using Missing = TiltRose::Missing;
    const double greater = 0.5 * std::atan2(2.0 * products, rightSquares - frontSquares);
    constexpr std::array<Missing, 4> across = {Missing::FrontBack, Missing::FrontLeftBackRight,
                                               Missing::LeftRight, Missing::FrontRightBackLeft};
    const int eighths = static_cast<int>(std::lround(greater / (pi / 4.0)));
    return across[static_cast<std::size_t>((eighths + 4) % 4)];
}

} // namespace

TiltRose::View TiltRose::view() const {
    View view;
    if (m_positions.empty()) {
        return view;
    }
    std::size_t shaft = usualShaft;
    Spread spread = spreadOf(usualShaft);
    for (const std::size_t axis : {std::size_t(0), std::size_t(1)}) {
        Spread other = spreadOf(axis);
        if (other.smaller() > plainly * std::max(spread.smaller(), littleTilt * littleTilt)) {
            spread = std::move(other);
            shaft = axis;
        }
    }
    std::vector<double> angles;
    for (const Tilt& tilt : spread.tilts) {
        const double angle = std::hypot(tilt.right, tilt.front);
        angles.push_back(angle);
        const double turns = std::atan2(tilt.front, tilt.right) / (2.0 * pi);
        const auto sector =
            static_cast<std::size_t>(std::lround(turns * sectors) + static_cast<long>(sectors)) %
            sectors;
        for (std::size_t ring = 0; ring < rings; ++ring) {
            view.reached[sector][ring] = view.reached[sector][ring] || angle >= ringBegins[ring];
        }
    }
    const auto ordinary =
        angles.begin() +
        static_cast<std::ptrdiff_t>(ordinaryShare * static_cast<double>(angles.size() - 1));
    std::nth_element(angles.begin(), ordinary, angles.end());
    view.greatest = *ordinary;
    view.current = spread.tiltOf(m_current.axes[shaft]);
    if (spread.greater() < littleTilt * littleTilt) {
        view.missing = Missing::AllSides;
    } else if (spread.smaller() >= unevenTilt * unevenTilt * spread.greater()) {
        view.missing = Missing::Nothing;
    } else {
        view.missing = missingAcross(spread.rightSquares, spread.frontSquares, spread.products);
    }
    return view;
}
