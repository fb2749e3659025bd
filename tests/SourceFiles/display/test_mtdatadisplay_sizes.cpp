#include "tests/SourceFiles/display/displayfixture.h"
#include "tests/support/textfit.h"

#include <QApplication>
#include <QHeaderView>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr int firstValue = 12;
constexpr int firstReferenceValue = 3;

int dpi() {
    return QWidget().logicalDpiX();
}

// Pixels for 96 dpi on this screen; never fewer.
int pixels(int number) {
    return static_cast<int>(std::lround(number * std::max(dpi(), 96) / 96.0));
}

QList<int> widths(const QTableWidget* table) {
    QList<int> all;
    for (int column = 0; column < table->columnCount(); ++column) {
        all << table->columnWidth(column);
    }
    return all;
}

QList<int> scaled(const QList<int>& numbers) {
    QList<int> all;
    for (const int number : numbers) {
        all << pixels(number);
    }
    return all;
}

Tool farAway() {
    return toolAt(-12345.67, -12345.67, -12345.67);
}

// A display with a row of far away coordinates in each table.
class Far : public ShownFixture {
public:
    Far() {
        showReferences({farAway()});
        show({farAway(), lostTool()});
        display->onUpdateDataDisplay();
        display->resize(pixels(1100), pixels(300));
        display->show();
    }
};

} // namespace

class TestMtDataDisplaySizes : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(dpi(), qEnvironmentVariableIntValue("QT_FONT_DPI")); }
    void cleanup() { qApp->setStyleSheet(QString()); }

    void widthsAndHeightsFollowTheDpi() {
        ShownFixture f({Tool()});
        f.showReferences({Pose()});
        QCOMPARE(widths(f.toolTable()).mid(0, 18),
                 scaled({80, 10, 80, 10, 26, 10, 26, 10, 26, 10, 26, 10, 80, 80, 80, 80, 80, 80}));
        QCOMPARE(widths(f.referenceTable()).mid(0, 9),
                 scaled({90, 80, 36, 80, 80, 80, 80, 80, 80}));
        for (const QTableWidget* table : {f.toolTable(), f.referenceTable()}) {
            QCOMPARE(table->rowHeight(0), pixels(20));
            QCOMPARE(table->horizontalHeader()->minimumHeight(), pixels(28));
        }
    }

    void farAwayCoordinatesNeedNoWiderColumns() {
        Far f;
        QCOMPARE(f.toolPose(0).mid(0, 3), QStringList({"-12345.67", "-12345.67", "-12345.67"}));
        QCOMPARE(cutOffTexts(*f.display), QString());
        QCOMPARE(f.toolTable()->columnWidth(firstValue), pixels(80));
    }

    void aColumnGrowsWithItsValue_data() {
        QTest::addColumn<double>("value");
        QTest::newRow("digits") << -123456789012.12;
        QTest::newRow("very many digits") << 1e60;
        QTest::newRow("no number") << -std::numeric_limits<double>::infinity();
    }
    void aColumnGrowsWithItsValue() {
        QFETCH(double, value);
        Far f;
        const QList<int> before = widths(f.toolTable());
        const QList<int> referencesBefore = widths(f.referenceTable());
        f.show({toolAt(1, value, 3), lostTool()});
        f.showReferences({toolAt(1, 2, value)});
        QCOMPARE(cutOffTexts(*f.display), QString());
        const QList<int> after = widths(f.toolTable());
        const QList<int> referencesAfter = widths(f.referenceTable());
        const bool longer = std::isfinite(value);
        QCOMPARE(after.at(firstValue + 1) > before.at(firstValue + 1), longer);
        QCOMPARE(referencesAfter.at(firstReferenceValue + 2) >
                     referencesBefore.at(firstReferenceValue + 2),
                 longer);
        for (int column = 0; column < 18; ++column) {
            QVERIFY(column == firstValue + 1 || after.at(column) == before.at(column));
        }
    }

    void aLongReferenceNameIsWhole() {
        ShownFixture f;
        f.host.answer("measurementtool reference_of_tool b01", "b2147483647");
        f.show({farAway()});
        f.display->show();
        QCOMPARE(f.toolTable()->item(0, 2)->text(), QString("MR2147483647"));
        QCOMPARE(cutOffTexts(*f.display), QString());
    }

    void aLargerFontMakesRoomForItself_data() {
        QTest::addColumn<bool>("sheet");
        QTest::newRow("of the tables") << false;
        QTest::newRow("by the host's style sheet") << true;
    }
    void aLargerFontMakesRoomForItself() {
        QFETCH(bool, sheet);
        Far f;
        const int before = f.toolTable()->rowHeight(0);
        if (sheet) {
            qApp->setStyleSheet("QTableView { font-size: 17pt; }");
        } else {
            for (QTableWidget* table : {f.toolTable(), f.referenceTable()}) {
                QFont font = table->font();
                font.setPointSize(17);
                table->setFont(font);
            }
        }
        QCoreApplication::processEvents();
        QCOMPARE(cutOffTexts(*f.display), QString());
        QVERIFY(f.toolTable()->rowHeight(0) > before);
        QVERIFY(f.toolTable()->columnWidth(firstValue) > pixels(80));
    }
};

QTEST_MAIN(TestMtDataDisplaySizes)
#include "test_mtdatadisplay_sizes.moc"
