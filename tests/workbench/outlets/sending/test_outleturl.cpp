#include "tests/support/datarows.h"
#include "workbench/outlets/sending/outleturl.h"

#include <QtTest>

using workbench::OutletUrl;
using Kind = OutletUrl::Kind;

namespace {

OutletUrl read(const QString& text) {
    OutletUrl url;
    QString error;
    if (!url.parse(text, &error)) {
        qFatal("%s: %s", qPrintable(text), qPrintable(error));
    }
    return url;
}

} // namespace

class TestOutletUrl : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void schemeHostAndPortAreRead_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("host");
        QTest::addColumn<int>("port");
        row("UDP", "udp://plotter", int(Kind::Udp), "plotter", 9870);
        row("UDP and port", "udp://10.0.0.7:1234", int(Kind::Udp), "10.0.0.7", 1234);
        row("upper case", "UDP://Plotter", int(Kind::Udp), "Plotter", 9870);
        row("IPv6", "udp://[::1]", int(Kind::Udp), "::1", 9870);
        row("IPv6 with zone and port", "udp://[fe80::1%eth0]:99", int(Kind::Udp), "fe80::1%eth0",
            99);
        row("MQTT", "mqtt://broker.example/line3", int(Kind::Mqtt), "broker.example", 1883);
        row("MQTT over TLS", "mqtts://broker/line3", int(Kind::Mqtt), "broker", 8883);
        row("MQTT and port", "mqtts://broker:65535/line3", int(Kind::Mqtt), "broker", 65535);
        row("OpenIGTLink", "igtl://", int(Kind::Igtl), "", 18944);
        row("OpenIGTLink and port", "igtl://:1", int(Kind::Igtl), "", 1);
        row("OpenIGTLink for all", "igtl://0.0.0.0", int(Kind::Igtl), "0.0.0.0", 18944);
        row("OpenIGTLink, IPv6", "igtl://[::]:18945", int(Kind::Igtl), "::", 18945);
        row("blanks around it", "  udp://a \n", int(Kind::Udp), "a", 9870);
    }
    void schemeHostAndPortAreRead() {
        QFETCH(QString, text);
        QFETCH(QString, host);
        QFETCH(int, port);
        const OutletUrl url = read(text);
        QTEST(int(url.kind), "kind");
        QCOMPARE(url.host, host);
        QCOMPARE(int(url.port), port);
        QCOMPARE(url.text, text.trimmed());
    }

    void whatABrokerNeedsIsRead() {
        const OutletUrl url = read(QStringLiteral(
            "mqtts://anna%40hall@broker:1000/plant/hall%202/?station=press%207&"
            "password-file=/etc/k/pass%26word&ca=/ca.pem&certificate=/c.pem&key=/k.pem"));
        QVERIFY(url.isEncrypted);
        QCOMPARE(url.user, QStringLiteral("anna@hall"));
        QCOMPARE(url.host, QStringLiteral("broker"));
        QCOMPARE(url.prefix, QStringLiteral("plant/hall 2"));
        QCOMPARE(url.station, QStringLiteral("press 7"));
        QCOMPARE(url.passwordFile, QStringLiteral("/etc/k/pass&word"));
        QCOMPARE(url.caFile, QStringLiteral("/ca.pem"));
        QCOMPARE(url.certificateFile, QStringLiteral("/c.pem"));
        QCOMPARE(url.keyFile, QStringLiteral("/k.pem"));
    }

    void whatIsLeftOutIsEmpty() {
        const OutletUrl url = read(QStringLiteral("mqtt://broker/p"));
        QVERIFY(!url.isEncrypted);
        QCOMPARE(url.user + url.station + url.passwordFile + url.caFile + url.certificateFile +
                     url.keyFile,
                 QString());
    }

    void anythingElseIsRefusedWithTheReason_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("reason"); // a part of the sentence
        row("empty", "", "begins with");
        row("no scheme", "plotter:9870", "begins with");
        row("scheme alone", "udp:", "begins with");
        row("another scheme", "tcp://a", "begins with");
        row("blank inside", "udp://a b", "no URL");
        row("control character", "udp://a\tb", "no URL");
        row("endless", QStringLiteral("udp://") + QString(3000, QLatin1Char('a')), "no URL");
        row("endless host", QStringLiteral("udp://") + QString(254, QLatin1Char('a')), "host");
        row("no host", "udp://", "host");
        row("port without host", "udp://:9870", "host");
        row("host like an option", "udp://-a", "host");
        row("IPv6 without brackets", "udp://::1", "port");
        row("no address in brackets", "udp://[a]", "host");
        row("open bracket", "udp://[::1", "host");
        row("port 0", "udp://a:0", "65535");
        row("port too large", "udp://a:65536", "65535");
        row("port with a sign", "udp://a:+5", "65535");
        row("port missing", "udp://a:", "65535");
        row("port is a word", "udp://a:b", "65535");
        row("UDP with a path", "udp://a/b", "behind");
        row("UDP with options", "udp://a?station=b", "behind");
        row("UDP with a user", "udp://u@a", "user");
        row("OpenIGTLink with a name", "igtl://viewer", "address");
        row("password inside", "mqtt://u:secret@a/p", "file");
        row("empty user", "mqtt://@a/p", "user");
        row("no prefix", "mqtt://a", "mqtt://HOST/PREFIX");
        row("no prefix, with TLS", "mqtts://a/", "mqtts://HOST/PREFIX");
        row("prefix with an empty level", "mqtt://a/b//c", "prefix");
        row("prefix with a wildcard", "mqtt://a/b/%23", "prefix");
        row("prefix with another wildcard", "mqtt://a/+", "prefix");
        row("prefix of the broker's own", "mqtt://a/$SYS", "prefix");
        row("prefix with NUL", "mqtt://a/b%00c", "prefix");
        row("prefix that is no UTF-8", "mqtt://a/b%ff", "prefix");
        row("station of two levels", "mqtt://a/p?station=b/c", "station");
        row("empty station", "mqtt://a/p?station=", "station");
        row("unknown option", "mqtt://a/p?color=red", "color");
        row("no option", "mqtt://a/p?", "option");
        row("relative file", "mqtt://u@a/p?password-file=pw", "password-file");
        row("file of no disk", "mqtt://u@a/p?password-file=:/pw", "password-file");
        row("password without user", "mqtt://a/p?password-file=/pw", "user");
        row("authority without TLS", "mqtt://a/p?ca=/ca", "mqtts");
        row("certificate without key", "mqtts://a/p?certificate=/c", "key");
        row("key without certificate", "mqtts://a/p?key=/c", "key");
    }
    void anythingElseIsRefusedWithTheReason() {
        QFETCH(QString, text);
        QFETCH(QString, reason);
        OutletUrl url = read(QStringLiteral("udp://kept:5"));
        QString error;
        QVERIFY(!url.parse(text, &error));
        QVERIFY2(error.contains(reason), qPrintable(error));
        QVERIFY2(!error.contains(QStringLiteral("secret")), qPrintable(error));
        QCOMPARE(url.text, QStringLiteral("udp://kept:5"));
        QCOMPARE(int(url.port), 5);
    }
};

QTEST_GUILESS_MAIN(TestOutletUrl)
#include "test_outleturl.moc"
