#include "host_api/metatypes.h"
#include "probecheck/points/pointspanel.h"
#include "probecheck/probecheckmodule.h"
#include "tests/probecheck/probefixture.h"
#include "tests/support/datarows.h"
#include "tests/support/faultsweep.h"

#include <QDockWidget>
#include <QMainWindow>
#include <QTemporaryDir>
#include <QtTest>

/// The page of points in the module's dock, with its host failing in each of its calls, and ending
/// the module from inside each of them.

namespace {

constexpr int patienceMs = 20000;
constexpr int points = 1; // index of the dock

enum class EndBy { Exit, EventsThenExit, WindowDeath, EventsThenWindowDeath };

/// A host with a window and the module, from the building of the docks to the exit.
class Life {
public:
    Life() {
        for (const char* tool : {"b01", "b02"}) {
            controller.host.answer(std::string("measurementtool measurement_duration ") + tool,
                                   "0.2");
        }
        module.set_param("CommandManager",
                         QVariant::fromValue(static_cast<IOManager*>(&controller.host)));
        module.set_param("ModuleParent", QVariant::fromValue(static_cast<QWidget*>(window)));
        module.set_param("BackendVersions", QVariant::fromValue(&controller.versions));
    }
    ~Life() {
        controller.host.onOperation = {};
        module.exit_module();
        delete window;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void build() {
        const QList<_GuiElement*> elements = module.get_gui_elements();
        if (hasEnded || elements.size() <= points || elements.at(points)->content == nullptr) {
            return;
        }
        dock = qobject_cast<QDockWidget*>(elements.at(points)->content);
        window->addDockWidget(Qt::RightDockWidgetArea, dock);
        window->show();
        dock->show();
    }
    void measure() {
        controller.host.startMeasurement();
        QVERIFY(QTest::qWaitFor(
            [this] { return hasEnded || !controller.host.requesters("6dmtr").empty(); },
            patienceMs));
    }
    PointsPanel* panel() const { return dock.isNull() ? nullptr : dock->findChild<PointsPanel*>(); }
    bool hasResult() const {
        const std::vector<std::string> journal = controller.host.journal();
        return std::any_of(journal.begin(), journal.end(), [](const std::string& line) {
            return line.rfind("log result ", 0) == 0;
        });
    }
    QString words() const {
        const auto* const label =
            panel() == nullptr ? nullptr : panel()->findChild<QLabel*>("label_state");
        return label == nullptr ? QString() : label->text();
    }
    void capture() {
        // Of the first frames the references are not known: a capture may be given up.
        const bool isOver = QTest::qWaitFor(
            [&] {
                for (int i = 0; i < 6 && !hasEnded; ++i) {
                    ++frame;
                    controller.deliverFrame(frame, frame / 60.0, {{}, {}});
                    controller.host.deliver(probelines::references({1.0}));
                }
                QCoreApplication::processEvents();
                const bool waits = words() == "Ready." || words().startsWith("Given up");
                if (!hasEnded && panel() != nullptr && waits) {
                    QTest::keyClick(panel(), Qt::Key_Space);
                }
                return hasEnded || hasResult();
            },
            patienceMs);
        QVERIFY2(isOver, qPrintable(words()));
    }
    void live() {
        build();
        if (!hasEnded) {
            measure();
        }
        if (!hasEnded) {
            capture();
        }
        if (!hasEnded && !dock.isNull()) {
            dock->hide();
            QCoreApplication::processEvents();
        }
    }
    void end(EndBy way) {
        hasEnded = true;
        if (way == EndBy::EventsThenExit || way == EndBy::EventsThenWindowDeath) {
            QCoreApplication::processEvents();
        }
        if (way == EndBy::Exit || way == EndBy::EventsThenExit) {
            module.exit_module();
        } else {
            delete window;
            window = nullptr;
        }
    }

    ProbeController controller;
    QPointer<QMainWindow> window = new QMainWindow;
    ProbeCheckModule module;
    QPointer<QDockWidget> dock;
    unsigned frame = 0;
    bool hasEnded = false;
};

} // namespace

Q_DECLARE_METATYPE(EndBy)
Q_DECLARE_METATYPE(ScriptedHost::Fault)

class TestPointsPanelSweeps : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void eachCallMayFail_data();
    void eachCallMayFail();
    void theHostMayEndTheModuleInsideEachCall_data();
    void theHostMayEndTheModuleInsideEachCall();

private:
    std::unique_ptr<QTemporaryDir> m_data;
    faultsweep::NoPainting m_noPainting;
};

