#pragma once

#include "libs/kestrel_wire/lineframer.h"
#include "libs/kestrel_wire/reply.h"
#include "workbench/controller/command/channelresult.h"

#include <QDeadlineTimer>
#include <QHostAddress>
#include <QObject>
#include <QTcpSocket>
#include <QTimer>

#include <deque>
#include <functional>
#include <memory>
#include <string>

namespace workbench {

/// The command connection to one controller: a queue of command lines and one reply line to each,
/// in order. Lives on the GUI thread.
///
/// A command is written at once. Its time-out runs from the moment at which it is the oldest one
/// without a reply, so a controller that stops answering is found out after one time-out, however
/// many commands wait. Then the connection is closed: a late reply can never be taken for the
/// answer to a later command.
///
/// ask() waits for the socket alone, without an event loop. Callbacks and signals come from the
/// event loop only, never from inside ask().
class CommandChannel : public QObject {
    Q_OBJECT

public:
    static constexpr int defaultTimeoutMs = 2000;
    static constexpr int connectTimeoutMs = 3000;
    static constexpr std::size_t maxPending = 1000; ///< commands that may wait for replies

    /// What became of a command.
    struct Answer {
        int result = NotConnected; ///< Success, the controller's error number, or below 0
        std::string line;          ///< the whole reply line, when one came
        kestrel_wire::Reply reply; ///< the same, read
    };
    using Callback = std::function<void(const Answer&)>;
    /// Sees every command with its reply in the order of the replies, also from inside ask(). It
    /// must not call the channel.
    using Observer = std::function<void(const std::string& command, const Answer& answer)>;

    /// Hears in ask() that a reply takes long (true), and that the waiting is over (false). It must
    /// neither call the channel nor run events.
    using WaitObserver = std::function<void(bool isWaiting)>;
    static constexpr int longWaitMs = 300;

    explicit CommandChannel(QObject* parent = nullptr);
    ~CommandChannel() override;

    /// Begins to connect; opened() or lost() follows. An open connection is closed silently.
    void open(const QString& host, quint16 port, int timeoutMs = connectTimeoutMs);

    /// Closes; commands under way fail. No lost() follows.
    void close();

    bool isOpen() const { return m_state == State::Open; }

    /// Sends `command` and waits for its reply.
    Answer ask(const std::string& command, int timeoutMs = defaultTimeoutMs);

    /// Sends `command`; `callback` is called exactly once, from the event loop.
    void askLater(const std::string& command, Callback callback = {},
                  int timeoutMs = defaultTimeoutMs);

    void setObserver(Observer observer) { m_observer = std::move(observer); }

    /// Of the commands that end without a reply, in their order.
    void setFailureObserver(Observer observer) { m_failureObserver = std::move(observer); }

    void setWaitObserver(WaitObserver observer) { m_waitObserver = std::move(observer); }

    QHostAddress localAddress() const { return m_socket.localAddress(); }
    QHostAddress peerAddress() const { return m_socket.peerAddress(); }

Q_SIGNALS:
    void opened();
    void lost(const QString& reason);
    /// Lines that no command asked for were dropped; once per connection.
    void unexpectedLine(const QString& line);

private:
    friend struct ConnectionProbe; // lets a test drive the time

    enum class State { Closed, Opening, Open };
    struct Request {
        std::string command;
        int timeoutMs = 0;
        Callback callback;
        Answer answer;
        bool done = false;
    };
    using RequestPtr = std::shared_ptr<Request>;

    RequestPtr enqueue(const std::string& command, int timeoutMs, Callback callback);
    void send(const std::string& line);
    int descriptor() const;
    bool dropStaleInput();
    bool waitAndRead(int timeoutMs);
    void waitWithSocket(int timeoutMs);
    void onConnected();
    void onSocketError(QAbstractSocket::SocketError error);
    void onDisconnected();
    void onHeadTimeout();
    void readInput();
    void take(const char* input, std::size_t size);
    void complete(const RequestPtr& request, std::string line);
    void finish(const RequestPtr& request);
    void fail(ChannelResult result, const QString& reason);
    void startHeadTimer();
    void later(const std::function<void()>& what);
    void laterForThisConnection(const std::function<void()>& what);
    void runLater();

    QTcpSocket m_socket;
    State m_state = State::Closed;
    kestrel_wire::LineFramer m_framer;
    std::deque<RequestPtr> m_pending;
    std::deque<std::function<void()>> m_later;
    QTimer m_headTimer; // of the oldest command, or of the connecting
    QDeadlineTimer m_headDeadline;
    Observer m_observer;
    Observer m_failureObserver;
    WaitObserver m_waitObserver;
    int m_connectionNumber = 0;
    int m_malformedInARow = 0;
    bool m_unexpectedSeen = false;
};

} // namespace workbench
