#include "tests/support/datarows.h"
#include "tests/support/statetable.h"
#include "tests/workbench/controller/connectionrig.h"

#include <QElapsedTimer>
#include <QtTest>

Q_DECLARE_METATYPE(Place)
Q_DECLARE_METATYPE(ConnectionRig::Event)

namespace {

using Event = ConnectionRig::Event;

constexpr int atOnce = 8000; // nothing is waited for in vain, also on a loaded machine

const QMap<QString, Place> places = {
    {"D", Place::Disconnected},   {"C", Place::Connecting},     {"V", Place::Reading},
    {"R", Place::Ready},          {"FW", Place::FailedWaiting}, {"FC", Place::FailedConnecting},
    {"FV", Place::FailedReading}, {"LW", Place::LostWaiting},   {"LC", Place::LostConnecting},
    {"LV", Place::LostReading},
};

// Places: Disconnected; Connecting, reading Versions, Ready; and while it was never ready (Failed)
// or was ready before (Lost): Waiting for the retry, Connecting, reading Versions.
const char* const header = "before                   |  D  C  V  R FW FC FV LW LC LV";
const StateTableRow<Event> table[] = {
    {"connect asked            |  C  C  C  C  C  C  C  C  C  C", Event::ConnectAsked},
    {"connect asked again      |  C  C  C  C  C  C  C  C  C  C", Event::ConnectAskedAgain},
    {"disconnect asked         |  D  D  D  D  D  D  D  D  D  D", Event::DisconnectAsked},
    {"connection accepted      |  D  V  V  R FW FV FV LW LV LV", Event::Accepted},
    {"connections refused      |  D FW  V  R FW FW FV LW LW LV", Event::Refused},
    {"no answer in time        |  D FW FW  R FW FW FW LW LW LW", Event::TimerOfReply},
    {"connection dropped       |  D FW FW LW FW FW FW LW LW LW", Event::Dropped},
    {"versions                 |  D  V  R  R FW FV  R LW LV  R", Event::GoodVersions},
    {"old versions             |  D  V  R  R FW FV  R LW LV  R", Event::OldVersions},
    {"a garbled version        |  D  V  R  R FW FV  R LW LV  R", Event::OneVersionGarbled},
    {"garbled replies          |  D  V FW  R FW FV FW LW LV LW", Event::AllVersionsGarbled},
    {"half a line and a command|  D FW  V LW FW FW FV LW LW LV", Event::HalfLine},
    {"a line without an end    |  D FW FW LW FW FW FW LW LW LW", Event::EndlessLine},
    {"time to retry            |  D  C  V  R FC FC FV LC LC LV", Event::TimerOfRetry},
    {"time to poll             |  D  C  V  R FW FC FV LW LC LV", Event::TimerOfPoll},
    {"a command                |  D  C  V  R FW FC FV LW LC LV", Event::CommandAnswered},
    {"a garbled reply          |  D  C  V  R FW FC FV LW LC LV", Event::CommandGarbled},
    {"three garbled replies    |  D  C  V LW FW FC FV LW LC LV", Event::CommandsGarbled},
    {"a command unanswered     |  D  C  V LW FW FC FV LW LC LV", Event::CommandUnanswered},
    {"measurement started      |  D  C  V  R FW FC FV LW LC LV", Event::StartAcknowledged},
    {"measurement stopped      |  D  C  V  R FW FC FV LW LC LV", Event::StopAcknowledged},
    {"started by others        |  D  C  V  R FW FC FV LW LC LV", Event::StartElsewhere},
};

bool wasReady(Place place) {
    return place == Place::Ready || place >= Place::LostWaiting;
}

bool isAsked(Event event) {
    return event == Event::ConnectAsked || event == Event::ConnectAskedAgain ||
           event == Event::DisconnectAsked;
}

// What a module gets from its command; 0 for events that are none. Only Ready lets one through.
int expectedResult(Event event, Place before) {
    const bool ready = before == Place::Ready;
    switch (event) {
    case Event::HalfLine:
        return workbench::NotConnected;
    case Event::CommandAnswered:
    case Event::StartAcknowledged:
    case Event::StopAcknowledged:
        return ready ? workbench::Success : workbench::NotConnected;
    case Event::CommandGarbled:
    case Event::CommandsGarbled:
        return ready ? workbench::MalformedReply : workbench::NotConnected;
    case Event::CommandUnanswered:
        return ready ? workbench::TimedOut : workbench::NotConnected;
    default:
        return workbench::Success;
    }
}

// Of the record that modules see. It follows the controller, and knows nothing of one that has not
// answered all.
VersionInfo expectedProtocol(Event event, Place before, Place after) {
    const VersionInfo good(1, 14, 0);
    const bool answered = isReading(before) && after == Place::Ready;
    if (answered && event == Event::OldVersions) {
        return VersionInfo(0, 9, 0);
    }
    if (answered && event == Event::OneVersionGarbled) {
        return wasReady(before) ? good : VersionInfo();
    }
    return wasReady(after) ? good : VersionInfo();
}

} // namespace

