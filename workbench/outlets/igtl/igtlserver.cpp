#include "workbench/outlets/igtl/igtlserver.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <memory>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

namespace workbench {

namespace {

constexpr const char* thisMachine = "127.0.0.1";

QString systemError(int error) {
    return QString::fromLocal8Bit(std::strerror(error));
}

int listeningSocket(const addrinfo& address) {
    const int made = ::socket(address.ai_family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (made < 0) {
        return -1;
    }
    const int yes = 1;
    ::setsockopt(made, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    if (::bind(made, address.ai_addr, address.ai_addrlen) != 0 ||
        ::listen(made, static_cast<int>(IgtlServer::mostClients)) != 0) {
        const int error = errno;
        ::close(made);
        errno = error;
        return -1;
    }
    return made;
}

quint16 portOf(int socket) {
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    if (::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
        return 0;
    }
    if (address.ss_family == AF_INET6) {
        sockaddr_in6 v6{};
        std::memcpy(&v6, &address, sizeof v6);
        return ntohs(v6.sin6_port);
    }
    sockaddr_in v4{};
    std::memcpy(&v4, &address, sizeof v4);
    return ntohs(v4.sin_port);
}

bool wouldBlock(int error) {
    return error == EAGAIN || error == EWOULDBLOCK || error == EINTR;
}

} // namespace

IgtlServer::IgtlServer(const QString& address, quint16 port)
    : m_address(address)
    , m_port(port) {}

IgtlServer::~IgtlServer() {
    close();
}

void IgtlServer::close() {
    for (const Client& client : m_clients) {
        ::close(client.socket);
    }
    m_clients.clear();
    if (m_socket >= 0) {
        ::close(m_socket);
        m_socket = -1;
    }
}

bool IgtlServer::listen(QString* error) {
    close();
    m_slowClients = 0;
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV | AI_PASSIVE;
    addrinfo* list = nullptr;
    const QByteArray host = m_address.isEmpty() ? QByteArray(thisMachine) : m_address.toUtf8();
    const int result =
        ::getaddrinfo(host.constData(), QByteArray::number(m_port).constData(), &hints, &list);
    if (result != 0) {
        *error = QString::fromLocal8Bit(::gai_strerror(result));
        return false;
    }
    const std::unique_ptr<addrinfo, void (*)(addrinfo*)> addresses(list, &::freeaddrinfo);
    m_socket = listeningSocket(*list);
    if (m_socket < 0) {
        *error = systemError(errno);
        return false;
    }
    m_port = portOf(m_socket);
    return true;
}

void IgtlServer::tend() {
    if (m_socket < 0) {
        return;
    }
    m_clients.remove_if([](Client& client) {
        if (isThere(client) && flush(client)) {
            return false;
        }
        ::close(client.socket);
        return true;
    });
    accept();
}

// Those beyond the limit are told so by a connection that ends at once.
void IgtlServer::accept() {
    for (;;) {
        const int socket = ::accept4(m_socket, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
        if (socket < 0) {
            return;
        }
        if (m_clients.size() >= mostClients) {
            ::close(socket);
            continue;
        }
        const int yes = 1;
        ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
        m_clients.push_back({socket, {}, 0});
    }
}

bool IgtlServer::isThere(const Client& client) {
    constexpr int mostReads = 16; // of one that talks without an end
    std::array<char, 4096> ignored{};
    for (int i = 0; i < mostReads; ++i) {
        const ssize_t size = ::recv(client.socket, ignored.data(), ignored.size(), MSG_DONTWAIT);
        if (size == 0) {
            return false;
        }
        if (size < 0) {
            return wouldBlock(errno);
        }
    }
    return true;
}

// False when the client has gone.
bool IgtlServer::flush(Client& client) {
    while (client.sent < client.bytes.size()) {
        const ssize_t size = ::send(client.socket, client.bytes.data() + client.sent,
                                    client.bytes.size() - client.sent, MSG_DONTWAIT | MSG_NOSIGNAL);
        if (size < 0 && !wouldBlock(errno)) {
            return false;
        }
        if (size <= 0) {
            break;
        }
        client.sent += static_cast<std::size_t>(size);
    }
    // Not each time: much would have to be moved for little.
    if (client.sent >= client.bytes.size() / 2) {
        client.bytes.erase(0, client.sent);
        client.sent = 0;
    }
    return true;
}

void IgtlServer::send(std::string_view messages) {
    m_clients.remove_if([&](Client& client) {
        client.bytes += messages;
        const bool isThereStill = flush(client);
        const bool isSlow = client.bytes.size() - client.sent > mostWaiting;
        if (isThereStill && !isSlow) {
            return false;
        }
        m_slowClients += isThereStill ? 1U : 0U;
        ::close(client.socket);
        return true;
    });
}

} // namespace workbench
