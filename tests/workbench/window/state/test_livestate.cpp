#include "tests/support/datarows.h"
#include "tests/workbench/scriptedcontroller.h"
#include "workbench/window/dialogs/connectdialog.h"
#include "workbench/window/mainwindow.h"
#include "workbench/window/state/banner.h"

#include <QApplication>
#include <QDockWidget>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QMessageBox>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QToolButton>
#include <QtTest>

#include <map>

using workbench::BannerTopic;
using workbench::ControllerAddress;
using workbench::ControllerSession;
using workbench::MainWindow;

namespace {

constexpr int patience = 8000;
const QString ownTitle = QStringLiteral("Fake display");

/// Counts how often the line of a waiting GUI thread is painted, and with which cursor.
struct PaintedLine : QObject {
    bool eventFilter(QObject* object, QEvent* event) override {
        if (event->type() == QEvent::Paint && object->objectName() == "bannerLineAtOnce") {
            ++count;
            const QCursor* const cursor = QApplication::overrideCursor();
            underWaitCursor = cursor != nullptr && cursor->shape() == Qt::WaitCursor;
        }
        return false;
    }
    int count = 0;
    bool underWaitCursor = false;
};

} // namespace

/// What the window says of data that are not live, with a module whose calls are written down.
class TestLiveState : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    std::unique_ptr<ScriptedController> m_controller;
    std::unique_ptr<MainWindow> m_window;
    int m_frame = 0;

    static QStringList calls() { return qApp->property("calls").toStringList(); }

    QString noData() const { return m_window->banner().text(BannerTopic::NoData); }
    QDockWidget* dock() const {
        return m_window->findChild<QDockWidget*>(QStringLiteral("FakeDock"));
    }
    void sendFrame() { m_controller->sendFrame("fr " + std::to_string(++m_frame) + "\r\nts 0.1"); }
    void sendFramesUntilLive() {
        const QDeadlineTimer deadline(patience);
        do {
            sendFrame();
            QTest::qWait(20);
        } while (!noData().isEmpty() && !deadline.hasExpired());
        QVERIFY(noData().isEmpty());
    }

    // The connection is lost and comes back.
    void interrupt(const QString& output) {
        if (!output.isEmpty()) {
            m_controller->answer("output active chmon 6dmt2", output.toStdString());
        }
        QSignalSpy ready(&m_window->backend().session, &ControllerSession::ready);
        m_controller->dropConnections();
        QVERIFY(ready.wait(patience));
        QCOMPARE(ready.first().first().toBool(), false);
    }

