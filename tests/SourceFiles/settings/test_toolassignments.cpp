#include "SourceFiles/toolassignments.h"
#include "host_api/backendversions.h"
#include "tests/support/scriptedhost.h"

#include <QtTest>

namespace {

using Lines = std::vector<std::string>;

constexpr int none = ToolAssignments::none;

// A controller of protocol 1.14 with three tools: the first on reference 2 with a radio device.
struct Controller {
    Controller() {
        host.answer("measurementtool reference_of_tool b01", "b02");
        host.answer("measurementtool reference_of_tool b02", "none");
        host.answer("measurementtool reference_of_tool b03", "b03");
        host.answer("measurementtool device b01", "zelwpan V M 1");
        host.answer("measurementtool device b02", "none");
        host.answer("measurementtool device b03", "none");
        host.answer("zelwpan device_model_desc V M", "Pen");
    }

    Lines operations() {
        const Lines lines = host.operations();
        host.clearJournal();
        return lines;
    }

    ScriptedHost host;
    BackendVersions versions{VersionInfo(3, 0, 0), VersionInfo(1, 14, 0), VersionInfo(3, 0, 0),
                             QStringLiteral("KESTREL")};
    ToolAssignments assignments{&host, &versions};
};

QList<int> referencesOf(const ToolAssignments& assignments, int tools) {
    QList<int> list;
    for (int tool = 0; tool < tools; ++tool) {
        list << assignments.reference(tool);
    }
    return list;
}

} // namespace

