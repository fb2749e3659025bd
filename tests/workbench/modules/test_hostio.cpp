#include "tests/support/datarows.h"
#include "tests/workbench/backendfixture.h"
#include "tests/workbench/scriptedcontroller.h"

#include <QElapsedTimer>
#include <QtTest>

#include <clocale>
#include <cstring>
#include <mutex>
#include <thread>

namespace {
constexpr int patience = 5000;
constexpr int slack = 1500;
constexpr char untouched = 0x55;
} // namespace

class TestHostIo : public QObject {
    Q_OBJECT

    std::unique_ptr<ScriptedController> m_controller;
    std::unique_ptr<BackendFixture> m_parts;

    IOManager& host() { return m_parts->host(); }

    bool logHas(const QString& text) {
        QCoreApplication::processEvents();
        return m_parts->log.toText().contains(text);
    }

private Q_SLOTS:
    void init() {
        m_controller = std::make_unique<ScriptedController>();
        m_parts = std::make_unique<BackendFixture>();
        m_parts->connectTo(m_controller->port());
        QTRY_VERIFY_WITH_TIMEOUT(m_parts->session.isReady(), patience);
        m_controller->clearCommands();
    }
    void cleanup() {
        m_parts.reset();
        m_controller.reset();
    }

    void resultsGoToTheOutletsAndOtherLinesDoNot() {
        struct Channel : workbench::OutletChannel {
            bool takesResults() const override { return true; }
            void tend() override {}
            workbench::OutletWord word() const override { return {}; }
            Delivery send(const workbench::TrackedFrame&) override { return Delivery::Sent; }
            void send(const workbench::ModuleResult& result) override {
                const std::lock_guard<std::mutex> lock(*mutex);
                texts->append(result.source + QLatin1Char('|') + result.text);
            }
            std::mutex* mutex = nullptr;
            QStringList* texts = nullptr;
        };
        std::mutex mutex;
        QStringList texts;
        workbench::OutletHub hub([&](const workbench::OutletUrl&, QString*) {
            auto channel = std::make_unique<Channel>();
            channel->mutex = &mutex;
            channel->texts = &texts;
            return channel;
        });
        QString error;
        QVERIFY(hub.add({}, &error));
        workbench::HostIo io(m_parts->session, m_parts->registry, m_parts->log, &hub);
        const QString longText(10000, QLatin1Char('x'));
        io.write_log("info", "PROBE", 1, "no result");
        io.write_log(nullptr, nullptr, 1, nullptr);
        io.write_log("result", "PROBE", 1, "{\"a\":\"\xc3\xbc\"}");
        io.write_log("result", "PROBE", 1, longText.toUtf8().constData());
        QTRY_VERIFY_WITH_TIMEOUT(([&] {
                                     const std::lock_guard<std::mutex> lock(mutex);
                                     return texts.size() == 2;
                                 }()),
                                 patience);
        QCOMPARE(texts, QStringList({QStringLiteral("PROBE|{\"a\":\"ü\"}"), "PROBE|" + longText}));
        QVERIFY(logHas(QStringLiteral("no result")));
        QVERIFY(!logHas(QStringLiteral("replay")));
        hub.setReplay(true);
        io.write_log("result", "PROBE", 1, "{\"old\":1}");
        io.write_log("info", "PROBE", 1, "something else");
        hub.setReplay(false);
        io.write_log("result", "PROBE", 1, "{\"new\":1}");
        QTRY_VERIFY_WITH_TIMEOUT(([&] {
                                     const std::lock_guard<std::mutex> lock(mutex);
                                     return texts.size() == 3;
                                 }()),
                                 patience);
        QCOMPARE(texts.constLast(), QStringLiteral("PROBE|{\"new\":1}"));
        QVERIFY(logHas(QStringLiteral("result (replay)\tPROBE")));
        QCOMPARE(m_parts->log.toText().count(QStringLiteral("replay")), 1);
        QVERIFY(logHas(QStringLiteral("{\"a\":\"ü\"}")));
    }

    void aStringIsTheValuePart() {
        m_controller->answer("measurementtool reference_of_tool b02", "b01");
        char reply[200];
        QCOMPARE(host().get_parameter_string(reply, "measurementtool reference_of_tool b%2.2d", 2),
                 0);
        QCOMPARE(QByteArray(reply), QByteArray("b01"));
        QCOMPARE(m_controller->count("kestrel2 get measurementtool reference_of_tool b02"), 1);
    }

