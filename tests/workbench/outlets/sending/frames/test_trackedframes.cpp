#include "tests/support/datarows.h"
#include "workbench/outlets/sending/frames/framedecoder.h"
#include "workbench/outlets/sending/frames/framejson.h"
#include "workbench/outlets/sending/resultmessage.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QtTest>

#include <initializer_list>
#include <random>

using workbench::FrameDecoder;
using workbench::FrameTimes;
using workbench::TrackedBody;
using workbench::TrackedFrame;

namespace {

constexpr kestrel_wire::UtcMilliseconds arrival = 1795318812345; // 2026-11-22T03:40:12.345Z

// The second tool is not tracked, and has said where it was all the same.
constexpr const char* twoTools =
    "6dmt2 2 2 [0 0.875 4 0.750][1.5 -2.25 1e-3][1 0 0 0 1 0 0 0 1][5][1 0 0 1 0 1]"
    " [1 -1.000 4 0.500][7 8 9][1 0 0 0 1 0 0 0 1][2][0 0 0 0 0 0]";
constexpr const char* oneOfTwoReferences = "6dmtr 2 1 [1 1.000][1 2 3][0 1 0 -1 0 0 0 0 1]";

TrackedFrame decoded(FrameDecoder& decoder, std::initializer_list<const char*> lines) {
    decoder.begin(arrival);
    for (const char* line : lines) {
        decoder.add(line);
    }
    return decoder.end();
}

TrackedFrame decoded(std::initializer_list<const char*> lines) {
    FrameDecoder decoder;
    return decoded(decoder, lines);
}

QByteArray jsonText(const TrackedFrame& frame, FrameTimes times = FrameTimes::TimeStamp) {
    std::string text;
    workbench::appendFrameJson(frame, times, text);
    return QByteArray::fromStdString(text);
}

QJsonObject json(const TrackedFrame& frame, FrameTimes times = FrameTimes::TimeStamp) {
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(jsonText(frame, times), &error);
    return error.error == QJsonParseError::NoError ? document.object() : QJsonObject();
}

QString id(const QString& source, const QString& text,
           const QString& station = QStringLiteral("press 7"),
           kestrel_wire::UtcMilliseconds time = arrival) {
    return QString::fromStdString(workbench::resultId({source, text, time}, station));
}

QJsonObject message(const QString& text) {
    const std::string line = workbench::resultMessage(
        {QStringLiteral("PROBE \"1\"\n"), text, arrival}, "id-1", QStringLiteral("Presse ü"));
    if (line.find('\n') != std::string::npos || line.find('\r') != std::string::npos) {
        return {};
    }
    return QJsonDocument::fromJson(QByteArray::fromStdString(line)).object();
}

} // namespace

