#include "workbench/controller/data/requesterregistry.h"

#include "workbench/controller/command/channelresult.h"

#include <algorithm>
#include <set>

namespace workbench {

std::shared_ptr<RequesterRegistry::Subscription>
RequesterRegistry::find(const Subscriptions& list, const Requester* requester) {
    const auto found =
        std::find_if(list.begin(), list.end(), [requester](const auto& subscription) {
            return subscription->requester == requester;
        });
    return found == list.end() ? nullptr : *found;
}

int RequesterRegistry::addTo(Subscriptions& list, Requester* requester) {
    if (find(list, requester) == nullptr) {
        auto subscription = std::make_shared<Subscription>();
        subscription->requester = requester;
        list.push_back(std::move(subscription));
    }
    return Success;
}

int RequesterRegistry::add(std::string_view channel, Requester* requester) {
    if (requester == nullptr || channel.empty()) {
        return BadArgument;
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    return addTo(m_data[std::string(channel)], requester);
}

int RequesterRegistry::addForMeasurement(Requester* requester) {
    if (requester == nullptr) {
        return BadArgument;
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    return addTo(m_measurement, requester);
}

int RequesterRegistry::remove(std::string_view channel, Requester* requester) {
    std::unique_lock<std::mutex> lock(m_mutex);
    const auto found = m_data.find(channel);
    return found == m_data.end() ? BadArgument : removeFrom(found->second, requester, lock);
}

int RequesterRegistry::removeForMeasurement(Requester* requester) {
    std::unique_lock<std::mutex> lock(m_mutex);
    return removeFrom(m_measurement, requester, lock);
}

int RequesterRegistry::removeFrom(Subscriptions& list, Requester* requester,
                                  std::unique_lock<std::mutex>& lock) {
    const std::shared_ptr<Subscription> subscription = find(list, requester);
    if (subscription == nullptr) {
        return BadArgument;
    }
    subscription->active = false;
    list.erase(std::find(list.begin(), list.end(), subscription));
    if (!hasForeignCalls(*subscription) || closesCircle(*subscription)) {
        return Success;
    }
    const std::thread::id self = std::this_thread::get_id();
    m_waiting[self] = subscription.get();
    m_callEnded.wait(lock, [&] { return !hasForeignCalls(*subscription); });
    m_waiting.erase(self);
    return Success;
}

bool RequesterRegistry::hasForeignCalls(const Subscription& subscription) const {
    const std::thread::id self = std::this_thread::get_id();
    return std::any_of(subscription.callers.begin(), subscription.callers.end(),
                       [self](std::thread::id caller) { return caller != self; });
}

// Would waiting for this subscription's calls mean to wait, over any number of other waiting
// threads, for the end of a call that this thread is in? Then one thread must give way, and it is
// the one that comes last.
bool RequesterRegistry::closesCircle(const Subscription& subscription) const {
    const std::thread::id self = std::this_thread::get_id();
    std::vector<const Subscription*> open{&subscription};
    std::set<const Subscription*> seen;
    while (!open.empty()) {
        const Subscription* current = open.back();
        open.pop_back();
        if (!seen.insert(current).second) {
            continue;
        }
        for (const std::thread::id caller : current->callers) {
            if (caller == self) {
                if (current != &subscription) {
                    return true;
                }
                continue;
            }
            const auto waiting = m_waiting.find(caller);
            if (waiting != m_waiting.end()) {
                open.push_back(waiting->second);
            }
        }
    }
    return false;
}

void RequesterRegistry::callEach(const Subscriptions& list,
                                 const std::function<void(Subscription&)>& call) {
    const std::thread::id self = std::this_thread::get_id();
    for (const std::shared_ptr<Subscription>& subscription : list) {
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            if (!subscription->active) {
                continue;
            }
            subscription->callers.push_back(self);
        }
        call(*subscription);
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            auto& callers = subscription->callers;
            callers.erase(std::find(callers.begin(), callers.end(), self));
        }
        m_callEnded.notify_all();
    }
}

void RequesterRegistry::setSubscribed(Requester* requester,
                                      std::initializer_list<std::string_view> channels,
                                      bool isSubscribed) {
    for (const std::string_view channel : channels) {
        if (isSubscribed) {
            add(channel, requester);
        } else {
            remove(channel, requester);
        }
    }
    if (isSubscribed) {
        addForMeasurement(requester);
    } else {
        removeForMeasurement(requester);
    }
}

RequesterRegistry::Delivery RequesterRegistry::deliver(const char* channel, const char* line) {
    Subscriptions list;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto found = m_data.find(std::string_view(channel));
        if (found != m_data.end()) {
            list = found->second;
        }
    }
    Delivery delivery;
    callEach(list, [&](Subscription& subscription) {
        const int result = subscription.requester->set_ascii_data(channel, line);
        ++(result == -1 ? delivery.rejected : delivery.accepted);
        if (result == -1) {
            delivery.isRefused = delivery.isRefused || subscription.hasTaken;
        } else if (result == 0) {
            subscription.hasTaken = true;
        }
    });
    return delivery;
}

bool RequesterRegistry::hasSubscriber(std::string_view channel) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_data.find(channel);
    return found != m_data.end() && !found->second.empty();
}

void RequesterRegistry::notifyStarted() {
    Subscriptions list;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        list = m_measurement;
    }
    callEach(list, [](Subscription& subscription) { subscription.requester->set_mea_started(); });
}

void RequesterRegistry::notifyStopped() {
    Subscriptions list;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        list = m_measurement;
    }
    callEach(list, [](Subscription& subscription) { subscription.requester->set_mea_stopped(); });
}

} // namespace workbench
