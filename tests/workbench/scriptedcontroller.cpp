#include "tests/workbench/scriptedcontroller.h"

#include <QPointer>
#include <QTcpSocket>
#include <QTimer>
#include <QUdpSocket>

#include <algorithm>
#include <linux/tcp.h>
#include <memory>
#include <netinet/in.h>
#include <sys/socket.h>

class ScriptedController::Server : public QTcpServer {
public:
    explicit Server(ScriptedController& controller)
        : m_controller(controller) {
        connect(this, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket* socket = nextPendingConnection()) {
                {
                    const std::lock_guard<std::mutex> lock(m_controller.m_mutex);
                    ++m_controller.m_connections;
                    m_controller.m_unanswered.clear();
                }
                // What is sent has arrived, also while the peer holds an acknowledgement back.
                socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
                m_sockets.emplace_back(socket);
                connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(socket); });
                connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            }
        });
    }

    void send(const std::string& bytes) {
        for (const QPointer<QTcpSocket>& socket : m_sockets) {
            if (socket) {
                socket->write(bytes.data(), static_cast<qint64>(bytes.size()));
                socket->flush();
            }
        }
    }

    int segments() const {
        tcp_info info{};
        socklen_t size = sizeof(info);
        const QPointer<QTcpSocket> socket = m_sockets.empty() ? nullptr : m_sockets.back();
        const bool good = socket && ::getsockopt(static_cast<int>(socket->socketDescriptor()),
                                                 IPPROTO_TCP, TCP_INFO, &info, &size) == 0;
        return good ? static_cast<int>(info.tcpi_data_segs_in) : -1;
    }

    void drop() {
        const auto sockets = m_sockets;
        m_sockets.clear();
        for (const QPointer<QTcpSocket>& socket : sockets) {
            if (socket) {
                socket->abort();
            }
        }
    }

    int openConnections() const {
        return static_cast<int>(
            std::count_if(m_sockets.begin(), m_sockets.end(), [](const auto& socket) {
                return socket && socket->state() == QAbstractSocket::ConnectedState;
            }));
    }

private:
    void read(QTcpSocket* socket) {
        while (socket->canReadLine()) {
            const std::string command = socket->readLine().trimmed().toStdString();
            const std::string reply = m_controller.replyTo(command);
            int delay = 0;
            {
                const std::lock_guard<std::mutex> lock(m_controller.m_mutex);
                delay = m_controller.m_delay;
            }
            const auto write = [reply, socket = QPointer<QTcpSocket>(socket)] {
                if (socket && !reply.empty()) {
                    socket->write(reply.data(), static_cast<qint64>(reply.size()));
                    socket->flush();
                }
            };
            if (delay > 0) {
                QTimer::singleShot(delay, Qt::PreciseTimer, this, write);
            } else {
                write();
            }
        }
    }

    ScriptedController& m_controller;
    std::vector<QPointer<QTcpSocket>> m_sockets;
};

ScriptedController::ScriptedController() {
    m_values = {{"version system", "2.10.1"},
                {"version protocol", "1.14.0"},
                {"version system_ct", "1.2.3"},
                {"version model", "SCRIPTED"},
                {"status active", "none"}};
    // A socket that is bound and does not listen keeps the port while nobody listens on it: the
    // next free port that another test is given would else be this one, and our client reach it.
    m_guard.bind(QHostAddress::LocalHost, 0,
                 QAbstractSocket::ShareAddress | QAbstractSocket::ReuseAddressHint);
    m_port = m_guard.localPort();
    m_server = new Server(*this);
    m_server->moveToThread(&m_thread);
    m_thread.start();
    listenAgain();
}

ScriptedController::~ScriptedController() {
    onServerThread([this] {
        m_server->drop();
        delete m_server;
    });
    m_thread.quit();
    m_thread.wait();
}

template <typename Function>
void ScriptedController::onServerThread(Function function) const {
    QMetaObject::invokeMethod(m_server, function, Qt::BlockingQueuedConnection);
}

