#pragma once

#include <chrono>
#include <functional>
#include <future>
#include <thread>

/// A thread of a plug-in that may hang in the system, such as in a disk that does not answer. Its
/// end is waited for only so long; then it is left to itself, and the plug-in's library stays
/// mapped for it. Its work owns, or shares the ownership of, all that it uses. GUI thread only.
class LeavableThread {
public:
    /// Begins at once.
    explicit LeavableThread(std::function<void()> work);
    ~LeavableThread(); ///< end() without waiting
    LeavableThread(const LeavableThread&) = delete;
    LeavableThread& operator=(const LeavableThread&) = delete;

    bool isOver() const; ///< the work is done

    /// Waits for the end of the work, which somebody has told it to come to. False when it has been
    /// left to itself instead.
    bool end(std::chrono::milliseconds patience);

private:
    std::future<void> m_over;
    std::thread m_thread;
};
