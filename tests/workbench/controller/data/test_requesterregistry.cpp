#include "workbench/controller/data/requesterregistry.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <gtest/gtest.h>
#include <thread>

using workbench::RequesterRegistry;

namespace {

constexpr std::chrono::seconds patience(10);

/// Calls back whatever the test wants, and counts.
class Receiver final : public Requester {
public:
    int set_ascii_data(const char* type, const char* data) override {
        ++lines;
        if (onLine) {
            onLine(type, data);
        }
        return result;
    }
    void set_mea_started() override {
        ++started;
        if (onStarted) {
            onStarted();
        }
    }
    void set_mea_stopped() override { ++stopped; }

    std::atomic<int> lines{0};
    std::atomic<int> started{0};
    std::atomic<int> stopped{0};
    int result = 0;
    std::function<void(const char*, const char*)> onLine;
    std::function<void()> onStarted;
};

/// A call that stays where it is until the test lets it go on.
class Gate {
public:
    void pass() {
        m_entered.set_value();
        m_open.get_future().wait();
    }
    bool waitUntilEntered() {
        return m_entered.get_future().wait_for(patience) == std::future_status::ready;
    }
    void open() { m_open.set_value(); }

private:
    std::promise<void> m_entered;
    std::promise<void> m_open;
};

TEST(RequesterRegistry, linesGoToTheSubscribersOfTheirChannelAlone) {
    RequesterRegistry registry;
    Receiver first;
    Receiver second;
    EXPECT_EQ(registry.add("6dmt", &first), 0);
    EXPECT_EQ(registry.add("6dmtr", &second), 0);
    std::string seen;
    first.onLine = [&](const char* type, const char* data) {
        seen = std::string(type) + '|' + data;
    };
    registry.deliver("6dmt", "6dmt 1 [0]");
    EXPECT_EQ(seen, "6dmt|6dmt 1 [0]");
    EXPECT_EQ(first.lines, 1);
    EXPECT_EQ(second.lines, 0);
    registry.deliver("6d", "6d 0");
    EXPECT_EQ(first.lines, 1);
}

TEST(RequesterRegistry, subscribingTwiceIsTheSameAsOnce) {
    RequesterRegistry registry;
    Receiver receiver;
    registry.add("6dmt", &receiver);
    registry.add("6dmt", &receiver);
    registry.deliver("6dmt", "6dmt 0");
    EXPECT_EQ(receiver.lines, 1);
    EXPECT_EQ(registry.remove("6dmt", &receiver), 0);
    EXPECT_LT(registry.remove("6dmt", &receiver), 0);
    registry.deliver("6dmt", "6dmt 0");
    EXPECT_EQ(receiver.lines, 1);
}

TEST(RequesterRegistry, whatCannotBeSubscribedIsRefused) {
    RequesterRegistry registry;
    Receiver receiver;
    EXPECT_LT(registry.add("6dmt", nullptr), 0);
    EXPECT_LT(registry.add("", &receiver), 0);
    EXPECT_LT(registry.addForMeasurement(nullptr), 0);
    EXPECT_LT(registry.remove("6dmt", &receiver), 0);
    EXPECT_LT(registry.removeForMeasurement(&receiver), 0);
}

TEST(RequesterRegistry, rejectedLinesAreCounted) {
    RequesterRegistry registry;
    Receiver good;
    Receiver bad;
    Receiver idle;
    bad.result = -1;
    idle.result = -2;
    for (Receiver* receiver : {&good, &bad, &idle}) {
        registry.add("6dmt", receiver);
    }
    const RequesterRegistry::Delivery delivery = registry.deliver("6dmt", "6dmt x");
    EXPECT_EQ(delivery.rejected, 1);
    EXPECT_EQ(delivery.accepted, 2);
}

TEST(RequesterRegistry, whoCouldReadAChannelAndCannotAnyMoreRefusesIt) {
    RequesterRegistry registry;
    Receiver receiver;
    EXPECT_FALSE(registry.hasSubscriber("6dmt"));
    registry.add("6dmt", &receiver);
    EXPECT_TRUE(registry.hasSubscriber("6dmt"));
    EXPECT_FALSE(registry.hasSubscriber("6dmtr"));
    receiver.result = -1; // one that has never read it says nothing about the line
    EXPECT_FALSE(registry.deliver("6dmt", "6dmt x").isRefused);
    receiver.result = -2; // nor does one that is not measuring
    EXPECT_FALSE(registry.deliver("6dmt", "6dmt x").isRefused);
    receiver.result = -1;
    EXPECT_FALSE(registry.deliver("6dmt", "6dmt x").isRefused);
    receiver.result = 0;
    EXPECT_FALSE(registry.deliver("6dmt", "6dmt 0").isRefused);
    receiver.result = -1;
    EXPECT_TRUE(registry.deliver("6dmt", "6dmt x").isRefused);
    registry.remove("6dmt", &receiver);
    EXPECT_FALSE(registry.hasSubscriber("6dmt"));
}

TEST(RequesterRegistry, aRequesterMayLeaveFromInsideItsOwnCall) {
    RequesterRegistry registry;
    Receiver receiver;
    registry.add("6dmt", &receiver);
    receiver.onLine = [&](const char*, const char*) {
        EXPECT_EQ(registry.remove("6dmt", &receiver), 0);
    };
    registry.deliver("6dmt", "6dmt 0");
    registry.deliver("6dmt", "6dmt 0");
    EXPECT_EQ(receiver.lines, 1);
}

TEST(RequesterRegistry, aRequesterThatLeavesThroughAnotherOnesCallIsNotCalledAnyMore) {
    RequesterRegistry registry;
    Receiver first;
    auto second = std::make_unique<Receiver>();
    registry.add("6dmt", &first);
    registry.add("6dmt", second.get());
    first.onLine = [&](const char*, const char*) {
        if (second) {
            registry.remove("6dmt", second.get());
            second.reset(); // a call now would be one into freed memory
        }
    };
    registry.deliver("6dmt", "6dmt 0");
    EXPECT_EQ(first.lines, 1);
}

TEST(RequesterRegistry, oneThatSubscribesInsideACallGetsTheNextLine) {
    RequesterRegistry registry;
    Receiver first;
    Receiver second;
    registry.add("6dmt", &first);
    first.onLine = [&](const char*, const char*) { registry.add("6dmt", &second); };
    registry.deliver("6dmt", "6dmt 0");
    EXPECT_EQ(second.lines, 0);
    registry.deliver("6dmt", "6dmt 0");
    EXPECT_EQ(second.lines, 1);
}

TEST(RequesterRegistry, startAndStopGoToThoseWhoAskedForThem) {
    RequesterRegistry registry;
    Receiver receiver;
    Receiver other;
    registry.add("6dmt", &other);
    registry.addForMeasurement(&receiver);
    registry.notifyStarted();
    registry.notifyStopped();
    registry.removeForMeasurement(&receiver);
    registry.notifyStarted();
    EXPECT_EQ(receiver.started, 1);
    EXPECT_EQ(receiver.stopped, 1);
    EXPECT_EQ(other.started, 0);
}

TEST(RequesterRegistry, leavingWaitsForACallInFlight) {
    RequesterRegistry registry;
    Receiver receiver;
    Gate gate;
    std::atomic<bool> callEnded{false};
    receiver.onLine = [&](const char*, const char*) {
        gate.pass();
        callEnded = true;
    };
    registry.add("6dmt", &receiver);
    std::thread data([&] { registry.deliver("6dmt", "6dmt 0"); });
    ASSERT_TRUE(gate.waitUntilEntered());
    auto left = std::async(std::launch::async, [&] {
        registry.remove("6dmt", &receiver);
        return callEnded.load();
    });
    EXPECT_EQ(left.wait_for(std::chrono::milliseconds(100)), std::future_status::timeout);
    gate.open();
    ASSERT_EQ(left.wait_for(patience), std::future_status::ready);
    EXPECT_TRUE(left.get());
    data.join();
}

TEST(RequesterRegistry, leavingDoesNotWaitForCallsOfOtherChannels) {
    RequesterRegistry registry;
    Receiver receiver;
    Gate gate;
    receiver.onLine = [&](const char* type, const char*) {
        if (std::string(type) == "slow") {
            gate.pass();
        }
    };
    registry.add("slow", &receiver);
    registry.add("6dmt", &receiver);
    std::thread data([&] { registry.deliver("slow", "slow 0"); });
    ASSERT_TRUE(gate.waitUntilEntered());
    EXPECT_EQ(registry.remove("6dmt", &receiver), 0);
    gate.open();
    data.join();
}

TEST(RequesterRegistry, severalChannelsAndTheMeasurementAtOnce) {
    RequesterRegistry registry;
    Receiver receiver;
    registry.setSubscribed(&receiver, {"6dmt", "fr"}, true);
    registry.setSubscribed(&receiver, {"6dmt", "fr"}, true); // the same as once
    registry.deliver("6dmt", "6dmt 0");
    registry.deliver("fr", "fr 1");
    registry.deliver("ts", "ts 1.0");
    registry.notifyStarted();
    EXPECT_EQ(receiver.lines, 2);
    EXPECT_EQ(receiver.started, 1);
    registry.setSubscribed(&receiver, {"6dmt", "fr"}, false);
    registry.deliver("6dmt", "6dmt 0");
    registry.deliver("fr", "fr 2");
    registry.notifyStarted();
    EXPECT_EQ(receiver.lines, 2);
    EXPECT_EQ(receiver.started, 1);
    registry.setSubscribed(&receiver, {"6dmt"}, false);
}

TEST(RequesterRegistry, twoThatLeaveThroughEachOthersCallsDoNotLockUp) {
    RequesterRegistry registry;
    Receiver lines;
    Receiver measurement;
    std::promise<void> lineEntered;
    std::promise<void> startEntered;
    std::shared_future<void> lineIsIn = lineEntered.get_future().share();
    std::shared_future<void> startIsIn = startEntered.get_future().share();
    registry.add("6dmt", &lines);
    registry.addForMeasurement(&measurement);
    lines.onLine = [&](const char*, const char*) {
        lineEntered.set_value();
        startIsIn.wait();
        EXPECT_EQ(registry.removeForMeasurement(&measurement), 0);
    };
    measurement.onStarted = [&] {
        startEntered.set_value();
        lineIsIn.wait();
        EXPECT_EQ(registry.remove("6dmt", &lines), 0);
    };
    auto data = std::async(std::launch::async, [&] { registry.deliver("6dmt", "6dmt 0"); });
    auto gui = std::async(std::launch::async, [&] { registry.notifyStarted(); });
    ASSERT_EQ(data.wait_for(patience), std::future_status::ready);
    ASSERT_EQ(gui.wait_for(patience), std::future_status::ready);
}

TEST(RequesterRegistry, nobodyIsCalledAfterLeavingHoweverFastTheLinesCome) {
    RequesterRegistry registry;
    std::atomic<bool> stop{false};
    std::thread data([&] {
        while (!stop) {
            registry.deliver("6dmt", "6dmt 0");
            registry.notifyStarted();
        }
    });
    for (int i = 0; i < 500; ++i) {
        auto receiver = std::make_unique<Receiver>();
        registry.add("6dmt", receiver.get());
        registry.addForMeasurement(receiver.get());
        while (i % 50 == 0 && (receiver->lines == 0 || receiver->started == 0)) {
            std::this_thread::yield();
        }
        registry.remove("6dmt", receiver.get());
        registry.removeForMeasurement(receiver.get());
        const int lines = receiver->lines;
        const int started = receiver->started;
        std::this_thread::yield();
        EXPECT_EQ(receiver->lines, lines);
        EXPECT_EQ(receiver->started, started);
    }
    stop = true;
    data.join();
}

} // namespace
