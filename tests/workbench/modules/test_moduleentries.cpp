#include "host_api/guielement.h"
#include "tests/support/datarows.h"
#include "workbench/modules/entrystates.h"
#include "workbench/modules/menuarranger.h"
#include "workbench/modules/moduleentries.h"

#include <QApplication>
#include <QHelpEvent>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QStyleFactory>
#include <QToolTip>
#include <QtTest>

using namespace workbench;

Q_DECLARE_METATYPE(workbench::Needs)
Q_DECLARE_METATYPE(workbench::Situation)

namespace {

constexpr int patience = 5000;
const Needs none = Need::Nothing;

// Connected, and nothing is in the way of anything.
Situation connected() {
    Situation now;
    now.isChosen = true;
    now.isConnected = true;
    return now;
}

Situation with(bool Situation::*fact, bool value = true) {
    Situation now = connected();
    now.*fact = value;
    return now;
}

} // namespace

/// Entries in the menus: whether they can be used, and if not, why.
class TestModuleEntries : public QObject {
    Q_OBJECT

    std::unique_ptr<QMainWindow> m_window;
    MenuArranger* m_menus = nullptr;
    std::unique_ptr<EntryStates> m_states;
    std::unique_ptr<ModuleEntries> m_entries;
    QAction m_settings{QStringLiteral("&Settings")};
    QAction m_display{QStringLiteral("&Display")};
    _GuiElement m_settingsEntry{&m_settings, 50, QStringLiteral("&Tracking"), 300, nullptr, 0};
    _GuiElement m_displayEntry{&m_display, 270, QStringLiteral("&View"), 400, nullptr, 1};

    // "menu: entry, entry" for each menu; those that cannot be used in brackets.
    QStringList shown() const {
        QStringList result;
        const QList<QAction*> menus = m_window->menuBar()->actions();
        for (const QAction* menu : menus) {
            QStringList texts{};
            const QList<QAction*> entries = menu->menu()->actions();
            for (const QAction* entry : entries) {
                texts += entry->isEnabled() ? entry->text()
                                            : QLatin1Char('(') + entry->text() + QLatin1Char(')');
            }
            result += menu->text() + QStringLiteral(": ") + texts.join(QStringLiteral(", "));
        }
        return result;
    }

    QMenu* menu(const char* title) const {
        const QList<QAction*> menus = m_window->menuBar()->actions();
        for (const QAction* menu : menus) {
            if (menu->text() == QLatin1String(title)) {
                return menu->menu();
            }
        }
        return nullptr;
    }

    QString reason(const char* title) const {
        return menu(title)->actions().constFirst()->toolTip();
    }

private Q_SLOTS:
    void init() {
        m_window = std::make_unique<QMainWindow>();
        m_menus = new MenuArranger(m_window->menuBar());
        m_states = std::make_unique<EntryStates>();
        m_entries = std::make_unique<ModuleEntries>(*m_menus, *m_states);
    }
    void cleanup() {
        m_entries->withdraw();
        m_entries.reset();
        m_states.reset();
        m_window.reset();
    }

