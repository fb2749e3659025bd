#include "benchmarks/workbench/rawsockets.h"

#include <arpa/inet.h>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

namespace {

sockaddr_in loopback(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    return address;
}

void require(bool good, const char* what) {
    if (!good) {
        std::perror(what);
        std::exit(1);
    }
}

void sendLine(int socket, const std::string& line) {
    const std::string bytes = line + '\n';
    require(::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL) ==
                static_cast<ssize_t>(bytes.size()),
            "send");
}

void switchNagleOff(int socket) {
    const int on = 1;
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

// Appends what arrives to `input`; false at the end of the stream.
bool receive(int socket, std::string& input) {
    std::array<char, 4096> chunk{};
    const ssize_t size = ::recv(socket, chunk.data(), chunk.size(), 0);
    if (size > 0) {
        input.append(chunk.data(), static_cast<std::size_t>(size));
    }
    return size > 0;
}

std::string replyTo(const std::string& command) {
    static const std::string get = "kestrel2 get ";
    if (command.rfind(get, 0) != 0) {
        return "kestrel2 ok";
    }
    const std::string parameter = command.substr(get.size());
    const bool isVersion = parameter.rfind("version ", 0) == 0;
    return "kestrel2 set " + parameter + (isVersion ? " 1.14.0" : " none");
}

} // namespace

RawServer::RawServer()
    : m_listener(::socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address = loopback(0);
    socklen_t size = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    require(::bind(m_listener, generic, size) == 0 && ::listen(m_listener, 8) == 0, "listen");
    ::getsockname(m_listener, generic, &size);
    m_port = ntohs(address.sin_port);
    m_thread = std::thread([this] {
        std::vector<std::thread> connections;
        for (int socket = 0; (socket = ::accept(m_listener, nullptr, nullptr)) >= 0;) {
            connections.emplace_back([this, socket] { serve(socket); });
        }
        for (std::thread& connection : connections) {
            connection.join();
        }
    });
}

RawServer::~RawServer() {
    ::shutdown(m_listener, SHUT_RDWR);
    m_thread.join();
    ::close(m_listener);
}

void RawServer::serve(int connection) const {
    switchNagleOff(connection);
    std::string input;
    while (receive(connection, input)) {
        for (std::size_t end = 0; (end = input.find('\n')) != std::string::npos;) {
            sendLine(connection, replyTo(input.substr(0, end)));
            input.erase(0, end + 1);
        }
    }
    ::close(connection);
}

RawClient::RawClient(std::uint16_t port)
    : m_socket(::socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address = loopback(port);
    require(::connect(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0,
            "connect");
    switchNagleOff(m_socket);
}

RawClient::~RawClient() {
    ::close(m_socket);
}

std::string RawClient::ask(const std::string& command) {
    sendLine(m_socket, command);
    std::size_t end = 0;
    while ((end = m_input.find('\n')) == std::string::npos) {
        require(receive(m_socket, m_input), "recv");
    }
    const std::string line = m_input.substr(0, end);
    m_input.erase(0, end + 1);
    return line;
}
