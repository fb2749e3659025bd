#pragma once

#include "host_api/requester.h"

#include <atomic>
#include <condition_variable>
#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace workbench {

/// Who has subscribed to which data lines and to measurement start and stop. Safe to use from any
/// thread, also from inside a notification.
///
/// Removing waits for calls of that subscription that are in flight on other threads; afterwards
/// none comes any more. It does not wait for the call that it is itself made from, nor for a call
/// that in turn waits for that one: two requesters that remove each other from inside their calls
/// do not lock up. No lock is held while a requester is called.
class RequesterRegistry {
public:
    /// Subscribing twice is the same as once. Below 0 for a null pointer or an empty channel.
    int add(std::string_view channel, Requester* requester);
    /// Below 0 when there is no such subscription.
    int remove(std::string_view channel, Requester* requester);

    int addForMeasurement(Requester* requester);
    int removeForMeasurement(Requester* requester);

    /// Adds to, or removes from, each of `channels` and measurement start and stop.
    void setSubscribed(Requester* requester, std::initializer_list<std::string_view> channels,
                       bool isSubscribed);

    struct Delivery {
        int accepted = 0;
        int rejected = 0;       ///< answered -1: a line that the receiver could not read
        bool isRefused = false; ///< by one who could read an earlier line of the channel
    };
    /// Hands `line` to all subscribers of `channel`; both are NUL-terminated. The subscribers of
    /// the moment count: one that is added meanwhile gets the next line.
    Delivery deliver(const char* channel, const char* line);

    bool hasSubscriber(std::string_view channel);

    void notifyStarted();
    void notifyStopped();

private:
    struct Subscription {
        Requester* requester = nullptr;
        bool active = true;
        std::atomic<bool> hasTaken{false};    // a line
        std::vector<std::thread::id> callers; // one entry for each call in flight
    };
    using Subscriptions = std::vector<std::shared_ptr<Subscription>>;

    static std::shared_ptr<Subscription> find(const Subscriptions& list,
                                              const Requester* requester);
    static int addTo(Subscriptions& list, Requester* requester);
    int removeFrom(Subscriptions& list, Requester* requester, std::unique_lock<std::mutex>& lock);
    bool hasForeignCalls(const Subscription& subscription) const;
    bool closesCircle(const Subscription& subscription) const;
    void callEach(const Subscriptions& list, const std::function<void(Subscription&)>& call);

    std::mutex m_mutex;
    std::condition_variable m_callEnded;
    std::map<std::string, Subscriptions, std::less<>> m_data;
    Subscriptions m_measurement;
    std::map<std::thread::id, const Subscription*> m_waiting; // threads inside remove()
};

} // namespace workbench