class TestTrackedFrames : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void toolsAndReferencesAreRead() {
        const TrackedFrame frame =
            decoded({"fr 7", "ts 1.5", "6dcal 0", twoTools, oneOfTwoReferences});
        QCOMPARE(frame.arrival, arrival);
        QVERIFY(frame.counter == 7U && frame.seconds == 1.5);
        QCOMPARE(frame.bodies.size(), std::size_t(4));
        QCOMPARE(frame.toolCount(), 2);
        const TrackedBody& first = frame.bodies[0];
        QVERIFY(first.kind == TrackedBody::Kind::Tool && first.isTracked());
        QCOMPARE(first.number, 1);
        QCOMPARE(first.quality, 0.875);
        QCOMPARE(first.position[1], -2.25);
        QCOMPARE(first.rotation[8], 1.0);
        QCOMPARE(first.buttonCount, 4);
        QCOMPARE(first.pressedButtons, 5U);
        QVERIFY(first.radius == 0.75 && !first.reference);
        QVERIFY(!frame.bodies[1].isTracked());
        QVERIFY(frame.bodies[2].kind == TrackedBody::Kind::Reference);
        QVERIFY(!frame.bodies[2].isTracked() && frame.bodies[3].isTracked());
        QCOMPARE(frame.bodies[3].number, 2);
        QCOMPARE(frame.bodies[3].rotation[1], 1.0);
    }

    void theOlderLineTellsNoRadius() {
        const TrackedFrame frame =
            decoded({"6dmt 1 [0 1.000 3][1 2 3][1 0 0 0 1 0 0 0 1]", "6dcal 1"});
        QCOMPARE(frame.bodies.size(), std::size_t(1));
        QVERIFY(!frame.bodies[0].radius);
        QCOMPARE(frame.bodies[0].pressedButtons, 3U);
        QVERIFY(!frame.counter && !frame.seconds);
    }

    void nothingOfAnEarlierFrameShows_data() {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<int>("bodies");
        row("no line of tools", QByteArray("3d 0"), 0);
        row("malformed line", QByteArray("6dmt2 2 2 [0 0.875 4 0.750][1 2"), 0);
        row("malformed references", QByteArray("6dmtr 2"), 0);
        row("fewer tools", QByteArray("6dmt 1 [0 1.0 0][1 2 3][1 0 0 0 1 0 0 0 1]"), 1);
        row("more tools than can be", QByteArray("6dmt2 70000 70000"), 0);
        row("empty line", QByteArray(""), 0);
    }
    void nothingOfAnEarlierFrameShows() {
        QFETCH(QByteArray, line);
        FrameDecoder decoder;
        QCOMPARE(decoded(decoder, {"fr 1", "ts 2", twoTools, oneOfTwoReferences}).bodies.size(),
                 std::size_t(4));
        const TrackedFrame frame = decoded(decoder, {line.constData()});
        QTEST(static_cast<int>(frame.bodies.size()), "bodies");
        QVERIFY(!frame.counter && !frame.seconds);
    }

    void onlyLinesOfToolsAndTimesAreWanted() {
        for (const char* line : {"fr 1", "ts 1", "6dmt 0", "6dmt2 0 0", "6dmtr 0 0"}) {
            QVERIFY2(FrameDecoder::isWanted(line), line);
        }
        for (const char* line : {"", " fr 1", "6dcal 0", "6d 0", "6dmtx 0", "gl 0", "frx"}) {
            QVERIFY2(!FrameDecoder::isWanted(line), line);
        }
    }

    void theObjectOfAFrameIsWrittenExactly() {
        TrackedFrame frame = decoded({"fr 7", "ts 1.5", twoTools});
        frame.bodies[0].reference = 1;
        frame.bodies[1].reference = 0;
        QCOMPARE(jsonText(frame),
                 QByteArray("{\"timestamp\":1.5,\"frame\":7,"
                            "\"M1\":{\"tracked\":true,\"x\":1.5,\"y\":-2.25,\"z\":0.001,"
                            "\"rx\":-0.000000,\"ry\":0.000000,\"rz\":-0.000000,"
                            "\"qw\":1.000000000,\"qx\":0.000000000,\"qy\":0.000000000,"
                            "\"qz\":0.000000000,\"quality\":0.875,\"buttons\":[1,0,1,0],"
                            "\"radius\":0.75,\"reference\":\"MR1\"},"
                            "\"M2\":{\"tracked\":false,\"quality\":-1,\"buttons\":[0,1,0,0],"
                            "\"radius\":0.5,\"reference\":\"none\"}}"));
    }

    void aReferenceHasPoseAndQualityAlone() {
        const QJsonObject object =
            json(decoded({oneOfTwoReferences})).value(QLatin1String("MR2")).toObject();
        QCOMPARE(object.keys(), QStringList({"quality", "qw", "qx", "qy", "qz", "rx", "ry", "rz",
                                             "tracked", "x", "y", "z"}));
        // A quarter turn about z.
        QVERIFY(qAbs(object.value(QLatin1String("rz")).toDouble() - 90.0) < 1e-6 ||
                qAbs(object.value(QLatin1String("rz")).toDouble() + 90.0) < 1e-6);
        QVERIFY(qAbs(qAbs(object.value(QLatin1String("qz")).toDouble()) - 0.707106781) < 1e-8);
    }

    void whatIsNotKnownIsLeftOut() {
        const QJsonObject object = json(decoded({"6dmt 1 [0 1.0 0][1 2 3][1 0 0 0 1 0 0 0 1]"}));
        QVERIFY(!object.contains(QLatin1String("frame")));
        const QJsonObject tool = object.value(QLatin1String("M1")).toObject();
        QVERIFY(tool.contains(QLatin1String("x")));
        QVERIFY(!tool.contains(QLatin1String("radius")));
        QVERIFY(!tool.contains(QLatin1String("reference")));
    }

    void withoutATimeStampTheArrivalCounts() {
        QCOMPARE(json(decoded({twoTools})).value(QLatin1String("timestamp")).toDouble(),
                 1795318812.345);
        const QJsonObject both = json(decoded({"ts 3.25"}), FrameTimes::TimeStampAndUtc);
        QCOMPARE(both.value(QLatin1String("timestamp")).toDouble(), 3.25);
        QCOMPARE(both.value(QLatin1String("utc")).toString(),
                 QStringLiteral("2026-11-22T03:40:12.345Z"));
    }

    void numbersThatAreNoneAreNull() {
        const TrackedFrame frame =
            decoded({"ts nan", "6dmt 1 [0 inf 0][nan inf -1e308][nan 0 0 0 0 0 0 0 0]"});
        const QJsonObject object = json(frame);
        QVERIFY(object.value(QLatin1String("timestamp")).isNull());
        const QJsonObject tool = object.value(QLatin1String("M1")).toObject();
        for (const char* key : {"x", "y", "qw", "quality"}) {
            QVERIFY2(tool.contains(QLatin1String(key)), key);
            QVERIFY2(tool.value(QLatin1String(key)).isNull(), key);
        }
        QCOMPARE(tool.value(QLatin1String("z")).toDouble(), -1e308);
    }

    void whateverTheLinesHoldTheTextIsJson() {
        std::mt19937 random(7);
        const auto below = [&random](std::size_t limit) {
            return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
        };
        constexpr std::string_view odd = "[]0123456789-+.eExX naifINF\x01\x7f\xff\"\\{}:,";
        FrameDecoder decoder;
        int withBodies = 0;
        for (int i = 0; i < 5000; ++i) {
            decoder.begin(arrival);
            for (const char* line : {"fr 7", "ts 1.5", twoTools, oneOfTwoReferences}) {
                std::string spoiled = line;
                for (std::size_t change = below(4); change > 0; --change) {
                    const std::size_t at = below(spoiled.size());
                    if (below(3) == 0) {
                        spoiled.erase(at, below(5));
                    } else {
                        spoiled[at] = odd[below(odd.size())];
                    }
                    spoiled += ' '; // never empty
                }
                decoder.add(spoiled.c_str());
            }
            const TrackedFrame frame = decoder.end();
            withBodies += frame.bodies.empty() ? 0 : 1;
            QJsonParseError error;
            const QByteArray text = jsonText(frame, FrameTimes::TimeStampAndUtc);
            QVERIFY2(QJsonDocument::fromJson(text, &error).isObject(), text.constData());
        }
        QVERIFY(withBodies > 1000 && withBodies < 5000);
    }

    void aResultIsWrapped() {
        const QJsonObject object =
            message(QStringLiteral("{\"type\": \"point\",\n \"x_mm\": 0.1000000000000001}\r\n"));
        QCOMPARE(object.keys(), QStringList({"id", "result", "source", "station", "utc"}));
        QCOMPARE(object.value(QLatin1String("id")).toString(), QStringLiteral("id-1"));
        QCOMPARE(object.value(QLatin1String("station")).toString(), QStringLiteral("Presse ü"));
        QCOMPARE(object.value(QLatin1String("source")).toString(), QStringLiteral("PROBE \"1\"\n"));
        QCOMPARE(object.value(QLatin1String("utc")).toString(),
                 QStringLiteral("2026-11-22T03:40:12.345Z"));
        const QJsonObject result = object.value(QLatin1String("result")).toObject();
        QCOMPARE(result.value(QLatin1String("type")).toString(), QStringLiteral("point"));
        QVERIFY(result.value(QLatin1String("x_mm")).toDouble() == 0.1000000000000001);
    }

    // Not every reader is as lenient as ours.
    void whatIsNearlyJsonBecomesJson() {
        const std::string line = workbench::resultMessage(
            {QString(), QString(QChar(0xfeff)) + QStringLiteral("{\"a\":\"\t\\q\\/\x01\"}"),
             arrival},
            "i", QString());
        const std::size_t begin = line.find("\"result\":");
        QVERIFY2(begin != std::string::npos, line.c_str());
        QCOMPARE(line.substr(begin), std::string("\"result\":{\"a\":\"\\tq/\\u0001\"}}"));
    }

    void whatIsNoObjectStandsAsText_data() {
        QTest::addColumn<QString>("text");
        row("words", QStringLiteral("a \"quoted\"\nword \\"));
        row("array", QStringLiteral("[1]"));
        row("half an object", QStringLiteral("{\"a\":1"));
        row("more than an object", QStringLiteral("{} {}"));
        row("empty", QString());
        row("control characters", QString(QLatin1Char('\x01')) + QChar(0x2028));
    }
    void whatIsNoObjectStandsAsText() {
        QFETCH(QString, text);
        const QJsonObject object = message(text);
        QCOMPARE(object.value(QLatin1String("text")).toString(), text);
        QVERIFY(!object.contains(QLatin1String("result")));
    }

    void noTwoResultsHaveTheSameId_data() {
        QTest::addColumn<QString>("text");
        row("words", QStringLiteral("good"));
        row("no time", QStringLiteral(R"({"type":"count","number":1})"));
        row("time that is no text", QStringLiteral(R"({"time":12})"));
        row("empty time", QStringLiteral(R"({"time":""})"));
        row("time deeper down", QStringLiteral(R"({"a":{"time":"2026-11-22T03:40:12.345Z"}})"));
    }
    // Who does not say when it was has perhaps measured the same twice.
    void noTwoResultsHaveTheSameId() {
        QFETCH(QString, text);
        QSet<QString> ids;
        for (int i = 0; i < 1000; ++i) {
            ids += id(QStringLiteral("PROBE"), text);
        }
        QCOMPARE(ids.size(), 1000);
    }

    // So a module that was killed may write again what it is not certain of.
    void aResultOfOneTimeHasOneId() {
        const QString source = QStringLiteral("PROBE");
        const QString text = QStringLiteral(R"({"time":"2026-11-22T03:40:12.345Z","x_mm":1})");
        const QString first = id(source, text);
        QCOMPARE(first.size(), 36);
        QCOMPARE(id(source, text, QStringLiteral("press 7"), arrival + 5), first);
        QVERIFY(id(source, text, QStringLiteral("press 8")) != first);
        QVERIFY(id(QStringLiteral("OTHER"), text) != first);
        QVERIFY(id(source, QString(text).replace(QLatin1String("345Z"), QLatin1String("346Z"))) !=
                first);
        QVERIFY(id(source, QString(text).replace(QLatin1String(":1}"), QLatin1String(":2}"))) !=
                first);
    }

    void onlyResultsAreResults() {
        QVERIFY(workbench::isResultCategory("result"));
        QVERIFY(!workbench::isResultCategory("results") && !workbench::isResultCategory(""));
    }
};

QTEST_GUILESS_MAIN(TestTrackedFrames)
#include "test_trackedframes.moc"
