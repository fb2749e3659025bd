#include "tests/end_to_end/processes.h"
#include "workbench/commandlinerun.h"
#include "workbench/window/mainwindow.h"

#include <QAction>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
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

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<Simulator> m_simulator;
    std::unique_ptr<workbench::MainWindow> m_window;
    std::unique_ptr<workbench::CommandLineRun> m_run;

    template <typename Widget>
    Widget* find(const char* name) {
        QWidget* const page = m_window->findChild<QWidget*>("ProbeTipCheckDock");
        return page != nullptr ? page->findChild<Widget*>(QLatin1String(name)) : nullptr;
    }
    QPushButton* start() { return find<QPushButton>("pushButton_start"); }
    QPushButton* stop() { return find<QPushButton>("pushButton_stop"); }
    QString words() { return find<QLabel>("label_words")->text(); }
    QString figures() { return find<QLabel>("label_figures")->text(); }

    void triggerEntry(const QString& text) {
        const auto menus = m_window->menuBar()->findChildren<QMenu*>();
        for (const QMenu* menu : menus) {
            const QList<QAction*> actions = menu->actions();
            for (QAction* action : actions) {
                if (action->text() == text) {
                    action->trigger();
                    return;
                }
            }
        }
        QFAIL(qPrintable("no entry " + text));
    }

    // With both plug-ins, measuring, the dock in sight and the first tool wrong by 0.5 mm.
    void open() {
        m_folder = std::make_unique<QTemporaryDir>();
        m_simulator = std::make_unique<Simulator>(QStringList{"--no-occlusion", "--noise", "0.05"});
        QVERIFY(m_simulator->isListening());
        QVector<double> tip = m_simulator->numbers("sim tip b01");
        QCOMPARE(tip.size(), 3);
        QCOMPARE(m_simulator->ask(QStringLiteral("set sim tip_used b01 %1 %2 %3")
                                      .arg(tip[0] + 0.3)
                                      .arg(tip[1] - 0.4)
                                      .arg(tip[2])),
                 QString("kestrel2 ok"));
        workbench::Options options;
        options.pluginFolder = QStringLiteral(KESTREL_PLUGINS);
        options.connectTo = {QStringLiteral("127.0.0.1"), m_simulator->port()};
        options.measure = true;
        m_window = std::make_unique<workbench::MainWindow>(workbench::MainWindow::Setup{
            m_folder->filePath(QStringLiteral("workbench.ini")), false, false});
        m_run = std::make_unique<workbench::CommandLineRun>(*m_window, options);
        m_window->show();
        QSignalSpy built(m_window.get(), &workbench::MainWindow::modulesBuilt);
        m_run->start();
        QVERIFY(built.wait(startTimeoutMs));
        triggerEntry(QStringLiteral("Measurement Tool tip &check"));
        QTRY_VERIFY_WITH_TIMEOUT(start()->isEnabled(), patienceMs);
        QCOMPARE(find<QComboBox>("comboBox_tool")->currentText(), QString("M1"));
    }

    void move(const QString& motion, double seconds = 12.0) {
        QCOMPARE(
            m_simulator->ask(QStringLiteral("sim move tool b01 %1 %2").arg(motion).arg(seconds)),
            QString("kestrel2 ok"));
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

    void cleanup() {
        m_run.reset();
        m_window.reset();
        m_simulator.reset();
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
            const QString command =
                QStringLiteral("sim occlude tool b01 ") + (hidden ? "yes" : "no");
            QCOMPARE(m_simulator->ask(command), QString("kestrel2 ok"));
            const QString before = figures().section(' ', 0, 0);
            QVERIFY(QTest::qWaitFor(
                [&] { return figures().section(' ', 0, 0) != before || !isRunning(); },
                patienceMs));
        }
        verifyFoundError();
    }

    void theMeasurementStopsInTheMiddle() {
        open();
        move("cone");
        start()->click();
        QVERIFY(seconds(6.0));
        QCOMPARE(m_simulator->ask("tracking stop"), QString("kestrel2 ok"));
        QTRY_VERIFY_WITH_TIMEOUT(!isRunning(), checkMs);
        QVERIFY(!start()->isEnabled());
        verifyFoundError();
    }

    void theLinkIsLostInTheMiddle() {
        open();
        move("cone");
        start()->click();
        QVERIFY(seconds(6.0));
        m_simulator->kill();
        QTRY_VERIFY_WITH_TIMEOUT(!isRunning() || words() == "No data come.", checkMs);
        if (isRunning()) {
            stop()->click();
        }
        verifyFoundError();
    }

    void theWindowClosesInTheMiddle() {
        open();
        move("cone");
        start()->click();
        QVERIFY(seconds(3.0));
        m_window->close();
        m_run.reset();
        m_window.reset();
        QCOMPARE(m_simulator->value("measurementtool available"), QString("yes"));
    }
};

QTEST_MAIN(TestTipCheck)
#include "test_tip_check.moc"
