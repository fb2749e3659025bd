#include "workbench/controller/data/requesterregistry.h"
#include "workbench/window/plot/tipfeed.h"

#include <QtTest>

#include <atomic>
#include <thread>

using workbench::RequesterRegistry;
using workbench::TipFeed;

namespace {

void deliver(RequesterRegistry& registry, std::initializer_list<const char*> lines) {
    for (const char* line : lines) {
        const std::string text(line);
        registry.deliver(text.substr(0, text.find(' ')).c_str(), line);
    }
}

constexpr const char* twoTools = "6dmt2 2 2 [0 1.0 0 1][1 2 3][1 0 0 0 1 0 0 0 1][][0 0 0 0 0 0]"
                                 " [1 -1.0 0 1][4 5 6][1 0 0 0 1 0 0 0 1][][0 0 0 0 0 0]";

} // namespace

/// How samples come from the line path.
class TestTipFeed : public QObject {
    Q_OBJECT

    RequesterRegistry m_registry;

private Q_SLOTS:
    void aSampleIsMadeOfEachFrame() {
        TipFeed feed(m_registry);
        TipFeed::Batch batch;
        deliver(m_registry, {"fr 1", "ts 1.5", twoTools});
        feed.take(batch);
        QVERIFY(batch.samples.empty() && !batch.latest); // not subscribed
        feed.setSubscribed(true);
        deliver(m_registry, {"fr 1", "ts 1.5", twoTools, "fr 2", "ts 1.6", twoTools});
        feed.take(batch);
        QCOMPARE(batch.samples.size(), std::size_t(2));
        QCOMPARE(batch.samples[0].seconds, 1.5);
        QCOMPARE(batch.samples[1].seconds, 1.6);
        QVERIFY(batch.samples[0].isSeen);
        QCOMPARE(batch.samples[0].position[2], 3.0);
        QCOMPARE(batch.latest->bodies.size(), std::size_t(2));
        feed.take(batch);
        QVERIFY(batch.samples.empty() && batch.latest);
        m_registry.notifyStopped();
        feed.take(batch);
        QVERIFY(!batch.latest);
    }

    void aHiddenToolOrNoneIsNowhere() {
        TipFeed feed(m_registry);
        feed.setSubscribed(true);
        TipFeed::Batch batch;
        feed.choose(2);
        deliver(m_registry, {"fr 1", "ts 1", twoTools});
        feed.take(batch);
        QVERIFY(batch.samples.size() == 1 && !batch.samples[0].isSeen);
        feed.choose(3);
        deliver(m_registry, {"fr 2", "ts 2", twoTools});
        feed.take(batch);
        QVERIFY(batch.samples.size() == 1 && !batch.samples[0].isSeen);
        feed.choose(1);
        deliver(m_registry, {"fr 3", "ts 3", "6dmt 1 [0 1.0 0][inf 2 3][1 0 0 0 1 0 0 0 1]"});
        feed.take(batch);
        QVERIFY(batch.samples.size() == 1 && !batch.samples[0].isSeen);
        deliver(m_registry, {"fr 4", "ts 4", "6dmt 1 [0 1.0 0][1 2"});
        feed.take(batch);
        QVERIFY(batch.samples.size() == 1 && !batch.samples[0].isSeen);
    }

    void withoutATimeStampTheArrivalCounts() {
        TipFeed feed(m_registry);
        feed.setSubscribed(true);
        TipFeed::Batch batch;
        // The time stamp of one frame is not that of the next.
        deliver(m_registry, {"fr 1", "ts 1.5", twoTools, "fr 2", twoTools, twoTools});
        feed.take(batch);
        QCOMPARE(batch.samples.size(), std::size_t(3));
        QCOMPARE(batch.samples[0].seconds, 1.5);
        QVERIFY(batch.samples[1].seconds != 1.5 && batch.samples[2].seconds != 1.5);
        QVERIFY(batch.samples[2].seconds >= batch.samples[1].seconds);
        QCOMPARE(batch.samples[2].seconds, batch.latestCame);
    }

    void whatWaitsIsBoundedAndThatOfAnotherToolIsForgotten() {
        TipFeed feed(m_registry, 2);
        feed.setSubscribed(true);
        TipFeed::Batch batch;
        deliver(m_registry, {"ts 1", twoTools, "ts 2", twoTools, "ts 3", twoTools});
        feed.take(batch);
        QCOMPARE(batch.samples.size(), std::size_t(2));
        deliver(m_registry, {"ts 4", twoTools});
        feed.choose(2);
        feed.take(batch);
        QVERIFY(batch.samples.empty());
        deliver(m_registry, {"ts 5", twoTools});
        feed.setSubscribed(false);
        feed.take(batch);
        QVERIFY(batch.samples.empty() && !batch.latest);
    }

    void samplesAreTakenOutWhileTheyCome() {
        constexpr int frames = 20000;
        TipFeed feed(m_registry);
        feed.setSubscribed(true);
        std::atomic<bool> isOver{false};
        std::thread line([&] {
            for (int i = 1; i <= frames; ++i) {
                const std::string time = "ts " + std::to_string(i);
                deliver(m_registry, {time.c_str(), twoTools});
            }
            isOver = true;
        });
        std::size_t taken = 0;
        double last = 0.0;
        bool isInOrder = true;
        TipFeed::Batch batch;
        for (bool isLast = false; !isLast;) {
            isLast = isOver;
            feed.take(batch);
            taken += batch.samples.size();
            for (const workbench::TipSample& sample : batch.samples) {
                isInOrder = isInOrder && sample.seconds == last + 1.0;
                last = sample.seconds;
            }
        }
        line.join();
        QCOMPARE(taken, std::size_t(frames));
        QVERIFY(isInOrder);
    }
};

QTEST_GUILESS_MAIN(TestTipFeed)
#include "test_tipfeed.moc"
