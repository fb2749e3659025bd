#include "tests/support/datarows.h"
#include "workbench/controller/command/controlleraddress.h"
#include "workbench/options.h"

#include <QtTest>

using workbench::ControllerAddress;
using workbench::parseOptions;
using Action = workbench::ParsedOptions::Action;

class TestOptions : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void addresses_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected"); // empty: refused
        row("host", "10.0.0.1", "10.0.0.1:47300");
        row("host and port", "ctl.example:1234", "ctl.example:1234");
        row("IPv6", "[::1]", "[::1]:47300");
        row("IPv6 and port", "[fe80::1%eth0]:99", "[fe80::1%eth0]:99");
        row("largest port", "a:65535", "a:65535");
        row("empty", "", "");
        row("port alone", ":1234", "");
        row("port 0", "a:0", "");
        row("port too large", "a:65536", "");
        row("port is a word", "a:b", "");
        row("port missing", "a:", "");
        row("blanks", "a b", "");
        row("URL", "tcp://a:1", "");
    }
    void addresses() {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        ControllerAddress address;
        QCOMPARE(address.parse(text), !expected.isEmpty());
        QCOMPARE(address.toString(), expected.isEmpty() ? "127.0.0.1:47300" : expected);
    }

    void everythingIsRead() {
        const auto parsed = parseOptions({"program",
                                          "--simulate",
                                          "--simulator-options",
                                          "--seed 3 --tools 2",
                                          "--measure",
                                          "--observer",
                                          "--module",
                                          "a.so",
                                          "--module",
                                          "b.so",
                                          "--plugins",
                                          "dir",
                                          "--settings",
                                          "s.ini",
                                          "--record",
                                          "r",
                                          "--overwrite",
                                          "--send",
                                          "udp://plotter",
                                          "--send",
                                          "mqtt://broker/line3",
                                          "--screenshot",
                                          "p.png",
                                          "--after",
                                          "1.5",
                                          "--quit-after",
                                          "7",
                                          "--print-rows",
                                          "--open-docks",
                                          "-platform",
                                          "offscreen"});
        QCOMPARE(parsed.text, QString());
        QCOMPARE(parsed.action, Action::Run);
        const workbench::Options& options = parsed.options;
        QVERIFY(options.simulate && options.measure && options.observer && options.printRows &&
                options.openDocks && options.overwrite);
        QCOMPARE(options.simulatorOptions, QStringList({"--seed", "3", "--tools", "2"}));
        QCOMPARE(options.modules, QStringList({"a.so", "b.so"}));
        QCOMPARE(*options.pluginFolder, QStringLiteral("dir"));
        QCOMPARE(options.settingsFile, QStringLiteral("s.ini"));
        QCOMPARE(options.recordFile, QStringLiteral("r"));
        QCOMPARE(options.sendTo.size(), 2);
        QCOMPARE(options.sendTo[0].host, QStringLiteral("plotter"));
        QCOMPARE(options.sendTo[1].prefix, QStringLiteral("line3"));
        QCOMPARE(options.screenshotFile, QStringLiteral("p.png"));
        QCOMPARE(options.screenshotAfter, 1.5);
        QCOMPARE(options.quitAfter, 7.0);
    }

    void aControllerIsNamed() {
        const auto parsed = parseOptions({"program", "--connect", "h:99", "--measure"});
        QCOMPARE(parsed.action, Action::Run);
        QCOMPARE(parsed.options.connectTo->toString(), QStringLiteral("h:99"));
    }

    void badOptionsAreNamed_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("part");
        row("unknown", QStringList{"--bogus"}, "bogus");
        row("positional", QStringList{"file"}, "\"file\"");
        row("address", QStringList{"--connect", "a b"}, "\"a b\"");
        row("range of ports", QStringList{"--connect", "a:70000"}, "1 to 65535");
        row("range of seconds", QStringList{"--quit-after", "1e7"},
            "--quit-after takes seconds from 0 to 1000000");
        row("missing value", QStringList{"--connect"}, "connect");
        row("seconds", QStringList{"--quit-after", "soon"}, "\"soon\"");
        row("negative seconds", QStringList{"--quit-after", "-1"}, "\"-1\"");
        row("endless seconds", QStringList{"--quit-after", "inf"}, "\"inf\"");
        row("comma", QStringList{"--quit-after", "1,5"}, "\"1,5\"");
        row("both", QStringList{"--connect", "a", "--simulate"}, "exclude");
        row("after alone", QStringList{"--after", "1"}, "--screenshot");
        row("measure alone", QStringList{"--measure"}, "--connect");
        row("outlet", QStringList{"--send", "tcp://a"}, "--send tcp://a: a URL begins with");
        row("second outlet", QStringList{"--send", "udp://a", "--send", "udp://a:0"}, "65535");
        row("simulator options alone", QStringList{"--simulator-options", "x"}, "--simulate");
    }
    void badOptionsAreNamed() {
        QFETCH(QStringList, arguments);
        QFETCH(QString, part);
        const auto parsed = parseOptions(QStringList{"program"} + arguments);
        QCOMPARE(parsed.action, Action::Fail);
        QVERIFY2(parsed.text.contains(part), qPrintable(parsed.text));
    }

    void aSecretInAUrlIsNotRepeated() {
        const auto parsed = parseOptions({"program", "--send", "mqtt://u:se@cret@a/p"});
        QCOMPARE(parsed.action, Action::Fail);
        QVERIFY2(parsed.text.contains(QStringLiteral("--send a/p: ")), qPrintable(parsed.text));
        QVERIFY2(!parsed.text.contains(QStringLiteral("cret")), qPrintable(parsed.text));
    }

    void helpNamesEveryExitCode() {
        const auto parsed = parseOptions({"program", "--help"});
        QCOMPARE(parsed.action, Action::ShowText);
        for (const char* word : {"--connect", "--simulate", "2 bad options", "3 the simulator",
                                 "4 the picture", "5 the recording", "6 data"}) {
            QVERIFY2(parsed.text.contains(QLatin1String(word)), word);
        }
    }
};

QTEST_GUILESS_MAIN(TestOptions)
#include "test_options.moc"
