#include "general/host/bodytexts.h"
#include "tests/support/datarows.h"

#include <QtTest>

#include <clocale>
#include <cmath>
#include <cstdio>
#include <limits>
#include <random>

namespace {

// What C writes in the "C" locale, whatever the locale of this process.
QString cText(double value) {
    static const locale_t c = newlocale(LC_ALL_MASK, "C", nullptr);
    const locale_t before = uselocale(c);
    char text[1024];
    std::snprintf(text, sizeof(text), "%1.2f", value);
    uselocale(before);
    return QString::fromLatin1(text);
}

} // namespace

class TestBodyTexts : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void bodiesAreNamedFromOne() {
        QCOMPARE(bodytexts::toolName(0), QString("M1"));
        QCOMPARE(bodytexts::toolName(11), QString("M12"));
        QCOMPARE(bodytexts::referenceName(0), QString("MR1"));
        QCOMPARE(bodytexts::referenceName(99), QString("MR100"));
    }

    void bodyNumberIsDecimalBehindTheFirstCharacter_data() {
        QTest::addColumn<QString>("reply");
        QTest::addColumn<bool>("readable");
        QTest::addColumn<int>("number");
        row("two digits", "b03", true, 3);
        row("not octal", "b010", true, 10);
        row("no octal digit", "b08", true, 8);
        row("any prefix", "x7", true, 7);
        row("empty", "", false, 0);
        row("prefix alone", "b", false, 0);
        row("a word", "body", false, 0);
        row("number and more", "b3x", false, 0);
        row("hexadecimal", "b0x3", false, 0);
        row("too large", "b99999999999", false, 0);
    }
    void bodyNumberIsDecimalBehindTheFirstCharacter() {
        QFETCH(QString, reply);
        QFETCH(bool, readable);
        QFETCH(int, number);
        bool ok = !readable;
        QCOMPARE(bodytexts::bodyNumber(reply, &ok), number);
        QCOMPARE(ok, readable);
        QCOMPARE(bodytexts::bodyNumber(reply), number);
    }

    void numbersAreWrittenAsCWritesThem_data() {
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("text");
        row("zero", 0.0, "0.00");
        row("negative zero", -0.0, "-0.00");
        row("rounds to negative zero", -0.001, "-0.00");
        row("tie to even, down", 0.125, "0.12");
        row("tie to even, up", 0.375, "0.38");
        row("negative tie", -0.625, "-0.62");
        row("no tie in binary", 1.005, "1.00");
        row("no thousands separator", 1234567.891, "1234567.89");
        row("carry", 9.999, "10.00");
        row("not a number", std::numeric_limits<double>::quiet_NaN(), "nan");
        row("negative not a number", -std::numeric_limits<double>::quiet_NaN(), "-nan");
        row("infinite", std::numeric_limits<double>::infinity(), "inf");
        row("minus infinite", -std::numeric_limits<double>::infinity(), "-inf");
        row("denormal", std::numeric_limits<double>::denorm_min(), "0.00");
    }
    void numbersAreWrittenAsCWritesThem() {
        QFETCH(double, value);
        QFETCH(QString, text);
        QCOMPARE(cText(value), text);
        QCOMPARE(bodytexts::fixed(value, 2), text);
    }

    void theLargestNumberIsWrittenToItsLastDigit() {
        const double largest = std::numeric_limits<double>::max();
        QCOMPARE(bodytexts::fixed(largest, 2).size(), 312);
        QCOMPARE(bodytexts::fixed(-largest, 2), cText(-largest));
    }

    void manyNumbersAreWrittenAsCWritesThem() {
        std::mt19937_64 random(20261120);
        std::uniform_real_distribution<double> exponent(-6.0, 18.0);
        std::uniform_int_distribution<int> eighths(-80000, 80000);
        for (int i = 0; i < 20000; ++i) {
            const double sign = i % 2 == 0 ? 1.0 : -1.0;
            const double anywhere = sign * std::pow(10.0, exponent(random));
            QCOMPARE(bodytexts::fixed(anywhere, 2), cText(anywhere));
            const double tie = eighths(random) / 8.0;
            QCOMPARE(bodytexts::fixed(tie, 2), cText(tie));
        }
    }

    void messagesAreBoldAndRed() {
        QCOMPARE(bodytexts::redMessage("No tools"),
                 QString("<b><font color=red>No tools</font></b>"));
    }
};

QTEST_GUILESS_MAIN(TestBodyTexts)
#include "test_bodytexts.moc"
