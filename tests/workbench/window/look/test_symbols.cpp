#include "workbench/window/look/symbols.h"

#include <QPainter>
#include <QtTest>

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace {

QPalette paletteOf(const QColor& ground, const QColor& letters) {
    QPalette palette(ground, ground);
    palette.setColor(QPalette::WindowText, letters);
    palette.setColor(QPalette::Disabled, QPalette::WindowText,
                     QColor((ground.red() + letters.red()) / 2,
                            (ground.green() + letters.green()) / 2,
                            (ground.blue() + letters.blue()) / 2));
    return palette;
}

// The greatest difference in grey between the symbol and what it stands on.
int contrast(const QIcon& icon, QIcon::Mode mode, const QColor& ground) {
    QImage image(32, 32, QImage::Format_ARGB32);
    image.fill(ground);
    QPainter painter(&image);
    icon.paint(&painter, image.rect(), Qt::AlignCenter, mode);
    painter.end();
    int greatest = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            greatest = std::max(greatest, std::abs(qGray(image.pixel(x, y)) - qGray(ground.rgb())));
        }
    }
    return greatest;
}

} // namespace

class TestSymbols : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everySymbolFollowsThePalette_data() {
        QTest::addColumn<QColor>("ground");
        QTest::addColumn<QColor>("letters");
        QTest::newRow("light") << QColor(239, 239, 239) << QColor(Qt::black);
        QTest::newRow("dark") << QColor(40, 40, 40) << QColor(Qt::white);
        QTest::newRow("black") << QColor(Qt::black) << QColor(230, 230, 230);
    }
    void everySymbolFollowsThePalette() {
        QFETCH(QColor, ground);
        QFETCH(QColor, letters);
        using workbench::Symbol;
        const Symbol symbols[] = {Symbol::Connect, Symbol::Open, Symbol::Record,   Symbol::Play,
                                  Symbol::Pause,   Symbol::Stop, Symbol::Step,     Symbol::Close,
                                  Symbol::Yes,     Symbol::No,   Symbol::Attention};
        const QPalette before = QApplication::palette();
        std::vector<QIcon> icons; // made before the palette changes
        for (const Symbol symbol : symbols) {
            icons.push_back(workbench::symbolIcon(symbol));
        }
        QApplication::setPalette(paletteOf(ground, letters));
        QStringList faint;
        for (std::size_t i = 0; i < icons.size(); ++i) {
            const int usable = contrast(icons[i], QIcon::Normal, ground);
            const int unusable = contrast(icons[i], QIcon::Disabled, ground);
            if (usable < 150 || unusable < 60 || unusable > usable - 40) {
                faint << QStringLiteral("%1: %2, %3").arg(i).arg(usable).arg(unusable);
            }
        }
        QApplication::setPalette(before);
        QCOMPARE(faint, QStringList());
    }
};

QTEST_MAIN(TestSymbols)
#include "test_symbols.moc"
