#include "tests/end_to_end/processes.h"
#include "tests/support/modalwatchdog.h"
#include "workbench/window/mainwindow.h"

#include <QAction>
#include <QCheckBox>
#include <QDockWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>

using namespace processes;

namespace {

constexpr int patienceMs = 15000 * slowness;

double distance(const QVector<double>& a, const QVector<double>& b) {
    return std::sqrt(std::pow(a.at(0) - b.at(0), 2) + std::pow(a.at(1) - b.at(1), 2) +
                     std::pow(a.at(2) - b.at(2), 2));
}

QAction* menuAction(const QMainWindow& window, const QString& menu, const QString& text) {
    const auto named = [](const QWidget& widget, auto wanted) -> QAction* {
        const QList<QAction*> actions = widget.actions();
        const auto found = std::find_if(actions.begin(), actions.end(), wanted);
        return found == actions.end() ? nullptr : *found;
    };
    const QAction* const top = named(*window.menuBar(), [&menu](const QAction* action) {
        return action->menu() != nullptr && action->text() == menu;
    });
    return top == nullptr ? nullptr : named(*top->menu(), [&text](const QAction* action) {
        return action->text() == text;
    });
}

} // namespace

/// The plug-in as a binary inside the workbench's window, its dialogs on a simulator process.
class TestDialogs : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<Simulator> m_simulator;
    std::unique_ptr<workbench::MainWindow> m_window;

    void open(const QStringList& simulatorOptions) {
        m_simulator = std::make_unique<Simulator>(simulatorOptions);
        QVERIFY(m_simulator->isListening());
        workbench::MainWindow::Setup setup;
        setup.settingsFile = m_folder->filePath(QStringLiteral("workbench.ini"));
        setup.openDocks = true;
        m_window = std::make_unique<workbench::MainWindow>(setup);
        m_window->modules().loadFolder(QStringLiteral(KESTREL_PLUGINS));
        m_window->show();
        QSignalSpy built(m_window.get(), &workbench::MainWindow::modulesBuilt);
        m_window->connectTo({QStringLiteral("127.0.0.1"), m_simulator->port()});
        QVERIFY(built.wait(startTimeoutMs));
        QCOMPARE(m_simulator->ask("set sim calibration_tool b01"), QString("kestrel2 ok"));
    }

    QTableWidget* table(const QString& name) { return m_window->findChild<QTableWidget*>(name); }

    QString cell(const QString& name, int row, int column) {
        const QTableWidgetItem* const item = table(name)->item(row, column);
        return item == nullptr ? QString() : item->text();
    }

    QVector<double> shownPosition(int tool) {
        QVector<double> position;
        for (int i = 0; i < 3; ++i) {
            position += cell(toolTable, tool, toolPoseColumn + i).toDouble();
        }
        return position;
    }

    void openCalibration() {
        menuAction(*m_window, QStringLiteral("&Tracking"),
                   QStringLiteral("Measurement &Tool tip calibration"))
            ->trigger();
    }
    void openSettings() {
        menuAction(*m_window, QStringLiteral("&Tracking"), QStringLiteral("&Measurement Tool"))
            ->trigger();
    }

    /// The calibration dialog is answered with Calibrate when it opens and with Exit when the
    /// procedure is over.
    static void calibrateOnceThenExit(ModalWatchdog& dog) {
        dog.on(QStringLiteral("MtCalibrationDlgClass"),
               [started = std::make_shared<bool>(false)](QWidget* dialog) {
                   const char* const button = *started ? "pushButton_exit" : "pushButton_calibrate";
                   *started = true;
                   dialog->findChild<QPushButton*>(QLatin1String(button))->click();
               });
    }

    /// Runs a whole calibration from the menu: starts it, skips its countdowns, and answers the
    /// result dialog with the button of that name. Returns the texts of the result's row.
    QStringList calibrate(
        const char* resultButton, QStringList* dialogs = nullptr,
        const std::function<void()>& beforeAnswer = [] {}) {
        QStringList result;
        ModalWatchdog dog(patienceMs);
        calibrateOnceThenExit(dog);
        dog.on(QStringLiteral("CountdownDialog"), [](QWidget* dialog) {
            dialog->findChild<QPushButton*>(QStringLiteral("pushButton_2"))->click();
        });
        dog.on(QStringLiteral("MtResultDlgClass"), [&](QWidget* dialog) {
            const auto* const row = dialog->findChild<QTableWidget*>(QStringLiteral("tableWidget"));
            for (int column = 0; column < 3; ++column) {
                result += row->item(0, column)->text();
            }
            beforeAnswer();
            dialog->findChild<QPushButton*>(QLatin1String(resultButton))->click();
        });
        openCalibration();
        if (dialogs != nullptr) {
            *dialogs = dog.seen();
        }
        return dog.strays().isEmpty() ? result : QStringList();
    }

