#include "workbench/outlets/sending/udpchannel.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <arpa/inet.h>
#include <array>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

using workbench::OutletChannel;
using workbench::OutletUrl;
using workbench::OutletWord;
using workbench::TrackedBody;
using workbench::TrackedFrame;
using workbench::UdpChannel;
using Delivery = OutletChannel::Delivery;
using State = OutletWord::State;

namespace {

constexpr int patience = 20000;

/// A program that takes JSON over UDP.
class Reader {
public:
    Reader() {
        m_socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        if (::bind(m_socket, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
            ::getsockname(m_socket, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
            qFatal("no port for the test");
        }
        m_port = ntohs(address.sin_port);
    }
    ~Reader() { ::close(m_socket); }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    OutletUrl url() const {
        OutletUrl url;
        QString error;
        if (!url.parse(QStringLiteral("udp://127.0.0.1:%1").arg(m_port), &error)) {
            qFatal("%s", qPrintable(error));
        }
        return url;
    }

    /// The next datagram; an invalid document when none comes or it is no JSON.
    QJsonDocument next() const {
        pollfd readable{m_socket, POLLIN, 0};
        if (::poll(&readable, 1, patience) != 1) {
            return {};
        }
        std::array<char, 65536> buffer{};
        const ssize_t size = ::recv(m_socket, buffer.data(), buffer.size(), 0);
        return QJsonDocument::fromJson(QByteArray(buffer.data(), static_cast<int>(size)));
    }

private:
    int m_socket = -1;
    quint16 m_port = 0;
};

TrackedFrame frameOf(unsigned counter, std::size_t bodies = 1) {
    TrackedFrame frame;
    frame.counter = counter;
    frame.seconds = counter + 0.5;
    frame.bodies.resize(bodies);
    for (std::size_t i = 0; i < bodies; ++i) {
        TrackedBody& body = frame.bodies[i];
        body.number = static_cast<int>(i) + 1;
        body.quality = 1.0;
        body.position[0] = 1.25;
        body.rotation[0] = body.rotation[4] = body.rotation[8] = 1.0;
    }
    return frame;
}

} // namespace

class TestUdpChannel : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void eachFrameIsADatagram() {
        const Reader reader;
        UdpChannel channel(reader.url());
        QVERIFY(channel.word().state == State::Waiting);
        channel.tend();
        for (unsigned i = 1; i <= 3; ++i) {
            QVERIFY(channel.send(frameOf(i)) == Delivery::Sent);
            const QJsonObject object = reader.next().object();
            QCOMPARE(object.value(QLatin1String("frame")).toInt(), static_cast<int>(i));
            QCOMPARE(object.value(QLatin1String("timestamp")).toDouble(), i + 0.5);
            QCOMPARE(
                object.value(QLatin1String("M1")).toObject().value(QLatin1String("x")).toDouble(),
                1.25);
        }
        QVERIFY(channel.word().state == State::Connected);
        QCOMPARE(channel.word().text, QStringLiteral("sending, as far as can be known"));
    }

    void thatNobodyTakesThemIsToldAndForgotten() {
        OutletUrl url;
        {
            const Reader reader;
            url = reader.url();
        }
        UdpChannel channel(url);
        channel.tend();
        unsigned counter = 0;
        QVERIFY(QTest::qWaitFor(
            [&] { return channel.send(frameOf(++counter)) == Delivery::Dropped; }, patience));
        QVERIFY(channel.word().state == State::Waiting);
        QCOMPARE(channel.word().text, QStringLiteral("nobody takes the data there"));
    }

    void aFrameOfManyToolsGoesWhole() {
        const Reader reader;
        UdpChannel channel(reader.url());
        channel.tend();
        QVERIFY(channel.send(frameOf(1, 100)) == Delivery::Sent);
        QCOMPARE(reader.next().object().size(), 102);
    }

    void aFrameThatIsTooLongIsDroppedAndTold() {
        const Reader reader;
        UdpChannel channel(reader.url());
        channel.tend();
        QVERIFY(channel.send(frameOf(1, 1000)) == Delivery::Dropped);
        QCOMPARE(channel.word().text, QStringLiteral("a frame has too much for one datagram"));
        QVERIFY(channel.send(frameOf(2)) == Delivery::Sent);
        QCOMPARE(reader.next().object().value(QLatin1String("frame")).toInt(), 2);
    }

    // The name cannot be one, so nobody is asked for it.
    void aHostThatIsNotThereIsTold() {
        OutletUrl url;
        QString error;
        QVERIFY(url.parse(QStringLiteral("udp://a..b"), &error));
        UdpChannel channel(url);
        channel.tend();
        QVERIFY(channel.word().state == State::Waiting);
        QVERIFY2(channel.word().text.contains(QStringLiteral("a..b")),
                 qPrintable(channel.word().text));
        QVERIFY(channel.send(frameOf(1)) == Delivery::Dropped);
    }
};

QTEST_GUILESS_MAIN(TestUdpChannel)
#include "test_udpchannel.moc"
