#include "tests/simulator/recordingfile.h"
#include "tests/simulator/talk.h"

#include <cmath>
#include <filesystem>
#include <sys/stat.h>

TEST_F(RecordingFile, isSentFrameByFrameWithItsOwnTiming) {
    write(threeFrames());
    const auto replay = open();
    ASSERT_TRUE(replay) << error;
    replay->start(50.0);
    EXPECT_NEAR(replay->nextDue(), 50.0, 1e-9);
    EXPECT_EQ(replay->take(50.0), (Lines{"fr 1", "6dmt 0"}));
    EXPECT_NEAR(replay->nextDue(), 50.2, 1e-9);
    EXPECT_EQ(replay->take(50.2), (Lines{"fr 2"}));
    EXPECT_NEAR(replay->nextDue(), 50.3, 1e-9);
    EXPECT_EQ(replay->take(50.3), (Lines{"fr 3", "6dmtr 0 0"}));
}

TEST_F(RecordingFile, clockMarksAreNotSent) {
    header.start = 1795318812345;
    write(kestrel_wire::formatClockMark({1000000, 1795318813000}) + record(1000000, "fr 1") +
          kestrel_wire::formatClockMark({1100000, 5}) + record(1200000, "fr 2"));
    const auto replay = open();
    ASSERT_TRUE(replay) << error;
    EXPECT_EQ(replay->header().start, 1795318812345);
    replay->start(50.0);
    EXPECT_EQ(replay->take(50.0), (Lines{"fr 1"}));
    EXPECT_NEAR(replay->nextDue(), 50.2, 1e-9);
    EXPECT_EQ(replay->take(50.2), (Lines{"fr 2"}));
}

TEST_F(RecordingFile, beginsAnewAfterOneMeanFrameDistance) {
    write(threeFrames());
    const auto replay = open();
    replay->start(0.0);
    for (int round = 0; round < 3; ++round) {
        EXPECT_NEAR(replay->nextDue(), round * 0.45, 1e-9);
        EXPECT_EQ(replay->take(0.0)[0], "fr 1");
        replay->take(0.0);
        EXPECT_EQ(replay->take(0.0)[0], "fr 3");
    }
}

TEST_F(RecordingFile, canStopAtItsEndAndBeStartedAgain) {
    write(threeFrames());
    const auto replay = open(Replay::AtEnd::Stop);
    replay->start(0.0);
    for (int i = 0; i < 3; ++i) {
        EXPECT_FALSE(replay->take(0.0).empty());
    }
    EXPECT_TRUE(std::isinf(replay->nextDue()));
    replay->start(9.0);
    EXPECT_NEAR(replay->nextDue(), 9.0, 1e-9);
    EXPECT_EQ(replay->take(9.0)[0], "fr 1");
}

// So many that not all of it stands in the reader's buffer.
TEST_F(RecordingFile, thatGetsShorterEndsThereAndIsCalledChanged) {
    std::string records;
    constexpr int frames = 50000;
    for (int i = 1; i <= frames; ++i) {
        records += record(static_cast<std::uint64_t>(i) * 1000, "fr " + std::to_string(i));
    }
    write(records);
    const auto replay = open(Replay::AtEnd::Stop);
    ASSERT_TRUE(replay) << error;
    replay->start(0.0);
    EXPECT_EQ(replay->take(0.0)[0], "fr 1");
    EXPECT_FALSE(replay->isChanged());
    std::filesystem::resize_file(path, std::filesystem::file_size(path) / 2);
    int taken = 1;
    while (replay->state() == Replay::State::Playing) {
        ASSERT_FALSE(replay->take(0.0).empty());
        ++taken;
    }
    EXPECT_TRUE(replay->isChanged());
    EXPECT_GT(taken, frames / 3);
    EXPECT_LT(taken, frames * 2 / 3);
    EXPECT_LT(replay->position(), replay->duration());
    EXPECT_EQ(replay->state(), Replay::State::Ended);
}

TEST_F(RecordingFile, whoseFramesAreGoneWhenItBeginsAnewIsCalledChanged) {
    write(threeFrames());
    const auto replay = open();
    replay->start(0.0);
    replay->take(0.0);
    write("");
    replay->start(1.0);
    EXPECT_TRUE(replay->isChanged());
    EXPECT_EQ(replay->state(), Replay::State::Ended);
    EXPECT_TRUE(std::isinf(replay->nextDue()));
}

TEST_F(RecordingFile, whoseEndIsReachedOrThatGrowsIsNotCalledChanged) {
    write(threeFrames());
    const auto replay = open();
    replay->start(0.0);
    for (int i = 0; i < 2; ++i) {
        replay->take(0.0);
    }
    std::ofstream(path, std::ios::binary | std::ios::app) << record(1400000, "fr 4");
    for (int i = 0; i < 7; ++i) {
        EXPECT_NE(replay->take(0.0)[0], "fr 4");
    }
    replay->seek(0.2, 0.0);
    replay->start(0.0);
    EXPECT_FALSE(replay->isChanged());
}

TEST_F(RecordingFile, withoutRecordsSendsNothing) {
    write("");
    const auto replay = open();
    ASSERT_TRUE(replay) << error;
    replay->start(0.0);
    EXPECT_TRUE(std::isinf(replay->nextDue()));
}

TEST_F(RecordingFile, ofOneFrameIsRepeated) {
    write(record(5, "fr 1"));
    const auto replay = open();
    replay->start(0.0);
    replay->take(0.0);
    EXPECT_NEAR(replay->nextDue(), 1.0 / 60.0, 1e-9);
}

