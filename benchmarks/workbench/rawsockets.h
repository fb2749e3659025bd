#pragma once

#include <cstdint>
#include <string>
#include <thread>

/// A controller as fast as it can be: a thread that answers each command line with one send().
class RawServer {
public:
    RawServer();
    ~RawServer();
    RawServer(const RawServer&) = delete;
    RawServer& operator=(const RawServer&) = delete;

    std::uint16_t port() const { return m_port; }

private:
    void serve(int connection) const;

    int m_listener = -1;
    std::uint16_t m_port = 0;
    std::thread m_thread;
};

/// The yardstick: one send() and as many recv() as it takes to have the reply line.
class RawClient {
public:
    explicit RawClient(std::uint16_t port);
    ~RawClient();
    RawClient(const RawClient&) = delete;
    RawClient& operator=(const RawClient&) = delete;

    std::string ask(const std::string& command);

private:
    int m_socket = -1;
    std::string m_input;
};
