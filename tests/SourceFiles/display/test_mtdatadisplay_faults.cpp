#include "SourceFiles/measurementtoolmodule.h"
#include "host_api/metatypes.h"
#include "tests/SourceFiles/display/displayfixture.h"
#include "tests/support/faultsweep.h"

#include <QElapsedTimer>
#include <QRegularExpression>
#include <QTimer>
#include <QtTest>

#include <algorithm>

namespace {

using faultsweep::Case;
using faultsweep::Outcome;

constexpr int patienceMs = 5000;
constexpr int wakeUpMs = 10;

struct Flow {
    enum class Swept { Construction, Measurements, Module };
    Swept swept = Swept::Construction;
    int protocol = 14;      ///< 1.x
    bool lateTools = false; ///< available from the start of the first measurement on
};

// A display from its construction to the exit of the host, alone or in the module's dock. When its
// measurements are swept it goes on living.
class Life {
public:
    explicit Life(const Flow& flow)
        : m_host(VersionInfo(1, flow.protocol, 0))
        , m_flow(flow) {}

    Outcome live(const Case& fault) {
        m_outcome = {};
        m_host.host.answer("measurementtool reference_of_tool b02", "b02");
        switch (m_flow.swept) {
        case Flow::Swept::Construction:
            fault.inject(m_host.host);
            construct();
            m_outcome.journal = m_host.host.journal();
            measure();
            exit();
            break;
        case Flow::Swept::Measurements:
            settle();
            fault.inject(m_host.host);
            measure();
            m_outcome.journal = m_host.host.journal();
            break;
        case Flow::Swept::Module:
            fault.inject(m_host.host);
            construct();
            m_display->window()->show();
            m_host.host.answer("measurementtool available", "yes");
            start();
            exit();
            m_outcome.journal = m_host.host.journal();
            break;
        }
        m_host.host.clearFault();
        return m_outcome;
    }

private:
    bool isInModule() const { return m_flow.swept == Flow::Swept::Module; }

    // A display remembers the format that it has read last, right or wrong.
    void settle() {
        if (m_display == nullptr) {
            construct();
        }
        m_host.host.answer("measurementtool output_6dmt", "no");
        start();
        stop();
    }

    void measure() {
        m_display->window()->show();
        expect("before the start", -2, 0, 0);
        m_host.host.answer("measurementtool available", "yes");
        m_host.host.answer("measurementtool output_6dmt", "yes");
        start();
        frame({Tool(), lostTool()}, {Pose(), Pose()});
        frame({Tool(), Tool(), toolAt(1e9, -0.0, 1.5)}, {Pose()});
        stop();
        m_host.host.answer("measurementtool output_6dmt", "no");
        start();
        frame({Tool()}, {Pose()});
        m_display->window()->hide();
        stop();
    }

    void construct() {
        m_host.host.answer("measurementtool available", m_flow.lateTools ? "no" : "yes");
        m_host.host.answer("measurementtool output_6dmt", "no");
        if (!isInModule()) {
            m_display = &m_host.build();
            return;
        }
        m_parent = std::make_unique<QWidget>();
        m_module.set_param("CommandManager", QVariant::fromValue<IOManager*>(&m_host.host));
        m_module.set_param("ModuleParent", QVariant::fromValue(m_parent.get()));
        m_module.set_param("BackendVersions", QVariant::fromValue(&m_host.versions));
        m_module.set_param("ObserverMode", true); // nothing but the display
        m_display = m_module.get_gui_elements().at(0)->content->findChild<MtDataDisplay*>();
    }

    // In the module by the host's notification, which is followed a moment later; alone at once,
    // and also when the registration has failed.
    void start() {
        if (!isInModule() || m_host.host.measurementRequesters().empty()) {
            m_display->set_mea_started_deferred();
            expect("after the start", 0, 0, 0);
            return;
        }
        m_host.host.startMeasurement();
        QTimer wakeUp;
        wakeUp.start(wakeUpMs);
        QElapsedTimer elapsed;
        elapsed.start();
        while (m_display->set_ascii_data("", "") == -2 && elapsed.elapsed() < patienceMs) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        expect("after the start", 0, 0, 0);
    }

