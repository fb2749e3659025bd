#include "workbench/outlets/igtl/igtlchannel.h"
#include "workbench/outlets/igtl/igtlmessages.h"
#include "workbench/outlets/sending/outlet.h"

#include <QNetworkInterface>
#include <QtTest>

#include <arpa/inet.h>
#include <igtlClientSocket.h>
#include <igtlMessageHeader.h>
#include <igtlPointMessage.h>
#include <igtlTransformMessage.h>
#include <list>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

using workbench::IgtlChannel;
using workbench::IgtlServer;
using workbench::ModuleResult;
using workbench::OutletChannel;
using workbench::OutletUrl;
using workbench::OutletWord;
using workbench::TrackedBody;
using workbench::TrackedFrame;
using Delivery = OutletChannel::Delivery;
using State = OutletWord::State;

namespace {

constexpr int patience = 20000;
constexpr kestrel_wire::UtcMilliseconds arrival = 1795318812345;

quint16 freePort() {
    IgtlServer server(QString(), 0);
    QString error;
    if (!server.listen(&error)) {
        qFatal("%s", qPrintable(error));
    }
    return server.port();
}

OutletUrl urlOf(quint16 port) {
    OutletUrl url;
    QString error;
    if (!url.parse(QStringLiteral("igtl://:%1").arg(port), &error)) {
        qFatal("%s", qPrintable(error));
    }
    return url;
}

/// A viewer, with the library that viewers use.
class Viewer {
public:
    explicit Viewer(quint16 port)
        : m_socket(igtl::ClientSocket::New()) {
        if (m_socket->ConnectToServer("127.0.0.1", port) != 0) {
            qFatal("nobody listens");
        }
        m_socket->SetReceiveTimeout(patience);
    }
    ~Viewer() { m_socket->CloseSocket(); }
    Viewer(const Viewer&) = delete;
    Viewer& operator=(const Viewer&) = delete;

    /// The header of the next message; null when none comes.
    igtl::MessageHeader::Pointer next() {
        igtl::MessageHeader::Pointer header = igtl::MessageHeader::New();
        header->InitPack();
        if (!receive(header->GetPackPointer(), header->GetPackSize())) {
            return nullptr;
        }
        header->Unpack();
        return header;
    }

    /// The message that belongs to a header; null when it is damaged.
    template <typename Message>
    typename Message::Pointer body(const igtl::MessageHeader::Pointer& header) {
        igtl::MessageHeader::Pointer copy = header;
        typename Message::Pointer message = Message::New();
        message->SetMessageHeader(copy);
        message->AllocatePack();
        if (!receive(message->GetPackBodyPointer(), message->GetPackBodySize())) {
            return nullptr;
        }
        return (message->Unpack(1) & igtl::MessageHeader::UNPACK_BODY) != 0 ? message : nullptr;
    }

private:
    bool receive(void* data, int size) {
        int received = 0;
        while (received < size) {
            const int count =
                m_socket->Receive(static_cast<char*>(data) + received, size - received, 0);
            if (count <= 0) {
                return false;
            }
            received += count;
        }
        return true;
    }

    igtl::ClientSocket::Pointer m_socket;
};

/// A connection that reads nothing.
class DeafClient {
public:
    explicit DeafClient(quint16 port, const char* address = "127.0.0.1")
        : m_socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in there{};
        there.sin_family = AF_INET;
        there.sin_port = htons(port);
        ::inet_pton(AF_INET, address, &there.sin_addr);
        m_isConnected = ::connect(m_socket, reinterpret_cast<sockaddr*>(&there), sizeof there) == 0;
    }
    ~DeafClient() { ::close(m_socket); }
    DeafClient(const DeafClient&) = delete;
    DeafClient& operator=(const DeafClient&) = delete;

    bool isConnected() const { return m_isConnected; }
    /// Whether the server has ended the connection.
    bool isLeft() const {
        char ignored = 0;
        return ::recv(m_socket, &ignored, 1, MSG_DONTWAIT) == 0;
    }

private:
    const int m_socket;
    bool m_isConnected = false;
};

TrackedBody body(TrackedBody::Kind kind, int number) {
    TrackedBody result;
    result.kind = kind;
    result.number = number;
    result.quality = 1.0;
    // A quarter turn about z: the first column is the room's y axis.
    result.rotation[1] = 1.0;
    result.rotation[3] = -1.0;
    result.rotation[8] = 1.0;
    result.position[0] = 1.5;
    result.position[1] = -2.25;
    result.position[2] = 1000.125;
    return result;
}