class TestConnectionTable : public QObject {
    Q_OBJECT

    // How often the versions were asked since the connection came to the place before the event:
    // once for each connection that was made.
    static int expectedOpenings(Event event, Place before, Place after) {
        const bool kept = after == Place::Ready || isReading(after);
        return !isAsked(event) && (before == Place::Ready || isReading(before)) && kept ? 0 : 1;
    }

private Q_SLOTS:
    void everyEventInEveryPlace_data() {
        QTest::addColumn<Place>("before");
        QTest::addColumn<Event>("event");
        QTest::addColumn<Place>("after");
        QCOMPARE(statesOf(header).size(), places.size());
        forEachCell(
            header, table,
            [](const QString& name, const QString& before, Event event, const QString& after) {
                row(qPrintable(before + ", " + name), places[before], event, places[after]);
            });
    }
    void everyEventInEveryPlace() {
        QFETCH(Place, before);
        QFETCH(Event, event);
        QFETCH(Place, after);
        ConnectionRig rig;
        QVERIFY2(rig.bring(before, event == Event::Refused), qPrintable(rig.placeText()));

        rig.happen(event);
        QCOMPARE(rig.lastResult(), expectedResult(event, before));
        if (!isConnecting(after)) {
            waitFor([&] { return rig.place() == after; });
            QCoreApplication::processEvents();
        }
        QVERIFY2(rig.place() == after, qPrintable(rig.placeText()));
        const BackendVersions& versions = *rig.backend().session.versions();
        QVERIFY(versions.protocol() == expectedProtocol(event, before, after));
        QVERIFY(versions.systemPt() == (wasReady(after) ? VersionInfo(2, 10, 1) : VersionInfo()));
        QCOMPARE(versions.hubModel(), QString(wasReady(after) ? "SCRIPTED" : ""));
        const bool started = event == Event::StartAcknowledged || event == Event::StartElsewhere;
        QCOMPARE(rig.backend().monitor.isMeasuring(), started && before == Place::Ready);
        if (after == Place::Disconnected) {
            QCOMPARE(rig.backend().session.boundDataPort(), quint16(0));
        }

        QVERIFY2(rig.comeBack(), qPrintable(rig.placeText()));
        QVERIFY(waitFor([&] { return rig.controller().openConnections() == 1; }));
        QCOMPARE(rig.controller().count("kestrel2 get version model"),
                 expectedOpenings(event, before, after));
        const bool stayedReady = before == Place::Ready && after == Place::Ready;
        QCOMPARE(rig.readySpy().count(), stayedReady ? 0 : 1);
        if (!stayedReady) {
            QCOMPARE(rig.readySpy().first().first().toBool(), isAsked(event) || !wasReady(before));
        }
        if (rig.hasMoved()) {
            QVERIFY(waitFor([&] { return rig.givenUp().openConnections() == 0; }));
            QVERIFY(versions.systemPt() == VersionInfo()); // the other one does not tell it
            QVERIFY(versions.protocol() == VersionInfo(1, 9, 0));
        }
    }

    void theProgramCanEndInEveryPlace_data() {
        QTest::addColumn<Place>("place");
        for (auto place = places.begin(); place != places.end(); ++place) {
            QTest::newRow(qPrintable(place.key())) << place.value();
        }
    }
    void theProgramCanEndInEveryPlace() {
        QFETCH(Place, place);
        ConnectionRig rig;
        QVERIFY2(rig.bring(place, false), qPrintable(rig.placeText()));
        QElapsedTimer clock;
        clock.start();
        rig.end();
        QVERIFY(clock.elapsed() < atOnce);
        QVERIFY(waitFor([&] { return rig.givenUp().openConnections() == 0; }));
        QCOMPARE(rig.readySpy().count(), 0);
    }
};

QTEST_GUILESS_MAIN(TestConnectionTable)
#include "test_connection_table.moc"
