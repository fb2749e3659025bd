#include "probecheck/points/files/pointcsv.h"
#include "probecheck/points/files/pointjson.h"
#include "probecheck/points/record/pointdistance.h"
#include "tests/probecheck/points/samplepoints.h"
#include "tests/support/datarows.h"

#include <QJsonDocument>
#include <QtTest>

#include <algorithm>
#include <limits>

using points::PointRecord;

namespace {

QList<QByteArray> fieldsOfLine(const QByteArray& text, int line, char separator) {
    return text.split('\n').at(line).trimmed().split(separator);
}

} // namespace

class TestPointFiles : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void csvNamesUnitsInItsHeader();
    void csvHoldsAllDigitsAndNoComma();
    void csvTellsDistancesWithTheirUncertainty();
    void csvComesInPiecesUntilNobodyWantsMore();
    void csvQuotesNames_data();
    void csvQuotesNames();
    void whatCannotBeSaidIsEmpty();
    void tabsSeparateWhatIsCopied();
    void aPointIsReadAsItWasWritten_data();
    void aPointIsReadAsItWasWritten();
    void theKeysTellNamesAndUnits();
    void aDamagedPointIsNone_data();
    void aDamagedPointIsNone();
};

void TestPointFiles::csvNamesUnitsInItsHeader() {
    QCOMPARE(csvOf({}),
             QByteArray("number,name,x_mm,y_mm,z_mm,sd_x_mm,sd_y_mm,sd_z_mm,greatest_distance_mm,"
                        "samples,duration_s,tool,reference,time_utc,tolerance_mm,radius95_mm,"
                        "verdict,distance_to_previous_mm,distance_uncertainty95_mm\r\n"));
}

void TestPointFiles::csvHoldsAllDigitsAndNoComma() {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German));
    const QByteArray csv = csvOf({samplePoint(1, 0.1, 1234567.25, -1.0 / 3.0)});
    QLocale::setDefault(before);
    const QList<QByteArray> fields = fieldsOfLine(csv, 1, ',');
    QCOMPARE(fields.size(), 19);
    QCOMPARE(fields.mid(0, 5),
             (QList<QByteArray>{"1", "P1", "0.1", "1234567.25", "-0.3333333333333333"}));
    QCOMPARE(fields.mid(5, 10), (QList<QByteArray>{"0.03", "0.02", "0.01", "0.08", "61", "1", "M1",
                                                   "none", "2026-11-22T04:00:01.000Z", "1.5"}));
    QCOMPARE(fields.at(15).toDouble(), points::radius95(samplePoint(1)).value());
    QCOMPARE(fields.mid(16), (QList<QByteArray>{"conforms", "", ""}));
}

void TestPointFiles::csvTellsDistancesWithTheirUncertainty() {
    const std::vector<PointRecord> both = samplePoints(2);
    const QList<QByteArray> fields = fieldsOfLine(csvOf(both), 2, ',');
    QCOMPARE(fields.at(17), QByteArray("10"));
    QCOMPARE(fields.at(18).toDouble(), points::distanceOf(both[0], both[1])->uncertainty.value());
}

void TestPointFiles::csvComesInPiecesUntilNobodyWantsMore() {
    const std::vector<PointRecord> all = samplePoints(3000);
    QByteArray text;
    std::vector<std::size_t> done;
    QVERIFY(points::writeCsv(all, [&](const QByteArray& piece, std::size_t count) {
        text += piece;
        done.push_back(count);
        return true;
    }));
    QCOMPARE(text.count('\n'), 3001);
    QVERIFY(done.size() > 3);
    QVERIFY(std::is_sorted(done.begin(), done.end()));
    QCOMPARE(done.back(), all.size());
    int calls = 0;
    QVERIFY(!points::writeCsv(all, [&](const QByteArray&, std::size_t) { return ++calls < 2; }));
    QCOMPARE(calls, 2);
}

void TestPointFiles::csvQuotesNames_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("field");
    row("plain", QString("left edge"), QByteArray("left edge"));
    row("umlaut", QString("Kante ä"), QByteArray("Kante ä"));
    row("comma", QString("a,b"), QByteArray("\"a,b\""));
    row("quotes", QString("a\"b"), QByteArray("\"a\"\"b\""));
    row("lines", QString("a\nb"), QByteArray("\"a\nb\""));
    row("return", QString("a\rb"), QByteArray("\"a\rb\""));
    row("formula", QString("=1+1"), QByteArray("'=1+1"));
    row("minus", QString("-1"), QByteArray("'-1"));
    row("empty", QString(), QByteArray());
}

void TestPointFiles::csvQuotesNames() {
    QFETCH(QString, name);
    QFETCH(QByteArray, field);
    PointRecord point = samplePoint(1);
    point.name = name;
    QVERIFY(csvOf({point}).contains("\r\n1," + field + ",0,0,0,"));
}

