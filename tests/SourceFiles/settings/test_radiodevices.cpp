#include "SourceFiles/radiodevices.h"
#include "general/host/hostlink.h"
#include "host_api/backendversions.h"
#include "tests/support/scriptedhost.h"

#include <QtTest>

namespace {

using Lines = std::vector<std::string>;

const char* const number = "measurementtool number_of_zelwpan_devices";

struct Controller {
    explicit Controller(const VersionInfo& protocol = VersionInfo(1, 14, 0))
        : versions(VersionInfo(3, 0, 0), protocol, VersionInfo(3, 0, 0), QStringLiteral("KESTREL"))
        , devices(&host, &versions) {
        host.answer("zelwpan device_model_desc V M", "\"Measuring \"Pen\"\"");
    }

    ScriptedHost host;
    BackendVersions versions;
    RadioDevices devices;
};

QStringList textsOf(const MtRadioDevice& device) {
    return {device.vendor, device.model, device.serial, device.desc};
}

} // namespace

class TestRadioDevices : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void anAssignedSerialHasAtLeastFiveCharactersAListedOneExactlyFive() {
        Controller controller;
        MtRadioDevice device;
        controller.host.answer("measurementtool device b03", "zelwpan V M 123");
        QCOMPARE(controller.devices.readAssigned(2, device), 0);
        QCOMPARE(textsOf(device), QStringList({"V", "M", "00123", "Measuring Pen"}));
        controller.host.answer("measurementtool device b03", "zelwpan V M 1234567");
        QCOMPARE(controller.devices.readAssigned(2, device), 0);
        QCOMPARE(device.serial, QString("1234567"));
        controller.host.answer("measurementtool zelwpan_device d03", "V M 1234567 more");
        controller.devices.readListed(2, device);
        QCOMPARE(textsOf(device), QStringList({"V", "M", "12345", "Measuring Pen"}));
    }

    void withoutAnAssignedDeviceTheRecordIsUntouched() {
        Controller controller;
        const QStringList before = {"A", "B", "C", "D"};
        MtRadioDevice device("A", "B", "C", "D");
        for (const char* const reply : {"none", "", "zelwpan V M"}) {
            controller.host.answer("measurementtool device b01", reply);
            QCOMPARE(controller.devices.readAssigned(0, device), -1);
            QCOMPARE(textsOf(device), before);
        }
        controller.host.fail("measurementtool device b01");
        QCOMPARE(controller.devices.readAssigned(0, device), -1);
        QCOMPARE(textsOf(device), before);
        QCOMPARE(controller.host.logTexts(), Lines());
    }

    void aListedPlaceWithoutADeviceIsEmptyAndAFailedOneLogged() {
        Controller controller;
        MtRadioDevice device("A", "B", "C", "D");
        controller.host.fail("measurementtool zelwpan_device d10");
        controller.devices.readListed(9, device);
        QCOMPARE(device.vendor, QString("A"));
        QCOMPARE(controller.host.logTexts(),
                 Lines({"Error: Unable to get device info of MeasurementTool d010"}));
        for (const char* const reply : {"none", "", "V M"}) {
            device = MtRadioDevice("A", "B", "C", "D");
            controller.host.answer("measurementtool zelwpan_device d01", reply);
            controller.devices.readListed(0, device);
            QCOMPARE(textsOf(device), QStringList({"", "", "", ""}));
        }
    }

    void below114NothingIsAskedAndADescriptionIsTheModel() {
        Controller controller(VersionInfo(1, 13, 9));
        QVERIFY(!controller.devices.areSupported());
        MtRadioDevice device("V", "M", "00001", "old");
        QCOMPARE(controller.devices.readAssigned(0, device), -1);
        controller.devices.describe(device);
        QCOMPARE(device.desc, QString("M"));
        QCOMPARE(controller.host.operations(), Lines());
        QVERIFY(Controller(VersionInfo(1, 14, -1)).devices.areSupported());
    }

    void aFailedDescriptionIsLoggedAndIsTheModel() {
        Controller controller;
        controller.host.fail("zelwpan device_model_desc V M");
        MtRadioDevice device("V", "M", "00001", "old");
        controller.devices.describe(device);
        QCOMPARE(device.desc, QString("M"));
        QCOMPARE(controller.host.logTexts(),
                 Lines({"Error: Unable to get model description of vendor V model M"}));
    }

    void theListIsSortedBounded() {
        Controller controller;
        controller.host.answer(number, "3");
        controller.host.answer("measurementtool zelwpan_device d01", "V M 2");
        controller.host.answer("measurementtool zelwpan_device d02", "none");
        controller.host.answer("measurementtool zelwpan_device d03", "V M 1");
        QStringList keys;
        const auto devices = controller.devices.readList();
        for (const MtRadioDevice& device : devices) {
            keys << device.sortKey();
        }
        QCOMPARE(keys, QStringList({"", "VM00001", "VM00002"}));

        controller.host.answer(number, "2000000000");
        QCOMPARE(controller.devices.readList().size(),
                 static_cast<std::size_t>(hostlink::mostBodies));
        controller.host.answer(number, "-1");
        QVERIFY(controller.devices.readList().empty());
        controller.host.clearJournal();
        controller.host.fail(number);
        QVERIFY(controller.devices.readList().empty());
        QCOMPARE(controller.host.logTexts(),
                 Lines({"Error: Unable to get number of Measurementtools"}));
    }

    void aTransceiverIsAvailableWhenOneIsPresent() {
        Controller controller;
        controller.host.answer("zelwpan available", "yes");
        controller.host.answer("zelwpan number_of_transceivers", "2");
        controller.host.answer("zelwpan transceiver d01", "V T 1");
        controller.host.answer("zelwpan transceiver d02", "V T 2");
        controller.host.answer("zelwpan transceiver_present V T 1", "no");
        controller.host.answer("zelwpan transceiver_present V T 2", "no");
        QVERIFY(!controller.devices.isTransceiverAvailable());
        controller.host.answer("zelwpan transceiver_present V T 2", "yes");
        QVERIFY(controller.devices.isTransceiverAvailable());
        QCOMPARE(controller.host.logTexts(), Lines());
    }
};

QTEST_GUILESS_MAIN(TestRadioDevices)
#include "test_radiodevices.moc"
