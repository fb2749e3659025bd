#include "tests/workbench/backendfixture.h"
#include "tests/workbench/scriptedcontroller.h"

#include <QtTest>

#include <memory>
#include <mutex>

using workbench::OutletChannel;
using workbench::OutletHub;
using workbench::OutletUrl;
using workbench::OutletWord;
using workbench::TrackedFrame;

namespace {

constexpr int patience = 15000;
constexpr const char* threeTools = "6dmt2 3 3"
                                   " [0 1.0 0 1][1 2 3][1 0 0 0 1 0 0 0 1][][0 0 0 0 0 0]"
                                   " [1 1.0 0 1][1 2 3][1 0 0 0 1 0 0 0 1][][0 0 0 0 0 0]"
                                   " [2 1.0 0 1][1 2 3][1 0 0 0 1 0 0 0 1][][0 0 0 0 0 0]";

/// Keeps the last frame.
struct Last {
    std::mutex mutex;
    TrackedFrame frame;

    TrackedFrame get() {
        const std::lock_guard<std::mutex> lock(mutex);
        return frame;
    }
};

class LastChannel : public OutletChannel {
public:
    explicit LastChannel(std::shared_ptr<Last> last)
        : m_last(std::move(last)) {}
    void tend() override {}
    OutletWord word() const override { return {}; }
    Delivery send(const TrackedFrame& frame) override {
        const std::lock_guard<std::mutex> lock(m_last->mutex);
        m_last->frame = frame;
        return Delivery::Sent;
    }

private:
    const std::shared_ptr<Last> m_last;
};

/// The parts of a backend that an outlet needs, with one that keeps what it gets.
struct Rig {
    ScriptedController controller;
    std::shared_ptr<Last> last = std::make_shared<Last>();
    OutletHub hub{[this](const OutletUrl&, QString*) -> std::unique_ptr<OutletChannel> {
        return std::make_unique<LastChannel>(last);
    }};
    workbench::LogModel log;
    workbench::RequesterRegistry registry;
    workbench::Recorder recorder;
    workbench::MeasurementTeller teller{registry};
    workbench::DataReceiver receiver{registry, recorder, &teller, &hub};
    workbench::MeasurementMonitor monitor{teller};
    workbench::ControllerSession session{receiver, monitor, log};
    workbench::ToolFacts facts{session, monitor};
    workbench::OutletFeed feed{facts, hub};

    Rig() {
        controller.answer("measurementtool available", "yes");
        controller.answer("measurementtool output_6dmt", "no");
        controller.answer("measurementtool number_of_tools", "3");
        controller.answer("measurementtool reference_of_tool b01", "b02");
        controller.answer("measurementtool reference_of_tool b02", "none");
    }

    void connect() {
        workbench::ControllerAddress address;
        address.port = controller.port();
        session.connectTo(address);
    }
    void addOutlet() {
        QString error;
        if (!hub.add({}, &error)) {
            qFatal("%s", qPrintable(error));
        }
        feed.refresh();
    }
    bool isActivated(const char* line) const {
        return QTest::qWaitFor(
            [&] {
                return controller.count(std::string("kestrel2 set output active chmon ") + line +
                                        " yes") > 0;
            },
            patience);
    }
    /// The references of the three tools, as a frame that comes now has them: "2,0,?".
    QString references() {
        receiver.handOut(std::string("fr 1\r\n") + threeTools);
        QStringList texts;
        for (const workbench::TrackedBody& body : last->get().bodies) {
            texts += body.reference ? QString::number(*body.reference) : QStringLiteral("?");
        }
        return texts.join(QLatin1Char(','));
    }
};

} // namespace

