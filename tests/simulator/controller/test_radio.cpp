#include "tests/simulator/talk.h"

#include <gtest/gtest.h>
#include <map>

using kestrel_simulator::ControllerSetup;

namespace {

ControllerSetup withDevices(int devices) {
    ControllerSetup setup;
    setup.devices = devices;
    return setup;
}

} // namespace

TEST(Radio, hasTransceiversOfWhichOneIsPresent) {
    Talk talk;
    EXPECT_EQ(talk.get("zelwpan available"), "yes");
    EXPECT_EQ(talk.get("zelwpan number_of_transceivers"), "2");
    EXPECT_EQ(talk.get("zelwpan transceiver d01"), "KST TRX1 7001");
    EXPECT_EQ(talk.get("zelwpan transceiver_present KST TRX1 7001"), "no");
    EXPECT_EQ(talk.get("zelwpan transceiver_present KST TRX1 7002"), "yes");
    EXPECT_EQ(talk.get("zelwpan transceiver d03"), "err 5");
    EXPECT_EQ(talk.get("zelwpan transceiver_present KST TRX1 1"), "err 5");
}

TEST(Radio, listsTheDevicesInRange) {
    Talk talk;
    EXPECT_EQ(talk.get("measurementtool number_of_zelwpan_devices"), "4");
    EXPECT_EQ(talk.get("measurementtool zelwpan_device d01"), "KST MTS1 417");
    EXPECT_EQ(talk.get("measurementtool zelwpan_device d02"), "KST MTL2 00523");
    EXPECT_EQ(talk.get("measurementtool zelwpan_device d05"), "none");
    EXPECT_EQ(talk.get("measurementtool zelwpan_device d00"), "err 5");
    EXPECT_EQ(talk.get("measurementtool zelwpan_device d65"), "err 5");
    EXPECT_EQ(talk.get("zelwpan device_model_desc KST MTS1"), "\"Measurement Tool short\"");
    EXPECT_EQ(talk.get("zelwpan device_model_desc KST NONE"), "err 5");
}

TEST(Radio, hasNothingWhenItIsNotAvailable) {
    Talk talk;
    talk.set("sim radio_available no");
    EXPECT_EQ(talk.get("zelwpan number_of_transceivers"), "0");
    EXPECT_EQ(talk.get("measurementtool number_of_zelwpan_devices"), "0");
    EXPECT_EQ(talk.get("measurementtool zelwpan_device d01"), "none");
}

TEST(Radio, tellsTheDeviceOfATool) {
    Talk talk;
    EXPECT_EQ(talk.get("measurementtool device b01"), "zelwpan KST MTS1 417");
    EXPECT_EQ(talk.get("measurementtool device b02"), "zelwpan KST MTL2 00523");
    EXPECT_EQ(talk.get("measurementtool device b03"), "none");
    EXPECT_EQ(talk.get("measurementtool device b05"), "err 5");
}

TEST(Radio, assignsAKnownDeviceWhateverTheZerosOfItsSerial) {
    Talk talk;
    EXPECT_EQ(talk.set("measurementtool device b03 zelwpan ACQ P7 00012"), "ok");
    EXPECT_EQ(talk.get("measurementtool device b03"), "zelwpan ACQ P7 12");
    EXPECT_EQ(talk.set("measurementtool device b03 none"), "ok");
    EXPECT_EQ(talk.get("measurementtool device b03"), "none");
    EXPECT_EQ(talk.set("measurementtool device b03 zelwpan ACQ P7 13"), "err 5");
    EXPECT_EQ(talk.set("measurementtool device b03 zelwpan ACQ P7"), "err 4");
    EXPECT_EQ(talk.set("measurementtool device b03 wlan ACQ P7 12"), "err 4");
    EXPECT_EQ(talk.set("measurementtool device b09 none"), "err 5");
}

TEST(Radio, movesADeviceToTheToolThatItIsAssignedTo) {
    Talk talk;
    EXPECT_EQ(talk.set("measurementtool device b02 zelwpan KST MTS1 00417"), "ok");
    EXPECT_EQ(talk.get("measurementtool device b01"), "none");
    EXPECT_EQ(talk.get("measurementtool device b02"), "zelwpan KST MTS1 417");
    EXPECT_EQ(talk.set("measurementtool device b01 zelwpan KST MTL2 523"), "ok");
    EXPECT_EQ(talk.get("measurementtool device b01"), "zelwpan KST MTL2 00523");
}