TrackedFrame someFrame() {
    TrackedFrame frame;
    frame.arrival = arrival;
    frame.bodies = {body(TrackedBody::Kind::Tool, 1), body(TrackedBody::Kind::Tool, 2),
                    body(TrackedBody::Kind::Reference, 1)};
    frame.bodies[1].quality = -1.0;
    return frame;
}

bool hasClients(IgtlServer& server, std::size_t count) {
    return QTest::qWaitFor(
        [&] {
            server.tend();
            return server.clients() == count;
        },
        patience);
}

bool isConnected(IgtlChannel& channel) {
    return QTest::qWaitFor(
        [&] {
            channel.tend();
            return channel.word().state == State::Connected;
        },
        patience);
}

} // namespace

class TestIgtlChannel : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aViewerGetsTheTransformOfWhatIsTracked() {
        const quint16 port = freePort();
        IgtlChannel channel(urlOf(port));
        channel.tend();
        Viewer viewer(port);
        QVERIFY(isConnected(channel));
        QVERIFY(channel.send(someFrame()) == Delivery::Sent);
        for (const char* name : {"M1", "MR1"}) {
            const auto header = viewer.next();
            QVERIFY(header.IsNotNull());
            QCOMPARE(header->GetDeviceType(), "TRANSFORM");
            QCOMPARE(header->GetDeviceName(), name);
            unsigned seconds = 0;
            unsigned fraction = 0;
            header->GetTimeStamp(&seconds, &fraction);
            QCOMPARE(seconds, 1795318812U);
            QVERIFY(std::abs(fraction / 4294967296.0 - 0.345) < 1e-6 ||
                    std::abs(fraction / 1e9 - 0.345) < 1e-6);
            const auto message = viewer.body<igtl::TransformMessage>(header);
            QVERIFY(message.IsNotNull());
            igtl::Matrix4x4 matrix;
            message->GetMatrix(matrix);
            const igtl::Matrix4x4 expected = {
                {0, -1, 0, 1.5F}, {1, 0, 0, -2.25F}, {0, 0, 1, 1000.125F}, {0, 0, 0, 1}};
            for (int row = 0; row < 4; ++row) {
                for (int column = 0; column < 4; ++column) {
                    QCOMPARE(matrix[row][column], expected[row][column]);
                }
            }
        }
    }

    void capturedPointsComeAsPoints() {
        const quint16 port = freePort();
        IgtlChannel channel(urlOf(port));
        channel.tend();
        Viewer viewer(port);
        QVERIFY(isConnected(channel));
        const auto result = [](const char* text) {
            return ModuleResult{QStringLiteral("PROBE"), QString::fromUtf8(text), arrival};
        };
        channel.send(result("no JSON"));
        channel.send(result(R"({"type":"tip_check","x_mm":1,"y_mm":2,"z_mm":3})"));
        channel.send(result(R"({"type":"point","x_mm":1,"y_mm":"2","z_mm":3})"));
        channel.send(result(R"({"type":"point","tool":"M3","name":"Ecke ü","x_mm":1.5,)"
                            R"("y_mm":-2,"z_mm":3,"radius95_mm":0.25})"));
        const auto header = viewer.next();
        QVERIFY(header.IsNotNull());
        QCOMPARE(header->GetDeviceType(), "POINT");
        QCOMPARE(header->GetDeviceName(), "M3");
        const auto message = viewer.body<igtl::PointMessage>(header);
        QVERIFY(message.IsNotNull());
        QCOMPARE(message->GetNumberOfPointElement(), 1);
        igtl::PointElement::Pointer point;
        message->GetPointElement(0, point);
        QCOMPARE(QString::fromUtf8(point->GetName()), QStringLiteral("Ecke ü"));
        float x = 0;
        float y = 0;
        float z = 0;
        point->GetPosition(x, y, z);
        QVERIFY(x == 1.5F && y == -2.0F && z == 3.0F);
        QCOMPARE(point->GetRadius(), 0.25F);
    }

    void endlessNamesAreCutAtACharacter() {
        const QString name = QString(100, QChar(0xfc));
        const ModuleResult result{
            QString(),
            QStringLiteral(R"({"type":"point","tool":"%1","name":"%1","x_mm":1,"y_mm":2,"z_mm":3})")
                .arg(name),
            arrival};
        std::string messages;
        workbench::appendPoint(result, messages);
        QVERIFY(!messages.empty());
        const QByteArray bytes = QByteArray::fromStdString(messages);
        QCOMPARE(bytes.count("\xc3\xbc"), 9 + 31);
    }

    void whatIsNotFiniteIsLeftOut() {
        TrackedFrame frame = someFrame();
        frame.bodies[0].position[2] = std::numeric_limits<double>::quiet_NaN();
        frame.bodies[2].rotation[8] = std::numeric_limits<double>::infinity();
        std::string messages;
        workbench::appendTransforms(frame, messages);
        QVERIFY(messages.empty());
    }

    void withoutAViewerNothingIsMissed() {
        IgtlChannel channel(urlOf(freePort()));
        channel.tend();
        QVERIFY(channel.send(someFrame()) == Delivery::NobodyThere);
        QVERIFY(channel.word().state == State::Waiting);
        QCOMPARE(channel.word().text, QStringLiteral("nobody is connected"));
    }

    void aViewerThatGoesIsNoticed() {
        const quint16 port = freePort();
        IgtlChannel channel(urlOf(port));
        channel.tend();
        {
            const DeafClient client(port);
            QVERIFY(isConnected(channel));
            QCOMPARE(channel.word().text, QStringLiteral("clients: 1"));
        }
        QVERIFY(QTest::qWaitFor(
            [&] {
                channel.tend();
                return channel.word().state == State::Waiting;
            },
            patience));
    }

    void aPortInUseIsTold() {
        const quint16 port = freePort();
        IgtlChannel first(urlOf(port));
        first.tend();
        IgtlChannel second(urlOf(port));
        second.tend();
        QVERIFY(second.word().state == State::Refused);
        QVERIFY2(second.word().text.contains(QString::number(port)),
                 qPrintable(second.word().text));
    }

    void thereIsRoomForSixteen() {
        IgtlServer server(QString(), 0);
        QString error;
        QVERIFY2(server.listen(&error), qPrintable(error));
        std::list<DeafClient> clients;
        for (std::size_t i = 0; i < IgtlServer::mostClients; ++i) {
            clients.emplace_back(server.port());
        }
        QVERIFY(hasClients(server, IgtlServer::mostClients));
        clients.emplace_back(server.port()); // gets no place
        QVERIFY(QTest::qWaitFor(
            [&] {
                server.tend();
                return clients.back().isLeft();
            },
            patience));
        QVERIFY(server.clients() == IgtlServer::mostClients);
        clients.pop_front();
        QVERIFY(hasClients(server, IgtlServer::mostClients - 1));
        clients.emplace_back(server.port());
        QVERIFY(hasClients(server, IgtlServer::mostClients));
    }

    void aSlowClientIsDroppedAndTheOthersAreNot() {
        IgtlServer server(QString(), 0);
        QString error;
        QVERIFY2(server.listen(&error), qPrintable(error));
        const DeafClient deaf(server.port());
        QVERIFY(hasClients(server, 1));
        const std::string piece(256 * 1024, 'x');
        QVERIFY(QTest::qWaitFor(
            [&] {
                server.send(piece);
                return server.clients() == 0;
            },
            patience));
        QCOMPARE(server.slowClients(), std::size_t(1));
        const DeafClient other(server.port());
        QVERIFY(hasClients(server, 1));
        server.send("message");
        QCOMPARE(server.clients(), std::size_t(1));
    }

    void onlyThisMachinesClientsUnlessAnAddressIsGiven() {
        QByteArray outside;
        const QList<QHostAddress> addresses = QNetworkInterface::allAddresses();
        for (const QHostAddress& address : addresses) {
            if (address.protocol() == QAbstractSocket::IPv4Protocol && !address.isLoopback()) {
                outside = address.toString().toUtf8();
            }
        }
        // The machine's other loopback addresses are as good where there is no network.
        const QByteArray other = outside.isEmpty() ? QByteArray("127.0.0.2") : outside;
        QString error;
        IgtlServer narrow(QString(), 0);
        QVERIFY2(narrow.listen(&error), qPrintable(error));
        QVERIFY(!DeafClient(narrow.port(), other.constData()).isConnected());
        QVERIFY(DeafClient(narrow.port()).isConnected());
        IgtlServer wide(QStringLiteral("0.0.0.0"), 0);
        QVERIFY2(wide.listen(&error), qPrintable(error));
        QVERIFY(DeafClient(wide.port(), other.constData()).isConnected());
    }
};

QTEST_GUILESS_MAIN(TestIgtlChannel)
#include "test_igtlchannel.moc"
