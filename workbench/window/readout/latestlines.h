#pragma once

#include "host_api/requester.h"
#include "workbench/controller/data/bootclock.h"

#include <cstdint>
#include <mutex>
#include <string>

namespace workbench {

class RequesterRegistry;

/// The latest data lines of tools and references. The line path only copies them: they are read
/// when somebody looks. With the begin and the end of a measurement they are forgotten.
class LatestLines final : public Requester {
public:
    explicit LatestLines(RequesterRegistry& registry);
    ~LatestLines();
    LatestLines(const LatestLines&) = delete;
    LatestLines& operator=(const LatestLines&) = delete;

    /// Off at first. What came before it was switched off is forgotten.
    void setSubscribed(bool isSubscribed);

    struct Lines {
        std::uint64_t serial = 0; ///< another one when there is something new
        std::string tools;        ///< empty: none
        std::string references;
        BootClock::time_point toolsCame;
    };
    /// Copies what is newer than `lines`; false when nothing is. Any thread.
    bool take(Lines& lines) const;

    // Any thread; they never wait for more than a copy of a line.
    int set_ascii_data(const char* channel, const char* line) override;
    void set_mea_started() override { forget(); }
    void set_mea_stopped() override { forget(); }

private:
    void forget();

    RequesterRegistry& m_registry;
    bool m_isSubscribed = false;

    mutable std::mutex m_mutex; // of what follows
    Lines m_lines;
};

} // namespace workbench
