#include "tests/support/docksinview.h"
#include "tests/workbench/window/docks/plaindock.h"
#include "workbench/window/docks/docksizes.h"

#include <QDockWidget>
#include <QMainWindow>
#include <QMouseEvent>
#include <QToolBar>
#include <QtTest>

#include <algorithm>

using workbench::DockSizes;

namespace {

constexpr int patience = 20000;

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
        auto* const dock = addPlainDock(window, name, area);
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

    QDockWidget* dock(const QString& name) const { return window.findChild<QDockWidget*>(name); }

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

// QTest::mouseMove() holds no button.
void moveWithButton(QWidget& widget, const QPoint& to) {
    QMouseEvent move(QEvent::MouseMove, to, widget.mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &move);
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
        const QString before = sizesInView(rig.window);
        QCOMPARE(before.count(QLatin1Char(',')), 3);
        QDockWidget* const dock = rig.dock(name);
        for (int turn = 0; turn < 3; ++turn) {
            floatIt(*dock, {333, 222});
            QVERIFY(sizesInView(rig.window) != before);
            dockIt(*dock);
            QTRY_COMPARE_WITH_TIMEOUT(sizesInView(rig.window), before, patience);
        }
    }

    void aDockAmongTabsGetsItsSizeBack() {
        Rig rig;
        QVERIFY(rig.show());
        const QString before = sizesInView(rig.window);
        const QSize size = rig.log->size();
        floatIt(*rig.log, {333, 222});
        floatIt(*rig.commands, {300, 200}); // nothing holds their place now
        dockIt(*rig.log);
        dockIt(*rig.commands);
        QTRY_VERIFY_WITH_TIMEOUT(rig.window.tabifiedDockWidgets(rig.log).contains(rig.commands),
                                 patience);
        QTRY_COMPARE_WITH_TIMEOUT(rig.commands->size(), size, patience);
        rig.log->raise();
        QTRY_COMPARE_WITH_TIMEOUT(sizesInView(rig.window), before, patience);
    }

    void severalComeBackInEveryOrder_data() {
        QTest::addColumn<QStringList>("order");
        QTest::addColumn<bool>("isOrderOfFloating");
        const QStringList names = {QStringLiteral("Commands"), QStringLiteral("Display"),
                                   QStringLiteral("Log"), QStringLiteral("Readout")};
        for (const bool isOfFloating : {false, true}) {
            QStringList order = names;
            do {
                QTest::addRow("%s %s", isOfFloating ? "floated and docked" : "docked",
                              qPrintable(order.join(QStringLiteral(", "))))
                    << order << isOfFloating;
            } while (std::next_permutation(order.begin(), order.end()));
        }
    }
    void severalComeBackInEveryOrder() {
        QFETCH(QStringList, order);
        QFETCH(bool, isOrderOfFloating);
        Rig rig;
        QVERIFY(rig.show());
        const QString before = sizesInView(rig.window);
        const QStringList first = {QStringLiteral("Log"), QStringLiteral("Commands"),
                                   QStringLiteral("Readout"), QStringLiteral("Display")};
        for (const QString& name : isOrderOfFloating ? order : first) {
            floatIt(*rig.dock(name), {333, 222});
        }
        for (const QString& name : order) {
            dockIt(*rig.dock(name));
        }
        rig.log->raise();
        QTRY_COMPARE_WITH_TIMEOUT(sizesInView(rig.window), before, patience);
        floatIt(*rig.commands, {333, 222});
        rig.log->raise();
        dockIt(*rig.commands);
        rig.log->raise();
        QTRY_COMPARE_WITH_TIMEOUT(sizesInView(rig.window), before, patience);
    }

    void allComeBackAtOnce() {
        Rig rig;
        QVERIFY(rig.show());
        const QString before = sizesInView(rig.window);
        const auto docks = {rig.log, rig.commands, rig.readout, rig.display, rig.points};
        for (QDockWidget* const dock : docks) {
            floatIt(*dock, {333, 222});
        }
        for (QDockWidget* const dock : docks) {
            dock->setFloating(false);
        }
        QCoreApplication::processEvents();
        rig.log->raise();
        QTRY_COMPARE_WITH_TIMEOUT(sizesInView(rig.window), before, patience);
    }

    void whileOthersStillFloatThoseInViewHaveTheirShare() {
        Rig rig;
        QVERIFY(rig.show());
        const QSize readout = rig.readout->size();
        const QSize display = rig.display->size();
        const QSize points = rig.points->size();
        for (QDockWidget* const dock : {rig.readout, rig.log, rig.commands, rig.display}) {
            floatIt(*dock, {333, 222});
        }
        dockIt(*rig.readout);
        QTRY_COMPARE_WITH_TIMEOUT(rig.readout->height(), readout.height(), patience);
        QTRY_COMPARE_WITH_TIMEOUT(rig.points->height(), points.height(), patience);
        dockIt(*rig.display);
        QTRY_COMPARE_WITH_TIMEOUT(rig.display->size(), display, patience);
        QTRY_COMPARE_WITH_TIMEOUT(rig.points->size(), points, patience);
    }

    // In the gap between display and points.
    void aBorderThatTheUserHasMovedStays() {
        Rig rig;
        QVERIFY(rig.show());
        floatIt(*rig.readout, {333, 222});
        const int width = rig.display->width();
        const QPoint border(rig.display->geometry().right() + 2,
                            rig.display->geometry().center().y());
        QVERIFY(rig.window.childAt(border) == nullptr);
        QTest::mousePress(&rig.window, Qt::LeftButton, Qt::NoModifier, border);
        moveWithButton(rig.window, border - QPoint(120, 0));
        QTRY_COMPARE_WITH_TIMEOUT(rig.display->width(), width - 120, patience);
        QTest::mouseRelease(&rig.window, Qt::LeftButton, Qt::NoModifier, border - QPoint(120, 0));
        floatIt(*rig.log, {333, 222});
        dockIt(*rig.readout);
        dockIt(*rig.log);
        QTRY_VERIFY_WITH_TIMEOUT(!rig.log->isFloating(), patience);
        QCOMPARE(rig.display->width(), width - 120);
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