class TestToolAssignments : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aReferenceIsReadFromTheReply_data() {
        QTest::addColumn<QString>("reply");
        QTest::addColumn<int>("reference");
        QTest::newRow("b03") << "b03" << 2;
        QTest::newRow("decimal") << "b010" << 9;
        QTest::newRow("none") << "none" << none;
        QTest::newRow("no number") << "bxy" << none;
        QTest::newRow("zero") << "b00" << none;
        QTest::newRow("negative") << "b-2" << none;
        QTest::newRow("empty") << "" << none;
    }
    void aReferenceIsReadFromTheReply() {
        QFETCH(QString, reply);
        Controller controller;
        controller.host.answer("measurementtool reference_of_tool b01", reply.toStdString());
        QTEST(controller.assignments.readReference(0), "reference");
        controller.host.fail("measurementtool reference_of_tool b01");
        QCOMPARE(controller.assignments.readReference(0), none);
        QCOMPARE(controller.host.logTexts(), Lines());
    }

    void readingAsksForTheReferenceAndTheDeviceOfEachTool() {
        Controller controller;
        controller.assignments.read(2);
        QCOMPARE(controller.operations(), Lines({"get_string measurementtool reference_of_tool b01",
                                                 "get_string measurementtool device b01",
                                                 "get_string zelwpan device_model_desc V M",
                                                 "get_string measurementtool reference_of_tool b02",
                                                 "get_string measurementtool device b02"}));
        QCOMPARE(referencesOf(controller.assignments, 3), QList<int>({1, none, none}));
        QCOMPARE(controller.assignments.device(0).serial, QString("00001"));
        QCOMPARE(controller.assignments.device(0).desc, QString("Pen"));
        QVERIFY(controller.assignments.device(1) == MtRadioDevice());
        QVERIFY(controller.assignments.holds(1));
        QVERIFY(!controller.assignments.holds(2));
        QVERIFY(!controller.assignments.holds(-1));
    }

    void readingAnewForgetsTheChoices() {
        Controller controller;
        controller.assignments.read(2);
        controller.assignments.choose(1, 0);
        controller.assignments.choose(0, MtRadioDevice());
        controller.assignments.read(2);
        QCOMPARE(referencesOf(controller.assignments, 2), QList<int>({1, none}));
        QCOMPARE(controller.assignments.device(0).serial, QString("00001"));
    }

    void onlyNewToolsAreAskedFor() {
        Controller controller;
        controller.assignments.read(1);
        controller.assignments.choose(0, 4);
        controller.operations();
        controller.assignments.growTo(3);
        QCOMPARE(controller.operations(), Lines({"get_string measurementtool reference_of_tool b02",
                                                 "get_string measurementtool device b02",
                                                 "get_string measurementtool reference_of_tool b03",
                                                 "get_string measurementtool device b03"}));
        QCOMPARE(referencesOf(controller.assignments, 3), QList<int>({4, none, 2}));
        controller.assignments.growTo(1);
        controller.assignments.growTo(3);
        controller.assignments.growTo(-1);
        QCOMPARE(controller.operations(), Lines());
        QCOMPARE(referencesOf(controller.assignments, 3), QList<int>({4, none, 2}));
    }

    void aNonsenseNumberOfToolsIsBounded() {
        Controller controller;
        controller.assignments.read(2000000000);
        QVERIFY(controller.assignments.holds(254));
        QVERIFY(!controller.assignments.holds(255));
    }

    void fewerReferencesHideAssignmentsAndMoreBringThemBack() {
        Controller controller;
        controller.assignments.read(3);
        controller.assignments.choose(1, 1);
        controller.operations();
        controller.assignments.hideFrom(1);
        QCOMPARE(referencesOf(controller.assignments, 3), QList<int>({none, none, none}));
        controller.assignments.restoreBelow(3, 3);
        QCOMPARE(referencesOf(controller.assignments, 3), QList<int>({1, 1, 2}));
        QCOMPARE(controller.operations(), Lines());
    }

    void aShownToolWithoutAReferenceIsAskedForAndTheAnswerRemembered() {
        Controller controller;
        controller.assignments.read(3);
        controller.assignments.hideFrom(1);
        controller.operations();
        controller.host.answer("measurementtool reference_of_tool b02", "b05");
        controller.assignments.restoreBelow(2, 2); // the third tool is hidden and stays none
        QCOMPARE(controller.operations(),
                 Lines({"get_string measurementtool reference_of_tool b02"}));
        QCOMPARE(referencesOf(controller.assignments, 3), QList<int>({1, 4, none}));
        controller.assignments.hideFrom(0);
        controller.assignments.restoreBelow(5, 3);
        QCOMPARE(controller.operations(), Lines());
        QCOMPARE(referencesOf(controller.assignments, 3), QList<int>({1, 4, 2}));
    }

    void aChoiceToHaveNoneIsRemembered() {
        Controller controller;
        controller.assignments.read(1);
        controller.assignments.choose(0, none);
        controller.operations();
        controller.assignments.restoreBelow(3, 0);
        QCOMPARE(referencesOf(controller.assignments, 1), QList<int>({none}));
        QCOMPARE(controller.operations(), Lines());
    }

    void aDeviceBelongsToOneToolAlsoToAHiddenOne() {
        Controller controller;
        controller.assignments.read(3);
        const MtRadioDevice pen("V", "M", "00001", "other words");
        const MtRadioDevice other("V", "M", "00002", "Pen");
        QVERIFY(controller.assignments.isAssigned(pen));
        QVERIFY(!controller.assignments.isAssigned(other));
        controller.assignments.choose(2, other);
        QVERIFY(controller.assignments.isAssigned(other));
        QVERIFY(controller.assignments.isAssigned(MtRadioDevice())); // the second tool has none
    }

    void everyToolIsWrittenChangedOrNot() {
        Controller controller;
        controller.assignments.read(3);
        controller.operations();
        controller.assignments.writeReferences(3);
        controller.assignments.writeDevices(2);
        QCOMPARE(controller.operations(), Lines({"set measurementtool reference_of_tool b01 b02",
                                                 "set measurementtool reference_of_tool b02 none",
                                                 "set measurementtool reference_of_tool b03 b03",
                                                 "set measurementtool device b01 zelwpan V M 00001",
                                                 "set measurementtool device b02 none"}));
    }

    void eachFailedWriteIsLoggedAndTheNextOneTried() {
        Controller controller;
        controller.assignments.read(2);
        for (const char* setting : {"reference_of_tool b01 b02", "reference_of_tool b02 none",
                                    "device b01 zelwpan V M 00001", "device b02 none"}) {
            controller.host.fail(std::string("measurementtool ") + setting);
        }
        controller.assignments.writeReferences(2);
        controller.assignments.writeDevices(2);
        QCOMPARE(controller.host.logTexts(),
                 Lines({"Error: Unable to set ref. body", "Error: Unable to set ref. body",
                        "Error: Unable to set radio device", "Error: Unable to set radio device"}));
    }

    void below114NoDeviceIsAskedForOrWritten() {
        Controller controller;
        controller.versions =
            BackendVersions(VersionInfo(), VersionInfo(1, 13, 9), VersionInfo(), QString());
        controller.assignments.read(1);
        controller.assignments.writeDevices(1);
        QCOMPARE(controller.operations(),
                 Lines({"get_string measurementtool reference_of_tool b01"}));
    }
};

QTEST_GUILESS_MAIN(TestToolAssignments)
#include "test_toolassignments.moc"
