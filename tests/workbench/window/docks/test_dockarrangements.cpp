#include "tests/support/childprocesses.h"
#include "tests/support/datarows.h"
#include "tests/support/docksinview.h"
#include "tests/workbench/window/docks/plaindock.h"
#include "workbench/window/docks/dockarrangements.h"
#include "workbench/window/mainwindow.h"
#include "workbench/window/startpage.h"
#include "workbench/window/state/banner.h"

#include <QCoreApplication>
#include <QDockWidget>
#include <QMainWindow>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

using workbench::Banner;
using workbench::BannerTopic;
using workbench::ControllerSession;
using workbench::DockArrangements;
using workbench::DockSizes;
using workbench::MainWindow;
using workbench::Severity;

namespace {

constexpr int patience = 20000;
using Kind = DockArrangements::Kind;

// What is laid out, and done afterwards by timers.
void settle() {
    for (int turn = 0; turn < 10; ++turn) {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

// A log below, what a module shows above while there is work, and a start page when there is none.
struct Rig {
    Rig() {
        window.setDockNestingEnabled(true);
        window.setCentralWidget(middle);
        banner->placeIn(window);
        QObject::connect(banner, &Banner::appears, arrangements, &DockArrangements::onStripAppears);
        QObject::connect(banner, &Banner::gone, arrangements, &DockArrangements::onStripGone);
        addDock(QStringLiteral("Log"), Qt::BottomDockWidgetArea);
        window.resize(800, 700);
    }

    QDockWidget* addDock(const QString& name, Qt::DockWidgetArea area) {
        auto* const dock = addPlainDock(window, name, area);
        sizes->watch(dock);
        return dock;
    }

    void work() {
        arrangements->enter(Kind::Working);
        middle->setFixedHeight(60);
        display = addDock(QStringLiteral("Display"), Qt::TopDockWidgetArea);
        arrangements->arrange();
        settle();
    }

    void rest() {
        arrangements->enter(Kind::Start);
        delete display;
        middle->setMinimumHeight(0);
        middle->setMaximumHeight(QWIDGETSIZE_MAX);
        settle();
    }

    void setHeights(int displayHeight, int logHeight) {
        auto* const log = window.findChild<QDockWidget*>(QStringLiteral("Log"));
        if (display) {
            window.resizeDocks({display, log}, {displayHeight, logHeight}, Qt::Vertical);
        } else {
            window.resizeDocks({log}, {logHeight}, Qt::Vertical);
        }
        settle();
    }

    void tell() { banner->set(BannerTopic::Recording, Severity::Warning, QStringLiteral("Ended")); }

    QMainWindow window;
    QWidget* middle = new QWidget;
    Banner* banner = new Banner(&window);
    DockSizes* sizes = new DockSizes(window);
    DockArrangements* arrangements = new DockArrangements(window, *sizes);
    QPointer<QDockWidget> display;
};

} // namespace

class TestDockArrangements : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    std::unique_ptr<MainWindow> m_window;

    // On a settings file of its own, or of the test's window before.
    void openWindow(bool openDocks) {
        m_window.reset();
        m_window = std::make_unique<MainWindow>(
            MainWindow::Setup{m_folder.filePath(QLatin1String(QTest::currentDataTag()) + ".ini"),
                              false, openDocks, QStringLiteral(SIMULATOR_PROGRAM)});
        m_window->modules().loadFile(QStringLiteral(KESTREL_PLUGIN_FILE));
        m_window->modules().loadFile(QStringLiteral(PROBE_PLUGIN_FILE));
        m_window->modulesLoaded();
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        settle();
    }

    void simulate() {
        QSignalSpy built(m_window.get(), &MainWindow::modulesBuilt);
        m_window->simulate({});
        QVERIFY(built.wait(patience));
        settle();
    }

    QString inView() const {
        const auto* const page = m_window->findChild<workbench::StartPage*>();
        return QStringLiteral("%1, start page %2")
            .arg(sizesInView(*m_window))
            .arg(page->isVisible() ? page->height() : 0);
    }

    void loseConnection() {
        m_window->backend().session.channel().askLater("kestrel2 sim misbehave drop 1");
        QTRY_COMPARE_WITH_TIMEOUT(m_window->backend().session.state(),
                                  ControllerSession::State::Lost, patience);
        settle();
    }

    void endSimulator() {
        QSignalSpy ended(m_window.get(), &MainWindow::simulatorEnded);
        const QList<qint64> children = childProcesses(QCoreApplication::applicationPid());
        QCOMPARE(children.size(), 1);
        QCOMPARE(::kill(static_cast<pid_t>(children.first()), SIGKILL), 0);
        QVERIFY(ended.wait(patience));
    }

    void disconnectByHand() {
        m_window->findChild<QAction*>(QStringLiteral("actionDisconnect"))->trigger();
    }

private Q_SLOTS:
    void cleanup() { m_window.reset(); }

    void eachKindHasItsSizesAgain() {
        Rig rig;
        rig.window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&rig.window));
        settle();
        rig.setHeights(0, 150);
        const QString start = sizesInView(rig.window);
        rig.work();
        rig.setHeights(370, 200);
        const QString working = sizesInView(rig.window);
        QVERIFY2(working.contains(QStringLiteral("x370")), qPrintable(working));
        rig.rest();
        QCOMPARE(sizesInView(rig.window), start);
        rig.work();
        QCOMPARE(sizesInView(rig.window), working);
        rig.rest();
        QCOMPARE(sizesInView(rig.window), start);
        rig.setHeights(0, 230); // what the user makes of it counts
        const QString other = sizesInView(rig.window);
        QVERIFY(other != start);
        rig.work();
        rig.rest();
        QCOMPARE(sizesInView(rig.window), other);
    }

    // Entered and left in one go, before anything was laid out: nobody has seen it so.
    void whatIsNotLaidOutIsNotKept() {
        Rig rig;
        rig.window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&rig.window));
        rig.work();
        rig.setHeights(370, 200);
        const QString working = sizesInView(rig.window);
        rig.rest();
        rig.arrangements->enter(Kind::Working);
        rig.arrangements->enter(Kind::Start);
        settle();
        rig.work();
        QCOMPARE(sizesInView(rig.window), working);
    }

    void aStripLeavesNoTrace_data() {
        QTest::addColumn<int>("height");
        row("there is room", 700);
        row("the window has to grow for it", 0);
    }

    void aStripLeavesNoTrace() {
        QFETCH(int, height);
        Rig rig;
        rig.window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&rig.window));
        rig.work();
        rig.window.resize(800, std::max(height, rig.window.minimumSizeHint().height()));
        settle();
        rig.setHeights(370, 200);
        const QString docks = sizesInView(rig.window);
        const QSize window = rig.window.size();
        rig.tell();
        settle();
        QVERIFY(rig.banner->isVisible());
        QVERIFY(sizesInView(rig.window) != docks || rig.window.size() != window);
        rig.banner->clear(BannerTopic::Recording);
        settle();
        QCOMPARE(rig.window.size(), window);
        QCOMPARE(sizesInView(rig.window), docks);
    }

    // Nor do the lines in it, before it has its width, count as many.
    void aStripNeedsNoMoreThanItsLinesInTheWindowsWidth() {
        Rig rig;
        rig.window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&rig.window));
        rig.work();
        rig.window.resize(800, rig.window.minimumSizeHint().height());
        settle();
        const int before = rig.window.height();
        rig.banner->set(BannerTopic::Recording, Severity::Warning,
                        QStringLiteral("a few words that would not stand in a hundred pixels"));
        settle();
        QCOMPARE(rig.window.height(), before + rig.banner->height());
        QVERIFY(rig.banner->height() < 3 * rig.window.fontMetrics().height());
    }

    void whatTheUserDoesWhileThereIsAStripStays_data() {
        QTest::addColumn<bool>("isBorder");
        row("moves a border", true);
        row("resizes the window", false);
    }

    void whatTheUserDoesWhileThereIsAStripStays() {
        QFETCH(bool, isBorder);
        Rig rig;
        rig.window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&rig.window));
        rig.work();
        rig.setHeights(370, 200);
        rig.tell();
        settle();
        if (isBorder) {
            QMouseEvent press(QEvent::MouseButtonPress, QPointF(1, 1), Qt::LeftButton,
                              Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(&rig.window, &press);
            rig.setHeights(250, 300);
            QMouseEvent release(QEvent::MouseButtonRelease, QPointF(1, 1), Qt::LeftButton,
                                Qt::NoButton, Qt::NoModifier);
            QCoreApplication::sendEvent(&rig.window, &release);
        } else {
            rig.window.resize(900, 900);
            settle();
            rig.setHeights(250, 500);
        }
        const QSize window = rig.window.size();
        const int before = rig.display->height();
        rig.banner->clear(BannerTopic::Recording);
        settle();
        QCOMPARE(rig.window.size(), window);
        QVERIFY2(std::abs(rig.display->height() - before) <= rig.banner->height(),
                 qPrintable(sizesInView(rig.window)));
    }

    void howeverWorkEndsTheStartPageHasItsRoomAndTheDocksTheirsAfterwards_data() {
        QTest::addColumn<bool>("isLost");
        QTest::addColumn<bool>("isByHand");
        row("disconnected by hand", false, true);
        row("the simulator ends", false, false);
        row("lost before it is disconnected by hand", true, true);
        row("lost before the simulator ends", true, false);
    }

    void howeverWorkEndsTheStartPageHasItsRoomAndTheDocksTheirsAfterwards() {
        QFETCH(bool, isLost);
        QFETCH(bool, isByHand);
        openWindow(false);
        const QString start = inView();
        simulate();
        const QString working = inView();
        QVERIFY2(working.contains(QStringLiteral("MtDataDisplayDock")), qPrintable(working));
        if (isLost) {
            loseConnection();
        }
        if (isByHand) {
            disconnectByHand();
        } else {
            endSimulator();
        }
        settle();
        QCOMPARE(inView(), start);
        simulate();
        QCOMPARE(inView(), working);
        m_window->close();
    }

    void theNextStartHasBothAgain_data() {
        QTest::addColumn<bool>("isClosedAtWork");
        QTest::addColumn<bool>("openDocks");
        row("closed at work", true, false);
        row("closed at the start page", false, false);
        row("closed at work with all docks", true, true);
    }

    void theNextStartHasBothAgain() {
        QFETCH(bool, isClosedAtWork);
        QFETCH(bool, openDocks);
        openWindow(openDocks);
        simulate();
        auto* const display = m_window->findChild<QDockWidget*>("MtDataDisplayDock");
        m_window->resizeDocks({display}, {display->height() - 40}, Qt::Vertical);
        settle();
        const QString working = inView();
        disconnectByHand();
        settle();
        const QString start = inView();
        if (isClosedAtWork) {
            simulate();
            QCOMPARE(inView(), working);
        }
        m_window->close();
        openWindow(openDocks);
        QCOMPARE(inView(), start);
        simulate();
        QCOMPARE(inView(), working);
        m_window->close();
    }

    // Between others that need much.
    void noDockIsTooNarrowToBeRead() {
        openWindow(true);
        simulate();
        const auto docks = dockedIn(*m_window);
        for (const QDockWidget* const dock : docks) {
            QVERIFY2(dock->width() >= 240 * m_window->logicalDpiX() / 96 ||
                         !m_window->rect().intersects(dock->geometry()),
                     qPrintable(inView()));
        }
        m_window->close();
    }
};

QTEST_MAIN(TestDockArrangements)
#include "test_dockarrangements.moc"
