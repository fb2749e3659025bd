#pragma once

#include "workbench/outlets/igtl/igtlserver.h"
#include "workbench/outlets/sending/channelmodule.h"

#include <chrono>

namespace workbench {

/// igtl://: an OpenIGTLink server. Each client gets a TRANSFORM for every body that is tracked and
/// a POINT for every captured point. A client that does not keep up is dropped.
class IgtlChannel : public OutletChannel {
public:
    explicit IgtlChannel(const OutletUrl& url);

    bool takesResults() const override { return true; }
    void tend() override;
    OutletWord word() const override;
    Delivery send(const TrackedFrame& frame) override;
    void send(const ModuleResult& result) override;
    void close() override { m_server.close(); }

private:
    using Clock = std::chrono::steady_clock;

    IgtlServer m_server;
    QString m_trouble; // with listening
    Clock::time_point m_nextTry;
    std::string m_messages;
};

} // namespace workbench
