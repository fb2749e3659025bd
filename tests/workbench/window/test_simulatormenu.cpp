#include "tests/support/childprocesses.h"
#include "tests/support/datarows.h"
#include "tests/workbench/scriptedcontroller.h"
#include "workbench/window/log/commanddock.h"
#include "workbench/window/mainwindow.h"
#include "workbench/window/state/banner.h"

#include <QFile>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

using workbench::CommandDock;
using workbench::ControllerAddress;
using workbench::MainWindow;

namespace {
constexpr int patience = 10000;
const QString simulatorTitle = QStringLiteral("Simulator");
} // namespace

/// The menu of what a simulated controller can be told.
class TestSimulatorMenu : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    std::unique_ptr<ScriptedController> m_controller;
    std::unique_ptr<MainWindow> m_window;

    void openWindow(const QString& simulatorProgram) {
        m_window = std::make_unique<MainWindow>(MainWindow::Setup{
            m_folder.filePath(QStringLiteral("s.ini")), false, false, simulatorProgram});
        m_window->show();
    }

    // What a simulator says of itself, with two tools.
    void answerAsSimulator() {
        m_controller->answer("version model", "SIMULATOR");
        m_controller->answer("version protocol", "1.14");
        m_controller->answer("sim motions", "cone, still");
        m_controller->answer("sim pivots", "cone");
        m_controller->answer("sim misbehaviours", "silent, cal-error");
        m_controller->answer("sim buttons", "2");
        m_controller->answer("measurementtool number_of_tools", "2");
    }

    void connectWindow() {
        QSignalSpy built(m_window.get(), &MainWindow::modulesBuilt);
        ControllerAddress address;
        address.port = m_controller->port();
        m_window->connectTo(address);
        QVERIFY(built.wait(patience));
    }

    // Whatever was asked before has been answered.
    void waitForAnswers() {
        bool isDone = false;
        m_window->backend().session.channel().askLater(
            "kestrel2 get version model",
            [&isDone](const workbench::CommandChannel::Answer&) { isDone = true; });
        QTRY_VERIFY_WITH_TIMEOUT(isDone, patience);
    }

    QMenu* menu() const {
        const QList<QAction*> menus = m_window->menuBar()->actions();
        for (const QAction* menu : menus) {
            if (menu->text() == simulatorTitle) {
                return menu->menu();
            }
        }
        return nullptr;
    }

    struct Line {
        QString path; ///< "Tools/M1/cone", without the marks of mnemonics
        QAction* action = nullptr;
    };

    static QVector<Line> linesOf(const QMenu& menu, const QString& before = {}) {
        QVector<Line> lines;
        const QList<QAction*> actions = menu.actions();
        for (QAction* action : actions) {
            const QString path = before + QString(action->text()).remove(QLatin1Char('&'));
            if (action->menu() != nullptr) {
                lines += linesOf(*action->menu(), path + QLatin1Char('/'));
            } else if (!action->isSeparator()) {
                lines += {path, action};
            }
        }
        return lines;
    }

    QStringList paths() const {
        QStringList result;
        const QVector<Line> lines = menu() == nullptr ? QVector<Line>() : linesOf(*menu());
        for (const Line& line : lines) {
            result += line.path;
        }
        return result;
    }

    QAction* entry(const QString& path) const {
        const QVector<Line> lines = menu() == nullptr ? QVector<Line>() : linesOf(*menu());
        for (const Line& line : lines) {
            if (line.path == path) {
                return line.action;
            }
        }
        return nullptr;
    }

    void waitForMenu(int entries) {
        QTRY_VERIFY_WITH_TIMEOUT(menu() != nullptr, patience);
        QTRY_COMPARE_WITH_TIMEOUT(paths().size(), entries, patience);
    }

    QString commandLine() const {
        return m_window->findChild<QPlainTextEdit*>(QStringLiteral("plainTextEdit_replies"))
            ->toPlainText();
    }

    // 0 when there is none.
    static qint64 childProcess() {
        return childProcesses(QCoreApplication::applicationPid()).value(0);
    }

