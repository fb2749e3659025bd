#include "probecheck/points/record/pointdistance.h"
#include "tests/probecheck/points/samplepoints.h"
#include "tests/support/datarows.h"

#include <QtTest>

#include <cmath>
#include <random>

Q_DECLARE_METATYPE(kestrel_probe::Verdict)

using kestrel_probe::Verdict;
using points::PointRecord;

namespace {

/// Noise that forgets itself as a tracker's does: with the correlation exp(-dt / memory).
class Tracker {
public:
    Tracker(unsigned seed, double rate, double memory)
        : m_random(seed)
        , m_rate(rate)
        , m_kept(memory > 0.0 ? std::exp(-1.0 / (rate * memory)) : 0.0) {}

    /// A point held for so long at `truth`, the noise's share of the axes as `shares` says.
    PointRecord hold(const double (&truth)[3], double duration, double noise,
                     const double (&shares)[3]) {
        kestrel_probe::PointCapture capture;
        capture.begin(duration, 1000.0, 0.0);
        double state = m_normal(m_random);
        double own[3] = {m_normal(m_random), m_normal(m_random), m_normal(m_random)};
        for (int i = 0; capture.state() == kestrel_probe::PointCapture::State::Holding; ++i) {
            kestrel_probe::TipSample sample{};
            sample.seconds = i / m_rate;
            for (int axis = 0; axis < 3; ++axis) {
                // Half of the noise is common to all axes: a covariance that no axis tells.
                const double common = std::sqrt(0.5);
                sample.position[axis] =
                    truth[axis] + noise * shares[axis] * common * (state + own[axis]);
                own[axis] = next(own[axis]);
            }
            state = next(state);
            capture.add(sample);
        }
        return points::recordOf(*capture.point());
    }

private:
    double next(double state) {
        return m_kept * state + std::sqrt(1.0 - m_kept * m_kept) * m_normal(m_random);
    }

    std::mt19937 m_random;
    std::normal_distribution<double> m_normal{0.0, 1.0};
    double m_rate;
    double m_kept;
};

} // namespace

class TestPointDistance : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theIntervalHoldsTheTruth_data();
    void theIntervalHoldsTheTruth();
    void theRadiusIsTheFormulaOfItsDescription();
    void ofATooShortPointNothingIsKnown();
    void aDistanceAlongAnAxisCountsThatAxisAlone();
    void ofPointsUponEachOtherEveryDirectionCounts();
    void theShorterHeldPointTellsTheFactor();
    void pointsOfDifferentReferencesHaveNoDistance_data();
    void pointsOfDifferentReferencesHaveNoDistance();
    void aLengthIsJudgedWithItsUncertainty_data();
    void aLengthIsJudgedWithItsUncertainty();
    void aPointIsJudgedByItsSamplesAndItsUncertainty();
};

void TestPointDistance::theIntervalHoldsTheTruth_data() {
    QTest::addColumn<double>("rate");
    QTest::addColumn<double>("duration");
    QTest::addColumn<double>("memory");
    QTest::addColumn<double>("truth");
    QTest::addColumn<bool>("isAlongZ"); // line and noise: nothing of the interval is to spare
    row("shortest that tells", 60.0, 0.35, 0.075, 100.0, false);
    row("one second, 60 Hz", 60.0, 1.0, 0.075, 100.0, false);
    row("one second, 240 Hz", 240.0, 1.0, 0.075, 100.0, false);
    row("one second, 1000 Hz", 1000.0, 1.0, 0.075, 100.0, false);
    row("three seconds", 60.0, 3.0, 0.075, 100.0, false);
    row("ten seconds", 60.0, 10.0, 0.075, 100.0, false);
    row("independent noise", 60.0, 1.0, 0.0, 100.0, false);
    row("upon each other", 60.0, 1.0, 0.075, 0.0, false);
    row("nearly upon each other", 60.0, 1.0, 0.075, 0.3, false);
    row("three seconds, upon each other", 60.0, 3.0, 0.075, 0.0, false);
    row("shortest that tells, along z", 60.0, 0.35, 0.075, 100.0, true);
    row("one second, 60 Hz, along z", 60.0, 1.0, 0.075, 100.0, true);
    row("one second, 240 Hz, along z", 240.0, 1.0, 0.075, 100.0, true);
    row("one second, 1000 Hz, along z", 1000.0, 1.0, 0.075, 100.0, true);
    row("three seconds, along z", 60.0, 3.0, 0.075, 100.0, true);
    row("ten seconds, along z", 60.0, 10.0, 0.075, 100.0, true);
    row("independent noise, along z", 60.0, 1.0, 0.0, 100.0, true);
}

