#include "tests/SourceFiles/display/displayfixture.h"

#include <QApplication>
#include <QHeaderView>
#include <QPaintEvent>
#include <QSignalSpy>
#include <QStyleFactory>
#include <QStyledItemDelegate>
#include <QtTest>

#include <limits>
#include <memory>

namespace {

constexpr int patienceMs = 5000;

// Counts what is painted in a table.
class PaintCounter : public QObject {
public:
    explicit PaintCounter(const QTableWidget* table)
        : m_viewport(table->viewport()) {
        m_viewport->installEventFilter(this);
    }

    int paints() const { return m_paints; }
    QRect painted() const { return m_painted; }
    void clear() {
        m_paints = 0;
        m_painted = QRect();
    }

protected:
    bool eventFilter(QObject* object, QEvent* event) override {
        if (object == m_viewport && event->type() == QEvent::Paint) {
            ++m_paints;
            m_painted |= static_cast<QPaintEvent*>(event)->rect();
        }
        return false;
    }

private:
    QWidget* m_viewport;
    int m_paints = 0;
    QRect m_painted;
};

// Tools and references in every state: tracked, lost, uncalibrated, with and without reference,
// buttons, and numbers too long for their columns.
class Gallery : public ShownFixture {
public:
    Gallery() {
        host.answer("measurementtool tip_calibrated b03", "no");
        host.answer("measurementtool reference_of_tool b02", "b02");
        host.answer("measurementtool reference_of_tool b04", "b2147483647");
        Tool pressing = toolAt(-1.11, 123456.78, -0.001);
        pressing.buttons = 4;
        pressing.pressed = 5;
        pressing.rot = {0.36, 0.48, -0.8, -0.8, 0.6, 0.0, 0.48, 0.64, 0.6};
        const Tool far = toolAt(-1e9 / 7.0, 1e300, 99999999.99);
        showReferences({pressing, lostTool()});
        show({pressing, far, toolAt(1, 2, 3), lostTool()});
        display->onUpdateDataDisplay();
        display->resize(1000, 300);
        squeeze();
    }

    // Columns and rows that have not grown, so that there is something to shorten.
    void squeeze() {
        for (QTableWidget* table : {toolTable(), referenceTable()}) {
            for (int column = table->columnCount() - 7; column < table->columnCount() - 1;
                 ++column) {
                table->setColumnWidth(column, 80);
            }
            table->verticalHeader()->setMinimumSectionSize(20);
            table->verticalHeader()->setDefaultSectionSize(20);
        }
    }

    // The tables as painted by their own delegates, then by stock ones.
    std::pair<QImage, QImage> ownAndStock(qreal ratio = 1.0) {
        const QImage own = painted(ratio);
        QStyledItemDelegate stock;
        QAbstractItemDelegate* const delegates[] = {toolTable()->itemDelegate(),
                                                    referenceTable()->itemDelegate()};
        toolTable()->setItemDelegate(&stock);
        referenceTable()->setItemDelegate(&stock);
        const QImage theirs = painted(ratio);
        toolTable()->setItemDelegate(delegates[0]);
        referenceTable()->setItemDelegate(delegates[1]);
        return {own, theirs};
    }

    bool looksLikeStock(qreal ratio = 1.0) {
        const auto [own, stock] = ownAndStock(ratio);
        return own == stock;
    }

private:
    QImage painted(qreal ratio) {
        QImage image(display->size() * ratio, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(ratio);
        image.fill(Qt::white);
        display->render(&image);
        return image;
    }
};

} // namespace

class TestMtDataDisplayPainting : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aRefreshWithoutNewsWritesAndPaintsNothing() {
        Gallery f;
        const std::string tools = toolLine({toolAt(1, 2, 3), lostTool()});
        const std::string references = referenceLine({Pose(), lostTool()});
        f.display->show();
        f.show(tools);
        f.show(references);
        f.display->onUpdateDataDisplay();
        QVERIFY(QTest::qWaitForWindowExposed(f.display.get()));
        PaintCounter toolPaints(f.toolTable());
        PaintCounter referencePaints(f.referenceTable());
        QTRY_COMPARE_WITH_TIMEOUT(f.toolTable()->rowCount(), 2, patienceMs);
        QCoreApplication::processEvents();
        toolPaints.clear();
        referencePaints.clear();
        QSignalSpy toolChanges(f.toolTable()->model(), &QAbstractItemModel::dataChanged);
        QSignalSpy referenceChanges(f.referenceTable()->model(), &QAbstractItemModel::dataChanged);
        for (int i = 0; i < 5; ++i) {
            f.show(tools);
            f.show(references);
            QCoreApplication::processEvents();
        }
        QCOMPARE(toolChanges.count(), 0);
        QCOMPARE(referenceChanges.count(), 0);
        QCOMPARE(toolPaints.paints(), 0);
        QCOMPARE(referencePaints.paints(), 0);
    }

    void oneChangedNumberWritesAndPaintsOneCell() {
        ShownFixture f({toolAt(1, 2, 3), toolAt(4, 5, 6)});
        f.display->resize(1000, 300);
        f.display->show();
        QVERIFY(QTest::qWaitForWindowExposed(f.display.get()));
        QCoreApplication::processEvents();
        PaintCounter paints(f.toolTable());
        QSignalSpy changes(f.toolTable()->model(), &QAbstractItemModel::dataChanged);
        f.show({toolAt(1, 2, 3), toolAt(4, 7, 6)});
        QCOMPARE(changes.count(), 1);
        QCOMPARE(changes.at(0).at(0).toModelIndex(), f.toolTable()->model()->index(1, 13));
        QTRY_VERIFY_WITH_TIMEOUT(paints.paints() > 0, patienceMs);
        const QRect cell = f.toolTable()->visualItemRect(f.toolTable()->item(1, 13));
        QVERIFY(cell.adjusted(-1, -1, 1, 1).contains(paints.painted()));
    }

