#include "simulator/words/text.h"
#include "tests/simulator/recordingfile.h"
#include "tests/simulator/talk.h"

#include <cmath>
#include <filesystem>

namespace {

using State = Replay::State;

class ReplayControl : public RecordingFile {
protected:
    // Ten frames a second, the first one at 5 s.
    void writeFrames(int count) {
        std::string records;
        for (int i = 0; i < count; ++i) {
            records += record(5000000 + static_cast<std::uint64_t>(i) * 100000,
                              "fr " + std::to_string(i + 1));
        }
        write(records);
    }

    std::unique_ptr<Replay> play(int frames, Replay::AtEnd atEnd = Replay::AtEnd::Stop) {
        writeFrames(frames);
        auto replay = open(atEnd);
        EXPECT_TRUE(replay) << error;
        replay->start(0.0);
        return replay;
    }

    static std::string takeFrame(Replay& replay, double now) {
        EXPECT_LE(replay.nextDue(), now + 1e-9);
        const Lines lines = replay.take(now);
        return lines.empty() ? std::string("nothing") : lines[0];
    }

    static bool isSilent(const Replay& replay) { return std::isinf(replay.nextDue()); }
};

} // namespace

TEST_F(ReplayControl, tellsWhereItIs) {
    const auto replay = play(11);
    EXPECT_NEAR(replay->duration(), 1.0, 1e-9);
    EXPECT_NEAR(replay->position(), 0.0, 1e-9);
    takeFrame(*replay, 0.0);
    takeFrame(*replay, 0.1);
    EXPECT_NEAR(replay->position(), 0.1, 1e-9);
    EXPECT_EQ(replay->state(), State::Playing);
    EXPECT_EQ(replay->utc(), std::nullopt) << "of version 1";
}

TEST_F(ReplayControl, tellsTheWallClockOfTheFrameThatWasSent) {
    header.start = 1795318800000;
    write(record(1000000, "fr 1") + kestrel_wire::formatClockMark({2000000, 1795318900000}) +
          record(2500000, "fr 2") + record(3000000, "fr 3"));
    const auto replay = open();
    replay->start(0.0);
    EXPECT_EQ(replay->utc(), 1795318801000);
    replay->take(0.0);
    EXPECT_EQ(replay->utc(), 1795318801000);
    replay->take(1.5);
    EXPECT_EQ(replay->utc(), 1795318900500);
    replay->seek(0.0, 2.0);
    EXPECT_EQ(replay->utc(), 1795318801000);
}

TEST_F(ReplayControl, sendsNothingInAPauseAndGoesOnWhereItWas) {
    const auto replay = play(11);
    takeFrame(*replay, 0.0);
    replay->pause(0.06);
    EXPECT_EQ(replay->state(), State::Paused);
    EXPECT_TRUE(isSilent(*replay));
    replay->pause(3.0); // once more changes nothing
    replay->play(7.0);
    EXPECT_EQ(replay->state(), State::Playing);
    EXPECT_NEAR(replay->nextDue(), 7.04, 1e-9);
    EXPECT_EQ(takeFrame(*replay, 7.04), "fr 2");
    EXPECT_NEAR(replay->nextDue(), 7.14, 1e-9);
}

TEST_F(ReplayControl, oneFrameIsOneFrameAndAPause) {
    const auto replay = play(3);
    takeFrame(*replay, 0.0);
    replay->step(0.03);
    EXPECT_EQ(takeFrame(*replay, 0.03), "fr 2");
    EXPECT_EQ(replay->state(), State::Paused);
    EXPECT_TRUE(isSilent(*replay));
    EXPECT_NEAR(replay->position(), 0.1, 1e-9);
    replay->step(1.0);
    EXPECT_EQ(takeFrame(*replay, 1.0), "fr 3");
    EXPECT_EQ(replay->state(), State::Ended);
    replay->step(2.0);
    EXPECT_TRUE(isSilent(*replay)) << "there is no frame behind the last one";
}

TEST_F(ReplayControl, afterOneFrameTheNextOneKeepsItsDistance) {
    const auto replay = play(11);
    takeFrame(*replay, 0.0);
    replay->step(0.5);
    takeFrame(*replay, 0.5);
    replay->play(9.0);
    EXPECT_NEAR(replay->nextDue(), 9.1, 1e-9);
}

TEST_F(ReplayControl, runsFasterAndSlowerFromWhereItIs) {
    const auto replay = play(11);
    takeFrame(*replay, 0.0);
    replay->setSpeed(10.0, 0.05); // half of the way to the next frame
    EXPECT_NEAR(replay->nextDue(), 0.055, 1e-9);
    takeFrame(*replay, 0.055);
    EXPECT_NEAR(replay->nextDue(), 0.065, 1e-9);
    replay->setSpeed(0.1, 0.055);
    EXPECT_NEAR(replay->nextDue(), 1.055, 1e-9);
    EXPECT_NEAR(replay->speed(), 0.1, 1e-12);
}