void TestPointsPanelSweeps::initTestCase() {
    QGuiApplication::setQuitOnLastWindowClosed(false);
}

void TestPointsPanelSweeps::init() {
    m_data = std::make_unique<QTemporaryDir>();
    qputenv("XDG_DATA_HOME", m_data->path().toLocal8Bit());
}

void TestPointsPanelSweeps::eachCallMayFail_data() {
    using Fault = ScriptedHost::Fault;
    QTest::addColumn<Fault>("fault");
    QTest::addColumn<bool>("stays");
    for (const bool stays : {false, true}) {
        const QByteArray when = stays ? ", from there on" : ", once";
        row("error" + when, Fault::Error, stays);
        row("empty" + when, Fault::EmptyReply, stays);
        row("garbage" + when, Fault::Garbage, stays);
        row("unterminated" + when, Fault::Unterminated, stays);
        row("huge" + when, Fault::HugeNumber, stays);
        row("minus one" + when, Fault::MinusOne, stays);
    }
}

void TestPointsPanelSweeps::eachCallMayFail() {
    QFETCH(ScriptedHost::Fault, fault);
    QFETCH(bool, stays);
    int operations = 0;
    int captured = 0;
    for (int place = -1; place < operations; ++place) {
        Life life;
        if (place >= 0) {
            life.controller.host.injectFault(place, fault, stays);
        }
        life.build();
        QVERIFY(life.panel() != nullptr);
        life.controller.host.startMeasurement();
        const auto hasAsked = [&] {
            return life.controller.host.operationCount() >= (place < 0 ? 1 : place + 1) &&
                   (place >= 0 || !life.controller.host.requesters("6dmtr").empty());
        };
        QVERIFY(QTest::qWaitFor(hasAsked, patienceMs));
        QCoreApplication::processEvents();
        if (place < 0) {
            operations = life.controller.host.operationCount();
            QVERIFY(operations > 15);
        }
        const auto* const duration =
            life.panel()->findChild<QDoubleSpinBox*>("doubleSpinBox_duration");
        QVERIFY(duration->value() >= 0.2 && duration->value() <= 10.0);
        QVERIFY(life.controller.host.operationCount() < faultsweep::mostOperations);
        // A controller that behaves again is believed with the next measurement.
        life.controller.host.clearFault();
        life.controller.host.stopMeasurement();
        QCoreApplication::processEvents();
        if (!stays && !life.controller.host.measurementRequesters().empty()) {
            life.measure();
            life.capture();
            captured += life.hasResult() ? 1 : 0;
            QCOMPARE(duration->value(), 0.2);
        }
    }
    qInfo("%d operations", operations);
    QVERIFY(stays || captured > operations / 2);
}

void TestPointsPanelSweeps::theHostMayEndTheModuleInsideEachCall_data() {
    QTest::addColumn<EndBy>("endBy");
    row("exit", EndBy::Exit);
    row("events, then exit", EndBy::EventsThenExit);
    row("the window dies", EndBy::WindowDeath);
    row("events, then the window dies", EndBy::EventsThenWindowDeath);
}

void TestPointsPanelSweeps::theHostMayEndTheModuleInsideEachCall() {
    QFETCH(EndBy, endBy);
    int places = 1; // as many as an undisturbed life has
    for (int place = -1; place < places; ++place) {
        Life life;
        int calls = 0;
        life.controller.host.onOperation = [&](const std::string&) {
            if (calls++ == place && !life.hasEnded) {
                life.end(endBy);
            }
        };
        life.live();
        if (place < 0) {
            QVERIFY(life.hasResult());
            places = calls;
        } else {
            QVERIFY2(life.hasEnded, qPrintable(QString::number(place)));
        }
        life.controller.host.onOperation = {};
        life.module.exit_module();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(life.dock.isNull());
        QVERIFY(life.controller.host.measurementRequesters().empty());
        QVERIFY(life.controller.host.requesters("6dmt2").empty());
        const int said = life.controller.host.operationCount();
        life.controller.host.startMeasurement();
        QCoreApplication::processEvents();
        QCOMPARE(life.controller.host.operationCount(), said);
    }
    qInfo("%d places", places);
    QVERIFY(places > 20);
}

QTEST_MAIN(TestPointsPanelSweeps)
#include "test_pointspanel_sweeps.moc"