TEST(Radio, letsADeviceGoThatAToolBeyondTheCountHolds) {
    Talk talk;
    EXPECT_EQ(talk.set("measurementtool device b04 zelwpan ACQ P7 12"), "ok");
    EXPECT_EQ(talk.set("measurementtool number_of_tools 3"), "ok");
    EXPECT_EQ(talk.set("measurementtool device b03 zelwpan ACQ P7 12"), "ok");
    EXPECT_EQ(talk.get("measurementtool device b03"), "zelwpan ACQ P7 12");
    EXPECT_EQ(talk.set("measurementtool number_of_tools 4"), "ok");
    EXPECT_EQ(talk.get("measurementtool device b04"), "none") << "it belongs to one tool";
    EXPECT_EQ(talk.get("measurementtool device b03"), "zelwpan ACQ P7 12");
}

TEST(Radio, givesAToolBeyondTheCountItsDeviceBackUnlessAnotherHasIt) {
    Talk talk;
    EXPECT_EQ(talk.set("measurementtool number_of_tools 1"), "ok");
    EXPECT_EQ(talk.set("measurementtool number_of_tools 2"), "ok");
    EXPECT_EQ(talk.get("measurementtool device b02"), "zelwpan KST MTL2 00523");
}

TEST(Radio, assignsDevicesAtTheStartToToolsThatAreThere) {
    ControllerSetup setup;
    setup.tools = 1;
    Talk talk(setup);
    EXPECT_EQ(talk.get("measurementtool device b01"), "zelwpan KST MTS1 417");
    EXPECT_EQ(talk.set("measurementtool number_of_tools 2"), "ok");
    EXPECT_EQ(talk.get("measurementtool device b02"), "none");
    EXPECT_EQ(talk.set("measurementtool device b02 zelwpan KST MTL2 523"), "ok");
}

TEST(Radio, keepsTheAssignmentOfADeviceThatHasGone) {
    Talk talk;
    EXPECT_EQ(talk.act("sim device remove KST MTS1 00417"), "ok");
    EXPECT_EQ(talk.get("measurementtool number_of_zelwpan_devices"), "3");
    EXPECT_EQ(talk.get("measurementtool device b01"), "zelwpan KST MTS1 417");
    EXPECT_EQ(talk.set("measurementtool device b01 zelwpan KST MTS1 00417"), "ok");
    EXPECT_EQ(talk.set("measurementtool device b01 none"), "ok");
    EXPECT_EQ(talk.set("measurementtool device b01 zelwpan KST MTS1 00417"), "err 5");
}

TEST(Radio, letsDevicesComeAndGoOnCommand) {
    Talk talk(withDevices(0));
    EXPECT_EQ(talk.get("measurementtool number_of_zelwpan_devices"), "0");
    EXPECT_EQ(talk.act("sim device add V M 1234567 A \"tool\" of mine"), "ok");
    EXPECT_EQ(talk.get("measurementtool zelwpan_device d01"), "V M 1234567");
    EXPECT_EQ(talk.get("zelwpan device_model_desc V M"), "\"A 'tool' of mine\"");
    EXPECT_EQ(talk.act("sim device add V M 01234567"), "err 8");
    EXPECT_EQ(talk.act("sim device add V N 1"), "ok");
    EXPECT_EQ(talk.get("zelwpan device_model_desc V N"), "\"Measurement Tool\"");
    EXPECT_EQ(talk.act("sim device remove V M 7"), "err 5");
    EXPECT_EQ(talk.act("sim device remove V M 1234567"), "ok");
    EXPECT_EQ(talk.get("measurementtool zelwpan_device d01"), "V N 1");
    EXPECT_EQ(talk.act("sim device add V"), "err 1");
}

TEST(Radio, takesABoundedNumberOfDevices) {
    Talk talk(withDevices(0));
    for (int i = 0; i < 64; ++i) {
        EXPECT_EQ(talk.act("sim device add V M" + std::to_string(i) + " 1"), "ok");
    }
    EXPECT_EQ(talk.act("sim device add V M99 1"), "err 10");
    EXPECT_EQ(talk.get("measurementtool zelwpan_device d64"), "V M63 1");
}

TEST(Radio, oneDeviceComesAndGoesByItself) {
    Talk talk;
    std::map<std::string, int> seen;
    for (int second = 0; second < 40; ++second) {
        ++seen[talk.get("measurementtool number_of_zelwpan_devices")];
        talk.wait(1.0);
    }
    EXPECT_EQ(seen, (std::map<std::string, int>{{"3", 16}, {"4", 24}}));
    talk.set("sim wandering_device no");
    const std::string steady = talk.get("measurementtool number_of_zelwpan_devices");
    talk.wait(13.0);
    EXPECT_EQ(talk.get("measurementtool number_of_zelwpan_devices"), steady);
}
