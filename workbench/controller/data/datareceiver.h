#pragma once

#include "workbench/controller/data/framecheck.h"
#include "workbench/controller/data/framestatistics.h"
#include "workbench/controller/data/linetimes.h"

#include <QHostAddress>
#include <QString>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace workbench {

class MeasurementTeller;
class OutletHub;
class Recorder;
class RequesterRegistry;

/// Takes the data lines of one controller: a UDP port on a thread of its own. Each datagram of the
/// controller is one frame of lines, "\r\n" between them; they go to the recorder, to the
/// outlets and, one by one, to the requesters of their channels, all on that thread. The controller
/// is who has its address and the port of the first datagram that came from there. Datagrams from
/// elsewhere are counted and dropped.
class DataReceiver {
public:
    /// `teller` hears of each readable frame before the requesters get it, but once it waits for
    /// data only of one with all the lines that they had before; it and `outlets` may be null.
    DataReceiver(RequesterRegistry& registry, Recorder& recorder,
                 MeasurementTeller* teller = nullptr, OutletHub* outlets = nullptr);
    ~DataReceiver();
    DataReceiver(const DataReceiver&) = delete;
    DataReceiver& operator=(const DataReceiver&) = delete;

    /// Binds `port` (0: any free one) of the local `address` and begins to take the datagrams of
    /// `controller`. Returns the port, or 0 with a reason in `*error`. Ends an earlier reception.
    quint16 start(const QHostAddress& address, quint16 port, const QHostAddress& controller,
                  QString* error);

    /// Waits for a frame that is being handed out.
    void stop();

    bool isReceiving() const { return m_thread != nullptr; }

    FrameStatistics& statistics() { return m_statistics; }

    /// Of the lines that have a subscriber and came before, the one that has not for the longest.
    std::optional<LineTimes::Oldest> oldestLine(BootClock::time_point now) const;

    /// Which lines are to come is not known yet.
    void forgetLines() { m_lines.reset(); }

    /// Cuts a frame at "\r\n" (a lone "\n" counts as well) and hands it out; the receiving thread's
    /// work for one datagram. Lines of more than 64 KiB are dropped.
    void handOut(std::string_view frame);

private:
    class ReceivingThread;

    bool isAwaited(const std::vector<std::string_view>& lines) const;

    RequesterRegistry& m_registry;
    Recorder& m_recorder;
    MeasurementTeller* m_teller;
    OutletHub* m_outlets;
    FrameStatistics m_statistics;
    LineTimes m_lines;
    FrameCheck m_check;
    std::unique_ptr<ReceivingThread> m_thread;
};

} // namespace workbench
