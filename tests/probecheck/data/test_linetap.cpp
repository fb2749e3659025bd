#include "probecheck/data/linetap.h"
#include "tests/probecheck/probefixture.h"
#include "tests/support/datarows.h"

#include <QtTest>

#include <atomic>
#include <limits>
#include <thread>

namespace {

constexpr double start = 1000.0; // s, of the arrivals

ProbeSamples fetched(LineTap& tap, double time = start + 3600.0) {
    LineTap::Fetched result;
    tap.fetch(result, time);
    return result.samples;
}

int give(LineTap& tap, const std::string& line, double arrival = start) {
    return tap.take(line.c_str(), arrival);
}

} // namespace

class TestLineTap : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void linesAreTakenBetweenStartAndStop() {
        LineTap tap;
        QCOMPARE(give(tap, probelines::tools({{}})), -2);
        tap.start();
        QCOMPARE(give(tap, probelines::tools({{}})), 0);
        tap.stop();
        QCOMPARE(give(tap, probelines::tools({{}})), -2);
    }

    void aSampleTellsWhatTheLineTells() {
        LineTap tap;
        tap.start();
        give(tap, probelines::frame(7));
        give(tap, probelines::time(12.5));
        const std::array<double, 9> turned = {0, 1, 0, -1, 0, 0, 0, 0, 1};
        give(tap, probelines::tools({{{1.5, -2.25, 3}, turned, 0.75, 5}, {{}, {}, -1.0, 0}}));
        const ProbeSamples samples = fetched(tap);
        QCOMPARE(samples.size(), std::size_t(2));
        const ProbeSample& first = samples[0];
        QCOMPARE(first.frame, 7U);
        QCOMPARE(first.timeStamp, 12.5);
        QCOMPARE(first.arrival, start);
        QCOMPARE(first.tool, 0);
        QCOMPARE(first.reference, -1);
        QVERIFY(first.referenceTracked);
        QVERIFY(first.tracked);
        QCOMPARE(first.quality, 0.75);
        QCOMPARE(first.buttons, 5U);
        QCOMPARE(first.buttonCount, 3);
        QCOMPARE(first.tipRadius, 1.5);
        QVERIFY(first.position == (std::array<double, 3>{1.5, -2.25, 3}));
        QVERIFY(first.rotation == turned);
        QCOMPARE(samples[1].tool, 1);
        QVERIFY(!samples[1].tracked);
    }

    void bothFormatsAreRead() {
        LineTap tap;
        tap.start();
        give(tap, probelines::oldTools({{{1, 2, 3}, probelines::unturned, 1.0, 2}}));
        const ProbeSamples samples = fetched(tap);
        QCOMPARE(samples.size(), std::size_t(1));
        QCOMPARE(samples[0].position[2], 3.0);
        QCOMPARE(samples[0].buttons, 2U);
        QCOMPARE(samples[0].tipRadius, 0.0);
    }

    void aFrameInBothFormatsCountsOnce_data() {
        QTest::addColumn<bool>("isTold");
        QTest::newRow("with number and time") << true;
        QTest::newRow("tools alone") << false;
    }
    void aFrameInBothFormatsCountsOnce() {
        QFETCH(bool, isTold);
        LineTap tap;
        tap.start();
        for (unsigned number = 1; number <= 3; ++number) {
            if (isTold) {
                give(tap, probelines::frame(number));
                give(tap, probelines::time(number));
            }
            give(tap, probelines::oldTools({{}}));
            give(tap, probelines::tools({{}}));
        }
        QCOMPARE(fetched(tap).size(), std::size_t(3));
    }

    void linesOfBothFormatsFarApartAreTwoFrames() {
        LineTap tap;
        tap.start();
        give(tap, probelines::oldTools({{}}), start);
        give(tap, probelines::tools({{}}), start + 2.0 * LineTap::frameTime);
        QCOMPARE(fetched(tap).size(), std::size_t(2));
    }

    void aFrameWaitsForItsReferences() {
        LineTap tap;
        tap.setReferences({0});
        tap.start();
        give(tap, probelines::frame(1));
        give(tap, probelines::tools({{}}));
        QVERIFY(fetched(tap, start).empty());
        give(tap, probelines::references({-1.0}));
        give(tap, probelines::frame(2));
        const ProbeSamples samples = fetched(tap, start);
        QCOMPARE(samples.size(), std::size_t(1));
        QCOMPARE(samples[0].reference, 0);
        QVERIFY(!samples[0].referenceTracked);
    }

    void theLastFrameIsCompleteAfterAMoment() {
        LineTap tap;
        tap.start();
        give(tap, probelines::tools({{}}));
        QVERIFY(fetched(tap, start + LineTap::frameTime / 2).empty());
        QCOMPARE(fetched(tap, start + 2.0 * LineTap::frameTime).size(), std::size_t(1));
    }

    void referencesAreBelievedWhenToldLately_data() {
        QTest::addColumn<QList<double>>("qualities");
        QTest::addColumn<double>("age");
        QTest::addColumn<bool>("tracked");
        QTest::newRow("tracked") << QList<double>{1.0} << 0.0 << true;
        QTest::newRow("lost") << QList<double>{-1.0} << 0.0 << false;
        QTest::newRow("not in the table") << QList<double>{} << 0.0 << false;
        QTest::newRow("a while ago") << QList<double>{1.0} << 0.4 << true;
        QTest::newRow("too long ago") << QList<double>{1.0} << 0.6 << false;
        QTest::newRow("never told") << QList<double>() << -1.0 << false;
    }
    void referencesAreBelievedWhenToldLately() {
        QFETCH(QList<double>, qualities);
        QFETCH(double, age);
        LineTap tap;
        tap.setReferences({0, -1});
        tap.start();
        if (age >= 0.0) {
            give(tap, probelines::references({qualities.begin(), qualities.end()}), start - age);
        }
        give(tap, probelines::tools({{}, {}}));
        const ProbeSamples samples = fetched(tap);
        QTEST(samples[0].referenceTracked, "tracked");
        QVERIFY(samples[1].referenceTracked); // has none
    }

    void theClockFollowsTheControllers_data() {
        QTest::addColumn<double>("stampStep");
        QTest::addColumn<double>("arrivalStep");
        QTest::addColumn<double>("step");
        QTest::newRow("late arrival") << 0.01 << 0.05 << 0.01;
        QTest::newRow("gap") << 9.0 << 9.1 << 9.0;
        QTest::newRow("overtaken") << -0.01 << 0.002 << -0.01;
        QTest::newRow("set back") << -86400.0 << 0.01 << 0.01;
        QTest::newRow("set forward") << 3600.0 << 0.01 << 0.01;
        QTest::newRow("stands still") << 0.0 << 0.01 << 0.01;
    }
    void theClockFollowsTheControllers() {
        QFETCH(double, stampStep);
        QFETCH(double, arrivalStep);
        QFETCH(double, step);
        LineTap tap;
        tap.start();
        give(tap, probelines::frame(1));
        give(tap, probelines::time(86400.0));
        give(tap, probelines::tools({{}}));
        give(tap, probelines::frame(2));
        give(tap, probelines::time(86400.0 + stampStep));
        give(tap, probelines::tools({{}}), start + arrivalStep);
        const ProbeSamples samples = fetched(tap);
        QCOMPARE(samples.size(), std::size_t(2));
        QVERIFY(std::abs(samples[1].seconds - samples[0].seconds - step) < 1e-9);
    }

    void withoutTimeStampsArrivalsCount() {
        LineTap tap;
        tap.start();
        give(tap, probelines::tools({{}}), start);
        give(tap, probelines::tools({{}}), start + 0.25);
        const ProbeSamples samples = fetched(tap);
        QCOMPARE(samples.size(), std::size_t(2));
        QCOMPARE(samples[1].seconds - samples[0].seconds, 0.25);
        QCOMPARE(samples[0].timeStamp, -1.0);
    }

    void aTimeStampAloneBeginsAFrame() {
        LineTap tap;
        tap.start();
        for (int i = 0; i < 3; ++i) {
            give(tap, probelines::time(i));
            give(tap, probelines::tools({{}}), start + 10.0 * i);
        }
        const ProbeSamples samples = fetched(tap);
        QCOMPARE(samples.size(), std::size_t(3));
        QCOMPARE(samples[2].timeStamp, 2.0);
        QCOMPARE(samples[2].seconds - samples[0].seconds, 2.0);
    }

    void malformedLinesAreRejected_data() {
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("no tool") << QByteArray("6dmt2 1 1 [0");
        row("wrong id", QByteArray("6dmt2 1 1 [1 1 0 1][0 0 0][1 0 0 0 1 0 0 0 1][][0 0 0 0 0 0]"));
        QTest::newRow("too many") << QByteArray("6dmt2 70000 70000");
        QTest::newRow("too long") << QByteArray("6dmt2 0 0").leftJustified(65536, ' ');
    }
    void malformedLinesAreRejected() {
        QFETCH(QByteArray, line);
        LineTap tap;
        tap.start();
        QCOMPARE(tap.take(line.constData(), start), -1);
        QVERIFY(fetched(tap).empty());
    }

    void noLineIsRejected() {
        LineTap tap;
        tap.start();
        QCOMPARE(tap.take(nullptr), -1);
    }

    void linesOfOtherKindsTellNothing() {
        LineTap tap;
        tap.start();
        for (const char* line : {"", "6dmtx 1", "6d 0", "hello"}) {
            QCOMPARE(tap.take(line), 0);
        }
        QVERIFY(fetched(tap).empty());
    }

    // What was told before is not told again as if it were new.
    void aWordAloneTellsNothing() {
        LineTap tap;
        tap.setReferences({0});
        tap.start();
        give(tap, probelines::tools({{}}));
        for (const char* word : {"6dmt2", "6dmt", "6dmtr", "fr", "ts"}) {
            QCOMPARE(tap.take(word, start + 1.0), 0);
        }
        const ProbeSamples samples = fetched(tap);
        QCOMPARE(samples.size(), std::size_t(1));
        QVERIFY(!samples[0].referenceTracked);
    }

    void numbersThatAreNoneAreNotTracked() {
        LineTap tap;
        tap.start();
        const double nan = std::numeric_limits<double>::quiet_NaN();
        const double inf = std::numeric_limits<double>::infinity();
        std::array<double, 9> rotation = probelines::unturned;
        rotation[4] = inf;
        give(tap, probelines::tools({{{nan, 0, 0}}, {{}, rotation}, {{}, {}, nan}, {}}));
        const ProbeSamples samples = fetched(tap);
        QCOMPARE(samples.size(), std::size_t(4));
        QVERIFY(!samples[0].tracked && !samples[1].tracked && !samples[2].tracked);
        QVERIFY(samples[3].tracked);
    }

    void aLineWithTooManyToolsGivesTheFirstOnes() {
        LineTap tap;
        tap.start();
        give(tap, probelines::tools(std::vector<probelines::Tool>(300)));
        QCOMPARE(fetched(tap).size(), std::size_t(LineTap::mostTools));
    }

    void theOldestIsOverwrittenWhenNobodyFetches() {
        LineTap tap;
        tap.start();
        const unsigned surplus = 100;
        const auto last = static_cast<unsigned>(LineTap::mostSamples) + surplus;
        for (unsigned number = 1; number <= last; ++number) {
            give(tap, probelines::frame(number));
            give(tap, probelines::tools({{}}));
        }
        LineTap::Fetched result;
        tap.fetch(result, start + 1.0);
        QCOMPARE(result.samples.size(), LineTap::mostSamples);
        QCOMPARE(result.overwritten, std::size_t(surplus));
        QCOMPARE(result.samples.front().frame, surplus + 1);
        QCOMPARE(result.samples.back().frame, last);
        tap.fetch(result, start + 1.0);
        QVERIFY(result.samples.empty());
        QCOMPARE(result.overwritten, std::size_t(0));
    }

    void startingAnewForgetsWhatWasBefore() {
        LineTap tap;
        tap.start();
        give(tap, probelines::frame(1));
        give(tap, probelines::tools({{}}));
        tap.start(); // goes on
        give(tap, probelines::frame(2));
        QCOMPARE(fetched(tap).size(), std::size_t(1));
        give(tap, probelines::tools({{}}));
        give(tap, probelines::frame(3));
        tap.stop();
        tap.start();
        QVERIFY(fetched(tap).empty());
    }

    // What the thread sanitizer looks at.
    void linesComeFromManyThreadsWhileSamplesAreFetched() {
        LineTap tap;
        tap.start();
        constexpr int threads = 4;
        constexpr int frames = 2000;
        std::atomic<int> taken{0};
        std::vector<std::thread> feeders;
        for (int i = 0; i < threads; ++i) {
            feeders.emplace_back([&tap, &taken] {
                const std::string line = probelines::tools({{}, {}});
                for (int n = 0; n < frames; ++n) {
                    taken += tap.take(line.c_str()) == 0 ? 1 : 0;
                    tap.take("6dmtr 1 1 [0 1][0 0 0][1 0 0 0 1 0 0 0 1]");
                }
            });
        }
        std::size_t count = 0;
        LineTap::Fetched result;
        const auto collect = [&](double time) {
            tap.fetch(result, time);
            count += result.samples.size() + result.overwritten;
        };
        while (taken < threads * frames) {
            collect(LineTap::now());
            tap.setReferences({-1, 0});
        }
        for (std::thread& feeder : feeders) {
            feeder.join();
        }
        collect(LineTap::now() + 1.0);
        QCOMPARE(count, std::size_t(2) * threads * frames);
    }
};

QTEST_GUILESS_MAIN(TestLineTap)
#include "test_linetap.moc"
