#include "tests/support/statetable.h"
#include "tests/workbench/controller/connectionrig.h"

#include <QtTest>

#include <cstring>

using workbench::BootClock;
using workbench::ControllerSession;
using workbench::DataWatch;

namespace workbench {
struct DataWatchProbe {
    /// The watch looks only when a test lets it.
    static void stop(DataWatch& watch) {
        watch.m_timer.stop();
        watch.m_timer.disconnect();
    }
    static void lookAfter(DataWatch& watch, double seconds) {
        watch.lookAt(BootClock::now() + std::chrono::milliseconds(qRound(seconds * 1000.0)));
    }
};
} // namespace workbench

using workbench::DataWatchProbe;

namespace {

constexpr int patience = 8000;
constexpr double old = 0.7;     // seconds without a frame
constexpr double stopped = 2.5; // the same

enum class Event {
    StartAcknowledged,
    StopAcknowledged,
    FoundMeasuring, ///< by the poll
    FoundWaiting,   ///< for the sync signal
    FoundStopped,
    FoundCalibrating,
    Old,
    Stopped,
    Frame,
    UnreadableFrame,
    Lost,
    Unanswered,
    BackMeasuring, ///< the connection
    BackStopped,
    Disconnected,
    ConnectedAgain ///< asked for while the old connection may last
};

// Ready; Measuring with data, with Old ones, with data that have Stopped; connection Lost while it
// measured; Disconnected.
const char* const header = "before                   |  R  M  O  S  L  D";
const StateTableRow<Event> table[] = {
    {"start acknowledged       |  M  M  O  S  L  D", Event::StartAcknowledged},
    {"stop acknowledged        |  R  R  R  R  L  D", Event::StopAcknowledged},
    {"found measuring          |  M  M  O  S  L  D", Event::FoundMeasuring},
    {"found waiting for sync   |  M  M  O  S  L  D", Event::FoundWaiting},
    {"found stopped            |  R  R  R  R  L  D", Event::FoundStopped},
    {"found calibrating        |  R  R  R  R  L  D", Event::FoundCalibrating},
    {"silence                  |  R  O  O  S  L  D", Event::Old},
    {"a long silence           |  R  S  S  S  L  D", Event::Stopped},
    {"a frame                  |  R  M  M  M  L  D", Event::Frame},
    {"an unreadable frame      |  R  M  O  S  L  D", Event::UnreadableFrame},
    {"connection closed        |  L  L  L  L  L  D", Event::Lost},
    {"no answer in time        |  L  L  L  L  L  D", Event::Unanswered},
    {"back, and it measures    |  R  M  O  S  M  D", Event::BackMeasuring},
    {"back, and it does not    |  R  M  O  S  R  D", Event::BackStopped},
    {"disconnect asked         |  D  D  D  D  D  D", Event::Disconnected},
    {"connect asked            |  R  R  R  R  R  R", Event::ConnectedAgain},
};

/// Writes down what a module hears; a frame as "f", start and stop as "+" and "-".
class Module final : public Requester {
public:
    int set_ascii_data(const char*, const char*) override { return hear('f'); }
    void set_mea_started() override { hear('+'); }
    void set_mea_stopped() override { hear('-'); }

    QString heard;

private:
    int hear(char what) {
        heard += QLatin1Char(what);
        return 0;
    }
};

/// Takes lines as they may be, and none that is longer.
class Limited final : public Requester {
public:
    int set_ascii_data(const char*, const char* line) override {
        return std::strlen(line) > workbench::LineTimes::longestForAll ? -1 : 0;
    }
    void set_mea_started() override {}
    void set_mea_stopped() override {}
};

/// A backend with a module that takes frames, in each state and with each event.
class MeasurementRig {
public:
    MeasurementRig() {
        DataWatchProbe::stop(watch());
        backend().registry.addForMeasurement(&module);
        backend().registry.add("fr", &module);
    }

