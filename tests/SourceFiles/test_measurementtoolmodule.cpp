#include "SourceFiles/measurementtoolmodule.h"
#include "SourceFiles/mtcalibrationdlg.h"
#include "SourceFiles/mtdatadisplay.h"
#include "SourceFiles/mtsettingsdlg.h"
#include "host_api/metatypes.h"
#include "tests/SourceFiles/display/displayfixture.h"
#include "tests/support/datarows.h"

#include <QAction>
#include <QDockWidget>
#include <QIcon>
#include <QMainWindow>
#include <QtTest>

Q_DECLARE_METATYPE(VersionInfo)

namespace {

// A host with a main window, and the module with its parameters set.
class ModuleFixture {
public:
    explicit ModuleFixture(bool observer = false) {
        module.set_param("CommandManager",
                         QVariant::fromValue(static_cast<IOManager*>(&controller.host)));
        module.set_param("ModuleParent", QVariant::fromValue(static_cast<QWidget*>(&window)));
        module.set_param("BackendVersions", QVariant::fromValue(&controller.versions));
        module.set_param("ObserverMode", observer);
    }
    ~ModuleFixture() { module.exit_module(); }

    DisplayFixture controller; // its own display is not built
    QMainWindow window;
    MeasurementToolModule module;
};

template <typename Widget>
Widget* content(const _GuiElement* element) {
    return qobject_cast<Widget*>(element->content);
}

} // namespace