TEST_F(RecordingFile, thatIsMalformedIsRefusedWithItsLineNumber) {
    write(threeFrames() + "nonsense\n" + record(2000000, "fr 4"));
    EXPECT_FALSE(open());
    EXPECT_EQ(error, "line 14: unreadable time stamp");
}

TEST_F(RecordingFile, thatEndsInItsFirstLineIsRefusedWithThatLine) {
    std::ofstream(path, std::ios::binary) << "kestrel-rec";
    EXPECT_FALSE(open());
    EXPECT_EQ(error, "line 1: the file ends inside its header");
}

TEST_F(RecordingFile, thatIsNoOrdinaryFileIsRefusedAtOnce) {
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    const std::string sentence =
        "only an ordinary file can be replayed, not a folder, pipe or device";
    for (const std::string& other : {path, std::string("/dev/zero"), testing::TempDir()}) {
        error.clear();
        EXPECT_FALSE(Replay::open(other, Replay::AtEnd::Loop, error)) << other;
        EXPECT_EQ(error, sentence) << other;
    }
}

TEST_F(RecordingFile, thatWouldInjectLinesIsRefused) {
    header.parameters.emplace_back("a", "1\nkestrel2 ok");
    write(threeFrames());
    EXPECT_FALSE(open());
    EXPECT_EQ(error, "line 8: a control character in a name or value");
    header.parameters.pop_back();
    write(record(1, "fr 1\r\n6dmt 0"));
    EXPECT_FALSE(open());
    EXPECT_EQ(error, "line 9: a line end inside the line");
}

TEST_F(RecordingFile, ofAnUnreadableProtocolVersionIsRefused) {
    for (const char* protocol : {"", "1", "new", "1.2.-2", "1.-1.2", "1.2.3.4"}) {
        header.protocol = protocol;
        write(threeFrames());
        EXPECT_FALSE(open()) << protocol;
        EXPECT_EQ(error, std::string("the recorded protocol version cannot be read: \"") +
                             protocol + "\"");
    }
}

TEST_F(RecordingFile, ofAnUnknownPatchLevelIsReplayedAndAnswersWithoutIt) {
    for (const char* suffix : {"", ".-1"}) {
        header.protocol = std::string("1.12") + suffix;
        header.system = std::string("2.8") + suffix;
        write(threeFrames());
        Talk talk;
        auto replay = open();
        ASSERT_TRUE(replay) << error;
        talk.controller.setReplay(std::move(replay));
        EXPECT_EQ(talk.get("version protocol"), "1.12");
        EXPECT_EQ(talk.get("version system"), "2.8");
        EXPECT_EQ(talk.get("measurementtool output_6dmt"), "err 9");
    }
}

TEST_F(RecordingFile, thatIsMissingOrEmptyOrADirectoryIsRefused) {
    EXPECT_FALSE(open());
    EXPECT_FALSE(error.empty());
    std::ofstream(path).close();
    EXPECT_FALSE(open());
    EXPECT_FALSE(Replay::open(testing::TempDir(), Replay::AtEnd::Loop, error));
}

TEST_F(RecordingFile, whoseLastLineWasCutIsReplayedWithoutIt) {
    write(threeFrames() + "1400000 fr fr");
    const auto replay = open(Replay::AtEnd::Stop);
    ASSERT_TRUE(replay) << error;
    EXPECT_TRUE(replay->isTruncated());
    replay->start(0.0);
    int frames = 0;
    while (!std::isinf(replay->nextDue())) {
        replay->take(0.0);
        ++frames;
    }
    EXPECT_EQ(frames, 3);
}

TEST_F(RecordingFile, answersItsVersionsAndParametersAndRefusesToChangeThem) {
    write(threeFrames());
    Talk talk;
    talk.controller.setReplay(open());
    EXPECT_EQ(talk.get("version system"), "2.8.0");
    EXPECT_EQ(talk.get("version protocol"), "1.12.0");
    EXPECT_EQ(talk.get("version system_ct"), "2.8.1");
    EXPECT_EQ(talk.get("version model"), "RECORDED");
    EXPECT_EQ(talk.get("measurementtool number_of_tools"), "7");
    EXPECT_EQ(talk.get("measurementtool reference_of_tool b01"), "b03");
    EXPECT_EQ(talk.get("measurementtool reference_of_tool b02"), "b02");
    EXPECT_EQ(talk.set("measurementtool number_of_tools 3"), "err 8");
    EXPECT_EQ(talk.set("measurementtool reference_of_tool b02 none"), "ok");
    EXPECT_EQ(talk.get("measurementtool output_6dmt"), "err 9") << "the recorded protocol holds";
    EXPECT_EQ(talk.get("cal available measurementtool"), "no");
    EXPECT_EQ(talk.act("cal measurementtool start"), "err 8");
}

TEST_F(RecordingFile, isSentWhileTrackingRunsAndOnlyItsActivatedLines) {
    write(threeFrames());
    Talk talk;
    talk.controller.setReplay(open());
    EXPECT_TRUE(talk.nextFrame().empty());
    EXPECT_EQ(talk.act("tracking start"), "ok");
    EXPECT_EQ(talk.nextFrame(), (Lines{"fr 1"}));
    talk.set("output active chmon 6dmt yes");
    talk.set("output active chmon 6dmtr yes");
    EXPECT_EQ(talk.nextFrame(), (Lines{"fr 2"}));
    EXPECT_EQ(talk.nextFrame(), (Lines{"fr 3", "6dmtr 0 0"}));
    EXPECT_EQ(talk.nextFrame(), (Lines{"fr 1", "6dmt 0"}));
    talk.act("tracking stop");
    EXPECT_TRUE(talk.nextFrame().empty());
    talk.act("tracking start");
    EXPECT_EQ(talk.nextFrame(), (Lines{"fr 1", "6dmt 0"}));
}