class TestOutletFeed : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void linesAndReferencesAreAskedForWithTheConnection() {
        Rig rig;
        rig.addOutlet();
        QCOMPARE(rig.controller.commands().size(), std::size_t(0));
        rig.connect();
        QVERIFY(rig.isActivated("6dmt2"));
        QVERIFY(rig.isActivated("6dmtr"));
        QTRY_COMPARE_WITH_TIMEOUT(rig.references(), QStringLiteral("2,0,?"), patience);
        QCOMPARE(rig.controller.count("kestrel2 set output active chmon 6dmt yes"), 0);
    }

    void anOutletThatComesLaterGetsThemToo() {
        Rig rig;
        rig.connect();
        QTRY_VERIFY_WITH_TIMEOUT(rig.session.isReady(), patience);
        QCOMPARE(rig.controller.count("kestrel2 get measurementtool available"), 0);
        rig.addOutlet();
        QVERIFY(rig.isActivated("6dmt2"));
        QTRY_COMPARE_WITH_TIMEOUT(rig.references(), QStringLiteral("2,0,?"), patience);
    }

    void theControllersChoiceOfLineIsFollowed() {
        Rig rig;
        rig.controller.answer("measurementtool output_6dmt", "yes");
        rig.addOutlet();
        rig.connect();
        QVERIFY(rig.isActivated("6dmt"));
        QCOMPARE(rig.controller.count("kestrel2 set output active chmon 6dmt2 yes"), 0);
    }

    void aRefusedChoiceOfLineIsTheOldOne() {
        Rig rig;
        rig.controller.answerRaw("kestrel2 get measurementtool output_6dmt",
                                 "kestrel2 err 4 \"no\"\n");
        rig.addOutlet();
        rig.connect();
        QVERIFY(rig.isActivated("6dmt"));
        QVERIFY(rig.isActivated("6dmtr"));
        QCOMPARE(rig.controller.count("kestrel2 set output active chmon 6dmt2 yes"), 0);
    }

    void anOlderControllerSendsTheOlderLineUnasked() {
        Rig rig;
        rig.controller.answer("version protocol", "1.12.9");
        rig.addOutlet();
        rig.connect();
        QVERIFY(rig.isActivated("6dmt"));
        QCOMPARE(rig.controller.count("kestrel2 get measurementtool output_6dmt"), 0);
    }

    void eachMeasurementAsksAnew() {
        Rig rig;
        rig.addOutlet();
        rig.connect();
        QTRY_COMPARE_WITH_TIMEOUT(rig.references(), QStringLiteral("2,0,?"), patience);
        rig.controller.answer("measurementtool reference_of_tool b02", "b010");
        rig.controller.answer("measurementtool reference_of_tool b03", "nonsense");
        rig.controller.answer("status active", "tracking");
        QTRY_COMPARE_WITH_TIMEOUT(rig.references(), QStringLiteral("2,10,?"), patience);
    }

    void aReferenceThatIsChangedHereIsToldAtOnce() {
        Rig rig;
        rig.addOutlet();
        rig.connect();
        QTRY_COMPARE_WITH_TIMEOUT(rig.references(), QStringLiteral("2,0,?"), patience);
        rig.controller.answer("measurementtool reference_of_tool b02", "b03");
        const std::string command = "kestrel2 set measurementtool reference_of_tool b02 b03";
        rig.controller.answerRaw(command, "kestrel2 ok\n");
        rig.session.channel().askLater(command, [](const auto&) {});
        QTRY_COMPARE_WITH_TIMEOUT(rig.references(), QStringLiteral("2,3,?"), patience);
    }

    void afterTheLastOutletNothingIsAsked() {
        Rig rig;
        rig.addOutlet();
        rig.connect();
        QTRY_COMPARE_WITH_TIMEOUT(rig.references(), QStringLiteral("2,0,?"), patience);
        const int asked = rig.controller.count("kestrel2 get measurementtool available");
        QVERIFY(rig.hub.remove(QString()));
        rig.feed.refresh();
        const int polls = rig.controller.count("kestrel2 get status active");
        rig.controller.answer("status active", "tracking");
        QTRY_VERIFY_WITH_TIMEOUT(rig.controller.count("kestrel2 get status active") > polls + 2,
                                 patience);
        QCOMPARE(rig.controller.count("kestrel2 get measurementtool available"), asked);
    }

    void withoutMeasurementToolsNothingIsSwitched() {
        Rig rig;
        rig.controller.answer("measurementtool available", "no");
        rig.addOutlet();
        rig.connect();
        QTRY_VERIFY_WITH_TIMEOUT(rig.controller.count("kestrel2 get measurementtool available") > 0,
                                 patience);
        // The next poll's answer comes behind whatever might have been asked.
        const int polls = rig.controller.count("kestrel2 get status active");
        QTRY_VERIFY_WITH_TIMEOUT(rig.controller.count("kestrel2 get status active") > polls + 1,
                                 patience);
        for (const std::string& command : rig.controller.commands()) {
            QVERIFY2(command.find("chmon") == std::string::npos, command.c_str());
        }
    }

    void absurdNumbersOfToolsAreBounded() {
        Rig rig;
        rig.controller.answer("measurementtool number_of_tools", "2000000000");
        rig.addOutlet();
        rig.connect();
        QTRY_COMPARE_WITH_TIMEOUT(
            rig.controller.count("kestrel2 get measurementtool reference_of_tool b999"), 1,
            4 * patience); // thousands of questions, one after the other
        QTRY_COMPARE_WITH_TIMEOUT(rig.references(), QStringLiteral("2,0,?"), patience);
        QCOMPARE(rig.controller.count("kestrel2 get measurementtool reference_of_tool b1000"), 0);
    }
};

QTEST_MAIN(TestOutletFeed)
#include "test_outletfeed.moc"
