#include "SourceFiles/mtdatadisplay_settledrows.h"
#include "tests/SourceFiles/display/displayfixture.h"
#include "tests/support/datarows.h"

#include <QPalette>
#include <QStyledItemDelegate>
#include <QtTest>

#include <functional>

namespace {

constexpr int rows = 3;
constexpr int columns = 2;
constexpr int nameColumn = 0;
constexpr int referenceColumn = 2;
constexpr int firstButtonColumn = 4;
constexpr int poseColumn = 12;
constexpr int referenceNameColumn = 1;

// A table in which every row is settled.
class Settled {
public:
    Settled()
        : table(rows, columns) {
        for (int row = 0; row < rows; ++row) {
            for (int column = 0; column < columns; ++column) {
                table.setItem(row, column, new QTableWidgetItem(QString::number(row)));
            }
        }
        settledRows.watch(&table);
        for (int row = 0; row < rows; ++row) {
            settledRows.shows(row, row);
        }
    }

    // One letter a row: settled or not.
    QString state() {
        QString letters;
        for (int row = 0; row < rows; ++row) {
            letters += QLatin1Char(settledRows.shows(row, row) ? 's' : '-');
        }
        return letters;
    }

    QTableWidget table;
    SettledRows<int> settledRows;
};

using TableAction = std::function<void(QTableWidget&)>;

// A display whose two tables have settled: a tracked tool with a tracked reference, a lost tool
// without one.
class SettledDisplay : public ShownFixture {
public:
    SettledDisplay() {
        Tool pressing = toolAt(1, 2, 3);
        pressing.buttons = 4;
        pressing.pressed = 1;
        tools = {pressing, lostTool()};
        references = {toolAt(7, 8, 9), lostTool()};
        feed();
        refresh(3);
    }

    void feed() {
        display->set_ascii_data("6dmt2", toolLine(tools).c_str());
        display->set_ascii_data("6dmtr", referenceLine(references).c_str());
    }
    void refresh(int times = 1) {
        for (int i = 0; i < times; ++i) {
            display->onUpdateDataDisplay();
        }
    }

    QBrush background(int row, int column) const {
        return toolTable()->item(row, column)->background();
    }

    std::vector<Tool> tools;
    std::vector<Pose> references;
};

} // namespace

Q_DECLARE_METATYPE(TableAction)

