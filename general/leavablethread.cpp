#include "general/leavablethread.h"

#include "general/host/underway.h"

#include <utility>

LeavableThread::LeavableThread(std::function<void()> work) {
    std::packaged_task<void()> task(std::move(work));
    m_over = task.get_future();
    m_thread = std::thread(std::move(task));
}

LeavableThread::~LeavableThread() {
    end(std::chrono::milliseconds(0));
}

bool LeavableThread::isOver() const {
    return m_over.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
}

bool LeavableThread::end(std::chrono::milliseconds patience) {
    if (!m_thread.joinable()) {
        return isOver();
    }
    const bool isOver = m_over.wait_for(patience) == std::future_status::ready;
    if (isOver) {
        m_thread.join();
    } else {
        underway::keepMapped();
        m_thread.detach();
    }
    return isOver;
}
