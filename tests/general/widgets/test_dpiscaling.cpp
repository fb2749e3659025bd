#include "general/widgets/dpiscaling.h"
#include "general/widgets/growtofit.h"

#include <QLabel>
#include <QPixmap>
#include <QTableWidget>
#include <QVBoxLayout>
#include <QtTest>

#include <algorithm>
#include <cmath>

namespace {

int dpi() {
    return QWidget().logicalDpiX();
}

int pixels(int number) {
    return static_cast<int>(std::lround(number * std::max(dpi(), 96) / 96.0));
}

QSize pixels(int width, int height) {
    return {pixels(width), pixels(height)};
}

} // namespace

class TestDpiScaling : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(dpi(), qEnvironmentVariableIntValue("QT_FONT_DPI")); }

    void numbersFollowTheDpi() {
        const QWidget widget;
        for (const int number : {0, 1, 10, 26, 80, 650}) {
            QCOMPARE(scaledToDpi(number, widget), pixels(number));
        }
    }

    void numbersFor96DpiStayThere() {
        const QWidget widget;
        QCOMPARE(scaledToDpi(80, widget) == 80, dpi() <= 96);
    }

    void picturesFollowTheDpi() {
        const QWidget widget;
        QPixmap picture(30, 20);
        picture.fill(Qt::red);
        const QPixmap shown = scaledToDpi(picture, widget);
        QCOMPARE(shown.size(), pixels(30, 20));
        QCOMPARE(shown.toImage().pixelColor(pixels(15), pixels(10)), QColor(Qt::red));
    }

    void aFormsSizesFollowTheDpi() {
        QWidget window;
        window.setMinimumSize(100, 50);
        window.setMaximumSize(400, 300);
        window.resize(200, 150);
        QLabel named(&window);
        named.setObjectName("named");
        named.setMinimumWidth(60);
        QLabel inside(&window);
        inside.setObjectName("qt_inside");
        inside.setMinimumWidth(60);
        scaleFormToDpi(window);
        QCOMPARE(window.minimumSize(), pixels(100, 50));
        QCOMPARE(window.maximumSize(), pixels(400, 300));
        QCOMPARE(window.size(), pixels(200, 150));
        QCOMPARE(named.minimumSize(), pixels(60, 0));
        QCOMPARE(named.maximumSize(), QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX));
        QCOMPARE(inside.minimumWidth(), 60);
    }

    void rowsAreHighEnoughForALine() {
        QTableWidget table;
        QFont font = table.font();
        font.setPointSize(8);
        table.setFont(font);
        QCOMPARE(rowHeightFor(20, table), pixels(20));
        font.setPointSize(40);
        table.setFont(font);
        QVERIFY(rowHeightFor(20, table) > table.fontMetrics().height());
    }

    void bothBoundsGiveWayToWhatMustBeRead() {
        QWidget window;
        auto* const label = new QLabel("a text that is longer than the window is wide");
        auto* const layout = new QVBoxLayout(&window);
        layout->addWidget(label);
        window.setFixedSize(20, 10);
        growToFit(window);
        QVERIFY(window.width() >= label->sizeHint().width());
        QCOMPARE(window.minimumSize(), window.size());
        QCOMPARE(window.maximumSize(), window.size());
        const QSize before = window.size();
        growToFit(window);
        QCOMPARE(window.size(), before);
    }
};

QTEST_MAIN(TestDpiScaling)
#include "test_dpiscaling.moc"
