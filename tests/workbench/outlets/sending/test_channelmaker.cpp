#include "tests/support/datarows.h"
#include "workbench/outlets/sending/channelmaker.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

using workbench::ChannelMaker;
using workbench::OutletUrl;

namespace {

OutletUrl read(const char* text) {
    OutletUrl url;
    QString error;
    if (!url.parse(QLatin1String(text), &error)) {
        qFatal("%s", qPrintable(error));
    }
    return url;
}

} // namespace

class TestChannelMaker : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;

private Q_SLOTS:
    void udpNeedsNothing() {
        QString error;
        QVERIFY(ChannelMaker({}, {}).make(read("udp://a"), &error) != nullptr);
    }

    void whatIsMissingIsNamed_data() {
        QTest::addColumn<QByteArray>("url");
        QTest::addColumn<QString>("package");
        QTest::newRow("MQTT") << QByteArray("mqtt://a/p") << QStringLiteral("libmosquitto1");
        row("MQTT over TLS", QByteArray("mqtts://a/p"), QStringLiteral("libmosquitto1"));
        QTest::newRow("OpenIGTLink") << QByteArray("igtl://") << QStringLiteral("libopenigtlink");
    }
    void whatIsMissingIsNamed() {
        QFETCH(QByteArray, url);
        QFETCH(QString, package);
        QString error;
        const ChannelMaker maker({m_folder.path()}, {});
        QVERIFY(maker.make(read(url.constData()), &error) == nullptr);
        QVERIFY2(error.contains(package), qPrintable(error));
        QVERIFY2(error.contains(QStringLiteral("kestrel-workbench-outlets")), qPrintable(error));
    }

    void whatIsMissingIsListedWithItsPackage() {
        const std::vector<ChannelMaker::Way> ways = ChannelMaker({m_folder.path()}, {}).ways();
        QCOMPARE(ways.size(), std::size_t(2));
        QCOMPARE(ways[0].name, QStringLiteral("MQTT"));
        QVERIFY(ways[0].reason.contains(QStringLiteral("libmosquitto1")));
        QCOMPARE(ways[1].name, QStringLiteral("OpenIGTLink"));
        QVERIFY(ways[1].reason.contains(QStringLiteral("libopenigtlink")));
    }

    void aFileThatIsNoneIsToldOf() {
        QFile file(m_folder.filePath(QStringLiteral("kestrel_outlet_igtl.so")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("no library");
        file.close();
        QString error;
        const ChannelMaker maker({m_folder.path()}, {});
        QVERIFY(maker.make(read("igtl://"), &error) == nullptr);
        QVERIFY2(error.contains(QStringLiteral("kestrel_outlet_igtl")), qPrintable(error));
    }

    void whatWasBuiltIsLoaded() {
        const ChannelMaker maker({QStringLiteral(OUTLETS)}, {});
        const QStringList built = QStringLiteral(BUILT_OUTLETS).split(QLatin1Char(','));
        for (const ChannelMaker::Way& way : maker.ways()) {
            QVERIFY(!way.reason.isEmpty() && way.version.isEmpty());
        }
        for (const QString& url : built) {
            QString error;
            QVERIFY2(maker.make(read(url.toLatin1().constData()), &error) != nullptr,
                     qPrintable(error));
        }
        const std::vector<ChannelMaker::Way> ways = maker.ways();
        QCOMPARE(ways.size(), std::size_t(2));
        for (const ChannelMaker::Way& way : ways) {
            QCOMPARE(way.reason.isEmpty(), QFileInfo::exists(way.file));
            QCOMPARE(way.version.isEmpty(), way.file.isEmpty());
        }
    }

    /// In a build without one of the libraries, too.
    void whatWasNotBuiltIsRefused() {
        const ChannelMaker maker({QStringLiteral(OUTLETS)}, {});
        const QStringList built = QStringLiteral(BUILT_OUTLETS).split(QLatin1Char(','));
        for (const auto& [text, sentence] :
             {std::pair{"mqtt://a/p",
                        "MQTT needs the packages kestrel-workbench-outlets and libmosquitto1: "
                        "kestrel_outlet_mqtt.so is not there"},
              std::pair{"igtl://", "OpenIGTLink needs the packages kestrel-workbench-outlets and "
                                   "libopenigtlink1.11: kestrel_outlet_igtl.so is not there"}}) {
            QString error;
            const bool isMade = maker.make(read(text), &error) != nullptr;
            QCOMPARE(isMade, built.contains(QLatin1String(text)));
            QCOMPARE(error, isMade ? QString() : QString::fromLatin1(sentence));
        }
    }

    void aComputersNameIsOneLevelOfATopic() {
        const QString name = ChannelMaker::usualSurroundings().computerName;
        QVERIFY(!name.isEmpty());
        QVERIFY(!name.contains(QLatin1Char('/')) && !name.contains(QLatin1Char('+')) &&
                !name.contains(QLatin1Char('#')));
    }
};

QTEST_GUILESS_MAIN(TestChannelMaker)
#include "test_channelmaker.moc"
