#pragma once

#include <csignal>
#include <pthread.h>

namespace workbench {

/// To be called first on a thread that writes to files and sockets. Signals are the main thread's;
/// a reader that goes away is an error like any other.
inline void blockSignalsOfThread() {
    sigset_t all;
    sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, nullptr);
}

} // namespace workbench