    bool bring(const QString& state) {
        if (state == QLatin1String("D")) {
            return m_rig.place() == Place::Disconnected;
        }
        bool good = m_rig.bring(Place::Ready, false);
        if (state != QLatin1String("R")) {
            happen(Event::StartAcknowledged);
            good = good && waitFor([this] { return this->state() == QLatin1String("M"); });
            happen(Event::Frame);
        }
        if (state == QLatin1String("O")) {
            happen(Event::Old);
        } else if (state == QLatin1String("S")) {
            happen(Event::Stopped);
        } else if (state == QLatin1String("L")) {
            happen(Event::Lost);
        }
        return good && reach(state);
    }

    bool reach(const QString& state) {
        const bool reached = waitFor([&] { return this->state() == state; });
        QCoreApplication::processEvents();
        return reached && this->state() == state;
    }

    QString state() {
        switch (backend().session.state()) {
        case ControllerSession::State::Disconnected:
            return QStringLiteral("D");
        case ControllerSession::State::Lost:
            return QStringLiteral("L");
        case ControllerSession::State::Ready:
            break;
        default:
            return QStringLiteral("?");
        }
        if (!backend().monitor.isMeasuring()) {
            return QStringLiteral("R");
        }
        if (!isStarted()) {
            return QStringLiteral("S");
        }
        return watch().age() > 0.0 ? QStringLiteral("O") : QStringLiteral("M");
    }

    /// What the module was told last.
    bool isStarted() const { return module.heard.lastIndexOf('+') > module.heard.lastIndexOf('-'); }

    void happen(Event event);

    BackendFixture& backend() { return m_rig.backend(); }
    DataWatch& watch() { return backend().watch; }

    Module module; // outlives the backend

private:
    void ask(const char* command) {
        char reply[200];
        backend().io.send_command(reply, command);
    }
    // As the poll has it.
    void find(const char* status) {
        m_rig.controller().answer("status active", status);
        ask("kestrel2 get status active");
    }
    void comeBack(const char* status) {
        m_rig.controller().answer("status active", status);
        if (state() == QLatin1String("L")) {
            QVERIFY(m_rig.comeBack());
            QVERIFY(waitFor([&] { return backend().monitor.status() == status; }));
            QCoreApplication::processEvents();
        }
    }

    ConnectionRig m_rig;
};

void MeasurementRig::happen(Event event) {
    switch (event) {
    case Event::StartAcknowledged:
        ask("kestrel2 tracking start");
        break;
    case Event::StopAcknowledged:
        ask("kestrel2 tracking stop");
        break;
    case Event::FoundMeasuring:
        find("tracking");
        break;
    case Event::FoundWaiting:
        find("wait");
        break;
    case Event::FoundStopped:
        find("none");
        break;
    case Event::FoundCalibrating:
        find("cal");
        break;
    case Event::Old:
        DataWatchProbe::lookAfter(watch(), old);
        break;
    case Event::Stopped:
        DataWatchProbe::lookAfter(watch(), stopped);
        break;
    case Event::Frame:
        backend().receiver.handOut("fr 1\r\nts 0.1");
        if (backend().monitor.isMeasuring()) {
            DataWatchProbe::lookAfter(watch(), 0.0);
        }
        break;
    case Event::UnreadableFrame:
        backend().receiver.handOut("fr \xff");
        break;
    case Event::Lost:
        m_rig.happen(ConnectionRig::Event::Dropped);
        break;
    case Event::Unanswered:
        m_rig.happen(ConnectionRig::Event::CommandUnanswered);
        break;
    case Event::BackMeasuring:
        comeBack("tracking");
        break;
    case Event::BackStopped:
        comeBack("none");
        break;
    case Event::Disconnected:
        backend().session.disconnectFromController();
        break;
    case Event::ConnectedAgain:
        m_rig.controller().answer("status active", "none");
        m_rig.controller().setSilent(false);
        backend().connectTo(m_rig.controller().port());
        break;
    }
}

} // namespace

Q_DECLARE_METATYPE(Event)

