#include "tests/support/datarows.h"
#include "tests/workbench/outlets/mqtt/broker.h"
#include "tests/workbench/outlets/mqtt/relay.h"
#include "tests/workbench/outlets/mqtt/subscriber.h"
#include "workbench/outlets/mqtt/mqttchannel.h"
#include "workbench/outlets/sending/outlet.h"

#include <QDir>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <arpa/inet.h>
#include <memory>
#include <netinet/in.h>
#include <numeric>
#include <sys/socket.h>
#include <unistd.h>

using workbench::ChannelSurroundings;
using workbench::ModuleResult;
using workbench::MqttChannel;
using workbench::Outlet;
using workbench::OutletUrl;
using workbench::OutletWord;
using workbench::TrackedFrame;
using State = OutletWord::State;

namespace {

constexpr int patience = 60000;
constexpr int noRetry = 1200; // more than twice the first pause of one that is tried again
constexpr const char* poses = "t/press 7/poses";
constexpr const char* state = "t/press 7/state";
constexpr const char* results = "t/press 7/results";

std::shared_ptr<const TrackedFrame> frameOf(unsigned counter) {
    auto frame = std::make_shared<TrackedFrame>();
    frame->counter = counter;
    frame->seconds = counter;
    frame->arrival = 1795318812345;
    return frame;
}

ModuleResult resultOf(int number) {
    return {QStringLiteral("PROBE"),
            QStringLiteral("{\"type\":\"point\",\"number\":%1}").arg(number), 1795318812345};
}

/// One that tells its time, as modules do.
ModuleResult timedResultOf(int number) {
    ModuleResult result = resultOf(number);
    result.text.insert(1, QStringLiteral("\"time\":\"2026-11-22T03:40:12.345Z\","));
    return result;
}

int numberOf(const QByteArray& message) {
    return QJsonDocument::fromJson(message)
        .object()
        .value(QLatin1String("result"))
        .toObject()
        .value(QLatin1String("number"))
        .toInt(-1);
}

QString idOf(const QByteArray& message) {
    return QJsonDocument::fromJson(message).object().value(QLatin1String("id")).toString();
}

/// Numbers of the results that have come, in their order, each id once.
QVector<int> numbersIn(const std::vector<QByteArray>& messages) {
    QSet<QString> ids;
    QVector<int> numbers;
    for (const QByteArray& message : messages) {
        if (!ids.contains(idOf(message))) {
            ids += idOf(message);
            numbers += numberOf(message);
        }
    }
    return numbers;
}

QVector<int> upTo(int count) {
    QVector<int> numbers(count);
    std::iota(numbers.begin(), numbers.end(), 0);
    return numbers;
}

} // namespace

class TestMqttChannel : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_data;
    std::chrono::milliseconds m_writingTime{0};

    std::unique_ptr<Outlet> outlet(const QString& text, bool isTrial = false) const {
        OutletUrl url;
        QString error;
        if (!url.parse(text, &error)) {
            qFatal("%s", qPrintable(error));
        }
        ChannelSurroundings surroundings;
        surroundings.computerName = QStringLiteral("press 7");
        surroundings.dataFolder = m_data->path();
        surroundings.isTrial = isTrial;
        surroundings.longestSilence = std::chrono::milliseconds(500);
        surroundings.writingTime = m_writingTime;
        return std::make_unique<Outlet>(std::make_unique<MqttChannel>(url, surroundings));
    }

    std::unique_ptr<Outlet> plain(quint16 port) const {
        return outlet(QStringLiteral("mqtt://127.0.0.1:%1/t").arg(port));
    }

    static bool becomes(const Outlet& outlet, State wanted) {
        const bool did =
            QTest::qWaitFor([&] { return outlet.status().word.state == wanted; }, patience);
        if (!did) {
            qWarning("it says: %s", qPrintable(outlet.status().word.text));
        }
        return did;
    }

    static void end(std::unique_ptr<Outlet> outlet) {
        outlet->end();
        QVERIFY(outlet->waitForEnd(std::chrono::steady_clock::now() +
                                   std::chrono::milliseconds(patience)));
    }

    QByteArrayList spools() const {
        QByteArrayList names;
        const QDir folder(m_data->filePath(QStringLiteral("results")));
        const QStringList files = folder.entryList({QStringLiteral("*.results")}, QDir::Files);
        for (const QString& name : files) {
            names += name.toUtf8();
        }
        return names;
    }