    void cellsLookLikeTheStockDelegates_data() {
        QTest::addColumn<QString>("style");
        QTest::addColumn<int>("pointSize");
        QTest::addColumn<qreal>("ratio");
        for (const char* style : {"Fusion", "Windows"}) { // Qt's own: they need no desktop
            for (const int pointSize : {8, 7, 10}) {
                QTest::addRow("%s, %d pt", style, pointSize)
                    << QString::fromLatin1(style) << pointSize << 1.0;
            }
        }
        QTest::newRow("font taller than a row") << "Fusion" << 16 << 1.0;
        QTest::newRow("fine display") << "Fusion" << 8 << 2.0;
        QTest::newRow("fractional display") << "Fusion" << 8 << 1.5;
    }
    void cellsLookLikeTheStockDelegates() {
        QFETCH(QString, style);
        QFETCH(int, pointSize);
        QFETCH(qreal, ratio);
        QVERIFY(QStyleFactory::keys().contains(style));
        QApplication::setStyle(style);
        Gallery f;
        for (QTableWidget* table : {f.toolTable(), f.referenceTable()}) {
            QFont font = table->font();
            font.setPointSize(pointSize);
            table->setFont(font);
        }
        f.display->ensurePolished();
        f.squeeze();
        QVERIFY(f.looksLikeStock(ratio));
        QApplication::setStyle(QStringLiteral("Fusion"));
        QVERIFY(f.looksLikeStock(ratio)); // a style changed at run time
    }

    void oddFontsLookTheSame_data() {
        QTest::addColumn<QFont>("font");
        QFont italic("DejaVu Serif", 9);
        italic.setItalic(true);
        QFont spaced("Sans Serif", 8);
        spaced.setLetterSpacing(QFont::AbsoluteSpacing, 1.5);
        QFont hinted("Sans Serif", 8);
        hinted.setHintingPreference(QFont::PreferFullHinting);
        QFont underlined("Sans Serif", 8);
        underlined.setUnderline(true);
        QFont overlined("Sans Serif", 8);
        overlined.setOverline(true);
        QFont struckOut("Sans Serif", 8);
        struckOut.setStrikeOut(true);
        QTest::newRow("italic serif") << italic;
        QTest::newRow("fixed") << QFont("DejaVu Sans Mono", 8);
        QTest::newRow("letter spacing") << spaced;
        QTest::newRow("hinted") << hinted;
        QTest::newRow("underlined") << underlined;
        QTest::newRow("overlined") << overlined;
        QTest::newRow("struck out") << struckOut;
    }
    void oddFontsLookTheSame() {
        QFETCH(QFont, font);
        Gallery f;
        const QImage before = f.ownAndStock().first;
        f.toolTable()->setFont(font);
        f.referenceTable()->setFont(font);
        f.squeeze();
        QVERIFY(f.looksLikeStock());
        QVERIFY(f.ownAndStock().first != before);
    }

    void numbersThatAreNoneLookTheSame() {
        Gallery f;
        const double infinity = std::numeric_limits<double>::infinity();
        f.show({toolAt(std::numeric_limits<double>::quiet_NaN(), infinity, -infinity), Tool(),
                Tool(), Tool()});
        QCOMPARE(f.row(f.toolTable(), 0).mid(12, 3), QStringList({"nan", "inf", "-inf"}));
        QVERIFY(f.looksLikeStock());
    }

    void selectedFocusedAndDisabledCellsLookTheSame() {
        Gallery f;
        f.display->show();
        QApplication::setActiveWindow(f.display.get());
        f.toolTable()->setFocus();
        f.toolTable()->setCurrentCell(0, 12);
        QVERIFY(f.looksLikeStock());
        f.toolTable()->setSelectionMode(QAbstractItemView::ExtendedSelection);
        f.toolTable()->selectRow(0);
        QVERIFY(f.looksLikeStock());
        f.display->setEnabled(false);
        QVERIFY(f.looksLikeStock());
    }

    void otherPalettesAndDirectionsLookTheSame() {
        Gallery f;
        QPalette dark;
        dark.setColor(QPalette::Active, QPalette::Text, Qt::yellow);
        dark.setColor(QPalette::Inactive, QPalette::Text, Qt::cyan);
        dark.setColor(QPalette::Base, Qt::darkGray);
        f.display->setPalette(dark);
        QVERIFY(f.looksLikeStock());
        f.display->show();
        QApplication::setActiveWindow(f.display.get());
        QTRY_VERIFY_WITH_TIMEOUT(f.display->isActiveWindow(), patienceMs);
        QVERIFY(f.looksLikeStock());
        f.display->setLayoutDirection(Qt::RightToLeft);
        QVERIFY(f.looksLikeStock());
    }

    void aHostsStyleSheetIsRespected_data() {
        QTest::addColumn<bool>("application");
        QTest::newRow("of the application") << true;
        QTest::newRow("of a window") << false;
    }
    void aHostsStyleSheetIsRespected() {
        QFETCH(bool, application);
        const QString sheet = "QTableView::item { border: 1px solid red; padding: 3px; }";
        Gallery f;
        QWidget window;
        f.display->setParent(&window);
        f.display->ensurePolished();
        const QImage before = f.ownAndStock().first;
        application ? qApp->setStyleSheet(sheet) : window.setStyleSheet(sheet);
        const auto images = f.ownAndStock();
        qApp->setStyleSheet(QString());
        f.display->setParent(nullptr);
        QVERIFY(images.first == images.second);
        QVERIFY(images.first != before);
    }
};

QTEST_MAIN(TestMtDataDisplayPainting)
#include "test_mtdatadisplay_painting.moc"
