#include "host_api/metatypes.h"
#include "probecheck/probecheckmodule.h"
#include "probecheck/tipcheck/tipcheckpanel.h"
#include "tests/probecheck/probefixture.h"
#include "tests/probecheck/tipcheck/pivoting.h"
#include "tests/support/faultsweep.h"

#include <QDockWidget>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QMainWindow>
#include <QPushButton>
#include <QStandardPaths>
#include <QtTest>

#include <memory>

namespace {

using faultsweep::Case;
using faultsweep::Outcome;

// The tip check from its first sight over a measurement to its end.
Outcome live(const Case& fault) {
    Outcome outcome;
    ProbeController controller;
    fault.inject(controller.host);
    auto window = std::make_unique<QMainWindow>();
    ProbeCheckModule module;
    module.set_param("CommandManager", QVariant::fromValue<IOManager*>(&controller.host));
    module.set_param("ModuleParent", QVariant::fromValue<QWidget*>(window.get()));
    module.set_param("BackendVersions", QVariant::fromValue(&controller.versions));
    QWidget* const dock = module.get_gui_elements().constFirst()->content;
    auto* const panel = dock->findChild<TipCheckPanel*>();
    window->show();
    dock->show();
    QCoreApplication::processEvents();
    controller.host.startMeasurement();
    QCoreApplication::processEvents();
    auto* const start = panel->findChild<QPushButton*>("pushButton_start");
    auto* const stop = panel->findChild<QPushButton*>("pushButton_stop");
    start->click();
    const bool hasBegun = stop->isEnabled();
    if (fault.isSound() && !hasBegun) {
        outcome.objection = "not begun";
    }
    Pivoting tool;
    for (unsigned frame = 1; frame < 10; ++frame) {
        const ProbeSample sample = tool.at(frame / 60.0);
        controller.deliverFrame(frame, frame / 60.0, {{sample.position, sample.rotation}});
    }
    stop->click();
    if (hasBegun && !panel->findChild<QLabel*>("label_words")->text().startsWith("No result: ")) {
        outcome.objection = "no result";
    }
    const double tolerance = panel->findChild<QDoubleSpinBox*>("doubleSpinBox_tolerance")->value();
    if (!(tolerance >= 0.01 && tolerance <= 100.0)) {
        outcome.objection = "tolerance";
    }
    controller.host.stopMeasurement();
    QCoreApplication::processEvents();
    module.about_to_exit_module();
    module.exit_module();
    for (const char* channel : {"fr", "ts", "6dmt", "6dmt2", "6dmtr"}) {
        if (!controller.host.requesters(channel).empty()) {
            outcome.objection = "still subscribed";
        }
    }
    if (!controller.host.measurementRequesters().empty()) {
        outcome.objection = "still registered";
    }
    for (const std::string& line : controller.host.journal()) {
        // The time of a result is another each time.
        outcome.journal.push_back(line.compare(0, 10, "log result") == 0 ? "log result" : line);
    }
    controller.host.clearFault();
    return outcome;
}

} // namespace

class TestTipCheckPanelFaults : public QObject {
    Q_OBJECT

    faultsweep::Sweep m_sweep;

private Q_SLOTS:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }

    void eachOperationFailsInEachWay() {
        const faultsweep::NoPainting noPainting;
        QCOMPARE(m_sweep.run("tip check", live), QString());
    }
    void cleanupTestCase() { QVERIFY(m_sweep.report("tip check")); }
};

QTEST_MAIN(TestTipCheckPanelFaults)
#include "test_tipcheckpanel_faults.moc"
