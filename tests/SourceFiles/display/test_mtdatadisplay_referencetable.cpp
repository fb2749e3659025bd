#include "tests/SourceFiles/display/displayfixture.h"

#include <QHeaderView>
#include <QtTest>

namespace {

constexpr int poseColumn = 3;

QTableWidgetItem* name(const DisplayFixture& f, int row) {
    return f.referenceTable()->item(row, 1);
}

const QStringList dashes = {"-", "-", "-", "-", "-", "-", "-"};
const QStringList blanks = {" ", " ", " ", " ", " ", " ", " "};

} // namespace

class TestMtDataDisplayReferenceTable : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void columnsHaveTheirHeadersAndWidths() {
        ShownFixture f;
        const QTableWidget* const table = f.referenceTable();
        const QStringList headers = {"",       "reference ID", "",         "x [mm]",   "y [mm]",
                                     "z [mm]", "rx [deg]",     "ry [deg]", "rz [deg]", ""};
        const QList<int> widths = {90, 80, 36, 80, 80, 80, 80, 80, 80, 80};
        QCOMPARE(table->columnCount(), 10);
        for (int column = 0; column < 10; ++column) {
            QCOMPARE(table->horizontalHeaderItem(column)->text(), headers.at(column));
            QCOMPARE(table->columnWidth(column), widths.at(column));
            const int alignment = table->horizontalHeaderItem(column)->textAlignment();
            QCOMPARE(alignment == int(Qt::AlignRight | Qt::AlignVCenter), column >= poseColumn);
        }
        QCOMPARE(table->rowCount(), 0);
    }

    void rowsAndHeadersHaveTheirSizes() {
        ShownFixture f;
        f.showReferences({Pose()});
        f.display->show();
        const QTableWidget* const table = f.referenceTable();
        QCOMPARE(table->rowHeight(0), 20);
        QVERIFY(table->verticalHeader()->isHidden());
        QVERIFY(table->horizontalHeader()->height() >= 28);
        QVERIFY(table->horizontalHeader()->stretchLastSection());
        QCOMPARE(table->columnWidth(2), 36);
    }

    void aNewReferenceIsAskedForItsCalibration() {
        ShownFixture f;
        f.host.clearJournal();
        f.showReferences({Pose(), Pose()});
        const QStringList questions = {"get_string body calibrated measurementtool_reference b01",
                                       "get_string body calibrated measurementtool_reference b02"};
        QCOMPARE(lines(f.host.journal()), questions);
        f.host.clearJournal();
        f.showReferences({lostTool(), toolAt(1, 2, 3)});
        QVERIFY(f.host.journal().empty());
        f.showReferences({Pose()});
        QCOMPARE(lines(f.host.journal()), questions.mid(0, 1));
    }

    void aTrackedReferenceIsGreenWithItsPose() {
        ShownFixture f;
        f.showReferences({toolAt(0.125, -2, 3)});
        QCOMPARE(f.row(f.referenceTable(), 0),
                 QStringList({"(none)", "MR1", "(none)", "0.12", "-2.00", "3.00", "-0.00", "0.00",
                              "-0.00", "-"}));
        QCOMPARE(name(f, 0)->background(), QBrush(Qt::green));
        QCOMPARE(name(f, 0)->foreground(), QBrush(Qt::black));
        QCOMPARE(name(f, 0)->textAlignment(), int(Qt::AlignCenter));
        QCOMPARE(f.referenceTable()->item(0, 9)->textAlignment(),
                 int(Qt::AlignRight | Qt::AlignVCenter));
    }

    void aLostReferenceIsRedAndKeepsItsLastPose() {
        ShownFixture f;
        f.showReferences({lostTool()});
        QCOMPARE(f.referencePose(0), dashes);
        f.showReferences({toolAt(1, 2, 3)});
        const QStringList before = f.referencePose(0);
        f.showReferences({lostTool()});
        QCOMPARE(f.referencePose(0), before);
        QCOMPARE(name(f, 0)->background(), QBrush(Qt::red));
        QCOMPARE(name(f, 0)->foreground(), QBrush(Qt::black));
    }

    void referencesThatTheLineDoesNotListAreLost() {
        ShownFixture f;
        f.host.answer("body calibrated measurementtool_reference b03", "yes");
        f.show(referenceLine(3, 2, toolAt(1, 2, 3)));
        QCOMPARE(f.referenceTable()->rowCount(), 3);
        QCOMPARE(name(f, 0)->background(), QBrush(Qt::red));
        QCOMPARE(name(f, 1)->background(), QBrush(Qt::red));
        QCOMPARE(name(f, 2)->background(), QBrush(Qt::green));
        QCOMPARE(name(f, 2)->text(), QString("MR3"));
        QCOMPARE(f.referencePose(2).constFirst(), QString("1.00"));
    }

    void calibrationIsExactlyYes_data() {
        QTest::addColumn<QString>("reply");
        QTest::addColumn<bool>("calibrated");
        QTest::newRow("yes") << "yes" << true;
        QTest::newRow("no") << "no" << false;
        QTest::newRow("yes and a blank") << "yes " << false;
        QTest::newRow("empty") << "" << false;
        QTest::newRow("failed") << "(fail)" << false;
    }
    void calibrationIsExactlyYes() {
        QFETCH(QString, reply);
        QFETCH(bool, calibrated);
        const std::string parameter = "body calibrated measurementtool_reference b01";
        ShownFixture f;
        f.host.answer(parameter, reply.toStdString());
        if (reply == "(fail)") {
            f.host.fail(parameter);
        }
        f.showReferences({toolAt(1, 2, 3)});
        QCOMPARE(name(f, 0)->background(), QBrush(calibrated ? Qt::green : Qt::transparent));
        QCOMPARE(f.referencePose(0) == blanks, !calibrated);
        QVERIFY(f.host.logTexts().empty());
    }

    void degenerateRotationIsShownAsInTheToolTable() {
        ShownFixture f;
        Pose pose;
        pose.rot = {0.5, 0, 0, 0.5, 0.5, 0.5, 1, 0, 0};
        f.showReferences({pose});
        QCOMPARE(f.referencePose(0).mid(3, 3), QStringList({"45.00", "90.00", "0.00"}));
    }

    void referencesBeyondTheListsAreUncalibrated() {
        ShownFixture f;
        f.host.answer("body calibrated measurementtool_reference b05", "yes");
        f.showReferences(std::vector<Pose>(5));
        QCOMPARE(f.referenceTable()->rowCount(), 5);
        QCOMPARE(f.referencePose(4), blanks);
        QCOMPARE(name(f, 4)->background(), QBrush(Qt::transparent));
    }

    void noReferencesEmptyTheTable() {
        ShownFixture f;
        f.showReferences({Pose(), Pose()});
        f.showReferences(std::vector<Pose>());
        QCOMPARE(f.referenceTable()->rowCount(), 0);
    }

    void firstRefreshAfterAStartColoursToolsByTheOldCalibration() {
        ShownFixture f;
        const std::string tools = toolLine({Tool()});
        f.display->set_ascii_data("6dmt2", tools.c_str());
        f.showReferences({Pose()});
        f.display->onUpdateDataDisplay();
        const auto toolsReference = [&f] { return f.toolTable()->item(0, 2)->background(); };
        QCOMPARE(toolsReference(), QBrush(Qt::green));

        f.host.answer("body calibrated measurementtool_reference b01", "no");
        f.display->set_mea_stopped();
        f.start();
        f.display->set_ascii_data("6dmt2", tools.c_str());
        f.showReferences({Pose()});
        QCOMPARE(toolsReference(), QBrush(Qt::green)); // as it was before the stop
        QCOMPARE(name(f, 0)->background(), QBrush(Qt::transparent));
        f.display->onUpdateDataDisplay();
        QCOMPARE(toolsReference(), QBrush(Qt::transparent));
    }
};

QTEST_MAIN(TestMtDataDisplayReferenceTable)
#include "test_mtdatadisplay_referencetable.moc"
