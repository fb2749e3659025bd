#pragma once

#include "workbench/outlets/sending/outletchannel.h"

#include <chrono>
#include <memory>
#include <thread>

namespace workbench {

/// An outlet and what became of the data that it was given.
struct OutletStatus {
    OutletWord word;
    quint64 sentFrames = 0;
    quint64 droppedFrames = 0; ///< came too fast, or could not be sent
};

/// One channel with a bounded queue and a thread of its own. Nothing here waits for the channel but
/// waitForEnd() and waitForResults(). Thread-safe, but for constructor and destructor.
class Outlet {
public:
    /// Bodies and frames that wait for a channel which is busy: two seconds of 20 tools with their
    /// references at 1000 frames a second.
    static constexpr std::size_t usualQueue = 82000;
    static constexpr std::size_t mostQueuedResults = 10000;

    explicit Outlet(std::unique_ptr<OutletChannel> channel, std::size_t queue = usualQueue);
    /// Ends it. A thread that hangs in a system call is left to itself: it owns what it needs.
    ~Outlet();
    Outlet(const Outlet&) = delete;
    Outlet& operator=(const Outlet&) = delete;

    void add(const std::shared_ptr<const TrackedFrame>& frame);
    void add(const ModuleResult& result);

    /// Waits until a channel that keeps results has been given all that were added, at most until
    /// then. One that has once let somebody wait in vain is not waited for before it has caught up.
    void waitForResults(std::chrono::steady_clock::time_point deadline);

    OutletStatus status() const;

    /// Takes nothing more. Results that are queued still reach the channel, frames do not.
    void end();
    bool isOver() const;
    /// After end(): waits until it is over, at most until then. True: over.
    bool waitForEnd(std::chrono::steady_clock::time_point deadline);

private:
    class Worker;

    std::shared_ptr<Worker> m_worker;
    std::thread m_thread;
};

} // namespace workbench
