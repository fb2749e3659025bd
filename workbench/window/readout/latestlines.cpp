#include "workbench/window/readout/latestlines.h"

#include "workbench/controller/data/requesterregistry.h"

#include <string_view>

namespace workbench {

LatestLines::LatestLines(RequesterRegistry& registry)
    : m_registry(registry) {}

LatestLines::~LatestLines() {
    setSubscribed(false);
}

void LatestLines::setSubscribed(bool isSubscribed) {
    if (isSubscribed == m_isSubscribed) {
        return;
    }
    m_isSubscribed = isSubscribed;
    m_registry.setSubscribed(this, {"6dmt", "6dmt2", "6dmtr"}, isSubscribed);
    if (!isSubscribed) {
        forget();
    }
}

bool LatestLines::take(Lines& lines) const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (lines.serial == m_lines.serial) {
        return false;
    }
    lines = m_lines;
    return true;
}

int LatestLines::set_ascii_data(const char* channel, const char* line) {
    const BootClock::time_point now = BootClock::now();
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (std::string_view(channel) == "6dmtr") {
        m_lines.references = line;
    } else {
        m_lines.tools = line;
        m_lines.toolsCame = now;
    }
    ++m_lines.serial;
    return 0;
}

void LatestLines::forget() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_lines.tools.clear();
    m_lines.references.clear();
    ++m_lines.serial;
}

} // namespace workbench
