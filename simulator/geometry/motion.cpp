#include "simulator/geometry/motion.h"

#include <cmath>

namespace kestrel_simulator {

namespace {

constexpr double secondsPerStop = 4.0;
constexpr double movingShare = 0.6; // of the time of one stop, the rest is standing still
constexpr double pressFrom = 0.7;
constexpr double pressTo = 0.85;
constexpr double occlusionPeriod = 12.0;
constexpr double occlusionLength = 1.2;

enum Purpose : std::uint64_t {
    PositionX,
    PositionY,
    PositionZ,
    AngleX,
    AngleY,
    AngleZ,
    Button,
    Occlusion,
    Tip,
    TipError,
    Phase
};

// no jump in speed or acceleration at either end
double eased(double x) {
    return x * x * x * (10.0 + x * (6.0 * x - 15.0));
}

double between(double low, double high, double share) {
    return low + (high - low) * share;
}

struct Stop {
    std::uint64_t number;
    double share; // of its time that has passed
};

Stop stopAt(double time) {
    const double stops = std::max(0.0, time) / secondsPerStop;
    const double whole = std::floor(stops);
    return {static_cast<std::uint64_t>(whole), stops - whole};
}

} // namespace

double hashedUniform(std::uint64_t seed, std::uint64_t stream, std::uint64_t index) {
    std::uint64_t x = seed;
    for (const std::uint64_t part : {stream, index}) {
        x += 0x9e3779b97f4a7c15U + part;
        x = (x ^ (x >> 30U)) * 0xbf58476d1ce4e5b9U;
        x = (x ^ (x >> 27U)) * 0x94d049bb133111ebU;
        x ^= x >> 31U;
    }
    return static_cast<double>(x >> 11U) * 0x1.0p-53;
}

ToolMotion::ToolMotion(std::uint64_t seed, int index)
    : m_seed(seed)
    , m_index(index) {}

double ToolMotion::uniform(std::uint64_t purpose, std::uint64_t index) const {
    return hashedUniform(m_seed, static_cast<std::uint64_t>(m_index) * 64U + purpose, index);
}

ToolMotion::Resting ToolMotion::restingAt(std::uint64_t stop) const {
    const double home = 220.0 * (m_index % 8) - 330.0;
    const Eigen::Vector3d angles(between(-35.0, 35.0, uniform(AngleX, stop)),
                                 between(-35.0, 35.0, uniform(AngleY, stop)),
                                 between(-70.0, 70.0, uniform(AngleZ, stop)));
    return {Eigen::Vector3d(home + between(-100.0, 100.0, uniform(PositionX, stop)),
                            between(-250.0, 250.0, uniform(PositionY, stop)),
                            between(20.0, 350.0, uniform(PositionZ, stop))),
            angles};
}

Pose ToolMotion::tipPose(double time) const {
    const double phase = secondsPerStop * uniform(Phase, 0);
    const Stop stop = stopAt(time + phase);
    const Resting from = restingAt(stop.number);
    const Resting to = restingAt(stop.number + 1);
    const double way = eased(std::min(1.0, stop.share / movingShare));
    const Eigen::Vector3d angles = from.angles + way * (to.angles - from.angles);
    return {from.position + way * (to.position - from.position), rotationFromAngles(angles)};
}

unsigned ToolMotion::buttons(double time) const {
    const double phase = secondsPerStop * uniform(Phase, 0);
    const Stop stop = stopAt(time + phase);
    if (stop.share < pressFrom || stop.share > pressTo) {
        return 0;
    }
    return 1U << static_cast<unsigned>(4.0 * uniform(Button, stop.number));
}

bool ToolMotion::occluded(double time) const {
    const double periods = std::max(0.0, time) / occlusionPeriod;
    const double whole = std::floor(periods);
    const auto period = static_cast<std::uint64_t>(whole);
    // none in the first period: a demonstration begins with all tools in sight
    if (period == 0 || uniform(Occlusion, 2 * period) < 0.5) {
        return false;
    }
    const double begin =
        uniform(Occlusion, 2 * period + 1) * (1.0 - occlusionLength / occlusionPeriod);
    const double share = periods - whole;
    return share >= begin && share < begin + occlusionLength / occlusionPeriod;
}

Eigen::Vector3d ToolMotion::tip() const {
    return {between(-8.0, 8.0, uniform(Tip, 0)), between(-8.0, 8.0, uniform(Tip, 1)),
            between(150.0, 210.0, uniform(Tip, 2))};
}

Eigen::Vector3d ToolMotion::tipError() const {
    return {between(0.4, 1.2, uniform(TipError, 0)), between(-1.2, -0.4, uniform(TipError, 1)),
            between(-1.5, 1.5, uniform(TipError, 2))};
}

StandingMotion::StandingMotion(std::uint64_t seed, int index)
    : m_seed(seed)
    , m_index(index) {}

Pose StandingMotion::pose(double time) const {
    const auto stream = 1000000U + static_cast<std::uint64_t>(m_index);
    const auto uniform = [&](std::uint64_t index) { return hashedUniform(m_seed, stream, index); };
    Eigen::Vector3d position(250.0 * (m_index % 4) - 400.0, between(-150.0, 150.0, uniform(0)),
                             between(0.0, 60.0, uniform(1)));
    Eigen::Vector3d angles(between(-20.0, 20.0, uniform(2)), between(-20.0, 20.0, uniform(3)),
                           between(-45.0, 45.0, uniform(4)));
    if (m_index % 2 == 1) {
        const double turn = fullTurn * time / 60.0;
        position += Eigen::Vector3d(20.0 * std::sin(turn), 15.0 * std::sin(0.7 * turn), 0.0);
        angles += Eigen::Vector3d(0.0, 2.0 * std::sin(0.5 * turn), 5.0 * std::sin(turn));
    }
    return {position, rotationFromAngles(angles)};
}

} // namespace kestrel_simulator
