#include "simulator/simulator.h"

#include <QFile>

#include <algorithm>
#include <cmath>
#include <utility>

namespace kestrel_simulator {

namespace {

constexpr int framesPerTurn = 20; // then commands have their turn
constexpr double longestWait = 3600.0;
constexpr int maxDatagram = 65507;
constexpr int acceptAgainMs = 200;

bool hasSpareDescriptor() {
    return QFile(QStringLiteral("/dev/null")).open(QIODevice::ReadOnly);
}

} // namespace

Simulator::Simulator(const SimulatorOptions& options, QObject* parent)
    : QObject(parent)
    , m_options(options)
    , m_controller(options.controller) {
    m_clock.start();
    for (const auto& [id, number] : options.misbehaviours) {
        m_controller.misbehaviours().switchOn(id, number);
    }
    m_server.setMaxPendingConnections(maxConnections);
    m_frameTimer.setSingleShot(true);
    m_frameTimer.setTimerType(Qt::PreciseTimer);
    connect(&m_server, &QTcpServer::newConnection, this, &Simulator::acceptConnections);
    m_acceptTimer.setSingleShot(true);
    m_acceptTimer.setInterval(acceptAgainMs);
    connect(&m_server, &QTcpServer::acceptError, this, &Simulator::pauseAccepting);
    connect(&m_acceptTimer, &QTimer::timeout, this, &Simulator::acceptAgain);
    connect(&m_frameTimer, &QTimer::timeout, this, &Simulator::sendDueFrames);
}

Simulator::~Simulator() {
    // a connection that closes while it is deleted must find nobody to tell
    for (CommandConnection* connection : m_connections) {
        disconnect(connection, nullptr, this, nullptr);
        delete connection;
    }
    const QList<QTcpSocket*> refused = m_server.findChildren<QTcpSocket*>();
    for (QTcpSocket* socket : refused) {
        disconnect(socket, nullptr, this, nullptr);
    }
}

ExitCode Simulator::start(QString& error) {
    const ExitCode replay = openReplay(error);
    if (replay != ExitOk) {
        return replay;
    }
    if (!m_server.listen(m_options.address, m_options.port)) {
        error = QStringLiteral("cannot listen on %1:%2: %3")
                    .arg(m_options.address.toString())
                    .arg(m_options.port)
                    .arg(m_server.errorString());
        return ExitCannotListen;
    }
    if (!hasSpareDescriptor()) {
        pauseAccepting();
    }
    if (!m_dataSocket.bind(m_options.address, 0)) {
        error = QStringLiteral("cannot send data from %1: %2")
                    .arg(m_options.address.toString(), m_dataSocket.errorString());
        return ExitCannotListen;
    }
    return ExitOk;
}

ExitCode Simulator::openReplay(QString& error) {
    if (m_options.replayFile.isEmpty()) {
        return ExitOk;
    }
    std::string reason;
    std::unique_ptr<Replay> replay = Replay::open(
        QFile::encodeName(m_options.replayFile).toStdString(), m_options.replayEnd, reason);
    if (!replay) {
        error = QStringLiteral("%1: %2").arg(m_options.replayFile, QString::fromStdString(reason));
        return ExitBadRecording;
    }
    if (replay->isTruncated()) {
        m_notice =
            QStringLiteral("%1: the last line is cut and left out").arg(m_options.replayFile);
    }
    m_controller.setReplay(std::move(replay));
    return ExitOk;
}

void Simulator::acceptConnections() {
    while (QTcpSocket* const socket = m_server.nextPendingConnection()) {
        if (connectionCount() >= maxConnections) {
            refuseConnection(socket);
            continue;
        }
        const auto handler = [this](std::string_view line, Session& session) {
            ReplyPlan plan = m_controller.execute(line, session, now());
            scheduleFrames();
            return plan;
        };
        auto* connection = new CommandConnection(socket, handler, this);
        connect(connection, &CommandConnection::closed, this,
                [this, connection] { forget(connection); });
        m_connections.push_back(connection);
    }
    if (!hasSpareDescriptor()) {
        pauseAccepting();
    }
}

// QTcpServer must not find out by itself: depending on what happened before it would stop to accept
// for good, or try again and again without a rest.
void Simulator::pauseAccepting() {
    m_server.setMaxPendingConnections(0);
    m_server.pauseAccepting();
    m_acceptTimer.start();
}

void Simulator::acceptAgain() {
    if (!hasSpareDescriptor()) {
        m_acceptTimer.start();
        return;
    }
    m_server.setMaxPendingConnections(maxConnections);
    m_server.resumeAccepting();
}

void Simulator::refuseConnection(QTcpSocket* socket) {
    connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
        --m_refusedConnections;
        socket->deleteLater();
    });
    if (++m_refusedConnections > maxConnections) {
        socket->abort();
    } else {
        refuseAndClose(socket, kestrel_wire::ErrorNumber::TooMany, "too many connections");
    }
}

void Simulator::forget(CommandConnection* connection) {
    m_connections.erase(std::remove(m_connections.begin(), m_connections.end(), connection),
                        m_connections.end());
    connection->deleteLater();
}

void Simulator::watchReplay() {
    if (m_controller.isReplayChanged() && !std::exchange(m_isChangeTold, true)) {
        Q_EMIT noticed(QStringLiteral("%1: the recording has been changed since it was opened; it "
                                      "ends early")
                           .arg(m_options.replayFile));
    }
}

void Simulator::scheduleFrames() {
    watchReplay();
    const double seconds = m_controller.secondsToNextFrame(now());
    if (std::isinf(seconds)) {
        m_frameTimer.stop();
    } else {
        m_frameTimer.start(static_cast<int>(std::ceil(std::min(seconds, longestWait) * 1000.0)));
    }
}

void Simulator::sendDueFrames() {
    std::vector<std::string> lines;
    for (int i = 0; i < framesPerTurn && m_controller.takeFrame(now(), lines); ++i) {
        send(lines);
    }
    scheduleFrames();
}

void Simulator::send(const std::vector<std::string>& lines) {
    QByteArray datagram;
    for (const std::string& line : lines) {
        if (datagram.size() + static_cast<int>(line.size()) + 2 > maxDatagram) {
            break;
        }
        if (!datagram.isEmpty()) {
            datagram += "\r\n";
        }
        datagram.append(line.data(), static_cast<int>(line.size()));
    }
    if (datagram.isEmpty()) {
        return;
    }
    for (const CommandConnection* connection : m_connections) {
        if (connection->dataPort() != 0) {
            m_dataSocket.writeDatagram(datagram, connection->peerAddress(), connection->dataPort());
        }
    }
}

} // namespace kestrel_simulator
