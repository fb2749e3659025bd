#include "simulator/options.h"

#include <QtTest>

using namespace kestrel_simulator;

namespace {

ParsedOptions parse(const QStringList& options) {
    return parseOptions(QStringList{QStringLiteral("kestrel-simulator")} + options);
}

} // namespace

/// Options that are good, each for itself, and what becomes of them together.
class TestSimulatorOptions : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theEndOfARecordingIsOfARecording() {
        const ParsedOptions alone = parse({"--replay-once"});
        QCOMPARE(alone.action, ParsedOptions::Action::Refuse);
        QCOMPARE(alone.text, QString("--replay-once needs --replay"));
        const ParsedOptions both = parse({"--replay", "r.kestrel", "--replay-once"});
        QCOMPARE(both.action, ParsedOptions::Action::Run);
        QCOMPARE(both.options.replayFile, QString("r.kestrel"));
        QCOMPARE(both.options.replayEnd, Replay::AtEnd::Stop);
        const ParsedOptions again = parse({"--replay", "r.kestrel"});
        QCOMPARE(again.options.replayEnd, Replay::AtEnd::Loop);
    }

    void noFileIsNoRecording() {
        for (const QStringList& options :
             {QStringList{"--replay", ""}, QStringList{"--replay=", "--replay-once"}}) {
            const ParsedOptions parsed = parse(options);
            QCOMPARE(parsed.action, ParsedOptions::Action::Refuse);
            QCOMPARE(parsed.text, QString("bad value '' of --replay: expected a file"));
        }
    }

    void whatHasNoEffectOnARecordingIsRefused_data() {
        QTest::addColumn<QStringList>("options");
        for (const char* options : {"--bodies 3", "--rate 500", "--noise 0", "--no-occlusion",
                                    "--model X", "--protocol 1.13", "--system 2.9", "--pivot slip",
                                    "--tip 1,2,3", "--lever 250", "--slip 1"}) {
            QTest::newRow(options) << QString(options).split(' ');
        }
    }
    void whatHasNoEffectOnARecordingIsRefused() {
        QFETCH(QStringList, options);
        QCOMPARE(parse(options).action, ParsedOptions::Action::Run);
        const ParsedOptions parsed = parse(options + QStringList{"--replay", "r.kestrel"});
        QCOMPARE(parsed.action, ParsedOptions::Action::Refuse);
        QCOMPARE(parsed.text, options.first() + " has no effect with --replay");
    }

    void whatHasAnEffectOnItIsTaken() {
        const ParsedOptions parsed =
            parse({"--replay",  "r.kestrel", "--listen",       "127.0.0.1", "--port",       "0",
                   "--tools",   "3",         "--references",   "1",         "--max-bodies", "9",
                   "--devices", "1",         "--cal-duration", "1",         "--cal-pause",  "0",
                   "--seed",    "2",         "--misbehave",    "lost-data"});
        QCOMPARE(parsed.text, QString());
        QCOMPARE(parsed.action, ParsedOptions::Action::Run);
    }
};

QTEST_GUILESS_MAIN(TestSimulatorOptions)
#include "test_simulator_options.moc"
