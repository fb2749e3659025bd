#include "KestrelAngles.h"

#include <QtTest>

#include <array>
#include <cmath>

using KestrelSDK_Angles::RotationAngles;

namespace {

constexpr double factor = 57.29577951308232;

RotationAngles angles(const std::array<double, 9>& numbers) {
    double rot[9];
    std::copy(numbers.begin(), numbers.end(), rot);
    return KestrelSDK_Angles::rotationAngles(rot);
}

} // namespace

class TestRotationAngles : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void identityHasNegatedZeros() {
        const RotationAngles a = angles({1, 0, 0, 0, 1, 0, 0, 0, 1});
        QVERIFY(a.rx == 0.0 && std::signbit(a.rx));
        QVERIFY(a.ry == 0.0 && !std::signbit(a.ry));
        QVERIFY(a.rz == 0.0 && std::signbit(a.rz));
    }

    void anglesComeFromTheThirdRowAndTheFirstColumn() {
        const RotationAngles a = angles({0.5, 9, 9, 0.25, 9, 9, 0.125, 0.75, 0.375});
        QCOMPARE(a.rx, -std::atan2(0.75, 0.375) * factor);
        QCOMPARE(a.ry, std::asin(0.125) * factor);
        QCOMPARE(a.rz, -std::atan2(0.25, 0.5) * factor);
    }

    void degenerateRotationsTakeRxFromTheMiddle_data() {
        QTest::addColumn<double>("r0");
        QTest::addColumn<double>("r3");
        QTest::addColumn<double>("r7");
        QTest::addColumn<double>("r8");
        QTest::newRow("7 and 8 are zero") << 0.5 << 0.5 << 0.0 << 0.0;
        QTest::newRow("0 and 3 are zero") << 0.0 << 0.0 << 0.5 << 0.5;
        QTest::newRow("negative zeros") << 0.5 << 0.5 << -0.0 << -0.0;
        QTest::newRow("all four") << 0.0 << -0.0 << 0.0 << -0.0;
    }
    void degenerateRotationsTakeRxFromTheMiddle() {
        QFETCH(double, r0);
        QFETCH(double, r3);
        QFETCH(double, r7);
        QFETCH(double, r8);
        const RotationAngles a = angles({r0, 9, 9, r3, 0.25, 0.75, 1.0, r7, r8});
        QCOMPARE(a.rx, std::atan2(0.75, 0.25) * factor); // not negated
        QCOMPARE(a.ry, std::asin(1.0) * factor);
        QVERIFY(a.rz == 0.0 && !std::signbit(a.rz));
    }

    void almostZeroIsNotDegenerate() {
        const RotationAngles a = angles({1e-300, 0, 0, 0.0, 1, 1, 0, 1e-300, 0.0});
        QCOMPARE(a.rx, -90.0);
        QVERIFY(a.rz == 0.0 && std::signbit(a.rz));
    }

    void oneZeroOfAPairIsNotDegenerate() {
        const RotationAngles a = angles({0.0, 0, 0, 1.0, 1, 1, 0, 0.0, 1.0});
        QVERIFY(a.rx == 0.0 && std::signbit(a.rx));
        QCOMPARE(a.rz, -90.0);
    }

    void asinIsNotClamped() { QVERIFY(std::isnan(angles({1, 0, 0, 0, 1, 0, 1.0000001, 0, 1}).ry)); }
};

QTEST_GUILESS_MAIN(TestRotationAngles)
#include "test_rotationangles.moc"
