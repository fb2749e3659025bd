#include "SourceFiles/measurementtoolmodule.h"
#include "host_api/metatypes.h"
#include "tests/SourceFiles/calibration/calibrationrig.h"
#include "tests/support/children.h"
#include "tests/support/datarows.h"

#include <QAction>
#include <QApplication>
#include <QPushButton>
#include <QtTest>

namespace {

// Where the flow stands when something happens: the dialog that is shown then.
struct Stage {
    const char* name;
    const char* dialog;
};

constexpr Stage stages[] = {
    {"open", "MtCalibrationDlgClass"},         {"help", "MtHelpDlgClass"},
    {"refused", "messageBox_notAvailable"},    {"first countdown", "CountdownDialog"},
    {"progress", "CalibrationProgressDialog"}, {"step countdown", "CountdownDialog"},
    {"error", "messageBox_calibrationError"},  {"result", "MtResultDlgClass"},
};

void scriptStage(ScriptedHost& host, const QString& stage) {
    scriptCalibration(host);
    host.answerInTurn("status active", {"none", "none", "cal"});
    if (stage == "refused") {
        host.answerInTurn("cal available measurementtool", {"yes", "no"});
    } else if (stage == "first countdown") {
        host.answer("cal step_pause measurementtool s01", "yes 5");
    } else if (stage == "step countdown") {
        host.answer("status step_progress", "2 0.5");
    } else if (stage == "error") {
        host.answerInTurn("status active", {"none", "none", "err"});
    } else if (stage == "result") {
        host.answerInTurn("status active", {"none", "none", "none"});
    }
}

// Clicks what leads to the stage when the calibration dialog is shown first, and closes it when it
// is shown again.
void leadTo(ModalWatchdog& dog, const QString& stage) {
    dog.on("MtCalibrationDlgClass", [&dog, stage](QWidget* shown) {
        const bool again = dog.seen().count("MtCalibrationDlgClass") > 1;
        const char* const button = again             ? "pushButton_exit"
                                   : stage == "help" ? "pushButton_help"
                                                     : "pushButton_calibrate";
        // By mouse: the press is on the stack when the button's dialog dies.
        QTest::mouseClick(child<QPushButton>(*shown, button), Qt::LeftButton);
    });
    dog.on("CalibrationProgressDialog",
           [](QWidget* shown) { hurry(*qobject_cast<CalibrationProgressDlg*>(shown)); });
}

// Inside the application's own loop, as in a real host.
void runApplication(const std::function<void()>& body) {
    QTimer::singleShot(0, qApp, [&] {
        body();
        QCoreApplication::exit();
    });
    QCoreApplication::exec();
}

QStringList visibleWindows() {
    QStringList names;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget* window : windows) {
        if (window->isVisible()) {
            names << window->objectName();
        }
    }
    return names;
}

void addStages() {
    QTest::addColumn<QString>("stage");
    QTest::addColumn<QByteArray>("shown");
}

void addStageRows(const char* suffix = "") {
    for (const Stage& stage : stages) {
        QTest::addRow("%s%s", stage.name, suffix)
            << QString(stage.name) << QByteArray(stage.dialog);
    }
}

// The host with the module as it is loaded.
struct Host {
    Host()
        : window(new QWidget)
        , versions(VersionInfo(3, 0, 0), VersionInfo(1, 14, 0), VersionInfo(3, 0, 0), "KESTREL") {
        window->setObjectName("hostWindow");
        window->show();
        module.set_param("CommandManager", QVariant::fromValue<IOManager*>(&io));
        module.set_param("ModuleParent", QVariant::fromValue(window.data()));
        module.set_param("BackendVersions", QVariant::fromValue(&versions));
        calibration = module.get_gui_elements().at(1);
        dialog = qobject_cast<MtCalibrationDlg*>(calibration->content);
    }
    ~Host() {
        module.exit_module();
        delete window.data();
    }
    ScriptedHost io;
    QPointer<QWidget> window;
    BackendVersions versions;
    MeasurementToolModule module;
    _GuiElement* calibration = nullptr;
    QPointer<MtCalibrationDlg> dialog;
};

} // namespace

