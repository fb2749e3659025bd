#include "tests/simulator/parsedframe.h"
#include "tests/simulator/talk.h"

#include <gtest/gtest.h>

using kestrel_simulator::ControllerSetup;

namespace {

using Words = std::vector<std::string>;

Words firstWords(const std::vector<std::string>& lines) {
    Words words;
    for (const std::string& line : lines) {
        words.push_back(line.substr(0, line.find(' ')));
    }
    return words;
}

} // namespace

TEST(Frames, comeOnlyWhileTrackingRuns) {
    Talk talk;
    EXPECT_TRUE(talk.nextFrame().empty());
    EXPECT_EQ(talk.get("status active"), "none");
    EXPECT_EQ(talk.act("tracking start"), "ok");
    EXPECT_EQ(talk.get("status active"), "tracking");
    EXPECT_FALSE(talk.nextFrame().empty());
    EXPECT_EQ(talk.act("tracking start"), "ok");
    EXPECT_EQ(talk.act("tracking stop"), "ok");
    EXPECT_EQ(talk.get("status active"), "none");
    EXPECT_TRUE(talk.nextFrame().empty());
}

TEST(Frames, doNotComeWithoutTheSyncSignal) {
    Talk talk;
    EXPECT_EQ(talk.set("sim sync no"), "ok");
    EXPECT_EQ(talk.act("tracking start"), "ok");
    EXPECT_EQ(talk.get("status active"), "wait");
    EXPECT_TRUE(talk.nextFrame().empty());
    EXPECT_EQ(talk.set("sim sync yes"), "ok");
    EXPECT_EQ(talk.get("status active"), "tracking");
    EXPECT_FALSE(talk.nextFrame().empty());
}

TEST(Frames, holdOnlyTheActivatedLinesInTheirOrder) {
    Talk talk;
    startMeasurement(talk, {});
    EXPECT_EQ(firstWords(talk.nextFrame()), (Words{"fr", "ts", "6dcal"}));
    talk.set("output active chmon 6dmtr yes");
    EXPECT_EQ(firstWords(talk.nextFrame()), (Words{"fr", "ts", "6dcal", "6dmtr"}));
    talk.set("output active chmon 6dmt2 yes");
    talk.set("output active chmon 6d yes");
    EXPECT_EQ(firstWords(talk.nextFrame()), (Words{"fr", "ts", "6dcal", "6d", "6dmt2", "6dmtr"}));
    talk.set("output active chmon 6dmtr no");
    EXPECT_EQ(firstWords(talk.nextFrame()), (Words{"fr", "ts", "6dcal", "6d", "6dmt2"}));
    EXPECT_EQ(talk.get("output active chmon 6d"), "yes");
    EXPECT_EQ(talk.get("output active chmon 6dmtr"), "no");
    EXPECT_EQ(talk.set("output active chmon 6dx yes"), "err 3");
    EXPECT_EQ(talk.set("output active xxx 6d yes"), "err 3");
    EXPECT_EQ(talk.set("output active chmon 6d on"), "err 4");
}

TEST(Frames, carryToolsInTheFormatThatIsSetIfThatOneIsActive) {
    Talk talk;
    startMeasurement(talk, {"6dmt2"});
    EXPECT_NE(talk.nextLine("6dmt2"), "");
    talk.set("measurementtool output_6dmt yes");
    EXPECT_EQ(firstWords(talk.nextFrame()), (Words{"fr", "ts", "6dcal"}));
    talk.set("output active chmon 6dmt yes");
    EXPECT_EQ(firstWords(talk.nextFrame()), (Words{"fr", "ts", "6dcal", "6dmt"}));
}

TEST(Frames, carryToolsInTheOldFormatBeforeThereWasANewOne) {
    ControllerSetup setup;
    setup.protocol = {1, 12, 0};
    Talk talk(setup);
    startMeasurement(talk, {"6dmt"});
    EXPECT_NE(talk.nextLine("6dmt"), "");
}

TEST(Frames, areReadByTheParserInBothFormats) {
    Talk talk;
    startMeasurement(talk, {"6d", "6dmt", "6dmt2", "6dmtr"});
    for (const char* old : {"no", "yes"}) {
        talk.set(std::string("measurementtool output_6dmt ") + old);
        KestrelParser parser;
        parseFrame(parser, talk.nextFrame());
        EXPECT_EQ(parser.getNumMeaTool(), 4);
        EXPECT_EQ(parser.getNumMeaRef(), 2);
        EXPECT_EQ(parser.getNumBody(), 2) << "tools in 6dmt must not count as bodies";
        EXPECT_GT(parser.getFrameCounter(), 0U);
        EXPECT_GE(parser.getTimeStamp(), 0.0);
        for (int i = 0; i < 4; ++i) {
            EXPECT_EQ(parser.getMeaTool(i)->quality, 1.0);
            EXPECT_EQ(parser.getMeaTool(i)->num_button, 4);
        }
    }
}

TEST(Frames, countFramesAndTime) {
    ControllerSetup setup;
    setup.rate = 100.0;
    Talk talk(setup);
    talk.wait(5.0);
    startMeasurement(talk, {});
    for (int i = 1; i <= 3; ++i) {
        const auto lines = talk.nextFrame();
        EXPECT_EQ(lines[0], "fr " + std::to_string(i));
        EXPECT_EQ(lines[1], "ts 5.0" + std::to_string(i - 1) + "0000");
    }
}

TEST(Frames, thatNobodyHadTimeForAreSkippedAndCounted) {
    ControllerSetup setup;
    setup.rate = 100.0;
    Talk talk(setup);
    startMeasurement(talk, {});
    talk.nextFrame();
    talk.wait(2.0);
    EXPECT_EQ(talk.nextFrame()[0], "fr 201");
}

TEST(Frames, repeatForTheSameSeedAndDifferForAnother) {
    const auto lines = [](std::uint64_t seed) {
        ControllerSetup setup;
        setup.seed = seed;
        Talk talk(setup);
        startMeasurement(talk, {"6dmt2", "6dmtr"});
        talk.nextFrame();
        return talk.nextFrame();
    };
    EXPECT_EQ(lines(7), lines(7));
    EXPECT_NE(lines(7), lines(8));
}

TEST(Frames, followANewNumberOfToolsAtOnce) {
    Talk talk;
    startMeasurement(talk, {"6dmt2", "6dmtr"});
    KestrelParser parser;
    talk.set("measurementtool number_of_tools 2");
    talk.set("measurementtool number_of_references 3");
    parseFrame(parser, talk.nextFrame());
    EXPECT_EQ(parser.getNumMeaTool(), 2);
    EXPECT_EQ(parser.getNumMeaRef(), 3);
    talk.set("measurementtool number_of_tools 0");
    parseFrame(parser, talk.nextFrame());
    EXPECT_EQ(parser.getNumMeaTool(), 0);
}
