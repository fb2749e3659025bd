#include "tests/support/paintwatch.h"
#include "tests/workbench/scriptedcontroller.h"
#include "workbench/controller/tools/toolfacts.h"
#include "workbench/window/mainwindow.h"
#include "workbench/window/readout/figurepanel.h"
#include "workbench/window/readout/latestlines.h"
#include "workbench/window/readout/readoutdock.h"

#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QMenuBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QToolButton>
#include <QtTest>

#include <atomic>
#include <thread>

using workbench::ControllerAddress;
using workbench::FigurePanel;
using workbench::LatestLines;
using workbench::MainWindow;
using workbench::ReadoutDock;
using workbench::ReadoutState;
using workbench::RequesterRegistry;

namespace {

constexpr int patience = 8000;

std::string toolBlock(int index, double x, bool isSeen = true) {
    return " [" + std::to_string(index) + (isSeen ? " 1.0" : " -1.0") + " 4 1.5][" +
           QByteArray::number(x, 'f', 6).toStdString() +
           " -2.5 310][1 0 0 0 1 0 0 0 1][1][0 0 0 0 0 0]";
}

/// Counts what is painted of the figures.
struct Paints : QObject {
    bool eventFilter(QObject*, QEvent* event) override {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
    int count = 0;
};

} // namespace

/// The read-out in the window, over real sockets, and its line path.
class TestReadoutDock : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    std::unique_ptr<ScriptedController> m_controller;
    std::unique_ptr<MainWindow> m_window;
    int m_frame = 0;

    static void teach(ScriptedController& controller, int tools) {
        controller.answer("version protocol", "1.13.0");
        controller.answer("status active", "tracking");
        controller.answer("measurementtool available", "yes");
        controller.answer("measurementtool output_6dmt", "no");
        controller.answer("measurementtool number_of_tools", std::to_string(tools));
        controller.answer("measurementtool number_of_references", "1");
        for (int tool = 1; tool <= tools; ++tool) {
            const std::string name = "b0" + std::to_string(tool);
            controller.answer("body calibrated measurementtool " + name, "yes");
            controller.answer("measurementtool tip_calibrated " + name, tool == 3 ? "no" : "yes");
            controller.answer("measurementtool reference_of_tool " + name,
                              tool == 1 ? "b01" : "none");
        }
    }

    void openWindow() {
        m_window = std::make_unique<MainWindow>(
            MainWindow::Setup{m_folder.filePath(QStringLiteral("s.ini")), false, false});
        m_window->show();
    }
    void connectTo(ScriptedController& controller) {
        QSignalSpy built(m_window.get(), &MainWindow::modulesBuilt);
        ControllerAddress address;
        address.port = controller.port();
        m_window->connectTo(address);
        QVERIFY(built.wait(patience));
        QTRY_VERIFY_WITH_TIMEOUT(m_window->backend().monitor.isMeasuring(), patience);
    }

    ReadoutDock* dock() const { return m_window->findChild<ReadoutDock*>(); }
    QComboBox* tools() const {
        return dock()->findChild<QComboBox*>(QStringLiteral("comboBox_tool"));
    }
    FigurePanel* panel() const { return dock()->findChild<FigurePanel*>(); }
    ReadoutState state() const { return dock()->view().state; }

    void sendFrame(const std::string& tools) {
        m_controller->sendFrame("fr " + std::to_string(++m_frame) + "\r\n6dmt2 " + tools +
                                "\r\n6dmtr 1 1 [0 1.0][0 0 0][1 0 0 0 1 0 0 0 1]");
    }
    template <typename Condition>
    bool sendUntil(const std::string& tools, Condition condition) {
        const QDeadlineTimer deadline(patience);
        bool isReached = condition();
        while (!isReached && !deadline.hasExpired()) {
            sendFrame(tools);
            QTest::qWait(20);
            isReached = condition();
        }
        return isReached;
    }

private Q_SLOTS:
    void init() {
        QFile::remove(m_folder.filePath(QStringLiteral("s.ini")));
        m_controller = std::make_unique<ScriptedController>();
        teach(*m_controller, 3);
        openWindow();
    }
    void cleanup() {
        m_window.reset();
        m_controller.reset();
    }

