#include "workbench/outlets/sending/boundedqueue.h"
#include "workbench/outlets/sending/outlethub.h"

#include <QElapsedTimer>
#include <QtTest>

#include <atomic>
#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>

using workbench::BoundedQueue;
using workbench::FrameBuffer;
using workbench::ModuleResult;
using workbench::Outlet;
using workbench::OutletChannel;
using workbench::OutletHub;
using workbench::OutletUrl;
using workbench::OutletWord;
using workbench::TrackedFrame;

namespace {

constexpr int patience = 20000;
constexpr const char* twoTools = "6dmt 2 [0 1.0 0][1 2 3][1 0 0 0 1 0 0 0 1]"
                                 "[1 1.0 0][4 5 6][1 0 0 0 1 0 0 0 1]";

/// What channels of a test have in common with it.
struct Ledger {
    std::mutex mutex;
    std::condition_variable wake;
    std::vector<TrackedFrame> frames;
    std::vector<ModuleResult> results;
    std::size_t kept = 0; ///< results, when keep() was called
    int closed = 0;
    bool isHeld = false; ///< send() waits
    bool keepsResults = false;
    OutletChannel::Delivery delivery = OutletChannel::Delivery::Sent;

    template <typename Question>
    auto ask(Question question) {
        const std::lock_guard<std::mutex> lock(mutex);
        return question();
    }
    std::size_t frameCount() {
        return ask([this] { return frames.size(); });
    }
    std::size_t resultCount() {
        return ask([this] { return results.size(); });
    }
    void hold(bool on) {
        const std::lock_guard<std::mutex> lock(mutex);
        isHeld = on;
        wake.notify_all();
    }
};

class LedgerChannel : public OutletChannel {
public:
    LedgerChannel(std::shared_ptr<Ledger> ledger, std::chrono::milliseconds interval = {},
                  bool takesResults = true)
        : m_ledger(std::move(ledger))
        , m_interval(interval)
        , m_takesResults(takesResults) {}

    std::chrono::milliseconds frameInterval() const override { return m_interval; }
    bool takesResults() const override { return m_takesResults; }
    bool keepsResults() const override { return m_ledger->keepsResults; }
    void tend() override { m_tended = true; }
    OutletWord word() const override {
        OutletWord word;
        word.state = m_tended ? OutletWord::State::Connected : OutletWord::State::Waiting;
        word.text = QStringLiteral("fine");
        return word;
    }
    Delivery send(const TrackedFrame& frame) override {
        std::unique_lock<std::mutex> lock(m_ledger->mutex);
        m_ledger->wake.wait(lock, [this] { return !m_ledger->isHeld; });
        m_ledger->frames.push_back(frame);
        return m_ledger->delivery;
    }
    void send(const ModuleResult& result) override {
        std::unique_lock<std::mutex> lock(m_ledger->mutex);
        if (m_ledger->keepsResults) { // as a disk does it, which may hang
            m_ledger->wake.wait(lock, [this] { return !m_ledger->isHeld; });
            lock.unlock();
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
            lock.lock();
        }
        m_ledger->results.push_back(result);
    }
    void keep() override {
        const std::lock_guard<std::mutex> lock(m_ledger->mutex);
        m_ledger->kept = m_ledger->results.size();
    }
    void close() override {
        const std::lock_guard<std::mutex> lock(m_ledger->mutex);
        ++m_ledger->closed;
    }

private:
    const std::shared_ptr<Ledger> m_ledger;
    const std::chrono::milliseconds m_interval;
    const bool m_takesResults;
    bool m_tended = false;
};

OutletUrl url(const char* text) {
    OutletUrl result;
    result.text = QLatin1String(text);
    return result;
}

std::shared_ptr<const TrackedFrame> frameOf(unsigned counter, std::size_t bodies = 0) {
    auto frame = std::make_shared<TrackedFrame>();
    frame->counter = counter;
    frame->bodies.resize(bodies);
    return frame;
}

/// A hub whose channels write into ledgers, one for each URL.
struct Rig {
    std::map<QString, std::shared_ptr<Ledger>> ledgers;
    OutletHub hub{[this](const OutletUrl& where, QString* error) -> std::unique_ptr<OutletChannel> {
        if (where.text == QLatin1String("bad")) {
            *error = QStringLiteral("not that one");
            return nullptr;
        }
        ledgers[where.text] = std::make_shared<Ledger>();
        return std::make_unique<LedgerChannel>(ledgers[where.text]);
    }};

