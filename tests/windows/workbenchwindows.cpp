#include "tests/windows/workbenchwindows.h"

#include "tests/support/modalwatchdog.h"
#include "tests/workbench/scriptedcontroller.h"
#include "workbench/window/dialogs/connectdialog.h"
#include "workbench/window/dialogs/guidedialog.h"
#include "workbench/window/dialogs/modulelistdialog.h"
#include "workbench/window/mainwindow.h"
#include "workbench/window/state/banner.h"

#include <QAction>
#include <QDockWidget>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QtTest>

using namespace workbench;

namespace {

constexpr int patience = 8000;

/// A main window with the module's display in a dock.
class MainWindowRig {
public:
    MainWindowRig()
        : window({m_folder.filePath(QStringLiteral("settings.ini")), false, true}) {
        window.modules().loadFile(QStringLiteral(KESTREL_PLUGIN_FILE));
        window.modulesLoaded();
    }

    void connectToMeasuringController() {
        m_controller.answer("measurementtool available", "yes");
        m_controller.answer("measurementtool output_6dmt", "no");
        for (const char* tool : {"b01", "b02"}) {
            m_controller.answer(std::string("body calibrated measurementtool ") + tool, "yes");
            m_controller.answer(std::string("measurementtool tip_calibrated ") + tool, "yes");
            m_controller.answer(std::string("measurementtool reference_of_tool ") + tool, "b01");
        }
        m_controller.answer("body calibrated measurementtool_reference b01", "yes");
        m_controller.answer("status active", "tracking"); // so that nobody waits for the next poll
        QSignalSpy built(&window, &MainWindow::modulesBuilt);
        ControllerAddress address;
        address.port = m_controller.port();
        window.connectTo(address);
        QVERIFY(built.wait(patience));
    }

    // Two tools, of which one is out of sight, far from the origin, and a lost frame.
    void measure() {
        QTRY_VERIFY_WITH_TIMEOUT(window.backend().monitor.isMeasuring(), patience);
        auto* const table = window.findChild<QTableWidget*>(QStringLiteral("tableWidget6dmt"));
        QVERIFY(table != nullptr);
        const auto measured = [table] {
            return table->rowCount() == 2 &&
                   table->item(0, 12)->text() == QLatin1String("-12345.67");
        };
        int frame = 1;
        for (QElapsedTimer waited(started()); !measured() && waited.elapsed() < patience;) {
            m_controller.sendFrame("fr " + std::to_string(frame += 2) + lines);
            QTest::qWait(10);
        }
        QVERIFY(measured());
    }

    void waitUntilDataAreOld() {
        QTRY_VERIFY_WITH_TIMEOUT(!window.banner().text(BannerTopic::NoData).isEmpty(), patience);
    }

private:
    static constexpr const char* lines =
        "\r\n6dmt2 2 2 [0 1.0 1 1.5][-12345.67 -12345.67 -12345.67][-1 0 0 0 -1 0 0 0 1][1][0 0 0 "
        "0 0 "
        "0]"
        " [1 -1.0 1 1.5][0 0 0][1 0 0 0 1 0 0 0 1][0][0 0 0 0 0 0]"
        "\r\n6dmtr 1 1 [0 1.0][-12345.67 -12345.67 -12345.67][1 0 0 0 1 0 0 0 1]";

    static QElapsedTimer started() {
        QElapsedTimer timer;
        timer.start();
        return timer;
    }

    QTemporaryDir m_folder;
    ScriptedController m_controller;

public:
    MainWindow window; // goes before its controller
};

void lookAtModalOf(QAction& action, const char* objectName, const Look& look) {
    ModalWatchdog dog;
    dog.on(QLatin1String(objectName), [&look](QWidget* dialog) {
        look(*dialog);
        dialog->close();
    });
    action.trigger();
    QCOMPARE(dog.strays(), QStringList());
}

QVector<ModuleInfo> someModules() {
    MainWindowRig rig;
    rig.window.modules().loadFile(QStringLiteral(OTHER_PLUGIN));
    return rig.window.modules().modules();
}

} // namespace

void showAndLook(QWidget& window, const Look& look) {
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    look(window);
    window.close();
}

std::vector<TourStop> workbenchStops() {
    return {
        {"main window",
         [](const Look& look) {
             MainWindowRig rig;
             showAndLook(rig.window, look);
         }},
        {"main window, measuring",
         [](const Look& look) {
             MainWindowRig rig;
             rig.window.show();
             rig.connectToMeasuringController();
             rig.measure();
             showAndLook(rig.window, look);
         }},
        {"main window, no data",
         [](const Look& look) {
             MainWindowRig rig;
             rig.window.show();
             rig.connectToMeasuringController();
             rig.measure();
             rig.waitUntilDataAreOld();
             Banner& banner = rig.window.banner();
             banner.set(BannerTopic::Restart, BannerLevel::Warning,
                        Banner::word(BannerLevel::Warning), Banner::Ending::ByUser);
             QCoreApplication::processEvents(); // the lines get their room
             showAndLook(rig.window, look);
         }},
        {"main window, commands",
         [](const Look& look) {
             MainWindowRig rig;
             rig.window.findChild<QDockWidget*>(QStringLiteral("CommandDock"))->raise();
             showAndLook(rig.window, look);
         }},
        {"connect dialog",
         [](const Look& look) {
             ConnectDialog dialog({}, {QStringLiteral("192.168.1.5")}, nullptr);
             showAndLook(dialog, look);
         }},
        {"connect dialog, no address",
         [](const Look& look) {
             ControllerAddress nowhere;
             nowhere.host = QStringLiteral("no host");
             ConnectDialog dialog(nowhere, {}, nullptr);
             showAndLook(dialog, look);
         }},
        {"module list",
         [](const Look& look) {
             ModuleListDialog dialog(someModules(), nullptr);
             showAndLook(dialog, look);
         }},
        {"module list, none",
         [](const Look& look) {
             ModuleListDialog dialog({}, nullptr);
             showAndLook(dialog, look);
         }},
        {"user guide",
         [](const Look& look) {
             GuideDialog dialog(QStringLiteral(USER_GUIDE), nullptr);
             showAndLook(dialog, look);
         }},
        {"about",
         [](const Look& look) {
             MainWindowRig rig;
             rig.window.show();
             lookAtModalOf(*rig.window.findChild<QAction*>(QStringLiteral("actionAbout")),
                           "messageBox_about", look);
         }},
    };
}
