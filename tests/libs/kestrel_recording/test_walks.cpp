#include "libs/kestrel_recording/cut.h"
#include "libs/kestrel_recording/summary.h"
#include "tests/libs/kestrel_recording/recordingtexts.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/stat.h>

using kestrel_recording::CutReport;
using kestrel_recording::Outcome;
using kestrel_recording::Summary;
using Ending = kestrel_recording::Outcome::Ending;
using recordingtexts::frame;
using recordingtexts::headerText;
using recordingtexts::twoTools;

namespace {

Outcome check(const std::string& text) {
    std::istringstream stream(text);
    return kestrel_recording::check(stream, {});
}

Summary summaryOf(const std::string& text, Ending expected = Ending::Whole) {
    std::istringstream stream(text);
    Summary summary;
    EXPECT_EQ(kestrel_recording::summarize(stream, summary, {}).ending, expected);
    return summary;
}

std::string cut(const std::string& text, std::uint64_t from, std::uint64_t to,
                CutReport* report = nullptr) {
    std::istringstream stream(text);
    std::string result;
    const CutReport made = kestrel_recording::cut(stream, {from, to},
                                                  [&](std::string_view piece) {
                                                      result += piece;
                                                      return true;
                                                  },
                                                  {});
    if (report != nullptr) {
        *report = made;
    }
    return result;
}

} // namespace

TEST(Check, tellsWhereTheFirstFaultIs) {
    const std::string good = headerText() + frame(1, {"fr 1", "6dmt 0"});
    EXPECT_EQ(check(good).ending, Ending::Whole);
    const Outcome bad = check(good + "0 fr fr 2\nhello\n");
    EXPECT_EQ(bad.ending, Ending::Malformed);
    EXPECT_EQ(bad.line, 10U);
    EXPECT_EQ(bad.reason, "the time stamp goes backwards");
    const Outcome cutLine = check(good + "2 fr f");
    EXPECT_EQ(cutLine.ending, Ending::Truncated);
    EXPECT_EQ(cutLine.line, 10U);
    EXPECT_EQ(check("").ending, Ending::Malformed);
    EXPECT_EQ(check("").line, 1U);
    EXPECT_EQ(check(headerText()).ending, Ending::Whole);
}

TEST(Summary, tellsWhatIsInARecording) {
    const Summary summary = summaryOf(
        headerText() + frame(1000000, {"fr 7", twoTools}) + frame(1100000, {"fr 8", twoTools}) +
        frame(1500000,
              {"fr 12", "6dmt2 1 1 [0 -1 4 0][0 0 0][0 0 0 0 0 0 0 0 0][0][0 0 0 0 0 0]"}) +
        frame(1600000, {"fr 13", "6dmt2 what", "6dmtr 0 0"}));
    EXPECT_EQ(summary.header.model, "MODEL");
    EXPECT_EQ(summary.frames, 4U);
    EXPECT_EQ(summary.lostFrames, 3U);
    EXPECT_EQ(summary.first, 1000000U);
    EXPECT_EQ(summary.last, 1600000U);
    EXPECT_DOUBLE_EQ(summary.duration(), 0.6);
    EXPECT_EQ(summary.longestGap, 400000U);
    EXPECT_EQ(summary.longestGapAt, 1100000U);
    EXPECT_EQ(summary.end, recordingtexts::start + 1600);
    ASSERT_EQ(summary.channels.size(), 3U);
    EXPECT_EQ(summary.channels[0].name, "fr");
    EXPECT_EQ(summary.channels[1].name, "6dmt2");
    EXPECT_EQ(summary.channels[1].lines, 4U);
    EXPECT_EQ(summary.channels[2].lines, 1U);
    ASSERT_EQ(summary.tools.size(), 2U);
    EXPECT_EQ(summary.tools[0].frames, 3U);
    EXPECT_EQ(summary.tools[0].tracked, 2U);
    EXPECT_EQ(summary.tools[1].frames, 2U);
    EXPECT_EQ(summary.tools[1].tracked, 0U);
    EXPECT_EQ(summary.unreadableLines, 1U);
}

TEST(Summary, ofARecordingWithoutFramesIsEmpty) {
    const Summary summary = summaryOf(headerText());
    EXPECT_EQ(summary.frames, 0U);
    EXPECT_EQ(summary.duration(), 0.0);
    EXPECT_FALSE(summary.end);
    EXPECT_TRUE(summary.tools.empty());
}

