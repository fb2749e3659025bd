#include "general/host/hostlink.h"
#include "host_api/backendversions.h"
#include "tests/support/scriptedhost.h"

#include <QtTest>

#include <cstring>

namespace {

BackendVersions protocolVersion(int major, int minor, int patch) {
    return BackendVersions(VersionInfo(), VersionInfo(major, minor, patch), VersionInfo(),
                           QString());
}

enum class Query { Available, Tracking, Locked };

bool ask(Query query, ScriptedHost& host, const BackendVersions* versions) {
    switch (query) {
    case Query::Available:
        return hostlink::isMtAvailable(&host, versions);
    case Query::Tracking:
        return hostlink::isTrackingAvailable(&host, versions);
    case Query::Locked:
        return hostlink::isConfigLocked(&host, versions);
    }
    return false;
}

const char* parameterOf(Query query) {
    switch (query) {
    case Query::Available:
        return "measurementtool available";
    case Query::Tracking:
        return "tracking available";
    case Query::Locked:
        return "config is_changeable";
    }
    return "";
}

} // namespace

Q_DECLARE_METATYPE(Query)
Q_DECLARE_METATYPE(ScriptedHost::Fault)

class TestHostLink : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void gatePassesFromItsVersionOnAndWithUnknownPatch_data() {
        QTest::addColumn<int>("major");
        QTest::addColumn<int>("minor");
        QTest::addColumn<int>("patch");
        QTest::addColumn<bool>("passes");
        QTest::newRow("exactly") << 1 << 3 << 0 << true;
        QTest::newRow("unknown patch") << 1 << 3 << -1 << true;
        QTest::newRow("other negative patch") << 1 << 3 << -2 << false;
        QTest::newRow("later patch") << 1 << 3 << 7 << true;
        QTest::newRow("minor below") << 1 << 2 << 99 << false;
        QTest::newRow("minor above, negative patch") << 1 << 4 << -2 << true;
        QTest::newRow("major above") << 2 << 0 << 0 << true;
        QTest::newRow("major above, negative patch") << 2 << 0 << -5 << true;
        QTest::newRow("major below") << 0 << 99 << 99 << false;
    }
    void gatePassesFromItsVersionOnAndWithUnknownPatch() {
        QFETCH(int, major);
        QFETCH(int, minor);
        QFETCH(int, patch);
        const BackendVersions versions = protocolVersion(major, minor, patch);
        QTEST(hostlink::protocolPasses(&versions, 1, 3), "passes");
    }

    void gateOfNoVersionRecordDoesNotPass() { QVERIFY(!hostlink::protocolPasses(nullptr, 0, 0)); }

    void versionIsReadAfreshAtEachGate() {
        BackendVersions versions = protocolVersion(1, 2, 0);
        QVERIFY(!hostlink::protocolPasses(&versions, 1, 3));
        versions = protocolVersion(1, 3, 0);
        QVERIFY(hostlink::protocolPasses(&versions, 1, 3));
    }

    void queriesAreNotAskedBelowTheirGate_data() {
        QTest::addColumn<Query>("query");
        QTest::addColumn<int>("major");
        QTest::addColumn<int>("minor");
        QTest::addColumn<bool>("result");
        QTest::newRow("available below 1.3") << Query::Available << 1 << 2 << false;
        QTest::newRow("tracking below 0.17") << Query::Tracking << 0 << 16 << true;
        QTest::newRow("locked below 1.9") << Query::Locked << 1 << 8 << false;
    }
    void queriesAreNotAskedBelowTheirGate() {
        QFETCH(Query, query);
        QFETCH(int, major);
        QFETCH(int, minor);
        QFETCH(bool, result);
        ScriptedHost host;
        host.answer(parameterOf(query), result ? "no" : "yes");
        const BackendVersions below = protocolVersion(major, minor, 99);
        QCOMPARE(ask(query, host, &below), result);
        QVERIFY(host.journal().empty());

        const BackendVersions at = protocolVersion(major, minor + 1, -1);
        ask(query, host, &at);
        QCOMPARE(host.journal(),
                 std::vector<std::string>{std::string("get_string ") + parameterOf(query)});
    }

    void queriesCompareTheWholeReply_data() {
        QTest::addColumn<Query>("query");
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<bool>("result");
        QTest::newRow("available") << Query::Available << QByteArray("yes") << true;
        QTest::newRow("available no") << Query::Available << QByteArray("no") << false;
        QTest::newRow("available, newline") << Query::Available << QByteArray("yes\n") << false;
        QTest::newRow("available, blank") << Query::Available << QByteArray("yes ") << false;
        QTest::newRow("available, blank before") << Query::Available << QByteArray(" yes") << false;
        QTest::newRow("available, capital") << Query::Available << QByteArray("Yes") << false;
        QTest::newRow("available, empty") << Query::Available << QByteArray("") << false;
        QTest::newRow("tracking yes") << Query::Tracking << QByteArray("yes") << true;
        QTest::newRow("tracking no") << Query::Tracking << QByteArray("no") << false;
        QTest::newRow("tracking, blank") << Query::Tracking << QByteArray("no ") << true;
        QTest::newRow("tracking, capital") << Query::Tracking << QByteArray("No") << true;
        QTest::newRow("tracking, empty") << Query::Tracking << QByteArray("") << true;
        QTest::newRow("changeable") << Query::Locked << QByteArray("yes") << false;
        QTest::newRow("not changeable") << Query::Locked << QByteArray("no") << true;
        QTest::newRow("not changeable, blank") << Query::Locked << QByteArray("no ") << false;
        QTest::newRow("not changeable, empty") << Query::Locked << QByteArray("") << false;
    }
    void queriesCompareTheWholeReply() {
        QFETCH(Query, query);
        QFETCH(QByteArray, reply);
        ScriptedHost host;
        host.answer(parameterOf(query), reply.toStdString());
        const BackendVersions versions = protocolVersion(1, 9, 0);
        QTEST(ask(query, host, &versions), "result");
        QVERIFY(host.logTexts().empty());
    }

    void queriesFallBackWhenTheyGoWrong_data() {
        QTest::addColumn<Query>("query");
        QTest::addColumn<ScriptedHost::Fault>("fault");
        QTest::addColumn<bool>("result");
        using Fault = ScriptedHost::Fault;
        const std::pair<const char*, Fault> faults[] = {{"error", Fault::Error},
                                                        {"empty", Fault::EmptyReply},
                                                        {"garbage", Fault::Garbage},
                                                        {"unterminated", Fault::Unterminated},
                                                        {"number", Fault::HugeNumber}};
        for (const auto& [name, fault] : faults) {
            QTest::addRow("available, %s", name) << Query::Available << fault << false;
            QTest::addRow("tracking, %s", name) << Query::Tracking << fault << true;
            QTest::addRow("locked, %s", name) << Query::Locked << fault << false;
        }
    }
    void queriesFallBackWhenTheyGoWrong() {
        QFETCH(Query, query);
        QFETCH(ScriptedHost::Fault, fault);
        ScriptedHost host;
        host.injectFault(0, fault, false);
        const BackendVersions versions = protocolVersion(1, 9, 0);
        QTEST(ask(query, host, &versions), "result");
        QVERIFY(host.logTexts().empty());
    }

    void failedQueryIsNotBelievedWhateverItLeaves() {
        class LyingHost : public ScriptedHost {
        public:
            int get_parameter_string(char* reply, const char*, ...) override {
                std::strcpy(reply, text);
                return 1;
            }
            const char* text = "";
        } host;
        const BackendVersions versions = protocolVersion(1, 9, 0);
        host.text = "yes";
        QVERIFY(!hostlink::isMtAvailable(&host, &versions));
        host.text = "no";
        QVERIFY(hostlink::isTrackingAvailable(&host, &versions));
        QVERIFY(!hostlink::isConfigLocked(&host, &versions));
    }

    void replyHoldsTwoHundredBytesAndIsAlwaysTerminated() {
        hostlink::Reply reply;
        std::memset(reply.buffer(), 'x', hostlink::Reply::Size);
        QCOMPARE(reply.toString(), QString(200, 'x'));
        QVERIFY(!reply.is("x"));
        reply.buffer();
        QCOMPARE(reply.toString(), QString());
        QVERIFY(reply.is(""));
    }

    void replyIsComparedExactly() {
        hostlink::Reply reply;
        std::strcpy(reply.buffer(), "kestrel2 ok");
        QVERIFY(reply.is(hostlink::ok));
        std::strcpy(reply.buffer(), "kestrel2 ok ");
        QVERIFY(!reply.is(hostlink::ok));
        std::strcpy(reply.buffer(), "kestrel2 o");
        QVERIFY(!reply.is(hostlink::ok));
    }

    void replyIsReadAsUtf8() {
        hostlink::Reply reply;
        std::strcpy(reply.buffer(), "Me\xc3\x9f");
        QCOMPARE(reply.toString(), QString::fromUtf8("Me\xc3\x9f"));
    }

    void logLinesHaveOneCategorySourceAndLevel() {
        ScriptedHost host;
        hostlink::log(&host, "Error: Unable to get number of mea tools");
        QCOMPARE(host.journal(),
                 std::vector<std::string>{
                     "log standard KESTREL3 1 Error: Unable to get number of mea tools"});
    }

    void logFillsTheValueInAsItIs() {
        ScriptedHost host;
        hostlink::log(&host, "Error: Unable to set it = %1", QString("50%1 %s"));
        QCOMPARE(host.logTexts(), std::vector<std::string>{"Error: Unable to set it = 50%1 %s"});
    }

    void aMissingHostAnswersNothing() {
        const HostPointer host = nullptr;
        char reply[200] = "before";
        int i = 7;
        double d = 7.0;
        bool b = true;
        QVERIFY(host->send_command(reply, "kestrel2 tracking start") != 0);
        QVERIFY(host->get_parameter_string(reply, "status active") != 0);
        QVERIFY(host->get_parameter_int(&i, "status progress") != 0);
        QVERIFY(host->get_parameter_double(&d, "status progress") != 0);
        QVERIFY(host->get_parameter_bool(&b, "status progress") != 0);
        QVERIFY(host->set_parameter("output active chmon 6dmt yes") != 0);
        QVERIFY(host->register_data_requester("6dmt", nullptr) != 0);
        QVERIFY(host->unregister_data_requester("6dmt", nullptr) != 0);
        QVERIFY(host->register_measurement_requester(nullptr) != 0);
        QVERIFY(host->unregister_measurement_requester(nullptr) != 0);
        host->write_log("standard", "KESTREL3", 1, "nobody reads it");
        const BackendVersions versions = protocolVersion(1, 14, 0);
        QVERIFY(!hostlink::isMtAvailable(host, &versions));
        QVERIFY(hostlink::isTrackingAvailable(host, &versions));
        QVERIFY(!hostlink::isConfigLocked(host, &versions));
    }
};

QTEST_GUILESS_MAIN(TestHostLink)
#include "test_hostlink.moc"
