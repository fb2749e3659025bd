#include "probecheck/points/pointlistmodel.h"
#include "probecheck/points/record/pointdistance.h"
#include "samplepoints.h"
#include "tests/support/datarows.h"

#include <QAbstractItemModelTester>
#include <QPersistentModelIndex>
#include <QSignalSpy>
#include <QtTest>

Q_DECLARE_METATYPE(std::vector<int>)

using points::PointListModel;
using points::PointRecord;

namespace {

std::vector<int> numbersIn(const PointListModel& model) {
    std::vector<int> numbers;
    for (const PointRecord& point : model.points()) {
        numbers.push_back(point.number);
    }
    return numbers;
}

std::vector<int> everySecondRow(int rows) {
    std::vector<int> all;
    for (int row = 0; row < rows; row += 2) {
        all.push_back(row);
    }
    return all;
}

QString shown(const PointListModel& model, int row, int column) {
    return model.index(row, column).data().toString();
}

} // namespace

class TestPointList : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void aPointIsShownInItsRow_data();
    void aPointIsShownInItsRow();
    void everyColumnHasAHeader();
    void numbersSortAsNumbers_data();
    void numbersSortAsNumbers();
    void appendedPointsComeLast();
    void theNameAloneCanBeEdited();
    void aRenamingIsUndoneAndRedone();
    void aNameIsOneShortLine();
    void deletedPointsComeBackWhereTheyWere_data();
    void deletedPointsComeBackWhereTheyWere();
    void pointsCapturedMeanwhileStayBehindThoseThatComeBack();
    void aNumberIsNeverGivenTwice();
    void rowsThatAreNoneAreIgnored();
    void theDistanceToTheOneBeforeFollowsADeletion();
    void aFewDeletedRowsLeaveTheOthersSelected();
    void eachChangeIsTold();
    void whatIsShownKnowsNoLocale();
    void clearingForgetsEverything();
    void noIndexHasNoData();

private:
    std::unique_ptr<PointListModel> m_model;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

