#include "host_api/requester.h"
#include "tests/end_to_end/workplace.h"

#include <QComboBox>
#include <QDirIterator>
#include <QDoubleSpinBox>
#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QTableView>
#include <QtTest>

#include <chrono>
#include <cmath>
#include <condition_variable>
#include <csignal>
#include <memory>
#include <mutex>

using namespace processes;

namespace {

constexpr int patienceMs = 20000 * slowness;
constexpr int frozenMs = 700; // longer than a sample may be old
constexpr int pressMs = 1500; // longer than a point is held
constexpr double holdSeconds = 1.0;
// Of a point that was held for a second: 1 + 1 s / 0.2 s readings, Student's factor for five
// degrees of freedom.
constexpr double readings = 6.0;
constexpr double student = 2.571;
constexpr double lastDigit = 0.002; // mm; three decimals are shown

/// Sees the lines of the tools, on the thread that receives them.
class LineWatcher final : public Requester {
public:
    explicit LineWatcher(IOManager& io)
        : m_io(io) {
        m_io.register_data_requester("6dmt2", this);
    }
    ~LineWatcher() { m_io.unregister_data_requester("6dmt2", this); }
    LineWatcher(const LineWatcher&) = delete;
    LineWatcher& operator=(const LineWatcher&) = delete;

    int set_ascii_data(const char* /*type*/, const char* line) override {
        const QByteArray text(line);
        const int begin = text.indexOf("][") + 2;
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_x = text.mid(begin, text.indexOf(' ', begin) - begin).toDouble();
        ++m_lines;
        m_changed.notify_all();
        return 0;
    }
    void set_mea_started() override {}
    void set_mea_stopped() override {}

    /// Waits, without handling events, for so many more lines and then for the first tool near x.
    bool waitFor(int lines, double x) {
        std::unique_lock<std::mutex> lock(m_mutex);
        const int last = m_lines + lines;
        return m_changed.wait_for(lock, std::chrono::milliseconds(patienceMs),
                                  [&] { return m_lines >= last && std::abs(m_x - x) < 1.0; });
    }

private:
    IOManager& m_io;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    double m_x = 0.0;
    int m_lines = 0;
};

} // namespace

/// Captured points in the workbench, on a simulated controller that is another process and knows
/// where its tools truly are.
class TestPoints : public QObject {
    Q_OBJECT

    std::unique_ptr<Workplace> m_place;

    template <typename Widget>
    Widget* find(const char* name) {
        return m_place->find<Widget>("ProbePointsDock", name);
    }
    QString words() { return find<QLabel>("label_state")->text(); }
    bool isCaptured() { return words().startsWith("Point captured"); } // on a slow disk for later
    const QAbstractItemModel* list() { return find<QTableView>("tableView_points")->model(); }
    int points() { return list()->rowCount(); }

    QString cell(int row, const QString& header) {
        for (int column = 0; column < list()->columnCount(); ++column) {
            if (list()->headerData(column, Qt::Horizontal).toString() == header) {
                return list()->index(row, column).data().toString();
            }
        }
        qWarning("no column %s", qPrintable(header));
        return {};
    }
    double figure(int row, const QString& header) { return cell(row, header).toDouble(); }

    void simulate() {
        QVERIFY(m_place->simulate({"--no-occlusion", "--noise", "0.05"}));
        for (const char* tool : {"b01", "b02", "b03", "b04"}) {
            QVERIFY(m_place->order(QStringLiteral("sim press tool %1 0").arg(tool)));
            QVERIFY(m_place->order(QStringLiteral("set measurementtool measurement_duration %1 %2")
                                       .arg(tool)
                                       .arg(holdSeconds)));
        }
        QVERIFY(holdAt("b01", 10.0));
    }

    // With both plug-ins, measuring, the dock in sight, the first tool held.
    void open() {
        simulate();
        QVERIFY(m_place->open({/*measure=*/true, /*openDocks=*/false}));
        QVERIFY(m_place->show(QStringLiteral("Measurement Tool &points")));
        QTRY_COMPARE_WITH_TIMEOUT(words(), QString("Ready."), patienceMs);
        QVERIFY(isShownAt(10.0));
    }

