#include "workbench/window/docks/dockroom.h"

#include <QDockWidget>
#include <QMainWindow>
#include <QtTest>

#include <memory>

using workbench::DockRoom;

namespace {

constexpr int patience = 20000;
constexpr QSize content(200, 150); // the least of each dock
constexpr int middleHeight = 80;

// A window with a middle and the docks that a test wants.
struct Rig {
    Rig() {
        auto* const middle = new QWidget;
        middle->setMinimumHeight(middleHeight);
        window.setCentralWidget(middle);
        window.setDockNestingEnabled(true);
        QObject::connect(room, &DockRoom::middleMoved,
                         [this, middle] { middle->setVisible(!room->isMiddleFolded()); });
    }

    QDockWidget* addDock(Qt::DockWidgetArea area) {
        auto* const dock = new QDockWidget(QStringLiteral("Dock %1").arg(++docks), &window);
        dock->setObjectName(dock->windowTitle());
        auto* const page = new QWidget;
        page->setMinimumSize(content);
        dock->setWidget(page);
        window.addDockWidget(area, dock);
        room->watch(dock);
        return dock;
    }

    // At once, as a screen does.
    bool show(const QSize& greatest) {
        window.setMaximumSize(greatest);
        window.resize(greatest);
        window.show();
        return QTest::qWaitForWindowExposed(&window);
    }

    bool fits() const {
        return window.minimumSizeHint().boundedTo(window.maximumSize()) ==
                   window.minimumSizeHint() &&
               window.size().boundedTo(window.maximumSize()) == window.size();
    }

    bool areTabs(QDockWidget* a, QDockWidget* b) const {
        return window.tabifiedDockWidgets(a).contains(b);
    }

    // Of those in front: nothing of them is behind an edge.
    static bool isWhole(const QDockWidget& dock) {
        return dock.widget()->visibleRegion().boundingRect() == dock.widget()->rect() &&
               dock.widget()->size().expandedTo(content) == dock.widget()->size();
    }

    int docks = 0;
    QMainWindow window;
    DockRoom* room = new DockRoom(window);
};

} // namespace

