#include "workbench/modules/menuarranger.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QSignalSpy>
#include <QtTest>

using workbench::MenuArranger;
using Owner = workbench::MenuEntry::Owner;

class TestMenuArranger : public QObject {
    Q_OBJECT

    std::unique_ptr<QMenuBar> m_bar;
    MenuArranger* m_menus = nullptr;

    QAction* action(const char* text) { return new QAction(QLatin1String(text), m_bar.get()); }

    QStringList titles() const {
        QStringList result;
        const QList<QAction*> menus = m_bar->actions();
        for (const QAction* menu : menus) {
            result += menu->text();
        }
        return result;
    }

    QStringList entries(int menu) const {
        QStringList result;
        const QList<QAction*> actions = m_bar->actions().at(menu)->menu()->actions();
        for (const QAction* entry : actions) {
            result += entry->isSeparator() ? QStringLiteral("-") : entry->text();
        }
        return result;
    }

private Q_SLOTS:
    void init() {
        m_bar = std::make_unique<QMenuBar>();
        m_menus = new MenuArranger(m_bar.get());
    }

    void menusAndEntriesStandInAscendingOrder() {
        m_menus->add({"&View", 400, 270, action("display")});
        m_menus->add({"&Tracking", 300, 60, action("calibration")});
        m_menus->add({"&Help", 900, 1, action("about")});
        m_menus->add({"&Tracking", 300, 50, action("settings")});
        m_menus->add({"&File", 100, 1, action("open")});
        m_menus->arrange();
        QCOMPARE(titles(), QStringList({"&File", "&Tracking", "&View", "&Help"}));
        QCOMPARE(entries(1), QStringList({"settings", "calibration"}));
    }

    void equalNumbersKeepTheOrderOfAdding() {
        m_menus->add({"&B", 300, 50, action("first")});
        m_menus->add({"&A", 300, 50, action("other")});
        m_menus->add({"&B", 300, 50, action("second")});
        m_menus->arrange();
        QCOMPARE(titles(), QStringList({"&B", "&A"}));
        QCOMPARE(entries(0), QStringList({"first", "second"}));
    }

    void aLineIsDrawnWhereTheHundredsChange() {
        for (const int order : {10, 20, 270, 280}) {
            m_menus->add({"&View", 400, order, action(QByteArray::number(order))});
        }
        m_menus->arrange();
        QCOMPARE(entries(0), QStringList({"10", "20", "-", "270", "280"}));
    }

    void menusOfTheSameTitleAreOneAndTheLowestNumberCounts() {
        m_menus->add({"&View", 400, 10, action("own")});
        m_menus->add({"Tracking", 300, 10, action("settings")});
        m_menus->add({"View", 200, 20, action("display")});
        m_menus->arrange();
        QCOMPARE(titles(), QStringList({"&View", "Tracking"}));
        QCOMPARE(entries(0), QStringList({"own", "display"}));
    }

    void entriesOfModulesGoAndComeBack() {
        m_menus->add({"&File", 100, 1, action("open")});
        auto* const settings = action("settings");
        m_menus->add({"&Tracking", 300, 50, settings, Owner::Module});
        m_menus->arrange();
        QVERIFY(m_menus->has("Tracking"));
        m_menus->remove(Owner::Module);
        QVERIFY(!m_menus->has("&Tracking"));
        m_menus->arrange();
        delete settings;
        QCOMPARE(titles(), QStringList({"&File"}));
        m_menus->add({"&Tracking", 300, 50, action("settings"), Owner::Module});
        m_menus->arrange();
        QCOMPARE(titles(), QStringList({"&File", "&Tracking"}));
    }

    void everyMenuShowsToolTipsAndTellsThatItOpens() {
        m_menus->add({"&File", 100, 1, action("open")});
        m_menus->add({"&View", 400, 1, action("log")});
        m_menus->arrange();
        QSignalSpy opening(m_menus, &MenuArranger::aboutToShow);
        const QList<QAction*> menus = m_bar->actions();
        QCOMPARE(menus.size(), 2);
        for (const QAction* menu : menus) {
            QVERIFY2(menu->menu()->toolTipsVisible(), qPrintable(menu->text()));
            menu->menu()->popup(QPoint(0, 0));
            menu->menu()->close();
        }
        QCOMPARE(opening.count(), 2);
    }

    void anActionThatIsDeletedIsGone() {
        auto* const settings = action("settings");
        m_menus->add({"&Tracking", 300, 50, settings, Owner::Module});
        delete settings;
        QVERIFY(!m_menus->has("&Tracking"));
        m_menus->arrange();
        QVERIFY(titles().isEmpty());
    }
};

QTEST_MAIN(TestMenuArranger)
#include "test_menuarranger.moc"
