#include "workbench/outlets/sending/outlet.h"

#include "workbench/outlets/quietthread.h"
#include "workbench/outlets/sending/boundedqueue.h"

#include <condition_variable>
#include <mutex>
#include <utility>
#include <vector>

namespace workbench {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds tendInterval{50};

} // namespace

class Outlet::Worker {
public:
    Worker(std::unique_ptr<OutletChannel> channel, std::size_t queue)
        : m_channel(std::move(channel))
        , m_interval(m_channel->frameInterval())
        , m_takesResults(m_channel->takesResults())
        , m_keepsResults(m_channel->keepsResults())
        , m_frames(queue)
        , m_results(mostQueuedResults) {}

    void run() {
        blockSignalsOfThread();
        Work work;
        while (take(work)) {
            handle(work);
        }
        handle(work);
        m_channel->close();
        publishWord();
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_over = true;
        m_ended.notify_all();
    }

    void add(const std::shared_ptr<const TrackedFrame>& frame) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_ending) {
            return;
        }
        if (m_interval.count() > 0) {
            m_latest = frame; // looked for at its time
            return;
        }
        m_status.droppedFrames += m_frames.push(frame, 1 + frame->bodies.size());
        m_wake.notify_one();
    }

    void add(const ModuleResult& result) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_ending || !m_takesResults) {
            return;
        }
        m_droppedResults += m_results.push(result, 1);
        m_wake.notify_one();
    }

    void waitForResults(Clock::time_point deadline) {
        std::unique_lock<std::mutex> lock(m_mutex);
        if (m_keepsResults && !m_isLate) {
            m_isLate = !m_handed.wait_until(lock, deadline, [this] { return areHanded(); });
        }
    }

    OutletStatus status() const {
        const std::lock_guard<std::mutex> lock(m_mutex);
        OutletStatus status = m_status;
        status.word.waitingResults += m_results.size() + m_untold;
        status.word.droppedResults += m_droppedResults;
        return status;
    }

    void end() {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_ending = true;
        m_wake.notify_one();
    }

    bool waitForEnd(Clock::time_point deadline) {
        std::unique_lock<std::mutex> lock(m_mutex);
        return m_ended.wait_until(lock, deadline, [this] { return m_over; });
    }

    bool isOver() const {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_over;
    }

private:
    struct Work {
        std::vector<std::shared_ptr<const TrackedFrame>> frames;
        std::vector<ModuleResult> results;
    };

    // False when it is to end, with the last work.
    bool take(Work& work) {
        work.frames.clear();
        work.results.clear();
        std::unique_lock<std::mutex> lock(m_mutex);
        m_wake.wait_for(lock, tendInterval,
                        [this] { return m_ending || !m_frames.isEmpty() || !m_results.isEmpty(); });
        while (auto result = m_results.pop()) {
            work.results.push_back(std::move(*result));
        }
        m_inHand = work.results.size();
        m_untold = work.results.size();
        if (m_ending) {
            return false;
        }
        while (auto frame = m_frames.pop()) {
            work.frames.push_back(std::move(*frame));
        }
        const Clock::time_point now = Clock::now();
        if (m_latest != nullptr && now >= m_nextFrame) {
            work.frames.push_back(std::move(m_latest));
            m_latest.reset();
            m_nextFrame = now + m_interval;
        }
        return true;
    }

    void handle(const Work& work) {
        for (const ModuleResult& result : work.results) {
            m_channel->send(result);
        }
        if (!work.results.empty()) {
            m_channel->keep();
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_inHand = 0;
            m_isLate = m_isLate && !areHanded();
            m_handed.notify_all();
        }
        m_channel->tend();
        for (const auto& frame : work.frames) {
            const OutletChannel::Delivery delivery = m_channel->send(*frame);
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_status.sentFrames += delivery == OutletChannel::Delivery::Sent ? 1U : 0U;
            m_status.droppedFrames += delivery == OutletChannel::Delivery::Dropped ? 1U : 0U;
        }
        publishWord();
    }

    // With the mutex held.
    bool areHanded() const { return m_inHand == 0 && m_results.isEmpty(); }

    void publishWord() {
        OutletWord word = m_channel->word();
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_status.word = std::move(word);
        m_untold = 0;
    }

    const std::unique_ptr<OutletChannel> m_channel;
    const std::chrono::milliseconds m_interval;
    const bool m_takesResults;
    const bool m_keepsResults;
    Clock::time_point m_nextFrame; // run() only

    mutable std::mutex m_mutex; // of what follows; never held while the channel works
    std::condition_variable m_wake;
    std::condition_variable m_ended;
    std::condition_variable m_handed;
    BoundedQueue<std::shared_ptr<const TrackedFrame>> m_frames;
    BoundedQueue<ModuleResult> m_results;
    std::shared_ptr<const TrackedFrame> m_latest;
    OutletStatus m_status;
    quint64 m_droppedResults = 0;
    std::size_t m_inHand = 0; // results that the channel is being given
    std::size_t m_untold = 0; // results that have left the queue and are not in the word yet
    bool m_isLate = false;    // somebody has waited for it in vain
    bool m_ending = false;
    bool m_over = false;
};

Outlet::Outlet(std::unique_ptr<OutletChannel> channel, std::size_t queue)
    : m_worker(std::make_shared<Worker>(std::move(channel), queue))
    , m_thread([worker = m_worker] { worker->run(); }) {}

Outlet::~Outlet() {
    constexpr std::chrono::milliseconds shortEnd{100}; // of one that has nothing left to do
    end();
    if (waitForEnd(Clock::now() + shortEnd)) {
        m_thread.join();
    } else {
        m_thread.detach();
    }
}

void Outlet::add(const std::shared_ptr<const TrackedFrame>& frame) {
    m_worker->add(frame);
}

void Outlet::add(const ModuleResult& result) {
    m_worker->add(result);
}

void Outlet::waitForResults(Clock::time_point deadline) {
    m_worker->waitForResults(deadline);
}

OutletStatus Outlet::status() const {
    return m_worker->status();
}

void Outlet::end() {
    m_worker->end();
}

bool Outlet::isOver() const {
    return m_worker->isOver();
}

bool Outlet::waitForEnd(Clock::time_point deadline) {
    return m_worker->waitForEnd(deadline);
}

} // namespace workbench