class TestMtCalibrationStages : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QGuiApplication::setQuitOnLastWindowClosed(false); }

    void theModuleEntryOpensTheDialog() {
        Host host;
        scriptCalibration(host.io);
        QVERIFY(host.dialog != nullptr);
        QCOMPARE(host.calibration->menu_name, QString("&Tracking"));
        QCOMPARE(host.calibration->menu_order_number, 300);
        QCOMPARE(host.calibration->menu_entry_order_number, 60);
        QCOMPARE(host.calibration->action_active_during_measurement, 0);
        const QAction* const action = host.calibration->menu_entry;
        QCOMPARE(action->text(), QString("Measurement &Tool tip calibration"));
        QCOMPARE(action->statusTip(), QString("Open the Measurement Tool tip calibration"));
        QCOMPARE(action->whatsThis(), QString("Perform Measurement Tool tip calibration"));
        QCOMPARE(action->parent(), &host.module);
        ModalWatchdog dog;
        dog.on("MtCalibrationDlgClass", [](QWidget* shown) { shown->close(); });
        host.calibration->menu_entry->trigger();
        QCOMPARE(dog.seen(), QStringList("MtCalibrationDlgClass"));
        QCOMPARE(dog.strays(), QStringList());
    }

    void everythingGoesWithItsOwner_data() {
        addStages();
        QTest::addColumn<QString>("owner");
        for (const char* owner : {"module", "window", "dialog"}) {
            for (const Stage& stage : stages) {
                QTest::addRow("%s, %s goes", stage.name, owner)
                    << QString(stage.name) << QByteArray(stage.dialog) << QString(owner);
            }
        }
    }
    void everythingGoesWithItsOwner() {
        QFETCH(QString, stage);
        QFETCH(QByteArray, shown);
        QFETCH(QString, owner);
        Host host;
        scriptStage(host.io, stage);
        ModalWatchdog dog;
        leadTo(dog, stage);
        std::size_t asked = 0;
        dog.on(shown, [&](QWidget*) {
            if (owner == "module") {
                host.module.about_to_exit_module();
                host.module.exit_module();
            } else if (owner == "window") {
                delete host.window.data();
            } else {
                delete host.dialog.data();
            }
            asked = host.io.journal().size();
        });
        runApplication([&] { host.calibration->menu_entry->trigger(); });
        QVERIFY(host.dialog.isNull());
        QVERIFY(asked > 0);
        QCOMPARE(host.io.journal().size(), asked); // nobody talks to a host that may be gone
        QCOMPARE(visibleWindows(), owner == "window" ? QStringList() : QStringList("hostWindow"));
        QCOMPARE(dog.strays(), QStringList());
    }

    void closingTheDialogClosesAllAndLeavesTrackingOff_data() {
        addStages();
        addStageRows();
    }
    void closingTheDialogClosesAllAndLeavesTrackingOff() {
        QFETCH(QString, stage);
        QFETCH(QByteArray, shown);
        CalibrationRig rig;
        scriptStage(rig.host, stage);
        leadTo(rig.dog, stage);
        std::size_t before = 0;
        rig.on(shown, [&](QWidget*) {
            rig.host.answer("status active", "track");
            before = rig.host.operations().size();
            rig.dialog->close();
        });
        runApplication([&] { QCOMPARE(rig.dialog->update_and_exec(), 0); });
        const Lines all = rig.host.operations();
        Lines tail(all.begin() + static_cast<std::ptrdiff_t>(before), all.end());
        Lines expected = {"get_string status active", "send kestrel2 tracking stop"};
        if (stage == "progress" || stage == "step countdown" || stage == "error") {
            expected.insert(expected.begin(), "send kestrel2 cal measurementtool stop");
        }
        QCOMPARE(tail, expected);
        QCOMPARE(visibleWindows(), QStringList("hostWindow"));
        QVERIFY(!MtCalibrationProbe::timer(*rig.dialog).isActive());
    }

    void theHostClosesOrQuits_data() {
        addStages();
        QTest::addColumn<bool>("quits");
        for (const bool quits : {false, true}) {
            for (const Stage& stage : stages) {
                QTest::addRow("%s, %s", stage.name, quits ? "quits" : "closes all windows")
                    << QString(stage.name) << QByteArray(stage.dialog) << quits;
            }
        }
    }
    void theHostClosesOrQuits() {
        QFETCH(QString, stage);
        QFETCH(QByteArray, shown);
        QFETCH(bool, quits);
        CalibrationRig rig;
        scriptStage(rig.host, stage);
        leadTo(rig.dog, stage);
        rig.on(shown, [&](QWidget*) {
            rig.host.answer("status active", "track");
            quits ? QCoreApplication::quit() : QApplication::closeAllWindows();
        });
        bool returned = false;
        runApplication([&] {
            rig.dialog->update_and_exec();
            returned = true;
        });
        QVERIFY(returned);
        QVERIFY(rig.dialog->isHidden());
        QVERIFY(!visibleWindows().contains("CountdownDialog"));
        QVERIFY(!visibleWindows().contains("CalibrationProgressDialog"));
        QVERIFY(QGuiApplication::modalWindow() == nullptr);
        const Lines operations = rig.host.operations();
        QCOMPARE(operations.back(), std::string("send kestrel2 tracking stop"));
        const bool running = stage == "progress" || stage == "step countdown";
        QCOMPARE(std::count(operations.begin(), operations.end(),
                            "send kestrel2 cal measurementtool stop") > 0,
                 running || (stage == "error" && !quits));
    }

    void escapeClosesTheTopmostDialog_data() {
        addStages();
        QTest::addColumn<QStringList>("sent");
        const QString start = "send kestrel2 tracking start";
        const QString stop = "send kestrel2 cal measurementtool stop";
        row("open", "open", QByteArray("MtCalibrationDlgClass"), QStringList());
        row("help", "help", QByteArray("MtHelpDlgClass"), QStringList());
        row("refused", "refused", QByteArray("messageBox_notAvailable"), QStringList());
        row("first countdown", "first countdown", QByteArray("CountdownDialog"),
            QStringList{start});
        row("progress", "progress", QByteArray("CalibrationProgressDialog"),
            QStringList{stop, start});
        row("step countdown, then progress", "step countdown", QByteArray("CountdownDialog"),
            QStringList{stop, start});
        row("error", "error", QByteArray("messageBox_calibrationError"), QStringList{start});
        row("result", "result", QByteArray("MtResultDlgClass"), QStringList{start});
    }
    void escapeClosesTheTopmostDialog() {
        QFETCH(QString, stage);
        QFETCH(QByteArray, shown);
        QFETCH(QStringList, sent);
        CalibrationRig rig;
        scriptStage(rig.host, stage);
        leadTo(rig.dog, stage);
        std::size_t before = 0;
        bool escaped = false;
        rig.on(shown, [&](QWidget* dialog) {
            rig.host.answer("status active", "none");
            before = rig.host.operations().size();
            escaped = true;
            QTest::keyClick(dialog, Qt::Key_Escape);
        });
        if (stage == "step countdown") {
            // Polling has stopped; the progress dialog waits for the user.
            rig.on("CalibrationProgressDialog", [&](QWidget* dialog) {
                if (escaped) {
                    rig.host.answer("status active", "none");
                    QTest::keyClick(dialog, Qt::Key_Escape);
                } else {
                    hurry(*qobject_cast<CalibrationProgressDlg*>(dialog));
                }
            });
            rig.on(shown, [&](QWidget* dialog) {
                escaped = true;
                before = rig.host.operations().size();
                QTest::keyClick(dialog, Qt::Key_Escape);
            });
        }
        QCOMPARE(rig.dialog->update_and_exec(), 0);
        const Lines operations = rig.host.operations();
        QStringList commands;
        for (std::size_t i = before; i < operations.size(); ++i) {
            const QString line = QString::fromStdString(operations[i]);
            if (line.startsWith("send")) {
                commands << line;
            }
        }
        QCOMPARE(commands, sent);
        for (const std::string& line : operations) {
            QVERIFY(line.find("accept_new_calibration") == std::string::npos);
        }
        QCOMPARE(visibleWindows(), QStringList("hostWindow"));
    }
};

QTEST_MAIN(TestMtCalibrationStages)
#include "test_mtcalibrationdlg_stages.moc"
