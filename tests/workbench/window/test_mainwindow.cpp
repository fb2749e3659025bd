#include "tests/workbench/scriptedcontroller.h"
#include "workbench/window/log/commanddock.h"
#include "workbench/window/log/logdock.h"
#include "workbench/window/mainwindow.h"

#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextDocument>
#include <QtTest>

#include <cstring>
#include <fstream>

using workbench::ControllerAddress;
using workbench::MainWindow;

namespace {
constexpr int patience = 8000;
}

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
    }

    void beforeTheFirstConnectionModulesHaveNoEntries() {
        QCOMPARE(menuTitles(),
                 QStringList({"&File", "&Connection", "&Measurement", "&View", "&Help"}));
        QVERIFY(calls().isEmpty());
    }

    void theFirstConnectionBuildsTheModulesEntries() {
        connectWindow();
        QCOMPARE(menuTitles(), QStringList({"&File", "&Connection", "&Measurement", "&Tracking",
                                            "&View", "&Help"}));
        QCOMPARE(calls(), QStringList({"built for SCRIPTED", "asked while building"}));
        QVERIFY(fakeDock() != nullptr);
        QVERIFY(fakeDock()->isVisible());
        QCOMPARE(m_window->dockWidgetArea(fakeDock()), Qt::TopDockWidgetArea);
        QVERIFY(entry(QStringLiteral("Fake display")) != nullptr);
        QCOMPARE(m_window->moduleRows(), QStringList({"fakeTable\t0\ta b\tgreen{#00ff00}"}));
        fakeDock()->hide();
        QVERIFY(m_window->moduleRows().isEmpty());
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
        QCOMPARE(label("statusMeasurement"), QStringLiteral("unknown"));
        m_controller->answer("status active", "tracking");
        connectWindow();
        QTRY_COMPARE_WITH_TIMEOUT(label("statusMeasurement"), QStringLiteral("measuring"),
                                  patience);
        m_controller->stopListening();
        QTRY_COMPARE_WITH_TIMEOUT(label("statusMeasurement"), QStringLiteral("unknown"), patience);
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
        QVERIFY(entry(QStringLiteral("Fake dialog")) == nullptr);
        QVERIFY(built.wait(patience));
        QCOMPARE(calls(), QStringList({"about_to_exit_module with window", "exit_module",
                                       "built for OTHER", "asked while building"}));
        QVERIFY(fakeDock()->isVisible());
        m_window->close();
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
        QCOMPARE(label("statusData"), QStringLiteral("no frames"));
        m_controller->sendFrame("fr 1\r\n6d 0");
        m_controller->sendFrame("fr 4\r\n6d 0");
        QTRY_VERIFY_WITH_TIMEOUT(label("statusData").endsWith(QStringLiteral("ago, 2 lost")),
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

    void theUserGuideOpensWithItsPictures() {
        m_window->findChild<QAction*>(QStringLiteral("actionGuide"))->trigger();
        auto* const guide = m_window->findChild<QDialog*>(QStringLiteral("GuideDialog"));
        QVERIFY(guide != nullptr);
        QVERIFY(guide->isVisible());
        QVERIFY(!guide->isModal());
        const auto* const browser = guide->findChild<QTextBrowser*>();
        QVERIFY(browser->toPlainText().startsWith(QStringLiteral("User guide")));
        const QTextDocument& document = *browser->document();
        int pictures = 0;
        for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
            for (auto part = block.begin(); !part.atEnd(); ++part) {
                const QTextImageFormat image = part.fragment().charFormat().toImageFormat();
                if (image.isValid()) {
                    ++pictures;
                    const QVariant loaded =
                        document.resource(QTextDocument::ImageResource, QUrl(image.name()));
                    QVERIFY2(!loaded.isNull(), qPrintable(image.name()));
                }
            }
        }
        QVERIFY(pictures >= 5);
        m_window->findChild<QAction*>(QStringLiteral("actionGuide"))->trigger();
        QCOMPARE(m_window->findChildren<QDialog*>(QStringLiteral("GuideDialog")).size(), 1);
        m_window->close();
        QTRY_VERIFY_WITH_TIMEOUT(!m_window->isVisible(), patience);
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
