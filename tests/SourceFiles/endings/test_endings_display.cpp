#include "tests/support/endings/endingsweep.h"
#include "tests/support/faultsweep.h"

#include <QtTest>

namespace {

constexpr int patienceMs = 10000;
const std::string tools =
    "6dmt2 2 2 [0 1.0 1 0.5][1.5 -2.25 0.125][1 0 0 0 1 0 0 0 1][1][0 0 0 0 0 0]"
    " [1 1.0 0 0.5][1.5 -2.25 0.125][1 0 0 0 1 0 0 0 1][][0 0 0 0 0 0]";
const std::string references = "6dmtr 1 1 [0 1.0][1.5 -2.25 0.125][1 0 0 0 1 0 0 0 1]";

void script(ScriptedHost& io) {
    io.answer("measurementtool available", "yes");
    io.answerInTurn("measurementtool output_6dmt", {"no", "yes"});
    io.answer("measurementtool max_number_of_tools", "4");
    io.answer("measurementtool max_number_of_references", "4");
    for (const char* body : {"b01", "b02"}) {
        io.answer(std::string("body calibrated measurementtool ") + body, "yes");
        io.answer(std::string("measurementtool tip_calibrated ") + body, "yes");
        io.answer(std::string("measurementtool reference_of_tool ") + body, "b01");
    }
    io.answer("body calibrated measurementtool_reference b01", "yes");
}

bool takesLines(const ScriptedHost& io) {
    const auto requesters = io.measurementRequesters();
    return !requesters.empty() && requesters.front()->set_ascii_data("", "") != -2;
}

// Until the display has started, or the end has come while it did.
void start(EndingHost& host) {
    host.io.startMeasurement();
    QTRY_VERIFY_WITH_TIMEOUT(host.hasEnded() || takesLines(host.io), patienceMs);
}

void refresh(EndingHost& host) {
    auto* const display = host.content(2)->findChild<QWidget*>("MtDataDisplayClass");
    QVERIFY(QMetaObject::invokeMethod(display, "onUpdateDataDisplay", Qt::DirectConnection));
}

// The display is shown, two measurements with other output formats run, it is hidden, the host
// exits.
void live(EndingHost& host) {
    host.trigger(2);
    host.act([&] { start(host); });
    host.act([&] {
        host.io.deliver(tools);
        host.io.deliver(references);
        refresh(host);
    });
    host.act([&] { host.io.stopMeasurement(); });
    host.act([&] { start(host); });
    host.act([&] { refresh(host); });
    host.trigger(2);
    host.trigger(2);
    host.act([&] { host.module->about_to_exit_module(); });
    host.act([&] { host.module->exit_module(); });
}

} // namespace

class TestEndingsDisplay : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QGuiApplication::setQuitOnLastWindowClosed(false); }

    void theHostMayEndTheDisplayInsideAnyCall_data() {
        // Whoever forces what is due while Qt shows the dock takes its children from under Qt.
        addEndingRows({QStringLiteral("display")}, false);
    }
    void theHostMayEndTheDisplayInsideAnyCall() {
        QFETCH(EndBy, endBy);
        const auto flow = [](EndingHost& host) { live(host); };
        const EndingSweep sweep{QStringLiteral(KESTREL_PLUGIN_FILE), "display", &script, flow};
        QCOMPARE(sweep.run(endBy), QString());
    }

private:
    faultsweep::NoPainting m_noPainting;
};

QTEST_MAIN(TestEndingsDisplay)
#include "test_endings_display.moc"
