#include "simulator/commandconnection.h"

#include "libs/kestrel_wire/reply.h"

#include <array>

namespace kestrel_simulator {

namespace {

constexpr int linesPerTurn = 100; // then the other clients have theirs
constexpr qint64 readBufferSize = 16 * 1024;
constexpr int closingMs = 200;

} // namespace

void refuseAndClose(QTcpSocket* socket, kestrel_wire::ErrorNumber number, const char* reason) {
    const std::string reply = kestrel_wire::errorReply(number, reason) + "\n";
    socket->write(reply.data(), static_cast<qint64>(reply.size()));
    // Closing with unread commands in the buffer would reset the connection and lose the reply.
    QObject::connect(socket, &QTcpSocket::readyRead, socket, [socket] { socket->readAll(); });
    socket->readAll();
    QTimer::singleShot(closingMs, socket, [socket] { socket->disconnectFromHost(); });
}

CommandConnection::CommandConnection(QTcpSocket* socket, Handler handler, QObject* parent)
    : QObject(parent)
    , m_socket(socket)
    , m_handler(std::move(handler))
    , m_peer(socket->peerAddress()) {
    m_socket->setParent(this);
    m_socket->setReadBufferSize(readBufferSize);
    m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    m_replyTimer.setSingleShot(true);
    m_replyTimer.setTimerType(Qt::PreciseTimer);
    connect(&m_replyTimer, &QTimer::timeout, this, &CommandConnection::writeDueReplies);
    connect(m_socket, &QTcpSocket::readyRead, this, &CommandConnection::readCommands);
    connect(m_socket, &QTcpSocket::disconnected, this, &CommandConnection::closed);
}

void CommandConnection::readCommands() {
    std::array<char, static_cast<std::size_t>(readBufferSize)> chunk{};
    std::string line;
    int lines = 0;
    while (!m_closing) {
        while (!m_closing && lines < linesPerTurn && m_framer.takeLine(line)) {
            handleLine(line);
            ++lines;
        }
        if (m_closing) {
            return;
        }
        if (lines >= linesPerTurn) {
            QTimer::singleShot(0, this, &CommandConnection::readCommands);
            return;
        }
        if (m_framer.overflowed()) {
            refuseAndClose(kestrel_wire::ErrorNumber::TooLong, "the command has no end");
            return;
        }
        const qint64 size = m_socket->read(chunk.data(), static_cast<qint64>(chunk.size()));
        if (size <= 0) {
            return;
        }
        m_framer.feed(chunk.data(), static_cast<std::size_t>(size));
    }
}

void CommandConnection::handleLine(const std::string& line) {
    const ReplyPlan plan = m_handler(line, m_session);
    if (plan.dropConnection) {
        drop();
        return;
    }
    for (int i = 0; i < plan.copies; ++i) {
        enqueue(plan);
    }
    writeDueReplies();
}

void CommandConnection::enqueue(const ReplyPlan& plan) {
    if (m_pending.size() >= maxQueuedReplies) {
        m_pending.clear();
        refuseAndClose(kestrel_wire::ErrorNumber::TooMany, "too many commands at once");
        return;
    }
    QDeadlineTimer due(plan.delayMilliseconds, Qt::PreciseTimer);
    if (!m_pending.empty() && due < m_pending.back().due) {
        due = m_pending.back().due;
    }
    m_pending.push_back({due, plan.cut ? plan.reply : plan.reply + "\n"});
}

void CommandConnection::writeDueReplies() {
    while (!m_closing && !m_pending.empty() && m_pending.front().due.hasExpired()) {
        const std::string& text = m_pending.front().text;
        m_socket->write(text.data(), static_cast<qint64>(text.size()));
        m_pending.pop_front();
        if (m_socket->bytesToWrite() > maxUnreadBytes) {
            drop();
        }
    }
    if (!m_closing && !m_pending.empty()) {
        m_replyTimer.start(static_cast<int>(m_pending.front().due.remainingTime()));
    }
}

void CommandConnection::refuseAndClose(kestrel_wire::ErrorNumber number, const char* reason) {
    m_closing = true;
    kestrel_simulator::refuseAndClose(m_socket, number, reason);
}

void CommandConnection::drop() {
    m_closing = true;
    m_socket->abort();
}

} // namespace kestrel_simulator
