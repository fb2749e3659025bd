#include "SourceFiles/numberglyphs.h"
#include "tests/support/datarows.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <QTextLayout>
#include <QtTest>

#include <functional>

namespace {

QImage drawn(const std::function<void(QPainter*)>& draw) {
    QImage image(400, 40, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    draw(&painter);
    return image;
}

} // namespace

class TestNumberGlyphs : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Each of these fonts has one oddity; fonts/makefonts.py says which.
    void initTestCase() {
        for (const char* name : {"Ligature", "Alternates", "Parts", "Digits"}) {
            const QString path = QFINDTESTDATA(QStringLiteral("fonts/Kestrel%1.ttf").arg(name));
            QVERIFY2(QFontDatabase::addApplicationFont(path) >= 0, qPrintable(path));
        }
    }

    void onlyPlainTextsAreMeasured_data() {
        QTest::addColumn<QString>("family");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("plain");
        const QString usual = "DejaVu Sans";
        row("number", usual, "-12345.67", true);
        row("name", usual, "MR10", true);
        row("as long as it may be", usual, QString(32, '1'), true);
        row("too long", usual, QString(33, '1'), false);
        row("empty", usual, "", false);
        row("another character", usual, "1,5", false);
        row("beyond Latin-1", usual, QString(QChar(0x2460)), false);
        row("moved together", usual, "R.", false);
        row("ligature", "Kestrel Ligature", "10", false);
        row("no ligature", "Kestrel Ligature", "-2.25", true);
        row("another shape beside its like", "Kestrel Alternates", "22", false);
        row("the usual shape", "Kestrel Alternates", "21.2", true);
    }
    void onlyPlainTextsAreMeasured() {
        QFETCH(QString, family);
        QFETCH(QString, text);
        QFETCH(bool, plain);
        const NumberGlyphs glyphs(QFont(family, 8));
        QVERIFY(glyphs.isUsable());
        NumberGlyphs::Extent extent{-1.0, -1.0};
        QCOMPARE(glyphs.measure(text, &extent), plain);
        const qreal advance = QFontMetricsF(glyphs.font()).horizontalAdvance(text);
        QCOMPARE(extent.advance, plain ? advance : -1.0);
    }

    void aMeasuredTextIsDrawnAsALayoutDrawsIt_data() {
        QTest::addColumn<QString>("family");
        for (const char* family : {"DejaVu Sans", "DejaVu Serif", "Kestrel Ligature"}) {
            row(family, family);
        }
    }
    void aMeasuredTextIsDrawnAsALayoutDrawsIt() {
        QFETCH(QString, family);
        const QFont font(family, 11);
        const QString text = "-2345.67";
        const QPointF topLeft(7.25, 3.0);
        NumberGlyphs glyphs(font);
        NumberGlyphs::Extent extent{};
        QVERIFY(glyphs.measure(text, &extent));
        QTextLayout layout(text, font);
        layout.beginLayout();
        layout.createLine();
        layout.endLayout();
        const QImage expected = drawn([&](QPainter* painter) { layout.draw(painter, topLeft); });
        QVERIFY(expected != drawn([](QPainter*) {}));
        QCOMPARE(drawn([&](QPainter* painter) { glyphs.draw(painter, topLeft, text); }), expected);
    }

    void aFontWithoutOneGlyphPerCharacterIsNotUsed_data() {
        QTest::addColumn<QString>("family");
        row("a letter of two glyphs", "Kestrel Parts");
        row("letters of another font", "Kestrel Digits");
    }
    void aFontWithoutOneGlyphPerCharacterIsNotUsed() {
        QFETCH(QString, family);
        const QFont font(family, 8);
        QCOMPARE(QFontInfo(font).family(), family);
        const NumberGlyphs glyphs(font);
        QVERIFY(!glyphs.isUsable());
        NumberGlyphs::Extent extent{};
        QVERIFY(!glyphs.measure("1", &extent));
    }
};

QTEST_MAIN(TestNumberGlyphs)
#include "test_numberglyphs.moc"
