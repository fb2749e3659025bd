#include "workbench/window/docks/docksizes.h"

#include <QDockWidget>
#include <QMainWindow>
#include <QToolBar>
#include <QtTest>

#include <map>

using workbench::DockSizes;

namespace {

constexpr int patience = 20000;

using Sizes = std::map<QString, QSize>;

// Two docks above, tabs and a dock below.
struct Rig {
    Rig() {
        window.setDockNestingEnabled(true);
        auto* const middle = new QWidget;
        middle->setFixedHeight(60);
        window.setCentralWidget(middle);
        window.addToolBar(bar);
        bar->addAction(QStringLiteral("Play"));
        bar->hide();
        display = addDock(QStringLiteral("Display"), Qt::TopDockWidgetArea);
        points = addDock(QStringLiteral("Points"), Qt::TopDockWidgetArea);
        log = addDock(QStringLiteral("Log"), Qt::BottomDockWidgetArea);
        commands = addDock(QStringLiteral("Commands"), Qt::BottomDockWidgetArea);
        window.tabifyDockWidget(log, commands);
        log->raise();
        readout = addDock(QStringLiteral("Readout"), Qt::BottomDockWidgetArea);
    }

    QDockWidget* addDock(const QString& name, Qt::DockWidgetArea area) {
        auto* const dock = new QDockWidget(name, &window);
        dock->setObjectName(name);
        auto* const page = new QWidget;
        page->setMinimumSize(100, 80);
        dock->setWidget(page);
        window.addDockWidget(area, dock);
        sizes->watch(dock);
        return dock;
    }

    // Not as the window would lay them out by itself.
    bool show() {
        window.resize(1000, 800);
        window.show();
        if (!QTest::qWaitForWindowExposed(&window)) {
            return false;
        }
        window.resizeDocks({display, log}, {400, 170}, Qt::Vertical);
        window.resizeDocks({display, points}, {650, 344}, Qt::Horizontal);
        window.resizeDocks({log, readout}, {610, 384}, Qt::Horizontal);
        QCoreApplication::processEvents();
        return true;
    }

    // Of those in view.
    Sizes all() const {
        Sizes found;
        for (const QDockWidget* const dock : {display, points, log, commands, readout}) {
            if (dock->isVisible() && !dock->isFloating() &&
                window.rect().intersects(dock->geometry())) {
                found[dock->objectName()] = dock->size();
            }
        }
        return found;
    }

    QMainWindow window;
    QToolBar* bar = new QToolBar(&window);
    DockSizes* sizes = new DockSizes(window);
    QDockWidget* display = nullptr;
    QDockWidget* points = nullptr;
    QDockWidget* log = nullptr;
    QDockWidget* commands = nullptr;
    QDockWidget* readout = nullptr;
};

void floatIt(QDockWidget& dock, const QSize& size) {
    dock.setFloating(true);
    dock.resize(size);
    QCoreApplication::processEvents();
}

// With what comes by a queued call.
void dockIt(QDockWidget& dock) {
    dock.setFloating(false);
    for (int turn = 0; turn < 5; ++turn) {
        QCoreApplication::processEvents();
    }
}

} // namespace