private Q_SLOTS:
    void init() {
        m_data = std::make_unique<QTemporaryDir>();
        m_writingTime = ChannelSurroundings().writingTime;
    }

    void posesComeThinnedOutAndTheLatest() {
        const Broker broker;
        const Subscriber subscriber(broker.port());
        const auto sender = plain(broker.port());
        QVERIFY(becomes(*sender, State::Connected));
        QElapsedTimer timer;
        timer.start();
        unsigned counter = 0;
        QVERIFY(QTest::qWaitFor(
            [&] {
                for (int i = 0; i < 10; ++i) {
                    sender->add(frameOf(++counter));
                }
                return subscriber.payloads(poses).size() >= 10;
            },
            patience));
        sender->add(frameOf(++counter));
        QTRY_COMPARE_WITH_TIMEOUT(QJsonDocument::fromJson(subscriber.last(poses))
                                      .object()
                                      .value(QLatin1String("frame"))
                                      .toInt(),
                                  static_cast<int>(counter), patience);
        const auto most = static_cast<std::size_t>(timer.elapsed() / 50) + 2;
        QVERIFY(subscriber.payloads(poses).size() <= most);
        QCOMPARE(QJsonDocument::fromJson(subscriber.last(poses))
                     .object()
                     .value(QLatin1String("utc"))
                     .toString(),
                 QStringLiteral("2026-11-22T03:40:12.345Z"));
    }

    void theStateIsKeptForLaterAndTellsOfAnOrderlyEnd() {
        const Broker broker;
        auto sender = plain(broker.port());
        sender->add(resultOf(1));
        QTRY_COMPARE_WITH_TIMEOUT(sender->status().word.sentResults, quint64(1), patience);
        const Subscriber subscriber(broker.port()); // later than the broker's word on the result
        QTRY_COMPARE_WITH_TIMEOUT(subscriber.last(state), QByteArray("online"), patience);
        QVERIFY(subscriber.messages().front().isRetained);
        end(std::move(sender));
        QTRY_COMPARE_WITH_TIMEOUT(subscriber.last(state), QByteArray("offline"), patience);
    }

    void theLastWillTellsOfALostConnectionAndItComesBack() {
        const Broker broker;
        const Subscriber subscriber(broker.port());
        Relay relay(broker.port());
        const auto sender = plain(relay.port());
        QTRY_COMPARE_WITH_TIMEOUT(subscriber.last(state), QByteArray("online"), patience);
        relay.cut();
        QTRY_VERIFY_WITH_TIMEOUT(subscriber.payloads(state).size() >= 3, patience);
        QCOMPARE(subscriber.payloads(state)[1], QByteArray("offline"));
        QCOMPARE(subscriber.payloads(state)[2], QByteArray("online"));
        QVERIFY(becomes(*sender, State::Connected));
    }

    void resultsComeInTheirOrderWithIdsOfTheirOwn() {
        const Broker broker;
        const Subscriber subscriber(broker.port());
        const auto sender = plain(broker.port());
        for (int i = 0; i < 100; ++i) {
            sender->add(resultOf(i));
        }
        QTRY_COMPARE_WITH_TIMEOUT(numbersIn(subscriber.payloads(results)), upTo(100), patience);
        QTRY_COMPARE_WITH_TIMEOUT(sender->status().word.waitingResults, quint64(0), patience);
        QCOMPARE(sender->status().word.sentResults, quint64(100));
        const QJsonObject first =
            QJsonDocument::fromJson(subscriber.payloads(results).front()).object();
        QCOMPARE(first.value(QLatin1String("station")).toString(), QStringLiteral("press 7"));
        QCOMPARE(first.value(QLatin1String("source")).toString(), QStringLiteral("PROBE"));
    }

    void resultsSurviveABrokerThatIsKilled() {
        Broker broker;
        const Subscriber subscriber(broker.port());
        Relay relay(broker.port());
        const auto sender = plain(relay.port());
        QVERIFY(becomes(*sender, State::Connected));
        int number = 0;
        for (int round = 0; round < 3; ++round) {
            sender->add(resultOf(number++));
            broker.kill();
            relay.close();
            for (int i = 0; i < 30; ++i) {
                sender->add(resultOf(number++));
            }
            QTRY_VERIFY_WITH_TIMEOUT(sender->status().word.waitingResults >= 30, patience);
            broker.start();
            QTRY_VERIFY_WITH_TIMEOUT(subscriber.isSubscribed(), patience);
            relay.open();
            QTRY_COMPARE_WITH_TIMEOUT(sender->status().word.waitingResults, quint64(0), patience);
        }
        // Also what it had confirmed and not written down when it was killed.
        QTRY_VERIFY_WITH_TIMEOUT(numbersIn(subscriber.payloads(results)).contains(number - 1),
                                 patience);
        QVector<int> numbers = numbersIn(subscriber.payloads(results));
        QVERIFY(std::is_sorted(numbers.begin(), numbers.end()));
        for (int i = 0; i < number; ++i) {
            QVERIFY2(numbers.contains(i), qPrintable(QString::number(i)));
        }
    }

    void resultsSurviveTheEndOfTheWorkbench() {
        quint16 port = 0;
        {
            const Broker gone;
            port = gone.port();
        }
        for (int run = 0; run < 2; ++run) {
            auto sender = plain(port);
            for (int i = 0; i < 5; ++i) {
                sender->add(resultOf(5 * run + i));
            }
            QTRY_COMPARE_WITH_TIMEOUT(sender->status().word.waitingResults, quint64(5 * (run + 1)),
                                      patience);
            end(std::move(sender));
        }
        // Nobody is there to take them; another broker, on another port, is another place.
        const Broker other;
        const Subscriber subscriber(other.port());
        const auto sender = plain(other.port());
        sender->add(resultOf(77));
        QTRY_COMPARE_WITH_TIMEOUT(numbersIn(subscriber.payloads(results)), QVector<int>({77}),
                                  patience);
        QCOMPARE(spools().size(), 2);
    }

    void whatWasLeftIsSentByTheNextRun() {
        Broker broker;
        const Subscriber subscriber(broker.port());
        broker.kill();
        {
            auto sender = plain(broker.port());
            for (int i = 0; i < 40; ++i) {
                sender->add(resultOf(i));
            }
            QTRY_COMPARE_WITH_TIMEOUT(sender->status().word.waitingResults, quint64(40), patience);
            end(std::move(sender));
        }
        broker.start();
        QTRY_VERIFY_WITH_TIMEOUT(subscriber.isSubscribed(), patience);
        const auto sender = plain(broker.port());
        QTRY_COMPARE_WITH_TIMEOUT(numbersIn(subscriber.payloads(results)), upTo(40), patience);
    }

    void whatIsConfirmedSettles_data() {
        QTest::addColumn<QVector<int>>("confirmed"); // when, in seconds
        QTest::addColumn<int>("now");
        QTest::addColumn<int>("settled"); // so many
        const auto at = [](std::initializer_list<int> times) { return QVector<int>(times); };
        row("nothing", at({}), 1000, 0);
        row("just now", at({0}), 0, 0);
        row("the broker was not heard again", at({0}), 10, 0);
        row("it was heard before it can have written", at({0, 9}), 20, 0);
        row("it was heard when it has written", at({0, 10}), 10, 1);
        row("each by itself", at({0, 5, 8, 16}), 16, 2);
        row("not heard, and its going not noticed yet", at({0}), 39, 0);
        row("not heard, and its going would be noticed", at({0}), 40, 1);
        row("the last ones too", at({0, 1}), 41, 2);
    }
    void whatIsConfirmedSettles() {
        using std::chrono::seconds;
        QFETCH(QVector<int>, confirmed);
        QFETCH(int, now);
        workbench::UnsettledResults unsettled(seconds(10), seconds(30));
        const workbench::UnsettledResults::Clock::time_point begin(seconds(12345));
        for (int i = 0; i < confirmed.size(); ++i) {
            unsettled.add(static_cast<std::uint64_t>(i), begin + seconds(confirmed[i]));
        }
        int settled = 0;
        while (const auto number = unsettled.takeSettled(begin + seconds(now))) {
            QCOMPARE(*number, static_cast<std::uint64_t>(settled));
            ++settled;
        }
        QTEST(settled, "settled");
        QCOMPARE(static_cast<int>(unsettled.size()), confirmed.size() - settled);
    }

    // The broker forgets what it has confirmed; nobody of us is there when it is killed.
    void whatWasConfirmedJustBeforeAnOrderlyEndIsNotLostWithTheBroker() {
        m_writingTime = std::chrono::hours(1);
        Broker::Manner manner;
        manner.isForgetful = true;
        Broker broker(manner);
        {
            auto sender = plain(broker.port());
            for (int i = 0; i < 5; ++i) {
                sender->add(resultOf(i));
            }
            QTRY_COMPARE_WITH_TIMEOUT(sender->status().word.sentResults, quint64(5), patience);
            QTRY_COMPARE_WITH_TIMEOUT(sender->status().word.waitingResults, quint64(0), patience);
            end(std::move(sender));
        }
        broker.kill();
        broker.start();
        const Subscriber subscriber(broker.port());
        const auto sender = plain(broker.port());
        QTRY_COMPARE_WITH_TIMEOUT(numbersIn(subscriber.payloads(results)), upTo(5), patience);
    }

    void whatComesAgainAfterARestartHasItsId() {
        m_writingTime = std::chrono::hours(1);
        const Broker broker;
        const Subscriber subscriber(broker.port());
        for (int run = 1; run <= 3; ++run) {
            auto sender = plain(broker.port());
            if (run == 1) {
                for (int i = 0; i < 5; ++i) {
                    sender->add(resultOf(i));
                }
            }
            QTRY_VERIFY_WITH_TIMEOUT(
                subscriber.payloads(results).size() >= static_cast<std::size_t>(5 * run), patience);
            end(std::move(sender));
        }
        QCOMPARE(numbersIn(subscriber.payloads(results)), upTo(5));
    }

    // A cable is pulled, the broker's computer loses its power, and nothing ends the connection.
    void whatWasConfirmedBeforeABrokerHasGoneSilentlyIsNotLost() {
        m_writingTime = std::chrono::milliseconds(200);
        Broker::Manner manner;
        manner.isForgetful = true;
        Broker broker(manner);
        Relay relay(broker.port());
        const auto sender = plain(relay.port());
        sender->add(resultOf(0)); // of several a later one might tell that the broker was heard
        QTRY_COMPARE_WITH_TIMEOUT(sender->status().word.sentResults, quint64(1), patience);
        relay.stall();
        broker.kill();
        // Long enough for it to be believed written, had the broker been heard again.
        const QString spool = m_data->filePath(QStringLiteral("results/") + spools().value(0));
        QVERIFY(!QTest::qWaitFor([&] { return QFileInfo(spool).size() == 0; }, noRetry));
        broker.start();
        const Subscriber subscriber(broker.port());
        relay.flow();
        relay.cut();
        QTRY_COMPARE_WITH_TIMEOUT(numbersIn(subscriber.payloads(results)), upTo(1), patience);
    }

    void whatHasSettledDoesNotComeAgain() {
        m_writingTime = std::chrono::milliseconds(200);
        const Broker broker;
        const Subscriber subscriber(broker.port());
        int number = 0;
        {
            auto sender = plain(broker.port());
            // The broker is heard again when it confirms a later one.
            QVERIFY(QTest::qWaitFor(
                [&] {
                    sender->add(resultOf(number++));
                    QFile taken(m_data->filePath(QStringLiteral("results/%1.taken")
                                                     .arg(QString::fromUtf8(spools().value(0)))));
                    return taken.open(QIODevice::ReadOnly) && taken.readAll().trimmed().toInt() > 0;
                },
                patience));
            end(std::move(sender));
        }
        const auto sender = plain(broker.port());
        sender->add(resultOf(number++));
        QTRY_VERIFY_WITH_TIMEOUT(numbersIn(subscriber.payloads(results)).contains(number - 1),
                                 patience);
        QCOMPARE(numbersIn(subscriber.payloads(results)), upTo(number));
        int first = 0;
        for (const QByteArray& message : subscriber.payloads(results)) {
            first += numberOf(message) == 0 ? 1 : 0;
        }
        QCOMPARE(first, 1);
    }

    void whatAModuleWritesAgainHasItsId() {
        const Broker broker;
        const Subscriber subscriber(broker.port());
        const auto sender = plain(broker.port());
        for (const int number : {0, 1, 1, 2}) {
            sender->add(timedResultOf(number));
        }
        QTRY_COMPARE_WITH_TIMEOUT(subscriber.payloads(results).size(), std::size_t(4), patience);
        QCOMPARE(numbersIn(subscriber.payloads(results)), upTo(3));
    }

    void aBrokerThatStallsHoldsNobody() {
        Broker broker;
        const Subscriber subscriber(broker.port());
        const auto sender = plain(broker.port());
        QVERIFY(becomes(*sender, State::Connected));
        broker.pause();
        for (int i = 0; i < 30; ++i) {
            sender->add(resultOf(i));
            sender->add(frameOf(static_cast<unsigned>(i)));
        }
        QTRY_COMPARE_WITH_TIMEOUT(sender->status().word.text,
                                  QStringLiteral("the broker does not answer"), patience);
        QTRY_COMPARE_WITH_TIMEOUT(sender->status().word.waitingResults, quint64(30), patience);
        broker.resume();
        QTRY_COMPARE_WITH_TIMEOUT(numbersIn(subscriber.payloads(results)), upTo(30), patience);
        QTRY_COMPARE_WITH_TIMEOUT(sender->status().word.waitingResults, quint64(0), patience);
    }

    void aRefusedLoginIsToldAndNotTriedAgainAtOnce() {
        Broker::Manner manner;
        manner.access = Broker::Access::WithPassword;
        const Broker broker(manner);
        Relay relay(broker.port());
        const QStringList options[] = {
            {QString(), QStringLiteral("?station=a")},
            {QStringLiteral("anna@"), QStringLiteral("?station=b")},
            {QStringLiteral("anna@"),
             QStringLiteral("?station=c&password-file=") + broker.passwordFile("wrong")},
            {QStringLiteral("bert@"),
             QStringLiteral("?station=d&password-file=") + broker.passwordFile("wrong")}};
        std::vector<std::unique_ptr<Outlet>> senders;
        for (const QStringList& option : options) {
            senders.push_back(outlet(QStringLiteral("mqtt://") + option[0] +
                                     QStringLiteral("127.0.0.1:%1/t").arg(relay.port()) +
                                     option[1]));
            QVERIFY(becomes(*senders.back(), State::Refused));
            QCOMPARE(senders.back()->status().word.text,
                     QStringLiteral("the broker refuses the login"));
        }
        QVERIFY(!QTest::qWaitFor([&] { return relay.connections() > 4; }, noRetry));
    }

    void theRightPasswordOpens() {
        Broker::Manner manner;
        manner.access = Broker::Access::WithPassword;
        const Broker broker(manner);
        const Subscriber subscriber(broker.port(), "anna", Broker::password);
        const auto sender = outlet(
            QStringLiteral("mqtt://anna@127.0.0.1:%1/t?password-file=%2")
                .arg(broker.port())
                .arg(broker.passwordFile(QByteArray(Broker::password) + "\nsince last May")));
        QVERIFY(becomes(*sender, State::Connected));
        QTRY_COMPARE_WITH_TIMEOUT(subscriber.last(state), QByteArray("online"), patience);
    }

    void aMissingPasswordFileIsTold() {
        const Broker broker;
        const auto sender =
            outlet(QStringLiteral("mqtt://anna@127.0.0.1:%1/t?password-file=/nowhere/at/all")
                       .arg(broker.port()));
        QVERIFY(becomes(*sender, State::Refused));
        QVERIFY(sender->status().word.text.contains(QStringLiteral("/nowhere/at/all")));
    }

    void certificatesAreChecked_data() {
        QTest::addColumn<QString>("name"); // in the broker's certificate
        QTest::addColumn<bool>("isKnown"); // its authority
        QTest::addColumn<bool>("isGood");
        QTest::newRow("all in order") << QStringLiteral("127.0.0.1") << true << true;
        QTest::newRow("another host") << QStringLiteral("broker.example") << true << false;
        QTest::newRow("unknown authority") << QStringLiteral("127.0.0.1") << false << false;
    }
    void certificatesAreChecked() {
        QFETCH(QString, name);
        QFETCH(bool, isKnown);
        QFETCH(bool, isGood);
        Broker::Manner manner;
        manner.isEncrypted = true;
        manner.name = name;
        Broker broker(manner);
        Relay relay(broker.port());
        const auto sender =
            outlet(QStringLiteral("mqtts://127.0.0.1:%1/t?ca=%2")
                       .arg(relay.port())
                       .arg(isKnown ? broker.authorityFile() : broker.strangeAuthorityFile()));
        QVERIFY(becomes(*sender, isGood ? State::Connected : State::Refused));
        if (!isGood) {
            QCOMPARE(
                sender->status().word.text,
                QStringLiteral("no agreement with the broker on certificates: its own is of an "
                               "authority that is not trusted, made out to another host, or "
                               "not valid now"));
            QVERIFY(!QTest::qWaitFor([&] { return relay.connections() > 1; }, noRetry));
        }
    }

    void aBrokerThatWantsACertificateGetsIt() {
        Broker::Manner manner;
        manner.isEncrypted = true;
        manner.access = Broker::Access::WithCertificate;
        const Broker broker(manner);
        const QString url = QStringLiteral("mqtts://127.0.0.1:%1/t?ca=%2")
                                .arg(broker.port())
                                .arg(broker.authorityFile());
        {
            const auto nobody = outlet(url);
            QVERIFY(becomes(*nobody, State::Refused));
            QCOMPARE(
                nobody->status().word.text,
                QStringLiteral("no agreement with the broker on certificates: it does not take "
                               "ours, or wants one"));
        }
        const auto sender =
            outlet(url + QStringLiteral("&station=other&certificate=%1&key=%2")
                             .arg(broker.clientCertificateFile(), broker.clientKeyFile()));
        QVERIFY(becomes(*sender, State::Connected));
    }

    void aPlainConnectionToAnEncryptedBrokerComesToNothing() {
        Broker::Manner manner;
        manner.isEncrypted = true;
        const Broker broker(manner);
        Relay relay(broker.port());
        const auto sender = plain(relay.port());
        QTRY_VERIFY_WITH_TIMEOUT(relay.connections() >= 1, patience);
        QTRY_VERIFY_WITH_TIMEOUT(
            sender->status().word.text.contains(QStringLiteral("cannot be reached")), patience);
    }

    // It ends the connection when it sees what is no MQTT: so does one that is just being killed.
    void whoIsNotEncryptedIsTriedAgain() {
        const Broker broker;
        const auto sender = outlet(QStringLiteral("mqtts://127.0.0.1:%1/t?ca=%2")
                                       .arg(broker.port())
                                       .arg(broker.strangeAuthorityFile()));
        QTRY_COMPARE_WITH_TIMEOUT(
            sender->status().word.text,
            QStringLiteral("127.0.0.1 cannot be reached: the connection was ended there"),
            patience);
        QVERIFY(sender->status().word.state == State::Waiting);
    }

    void whoStallsInTheMiddleOfAHandshakeHoldsNobody_data() {
        QTest::addColumn<bool>("isEncrypted");
        QTest::newRow("TLS") << true;
        QTest::newRow("login") << false;
    }
    void whoStallsInTheMiddleOfAHandshakeHoldsNobody() {
        QFETCH(bool, isEncrypted);
        QTcpServer silent; // takes the connection, and nothing comes from it
        QVERIFY(silent.listen(QHostAddress::LocalHost));
        workbench::BrokerSettings settings;
        settings.host = "127.0.0.1";
        settings.port = silent.serverPort();
        settings.clientId = "a";
        settings.isEncrypted = isEncrypted;
        settings.answerTime = std::chrono::milliseconds(100);
        workbench::MqttLink link(settings);
        QTRY_COMPARE_WITH_TIMEOUT(link.word().text, QStringLiteral("the broker does not answer"),
                                  patience);
        QVERIFY(link.word().state == State::Waiting);
        QVERIFY(QTest::qWaitFor([&] { return silent.hasPendingConnections(); }, patience));
        delete silent.nextPendingConnection();
        QVERIFY(QTest::qWaitFor([&] { return silent.hasPendingConnections(); }, patience)); // again
    }

    void whoStallsWhenOneConnectsHoldsNobody() {
        // As many wait already as there is room for: the network drops what comes then.
        const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        QCOMPARE(::bind(listener, reinterpret_cast<sockaddr*>(&address), size), 0);
        QCOMPARE(::listen(listener, 0), 0);
        QCOMPARE(::getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size), 0);
        const int first = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        QCOMPARE(::connect(first, reinterpret_cast<sockaddr*>(&address), size), 0);
        auto sender = plain(ntohs(address.sin_port));
        sender->add(resultOf(1));
        QTRY_COMPARE_WITH_TIMEOUT(sender->status().word.waitingResults, quint64(1), patience);
        QTRY_COMPARE_WITH_TIMEOUT(sender->status().word.text, QStringLiteral("connecting"),
                                  patience);
        QElapsedTimer timer;
        timer.start();
        end(std::move(sender)); // with the result in its spool
        QVERIFY(timer.elapsed() < patience / 2);
        ::close(first);
        ::close(listener);
    }

    void twoStationsOfOneNameOnOneComputerAreTold() {
        const Broker broker;
        const auto first = plain(broker.port());
        QVERIFY(becomes(*first, State::Connected));
        const auto second = plain(broker.port());
        QVERIFY(becomes(*second, State::Refused));
        QVERIFY(second->status().word.text.contains(QStringLiteral("press 7")));
        QVERIFY(first->status().word.state == State::Connected);
    }

    void aTrialIsNoticedByNobody() {
        const Broker broker;
        const Subscriber subscriber(broker.port());
        const auto real = plain(broker.port());
        QTRY_COMPARE_WITH_TIMEOUT(subscriber.last(state), QByteArray("online"), patience);
        auto trial = outlet(QStringLiteral("mqtt://127.0.0.1:%1/t").arg(broker.port()), true);
        QVERIFY(becomes(*trial, State::Connected));
        trial->add(frameOf(1));
        end(std::move(trial));
        real->add(resultOf(1)); // what comes after it is the sign that nothing came of it
        QTRY_COMPARE_WITH_TIMEOUT(subscriber.payloads(results).size(), std::size_t(1), patience);
        QCOMPARE(subscriber.payloads(state).size(), std::size_t(1));
        QCOMPARE(subscriber.payloads(poses).size(), std::size_t(0));
        QVERIFY(becomes(*real, State::Connected)); // it may be late to hear of its result
    }

    void noBrokerAtAllIsTold() {
        quint16 port = 0;
        {
            const Broker gone;
            port = gone.port();
        }
        const auto sender = plain(port);
        QTRY_VERIFY_WITH_TIMEOUT(
            sender->status().word.text.contains(QStringLiteral("cannot be reached")), patience);
        QVERIFY(sender->status().word.state == State::Waiting);
    }
};

QTEST_GUILESS_MAIN(TestMqttChannel)
#include "test_mqttchannel.moc"