// A refresh passes over rows that show what they should. Nobody may notice.
class TestMtDataDisplaySettledRows : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aRowIsSettledAfterAPassWithoutAChange() {
        QTableWidget table(1, 1);
        table.setItem(0, 0, new QTableWidgetItem);
        SettledRows<int> settledRows;
        settledRows.watch(&table);
        QVERIFY(!settledRows.shows(0, 5));
        table.item(0, 0)->setText(QStringLiteral("5")); // the pass
        QVERIFY(!settledRows.shows(0, 5));
        QVERIFY(settledRows.shows(0, 5));
        QVERIFY(!settledRows.shows(0, 6));
        QVERIFY(settledRows.shows(0, 6));
        QVERIFY(!settledRows.shows(0, 5));
    }

    void rowsThatWereNeverSeenAreNotSettled() {
        Settled f;
        QVERIFY(!f.settledRows.shows(rows + 4, 0));
        QCOMPARE(f.state(), QString("sss"));
    }

    void whateverChangesTheTableIsNoticed_data() {
        QTest::addColumn<TableAction>("action");
        QTest::addColumn<QString>("state");
        const auto change = [](const char* name, const char* state, const TableAction& action) {
            row(name, action, QString::fromLatin1(state));
        };
        change("nothing", "sss", [](QTableWidget&) {});
        change("the same text", "sss", [](QTableWidget& t) { t.item(1, 0)->setText("1"); });
        change("a text", "s-s", [](QTableWidget& t) { t.item(1, 0)->setText("x"); });
        change("a colour", "ss-", [](QTableWidget& t) { t.item(2, 1)->setForeground(Qt::red); });
        change("a ground", "-ss", [](QTableWidget& t) { t.item(0, 1)->setBackground(Qt::red); });
        change("a new item", "s-s", [](QTableWidget& t) { t.setItem(1, 1, new QTableWidgetItem); });
        change("an item taken", "s-s", [](QTableWidget& t) { delete t.takeItem(1, 1); });
        change("an item deleted", "s-s", [](QTableWidget& t) { delete t.item(1, 1); });
        change("a row inserted", "---", [](QTableWidget& t) { t.insertRow(1); });
        change("a row removed", "---", [](QTableWidget& t) { t.removeRow(0); });
        change("a column inserted", "---", [](QTableWidget& t) { t.insertColumn(0); });
        change("a column removed", "---", [](QTableWidget& t) { t.removeColumn(0); });
        change("contents cleared", "---", [](QTableWidget& t) { t.clearContents(); });
        change("sorted", "---", [](QTableWidget& t) { t.sortItems(0, Qt::DescendingOrder); });
        change("a change of nothing", "sss", [](QTableWidget& t) {
            Q_EMIT t.model()->dataChanged(QModelIndex(), QModelIndex());
        });
    }
    void whateverChangesTheTableIsNoticed() {
        QFETCH(TableAction, action);
        QFETCH(QString, state);
        Settled f;
        action(f.table);
        QCOMPARE(f.state(), state);
        QCOMPARE(f.state(), QString("sss"));
    }

    void theTableMayOutliveItsWatcher() {
        QTableWidget table(1, 1);
        {
            SettledRows<int> settledRows;
            settledRows.watch(&table);
            settledRows.shows(0, 0);
        }
        table.setItem(0, 0, new QTableWidgetItem);
        table.clearContents();
        QCOMPARE(table.item(0, 0), static_cast<QTableWidgetItem*>(nullptr));
    }

    void theRecordIsFollowed() {
        SettledDisplay f;
        f.tools[0].loc = {4, 5, 6};
        f.tools[0].pressed = 2;
        f.tools[1] = toolAt(-1, -2, -3);
        f.references[1] = toolAt(0.5, 0, 0);
        f.feed();
        f.refresh();
        QCOMPARE(f.toolPose(0).mid(0, 3), QStringList({"4.00", "5.00", "6.00"}));
        QCOMPARE(f.background(0, firstButtonColumn), QBrush(Qt::transparent));
        QCOMPARE(f.background(0, firstButtonColumn + 2), QBrush(Qt::blue));
        QCOMPARE(f.background(1, nameColumn), QBrush(Qt::green));
        QCOMPARE(f.toolPose(1).mid(0, 3), QStringList({"-1.00", "-2.00", "-3.00"}));
        QCOMPARE(f.referencePose(1).constFirst(), QString("0.50"));
        f.tools[0].quality = -1.0;
        f.feed();
        f.refresh();
        QCOMPARE(f.background(0, nameColumn), QBrush(Qt::red));
        QCOMPARE(f.toolPose(0).constFirst(), QString("4.00"));
    }

    void theButtonsOfALostToolAreFollowed() {
        SettledDisplay f;
        f.tools[1].buttons = 1;
        f.tools[1].pressed = 1;
        f.feed();
        f.refresh();
        QCOMPARE(f.background(1, firstButtonColumn), QBrush(Qt::blue));
    }

    void aZeroThatChangesItsSignIsFollowed() {
        SettledDisplay f;
        f.tools[0].loc = {0.0, 0.0, 0.0};
        f.feed();
        f.refresh(3);
        QCOMPARE(f.toolPose(0).constFirst(), QString("0.00"));
        f.tools[0].loc[0] = -0.0;
        f.feed();
        f.refresh();
        QCOMPARE(f.toolPose(0).constFirst(), QString("-0.00"));
    }

    void aCalibrationReadAgainIsFollowed() {
        SettledDisplay f;
        f.host.answer("measurementtool tip_calibrated b01", "no");
        f.display->setInfoMeaBodyCalibrated(0);
        f.refresh();
        QCOMPARE(f.background(0, nameColumn), QBrush(Qt::transparent));
        f.refresh(3);
        f.host.answer("measurementtool tip_calibrated b01", "yes");
        f.display->setInfoMeaBodyCalibrated(0);
        f.refresh();
        QCOMPARE(f.background(0, nameColumn), QBrush(Qt::green));
    }

    void aReferenceReadAgainIsFollowed() {
        SettledDisplay f;
        QCOMPARE(f.background(0, referenceColumn), QBrush(Qt::green));
        f.host.answer("measurementtool reference_of_tool b01", "b02");
        f.display->getRefBodyForMeaBody(0);
        f.refresh();
        QCOMPARE(f.background(0, referenceColumn), QBrush(Qt::red));
        f.refresh(3);
        f.host.answer("measurementtool reference_of_tool b01", "none");
        f.display->getRefBodyForMeaBody(0);
        f.refresh();
        QCOMPARE(f.background(0, referenceColumn), QBrush(Qt::transparent));
    }

    void aReferencesCalibrationReadAgainIsFollowedInBothTables() {
        SettledDisplay f;
        f.host.answer("body calibrated measurementtool_reference b01", "no");
        f.display->setInfoRefBodyCalibrated(0);
        f.refresh();
        QCOMPARE(f.background(0, referenceColumn), QBrush(Qt::transparent));
        QCOMPARE(f.referenceTable()->item(0, referenceNameColumn)->background(),
                 QBrush(Qt::transparent));
    }

    void aReferenceThatIsLostOrLeavesTheFrameIsFollowed() {
        SettledDisplay f;
        f.references[0].quality = -1.0;
        f.feed();
        f.refresh();
        QCOMPARE(f.background(0, referenceColumn), QBrush(Qt::red));
        QCOMPARE(f.referenceTable()->item(0, referenceNameColumn)->background(), QBrush(Qt::red));
        f.references[0].quality = 1.0;
        f.feed();
        f.refresh(3);
        QCOMPARE(f.background(0, referenceColumn), QBrush(Qt::green));
        f.references.clear();
        f.feed();
        f.refresh();
        QCOMPARE(f.background(0, referenceColumn), QBrush(Qt::red));
    }

    void stopAndStartWriteTheSameRecordsAgain() {
        SettledDisplay f;
        const QStringList toolTexts = f.row(f.toolTable(), 0);
        const QStringList referenceTexts = f.row(f.referenceTable(), 0);
        f.display->set_mea_stopped();
        f.start();
        f.feed();
        f.refresh();
        QCOMPARE(f.row(f.toolTable(), 0), toolTexts);
        QCOMPARE(f.row(f.referenceTable(), 0), referenceTexts);
        QCOMPARE(f.background(0, nameColumn), QBrush(Qt::green));
        QCOMPARE(f.background(0, firstButtonColumn), QBrush(Qt::blue));
    }

    void rowsRebuiltForAnotherNumberAreWrittenAgain() {
        SettledDisplay f;
        const QStringList texts = f.row(f.toolTable(), 0);
        f.tools.push_back(toolAt(4, 5, 6));
        f.feed();
        f.refresh();
        QCOMPARE(f.row(f.toolTable(), 0), texts);
        QCOMPARE(f.background(0, nameColumn), QBrush(Qt::green));
        QCOMPARE(f.toolPose(2).constFirst(), QString("4.00"));
    }

    void aCellThatSomebodyElseHasWrittenIsWrittenAgain() {
        SettledDisplay f;
        f.toolTable()->item(0, poseColumn)->setText(QStringLiteral("99"));
        f.toolTable()->item(0, nameColumn)->setBackground(Qt::yellow);
        f.toolTable()->item(0, referenceColumn)->setForeground(Qt::white);
        f.referenceTable()->item(0, 3)->setText(QStringLiteral("99"));
        f.refresh();
        QCOMPARE(f.toolPose(0).constFirst(), QString("1.00"));
        QCOMPARE(f.background(0, nameColumn), QBrush(Qt::green));
        QCOMPARE(f.toolTable()->item(0, referenceColumn)->foreground(), QBrush(Qt::black));
        QCOMPARE(f.referencePose(0).constFirst(), QString("7.00"));
    }

    void aCellTakenAwayStaysAwayAndANewOneIsWritten() {
        SettledDisplay f;
        delete f.toolTable()->takeItem(0, poseColumn);
        f.refresh(3);
        QCOMPARE(f.toolTable()->item(0, poseColumn), static_cast<QTableWidgetItem*>(nullptr));
        f.toolTable()->setItem(0, poseColumn, new QTableWidgetItem);
        f.refresh();
        QCOMPARE(f.toolPose(0).constFirst(), QString("1.00"));
    }

    // Somebody whose reaction to a cell undoes it does not win by reacting inside the refresh.
    void aCellUndoneInsideTheRefreshIsWrittenAtTheNext() {
        SettledDisplay f;
        bool undone = false;
        const auto undo = [&](QTableWidgetItem* item) {
            if (!undone && item->column() == poseColumn) {
                undone = true;
                item->setText(QStringLiteral("undone"));
            }
        };
        const QMetaObject::Connection reaction =
            connect(f.toolTable(), &QTableWidget::itemChanged, f.display.get(), undo);
        f.tools[0].loc[0] = 4;
        f.feed();
        f.refresh();
        QVERIFY(undone);
        QCOMPARE(f.toolPose(0).constFirst(), QString("undone"));
        f.refresh();
        QCOMPARE(f.toolPose(0).constFirst(), QString("4.00"));
        disconnect(reaction);
    }

    void anotherPaletteIsPaintedWithoutNews() {
        SettledDisplay f;
        f.host.answer("measurementtool reference_of_tool b01", "none");
        f.display->getRefBodyForMeaBody(0); // a transparent cell with a text
        f.refresh(3);
        f.display->resize(1000, 300);
        QPalette dark = f.toolTable()->palette();
        dark.setColor(QPalette::Base, Qt::black);
        dark.setColor(QPalette::Text, Qt::yellow);
        f.toolTable()->setPalette(dark);
        f.refresh();
        const auto painted = [&f] {
            QImage image(f.display->size(), QImage::Format_ARGB32_Premultiplied);
            image.fill(Qt::white);
            f.display->render(&image);
            return image;
        };
        const QImage own = painted();
        QStyledItemDelegate stock;
        f.toolTable()->setItemDelegate(&stock);
        f.referenceTable()->setItemDelegate(&stock);
        QCOMPARE(own, painted());
        const QTableWidget* const table = f.toolTable();
        const QRect cell = table->visualItemRect(table->item(0, poseColumn));
        const QPoint corner = table->viewport()->mapTo(f.display.get(), cell.topLeft());
        bool yellow = false;
        for (int y = 0; y < cell.height(); ++y) {
            for (int x = 0; x < cell.width(); ++x) {
                const QColor pixel = own.pixelColor(corner + QPoint(x, y));
                yellow = yellow || (pixel.red() > 128 && pixel.blue() < 64); // smoothed edges
            }
        }
        QVERIFY(yellow);
    }
};

QTEST_MAIN(TestMtDataDisplaySettledRows)
#include "test_mtdatadisplay_settledrows.moc"