    void aReplyOf199CharactersFitsAndOneOf200DoesNot() {
        for (const int size : {199, 200, 5000}) {
            m_controller->answer("long", std::string(static_cast<std::size_t>(size), 'x'));
            char reply[400];
            std::memset(reply, untouched, sizeof reply);
            const int result = host().get_parameter_string(reply, "long");
            QCOMPARE(result, size == 199 ? 0 : int(workbench::ReplyTooLong));
            QCOMPARE(int(std::strlen(reply)), size == 199 ? 199 : 0);
            for (std::size_t i = 200; i < sizeof reply; ++i) {
                QCOMPARE(reply[i], untouched);
            }
        }
        QVERIFY(logHas(QStringLiteral("reply too long")));
    }

    void sendCommandHandsOutTheWholeLine() {
        char reply[200];
        QCOMPARE(host().send_command(reply, "kestrel2 tracking start"), 0);
        QCOMPARE(QByteArray(reply), QByteArray("kestrel2 ok"));
        m_controller->answer("status err", "5 \"too dark\"");
        QCOMPARE(host().send_command(reply, "kestrel2 get status err"), 0);
        QCOMPARE(QByteArray(reply), QByteArray("kestrel2 set status err 5 \"too dark\""));
        m_controller->answerRaw("kestrel2 cal x start", "kestrel2 err 8 \"not now\"\n");
        QCOMPARE(host().send_command(reply, "kestrel2 cal x start"), 8);
        QCOMPARE(QByteArray(reply), QByteArray("kestrel2 err 8 \"not now\""));
        m_controller->answerRaw("kestrel2 long", std::string(500, 'x') + '\n');
        QVERIFY(host().send_command(reply, "kestrel2 long") < 0);
    }

    void numbersAreWhollyNumbers_data() {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<bool>("isInt");
        QTest::addColumn<int>("asInt");
        QTest::addColumn<bool>("isDouble");
        QTest::addColumn<double>("asDouble");
        row("whole", QByteArray("4"), true, 4, true, 4.0);
        row("negative", QByteArray("-12"), true, -12, true, -12.0);
        row("hex", QByteArray("0x10"), true, 16, true, 16.0);
        row("fraction", QByteArray("2.5"), false, 0, true, 2.5);
        row("exponent", QByteArray("1e3"), false, 0, true, 1000.0);
        row("comma", QByteArray("2,5"), false, 0, false, 0.0);
        row("unit", QByteArray("5 mm"), false, 0, false, 0.0);
        row("two", QByteArray("5 6"), false, 0, false, 0.0);
        row("word", QByteArray("none"), false, 0, false, 0.0);
        row("nothing", QByteArray(""), false, 0, false, 0.0);
        row("largest", QByteArray("2147483647"), true, 2147483647, true, 2147483647.0);
        row("beyond int", QByteArray("2147483648"), false, 0, true, 2147483648.0);
        row("beyond long", QByteArray("99999999999999999999"), false, 0, true, 1e20);
        row("beyond double", QByteArray("1e999"), false, 0, false, 0.0);
        row("not a number", QByteArray("nan"), false, 0, false, 0.0);
        row("infinite", QByteArray("-inf"), false, 0, false, 0.0);
    }
    void numbersAreWhollyNumbers() {
        QFETCH(QByteArray, value);
        QFETCH(bool, isInt);
        QFETCH(int, asInt);
        QFETCH(bool, isDouble);
        QFETCH(double, asDouble);
        m_controller->answer("n", value.toStdString());
        int i = 77;
        QCOMPARE(host().get_parameter_int(&i, "n"), isInt ? 0 : int(workbench::MalformedReply));
        QCOMPARE(i, isInt ? asInt : 77);
        double d = 7.7;
        QCOMPARE(host().get_parameter_double(&d, "n"),
                 isDouble ? 0 : int(workbench::MalformedReply));
        QCOMPARE(d, isDouble ? asDouble : 7.7);
    }

