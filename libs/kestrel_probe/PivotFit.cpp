#include "PivotFit.h"

#include "ClockRounding.h"
#include "PoseChecks.h"

#include <Eigen/Dense>
#include <algorithm>
#include <cmath>
#include <iterator>
#include <vector>

namespace kestrel_probe {

namespace {

using Eigen::Matrix3d;
using Eigen::Vector3d;
using Matrix = Eigen::Map<const Matrix3d>;
using Vector = Eigen::Map<const Vector3d>;

constexpr std::size_t blocks = 12;
// Below this many poses with instruments a block holds too few to tell its scatter.
constexpr std::size_t fewestWithInstruments = 30;
// Hotelling's T² for three components and blocks - 1 degrees of freedom: 3 · 11 / 9 · F.
constexpr double quantileF = 3.8625; // F_0.95(3, 9)
constexpr double regionFactor = 3.0 * 11.0 / 9.0 * quantileF;

// A scatter matrix of rotations, its axes sorted by how much the tool has turned across them.
struct Axes {
    explicit Axes(const Matrix3d& scatter)
        : solver(scatter) {}
    double weakest() const { return std::max(0.0, solver.eigenvalues()[0]); }
    Vector3d weakestAxis() const { return solver.eigenvectors().col(0); }
    Eigen::SelfAdjointEigenSolver<Matrix3d> solver;
};

// About the means, not about the identity: matrices that are rotations to some digits only do not
// pass for motion.
Matrix3d scatterOf(const double* rotationSum, const double* squareSum, std::size_t poses) {
    const double n = static_cast<double>(poses);
    const Matrix3d mean = Matrix(rotationSum) / n;
    return Matrix(squareSum) / n - mean.transpose() * mean;
}

} // namespace

/// The poses that have instruments, their sums and what follows from them.
struct PivotFit::Fit {
    explicit Fit(const std::deque<Sample>& samples);

    bool keepsMotion(const Vector3d& weakestAxis) const;
    PivotResult result() const;

