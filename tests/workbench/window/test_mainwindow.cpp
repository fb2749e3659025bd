#include "libs/kestrel_wire/command.h"
#include "tests/support/contrast.h"
#include "tests/support/datarows.h"
#include "tests/support/sanitized.h"
#include "tests/workbench/scriptedcontroller.h"
#include "workbench/modules/obstacle.h"
#include "workbench/window/log/commanddock.h"
#include "workbench/window/log/logdock.h"
#include "workbench/window/look/symbols.h"
#include "workbench/window/mainwindow.h"
#include "workbench/window/settings/windowsettings.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QPixmapCache>
#include <QSignalSpy>
#include <QTableView>
#include <QTemporaryDir>
#include <QToolBar>
#include <QToolButton>
#include <QtTest>

#include <cstring>
#include <fstream>
#include <memory>
#include <unistd.h>
#include <vector>

using workbench::ControllerAddress;
using workbench::MainWindow;

namespace {
constexpr int patience = 8000;

qint64 residentBytes() {
    std::ifstream figures("/proc/self/statm");
    qint64 all = 0;
    qint64 resident = 0;
    figures >> all >> resident;
    return resident * ::sysconf(_SC_PAGESIZE);
}

} // namespace

class TestMainWindow : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    std::unique_ptr<ScriptedController> m_controller;
    std::unique_ptr<MainWindow> m_window;

    static QStringList calls() { return qApp->property("calls").toStringList(); }

    QString settingsFile() const { return m_folder.filePath(QStringLiteral("s.ini")); }

    void openWindow() {
        m_window = std::make_unique<MainWindow>(MainWindow::Setup{settingsFile(), false, false});
        m_window->modules().loadFile(QStringLiteral(FAKE_MODULE));
        m_window->modulesLoaded();
        m_window->show();
        qApp->setProperty("calls", QStringList());
    }

    void connectWindow() {
        QSignalSpy built(m_window.get(), &MainWindow::modulesBuilt);
        ControllerAddress address;
        address.port = m_controller->port();
        m_window->connectTo(address);
        QVERIFY(built.wait(patience));
    }

    QStringList menuTitles() const {
        QStringList titles;
        const QList<QAction*> menus = m_window->menuBar()->actions();
        for (const QAction* menu : menus) {
            titles += menu->text();
        }
        return titles;
    }

    QAction* entry(const QString& text) const {
        const QList<QAction*> menus = m_window->menuBar()->actions();
        for (const QAction* menu : menus) {
            const QList<QAction*> actions = menu->menu()->actions();
            for (QAction* action : actions) {
                if (action->text() == text) {
                    return action;
                }
            }
        }
        return nullptr;
    }

    // Those of menus in menus, too; separators and menus themselves do nothing.
    static QList<QAction*> allEntries(const QList<QAction*>& actions) {
        QList<QAction*> all;
        for (QAction* action : actions) {
            if (action->menu() != nullptr) {
                all += allEntries(action->menu()->actions());
            } else if (!action->isSeparator()) {
                all += action;
            }
        }
        return all;
    }

    static QStringList allReasons() {
        QStringList reasons;
        constexpr int last = static_cast<int>(workbench::Obstacle::Locked);
        for (int obstacle = 1; obstacle <= last; ++obstacle) {
            reasons << workbench::textOf(static_cast<workbench::Obstacle>(obstacle));
        }
        return reasons;
    }

    QDockWidget* fakeDock() const {
        return m_window->findChild<QDockWidget*>(QStringLiteral("FakeDock"));
    }

    QString label(const char* name) const {
        return m_window->findChild<QLabel*>(QLatin1String(name))->text();
    }

