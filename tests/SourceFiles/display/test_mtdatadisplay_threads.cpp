#include "tests/SourceFiles/display/displayfixture.h"

#include <QThread>
#include <QtTest>

#include <atomic>
#include <random>
#include <thread>

namespace {

constexpr int patienceMs = 20000;
constexpr int stormThreads = 3;
constexpr int stormSteps = 400;

// Every number of the line is `value`: a torn record would show.
std::string uniformLine(int tools, double value) {
    return toolLine(
        std::vector<Tool>(static_cast<std::size_t>(tools), toolAt(value, value, value)));
}

void inStdThread(const std::function<void()>& work) {
    std::thread(work).join();
}

// A QThread without an event loop.
void inQThread(const std::function<void()>& work) {
    const std::unique_ptr<QThread> thread(QThread::create(work));
    thread->start();
    thread->wait();
}

using Runner = void (*)(const std::function<void()>&);

void runners() {
    QTest::addColumn<Runner>("run");
    QTest::newRow("std::thread") << Runner(inStdThread);
    QTest::newRow("QThread") << Runner(inQThread);
}

// One of the host's threads: starts, stops and lines in any order.
void storm(MtDataDisplay& display, unsigned seed, std::atomic<int>& wrongResults) {
    std::mt19937 random(seed);
    const std::string linesOfStorm[] = {uniformLine(1, 1.0),
                                        uniformLine(3, 2.0),
                                        uniformLine(0, 3.0),
                                        "6dmt2 2 2 [0 1",
                                        referenceLine(std::vector<Pose>(2)),
                                        std::string(20000, 'x')};
    for (int step = 0; step < stormSteps; ++step) {
        const auto dice = random() % 20;
        if (dice == 0) {
            display.set_mea_stopped();
        } else if (dice < 3) {
            display.set_mea_started();
        } else {
            const int result = display.set_ascii_data("6dmt2", linesOfStorm[random() % 6].c_str());
            if (result > 0 || result < -2) {
                ++wrongResults;
            }
            std::this_thread::yield();
        }
    }
}

} // namespace

Q_DECLARE_METATYPE(Runner)

class TestMtDataDisplayThreads : public QObject {
    Q_OBJECT

    static bool takesLines(MtDataDisplay& display) {
        return display.set_ascii_data("6dmt2", uniformLine(1, 1.0).c_str()) == 0;
    }

private Q_SLOTS:
    void aStartFromAnotherThreadIsTaken_data() { runners(); }
    void aStartFromAnotherThreadIsTaken() {
        QFETCH(Runner, run);
        DisplayFixture f;
        f.build();
        run([&f] { f.host.startMeasurement(); });
        QVERIFY(!takesLines(*f.display));
        QTRY_VERIFY_WITH_TIMEOUT(takesLines(*f.display), patienceMs);
        QTRY_COMPARE_WITH_TIMEOUT(f.toolTable()->rowCount(), 1, patienceMs);
    }

    void aStopFromAnotherThreadDoesNotWaitForTheGui_data() { runners(); }
    void aStopFromAnotherThreadDoesNotWaitForTheGui() {
        QFETCH(Runner, run);
        ShownFixture f({Tool()});
        run([&f] { f.host.stopMeasurement(); }); // the GUI thread waits here
        QVERIFY(!takesLines(*f.display));
        QTRY_COMPARE_WITH_TIMEOUT(f.toolTable()->rowCount(), 0, patienceMs);
    }

    void aStopFromAnotherThreadCancelsAStart() {
        DisplayFixture f;
        f.build();
        f.host.clearJournal();
        f.host.startMeasurement();
        inStdThread([&f] { f.host.stopMeasurement(); });
        inStdThread([&f] {
            f.host.startMeasurement();
            f.host.stopMeasurement();
        });
        bool later = false;
        QTimer::singleShot(50, f.display.get(), [&later] { later = true; });
        QTRY_VERIFY_WITH_TIMEOUT(later, patienceMs);
        QVERIFY(f.host.journal().empty());
        QVERIFY(!takesLines(*f.display));
    }

    void aStopOnTheGuiThreadCancelsAStartFromAnother() {
        DisplayFixture f;
        f.build();
        f.host.clearJournal();
        inStdThread([&f] { f.host.startMeasurement(); });
        f.host.stopMeasurement();
        bool later = false;
        QTimer::singleShot(50, f.display.get(), [&later] { later = true; });
        QTRY_VERIFY_WITH_TIMEOUT(later, patienceMs);
        QVERIFY(f.host.journal().empty());
    }