private Q_SLOTS:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void cleanup() {
        m_window.reset();
        m_simulator.reset();
        m_folder.reset();
    }

    void acceptedTipAgreesWithTheTrueOneWithinItsPredictedUncertainty() {
        open({"--no-occlusion", "--cal-duration", "1.5", "--cal-pause", "1", "--seed", "5"});
        const QVector<double> before = m_simulator->numbers("sim tip_used b01");
        const QVector<double> truth = m_simulator->numbers("sim tip b01");
        QVERIFY2(distance(before, truth) > 0.5, "there must be something to calibrate");

        QStringList dialogs;
        const QStringList row = calibrate("pushButton_accept", &dialogs);
        QCOMPARE(dialogs.join(' '), QString("MtCalibrationDlgClass CountdownDialog "
                                            "CalibrationProgressDialog MtResultDlgClass "
                                            "MtCalibrationDlgClass"));
        const QStringList solution = m_simulator->value("sim calibration").split(' ');
        QCOMPARE(solution.size(), 7);
        QCOMPARE(solution.at(6), QString("accepted"));
        const double residual = solution.at(4).toDouble();
        const double uncertainty = solution.at(5).toDouble();
        QVERIFY(uncertainty > 0 && uncertainty < 0.5);
        const QVector<double> used = m_simulator->numbers("sim tip_used b01");
        QVERIFY2(
            distance(used, truth) <= uncertainty,
            qPrintable(
                QString("%1 mm off, predicted %2").arg(distance(used, truth)).arg(uncertainty)));
        QCOMPARE(row.value(0), QString("M1"));
        QCOMPARE(row.value(1), QString("MR1"));
        QVERIFY(std::abs(row.value(2).toDouble() - residual) <= 0.00501);
    }

    void liveDisplayShowsTheNewTipAfterTheAcceptance() {
        open({"--no-occlusion", "--noise", "0", "--cal-duration", "1", "--cal-pause", "0"});
        const QVector<double> before = m_simulator->numbers("sim tip_used b01");
        // From here on the body is held as it is, without a turn: what then moves is the tip.
        const auto holdStill = [this] { m_simulator->ask("sim place tool b01 100 200 300 0 0 0"); };
        QVERIFY(!calibrate("pushButton_accept", nullptr, holdStill).isEmpty());
        const QVector<double> after = m_simulator->numbers("sim tip_used b01");
        QVERIFY(distance(before, after) > 0.5);

        m_window->startMeasurement();
        QTRY_COMPARE_WITH_TIMEOUT(cell(toolTable, 0, toolPoseColumn + 3), QString("-0.00"),
                                  rowsTimeoutMs);
        const QVector<double> shown = shownPosition(0);
        for (int i = 0; i < 3; ++i) {
            const double expected = 100.0 * (i + 1) + after.at(i) - before.at(i);
            QVERIFY2(std::abs(shown.at(i) - expected) < 0.00501,
                     qPrintable(QString("%1 for %2").arg(shown.at(i)).arg(expected)));
        }
    }

    void discardedResultChangesNothing() {
        open({"--no-occlusion", "--cal-duration", "1", "--cal-pause", "0"});
        const QString before = m_simulator->value("sim tip_used b01");
        QVERIFY(!calibrate("pushButton_cancel").isEmpty());
        QCOMPARE(m_simulator->value("sim tip_used b01"), before);
        QCOMPARE(m_simulator->value("status active"), QString("none"));
    }

    void cancelledProcedureIsStoppedAndChangesNothing() {
        open({"--no-occlusion", "--cal-duration", "60", "--cal-pause", "0"});
        const QString before = m_simulator->value("sim tip_used b01");
        ModalWatchdog dog(patienceMs);
        calibrateOnceThenExit(dog);
        QString whileRunning;
        dog.on(QStringLiteral("CalibrationProgressDialog"), [&](QWidget* dialog) {
            whileRunning = m_simulator->value("status active");
            QTest::keyClick(dialog, Qt::Key_Escape);
        });
        openCalibration();
        QCOMPARE(dog.strays(), QStringList());
        QCOMPARE(whileRunning, QString("cal"));
        QCOMPARE(m_simulator->value("status active"), QString("none"));
        QCOMPARE(m_simulator->value("sim tip_used b01"), before);
    }

    void motionThatDoesNotDetermineTheTipIsRefusedWithItsReason_data() {
        QTest::addColumn<QString>("pivot");
        QTest::newRow("one axis") << "planar";
        QTest::newRow("own axis") << "twist";
        QTest::newRow("at rest") << "still";
    }
    void motionThatDoesNotDetermineTheTipIsRefusedWithItsReason() {
        QFETCH(QString, pivot);
        open({"--no-occlusion", "--cal-duration", "1", "--cal-pause", "0", "--pivot", pivot});
        const QString before = m_simulator->value("sim tip_used b01");
        ModalWatchdog dog(patienceMs);
        calibrateOnceThenExit(dog);
        QString reason;
        QTimer boxes;
        connect(&boxes, &QTimer::timeout, this, [&] {
            auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (box != nullptr && box->windowTitle() == QLatin1String("Calibration Error")) {
                reason = box->text();
                box->button(QMessageBox::Ok)->click();
            }
        });
        boxes.start(20);
        openCalibration();
        QCOMPARE(dog.strays(), QStringList());
        const QString reply = m_simulator->ask("get status err");
        QVERIFY2(reason.size() > 10 && reply.contains('"' + reason + '"'),
                 qPrintable(reason + " | " + reply));
        QCOMPARE(m_simulator->value("sim tip_used b01"), before);
    }

    void settingsWrittenByOkAreThoseOfTheController() {
        open({"--no-occlusion", "--tools", "3", "--references", "2"});
        ModalWatchdog dog(patienceMs);
        dog.on(QStringLiteral("MtSettingsDlgClass"), [&](QWidget* dialog) {
            auto* const tools =
                dialog->findChild<QTableWidget*>(QStringLiteral("tableWidget_meaBodies"));
            auto* const references =
                dialog->findChild<QTableWidget*>(QStringLiteral("tableWidget_refBodies"));
            dialog->findChild<QSpinBox*>(QStringLiteral("spinBox_noOfMeaBodies"))->setValue(2);
            dialog->findChild<QSpinBox*>(QStringLiteral("spinBox_noOfRefBodies"))->setValue(3);
            tools->setCurrentCell(1, 0);
            Q_EMIT tools->cellClicked(1, 0);
            references->setCurrentCell(2, 0);
            Q_EMIT references->cellClicked(2, 0);
            dialog->findChild<QPushButton*>(QStringLiteral("pushButton_select"))->click();
            tools->item(0, 1)->setText(QStringLiteral("6.4"));
            dialog->findChild<QDoubleSpinBox*>(QStringLiteral("doubleSpinBox_duration"))
                ->setValue(2.5);
            dialog->findChild<QDoubleSpinBox*>(QStringLiteral("doubleSpinBox_tipTolerance"))
                ->setValue(0.7);
            dialog->findChild<QCheckBox*>(QStringLiteral("checkBox_useOldOutputFormat"))
                ->setChecked(false);
            dialog->findChild<QPushButton*>(QStringLiteral("pushButton_ok"))->click();
        });
        openSettings();
        QCOMPARE(dog.strays(), QStringList());
        QCOMPARE(m_simulator->value("measurementtool number_of_tools"), QString("2"));
        QCOMPARE(m_simulator->value("measurementtool number_of_references"), QString("3"));
        QCOMPARE(m_simulator->value("measurementtool reference_of_tool b02"), QString("b03"));
        QCOMPARE(m_simulator->value("measurementtool tip_radius b01").toDouble(), 3.2);
        QCOMPARE(m_simulator->value("measurementtool measurement_duration b02").toDouble(), 2.5);
        QCOMPARE(m_simulator->value("measurementtool measurement_tip_tolerance b01").toDouble(),
                 0.7);
        QCOMPARE(m_simulator->value("measurementtool output_6dmt"), QString("no"));

        // The live display follows: two tools, three references, the other line.
        m_window->startMeasurement();
        QTRY_COMPARE_WITH_TIMEOUT(table(toolTable)->rowCount(), 2, rowsTimeoutMs);
        QTRY_COMPARE_WITH_TIMEOUT(table(referenceTable)->rowCount(), 3, rowsTimeoutMs);
        QCOMPARE(cell(toolTable, 1, 2), QString("MR3"));
    }

    void cancelledSettingsAreThoseOfBefore() {
        open({"--tools", "3", "--references", "2"});
        ModalWatchdog dog(patienceMs);
        QString during;
        dog.on(QStringLiteral("MtSettingsDlgClass"), [&](QWidget* dialog) {
            dialog->findChild<QSpinBox*>(QStringLiteral("spinBox_noOfMeaBodies"))->setValue(1);
            dialog->findChild<QSpinBox*>(QStringLiteral("spinBox_noOfRefBodies"))->setValue(4);
            during = m_simulator->value("measurementtool number_of_tools") +
                     m_simulator->value("measurementtool number_of_references");
            QTest::keyClick(dialog, Qt::Key_Escape);
        });
        openSettings();
        QCOMPARE(dog.strays(), QStringList());
        QCOMPARE(during, QString("14"));
        QCOMPARE(m_simulator->value("measurementtool number_of_tools"), QString("3"));
        QCOMPARE(m_simulator->value("measurementtool number_of_references"), QString("2"));
    }

    void radioDevicesComeAndGoWhileOneLooks() {
        open({"--devices", "2"});
        m_simulator->ask("set sim wandering_device no");
        ModalWatchdog dog(patienceMs);
        QStringList serials;
        dog.on(QStringLiteral("MtSettingsDlgClass"), [&](QWidget* dialog) {
            const auto* const devices =
                dialog->findChild<QTableWidget*>(QStringLiteral("tableWidget_availableMt"));
            const int before = devices->rowCount();
            QCOMPARE(m_simulator->ask("sim device add ACME PROBE 77"), QString("kestrel2 ok"));
            QTRY_COMPARE_WITH_TIMEOUT(devices->rowCount(), before + 1, rowsTimeoutMs);
            for (int row = 0; row < devices->rowCount(); ++row) {
                serials += devices->item(row, 4)->text();
            }
            QCOMPARE(m_simulator->ask("sim device remove ACME PROBE 77"), QString("kestrel2 ok"));
            QTRY_COMPARE_WITH_TIMEOUT(devices->rowCount(), before, rowsTimeoutMs);
            dialog->close();
        });
        openSettings();
        QCOMPARE(dog.strays(), QStringList());
        QVERIFY2(serials.contains("00077"), qPrintable(serials.join(' ')));
    }

    void controllerThatDiesDuringACalibrationLeavesNothingOpen() {
        open({"--no-occlusion", "--cal-duration", "60", "--cal-pause", "0"});
        ModalWatchdog dog(patienceMs);
        calibrateOnceThenExit(dog);
        dog.on(QStringLiteral("CalibrationProgressDialog"), [&](QWidget* dialog) {
            m_simulator->kill();
            QTest::keyClick(dialog, Qt::Key_Escape);
        });
        openCalibration();
        QCOMPARE(dog.strays(), QStringList());
        QCOMPARE(QApplication::activeModalWidget(), nullptr);
    }
};

QTEST_MAIN(TestDialogs)
#include "test_dialogs.moc"
