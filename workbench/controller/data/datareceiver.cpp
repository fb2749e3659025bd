#include "workbench/controller/data/datareceiver.h"

#include "libs/kestrel_wire/lineframer.h"
#include "libs/kestrel_wire/recording.h"
#include "workbench/controller/data/measurementteller.h"
#include "workbench/controller/data/requesterregistry.h"
#include "workbench/outlets/recorder.h"
#include "workbench/outlets/sending/outlethub.h"

#include <QThread>
#include <QUdpSocket>

#include <atomic>
#include <future>

namespace workbench {

namespace {

constexpr int receiveBufferSize = 1024 * 1024; // some hundred milliseconds of the fastest frames

std::vector<std::string_view> linesOf(std::string_view frame) {
    std::vector<std::string_view> lines;
    while (!frame.empty()) {
        const std::size_t end = frame.find('\n');
        std::string_view line = frame.substr(0, end);
        frame.remove_prefix(end == std::string_view::npos ? frame.size() : end + 1);
        if (!line.empty() && line.back() == '\r') {
            line.remove_suffix(1);
        }
        if (!line.empty() && line.size() <= kestrel_wire::maxLineLength) {
            lines.push_back(line);
        }
    }
    return lines;
}

} // namespace

class DataReceiver::ReceivingThread : public QThread {
public:
    ReceivingThread(DataReceiver& receiver, const QHostAddress& address, quint16 port,
                    const QHostAddress& controller)
        : m_receiver(receiver)
        , m_address(address)
        , m_port(port)
        , m_controller(controller) {}

    struct Bound {
        quint16 port = 0;
        QString error;
    };
    std::future<Bound> bound() { return m_bound.get_future(); }

    // What the thread wrote is seen by who goes on. QThread::wait() says so too, but not to a
    // thread sanitizer that does not look into Qt.
    void join() {
        wait();
        static_cast<void>(m_left.load(std::memory_order_acquire));
    }

protected:
    void run() override {
        receive();
        m_left.store(true, std::memory_order_release);
    }

private:
    void receive() {
        QUdpSocket socket;
        if (!socket.bind(m_address, m_port, QAbstractSocket::DontShareAddress)) {
            m_bound.set_value({0, socket.errorString()});
            return;
        }
        socket.setSocketOption(QAbstractSocket::ReceiveBufferSizeSocketOption, receiveBufferSize);
        connect(&socket, &QUdpSocket::readyRead, &socket, [this, &socket] { take(socket); });
        m_bound.set_value({socket.localPort(), QString()});
        exec();
    }

    void take(QUdpSocket& socket) {
        while (socket.hasPendingDatagrams()) {
            m_buffer.resize(
                static_cast<std::size_t>(std::max<qint64>(0, socket.pendingDatagramSize())));
            QHostAddress sender;
            quint16 port = 0;
            const qint64 size = socket.readDatagram(
                m_buffer.data(), static_cast<qint64>(m_buffer.size()), &sender, &port);
            if (size < 0) {
                return;
            }
            if (isController(sender, port)) {
                m_receiver.handOut({m_buffer.data(), static_cast<std::size_t>(size)});
            } else {
                m_receiver.m_statistics.addForeign();
            }
        }
    }

    // On the controller's machine other programs have the same address.
    bool isController(const QHostAddress& sender, quint16 port) {
        if (!sender.isEqual(m_controller, QHostAddress::TolerantConversion)) {
            return false;
        }
        if (m_controllerPort == 0) {
            m_controllerPort = port;
        }
        return port == m_controllerPort;
    }

    DataReceiver& m_receiver;
    const QHostAddress m_address;
    const quint16 m_port;
    const QHostAddress m_controller;
    quint16 m_controllerPort = 0; // of the first datagram
    std::promise<Bound> m_bound;
    std::vector<char> m_buffer;
    std::atomic<bool> m_left{false};
};

DataReceiver::DataReceiver(RequesterRegistry& registry, Recorder& recorder,
                           MeasurementTeller* teller, OutletHub* outlets)
    : m_registry(registry)
    , m_recorder(recorder)
    , m_teller(teller)
    , m_outlets(outlets) {}

DataReceiver::~DataReceiver() {
    stop();
}

quint16 DataReceiver::start(const QHostAddress& address, quint16 port,
                            const QHostAddress& controller, QString* error) {
    stop();
    m_statistics.reset();
    m_lines.reset();
    m_thread = std::make_unique<ReceivingThread>(*this, address, port, controller);
    std::future<ReceivingThread::Bound> future = m_thread->bound();
    m_thread->start(QThread::TimeCriticalPriority);
    const ReceivingThread::Bound bound = future.get();
    if (bound.port == 0) {
        *error = bound.error;
        stop();
    }
    return bound.port;
}

void DataReceiver::stop() {
    if (m_thread != nullptr) {
        m_thread->quit();
        m_thread->join();
        m_thread.reset();
    }
}

std::optional<LineTimes::Oldest> DataReceiver::oldestLine(BootClock::time_point now) const {
    return m_lines.oldest(
        [this](std::string_view channel) { return m_registry.hasSubscriber(channel); }, now);
}

bool DataReceiver::isAwaited(const std::vector<std::string_view>& lines) const {
    return m_teller->isWaitingForData() &&
           m_lines.areAllIn(lines, [this](std::string_view channel) {
               return m_registry.hasSubscriber(channel);
           });
}

void DataReceiver::handOut(std::string_view frame) {
    const std::vector<std::string_view> lines = linesOf(frame);
    m_recorder.frame(lines);
    if (lines.empty()) {
        return;
    }
    if (m_outlets != nullptr) {
        m_outlets->frame(lines);
    }
    const bool isReadable = m_check.isReadable(lines);
    if (isReadable && m_teller != nullptr && isAwaited(lines)) {
        m_teller->dataCame();
    }
    const BootClock::time_point now = BootClock::now();
    std::int64_t counter = -1;
    std::string line;
    for (const std::string_view text : lines) {
        if (counter < 0) {
            counter = FrameStatistics::frameCounter(text);
        }
        line.assign(text);
        const std::string channel(kestrel_wire::channelOf(text));
        const RequesterRegistry::Delivery delivery =
            m_registry.deliver(channel.c_str(), line.c_str());
        for (int i = 0; i < delivery.rejected; ++i) {
            m_statistics.addRejectedLine(line.size());
        }
        if (isReadable) {
            m_lines.add(channel, line.size(), delivery.isRefused, now);
        }
    }
    if (isReadable) {
        m_statistics.addFrame(counter, now);
    } else {
        m_statistics.addUnreadableFrame();
    }
}

} // namespace workbench
