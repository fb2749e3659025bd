#include "tests/support/kernelfile.h"
#include "workbench/controller/data/bootclock.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#ifndef CLONE_NEWTIME
#define CLONE_NEWTIME 0x00000080
#endif

using workbench::BootClock;

namespace {

constexpr double suspended = 1000000.0; // seconds
constexpr int noNamespace = 77;

// How far the clock is ahead of the one that stands still while the computer is suspended.
double ahead() {
    return BootClock::seconds(BootClock::now().time_since_epoch()) -
           std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
               .count();
}

// In a time namespace whose computer was suspended that long: 0 when the clock has gone on.
int inTheNamespace(double before) {
    if (::unshare(CLONE_NEWUSER | CLONE_NEWTIME) != 0 ||
        !writeKernelFile("/proc/self/timens_offsets",
                         "boottime " + std::to_string(static_cast<long>(suspended)) + " 0")) {
        return noNamespace;
    }
    const pid_t child = ::fork(); // the namespace is for children
    if (child == 0) {
        ::_exit(ahead() - before > suspended - 60.0 && ahead() - before < suspended + 60.0 ? 0 : 1);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}

} // namespace

TEST(BootClock, itGoesOnInAMeasuredTime) {
    const BootClock::time_point start = BootClock::now();
    BootClock::time_point now = start;
    while (BootClock::seconds(now - start) < 0.01) {
        const BootClock::time_point next = BootClock::now();
        ASSERT_GE(next, now);
        now = next;
    }
    EXPECT_GE(ahead(), -0.001);
}

TEST(BootClock, itGoesOnWhileTheComputerIsSuspended) {
    const double before = ahead();
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(inTheNamespace(before));
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    if (WEXITSTATUS(status) == noNamespace) {
        GTEST_SKIP() << "the kernel refuses a time namespace";
    }
    EXPECT_EQ(WEXITSTATUS(status), 0);
}
