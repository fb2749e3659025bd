#include "tests/end_to_end/networkcut.h"
#include "tests/end_to_end/workplace.h"
#include "workbench/window/state/banner.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QHostAddress>
#include <QProcess>
#include <QTableWidget>
#include <QTcpSocket>
#include <QtTest>

#include <csignal>
#include <functional>
#include <memory>
#include <unistd.h>

using namespace processes;

namespace {

constexpr int patienceMs = 15000 * slowness;
// The limits of the user guide; slowness is 1 but with sanitizers.
constexpr int goneWithinMs = 2500 * slowness;
constexpr int liveWithinMs = 2000 * slowness;
constexpr int toldWithinMs = 1000 * slowness;
constexpr int goneAtOnceMs = 1000 * slowness; // less than data that stop are given
constexpr int lastingMs = 3000; // of a cause: long enough for a lost connection to be tried again

} // namespace

/// What the tables of the plug-in show when their data cease, for each way in which they can: a
/// simulator process, the plug-in as a binary, the workbench's window in this process. The times
/// are those of the user guide.
class TestOldData : public QObject {
    Q_OBJECT

    std::unique_ptr<NetworkCut> m_network;
    std::unique_ptr<Workplace> m_place;

    const QTableWidget* table(const QString& name) const {
        return m_place->window->findChild<QTableWidget*>(name);
    }
    const QTableWidget* tools() const { return table(toolTable); }
    const QTableWidget* references() const { return table(referenceTable); }
    QString position() const {
        const QTableWidgetItem* const cell =
            tools()->rowCount() == 0 ? nullptr : tools()->item(0, toolPoseColumn);
        return cell == nullptr ? QString() : cell->text();
    }
    bool areCellsGone() const { return tools()->rowCount() == 0 && references()->rowCount() == 0; }

    // Until `condition` holds; -1 when it never does.
    static int timeUntil(const std::function<bool()>& condition, int longest = patienceMs) {
        QElapsedTimer clock;
        clock.start();
        while (!condition()) {
            if (clock.elapsed() > longest) {
                return -1;
            }
            QTest::qWait(5);
        }
        return static_cast<int>(clock.elapsed());
    }

    // The first tool is put at a place that it has not had, and is shown there.
    bool holdsAt(double x) {
        return m_place->order(QStringLiteral("sim place tool b01 %1 2 3 4 5 6").arg(x));
    }
    bool isShownAt(double x) const { return position() == QString::number(x, 'f', 2); }

    void open(const QStringList& before = {}, const QString& host = "127.0.0.1") {
        QVERIFY(m_place->simulate({"--no-occlusion", "--noise", "0"}, before, host));
        QVERIFY(holdsAt(1.0));
        QVERIFY(m_place->open({/*measure=*/true, /*openDocks=*/true}));
        QTRY_VERIFY_WITH_TIMEOUT(tools() != nullptr && isShownAt(1.0), patienceMs);
        QTRY_VERIFY_WITH_TIMEOUT(references()->rowCount() > 0, patienceMs);
    }

    // The cause begins, lasts and ends; `place` says what is to be shown afterwards.
    void goesAndComes(const std::function<void()>& begin, const std::function<void()>& end,
                      int goneWithin = goneWithinMs) {
        begin();
        const auto isTold = [this] { return !m_place->window->banner().lines().isEmpty(); };
        const int told = timeUntil(isTold);
        const int gone = timeUntil([this] { return areCellsGone(); });
        QVERIFY(told >= 0 && gone >= 0);
        QVERIFY2(gone + told <= goneWithin, qPrintable(QString::number(gone + told)));
        QVERIFY2(told <= toldWithinMs, qPrintable(QString::number(told)));
        QTest::qWait(lastingMs);
        QVERIFY(areCellsGone());
        QVERIFY(isTold());
        end();
        const int live = timeUntil([this] { return isShownAt(2.0) && !areCellsGone(); });
        qInfo("told after %d ms, gone after %d ms, live again after %d ms", told, told + gone,
              live);
        QVERIFY2(live >= 0 && live <= liveWithinMs, qPrintable(QString::number(live)));
        QTRY_VERIFY_WITH_TIMEOUT(!isTold(), patienceMs);
    }

    void signalSimulator(int number) {
        QCOMPARE(::kill(static_cast<pid_t>(m_place->simulator->processId()), number), 0);
    }

    // This process stands still until somebody who does not has slept; `other` goes on with it.
    static void standStill(int seconds, qint64 other) {
        const QString own = QString::number(QCoreApplication::applicationPid());
        QProcess waker;
        waker.start("sh", {"-c",
                           "while kill -0 $1; do grep -q '^State:.T' /proc/$1/status && break;"
                           " sleep 0.1; done; sleep $0; kill -CONT $1 $2",
                           QString::number(seconds), own,
                           other == 0 ? QString() : QString::number(other)});
        QVERIFY(waker.waitForStarted(patienceMs));
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(::kill(::getpid(), SIGSTOP), 0);
        QVERIFY(clock.elapsed() >= seconds * 1000);
        QVERIFY(waker.waitForFinished(patienceMs));
        QCOMPARE(waker.exitCode(), 0);
    }

private Q_SLOTS:
    void init() { m_place = std::make_unique<Workplace>(); }
    void cleanup() {
        m_place.reset();
        m_network.reset();
    }

    void theProcessIsKilled() {
        open();
        const QString port = QString::number(m_place->simulator->port());
        goesAndComes([this] { m_place->simulator->kill(); },
                     [&] {
                         m_place->simulator = std::make_unique<Simulator>(
                             QStringList{"--no-occlusion", "--noise", "0", "--port", port});
                         QVERIFY(holdsAt(2.0));
                         QVERIFY(m_place->order("tracking start"));
                     },
                     goneAtOnceMs);
    }

