#include "SourceFiles/toolparameters.h"
#include "host_api/backendversions.h"
#include "tests/support/datarows.h"
#include "tests/support/scriptedhost.h"

#include <QtTest>

#include <cmath>
#include <limits>

namespace {

using Lines = std::vector<std::string>;

struct Controller {
    explicit Controller(const VersionInfo& protocol = VersionInfo(1, 14, 0))
        : versions(VersionInfo(3, 0, 0), protocol, VersionInfo(3, 0, 0), QStringLiteral("KESTREL"))
        , parameters(&host, &versions) {}

    Lines operations() {
        const Lines lines = host.operations();
        host.clearJournal();
        return lines;
    }

    ScriptedHost host;
    BackendVersions versions;
    ToolParameters parameters;
};

struct Row {
    const char* name;
    const ToolParameters::Shared* parameter;
    double fallback;
    const char* readFailure;
    const char* writeFailure;
};

const Row rows[] = {
    {"measurement_duration", &ToolParameters::Duration, 1.0, "Error: Unable to get mea duration",
     "Error: Unable to set mea duration for body b02"},
    {"measurement_tip_tolerance", &ToolParameters::TipTolerance, 1.5,
     "Error: Unable to get mea tip tolerance", "Error: Unable to set tip tolerance for body b02"},
    {"measurement_start_angle", &ToolParameters::StartAngle, 30.0,
     "Error: Unable to get mea angular speed",
     "Error: Unable to set mea angular speed for body b02"},
    {"measurement_start_lead_time", &ToolParameters::StartLeadTime, 0.2,
     "Error: Unable to get mea start lead time",
     "Error: Unable to set mea. start lead time for body b02"},
};

void addRows() {
    QTest::addColumn<int>("row");
    int i = 0;
    for (const Row& one : rows) {
        row(one.name, i);
        ++i;
    }
}

} // namespace

