#include "workbench/window/look/flowrow.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>
#include <QtTest>

using workbench::FlowRow;

namespace {

constexpr int patience = 15000;
constexpr int gap = 10;

/// Of a size that no style and no font has a say in.
class Block : public QWidget {
public:
    Block(int least, int wanted, int height)
        : m_wanted(wanted, height) {
        setMinimumSize(least, height);
        setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    }
    QSize sizeHint() const override { return m_wanted; }

private:
    const QSize m_wanted;
};

// A row of three, and below it something that takes the height that is left.
struct Rig {
    Rig() {
        auto* const around = new QVBoxLayout(&window);
        around->setContentsMargins(0, 0, 0, 0);
        around->setSpacing(0);
        auto* const row = new QHBoxLayout;
        row->setSpacing(gap);
        row->addWidget(first);
        row->addStretch();
        row->addWidget(second);
        row->addWidget(third);
        around->addLayout(row);
        around->addWidget(below, 1);
        FlowRow::replace(*around, row);
    }

    bool show(int width) {
        window.resize(width, 400);
        window.show();
        return QTest::qWaitForWindowExposed(&window);
    }

    QSize least() const { return window.layout()->itemAt(0)->minimumSize(); }

    QWidget window;
    Block* const first = new Block(100, 150, 20);
    Block* const second = new Block(200, 200, 30);
    Block* const third = new Block(60, 60, 20);
    QWidget* const below = new QWidget;
};

} // namespace

class TestFlowRow : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void itTakesThePlaceOfTheRowWithoutItsSpaces() {
        Rig rig;
        auto* const flow = dynamic_cast<FlowRow*>(rig.window.layout()->itemAt(0)->layout());
        QVERIFY(flow != nullptr);
        QCOMPARE(flow->count(), 3);
        QCOMPARE(flow->itemAt(0)->widget(), static_cast<QWidget*>(rig.first));
        QCOMPARE(flow->itemAt(2)->widget(), static_cast<QWidget*>(rig.third));
        QVERIFY(flow->itemAt(3) == nullptr && flow->itemAt(-1) == nullptr);
        QVERIFY(flow->takeAt(3) == nullptr);
        QCOMPARE(flow->spacing(), gap);
    }

    // In the middle of its height.
    void allStandInOneLineWhereThereIsRoom() {
        Rig rig;
        QVERIFY(rig.show(600));
        QTRY_COMPARE_WITH_TIMEOUT(rig.first->geometry(), QRect(0, 5, 150, 20), patience);
        QCOMPARE(rig.second->geometry(), QRect(160, 0, 200, 30));
        QCOMPARE(rig.third->geometry(), QRect(370, 5, 60, 20));
        QCOMPARE(rig.below->y(), 30);
    }

    void theFirstGiveUpWhatTheyOnlyWouldLike() {
        Rig rig;
        QVERIFY(rig.show(390)); // 10 more than they need
        QTRY_COMPARE_WITH_TIMEOUT(rig.first->width(), 110, patience);
        QCOMPARE(rig.second->geometry(), QRect(120, 0, 200, 30));
        QCOMPARE(rig.third->x(), 330);
    }

    void laterOnesGoToFurtherLines_data() {
        QTest::addColumn<int>("width");
        QTest::addColumn<QPoint>("second");
        QTest::addColumn<QPoint>("third");
        QTest::addColumn<int>("height");
        QTest::newRow("just enough") << 380 << QPoint(110, 0) << QPoint(320, 5) << 30;
        QTest::newRow("one pixel less") << 379 << QPoint(160, 0) << QPoint(0, 40) << 60;
        QTest::newRow("two in the last") << 309 << QPoint(0, 30) << QPoint(210, 35) << 60;
        QTest::newRow("each by itself") << 250 << QPoint(0, 30) << QPoint(0, 70) << 90;
    }
    void laterOnesGoToFurtherLines() {
        QFETCH(int, width);
        QFETCH(QPoint, second);
        QFETCH(QPoint, third);
        QFETCH(int, height);
        QFont small; // the least width is in characters
        small.setPixelSize(6);
        Rig rig;
        rig.window.setFont(small);
        QVERIFY(rig.show(width));
        QCOMPARE(rig.window.width(), width);
        QTRY_COMPARE_WITH_TIMEOUT(rig.below->y(), height, patience);
        QCOMPARE(rig.second->pos(), second);
        QCOMPARE(rig.third->pos(), third);
        QCOMPARE(rig.least().height(), height);
    }

    void itAsksForNoMoreWidthThanItsWidestOrSomeWords() {
        Rig rig;
        QFont font;
        font.setPixelSize(6);
        rig.window.setFont(font);
        QCOMPARE(rig.least().width(),
                 std::max(200, 40 * rig.window.fontMetrics().averageCharWidth()));
        font.setPixelSize(40);
        rig.window.setFont(font);
        QCOMPARE(rig.least().width(), 380); // all in a line: less than the words
        rig.second->hide();
        rig.third->hide();
        QCOMPARE(rig.least().width(), 100);
        rig.first->hide();
        QCOMPARE(rig.least(), QSize(0, 0));
    }

    void whatIsHiddenTakesNoRoom() {
        Rig rig;
        rig.second->hide();
        QVERIFY(rig.show(600));
        QTRY_COMPARE_WITH_TIMEOUT(rig.third->x(), 160, patience);
        QCOMPARE(rig.below->y(), 20);
        rig.second->show();
        QTRY_COMPARE_WITH_TIMEOUT(rig.third->x(), 370, patience);
        QTRY_COMPARE_WITH_TIMEOUT(rig.below->y(), 30, patience);
    }

    void thoseThatExpandShareWhatIsLeft() {
        Rig rig;
        rig.first->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        rig.third->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        QVERIFY(rig.show(530)); // 100 more than they would like
        QTRY_COMPARE_WITH_TIMEOUT(rig.first->width(), 200, patience);
        QCOMPARE(rig.second->width(), 200);
        QCOMPARE(rig.third->width(), 110);
        QCOMPARE(rig.third->geometry().right(), 529);
    }

    void itBeginsAtTheRightWhereOneReadsFromThere() {
        Rig rig;
        rig.window.setLayoutDirection(Qt::RightToLeft);
        QVERIFY(rig.show(600));
        QTRY_COMPARE_WITH_TIMEOUT(rig.first->geometry(), QRect(450, 5, 150, 20), patience);
        QCOMPARE(rig.second->geometry(), QRect(240, 0, 200, 30));
    }
};

QTEST_MAIN(TestFlowRow)
#include "test_flowrow.moc"
