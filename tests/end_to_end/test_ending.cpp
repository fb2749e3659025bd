#include "tests/end_to_end/processes.h"
#include "tests/support/modalwatchdog.h"
#include "workbench/commandlinerun.h"
#include "workbench/window/mainwindow.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <functional>
#include <memory>

using namespace processes;

namespace {

constexpr int patienceMs = 15000 * slowness;

const QString settingsDialog = QStringLiteral("MtSettingsDlgClass");
const QString calibrationDialog = QStringLiteral("MtCalibrationDlgClass");
const QString helpDialog = QStringLiteral("MtHelpDlgClass");
const QString countdownDialog = QStringLiteral("CountdownDialog");
const QString progressDialog = QStringLiteral("CalibrationProgressDialog");
const QString resultDialog = QStringLiteral("MtResultDlgClass");

void click(QWidget* dialog, const char* button) {
    dialog->findChild<QPushButton*>(QLatin1String(button))->click();
}

} // namespace

/// The workbench ends while dialogs of the plug-in are open, on a simulator process: the controller
/// is then as cancelling each of them leaves it.
class TestEnding : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<Simulator> m_simulator;
    std::unique_ptr<workbench::MainWindow> m_window;
    std::unique_ptr<workbench::CommandLineRun> m_run;

    void open(const QStringList& simulatorOptions) {
        m_simulator = std::make_unique<Simulator>(simulatorOptions);
        QVERIFY(m_simulator->isListening());
        workbench::Options options;
        options.pluginFolder = QStringLiteral(KESTREL_PLUGINS);
        options.connectTo = {QStringLiteral("127.0.0.1"), m_simulator->port()};
        m_window = std::make_unique<workbench::MainWindow>(workbench::MainWindow::Setup{
            m_folder->filePath(QStringLiteral("workbench.ini")), false, false});
        m_run = std::make_unique<workbench::CommandLineRun>(*m_window, options);
        m_window->show();
        QSignalSpy built(m_window.get(), &workbench::MainWindow::modulesBuilt);
        m_run->start();
        QVERIFY(built.wait(startTimeoutMs));
    }

    void end(const QString& how) {
        if (how == QLatin1String("close")) {
            m_window->close();
        } else if (how == QLatin1String("signal")) {
            m_run->watchSignals();
            std::raise(SIGTERM);
        } else {
            QApplication::quit();
        }
    }

    /// Opens a dialog by the text of its menu entry, inside the application's own loop, and comes
    /// back when the application has ended.
    bool runUntilTheEnd(const QString& entry) {
        QTimer giveUp;
        bool inTime = true;
        connect(&giveUp, &QTimer::timeout, this, [&inTime] {
            inTime = false;
            QApplication::quit();
        });
        giveUp.start(2 * patienceMs);
        QTimer::singleShot(0, m_window.get(), [this, entry] { trigger(entry); });
        QApplication::exec();
        return inTime && !m_window->isVisible() && QApplication::activeModalWidget() == nullptr;
    }

    void trigger(const QString& text) {
        const QList<QAction*> menus = m_window->menuBar()->actions();
        for (const QAction* menu : menus) {
            const QList<QAction*> actions = menu->menu()->actions();
            for (QAction* action : actions) {
                if (menu->text() == QLatin1String("&Tracking") && action->text() == text) {
                    action->trigger();
                    return;
                }
            }
        }
    }

private Q_SLOTS:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void cleanup() {
        m_run.reset();
        m_window.reset();
        m_simulator.reset();
        m_folder.reset();
    }

    void editedCountsAreTakenBack_data() {
        QTest::addColumn<QString>("how");
        QTest::newRow("close") << "close";
        QTest::newRow("SIGTERM") << "signal";
        QTest::newRow("quit") << "quit";
    }
    void editedCountsAreTakenBack() {
        QFETCH(QString, how);
        open({"--tools", "3", "--references", "2"});
        QString during;
        ModalWatchdog dog(patienceMs);
        dog.on(settingsDialog, [&](QWidget* dialog) {
            dialog->findChild<QSpinBox*>(QStringLiteral("spinBox_noOfMeaBodies"))->setValue(1);
            dialog->findChild<QSpinBox*>(QStringLiteral("spinBox_noOfRefBodies"))->setValue(4);
            during = m_simulator->value("measurementtool number_of_tools") +
                     m_simulator->value("measurementtool number_of_references");
            end(how);
        });
        QVERIFY(runUntilTheEnd(QStringLiteral("&Measurement Tool")));
        QCOMPARE(dog.strays(), QStringList());
        QCOMPARE(during, QString("14"));
        QCOMPARE(m_simulator->value("measurementtool number_of_tools"), QString("3"));
        QCOMPARE(m_simulator->value("measurementtool number_of_references"), QString("2"));
    }

    void aCalibrationIsStoppedAtEveryStage_data() {
        QTest::addColumn<QString>("stage");
        QTest::addColumn<QString>("how");
        QTest::addColumn<QString>("active"); // just before the end
        const struct {
            const char* name;
            QString stage;
            const char* active;
        } stages[] = {{"opened", calibrationDialog, "tracking"},
                      {"help", helpDialog, "tracking"},
                      {"countdown", countdownDialog, "tracking"},
                      {"progress", progressDialog, "cal"},
                      {"result", resultDialog, "none"}};
        for (const auto& stage : stages) {
            for (const char* const how : {"close", "signal", "quit"}) {
                QTest::addRow("%s, %s", stage.name, how)
                    << stage.stage << QString::fromLatin1(how) << QString::fromLatin1(stage.active);
            }
        }
    }
    void aCalibrationIsStoppedAtEveryStage() {
        QFETCH(QString, stage);
        QFETCH(QString, how);
        QFETCH(QString, active);
        const bool longRun = stage == progressDialog;
        open({"--no-occlusion", "--cal-duration", longRun ? "60" : "1", "--cal-pause",
              stage == countdownDialog ? "30" : "0"});
        QCOMPARE(m_simulator->ask("set sim calibration_tool b01"), QString("kestrel2 ok"));
        const QString tip = m_simulator->value("sim tip_used b01");
        QString during;
        ModalWatchdog dog(patienceMs);
        bool first = true;
        dog.on(calibrationDialog, [&](QWidget* dialog) {
            if (first && stage != calibrationDialog) {
                first = false;
                click(dialog, stage == helpDialog ? "pushButton_help" : "pushButton_calibrate");
            }
        });
        const auto endHere = [&](QWidget*) {
            during = m_simulator->value("status active");
            end(how);
        };
        dog.on(stage, endHere);
        QVERIFY(runUntilTheEnd(QStringLiteral("Measurement &Tool tip calibration")));
        QCOMPARE(dog.strays(), QStringList());
        QCOMPARE(during, active);
        QCOMPARE(m_simulator->value("status active"), QString("none"));
        QCOMPARE(m_simulator->value("sim tip_used b01"), tip);
    }
};

QTEST_MAIN(TestEnding)
#include "test_ending.moc"
