#pragma once

#include <QObject>
#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>
#include <QUdpSocket>

#include <condition_variable>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

/// A controller whose replies are a table, on real sockets and a thread of its own (the workbench
/// waits for replies without an event loop). Parameters of the table are answered in the wire's
/// form, settings and actions with "kestrel2 ok"; what is not in the table is refused with error 3.
///
/// All functions may be called from the test's thread.
class ScriptedController {
public:
    ScriptedController();
    ~ScriptedController();
    ScriptedController(const ScriptedController&) = delete;
    ScriptedController& operator=(const ScriptedController&) = delete;

    quint16 port() const { return m_port; }

    void answer(const std::string& parameter, const std::string& value);
    /// The bytes that are sent back for exactly this command, line end included (or left out).
    void answerRaw(const std::string& command, const std::string& bytes);
    void forget(const std::string& command); ///< back to the table

    /// From now on commands are received and not answered.
    void setSilent(bool silent);
    /// Commands of the last connection that were not answered, and replies to the oldest of them.
    std::vector<std::string> unanswered() const;
    void answerLate(std::size_t count);
    /// Replies come so much later.
    void setDelay(int milliseconds);

    /// Sends bytes that nobody asked for.
    void sendNow(const std::string& bytes);
    void dropConnections();
    void refuseConnections(); ///< new ones; those that are open stay
    void stopListening();
    bool listenAgain(); ///< on the same port
    bool isListening() const;

    std::vector<std::string> commands() const; ///< all that were received
    int count(const std::string& command) const;
    void clearCommands();
    int connections() const;     ///< accepted so far
    int openConnections() const; ///< not closed by either side
    /// TCP segments with data that the newest connection has brought.
    int receivedSegments() const;
    /// The last port of "kestrel2 set data_port".
    quint16 dataPort() const;
    /// Sends one datagram from this controller's address, always from the same port, to the data
    /// port.
    void sendFrame(const std::string& frame);

private:
    class Server;
    template <typename Function>
    void onServerThread(Function function) const;
    std::string replyTo(const std::string& command);
    std::string replyInWords(const std::string& command) const;

    mutable std::mutex m_mutex;
    std::map<std::string, std::string> m_values;
    std::map<std::string, std::string> m_raw;
    std::vector<std::string> m_commands;
    std::deque<std::string> m_unanswered;
    bool m_silent = false;
    int m_delay = 0;
    int m_connections = 0;
    QTcpSocket m_guard; // of the test's thread
    quint16 m_port = 0;
    QThread m_thread;
    Server* m_server = nullptr;
    std::unique_ptr<QUdpSocket> m_dataSocket; // of the test's thread
};
