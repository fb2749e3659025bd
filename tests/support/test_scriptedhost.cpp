#include "tests/support/datarows.h"
#include "tests/support/scriptedhost.h"

#include <QtTest>

#include <cstring>
#include <limits>

namespace {

class Recorder : public Requester {
public:
    int set_ascii_data(const char* type, const char* data) override {
        events.push_back(std::string(type) + ": " + data);
        return -1;
    }
    void set_mea_started() override { events.emplace_back("started"); }
    void set_mea_stopped() override { events.emplace_back("stopped"); }

    std::vector<std::string> events;
};

} // namespace

Q_DECLARE_METATYPE(ScriptedHost::Fault)

class TestScriptedHost : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void answersAndJournalsInTheOrderOfTheCalls() {
        ScriptedHost host;
        host.answer("measurementtool radius b01", "1.5");
        char reply[200];
        double value = 0.0;
        QCOMPARE(host.get_parameter_double(&value, "measurementtool radius b%2.2d", 1), 0);
        QCOMPARE(value, 1.5);
        QVERIFY(host.get_parameter_string(reply, "never heard of") != 0);
        QCOMPARE(host.set_parameter("measurementtool radius b%2.2d %.3f", 1, 2.25), 0);
        QCOMPARE(host.send_command(reply, "kestrel2 tracking start"), 0);
        QCOMPARE(reply, "kestrel2 ok");
        host.write_log("standard", "KESTREL3", 1, "text");
        const std::vector<std::string> operations = {
            "get_double measurementtool radius b01", "get_string never heard of",
            "set measurementtool radius b01 2.250", "send kestrel2 tracking start"};
        QCOMPARE(host.operations(), operations);
        QCOMPARE(host.logTexts(), std::vector<std::string>{"text"});
    }

    void answersInTurnKeepTheLast() {
        ScriptedHost host;
        host.answerInTurn("status progress", {"1", "2"});
        int value = 0;
        for (const int expected : {1, 2, 2}) {
            QCOMPARE(host.get_parameter_int(&value, "status progress"), 0);
            QCOMPARE(value, expected);
        }
    }

    void failuresLeaveRubbish() {
        ScriptedHost host;
        host.answer("status active", "none");
        host.fail("status active", 7);
        char reply[200];
        QCOMPARE(host.get_parameter_string(reply, "status active"), 7);
        QCOMPARE(reply, "rubbish");
        host.succeed("status active");
        QCOMPARE(host.get_parameter_string(reply, "status active"), 0);
        QCOMPARE(reply, "none");
    }

    void faultsHitTheChosenOperation() {
        ScriptedHost host;
        host.answer("status active", "none");
        host.injectFault(1, ScriptedHost::Fault::Unterminated, false);
        char reply[201] = "";
        QCOMPARE(host.get_parameter_string(reply, "status active"), 0);
        QCOMPARE(reply, "none");
        std::memset(reply, 0, sizeof(reply));
        QCOMPARE(host.get_parameter_string(reply, "status active"), 0);
        QCOMPARE(std::strlen(reply), std::size_t(200));
        QCOMPARE(host.get_parameter_string(reply, "status active"), 0);
        QCOMPARE(reply, "none");
    }

    void numbersAndTruthValuesGoWrongInTheirOwnWay_data() {
        QTest::addColumn<ScriptedHost::Fault>("fault");
        QTest::addColumn<int>("result");
        QTest::addColumn<int>("integer");
        QTest::addColumn<double>("real");
        QTest::addColumn<bool>("truth"); // which was true before
        using Fault = ScriptedHost::Fault;
        using Int = std::numeric_limits<int>;
        const double infinity = std::numeric_limits<double>::infinity();
        const double nan = std::numeric_limits<double>::quiet_NaN();
        row("error", Fault::Error, 1, -123456789, -123456789.0, false);
        row("empty reply", Fault::EmptyReply, 0, 7, 7.5, true);
        row("garbage", Fault::Garbage, 0, Int::min(), nan, false);
        row("unterminated", Fault::Unterminated, 0, Int::max(), infinity, false);
        row("huge", Fault::HugeNumber, 0, 2000000000, 2e9, true);
        row("minus one", Fault::MinusOne, 0, -1, -1.0, true);
    }
    void numbersAndTruthValuesGoWrongInTheirOwnWay() {
        QFETCH(ScriptedHost::Fault, fault);
        QFETCH(int, result);
        ScriptedHost host;
        host.injectFault(0, fault, true);
        int integer = 7;
        double real = 7.5;
        bool truth = true;
        QCOMPARE(host.get_parameter_int(&integer, "number"), result);
        QCOMPARE(host.get_parameter_double(&real, "number"), result);
        QCOMPARE(host.get_parameter_bool(&truth, "number"), result);
        QTEST(integer, "integer");
        QTEST(real, "real");
        QTEST(truth, "truth");
    }

    void failedRegistrationRegistersNobody() {
        ScriptedHost host;
        Recorder recorder;
        host.injectFault(0, ScriptedHost::Fault::Error, true);
        QCOMPARE(host.register_data_requester("6dmt", &recorder), 1);
        QCOMPARE(host.register_measurement_requester(&recorder), 1);
        QCOMPARE(host.set_channel_option(0, 5000, 0), 1);
        QVERIFY(host.requesters("6dmt").empty());
        QVERIFY(host.measurementRequesters().empty());
        QCOMPARE(host.operationCount(), 3);
    }

    void subscribersGetTheirChannelsOnly() {
        ScriptedHost host;
        Recorder tools;
        Recorder references;
        host.register_data_requester("6dmt", &tools);
        host.register_data_requester("6dmtr", &references);
        host.register_measurement_requester(&tools);
        QCOMPARE(host.deliver("6dmt 0"), -1);
        QCOMPARE(host.deliver("6d 0"), 0);
        host.startMeasurement();
        host.unregister_measurement_requester(&tools);
        host.stopMeasurement();
        host.unregister_data_requester("6dmt", &tools);
        host.deliver("6dmt 0");
        const std::vector<std::string> expected = {"6dmt: 6dmt 0", "started"};
        QCOMPARE(tools.events, expected);
        QVERIFY(references.events.empty());
    }
};

QTEST_GUILESS_MAIN(TestScriptedHost)
#include "test_scriptedhost.moc"
