#include "tests/end_to_end/workplace.h"
#include "tests/support/modalwatchdog.h"

#include <QApplication>
#include <QPushButton>
#include <QSpinBox>
#include <QtTest>

#include <csignal>
#include <functional>
#include <memory>

using namespace processes;

namespace {

constexpr int patienceMs = 15000 * slowness;

const QString settingsDialog = QStringLiteral("MtSettingsDlgClass");
const QString calibrationDialog = QStringLiteral("MtCalibrationDlgClass");
const QString helpDialog = QStringLiteral("MtHelpDlgClass");
const QString countdownDialog = QStringLiteral("CountdownDialog");
const QString progressDialog = QStringLiteral("CalibrationProgressDialog");
const QString resultDialog = QStringLiteral("MtResultDlgClass");

void click(QWidget* dialog, const char* button) {
    dialog->findChild<QPushButton*>(QLatin1String(button))->click();
}

} // namespace

/// The workbench ends while dialogs of the plug-in are open, on a simulator process: the controller
/// is then as cancelling each of them leaves it.
class TestEnding : public QObject {
    Q_OBJECT

    std::unique_ptr<Workplace> m_place;

    void open(const QStringList& simulatorOptions) {
        QVERIFY(m_place->simulate(simulatorOptions));
        QVERIFY(m_place->open({}));
    }
    Simulator& simulator() { return *m_place->simulator; }

    void end(const QString& how) {
        if (how == QLatin1String("close")) {
            m_place->window->close();
        } else if (how == QLatin1String("signal")) {
            m_place->run->watchSignals();
            std::raise(SIGTERM);
        } else {
            QApplication::quit();
        }
    }

    /// Opens a dialog by the text of its menu entry, inside the application's own loop, and comes
    /// back when the application has ended.
    bool runUntilTheEnd(const QString& entry) {
        QTimer giveUp;
        bool inTime = true;
        connect(&giveUp, &QTimer::timeout, this, [&inTime] {
            inTime = false;
            QApplication::quit();
        });
        giveUp.start(2 * patienceMs);
        QTimer::singleShot(0, m_place->window.get(),
                           [this, entry] { QVERIFY(m_place->trigger(entry)); });
        QApplication::exec();
        return inTime && !m_place->window->isVisible() &&
               QApplication::activeModalWidget() == nullptr;
    }

private Q_SLOTS:
    void init() { m_place = std::make_unique<Workplace>(); }
    void cleanup() { m_place.reset(); }

    void editedCountsAreTakenBack_data() {
        QTest::addColumn<QString>("how");
        QTest::newRow("close") << "close";
        QTest::newRow("SIGTERM") << "signal";
        QTest::newRow("quit") << "quit";
    }
    void editedCountsAreTakenBack() {
        QFETCH(QString, how);
        open({"--tools", "3", "--references", "2"});
        QString during;
        ModalWatchdog dog(patienceMs);
        dog.on(settingsDialog, [&](QWidget* dialog) {
            dialog->findChild<QSpinBox*>(QStringLiteral("spinBox_noOfMeaBodies"))->setValue(1);
            dialog->findChild<QSpinBox*>(QStringLiteral("spinBox_noOfRefBodies"))->setValue(4);
            during = simulator().value("measurementtool number_of_tools") +
                     simulator().value("measurementtool number_of_references");
            end(how);
        });
        QVERIFY(runUntilTheEnd(QStringLiteral("&Measurement Tool")));
        QCOMPARE(dog.strays(), QStringList());
        QCOMPARE(during, QString("14"));
        QCOMPARE(simulator().value("measurementtool number_of_tools"), QString("3"));
        QCOMPARE(simulator().value("measurementtool number_of_references"), QString("2"));
    }

    void aCalibrationIsStoppedAtEveryStage_data() {
        QTest::addColumn<QString>("stage");
        QTest::addColumn<QString>("how");
        QTest::addColumn<QString>("active"); // just before the end
        const struct {
            const char* name;
            QString stage;
            const char* active;
        } stages[] = {{"opened", calibrationDialog, "tracking"},
                      {"help", helpDialog, "tracking"},
                      {"countdown", countdownDialog, "tracking"},
                      {"progress", progressDialog, "cal"},
                      {"result", resultDialog, "none"}};
        for (const auto& stage : stages) {
            for (const char* const how : {"close", "signal", "quit"}) {
                QTest::addRow("%s, %s", stage.name, how)
                    << stage.stage << QString::fromLatin1(how) << QString::fromLatin1(stage.active);
            }
        }
    }
    void aCalibrationIsStoppedAtEveryStage() {
        QFETCH(QString, stage);
        QFETCH(QString, how);
        QFETCH(QString, active);
        const bool longRun = stage == progressDialog;
        open({"--no-occlusion", "--cal-duration", longRun ? "60" : "1", "--cal-pause",
              stage == countdownDialog ? "30" : "0"});
        QCOMPARE(simulator().ask("set sim calibration_tool b01"), QString("kestrel2 ok"));
        const QString tip = simulator().value("sim tip_used b01");
        QString during;
        ModalWatchdog dog(patienceMs);
        bool first = true;
        dog.on(calibrationDialog, [&](QWidget* dialog) {
            if (first && stage != calibrationDialog) {
                first = false;
                click(dialog, stage == helpDialog ? "pushButton_help" : "pushButton_calibrate");
            }
        });
        const auto endHere = [&](QWidget*) {
            during = simulator().value("status active");
            end(how);
        };
        dog.on(stage, endHere);
        QVERIFY(runUntilTheEnd(QStringLiteral("Measurement &Tool tip calibration")));
        QCOMPARE(dog.strays(), QStringList());
        QCOMPARE(during, active);
        QCOMPARE(simulator().value("status active"), QString("none"));
        QCOMPARE(simulator().value("sim tip_used b01"), tip);
    }
};

QTEST_MAIN(TestEnding)
#include "test_ending.moc"