class TestDockSizes : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void allDocksKeepTheirSizesWhenOneIsFloatedAndDockedAgain_data() {
        QTest::addColumn<QString>("name");
        for (const char* name : {"Display", "Points", "Log", "Readout"}) {
            QTest::newRow(name) << QString::fromLatin1(name);
        }
    }
    void allDocksKeepTheirSizesWhenOneIsFloatedAndDockedAgain() {
        QFETCH(QString, name);
        Rig rig;
        QVERIFY(rig.show());
        const Sizes before = rig.all();
        QCOMPARE(before.size(), std::size_t(4));
        auto* const dock = rig.window.findChild<QDockWidget*>(name);
        for (int turn = 0; turn < 3; ++turn) {
            floatIt(*dock, {333, 222});
            QVERIFY(rig.all() != before);
            dockIt(*dock);
            QTRY_COMPARE_WITH_TIMEOUT(rig.all(), before, patience);
        }
    }

    void aDockAmongTabsGetsItsSizeBack() {
        Rig rig;
        QVERIFY(rig.show());
        const Sizes before = rig.all();
        const QSize size = rig.log->size();
        floatIt(*rig.log, {333, 222});
        floatIt(*rig.commands, {300, 200}); // nothing holds their place now
        dockIt(*rig.log);
        dockIt(*rig.commands);
        QTRY_VERIFY_WITH_TIMEOUT(rig.window.tabifiedDockWidgets(rig.log).contains(rig.commands),
                                 patience);
        QTRY_COMPARE_WITH_TIMEOUT(rig.commands->size(), size, patience);
        rig.log->raise();
        QTRY_COMPARE_WITH_TIMEOUT(rig.all(), before, patience);
    }

    void severalComeBackTheOtherWayRound() {
        Rig rig;
        QVERIFY(rig.show());
        const Sizes before = rig.all();
        for (QDockWidget* const dock : {rig.log, rig.commands, rig.readout, rig.display}) {
            floatIt(*dock, {333, 222});
        }
        for (QDockWidget* const dock : {rig.display, rig.readout, rig.commands, rig.log}) {
            dockIt(*dock);
        }
        QTRY_COMPARE_WITH_TIMEOUT(rig.all(), before, patience);
    }

    void ofAWindowThatHasChangedOnlyTheDockThatWasFloatedGetsItsSize() {
        Rig rig;
        QVERIFY(rig.show());
        const QSize size = rig.readout->size();
        floatIt(*rig.readout, {333, 222});
        rig.bar->show(); // as that of a replay
        rig.window.resize(1200, 800);
        rig.window.resizeDocks({rig.display}, {500}, Qt::Horizontal);
        QCoreApplication::processEvents();
        const int width = rig.display->width();
        const int restWidth = rig.points->width();
        dockIt(*rig.readout);
        QTRY_COMPARE_WITH_TIMEOUT(rig.readout->width(), size.width(), patience);
        QTRY_COMPARE_WITH_TIMEOUT(rig.display->width(), width, patience);
        QCOMPARE(rig.points->width(), restWidth);
        QTRY_COMPARE_WITH_TIMEOUT(rig.readout->height(), size.height(), patience);
    }

    void withoutAnotherDockOnlyTheOneThatWasFloatedGetsItsSize() {
        Rig rig;
        QVERIFY(rig.show());
        const QSize size = rig.display->size();
        floatIt(*rig.display, {333, 222});
        rig.readout->hide();
        QCoreApplication::processEvents();
        const int width = rig.log->width();
        dockIt(*rig.display);
        QTRY_COMPARE_WITH_TIMEOUT(rig.display->size(), size, patience);
        QCOMPARE(rig.log->width(), width);
    }

    void oneThatIsDockedMayBeDeletedMeanwhile() {
        Rig rig;
        QVERIFY(rig.show());
        const QSize size = rig.display->size();
        floatIt(*rig.display, {333, 222});
        delete rig.readout;
        rig.readout = nullptr;
        dockIt(*rig.display);
        QTRY_COMPARE_WITH_TIMEOUT(rig.display->size(), size, patience);
    }

    void oneThatIsFloatingMayBeDeleted() {
        Rig rig;
        QVERIFY(rig.show());
        floatIt(*rig.readout, {333, 222});
        floatIt(*rig.display, {333, 222});
        const QSize size = rig.points->size();
        delete rig.readout;
        rig.readout = nullptr;
        dockIt(*rig.display);
        QTRY_VERIFY_WITH_TIMEOUT(rig.points->width() < size.width(), patience);
    }
};

QTEST_MAIN(TestDockSizes)
#include "test_docksizes.moc"
