#include "recording/progress.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <unistd.h>

namespace recording {

namespace {

constexpr std::chrono::milliseconds interval{200};
constexpr std::uint64_t megabyte = 1000000;

} // namespace

Progress::Progress(const std::string& file, bool isWanted)
    : m_isShown(isWanted && ::isatty(STDERR_FILENO) == 1) {
    std::error_code failure;
    const std::uintmax_t size = std::filesystem::file_size(file, failure);
    m_size = failure ? 0 : size;
}

Progress::~Progress() {
    clear();
}

void Progress::clear() {
    if (m_hasLine) {
        m_hasLine = false;
        std::fputs("\r\x1b[K", stderr);
        std::fflush(stderr);
    }
}

void Progress::tell(std::uint64_t bytes) {
    const Clock::time_point now = Clock::now();
    if (!m_isShown || now - m_told < interval) {
        return;
    }
    m_told = now;
    m_hasLine = true;
    std::string text = "\r" + std::to_string(bytes / megabyte) + " MB";
    if (m_size >= megabyte) {
        const std::uint64_t percent = std::min<std::uint64_t>(100, bytes / (m_size / 100));
        text += " of " + std::to_string(m_size / megabyte) + " MB, " + std::to_string(percent);
        text += " %";
    }
    std::fputs((text + "\x1b[K").c_str(), stderr);
    std::fflush(stderr);
}

} // namespace recording
