#include "recording/progress.h"

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <poll.h>
#include <string>
#include <unistd.h>

namespace {

using recording::Progress;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds patience{20};
constexpr std::uint64_t megabyte = 1000000;

/// A terminal in the place of stderr as long as it lives.
class Terminal {
public:
    Terminal() {
        m_master = ::posix_openpt(O_RDWR | O_NOCTTY);
        if (m_master < 0 || ::grantpt(m_master) != 0 || ::unlockpt(m_master) != 0) {
            return;
        }
        const int slave = ::open(::ptsname(m_master), O_RDWR | O_NOCTTY);
        std::fflush(stderr);
        m_before = ::dup(STDERR_FILENO);
        m_isGood = slave >= 0 && m_before >= 0 && ::dup2(slave, STDERR_FILENO) >= 0;
        ::close(slave);
    }
    ~Terminal() {
        std::fflush(stderr);
        if (m_before >= 0) {
            ::dup2(m_before, STDERR_FILENO);
            ::close(m_before);
        }
        ::close(m_master);
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    bool isGood() const { return m_isGood; }

    /// All that has come through it. What is written comes a little later, if the machine is busy.
    const std::string& text() {
        std::fflush(stderr);
        char part[256];
        pollfd waiting{m_master, POLLIN, 0};
        while (::poll(&waiting, 1, 0) > 0 && (waiting.revents & POLLIN) != 0) {
            const ssize_t size = ::read(m_master, part, sizeof part);
            if (size <= 0) {
                break;
            }
            m_text.append(part, static_cast<std::size_t>(size));
        }
        return m_text;
    }

    bool shows(const std::string& line) { return text().find(line) != std::string::npos; }

private:
    int m_master = -1;
    int m_before = -1;
    bool m_isGood = false;
    std::string m_text;
};

/// Tells the same until the terminal shows this.
bool showsWhenTold(Terminal& terminal, Progress& progress, std::uint64_t bytes,
                   const std::string& line) {
    const Clock::time_point end = Clock::now() + patience;
    while (!terminal.shows(line) && Clock::now() < end) {
        progress.tell(bytes);
    }
    return terminal.shows(line);
}

class RecordingProgress : public testing::Test {
protected:
    void SetUp() override {
        std::ofstream(file).put('k');
        std::filesystem::resize_file(file, 200 * megabyte); // takes no room on the disk
    }
    void TearDown() override { std::filesystem::remove(file); }

    const std::string file = testing::TempDir() + "kestrel_progress_" +
                             testing::UnitTest::GetInstance()->current_test_info()->name();
};

TEST_F(RecordingProgress, tellsOnOneLineOfATerminalAndTakesItAway) {
    Terminal terminal;
    ASSERT_TRUE(terminal.isGood());
    {
        Progress progress(file, true);
        EXPECT_TRUE(
            showsWhenTold(terminal, progress, 50 * megabyte, "\r50 MB of 200 MB, 25 %\x1b[K"));
        EXPECT_TRUE(showsWhenTold(terminal, progress, 199999999, "\r199 MB of 200 MB, 99 %\x1b[K"));
        EXPECT_FALSE(terminal.shows("\r\x1b[K"));
    }
    const Clock::time_point end = Clock::now() + patience;
    while (!terminal.shows("%\x1b[K\r\x1b[K") && Clock::now() < end) {
    }
    EXPECT_TRUE(terminal.shows("%\x1b[K\r\x1b[K")) << terminal.text();
    EXPECT_FALSE(terminal.shows("\n"));
}

TEST_F(RecordingProgress, makesRoomForWhatElseIsWritten) {
    Terminal terminal;
    ASSERT_TRUE(terminal.isGood());
    {
        Progress progress(file, true);
        EXPECT_TRUE(
            showsWhenTold(terminal, progress, 50 * megabyte, "\r50 MB of 200 MB, 25 %\x1b[K"));
        progress.clear();
        std::fputs("words\n", stderr);
        progress.clear(); // there is no line to be taken away
    }
    const Clock::time_point end = Clock::now() + patience;
    while (!terminal.shows("words") && Clock::now() < end) {
    }
    const std::string shown = terminal.text();
    EXPECT_NE(shown.find("25 %\x1b[K\r\x1b[Kwords"), std::string::npos) << shown;
    EXPECT_EQ(shown.find("\r\x1b[K", shown.find("words")), std::string::npos) << shown;
}

TEST_F(RecordingProgress, ofAFileThatGrowsItTellsNoMoreThanAll) {
    Terminal terminal;
    ASSERT_TRUE(terminal.isGood());
    Progress progress(file, true);
    EXPECT_TRUE(
        showsWhenTold(terminal, progress, 300 * megabyte, "\r300 MB of 200 MB, 100 %\x1b[K"));
}

TEST_F(RecordingProgress, withoutAKnownSizeItTellsNoShare) {
    Terminal terminal;
    ASSERT_TRUE(terminal.isGood());
    Progress progress(file + "_none", true);
    EXPECT_TRUE(showsWhenTold(terminal, progress, 7 * megabyte, "\r7 MB\x1b[K"));
}

TEST_F(RecordingProgress, doesNotTellWithEachStep) {
    Terminal terminal;
    ASSERT_TRUE(terminal.isGood());
    const Clock::time_point begin = Clock::now();
    Progress progress(file, true);
    progress.tell(megabyte);
    const bool wasAtOnce = Clock::now() - begin < std::chrono::milliseconds(200);
    EXPECT_TRUE(showsWhenTold(terminal, progress, 2 * megabyte, "\r2 MB of 200 MB, 1 %\x1b[K"));
    EXPECT_FALSE(wasAtOnce && terminal.shows("\r1 MB"));
}

TEST_F(RecordingProgress, isSilentWhereNobodyWantsIt) {
    Terminal terminal;
    ASSERT_TRUE(terminal.isGood());
    Progress quiet(file, false);
    Progress witness(file, true);
    const std::string line = "\r8 MB of 200 MB, 4 %\x1b[K";
    const Clock::time_point end = Clock::now() + patience;
    while (!terminal.shows(line) && Clock::now() < end) {
        quiet.tell(9 * megabyte); // made first, and asked first
        witness.tell(8 * megabyte);
    }
    EXPECT_TRUE(terminal.shows(line));
    EXPECT_FALSE(terminal.shows("9 MB"));
}

TEST_F(RecordingProgress, isSilentWithoutATerminal) {
    testing::internal::CaptureStderr(); // to a file
    const Clock::time_point begin = Clock::now();
    {
        Progress progress(file, true);
        const std::chrono::milliseconds usual{300}; // after which a terminal would have its line
        while (Clock::now() - begin < usual) {
            progress.tell(9 * megabyte);
        }
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace
