#include "tests/SourceFiles/calibration/calibrationflow.h"

#include <QtTest>

namespace {

using faultsweep::Case;
using Stage = CalibrationFlow::Stage;
using Way = CalibrationFlow::Way;

struct Named {
    const char* name;
    int value;
};

constexpr Named stages[] = {
    {"refused", int(Stage::Refused)},   {"first countdown", int(Stage::FirstCountdown)},
    {"progress", int(Stage::Progress)}, {"step countdown", int(Stage::StepCountdown)},
    {"error box", int(Stage::Error)},   {"result", int(Stage::Result)},
};

constexpr Named ways[] = {
    {"cancelled", int(Way::Cancel)},
    {"dialog closed", int(Way::Close)},
    {"parent dies", int(Way::ParentDies)},
};

} // namespace

Q_DECLARE_METATYPE(TwoStepFlow)

class TestMtCalibrationFaults : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QGuiApplication::setQuitOnLastWindowClosed(false); }

    void everyFaultEndsInOrder_data() {
        QTest::addColumn<int>("stage");
        QTest::addColumn<int>("way");
        const auto row = [](const char* name, Stage stage, Way way) {
            QTest::newRow(name) << int(stage) << int(way);
        };
        row("opening, exit", Stage::Opening, Way::Cancel);
        row("opening, Escape", Stage::Opening, Way::Escape);
        row("opening, close button", Stage::Opening, Way::Close);
        row("calibration accepted", Stage::Whole, Way::Cancel);
        for (const Named& stage : stages) {
            for (const Named& way : ways) {
                QTest::addRow("%s, %s", stage.name, way.name) << stage.value << way.value;
            }
        }
        row("progress, module exits", Stage::Progress, Way::ModuleExits);
    }
    void everyFaultEndsInOrder() {
        QFETCH(int, stage);
        QFETCH(int, way);
        CalibrationPlayer player({static_cast<Stage>(stage), static_cast<Way>(way)});
        const auto play = [&](const Case& fault) { return player.play(fault); };
        QCOMPARE(m_sweep.run(QTest::currentDataTag(), play), QString());
    }

    void everyFaultOfATwoStepProcedureEndsInOrder_data() {
        QTest::addColumn<TwoStepFlow>("flow");
        TwoStepFlow flow;
        QTest::newRow("two steps") << flow;
        flow.endsWell = false;
        QTest::newRow("two steps, error") << flow;
        flow = {};
        flow.givesUp = true;
        QTest::newRow("two steps, progress cancelled") << flow;
        flow = {};
        for (const char* name : {"two steps, first countdown cancelled",
                                 "two steps, pause 1 cancelled", "two steps, pause 2 cancelled"}) {
            ++flow.cancelled;
            QTest::newRow(name) << flow;
        }
    }
    void everyFaultOfATwoStepProcedureEndsInOrder() {
        QFETCH(TwoStepFlow, flow);
        const auto play = [&](const Case& fault) { return flow.play(fault); };
        QCOMPARE(m_sweep.run(QTest::currentDataTag(), play), QString());
    }

    void cleanupTestCase() { QVERIFY(m_sweep.report("calibration")); }

private:
    faultsweep::NoPainting m_noPainting;
    faultsweep::Sweep m_sweep;
};

QTEST_MAIN(TestMtCalibrationFaults)
#include "test_mtcalibrationdlg_faults.moc"