    void itIsClosedAtFirstAndRememberedOpen() {
        QVERIFY(dock()->isHidden());
        dock()->toggleViewAction()->trigger();
        QVERIFY(dock()->isVisible());
        m_window->close();
        m_window.reset();
        openWindow();
        QVERIFY(dock()->isVisible());
    }

    void noBodyIsAskedWhileItIsClosed() {
        connectTo(*m_controller);
        QTRY_VERIFY_WITH_TIMEOUT(m_controller->count("kestrel2 get status active") > 1, patience);
        QCOMPARE(m_controller->count("kestrel2 get measurementtool number_of_tools"), 0);
        QCOMPARE(m_controller->count("kestrel2 set output active chmon 6dmt2 yes"), 0);
    }

    void withoutAModuleItSwitchesTheLinesOnItself() {
        connectTo(*m_controller);
        dock()->show();
        QTRY_VERIFY_WITH_TIMEOUT(
            m_controller->count("kestrel2 set output active chmon 6dmt2 yes") > 0, patience);
        QTRY_VERIFY_WITH_TIMEOUT(
            m_controller->count("kestrel2 set output active chmon 6dmtr yes") > 0, patience);
        QCOMPARE(m_controller->count("kestrel2 set output active chmon 6dmt yes"), 0);
        QVERIFY(sendUntil("1 1" + toolBlock(0, 120.5),
                          [this] { return state() == ReadoutState::Live; }));
        QCOMPARE(dock()->view().figures->position[0], 120.5);
        QVERIFY2(panel()->accessibleDescription().contains("x 120.50 mm"),
                 qPrintable(panel()->accessibleDescription()));
    }

    void anOlderControllerIsAskedForTheOlderLine() {
        m_controller->answer("version protocol", "1.12.0");
        connectTo(*m_controller);
        dock()->show();
        QTRY_VERIFY_WITH_TIMEOUT(
            m_controller->count("kestrel2 set output active chmon 6dmt yes") > 0, patience);
        QCOMPARE(m_controller->count("kestrel2 set output active chmon 6dmt2 yes"), 0);
    }

    void toolsAreChosenByListAndKeys() {
        connectTo(*m_controller);
        dock()->show();
        const std::string three = "3 3" + toolBlock(0, 1) + toolBlock(1, 2) + toolBlock(2, 3);
        QVERIFY(sendUntil(three, [this] { return state() == ReadoutState::Live; }));
        QCOMPARE(tools()->count(), 3);
        panel()->setFocus();
        QTest::keyClick(panel(), Qt::Key_2);
        QCOMPARE(tools()->currentText(), QString("M2"));
        QCOMPARE(dock()->view().tool, 2);
        QVERIFY(sendUntil(three, [this] { return state() == ReadoutState::Live; }));
        QCOMPARE(dock()->view().figures->position[0], 2.0);
        QTest::keyClick(panel(), Qt::Key_9); // there is none
        QCOMPARE(dock()->view().tool, 2);
        tools()->setCurrentIndex(2);
        QVERIFY(sendUntil(three, [this] { return state() == ReadoutState::NotCalibrated; }));
        QVERIFY(!dock()->view().figures);
    }

    void aToolThatVanishedHasNoPose() {
        connectTo(*m_controller);
        dock()->show();
        const std::string two = "2 2" + toolBlock(0, 1) + toolBlock(1, 2);
        QVERIFY(sendUntil(two, [this] { return tools()->count() == 2; }));
        tools()->setCurrentIndex(1);
        QVERIFY(sendUntil(two, [this] { return state() == ReadoutState::Live; }));
        QVERIFY(
            sendUntil("1 1" + toolBlock(0, 1), [this] { return state() == ReadoutState::NoTool; }));
        QVERIFY(!dock()->view().figures);
        QCOMPARE(tools()->currentText(), QString("M2"));
        QVERIFY(sendUntil(two, [this] { return state() == ReadoutState::Live; }));
    }

    void anotherNumberOfToolsIsAskedFor() {
        m_controller->answer("measurementtool number_of_tools", "1");
        connectTo(*m_controller);
        dock()->show();
        const std::string two = "2 2" + toolBlock(0, 1) + toolBlock(1, 2);
        QVERIFY(
            sendUntil("1 1" + toolBlock(0, 1), [this] { return state() == ReadoutState::Live; }));
        m_controller->answer("measurementtool number_of_tools", "2");
        dock()->choose(2);
        QVERIFY(sendUntil(two, [this] { return state() == ReadoutState::Live; }));
    }