TEST(Summary, aGarbledRecordingDoesNotFillTheMemory) {
    std::string text = headerText();
    for (int i = 0; i < 1000; ++i) {
        text += kestrel_wire::formatRecord(1, "channel" + std::to_string(i) + " 1");
    }
    const Summary summary = summaryOf(text);
    EXPECT_EQ(summary.channels.size(), Summary::maxChannels);
    EXPECT_EQ(summary.otherLines, 1000 - Summary::maxChannels);
}

TEST(Cut, isARecordingWithTheTimesOfTheOther) {
    const std::string first = frame(1000000, {"fr 1", "6dmt 0"});
    const std::string second = frame(2000000, {"fr 2", "6dmt \xff"});
    const std::string third = frame(3000000, {"fr 3"});
    const std::string mark = kestrel_wire::formatClockMark({1500000, 77});
    const std::string whole = headerText() + first + mark + second + third;
    EXPECT_EQ(cut(whole, 0, UINT64_MAX), whole);
    CutReport report;
    EXPECT_EQ(cut(whole, 1000001, 2000000, &report), headerText() + mark + second);
    EXPECT_EQ(report.frames, 1U);
    EXPECT_EQ(report.outcome.ending, Ending::Whole);
    EXPECT_EQ(cut(whole, 0, 1999999), headerText() + first);
    EXPECT_FALSE(report.recorded.has_value());
}

TEST(Cut, ofARangeWithoutAFrameTellsWhereTheFramesAre) {
    const std::string whole =
        headerText() + frame(2000000, {"fr 1", "6dmt 0"}) + frame(3000000, {"fr 2"});
    for (const auto& [from, to] : {std::pair<std::uint64_t, std::uint64_t>(0, 1999999),
                                   {2000001, 2999999},
                                   {3000001, UINT64_MAX}}) {
        CutReport report;
        EXPECT_EQ(cut(whole, from, to, &report), headerText());
        EXPECT_EQ(report.frames, 0U);
        ASSERT_TRUE(report.recorded.has_value()) << from;
        EXPECT_EQ(report.recorded->from, 2000000U) << from;
        EXPECT_EQ(report.recorded->to, 3000000U) << from;
    }
    CutReport report;
    EXPECT_EQ(cut(headerText(), 0, UINT64_MAX, &report), headerText());
    EXPECT_FALSE(report.recorded.has_value());
    // What is behind the range is read for its times alone.
    EXPECT_EQ(cut(whole + "x\n", 0, 1, &report), headerText());
    EXPECT_EQ(report.outcome.ending, Ending::Whole);
    EXPECT_EQ(report.recorded->to, 3000000U);
}

TEST(Cut, keepsTheVersion) {
    kestrel_wire::RecordingHeader header = recordingtexts::header();
    header.start.reset();
    header.parameters = {{"a \"b\"", "c\\"}};
    const std::string whole = kestrel_wire::formatRecordingHeader(header) + frame(5, {"fr 1"});
    EXPECT_EQ(cut(whole, 0, 5), whole);
}

TEST(Cut, ofARecordingAtFaultHasWhatIsBeforeIt) {
    CutReport report;
    const std::string good = headerText() + frame(1, {"fr 1"});
    EXPECT_EQ(cut(good + "x\n", 0, 9, &report), good);
    EXPECT_EQ(report.outcome.ending, Ending::Malformed);
    EXPECT_EQ(report.outcome.line, 9U);
    EXPECT_EQ(cut(good + "2 fr fr 2", 0, 9, &report), good);
    EXPECT_EQ(report.outcome.ending, Ending::Truncated);
    EXPECT_EQ(cut("nonsense\n", 0, 9, &report), "");
    EXPECT_EQ(report.outcome.ending, Ending::Malformed);
}

TEST(OpenRecording, refusesWhatMayNeverEnd) {
    const std::string pipe = testing::TempDir() + "kestrel_recording_pipe";
    std::remove(pipe.c_str());
    ASSERT_EQ(::mkfifo(pipe.c_str(), S_IRUSR | S_IWUSR), 0);
    for (const std::string& path : {pipe, testing::TempDir(), std::string("/dev/zero")}) {
        std::ifstream file;
        std::string error;
        EXPECT_FALSE(kestrel_recording::openRecording(path, file, error)) << path;
        EXPECT_EQ(error, "only an ordinary file can be read, not a folder, pipe or device");
    }
    std::remove(pipe.c_str());
    std::ifstream file;
    std::string error;
    EXPECT_FALSE(kestrel_recording::openRecording("/no/such/file", file, error));
    EXPECT_FALSE(error.empty());
}
