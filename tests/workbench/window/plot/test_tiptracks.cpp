#include "tests/support/datarows.h"
#include "workbench/window/plot/tiptracks.h"

#include <QtTest>

#include <algorithm>
#include <cmath>

using workbench::TipRing;
using workbench::TipSample;
using workbench::TipStatistics;
using workbench::TipTracks;

namespace {

TipSample seen(double seconds, double x, double y = 0.0, double z = 0.0) {
    return {seconds, true, {x, y, z}};
}

TipSample hidden(double seconds) {
    return {seconds, false, {1e9, 1e9, 1e9}};
}

std::vector<double> timesOf(const TipRing& ring) {
    std::vector<double> times;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        times.push_back(ring.at(i).seconds);
    }
    return times;
}

QVector<int> sizesOf(const QVector<QPolygonF>& pieces) {
    QVector<int> sizes;
    for (const QPolygonF& piece : pieces) {
        sizes += piece.size();
    }
    return sizes;
}

} // namespace

/// What a plot is made of, without one.
class TestTipTracks : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theOldestGoFirstWhenTheRingIsFull() {
        TipRing ring(3);
        QVERIFY(ring.isEmpty());
        for (int i = 1; i <= 8; ++i) {
            ring.add(seen(i, 10.0 * i));
            QCOMPARE(ring.size(), std::size_t(std::min(i, 3)));
            QCOMPARE(ring.newest().seconds, double(i));
            QCOMPARE(ring.at(0).seconds, double(std::max(1, i - 2)));
        }
        QVERIFY((timesOf(ring) == std::vector<double>{6, 7, 8}));
        QCOMPARE(ring.at(1).position[0], 70.0);
        QCOMPARE(ring.firstSince(6.5), std::size_t(1));
        QCOMPARE(ring.firstSince(7.0), std::size_t(1));
        QCOMPARE(ring.firstSince(-1.0), std::size_t(0));
        QCOMPARE(ring.firstSince(8.5), std::size_t(3));
        ring.clear();
        QVERIFY(ring.isEmpty());
        QCOMPARE(ring.firstSince(0.0), std::size_t(0));
        ring.add(seen(1, 1));
        QCOMPARE(ring.size(), std::size_t(1));
    }

    void anEarlierTimeBeginsAnewAndTheSameOneIsLeftOut() {
        TipRing ring(4);
        for (const double time : {1.0, 2.0, 2.0, 3.0}) {
            ring.add(seen(time, time));
        }
        QVERIFY((timesOf(ring) == std::vector<double>{1, 2, 3}));
        ring.add(seen(2.5, 0));
        QVERIFY(timesOf(ring) == std::vector<double>{2.5});
    }

    void statisticsAreExact() {
        TipRing ring(10);
        ring.add(seen(0.0, 1e6, 77, 0)); // before the time that is asked for
        // Ten metres from the origin; deviations from the mean of -1.5, -0.5, 0.5 and 1.5.
        for (int i = 0; i < 4; ++i) {
            ring.add(seen(1.0 + i, 10000.0 + i, -5.0, i % 2 == 0 ? 0.001 : -0.001));
        }
        ring.add(hidden(5.0));
        const TipStatistics result = workbench::tipStatistics(ring, 1.0);
        QCOMPARE(result.count, std::size_t(4));
        QVERIFY(result.mean[0] == 10001.5 && result.mean[1] == -5.0);
        QVERIFY(result.deviation[0] == std::sqrt(5.0 / 3.0));
        QVERIFY(result.deviation[1] == 0.0);
        QVERIFY(std::abs(result.deviation[2] - 0.001 * std::sqrt(4.0 / 3.0)) < 1e-15);
    }

    void belowTwoPositionsThereIsNoDeviation() {
        TipRing ring(4);
        QVERIFY(std::isnan(workbench::tipStatistics(ring, 0.0).deviation[0]));
        ring.add(hidden(1));
        ring.add(seen(2, 5));
        const TipStatistics one = workbench::tipStatistics(ring, 0.0);
        QCOMPARE(one.count, std::size_t(1));
        QCOMPARE(one.mean[0], 5.0);
        QVERIFY(std::isnan(one.deviation[0]));
    }

    void aHiddenToolMakesAGap() {
        TipRing ring(20);
        for (int i = 0; i < 10; ++i) {
            ring.add(i == 4 || i == 5 ? hidden(0.1 * i) : seen(0.1 * i, i));
        }
        const TipTracks tracks = workbench::tipTracks(ring, 0.0, 0.9, {1.0, 0.0, 0.0}, 1000);
        QCOMPARE(sizesOf(tracks.axes[0]), (QVector<int>{4, 4}));
        QCOMPARE(sizesOf(tracks.axes[2]), (QVector<int>{4, 4}));
        QCOMPARE(tracks.axes[0][0].constFirst(), QPointF(0.0, -1.0));
        QCOMPARE(tracks.axes[0][1].constFirst(), QPointF(0.6000000000000001, 5.0));
        for (const QVector<QPolygonF>& axis : tracks.axes) {
            for (const QPolygonF& piece : axis) {
                QVERIFY(piece.boundingRect().height() < 100.0); // nothing of a hidden one's place
            }
        }
    }

    void aTimeWithoutSamplesMakesAGap_data() {
        QTest::addColumn<double>("interval");
        QTest::addColumn<double>("silence");
        QTest::addColumn<int>("pieces");
        row("a lost frame", 0.01, 0.02, 1);
        row("half a second", 0.01, 0.49, 1);
        row("longer", 0.01, 0.52, 2);
        row("a slow controller", 1.0, 2.0, 1);
        row("a slow controller, silent", 1.0, 9.0, 2);
    }
    void aTimeWithoutSamplesMakesAGap() {
        QFETCH(double, interval);
        QFETCH(double, silence);
        TipRing ring(100);
        double time = 0.0;
        for (int i = 0; i < 50; ++i) {
            time += i == 25 ? silence : interval;
            ring.add(seen(time, 0));
        }
        const TipTracks tracks = workbench::tipTracks(ring, 0.0, time, {0, 0, 0}, 1000);
        QTEST(tracks.axes[0].size(), "pieces");
    }

    void theExtremesOfEveryColumnAreKept() {
        constexpr int samples = 100000;
        constexpr int columns = 300;
        TipRing ring(samples);
        for (int i = 0; i < samples; ++i) {
            ring.add(seen(0.001 * i, i == 54321 ? 7.0 : i == 54322 ? -9.0 : std::sin(0.01 * i)));
        }
        const TipTracks tracks =
            workbench::tipTracks(ring, 0.0, 0.001 * (samples - 1), {0, 0, 0}, columns);
        QCOMPARE(tracks.axes[0].size(), 1);
        const QPolygonF& line = tracks.axes[0][0];
        QVERIFY2(line.size() <= 2 * (columns + 1), qPrintable(QString::number(line.size())));
        QCOMPARE(line.boundingRect().top(), -9.0);
        QCOMPARE(line.boundingRect().bottom(), 7.0);
        const auto peak = std::find_if(line.begin(), line.end(),
                                       [](const QPointF& point) { return point.y() == 7.0; });
        QVERIFY(std::abs(peak->x() - 54.321) < 1.0);
        QVERIFY(std::is_sorted(line.begin(), line.end(),
                               [](const QPointF& a, const QPointF& b) { return a.x() < b.x(); }));
    }

    void ofAPartTheLinesGoToItsBorders() {
        TipRing ring(100);
        for (int i = 0; i <= 50; ++i) {
            ring.add(seen(0.1 * i, i));
        }
        const TipTracks tracks = workbench::tipTracks(ring, 1.05, 2.05, {0, 0, 0}, 500);
        QCOMPARE(tracks.axes[0].size(), 1);
        QVERIFY(tracks.axes[0][0].constFirst().x() <= 1.05);
        QVERIFY(tracks.axes[0][0].constLast().x() >= 2.05);
        QCOMPARE(tracks.axes[0][0].size(), 12);
    }

    void ofNothingNothingIsDrawn() {
        TipRing ring(4);
        QVERIFY(workbench::tipTracks(ring, 0, 1, {0, 0, 0}, 100).axes[0].isEmpty());
        ring.add(hidden(0.5));
        QVERIFY(workbench::tipTracks(ring, 0, 1, {0, 0, 0}, 100).axes[0].isEmpty());
        ring.add(seen(0.6, 1));
        QCOMPARE(sizesOf(workbench::tipTracks(ring, 0, 1, {0, 0, 0}, 100).axes[0]),
                 QVector<int>{1});
        QVERIFY(workbench::tipTracks(ring, 1, 1, {0, 0, 0}, 100).axes[0].isEmpty());
        QVERIFY(workbench::tipTracks(ring, 0, 1, {0, 0, 0}, 0).axes[0].isEmpty());
    }

    void theTableHasUnitsPointsAndGaps() {
        TipRing ring(4);
        ring.add(seen(0.5, 9, 9, 9));
        ring.add(seen(1.25, 0.1, -2.5, 1e-3));
        ring.add(hidden(1.5));
        QCOMPARE(QString::fromStdString(workbench::tipTable(ring, 1.0, 3)),
                 QString("seconds_s,tool,tracked,x_mm,y_mm,z_mm\n"
                         "1.25,M3,1,0.1,-2.5,0.001\n"
                         "1.5,M3,0,,,\n"));
    }
};

QTEST_GUILESS_MAIN(TestTipTracks)
#include "test_tiptracks.moc"