void TestPointDistance::theIntervalHoldsTheTruth() {
    QFETCH(double, rate);
    QFETCH(double, duration);
    QFETCH(double, memory);
    QFETCH(double, truth);
    QFETCH(bool, isAlongZ);
    constexpr int runs = 300;
    Tracker tracker(20261122, rate, memory);
    std::mt19937 random(7);
    std::normal_distribution<double> normal;
    int distances = 0;
    int regions = 0;
    double width = 0.0;
    double squares = 0.0;
    for (int run = 0; run < runs; ++run) {
        const double across = isAlongZ ? 0.0 : 1.0;
        const double line[3] = {across * normal(random), across * normal(random), normal(random)};
        const double length = std::hypot(line[0], line[1], line[2]);
        const double from[3] = {100.0, -2000.0, 1500.0};
        const double to[3] = {from[0] + truth * line[0] / length,
                              from[1] + truth * line[1] / length,
                              from[2] + truth * line[2] / length};
        const double shares[3] = {0.3 * across, 0.5 * across, 1.0};
        const PointRecord a = tracker.hold(from, duration, 0.3, shares);
        const PointRecord b = tracker.hold(to, duration, 0.3, shares);
        const auto distance = points::distanceOf(a, b);
        QVERIFY(distance && distance->uncertainty);
        const double error = distance->length - truth;
        distances += std::fabs(error) <= *distance->uncertainty ? 1 : 0;
        const double off =
            std::hypot(a.position[0] - from[0], a.position[1] - from[1], a.position[2] - from[2]);
        regions += off <= points::radius95(a).value() ? 1 : 0;
        width += *distance->uncertainty / runs;
        squares += error * error / runs;
    }
    qInfo("distances %.1f %%, regions %.1f %%, mean U %.3f mm, RMS error %.3f mm",
          100.0 * distances / runs, 100.0 * regions / runs, width, std::sqrt(squares));
    QVERIFY(distances >= 0.95 * runs);
    QVERIFY(regions >= 0.95 * runs);
}

void TestPointDistance::theRadiusIsTheFormulaOfItsDescription() {
    PointRecord point = samplePoint(1);
    point.duration = 0.6; // four readings
    const double sum = 0.03 * 0.03 + 0.02 * 0.02 + 0.01 * 0.01;
    QCOMPARE(points::radius95(point).value(), 3.182 * std::sqrt(sum / 4.0));
    point.duration = 3000.0;
    QCOMPARE(points::radius95(point).value(), 2.042 * std::sqrt(sum / 15001.0));
}

void TestPointDistance::ofATooShortPointNothingIsKnown() {
    PointRecord shortPoint = samplePoint(1);
    shortPoint.duration = 0.19;
    QVERIFY(!points::radius95(shortPoint));
    QCOMPARE(points::verdictOf(shortPoint), Verdict::Undecided);
    const auto distance = points::distanceOf(shortPoint, samplePoint(2, 50.0));
    QCOMPARE(distance->length, 50.0);
    QVERIFY(!distance->uncertainty);
    QCOMPARE(points::compareToNominal(*distance, 50.0, 1.0).verdict, Verdict::Undecided);
    shortPoint.duration = 0.2;
    QVERIFY(points::radius95(shortPoint));
}