void TestPointFiles::whatCannotBeSaidIsEmpty() {
    PointRecord brief = samplePoint(1);
    brief.duration = 0.1;
    brief.reference = points::unknownReference;
    brief.position[0] = std::numeric_limits<double>::quiet_NaN();
    const QList<QByteArray> fields = fieldsOfLine(csvOf({brief}), 1, ',');
    QCOMPARE(fields.at(2), QByteArray());
    QCOMPARE(fields.at(12), QByteArray("unknown"));
    QCOMPARE(fields.mid(15), (QList<QByteArray>{"", "undecided", "", ""}));
}

void TestPointFiles::tabsSeparateWhatIsCopied() {
    PointRecord point = samplePoint(1, 0.5);
    point.name = QStringLiteral("a,\tb\nc\rd");
    const QString text = points::toTabSeparated({point, samplePoint(2)});
    QCOMPARE(text.count('\n'), 3);
    const QStringList fields = text.split('\n').at(1).split('\t');
    QCOMPARE(fields.size(), 19);
    QCOMPARE(fields.mid(0, 3), (QStringList{"1", "a, b c d", "0.5"}));
}

void TestPointFiles::aPointIsReadAsItWasWritten_data() {
    QTest::addColumn<int>("reference");
    row("none", points::noReference);
    row("unknown", points::unknownReference);
    row("first", 0);
    row("tenth", 9);
}

void TestPointFiles::aPointIsReadAsItWasWritten() {
    QFETCH(int, reference);
    PointRecord point = samplePoint(12, 0.1, -1e-17, 12345.678901234567);
    point.name = QStringLiteral("Kante \"ä\"\n");
    point.reference = reference;
    point.tool = 3;
    const QByteArray line = QJsonDocument(points::toJson(point)).toJson(QJsonDocument::Compact);
    QVERIFY(!line.contains('\n'));
    const auto read = points::fromJson(QJsonDocument::fromJson(line).object());
    QVERIFY(read);
    QCOMPARE(read->number, 12);
    QCOMPARE(read->name, point.name);
    QCOMPARE(read->position, point.position);
    QCOMPARE(read->deviation, point.deviation);
    QCOMPARE(read->greatestDistance, point.greatestDistance);
    QCOMPARE(read->samples, point.samples);
    QCOMPARE(read->duration, point.duration);
    QCOMPARE(read->tool, 3);
    QCOMPARE(read->reference, reference);
    QCOMPARE(read->utcMs, point.utcMs);
    QCOMPARE(read->tolerance, point.tolerance);
}

void TestPointFiles::theKeysTellNamesAndUnits() {
    PointRecord point = samplePoint(1);
    point.duration = 0.1;
    const QJsonObject object = points::toJson(point);
    QCOMPARE(object.keys(),
             (QStringList{"duration_s", "greatest_distance_mm", "name", "number", "radius95_mm",
                          "reference", "samples", "sd_x_mm", "sd_y_mm", "sd_z_mm", "time",
                          "tolerance_mm", "tool", "type", "verdict", "x_mm", "y_mm", "z_mm"}));
    QVERIFY(object.value("radius95_mm").isNull());
    QCOMPARE(object.value("type").toString(), QString("point"));
    QCOMPARE(object.value("time").toString(), QString("2026-11-22T04:00:01.000Z"));
    QCOMPARE(points::verdictWord(kestrel_probe::Verdict::DoesNotConform),
             QByteArray("does not conform"));
}

void TestPointFiles::aDamagedPointIsNone_data() {
    QTest::addColumn<QString>("key");
    QTest::addColumn<QJsonValue>("value");
    const QStringList keys = points::toJson(samplePoint(1)).keys();
    for (const QString& key : keys) {
        if (key != QLatin1String("radius95_mm") && key != QLatin1String("verdict")) {
            row(qPrintable("without " + key), key, QJsonValue(QJsonValue::Undefined));
        }
    }
    row("another type", QString("type"), QJsonValue("tip"));
    row("number zero", QString("number"), QJsonValue(0));
    row("number too large", QString("number"), QJsonValue(1e12));
    row("number with fraction", QString("number"), QJsonValue(1.5));
    row("no samples", QString("samples"), QJsonValue(0));
    row("negative deviation", QString("sd_y_mm"), QJsonValue(-0.1));
    row("negative duration", QString("duration_s"), QJsonValue(-1));
    row("position as text", QString("x_mm"), QJsonValue("1"));
    row("no time", QString("time"), QJsonValue("yesterday"));
    row("tool zero", QString("tool"), QJsonValue("M0"));
    row("another body", QString("tool"), QJsonValue("B1"));
    row("reference without number", QString("reference"), QJsonValue("MR"));
}

void TestPointFiles::aDamagedPointIsNone() {
    QFETCH(QString, key);
    QFETCH(QJsonValue, value);
    QJsonObject object = points::toJson(samplePoint(1));
    QVERIFY(points::fromJson(object));
    object.insert(key, value); // an undefined value takes the key away
    QVERIFY(!points::fromJson(object));
}

QTEST_GUILESS_MAIN(TestPointFiles)
#include "test_pointfiles.moc"
