#include "tests/simulator/talk.h"

#include <gtest/gtest.h>

using kestrel_simulator::ControllerSetup;

namespace {

ControllerSetup withProtocol(int major, int minor, int patch = 0) {
    ControllerSetup setup;
    setup.protocol = {major, minor, patch};
    return setup;
}

} // namespace

TEST(Parameters, startWithFourToolsAndTwoReferences) {
    Talk talk;
    EXPECT_EQ(talk.say("get measurementtool number_of_tools"),
              "kestrel2 set measurementtool number_of_tools 4");
    EXPECT_EQ(talk.get("measurementtool number_of_references"), "2");
    EXPECT_EQ(talk.get("measurementtool reference_of_tool b01"), "b01");
    EXPECT_EQ(talk.get("measurementtool reference_of_tool b02"), "b02");
    EXPECT_EQ(talk.get("measurementtool reference_of_tool b03"), "none");
    EXPECT_EQ(talk.get("measurementtool reference_of_tool b04"), "none");
}

TEST(Parameters, oneOfTheToolsIsNotCalibrated) {
    Talk talk;
    std::string tips;
    for (const char* body : {"b01", "b02", "b03", "b04"}) {
        EXPECT_EQ(talk.get(std::string("body calibrated measurementtool ") + body), "yes");
        tips += talk.get(std::string("measurementtool tip_calibrated ") + body) + " ";
    }
    EXPECT_EQ(tips, "yes yes yes no ");
    EXPECT_EQ(talk.get("body calibrated measurementtool_reference b01"), "yes");
}

TEST(Parameters, versionsAndModelAreThoseOfTheSetup) {
    ControllerSetup setup = withProtocol(1, 13, -1);
    setup.system = {2, 9, 3};
    setup.systemCt = {4, 5, 6};
    setup.model = "MINIRIG 2";
    Talk talk(setup);
    EXPECT_EQ(talk.get("version protocol"), "1.13");
    EXPECT_EQ(talk.get("version system"), "2.9.3");
    EXPECT_EQ(talk.get("version system_ct"), "4.5.6");
    EXPECT_EQ(talk.get("version model"), "MINIRIG 2");
    EXPECT_EQ(talk.set("version model X"), "err 6");
}

TEST(Parameters, toolsAndReferencesShareTheBodies) {
    Talk talk;
    EXPECT_EQ(talk.get("measurementtool max_number_of_tools"), "4");
    EXPECT_EQ(talk.get("measurementtool max_number_of_references"), "3");
    EXPECT_EQ(talk.set("measurementtool number_of_references 4"), "err 4");
    EXPECT_EQ(talk.set("measurementtool number_of_tools 3"), "ok");
    EXPECT_EQ(talk.get("measurementtool max_number_of_references"), "4");
    EXPECT_EQ(talk.set("measurementtool number_of_references 4"), "ok");
    EXPECT_EQ(talk.get("measurementtool max_number_of_tools"), "3");
    EXPECT_EQ(talk.set("measurementtool number_of_tools 4"), "err 4");
    EXPECT_EQ(talk.get("measurementtool number_of_tools"), "3");
}

TEST(Parameters, aRefusalSaysWhatWouldBePossible) {
    Talk talk;
    EXPECT_EQ(talk.say("set measurementtool number_of_references 9"),
              "kestrel2 err 4 \"0 to 3 references are possible\"");
    EXPECT_EQ(talk.say("set measurementtool tip_radius b01 21"),
              "kestrel2 err 4 \"the value must be from 0 to 20\"");
    EXPECT_EQ(talk.say("set sim rate 0"), "kestrel2 err 4 \"the value must be from 0.1 to 1000\"");
    EXPECT_EQ(talk.say("set sim cal_pause x"),
              "kestrel2 err 4 \"the value must be from 0 to 3600\"");
    EXPECT_EQ(talk.say("sim misbehave silent 1000001"),
              "kestrel2 err 4 \"the value must be from 0 to 1000000\"");
    for (const char* command :
         {"set sim pivot x", "sim pivot x", "sim pivot", "sim pivot cone x"}) {
        EXPECT_EQ(talk.say(command),
                  "kestrel2 err 4 \"expected one of cone, planar, twist, slip, still\"")
            << command;
    }
}