    struct Row {
        Matrix3d instrument;
        Matrix3d rotation;
        Vector3d position;
    };
    std::vector<Row> rows;
    Matrix3d meanRotation = Matrix3d::Zero();
    Vector3d meanPosition = Vector3d::Zero();
};

PivotFit::Fit::Fit(const std::deque<Sample>& samples) {
    rows.reserve(samples.size());
    Matrix3d meanInstrument = Matrix3d::Zero();
    auto after = samples.begin();
    auto behind = samples.begin(); // one past the last that is early enough
    for (const Sample& sample : samples) {
        while (after != samples.end() &&
               after->seconds < sample.seconds + instrumentDistance - rounding) {
            ++after;
        }
        while (behind->seconds <= sample.seconds - instrumentDistance + rounding) {
            ++behind;
        }
        if (after == samples.end() || behind == samples.begin()) {
            continue;
        }
        rows.push_back({Matrix(std::prev(behind)->rotation) + Matrix(after->rotation),
                        Matrix(sample.rotation), Vector(sample.position)});
        meanInstrument += rows.back().instrument;
        meanRotation += rows.back().rotation;
        meanPosition += rows.back().position;
    }
    const double n = std::max(1.0, static_cast<double>(rows.size()));
    meanInstrument /= n;
    meanRotation /= n;
    meanPosition /= n;
    for (Row& row : rows) {
        row.instrument -= meanInstrument;
        row.rotation -= meanRotation;
        row.position -= meanPosition;
    }
}

bool PivotFit::Fit::keepsMotion(const Vector3d& weakestAxis) const {
    double kept = 0.0;
    double moved = 0.0;
    for (const Row& row : rows) {
        const Vector3d motion = row.rotation * weakestAxis;
        kept += (row.instrument * weakestAxis).dot(motion);
        moved += 2.0 * motion.squaredNorm();
    }
    return kept >= 0.5 * moved && moved > 0.0;
}

PivotResult PivotFit::Fit::result() const {
    Matrix3d normal = Matrix3d::Zero();
    Vector3d right = Vector3d::Zero();
    for (const Row& row : rows) {
        normal += row.instrument.transpose() * row.rotation;
        right -= row.instrument.transpose() * row.position;
    }
    const Matrix3d inverse = normal.inverse();
    const Vector3d tip = inverse * right;

    Matrix3d scatter = Matrix3d::Zero();
    std::array<Vector3d, 3> thirds{Vector3d::Zero(), Vector3d::Zero(), Vector3d::Zero()};
    std::array<double, 3> thirdSizes{};
    Vector3d block = Vector3d::Zero();
    double squares = 0.0;
    const std::size_t count = rows.size();
    for (std::size_t i = 0; i < count; ++i) {
        const Vector3d off = rows[i].rotation * tip + rows[i].position;
        squares += off.squaredNorm();
        thirds[i * 3 / count] += off;
        thirdSizes[i * 3 / count] += 1.0;
        block += rows[i].instrument.transpose() * off;
        if (i + 1 == count || (i + 1) * blocks / count != i * blocks / count) {
            scatter += block * block.transpose();
            block.setZero();
        }
    }
    scatter *= static_cast<double>(blocks) / static_cast<double>(blocks - 1);
    const Matrix3d skewed = inverse * scatter * inverse.transpose();
    const Matrix3d covariance = 0.5 * (skewed + skewed.transpose());
    const Vector3d resting = meanRotation * tip + meanPosition;

    PivotResult result{};
    std::copy_n(tip.data(), 3, result.tip);
    std::copy_n(resting.data(), 3, result.restingPoint);
    std::copy_n(covariance.data(), 9, result.covariance);
    result.residual = std::sqrt(squares / static_cast<double>(count));
    const Eigen::SelfAdjointEigenSolver<Matrix3d> axes(covariance, Eigen::EigenvaluesOnly);
    result.radius95 = std::sqrt(regionFactor * std::max(axes.eigenvalues()[2], 0.0));
    for (std::size_t i = 0; i < thirds.size(); ++i) {
        thirds[i] /= thirdSizes[i];
    }
    result.slip = std::max({(thirds[0] - thirds[1]).norm(), (thirds[1] - thirds[2]).norm(),
                            (thirds[2] - thirds[0]).norm()});
    return result;
}

void PivotFit::clear() {
    *this = PivotFit();
}

void PivotFit::add(const Pose& pose) {
    if (!isProper(pose) || (!m_samples.empty() && pose.seconds <= m_samples.back().seconds)) {
        return;
    }
    if (m_samples.empty()) {
        clear();
        std::copy_n(pose.position, 3, m_origin);
    }
    Sample sample{};
    for (int i = 0; i < 3; ++i) {
        sample.position[i] = pose.position[i] - m_origin[i];
    }
    std::copy_n(pose.rotation, 9, sample.rotation);
    sample.seconds = pose.seconds;
    m_samples.push_back(sample);
    count(sample, 1.0);
    while (duration() > longestRun + rounding) {
        count(m_samples.front(), -1.0);
        m_samples.pop_front();
    }
}

void PivotFit::count(const Sample& sample, double sign) {
    const Matrix rotation(sample.rotation);
    Eigen::Map<Matrix3d>(m_rotationSum) += sign * rotation;
    Eigen::Map<Matrix3d>(m_squareSum) += sign * (rotation.transpose() * rotation);
}

double PivotFit::duration() const {
    return m_samples.empty() ? 0.0 : m_samples.back().seconds - m_samples.front().seconds;
}

double PivotFit::coverage() const {
    if (m_samples.empty()) {
        return 0.0;
    }
    return Axes(scatterOf(m_rotationSum, m_squareSum, m_samples.size())).weakest();
}

std::array<double, 3> PivotFit::weakestAxis() const {
    if (m_samples.empty()) {
        return {};
    }
    const Vector3d axis =
        Axes(scatterOf(m_rotationSum, m_squareSum, m_samples.size())).weakestAxis();
    return {axis.x(), axis.y(), axis.z()};
}

bool PivotFit::hasEnough() const {
    return poses() >= fewestPoses && duration() >= shortestRun - rounding &&
           coverage() >= leastCoverage;
}

bool PivotFit::isTooFast() const {
    if (!hasEnough()) {
        return false;
    }
    const std::array<double, 3> axis = weakestAxis();
    return !Fit(m_samples).keepsMotion(Vector(axis.data()));
}

std::optional<PivotResult> PivotFit::solve() const {
    if (!hasEnough()) {
        return std::nullopt;
    }
    const Fit fit(m_samples);
    const std::array<double, 3> axis = weakestAxis();
    if (fit.rows.size() < fewestWithInstruments || !fit.keepsMotion(Vector(axis.data()))) {
        return std::nullopt;
    }
    PivotResult result = fit.result();
    if (!std::isfinite(result.radius95 + result.residual)) {
        return std::nullopt;
    }
    for (int i = 0; i < 3; ++i) {
        result.restingPoint[i] += m_origin[i];
    }
    return result;
}

} // namespace kestrel_probe
