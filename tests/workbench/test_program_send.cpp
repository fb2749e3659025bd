#include "workbench/options.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QUdpSocket>
#include <QtTest>

namespace {
constexpr int patience = 60000;
}

/// The program as a process of its own that sends data to another one, without a display.
class TestProgramSend : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;

    QStringList with(const QStringList& options) const {
        return QStringList{QStringLiteral("--settings"), m_folder.filePath(QStringLiteral("s.ini")),
                           QStringLiteral("--language"), QStringLiteral("en")} +
               options;
    }

private Q_SLOTS:
    // No module is loaded: it is the workbench that has the controller send the tools.
    void aGatewaySendsTheToolsOfItsController() {
        QUdpSocket reader;
        QVERIFY(reader.bind(QHostAddress(QHostAddress::LocalHost)));
        const QString url = QStringLiteral("udp://127.0.0.1:%1").arg(reader.localPort());
        QProcess process;
        process.start(
            QStringLiteral(WORKBENCH),
            with({"--simulate", "--simulator-options", "--seed 3", "--measure", "--plugins",
                  m_folder.filePath(QStringLiteral("none")), "--send", url}));
        QJsonObject frame;
        QByteArray errors;
        QVERIFY2(QTest::qWaitFor(
                     [&] {
                         errors += process.readAllStandardError();
                         while (reader.hasPendingDatagrams()) {
                             QByteArray text(int(reader.pendingDatagramSize()), '\0');
                             reader.readDatagram(text.data(), text.size());
                             frame = QJsonDocument::fromJson(text).object();
                         }
                         if (process.state() == QProcess::NotRunning) {
                             return true; // in vain, as is seen below
                         }
                         const QJsonObject tool = frame.value(QLatin1String("M1")).toObject();
                         return tool.contains(QLatin1String("x")) &&
                                tool.contains(QLatin1String("reference"));
                     },
                     patience),
                 errors.constData());
        QVERIFY(frame.value(QLatin1String("timestamp")).isDouble());
        QVERIFY(frame.value(QLatin1String("frame")).toDouble() > 0.0);
        QVERIFY2(QTest::qWaitFor(
                     [&] {
                         errors += process.readAllStandardError();
                         return errors.contains(url.toUtf8() + ": Connected: ");
                     },
                     patience),
                 errors.constData());
        process.terminate();
        QVERIFY(process.waitForFinished(patience));
        QCOMPARE(process.exitCode(), 0);
    }

    void aPlaceThatCannotBeEndsWith6AndTheReason() {
        // A copy without what stands beside the program.
        const QString program = m_folder.filePath(QStringLiteral("bin/kestrel-workbench"));
        QVERIFY(QDir(m_folder.path()).mkpath(QStringLiteral("bin")));
        QVERIFY(QFile::copy(QStringLiteral(WORKBENCH), program));
        QProcess process;
        process.start(program, with({"--send", "igtl://"}));
        QVERIFY(process.waitForFinished(patience));
        QCOMPARE(process.exitCode(), int(workbench::ExitNoOutlet));
        const QByteArray errors = process.readAllStandardError();
        QVERIFY2(errors.contains("libopenigtlink"), errors.constData());
    }
};

QTEST_GUILESS_MAIN(TestProgramSend)
#include "test_program_send.moc"
