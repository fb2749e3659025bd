#include "tests/SourceFiles/display/displayfixture.h"

#include <QTimer>
#include <QtTest>

namespace {

constexpr int patienceMs = 5000;
constexpr int bufferSize = 10240;

const QString available = "get_string measurementtool available";
const QString format = "get_bool measurementtool output_6dmt";
const QString activateOld = "set output active chmon 6dmt yes";
const QString activateNew = "set output active chmon 6dmt2 yes";
const QString activateReferences = "set output active chmon 6dmtr yes";

} // namespace

class TestMtDataDisplayIntake : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void linesOutsideAMeasurementAreDropped() {
        DisplayFixture f;
        f.build();
        QCOMPARE(f.display->set_ascii_data("6dmt2", toolLine({Tool()}).c_str()), -2);
        QCOMPARE(f.display->set_ascii_data("6dmt2", "rubbish"), -2);
        f.start();
        f.display->onUpdateDataDisplay();
        QCOMPARE(f.toolTable()->rowCount(), 0);
        f.display->set_mea_stopped();
        QCOMPARE(f.display->set_ascii_data("6dmt2", toolLine({Tool()}).c_str()), -2);
        QCOMPARE(f.display->set_ascii_data("6dmt2", std::string(20000, 'x').c_str()), -2);
    }

    void theParserDecidesOnALine() {
        DisplayFixture f;
        f.build();
        f.start();
        QCOMPARE(f.display->set_ascii_data("6dmt2", toolLine({Tool()}).c_str()), 0);
        QCOMPARE(f.display->set_ascii_data("6dmt2", "6dmt2 1 1 [0 1.0"), -1);
        QCOMPARE(f.display->set_ascii_data("6dmt2", nullptr), -1);
        QCOMPARE(f.display->set_ascii_data("6dmt2", "unknown kind"), 0);
        QCOMPARE(f.display->set_ascii_data("6dmt2", ""), 0);
        QVERIFY(f.host.logTexts().empty());
    }

    void theChannelNameIsIgnored() {
        DisplayFixture f;
        f.build();
        f.start();
        QCOMPARE(f.display->set_ascii_data("6dmtr", toolLine({Tool()}).c_str()), 0);
        QCOMPARE(f.display->set_ascii_data(nullptr, referenceLine({Pose()}).c_str()), 0);
        f.display->onUpdateDataDisplay();
        QCOMPARE(f.toolTable()->rowCount(), 1);
        QCOMPARE(f.referenceTable()->rowCount(), 1);
    }

    void theLineOfTheHostIsNotTouched() {
        DisplayFixture f;
        f.build();
        f.start();
        const std::string line = toolLine({Tool(), Tool()});
        const std::string copy = line;
        f.display->set_ascii_data("6dmt2", line.c_str());
        QCOMPARE(line, copy);
    }

    void linesAreTakenWholeUpToTheBuffer() {
        DisplayFixture f;
        f.build();
        f.start();
        std::string line = toolLine({Tool()});
        line.append(bufferSize - 1 - line.size(), ' ');
        QCOMPARE(f.display->set_ascii_data("6dmt2", line.c_str()), 0);
        f.display->onUpdateDataDisplay();
        QCOMPARE(f.toolTable()->rowCount(), 1);

        std::string longer = toolLine({Tool(), Tool()});
        longer.append(bufferSize - longer.size(), ' ');
        QCOMPARE(f.display->set_ascii_data("6dmt2", longer.c_str()), -1);
        f.display->onUpdateDataDisplay();
        QCOMPARE(f.toolTable()->rowCount(), 1);
    }

    void startHappensAMomentLater() {
        DisplayFixture f;
        f.build();
        f.host.clearJournal();
        f.host.startMeasurement();
        QVERIFY(f.host.journal().empty());
        QCOMPARE(f.display->set_ascii_data("6dmt2", toolLine({Tool()}).c_str()), -2);
        QTRY_COMPARE_WITH_TIMEOUT(f.display->set_ascii_data("6dmt2", toolLine({Tool()}).c_str()), 0,
                                  patienceMs);
        QCOMPARE(lines(f.host.journal()), QStringList({"get_bool measurementtool output_6dmt"}));
        QTRY_COMPARE_WITH_TIMEOUT(f.toolTable()->rowCount(), 1, patienceMs);
    }

    void theTimerRefreshesEvery200Milliseconds() {
        DisplayFixture f;
        f.build();
        f.start();
        f.display->set_ascii_data("6dmt2", toolLine({Tool()}).c_str());
        QElapsedTimer elapsed;
        elapsed.start();
        QTRY_COMPARE_WITH_TIMEOUT(f.toolTable()->rowCount(), 1, patienceMs);
        QVERIFY2(elapsed.elapsed() >= 150, qPrintable(QString::number(elapsed.elapsed())));
    }

    void availabilityIsAskedAgainUntilItIsThere() {
        DisplayFixture f;
        f.host.answerInTurn("measurementtool available", {"no", "no", "yes", "no"});
        f.build();
        f.host.clearJournal();
        f.start();
        QCOMPARE(lines(f.host.journal()), QStringList({available}));
        f.host.clearJournal();
        f.start();
        QCOMPARE(lines(f.host.journal()),
                 QStringList({available, format, activateNew, activateReferences}));
        f.host.clearJournal();
        f.start();
        QCOMPARE(lines(f.host.journal()), QStringList({format}));
    }

    void linesAreTakenEvenWithoutAvailability() {
        DisplayFixture f;
        f.host.answer("measurementtool available", "no");
        f.build();
        f.start();
        QCOMPARE(f.display->set_ascii_data("6dmt2", toolLine({Tool()}).c_str()), 0);
    }

    void changedFormatIsActivatedAtTheNextStart() {
        DisplayFixture f;
        f.host.answerInTurn("measurementtool output_6dmt", {"no", "no", "yes", "yes", "no"});
        f.build();
        const QStringList nothing = {format};
        const QStringList old = {format, activateOld, activateReferences};
        const QStringList current = {format, activateNew, activateReferences};
        for (const QStringList& expected : {nothing, old, nothing, current}) {
            f.host.clearJournal();
            f.start();
            QCOMPARE(lines(f.host.journal()), expected);
            f.display->set_mea_stopped();
        }
    }

    void formatQueryIsBelievedWhateverItsResult() {
        DisplayFixture f; // the scripted host leaves the opposite of what it finds
        f.build();
        f.host.fail("measurementtool output_6dmt");
        f.host.clearJournal();
        f.start();
        QCOMPARE(f.host.journal().at(1), activateOld.toStdString());
    }

    void formatQueryThatLeavesNoValueChangesNothing() {
        class SilentHost : public ScriptedHost {
        public:
            int get_parameter_bool(bool*, const char*, ...) override { return 1; }
        } host;
        host.answer("measurementtool available", "yes");
        BackendVersions versions(VersionInfo(), VersionInfo(1, 14, 0), VersionInfo(), QString());
        MtDataDisplay display(&host, nullptr, &versions);
        QCOMPARE(host.journal().at(2), activateOld.toStdString());
        host.clearJournal();
        display.set_mea_started_deferred();
        QVERIFY(host.journal().empty());
    }

    void secondStartKeepsTheParser() {
        DisplayFixture f;
        f.build();
        f.start();
        f.display->set_ascii_data("6dmt2", toolLine({Tool()}).c_str());
        f.start();
        f.display->onUpdateDataDisplay();
        QCOMPARE(f.toolTable()->rowCount(), 1);
    }

    void stopEmptiesTheTablesAtOnce() {
        DisplayFixture f;
        f.build();
        f.start();
        f.display->set_ascii_data("6dmt2", toolLine({Tool(), Tool()}).c_str());
        f.display->set_ascii_data("6dmtr", referenceLine({Pose()}).c_str());
        f.display->onUpdateDataDisplay();
        QCOMPARE(f.toolTable()->rowCount(), 2);
        QCOMPARE(f.referenceTable()->rowCount(), 1);
        f.host.clearJournal();
        f.host.stopMeasurement();
        QCOMPARE(f.toolTable()->rowCount(), 0);
        QCOMPARE(f.referenceTable()->rowCount(), 0);
        f.display->onUpdateDataDisplay();
        QCOMPARE(f.toolTable()->rowCount(), 0);
        QVERIFY(f.host.journal().empty());
    }

    void stopWithoutStartDoesNothing() {
        DisplayFixture f;
        f.build();
        f.host.stopMeasurement();
        f.start();
        QCOMPARE(f.display->set_ascii_data("6dmt2", toolLine({Tool()}).c_str()), 0);
    }

    void stopCancelsAStartThatHasNotRunYet() {
        DisplayFixture f;
        f.build();
        f.host.clearJournal();
        f.host.startMeasurement();
        f.host.stopMeasurement();
        bool later = false;
        QTimer::singleShot(50, f.display.get(), [&later] { later = true; });
        QTRY_VERIFY_WITH_TIMEOUT(later, patienceMs);
        QVERIFY(f.host.journal().empty());
        QCOMPARE(f.display->set_ascii_data("6dmt2", toolLine({Tool()}).c_str()), -2);
    }

    void stopAndStartBackToBackRebuildAllRows() {
        DisplayFixture f;
        f.build();
        f.start();
        const std::string line = toolLine({Tool()});
        f.display->set_ascii_data("6dmt2", line.c_str());
        f.display->onUpdateDataDisplay();
        QCOMPARE(f.row(f.toolTable(), 0).at(2), QString("MR1"));
        f.host.answer("measurementtool reference_of_tool b01", "b02");
        f.host.stopMeasurement();
        f.host.startMeasurement();
        QTRY_COMPARE_WITH_TIMEOUT(f.display->set_ascii_data("6dmt2", line.c_str()), 0, patienceMs);
        QTRY_COMPARE_WITH_TIMEOUT(f.toolTable()->rowCount(), 1, patienceMs);
        QCOMPARE(f.row(f.toolTable(), 0).at(2), QString("MR2"));
    }

    void destructionDuringAMeasurementIsClean() {
        DisplayFixture f;
        f.build();
        f.start();
        f.display->set_ascii_data("6dmt2", toolLine({Tool(), Tool()}).c_str());
        f.display->set_mea_started();
        f.display->about_to_exit();
        f.display.reset();
        QCoreApplication::processEvents();
    }
};

QTEST_MAIN(TestMtDataDisplayIntake)
#include "test_mtdatadisplay_intake.moc"
