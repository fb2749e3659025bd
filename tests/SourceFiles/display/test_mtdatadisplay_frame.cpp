#include "tests/SourceFiles/display/displayfixture.h"
#include "tests/support/datarows.h"

#include <QMetaMethod>
#include <QtTest>

namespace {

constexpr int patienceMs = 5000;

const QStringList construction = {
    "get_string measurementtool available",
    "register_measurement",
    "get_bool measurementtool output_6dmt",
    "set output active chmon 6dmt2 yes",
    "set output active chmon 6dmtr yes",
    "get_int measurementtool max_number_of_tools",
    "get_int measurementtool max_number_of_references",
};

} // namespace

Q_DECLARE_METATYPE(VersionInfo)

class TestMtDataDisplayFrame : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void constructionAsksRegistersAndActivatesInThisOrder() {
        DisplayFixture f;
        f.build();
        QCOMPARE(lines(f.host.journal()), construction);
        QCOMPARE(f.host.measurementRequesters(), std::vector<Requester*>{f.display.get()});
    }

    void constructionDependsOnTheProtocol_data() {
        QTest::addColumn<VersionInfo>("protocol");
        QTest::addColumn<QStringList>("journal");
        QStringList oldFormat = construction;
        oldFormat.removeAt(2);
        oldFormat[2] = "set output active chmon 6dmt yes";
        row("below 1.3", VersionInfo(1, 2, 99), QStringList{"register_measurement"});
        row("1.3", VersionInfo(1, 3, 0), oldFormat);
        row("1.3, unknown patch", VersionInfo(1, 3, -1), oldFormat);
        row("1.3, other negative patch", VersionInfo(1, 3, -2),
            QStringList{"register_measurement"});
        row("1.12", VersionInfo(1, 12, 99), oldFormat);
        row("1.13", VersionInfo(1, 13, 0), construction);
        row("1.13, unknown patch", VersionInfo(1, 13, -1), construction);
        row("1.13, other negative patch", VersionInfo(1, 13, -2), oldFormat);
        row("2.0", VersionInfo(2, 0, 0), construction);
    }
    void constructionDependsOnTheProtocol() {
        QFETCH(VersionInfo, protocol);
        DisplayFixture f(protocol);
        f.build();
        QTEST(lines(f.host.journal()), "journal");
    }

    void unavailableToolsAreNotActivatedButTheirMaximaAreAsked() {
        DisplayFixture f;
        f.host.answer("measurementtool available", "no");
        f.build();
        QCOMPARE(lines(f.host.journal()),
                 QStringList({construction[0], construction[1], construction[5], construction[6]}));
    }

    void oldFormatIsActivatedWhenTheControllerUsesIt() {
        DisplayFixture f;
        f.host.answer("measurementtool output_6dmt", "yes");
        f.build();
        QCOMPARE(f.host.journal().at(3), std::string("set output active chmon 6dmt yes"));
        QCOMPARE(f.host.journal().at(4), std::string("set output active chmon 6dmtr yes"));
    }

    void refusedActivationIsNotRepeated() {
        DisplayFixture f;
        f.host.fail("output active chmon 6dmt2 yes");
        f.host.fail("output active chmon 6dmtr yes");
        f.build();
        QCOMPARE(lines(f.host.journal()), construction);
        f.host.clearJournal();
        f.start();
        QCOMPARE(lines(f.host.journal()), QStringList({construction[2]}));
    }

    void nothingIsLogged() {
        DisplayFixture f;
        for (const QString& line : construction) {
            f.host.fail(line.section(' ', 1).toStdString());
        }
        f.build();
        f.start();
        QVERIFY(f.host.logTexts().empty());
    }

    void missingHostAndVersionsDoNotCrash() {
        MtDataDisplay display(nullptr, nullptr, nullptr);
        display.show();
        display.set_mea_started_deferred();
        QCOMPARE(display.set_ascii_data("6dmt2", toolLine({Tool()}).c_str()), 0);
        display.onUpdateDataDisplay();
        display.set_mea_stopped();
        display.hide();
        display.about_to_exit();
    }

    void slotsAreInTheOrderOfTheContract() {
        const QMetaObject& meta = MtDataDisplay::staticMetaObject;
        QCOMPARE(meta.methodCount() - meta.methodOffset(), 4);
        QStringList names;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            QCOMPARE(meta.method(i).methodType(), QMetaMethod::Slot);
            names << QString::fromLatin1(meta.method(i).methodSignature());
        }
        QCOMPARE(names, QStringList({"showEvent(QShowEvent*)", "hideEvent(QHideEvent*)",
                                     "onUpdateDataDisplay()", "set_mea_started_deferred()"}));
    }

    void showingSubscribesAndHidingUnsubscribes() {
        DisplayFixture f;
        f.build();
        f.host.clearJournal();
        f.display->show();
        QCOMPARE(lines(f.host.journal()),
                 QStringList({"register 6dmt", "register 6dmt2", "register 6dmtr"}));
        QCOMPARE(f.host.requesters("6dmtr"), std::vector<Requester*>{f.display.get()});
        f.host.clearJournal();
        f.display->hide();
        QCOMPARE(lines(f.host.journal()),
                 QStringList({"unregister 6dmt", "unregister 6dmt2", "unregister 6dmtr"}));
        QVERIFY(f.host.requesters("6dmt").empty());
    }

    void hidingDuringAMeasurementKeepsTheTablesAndTheTimer() {
        DisplayFixture f;
        f.build();
        f.display->show();
        f.start();
        QCOMPARE(f.host.deliver(toolLine({Tool()})), 0);
        f.display->onUpdateDataDisplay();
        const QStringList before = f.row(f.toolTable(), 0);
        f.display->hide();
        f.display->set_ascii_data("6dmt2", toolLine({Tool(), Tool()}).c_str());
        QCOMPARE(f.row(f.toolTable(), 0), before);
        QTRY_COMPARE_WITH_TIMEOUT(f.toolTable()->rowCount(), 2, patienceMs);
    }

    void exitWithdrawsTheStartAndStopRegistrationOnly() {
        DisplayFixture f;
        f.build();
        f.host.clearJournal();
        f.display->about_to_exit();
        QCOMPARE(lines(f.host.journal()), QStringList({"unregister_measurement"}));
        QVERIFY(f.host.measurementRequesters().empty());
    }

    void oddMaximaGiveSaneLists_data() {
        QTest::addColumn<QString>("tools");
        QTest::addColumn<QString>("references");
        QTest::addColumn<int>("length");
        row("references decide", "2", "6", 6);
        row("tools decide", "7", "5", 7);
        row("never below four", "1", "2", 4);
        row("negative", "-1", "-2000000000", 4);
        row("not answered", "", "", 4);
        row("only references answered", "", "5", 5);
    }
    void oddMaximaGiveSaneLists() {
        QFETCH(QString, tools);
        QFETCH(QString, references);
        QFETCH(int, length);
        DisplayFixture f;
        const std::string parameters[] = {"measurementtool max_number_of_tools",
                                          "measurementtool max_number_of_references"};
        const QString answers[] = {tools, references};
        for (int i = 0; i < 2; ++i) {
            f.host.answer(parameters[i], answers[i].toStdString());
            if (answers[i].isEmpty()) {
                f.host.fail(parameters[i]);
            }
        }
        f.build();
        f.start();
        f.display->set_ascii_data("6dmtr", referenceLine(std::vector<Pose>(9)).c_str());
        f.host.clearJournal();
        f.display->onUpdateDataDisplay();
        QCOMPARE(f.referenceTable()->rowCount(), 9);
        QCOMPARE(int(f.host.journal().size()), length); // only listed bodies are asked for
    }

    // A host that promises bodies without end and lines that do so too.
    void aHostileLineAsksForNoMoreThan255Bodies() {
        constexpr int mostBodies = 255;
        constexpr int mostRecords = 65535; // what a line may promise
        DisplayFixture f;
        for (const char* kind : {"tools", "references"}) {
            f.host.answer(std::string("measurementtool max_number_of_") + kind, "2000000000");
        }
        for (int number = 1; number <= mostBodies + 2; ++number) {
            const std::string body = (number < 10 ? "b0" : "b") + std::to_string(number);
            for (const char* question :
                 {"body calibrated measurementtool ", "measurementtool tip_calibrated ",
                  "body calibrated measurementtool_reference "}) {
                f.host.answer(question + body, "yes");
            }
            f.host.answer("measurementtool reference_of_tool " + body, "b01");
        }
        f.build();
        f.start();
        f.host.clearJournal();

        f.display->set_ascii_data("6dmt", "6dmt 65535"); // cut off, and it counts all the same
        f.display->onUpdateDataDisplay();
        QCOMPARE(f.toolTable()->rowCount(), mostRecords);
        QCOMPARE(f.host.operationCount(), 3 * mostBodies);
        QCOMPARE(f.row(f.toolTable(), mostBodies - 1).mid(2, 1), QStringList("MR1"));
        QCOMPARE(f.row(f.toolTable(), mostBodies).mid(2, 1), QStringList(""));
        QCOMPARE(f.row(f.toolTable(), mostBodies).at(12), QString(" "));

        f.host.clearJournal();
        QCOMPARE(f.display->set_ascii_data("6dmtr", "6dmtr 65535 0"), 0);
        f.display->onUpdateDataDisplay();
        QCOMPARE(f.referenceTable()->rowCount(), mostRecords);
        QCOMPARE(f.host.operationCount(), mostBodies);
        f.display->onUpdateDataDisplay();
        QCOMPARE(f.host.operationCount(), mostBodies);
    }
};

QTEST_MAIN(TestMtDataDisplayFrame)
#include "test_mtdatadisplay_frame.moc"
