#include "tests/workbench/outlets/mqtt/broker.h"
#include "tests/workbench/outlets/mqtt/subscriber.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

namespace {

constexpr int patience = 60000;
constexpr const char* base = "plant/hall2/press-7/";

QJsonObject objectOf(const QByteArray& text) {
    return QJsonDocument::fromJson(text).object();
}

QMap<int, QSet<QString>> idsByNumber(const std::vector<QByteArray>& messages) {
    QMap<int, QSet<QString>> ids;
    for (const QByteArray& message : messages) {
        const QJsonObject object = objectOf(message);
        const QJsonObject result = object.value(QLatin1String("result")).toObject();
        ids[result.value(QLatin1String("number")).toInt(-1)] +=
            object.value(QLatin1String("id")).toString();
    }
    return ids;
}

} // namespace

/// A computer without a screen, as the example of a unit for systemd has it: a controller, the
/// workbench without a display, a broker with TLS and a password.
class TestGateway : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_folder;
    QProcess m_simulator;
    QProcess m_gateway;

    /// What stands behind a key, line after line; those with a "\" at their end are one.
    static QStringList unit(const QString& key) {
        QFile file(QStringLiteral(UNIT));
        if (!file.open(QIODevice::ReadOnly)) {
            qFatal("no unit");
        }
        QString text = QString::fromUtf8(file.readAll());
        text.replace(QRegularExpression(QStringLiteral("\\\\\n\\s*")), QString());
        QStringList values;
        const QStringList lines = text.split(QLatin1Char('\n'));
        for (const QString& line : lines) {
            if (line.startsWith(key + QLatin1Char('='))) {
                values += line.mid(key.size() + 1);
            }
        }
        return values;
    }

    quint16 startSimulator() {
        m_simulator.start(QStringLiteral(SIMULATOR),
                          {QStringLiteral("--port"), QStringLiteral("0"), QStringLiteral("--seed"),
                           QStringLiteral("3")});
        QByteArray said;
        if (!QTest::qWaitFor(
                [&] {
                    said += m_simulator.readAllStandardOutput();
                    return said.contains('\n');
                },
                patience)) {
            qFatal("no simulator");
        }
        return static_cast<quint16>(said.trimmed().split(':').last().toUInt());
    }

    // What systemd puts in, and the names that are to be changed.
    QString filledIn(QString text, const Broker& broker, quint16 controller) const {
        const std::pair<const char*, QString> places[] = {
            {"%S", m_folder->path()},
            {"%H", QStringLiteral("press-7")},
            {"%d/password", broker.passwordFile(Broker::password) + QStringLiteral("&ca=") +
                                broker.authorityFile()},
            {"controller.example", QStringLiteral("127.0.0.1:%1").arg(controller)},
            {"gateway@broker.example", QStringLiteral("anna@127.0.0.1:%1").arg(broker.port())}};
        for (const auto& [name, value] : places) {
            text.replace(QLatin1String(name), value);
        }
        return text;
    }

    static Broker::Manner encryptedWithPassword() {
        Broker::Manner manner;
        manner.isEncrypted = true;
        manner.access = Broker::Access::WithPassword;
        return manner;
    }

    int written() const { // results of the module, by its own note
        QFile file(m_folder->filePath(QStringLiteral("no")));
        return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').first().toInt() : 0;
    }

    void startGateway(const Broker& broker, quint16 controller, int results) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
        environment.remove(QStringLiteral("DISPLAY"));
        const QStringList variables = unit(QStringLiteral("Environment"));
        for (const QString& variable : variables) {
            environment.insert(variable.section(QLatin1Char('='), 0, 0),
                               filledIn(variable.section(QLatin1Char('='), 1), broker, controller));
        }
        environment.insert(QStringLiteral("STATION_RESULTS"), QString::number(results));
        environment.insert(QStringLiteral("STATION_PERIOD_MS"), QStringLiteral("20"));
        environment.insert(QStringLiteral("STATION_FILE"),
                           m_folder->filePath(QStringLiteral("no")));
        QStringList command =
            filledIn(unit(QStringLiteral("ExecStart")).value(0), broker, controller)
                .split(QRegularExpression(QStringLiteral("\\s+")));
        QCOMPARE(command.takeFirst(), QStringLiteral("/usr/bin/kestrel-workbench"));
        // Besides: no display's modules, and one that has results.
        command += {QStringLiteral("--plugins"), m_folder->filePath(QStringLiteral("none")),
                    QStringLiteral("--module"), QStringLiteral(RESULTS_MODULE)};
        m_gateway.setProcessEnvironment(environment);
        m_gateway.start(QStringLiteral(WORKBENCH), command);
        QVERIFY(m_gateway.waitForStarted(patience));
    }