class TestMeasurementToolModule : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nameAndVersionAreTold() {
        MeasurementToolModule module;
        QCOMPARE(module.get_module_name(), QString("GUI Measurement Tool"));
        QCOMPARE(module.get_module_version(), QString("v1.3.12"));
    }

    void castsByNameAndByInterfaceIdentifier() {
        MeasurementToolModule module;
        QVERIFY(module.qt_metacast("MeasurementToolModule") == &module);
        QVERIFY(module.qt_metacast("ModuleInterface") == static_cast<ModuleInterface*>(&module));
        QVERIFY(module.qt_metacast(qobject_interface_iid<ModuleInterface*>()) ==
                static_cast<ModuleInterface*>(&module));
        QVERIFY(module.qt_metacast("QObject") == static_cast<QObject*>(&module));
        QVERIFY(module.qt_metacast("QWidget") == nullptr);
    }

    void threeEntriesInOrder() {
        ModuleFixture f;
        const QList<_GuiElement*> elements = f.module.get_gui_elements();
        QCOMPARE(elements.size(), 3);
        QVERIFY(content<MtSettingsDlg>(elements[0]) != nullptr);
        QVERIFY(content<MtCalibrationDlg>(elements[1]) != nullptr);
        QVERIFY(content<QDockWidget>(elements[2]) != nullptr);
        for (const _GuiElement* element : elements) {
            QCOMPARE(element->content->parentWidget(), static_cast<QWidget*>(&f.window));
        }
    }

    void entriesAreDescribed_data() {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("menu");
        QTest::addColumn<int>("menuOrder");
        QTest::addColumn<int>("order");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("statusTip");
        QTest::addColumn<QString>("whatsThis");
        QTest::addColumn<int>("active");
        row("settings", 0, "&Tracking", 300, 50, "&Measurement Tool",
            "Open the Measurement Tool settings dialog", "Change the Measurement Tool settings", 0);
        row("calibration", 1, "&Tracking", 300, 60, "Measurement &Tool tip calibration",
            "Open the Measurement Tool tip calibration", "Perform Measurement Tool tip calibration",
            0);
        row("data display", 2, "&View", 400, 270, "&Measurement Tool",
            "Show the Measurement Tool tracking data", "Show the Measurement Tool tracking data",
            1);
    }
    void entriesAreDescribed() {
        QFETCH(int, index);
        ModuleFixture f;
        const _GuiElement* const element = f.module.get_gui_elements().at(index);
        QTEST(element->menu_name, "menu");
        QTEST(element->menu_order_number, "menuOrder");
        QTEST(element->menu_entry_order_number, "order");
        QTEST(element->menu_entry->text(), "text");
        QTEST(element->menu_entry->statusTip(), "statusTip");
        QTEST(element->menu_entry->whatsThis(), "whatsThis");
        QTEST(element->action_active_during_measurement, "active");
        if (index < 2) {
            QCOMPARE(element->menu_entry->parent(), static_cast<QObject*>(&f.module));
        }
    }

    void theDisplayIsInADockThatItsActionShowsAndHides() {
        ModuleFixture f(true);
        const _GuiElement* const element = f.module.get_gui_elements().constFirst();
        auto* const dock = content<QDockWidget>(element);
        QCOMPARE(dock->windowTitle(), QString("Measurement Tool Display"));
        QCOMPARE(element->menu_entry, dock->toggleViewAction());
        QVERIFY(qobject_cast<MtDataDisplay*>(dock->widget()) != nullptr);
        f.window.addDockWidget(Qt::BottomDockWidgetArea, dock);
        dock->hide();
        f.window.show();
        f.controller.host.clearJournal();
        element->menu_entry->trigger();
        QVERIFY(dock->isVisible());
        QCOMPARE(lines(f.controller.host.journal()),
                 QStringList({"register 6dmt", "register 6dmt2", "register 6dmtr"}));
        element->menu_entry->trigger();
        QVERIFY(!dock->isVisible());
        QCOMPARE(element->menu_entry->text(), QString("&Measurement Tool"));
    }

    void observersGetTheDisplayOnly() {
        ModuleFixture f(true);
        const QList<_GuiElement*> elements = f.module.get_gui_elements();
        QCOMPARE(elements.size(), 1);
        QVERIFY(content<QDockWidget>(elements[0]) != nullptr);
    }

    void entriesAreBuiltOnce() {
        ModuleFixture f;
        const QList<_GuiElement*> first = f.module.get_gui_elements();
        f.controller.host.clearJournal();
        const QWidget* const dialog = first[0]->content;
        QCOMPARE(f.module.get_gui_elements(), first);
        QCOMPARE(first[0]->content, dialog);
        QVERIFY(f.controller.host.journal().empty());
    }

    void oldCompactSystemsGetNothing_data() {
        QTest::addColumn<QString>("model");
        QTest::addColumn<VersionInfo>("system");
        QTest::addColumn<int>("entries");
        row("too old", "MINIRIG", VersionInfo(2, 9, 3), 0);
        row("unknown patch is below", "MINIRIG", VersionInfo(2, 9, -1), 0);
        row("minor below", "MINIRIG", VersionInfo(2, 8, 99), 0);
        row("major below", "MINIRIG", VersionInfo(1, 99, 99), 0);
        row("new enough", "MINIRIG", VersionInfo(2, 9, 4), 3);
        row("minor above", "MINIRIG", VersionInfo(2, 10, 0), 3);
        row("major above", "MINIRIG", VersionInfo(3, 0, 0), 3);
        row("longer name", "MINIRIG2 B", VersionInfo(2, 9, 3), 0);
        row("not at the start", "A MINIRIG", VersionInfo(2, 9, 3), 3);
        row("small letters", "Minirig", VersionInfo(2, 9, 3), 3);
        row("another model", "KESTREL", VersionInfo(1, 0, 0), 3);
    }
    void oldCompactSystemsGetNothing() {
        QFETCH(QString, model);
        QFETCH(VersionInfo, system);
        ModuleFixture f;
        f.controller.versions =
            BackendVersions(system, VersionInfo(1, 14, 0), VersionInfo(), model);
        QTEST(f.module.get_gui_elements().size(), "entries");
    }

    void parametersAreConvertedOrNull() {
        ModuleFixture f(true);
        QObject noWidget;
        f.module.set_param("ModuleParent", QVariant::fromValue(&noWidget));
        QCOMPARE(f.module.get_gui_elements().constFirst()->content->parentWidget(),
                 static_cast<QWidget*>(nullptr));
        f.module.exit_module();

        f.module.set_param("ModuleParent", QVariant::fromValue(static_cast<QObject*>(&f.window)));
        QCOMPARE(f.module.get_gui_elements().constFirst()->content->parentWidget(),
                 static_cast<QWidget*>(&f.window));
        f.module.exit_module();

        f.module.set_param("ModuleParent", QVariant::fromValue(&f.window));
        QCOMPARE(f.module.get_gui_elements().constFirst()->content->parentWidget(),
                 static_cast<QWidget*>(&f.window));
    }

    void keysAreCaseSensitiveAndUnknownOnesIgnored() {
        ModuleFixture f(true);
        f.controller.host.clearJournal();
        f.module.set_param("observermode", false);
        f.module.set_param("Observer", false);
        f.module.set_param("", QVariant());
        QCOMPARE(f.module.get_gui_elements().size(), 1);
        QVERIFY(f.controller.host.logTexts().empty());
    }

    void valuesThatAreNoPointersStoreNull() {
        ModuleFixture f(true);
        f.module.set_param("CommandManager", 5);
        f.module.set_param("BackendVersions", QString("1.14"));
        f.module.set_param("ModuleParent", 7);
        f.controller.host.clearJournal();
        QCOMPARE(f.module.get_gui_elements().size(), 1);
        QVERIFY(f.controller.host.journal().empty());
        f.module.about_to_exit_module();
    }

    void aHostThatSetsNothingDoesNotCrashTheModule() {
        MeasurementToolModule module;
        module.about_to_exit_module();
        module.exit_module();
        QCOMPARE(module.get_gui_elements().size(), 3);
        module.about_to_exit_module();
        module.exit_module();
    }

    void exitingFollowsTheContract() {
        ModuleFixture f;
        const QList<_GuiElement*> elements = f.module.get_gui_elements();
        const QList<QPointer<QWidget>> widgets = {elements[0]->content, elements[1]->content,
                                                  elements[2]->content};
        QStringList deleted;
        for (int i = 0; i < 3; ++i) {
            connect(widgets[i], &QObject::destroyed, this,
                    [&deleted, i] { deleted << QString::number(i); });
        }
        f.controller.host.clearJournal();
        f.module.about_to_exit_module();
        QCOMPARE(lines(f.controller.host.journal()), QStringList({"unregister_measurement"}));
        f.module.exit_module();
        QCOMPARE(deleted, QStringList({"0", "1", "2"}));
        QCOMPARE(f.controller.host.journal().size(), std::size_t(1));
        for (int i = 0; i < 3; ++i) {
            QVERIFY(widgets[i].isNull());
            QVERIFY(elements[i]->content == nullptr);
        }
        QVERIFY(elements[2]->menu_entry == nullptr);
        QCOMPARE(f.module.get_gui_elements().size(), 3); // built anew
    }

    void anOldMenuEntryThatGoesLeavesTheNewOneAlone() {
        ModuleFixture f;
        const QList<_GuiElement*> elements = f.module.get_gui_elements();
        QAction* const old = elements[0]->menu_entry;
        f.module.exit_module();
        f.module.get_gui_elements();
        QAction* const renewed = elements[0]->menu_entry;
        QVERIFY(renewed != old);
        delete old;
        QCOMPARE(elements[0]->menu_entry, renewed);
        delete renewed;
        QVERIFY(elements[0]->menu_entry == nullptr);
    }

    void buildingAgainAndAgainLeavesNoMenuEntriesBehind() {
        ModuleFixture f;
        const QList<_GuiElement*> elements = f.module.get_gui_elements();
        constexpr int builds = 5;
        for (int build = 0; build < builds; ++build) {
            const QPointer<QAction> before = elements[1]->menu_entry;
            f.module.exit_module();
            f.module.get_gui_elements();
            QVERIFY(!before.isNull()); // a host may take it out of its menu late
            QVERIFY(elements[1]->menu_entry != nullptr);
            QVERIFY(elements[1]->menu_entry != before);
            const int kept = f.module.findChildren<QAction*>().size();
            QCOMPARE(kept, 4); // settings and calibration, of this build and of the one before
        }
    }

    void exitingWithAVisibleDisplayEndsItsSubscriptions() {
        ModuleFixture f(true);
        auto* const dock = content<QDockWidget>(f.module.get_gui_elements().constFirst());
        f.window.addDockWidget(Qt::BottomDockWidgetArea, dock);
        f.window.show();
        QVERIFY(!f.controller.host.requesters("6dmt").empty());
        f.module.about_to_exit_module();
        f.module.exit_module();
        QVERIFY(f.controller.host.requesters("6dmt").empty());
        QVERIFY(f.controller.host.requesters("6dmt2").empty());
        QVERIFY(f.controller.host.requesters("6dmtr").empty());
        QVERIFY(f.controller.host.measurementRequesters().empty());
    }

    void theHostsWindowMayGoFirst() {
        ModuleFixture f;
        auto window = std::make_unique<QMainWindow>();
        f.module.set_param("ModuleParent",
                           QVariant::fromValue(static_cast<QWidget*>(window.get())));
        const QList<_GuiElement*> elements = f.module.get_gui_elements();
        f.module.about_to_exit_module();
        window.reset();
        for (const _GuiElement* element : elements) {
            QVERIFY(element->content == nullptr);
        }
        f.module.about_to_exit_module();
        f.module.exit_module();
    }

    void aWindowThatGoesWithoutAWordLeavesNoRegistration() {
        ModuleFixture f;
        auto window = std::make_unique<QMainWindow>();
        f.module.set_param("ModuleParent",
                           QVariant::fromValue(static_cast<QWidget*>(window.get())));
        auto* const dock = content<QDockWidget>(f.module.get_gui_elements().constLast());
        window->addDockWidget(Qt::BottomDockWidgetArea, dock);
        window->show();
        QVERIFY(!f.controller.host.requesters("6dmt2").empty());
        QVERIFY(!f.controller.host.measurementRequesters().empty());
        window.reset();
        QVERIFY(f.controller.host.requesters("6dmt2").empty());
        QVERIFY(f.controller.host.measurementRequesters().empty());
        f.controller.host.stopMeasurement();
        f.module.about_to_exit_module();
        f.module.exit_module();
    }

    void imagesAreThere_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QSize>("size");
        const QSize frame(250, 220);
        for (const char* name : {"image1", "image2", "image3", "image4"}) {
            row(name, QString(":/%1.png").arg(name), frame);
        }
        row("lock", ":/lock.png", QSize(64, 64));
        QTest::newRow("probe") << "://mt_klein.PNG" << QSize(100, 140);
        row("icon", ":/images/icons/kestrel_16x16.png", QSize(16, 16));
    }
    void imagesAreThere() {
        QFETCH(QString, path);
        const QImage image(path);
        QTEST(image.size(), "size");
        QVERIFY(image.hasAlphaChannel());
        QVERIFY(!QIcon(path).isNull());
    }

    void theFramesShareTheTip() {
        const QPoint tip(125, 183);
        const QImage first(":/image1.png");
        for (const char* name : {":/image2.png", ":/image3.png", ":/image4.png"}) {
            const QImage other(name);
            QVERIFY(other != first);
            QVERIFY(qRed(other.pixel(tip)) > 150 && qGreen(other.pixel(tip)) < 120);
        }
    }
};

QTEST_MAIN(TestMeasurementToolModule)
#include "test_measurementtoolmodule.moc"
