#include "workbench/window/plot/tipfeed.h"

#include "workbench/controller/data/bootclock.h"
#include "workbench/controller/data/requesterregistry.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

namespace workbench {

namespace {

double now() {
    return BootClock::seconds(BootClock::now().time_since_epoch());
}

} // namespace

TipFeed::TipFeed(RequesterRegistry& registry, std::size_t mostWaiting)
    : m_registry(registry)
    , m_mostWaiting(mostWaiting) {
    m_decoder.begin(0);
}

TipFeed::~TipFeed() {
    setSubscribed(false);
}

void TipFeed::setSubscribed(bool isSubscribed) {
    if (isSubscribed == m_isSubscribed) {
        return;
    }
    m_isSubscribed = isSubscribed;
    m_registry.setSubscribed(this, {"fr", "ts", "6dmt", "6dmt2"}, isSubscribed);
    if (!isSubscribed) {
        forgetFrame();
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_waiting.clear();
    }
}

void TipFeed::choose(int tool) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (tool != m_tool) {
        m_tool = tool;
        m_waiting.clear();
    }
}

void TipFeed::take(Batch& batch) {
    batch.samples.clear();
    const std::lock_guard<std::mutex> lock(m_mutex);
    std::swap(batch.samples, m_waiting);
    batch.latest = m_latest;
    batch.latestCame = m_latestCame;
}

void TipFeed::forgetFrame() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_latest.reset();
    m_decoder.begin(0);
}

int TipFeed::set_ascii_data(const char* channel, const char* line) {
    const std::string_view name(channel);
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (name == "fr") {
        m_decoder.begin(0);
    }
    m_decoder.add(line);
    if (name == "6dmt" || name == "6dmt2") {
        takeFrame();
    }
    return 0;
}

// With the mutex held.
void TipFeed::takeFrame() {
    m_latestCame = now();
    m_latest = m_decoder.end();
    m_decoder.begin(0);
    const auto found = std::find_if(
        m_latest->bodies.begin(), m_latest->bodies.end(), [this](const TrackedBody& body) {
            return body.kind == TrackedBody::Kind::Tool && body.number == m_tool;
        });
    if (m_waiting.size() >= m_mostWaiting) {
        return;
    }
    TipSample sample;
    sample.seconds = m_latest->seconds.value_or(m_latestCame);
    if (!std::isfinite(sample.seconds)) {
        return;
    }
    if (found != m_latest->bodies.end() && found->isTracked() &&
        std::all_of(std::begin(found->position), std::end(found->position),
                    [](double value) { return std::isfinite(value); })) {
        sample.isSeen = true;
        std::copy(std::begin(found->position), std::end(found->position), sample.position);
    }
    m_waiting.push_back(sample);
}

} // namespace workbench