void ScriptedController::answer(const std::string& parameter, const std::string& value) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_values[parameter] = value;
}

void ScriptedController::answerRaw(const std::string& command, const std::string& bytes) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_raw[command] = bytes;
}

void ScriptedController::forget(const std::string& command) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_raw.erase(command);
}

void ScriptedController::setSilent(bool silent) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_silent = silent;
}

std::vector<std::string> ScriptedController::unanswered() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return {m_unanswered.begin(), m_unanswered.end()};
}

void ScriptedController::answerLate(std::size_t count) {
    std::string replies;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        for (; count > 0 && !m_unanswered.empty(); --count) {
            replies += replyInWords(m_unanswered.front());
            m_unanswered.pop_front();
        }
    }
    sendNow(replies);
}

void ScriptedController::setDelay(int milliseconds) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_delay = milliseconds;
}

void ScriptedController::sendNow(const std::string& bytes) {
    onServerThread([this, bytes] { m_server->send(bytes); });
}

void ScriptedController::dropConnections() {
    onServerThread([this] { m_server->drop(); });
}

void ScriptedController::refuseConnections() {
    onServerThread([this] { m_server->close(); });
}

void ScriptedController::stopListening() {
    onServerThread([this] {
        m_server->close();
        m_server->drop();
    });
}

bool ScriptedController::listenAgain() {
    bool good = false;
    onServerThread([this, &good] {
        good = m_server->isListening() || m_server->listen(QHostAddress::LocalHost, m_port);
    });
    return good;
}

bool ScriptedController::isListening() const {
    bool listening = false;
    onServerThread([this, &listening] { listening = m_server->isListening(); });
    return listening;
}

std::vector<std::string> ScriptedController::commands() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_commands;
}

int ScriptedController::count(const std::string& command) const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return static_cast<int>(std::count(m_commands.begin(), m_commands.end(), command));
}

void ScriptedController::clearCommands() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_commands.clear();
}

int ScriptedController::connections() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_connections;
}

int ScriptedController::openConnections() const {
    int count = 0;
    onServerThread([this, &count] { count = m_server->openConnections(); });
    return count;
}

int ScriptedController::receivedSegments() const {
    int segments = -1;
    onServerThread([this, &segments] { segments = m_server->segments(); });
    return segments;
}

quint16 ScriptedController::dataPort() const {
    static const std::string prefix = "kestrel2 set data_port ";
    quint16 port = 0;
    for (const std::string& command : commands()) {
        if (command.rfind(prefix, 0) == 0) {
            port = static_cast<quint16>(std::stoi(command.substr(prefix.size())));
        }
    }
    return port;
}

void ScriptedController::sendFrame(const std::string& frame) {
    if (m_dataSocket == nullptr) {
        m_dataSocket = std::make_unique<QUdpSocket>();
        m_dataSocket->bind(QHostAddress(QHostAddress::LocalHost));
    }
    m_dataSocket->writeDatagram(frame.data(), static_cast<qint64>(frame.size()),
                                QHostAddress::LocalHost, dataPort());
}

std::string ScriptedController::replyTo(const std::string& command) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_commands.push_back(command);
    if (m_silent) {
        m_unanswered.push_back(command);
        return {};
    }
    return replyInWords(command);
}

std::string ScriptedController::replyInWords(const std::string& command) const {
    static const std::string get = "kestrel2 get ";
    const auto raw = m_raw.find(command);
    if (raw != m_raw.end()) {
        return raw->second;
    }
    if (command.rfind(get, 0) != 0) {
        return "kestrel2 ok\n";
    }
    const std::string parameter = command.substr(get.size());
    const auto value = m_values.find(parameter);
    return value == m_values.end() ? "kestrel2 err 3 \"unknown parameter\"\n"
                                   : "kestrel2 set " + parameter + ' ' + value->second + '\n';
}
