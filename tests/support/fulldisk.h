#pragma once

#include <csignal>
#include <sys/resource.h>

/// While it lives the kernel refuses to let a file grow beyond a size, as a full disk does.
class FullDisk {
public:
    explicit FullDisk(rlim_t size)
        : m_handler(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        rlimit tight = m_before;
        tight.rlim_cur = size;
        ::setrlimit(RLIMIT_FSIZE, &tight);
    }
    ~FullDisk() {
        ::setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    void (*m_handler)(int);
    rlimit m_before = {};
};
