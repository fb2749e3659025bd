#include "probecheck/tipcheck/tipcheck.h"

#include <algorithm>
#include <cmath>

using kestrel_probe::PivotFit;
using kestrel_probe::Verdict;

namespace {

constexpr double evaluationPeriod = 0.2; // s
// The share of time that evaluating may take: long runs at high rates are evaluated less often.
constexpr double evaluationLoad = 0.1;
constexpr double leastSlip = 0.01; // mm; less is rounding

bool isUsable(const ProbeSample& sample) {
    return sample.tracked && sample.referenceTracked;
}

kestrel_probe::Pose poseOf(const ProbeSample& sample) {
    kestrel_probe::Pose pose{};
    std::copy(sample.position.begin(), sample.position.end(), pose.position);
    std::copy(sample.rotation.begin(), sample.rotation.end(), pose.rotation);
    pose.seconds = sample.seconds;
    return pose;
}

} // namespace

void TipCheck::start(int tool, double tolerance, double now) {
    *this = TipCheck();
    m_running.tool = tool;
    m_running.tolerance = tolerance;
    m_state = State::Measuring;
    m_begin = now;
    m_lastPose = now;
    m_lastSample = now;
}

void TipCheck::stop(double now) {
    if (isRunning()) {
        finish(End::Stopped, now);
    }
}

void TipCheck::loseMeasurement(double now) {
    if (isRunning()) {
        finish(End::MeasurementStopped, now);
    }
}

void TipCheck::take(const ProbeSample& sample) {
    if (!isRunning() || sample.tool != m_running.tool) {
        return;
    }
    ++m_frames;
    m_lastSample = sample.arrival;
    m_running.reference = sample.reference;
    m_isReferenceLost = !sample.referenceTracked;
    if (!isUsable(sample)) {
        ++m_hiddenFrames;
        return;
    }
    m_lastPose = sample.arrival;
    if (m_lastPoseTime >= 0.0 && sample.seconds - m_lastPoseTime < 0.999 / mostPosesPerSecond) {
        return;
    }
    m_lastPoseTime = sample.seconds;
    m_fit.add(poseOf(sample));
    m_rose.add(sample.rotation, sample.seconds);
}

TipCheck::State TipCheck::stateAt(double now) const {
    if (now - m_lastSample > longestSilence) {
        return State::Silent;
    }
    if (m_isReferenceLost) {
        return State::ReferenceLost;
    }
    return now - m_lastPose > longestHidden ? State::Hidden : State::Measuring;
}

void TipCheck::tick(double now) {
    if (!isRunning()) {
        return;
    }
    m_state = stateAt(now);
    if (now - m_begin >= longestCheck) {
        finish(End::TimeIsUp, now);
        return;
    }
    if (now < m_nextEvaluation) {
        return;
    }
    evaluate(now);
    if (m_slipSince >= 0.0 && now - m_slipSince >= slipStands) {
        finish(End::Slipped, now);
    } else if (m_verdictSince >= 0.0 && now - m_verdictSince >= verdictStands &&
               now - m_begin >= shortestVerdict) {
        finish(End::Decided, now);
    }
}

void TipCheck::evaluate(double now) {
    m_running.poses = m_fit.poses();
    m_running.duration = now - m_begin;
    m_running.hiddenShare =
        m_frames > 0 ? static_cast<double>(m_hiddenFrames) / static_cast<double>(m_frames) : 0.0;
    m_running.coverage = m_fit.coverage();
    m_running.rose = m_rose.view();
    if (m_fit.poses() == m_evaluatedPoses) {
        return;
    }
    m_evaluatedPoses = m_fit.poses();
    const double begin = LineTap::now();
    judgePivot(now);
    m_nextEvaluation = now + std::max(evaluationPeriod, (LineTap::now() - begin) / evaluationLoad);
}

// A verdict and a slip must stand for a while: among many looks some would come about by chance.
void TipCheck::judgePivot(double now) {
    const Verdict before = m_running.verdict;
    m_running.pivot = m_fit.solve();
    m_running.tooFast = !m_running.pivot && m_fit.isTooFast();
    m_running.verdict = Verdict::Undecided;
    m_running.error = 0.0;
    m_running.slipped = false;
    if (m_running.pivot) {
        const kestrel_probe::PivotResult& pivot = *m_running.pivot;
        m_running.error = std::hypot(pivot.tip[0], pivot.tip[1], pivot.tip[2]);
        m_running.slipped =
            pivot.slip > std::max(PivotFit::slipOverResidual * pivot.residual, leastSlip);
        if (!m_running.slipped && m_running.tolerance > 0.0) {
            m_running.verdict =
                kestrel_probe::judge(m_running.error, pivot.radius95, m_running.tolerance);
        }
    }
    const auto keepSince = [now](bool holds, double& since) {
        since = !holds ? -1.0 : (since < 0.0 ? now : since);
    };
    keepSince(m_running.slipped, m_slipSince);
    keepSince(m_running.verdict != Verdict::Undecided && m_running.verdict == before,
              m_verdictSince);
}

void TipCheck::finish(End end, double now) {
    evaluate(now);
    m_running.end = end;
    m_state = State::Finished;
}
