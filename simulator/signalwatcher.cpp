#include "simulator/signalwatcher.h"

#include <array>
#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace kestrel_simulator {

namespace {

// A signal handler may do hardly more than write; the other end belongs to the event loop.
std::array<int, 2> wakeUp = {-1, -1};

void onSignal(int) {
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = write(wakeUp[0], &byte, sizeof(byte));
}

} // namespace

SignalWatcher::SignalWatcher(QObject* parent)
    : QObject(parent) {
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, wakeUp.data()) != 0) {
        return;
    }
    m_notifier = new QSocketNotifier(wakeUp[1], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &SignalWatcher::stopRequested);
    struct sigaction action = {};
    action.sa_handler = onSignal;
    action.sa_flags = SA_RESTART;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

SignalWatcher::~SignalWatcher() {
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
    delete m_notifier;
    for (int& descriptor : wakeUp) {
        if (descriptor >= 0) {
            close(descriptor);
            descriptor = -1;
        }
    }
}

} // namespace kestrel_simulator
