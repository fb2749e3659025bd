#include "tests/support/datarows.h"
#include "tests/workbench/scriptedcontroller.h"
#include "workbench/controller/command/commandchannel.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QtTest>

using workbench::CommandChannel;

namespace {
constexpr int patience = 5000;
constexpr int shortTimeout = 200;
constexpr int slack = 1500; // what a loaded machine may add
} // namespace

class TestCommandChannel : public QObject {
    Q_OBJECT

    std::unique_ptr<ScriptedController> m_controller;
    std::unique_ptr<CommandChannel> m_channel;

    bool open() {
        QSignalSpy opened(m_channel.get(), &CommandChannel::opened);
        m_channel->open(QStringLiteral("127.0.0.1"), m_controller->port());
        return opened.wait(patience);
    }

private Q_SLOTS:
    void init() {
        m_controller = std::make_unique<ScriptedController>();
        m_channel = std::make_unique<CommandChannel>();
    }
    void cleanup() {
        m_channel.reset();
        m_controller.reset();
    }

    void withoutAConnectionEveryCommandFailsAtOnce() {
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(m_channel->ask("kestrel2 get a").result, int(workbench::NotConnected));
        QVERIFY(clock.elapsed() < slack);
    }

    void aGetGivesTheValueBehindTheName() {
        m_controller->answer("status active", "none");
        QVERIFY(open());
        const CommandChannel::Answer answer = m_channel->ask("kestrel2 get status active");
        QCOMPARE(answer.result, int(workbench::Success));
        QCOMPARE(answer.line, std::string("kestrel2 set status active none"));
        QCOMPARE(answer.reply.value, std::string("none"));
    }

    void repliesAreJudged_data() {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("reply");
        QTest::addColumn<int>("result");
        row("ok", "kestrel2 set a 1", "kestrel2 ok\n", 0);
        row("carriage return is ignored", "kestrel2 set a 1", "kestrel2 ok\r\n", 0);
        row("ok with a blank", "kestrel2 set a 1", "kestrel2 ok \n", -3);
        row("error number", "kestrel2 set a 1", "kestrel2 err 12 \"no\"\n", 12);
        row("error number 0", "kestrel2 set a 1", "kestrel2 err 0 \"no\"\n", -3);
        row("negative error number", "kestrel2 set a 1", "kestrel2 err -2 \"no\"\n", -3);
        row("error without number", "kestrel2 set a 1", "kestrel2 err\n", -3);
        row("another protocol", "kestrel2 tracking start", "hello\n", -3);
        row("empty line", "kestrel2 tracking start", "\n", -3);
        row("answer to another question", "kestrel2 get a", "kestrel2 set b 1\n", -3);
        row("ok to a question", "kestrel2 get a", "kestrel2 ok\n", -3);
        row("other zero padding", "kestrel2 get tip b01", "kestrel2 set tip b1 yes\n", 0);
        row("another body", "kestrel2 get tip b01", "kestrel2 set tip b012 yes\n", -3);
        row("refused question", "kestrel2 get a", "kestrel2 err 3 \"unknown\"\n", 3);
    }
    void repliesAreJudged() {
        QFETCH(QString, command);
        QFETCH(QString, reply);
        QFETCH(int, result);
        m_controller->answerRaw(command.toStdString(), reply.toStdString());
        QVERIFY(open());
        QCOMPARE(m_channel->ask(command.toStdString()).result, result);
        // The next command gets its own reply.
        QCOMPARE(m_channel->ask("kestrel2 get status active").result, 0);
    }

    void whatIsNoCommandLineIsNotSent() {
        QVERIFY(open());
        m_controller->clearCommands();
        const std::string tooLong(kestrel_wire::maxLineLength + 1, 'x');
        for (const std::string& command :
             {std::string(), std::string("kestrel2 a\nkestrel2 b"), std::string("kestrel2 a\r"),
              std::string("a\0b", 3), tooLong}) {
            QCOMPARE(m_channel->ask(command).result, int(workbench::BadCommand));
        }
        QCOMPARE(m_channel->ask("kestrel2 get status active").result, 0);
        QCOMPARE(m_controller->commands().size(), std::size_t(1));
    }

    void eachCommandIsOneWrite() {
        QVERIFY(open());
        constexpr int commands = 20;
        for (int i = 0; i < commands; ++i) {
            QCOMPARE(m_channel->ask("kestrel2 get status active").result, 0);
        }
        QCOMPARE(m_controller->receivedSegments(), commands);
    }

