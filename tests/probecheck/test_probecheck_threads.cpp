#include "tests/probecheck/tipcheck/tipcheckfixture.h"

#include <QStandardPaths>

#include <atomic>
#include <random>
#include <thread>

namespace {

constexpr int patienceMs = 20000;
constexpr int stormThreads = 3;
constexpr int stormSteps = 400;

// A host with both docks in sight, that calls from any of its threads.
class Docks : public TipCheckFixture {
public:
    Docks() {
        points = qobject_cast<QDockWidget*>(module.get_gui_elements().at(1)->content);
        window.addDockWidget(Qt::RightDockWidgetArea, points);
        points->show();
        requester = controller.host.measurementRequesters().at(0);
    }

    bool takesLines() { return requester->set_ascii_data("fr", "fr 1") == 0; }
    QString pointsWords() { return points->findChild<QLabel*>("label_state")->text(); }
    bool followMeasurement() {
        return QTest::qWaitFor(
            [this] {
                return start()->isEnabled() && pointsWords() != "No measurement is running.";
            },
            patienceMs);
    }
    bool followEnd() {
        return QTest::qWaitFor(
            [this] {
                return words().startsWith("No tracking runs.") &&
                       pointsWords() == "No measurement is running.";
            },
            patienceMs);
    }

    QPointer<QDockWidget> points;
    Requester* requester = nullptr;
};

void inThread(const std::function<void()>& work) {
    std::thread(work).join();
}

// One of the host's threads: starts, stops and lines in any order.
void storm(Requester& requester, unsigned seed, std::atomic<int>& wrongResults) {
    std::mt19937 random(seed);
    const std::string lines[] = {probelines::frame(seed),       probelines::time(100.0),
                                 probelines::tools({{}, {}}),   probelines::oldTools({{}}),
                                 probelines::references({1.0}), "6dmt2 2 2 [0 1"};
    for (int step = 0; step < stormSteps; ++step) {
        const auto dice = random() % 20;
        if (dice == 0) {
            requester.set_mea_stopped();
        } else if (dice < 3) {
            requester.set_mea_started();
        } else {
            const int result =
                requester.set_ascii_data("6dmt2", lines[random() % std::size(lines)].c_str());
            wrongResults += result > 0 || result < -2 ? 1 : 0;
            std::this_thread::yield();
        }
    }
}

} // namespace

/// The host's threads in front of both docks; what the thread sanitizer looks at.
class TestProbeCheckThreads : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }

    void aStartFromAnotherThreadIsFollowed() {
        Docks f;
        inThread([&f] { f.controller.host.startMeasurement(); });
        QVERIFY(!f.takesLines());
        QVERIFY(f.followMeasurement());
        QVERIFY(f.takesLines());
    }

    void aStopFromAnotherThreadDoesNotWaitForTheGui() {
        Docks f;
        f.controller.host.startMeasurement();
        QVERIFY(f.followMeasurement());
        inThread([&f] { f.controller.host.stopMeasurement(); }); // the GUI thread waits here
        QVERIFY(!f.takesLines());
        QVERIFY(f.followEnd());
    }

    void aStopFromAnotherThreadCancelsAStart() {
        Docks f;
        QVERIFY(QTest::qWaitFor([&f] { return f.pointsWords() == "No measurement is running."; },
                                patienceMs));
        inThread([&f] {
            f.controller.host.startMeasurement();
            f.controller.host.stopMeasurement();
        });
        QVERIFY(f.followEnd());
        QVERIFY(!f.takesLines());
        QVERIFY(!f.start()->isEnabled());
    }

    void linesDoNotWaitForTheGui() {
        Docks f;
        f.controller.host.startMeasurement();
        QVERIFY(f.followMeasurement());
        f.start()->click();
        constexpr int frames = 10000;
        std::atomic<int> taken{0};
        inThread([&] { // the GUI thread waits here
            const std::string tools = probelines::tools({{}});
            for (unsigned frame = 1; frame <= frames; ++frame) {
                f.requester->set_ascii_data("fr", probelines::frame(frame).c_str());
                f.requester->set_ascii_data("ts", probelines::time(100.0 + frame * 1e-4).c_str());
                taken += f.requester->set_ascii_data("6dmt2", tools.c_str()) == 0 ? 1 : 0;
            }
        });
        QCOMPARE(taken.load(), frames);
        // A second of frames, thinned out to those that tell something.
        const auto* const figures = f.find<QLabel>("label_figures");
        QTRY_VERIFY_WITH_TIMEOUT(figures->text().section(' ', 2, 2).toInt() > 200, patienceMs);
        f.stop()->click();
        QVERIFY(f.words().startsWith("No result: "));
    }

    void startsStopsAndLinesFromManyThreadsEndWell() {
        Docks f;
        std::atomic<int> running{stormThreads};
        std::atomic<int> wrongResults{0};
        std::vector<std::thread> threads;
        for (unsigned i = 0; i < stormThreads; ++i) {
            threads.emplace_back([&, i] {
                storm(*f.requester, 100U + i, wrongResults);
                --running;
            });
        }
        while (running > 0) {
            f.start()->click();
            QTest::keyClick(f.points->widget(), Qt::Key_Space);
            f.dock->setVisible(!f.dock->isVisible());
            QCoreApplication::processEvents();
            f.stop()->click();
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        QCOMPARE(wrongResults.load(), 0);

        f.dock->show();
        f.controller.host.stopMeasurement();
        QVERIFY(!f.takesLines());
        QTRY_VERIFY_WITH_TIMEOUT(!f.start()->isEnabled(), patienceMs);
        f.controller.host.startMeasurement();
        QVERIFY(f.followMeasurement());
        QVERIFY(f.takesLines());
        Pivoting tool;
        f.start()->click();
        f.deliver(tool, 5.0);
        QVERIFY(f.wordsBecome("Go on. So far: 0."));
    }

    void theEndOfTheModuleWithNewsOnTheirWayIsClean() {
        Docks f;
        inThread([&f] {
            f.controller.host.startMeasurement();
            f.controller.host.stopMeasurement();
        });
        f.module.exit_module();
        QCoreApplication::processEvents();
        QVERIFY(f.controller.host.measurementRequesters().empty());
    }
};

QTEST_MAIN(TestProbeCheckThreads)
#include "test_probecheck_threads.moc"
