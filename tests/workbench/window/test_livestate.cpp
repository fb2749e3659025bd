#include "tests/workbench/scriptedcontroller.h"
#include "workbench/window/banner.h"
#include "workbench/window/mainwindow.h"

#include <QDockWidget>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

using workbench::Banner;
using workbench::BannerTopic;
using workbench::ControllerAddress;
using workbench::MainWindow;

namespace {

constexpr int patience = 8000;
const QString ownTitle = QStringLiteral("Fake display");

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
        QVERIFY2(display->windowTitle().startsWith(ownTitle + " – no data for "),
                 qPrintable(display->windowTitle()));
        QCOMPARE(display->toggleViewAction()->text(), ownTitle);
        display->setFloating(true);
        QTRY_VERIFY_WITH_TIMEOUT(noData().startsWith("No data for 2 s: "), patience);
        QCOMPARE(display->windowTitle(), ownTitle + " – no data for 2 s");
        QTRY_COMPARE_WITH_TIMEOUT(calls().last(), QString("stopped"), patience);

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
        QTRY_VERIFY_WITH_TIMEOUT(display->windowTitle().startsWith("Another – no data for "),
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
        QTRY_COMPARE_WITH_TIMEOUT(calls().last(), QString("stopped"), patience);
        QVERIFY(noData().isEmpty());
        QVERIFY(m_controller->listenAgain());
        QTRY_VERIFY_WITH_TIMEOUT(lost().isEmpty(), patience);
        QTRY_COMPARE_WITH_TIMEOUT(calls().last(), QString("started"), patience);
    }

    void whatNobodyKnowsIsNotLoggedAsAStop() {
        m_controller->stopListening();
        QTRY_VERIFY_WITH_TIMEOUT(!m_window->backend().monitor.isMeasuring(), patience);
        QTRY_COMPARE_WITH_TIMEOUT(calls().last(), QString("stopped"), patience);
        QVERIFY(!m_window->backend().log.toText().contains("Measurement stopped"));
        QVERIFY(m_window->backend().log.toText().contains(" lost ("));
    }
};

QTEST_MAIN(TestLiveState)
#include "test_livestate.moc"