    void stop() {
        m_host.host.measurementRequesters().empty() ? m_display->set_mea_stopped()
                                                    : m_host.host.stopMeasurement();
        expect("after the stop", -2, 0, 0);
    }

    void frame(const std::vector<Tool>& tools, const std::vector<Pose>& references) {
        const bool subscribed = !m_host.host.requesters("6dmt2").empty();
        const bool subscribedToReferences = !m_host.host.requesters("6dmtr").empty();
        m_host.host.deliver(toolLine(tools));
        m_host.host.deliver(referenceLine(references));
        m_display->onUpdateDataDisplay();
        const int toolRows = table("tableWidget6dmt")->rowCount();
        const int referenceRows = table("tableWidget6dmtref")->rowCount();
        expect("after a frame", 0, subscribed ? int(tools.size()) : toolRows,
               subscribedToReferences ? int(references.size()) : referenceRows);
        m_display->onUpdateDataDisplay(); // asks nothing more
    }

    void exit() {
        if (isInModule()) {
            m_module.about_to_exit_module();
            m_module.exit_module();
            m_parent.reset();
        } else {
            m_display->about_to_exit();
            m_host.display.reset();
        }
        for (const char* channel : {"6dmt", "6dmt2", "6dmtr"}) {
            if (!m_host.host.requesters(channel).empty()) {
                object("still subscribed");
            }
        }
        if (!m_host.host.measurementRequesters().empty()) {
            object("still registered");
        }
    }

    QTableWidget* table(const char* name) const {
        return m_display->findChild<QTableWidget*>(QLatin1String(name));
    }

    // What a line gets, and the rows of the tables with nothing but names, signs and numbers.
    void expect(const char* when, int result, int tools, int references) {
        const bool isLine = result == 0;
        if ((m_display->set_ascii_data("", "") == -2) == isLine) {
            object(when);
        }
        if (table("tableWidget6dmt")->rowCount() != tools ||
            table("tableWidget6dmtref")->rowCount() != references) {
            object(when);
        }
        static const QRegularExpression sane(
            QStringLiteral(R"(^(M\d+|MR\d+|| |-|-?\d+\.\d\d|\(none\))$)"));
        for (const char* name : {"tableWidget6dmt", "tableWidget6dmtref"}) {
            for (int row = 0; row < table(name)->rowCount(); ++row) {
                const QStringList texts = DisplayFixture::row(table(name), row);
                if (!std::all_of(texts.begin(), texts.end(),
                                 [](const QString& text) { return sane.match(text).hasMatch(); })) {
                    object(texts.join(QLatin1Char('|')));
                }
            }
        }
    }

    void object(const QString& objection) {
        if (m_outcome.objection.isEmpty()) {
            m_outcome.objection = objection;
        }
    }

    DisplayFixture m_host;
    Flow m_flow;
    MeasurementToolModule m_module;
    std::unique_ptr<QWidget> m_parent;
    MtDataDisplay* m_display = nullptr;
    Outcome m_outcome;
};

} // namespace

Q_DECLARE_METATYPE(Flow)

class TestMtDataDisplayFaults : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theDisplayLivesThroughEveryFault_data() {
        QTest::addColumn<Flow>("flow");
        using Swept = Flow::Swept;
        QTest::newRow("construction") << Flow{Swept::Construction, 14, false};
        QTest::newRow("construction, protocol 1.12") << Flow{Swept::Construction, 12, false};
        QTest::newRow("construction, tools come late") << Flow{Swept::Construction, 14, true};
        QTest::newRow("two measurements") << Flow{Swept::Measurements, 14, false};
        QTest::newRow("two measurements, protocol 1.12") << Flow{Swept::Measurements, 12, false};
        QTest::newRow("from construction to exit in the module") << Flow{Swept::Module, 14, true};
    }
    void theDisplayLivesThroughEveryFault() {
        QFETCH(Flow, flow);
        Life life(flow);
        const auto play = [&](const Case& fault) { return life.live(fault); };
        QCOMPARE(m_sweep.run(QTest::currentDataTag(), play), QString());
    }

    void cleanupTestCase() { QVERIFY(m_sweep.report("display")); }

private:
    faultsweep::NoPainting m_noPainting;
    faultsweep::Sweep m_sweep;
};

QTEST_MAIN(TestMtDataDisplayFaults)
#include "test_mtdatadisplay_faults.moc"