    void theProcessIsStopped() {
        open();
        goesAndComes([this] { signalSimulator(SIGSTOP); },
                     [this] {
                         signalSimulator(SIGCONT);
                         QVERIFY(holdsAt(2.0));
                     });
    }

    void theNetworkIsCut() {
        m_network = std::make_unique<NetworkCut>();
        if (!m_network->isThere()) {
            // QSKIP wants one argument more than C++17 lets it have.
            QTest::qSkip(qPrintable(m_network->whyNot()), __FILE__, __LINE__);
            return;
        }
        open(m_network->command(), NetworkCut::simulatorsAddress());
        goesAndComes(
            [this] {
                QVERIFY(holdsAt(2.0));
                m_network->cut();
            },
            [this] { m_network->mend(); });
    }

    void theDataAreLostOrGarbled_data() {
        QTest::addColumn<QString>("misbehaviour");
        QTest::newRow("lost") << "lost-data";
        QTest::newRow("garbled") << "garbled-data";
    }
    void theDataAreLostOrGarbled() {
        QFETCH(QString, misbehaviour);
        open();
        goesAndComes([&] { QVERIFY(m_place->order("sim misbehave " + misbehaviour + " 100")); },
                     [&] {
                         QVERIFY(holdsAt(2.0));
                         QVERIFY(m_place->order("sim behave"));
                     });
    }

    // Frames go on, but one of the lines that are shown does not: another program has switched it
    // off, or it has become longer than the display takes.
    void oneLineCeasesAmongFrames_data() {
        QTest::addColumn<QString>("begin");
        QTest::addColumn<QString>("end");
        QTest::addColumn<QString>("told");
        QTest::newRow("tools") << "set output active chmon 6dmt2 no"
                               << "set output active chmon 6dmt2 yes"
                               << "the controller sends frames, but no longer the line 6dmt2.";
        QTest::newRow("references") << "set output active chmon 6dmtr no"
                                    << "set output active chmon 6dmtr yes"
                                    << "the controller sends frames, but no longer the line 6dmtr.";
        QTest::newRow("too long") << "sim misbehave long-data 11000"
                                  << "sim behave"
                                  << "arrives, but can no longer be read.";
    }
    void oneLineCeasesAmongFrames() {
        QFETCH(QString, begin);
        QFETCH(QString, end);
        QFETCH(QString, told);
        open();
        goesAndComes([&] { QVERIFY(m_place->order(begin)); },
                     [&] {
                         const QString lines =
                             m_place->window->banner().lines().join(QLatin1Char('\n'));
                         QVERIFY2(lines.contains(told), qPrintable(lines));
                         QVERIFY(holdsAt(2.0));
                         QVERIFY(m_place->order(end));
                     });
    }

    // As the line over the docks advises.
    void aLineThatWasSwitchedOffComesBackWithANewConnection() {
        open();
        QVERIFY(m_place->order("set output active chmon 6dmt2 no"));
        QTRY_VERIFY_WITH_TIMEOUT(areCellsGone(), patienceMs);
        QVERIFY(holdsAt(2.0));
        m_place->window->connectTo({m_place->host, m_place->simulator->port()});
        QTRY_VERIFY_WITH_TIMEOUT(tools() != nullptr && isShownAt(2.0), patienceMs);
        QVERIFY(m_place->window->banner().lines().isEmpty());
    }

    // Both programs stand still as a suspended computer's do. Where the controller wakes up with us
    // its data may be there first; where it is another box that takes longer, what was shown must
    // be gone at once, not after the time for data that stop.
    void theComputerIsSuspended_data() {
        QTest::addColumn<int>("seconds");
        QTest::addColumn<bool>("together");
        QTest::newRow("both wake up at once") << 30 << true;
        QTest::newRow("the controller wakes up later") << 5 << false;
    }
    void theComputerIsSuspended() {
        QFETCH(int, seconds);
        QFETCH(bool, together);
        open();
        signalSimulator(SIGSTOP);
        // Read by the simulator as soon as it goes on.
        QTcpSocket order;
        order.connectToHost(QHostAddress::LocalHost, m_place->simulator->port());
        QVERIFY(order.waitForConnected(patienceMs));
        order.write("kestrel2 sim place tool b01 2 2 3 4 5 6\n");
        QVERIFY(order.flush());
        QVERIFY(isShownAt(1.0));
        standStill(seconds, together ? m_place->simulator->processId() : 0);

        const int gone = timeUntil([this] { return areCellsGone() || isShownAt(2.0); });
        QVERIFY2(gone >= 0 && gone <= goneAtOnceMs, qPrintable(QString::number(gone)));
        if (!together) {
            QTRY_VERIFY_WITH_TIMEOUT(!m_place->window->banner().lines().isEmpty(), toldWithinMs);
            QVERIFY(areCellsGone());
            signalSimulator(SIGCONT);
        }
        const int live = timeUntil([this] { return isShownAt(2.0) && !areCellsGone(); });
        qInfo("gone or new after %d ms, live again after %d ms", gone, live);
        QVERIFY2(live >= 0 && live <= liveWithinMs, qPrintable(QString::number(live)));
        QTRY_VERIFY_WITH_TIMEOUT(m_place->window->banner().lines().isEmpty(), patienceMs);
    }
};

int main(int argc, char** argv) {
    NetworkCut::enter();
    QApplication application(argc, argv);
    TestOldData test;
    return QTest::qExec(&test, argc, argv);
}
#include "test_old_data.moc"
