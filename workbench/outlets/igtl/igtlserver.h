#pragma once

#include <QString>

#include <cstddef>
#include <list>
#include <string>
#include <string_view>

namespace workbench {

/// Who takes a stream of messages over TCP: all clients get the same bytes, and none is waited for.
/// What clients send is read and forgotten. One thread at a time.
class IgtlServer {
public:
    static constexpr std::size_t mostClients = 16;
    /// That may wait for one client; one that has more to come is dropped.
    static constexpr std::size_t mostWaiting = 4 * 1024 * 1024;

    /// `address` without brackets; empty: this machine's clients alone.
    IgtlServer(const QString& address, quint16 port);
    ~IgtlServer();
    IgtlServer(const IgtlServer&) = delete;
    IgtlServer& operator=(const IgtlServer&) = delete;

    /// False with the reason in `*error`.
    bool listen(QString* error);
    bool isListening() const { return m_socket >= 0; }
    quint16 port() const { return m_port; } ///< when it was 0: that of the listening socket

    /// Takes new clients, as long as there is room, and notices who has gone.
    void tend();

    /// Whole messages, so that a client that comes later begins with one.
    void send(std::string_view messages);

    std::size_t clients() const { return m_clients.size(); }
    std::size_t slowClients() const { return m_slowClients; } ///< that were dropped since listen()

    void close();

private:
    struct Client {
        int socket = -1;
        std::string bytes;    ///< that the network has not taken yet, behind those that it has
        std::size_t sent = 0; ///< of them
    };

    void accept();
    static bool isThere(const Client& client);
    static bool flush(Client& client);

    const QString m_address;
    quint16 m_port;
    int m_socket = -1;
    std::list<Client> m_clients;
    std::size_t m_slowClients = 0;
};

} // namespace workbench