    void stopAndStartBackToBackRebuildAllRows_data() { runners(); }
    void stopAndStartBackToBackRebuildAllRows() {
        QFETCH(Runner, run);
        ShownFixture f({Tool()});
        QCOMPARE(f.toolTable()->item(0, 2)->text(), QString("MR1"));
        f.host.answer("measurementtool reference_of_tool b01", "b02");
        run([&f] {
            f.host.stopMeasurement();
            f.host.startMeasurement();
        });
        QTRY_VERIFY_WITH_TIMEOUT(takesLines(*f.display), patienceMs);
        QTRY_COMPARE_WITH_TIMEOUT(f.toolTable()->rowCount(), 1, patienceMs);
        QCOMPARE(f.toolTable()->item(0, 2)->text(), QString("MR2"));
    }

    void eachStartAsksTheControllerOnce() {
        DisplayFixture f;
        f.build();
        f.host.clearJournal();
        inStdThread([&f] { f.host.startMeasurement(); });
        QTRY_VERIFY_WITH_TIMEOUT(takesLines(*f.display), patienceMs);
        QCOMPARE(lines(f.host.journal()), QStringList({"get_bool measurementtool output_6dmt"}));
    }

    void deletionWithAnEventOnItsWayIsClean() {
        DisplayFixture f;
        f.build();
        inStdThread([&f] {
            f.host.stopMeasurement();
            f.host.startMeasurement();
        });
        f.display->about_to_exit();
        f.display.reset();
        QCoreApplication::processEvents();
    }

    void aRowNeverMixesTwoLines() {
        ShownFixture f;
        std::atomic<bool> go{true};
        std::thread host([&] {
            const std::string variants[] = {uniformLine(2, 1.0), uniformLine(2, 2.0),
                                            uniformLine(2, 3.0)};
            for (int i = 0; go; ++i) {
                f.display->set_ascii_data("6dmt2", variants[i % 3].c_str());
            }
        });
        QTRY_VERIFY_WITH_TIMEOUT(f.toolTable()->rowCount() == 2, patienceMs);
        int rowsSeen = 0;
        int mixed = 0;
        for (int i = 0; i < 300; ++i) {
            f.display->onUpdateDataDisplay();
            for (int row = 0; row < f.toolTable()->rowCount(); ++row) {
                const QStringList pose = f.toolPose(row);
                ++rowsSeen;
                mixed += pose[0] == pose[1] && pose[1] == pose[2] ? 0 : 1;
            }
            QCoreApplication::processEvents();
        }
        go = false;
        host.join();
        QVERIFY(rowsSeen > 0);
        QCOMPARE(mixed, 0);
    }

    void startsStopsAndLinesFromManyThreadsEndWell() {
        DisplayFixture f;
        f.build();
        f.display->show();
        std::atomic<int> running{2 * stormThreads};
        std::atomic<int> wrongResults{0};
        std::vector<std::thread> threads;
        std::vector<std::unique_ptr<QThread>> qThreads;
        for (unsigned i = 0; i < stormThreads; ++i) {
            const auto work = [&, i](unsigned seed) {
                storm(*f.display, seed + i, wrongResults);
                --running;
            };
            threads.emplace_back(work, 100U);
            qThreads.emplace_back(QThread::create(work, 200U));
            qThreads.back()->start();
        }
        while (running > 0) {
            f.display->onUpdateDataDisplay();
            QCoreApplication::processEvents();
            f.host.startMeasurement();
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        for (const auto& thread : qThreads) {
            thread->wait();
        }
        QCOMPARE(wrongResults.load(), 0);

        f.host.stopMeasurement();
        QVERIFY(!takesLines(*f.display));
        QCOMPARE(f.toolTable()->rowCount(), 0);
        QCOMPARE(f.referenceTable()->rowCount(), 0);
        f.host.startMeasurement();
        QTRY_VERIFY_WITH_TIMEOUT(takesLines(*f.display), patienceMs);
        QTRY_COMPARE_WITH_TIMEOUT(f.toolTable()->rowCount(), 1, patienceMs);
        QCOMPARE(f.row(f.toolTable(), 0).at(12), QString("1.00"));
    }
};

QTEST_MAIN(TestMtDataDisplayThreads)
#include "test_mtdatadisplay_threads.moc"