    void yesAndNoAreExact() {
        bool value = false;
        m_controller->answer("b", "yes");
        QCOMPARE(host().get_parameter_bool(&value, "b"), 0);
        QVERIFY(value);
        m_controller->answer("b", "no");
        QCOMPARE(host().get_parameter_bool(&value, "b"), 0);
        QVERIFY(!value);
        for (const char* text : {"Yes", "1", "true", "yes ", "no way"}) {
            m_controller->answer("b", text);
            QCOMPARE(host().get_parameter_bool(&value, "b"), int(workbench::MalformedReply));
        }
    }

    void theControllersErrorNumbersComeThrough() {
        char reply[200];
        int i = 0;
        QCOMPARE(host().get_parameter_string(reply, "unknown"), 3);
        QCOMPARE(host().get_parameter_int(&i, "unknown"), 3);
        m_controller->answerRaw("kestrel2 set a 1", "kestrel2 err 4 \"bad\"\n");
        QCOMPARE(host().set_parameter("a %d", 1), 4);
        QVERIFY(logHas(QStringLiteral("bad (error 4)")));
    }

    void formatsAreWrittenWithADecimalPoint() {
        const QByteArray before = std::setlocale(LC_ALL, nullptr);
        QVERIFY(std::setlocale(LC_ALL, "de_DE.UTF-8") != nullptr);
        const int result = host().set_parameter("radius b%2.2d %.3f", 3, 1.5);
        std::setlocale(LC_ALL, before.constData());
        QCOMPARE(result, 0);
        QCOMPARE(m_controller->count("kestrel2 set radius b03 1.500"), 1);
    }

    void longParametersAreSentWholeAndEndlessOnesNotAtAll() {
        const std::string text(1000, 'y');
        QCOMPARE(host().set_parameter("a %s", text.c_str()), 0);
        QCOMPARE(m_controller->count("kestrel2 set a " + text), 1);
        const std::string endless(70000, 'y');
        QCOMPARE(host().set_parameter("a %s", endless.c_str()), int(workbench::BadCommand));
        QCOMPARE(host().set_parameter("a\nkestrel2 b"), int(workbench::BadCommand));
    }

    void nullPointersAreRefused() {
        char reply[200];
        QVERIFY(host().send_command(nullptr, "kestrel2 a") < 0);
        QVERIFY(host().send_command(reply, nullptr) < 0);
        QVERIFY(host().get_parameter_string(nullptr, "a") < 0);
        QVERIFY(host().register_data_requester(nullptr, nullptr) < 0);
        QVERIFY(host().register_data_requester("6dmt", nullptr) < 0);
        QVERIFY(host().register_measurement_requester(nullptr) < 0);
    }

    void theTimeoutOfTheNextCommandCanBeSetAndOnlyOfThatOne() {
        char reply[200];
        // Behind this reply nothing of the session's own is under way that the delay would hit.
        QCOMPARE(host().send_command(reply, "kestrel2 tracking stop"), 0);
        QCOMPARE(host().set_channel_option(0, 5000, 0), 0);
        m_controller->setDelay(2400);
        QCOMPARE(host().send_command(reply, "kestrel2 cal x start"), 0);
        QCOMPARE(host().send_command(reply, "kestrel2 tracking start"), int(workbench::TimedOut));
    }

    void aDeadControllerCostsOneTimeout() {
        m_controller->setSilent(true);
        QElapsedTimer clock;
        clock.start();
        char reply[200];
        QCOMPARE(host().get_parameter_string(reply, "a"), int(workbench::TimedOut));
        for (int i = 0; i < 50; ++i) {
            QCOMPARE(host().get_parameter_string(reply, "a"), int(workbench::NotConnected));
        }
        QVERIFY(clock.elapsed() < workbench::CommandChannel::defaultTimeoutMs + slack);
    }

    void otherThreadsAreRefused() {
        int result = 0;
        std::thread other([&] {
            char reply[200];
            result = host().get_parameter_string(reply, "status active");
        });
        other.join();
        QCOMPARE(result, int(workbench::WrongThread));
    }

    void logLinesOfModulesArePlainText() {
        host().write_log("standard", "KESTREL3", 1, "Error: <b>100%s</b>\nnext");
        QVERIFY(logHas(QStringLiteral("standard\tKESTREL3\tError\tError: <b>100%s</b>\\nnext")));
    }
};

QTEST_GUILESS_MAIN(TestHostIo)
#include "test_hostio.moc"
