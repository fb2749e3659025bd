#include "PointCapture.h"

#include "ClockRounding.h"

#include <algorithm>
#include <cmath>

namespace kestrel_probe {

namespace {

double orZero(double value) {
    return value > 0.0 ? value : 0.0;
}

bool isFinite(const TipSample& sample) {
    return std::isfinite(sample.seconds) && std::isfinite(sample.position[0]) &&
           std::isfinite(sample.position[1]) && std::isfinite(sample.position[2]);
}

double distance(const double* a, const double* b) {
    return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

} // namespace

void PointCapture::begin(double duration, double tolerance, double seconds) {
    m_state = State::Holding;
    m_duration = orZero(duration);
    m_tolerance = orZero(tolerance);
    m_lastSeconds = seconds;
    m_restarts = 0;
    m_samples.clear();
    m_point.reset();
}

void PointCapture::add(const TipSample& sample) {
    if (m_state != State::Holding || !isFinite(sample) ||
        (!m_samples.empty() && sample.seconds <= m_samples.back().seconds)) {
        return;
    }
    wait(sample.seconds);
    if (m_state != State::Holding) {
        return;
    }
    m_lastSeconds = sample.seconds;
    if (m_samples.empty()) {
        beginAnew(sample);
        return;
    }
    const double n = static_cast<double>(m_samples.size());
    const double* const first = m_samples.front().position;
    const double mean[3] = {first[0] + m_sum[0] / n, first[1] + m_sum[1] / n,
                            first[2] + m_sum[2] / n};
    if (distance(sample.position, mean) > m_tolerance) {
        ++m_restarts;
        beginAnew(sample);
        return;
    }
    take(sample);
    if (heldFor() < m_duration - rounding) {
        return;
    }
    // The mean has moved with each sample: only now it can be said how far from it they all are.
    const CapturedPoint point = summary();
    if (point.greatestDistance > m_tolerance) {
        ++m_restarts;
        beginAnew(sample);
        return;
    }
    m_point = point;
    m_state = State::Captured;
}

void PointCapture::lose() {
    if (m_state == State::Holding) {
        m_state = State::Lost;
    }
}

void PointCapture::wait(double seconds) {
    if (m_state == State::Holding && seconds - m_lastSeconds >= longestSilence) {
        m_state = State::Silent;
    }
}

double PointCapture::progress() const {
    if (m_state == State::Captured) {
        return 1.0;
    }
    if (m_state != State::Holding || m_duration <= 0.0) {
        return 0.0;
    }
    return std::min(1.0, heldFor() / m_duration);
}

void PointCapture::beginAnew(const TipSample& sample) {
    m_samples.clear();
    std::fill_n(m_sum, 3, 0.0);
    take(sample);
}

void PointCapture::take(const TipSample& sample) {
    m_samples.push_back(sample);
    for (int i = 0; i < 3; ++i) {
        m_sum[i] += sample.position[i] - m_samples.front().position[i];
    }
}

double PointCapture::heldFor() const {
    return m_samples.empty() ? 0.0 : m_samples.back().seconds - m_samples.front().seconds;
}

CapturedPoint PointCapture::summary() const {
    CapturedPoint point{};
    const double n = static_cast<double>(m_samples.size());
    for (int i = 0; i < 3; ++i) {
        point.mean[i] = m_samples.front().position[i] + m_sum[i] / n;
    }
    double squares[3] = {};
    for (const TipSample& sample : m_samples) {
        for (int i = 0; i < 3; ++i) {
            const double off = sample.position[i] - point.mean[i];
            squares[i] += off * off;
        }
        point.greatestDistance =
            std::max(point.greatestDistance, distance(sample.position, point.mean));
    }
    for (int i = 0; i < 3; ++i) {
        point.deviation[i] = std::sqrt(squares[i] / (n - 1.0));
    }
    point.samples = m_samples.size();
    point.duration = heldFor();
    return point;
}

} // namespace kestrel_probe