class TestToolParameters : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aValueIsThatOfTheFirstToolOrItsDefault_data() { addRows(); }
    void aValueIsThatOfTheFirstToolOrItsDefault() {
        QFETCH(int, row);
        const Row& expected = rows[row];
        const std::string question = std::string("measurementtool ") + expected.name + " b01";
        Controller controller;
        controller.host.answer(question, "3.25");
        QCOMPARE(controller.parameters.read(*expected.parameter, true), 3.25);
        QCOMPARE(controller.operations(), Lines({"get_double " + question}));

        QCOMPARE(controller.parameters.read(*expected.parameter, false), expected.fallback);
        QCOMPARE(controller.operations(), Lines());
        QCOMPARE(controller.host.logTexts(), Lines());

        for (const char* const bad : {"nan", "inf"}) {
            controller.host.answer(question, bad);
            QCOMPARE(controller.parameters.read(*expected.parameter, true), expected.fallback);
        }
        controller.host.fail(question);
        QCOMPARE(controller.parameters.read(*expected.parameter, true), expected.fallback);
        QCOMPARE(controller.host.logTexts(), Lines(3, expected.readFailure));
    }

    void aValueIsWrittenToTheToolsThatHoldAnother_data() { addRows(); }
    void aValueIsWrittenToTheToolsThatHoldAnother() {
        QFETCH(int, row);
        const Row& expected = rows[row];
        const std::string name = std::string("measurementtool ") + expected.name;
        Controller controller;
        controller.host.answer(name + " b01", "1.5");
        controller.host.answer(name + " b02", "1.6");
        controller.host.fail(name + " b03");
        controller.host.fail(name + " b02 1.500");
        controller.parameters.write(*expected.parameter, 3, 1.5, 1.5);
        QCOMPARE(controller.host.logTexts(), Lines({expected.writeFailure}));
        QCOMPARE(controller.operations(),
                 Lines({"get_double " + name + " b01", "get_double " + name + " b02",
                        "set " + name + " b02 1.500", "get_double " + name + " b03",
                        "set " + name + " b03 1.500"}));
    }

    void whatMakesAWriteUnnecessaryNeedNotBeTheValue() {
        Controller controller;
        controller.host.answer("measurementtool measurement_start_lead_time b01", "30");
        controller.parameters.write(ToolParameters::StartLeadTime, 1, 0.5, 30.0);
        QCOMPARE(controller.operations(),
                 Lines({"get_double measurementtool measurement_start_lead_time b01"}));
        controller.parameters.write(ToolParameters::StartLeadTime, 1, 30.0, 0.5);
        QCOMPARE(controller.operations().back(),
                 std::string("set measurementtool measurement_start_lead_time b01 30.000"));
    }

    void aFailedReadCountsAsMinusOne() {
        Controller controller;
        controller.parameters.write(ToolParameters::Duration, 1, -1.0, -1.0);
        QCOMPARE(controller.operations(),
                 Lines({"get_double measurementtool measurement_duration b01"}));
    }

    void theStartSimulationIsOnForAPlainYes() {
        const std::string question = "measurementtool measurement_start_simulation b01";
        Controller controller;
        controller.host.answer(question, "yes");
        QVERIFY(!controller.parameters.readStartSimulation(false));
        QCOMPARE(controller.operations(), Lines());
        QVERIFY(controller.parameters.readStartSimulation(true));
        for (const char* const reply : {"no", "Yes", "yes ", ""}) {
            controller.host.answer(question, reply);
            QVERIFY(!controller.parameters.readStartSimulation(true));
        }
        QCOMPARE(controller.host.logTexts(), Lines());
        controller.host.fail(question);
        QVERIFY(!controller.parameters.readStartSimulation(true));
        QCOMPARE(controller.host.logTexts(),
                 Lines({"Error: Unable to get state of measurement start simulation"}));
    }

    void theStartSimulationIsWrittenWhereItIsAnotherOrUnread() {
        const std::string name = "measurementtool measurement_start_simulation b0";
        Controller controller;
        controller.host.answer(name + "1", "yes");
        controller.host.answer(name + "2", "odd");
        controller.host.fail(name + "3");
        controller.parameters.writeStartSimulation(3, true);
        QCOMPARE(
            controller.operations(),
            Lines({"get_string " + name + "1", "get_string " + name + "2", "set " + name + "2 yes",
                   "get_string " + name + "3", "set " + name + "3 yes"}));
        controller.host.fail(name + "1 no");
        controller.parameters.writeStartSimulation(2, false); // odd counts as off
        QCOMPARE(controller.host.logTexts(),
                 Lines({"Error: Unable to activate start simulation for body b01"}));
        QCOMPARE(controller.operations(), Lines({"get_string " + name + "1", "set " + name + "1 no",
                                                 "get_string " + name + "2"}));
    }

    void theOldOutputFormatIsLeftForAPlainNo() {
        Controller controller;
        for (const char* const reply : {"yes", "no ", ""}) {
            controller.host.answer("measurementtool output_6dmt", reply);
            QVERIFY(controller.parameters.readOldOutputFormat());
        }
        controller.host.answer("measurementtool output_6dmt", "no");
        QVERIFY(!controller.parameters.readOldOutputFormat());
        controller.host.fail("measurementtool output_6dmt");
        QVERIFY(controller.parameters.readOldOutputFormat());

        Controller old(VersionInfo(1, 12, 9));
        QVERIFY(!old.parameters.hasOutputFormats());
        QVERIFY(old.parameters.readOldOutputFormat());
        QCOMPARE(old.operations(), Lines());
    }

    void theOutputFormatIsWrittenWhenItIsAnother_data() {
        QTest::addColumn<QString>("reply");
        QTest::addColumn<bool>("old");
        QTest::addColumn<QString>("written");
        QTest::addColumn<QString>("log");
        const char* const no = "set measurementtool output_6dmt no";
        const char* const yes = "set measurementtool output_6dmt yes";
        row("old to old", "yes", true, "", "");
        row("new to new", "no", false, "", "");
        row("old to new", "yes", false, no, "Error: Unable to (un)set to old output format");
        row("new to old", "no", true, yes, "Error: Unable to set to old output format");
        row("unread to new", "(fails)", false, no, "Error: Unable to (un)set to old output format");
        row("unread to old", "(fails)", true, "", "");
    }
    void theOutputFormatIsWrittenWhenItIsAnother() {
        QFETCH(QString, reply);
        QFETCH(bool, old);
        QFETCH(QString, written);
        QFETCH(QString, log);
        Controller controller;
        controller.host.answer("measurementtool output_6dmt", reply.toStdString());
        if (reply == "(fails)") {
            controller.host.fail("measurementtool output_6dmt");
        }
        controller.host.fail("measurementtool output_6dmt no");
        controller.host.fail("measurementtool output_6dmt yes");
        controller.parameters.writeOldOutputFormat(old);
        Lines expected = {"get_bool measurementtool output_6dmt"};
        if (!written.isEmpty()) {
            expected.push_back(written.toStdString());
        }
        QCOMPARE(controller.host.logTexts(), log.isEmpty() ? Lines() : Lines{log.toStdString()});
        QCOMPARE(controller.operations(), expected);
    }

    void aDiameterIsTwiceThePositiveRadius_data() {
        QTest::addColumn<QString>("radius");
        QTest::addColumn<double>("diameter");
        row("0.75", "0.75", 1.5);
        row("negative", "-1", 0.0);
        row("nan", "nan", 0.0);
        row("infinite when doubled", "1e308", 0.0);
    }
    void aDiameterIsTwiceThePositiveRadius() {
        QFETCH(QString, radius);
        Controller controller;
        controller.host.answer("measurementtool tip_radius b12", radius.toStdString());
        QTEST(controller.parameters.diameterOnController(12), "diameter");
        controller.host.fail("measurementtool tip_radius b12");
        QCOMPARE(controller.parameters.diameterOnController(12), 0.0);
        QCOMPARE(controller.host.logTexts(), Lines());
    }

    void noDiameterIsAskedForWithoutAToolOrBelow113() {
        Controller controller;
        QCOMPARE(controller.parameters.diameterOnController(0), 0.0);
        QCOMPARE(controller.parameters.diameterOnController(std::numeric_limits<int>::min()), 0.0);
        QCOMPARE(controller.operations(), Lines());
        Controller old(VersionInfo(1, 12, 9));
        QCOMPARE(old.parameters.diameterOnController(1), 0.0);
        QCOMPARE(old.operations(), Lines());
    }

    void editedDiametersAreKeptAndNewOnesAppended() {
        Controller controller;
        controller.host.answer("measurementtool tip_radius b01", "0.75");
        controller.host.answer("measurementtool tip_radius b02", "1");
        controller.parameters.readDiameters(2);
        controller.parameters.setDiameter(1, 7.5);
        controller.parameters.setDiameter(2, 3.0);
        QCOMPARE(controller.parameters.diameter(0), 1.5);
        QCOMPARE(controller.parameters.diameter(1), 7.5);
        QCOMPARE(controller.parameters.diameter(2), 3.0);
        QCOMPARE(controller.parameters.diameter(3), 0.0);
        QCOMPARE(controller.parameters.diameter(-1), 0.0);
        controller.parameters.readDiameters(1);
        QCOMPARE(controller.parameters.diameter(1), 0.0);
    }

    void changedDiametersAreWrittenAsRadii() {
        const std::string name = "measurementtool tip_radius b0";
        Controller controller;
        for (const char* const number : {"1", "2", "3"}) {
            controller.host.answer(name + number, "0.75");
        }
        controller.parameters.readDiameters(3);
        controller.parameters.setDiameter(1, 3.0);
        controller.parameters.setDiameter(2, 4.0);
        controller.host.fail(name + "2 1.500");
        controller.operations();
        controller.parameters.writeDiameters(3);
        QCOMPARE(controller.host.logTexts(),
                 Lines({"Error: Unable to set tip radius of mea tool b02"}));
        QCOMPARE(controller.operations(),
                 Lines({"get_double " + name + "1", "get_double " + name + "2",
                        "set " + name + "2 1.500", "get_double " + name + "3",
                        "set " + name + "3 2.000"}));
    }

    void everyNumberIsTruncatedIntoAnInteger() {
        QCOMPARE(ToolParameters::truncated(45.99), 45);
        QCOMPARE(ToolParameters::truncated(-0.5), 0);
        QCOMPARE(ToolParameters::truncated(1e300), 1000000);
        QCOMPARE(ToolParameters::truncated(-1e300), -1000000);
    }
};

QTEST_GUILESS_MAIN(TestToolParameters)
#include "test_toolparameters.moc"
