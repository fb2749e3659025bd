#include "tests/probecheck/probefixture.h"
#include "tests/support/endings/endingsweep.h"
#include "tests/support/faultsweep.h"

#include <QAbstractItemModel>
#include <QComboBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QTemporaryDir>
#include <QtTest>

namespace {

constexpr int patienceMs = 10000;
constexpr int tipCheck = 0; // indices of the entries
constexpr int points = 1;
constexpr double frameStep = 1.0 / 60.0;
constexpr double partSeconds = 0.25; // of frames between two looks
constexpr double longSeconds = 10.0; // to hold the tip still; not over between two looks
constexpr double shortSeconds = 0.2;

/// A user of both docks in front of a host that may end the plug-in at any moment: then nothing
/// more is done.
class User {
public:
    explicit User(EndingHost& host)
        : m_host(host) {}

    /// Until the condition holds, or the end has come.
    bool waitFor(const std::function<bool()>& condition) {
        return QTest::qWaitFor([&] { return m_host.hasEnded() || condition(); }, patienceMs);
    }
    bool waitForWords(int entry, const QString& beginning) {
        return waitFor([&] { return words(entry).startsWith(beginning); });
    }
    QString words(int entry) const {
        return find<QLabel>(entry, entry == tipCheck ? "label_words" : "label_state")->text();
    }
    void click(int entry, const char* button) {
        m_host.act([&] { find<QPushButton>(entry, button)->click(); });
    }
    template <typename Widget>
    Widget* find(int entry, const char* name) const {
        auto* const found = m_host.content(entry)->findChild<Widget*>(QLatin1String(name));
        if (found == nullptr) {
            qFatal("no %s", name);
        }
        return found;
    }

    void hold(double seconds) const {
        find<QDoubleSpinBox>(points, "doubleSpinBox_duration")->setValue(seconds);
    }

    /// Both docks follow a measurement.
    void measure() {
        m_host.act([&] { m_host.io.startMeasurement(); });
        QVERIFY(waitFor([&] {
            return find<QPushButton>(tipCheck, "pushButton_start")->isEnabled() &&
                   words(points) != "No measurement is running.";
        }));
    }

    /// Frames of a tool that is held still, as fast as they go.
    void send(double seconds, double quality = 1.0, double referenceQuality = 1.0) {
        const double end = m_time + seconds;
        for (; m_time < end && !m_host.hasEnded(); m_time += frameStep) {
            m_host.io.deliver(probelines::frame(++m_frame));
            m_host.io.deliver(probelines::time(100.0 + m_time));
            m_host.io.deliver(
                probelines::tools({{{100.0, 200.0, 300.0}, probelines::unturned, quality, 0}}));
            m_host.io.deliver(probelines::references({referenceQuality}));
        }
    }

    /// Sends until the dock says so; a dock that says something else for ever fails the test.
    void sendUntil(int entry, const QString& beginning, double quality = 1.0,
                   double referenceQuality = 1.0) {
        QVERIFY2(waitFor([&] {
                     send(partSeconds, quality, referenceQuality);
                     return !m_host.hasEnded() && words(entry).startsWith(beginning);
                 }),
                 qPrintable(beginning));
    }

