#include "workbench/controller/command/commandchannel.h"

#include "libs/kestrel_wire/command.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <poll.h>
#include <sys/socket.h>

namespace workbench {

namespace {

constexpr qint64 socketBufferSize = 256 * 1024;
constexpr std::size_t readSize = 4096;
// So many replies in a row that do not fit their command mean that replies and commands are out of
// step.
constexpr int outOfStep = 3;

bool isCommandLine(const std::string& command) {
    return !command.empty() && command.size() <= kestrel_wire::maxLineLength &&
           std::none_of(command.begin(), command.end(),
                        [](char c) { return c == '\n' || c == '\r' || c == '\0'; });
}

// What a get asks for; empty for a set or an action.
std::string askedParameter(const std::string& command) {
    kestrel_wire::Command parsed;
    std::string reason;
    const bool isGet = kestrel_wire::parseCommand(command, parsed, reason) &&
                       parsed.kind == kestrel_wire::CommandKind::Get;
    return isGet ? parsed.text : std::string();
}

} // namespace

CommandChannel::CommandChannel(QObject* parent)
    : QObject(parent) {
    m_socket.setReadBufferSize(socketBufferSize);
    m_headTimer.setSingleShot(true);
    connect(&m_socket, &QTcpSocket::connected, this, &CommandChannel::onConnected);
    connect(&m_socket, &QTcpSocket::readyRead, this, &CommandChannel::readInput);
    connect(&m_socket, &QTcpSocket::disconnected, this, &CommandChannel::onDisconnected);
    connect(&m_socket, &QTcpSocket::errorOccurred, this, &CommandChannel::onSocketError);
    connect(&m_headTimer, &QTimer::timeout, this, &CommandChannel::onHeadTimeout);
}

CommandChannel::~CommandChannel() {
    m_socket.disconnect(this);
    m_socket.abort();
}

void CommandChannel::open(const QString& host, quint16 port, int timeoutMs) {
    close();
    m_framer.clear();
    m_malformedInARow = 0;
    m_unexpectedSeen = false;
    m_state = State::Opening;
    m_headTimer.start(timeoutMs);
    m_socket.connectToHost(host, port);
}

void CommandChannel::close() {
    fail(NotConnected, QString());
    ++m_connectionNumber;
}

void CommandChannel::onConnected() {
    if (m_state != State::Opening) {
        return;
    }
    m_headTimer.stop();
    m_socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    m_state = State::Open;
    laterForThisConnection([this] { Q_EMIT opened(); });
}

void CommandChannel::onSocketError(QAbstractSocket::SocketError error) {
    // A wait that ran out is ask()'s affair, a close by the other side that of onDisconnected().
    if (error != QAbstractSocket::SocketTimeoutError &&
        error != QAbstractSocket::RemoteHostClosedError) {
        fail(NotConnected, m_socket.errorString());
    }
}

void CommandChannel::onDisconnected() {
    readInput();
    fail(NotConnected, tr("the controller closed the connection"));
}

void CommandChannel::onHeadTimeout() {
    if (m_state == State::Opening) {
        fail(TimedOut, tr("no answer to the connection request"));
    } else if (!m_pending.empty()) {
        fail(TimedOut, tr("no reply within %1 s").arg(m_pending.front()->timeoutMs / 1000.0));
    }
}

// Who waits in ask() looks at the deadline himself.
void CommandChannel::startHeadTimer() {
    const Request& head = *m_pending.front();
    m_headDeadline.setRemainingTime(head.timeoutMs);
    if (head.callback) {
        m_headTimer.start(head.timeoutMs);
    } else {
        m_headTimer.stop();
    }
}

CommandChannel::RequestPtr CommandChannel::enqueue(const std::string& command, int timeoutMs,
                                                   Callback callback) {
    auto request = std::make_shared<Request>();
    request->command = command;
    request->timeoutMs = std::max(1, timeoutMs);
    request->callback = std::move(callback);
    if (!isCommandLine(command)) {
        request->answer.result = BadCommand;
        finish(request);
        return request;
    }
    if (m_pending.size() >= maxPending) {
        request->answer.result = QueueFull;
        finish(request);
        return request;
    }
    if (!isOpen() || (m_pending.empty() && !dropStaleInput())) {
        finish(request);
        return request;
    }
    m_pending.push_back(request);
    if (m_pending.size() == 1) {
        startHeadTimer();
    }
    send(command + '\n');
    return request;
}

// Past the socket object, as it is done in ask(): its buffers and notifiers cost as much as the
// rest of a command together.
void CommandChannel::send(const std::string& line) {
    qint64 sent = 0;
    if (m_socket.bytesToWrite() == 0) {
        sent = std::max<qint64>(
            0, ::send(descriptor(), line.data(), line.size(), MSG_NOSIGNAL | MSG_DONTWAIT));
    }
    const auto size = static_cast<qint64>(line.size());
    if (sent < size) { // it also finds out what is wrong, if anything is
        m_socket.write(line.data() + sent, size - sent);
        m_socket.flush();
    }
}

int CommandChannel::descriptor() const {
    return static_cast<int>(m_socket.socketDescriptor());
}

// Nothing that arrived before a command can be its reply. Whole lines are dropped; with the
// beginning of a line there is no telling where the reply begins.
bool CommandChannel::dropStaleInput() {
    char byte = 0;
    if (::recv(descriptor(), &byte, 1, MSG_PEEK | MSG_DONTWAIT) > 0) {
        m_socket.waitForReadyRead(0);
        readInput();
    }
    if (isOpen() && m_framer.pendingSize() > 0) {
        fail(MalformedReply, tr("the controller sent text that no command asked for"));
    }
    return isOpen();
}

CommandChannel::Answer CommandChannel::ask(const std::string& command, int timeoutMs) {
    const RequestPtr request = enqueue(command, timeoutMs, {});
    const QDeadlineTimer soon(longWaitMs);
    bool isTold = false;
    while (!request->done) {
        auto left = static_cast<int>(m_headDeadline.remainingTime());
        if (left > 0 && !isTold && m_waitObserver) {
            isTold = soon.hasExpired();
            if (isTold) {
                m_waitObserver(true);
            }
            left = std::min(left, isTold ? left : static_cast<int>(soon.remainingTime()) + 1);
        }
        if (left <= 0) {
            onHeadTimeout();
        } else if (m_socket.bytesAvailable() > 0) {
            readInput();
        } else if (m_socket.bytesToWrite() > 0 || !waitAndRead(left)) {
            waitWithSocket(left);
        }
    }
    if (isTold) {
        m_waitObserver(false);
    }
    return std::move(request->answer);
}

// False when only the socket object can tell what has happened.
bool CommandChannel::waitAndRead(int timeoutMs) {
    pollfd readable{descriptor(), POLLIN, 0};
    const int ready = ::poll(&readable, 1, timeoutMs);
    if (ready == 0 || (ready < 0 && errno == EINTR)) {
        return true;
    }
    std::array<char, readSize> input{};
    const ssize_t size = ::recv(descriptor(), input.data(), input.size(), MSG_DONTWAIT);
    if (size > 0) {
        take(input.data(), static_cast<std::size_t>(size));
    }
    return size > 0;
}

void CommandChannel::waitWithSocket(int timeoutMs) {
    if (m_socket.waitForReadyRead(timeoutMs) || m_socket.bytesAvailable() > 0) {
        readInput();
    } else if (m_socket.error() != QAbstractSocket::SocketTimeoutError && isOpen()) {
        fail(NotConnected, m_socket.errorString());
    }
}

void CommandChannel::askLater(const std::string& command, Callback callback, int timeoutMs) {
    enqueue(
        command, timeoutMs, callback ? std::move(callback) : [](const Answer&) {});
}

void CommandChannel::readInput() {
    if (m_state != State::Open || !m_socket.isOpen()) {
        return;
    }
    const QByteArray input = m_socket.readAll();
    take(input.constData(), static_cast<std::size_t>(input.size()));
}

void CommandChannel::take(const char* input, std::size_t size) {
    const bool bounded = m_framer.feed(input, size);
    std::string line;
    while (m_state == State::Open && m_framer.takeLine(line)) {
        if (!m_pending.empty()) {
            const RequestPtr request = m_pending.front();
            m_pending.pop_front();
            m_headTimer.stop();
            if (!m_pending.empty()) {
                startHeadTimer();
            }
            complete(request, std::move(line));
        } else if (!m_unexpectedSeen) {
            m_unexpectedSeen = true;
            laterForThisConnection(
                [this, text = QString::fromUtf8(line.data(), static_cast<int>(line.size()))] {
                    Q_EMIT unexpectedLine(text);
                });
        }
    }
    if (m_state == State::Open && !bounded) {
        fail(MalformedReply, tr("the controller sent a reply without an end"));
    } else if (m_state == State::Open && m_malformedInARow >= outOfStep) {
        fail(MalformedReply, tr("the replies do not belong to the commands"));
    }
}

void CommandChannel::complete(const RequestPtr& request, std::string line) {
    using Kind = kestrel_wire::Reply::Kind;
    Answer& answer = request->answer;
    answer.reply = kestrel_wire::parseReply(line, askedParameter(request->command));
    answer.line = std::move(line);
    switch (answer.reply.kind) {
    case Kind::Ok:
    case Kind::Value:
        answer.result = Success;
        m_malformedInARow = 0;
        break;
    case Kind::Error:
        answer.result = answer.reply.errorNumber;
        m_malformedInARow = 0;
        break;
    case Kind::Malformed:
        answer.result = MalformedReply;
        ++m_malformedInARow;
        break;
    }
    if (m_observer) {
        m_observer(request->command, answer);
    }
    finish(request);
}

void CommandChannel::finish(const RequestPtr& request) {
    request->done = true;
    if (request->callback) {
        later([request] { request->callback(request->answer); });
    }
}

void CommandChannel::fail(ChannelResult result, const QString& reason) {
    const State before = m_state;
    m_state = State::Closed;
    m_headTimer.stop();
    m_framer.clear();
    std::deque<RequestPtr> failed;
    failed.swap(m_pending);
    for (const RequestPtr& request : failed) {
        request->answer.result = result;
        if (m_failureObserver) {
            m_failureObserver(request->command, request->answer);
        }
        finish(request);
    }
    if (m_socket.state() != QAbstractSocket::UnconnectedState) {
        m_socket.abort();
    }
    if (before != State::Closed && !reason.isEmpty()) {
        laterForThisConnection([this, reason] { Q_EMIT lost(reason); });
    }
}

// A signal about a connection that was closed or replaced meanwhile would be taken for one about
// its successor.
void CommandChannel::laterForThisConnection(const std::function<void()>& what) {
    later([this, what, number = m_connectionNumber] {
        if (number == m_connectionNumber) {
            what();
        }
    });
}

void CommandChannel::later(const std::function<void()>& what) {
    m_later.push_back(what);
    QMetaObject::invokeMethod(this, &CommandChannel::runLater, Qt::QueuedConnection);
}

// One at a time from the member: a callback may open a dialog, whose loop goes on with the rest.
void CommandChannel::runLater() {
    while (!m_later.empty()) {
        const std::function<void()> what = std::move(m_later.front());
        m_later.pop_front();
        what();
    }
}

} // namespace workbench