class TestMeasurementTable : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyEventInEveryState_data() {
        QTest::addColumn<QString>("before");
        QTest::addColumn<Event>("event");
        QTest::addColumn<QString>("after");
        forEachCell(
            header, table,
            [](const QString& name, const QString& before, Event event, const QString& after) {
                QTest::newRow(qPrintable(before + ", " + name)) << before << event << after;
            });
    }
    void everyEventInEveryState() {
        QFETCH(QString, before);
        QFETCH(Event, event);
        QFETCH(QString, after);
        MeasurementRig rig;
        QVERIFY2(rig.bring(before), qPrintable(rig.state()));
        const int heardBefore = rig.module.heard.size();

        rig.happen(event);
        QVERIFY2(rig.reach(after), qPrintable(rig.state()));
        const bool isLive = after == "M" || after == "O";
        const bool wasLive = before == "M" || before == "O";
        QCOMPARE(rig.isStarted(), isLive);
        const QString heard = rig.module.heard.mid(heardBefore);
        const QString words = QString(heard).remove('f');
        QCOMPARE(words, isLive == wasLive ? QString() : QString(isLive ? "+" : "-"));
        if (event == Event::Frame) { // and it finds the module started
            QCOMPARE(heard, words + "f");
        }
        QCOMPARE(rig.watch().age() > 0.0, after == "O" || after == "S");
    }

    void whatKeepsTheDataAwayIsSaid_data() {
        QTest::addColumn<QString>("what");
        QTest::addColumn<int>("cause");
        QTest::newRow("nothing ever came") << "" << int(DataWatch::Cause::NeverCame);
        QTest::newRow("they came before") << "f" << int(DataWatch::Cause::Stopped);
        QTest::newRow("garbled") << "fg" << int(DataWatch::Cause::Unreadable);
        QTest::newRow("from somebody else") << "fo" << int(DataWatch::Cause::Foreign);
        QTest::newRow("waits for sync") << "fgw" << int(DataWatch::Cause::WaitsForSync);
        QTest::newRow("no port") << "fgwn" << int(DataWatch::Cause::NoPort);
    }
    void whatKeepsTheDataAwayIsSaid() {
        QFETCH(QString, what);
        QFETCH(int, cause);
        MeasurementRig rig;
        QVERIFY(rig.bring("R"));
        rig.happen(what.contains('w') ? Event::FoundWaiting : Event::FoundMeasuring);
        QVERIFY(rig.reach("M"));
        if (what.contains('f')) {
            rig.happen(Event::Frame);
        }
        if (what.contains('g')) {
            rig.happen(Event::UnreadableFrame);
        }
        if (what.contains('o')) {
            rig.backend().receiver.statistics().addForeign();
        }
        if (what.contains('n')) {
            rig.backend().receiver.stop();
        }
        QSignalSpy changed(&rig.watch(), &DataWatch::changed);
        DataWatchProbe::lookAfter(rig.watch(), old);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(int(rig.watch().cause()), cause);
    }

    // Another program may have switched it off: frames come, and what shows that line is old.
    void aLineThatNoLongerComesIsOldDataAmongNewFrames_data() {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QByteArray>("back");
        QTest::addColumn<QByteArray>("others");
        QTest::addColumn<QString>("name");
        QTest::newRow("tools") << QByteArray("6dmt2 0 0 ") << QByteArray("6dmt2 0 0 ")
                               << QByteArray("6dmtr 0 ") << "6dmt2";
        QTest::newRow("tools, back in the old format")
            << QByteArray("6dmt2 0 0 ") << QByteArray("6dmt 0 ") << QByteArray("6dmtr 0 ")
            << "6dmt2";
        QTest::newRow("references") << QByteArray("6dmtr 0 ") << QByteArray("6dmtr 0 ")
                                    << QByteArray("6dmt2 0 0 ") << "6dmtr";
    }
    void aLineThatNoLongerComesIsOldDataAmongNewFrames() {
        QFETCH(QByteArray, line);
        QFETCH(QByteArray, back);
        QFETCH(QByteArray, others);
        QFETCH(QString, name);
        MeasurementRig rig;
        QVERIFY(rig.bring("M"));
        for (const char* channel : {"6dmt", "6dmt2", "6dmtr"}) {
            rig.backend().registry.add(channel, &rig.module);
        }
        int number = 1;
        const auto comes = [&](const QByteArray& lines) {
            rig.backend().receiver.handOut("fr " + std::to_string(++number) + "\r\n" +
                                           lines.toStdString());
            DataWatchProbe::lookAfter(rig.watch(), 0.0);
            return rig.state();
        };
        QCOMPARE(comes(line + "\r\n" + others), QString("M"));
        QVERIFY(waitFor([&] { return comes(others) == "O"; }));
        QVERIFY(rig.watch().age() >= DataWatch::oldAfter);
        QCOMPARE(int(rig.watch().cause()), int(DataWatch::Cause::LineMissing));
        QCOMPARE(rig.watch().line(), name);
        QVERIFY(waitFor([&] { return comes(others) == "S"; }));
        QVERIFY(rig.watch().age() >= DataWatch::stoppedAfter);
        rig.module.heard.clear();
        QCOMPARE(comes(others), QString("S")); // such frames start nothing
        QCOMPARE(rig.module.heard, QString("ff"));
        rig.module.heard.clear();
        QCOMPARE(comes(back + "\r\n" + others), QString("M"));
        QCOMPARE(rig.module.heard, QString("+fff"));
    }

    void aLineThatNobodyTakesIsNotMissed() {
        MeasurementRig rig;
        QVERIFY(rig.bring("M"));
        rig.backend().receiver.handOut("fr 1\r\n6dmt2 0 0 ");
        BootClock::time_point begun = BootClock::now();
        QVERIFY(waitFor([&] {
            rig.backend().receiver.handOut("fr 2");
            return BootClock::seconds(BootClock::now() - begun) > old;
        }));
        DataWatchProbe::lookAfter(rig.watch(), 0.0);
        QCOMPARE(rig.state(), QString("M"));
        rig.backend().registry.add("6dmt2", &rig.module); // who takes it now is told
        DataWatchProbe::lookAfter(rig.watch(), 0.0);
        QCOMPARE(rig.state(), QString("O"));
        // With another measurement it counts once it has come.
        rig.happen(Event::StopAcknowledged);
        QVERIFY(rig.reach("R"));
        rig.happen(Event::StartAcknowledged);
        QVERIFY(rig.reach("M"));
        begun = BootClock::now();
        QVERIFY(waitFor([&] {
            rig.backend().receiver.handOut("fr 3");
            return BootClock::seconds(BootClock::now() - begun) > old;
        }));
        DataWatchProbe::lookAfter(rig.watch(), 0.0);
        QCOMPARE(rig.state(), QString("M"));
    }

    // As one whose buffer is too short for it.
    void aLineThatIsRefusedAllAtOnceHasNotCome() {
        MeasurementRig rig;
        QVERIFY(rig.bring("M"));
        Limited limited;
        rig.backend().registry.add("6dmt2", &limited);
        const std::string good = "fr 1\r\n6dmt2 0 0 ";
        const std::string tooLong =
            good + std::string(workbench::LineTimes::longestForAll + 1, ' ');
        const auto comes = [&](const std::string& frame) {
            rig.backend().receiver.handOut(frame);
            DataWatchProbe::lookAfter(rig.watch(), 0.0);
            return rig.state();
        };
        QCOMPARE(comes(good), QString("M"));
        QVERIFY(waitFor([&] { return comes(tooLong) == "O"; }));
        QCOMPARE(int(rig.watch().cause()), int(DataWatch::Cause::LineRefused));
        QCOMPARE(rig.watch().line(), QString("6dmt2"));
        QVERIFY(waitFor([&] { return comes(tooLong) == "S"; }));
        QCOMPARE(comes(tooLong), QString("S"));
        QCOMPARE(comes(good), QString("M"));
        rig.backend().registry.remove("6dmt2", &limited);
    }

    void theAgeIsRoundedDown() {
        MeasurementRig rig;
        QVERIFY(rig.bring("M"));
        rig.happen(Event::Frame);
        QSignalSpy changed(&rig.watch(), &DataWatch::changed);
        DataWatchProbe::lookAfter(rig.watch(), 3.5);
        QCOMPARE(rig.watch().ageText(), QString("3"));
        DataWatchProbe::lookAfter(rig.watch(), 3.6);
        QCOMPARE(changed.count(), 1);
        DataWatchProbe::lookAfter(rig.watch(), 4.5);
        QCOMPARE(changed.count(), 2);
        rig.happen(Event::Frame);
        QCOMPARE(changed.count(), 3);
        QCOMPARE(rig.watch().age(), 0.0);
    }

    void theFirstFrameMayTakeItsTime() {
        MeasurementRig rig;
        QVERIFY(rig.bring("R"));
        rig.happen(Event::StartAcknowledged);
        QVERIFY(rig.reach("M"));
        DataWatchProbe::lookAfter(rig.watch(), 0.2);
        QCOMPARE(rig.state(), QString("M"));
        DataWatchProbe::lookAfter(rig.watch(), old);
        QCOMPARE(rig.state(), QString("O"));
    }

    // Of sixty frames a second one comes each second or two.
    void aControllerThatLosesMostOfItsFramesIsNotGivenMore() {
        MeasurementRig rig;
        QVERIFY(rig.bring("M"));
        rig.backend().receiver.statistics().reset();
        const BootClock::time_point now = BootClock::now();
        for (const int second : {-5, -3, -2, 0}) {
            rig.backend().receiver.statistics().addFrame(600 + 60 * second,
                                                         now + std::chrono::seconds(second));
        }
        DataWatchProbe::lookAfter(rig.watch(), 0.4);
        QCOMPARE(rig.state(), QString("M"));
        DataWatchProbe::lookAfter(rig.watch(), old);
        QCOMPARE(rig.state(), QString("O"));
        DataWatchProbe::lookAfter(rig.watch(), stopped);
        QCOMPARE(rig.state(), QString("S"));
    }

    void aControllerWithFewFramesIsGivenItsTime() {
        MeasurementRig rig;
        QVERIFY(rig.bring("M"));
        rig.backend().receiver.statistics().reset();
        const BootClock::time_point now = BootClock::now();
        for (int second = -3; second <= 0; ++second) {
            rig.backend().receiver.statistics().addFrame(second + 10,
                                                         now + std::chrono::seconds(second));
        }
        DataWatchProbe::lookAfter(rig.watch(), 1.5);
        QCOMPARE(rig.state(), QString("M"));
        DataWatchProbe::lookAfter(rig.watch(), stopped);
        QCOMPARE(rig.state(), QString("O"));
        DataWatchProbe::lookAfter(rig.watch(), 3.5);
        QCOMPARE(rig.state(), QString("S"));
    }

    void aPausedReplayIsNotMissed() {
        MeasurementRig rig;
        QVERIFY(rig.bring("O"));
        rig.watch().setPaused(true);
        QCOMPARE(rig.state(), QString("M"));
        DataWatchProbe::lookAfter(rig.watch(), stopped);
        QCOMPARE(rig.state(), QString("M"));
        rig.watch().setPaused(false);
        DataWatchProbe::lookAfter(rig.watch(), 0.2);
        QCOMPARE(rig.state(), QString("M"));
        DataWatchProbe::lookAfter(rig.watch(), old);
        QCOMPARE(rig.state(), QString("O"));
    }

    void theWatchLooksByItself() {
        ConnectionRig rig;
        QVERIFY(rig.bring(Place::Ready, false));
        rig.happen(ConnectionRig::Event::StartAcknowledged);
        QSignalSpy changed(&rig.backend().watch, &DataWatch::changed);
        QVERIFY(changed.wait(patience));
        QVERIFY(rig.backend().watch.age() >= DataWatch::oldAfter);
    }
};

QTEST_GUILESS_MAIN(TestMeasurementTable)
#include "test_measurement_table.moc"
