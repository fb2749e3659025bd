#include "general/leavablethread.h"

#include <QtTest>

#include <atomic>
#include <future>
#include <memory>

using std::chrono::milliseconds;

namespace {

constexpr milliseconds patience{20000};
constexpr milliseconds briefPatience{20};

} // namespace

class TestLeavableThread : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void workThatEndsIsWaitedFor() {
        std::atomic<bool> isDone{false};
        LeavableThread thread([&] { isDone = true; });
        QVERIFY(thread.end(patience));
        QVERIFY(isDone);
        QVERIFY(thread.isOver());
        QVERIFY(thread.end(patience)); // again
    }

    void workThatHangsIsLeftToItself_data() {
        QTest::addColumn<bool>("isAskedToEnd");
        QTest::newRow("by end()") << true;
        QTest::newRow("by its destructor") << false;
    }
    void workThatHangsIsLeftToItself() {
        QFETCH(bool, isAskedToEnd);
        struct Shared {
            std::promise<void> go;
            std::promise<void> done;
        };
        const auto shared = std::make_shared<Shared>();
        auto done = shared->done.get_future();
        {
            LeavableThread thread([shared] {
                shared->go.get_future().wait();
                shared->done.set_value();
            });
            if (isAskedToEnd) {
                QVERIFY(!thread.end(briefPatience));
                QVERIFY(!thread.end(patience)); // nobody waits any more
            }
            QVERIFY(!thread.isOver());
        }
        shared->go.set_value(); // only now: what came before has not waited for it
        QVERIFY(done.wait_for(patience) == std::future_status::ready);
    }
};

QTEST_GUILESS_MAIN(TestLeavableThread)
#include "test_leavablethread.moc"
