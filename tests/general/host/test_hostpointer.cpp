#include "general/host/hostpointer.h"
#include "host_api/backendversions.h"
#include "tests/support/scriptedhost.h"

#include <QPointer>
#include <QtTest>

class TestHostPointer : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anOperationIsUnderWayWhileItRuns() {
        ScriptedHost io;
        QList<bool> inside;
        io.onOperation = [&](const std::string&) { inside << underway::isOperation(); };
        const HostPointer host(&io);
        QCOMPARE(host->set_parameter("one %d", 1), 0);
        QVERIFY(!underway::isOperation());
        QCOMPARE(inside, QList<bool>({true}));
        QCOMPARE(io.journal(), std::vector<std::string>{"set one 1"});
    }

    void copiesHangUpTogether() {
        ScriptedHost io;
        const HostPointer host(&io);
        const HostPointer copy = host;
        const BackendVersions record;
        const VersionsPointer versions(&record, host);
        QCOMPARE(static_cast<const BackendVersions*>(versions), &record);
        copy.hangUp();
        QVERIFY(host.isHungUp());
        QVERIFY(host->set_parameter("one") != 0);
        QVERIFY(io.journal().empty());
        QVERIFY(static_cast<const BackendVersions*>(versions) == nullptr);
        QCOMPARE(host.afterHangingUp()->set_parameter("one"), 0);
        QCOMPARE(io.journal(), std::vector<std::string>{"set one"});
    }

    void whatIsRetiredGoesAtOnce() {
        const QPointer<QObject> object = new QObject;
        underway::retire(object);
        QVERIFY(object.isNull());
    }

    void whatIsRetiredInsideAnOperationIsLeftToTheEventLoop() {
        ScriptedHost io;
        const QPointer<QObject> object = new QObject;
        io.onOperation = [&](const std::string& line) {
            if (line == "set outer") {
                const HostPointer inner(&io);
                inner->set_parameter("inner");
                QVERIFY(!object.isNull());
            } else {
                underway::retire(object);
            }
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QVERIFY(!object.isNull());
        };
        const HostPointer host(&io);
        host->set_parameter("outer");
        QVERIFY(!object.isNull());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(object.isNull());
    }
};

QTEST_GUILESS_MAIN(TestHostPointer)
#include "test_hostpointer.moc"
