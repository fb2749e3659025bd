#include "host_api/metatypes.h"
#include "probecheck/probecheckmodule.h"
#include "tests/probecheck/probefixture.h"

#include <QAction>
#include <QDockWidget>
#include <QMainWindow>
#include <QStandardPaths>
#include <QtTest>

Q_DECLARE_METATYPE(VersionInfo)

namespace {

constexpr int patienceMs = 5000;

// A host with a main window, and the module with its parameters set.
class ModuleFixture {
public:
    ModuleFixture() {
        module.set_param("CommandManager",
                         QVariant::fromValue(static_cast<IOManager*>(&controller.host)));
        module.set_param("ModuleParent", QVariant::fromValue(static_cast<QWidget*>(window.get())));
        module.set_param("BackendVersions", QVariant::fromValue(&controller.versions));
        module.set_param("ObserverMode", true); // is of no concern
    }
    ~ModuleFixture() { module.exit_module(); }

    QDockWidget* dock(int index) {
        return qobject_cast<QDockWidget*>(module.get_gui_elements().at(index)->content);
    }

    ProbeController controller;
    std::unique_ptr<QMainWindow> window = std::make_unique<QMainWindow>();
    ProbeCheckModule module;
};

} // namespace

class TestProbeCheckModule : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }

    void nameAndVersionAreTold() {
        ProbeCheckModule module;
        QCOMPARE(module.get_module_name(), QString("GUI Measurement Tool check"));
        QCOMPARE(module.get_module_version(), QString("v1.0.0"));
    }

    void castsByNameAndByInterfaceIdentifier() {
        ProbeCheckModule module;
        QVERIFY(module.qt_metacast("ProbeCheckModule") == &module);
        QVERIFY(module.qt_metacast("ModuleInterface") == static_cast<ModuleInterface*>(&module));
        QVERIFY(module.qt_metacast(qobject_interface_iid<ModuleInterface*>()) ==
                static_cast<ModuleInterface*>(&module));
    }

    void entriesAreDescribed_data() {
        QTest::addColumn<int>("index");
        QTest::addColumn<int>("order");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("name");
        QTest::newRow("tip check") << 0 << 70 << "Measurement Tool tip &check"
                                   << "Measurement Tool Tip Check"
                                   << "ProbeTipCheckDock";
        QTest::newRow("points") << 1 << 80 << "Measurement Tool &points"
                                << "Measurement Tool Points"
                                << "ProbePointsDock";
    }
    void entriesAreDescribed() {
        QFETCH(int, index);
        ModuleFixture f;
        const _GuiElement* const element = f.module.get_gui_elements().at(index);
        QCOMPARE(element->menu_name, QString("&Tracking"));
        QCOMPARE(element->menu_order_number, 300);
        QCOMPARE(element->action_active_during_measurement, 1);
        QTEST(element->menu_entry_order_number, "order");
        QTEST(element->menu_entry->text(), "text");
        QVERIFY(!element->menu_entry->statusTip().isEmpty());
        const QDockWidget* const dock = f.dock(index);
        QTEST(dock->windowTitle(), "title");
        QTEST(dock->objectName(), "name");
        QCOMPARE(element->menu_entry, dock->toggleViewAction());
        QCOMPARE(dock->parentWidget(), static_cast<QWidget*>(f.window.get()));
    }

    void docksStayHiddenUntilTheyAreWanted() {
        ModuleFixture f;
        for (int i = 0; i < f.module.get_gui_elements().size(); ++i) {
            f.window->addDockWidget(Qt::RightDockWidgetArea, f.dock(i));
        }
        f.window->show();
        QVERIFY(QTest::qWaitForWindowExposed(f.window.get()));
        const QList<_GuiElement*> elements = f.module.get_gui_elements();
        for (_GuiElement* element : elements) {
            QVERIFY(!element->content->isVisible());
            element->menu_entry->trigger();
            QVERIFY(element->content->isVisible());
        }
    }

    void nothingIsAskedUntilADockIsSeen() {
        ModuleFixture f;
        f.module.get_gui_elements();
        f.controller.host.startMeasurement();
        QCoreApplication::processEvents();
        QCOMPARE(probeJournal(f.controller.host), QStringList("register_measurement"));
    }

    void entriesAreBuiltOnce() {
        ModuleFixture f;
        const QList<_GuiElement*> first = f.module.get_gui_elements();
        QCOMPARE(f.module.get_gui_elements(), first);
        QCOMPARE(f.controller.host.measurementRequesters().size(), std::size_t(1));
    }

    void afterExitTheyAreBuiltAnew() {
        ModuleFixture f;
        const QPointer<QWidget> first = f.module.get_gui_elements().constFirst()->content;
        f.module.about_to_exit_module();
        QVERIFY(f.controller.host.measurementRequesters().empty());
        QVERIFY(!first.isNull());
        f.module.exit_module();
        QVERIFY(first.isNull());
        QVERIFY(!f.module.get_gui_elements().isEmpty());
        QCOMPARE(f.controller.host.measurementRequesters().size(), std::size_t(1));
    }

    void exitWithoutWarningTakesEverythingBack() {
        ModuleFixture f;
        f.module.get_gui_elements();
        f.module.exit_module();
        QVERIFY(f.controller.host.measurementRequesters().empty());
        f.module.exit_module(); // again
    }

    void theHostsWindowTakesTheDocksAlong() {
        ModuleFixture f;
        const QList<_GuiElement*> elements = f.module.get_gui_elements();
        f.window.reset();
        for (const _GuiElement* element : elements) {
            QVERIFY(element->content == nullptr);
            QVERIFY(element->menu_entry == nullptr);
        }
        QVERIFY(f.controller.host.measurementRequesters().empty());
    }

    void aDockThatTheHostDeletesIsForgotten() {
        ModuleFixture f;
        const QList<_GuiElement*> elements = f.module.get_gui_elements();
        for (const _GuiElement* element : elements) {
            QCOMPARE(f.controller.host.measurementRequesters().size(), std::size_t(1));
            delete element->content;
        }
        QVERIFY(f.controller.host.measurementRequesters().empty());
    }

    void aHostWithoutObjectsIsBorne() {
        ProbeCheckModule module;
        QVERIFY(!module.get_gui_elements().isEmpty());
        module.about_to_exit_module();
        module.exit_module();
    }

    void anOldCompactSystemGetsNothing() {
        ModuleFixture f;
        f.controller.versions = BackendVersions(VersionInfo(2, 9, 3), VersionInfo(1, 14, 0),
                                                VersionInfo(), QStringLiteral("MINIRIG"));
        QVERIFY(f.module.get_gui_elements().isEmpty());
        QVERIFY(probeJournal(f.controller.host).isEmpty());
    }

    void aHostMayExitTheModuleInsideItsRegistration() {
        ModuleFixture f;
        f.controller.host.onOperation = [&f](const std::string& line) {
            if (line == "register_measurement") {
                f.controller.host.onOperation = {};
                f.module.exit_module();
            }
        };
        QVERIFY(f.module.get_gui_elements().isEmpty());
        QVERIFY(f.controller.host.measurementRequesters().empty());
    }

    void whatIsAskedWhenADockIsSeenAndWhenAMeasurementRuns() {
        ModuleFixture f;
        f.window->addDockWidget(Qt::RightDockWidgetArea, f.dock(0));
        f.window->show();
        f.controller.host.clearJournal();
        f.dock(0)->show();
        const QStringList tools = {"get_string measurementtool available",
                                   "get_int measurementtool number_of_tools",
                                   "get_string body calibrated measurementtool b01",
                                   "get_string measurementtool tip_calibrated b01",
                                   "get_string measurementtool reference_of_tool b01",
                                   "get_string body calibrated measurementtool b02",
                                   "get_string measurementtool tip_calibrated b02",
                                   "get_string measurementtool reference_of_tool b02"};
        QTRY_COMPARE_WITH_TIMEOUT(probeJournal(f.controller.host).mid(0, tools.size()), tools,
                                  patienceMs);
        f.controller.host.clearJournal();
        f.controller.host.startMeasurement();
        QTRY_VERIFY_WITH_TIMEOUT(probeJournal(f.controller.host).contains("register 6dmtr"),
                                 patienceMs);
        const QStringList journal = probeJournal(f.controller.host);
        QCOMPARE(journal.filter(QRegularExpression("^(set|send) ")),
                 QStringList(
                     {"set output active chmon 6dmt2 yes", "set output active chmon 6dmtr yes"}));
        QCOMPARE(journal.filter(QRegularExpression("^register")),
                 QStringList({"register fr", "register ts", "register 6dmt", "register 6dmt2",
                              "register 6dmtr"}));
        f.controller.host.clearJournal();
        f.dock(0)->hide();
        QTRY_COMPARE_WITH_TIMEOUT(probeJournal(f.controller.host).size(), 5, patienceMs);
        QVERIFY(f.controller.host.requesters("6dmt2").empty());
    }
};

QTEST_MAIN(TestProbeCheckModule)
#include "test_probecheckmodule.moc"
