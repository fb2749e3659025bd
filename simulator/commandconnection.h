#pragma once

#include "libs/kestrel_wire/lineframer.h"
#include "simulator/controller/controller.h"

#include <QDeadlineTimer>
#include <QHostAddress>
#include <QObject>
#include <QTcpSocket>
#include <QTimer>

#include <deque>
#include <functional>

namespace kestrel_simulator {

/// Sends an error reply as the last line of a connection and closes it soon, so that the reply is
/// not lost together with commands that are still on their way.
void refuseAndClose(QTcpSocket* socket, kestrel_wire::ErrorNumber number, const char* reason);

/// One client: takes its command lines, hands out the replies in order. Bounded in every direction,
/// so that no client can stop the others: commands without an end, clients that do not read their
/// replies and clients that send commands faster than they are answered are disconnected.
class CommandConnection : public QObject {
    Q_OBJECT

public:
    /// Carries out one command line.
    using Handler = std::function<ReplyPlan(std::string_view line, Session& session)>;

    static constexpr std::size_t maxQueuedReplies = 1000;
    static constexpr qint64 maxUnreadBytes = 1024 * 1024; ///< of replies

    /// Takes over the socket.
    CommandConnection(QTcpSocket* socket, Handler handler, QObject* parent);

    /// Where data lines go; port 0 while the client has named none.
    QHostAddress peerAddress() const { return m_peer; }
    quint16 dataPort() const { return static_cast<quint16>(m_session.dataPort); }

Q_SIGNALS:
    /// The connection is gone; emitted once. A slot may call deleteLater() but not delete this.
    void closed();

private:
    struct PendingReply {
        QDeadlineTimer due;
        std::string text;
    };

    void readCommands();
    void handleLine(const std::string& line);
    void enqueue(const ReplyPlan& plan);
    void writeDueReplies();
    void refuseAndClose(kestrel_wire::ErrorNumber number, const char* reason);
    void drop();

    QTcpSocket* m_socket;
    Handler m_handler;
    QHostAddress m_peer;
    kestrel_wire::LineFramer m_framer;
    Session m_session;
    std::deque<PendingReply> m_pending;
    QTimer m_replyTimer;
    bool m_closing = false;
};

} // namespace kestrel_simulator
