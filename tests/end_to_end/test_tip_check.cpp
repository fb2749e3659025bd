#include "tests/end_to_end/workplace.h"

#include <QComboBox>
#include <QDockWidget>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QtTest>

#include <cmath>
#include <memory>

using namespace processes;

namespace {

constexpr int patienceMs = 20000 * slowness;
// A check ends by itself after some ten seconds.
constexpr int checkMs = 60000 * slowness;

} // namespace

/// The tip check in the workbench, on a simulated controller that is another process: its tool has
/// a tip that is wrong by a known 0.5 mm.
class TestTipCheck : public QObject {
    Q_OBJECT

    std::unique_ptr<Workplace> m_place;

    template <typename Widget>
    Widget* find(const char* name) {
        return m_place->find<Widget>("ProbeTipCheckDock", name);
    }
    QPushButton* start() { return find<QPushButton>("pushButton_start"); }
    QPushButton* stop() { return find<QPushButton>("pushButton_stop"); }
    QString words() { return find<QLabel>("label_words")->text(); }
    QString figures() { return find<QLabel>("label_figures")->text(); }

    // With both plug-ins, measuring, the dock in sight and the first tool wrong by 0.5 mm.
    void open() {
        QVERIFY(m_place->simulate({"--no-occlusion", "--noise", "0.05"}));
        QVector<double> tip = m_place->simulator->numbers("sim tip b01");
        QCOMPARE(tip.size(), 3);
        QVERIFY(m_place->order(QStringLiteral("set sim tip_used b01 %1 %2 %3")
                                   .arg(tip[0] + 0.3)
                                   .arg(tip[1] - 0.4)
                                   .arg(tip[2])));
        QVERIFY(m_place->open({/*measure=*/true, /*openDocks=*/false}));
        QVERIFY(m_place->show(QStringLiteral("Measurement Tool tip &check")));
        QTRY_VERIFY_WITH_TIMEOUT(start()->isEnabled(), patienceMs);
        QCOMPARE(find<QComboBox>("comboBox_tool")->currentText(), QString("M1"));
    }

    void move(const QString& motion, double seconds = 12.0) {
        QVERIFY(m_place->order(QStringLiteral("sim move tool b01 %1 %2").arg(motion).arg(seconds)));
    }

    bool seconds(double least) {
        return QTest::qWaitFor(
            [&] { return figures().section(' ', 0, 0).toDouble() >= least || !isRunning(); },
            checkMs);
    }
    bool isRunning() { return stop()->isEnabled(); }