    void theReasonIsTheOneThatGoesAwayLast_data() {
        QTest::addColumn<Needs>("needs");
        QTest::addColumn<Situation>("now");
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<QString>("reason");
        const Situation away{};
        Situation observed = with(&Situation::isObserver);
        const Needs dialog = Need::Connection | Need::NoMeasurement | Need::Unlocked;
        row("nothing is needed", none, away, true, QString());
        row("connected", dialog, connected(), true, QString());
        row("not connected", dialog, away, false, QString("Not connected to a controller"));
        row("nobody to be disconnected from", Needs(Need::Choice), away, false,
            QString("Not connected to a controller"));
        row("a connection that is being made can be ended", Needs(Need::Choice),
            with(&Situation::isConnected, false), true, QString());
        row("measuring", dialog, with(&Situation::isMeasuring), false,
            QString("A measurement is running"));
        row("not measuring", Need::Connection | Need::Measurement, connected(), false,
            QString("No measurement is running"));
        row("calibrating", Needs(Need::NoCalibration), with(&Situation::isCalibrating), false,
            QString("The controller is busy: a calibration is running"));
        row("recording", Needs(Need::NoRecording), with(&Situation::isRecording), false,
            QString("A recording is running"));
        row("about to record", Needs(Need::NoRecording), with(&Situation::isStartingToRecord),
            false, QString("A recording is about to begin"));
        row("a recording that is about to begin can be stopped", Needs(Need::Recording),
            with(&Situation::isStartingToRecord), true, QString());
        row("not recording", Needs(Need::Recording), connected(), false,
            QString("No recording is running"));
        Situation replayed = with(&Situation::isReplaying);
        replayed.isRecording = true;
        row("replaying", Need::Connection | Need::NoReplay | Need::NoRecording, replayed, false,
            QString("A recording is being played"));
        row("exporting", Needs(Need::NoExport), with(&Situation::isExporting), false,
            QString("A recording is being exported already"));
        row("the simulator starts", Needs(Need::NoSimulatorStart),
            with(&Situation::isSimulatorStarting), false,
            QString("The simulated controller is being started"));
        row("observer", Need::Operator | Need::Offer, observed, false,
            QString("Not for observers: the workbench was started with --observer"));
        row("not offered", Need::Operator | Need::Offer, connected(), false,
            QString("The modules offer nothing for this controller"));
        row("no modules", Need::Modules | Need::Connection, with(&Situation::hasModules, false),
            false, QString("No module is loaded: see Help, Modules"));
        row("locked", dialog, with(&Situation::isLocked), true,
            QString("The configuration is locked: it can be read, but not changed"));
        Situation lockedAndMeasuring = with(&Situation::isLocked);
        lockedAndMeasuring.isMeasuring = true;
        row("locked and measuring", dialog, lockedAndMeasuring, false,
            QString("A measurement is running"));
        observed.isConnected = false;
        row("observer, not connected", Need::Connection | Need::Operator, observed, false,
            QString("Not connected to a controller"));
    }
    void theReasonIsTheOneThatGoesAwayLast() {
        QFETCH(Needs, needs);
        QFETCH(Situation, now);
        QFETCH(QString, reason);
        QAction entry(QStringLiteral("&Entry"));
        entry.setStatusTip(QStringLiteral("what it does"));
        EntryStates states;
        states.add(&entry, needs);
        states.apply(now);
        QTEST(entry.isEnabled(), "enabled");
        QCOMPARE(entry.toolTip(), reason.isEmpty() ? QStringLiteral("Entry") : reason);
        QCOMPARE(entry.statusTip(), reason.isEmpty() ? QStringLiteral("what it does") : reason);
    }

    void whenTheReasonIsGoneTheEntryHasItsOwnTextsAgain() {
        QAction entry(QStringLiteral("Entry"));
        entry.setToolTip(QStringLiteral("its tip"));
        entry.setStatusTip(QStringLiteral("its status"));
        EntryStates states;
        states.apply(connected());
        states.add(&entry, Need::Connection | Need::NoMeasurement);
        states.apply(with(&Situation::isMeasuring));
        states.apply(Situation());
        QCOMPARE(entry.toolTip(), QStringLiteral("Not connected to a controller"));
        entry.setStatusTip(QStringLiteral("new status")); // by its owner
        states.apply(connected());
        QVERIFY(entry.isEnabled());
        QCOMPARE(entry.toolTip(), QStringLiteral("its tip"));
        QCOMPARE(entry.statusTip(), QStringLiteral("new status"));
    }

    void anEntryThatItsOwnerHasDisabledStaysSo() {
        QAction entry(QStringLiteral("Entry"));
        entry.setEnabled(false);
        EntryStates states;
        states.add(&entry, Need::Connection);
        states.apply(connected());
        QVERIFY(!entry.isEnabled());
    }

    void anEntryThatIsTakenOutIsLeftAsItWasFound() {
        QAction entry(QStringLiteral("Entry"));
        EntryStates states;
        states.add(&entry, Need::Connection);
        QVERIFY(!entry.isEnabled());
        states.remove(&entry);
        QVERIFY(entry.isEnabled());
        QCOMPARE(entry.toolTip(), QStringLiteral("Entry"));
        states.apply(Situation());
        QVERIFY(entry.isEnabled());
    }

    void entriesThatMustNotAreDisabledWhileMeasuring() {
        m_entries->offer({&m_settingsEntry, &m_displayEntry}, false);
        m_states->apply(with(&Situation::isMeasuring));
        QVERIFY(!m_settings.isEnabled());
        QVERIFY(m_display.isEnabled());
        QAction late(QStringLiteral("late"));
        _GuiElement lateEntry{&late, 60, QStringLiteral("&Tracking"), 300, nullptr, 0};
        m_entries->offer({&m_settingsEntry, &m_displayEntry, &lateEntry}, false);
        QVERIFY(!m_settings.isEnabled());
        QVERIFY(!late.isEnabled());
        m_states->apply(connected());
        QVERIFY(m_settings.isEnabled());
        QVERIFY(late.isEnabled());
        m_entries->withdraw();
    }