private Q_SLOTS:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void theExampleOfAUnitDoesWhatItSays() {
        constexpr int results = 3;
        const Broker broker(encryptedWithPassword());
        const Subscriber subscriber(broker.plainPort(), "anna", Broker::password);
        startGateway(broker, startSimulator(), results);
        const bool isComplete = QTest::qWaitFor(
            [&] {
                return subscriber.payloads(base + QByteArray("results")).size() >= results &&
                       objectOf(subscriber.last(base + QByteArray("poses")))
                           .value(QLatin1String("M1"))
                           .toObject()
                           .contains(QLatin1String("qw"));
            },
            patience);
        QVERIFY2(isComplete, m_gateway.readAllStandardError().constData());
        QCOMPARE(subscriber.last(base + QByteArray("state")), QByteArray("online"));
        QCOMPARE(objectOf(subscriber.payloads(base + QByteArray("results")).front())
                     .value(QLatin1String("source"))
                     .toString(),
                 QStringLiteral("STATION"));

        m_gateway.terminate();
        QVERIFY(m_gateway.waitForFinished(patience));
        QCOMPARE(m_gateway.exitCode(), 0);
        QTRY_COMPARE_WITH_TIMEOUT(subscriber.last(base + QByteArray("state")),
                                  QByteArray("offline"), patience);
        // What the unit keeps, it keeps where it says.
        const QDir kept(m_folder->filePath(QStringLiteral("kestrel-gateway")));
        QVERIFY(kept.exists(QStringLiteral("settings.ini")));
        QCOMPARE(kept.entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), 1);
    }

    // Once after an orderly end, with nothing lost. Then nobody can prepare for it: what the module
    // is not certain of it writes again, and that is no other result.
    void whatTheBrokerHasNotTakenComesAfterTheNextStart() {
        constexpr int endless = 1000000;
        constexpr int some = 10;
        Broker broker(encryptedWithPassword());
        const Subscriber subscriber(broker.plainPort(), "anna", Broker::password);
        const quint16 controller = startSimulator();
        broker.kill();
        startGateway(broker, controller, endless);
        QTRY_VERIFY_WITH_TIMEOUT(written() >= some, patience);
        m_gateway.terminate();
        QVERIFY(m_gateway.waitForFinished(patience));
        QCOMPARE(m_gateway.exitStatus(), QProcess::NormalExit);
        QCOMPARE(m_gateway.exitCode(), 0);
        const int kept = written();

        startGateway(broker, controller, endless);
        QTRY_VERIFY_WITH_TIMEOUT(written() >= kept + some, patience);
        m_gateway.kill();
        QVERIFY(m_gateway.waitForFinished(patience));
        const int last = written();

        broker.start();
        QTRY_VERIFY_WITH_TIMEOUT(subscriber.isSubscribed(), patience);
        startGateway(broker, controller, last + 1);
        QMap<int, QSet<QString>> ids;
        const bool isComplete = QTest::qWaitFor(
            [&] {
                ids = idsByNumber(subscriber.payloads(base + QByteArray("results")));
                return ids.contains(last);
            },
            patience);
        QVERIFY2(isComplete, m_gateway.readAllStandardError().constData());
        for (int number = 0; number < kept; ++number) {
            QVERIFY2(ids.contains(number), qPrintable(QString::number(number)));
        }
        for (auto result = ids.cbegin(); result != ids.cend(); ++result) {
            QVERIFY2(result->size() == 1, qPrintable(QString::number(result.key())));
        }
        m_gateway.terminate();
        QVERIFY(m_gateway.waitForFinished(patience));
        QCOMPARE(m_gateway.exitCode(), 0);
    }

    void cleanup() {
        for (QProcess* const process : {&m_gateway, &m_simulator}) {
            process->kill();
            process->waitForFinished(patience);
        }
    }
};

QTEST_GUILESS_MAIN(TestGateway)
#include "test_gateway.moc"
