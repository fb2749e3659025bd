#pragma once

#include "workbench/outlets/sending/outletchannel.h"
#include "workbench/outlets/sending/outleturl.h"

#include <chrono>
#include <string>

namespace workbench {

/// udp://: one datagram a frame, with the JSON object of appendFrameJson(). Nobody answers; that
/// nobody takes them is only known of a computer that says so.
class UdpChannel : public OutletChannel {
public:
    explicit UdpChannel(const OutletUrl& url);
    ~UdpChannel() override;

    void tend() override;
    OutletWord word() const override { return m_word; }
    Delivery send(const TrackedFrame& frame) override;

private:
    using Clock = std::chrono::steady_clock;

    bool open(QString* error);
    void close() override;
    void setWord(OutletWord::State state, const QString& text);

    const OutletUrl m_url;
    int m_socket = -1;
    Clock::time_point m_nextTry;       // to find the host
    Clock::time_point m_complainUntil; // about what is amiss
    std::string m_text;
    OutletWord m_word;
};

} // namespace workbench
