#include "tests/libs/kestrel_probe/pivotruns.h"

#include "libs/kestrel_probe/Verdict.h"

#include <Eigen/Dense>
#include <array>
#include <cmath>
#include <cstdio>
#include <random>

namespace pivotruns {

namespace {

using Eigen::Matrix3d;
using Eigen::Vector3d;

constexpr double fullTurn = 6.28318530717958647692;
constexpr double correlationTime = 0.075; // s
constexpr double twist = 0.2;             // rad

Matrix3d rotationFrom(const Vector3d& vector) {
    const double angle = vector.norm();
    if (angle < 1e-12) {
        return Matrix3d::Identity();
    }
    return Eigen::AngleAxisd(angle, vector / angle).toRotationMatrix();
}

// Several slow swings that do not fit together, as a hand makes them.
class Wave {
public:
    explicit Wave(std::mt19937_64& random) {
        std::uniform_real_distribution<double> frequency(0.15, 0.9);
        std::uniform_real_distribution<double> phase(0.0, fullTurn);
        for (Part& part : m_parts) {
            part = {frequency(random), phase(random)};
        }
    }
    double at(double seconds) const {
        double sum = 0.0;
        for (const Part& part : m_parts) {
            sum += std::sin(fullTurn * part.frequency * seconds + part.phase);
        }
        return sum / std::sqrt(static_cast<double>(m_parts.size()));
    }

private:
    struct Part {
        double frequency = 0.0;
        double phase = 0.0;
    };
    std::array<Part, 4> m_parts;
};

class Motion {
public:
    Motion(const Cell& cell, std::mt19937_64& random)
        : m_cone(cell.cone * fullTurn / 360.0)
        , m_human(cell.human)
        , m_x(random)
        , m_y(random)
        , m_z(random) {}
    Vector3d at(double seconds) const {
        if (m_human) {
            const double tilt = 0.7 * m_cone;
            return {tilt * m_x.at(seconds), tilt * m_y.at(seconds), twist * m_z.at(seconds)};
        }
        const double tilt = m_cone * (0.65 + 0.35 * std::sin(fullTurn * 0.7 * seconds));
        const double direction = fullTurn * 0.5 * seconds;
        return {tilt * std::cos(direction), tilt * std::sin(direction),
                twist * std::sin(fullTurn * 0.2 * seconds)};
    }

private:
    double m_cone;
    bool m_human;
    Wave m_x;
    Wave m_y;
    Wave m_z;
};

// Independent from frame to frame, or a first-order autoregression of the same deviation.
class Noise {
public:
    Noise(double deviation, double memory)
        : m_deviation(deviation)
        , m_memory(memory) {}
    Vector3d next(std::mt19937_64& random) {
        const Vector3d fresh(m_normal(random), m_normal(random), m_normal(random));
        const double share = m_begun ? std::sqrt(1.0 - m_memory * m_memory) : 1.0;
        m_state = m_memory * m_state + share * fresh;
        m_begun = true;
        return m_deviation * m_state;
    }

private:
    std::normal_distribution<double> m_normal;
    double m_deviation;
    double m_memory;
    bool m_begun = false;
    Vector3d m_state = Vector3d::Zero();
};

Vector3d shaft() {
    return Vector3d(0.2, -0.1, 1.0).normalized();
}

} // namespace

Vector3d tipErrorOf(const Cell& cell) {
    return cell.alongShaft ? Vector3d(shaft() * tipErrorLength) : Vector3d(tipError);
}

std::string Cell::name() const {
    std::array<char, 160> text{};
    std::snprintf(text.data(), text.size(), "%2.0f deg %3.0f mm %4.0f Hz %3.0f s %.2f mm %s %s %s",
                  cone, lever, rate, seconds, noise, correlated ? "correlated " : "independent",
                  human ? "human " : "steady", missing > 0.0 ? "missing" : "whole");
    return text.data();
}

std::vector<kestrel_probe::Pose> poses(const Cell& cell, std::uint64_t seed) {
    std::mt19937_64 random(seed);
    const Motion motion(cell, random);
    const double memory = cell.correlated ? std::exp(-1.0 / (cell.rate * correlationTime)) : 0.0;
    Noise shift(cell.noise, memory);
    Noise turn(cell.noise * rotationNoise, memory);
    std::uniform_real_distribution<double> chance(0.0, 1.0);
    const Matrix3d upright = rotationFrom({0.3, 2.8, 0.1});
    const Vector3d trueTip = shaft() * cell.lever;
    const Vector3d knownTip = trueTip - tipErrorOf(cell);

    const auto frames = static_cast<int>(std::lround(cell.rate * cell.seconds));
    std::vector<kestrel_probe::Pose> result;
    result.reserve(static_cast<std::size_t>(frames) + 1);
    for (int frame = 0; frame <= frames; ++frame) {
        const double seconds = frame / cell.rate;
        const Vector3d shiftNow = shift.next(random);
        const Vector3d turnNow = turn.next(random);
        if (chance(random) < cell.missing) {
            continue;
        }
        Vector3d resting(120.0 + cell.distance, -80.0, 15.0);
        if (2 * frame > frames) {
            resting.y() += cell.slip;
        }
        const Matrix3d rotation = upright * rotationFrom(motion.at(seconds));
        const Matrix3d seenRotation = rotation * rotationFrom(turnNow);
        const Vector3d seenTip = resting - rotation * trueTip + shiftNow + seenRotation * knownTip;
        kestrel_probe::Pose pose{};
        Eigen::Map<Vector3d>(pose.position) = seenTip;
        Eigen::Map<Matrix3d>(pose.rotation) = seenRotation;
        pose.seconds = seconds;
        result.push_back(pose);
    }
    return result;
}

std::vector<kestrel_probe::Pose> posesOf(const std::function<Vector3d(double)>& turn, double rate,
                                         double seconds, const Vector3d& tip) {
    std::vector<kestrel_probe::Pose> result;
    const auto frames = static_cast<int>(std::lround(rate * seconds));
    for (int frame = 0; frame <= frames; ++frame) {
        kestrel_probe::Pose pose{};
        pose.seconds = frame / rate;
        const Matrix3d rotation = rotationFrom(turn(pose.seconds));
        Eigen::Map<Matrix3d>(pose.rotation) = rotation;
        Eigen::Map<Vector3d>(pose.position) = -(rotation * tip);
        result.push_back(pose);
    }
    return result;
}

Vector3d cone(double seconds, double tilt, double hertz) {
    const double direction = fullTurn * hertz * seconds;
    return {tilt * std::cos(direction), tilt * std::sin(direction), 0.0};
}

Tally tally(const Cell& cell, int runs, std::uint64_t firstSeed) {
    Tally tally;
    double squares = 0.0;
    for (int run = 0; run < runs; ++run) {
        ++tally.runs;
        kestrel_probe::PivotFit fit;
        for (const kestrel_probe::Pose& pose :
             poses(cell, firstSeed + static_cast<unsigned>(run))) {
            fit.add(pose);
        }
        const std::optional<kestrel_probe::PivotResult> result = fit.solve();
        if (!result) {
            continue;
        }
        ++tally.solved;
        const Vector3d tip(result->tip);
        const double off = (tip - tipErrorOf(cell)).norm();
        squares += off * off;
        tally.meanRadius += result->radius95;
        tally.held += off <= result->radius95 ? 1 : 0;
        const auto verdict =
            kestrel_probe::judge(tip.norm(), result->radius95, 0.999 * tipErrorLength);
        tally.wrongConforms += verdict == kestrel_probe::Verdict::Conforms ? 1 : 0;
        tally.greatestSlipRatio =
            std::max(tally.greatestSlipRatio, result->slip / result->residual);
    }
    if (tally.solved > 0) {
        tally.rmsError = std::sqrt(squares / tally.solved);
        tally.meanRadius /= tally.solved;
    }
    return tally;
}

std::vector<Cell> allCells() {
    std::vector<Cell> cells;
    for (const double cone : {5.0, 10.0, 20.0, 30.0, 45.0}) {
        for (const double lever : {150.0, 250.0}) {
            for (const double rate : {60.0, 240.0, 1000.0}) {
                for (const double seconds : {5.0, 10.0, 20.0}) {
                    for (const double noise : {0.05, 0.3}) {
                        for (const int kind : {0, 1, 2, 3, 4}) {
                            Cell cell{cone, lever, rate, seconds, noise};
                            cell.correlated = kind == 1 || kind >= 3;
                            cell.human = kind == 2 || kind >= 3;
                            cell.missing = kind == 4 ? 0.2 : 0.0;
                            cells.push_back(cell);
                        }
                    }
                }
            }
        }
    }
    return cells;
}

} // namespace pivotruns