    void aCommandIntoADroppedConnectionFailsWithoutAWarning() {
        QVERIFY(open());
        QCOMPARE(m_channel->ask("kestrel2 get status active").result, 0);
        m_controller->dropConnections();
        static int warnings = 0;
        warnings = 0;
        const QtMessageHandler before = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext&, const QString&) { ++warnings; });
        QList<int> results;
        // The other end refuses the first one; the next ones cannot even be sent.
        for (int i = 0; i < 3; ++i) {
            m_channel->askLater("kestrel2 later", [&](const CommandChannel::Answer& answer) {
                results += answer.result;
            });
        }
        qInstallMessageHandler(before);
        QTRY_COMPARE_WITH_TIMEOUT(results, QList<int>({-1, -1, -1}), patience);
        QCOMPARE(warnings, 0);
    }

    void callbacksComeInOrderAndNeverFromInsideAsk() {
        QVERIFY(open());
        QStringList order;
        bool inside = false;
        bool calledInside = false;
        for (int i = 0; i < 3; ++i) {
            m_channel->askLater("kestrel2 later " + std::to_string(i),
                                [&, i](const CommandChannel::Answer& answer) {
                                    calledInside = calledInside || inside;
                                    order += QStringLiteral("%1:%2").arg(i).arg(answer.result);
                                });
        }
        inside = true;
        QCOMPARE(m_channel->ask("kestrel2 get status active").reply.value, std::string("none"));
        inside = false;
        QVERIFY(order.isEmpty());
        QTRY_COMPARE_WITH_TIMEOUT(order, QStringList({"0:0", "1:0", "2:0"}), patience);
        QVERIFY(!calledInside);
    }

    void aSilentControllerCostsOneTimeoutAndNoMore() {
        QVERIFY(open());
        QSignalSpy lost(m_channel.get(), &CommandChannel::lost);
        m_controller->setSilent(true);
        int failedCallbacks = 0;
        for (int i = 0; i < 10; ++i) {
            m_channel->askLater(
                "kestrel2 later",
                [&](const CommandChannel::Answer& answer) {
                    failedCallbacks += answer.result == workbench::TimedOut ? 1 : 0;
                },
                shortTimeout);
        }
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(m_channel->ask("kestrel2 get status active", shortTimeout).result,
                 int(workbench::TimedOut));
        QVERIFY(clock.elapsed() >= shortTimeout / 2);
        QVERIFY(clock.elapsed() < shortTimeout + slack);
        QVERIFY(!m_channel->isOpen());
        clock.restart();
        for (int i = 0; i < 100; ++i) {
            QCOMPARE(m_channel->ask("kestrel2 get status active").result,
                     int(workbench::NotConnected));
        }
        QVERIFY(clock.elapsed() < slack);
        QCOMPARE(lost.count(), 0);
        QTRY_COMPARE_WITH_TIMEOUT(lost.count(), 1, patience);
        QCOMPARE(failedCallbacks, 10);
    }

    void aTimeoutIsFoundOutFromTheEventLoopToo() {
        QVERIFY(open());
        QSignalSpy lost(m_channel.get(), &CommandChannel::lost);
        m_controller->setSilent(true);
        int result = 1;
        m_channel->askLater(
            "kestrel2 later", [&](const CommandChannel::Answer& answer) { result = answer.result; },
            shortTimeout);
        QVERIFY(lost.wait(patience));
        QCOMPARE(result, int(workbench::TimedOut));
    }

    void aSlowControllerIsNotADeadOne() {
        QVERIFY(open());
        m_controller->setDelay(shortTimeout);
        int answered = 0;
        for (int i = 0; i < 3; ++i) {
            m_channel->askLater("kestrel2 later", [&](const CommandChannel::Answer& answer) {
                answered += answer.result == 0 ? 1 : 0;
            });
        }
        QCOMPARE(m_channel->ask("kestrel2 get status active").result, 0);
        QTRY_COMPARE_WITH_TIMEOUT(answered, 3, patience);
    }

    void aLateReplyIsNeverTakenForTheNextOne() {
        QVERIFY(open());
        m_controller->setDelay(3 * shortTimeout);
        QCOMPARE(m_channel->ask("kestrel2 old", shortTimeout).result, int(workbench::TimedOut));
        m_controller->setDelay(0);
        QVERIFY(open());
        m_controller->answerRaw("kestrel2 new", "kestrel2 err 7 \"mine\"\n");
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < 4 * shortTimeout) { // the late reply is due in this time
            QCOMPARE(m_channel->ask("kestrel2 new").result, 7);
        }
    }

    void linesThatNobodyAskedForAreDropped() {
        QVERIFY(open());
        QSignalSpy unexpected(m_channel.get(), &CommandChannel::unexpectedLine);
        m_controller->answerRaw("kestrel2 twice", "kestrel2 ok\nkestrel2 ok\n");
        m_controller->answerRaw("kestrel2 refused", "kestrel2 err 7 \"mine\"\n");
        QCOMPARE(m_channel->ask("kestrel2 twice").result, 0);
        QCOMPARE(m_channel->ask("kestrel2 refused").result, 7);
        QTRY_COMPARE_WITH_TIMEOUT(unexpected.count(), 1, patience);
    }

    void anUnaskedLineInTheEventLoopIsDroppedAndTold() {
        QVERIFY(open());
        QCOMPARE(m_channel->ask("kestrel2 first").result, 0);
        QSignalSpy unexpected(m_channel.get(), &CommandChannel::unexpectedLine);
        m_controller->sendNow("kestrel2 ok\nkestrel2 ok\n");
        QTRY_COMPARE_WITH_TIMEOUT(unexpected.count(), 1, patience);
        m_controller->answerRaw("kestrel2 refused", "kestrel2 err 7 \"mine\"\n");
        QCOMPARE(m_channel->ask("kestrel2 refused").result, 7);
    }

    void theBeginningOfAnUnaskedLineClosesTheConnection() {
        QVERIFY(open());
        m_controller->answerRaw("kestrel2 more", "kestrel2 ok\nkestrel2 o");
        QCOMPARE(m_channel->ask("kestrel2 more").result, 0);
        QSignalSpy lost(m_channel.get(), &CommandChannel::lost);
        QCOMPARE(m_channel->ask("kestrel2 get status active").result, int(workbench::NotConnected));
        QVERIFY(lost.wait(patience));
    }

    void repliesOutOfStepCloseTheConnection() {
        QVERIFY(open());
        QSignalSpy lost(m_channel.get(), &CommandChannel::lost);
        m_controller->answerRaw("kestrel2 get a", "kestrel2 set b 1\n");
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(m_channel->ask("kestrel2 get a").result, int(workbench::MalformedReply));
        }
        QVERIFY(!m_channel->isOpen());
        QVERIFY(lost.wait(patience));
    }

    void aReplyThatFitsBetweenThoseThatDoNotKeepsTheConnection_data() {
        QTest::addColumn<QByteArray>("command");
        QTest::addColumn<int>("result");
        QTest::newRow("acknowledged") << QByteArray("kestrel2 set x 1") << 0;
        QTest::newRow("refused") << QByteArray("kestrel2 refused") << 7;
        QTest::newRow("answered") << QByteArray("kestrel2 get status active") << 0;
    }
    void aReplyThatFitsBetweenThoseThatDoNotKeepsTheConnection() {
        QFETCH(QByteArray, command);
        QFETCH(int, result);
        QVERIFY(open());
        m_controller->answerRaw("kestrel2 get a", "kestrel2 set b 1\n");
        m_controller->answerRaw("kestrel2 refused", "kestrel2 err 7 \"mine\"\n");
        for (int i = 0; i < 4; ++i) {
            QCOMPARE(m_channel->ask("kestrel2 get a").result, int(workbench::MalformedReply));
            QCOMPARE(m_channel->ask(command.toStdString()).result, result);
        }
        QVERIFY(m_channel->isOpen());
    }

    void aReplyWithoutAnEndIsRefused() {
        QVERIFY(open());
        QSignalSpy lost(m_channel.get(), &CommandChannel::lost);
        m_controller->answerRaw("kestrel2 flood", std::string(200 * 1024, 'x'));
        QCOMPARE(m_channel->ask("kestrel2 flood").result, int(workbench::MalformedReply));
        QVERIFY(lost.wait(patience));
    }

    void aCutReplyIsATimeout() {
        QVERIFY(open());
        m_controller->answerRaw("kestrel2 cut", "kestrel2 o");
        QCOMPARE(m_channel->ask("kestrel2 cut", shortTimeout).result, int(workbench::TimedOut));
    }

    void aDroppedConnectionFailsTheCommandsUnderWay() {
        QVERIFY(open());
        QSignalSpy lost(m_channel.get(), &CommandChannel::lost);
        m_controller->setSilent(true);
        int result = 1;
        m_channel->askLater("kestrel2 later",
                            [&](const CommandChannel::Answer& answer) { result = answer.result; });
        QTRY_COMPARE_WITH_TIMEOUT(m_controller->count("kestrel2 later"), 1, patience);
        m_controller->dropConnections();
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(m_channel->ask("kestrel2 get status active").result, int(workbench::NotConnected));
        QVERIFY(clock.elapsed() < slack);
        QVERIFY(lost.wait(patience));
        QCOMPARE(result, int(workbench::NotConnected));
    }

    void theQueueHasALimit() {
        QVERIFY(open());
        m_controller->setSilent(true);
        for (std::size_t i = 0; i < CommandChannel::maxPending; ++i) {
            m_channel->askLater("kestrel2 later");
        }
        QCOMPARE(m_channel->ask("kestrel2 one more").result, int(workbench::QueueFull));
    }

    void aRefusedConnectionIsReported() {
        const quint16 port = m_controller->port();
        m_controller->stopListening();
        QSignalSpy lost(m_channel.get(), &CommandChannel::lost);
        m_channel->open(QStringLiteral("127.0.0.1"), port);
        QVERIFY(lost.wait(patience));
        QVERIFY(!m_channel->isOpen());
    }

    void closingEndsEverythingSilently() {
        QVERIFY(open());
        QSignalSpy lost(m_channel.get(), &CommandChannel::lost);
        m_controller->setSilent(true);
        int result = 1;
        m_channel->askLater("kestrel2 later",
                            [&](const CommandChannel::Answer& answer) { result = answer.result; });
        m_channel->close();
        QTRY_COMPARE_WITH_TIMEOUT(result, int(workbench::NotConnected), patience);
        QCOMPARE(lost.count(), 0);
    }

    void theObserverSeesCommandsAndRepliesInOrder() {
        QVERIFY(open());
        std::vector<std::string> seen;
        m_channel->setObserver(
            [&](const std::string& command, const CommandChannel::Answer& answer) {
                seen.push_back(command + " > " + answer.line);
            });
        m_channel->askLater("kestrel2 a");
        m_channel->ask("kestrel2 b");
        QCOMPARE(seen, (std::vector<std::string>{"kestrel2 a > kestrel2 ok",
                                                 "kestrel2 b > kestrel2 ok"}));
    }

    void aLongWaitIsToldWithItsEnd_data() {
        QTest::addColumn<int>("delay");
        QTest::addColumn<int>("timeout");
        QTest::addColumn<int>("result");
        QTest::addColumn<QString>("told");
        QTest::newRow("quick") << 0 << patience << int(workbench::Success) << "";
        QTest::newRow("slow") << 600 << patience << int(workbench::Success) << "waits goes on ";
        QTest::newRow("time-out") << -1 << 700 << int(workbench::TimedOut) << "waits goes on ";
        QTest::newRow("short time-out") << -1 << shortTimeout << int(workbench::TimedOut) << "";
    }
    void aLongWaitIsToldWithItsEnd() {
        QFETCH(int, delay);
        QFETCH(int, timeout);
        QFETCH(int, result);
        QFETCH(QString, told);
        QVERIFY(open());
        QString heard;
        QElapsedTimer clock;
        clock.start();
        qint64 firstWord = -1;
        m_channel->setWaitObserver([&](bool isWaiting) {
            firstWord = firstWord < 0 ? clock.elapsed() : firstWord;
            heard += isWaiting ? "waits " : "goes on ";
        });
        m_controller->answer("a", "1");
        m_controller->setSilent(delay < 0);
        m_controller->setDelay(std::max(0, delay));
        QCOMPARE(m_channel->ask("kestrel2 get a", timeout).result, result);
        if (heard.isEmpty() && told.isEmpty()) {
            return;
        }
        // The quick ones may be slow on a loaded machine: then it is told, and rightly.
        QVERIFY2(heard == "waits goes on ", qPrintable(heard));
        QVERIFY(!told.isEmpty() || clock.elapsed() >= CommandChannel::longWaitMs);
        QVERIFY2(firstWord >= CommandChannel::longWaitMs &&
                     firstWord < CommandChannel::longWaitMs + slack,
                 qPrintable(QString::number(firstWord)));
    }
};

QTEST_GUILESS_MAIN(TestCommandChannel)
#include "test_commandchannel.moc"
