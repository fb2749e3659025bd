#include "tests/SourceFiles/settings/settingsrig.h"
#include "tests/support/datarows.h"

#include <QHeaderView>
#include <QtTest>

namespace {

const char* const tools = "tableWidget_meaBodies";
const char* const devices = "tableWidget_availableMt";

} // namespace

class TestMtSettingsDlgDevices : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aTickAsksForEachDeviceAndItsDescription_data() { addProtocolRows(); }
    void aTickAsksForEachDeviceAndItsDescription() {
        QFETCH(VersionInfo, protocol);
        SettingsRig rig(protocol);
        rig.setDevices({"V M 1", "none", "W N 2"});
        rig.run([&] {
            rig.operations();
            rig.tick();
            COMPARE_LINES(rig.operations(),
                          forProtocol({"get_int measurementtool number_of_zelwpan_devices",
                                       "get_string measurementtool zelwpan_device d01",
                                       "get_string zelwpan device_model_desc V M",
                                       "get_string measurementtool zelwpan_device d02",
                                       "get_string measurementtool zelwpan_device d03",
                                       "get_string zelwpan device_model_desc W N"},
                                      protocol));
        });
    }

    void below114TheTableStaysEmptyAndNoToolHasADevice() {
        SettingsRig rig(VersionInfo(1, 13, 9));
        rig.setDevices({"V M 1"});
        rig.host.answer("measurementtool device b01", "zelwpan V M 00001");
        rig.run([&] {
            QCOMPARE(rig.child<QTableWidget>(devices)->rowCount(), 0);
            QCOMPARE(rig.column(tools, 4), QStringList({"", ""}));
        });
    }

    void aControllerThatFallsBelow114LeavesTheRowsEmpty() {
        SettingsRig rig;
        rig.setDevices({"V M 1", "V M 2"});
        rig.run([&] {
            rig.versions = BackendVersions(VersionInfo(), VersionInfo(1, 13, 0), VersionInfo(), "");
            rig.tick();
            QCOMPARE(rig.column(devices, 4), QStringList({"(no item)", "(no item)"}));
        });
    }

    void aListedDeviceIsReadFromTheReply_data() {
        QTest::addColumn<QString>("reply");
        QTest::addColumn<QStringList>("cells");
        const auto device = [](const char* name, const char* reply, const QStringList& cells) {
            row(name, QString::fromUtf8(reply), cells);
        };
        device("short serial", "V M 12", {"VM00012", "V", "M", "desc M", "00012"});
        device("five characters", "V M A2345", {"VMA2345", "V", "M", "desc M", "A2345"});
        device("a long serial is cut", "V M 1234567", {"VM12345", "V", "M", "desc M", "12345"});
        device("more fields are not used", "V M 12 x y", {"VM00012", "V", "M", "desc M", "00012"});
        device("an empty field counts", "V  12", {"V00012", "V", "", "desc ", "00012"});
        device("an empty serial is padded", "V M ", {"VM00000", "V", "M", "desc M", "00000"});
        device("UTF-8", "Vé M 1", {"VéM00001", "Vé", "M", "M", "00001"});
        device("none", "none", {"", "", "", "", ""});
        device("no serial", "V M", {"", "", "", "", ""});
        device("empty reply", "", {"", "", "", "", ""});
        device("a percent sign is text", "%n %s %d", {"%n%s000%d", "%n", "%s", "desc %s", "000%d"});
    }
    void aListedDeviceIsReadFromTheReply() {
        QFETCH(QString, reply);
        QFETCH(QStringList, cells);
        SettingsRig rig;
        rig.setDevices({reply.toStdString()});
        rig.run([&] {
            QStringList shown;
            for (int column = 0; column < 5; ++column) {
                shown << rig.cell(devices, 0, column);
            }
            QCOMPARE(shown, cells);
        });
    }

    void anAssignedDeviceIsReadFromTheReply_data() {
        QTest::addColumn<QString>("reply");
        QTest::addColumn<QString>("serial");
        row("padded", "zelwpan V M 123", "00123");
        row("four characters", "zelwpan V M 1234", "01234");
        row("five characters", "zelwpan V M 12345", "12345");
        row("a long one is kept", "zelwpan V M 1234567", "1234567");
        row("empty", "zelwpan V M ", "00000");
        row("none", "none", "");
        row("no serial", "zelwpan V M", "");
        row("empty reply", "", "");
    }
    void anAssignedDeviceIsReadFromTheReply() {
        QFETCH(QString, reply);
        SettingsRig rig;
        rig.host.answer("measurementtool device b01", reply.toStdString());
        rig.host.answer("zelwpan device_model_desc V M", "\"Measuring \"Pen\"\"");
        rig.run([&] {
            QTEST(rig.cell(tools, 0, 4), "serial");
            QCOMPARE(rig.cell(tools, 0, 3),
                     rig.cell(tools, 0, 4).isEmpty() ? QString() : QString("Measuring Pen"));
        });
    }

    void aFailedAssignedDeviceIsSilentlyNone() {
        SettingsRig rig;
        rig.host.fail("measurementtool device b01");
        rig.run([&] { QCOMPARE(rig.cell(tools, 0, 4), QString()); });
        COMPARE_LINES(rig.host.logTexts(), Lines());
    }

    void theDescriptionIsQueriedInLatin1() {
        SettingsRig rig;
        rig.setDevices({"V\xc3\xa9 M\xc3\xbc 1"});
        rig.run([&] {
            rig.operations();
            rig.tick();
            const Lines lines = rig.operations();
            QVERIFY(std::find(lines.begin(), lines.end(),
                              "get_string zelwpan device_model_desc V\xe9 M\xfc") != lines.end());
        });
    }

    void aDescriptionIsAskedForFrom114OnAndIsTheModelBelow_data() { addProtocolRows(); }
    void aDescriptionIsAskedForFrom114OnAndIsTheModelBelow() {
        QFETCH(VersionInfo, protocol);
        SettingsRig rig(protocol);
        rig.host.answer("zelwpan device_model_desc V M", "\"Measuring Pen\"");
        MtSettingsDlg::MtRadioDevice device("V", "M", "00001", "old");
        rig.dialog->getMtDeviceDesc(device);
        const bool asked = protocol.ma > 1 || protocol.mi >= 14;
        COMPARE_LINES(rig.operations(),
                      asked ? Lines{"get_string zelwpan device_model_desc V M"} : Lines());
        QCOMPARE(device.desc, QString(asked ? "Measuring Pen" : "M"));
        COMPARE_LINES(rig.logs(), Lines());
    }

    void aDeviceIsMadeOfItsFourTextsAndComparedByThreeOfThem() {
        using Device = MtSettingsDlg::MtRadioDevice;
        const Device device(QStringLiteral("V"), QStringLiteral("M"), QStringLiteral("00001"),
                            QStringLiteral("Pen"));
        QCOMPARE(QStringList({device.vendor, device.model, device.serial, device.desc}),
                 QStringList({"V", "M", "00001", "Pen"}));
        QVERIFY(device == Device("V", "M", "00001", "another"));
        QVERIFY(!(device == Device("W", "M", "00001", "Pen")));
        QVERIFY(!(device == Device("V", "N", "00001", "Pen")));
        QVERIFY(!(device == Device("V", "M", "00002", "Pen")));

        const Device none;
        QCOMPARE(QStringList({none.vendor, none.model, none.serial, none.desc}),
                 QStringList({"", "", "", ""}));
        Device copy(device);
        QCOMPARE(copy.desc, QString("Pen"));
        const Device moved(std::move(copy));
        QVERIFY(moved == device);
        QCOMPARE(moved.desc, QString("Pen"));
    }

    void aFailedDescriptionIsLoggedAndTheModelShown() {
        SettingsRig rig;
        rig.setDevices({"%2 M 1"});
        rig.host.fail("zelwpan device_model_desc %2 M");
        rig.run([&] {
            rig.tick();
            QCOMPARE(rig.cell(devices, 0, 3), QString("M"));
            COMPARE_LINES(rig.logs(),
                          Lines{"Error: Unable to get model description of vendor %2 model M"});
        });
    }

    void aFailedDeviceIsLoggedShownEmptyAndNotDescribed() {
        SettingsRig rig;
        std::vector<std::string> list(10, "V M 1");
        rig.setDevices(list);
        rig.host.fail("measurementtool zelwpan_device d02");
        rig.host.fail("measurementtool zelwpan_device d10");
        rig.run([&] {
            rig.operations();
            rig.tick();
            QCOMPARE(rig.column(devices, 4).count(QString()), 2);
            const Lines lines = rig.host.operations();
            QCOMPARE(
                std::count(lines.begin(), lines.end(), "get_string zelwpan device_model_desc V M"),
                8);
            COMPARE_LINES(rig.logs(),
                          Lines{"Error: Unable to get device info of MeasurementTool d02",
                                "Error: Unable to get device info of MeasurementTool d010"});
        });
    }

    void aFailedNumberOfDevicesIsLoggedAndEmptiesTheTable() {
        SettingsRig rig;
        rig.setDevices({"V M 1"});
        rig.run([&] {
            QCOMPARE(rig.child<QTableWidget>(devices)->rowCount(), 1);
            rig.host.fail("measurementtool number_of_zelwpan_devices");
            rig.operations();
            rig.tick();
            QCOMPARE(rig.child<QTableWidget>(devices)->rowCount(), 0);
            COMPARE_LINES(rig.logs(), Lines{"Error: Unable to get number of Measurementtools"});
        });
    }

    void theTableIsSortedByVendorModelAndSerialJoined() {
        SettingsRig rig;
        rig.setDevices({"b A 1", "B A 1", "A B 2", "A B 10", "AB A 1"});
        rig.run([&] {
            QCOMPARE(rig.column(devices, 0),
                     QStringList({"AB00002", "AB00010", "ABA00001", "BA00001", "bA00001"}));
        });
    }

    void theSelectionSurvivesAsARowNumber() {
        SettingsRig rig;
        rig.setDevices({"V M 2", "V M 3"});
        rig.run([&] {
            rig.clickCell(devices, 1, 3);
            rig.setDevices({"V M 2", "V M 3", "V M 1"});
            rig.tick();
            const auto* const table = rig.child<QTableWidget>(devices);
            QCOMPARE(table->currentRow(), 1);
            QCOMPARE(table->currentColumn(), 2);
            QCOMPARE(rig.cell(devices, 1, 4), QString("00002"));
            rig.setDevices({"V M 2"});
            rig.tick();
            QCOMPARE(table->currentRow(), -1);
        });
    }

    void aTickInsideATickIsLeftOut() {
        SettingsRig rig;
        rig.setDevices({"none"});
        rig.run([&] {
            rig.host.onOperation = [&](const std::string&) { rig.tick(); };
            rig.operations();
            rig.tick();
            rig.host.onOperation = nullptr;
            COMPARE_LINES(rig.operations(),
                          Lines{"get_int measurementtool number_of_zelwpan_devices",
                                "get_string measurementtool zelwpan_device d01"});
        });
    }

    void aTickWithoutNewsTouchesNoCell() {
        SettingsRig rig;
        rig.setDevices({"V M 1", "V N 2"});
        rig.run([&] {
            const auto* const table = rig.child<QTableWidget>(devices);
            const QSignalSpy changes(table->model(), &QAbstractItemModel::dataChanged);
            rig.tick();
            QCOMPARE(changes.count(), 0);
            rig.setDevices({"V M 1", "V N 3"});
            rig.tick();
            QCOMPARE(changes.count(), 2); // sort key and serial of one row
        });
    }

    void theTransceiverCheckAsksInThisOrder() {
        SettingsRig rig;
        rig.host.answer("zelwpan available", "yes");
        rig.host.answer("zelwpan number_of_transceivers", "3");
        rig.host.answer("zelwpan transceiver d01", "V T 1");
        rig.host.answer("zelwpan transceiver_present V T 1", "no");
        rig.host.answer("zelwpan transceiver d02", "V T 2");
        rig.host.answer("zelwpan transceiver_present V T 2", "yes");
        QVERIFY(rig.dialog->isRadioTransceiverAvailable());
        COMPARE_LINES(rig.operations(), Lines{"get_string zelwpan available",
                                              "get_int zelwpan number_of_transceivers",
                                              "get_string zelwpan transceiver d01",
                                              "get_string zelwpan transceiver_present V T 1",
                                              "get_string zelwpan transceiver d02",
                                              "get_string zelwpan transceiver_present V T 2"});
    }

    void withoutRadioOrTransceiversNothingMoreIsAsked() {
        SettingsRig rig;
        rig.host.answer("zelwpan available", "no");
        QVERIFY(!rig.dialog->isRadioTransceiverAvailable());
        COMPARE_LINES(rig.operations(), Lines{"get_string zelwpan available"});
        rig.host.answer("zelwpan available", "yes");
        rig.host.answer("zelwpan number_of_transceivers", "0");
        QVERIFY(!rig.dialog->isRadioTransceiverAvailable());
        COMPARE_LINES(rig.operations(), Lines{"get_string zelwpan available",
                                              "get_int zelwpan number_of_transceivers"});
    }

    void eachFailureOfTheTransceiverCheckIsLoggedWithItsNumber() {
        SettingsRig rig;
        rig.host.fail("zelwpan available", 7);
        QVERIFY(!rig.dialog->isRadioTransceiverAvailable());
        COMPARE_LINES(rig.logs(), Lines{"Error reading zelwap available. Error number = 7"});
        rig.host.succeed("zelwpan available");
        rig.host.answer("zelwpan available", "yes");
        rig.host.fail("zelwpan number_of_transceivers", -2);
        QVERIFY(!rig.dialog->isRadioTransceiverAvailable());
        COMPARE_LINES(rig.logs(), Lines{"Error reading number of transceivers. Error number = -2"});
        rig.host.succeed("zelwpan number_of_transceivers");
        rig.host.answer("zelwpan number_of_transceivers", "1");
        rig.host.fail("zelwpan transceiver d01", 3);
        rig.host.fail("zelwpan transceiver_present ", 4);
        QVERIFY(!rig.dialog->isRadioTransceiverAvailable());
        COMPARE_LINES(rig.logs(),
                      Lines{"Error reading vendor, model, serial of transceiver. Error number = 3",
                            "Error reading whether transceiver is present. Error number = 4"});
    }
};

QTEST_MAIN(TestMtSettingsDlgDevices)
#include "test_mtsettingsdlg_devices.moc"
