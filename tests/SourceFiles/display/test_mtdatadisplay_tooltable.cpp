#include "tests/SourceFiles/display/displayfixture.h"
#include "tests/support/datarows.h"

#include <QHeaderView>
#include <QtTest>

namespace {

constexpr int poseColumn = 12;

QBrush background(const QTableWidget* table, int row, int column) {
    return table->item(row, column)->background();
}

const QBrush transparent(Qt::transparent);
const QBrush red(Qt::red);

} // namespace

class TestMtDataDisplayToolTable : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void columnsHaveTheirHeadersAndWidths() {
        ShownFixture f;
        const QTableWidget* const table = f.toolTable();
        const QStringList headers = {
            "tool ID", "",       "reference ID", "",         "",         "",
            "b1",      "",       "b2",           "",         "b3",       "",
            "x [mm]",  "y [mm]", "z [mm]",       "rx [deg]", "ry [deg]", "rz [deg]",
            ""};
        const QList<int> widths = {80, 10, 80, 10, 26, 10, 26, 10, 26, 10,
                                   26, 10, 80, 80, 80, 80, 80, 80, 80};
        QCOMPARE(table->columnCount(), 19);
        for (int column = 0; column < 19; ++column) {
            QCOMPARE(table->horizontalHeaderItem(column)->text(), headers.at(column));
            QCOMPARE(table->columnWidth(column), widths.at(column));
            const int alignment = table->horizontalHeaderItem(column)->textAlignment();
            QCOMPARE(alignment == int(Qt::AlignRight | Qt::AlignVCenter), column >= poseColumn);
        }
        QCOMPARE(table->rowCount(), 0);
    }

    void rowsAndHeadersHaveTheirSizes() {
        ShownFixture f({Tool(), Tool()});
        f.display->show();
        const QTableWidget* const table = f.toolTable();
        QCOMPARE(table->rowHeight(0), 20);
        QCOMPARE(table->verticalHeader()->defaultSectionSize(), 20);
        QVERIFY(table->verticalHeader()->isHidden());
        QVERIFY(table->horizontalHeader()->height() >= 28);
        QVERIFY(table->horizontalHeader()->stretchLastSection());
        for (int column : {1, 3, 5, 7, 9, 11}) {
            QCOMPARE(table->columnWidth(column), 10);
        }
    }

    void theLastColumnStretches() {
        ShownFixture f;
        f.display->resize(1400, 300);
        f.display->show();
        QCOMPARE(f.toolTable()->horizontalHeader()->length(), f.toolTable()->viewport()->width());
    }

    void aNewToolIsAskedForItsReferenceAndItsCalibration() {
        ShownFixture f;
        f.host.clearJournal();
        f.show({Tool(), Tool()});
        QCOMPARE(lines(f.host.journal()),
                 QStringList({"get_string measurementtool reference_of_tool b01",
                              "get_string body calibrated measurementtool b01",
                              "get_string measurementtool tip_calibrated b01",
                              "get_string measurementtool reference_of_tool b02",
                              "get_string body calibrated measurementtool b02",
                              "get_string measurementtool tip_calibrated b02"}));
        f.host.clearJournal();
        f.show({toolAt(1, 2, 3), lostTool()});
        QVERIFY(f.host.journal().empty());
        f.show({Tool()});
        QCOMPARE(f.host.journal().size(), std::size_t(3));
    }

    void namesAndReferencesAreCentred() {
        ShownFixture f({Tool(), Tool()});
        QCOMPARE(f.row(f.toolTable(), 0).mid(0, 4), QStringList({"M1", "(none)", "MR1", "(none)"}));
        QCOMPARE(f.row(f.toolTable(), 1).mid(0, 4), QStringList({"M2", "(none)", "", "(none)"}));
        for (int column : {0, 2}) {
            QCOMPARE(f.toolTable()->item(0, column)->textAlignment(), int(Qt::AlignCenter));
        }
        for (int column = poseColumn; column < 19; ++column) {
            QCOMPARE(f.toolTable()->item(0, column)->textAlignment(),
                     int(Qt::AlignRight | Qt::AlignVCenter));
        }
        for (int column : {4, 6, 8, 10}) {
            QCOMPARE(f.toolTable()->item(0, column)->text(), QString());
        }
    }

    void aToolIsCalibratedWhenItsBodyAndItsTipAre_data() {
        QTest::addColumn<QString>("body");
        QTest::addColumn<QString>("tip");
        QTest::addColumn<bool>("calibrated");
        QTest::addColumn<int>("questions");
        row("both", "yes", "yes", true, 3);
        row("body only", "yes", "no", false, 3);
        row("tip only", "no", "yes", false, 2);
        row("body with a blank", "yes ", "yes", false, 2);
        row("tip with a blank", "yes", "yes ", false, 3);
        row("body unknown", "(fail)", "yes", false, 2);
        row("tip unknown", "yes", "(fail)", false, 3);
    }
    void aToolIsCalibratedWhenItsBodyAndItsTipAre() {
        QFETCH(QString, body);
        QFETCH(QString, tip);
        QFETCH(bool, calibrated);
        QFETCH(int, questions);
        ShownFixture f;
        const std::pair<std::string, QString> answers[] = {
            {"body calibrated measurementtool b01", body},
            {"measurementtool tip_calibrated b01", tip}};
        for (const auto& [parameter, answer] : answers) {
            f.host.answer(parameter, answer.toStdString());
            if (answer == "(fail)") {
                f.host.fail(parameter);
            }
        }
        f.host.clearJournal();
        f.show({lostTool()});
        QCOMPARE(int(f.host.journal().size()), questions);
        const QString value = calibrated ? "-" : " ";
        QCOMPARE(f.toolPose(0), QStringList({value, value, value, value, value, value, value}));
        QCOMPARE(background(f.toolTable(), 0, 0), calibrated ? red : transparent);
        QVERIFY(f.host.logTexts().empty());
    }

    void theReferenceIsReadFromTheReply_data() {
        QTest::addColumn<QString>("reply");
        QTest::addColumn<QString>("label");
        row("none", "none", "");
        row("failed", "(fail)", "");
        row("two digits", "b02", "MR2");
        row("decimal", "b010", "MR10");
        row("not octal", "b08", "MR8");
        row("unreadable", "bx", "MR0");
        row("empty", "", "MR0");
        row("capital none", "None", "MR0");
        row("none and a blank", "none ", "MR0");
        row("far beyond the lists", "b2147483647", "MR2147483647");
        row("too large", "b2147483648", "MR0");
        row("negative", "b-3", "MR0");
    }
    void theReferenceIsReadFromTheReply() {
        QFETCH(QString, reply);
        const std::string parameter = "measurementtool reference_of_tool b01";
        ShownFixture f;
        f.host.answer(parameter, reply.toStdString());
        if (reply == "(fail)") {
            f.host.fail(parameter);
        }
        f.show({Tool()});
        QTEST(f.toolTable()->item(0, 2)->text(), "label");
        if (reply != "b02") {
            QCOMPARE(background(f.toolTable(), 0, 2), transparent);
        }
    }
};

QTEST_MAIN(TestMtDataDisplayToolTable)
#include "test_mtdatadisplay_tooltable.moc"