    // "wrong by 0.42 ± 0.08 mm" as it is shown.
    void verifyFoundError() {
        const QRegularExpression shown(QStringLiteral("wrong by ([0-9.]+) ± ([0-9.]+) mm"));
        const QRegularExpressionMatch match = shown.match(words());
        QVERIFY2(match.hasMatch(), qPrintable(words()));
        const double error = match.captured(1).toDouble();
        const double radius = match.captured(2).toDouble();
        const QString told = words() + "\n" + find<QLabel>("label_result")->text();
        // Two decimals are shown.
        QVERIFY2(std::abs(error - 0.5) <= radius + 0.011, qPrintable(told));
        QVERIFY2(radius < 0.4, qPrintable(told));
    }

private Q_SLOTS:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }

    void init() { m_place = std::make_unique<Workplace>(); }
    void cleanup() { m_place.reset(); }

    // In a window of usual size at 96 dpi.
    void atAFirstStartTheDisplayHasTheWidthOfTheWindow() {
        constexpr int edges = 20;
        QVERIFY(m_place->simulate({}));
        QVERIFY(m_place->open({/*measure=*/true, /*openDocks=*/false}));
        const auto dock = [this](const char* name) {
            return m_place->window->findChild<QDockWidget*>(QLatin1String(name));
        };
        const auto isWide = [&] {
            return dock("MtDataDisplayDock")->isVisible() &&
                   dock("MtDataDisplayDock")->width() >= m_place->window->width() - edges;
        };
        QVERIFY(dock("ProbeTipCheckDock")->isHidden());
        QVERIFY(dock("ProbePointsDock")->isHidden());
        QTRY_VERIFY_WITH_TIMEOUT(isWide(), patienceMs);
        for (const char* entry : {"Measurement Tool tip &check", "Measurement Tool &points"}) {
            QVERIFY(m_place->trigger(QLatin1String(entry)));
            QTRY_VERIFY_WITH_TIMEOUT(!isWide(), patienceMs);
            QVERIFY(m_place->trigger(QLatin1String(entry)));
            QTRY_VERIFY_WITH_TIMEOUT(isWide(), patienceMs);
        }
    }

    void theErrorIsFoundAndJudged() {
        open();
        find<QDoubleSpinBox>("doubleSpinBox_tolerance")->setValue(0.1);
        move("cone");
        start()->click();
        QTRY_VERIFY_WITH_TIMEOUT(!isRunning(), checkMs);
        QVERIFY2(words().startsWith("The tip does not conform"), qPrintable(words()));
        verifyFoundError();
    }

    void undeterminedMotionsGiveNoNumber_data() {
        QTest::addColumn<QString>("motion");
        QTest::newRow("planar") << "planar";
        QTest::newRow("twist") << "twist";
        QTest::newRow("still") << "still";
    }
    void undeterminedMotionsGiveNoNumber() {
        QFETCH(QString, motion);
        open();
        move(motion);
        start()->click();
        QVERIFY(seconds(6.0));
        stop()->click();
        QVERIFY2(words().startsWith("No result: "), qPrintable(words()));
        static const QRegularExpression digit("[0-9]");
        QVERIFY2(!words().contains(digit), qPrintable(words()));
    }

    void aSlipIsTold() {
        open();
        move("slip", 16.0);
        start()->click();
        QTRY_VERIFY_WITH_TIMEOUT(!isRunning(), checkMs);
        QVERIFY2(words().contains("the tip has slipped by"), qPrintable(words()));
    }

    void hiddenHalfTheTimeItStillFindsTheError() {
        open();
        find<QDoubleSpinBox>("doubleSpinBox_tolerance")->setValue(0.05);
        move("cone");
        start()->click();
        bool hidden = false;
        while (isRunning()) {
            hidden = !hidden;
            QVERIFY(
                m_place->order(QStringLiteral("sim occlude tool b01 ") + (hidden ? "yes" : "no")));
            const QString before = figures().section(' ', 0, 0);
            QVERIFY(QTest::qWaitFor(
                [&] { return figures().section(' ', 0, 0) != before || !isRunning(); },
                patienceMs));
        }
        verifyFoundError();
    }

    void aFifthOfTheFramesMissingItStillFindsTheError() {
        open();
        QVERIFY(m_place->order("sim misbehave lost-data 20"));
        move("cone");
        start()->click();
        QVERIFY(seconds(6.0));
        stop()->click();
        verifyFoundError();
    }

    void theMeasurementStopsInTheMiddle() {
        open();
        move("cone");
        start()->click();
        QVERIFY(seconds(6.0));
        QVERIFY(m_place->order("tracking stop"));
        QTRY_VERIFY_WITH_TIMEOUT(!isRunning(), checkMs);
        // On a busy machine the check may have come to its end before the stop was heard of.
        QTRY_VERIFY_WITH_TIMEOUT(!start()->isEnabled(), checkMs);
        verifyFoundError();
    }

    void theLinkIsLostInTheMiddle() {
        open();
        move("cone");
        start()->click();
        QVERIFY(seconds(6.0));
        m_place->simulator->kill();
        QTRY_VERIFY_WITH_TIMEOUT(!isRunning() || words() == "No data come.", checkMs);
        if (isRunning()) {
            stop()->click();
        }
        verifyFoundError();
    }

    void theModulesExitOrTheWindowClosesInEachState_data() {
        QTest::addColumn<QStringList>("orders"); // to the simulator
        QTest::addColumn<QString>("state");      // what is said then
        QTest::addColumn<bool>("isStarted");
        QTest::addColumn<bool>("isClosed");
        const struct {
            const char* name;
            QStringList orders;
            const char* state;
            bool isStarted;
        } rows[] = {
            {"no measurement", {"tracking stop"}, "No tracking runs.", false},
            {"idle", {}, "Put the tip into a hollow", false},
            {"measuring", {"sim move tool b01 cone 12"}, "", true},
            {"hidden", {"sim occlude tool b01 yes"}, "The tool is hidden.", true},
            {"reference lost", {"sim occlude reference b01 yes"}, "The reference MR1", true},
            {"no data", {"sim misbehave lost-data 100"}, "No data come.", true},
            {"finished", {"tracking stop"}, "No result: ", true},
        };
        for (const bool isClosed : {false, true}) {
            for (const auto& row : rows) {
                QTest::addRow("%s, %s", row.name, isClosed ? "closed" : "exit")
                    << row.orders << QString::fromLatin1(row.state) << row.isStarted << isClosed;
            }
        }
    }
    void theModulesExitOrTheWindowClosesInEachState() {
        QFETCH(QStringList, orders);
        QFETCH(QString, state);
        QFETCH(bool, isStarted);
        QFETCH(bool, isClosed);
        open();
        if (isStarted) {
            start()->click();
            QVERIFY(isRunning());
        }
        for (const QString& order : orders) {
            QVERIFY(m_place->order(order));
        }
        QTRY_VERIFY2_WITH_TIMEOUT(words().startsWith(state), qPrintable(words()), patienceMs);
        if (isStarted && state.isEmpty()) {
            QVERIFY(seconds(3.0));
        }
        const auto hasDock = [this](const char* name) {
            return m_place->window->findChild<QDockWidget*>(QLatin1String(name)) != nullptr;
        };
        QVERIFY(hasDock("ProbeTipCheckDock") && hasDock("MtDataDisplayDock"));
        if (isClosed) {
            m_place->window->close();
            m_place->close();
        } else {
            m_place->window->findChild<QAction*>(QStringLiteral("actionDisconnect"))->trigger();
            QTRY_VERIFY_WITH_TIMEOUT(!hasDock("ProbeTipCheckDock") && !hasDock("MtDataDisplayDock"),
                                     patienceMs);
        }
        QCOMPARE(m_place->simulator->value("measurementtool available"), QString("yes"));
    }
};

QTEST_MAIN(TestTipCheck)
#include "test_tip_check.moc"