    std::shared_ptr<Ledger> add(const char* text) {
        QString error;
        if (!hub.add(url(text), &error)) {
            qFatal("%s", qPrintable(error));
        }
        return ledgers[QLatin1String(text)];
    }
};

} // namespace

class TestOutletHub : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theOldestGivesWay() {
        BoundedQueue<int> queue(10);
        QCOMPARE(queue.push(1, 4), std::size_t(0));
        QCOMPARE(queue.push(2, 4), std::size_t(0));
        QCOMPARE(queue.push(3, 4), std::size_t(1));
        QCOMPARE(queue.push(4, 10), std::size_t(2));
        QCOMPARE(queue.push(5, 11), std::size_t(1)); // no room for it at all: the rest stays
        QVERIFY(queue.pop() == 4 && queue.pop() == std::nullopt && queue.isEmpty());
        QCOMPARE(queue.push(6, 10), std::size_t(0));
    }

    void theBufferKeepsWantedLinesInTheirFrames() {
        FrameBuffer buffer;
        buffer.add({"fr 1", "6d 0", std::string_view("ts 1\0x", 6)}, 5);
        buffer.add({"6d 0"}, 6);
        buffer.add({"fr 2"}, 7);
        FrameBuffer::Batch batch;
        buffer.take(batch);
        QCOMPARE(batch.text, std::string("fr 1\0ts 1\0fr 2\0", 15));
        QCOMPARE(batch.frames.size(), std::size_t(2));
        QCOMPARE(batch.frames[0].arrival, kestrel_wire::UtcMilliseconds(5));
        QCOMPARE(batch.frames[0].end, std::size_t(10));
        QCOMPARE(batch.frames[1].arrival, kestrel_wire::UtcMilliseconds(7));
        QVERIFY(!batch.isEnd);
        buffer.end();
        buffer.take(batch);
        QVERIFY(batch.isEnd && batch.frames.empty() && batch.text.empty());
        QCOMPARE(buffer.dropped(), std::uint64_t(0));
    }

    void theBufferDropsWhatDoesNotFit() {
        FrameBuffer buffer(10);
        buffer.add({"fr 1"}, 1);
        buffer.add({"fr 2"}, 1);
        buffer.add({"fr 3"}, 1);
        QCOMPARE(buffer.dropped(), std::uint64_t(1));
        FrameBuffer::Batch batch;
        buffer.take(batch);
        QCOMPARE(batch.frames.size(), std::size_t(2));
        buffer.add({"fr 4"}, 1);
        buffer.take(batch);
        QCOMPARE(batch.text, std::string("fr 4\0", 5));
    }

    void aFrameWakesWhoeverSleeps() {
        FrameBuffer buffer(FrameBuffer::usualBytes, std::chrono::milliseconds(0));
        std::atomic<std::size_t> taken{0};
        std::thread taker([&] {
            FrameBuffer::Batch batch;
            do {
                buffer.take(batch);
                taken += batch.frames.size();
            } while (!batch.isEnd);
        });
        for (std::size_t i = 1; i <= 20; ++i) {
            buffer.add({"fr 1"}, 1);
            if (!QTest::qWaitFor([&] { return taken == i; }, patience)) {
                break; // the count below tells
            }
        }
        buffer.end();
        taker.join();
        QCOMPARE(taken.load(), std::size_t(20));
    }

    void anOutletGetsAllFramesInOrder() {
        const auto ledger = std::make_shared<Ledger>();
        Outlet outlet(std::make_unique<LedgerChannel>(ledger));
        for (unsigned i = 0; i < 500; ++i) {
            outlet.add(frameOf(i));
        }
        QTRY_COMPARE_WITH_TIMEOUT(ledger->frameCount(), std::size_t(500), patience);
        QTRY_COMPARE_WITH_TIMEOUT(outlet.status().sentFrames, quint64(500), patience);
        QCOMPARE(outlet.status().droppedFrames, quint64(0));
        ledger->ask([&] {
            for (unsigned i = 0; i < 500; ++i) {
                QCOMPARE(ledger->frames[i].counter.value(), i);
            }
        });
        QCOMPARE(outlet.status().word.text, QStringLiteral("fine"));
        QVERIFY(outlet.status().word.state == OutletWord::State::Connected);
    }

    void aBusyOutletLosesTheOldestAndCountsThem() {
        const auto ledger = std::make_shared<Ledger>();
        Outlet outlet(std::make_unique<LedgerChannel>(ledger), 40); // ten frames of three bodies
        ledger->hold(true);
        outlet.add(frameOf(0, 3));
        // The first one may be taken out meanwhile or not: what counts is the sum.
        for (unsigned i = 1; i <= 100; ++i) {
            outlet.add(frameOf(i, 3));
        }
        const quint64 dropped = outlet.status().droppedFrames;
        QVERIFY2(dropped >= 80 && dropped <= 91, qPrintable(QString::number(dropped)));
        ledger->hold(false);
        QTRY_COMPARE_WITH_TIMEOUT(outlet.status().sentFrames + outlet.status().droppedFrames,
                                  quint64(101), patience);
        QCOMPARE(ledger->ask([&] { return ledger->frames.back().counter.value(); }), 100U);
    }

    void ofAReplayNothingGoesOutAndNothingCountsAsLost() {
        Rig rig;
        const auto ledger = rig.add("a");
        rig.hub.setReplay(true);
        for (int i = 0; i < 100; ++i) {
            rig.hub.frame({"fr 7", twoTools});
            rig.hub.result(QStringLiteral("PROBE"), QStringLiteral("{\"old\":1}"));
        }
        rig.hub.setReplay(false);
        rig.hub.frame({"fr 8", twoTools});
        rig.hub.result(QStringLiteral("PROBE"), QStringLiteral("{\"new\":1}"));
        QTRY_COMPARE_WITH_TIMEOUT(ledger->frameCount(), std::size_t(1), patience);
        QTRY_COMPARE_WITH_TIMEOUT(ledger->resultCount(), std::size_t(1), patience);
        ledger->ask([&] {
            QCOMPARE(ledger->frames[0].counter.value(), 8U);
            QCOMPARE(ledger->results[0].text, QStringLiteral("{\"new\":1}"));
            QCOMPARE(ledger->closed, 0);
        });
        const workbench::OutletStatus status = rig.hub.entries().front().status;
        QCOMPARE(status.droppedFrames, quint64(0));
        QCOMPARE(status.word.droppedResults, quint64(0));
    }

    void addingNeverWaitsForABusyOutlet() {
        const auto ledger = std::make_shared<Ledger>();
        Outlet outlet(std::make_unique<LedgerChannel>(ledger));
        ledger->hold(true);
        outlet.add(frameOf(0));
        QElapsedTimer timer;
        timer.start();
        for (unsigned i = 0; i < 1000; ++i) {
            outlet.add(frameOf(i));
        }
        static_cast<void>(outlet.status());
        QVERIFY(timer.elapsed() < patience / 2);
        ledger->hold(false);
    }

    void whatCannotBeSentIsDroppedAndWhatNobodyWantsIsNot() {
        for (const auto delivery :
             {OutletChannel::Delivery::Dropped, OutletChannel::Delivery::NobodyThere}) {
            const auto ledger = std::make_shared<Ledger>();
            ledger->delivery = delivery;
            Outlet outlet(std::make_unique<LedgerChannel>(ledger));
            outlet.add(frameOf(1));
            QTRY_COMPARE_WITH_TIMEOUT(ledger->frameCount(), std::size_t(1), patience);
            outlet.end();
            QVERIFY(outlet.waitForEnd(std::chrono::steady_clock::now() +
                                      std::chrono::milliseconds(patience)));
            QCOMPARE(outlet.status().sentFrames, quint64(0));
            QCOMPARE(outlet.status().droppedFrames,
                     quint64(delivery == OutletChannel::Delivery::Dropped ? 1 : 0));
        }
    }

    void aThinnedOutletGetsTheLatestAndMissesNone() {
        const auto ledger = std::make_shared<Ledger>();
        constexpr std::chrono::milliseconds interval(100);
        QElapsedTimer timer;
        timer.start();
        Outlet outlet(std::make_unique<LedgerChannel>(ledger, interval));
        unsigned counter = 0;
        QVERIFY(QTest::qWaitFor(
            [&] {
                outlet.add(frameOf(++counter));
                return ledger->frameCount() >= 4;
            },
            patience));
        outlet.add(frameOf(++counter));
        QTRY_COMPARE_WITH_TIMEOUT(
            ledger->ask([&] { return ledger->frames.back().counter.value(); }), counter, patience);
        const auto most = static_cast<std::size_t>(timer.elapsed() / interval.count()) + 1;
        QVERIFY(ledger->frameCount() <= most);
        QCOMPARE(outlet.status().droppedFrames, quint64(0));
    }

    void resultsReachTheChannelEvenAtTheEnd() {
        const auto ledger = std::make_shared<Ledger>();
        {
            Outlet outlet(std::make_unique<LedgerChannel>(ledger));
            outlet.add(ModuleResult{QStringLiteral("A"), QStringLiteral("{}"), 1});
            outlet.add(ModuleResult{QStringLiteral("B"), QStringLiteral("{}"), 2});
            outlet.end();
            outlet.add(ModuleResult{QStringLiteral("late"), QStringLiteral("{}"), 3});
            QVERIFY(outlet.waitForEnd(std::chrono::steady_clock::now() +
                                      std::chrono::milliseconds(patience)));
            QVERIFY(outlet.isOver());
        }
        QCOMPARE(ledger->resultCount(), std::size_t(2));
        QCOMPARE(ledger->results[1].source, QStringLiteral("B"));
        QCOMPARE(ledger->closed, 1);
    }

    void whatIsKeptIsKeptBeforeOneGoesOn() {
        const auto ledger = std::make_shared<Ledger>();
        ledger->keepsResults = true;
        Outlet outlet(std::make_unique<LedgerChannel>(ledger));
        for (std::size_t i = 1; i <= 20; ++i) {
            outlet.add(ModuleResult{QStringLiteral("A"), QStringLiteral("{}"), 1});
            outlet.waitForResults(std::chrono::steady_clock::now() +
                                  std::chrono::milliseconds(patience));
            QCOMPARE(ledger->resultCount(), i);
            QCOMPARE(ledger->ask([&] { return ledger->kept; }), i);
        }
    }

    void aDiskThatHangsIsWaitedForOnce() {
        const auto ledger = std::make_shared<Ledger>();
        ledger->keepsResults = true;
        Outlet outlet(std::make_unique<LedgerChannel>(ledger));
        ledger->hold(true);
        const auto add = [&outlet](int patienceMs) {
            QElapsedTimer timer;
            timer.start();
            outlet.add(ModuleResult{QStringLiteral("A"), QStringLiteral("{}"), 1});
            outlet.waitForResults(std::chrono::steady_clock::now() +
                                  std::chrono::milliseconds(patienceMs));
            return timer.elapsed();
        };
        QVERIFY(add(10) >= 10);
        QVERIFY(add(patience) < patience / 2);
        ledger->hold(false);
        QTRY_COMPARE_WITH_TIMEOUT(ledger->resultCount(), std::size_t(2), patience);
        QVERIFY(QTest::qWaitFor(
            [&] { // it has caught up and is waited for again
                const std::size_t before = ledger->resultCount();
                add(patience);
                return ledger->resultCount() == before + 1;
            },
            patience));
    }

    void whoWantsNoResultsGetsNone() {
        const auto ledger = std::make_shared<Ledger>();
        Outlet outlet(std::make_unique<LedgerChannel>(ledger, std::chrono::milliseconds(0), false));
        outlet.add(ModuleResult{QStringLiteral("A"), QStringLiteral("{}"), 1});
        outlet.add(frameOf(1));
        QTRY_COMPARE_WITH_TIMEOUT(ledger->frameCount(), std::size_t(1), patience);
        QCOMPARE(ledger->resultCount(), std::size_t(0));
    }

    void anOutletThatHangsIsLeftToItself() {
        const auto ledger = std::make_shared<Ledger>();
        ledger->hold(true);
        QElapsedTimer timer;
        {
            Outlet outlet(std::make_unique<LedgerChannel>(ledger));
            outlet.add(frameOf(1));
            QTest::qWait(0);
            timer.start();
        }
        QVERIFY(timer.elapsed() < patience / 2);
        ledger->hold(false);
        QTRY_COMPARE_WITH_TIMEOUT(ledger->ask([&] { return ledger->closed; }), 1, patience);
    }

    void aResultIsWaitingWhileTheChannelIsBeingGivenIt() {
        const auto ledger = std::make_shared<Ledger>();
        ledger->keepsResults = true;
        ledger->hold(true);
        Outlet outlet(std::make_unique<LedgerChannel>(ledger));
        outlet.add(ModuleResult{});
        const auto isTaken = [&] { return outlet.status().word.waitingResults != 1; };
        QVERIFY(!QTest::qWaitFor(isTaken, 200));
        ledger->hold(false);
        QTRY_COMPARE_WITH_TIMEOUT(outlet.status().word.waitingResults, quint64(0), patience);
    }

    void everyOutletGetsFramesAndResults() {
        Rig rig;
        const auto first = rig.add("udp://a");
        const auto second = rig.add("udp://b");
        rig.hub.setReferences({1, 0});
        rig.hub.frame({"fr 1", "ts 2.5", twoTools});
        rig.hub.frame({"fr 2", "gl 0"});
        rig.hub.result(QStringLiteral("PROBE"), QStringLiteral("{\"a\":1}"));
        for (const auto& ledger : {first, second}) {
            QTRY_COMPARE_WITH_TIMEOUT(ledger->frameCount(), std::size_t(2), patience);
            QTRY_COMPARE_WITH_TIMEOUT(ledger->resultCount(), std::size_t(1), patience);
            const TrackedFrame frame = ledger->ask([&] { return ledger->frames[0]; });
            QVERIFY(frame.counter == 1U && frame.seconds == 2.5);
            QCOMPARE(frame.bodies.size(), std::size_t(2));
            QVERIFY(frame.bodies[0].reference == 1 && frame.bodies[1].reference == 0);
            QCOMPARE(frame.bodies[1].position[2], 6.0);
            QVERIFY(frame.arrival > 0);
            QCOMPARE(ledger->ask([&] { return ledger->frames[1].bodies.size(); }), std::size_t(0));
            QCOMPARE(ledger->results[0].text, QStringLiteral("{\"a\":1}"));
        }
    }

    void theSamePlaceIsTakenOnce() {
        Rig rig;
        rig.add("udp://a");
        QString error;
        QVERIFY(!rig.hub.add(url("udp://a"), &error));
        QCOMPARE(error, QStringLiteral("data go there already"));
        QVERIFY(!rig.hub.add(url("bad"), &error));
        QCOMPARE(error, QStringLiteral("not that one"));
        QCOMPARE(rig.hub.entries().size(), std::size_t(1));
    }

    void aRemovedOutletGetsNothingMoreAndTakesLeave() {
        Rig rig;
        const auto first = rig.add("udp://a");
        const auto second = rig.add("udp://b");
        QVERIFY(rig.hub.remove(QStringLiteral("udp://a")));
        QVERIFY(!rig.hub.remove(QStringLiteral("udp://a")));
        QTRY_COMPARE_WITH_TIMEOUT(first->ask([&] { return first->closed; }), 1, patience);
        rig.hub.frame({"fr 1"});
        QTRY_COMPARE_WITH_TIMEOUT(second->frameCount(), std::size_t(1), patience);
        QCOMPARE(first->frameCount(), std::size_t(0));
        const auto entries = rig.hub.entries();
        QCOMPARE(entries.size(), std::size_t(1));
        QCOMPARE(entries[0].url.text, QStringLiteral("udp://b"));
        rig.add("udp://a"); // again
    }

    void theHubsEndIsTheOutletsEnd() {
        std::shared_ptr<Ledger> ledger;
        {
            Rig rig;
            ledger = rig.add("udp://a");
        }
        QCOMPARE(ledger->ask([&] { return ledger->closed; }), 1);
    }
};

QTEST_GUILESS_MAIN(TestOutletHub)
#include "test_outlethub.moc"