private Q_SLOTS:
    void init() {
        m_controller = std::make_unique<ScriptedController>();
        openWindow(QStringLiteral(SIMULATOR_PROGRAM));
    }
    void cleanup() {
        m_window.reset();
        m_controller.reset();
    }

    void eachEntryIsALineOfTheCommandLine_data() {
        QTest::addColumn<QString>("line");
        row("Tools/M1/cone", QString("kestrel2 sim move tool b01 cone"));
        row("Tools/M2/still", QString("kestrel2 sim move tool b02 still"));
        row("Tools/M1/Press button 1", QString("kestrel2 sim press tool b01 1"));
        row("Tools/M2/Press button 2", QString("kestrel2 sim press tool b02 2"));
        row("Tools/M1/Let go of the buttons", QString("kestrel2 sim press tool b01 0"));
        row("Tools/M1/Hide", QString("kestrel2 sim occlude tool b01 yes"));
        row("Tools/M2/Show", QString("kestrel2 sim occlude tool b02 no"));
        row("Tools/M2/Back to its own motion", QString("kestrel2 sim release tool b02"));
        row("Misbehaviour/silent", QString("kestrel2 sim misbehave silent"));
        row("Misbehaviour/cal-error", QString("kestrel2 sim misbehave cal-error"));
        row("Misbehaviour/End all", QString("kestrel2 sim behave"));
        row("Calibration outcome/cone", QString("kestrel2 sim pivot cone"));
    }
    void eachEntryIsALineOfTheCommandLine() {
        QFETCH(QString, line);
        answerAsSimulator();
        m_controller->answerRaw(line.toStdString(), "kestrel2 err 5 \"no such body\"\r\n");
        connectWindow();
        waitForMenu(2 * 8 + 3 + 1);
        QAction* const action = entry(QLatin1String(QTest::currentDataTag()));
        QVERIFY2(action != nullptr, qPrintable(paths().join(QLatin1Char('\n'))));
        QCOMPARE(action->toolTip(), line);
        QCOMPARE(action->statusTip(), line);
        action->trigger();
        QCOMPARE(m_window->findChild<CommandDock*>()->history().commands().constLast(), line);
        QTRY_VERIFY_WITH_TIMEOUT(
            commandLine().endsWith(
                QStringLiteral("> %1\n< kestrel2 err 5 \"no such body\"").arg(line)),
            patience);
        QCOMPARE(m_controller->count(line.toStdString()), 1);
    }

    void theMenuHasNothingThatTheSimulatorDidNotTell() {
        answerAsSimulator();
        m_controller->answer("sim motions", "dance");
        m_controller->answer("sim pivots", "well, badly");
        m_controller->answer("sim misbehaviours", "sulk");
        m_controller->answer("sim buttons", "0");
        m_controller->answer("measurementtool number_of_tools", "1");
        connectWindow();
        waitForMenu(5 + 2 + 2);
        QCOMPARE(paths(),
                 QStringList({"Tools/M1/dance", "Tools/M1/Let go of the buttons", "Tools/M1/Hide",
                              "Tools/M1/Show", "Tools/M1/Back to its own motion",
                              "Misbehaviour/sulk", "Misbehaviour/End all",
                              "Calibration outcome/well", "Calibration outcome/badly"}));
    }

    void anotherControllerHasNoSuchMenuAndIsNotAsked() {
        answerAsSimulator();
        m_controller->answer("version model", "OTHER");
        connectWindow();
        waitForAnswers();
        QVERIFY(menu() == nullptr);
        QCOMPARE(m_controller->count("kestrel2 get sim motions"), 0);
    }

    void oneThatOnlySaysItIsASimulatorHasNone_data() {
        QTest::addColumn<QString>("parameter");
        QTest::addColumn<QString>("value");
        row("no words", QString("sim motions"), QString("")); // refused
        row("a word with a blank", QString("sim pivots"), QString("cone, a b"));
        row("no list", QString("sim misbehaviours"), QString("a,b"));
        row("markup", QString("sim misbehaviours"), QString("<b>bold</b>"));
        row("a pattern", QString("sim motions"), QString("%1"));
        row("no number", QString("sim buttons"), QString("many"));
        row("too many buttons", QString("sim buttons"), QString("17"));
        row("too many words", QString("sim motions"),
            QStringList(QVector<QString>(101, QStringLiteral("a")).toList())
                .join(QStringLiteral(", ")));
    }
    void oneThatOnlySaysItIsASimulatorHasNone() {
        QFETCH(QString, parameter);
        QFETCH(QString, value);
        answerAsSimulator();
        if (value.isEmpty()) {
            m_controller->answerRaw("kestrel2 get " + parameter.toStdString(),
                                    "kestrel2 err 3 \"unknown parameter\"\r\n");
        } else {
            m_controller->answer(parameter.toStdString(), value.toStdString());
        }
        connectWindow();
        waitForAnswers();
        QVERIFY(menu() == nullptr);
    }

    void itIsGoneWithTheConnection() {
        answerAsSimulator();
        connectWindow();
        waitForMenu(20);
        m_window->findChild<QAction*>(QStringLiteral("actionDisconnect"))->trigger();
        QVERIFY(menu() == nullptr);
    }

    void itIsGoneWhenAnotherControllerIsConnected() {
        answerAsSimulator();
        connectWindow();
        waitForMenu(20);
        ScriptedController other;
        QSignalSpy built(m_window.get(), &MainWindow::modulesBuilt);
        ControllerAddress address;
        address.port = other.port();
        m_window->connectTo(address);
        QVERIFY(menu() == nullptr);
        QVERIFY(built.wait(patience));
        waitForAnswers();
        QVERIFY(menu() == nullptr);
        m_window->close();
    }

    void aLostSimulatorKeepsItAndSaysWhyItCannotBeUsed() {
        answerAsSimulator();
        connectWindow();
        waitForMenu(20);
        m_controller->stopListening();
        QTRY_VERIFY_WITH_TIMEOUT(!m_window->backend().session.isReady(), patience);
        QVERIFY(menu() != nullptr);
        const QList<QAction*> entries = menu()->actions();
        for (const QAction* entry : entries) {
            QVERIFY2(!entry->isEnabled(), qPrintable(entry->text()));
            QCOMPARE(entry->toolTip(), QStringLiteral("Not connected to a controller"));
        }
        QVERIFY(m_controller->listenAgain());
        QTRY_VERIFY_WITH_TIMEOUT(menu() != nullptr && menu()->actions().constFirst()->isEnabled(),
                                 patience);
        waitForMenu(20);
    }

    void anotherNumberOfToolsIsSeenWhenAMenuOpens() {
        answerAsSimulator();
        connectWindow();
        waitForMenu(20);
        m_controller->answer("measurementtool number_of_tools", "3");
        menu()->popup(QPoint(0, 0));
        waitForMenu(28);
        QVERIFY(menu()->isVisible()); // it has not been taken away under the user's hand
        menu()->close();
        m_controller->answer("measurementtool number_of_tools", "0");
        menu()->popup(QPoint(0, 0));
        waitForMenu(4);
        QVERIFY(!menu()->actions().constFirst()->isVisible());
        menu()->close();
    }

    void aRealSimulatorTakesEveryLine() {
        QSignalSpy built(m_window.get(), &MainWindow::modulesBuilt);
        // under another name: it is ours, whatever it calls itself
        m_window->simulate({QStringLiteral("--model"), QStringLiteral("OTHER"),
                            QStringLiteral("--tools"), QStringLiteral("2")});
        QVERIFY(built.wait(patience));
        QTRY_VERIFY_WITH_TIMEOUT(entry(QStringLiteral("Tools/M2/Hide")) != nullptr, patience);
        const QVector<Line> lines = linesOf(*menu());
        QVERIFY(lines.size() > 2 * 12 + 22);
        const auto replies = [this] { return commandLine().count(QStringLiteral("\n< ")); };
        // what ends all misbehaviour is among the lines, and behind the others
        for (const Line& line : lines) {
            line.action->trigger();
        }
        QTRY_COMPARE_WITH_TIMEOUT(replies(), int(lines.size()), patience);
        QCOMPARE(commandLine().count(QStringLiteral("\n< kestrel2 ok")), int(lines.size()));
        entry(QStringLiteral("Misbehaviour/slow"))->trigger();
        entry(QStringLiteral("Calibration outcome/twist"))->trigger();
        auto* const commands = m_window->findChild<CommandDock*>();
        commands->run(QStringLiteral("kestrel2 get sim misbehaviour"));
        commands->run(QStringLiteral("kestrel2 get sim pivot"));
        QTRY_VERIFY_WITH_TIMEOUT(
            commandLine().contains(QStringLiteral("< kestrel2 set sim pivot twist")), patience);
        QVERIFY(commandLine().contains(QStringLiteral("< kestrel2 set sim misbehaviour slow ")));
        m_window->close();
    }

    void itsEndEndsARecordingWithAReasonAndLeavesTheStartPageItsRoom() {
        openWindow(QStringLiteral(SIMULATOR_PROGRAM));
        m_window->resize(1080, 930);
        QSignalSpy built(m_window.get(), &MainWindow::modulesBuilt);
        m_window->simulate({});
        QVERIFY(built.wait(patience));
        const QString file = m_folder.filePath(QStringLiteral("ended.kestrel"));
        m_window->startRecording(file);
        QTRY_VERIFY_WITH_TIMEOUT(m_window->backend().recorder.status().begun, patience);
        const qint64 simulator = childProcess();
        QVERIFY(simulator > 0);
        QCOMPARE(::kill(static_cast<pid_t>(simulator), SIGKILL), 0);
        const auto told = [this] {
            return m_window->banner().text(workbench::BannerTopic::Recording);
        };
        QTRY_VERIFY_WITH_TIMEOUT(told().contains(QStringLiteral("the connection was closed")),
                                 patience);
        QVERIFY2(told().contains(file), qPrintable(told()));
        QVERIFY(!m_window->modules().isBuilt()); // their docks would be empty
        for (const char* name : {"pushButton_connect", "pushButton_simulate",
                                 "pushButton_openRecording", "pushButton_guide"}) {
            const auto* const choice = m_window->findChild<QPushButton*>(QLatin1String(name));
            QVERIFY2(choice != nullptr, name);
            QTRY_COMPARE_WITH_TIMEOUT(choice->visibleRegion().boundingRect().size(), choice->size(),
                                      patience);
        }
    }
};

QTEST_MAIN(TestSimulatorMenu)
#include "test_simulatormenu.moc"
