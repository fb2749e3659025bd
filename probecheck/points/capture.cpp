#include "probecheck/points/capture.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace points {

namespace {

using kestrel_probe::PointCapture;

/// Noise at the tolerance's edge must not count as leaving.
constexpr double leavingOverTolerance = 2.0;

double distance(const std::array<double, 3>& a, const std::array<double, 3>& b) {
    return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

} // namespace

void Capture::start() {
    if (m_state == State::Off) {
        m_state = m_isKeeping ? State::Keeping : State::Ready;
    }
}

void Capture::stop(Notice why) {
    const bool wasHolding = m_state == State::Holding;
    m_state = State::Off;
    m_position.reset();
    m_capture.cancel();
    if (wasHolding) {
        m_tell(why);
    }
}

void Capture::setMode(Mode mode) {
    if (mode != m_mode) {
        m_mode = mode;
        drop();
    }
}

void Capture::setTool(int tool) {
    if (tool != m_tool) {
        m_tool = tool;
        m_position.reset();
        drop();
    }
}

void Capture::setHold(double duration, double tolerance) {
    if (duration != m_duration || tolerance != m_tolerance) {
        m_duration = duration;
        m_tolerance = tolerance;
        drop();
    }
}

void Capture::setCalibrated(QVector<bool> tools) {
    m_calibrated = std::move(tools);
}

void Capture::drop() {
    if (m_state == State::Holding || m_state == State::Leaving) {
        m_capture.cancel();
        m_state = State::Ready;
    }
}

void Capture::trigger(double now) {
    trigger(m_tool, now);
}

void Capture::trigger(int tool, double now) {
    const bool isBusy = m_state == State::Holding && m_mode == Mode::Trigger;
    if (m_state == State::Off) {
        m_tell(Notice::NotMeasuring);
    } else if (m_state == State::Keeping || isBusy) {
        m_tell(Notice::StillBusy);
    } else if (!m_calibrated.value(tool, false)) {
        m_tell(Notice::NotCalibrated);
    } else {
        setTool(tool);
        m_lastArrival = now;
        begin();
        m_tell(Notice::Begun);
    }
}

void Capture::begin() {
    // Samples have a clock of their own: how long none has come is told by their arrival.
    m_capture.begin(m_duration, m_tolerance, std::numeric_limits<double>::infinity());
    m_reference.reset();
    m_state = State::Holding;
}

void Capture::cancel() {
    if (m_state != State::Holding) {
        return;
    }
    m_capture.cancel();
    m_state = State::Ready;
    if (m_mode == Mode::HoldingStill && m_position) {
        m_left = *m_position;
        m_state = State::Leaving;
    }
    m_tell(Notice::Cancelled);
}

void Capture::giveUp(Notice notice) {
    if (m_state == State::Holding) {
        m_capture.cancel();
        m_state = State::Ready;
        m_tell(notice);
    }
}

bool Capture::isBad(const ProbeSample& sample) {
    if (sample.tracked && sample.referenceTracked) {
        return false;
    }
    m_position.reset();
    giveUp(sample.tracked ? Notice::ReferenceLost : Notice::ToolHidden);
    return true;
}

void Capture::feed(const ProbeSample& sample, double now) {
    if (m_state == State::Off || sample.tool != m_tool || !m_calibrated.value(m_tool, false) ||
        !(now - sample.arrival <= oldestSample)) {
        return;
    }
    m_lastArrival = std::max(m_lastArrival, sample.arrival);
    if (isBad(sample)) {
        return;
    }
    m_position = sample.position;
    if (m_state == State::Leaving &&
        distance(*m_position, m_left) > leavingOverTolerance * m_tolerance) {
        m_state = State::Ready;
    }
    if (m_state == State::Ready && m_mode == Mode::HoldingStill) {
        begin();
    }
    if (m_state == State::Holding) {
        hold(sample);
    }
}

void Capture::hold(const ProbeSample& sample) {
    if (m_reference.value_or(sample.reference) != sample.reference) {
        giveUp(Notice::ReferenceChanged);
        return;
    }
    m_reference = sample.reference;
    const std::size_t restarts = m_capture.restarts();
    m_capture.add({{sample.position[0], sample.position[1], sample.position[2]}, sample.seconds});
    if (m_capture.state() == PointCapture::State::Silent) {
        giveUp(Notice::Silent);
    } else if (m_capture.state() == PointCapture::State::Captured) {
        m_record = recordOf(*m_capture.point());
        m_record.tool = m_tool;
        m_record.reference = sample.reference;
        m_record.tolerance = m_tolerance;
        m_left = m_record.position;
        m_state = State::Keeping;
        m_isKeeping = true;
        m_tell(Notice::Captured);
    } else if (m_capture.restarts() != restarts) {
        m_tell(Notice::BegunAnew);
    }
}

void Capture::wait(double now) {
    if (now - m_lastArrival > oldestSample) {
        m_position.reset();
    }
    if (now - m_lastArrival >= PointCapture::longestSilence) {
        giveUp(Notice::Silent);
    }
}

void Capture::kept(bool isOnDisk) {
    if (!m_isKeeping) {
        return;
    }
    m_isKeeping = false;
    if (m_state == State::Keeping) {
        m_state = m_mode == Mode::HoldingStill ? State::Leaving : State::Ready;
    }
    m_tell(isOnDisk ? Notice::Kept : Notice::NotKept);
}

double Capture::progress() const {
    return m_state == State::Keeping ? 1.0 : m_state == State::Holding ? m_capture.progress() : 0.0;
}

} // namespace points