private Q_SLOTS:
    void init() {
        m_controller = std::make_unique<ScriptedController>();
        m_window = std::make_unique<MainWindow>(
            MainWindow::Setup{m_folder.filePath(QStringLiteral("s.ini")), false, true});
        m_window->modules().loadFile(QStringLiteral(FAKE_MODULE));
        m_window->show();
        qApp->setProperty("calls", QStringList());
        QSignalSpy built(m_window.get(), &MainWindow::modulesBuilt);
        ControllerAddress address;
        address.port = m_controller->port();
        m_controller->answer("status active", "tracking");
        m_window->connectTo(address);
        QVERIFY(built.wait(patience));
        QTRY_VERIFY_WITH_TIMEOUT(m_window->backend().monitor.isMeasuring(), patience);
    }
    void cleanup() {
        m_window.reset();
        m_controller.reset();
    }

    void oldDataAreToldOverTheDocksAndInTheirTitles() {
        QDockWidget* const display = dock();
        QCOMPARE(display->windowTitle(), ownTitle);
        QTRY_VERIFY_WITH_TIMEOUT(noData().startsWith("No data for 0.") ||
                                     noData().startsWith("No data for 1 s: "),
                                 patience);
        QVERIFY2(noData().contains(QString::number(m_controller->dataPort())),
                 qPrintable(noData()));
        QVERIFY(m_window->banner().isVisible());
        QVERIFY2(display->windowTitle().startsWith("no data for ") &&
                     display->windowTitle().endsWith(" s – " + ownTitle),
                 qPrintable(display->windowTitle()));
        QCOMPARE(display->toggleViewAction()->text(), ownTitle);
        display->setFloating(true);
        QTRY_VERIFY_WITH_TIMEOUT(noData().startsWith("No data for 2 s: "), patience);
        QCOMPARE(display->windowTitle(), "no data for 2 s – " + ownTitle);
        QTRY_COMPARE_WITH_TIMEOUT(calls().constLast(), QString("stopped"), patience);

        sendFramesUntilLive();
        QCOMPARE(display->windowTitle(), ownTitle);
        QCOMPARE(display->toggleViewAction()->text(), ownTitle);
        QVERIFY(!m_window->banner().isVisible());
        QTRY_VERIFY_WITH_TIMEOUT(calls().contains("started"), patience);
        QCOMPARE(calls().filter(QRegularExpression("^(started|stopped)$")),
                 QStringList({"started", "stopped", "started"}));
    }

    void whatAModuleMakesOfItsTitleMeanwhileStays() {
        QDockWidget* const display = dock();
        QTRY_VERIFY_WITH_TIMEOUT(display->windowTitle() != ownTitle, patience);
        display->setWindowTitle(QStringLiteral("Another"));
        display->toggleViewAction()->setText(QStringLiteral("Its entry"));
        QTRY_VERIFY_WITH_TIMEOUT(display->windowTitle().startsWith("no data for ") &&
                                     display->windowTitle().endsWith(" s – Another"),
                                 patience);
        QCOMPARE(display->toggleViewAction()->text(), QString("Its entry"));
        sendFramesUntilLive();
        QCOMPARE(display->windowTitle(), QString("Another"));
        QCOMPARE(display->toggleViewAction()->text(), QString("Its entry"));
    }

    void theEndOfTheMeasurementEndsTheWaiting() {
        QTRY_VERIFY_WITH_TIMEOUT(!noData().isEmpty(), patience);
        m_controller->answer("status active", "none");
        QTRY_VERIFY_WITH_TIMEOUT(noData().isEmpty(), patience);
        QCOMPARE(dock()->windowTitle(), ownTitle);
    }

    void aLostConnectionStopsTheModulesUntilItIsBack() {
        sendFrame();
        const auto lost = [this] { return m_window->banner().text(BannerTopic::Connection); };
        m_controller->stopListening();
        QTRY_VERIFY_WITH_TIMEOUT(lost().contains("reconnecting"), patience);
        QTRY_COMPARE_WITH_TIMEOUT(calls().constLast(), QString("stopped"), patience);
        QVERIFY(noData().isEmpty());
        QVERIFY(m_controller->listenAgain());
        QTRY_VERIFY_WITH_TIMEOUT(lost().isEmpty(), patience);
        QTRY_COMPARE_WITH_TIMEOUT(calls().constLast(), QString("started"), patience);
    }

    void whatNobodyKnowsIsNotLoggedAsAStop() {
        m_controller->stopListening();
        QTRY_VERIFY_WITH_TIMEOUT(!m_window->backend().monitor.isMeasuring(), patience);
        QTRY_COMPARE_WITH_TIMEOUT(calls().constLast(), QString("stopped"), patience);
        QTRY_VERIFY_WITH_TIMEOUT(m_window->backend().log.toText().contains(" lost ("), patience);
        QVERIFY(!m_window->backend().log.toText().contains("Measurement stopped"));
    }

    void aSlowReplyIsToldWhileItIsWaitedFor() {
        PaintedLine painted;
        qApp->installEventFilter(&painted);
        m_controller->answer("slow", "1");
        m_controller->setDelay(700);
        int value = 0;
        QCOMPARE(m_window->backend().io.get_parameter_int(&value, "slow"), 0);
        QCOMPARE(value, 1);
        QCOMPARE(painted.count, 1);
        QVERIFY(painted.underWaitCursor);
        QVERIFY(QApplication::overrideCursor() == nullptr);
        QVERIFY(m_window->banner().lines().filter("Waiting").isEmpty());
        m_controller->setDelay(0);
    }

    void aDeadControllerIsWaitedForOnce() {
        m_controller->setSilent(true);
        int value = 0;
        QElapsedTimer clock;
        clock.start();
        QVERIFY(m_window->backend().io.get_parameter_int(&value, "slow") < 0);
        QVERIFY(QApplication::overrideCursor() == nullptr);
        clock.restart();
        QVERIFY(m_window->backend().io.get_parameter_int(&value, "slow") < 0);
        QVERIFY(clock.elapsed() < 1000);
        QTRY_COMPARE_WITH_TIMEOUT(calls().constLast(), QString("stopped"), patience);
    }

    void anInterruptionInTheMiddleOfADialogIsTold_data() {
        QTest::addColumn<QString>("output");
        QTest::addColumn<QString>("told");
        row("started anew", "no", "The controller was started anew while a dialog");
        row("went on", "yes", "The connection was interrupted while a dialog");
        row("nobody knows", "", "The connection was interrupted while a dialog");
    }
    void anInterruptionInTheMiddleOfADialogIsTold() {
        QFETCH(QString, output);
        QFETCH(QString, told);
        QCOMPARE(m_window->backend().io.set_parameter("output active chmon 6dmt2 yes"), 0);
        QDialog dialog(m_window.get());
        dialog.setModal(true);
        dialog.show();
        interrupt(output);
        const QString line = m_window->banner().text(BannerTopic::Restart);
        QVERIFY2(line.startsWith(told), qPrintable(line));
        QVERIFY(line.contains("alibration"));
        QTRY_VERIFY_WITH_TIMEOUT(m_window->backend().log.toText().contains(line), patience);
        QVERIFY(m_window->banner().findChild<QToolButton*>(
                    QStringLiteral("bannerDismiss%1").arg(int(BannerTopic::Restart))) != nullptr);
    }

    void withoutADialogOfAModuleItIsNot_data() {
        QTest::addColumn<QByteArray>("dialog");
        for (const char* dialog : {"no dialog", "a dialog of the workbench", "a file dialog",
                                   "the question of a file dialog", "the question of a dock"}) {
            QTest::newRow(dialog) << QByteArray(dialog);
        }
    }
    void withoutADialogOfAModuleItIsNot() {
        QFETCH(QByteArray, dialog);
        workbench::ConnectDialog own({}, {}, m_window.get());
        QFileDialog files(m_window.get());
        files.setOption(QFileDialog::DontUseNativeDialog);
        QMessageBox ofFiles(&files);
        QMessageBox ofDock(m_window->findChild<QDockWidget*>("LogDock"));
        const std::map<QByteArray, QDialog*> dialogs = {{"a dialog of the workbench", &own},
                                                        {"a file dialog", &files},
                                                        {"the question of a file dialog", &ofFiles},
                                                        {"the question of a dock", &ofDock}};
        const auto open = dialogs.find(dialog);
        if (open != dialogs.end()) {
            open->second->setModal(true);
            open->second->show();
        }
        interrupt(QString());
        QVERIFY(m_window->banner().text(BannerTopic::Restart).isEmpty());
    }
};

QTEST_MAIN(TestLiveState)
#include "test_livestate.moc"