    bool holdAt(const char* tool, double x) {
        return m_place->order(QStringLiteral("sim place tool %1 %2 20 30 0 0 0").arg(tool).arg(x));
    }
    bool isShownAt(double x) {
        return QTest::qWaitFor(
            [&] { return std::abs(find<QLabel>("label_x")->text().toDouble() - x) < 1.0; },
            patienceMs);
    }
    bool press(const char* tool, bool down) {
        return m_place->order(QStringLiteral("sim press tool %1 %2").arg(tool).arg(down ? 1 : 0));
    }
    void setDuration(double seconds) {
        find<QDoubleSpinBox>("doubleSpinBox_duration")->setValue(seconds);
    }
    void captureByHoldingStill() { find<QComboBox>("comboBox_mode")->setCurrentIndex(1); }

    // The point is where the scene has the tip, within the radius of its 95 % region.
    void verifyPoint(int row, const char* tool) {
        const QVector<double> truth =
            m_place->simulator->numbers(QStringLiteral("sim pose tool ") + QLatin1String(tool));
        QCOMPARE(truth.size(), 6);
        const double off =
            std::hypot(figure(row, "x [mm]") - truth[0], figure(row, "y [mm]") - truth[1],
                       figure(row, "z [mm]") - truth[2]);
        const double deviation =
            std::hypot(figure(row, "s x [mm]"), figure(row, "s y [mm]"), figure(row, "s z [mm]"));
        const double radius = student * deviation / std::sqrt(readings);
        QVERIFY(figure(row, "Duration [s]") >= holdSeconds);
        QVERIFY2(deviation > 0.03 && radius < 0.5, qPrintable(QString::number(deviation)));
        QVERIFY2(off <= radius + lastDigit, qPrintable(QStringLiteral("%1 mm off").arg(off)));
        QVERIFY(figure(row, "Greatest [mm]") < 1.0); // no sample from elsewhere
    }

