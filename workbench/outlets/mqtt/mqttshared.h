#pragma once

#include "workbench/outlets/mqtt/mqttlink.h"

#include <chrono>
#include <utility>

namespace workbench {

/// What the link and its thread have in common.
struct MqttLink::Shared {
    struct Result {
        std::uint64_t number = 0;
        std::string text;
    };

    explicit Shared(const BrokerSettings& brokerSettings)
        : settings(brokerSettings) {}

    const BrokerSettings settings;

    std::mutex mutex; // of what follows; never held during a call to the library
    std::condition_variable wake;
    OutletWord word;
    unsigned sessions = 0; // that there have been
    bool isConnected = false;
    bool isEnding = false;
    bool isOver = false;
    std::optional<std::string> poses;
    std::deque<Result> results;  // to be published
    std::size_t unconfirmed = 0; // with those
    std::vector<Confirmed> confirmed;

    void setWord(OutletWord::State state, QString text) {
        const std::lock_guard<std::mutex> lock(mutex);
        word.state = state;
        word.text = std::move(text);
    }
    bool ends() {
        const std::lock_guard<std::mutex> lock(mutex);
        return isEnding;
    }
    /// False when it ends meanwhile.
    bool waitFor(std::chrono::milliseconds time) {
        std::unique_lock<std::mutex> lock(mutex);
        return !wake.wait_for(lock, time, [this] { return isEnding; });
    }
};

} // namespace workbench