TEST_F(ReplayControl, aSpeedThatIsSetInAPauseHoldsAfterIt) {
    const auto replay = play(11);
    takeFrame(*replay, 0.0);
    replay->pause(0.05);
    replay->setSpeed(0.5, 1.0);
    EXPECT_TRUE(isSilent(*replay));
    replay->play(2.0);
    EXPECT_NEAR(replay->nextDue(), 2.1, 1e-9);
}

TEST_F(ReplayControl, aLoopKeepsItsSpeed) {
    const auto replay = play(3, Replay::AtEnd::Loop);
    replay->setSpeed(2.0, 0.0);
    for (int i = 0; i < 3; ++i) {
        EXPECT_NEAR(replay->nextDue(), 0.05 * i, 1e-9);
        replay->take(replay->nextDue());
    }
    EXPECT_EQ(replay->state(), State::Playing);
    EXPECT_NEAR(replay->nextDue(), 0.15, 1e-9);
    EXPECT_EQ(takeFrame(*replay, 0.15), "fr 1");
}

TEST_F(ReplayControl, seeksForwardsAndBackwardsAndPlaysOn) {
    const auto replay = play(101);
    takeFrame(*replay, 0.0);
    replay->seek(7.0, 0.02);
    EXPECT_NEAR(replay->position(), 7.0, 1e-9);
    EXPECT_EQ(takeFrame(*replay, 0.02), "fr 71");
    EXPECT_NEAR(replay->nextDue(), 0.12, 1e-9);
    replay->seek(2.95, 0.05); // the first one that is not earlier
    EXPECT_EQ(takeFrame(*replay, 0.05), "fr 31");
    EXPECT_EQ(replay->state(), State::Playing);
}

TEST_F(ReplayControl, showsInAPauseTheFrameThatItSeeks) {
    const auto replay = play(101);
    takeFrame(*replay, 0.0);
    replay->pause(0.01);
    replay->seek(5.0, 1.0);
    EXPECT_EQ(replay->state(), State::Paused);
    EXPECT_EQ(takeFrame(*replay, 1.0), "fr 51");
    EXPECT_TRUE(isSilent(*replay));
    replay->play(2.0);
    EXPECT_NEAR(replay->nextDue(), 2.1, 1e-9);
    EXPECT_EQ(takeFrame(*replay, 2.1), "fr 52");
}

TEST_F(ReplayControl, beyondTheEndIsTheLastFrame) {
    for (const double position : {10.0, 10.000001, 1e300}) {
        const auto replay = play(101);
        replay->seek(position, 1.0);
        EXPECT_EQ(takeFrame(*replay, 1.0), "fr 101") << position;
        EXPECT_EQ(replay->state(), State::Ended);
        EXPECT_NEAR(replay->position(), 10.0, 1e-9);
    }
}

TEST_F(ReplayControl, staysAtItsEndUntilItIsPlayedAnew) {
    const auto replay = play(2);
    takeFrame(*replay, 0.0);
    takeFrame(*replay, 0.1);
    EXPECT_EQ(replay->state(), State::Ended);
    EXPECT_NEAR(replay->position(), 0.1, 1e-9);
    EXPECT_TRUE(isSilent(*replay));
    replay->play(9.0);
    EXPECT_EQ(replay->state(), State::Playing);
    EXPECT_EQ(takeFrame(*replay, 9.0), "fr 1");
    EXPECT_NEAR(replay->nextDue(), 9.1, 1e-9);
}

TEST_F(ReplayControl, fromItsEndASoughtFrameIsShownInAPause) {
    const auto replay = play(3);
    for (int i = 0; i < 3; ++i) {
        takeFrame(*replay, 0.1 * i);
    }
    replay->seek(0.1, 5.0);
    EXPECT_EQ(takeFrame(*replay, 5.0), "fr 2");
    EXPECT_EQ(replay->state(), State::Paused);
}

TEST_F(ReplayControl, findsEveryFrameOfALongRecording) {
    std::string records; // some 4 MB: more than is read from one place
    const std::string filling(2000, 'x');
    constexpr int count = 2000;
    for (int i = 0; i < count; ++i) {
        const auto time = static_cast<std::uint64_t>(i) * 1000;
        records += record(time, "fr " + std::to_string(i)) + record(time, "6d " + filling);
    }
    write(records);
    const auto replay = open();
    ASSERT_TRUE(replay) << error;
    replay->start(0.0);
    for (const int i : {1999, 0, 522, 523, 524, 1040, 1, 1998, 1500, 700}) {
        replay->seek(i * 0.001, 1.0);
        EXPECT_EQ(takeFrame(*replay, 1.0), "fr " + std::to_string(i));
    }
}

TEST_F(ReplayControl, ofARecordingWithoutFramesIsAtItsEnd) {
    write("");
    const auto replay = open();
    replay->start(0.0);
    replay->play(1.0);
    replay->seek(1.0, 1.0);
    replay->step(1.0);
    replay->setSpeed(2.0, 1.0);
    EXPECT_EQ(replay->state(), State::Ended);
    EXPECT_TRUE(isSilent(*replay));
    EXPECT_NEAR(replay->duration(), 0.0, 1e-12);
    EXPECT_NEAR(replay->position(), 0.0, 1e-12);
}