    /// By hand, again where a standstill of this machine has made the dock give up. A disk that is
    /// slow keeps the point for later.
    void capture() {
        QVERIFY(waitFor([&] {
            const QString said = words(points);
            if (said == "Ready." || said.startsWith("Given up")) {
                click(points, "pushButton_capture");
            }
            send(partSeconds);
            return !m_host.hasEnded() && words(points).startsWith("Point captured");
        }));
    }

private:
    EndingHost& m_host;
    double m_time = 0.0;
    unsigned m_frame = 0;
};

// Both docks are shown, a check and a capture by hand while a measurement runs, both docks hidden
// and shown again, exit.
void useBoth(EndingHost& host) {
    User user(host);
    host.trigger(tipCheck);
    host.trigger(points);
    user.measure();
    user.click(tipCheck, "pushButton_start");
    host.act([&] { user.hold(shortSeconds); });
    host.act([&] { user.capture(); });
    user.click(tipCheck, "pushButton_stop");
    host.act([&] { host.io.stopMeasurement(); });
    host.act([&] { QVERIFY(user.waitForWords(points, "No measurement is running.")); });
    for (const int entry : {tipCheck, points, tipCheck, points}) {
        host.trigger(entry);
        host.act([] { QCoreApplication::processEvents(); });
    }
    host.act([&] { host.module->about_to_exit_module(); });
    host.act([&] { host.module->exit_module(); });
}

void checkQuickStates(EndingHost& host) {
    User user(host);
    host.trigger(tipCheck);
    host.act([&] { QVERIFY(user.waitForWords(tipCheck, "No tracking runs.")); });
    host.pause();
    host.trigger(points);
    user.measure();
    host.act([&] { QVERIFY(user.words(tipCheck).startsWith("Put the tip into a hollow")); });
    host.pause(); // Idle
    user.click(tipCheck, "pushButton_start");
    host.act([&] { user.sendUntil(tipCheck, "Tilt"); });
    host.pause(); // Measuring
    user.click(tipCheck, "pushButton_stop");
    host.act([&] { QVERIFY(user.words(tipCheck).startsWith("No result")); });
    host.pause(); // Finished
}

// A second must pass before the first of these; from then on a frame is enough.
void checkSlowStates(EndingHost& host) {
    User user(host);
    host.trigger(tipCheck);
    host.trigger(points);
    user.measure();
    user.click(tipCheck, "pushButton_start");
    host.act([&] { QVERIFY(user.waitForWords(tipCheck, "No data come.")); });
    host.pause(); // Silent
    host.act([&] { user.sendUntil(tipCheck, "The tool is hidden", -1.0); });
    host.pause(); // Hidden
    host.act([&] { user.sendUntil(tipCheck, "The reference", 1.0, -1.0); });
    host.pause(); // ReferenceLost
}

void captureStates(EndingHost& host) {
    User user(host);
    host.trigger(tipCheck);
    host.trigger(points);
    host.act([&] { QVERIFY(user.waitForWords(points, "No measurement is running.")); });
    host.pause(); // Off
    user.measure();
    host.act([&] { QVERIFY(user.words(points).startsWith("Waiting for the tool")); });
    host.pause(); // Ready
    QObject receiver;
    QString wordsOnTheWay;
    host.act([&] {
        // Handled before what the disk says.
        QObject::connect(
            user.find<QTableView>(points, "tableView_points")->model(),
            &QAbstractItemModel::rowsInserted, &receiver,
            [&] {
                wordsOnTheWay = user.words(points);
                host.pause(); // Keeping
            },
            Qt::QueuedConnection);
        user.hold(longSeconds);
        user.find<QComboBox>(points, "comboBox_mode")->setCurrentIndex(1);
        user.sendUntil(points, "Hold the tip still.");
    });
    host.pause(); // Holding
    host.act([&] {
        user.hold(shortSeconds);
        user.sendUntil(points, "Point captured");
    });
    host.act([&] { QCOMPARE(wordsOnTheWay, QString("Captured, being written to the disk.")); });
    host.pause(); // Leaving
}

} // namespace

/// The second plug-in as the file that a host loads.
class TestEndingsProbeCheck : public QObject {
    Q_OBJECT

    QTemporaryDir m_data;

    // One tool, with a reference; nobody has left any points.
    void script(ScriptedHost& host) {
        QDir(m_data.filePath(QStringLiteral("data"))).removeRecursively();
        answerForTools(host);
        host.answer("measurementtool number_of_tools", "1");
        host.answer("measurementtool reference_of_tool b01", "b01");
    }
    EndingSweep sweepOf(const QString& name, const std::function<void(EndingHost&)>& flow,
                        Places places) {
        return {QStringLiteral(KESTREL_PLUGIN_FILE), name,
                [this](ScriptedHost& host) { script(host); }, flow, places};
    }

private Q_SLOTS:
    void initTestCase() {
        QGuiApplication::setQuitOnLastWindowClosed(false);
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_data.filePath(QStringLiteral("data"))));
    }

    void theHostMayEndItInAnyCallAndState_data() {
        // Whoever forces what is due while Qt shows a dock takes its children from under Qt.
        addEndingRows({QStringLiteral("check and points"), QStringLiteral("check"),
                       QStringLiteral("capture")},
                      false);
    }
    void theHostMayEndItInAnyCallAndState() {
        QFETCH(EndBy, endBy);
        QFETCH(int, flow);
        QFETCH(QString, name);
        const EndingSweep sweeps[] = {sweepOf(name, &useBoth, Places::EveryCall),
                                      sweepOf(name, &checkQuickStates, Places::Pauses),
                                      sweepOf(name, &captureStates, Places::Pauses)};
        QCOMPARE(sweeps[flow].run(endBy), QString());
    }

    void theHostMayDeleteTheDocksInAnyState() {
        for (const auto flow : {&checkQuickStates, &captureStates}) {
            QCOMPARE(sweepOf("docks deleted", flow, Places::Pauses).run(EndBy::DeleteLater),
                     QString());
        }
    }

    void theHostMayEndACheckThatGetsNoPoses_data() {
        QTest::addColumn<EndBy>("endBy");
        QTest::newRow("exit") << EndBy::EventsThenExit;
        QTest::newRow("close") << EndBy::EventsThenClose;
        QTest::newRow("exit and unload") << EndBy::ExitAndUnload;
    }
    void theHostMayEndACheckThatGetsNoPoses() {
        QFETCH(EndBy, endBy);
        QCOMPARE(sweepOf("check without poses", &checkSlowStates, Places::Pauses).run(endBy),
                 QString());
    }

private:
    faultsweep::NoPainting m_noPainting;
};

QTEST_MAIN(TestEndingsProbeCheck)
#include "test_endings_probecheck.moc"