class TestDockRoom : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatHasRoomIsLeftAlone() {
        Rig rig;
        rig.room->setMiddleOptional(true);
        QDockWidget* const left = rig.addDock(Qt::TopDockWidgetArea);
        QDockWidget* const right = rig.addDock(Qt::TopDockWidgetArea);
        QDockWidget* const below = rig.addDock(Qt::BottomDockWidgetArea);
        QVERIFY(rig.show({900, 700}));
        QCoreApplication::processEvents();
        QVERIFY(rig.fits());
        QVERIFY(!rig.room->isMiddleFolded());
        for (QDockWidget* const dock : {left, right, below}) {
            QVERIFY(rig.window.tabifiedDockWidgets(dock).isEmpty());
            QVERIFY(Rig::isWhole(*dock));
        }
    }

    // No size of the screen that nobody looks at counts.
    void withoutABoundTheWindowMayGrow() {
        Rig rig;
        rig.room->setMiddleOptional(true);
        QDockWidget* const above = rig.addDock(Qt::TopDockWidgetArea);
        QDockWidget* const below = rig.addDock(Qt::BottomDockWidgetArea);
        above->widget()->setMinimumSize(3000, 3000);
        rig.window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&rig.window));
        QCoreApplication::processEvents();
        QVERIFY(!rig.areTabs(above, below));
        QVERIFY(!rig.room->isMiddleFolded());
    }

    void theMiddleGoesFirstAndComesBack() {
        Rig rig;
        rig.room->setMiddleOptional(true);
        QDockWidget* const above = rig.addDock(Qt::TopDockWidgetArea);
        QDockWidget* const below = rig.addDock(Qt::BottomDockWidgetArea);
        below->hide();
        QVERIFY(rig.show({500, 2 * content.height() + middleHeight}));
        QVERIFY(!rig.room->isMiddleFolded());
        below->show();
        QTRY_VERIFY_WITH_TIMEOUT(rig.room->isMiddleFolded(), patience);
        QTRY_VERIFY_WITH_TIMEOUT(rig.fits(), patience);
        QVERIFY(!rig.areTabs(above, below));
        QVERIFY(Rig::isWhole(*above));
        QVERIFY(Rig::isWhole(*below));
        below->hide();
        QTRY_VERIFY_WITH_TIMEOUT(rig.window.centralWidget()->isVisible(), patience);
        QVERIFY(rig.fits());
        below->show();
        QTRY_VERIFY_WITH_TIMEOUT(rig.room->isMiddleFolded(), patience);
        rig.room->setMiddleOptional(false); // now there is something in it that has to stay
        QVERIFY(!rig.room->isMiddleFolded());
    }

    void docksSideBySideBecomeTabs() {
        Rig rig;
        QDockWidget* const left = rig.addDock(Qt::TopDockWidgetArea);
        QDockWidget* const middle = rig.addDock(Qt::TopDockWidgetArea);
        QDockWidget* const right = rig.addDock(Qt::TopDockWidgetArea);
        QDockWidget* const below = rig.addDock(Qt::BottomDockWidgetArea);
        middle->hide();
        QVERIFY(rig.show({2 * content.width() + content.width() / 2, 700}));
        QCoreApplication::processEvents();
        QVERIFY(!rig.areTabs(left, right));
        middle->show();
        QTRY_VERIFY_WITH_TIMEOUT(rig.areTabs(middle, left) || rig.areTabs(middle, right), patience);
        QTRY_VERIFY_WITH_TIMEOUT(rig.fits(), patience);
        QVERIFY(!rig.areTabs(left, right)); // not more than has to be
        QVERIFY(rig.window.tabifiedDockWidgets(below).isEmpty());
        // The one that somebody has just asked for.
        QTRY_VERIFY_WITH_TIMEOUT(Rig::isWhole(*middle), patience);
        QCOMPARE(rig.window.dockWidgetArea(middle), Qt::TopDockWidgetArea);
    }

    void aRowThatHasRoomStaysAsItIs() {
        Rig rig;
        QDockWidget* const left = rig.addDock(Qt::BottomDockWidgetArea);
        QDockWidget* const right = rig.addDock(Qt::BottomDockWidgetArea);
        QDockWidget* const last = rig.addDock(Qt::BottomDockWidgetArea);
        QDockWidget* const above = rig.addDock(Qt::TopDockWidgetArea);
        QDockWidget* const beside = rig.addDock(Qt::TopDockWidgetArea);
        last->hide();
        QVERIFY(rig.show({2 * content.width() + content.width() / 2, 700}));
        last->show();
        above->hide(); // so that these two were shown last
        beside->hide();
        above->show();
        beside->show();
        QTRY_VERIFY_WITH_TIMEOUT(rig.fits(), patience);
        QVERIFY(!rig.areTabs(above, beside));
        QVERIFY(rig.areTabs(last, right) || rig.areTabs(last, left) || rig.areTabs(left, right));
    }

    void docksOneAboveAnotherBecomeTabs() {
        Rig rig;
        QDockWidget* const upper = rig.addDock(Qt::LeftDockWidgetArea);
        QDockWidget* const lower = rig.addDock(Qt::LeftDockWidgetArea);
        lower->hide();
        QVERIFY(rig.show({600, content.height() + middleHeight}));
        lower->show();
        QTRY_VERIFY_WITH_TIMEOUT(rig.areTabs(upper, lower), patience);
        QTRY_VERIFY_WITH_TIMEOUT(rig.fits(), patience);
        QTRY_VERIFY_WITH_TIMEOUT(Rig::isWhole(*lower), patience);
        QCOMPARE(rig.window.dockWidgetArea(lower), Qt::LeftDockWidgetArea);
    }

    void aWindowTooShortForAllFoldsWhatStandsElsewhereToo() {
        Rig rig;
        rig.room->setMiddleOptional(true);
        QDockWidget* const above = rig.addDock(Qt::TopDockWidgetArea);
        QDockWidget* const log = rig.addDock(Qt::BottomDockWidgetArea);
        QDockWidget* const commands = rig.addDock(Qt::BottomDockWidgetArea);
        rig.window.tabifyDockWidget(log, commands);
        above->hide();
        QVERIFY(rig.show({500, 2 * content.height()}));
        above->show();
        QTRY_VERIFY_WITH_TIMEOUT(rig.areTabs(above, log), patience);
        QTRY_VERIFY_WITH_TIMEOUT(rig.fits(), patience);
        QVERIFY(rig.areTabs(above, commands));
        QTRY_VERIFY_WITH_TIMEOUT(Rig::isWhole(*above), patience);
        // There is room for the middle again.
        QTRY_VERIFY_WITH_TIMEOUT(rig.window.centralWidget()->isVisible(), patience);
        QVERIFY(rig.fits());
    }

    void tabsGoTogether() {
        Rig rig;
        QDockWidget* const above = rig.addDock(Qt::TopDockWidgetArea);
        QDockWidget* const log = rig.addDock(Qt::BottomDockWidgetArea);
        QDockWidget* const commands = rig.addDock(Qt::BottomDockWidgetArea);
        rig.window.tabifyDockWidget(log, commands);
        log->hide();
        commands->hide();
        QVERIFY(rig.show({500, 2 * content.height()}));
        commands->show();
        log->show();
        QTRY_VERIFY_WITH_TIMEOUT(rig.areTabs(above, log) && rig.areTabs(above, commands), patience);
        QTRY_VERIFY_WITH_TIMEOUT(rig.fits(), patience);
    }

    void aFloatingOrDeletedDockIsNoMatter() {
        Rig rig;
        QDockWidget* const above = rig.addDock(Qt::TopDockWidgetArea);
        QDockWidget* const below = rig.addDock(Qt::BottomDockWidgetArea);
        delete rig.addDock(Qt::BottomDockWidgetArea);
        below->setFloating(true);
        QVERIFY(rig.show({500, content.height() + middleHeight + 100}));
        QCoreApplication::processEvents();
        QVERIFY(below->isFloating());
        QVERIFY(rig.fits());
        below->setFloating(false);
        QTRY_VERIFY_WITH_TIMEOUT(rig.areTabs(above, below), patience);
        QTRY_VERIFY_WITH_TIMEOUT(rig.fits(), patience);
    }
};

QTEST_MAIN(TestDockRoom)
#include "test_dockroom.moc"
