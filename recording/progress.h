#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace recording {

/// How far a long walk is, on one line of the terminal behind stderr. Without a terminal nothing.
class Progress {
public:
    /// `file`: the recording, for its size.
    Progress(const std::string& file, bool isWanted);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void tell(std::uint64_t bytes);
    void clear(); ///< the line goes, before anything else is written

private:
    using Clock = std::chrono::steady_clock;

    const bool m_isShown;
    std::uint64_t m_size = 0; // 0: unknown
    Clock::time_point m_told = Clock::now();
    bool m_hasLine = false;
};

} // namespace recording