TEST_F(ReplayControl, aDelayIsNotCaughtUp) {
    const auto replay = play(101);
    takeFrame(*replay, 0.0);
    EXPECT_EQ(takeFrame(*replay, 30.0), "fr 2"); // somebody had stopped us
    EXPECT_NEAR(replay->nextDue(), 30.1, 1e-9);
}

TEST_F(ReplayControl, goesOnWhenTheFileIsTakenAway) {
    const auto replay = play(101);
    std::filesystem::remove(path);
    replay->seek(9.0, 1.0);
    EXPECT_EQ(takeFrame(*replay, 1.0), "fr 91");
}

TEST_F(ReplayControl, endsWhereTheFileIsCutMeanwhile) {
    const auto replay = play(10001);
    std::filesystem::resize_file(path, std::filesystem::file_size(path) / 2);
    replay->seek(900.0, 1.0);
    EXPECT_EQ(replay->state(), State::Ended);
    EXPECT_TRUE(isSilent(*replay));
    replay->seek(1.0, 2.0);
    EXPECT_EQ(takeFrame(*replay, 2.0), "fr 11");
}

TEST_F(ReplayControl, whatIsRecordedBehindTheEndMeanwhileIsNotPlayed) {
    const auto replay = play(3);
    std::ofstream(path, std::ios::binary | std::ios::app) << record(9000000, "fr 99");
    replay->seek(0.2, 1.0);
    EXPECT_EQ(takeFrame(*replay, 1.0), "fr 3");
    EXPECT_EQ(replay->state(), State::Ended);
}

TEST_F(ReplayControl, isWhatTheCommandsSay) {
    writeFrames(101);
    Talk talk;
    talk.controller.setReplay(open(Replay::AtEnd::Stop));
    EXPECT_EQ(talk.get("sim replay"), "playing 0.000000 10.000000 1 none");
    EXPECT_EQ(talk.act("tracking start"), "ok");
    EXPECT_EQ(talk.nextFrame(), (Lines{"fr 1"}));
    EXPECT_EQ(talk.act("sim replay pause"), "ok");
    EXPECT_TRUE(talk.nextFrame().empty());
    EXPECT_EQ(talk.act("sim replay seek 7.5"), "ok");
    EXPECT_EQ(talk.nextFrame(), (Lines{"fr 76"}));
    EXPECT_EQ(talk.act("sim replay step"), "ok");
    EXPECT_EQ(talk.nextFrame(), (Lines{"fr 77"}));
    EXPECT_TRUE(talk.nextFrame().empty());
    EXPECT_EQ(talk.act("sim replay speed 0.5"), "ok");
    EXPECT_EQ(talk.get("sim replay"), "paused 7.600000 10.000000 0.5 none");
    EXPECT_EQ(talk.act("sim replay play"), "ok");
    EXPECT_NEAR(talk.controller.secondsToNextFrame(talk.time), 0.2, 1e-6);
    EXPECT_EQ(talk.act("sim replay seek 10"), "ok");
    EXPECT_EQ(talk.nextFrame(), (Lines{"fr 101"}));
    EXPECT_EQ(talk.get("sim replay"), "ended 10.000000 10.000000 0.5 none");
}

TEST_F(ReplayControl, refusesWhatMakesNoSense) {
    writeFrames(11);
    Talk talk;
    EXPECT_EQ(talk.get("sim replay"), "err 8") << "nothing is being replayed";
    EXPECT_EQ(talk.act("sim replay play"), "err 8");
    talk.controller.setReplay(open());
    EXPECT_EQ(talk.act("sim replay step"), "err 8") << "no frames go out yet";
    EXPECT_EQ(talk.act("sim replay seek 0.5"), "err 8");
    talk.act("tracking start");
    for (const char* command : {"speed 0.09", "speed 10.1", "speed nan", "speed x", "speed -1",
                                "seek -0.1", "seek inf", "seek 1,5"}) {
        EXPECT_EQ(talk.act(std::string("sim replay ") + command), "err 4") << command;
    }
    for (const char* command : {"", " rewind", " seek", " seek 1 2", " play now", " speed"}) {
        EXPECT_EQ(talk.act(std::string("sim replay") + command), "err 1") << command;
    }
    EXPECT_EQ(talk.get("sim replay"), "playing 0.000000 1.000000 1 none");
    EXPECT_EQ(talk.set("sim replay play"), "err 6") << "it can be read only";
}

TEST_F(ReplayControl, aMeasurementBeginsWithTheFirstFrameAndAPauseStaysOne) {
    writeFrames(11);
    Talk talk;
    talk.controller.setReplay(open());
    talk.act("tracking start");
    talk.act("sim replay seek 0.5");
    talk.act("sim replay pause");
    talk.act("tracking stop");
    talk.act("tracking start");
    EXPECT_EQ(talk.get("sim replay"), "paused 0.000000 1.000000 1 none");
    EXPECT_TRUE(talk.nextFrame().empty());
    talk.act("sim replay play");
    EXPECT_EQ(talk.nextFrame(), (Lines{"fr 1"}));
}