TEST(Parameters, thePivotIsAnActionToo) {
    Talk talk;
    EXPECT_EQ(talk.act("sim pivot slip"), "ok");
    EXPECT_EQ(talk.get("sim pivot"), "slip");
    EXPECT_EQ(talk.act("sim pivot nonsense"), "err 4");
    EXPECT_EQ(talk.get("sim pivot"), "slip");
    EXPECT_EQ(talk.set("sim pivot twist"), "ok");
    EXPECT_EQ(talk.get("sim pivot"), "twist");
}

namespace {

struct Limits {
    const char* parameter;
    const char* initial;
    const char* lowest;
    const char* highest;
    const char* tooLow;
    const char* tooHigh;
};

class ToolNumber : public testing::TestWithParam<Limits> {};

} // namespace

TEST_P(ToolNumber, isKeptForEachToolWithinItsLimits) {
    Talk talk;
    const Limits& limits = GetParam();
    const std::string name = std::string("measurementtool ") + limits.parameter;
    const auto set = [&](const std::string& value) { return talk.set(name + " b02 " + value); };
    EXPECT_EQ(talk.get(name + " b02"), limits.initial);
    EXPECT_EQ(set(limits.lowest), "ok");
    EXPECT_EQ(std::stod(talk.get(name + " b02")), std::stod(limits.lowest));
    EXPECT_EQ(set(limits.highest), "ok");
    EXPECT_EQ(std::stod(talk.get(name + " b02")), std::stod(limits.highest));
    for (const char* bad :
         {limits.tooLow, limits.tooHigh, "x", "1,5", "1 2", "nan", "inf", "0x1"}) {
        EXPECT_EQ(set(bad), "err 4") << bad;
    }
    EXPECT_EQ(std::stod(talk.get(name + " b02")), std::stod(limits.highest));
    EXPECT_NE(std::stod(talk.get(name + " b03")), std::stod(limits.highest));
    for (const char* body : {"b00", "b05", "b", "c01", "1", "b-1", "b1x", "b99999999999"}) {
        EXPECT_EQ(talk.get(name + " " + body), "err 5") << body;
        EXPECT_EQ(talk.set(name + " " + body + " 1"), "err 5") << body;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Parameters, ToolNumber,
    testing::Values(Limits{"tip_radius", "1", "0.000", "20.000", "-0.001", "20.001"},
                    Limits{"measurement_duration", "1", "0.200", "10.000", "0.199", "10.001"},
                    Limits{"measurement_tip_tolerance", "1.5", "0.100", "5.000", "0.099", "5.001"},
                    Limits{"measurement_start_angle", "40", "10.000", "120.000", "9.999", "121"},
                    Limits{"measurement_start_lead_time", "0.2", "0.100", "1.000", "0.09",
                           "1.01"}));

TEST(Parameters, whatWasWrittenIsReadBackAsTheSameNumber) {
    Talk talk;
    EXPECT_EQ(talk.set("measurementtool measurement_duration b01 1.100"), "ok");
    EXPECT_EQ(talk.get("measurementtool measurement_duration b01"), "1.1");
}

TEST(Parameters, yesAndNoAreTheOnlyWords) {
    Talk talk;
    const std::string simulation = "measurementtool measurement_start_simulation b01";
    EXPECT_EQ(talk.get(simulation), "no");
    EXPECT_EQ(talk.set(simulation + " yes"), "ok");
    EXPECT_EQ(talk.get(simulation), "yes");
    EXPECT_EQ(talk.get("measurementtool measurement_start_simulation b02"), "no");
    for (const char* bad : {"Yes", "1", "yes yes", "true"}) {
        EXPECT_EQ(talk.set(simulation + " " + bad), "err 4");
        EXPECT_EQ(talk.set(std::string("measurementtool output_6dmt ") + bad), "err 4");
    }
    EXPECT_EQ(talk.get("measurementtool output_6dmt"), "no");
    EXPECT_EQ(talk.set("measurementtool output_6dmt yes"), "ok");
    EXPECT_EQ(talk.get("measurementtool output_6dmt"), "yes");
}

TEST(Parameters, aReferenceMustExistToBeAssigned) {
    Talk talk;
    EXPECT_EQ(talk.set("measurementtool reference_of_tool b03 b02"), "ok");
    EXPECT_EQ(talk.get("measurementtool reference_of_tool b03"), "b02");
    EXPECT_EQ(talk.set("measurementtool reference_of_tool b03 b03"), "err 5");
    EXPECT_EQ(talk.set("measurementtool reference_of_tool b05 b01"), "err 5");
    EXPECT_EQ(talk.set("measurementtool reference_of_tool b03 none"), "ok");
    EXPECT_EQ(talk.get("measurementtool reference_of_tool b03"), "none");
}

TEST(Parameters, anAssignmentReadsNoneWhileItsReferenceIsNotThere) {
    Talk talk;
    EXPECT_EQ(talk.set("measurementtool number_of_references 1"), "ok");
    EXPECT_EQ(talk.get("measurementtool reference_of_tool b01"), "b01");
    EXPECT_EQ(talk.get("measurementtool reference_of_tool b02"), "none");
    EXPECT_EQ(talk.get("body calibrated measurementtool_reference b02"), "err 5");
    EXPECT_EQ(talk.set("measurementtool number_of_references 2"), "ok");
    EXPECT_EQ(talk.get("measurementtool reference_of_tool b02"), "b02");
}

TEST(Parameters, settingsOfAToolComeBackWithTheCount) {
    Talk talk;
    EXPECT_EQ(talk.set("measurementtool tip_radius b04 7.25"), "ok");
    EXPECT_EQ(talk.set("measurementtool number_of_tools 1"), "ok");
    EXPECT_EQ(talk.get("measurementtool tip_radius b04"), "err 5");
    EXPECT_EQ(talk.set("measurementtool number_of_tools 4"), "ok");
    EXPECT_EQ(talk.get("measurementtool tip_radius b04"), "7.25");
}

TEST(Parameters, badCommandsAreToldApart) {
    Talk talk;
    EXPECT_EQ(talk.get("measurementtool nonsense"), "err 3");
    EXPECT_EQ(talk.get("nonsense"), "err 3");
    EXPECT_EQ(talk.set("nonsense 1"), "err 3");
    EXPECT_EQ(talk.act("nonsense"), "err 3");
    EXPECT_EQ(talk.act("tracking"), "err 3");
    EXPECT_EQ(talk.act("tracking sideways"), "err 3");
    EXPECT_EQ(talk.get("measurementtool tip_radius"), "err 1");
    EXPECT_EQ(talk.get("status active now"), "err 1");
    EXPECT_EQ(talk.set("measurementtool tip_radius b01"), "err 1");
    EXPECT_EQ(talk.act(""), "err 1");
    EXPECT_EQ(talk.set("measurementtool max_number_of_tools 9"), "err 6");
    EXPECT_EQ(talk.set("status active none"), "err 6");
}

TEST(Parameters, aLockedConfigurationCanBeReadOnly) {
    Talk talk;
    EXPECT_EQ(talk.get("config is_changeable"), "yes");
    EXPECT_EQ(talk.act("sim lock yes"), "ok");
    EXPECT_EQ(talk.get("config is_changeable"), "no");
    EXPECT_EQ(talk.get("measurementtool number_of_tools"), "4");
    for (const char* change :
         {"measurementtool number_of_tools 3", "measurementtool number_of_references 1",
          "measurementtool reference_of_tool b01 none", "measurementtool tip_radius b01 1",
          "measurementtool output_6dmt yes", "measurementtool device b01 none",
          "measurementtool measurement_start_simulation b01 yes"}) {
        EXPECT_EQ(talk.set(change), "err 7") << change;
    }
    EXPECT_EQ(talk.act("cal measurementtool start"), "err 7");
    EXPECT_EQ(talk.set("output active chmon 6dmt2 yes"), "ok");
    EXPECT_EQ(talk.act("tracking start"), "ok");
    EXPECT_EQ(talk.act("sim lock no"), "ok");
    EXPECT_EQ(talk.set("measurementtool number_of_tools 3"), "ok");
}

namespace {

struct Gate {
    const char* parameter;
    int major;
    int minor;
};

class Gated : public testing::TestWithParam<Gate> {};

} // namespace

TEST_P(Gated, isKnownFromItsProtocolVersionOn) {
    const Gate& gate = GetParam();
    Talk older(withProtocol(gate.major, gate.minor - 1, 99));
    EXPECT_EQ(older.get(gate.parameter), "err 9");
    for (const int patch : {-1, 0}) {
        Talk first(withProtocol(gate.major, gate.minor, patch));
        EXPECT_NE(first.get(gate.parameter).substr(0, 3), "err");
    }
    Talk later(withProtocol(2, 0));
    EXPECT_NE(later.get(gate.parameter).substr(0, 3), "err");
}

INSTANTIATE_TEST_SUITE_P(Parameters, Gated,
                         testing::Values(Gate{"tracking available", 0, 17},
                                         Gate{"measurementtool available", 1, 3},
                                         Gate{"measurementtool number_of_tools", 1, 3},
                                         Gate{"cal step_duration measurementtool s01", 1, 4},
                                         Gate{"config is_changeable", 1, 9},
                                         Gate{"measurementtool tip_radius b01", 1, 13},
                                         Gate{"measurementtool output_6dmt", 1, 13},
                                         Gate{"measurementtool device b01", 1, 14},
                                         Gate{"measurementtool number_of_zelwpan_devices", 1, 14},
                                         Gate{"zelwpan available", 1, 14}));

TEST(Parameters, conditionsCanBeBroughtAbout) {
    Talk talk;
    for (const auto& [condition, parameter] :
         {std::pair("measurementtool_available", "measurementtool available"),
          std::pair("tracking_available", "tracking available"),
          std::pair("cal_available", "cal available measurementtool"),
          std::pair("radio_available", "zelwpan available")}) {
        EXPECT_EQ(talk.get(parameter), "yes") << parameter;
        EXPECT_EQ(talk.set(std::string("sim ") + condition + " no"), "ok");
        EXPECT_EQ(talk.get(parameter), "no") << parameter;
        EXPECT_EQ(talk.set(std::string("sim ") + condition + " yes"), "ok");
        EXPECT_EQ(talk.get(parameter), "yes") << parameter;
    }
}

TEST(Parameters, calibrationIsAvailableOnlyWithACalibratedTool) {
    Talk talk;
    for (const char* body : {"b01", "b02", "b03", "b04"}) {
        EXPECT_EQ(talk.get("cal available measurementtool"), "yes");
        EXPECT_EQ(talk.set(std::string("sim body_calibrated tool ") + body + " no"), "ok");
    }
    EXPECT_EQ(talk.get("cal available measurementtool"), "no");
    EXPECT_EQ(talk.get("body calibrated measurementtool b04"), "no");
}

TEST(Parameters, chosenCommandsCanBeRefused) {
    Talk talk;
    EXPECT_EQ(talk.act("sim refuse measurementtool tip_radius"), "ok");
    EXPECT_EQ(talk.act("sim refuse tracking"), "ok");
    EXPECT_EQ(talk.get("measurementtool tip_radius b01"), "err 11");
    EXPECT_EQ(talk.set("measurementtool tip_radius b01 1"), "err 11");
    EXPECT_EQ(talk.act("tracking start"), "err 11");
    EXPECT_EQ(talk.get("measurementtool number_of_tools"), "4");
    EXPECT_EQ(talk.act("sim refuse"), "ok");
    EXPECT_EQ(talk.get("measurementtool tip_radius b01"), "0.75");
}

TEST(Parameters, tooManyRefusalsAreRefusedAndTheOthersKept) {
    Talk talk;
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(talk.act("sim refuse tracking"), "ok");
    }
    EXPECT_EQ(talk.act("sim refuse measurementtool"), "err 10");
    EXPECT_EQ(talk.act("tracking start"), "err 11");
    EXPECT_EQ(talk.get("measurementtool number_of_tools"), "4");
}

TEST(Parameters, aLongCommandOfManyWordsIsAnsweredAtOnce) {
    Talk talk;
    std::string text = "set";
    while (text.size() < 64 * 1024 - 20) {
        text += " x";
    }
    EXPECT_EQ(talk.act(text), "err 3");
}