void TestPointDistance::aDistanceAlongAnAxisCountsThatAxisAlone() {
    const auto distance = points::distanceOf(samplePoint(1), samplePoint(2, 0.0, 100.0));
    QCOMPARE(distance->length, 100.0);
    constexpr double readings = 6.0;
    QCOMPARE(distance->uncertainty.value(), 2.571 * std::sqrt(2.0 * 0.02 * 0.02 / readings));
}

void TestPointDistance::ofPointsUponEachOtherEveryDirectionCounts() {
    const auto distance = points::distanceOf(samplePoint(1), samplePoint(2));
    QCOMPARE(distance->length, 0.0);
    QCOMPARE(distance->uncertainty.value(),
             points::radius95(samplePoint(1)).value() * std::sqrt(2.0));
}

void TestPointDistance::theShorterHeldPointTellsTheFactor() {
    PointRecord shorter = samplePoint(1);
    shorter.duration = 0.4; // three readings
    PointRecord longer = samplePoint(2, 100.0);
    longer.duration = 4.0; // twenty-one
    const double expected = 4.303 * std::sqrt(0.03 * 0.03 / 3.0 + 0.03 * 0.03 / 21.0);
    QCOMPARE(points::distanceOf(shorter, longer)->uncertainty.value(), expected);
    QCOMPARE(points::distanceOf(longer, shorter)->uncertainty.value(), expected);
}

void TestPointDistance::pointsOfDifferentReferencesHaveNoDistance_data() {
    QTest::addColumn<int>("a");
    QTest::addColumn<int>("b");
    QTest::addColumn<bool>("isThere");
    row("both in the room", points::noReference, points::noReference, true);
    row("the same reference", 3, 3, true);
    row("two references", 0, 1, false);
    row("one in the room", 0, points::noReference, false);
    row("both unknown", points::unknownReference, points::unknownReference, false);
}

void TestPointDistance::pointsOfDifferentReferencesHaveNoDistance() {
    QFETCH(int, a);
    QFETCH(int, b);
    PointRecord first = samplePoint(1);
    PointRecord second = samplePoint(2, 5.0);
    first.reference = a;
    second.reference = b;
    QTEST(points::distanceOf(first, second).has_value(), "isThere");
    QTEST(points::distanceOf(second, first).has_value(), "isThere");
}

void TestPointDistance::aLengthIsJudgedWithItsUncertainty_data() {
    QTest::addColumn<double>("length");
    QTest::addColumn<double>("uncertainty");
    QTest::addColumn<double>("error");
    QTest::addColumn<Verdict>("verdict");
    row("inside", 100.5, 0.5, 0.5, Verdict::Conforms);
    row("shorter, inside", 99.5, 0.5, -0.5, Verdict::Conforms);
    row("outside", 102.0, 0.5, 2.0, Verdict::DoesNotConform);
    row("shorter, outside", 98.0, 0.5, -2.0, Verdict::DoesNotConform);
    row("between", 100.75, 0.5, 0.75, Verdict::Undecided);
}

void TestPointDistance::aLengthIsJudgedWithItsUncertainty() {
    QFETCH(double, length);
    QFETCH(double, uncertainty);
    const auto comparison = points::compareToNominal({length, uncertainty}, 100.0, 1.0);
    QTEST(comparison.error, "error");
    QTEST(comparison.verdict, "verdict");
}

void TestPointDistance::aPointIsJudgedByItsSamplesAndItsUncertainty() {
    PointRecord point = samplePoint(1);
    const double radius = points::radius95(point).value();
    point.tolerance = point.greatestDistance + 1.01 * radius;
    QCOMPARE(points::verdictOf(point), Verdict::Conforms);
    point.tolerance = point.greatestDistance + 0.99 * radius;
    QCOMPARE(points::verdictOf(point), Verdict::Undecided);
    point.tolerance = point.greatestDistance - 1.01 * radius;
    QCOMPARE(points::verdictOf(point), Verdict::DoesNotConform);
}

QTEST_GUILESS_MAIN(TestPointDistance)
#include "test_pointdistance.moc"
