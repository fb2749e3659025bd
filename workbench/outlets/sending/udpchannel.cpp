#include "workbench/outlets/sending/udpchannel.h"

#include "workbench/outlets/sending/frames/framejson.h"

#include <QCoreApplication>

#include <cerrno>
#include <cstring>
#include <memory>
#include <netdb.h>
#include <sys/socket.h>
#include <unistd.h>

namespace workbench {

namespace {

constexpr std::chrono::seconds retryInterval{5};
constexpr std::chrono::seconds complaintTime{3};
constexpr std::size_t longestDatagram = 65507;

class UdpTexts {
    Q_DECLARE_TR_FUNCTIONS(workbench::UdpChannel)
};

int connectedSocket(const addrinfo& address) {
    const int found = ::socket(address.ai_family, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (found < 0) {
        return -1;
    }
    const int yes = 1;
    ::setsockopt(found, SOL_SOCKET, SO_BROADCAST, &yes, sizeof yes); // in vain with IPv6
    if (::connect(found, address.ai_addr, address.ai_addrlen) != 0) {
        const int error = errno;
        ::close(found);
        errno = error;
        return -1;
    }
    return found;
}

} // namespace

UdpChannel::UdpChannel(const OutletUrl& url)
    : m_url(url) {
    setWord(OutletWord::State::Waiting, UdpTexts::tr("waiting for the first frame"));
}

UdpChannel::~UdpChannel() {
    UdpChannel::close();
}

void UdpChannel::close() {
    if (m_socket >= 0) {
        ::close(m_socket);
        m_socket = -1;
    }
}

void UdpChannel::setWord(OutletWord::State state, const QString& text) {
    m_word.state = state;
    m_word.text = text;
}

bool UdpChannel::open(QString* error) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_DGRAM;
    hints.ai_flags = AI_NUMERICSERV;
    addrinfo* list = nullptr;
    const int result = ::getaddrinfo(m_url.host.toUtf8().constData(),
                                     QByteArray::number(m_url.port).constData(), &hints, &list);
    if (result != 0) {
        *error = UdpTexts::tr("%1 cannot be found: %2")
                     .arg(m_url.host, QString::fromLocal8Bit(::gai_strerror(result)));
        return false;
    }
    const std::unique_ptr<addrinfo, void (*)(addrinfo*)> addresses(list, &::freeaddrinfo);
    for (const addrinfo* address = list; address != nullptr && m_socket < 0;
         address = address->ai_next) {
        m_socket = connectedSocket(*address);
    }
    if (m_socket < 0) {
        *error = UdpTexts::tr("%1 cannot be reached: %2")
                     .arg(m_url.host, QString::fromLocal8Bit(std::strerror(errno)));
    }
    return m_socket >= 0;
}

void UdpChannel::tend() {
    const Clock::time_point now = Clock::now();
    if (m_socket >= 0 || now < m_nextTry) {
        return;
    }
    QString error;
    if (!open(&error)) {
        m_nextTry = Clock::now() + retryInterval;
        setWord(OutletWord::State::Waiting, error);
    } else {
        setWord(OutletWord::State::Waiting, UdpTexts::tr("waiting for the first frame"));
    }
}

OutletChannel::Delivery UdpChannel::send(const TrackedFrame& frame) {
    if (m_socket < 0) {
        return Delivery::Dropped;
    }
    m_text.clear();
    appendFrameJson(frame, FrameTimes::TimeStamp, m_text);
    const Clock::time_point now = Clock::now();
    if (m_text.size() > longestDatagram) {
        m_complainUntil = now + complaintTime;
        setWord(OutletWord::State::Waiting, UdpTexts::tr("a frame has too much for one datagram"));
        return Delivery::Dropped;
    }
    const ssize_t size =
        ::send(m_socket, m_text.data(), m_text.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    if (size == static_cast<ssize_t>(m_text.size())) {
        // What one datagram brings about is told with a later one.
        if (now >= m_complainUntil) {
            setWord(OutletWord::State::Connected, UdpTexts::tr("sending, as far as can be known"));
        }
        return Delivery::Sent;
    }
    const int error = errno;
    if (error == EAGAIN || error == EWOULDBLOCK || error == ENOBUFS) {
        return Delivery::Dropped; // the network is slower than the frames
    }
    m_complainUntil = now + complaintTime;
    if (error == ECONNREFUSED) {
        setWord(OutletWord::State::Waiting, UdpTexts::tr("nobody takes the data there"));
        return Delivery::Dropped;
    }
    setWord(OutletWord::State::Waiting, QString::fromLocal8Bit(std::strerror(error)));
    close(); // addresses and networks change
    m_nextTry = now + retryInterval;
    return Delivery::Dropped;
}

} // namespace workbench
