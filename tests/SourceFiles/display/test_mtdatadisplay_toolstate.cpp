#include "tests/SourceFiles/display/displayfixture.h"
#include "tests/support/datarows.h"

#include <QApplication>
#include <QtTest>

#include <cmath>
#include <limits>

namespace {

constexpr int poseColumn = 12;

QBrush background(const QTableWidget* table, int row, int column) {
    return table->item(row, column)->background();
}

QBrush foreground(const QTableWidget* table, int row, int column) {
    return table->item(row, column)->foreground();
}

const QBrush transparent(Qt::transparent);
const QBrush black(Qt::black);
const QBrush red(Qt::red);
const QBrush green(Qt::green);
const QBrush blue(Qt::blue);

} // namespace

class TestMtDataDisplayToolState : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aTrackedToolIsGreenWithItsPose() {
        ShownFixture f({toolAt(1.005, -2.5, 1234567.125)});
        QCOMPARE(f.toolPose(0),
                 QStringList({"1.00", "-2.50", "1234567.12", "-0.00", "0.00", "-0.00", "-"}));
        QCOMPARE(background(f.toolTable(), 0, 0), green);
        QCOMPARE(foreground(f.toolTable(), 0, 0), black);
    }

    void aLostToolIsRedAndKeepsItsLastPose() {
        ShownFixture f({toolAt(1, 2, 3)});
        const QStringList before = f.toolPose(0);
        f.show({lostTool()});
        QCOMPARE(f.toolPose(0), before);
        QCOMPARE(background(f.toolTable(), 0, 0), red);
        QCOMPARE(foreground(f.toolTable(), 0, 0), black);
        f.show({toolAt(4, 5, 6)});
        QCOMPARE(f.toolPose(0).constFirst(), QString("4.00"));
        QCOMPARE(background(f.toolTable(), 0, 0), green);
    }

    void onlyAQualityOfMinusOneIsLost_data() {
        QTest::addColumn<double>("quality");
        QTest::addColumn<bool>("tracked");
        row("-1", -1.0, false);
        row("0", 0.0, true);
        row("-0.999", -0.999, true);
        row("-2", -2.0, true);
    }
    void onlyAQualityOfMinusOneIsLost() {
        QFETCH(double, quality);
        QFETCH(bool, tracked);
        Tool tool;
        tool.quality = quality;
        ShownFixture f({tool});
        QCOMPARE(background(f.toolTable(), 0, 0), tracked ? green : red);
    }

    void aToolNeverTrackedShowsDashes() {
        ShownFixture f({lostTool()});
        QCOMPARE(f.toolPose(0), QStringList({"-", "-", "-", "-", "-", "-", "-"}));
    }

    void anUncalibratedToolShowsNothingEvenWhenTracked() {
        ShownFixture f;
        f.host.answer("measurementtool tip_calibrated b01", "no");
        Tool tool = toolAt(1, 2, 3);
        tool.buttons = 4;
        tool.pressed = 15;
        f.show({tool});
        QCOMPARE(f.toolPose(0), QStringList({" ", " ", " ", " ", " ", " ", " "}));
        QCOMPARE(background(f.toolTable(), 0, 0), transparent);
        QCOMPARE(background(f.toolTable(), 0, 4), QBrush());
    }

    // On a dark palette what is written in black could not be read without its green or red.
    void aReferenceThatTurnsTransparentAgainHasThePalettesText() {
        QPalette dark = QApplication::palette();
        dark.setColor(QPalette::Base, QColor(0x23, 0x23, 0x23));
        dark.setColor(QPalette::Text, Qt::white);
        QApplication::setPalette(dark);
        ShownFixture f({toolAt(1, 2, 3)});
        f.showReferences({Pose()});
        f.display->onUpdateDataDisplay();
        QCOMPARE(background(f.toolTable(), 0, 2), green);
        QCOMPARE(foreground(f.toolTable(), 0, 2), black);

        f.host.answer("body calibrated measurementtool_reference b01", "no");
        QVERIFY(!f.display->setInfoRefBodyCalibrated(0));
        f.display->showTrackingStatusRefBody(0);
        f.display->updateDisplayRefBodies();
        for (const QTableWidgetItem* item :
             {f.toolTable()->item(0, 2), f.referenceTable()->item(0, 1)}) {
            QCOMPARE(item->background(), transparent);
            QCOMPARE(item->foreground(), QBrush());
            QVERIFY(!item->data(Qt::ForegroundRole).isValid());
        }
        QApplication::setPalette(QPalette());
    }

    void calibrationIsReadAgainAfterStopAndStartOnly() {
        ShownFixture f({toolAt(1, 2, 3)});
        f.host.answer("measurementtool tip_calibrated b01", "no");
        f.show({toolAt(4, 5, 6)});
        QCOMPARE(f.toolPose(0).constFirst(), QString("4.00"));
        f.display->set_mea_stopped();
        f.start();
        f.show({toolAt(7, 8, 9)});
        QCOMPARE(f.toolPose(0).constFirst(), QString(" "));
    }

    void aCellThatSomebodyElseHasTakenAwayStaysAway() {
        ShownFixture f({toolAt(1, 2, 3)});
        delete f.toolTable()->takeItem(0, 12);
        f.show({toolAt(4, 5, 6)});
        QCOMPARE(f.toolTable()->item(0, 12), static_cast<QTableWidgetItem*>(nullptr));
    }

    void pressedButtonsAreBlue() {
        Tool tool;
        tool.buttons = 4;
        tool.pressed = 0b1010;
        ShownFixture f({tool});
        QCOMPARE(background(f.toolTable(), 0, 4), transparent);
        QCOMPARE(background(f.toolTable(), 0, 6), blue);
        QCOMPARE(background(f.toolTable(), 0, 8), transparent);
        QCOMPARE(background(f.toolTable(), 0, 10), blue);
    }

    void aLostToolsButtonsAreStillShown() {
        Tool tool = lostTool();
        tool.buttons = 2;
        tool.pressed = 0b10;
        ShownFixture f({tool});
        QCOMPARE(background(f.toolTable(), 0, 4), transparent);
        QCOMPARE(background(f.toolTable(), 0, 6), blue);
        QCOMPARE(background(f.toolTable(), 0, 8), QBrush()); // it has no third button
    }

    void buttonsBeyondTheColumnsAreNotDrawn() {
        Tool tool;
        tool.buttons = 16;
        tool.pressed = 0xffff;
        ShownFixture f({tool});
        QCOMPARE(background(f.toolTable(), 0, 10), blue);
        for (int column = poseColumn; column < 19; ++column) {
            QCOMPARE(background(f.toolTable(), 0, column), QBrush());
        }
    }

    void anglesFollowTheRotation_data() {
        QTest::addColumn<QVector<double>>("rot");
        QTest::addColumn<QStringList>("angles");
        row("identity", QVector<double>{1, 0, 0, 0, 1, 0, 0, 0, 1},
            QStringList{"-0.00", "0.00", "-0.00"});
        row("about x", QVector<double>{1, 0, 0, 0, 0.5, 0, 0, -0.5, 0.5},
            QStringList{"45.00", "0.00", "-0.00"});
        row("about z", QVector<double>{0.5, 0, 0, -0.5, 0.5, 0, 0, 0, 1},
            QStringList{"-0.00", "0.00", "45.00"});
        row("degenerate", QVector<double>{0.5, 0, 0, 0.5, 0.5, 0.5, 1, 0, 0},
            QStringList{"45.00", "90.00", "0.00"});
        row("no sine", QVector<double>{1, 0, 0, 0, 1, 0, 1.5, 0, 1},
            QStringList{"-0.00", std::signbit(std::asin(1.5)) ? "-nan" : "nan", "-0.00"});
    }
    void anglesFollowTheRotation() {
        QFETCH(QVector<double>, rot);
        Tool tool;
        std::copy(rot.begin(), rot.end(), tool.rot.begin());
        ShownFixture f({tool});
        QFETCH(QStringList, angles);
        QCOMPARE(QStringList(f.toolPose(0).mid(3, 3)), angles);
    }

    void oddNumbersAreWrittenAsCWritesThem() {
        ShownFixture f({toolAt(0.125, -0.001, std::numeric_limits<double>::infinity())});
        QCOMPARE(f.toolPose(0).mid(0, 3), QStringList({"0.12", "-0.00", "inf"}));
        f.show({toolAt(std::numeric_limits<double>::quiet_NaN(), 1e300, -0.0)});
        QCOMPARE(f.toolPose(0).at(0), QString("nan"));
        QCOMPARE(f.toolPose(0).at(1).size(), 304);
        QCOMPARE(f.toolPose(0).at(2), QString("-0.00"));
    }

    void theOldLineFormatIsShownAsWell() {
        ShownFixture f;
        Tool tool = toolAt(1, 2, 3);
        tool.pressed = 5;
        QCOMPARE(f.display->set_ascii_data("6dmt", oldToolLine({tool}).c_str()), 0);
        f.display->onUpdateDataDisplay();
        QCOMPARE(f.toolPose(0).constFirst(), QString("1.00"));
        QCOMPARE(background(f.toolTable(), 0, 4), blue);
        QCOMPARE(background(f.toolTable(), 0, 6), transparent);
        QCOMPARE(background(f.toolTable(), 0, 8), blue);
    }

    void referenceCellFollowsTheReferencesState() {
        ShownFixture f({Tool(), Tool()});
        QCOMPARE(background(f.toolTable(), 0, 2), transparent); // not known to be calibrated yet
        f.showReferences({Pose()});
        QCOMPARE(background(f.toolTable(), 0, 2), transparent); // the tool table comes first
        f.display->onUpdateDataDisplay();
        QCOMPARE(background(f.toolTable(), 0, 2), green);
        QCOMPARE(foreground(f.toolTable(), 0, 2), black);
        QCOMPARE(background(f.toolTable(), 1, 2), transparent); // has none
        f.showReferences({lostTool()});
        QCOMPARE(background(f.toolTable(), 0, 2), red);
        QCOMPARE(foreground(f.toolTable(), 0, 2), black);
        f.showReferences({});
        QCOMPARE(background(f.toolTable(), 0, 2), red); // the frame does not contain it
    }

    void uncalibratedToolsReferenceCellIsUpdated() {
        ShownFixture f;
        f.host.answer("measurementtool tip_calibrated b01", "no");
        f.show({Tool()});
        f.showReferences({Pose()});
        f.display->onUpdateDataDisplay();
        QCOMPARE(background(f.toolTable(), 0, 0), transparent);
        QCOMPARE(background(f.toolTable(), 0, 2), green);
    }

    void uncalibratedReferenceLeavesTheCellTransparent() {
        ShownFixture f;
        f.host.answer("body calibrated measurementtool_reference b01", "no");
        f.show({Tool()});
        f.showReferences({Pose()});
        f.display->onUpdateDataDisplay();
        QCOMPARE(background(f.toolTable(), 0, 2), transparent);
    }

    void toolsBeyondTheListsAreUncalibratedAndWithoutReference() {
        ShownFixture f;
        f.host.answer("measurementtool reference_of_tool b05", "b01");
        f.host.answer("body calibrated measurementtool b05", "yes");
        f.host.answer("measurementtool tip_calibrated b05", "yes");
        f.show(std::vector<Tool>(5));
        QCOMPARE(f.toolTable()->rowCount(), 5);
        QCOMPARE(f.row(f.toolTable(), 4).mid(0, 3), QStringList({"M5", "(none)", ""}));
        QCOMPARE(f.toolPose(4).constFirst(), QString(" "));
        QCOMPARE(background(f.toolTable(), 4, 0), transparent);
        QCOMPARE(background(f.toolTable(), 4, 2), transparent);
    }

    void theReferenceCellOfOneRowIsShownOnRequest() {
        ShownFixture f({Tool(), Tool()});
        f.showReferences({Pose()});
        f.display->showTrackingStatusRefBody(0);
        QCOMPARE(background(f.toolTable(), 0, 2), green);
        f.display->set_ascii_data("6dmtr", referenceLine({lostTool()}).c_str());
        f.display->showTrackingStatusRefBody(0);
        QCOMPARE(background(f.toolTable(), 0, 2), red);
        f.display->showTrackingStatusRefBody(1);
        QCOMPARE(background(f.toolTable(), 1, 2), transparent);
    }

    void rowsThatDoNotExistAreLeftOut() {
        ShownFixture f({Tool()});
        f.showReferences({Pose()});
        f.display->set_mea_stopped();
        f.host.clearJournal();
        for (const int row : {-1, 0, 1, 4}) {
            f.display->showTrackingStatusRefBody(row); // one is assigned to row 0, one is not
        }
        QCOMPARE(f.toolTable()->rowCount(), 0);
        for (const int number : {-1, 4}) {
            QVERIFY(!f.display->setInfoMeaBodyCalibrated(number));
            QVERIFY(!f.display->setInfoRefBodyCalibrated(number));
            QCOMPARE(f.display->getRefBodyForMeaBody(number), QString());
        }
        QCOMPARE(lines(f.host.journal()), QStringList());
    }

    void aFailedLineShowsWhatItFilled() {
        ShownFixture f;
        const std::string good = toolLine({toolAt(1, 2, 3)});
        const std::string cut = "6dmt2 3 3" + good.substr(std::string("6dmt2 1 1").size());
        QCOMPARE(f.display->set_ascii_data("6dmt2", cut.c_str()), -1);
        f.display->onUpdateDataDisplay();
        QCOMPARE(f.toolTable()->rowCount(), 3);
        QCOMPARE(background(f.toolTable(), 0, 0), green);
        QCOMPARE(f.toolPose(0).constFirst(), QString("1.00"));
        QCOMPARE(background(f.toolTable(), 1, 0), red);
        QCOMPARE(f.toolPose(1).constFirst(), QString("-"));
    }

    void noToolsEmptyTheTable() {
        ShownFixture f({Tool(), Tool()});
        f.show(std::vector<Tool>());
        QCOMPARE(f.toolTable()->rowCount(), 0);
        f.show({Tool()});
        QCOMPARE(f.toolTable()->rowCount(), 1);
    }
};

QTEST_MAIN(TestMtDataDisplayToolState)
#include "test_mtdatadisplay_toolstate.moc"