    // Whole lines of all session files.
    QList<QByteArray> sessionLines() {
        QList<QByteArray> lines;
        QDirIterator files(m_place->folder.path(), {"points-*.jsonl"}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            QFile file(files.next());
            if (file.open(QIODevice::ReadOnly)) {
                lines += file.readAll().split('\n');
                lines.removeLast();
            }
        }
        return lines;
    }

private Q_SLOTS:
    // Where the program that is killed and the one that starts next keep their sessions.
    void initTestCase() {
        QCoreApplication::setApplicationName(QStringLiteral("kestrel-workbench"));
    }
    void init() {
        m_place = std::make_unique<Workplace>();
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_place->folder.path()));
    }
    void cleanup() { m_place.reset(); }

    void aPointByButtonAndOneByHoldingStillAreRight() {
        open();
        QVERIFY(holdAt("b02", 200.0));
        QVERIFY(press("b02", true));
        QTRY_COMPARE_WITH_TIMEOUT(points(), 1, patienceMs);
        QVERIFY(press("b02", false));
        QCOMPARE(cell(0, "Tool"), QString("M2")); // whose button it was
        verifyPoint(0, "b02");

        QVERIFY(holdAt("b02", 300.0));
        QVERIFY(isShownAt(300.0));
        captureByHoldingStill();
        QTRY_COMPARE_WITH_TIMEOUT(points(), 2, patienceMs);
        verifyPoint(1, "b02");
        QTRY_VERIFY2_WITH_TIMEOUT(isCaptured(), qPrintable(words()), patienceMs);

        find<QTableView>("tableView_points")->selectAll();
        const QString told = find<QLabel>("label_distance")->text();
        static const QRegularExpression shown("([0-9.]+) ± ([0-9.]+) mm");
        const QRegularExpressionMatch match = shown.match(told);
        QVERIFY2(match.hasMatch(), qPrintable(told));
        const double uncertainty = match.captured(2).toDouble();
        QVERIFY2(std::abs(match.captured(1).toDouble() - 100.0) <= uncertainty + lastDigit,
                 qPrintable(told));
        QVERIFY2(uncertainty < 1.0, qPrintable(told));
    }

    void hiddenFramesAreNeverPartOfAPoint() {
        open();
        setDuration(10.0);
        captureByHoldingStill();
        QTRY_COMPARE_WITH_TIMEOUT(words(), QString("Hold the tip still."), patienceMs);
        QVERIFY(m_place->order("sim occlude tool b01 yes"));
        QTRY_COMPARE_WITH_TIMEOUT(words(), QString("Given up: the tool is hidden."), patienceMs);
        QVERIFY(holdAt("b01", 13.0)); // within the tolerance of the old place
        setDuration(holdSeconds);
        QCOMPARE(points(), 0);
        QVERIFY(m_place->order("sim occlude tool b01 no"));
        QTRY_COMPARE_WITH_TIMEOUT(points(), 1, patienceMs);
        verifyPoint(0, "b01");
    }

    void oldFramesAreNeverPartOfAPoint() {
        open();
        find<QDoubleSpinBox>("doubleSpinBox_tolerance")->setValue(5.0);
        LineWatcher watcher(m_place->window->backend().io);
        // The window stands still while lines go on being received.
        QVERIFY(watcher.waitFor(10, 10.0));
        QVERIFY(holdAt("b01", 13.0));
        QVERIFY(watcher.waitFor(1, 13.0));
        QThread::msleep(frozenMs);
        find<QPushButton>("pushButton_capture")->click();
        QTRY_COMPARE_WITH_TIMEOUT(points(), 1, patienceMs);
        verifyPoint(0, "b01");
    }

    void droppedFramesSpoilNoPointAndTooManyGiveItUp() {
        open();
        QVERIFY(m_place->order("sim misbehave lost-data 20"));
        find<QPushButton>("pushButton_capture")->click();
        QTRY_COMPARE_WITH_TIMEOUT(points(), 1, patienceMs);
        verifyPoint(0, "b01");
        QTRY_VERIFY2_WITH_TIMEOUT(isCaptured(), qPrintable(words()), patienceMs);

        setDuration(10.0);
        find<QPushButton>("pushButton_capture")->click();
        QTRY_COMPARE_WITH_TIMEOUT(words(), QString("Hold the tip still."), patienceMs);
        QVERIFY(m_place->order("sim misbehave lost-data 100"));
        QTRY_COMPARE_WITH_TIMEOUT(words(), QString("Given up: no data for a second."), patienceMs);
        QCOMPARE(points(), 1);
    }

    void afterAKillTheNextStartOffersThePoints() {
        simulate();
        {
            Workbench program({"--connect", m_place->simulator->address(), "--measure"},
                              m_place->folder.filePath("killed.ini"));
            const auto isKept = [this] { return !sessionLines().isEmpty(); };
            bool isPressed = false;
            QElapsedTimer clock;
            clock.start();
            while (!QTest::qWaitFor(isKept, pressMs) && clock.elapsed() < patienceMs) {
                isPressed = !isPressed;
                QVERIFY(press("b01", isPressed));
            }
            QVERIFY(isKept());
            QCOMPARE(::kill(static_cast<pid_t>(program.processId()), SIGKILL), 0);
            QVERIFY(program.waitForEnd());
        }
        const int kept = sessionLines().size();

        QVERIFY(m_place->open({/*measure=*/false, /*openDocks=*/false}));
        QVERIFY(m_place->show(QStringLiteral("Measurement Tool &points")));
        QTRY_VERIFY_WITH_TIMEOUT(find<QFrame>("frame_left")->isVisible(), patienceMs);
        const QString offer = find<QLabel>("label_left")->text();
        QVERIFY2(offer.startsWith(QStringLiteral("%1 point").arg(kept)), qPrintable(offer));
        QCOMPARE(points(), 0);
        find<QPushButton>("pushButton_keep")->click();
        QCOMPARE(points(), kept);
        QVERIFY(!find<QFrame>("frame_left")->isVisible());
        verifyPoint(0, "b01");
    }
};

QTEST_MAIN(TestPoints)
#include "test_points.moc"