private Q_SLOTS:
    void init() {
        QFile::remove(settingsFile());
        m_controller = std::make_unique<ScriptedController>();
        openWindow();
    }
    void cleanup() {
        m_window.reset();
        m_controller.reset();
        qApp->setProperty("fakeDockIsHidden", QVariant());
        qApp->setProperty("fakeDockRow", QVariant());
    }

    void eachStateStandsInOnePlaceWithASymbol() {
        using workbench::Symbol;
        const auto places = [this](const QString& word) {
            int count = 0;
            const auto labels = m_window->findChildren<QLabel*>();
            for (const QLabel* shown : labels) {
                count += shown->isVisibleTo(m_window.get()) && shown->text() == word ? 1 : 0;
            }
            return count;
        };
        const auto symbol = [this](const char* name) {
            return m_window->findChild<workbench::SymbolLabel*>(QLatin1String(name))->symbol();
        };
        QVERIFY(symbol("symbolConnection") == Symbol::No);
        QVERIFY(symbol("symbolMeasurement") == Symbol::No);
        connectWindow();
        QVERIFY(symbol("symbolConnection") == Symbol::Yes);
        QCOMPARE(places(label("statusConnection")), 1);
        QCOMPARE(label("statusMeasurement"), QStringLiteral("not measuring"));
        QVERIFY(symbol("symbolMeasurement") == Symbol::Stop);
        QCOMPARE(places("not measuring"), 1);
        QVERIFY(symbol("symbolRecording") == Symbol::No);
        QCOMPARE(places("not recording"), 1);
        QCOMPARE(places("no frames"), 1);
        m_controller->answer("status active", "tracking");
        QTRY_COMPARE_WITH_TIMEOUT(label("statusMeasurement"), QStringLiteral("measuring"),
                                  patience);
        QVERIFY(symbol("symbolMeasurement") == Symbol::Play);
        QCOMPARE(places("measuring"), 1);
        const auto replays = [&](const char* state, Symbol sign) {
            m_controller->answer("sim replay", std::string(state) + " 1.0 10.0 1 none");
            return QTest::qWaitFor(
                [&] {
                    return symbol("symbolConnection") == sign &&
                           symbol("symbolMeasurement") == sign &&
                           label("statusConnection").startsWith(QLatin1String("REPLAY r"));
                },
                patience);
        };
        m_window->backend().replay.begin(QStringLiteral("r"));
        QVERIFY(replays("playing", Symbol::Play));
        QVERIFY(replays("paused", Symbol::Pause));
        QCOMPARE(label("statusMeasurement"), QStringLiteral("replay"));
        QVERIFY(replays("playing", Symbol::Play));
        QVERIFY(replays("ended", Symbol::Pause));
        m_window->backend().replay.end();
        QTRY_COMPARE_WITH_TIMEOUT(label("statusMeasurement"), QStringLiteral("measuring"),
                                  patience);
        m_window->startRecording(m_folder.filePath(QStringLiteral("state.kestrel")));
        QTRY_COMPARE_WITH_TIMEOUT(label("statusRecording"), QStringLiteral("recording"), patience);
        QVERIFY(symbol("symbolRecording") == Symbol::Record);
        // The disk is asked when the recording has begun.
        QTRY_VERIFY_WITH_TIMEOUT(label("label_recording").contains(" free"), patience);
        m_controller->dropConnections();
        QTRY_VERIFY_WITH_TIMEOUT(symbol("symbolConnection") != Symbol::Yes, patience);
    }

    void symbolsOfLogAndDockTitlesAreSeenOnEachPalette_data() {
        QTest::addColumn<QColor>("ground");
        QTest::addColumn<QColor>("letters");
        QTest::newRow("light") << QColor(239, 239, 239) << QColor(Qt::black);
        QTest::newRow("dark") << QColor(53, 53, 53) << QColor(Qt::white);
        QTest::newRow("black") << QColor(Qt::black) << QColor(230, 230, 230);
    }
    void symbolsOfLogAndDockTitlesAreSeenOnEachPalette() {
        QFETCH(QColor, ground);
        QFETCH(QColor, letters);
        constexpr double visible = 3.0;
        const QPalette before = QApplication::palette();
        QPalette palette(ground, ground);
        palette.setColor(QPalette::WindowText, letters);
        palette.setColor(QPalette::Text, letters);
        palette.setColor(QPalette::Base, ground);
        QApplication::setPalette(palette);
        m_window->backend().log.info(QStringLiteral("to be known"));
        m_window->backend().log.problem(QStringLiteral("an error"));
        QCoreApplication::processEvents();
        QStringList faint;
        const auto* const table = m_window->findChild<QTableView*>(QStringLiteral("tableView_log"));
        QSet<QString> levels;
        for (int row = 0; row < table->model()->rowCount(); ++row) {
            const QModelIndex index = table->model()->index(row, workbench::LogModel::LevelColumn);
            QImage cell(table->iconSize(), QImage::Format_ARGB32);
            cell.fill(table->palette().color(QPalette::Base));
            QPainter painter(&cell);
            index.data(Qt::DecorationRole).value<QIcon>().paint(&painter, cell.rect());
            painter.end();
            levels << index.data().toString();
            if (greatestContrast(cell, table->palette().color(QPalette::Base)) < visible) {
                faint << index.data().toString();
            }
        }
        int titles = 0;
        const auto docks = m_window->findChildren<QDockWidget*>();
        for (const QDockWidget* dock : docks) {
            const auto buttons =
                dock->findChildren<QAbstractButton*>(QString(), Qt::FindDirectChildrenOnly);
            for (QAbstractButton* button : buttons) {
                titles += dock->isVisible() && button->isVisible() ? 1 : 0;
                if (button->isVisible() &&
                    greatestContrast(button->grab().toImage(), ground) < visible) {
                    faint << dock->objectName() + QLatin1Char(' ') + button->objectName();
                }
            }
        }
        QApplication::setPalette(before);
        QCOMPARE(faint, QStringList());
        QCOMPARE(levels.size(), 2);
        QVERIFY2(titles >= 2, "to float and to close the log");
    }

    void aDockThatWasFloatedGetsItsSizeBack() {
        m_window->resize(900, 800);
        connectWindow();
        QDockWidget* const dock = fakeDock();
        m_window->resizeDocks({dock}, {dock->height() + 60}, Qt::Vertical);
        QCoreApplication::processEvents();
        const int height = dock->height();
        dock->setFloating(true);
        dock->resize(333, 222);
        QCoreApplication::processEvents();
        dock->setFloating(false);
        QTRY_COMPARE_WITH_TIMEOUT(dock->height(), height, patience);
        dock->setFloating(true);
        QTRY_COMPARE_WITH_TIMEOUT(dock->size(), QSize(333, 222), patience);
        dock->setFloating(false);
        QTRY_COMPARE_WITH_TIMEOUT(dock->height(), height, patience);
    }

    void aDockThatIsOpenedLaterIsAsHighAsItWishes() {
        constexpr int row = 400; // at 96 dpi
        m_window->resize(900, 1000);
        qApp->setProperty("fakeDockRow", row);
        qApp->setProperty("fakeDockIsHidden", true);
        connectWindow();
        QVERIFY(fakeDock()->sizeHint().height() > row);
        entry(QStringLiteral("Fake display"))->trigger();
        QTRY_COMPARE_WITH_TIMEOUT(fakeDock()->height(), fakeDock()->sizeHint().height(), patience);
    }

    void beforeTheFirstConnectionModulesHaveNoEntries() {
        QCOMPARE(menuTitles(), QStringList({"&File", "&Connection", "&Measurement", "&Tracking",
                                            "Data", "&View", "&Help"}));
        QVERIFY(entry(QStringLiteral("Fake dialog")) == nullptr);
        const QAction* const standIn = entry(QStringLiteral("&Entries of modules"));
        QVERIFY(standIn != nullptr && !standIn->isEnabled());
        QCOMPARE(standIn->toolTip(), QStringLiteral("Not connected to a controller"));
        QVERIFY(calls().isEmpty());
    }

    void withoutAnyModuleTheTrackingMenuSaysSo() {
        m_window = std::make_unique<MainWindow>(MainWindow::Setup{settingsFile(), false, false});
        m_window->modulesLoaded();
        QCOMPARE(entry(QStringLiteral("&Entries of modules"))->toolTip(),
                 QStringLiteral("No module is loaded: see Help, Modules"));
    }

    void theModulesEntriesOfTheLastTimeAreThereFromTheStart() {
        connectWindow();
        QVERIFY(entry(QStringLiteral("&Entries of modules")) == nullptr);
        m_window->findChild<QAction*>(QStringLiteral("actionDisconnect"))->trigger();
        QVERIFY(!entry(QStringLiteral("Fake dialog"))->isEnabled());
        m_window->close();
        openWindow();
        for (const char* text : {"Fake dialog", "Fake display"}) {
            const QAction* const standIn = entry(QLatin1String(text));
            QVERIFY2(standIn != nullptr && !standIn->isEnabled(), text);
            QCOMPARE(standIn->toolTip(), QStringLiteral("Not connected to a controller"));
        }
        connectWindow();
        QVERIFY(entry(QStringLiteral("Fake dialog"))->isEnabled());
        QVERIFY(entry(QStringLiteral("Fake display"))->isEnabled());
    }

    void eachEntryThatCannotBeUsedSaysWhy_data() {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<QString>("away"); // not connected
        QTest::addColumn<QString>("ready");
        QTest::addColumn<QString>("measuring");
        QTest::addColumn<QString>("calibrating");
        const QString away = QStringLiteral("Not connected to a controller");
        const QString measuring = QStringLiteral("A measurement is running");
        const QString idle = QStringLiteral("No measurement is running");
        const QString busy = QStringLiteral("The controller is busy: a calibration is running");
        const QString unrecorded = QStringLiteral("No recording is running");
        row("actionDisconnect", QString("&Disconnect"), away, QString(), QString(), QString());
        row("actionStart", QString("&Start measurement"), away, QString(), measuring, busy);
        row("actionStop", QString("S&top measurement"), away, idle, QString(), idle);
        row("actionRecord", QString("&Record…"), away, QString(), QString(), QString());
        row("actionStopRecording", QString("Stop r&ecording"), unrecorded, unrecorded, unrecorded,
            unrecorded);
        row("of a module", QString("Fake dialog"), away, QString(), measuring, QString());
        row("of a dock", QString("Fake display"), away, QString(), QString(), QString());
    }
    void eachEntryThatCannotBeUsedSaysWhy() {
        QFETCH(QString, entry);
        const auto why = [this, &entry] {
            const QAction* const action = this->entry(entry);
            return action == nullptr || action->isEnabled() ? QString() : action->toolTip();
        };
        connectWindow();
        QTRY_VERIFY_WITH_TIMEOUT(m_controller->count("kestrel2 get status active") > 0, patience);
        QTEST(why(), "ready");
        m_controller->answer("status active", "tracking");
        QTRY_COMPARE_WITH_TIMEOUT(label("statusMeasurement"), QStringLiteral("measuring"),
                                  patience);
        QTEST(why(), "measuring");
        m_controller->answer("status active", "cal");
        QTRY_VERIFY_WITH_TIMEOUT(m_window->backend().monitor.isCalibrating(), patience);
        QCoreApplication::processEvents();
        QTEST(why(), "calibrating");
        m_window->findChild<QAction*>(QStringLiteral("actionDisconnect"))->trigger();
        QTEST(why(), "away");
    }

    void ofAllMenusNoEntryIsDisabledWithoutAReason_data() {
        QTest::addColumn<QByteArray>("state");
        QTest::addColumn<int>("least"); // entries that cannot be used then
        for (const bool isObserver : {false, true}) {
            const char* const who = isObserver ? "observer, " : "";
            QTest::addRow("%snot connected", who) << QByteArray("away") << 6;
            QTest::addRow("%sconnected", who) << QByteArray("ready") << 2;
            QTest::addRow("%smeasuring", who) << QByteArray("measuring") << 2;
            QTest::addRow("%srecording", who) << QByteArray("recording") << 2;
            QTest::addRow("%sreplay", who) << QByteArray("replay") << 3;
        }
    }
    void ofAllMenusNoEntryIsDisabledWithoutAReason() {
        QFETCH(QByteArray, state);
        if (QByteArray(QTest::currentDataTag()).startsWith("observer")) {
            m_window = std::make_unique<MainWindow>(MainWindow::Setup{settingsFile(), true, false});
            m_window->modules().loadFile(QStringLiteral(FAKE_MODULE));
            m_window->modulesLoaded();
        }
        if (state != "away") {
            m_controller->answer("version model", kestrel_wire::simulatorModel); // has a menu, too
            connectWindow();
        }
        if (state == "measuring" || state == "replay") {
            m_controller->answer("status active", "tracking");
            QTRY_VERIFY_WITH_TIMEOUT(!m_window->findChild<QAction*>("actionStart")->isEnabled(),
                                     patience);
        }
        if (state == "recording") {
            m_window->startRecording(m_folder.filePath(QStringLiteral("why.kestrel")));
            QTRY_VERIFY_WITH_TIMEOUT(!m_window->findChild<QAction*>("actionRecord")->isEnabled(),
                                     patience);
        }
        if (state == "replay") {
            m_controller->answer("sim replay", "playing 1.0 10.0 1 none");
            m_window->backend().replay.begin(QStringLiteral("old.kestrel"));
            QTRY_VERIFY_WITH_TIMEOUT(!m_window->findChild<QAction*>("actionRecord")->isEnabled(),
                                     patience);
        }
        int disabled = 0;
        QStringList silent;
        const QStringList reasons = allReasons();
        const QList<QAction*> actions = allEntries(m_window->menuBar()->actions());
        for (const QAction* action : actions) {
            disabled += action->isEnabled() ? 0 : 1;
            if (!action->isEnabled() &&
                !(reasons.contains(action->toolTip()) && reasons.contains(action->statusTip()))) {
                silent << action->text();
            }
        }
        QCOMPARE(silent, QStringList());
        QFETCH(int, least);
        QVERIFY2(disabled >= least, qPrintable(QString::number(disabled)));
    }

    void anObserverIsToldWhyEntriesOfOthersAreNotForHim() {
        m_window.reset();
        workbench::WindowSettings(settingsFile())
            .setModuleEntries(
                {{QStringLiteral("&Tracking"), 300, QStringLiteral("&Settings"), 50}});
        m_window = std::make_unique<MainWindow>(MainWindow::Setup{settingsFile(), true, false});
        m_window->modules().loadFile(QStringLiteral(FAKE_MODULE));
        m_window->modulesLoaded();
        QCOMPARE(entry(QStringLiteral("&Settings"))->toolTip(),
                 QStringLiteral("Not connected to a controller"));
        connectWindow();
        QVERIFY(!entry(QStringLiteral("&Settings"))->isEnabled());
        QCOMPARE(entry(QStringLiteral("&Settings"))->toolTip(),
                 QStringLiteral("Not for observers: the workbench was started with --observer"));
    }

    void aButtonOfTheToolBarTellsAssistiveToolsWhy() {
        auto* const button = qobject_cast<QToolButton*>(
            m_window->findChild<QToolBar*>(QStringLiteral("toolBar"))
                ->widgetForAction(m_window->findChild<QAction*>(QStringLiteral("actionStart"))));
        QVERIFY(button != nullptr && !button->isEnabled());
        const auto description = [button] {
            return QAccessible::queryAccessibleInterface(button)->text(QAccessible::Description);
        };
        QCOMPARE(description(), QStringLiteral("Not connected to a controller"));
        connectWindow();
        QVERIFY(button->isEnabled());
        QCOMPARE(description(), QStringLiteral("Start measurement"));
    }

    void aLostConnectionIsTheReasonToo() {
        connectWindow();
        m_controller->stopListening();
        QTRY_VERIFY_WITH_TIMEOUT(!entry(QStringLiteral("Fake dialog"))->isEnabled(), patience);
        QCOMPARE(entry(QStringLiteral("Fake dialog"))->toolTip(),
                 QStringLiteral("Not connected to a controller"));
        QVERIFY(entry(QStringLiteral("Fake display"))->isEnabled());
    }

    void aLockedConfigurationIsToldWhereItCanStillBeRead() {
        const QString locked =
            QStringLiteral("The configuration is locked: it can be read, but not changed");
        m_controller->answer("version protocol", "1.9"); // the patch is unknown
        m_controller->answer("config is_changeable", "no");
        connectWindow();
        const QAction* const dialog = entry(QStringLiteral("Fake dialog"));
        const auto open = [this] {
            QMenu* const menu = m_window->menuBar()->actions().at(3)->menu();
            menu->popup(QPoint(0, 0));
            menu->close();
        };
        open();
        QTRY_COMPARE_WITH_TIMEOUT(dialog->toolTip(), locked, patience);
        QVERIFY(dialog->isEnabled());
        m_controller->answer("config is_changeable", "yes");
        open();
        QTRY_COMPARE_WITH_TIMEOUT(dialog->toolTip(), QStringLiteral("Fake dialog"), patience);
    }

    void aControllerThatCannotTellALockIsNotAsked() {
        m_controller->answer("version protocol", "1.8.9");
        connectWindow();
        QMenu* const menu = m_window->menuBar()->actions().at(3)->menu();
        menu->popup(QPoint(0, 0));
        menu->close();
        m_window->stopMeasurement(); // whatever was asked before has arrived with it
        QTRY_COMPARE_WITH_TIMEOUT(m_controller->count("kestrel2 tracking stop"), 1, patience);
        QCOMPARE(m_controller->count("kestrel2 get config is_changeable"), 0);
    }

    void theFirstConnectionBuildsTheModulesEntries() {
        connectWindow();
        QCOMPARE(menuTitles(), QStringList({"&File", "&Connection", "&Measurement", "&Tracking",
                                            "Data", "&View", "&Help"}));
        QCOMPARE(calls(), QStringList({"built for SCRIPTED", "asked while building"}));
        QVERIFY(fakeDock() != nullptr);
        QVERIFY(fakeDock()->isVisible());
        QCOMPARE(m_window->dockWidgetArea(fakeDock()), Qt::TopDockWidgetArea);
        QVERIFY(entry(QStringLiteral("Fake display")) != nullptr);
        QCOMPARE(m_window->moduleRows(), QStringList({"fakeTable\t0\ta b\tgreen{#00ff00}"}));
        fakeDock()->hide();
        QVERIFY(m_window->moduleRows().isEmpty());
    }

    void aDockThatItsModuleHasHiddenWaitsForItsEntry() {
        qApp->setProperty("fakeDockIsHidden", true);
        connectWindow();
        QVERIFY(fakeDock()->isHidden());
        QCOMPARE(m_window->dockWidgetArea(fakeDock()), Qt::TopDockWidgetArea);
        entry(QStringLiteral("Fake display"))->trigger();
        QVERIFY(fakeDock()->isVisible());
        m_window->close();
        openWindow();
        connectWindow();
        QVERIFY(fakeDock()->isVisible()); // as the user has left it
    }

    void entriesAreDisabledWhileAMeasurementRuns() {
        connectWindow();
        QVERIFY(entry(QStringLiteral("Fake dialog"))->isEnabled());
        m_window->startMeasurement();
        m_controller->answer("status active", "tracking");
        QTRY_VERIFY_WITH_TIMEOUT(!entry(QStringLiteral("Fake dialog"))->isEnabled(), patience);
        QVERIFY(entry(QStringLiteral("Fake display"))->isEnabled());
        QCOMPARE(label("statusMeasurement"), QStringLiteral("measuring"));
        m_window->stopMeasurement();
        m_controller->answer("status active", "none");
        QTRY_VERIFY_WITH_TIMEOUT(entry(QStringLiteral("Fake dialog"))->isEnabled(), patience);
        QCOMPARE(label("statusMeasurement"), QStringLiteral("not measuring"));
        QCOMPARE(calls().mid(2), QStringList({"started", "stopped"}));
    }

    void withoutAConnectionNobodyKnowsWhetherItMeasures() {
        QCOMPARE(label("statusMeasurement"), QStringLiteral("measurement unknown"));
        m_controller->answer("status active", "tracking");
        connectWindow();
        QTRY_COMPARE_WITH_TIMEOUT(label("statusMeasurement"), QStringLiteral("measuring"),
                                  patience);
        m_controller->stopListening();
        QTRY_COMPARE_WITH_TIMEOUT(label("statusMeasurement"), QStringLiteral("measurement unknown"),
                                  patience);
    }

    void withoutAnyDockTheMiddleSaysHowToGetOne() {
        const auto* const hint = m_window->findChild<QLabel*>(QStringLiteral("label_noDock"));
        QVERIFY(hint->isHidden());
        connectWindow();
        QVERIFY(hint->isHidden());
        const QList<QDockWidget*> docks{m_window->findChild<workbench::LogDock*>(),
                                        m_window->findChild<workbench::CommandDock*>(), fakeDock()};
        for (QDockWidget* dock : docks) {
            QVERIFY(hint->isHidden());
            dock->close();
        }
        QVERIFY(!hint->isHidden());
        QVERIFY(hint->text().contains(QStringLiteral("View")));
        QTRY_VERIFY_WITH_TIMEOUT(hint->height() > m_window->height() / 3, patience);
        for (QDockWidget* dock : docks) {
            dock->toggleViewAction()->trigger();
            QVERIFY(hint->isHidden());
            dock->close();
            QVERIFY(!hint->isHidden());
        }
        m_window->findChild<QAction*>(QStringLiteral("actionDisconnect"))->trigger();
        QVERIFY(hint->isHidden()); // there is the start page
    }

    void whatIsSentAndAnsweredIsSwitchedOnInTheLog() {
        connectWindow();
        auto* const wanted = m_window->findChild<QCheckBox*>(QStringLiteral("checkBox_traffic"));
        QVERIFY(!wanted->isChecked());
        const auto isTold = [this] {
            return m_window->backend().log.toText().contains(
                QStringLiteral("kestrel2 tracking start → "));
        };
        m_window->startMeasurement();
        QTRY_VERIFY_WITH_TIMEOUT(m_window->backend().monitor.isMeasuring(), patience);
        QVERIFY(!isTold());
        wanted->click();
        m_window->startMeasurement();
        QTRY_VERIFY_WITH_TIMEOUT(isTold(), patience);
    }

    // As a module does: a dialog that stays open after the procedure, and is closed.
    void aDialogThatIsClosedDiscardsACalibration() {
        connectWindow();
        m_controller->answer("status active", "cal");
        QDialog dialog(m_window.get());
        dialog.open();
        m_window->backend().session.channel().ask("kestrel2 cal measurementtool start");
        m_controller->answer("status active", "none");
        const workbench::LogModel& log = m_window->backend().log;
        QTRY_VERIFY_WITH_TIMEOUT(log.toText().contains(QStringLiteral("Calibration started")),
                                 patience);
        const int asked = m_controller->count("kestrel2 get status active");
        QTRY_VERIFY_WITH_TIMEOUT(m_controller->count("kestrel2 get status active") > asked + 1,
                                 patience);
        QVERIFY(!log.toText().contains(QStringLiteral("Calibration discarded")));
        dialog.close();
        QTRY_VERIFY_WITH_TIMEOUT(log.toText().contains(QStringLiteral("Calibration discarded")),
                                 patience);
    }

    void versionsWithoutAPatchAreShownAsTheyCame() {
        m_controller->answer("version protocol", "1.14");
        connectWindow();
        QVERIFY2(label("label_versions").startsWith(QStringLiteral("protocol 1.14, ")),
                 qPrintable(label("label_versions")));
    }

    void aMeasurementThatRunsAlreadyIsToldToTheModulesJustBuilt() {
        m_controller->answer("status active", "tracking");
        connectWindow();
        QTRY_COMPARE_WITH_TIMEOUT(calls().mid(2), QStringList("started"), patience);
    }

    void anotherControllerHasTheModulesBuiltAnew() {
        connectWindow();
        ScriptedController other;
        other.answer("version model", "OTHER");
        qApp->setProperty("calls", QStringList());
        QSignalSpy built(m_window.get(), &MainWindow::modulesBuilt);
        ControllerAddress address;
        address.port = other.port();
        m_window->connectTo(address);
        QVERIFY(fakeDock() == nullptr);
        QVERIFY(!entry(QStringLiteral("Fake dialog"))->isEnabled()); // a stand-in
        QVERIFY(built.wait(patience));
        QCOMPARE(calls(), QStringList({"about_to_exit_module with window", "exit_module",
                                       "built for OTHER", "asked while building"}));
        QVERIFY(fakeDock()->isVisible());
        m_window->close();
    }

    void picturesOfDocksThatAreGoneAreNotKept() {
        QVERIFY(QPixmapCache::cacheLimit() <= 2048); // kB: a day's dialogs do not fill more
        connectWindow();
        const QString key = QStringLiteral("of a dock");
        QVERIFY(QPixmapCache::insert(key, QPixmap(10, 10)));
        QAction* const disconnect =
            m_window->findChild<QAction*>(QStringLiteral("actionDisconnect"));
        disconnect->trigger();
        QPixmap kept;
        QVERIFY(!QPixmapCache::find(key, &kept));
    }

    void whatWasFreedBetweenWhatStaysGoesBackToTheSystem() {
        if (hasSanitizersAllocator) {
            // QSKIP wants one argument more than C++17 lets it have.
            QTest::qSkip("the sanitizer has an allocator of its own", __FILE__, __LINE__);
            return;
        }
        constexpr std::size_t blockSize = 20 * 1000; // several pages, and none of its own
        constexpr std::size_t all = 4000;
        connectWindow();
        std::vector<std::unique_ptr<char[]>> blocks;
        for (std::size_t i = 0; i < all; ++i) {
            blocks.push_back(std::make_unique<char[]>(blockSize));
        }
        for (std::size_t i = 0; i + 1 < all; ++i) {
            if (i % 2 == 0) {
                blocks[i].reset();
            }
        }
        const qint64 before = residentBytes();
        m_window->findChild<QAction*>(QStringLiteral("actionDisconnect"))->trigger();
        const qint64 after = residentBytes();
        QVERIFY(before > 0);
        QVERIFY2(before - after > qint64(all / 2 * blockSize) / 2,
                 qPrintable(QStringLiteral("%1, then %2 bytes").arg(before).arg(after)));
    }

    void aLostConnectionThatComesBackLeavesTheModulesAlone() {
        connectWindow();
        qApp->setProperty("calls", QStringList());
        m_controller->dropConnections();
        QTRY_VERIFY_WITH_TIMEOUT(label("statusConnection").contains(QStringLiteral(" lost (")),
                                 patience);
        QTRY_VERIFY_WITH_TIMEOUT(label("statusConnection").startsWith(QStringLiteral("Connected")),
                                 patience);
        QVERIFY(calls().isEmpty());
    }

    void closingEndsTheModulesWhileTheWindowStillExists() {
        connectWindow();
        qApp->setProperty("calls", QStringList());
        QVERIFY(m_window->close());
        QCOMPARE(calls(), QStringList({"about_to_exit_module with window", "exit_module"}));
    }

    void thePlaceOfAModulesDockIsRemembered() {
        connectWindow();
        m_window->addDockWidget(Qt::LeftDockWidgetArea, fakeDock());
        m_window->close();
        openWindow();
        connectWindow();
        QCOMPARE(m_window->dockWidgetArea(fakeDock()), Qt::LeftDockWidgetArea);
        fakeDock()->hide();
        m_window->close();
        openWindow();
        connectWindow();
        QVERIFY(fakeDock()->isHidden());
    }

    void aDamagedSettingsFileGivesOneNotice() {
        m_window.reset();
        std::ofstream(settingsFile().toStdString()) << "rubbish\n[window]\nrect=x\n";
        openWindow();
        QCoreApplication::processEvents();
        QCOMPARE(m_window->backend().log.toText().count(QStringLiteral("are damaged")), 1);
    }

    void theDataRateIsShown() {
        connectWindow();
        QCOMPARE(label("label_data"), QStringLiteral("no frames"));
        m_controller->sendFrame("fr 1\r\n6d 0");
        m_controller->sendFrame("fr 4\r\n6d 0");
        QTRY_VERIFY_WITH_TIMEOUT(label("label_data").endsWith(QStringLiteral("ago, 2 lost")),
                                 patience);
    }

    void linesThatNoDisplayTakesAreToldInWords() {
        struct : Requester {
            int set_ascii_data(const char*, const char* data) override {
                return std::strlen(data) > 10239 ? -1 : 0;
            }
            void set_mea_started() override {}
            void set_mea_stopped() override {}
        } display;
        connectWindow();
        m_window->backend().registry.add("6dmt2", &display);
        const auto told = [this] {
            return m_window->backend().log.toText().count(QStringLiteral("it stays empty"));
        };
        m_controller->sendFrame("fr 1\r\n6dmt2 " + std::string(10233, '0'));
        QTRY_VERIFY_WITH_TIMEOUT(label("label_data").contains(QStringLiteral("ago, 0 lost")),
                                 patience);
        QCOMPARE(told(), 0);
        m_controller->sendFrame("fr 2\r\n6dmt2 " + std::string(10234, '0'));
        QTRY_VERIFY_WITH_TIMEOUT(
            label("label_data").endsWith(QStringLiteral(", lines too long for the display")),
            patience);
        QTRY_COMPARE_WITH_TIMEOUT(told(), 1, patience);
        QVERIFY(m_window->backend().log.toText().contains(QStringLiteral(
            "lines of 10240 characters arrive, and the display takes at most 10239")));
        m_window->backend().registry.remove("6dmt2", &display);
    }

    void aSessionIsRecordedWithItsParameters() {
        m_controller->answer("version protocol", "1.14");
        m_controller->answer("measurementtool available", "yes");
        m_controller->answer("measurementtool number_of_tools", "2");
        m_controller->answer("measurementtool number_of_references", "1");
        m_controller->answer("measurementtool reference_of_tool b02", "b01");
        m_controller->answer("body calibrated measurementtool_reference b01", "yes");
        connectWindow();
        QSignalSpy changed(m_window.get(), &MainWindow::recordingChanged);
        const QString path = m_folder.filePath(QStringLiteral("r.kestrel"));
        m_window->startRecording(path);
        QVERIFY(changed.wait(patience));
        QCOMPARE(changed.takeFirst().constFirst().toBool(), true);
        QCOMPARE(label("statusRecording"), QStringLiteral("recording"));
        m_controller->sendFrame("fr 1\r\n6dmt 0");
        QTRY_COMPARE_WITH_TIMEOUT(m_window->backend().recorder.status().frames, quint64(1),
                                  patience);
        m_window->stopRecording();
        QTRY_COMPARE_WITH_TIMEOUT(changed.size(), 1, patience);
        QCOMPARE(changed.takeFirst().constFirst().toBool(), false);
        const workbench::LogModel& log = m_window->backend().log;
        QTRY_VERIFY_WITH_TIMEOUT(log.toText().contains(QStringLiteral("Recorded ")), patience);
        QVERIFY(log.toText().contains(QStringLiteral("Recording to ") + path));
        std::ifstream file(path.toStdString());
        kestrel_wire::RecordingReader reader(file);
        kestrel_wire::RecordingHeader header;
        QCOMPARE(reader.readHeader(header), kestrel_wire::RecordingReader::Result::Ok);
        QCOMPARE(header.model, std::string("SCRIPTED"));
        QCOMPARE(header.protocol, std::string("1.14"));
        const std::vector<std::pair<std::string, std::string>> expected{
            {"measurementtool available", "yes"},
            {"measurementtool number_of_tools", "2"},
            {"measurementtool number_of_references", "1"},
            {"measurementtool reference_of_tool b02", "b01"},
            {"body calibrated measurementtool_reference b01", "yes"}};
        QVERIFY(header.parameters == expected);
        for (const char* asked :
             {"measurementtool max_number_of_tools", "measurementtool max_number_of_references",
              "measurementtool output_6dmt", "body calibrated measurementtool b01",
              "body calibrated measurementtool b02", "measurementtool tip_calibrated b01",
              "measurementtool tip_calibrated b02", "measurementtool reference_of_tool b01"}) {
            QCOMPARE(m_controller->count(std::string("kestrel2 get ") + asked), 1);
        }
    }

    void aRecordingThatCannotBeWrittenIsTold() {
        connectWindow();
        QSignalSpy changed(m_window.get(), &MainWindow::recordingChanged);
        m_window->startRecording(QStringLiteral("/no/such/folder/r"));
        QVERIFY(changed.wait(patience));
        QCOMPARE(changed.first().first().toBool(), false);
        QVERIFY(!changed.first().at(1).toString().isEmpty());
        QCOMPARE(label("statusRecording"), QStringLiteral("not recording"));
    }

    void aRecordingDoesNotBeginWhenTheConnectionIsLostBefore() {
        connectWindow();
        QSignalSpy changed(m_window.get(), &MainWindow::recordingChanged);
        m_controller->setSilent(true);
        const QString path = m_folder.filePath(QStringLiteral("lost.kestrel"));
        m_window->startRecording(path);
        m_controller->dropConnections();
        QVERIFY(changed.wait(patience));
        QCOMPARE(changed.first().first().toBool(), false);
        QVERIFY(!QFile::exists(path));
    }

    void everythingToOperateHasANameForAssistiveTools() {
        const auto widgets = m_window->findChildren<QWidget*>();
        for (const QWidget* widget : widgets) {
            const QByteArray kind = widget->metaObject()->className();
            const bool nameless = widget->accessibleName().isEmpty() && widget->isVisible();
            if ((kind == "QLineEdit" || kind == "QTableView" || kind == "QPlainTextEdit")) {
                QVERIFY2(!nameless, qPrintable(widget->objectName()));
            }
        }
    }
};

QTEST_MAIN(TestMainWindow)
#include "test_mainwindow.moc"