    void aCalibrationOrAnotherReferenceShowsWithoutANewMeasurement() {
        connectTo(*m_controller);
        dock()->show();
        dock()->choose(3);
        const std::string three = "3 3" + toolBlock(0, 1) + toolBlock(1, 2) + toolBlock(2, 3);
        QVERIFY(sendUntil(three, [this] { return state() == ReadoutState::NotCalibrated; }));
        m_controller->answer("measurementtool tip_calibrated b03", "yes");
        m_window->backend().session.channel().askLater(
            "kestrel2 measurementtool accept_new_calibration");
        QVERIFY(sendUntil(three, [this] { return state() == ReadoutState::Live; }));
        QCOMPARE(dock()->view().reference.value_or(-1), 0);
        m_controller->answer("measurementtool reference_of_tool b03", "b01");
        m_window->backend().session.channel().askLater(
            "kestrel2 set measurementtool reference_of_tool b03 b01");
        QVERIFY(sendUntil(three, [this] { return dock()->view().reference == 1; }));
    }

    void oldDataDoNotLookLive() {
        connectTo(*m_controller);
        dock()->show();
        QVERIFY(
            sendUntil("1 1" + toolBlock(0, 5), [this] { return state() == ReadoutState::Live; }));
        QTRY_COMPARE_WITH_TIMEOUT(state(), ReadoutState::Old, patience);
        QVERIFY(dock()->windowTitle().contains("no data for"));
        QTRY_VERIFY_WITH_TIMEOUT(!dock()->view().figures, patience); // as the modules' cells
        QVERIFY(
            sendUntil("1 1" + toolBlock(0, 6), [this] { return state() == ReadoutState::Live; }));
        QCOMPARE(dock()->view().figures->position[0], 6.0);
        m_controller->stopListening();
        QTRY_COMPARE_WITH_TIMEOUT(state(), ReadoutState::NotConnected, patience);
        QVERIFY(!dock()->view().figures);
    }

    void whatIsFrozenStaysAndIsCopied() {
        connectTo(*m_controller);
        dock()->show();
        QVERIFY(
            sendUntil("1 1" + toolBlock(0, 5), [this] { return state() == ReadoutState::Live; }));
        panel()->setFocus();
        QTest::keyClick(panel(), Qt::Key_F);
        QVERIFY(dock()->view().isFrozen);
        const auto* const freeze =
            dock()->findChild<QToolButton*>(QStringLiteral("toolButton_freeze"));
        QVERIFY(freeze->isChecked());
        QVERIFY(sendUntil("1 1" + toolBlock(0, 7), [this] { return dock()->view().age > 0.3; }));
        QCOMPARE(dock()->view().figures->position[0], 5.0);
        QTest::keyClick(panel(), Qt::Key_A);
        QTest::keyClick(panel(), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(),
                 QString("M1\tfrozen\t5.00\t-2.50\t310.00\t-0.00\t0.00\t-0.00"));
        QTest::keyClick(panel(), Qt::Key_F);
        QVERIFY(!freeze->isChecked());
        QVERIFY(sendUntil("1 1" + toolBlock(0, 7), [this] {
            return dock()->view().isLive() && dock()->view().figures->position[0] == 7.0;
        }));
    }

    void anotherControllerStartsAnew() {
        connectTo(*m_controller);
        dock()->show();
        QVERIFY(
            sendUntil("1 1" + toolBlock(0, 5), [this] { return state() == ReadoutState::Live; }));
        dock()->findChild<QToolButton*>(QStringLiteral("toolButton_freeze"))->click();
        QVERIFY(dock()->view().isFrozen);
        ScriptedController other;
        teach(other, 1);
        connectTo(other);
        QVERIFY(!dock()->view().isFrozen);
        QVERIFY(!dock()->view().figures);
        m_window.reset(); // before the controller that it talks to
    }

