#include "tests/probecheck/tipcheck/pivoting.h"

#include <cmath>

namespace {

constexpr double pi = 3.14159265358979323846;

// Rodrigues' formula, column by column.
std::array<double, 9> rotationOf(double x, double y, double z) {
    const double angle = std::sqrt(x * x + y * y + z * z);
    if (angle == 0.0) {
        return {1, 0, 0, 0, 1, 0, 0, 0, 1};
    }
    x /= angle;
    y /= angle;
    z /= angle;
    const double s = std::sin(angle);
    const double c = std::cos(angle);
    const double v = 1.0 - c;
    return {c + x * x * v,     y * x * v + z * s, z * x * v - y * s,
            x * y * v - z * s, c + y * y * v,     z * y * v + x * s,
            x * z * v + y * s, y * z * v - x * s, c + z * z * v};
}

} // namespace

ProbeSample Pivoting::at(double time, double begin) {
    const double phase = 2.0 * pi * frequency * time;
    const double out = tilt * pi / 180.0;
    std::array<double, 3> turn{};
    switch (motion) {
    case Motion::Cone: {
        const double angle = out * (0.7 + 0.3 * std::sin(phase * 1.7));
        turn = {angle * std::cos(phase), angle * std::sin(phase), 0.1 * std::sin(phase * 0.6)};
        break;
    }
    case Motion::AcrossX:
        turn = {0, out * std::sin(phase), 0};
        break;
    case Motion::AcrossY:
        turn = {out * std::sin(phase), 0, 0};
        break;
    case Motion::AcrossDiagonal:
        turn = {-out * std::sin(phase) / std::sqrt(2.0), out * std::sin(phase) / std::sqrt(2.0), 0};
        break;
    case Motion::Twist:
        turn = {0, 0, out * std::sin(phase)};
        break;
    case Motion::Still:
        break;
    }
    std::normal_distribution<double> scatter(0.0, 1.0);
    const double turnNoise = noise * 0.01;
    for (double& component : turn) {
        component += turnNoise * scatter(m_random);
    }
    ProbeSample sample;
    sample.rotation = rotationOf(turn[0], turn[1], turn[2]);
    const std::array<double, 3> resting = {400.0 + (time >= slipTime ? slip : 0.0), -120.0, 35.0};
    for (std::size_t i = 0; i < 3; ++i) {
        double shift = 0.0;
        for (std::size_t column = 0; column < 3; ++column) {
            shift += sample.rotation[3 * column + i] * tipError[column];
        }
        sample.position[i] = resting[i] - shift + noise * scatter(m_random);
    }
    sample.tracked = true;
    sample.quality = 1.0;
    sample.buttonCount = 3;
    sample.arrival = begin + time;
    sample.seconds = begin + time;
    return sample;
}
