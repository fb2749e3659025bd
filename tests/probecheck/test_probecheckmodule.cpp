#include "host_api/metatypes.h"
#include "probecheck/data/probedata.h"
#include "probecheck/data/resultline.h"
#include "probecheck/probecheckmodule.h"
#include "tests/probecheck/probefixture.h"
#include "tests/support/datarows.h"

#include <QAction>
#include <QDockWidget>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonObject>
#include <QLabel>
#include <QMainWindow>
#include <QPushButton>
#include <QStandardPaths>
#include <QtTest>

#include <algorithm>
#include <limits>

Q_DECLARE_METATYPE(VersionInfo)
Q_DECLARE_METATYPE(std::string)

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

    void aResultIsNoFinerThanItMeans_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QJsonValue>("value");
        QTest::addColumn<QByteArray>("line");
        const auto line = [](const char* text) { return QByteArray(text); };
        row("s", QString("duration_s"), QJsonValue(1.0000000002037268),
            line(R"({"duration_s":1})"));
        row("s up", QString("duration_s"), QJsonValue(0.9996), line(R"({"duration_s":1})"));
        row("ms", QString("duration_s"), QJsonValue(10.0614), line(R"({"duration_s":10.061})"));
        row("mm", QString("x_mm"), QJsonValue(-12.345678901), line(R"({"x_mm":-12.3457})"));
        row("no minus zero", QString("x_mm"), QJsonValue(-1e-17), line(R"({"x_mm":0})"));
        row("axes", QString("error_xyz_mm"), QJsonValue(QJsonArray{0.300004, -0.39996, 0.0}),
            line(R"({"error_xyz_mm":[0.3,-0.4,0]})"));
        row("another", QString("coverage"), QJsonValue(0.034567), line(R"({"coverage":0.0346})"));
        row("whole", QString("poses"), QJsonValue(7200), line(R"({"poses":7200})"));
        row("huge", QString("x_mm"), QJsonValue(1e300), line(R"({"x_mm":1e+300})"));
        row("none", QString("x_mm"), QJsonValue(std::numeric_limits<double>::infinity()),
            line(R"({"x_mm":null})"));
        row("text", QString("tool"), QJsonValue("M1"), line(R"({"tool":"M1"})"));
    }
    void aResultIsNoFinerThanItMeans() {
        QFETCH(QString, key);
        QFETCH(QJsonValue, value);
        QTEST(resultLine({{key, value}}), "line");
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
        row("tip check", 0, 70, "Measurement Tool tip &check", "Measurement Tool Tip Check",
            "ProbeTipCheckDock");
        row("points", 1, 80, "Measurement Tool &points", "Measurement Tool Points",
            "ProbePointsDock");
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

    void aModuleThatIsNeverAskedForItsEntriesEnds() {
        ModuleFixture f;
        f.module.about_to_exit_module();
        f.module.exit_module();
        QVERIFY(probeJournal(f.controller.host).isEmpty());
    }

    void samplesThatNobodyFetchedInTimeAreTold() {
        ProbeController controller;
        ProbeData data(&controller.host, &controller.versions);
        data.serve(this);
        data.enter();
        data.setWanted(this, true);
        controller.host.startMeasurement();
        QTRY_VERIFY_WITH_TIMEOUT(data.isReceiving(), patienceMs);
        qRegisterMetaType<ProbeSamples>("ProbeSamples");
        QSignalSpy lost(&data, &ProbeData::samplesLost);
        constexpr int toolCount = 255;
        const std::vector<probelines::Tool> tools(toolCount);
        const int frames = static_cast<int>(LineTap::mostSamples) / toolCount + 2;
        for (int frame = 1; frame <= frames; ++frame) {
            controller.host.deliver(probelines::frame(static_cast<unsigned>(frame)));
            controller.host.deliver(probelines::tools(tools));
        }
        controller.host.deliver(probelines::frame(static_cast<unsigned>(frames) + 1));
        QTRY_VERIFY_WITH_TIMEOUT(!lost.isEmpty(), patienceMs);
        QCOMPARE(lost.at(0).at(0).toInt(),
                 frames * toolCount - static_cast<int>(LineTap::mostSamples));
        data.leave();
    }

    // A host may have events handled inside what it is told of a sample.
    void samplesAreNotToldInsideOthers() {
        ProbeController controller;
        ProbeData data(&controller.host, &controller.versions);
        data.serve(this);
        data.enter();
        data.setWanted(this, true);
        controller.host.startMeasurement();
        QTRY_VERIFY_WITH_TIMEOUT(data.isReceiving(), patienceMs);
        int depth = 0;
        int deepest = 0;
        int told = 0;
        connect(&data, &ProbeData::samplesArrived, this, [&] {
            deepest = std::max(deepest, ++depth);
            if (++told == 1) {
                QElapsedTimer passed;
                passed.start();
                QVERIFY(QTest::qWaitFor([&] { return passed.elapsed() > 4 * ProbeData::refreshMs; },
                                        patienceMs));
            }
            --depth;
        });
        QTRY_VERIFY_WITH_TIMEOUT(told >= 2, patienceMs);
        QCOMPARE(deepest, 1);
        data.leave();
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

    // A host may keep each registration, and would go on calling after one was taken back.
    void overManyMeasurementsItIsRegisteredOnce() {
        ModuleFixture f;
        ScriptedHost& host = f.controller.host;
        f.window->addDockWidget(Qt::RightDockWidgetArea, f.dock(0));
        f.window->show();
        f.dock(0)->show();
        const auto* const start = f.dock(0)->findChild<QPushButton*>("pushButton_start");
        for (int measurement = 0; measurement < 3; ++measurement) {
            host.startMeasurement();
            QTRY_VERIFY_WITH_TIMEOUT(start->isEnabled(), patienceMs);
            for (const char* const channel : {"fr", "ts", "6dmt", "6dmt2", "6dmtr"}) {
                QCOMPARE(host.requesters(channel).size(), std::size_t(1));
            }
            host.stopMeasurement();
            QTRY_VERIFY_WITH_TIMEOUT(!start->isEnabled(), patienceMs);
        }
        f.module.exit_module();
        for (const char* const channel : {"fr", "ts", "6dmt", "6dmt2", "6dmtr"}) {
            QVERIFY(host.requesters(channel).empty());
        }
    }

    // A host may have events handled, and tell of a measurement, inside what it is asked.
    void aMeasurementThatChangesWhileTheHostIsAskedIsFollowed_data() {
        QTest::addColumn<std::string>("inside");
        QTest::addColumn<bool>("beginsAnew");
        row("begins anew, tools", std::string("get_int measurementtool number_of_tools"), true);
        row("stops, tools", std::string("get_int measurementtool number_of_tools"), false);
        row("begins anew, lines", std::string("set output active chmon 6dmtr yes"), true);
        row("stops, lines", std::string("set output active chmon 6dmtr yes"), false);
        row("begins anew, registration", std::string("register 6dmtr"), true);
        row("stops, registration", std::string("register 6dmtr"), false);
    }
    void aMeasurementThatChangesWhileTheHostIsAskedIsFollowed() {
        QFETCH(std::string, inside);
        QFETCH(bool, beginsAnew);
        ModuleFixture f;
        ScriptedHost& host = f.controller.host;
        f.window->addDockWidget(Qt::RightDockWidgetArea, f.dock(0));
        f.window->show();
        f.dock(0)->show();
        const auto* const start = f.dock(0)->findChild<QPushButton*>("pushButton_start");
        const auto* const words = f.dock(0)->findChild<QLabel*>("label_words");
        QTRY_VERIFY_WITH_TIMEOUT(
            probeJournal(host).contains("get_string measurementtool reference_of_tool b02"),
            patienceMs);
        bool hasChanged = false;
        host.onOperation = [&](const std::string& line) {
            if (line == inside) {
                host.onOperation = {};
                host.stopMeasurement();
                if (beginsAnew) {
                    host.startMeasurement();
                }
                QCoreApplication::processEvents();
                hasChanged = true;
            }
        };
        host.startMeasurement();
        QTRY_VERIFY_WITH_TIMEOUT(hasChanged, patienceMs);
        if (!beginsAnew) {
            QTRY_VERIFY_WITH_TIMEOUT(words->text().startsWith("No tracking runs."), patienceMs);
            QVERIFY(!start->isEnabled());
            host.startMeasurement();
        }
        QTRY_VERIFY_WITH_TIMEOUT(start->isEnabled(), patienceMs);
        QCOMPARE(host.requesters("6dmt2").size(), std::size_t(1));
    }
};

QTEST_MAIN(TestProbeCheckModule)
#include "test_probecheckmodule.moc"