void TestPointList::init() {
    m_model = std::make_unique<PointListModel>();
    m_tester = std::make_unique<QAbstractItemModelTester>(
        m_model.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
}

void TestPointList::cleanup() {
    m_tester.reset();
    m_model.reset();
}

void TestPointList::aPointIsShownInItsRow_data() {
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("text");
    row("number", int(PointListModel::Number), QString("7"));
    row("name", int(PointListModel::Name), QString("P7"));
    row("x", int(PointListModel::X), QString("1.500"));
    row("y rounds to no minus zero", int(PointListModel::Y), QString("0.000"));
    row("z", int(PointListModel::Z), QString("-1234.568"));
    row("deviation x", int(PointListModel::DeviationX), QString("0.030"));
    row("deviation y", int(PointListModel::DeviationY), QString("0.020"));
    row("deviation z", int(PointListModel::DeviationZ), QString("0.010"));
    row("greatest", int(PointListModel::GreatestDistance), QString("0.080"));
    row("samples", int(PointListModel::Samples), QString("61"));
    row("duration", int(PointListModel::Duration), QString("1.00"));
    row("tool", int(PointListModel::Tool), QString("M2"));
    row("reference", int(PointListModel::Reference), QString("MR10"));
    row("time", int(PointListModel::Time), QString("2026-11-22T04:00:07.000Z"));
    row("verdict", int(PointListModel::Verdict), QString("conforms"));
    row("first has none before", int(PointListModel::DistanceToPrevious), QString("-"));
}

void TestPointList::aPointIsShownInItsRow() {
    QFETCH(int, column);
    PointRecord point = samplePoint(7, 1.5, -0.0004, -1234.5678);
    point.tool = 1;
    point.reference = 9;
    m_model->append({point});
    QTEST(shown(*m_model, 0, column), "text");
}

void TestPointList::everyColumnHasAHeader() {
    for (int column = 0; column < m_model->columnCount(); ++column) {
        QVERIFY(!m_model->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString().isEmpty());
        QVERIFY(!m_model->headerData(column, Qt::Horizontal, Qt::ToolTipRole).toString().isEmpty());
    }
    const int none = PointListModel::ColumnCount;
    QVERIFY(!m_model->headerData(none, Qt::Horizontal, Qt::DisplayRole).isValid());
    QVERIFY(!m_model->headerData(0, Qt::Vertical, Qt::DisplayRole).isValid());
    QVERIFY(!m_model->headerData(0, Qt::Horizontal, Qt::FontRole).isValid());
}

void TestPointList::numbersSortAsNumbers_data() {
    QTest::addColumn<int>("column");
    QTest::addColumn<QVariant>("value");
    row("number", int(PointListModel::Number), QVariant(2));
    row("name", int(PointListModel::Name), QVariant("P2"));
    row("x", int(PointListModel::X), QVariant(3.0));
    row("y", int(PointListModel::Y), QVariant(4.0));
    row("z", int(PointListModel::Z), QVariant(0.0));
    row("deviation x", int(PointListModel::DeviationX), QVariant(0.03));
    row("deviation y", int(PointListModel::DeviationY), QVariant(0.02));
    row("deviation z", int(PointListModel::DeviationZ), QVariant(0.01));
    row("greatest", int(PointListModel::GreatestDistance), QVariant(0.08));
    row("samples", int(PointListModel::Samples), QVariant(61));
    row("duration", int(PointListModel::Duration), QVariant(1.0));
    row("tool", int(PointListModel::Tool), QVariant(0));
    row("reference", int(PointListModel::Reference), QVariant(-1));
    row("time", int(PointListModel::Time), QVariant(1795320002000LL));
    row("verdict", int(PointListModel::Verdict), QVariant(0));
    row("distance", int(PointListModel::DistanceToPrevious), QVariant(5.0));
}

void TestPointList::numbersSortAsNumbers() {
    QFETCH(int, column);
    m_model->append({samplePoint(1), samplePoint(2, 3.0, 4.0)});
    QTEST(m_model->index(1, column).data(PointListModel::SortRole), "value");
    const QVariant first =
        m_model->index(0, PointListModel::DistanceToPrevious).data(PointListModel::SortRole);
    QVERIFY(first.toDouble() < 0.0); // before every distance
}

void TestPointList::appendedPointsComeLast() {
    QCOMPARE(m_model->nextNumber(), 1);
    m_model->append({});
    QCOMPARE(m_model->rowCount(), 0);
    m_model->append(samplePoints(3));
    QCOMPARE(m_model->nextNumber(), 4);
    m_model->append({samplePoint(4)});
    QCOMPARE(numbersIn(*m_model), (std::vector<int>{1, 2, 3, 4}));
    QCOMPARE(m_model->undoStack().count(), 0); // a captured point is no step to undo
}

void TestPointList::theNameAloneCanBeEdited() {
    m_model->append(samplePoints(1));
    for (int column = 0; column < m_model->columnCount(); ++column) {
        const QModelIndex index = m_model->index(0, column);
        const bool isName = column == PointListModel::Name;
        QCOMPARE(m_model->flags(index).testFlag(Qt::ItemIsEditable), isName);
        QCOMPARE(m_model->setData(index, "9", Qt::EditRole), isName);
    }
    QVERIFY(!m_model->setData(m_model->index(0, PointListModel::Name), "x", Qt::DisplayRole));
    QVERIFY(!m_model->setData(QModelIndex(), "x", Qt::EditRole));
    QCOMPARE(m_model->point(0).name, QString("9"));
}

void TestPointList::aRenamingIsUndoneAndRedone() {
    m_model->append(samplePoints(2));
    QVERIFY(m_model->setData(m_model->index(1, PointListModel::Name), "edge", Qt::EditRole));
    QCOMPARE(shown(*m_model, 1, PointListModel::Name), QString("edge"));
    m_model->undoStack().undo();
    QCOMPARE(shown(*m_model, 1, PointListModel::Name), QString("P2"));
    m_model->undoStack().redo();
    QCOMPARE(shown(*m_model, 1, PointListModel::Name), QString("edge"));
    QVERIFY(m_model->setData(m_model->index(1, PointListModel::Name), "edge", Qt::EditRole));
    QCOMPARE(m_model->undoStack().count(), 1);
}

void TestPointList::aNameIsOneShortLine() {
    m_model->append(samplePoints(1));
    const QModelIndex cell = m_model->index(0, PointListModel::Name);
    QVERIFY(m_model->setData(cell, "  left\n\tedge ", Qt::EditRole));
    QCOMPARE(m_model->point(0).name, QString("left edge"));
    QVERIFY(!m_model->setData(cell, " \n ", Qt::EditRole));
    QCOMPARE(m_model->point(0).name, QString("left edge"));
    QVERIFY(m_model->setData(cell, QString(1000, 'x'), Qt::EditRole));
    QCOMPARE(m_model->point(0).name.size(), PointListModel::longestName);
}

void TestPointList::deletedPointsComeBackWhereTheyWere_data() {
    QTest::addColumn<int>("count");
    QTest::addColumn<std::vector<int>>("rows");
    row("first", 5, std::vector<int>{0});
    row("last", 5, std::vector<int>{4});
    row("all", 5, std::vector<int>{0, 1, 2, 3, 4});
    row("two stretches", 8, std::vector<int>{1, 2, 5, 6});
    row("out of order and twice", 8, std::vector<int>{6, 1, 6, 2});
    row("many stretches", 100, everySecondRow(100));
}

void TestPointList::deletedPointsComeBackWhereTheyWere() {
    QFETCH(int, count);
    QFETCH(std::vector<int>, rows);
    m_model->append(samplePoints(count));
    const std::vector<int> before = numbersIn(*m_model);
    m_model->remove(rows);
    std::vector<int> rest;
    for (int row = 0; row < count; ++row) {
        if (std::find(rows.begin(), rows.end(), row) == rows.end()) {
            rest.push_back(row + 1);
        }
    }
    QCOMPARE(numbersIn(*m_model), rest);
    m_model->undoStack().undo();
    QCOMPARE(numbersIn(*m_model), before);
    m_model->undoStack().redo();
    QCOMPARE(numbersIn(*m_model), rest);
}

void TestPointList::pointsCapturedMeanwhileStayBehindThoseThatComeBack() {
    m_model->append(samplePoints(3));
    m_model->remove({1, 2});
    m_model->append({samplePoint(m_model->nextNumber())});
    QCOMPARE(numbersIn(*m_model), (std::vector<int>{1, 4}));
    m_model->undoStack().undo();
    QCOMPARE(numbersIn(*m_model), (std::vector<int>{1, 2, 3, 4}));
}

void TestPointList::aNumberIsNeverGivenTwice() {
    m_model->append(samplePoints(3));
    m_model->remove({2});
    QCOMPARE(m_model->nextNumber(), 4);
}

void TestPointList::rowsThatAreNoneAreIgnored() {
    m_model->append(samplePoints(2));
    m_model->remove({-1, 2, 100});
    m_model->remove({});
    QCOMPARE(m_model->rowCount(), 2);
    QCOMPARE(m_model->undoStack().count(), 0);
}

void TestPointList::theDistanceToTheOneBeforeFollowsADeletion() {
    m_model->append(samplePoints(3));
    QVERIFY(shown(*m_model, 2, PointListModel::DistanceToPrevious).startsWith("10.000 ± 0."));
    QSignalSpy changes(m_model.get(), &PointListModel::dataChanged);
    m_model->remove({1});
    QVERIFY(shown(*m_model, 1, PointListModel::DistanceToPrevious).startsWith("20.000 ± 0."));
    QCOMPARE(changes.size(), 1);
    QCOMPARE(changes.at(0).at(0).toModelIndex().row(), 1);
    m_model->undoStack().undo();
    QCOMPARE(changes.size(), 2);
    QCOMPARE(changes.at(1).at(0).toModelIndex().row(), 2);

    PointRecord brief = samplePoint(4, 0.0);
    brief.duration = 0.1;
    PointRecord elsewhere = samplePoint(5);
    elsewhere.reference = 0;
    m_model->append({brief, elsewhere});
    QCOMPARE(shown(*m_model, 3, PointListModel::DistanceToPrevious), QString("30.000 ± ?"));
    QCOMPARE(shown(*m_model, 4, PointListModel::DistanceToPrevious), QString("-"));
}

void TestPointList::aFewDeletedRowsLeaveTheOthersSelected() {
    m_model->append(samplePoints(10));
    const QPersistentModelIndex kept(m_model->index(7, 0));
    m_model->remove({1, 3});
    QCOMPARE(kept.row(), 5);
    m_model->undoStack().undo();
    QCOMPARE(kept.row(), 7);
}

void TestPointList::eachChangeIsTold() {
    qRegisterMetaType<std::vector<int>>();
    m_model->append(samplePoints(3));
    QSignalSpy renamed(m_model.get(), &PointListModel::renamed);
    QSignalSpy deleted(m_model.get(), &PointListModel::deleted);
    QSignalSpy restored(m_model.get(), &PointListModel::restored);
    m_model->setData(m_model->index(1, PointListModel::Name), "edge", Qt::EditRole);
    m_model->remove({0, 1});
    m_model->undoStack().undo();
    m_model->undoStack().undo();
    QCOMPARE(renamed.size(), 2);
    QCOMPARE(renamed.at(0), (QVariantList{2, "edge"}));
    QCOMPARE(renamed.at(1), (QVariantList{2, "P2"}));
    const std::vector<int> both{1, 2};
    QCOMPARE(deleted.size(), 1);
    QCOMPARE(deleted.at(0).at(0).value<std::vector<int>>(), both);
    QCOMPARE(restored.size(), 1);
    QCOMPARE(restored.at(0).at(0).value<std::vector<int>>(), both);
}

void TestPointList::whatIsShownKnowsNoLocale() {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German));
    m_model->append({samplePoint(1, 1234.5)});
    const QString x = shown(*m_model, 0, PointListModel::X);
    QLocale::setDefault(before);
    QCOMPARE(x, QString("1234.500"));
    QCOMPARE(points::fixedText(qQNaN(), 3), QString("-"));
    QCOMPARE(points::fixedText(1e300, 0).size(), 301);
}

void TestPointList::clearingForgetsEverything() {
    m_model->append(samplePoints(3));
    m_model->remove({0});
    m_model->clear();
    QCOMPARE(m_model->rowCount(), 0);
    QCOMPARE(m_model->nextNumber(), 1);
    QVERIFY(!m_model->undoStack().canUndo());
}

void TestPointList::noIndexHasNoData() {
    m_model->append(samplePoints(1));
    QVERIFY(!m_model->data(QModelIndex(), Qt::DisplayRole).isValid());
    QVERIFY(!m_model->index(0, 0).data(Qt::DecorationRole).isValid());
    QCOMPARE(m_model->rowCount(m_model->index(0, 0)), 0);
    QCOMPARE(m_model->columnCount(m_model->index(0, 0)), 0);
    QCOMPARE(m_model->flags(QModelIndex()), Qt::ItemFlags());
}

QTEST_GUILESS_MAIN(TestPointList)
#include "test_pointlist.moc"