    void theMenuOfTheModulesIsThereBeforeAnyOfThemIsKnown() {
        m_entries->withdraw();
        QCOMPARE(shown(), QStringList({"&Tracking: (&Entries of modules)"}));
        QCOMPARE(reason("&Tracking"), QStringLiteral("Not connected to a controller"));
        m_states->apply(connected());
        QCOMPARE(shown(), QStringList({"&Tracking: (&Entries of modules)"}));
        QCOMPARE(reason("&Tracking"),
                 QStringLiteral("The modules offer nothing for this controller"));
        m_states->apply(with(&Situation::hasModules, false));
        QCOMPARE(reason("&Tracking"), QStringLiteral("No module is loaded: see Help, Modules"));
        m_states->apply(with(&Situation::isObserver));
        QVERIFY(reason("&Tracking").contains(QStringLiteral("--observer")));
    }

    void entriesThatWereOfferedHaveAStandInUntilTheyAreAgain() {
        m_states->apply(connected());
        m_entries->offer({&m_settingsEntry, &m_displayEntry}, false);
        QCOMPARE(shown(), QStringList({"&Tracking: &Settings", "&View: &Display"}));
        m_states->apply(Situation());
        QCOMPARE(shown(), QStringList({"&Tracking: (&Settings)", "&View: &Display"}));
        m_entries->withdraw();
        QCOMPARE(shown(), QStringList({"&Tracking: (&Settings)", "&View: (&Display)"}));
        QVERIFY(!menu("&View")->actions().contains(&m_display));
        QVERIFY(m_settings.isEnabled()); // it is nobody's any more
        QCOMPARE(reason("&View"), QStringLiteral("Not connected to a controller"));
        m_states->apply(connected());
        m_entries->offer({&m_settingsEntry, &m_displayEntry}, false);
        QCOMPARE(shown(), QStringList({"&Tracking: &Settings", "&View: &Display"}));
        QVERIFY(menu("&View")->actions().contains(&m_display));
        m_entries->withdraw();
    }

    void anEntryThatIsNoMoreOfferedIsForgotten() {
        m_states->apply(connected());
        m_entries->offer({&m_settingsEntry, &m_displayEntry}, false);
        m_entries->offer({&m_displayEntry}, false);
        QCOMPARE(shown(), QStringList({"&Tracking: (&Entries of modules)", "&View: &Display"}));
        m_entries->withdraw();
        QCOMPARE(m_entries->known().size(), 1);
    }

    void anObserverSeesWhatOthersAreOfferedAndWhyHeIsNot() {
        m_entries->setKnown({{QStringLiteral("&Tracking"), 300, QStringLiteral("&Settings"), 50},
                             {QStringLiteral("&View"), 400, QStringLiteral("&Display"), 270}});
        m_states->apply(with(&Situation::isObserver));
        m_entries->offer({&m_displayEntry}, true);
        QCOMPARE(shown(), QStringList({"&Tracking: (&Settings)", "&View: &Display"}));
        QCOMPARE(reason("&Tracking"),
                 QStringLiteral("Not for observers: the workbench was started with --observer"));
        m_entries->withdraw();
        QCOMPARE(m_entries->known().size(), 2);
    }

    void theyAreBounded() {
        QVector<EntryMemo> many;
        for (int i = 0; i < 1000; ++i) {
            many += EntryMemo{QStringLiteral("&Tracking"), 300, QString::number(i), i};
        }
        m_entries->setKnown(many);
        QCOMPARE(m_entries->known().size(), int(ModuleEntries::maxKnown));
        m_entries->setKnown({});
    }

    void theMouseIsToldByTheToolTip() {
        m_entries->withdraw();
        QMenu* const tracking = menu("&Tracking");
        m_window->show();
        tracking->popup(m_window->pos());
        const QPoint place = tracking->actionGeometry(tracking->actions().constFirst()).center();
        QHelpEvent event(QEvent::ToolTip, place, tracking->mapToGlobal(place));
        QVERIFY(QApplication::sendEvent(tracking, &event));
        QTRY_COMPARE_WITH_TIMEOUT(QToolTip::text(), QStringLiteral("Not connected to a controller"),
                                  patience);
        tracking->close();
        QToolTip::hideText();
    }

    // Not every style lets the keys reach entries that are disabled.
    void theKeyboardIsToldByTheStatusTip() {
        m_entries->withdraw();
        QMenu* const tracking = menu("&Tracking");
        const std::unique_ptr<QStyle> style(QStyleFactory::create(QStringLiteral("Windows")));
        QVERIFY(style->styleHint(QStyle::SH_Menu_AllowActiveAndDisabled) != 0);
        tracking->setStyle(style.get());
        m_window->statusBar();
        m_window->show();
        m_window->menuBar()->setActiveAction(tracking->menuAction());
        QTest::keyClick(tracking, Qt::Key_Down);
        QTRY_COMPARE_WITH_TIMEOUT(m_window->statusBar()->currentMessage(),
                                  QStringLiteral("Not connected to a controller"), patience);
        tracking->close();
        tracking->setStyle(nullptr);
    }
};

QTEST_MAIN(TestModuleEntries)
#include "test_moduleentries.moc"