    void digitsGrowWithTheDock() {
        dock()->setFloating(true);
        dock()->show();
        int before = 0;
        for (const QSize size : {QSize(320, 200), QSize(600, 400), QSize(1200, 800)}) {
            dock()->resize(size);
            QTRY_COMPARE_WITH_TIMEOUT(dock()->size(), size, patience);
            QTRY_VERIFY_WITH_TIMEOUT(panel()->letterHeight() > before, patience);
            before = panel()->letterHeight();
        }
        // 15 mm at 96 dpi, 5 mm for each metre.
        QVERIFY2(before > 57, qPrintable(QString::number(before)));
        auto* const angles = dock()->findChild<QCheckBox*>(QStringLiteral("checkBox_angles"));
        angles->setChecked(true);
        QVERIFY(panel()->letterHeight() < before);
    }

    void aPanelThatWasToldNothingCanBePainted() {
        FigurePanel untold;
        untold.resize(300, 200);
        QVERIFY(!untold.grab().isNull());
        QVERIFY(untold.accessibleDescription().contains("not connected"));
    }

    void aFigureThatChangesIsPaintedAlone() {
        FigurePanel panel;
        panel.resize(700, 400);
        panel.show();
        QVERIFY(QTest::qWaitForWindowExposed(&panel, patience));
        workbench::ReadoutView view;
        view.state = ReadoutState::Live;
        view.figures = workbench::ReadoutView::Figures{};
        panel.tell(view, true);
        PaintWatch watch(panel);
        // Until the window has settled: what it paints by itself meanwhile is all of it.
        const bool isAlone = QTest::qWaitFor(
            [&] {
                watch.forget();
                view.figures->position[1] += 123.45;
                view.figures->angles.rz += 11.5;
                panel.tell(view, true);
                QCoreApplication::sendPostedEvents();
                const int painted = watch.painted.boundingRect().height();
                return painted > 0 && painted < 3 * panel.height() / 4;
            },
            patience);
        QVERIFY(isAlone);
        QCOMPARE(onScreen(panel), paintedAnew(panel));
        view.state = ReadoutState::Hidden; // other words, other colours
        panel.tell(view, true);
        QTRY_COMPARE_WITH_TIMEOUT(onScreen(panel), paintedAnew(panel), patience);
    }

    void whatDoesNotChangeIsNotPaintedAgain() {
        Paints paints;
        panel()->installEventFilter(&paints);
        dock()->show();
        QTRY_VERIFY_WITH_TIMEOUT(paints.count > 0, patience);
        // The window may settle for a while; then three refreshes pass without any painting.
        const QDeadlineTimer deadline(patience);
        QElapsedTimer quiet;
        quiet.start();
        for (int seen = paints.count; quiet.elapsed() < 3 * ReadoutDock::refreshMs;) {
            QVERIFY(!deadline.hasExpired());
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
            if (paints.count != seen) {
                seen = paints.count;
                quiet.restart();
            }
        }
    }

    void linesAreTakenWhileSomebodyLooks() {
        RequesterRegistry registry;
        LatestLines latest(registry);
        latest.setSubscribed(true);
        std::atomic<bool> isOver{false};
        std::thread line([&] {
            for (int i = 0; i < 20000; ++i) {
                registry.deliver("6dmt2",
                                 i % 2 == 0 ? "6dmt2 1 1 short" : "6dmt2 1 1 a longer one");
                registry.deliver("6dmtr", "6dmtr 0 0");
                if (i % 1000 == 0) {
                    registry.notifyStopped();
                    registry.notifyStarted();
                }
            }
            isOver = true;
        });
        LatestLines::Lines lines;
        int odd = 0;
        while (!isOver) {
            if (latest.take(lines)) {
                odd += lines.tools.empty() || lines.tools == "6dmt2 1 1 short" ||
                               lines.tools == "6dmt2 1 1 a longer one"
                           ? 0
                           : 1;
            }
        }
        line.join();
        QCOMPARE(odd, 0);
        static_cast<void>(latest.take(lines));
        QCOMPARE(lines.tools, std::string("6dmt2 1 1 a longer one"));
        QVERIFY(!latest.take(lines));
        registry.notifyStopped();
        QVERIFY(latest.take(lines));
        QVERIFY(lines.tools.empty() && lines.references.empty());
        latest.setSubscribed(false);
        QCOMPARE(registry.deliver("6dmt2", "6dmt2 0 0").accepted, 0);
    }
};

QTEST_MAIN(TestReadoutDock)
#include "test_readoutdock.moc"
