#include "libs/kestrel_recording/csv.h"
#include "tests/libs/kestrel_recording/recordingtexts.h"

#include <gtest/gtest.h>
#include <sstream>

using kestrel_recording::CsvOptions;
using kestrel_recording::CsvReport;
using Ending = kestrel_recording::Outcome::Ending;
using recordingtexts::frame;
using recordingtexts::headerText;
using recordingtexts::twoTools;

namespace {

struct Table {
    CsvReport report;
    std::vector<std::string> rows; // without the header
    std::string text;
};

Table tableOf(const std::string& recording, const CsvOptions& options = {}) {
    std::istringstream stream(recording);
    Table table;
    table.report = kestrel_recording::writeCsv(stream, options,
                                               [&](std::string_view text) {
                                                   table.text += text;
                                                   return true;
                                               },
                                               {});
    std::istringstream lines(table.text);
    std::string line;
    for (std::getline(lines, line); std::getline(lines, line);) {
        table.rows.push_back(line);
    }
    return table;
}

CsvOptions onChannels(const std::vector<std::string>& channels) {
    CsvOptions options;
    options.channels = channels;
    return options;
}

const std::string oneBody = "6dmtr 3 1 [1 1.000][1 2 3][0 1 0 -1 0 0 0 0 1]";

} // namespace

TEST(Csv, hasOneRowPerFrameAndTool) {
    const std::string text =
        headerText() + frame(1500000, {"fr 7", "ts 1.0", "6dcal 0", twoTools}) +
        frame(1516667, {"fr 8", "6dmt2 0 0"}) + frame(1533334, {"fr 9", twoTools});
    const Table table = tableOf(text);
    EXPECT_EQ(table.report.outcome.ending, Ending::Whole);
    EXPECT_EQ(table.report.rows, 4U);
    EXPECT_EQ(table.report.unreadableLines, 0U);
    EXPECT_EQ(table.text,
              "seconds_s,utc,frame,tool,tracked,x_mm,y_mm,z_mm,rx_deg,ry_deg,rz_deg,"
              "qw,qx,qy,qz,buttons,quality,reference\n"
              "1.500000,2026-11-22T03:40:13.845Z,7,M1,1,1.5,-2.25,0.001,-0.000000,0.000000,"
              "-0.000000,1.000000000,0.000000000,0.000000000,0.000000000,5,0.875,\n"
              "1.500000,2026-11-22T03:40:13.845Z,7,M2,0,,,,,,,,,,,2,-1,\n"
              "1.533334,2026-11-22T03:40:13.878Z,9,M1,1,1.5,-2.25,0.001,-0.000000,0.000000,"
              "-0.000000,1.000000000,0.000000000,0.000000000,0.000000000,5,0.875,\n"
              "1.533334,2026-11-22T03:40:13.878Z,9,M2,0,,,,,,,,,,,2,-1,\n");
}

TEST(Csv, everyRowHasAsManyColumnsAsTheHeader) {
    const auto columns = [](std::string_view line) {
        return std::count(line.begin(), line.end(), ',');
    };
    const std::string text =
        headerText() +
        frame(1, {"6dcal 1", "6d 1 [0 1.0][1 2 3][1 0 0 0 1 0 0 0 1]", twoTools, oneBody.c_str()});
    const Table table = tableOf(text, onChannels({"6d", "6dmt2", "6dmtr"}));
    ASSERT_EQ(table.rows.size(), 6U);
    for (const std::string& row : table.rows) {
        EXPECT_EQ(columns(row), columns(kestrel_recording::csvHeader())) << row;
    }
}

TEST(Csv, theReferenceIsThatOfTheRecordedParameters) {
    kestrel_wire::RecordingHeader header = recordingtexts::header();
    header.parameters = {{"measurementtool reference_of_tool b01", "b03"},
                         {"measurementtool reference_of_tool b02", "none"}};
    const std::string frames = frame(1, {"fr 1", twoTools});
    Table table = tableOf(kestrel_wire::formatRecordingHeader(header) + frames);
    ASSERT_EQ(table.rows.size(), 2U);
    EXPECT_EQ(table.rows[0].substr(table.rows[0].rfind(',')), ",MR3");
    EXPECT_EQ(table.rows[1].substr(table.rows[1].rfind(',')), ",none");
    header.parameters = {{"measurementtool reference_of_tool b1", "b010"},
                         {"measurementtool reference_of_tool b02", "b-1"},
                         {"measurementtool reference_of_tool b-2", "b01"},
                         {"measurementtool reference_of_tool ", ""}};
    table = tableOf(kestrel_wire::formatRecordingHeader(header) + frames);
    EXPECT_EQ(table.rows[0].substr(table.rows[0].rfind(',')), ",MR10");
    EXPECT_EQ(table.rows[1].substr(table.rows[1].rfind(',')), ",");
}

TEST(Csv, whatIsNotKnownIsEmpty) {
    kestrel_wire::RecordingHeader header = recordingtexts::header();
    header.start.reset();
    const Table table = tableOf(kestrel_wire::formatRecordingHeader(header) + frame(5, {twoTools}));
    ASSERT_EQ(table.rows.size(), 2U);
    EXPECT_EQ(table.rows[1], "0.000005,,,M2,0,,,,,,,,,,,2,-1,");
}

TEST(Csv, theWallClockIsThatOfTheFrame) {
    const std::string text = headerText() + frame(1000000, {"fr 1", twoTools}) +
                             kestrel_wire::formatClockMark({2000000, 0}) +
                             frame(3000000, {"fr 2", twoTools});
    const Table table = tableOf(text);
    ASSERT_EQ(table.rows.size(), 4U);
    EXPECT_EQ(table.rows[1].substr(9, 24), "2026-11-22T03:40:13.345Z");
    EXPECT_EQ(table.rows[2].substr(9, 24), "1970-01-01T00:00:01.000Z");
}

TEST(Csv, toolsTimesAndChannelsCanBeChosen) {
    std::string text = headerText();
    for (std::uint64_t i = 1; i <= 5; ++i) {
        text += frame(i * 1000000, {"fr 1", twoTools, oneBody.c_str()});
    }
    CsvOptions options;
    options.tools = {2};
    options.range = {2000000, 4000000};
    Table table = tableOf(text, options);
    ASSERT_EQ(table.rows.size(), 3U); // both ends belong to it
    EXPECT_EQ(table.rows[0].substr(0, 9), "2.000000,");
    EXPECT_EQ(table.rows[2].substr(0, 9), "4.000000,");
    for (const std::string& row : table.rows) {
        EXPECT_NE(row.find(",M2,0,"), std::string::npos) << row;
    }
    options.channels = {"6dmt"};
    EXPECT_TRUE(tableOf(text, options).rows.empty());
    options.channels = {"6dmtr"};
    table = tableOf(text, options);
    ASSERT_EQ(table.rows.size(), 3U);
    EXPECT_EQ(table.rows[0], "2.000000,2026-11-22T03:40:14.345Z,1,MR2,1,1,2,3,-0.000000,0.000000,"
                             "90.000000,0.707106781,0.000000000,0.000000000,0.707106781,,1,");
}

TEST(Csv, aFrameWithoutALineHasNoRowsOfTheOneBefore) {
    const std::string text = headerText() + frame(1, {"fr 1", twoTools}) + frame(2, {"fr 2"}) +
                             frame(3, {"fr 3", "6dmt2 2 2 [0 0.875 4"});
    const Table table = tableOf(text);
    EXPECT_EQ(table.rows.size(), 2U);
    EXPECT_EQ(table.report.unreadableLines, 1U);
}

TEST(Csv, anglesAndQuaternionAreThoseOfTheSameRotation) {
    // R = Rx(20) Ry(-30) Rz(100), column by column
    const Table table = tableOf(
        headerText() +
        frame(1, {"6dmt2 1 1 [0 1 0 0][0 0 0][-0.150384 0.955110 -0.255202 -0.852869 -0.004768"
                  " 0.522082 0.497425 0.296198 0.815306][][0 0 0 0 0 0]"}));
    ASSERT_EQ(table.rows.size(), 1U) << table.report.unreadableLines;
    std::vector<double> numbers;
    std::istringstream row(table.rows[0]);
    std::string cell;
    while (std::getline(row, cell, ',')) {
        numbers.push_back(std::strtod(cell.c_str(), nullptr));
    }
    ASSERT_EQ(numbers.size(), 17U); // the last cell is empty
    const double length = numbers[11] * numbers[11] + numbers[12] * numbers[12] +
                          numbers[13] * numbers[13] + numbers[14] * numbers[14];
    EXPECT_NEAR(length, 1.0, 1e-8);
    // The matrix of a quaternion, its first column.
    const double w = numbers[11];
    const double x = numbers[12];
    const double y = numbers[13];
    const double z = numbers[14];
    EXPECT_NEAR(1 - 2 * (y * y + z * z), -0.150384, 1e-2);
    EXPECT_NEAR(2 * (x * y + w * z), 0.955110, 1e-2);
    EXPECT_NEAR(2 * (x * z - w * y), -0.255202, 1e-2);
}

TEST(Csv, aRecordingAtFaultKeepsItsRowsAndIsTold) {
    const std::string good = headerText() + frame(1, {"fr 1", twoTools});
    Table table = tableOf(good + "hello\n" + frame(2, {"fr 2", twoTools}));
    EXPECT_EQ(table.report.outcome.ending, Ending::Malformed);
    EXPECT_EQ(table.report.outcome.line, 10U);
    EXPECT_EQ(table.report.outcome.reason, "unreadable time stamp");
    EXPECT_EQ(table.rows.size(), 2U);
    table = tableOf(good + "2 fr fr");
    EXPECT_EQ(table.report.outcome.ending, Ending::Truncated);
    EXPECT_EQ(table.report.outcome.line, 10U);
    EXPECT_EQ(table.rows.size(), 2U);
    table = tableOf("");
    EXPECT_EQ(table.report.outcome.ending, Ending::Malformed);
    EXPECT_EQ(table.report.outcome.line, 1U);
    EXPECT_EQ(table.text, "");
}

TEST(Csv, ofARangeWithoutAFrameTellsWhereTheFramesAre) {
    const std::string whole =
        headerText() + frame(2000000, {"fr 1", twoTools}) + frame(3000000, {"fr 2", twoTools});
    for (const auto& [from, to] : {std::pair<std::uint64_t, std::uint64_t>(0, 1999999),
                                   {2000001, 2999999},
                                   {3000001, UINT64_MAX}}) {
        CsvOptions options;
        options.range = {from, to};
        const CsvReport report = tableOf(whole, options).report;
        EXPECT_EQ(report.frames, 0U);
        ASSERT_TRUE(report.recorded.has_value()) << from;
        EXPECT_EQ(report.recorded->from, 2000000U) << from;
        EXPECT_EQ(report.recorded->to, 3000000U) << from;
    }
    CsvOptions options;
    options.tools = {9};
    const CsvReport report = tableOf(whole, options).report;
    EXPECT_EQ(report.rows, 0U);
    EXPECT_EQ(report.frames, 2U);
    EXPECT_FALSE(report.recorded.has_value());
}

TEST(Csv, anOutputThatFailsEndsIt) {
    std::istringstream stream(headerText() + frame(1, {"fr 1", twoTools}));
    const CsvReport report =
        kestrel_recording::writeCsv(stream, {}, [](std::string_view) { return false; }, {});
    EXPECT_EQ(report.outcome.ending, Ending::NotWritten);
}

TEST(Csv, itsWatcherStopsIt) {
    std::string text = headerText();
    for (std::uint64_t i = 1; i <= 20000; ++i) {
        text += frame(i, {"fr 1", twoTools});
    }
    std::istringstream stream(text);
    std::uint64_t told = 0;
    std::size_t written = 0;
    const CsvReport report = kestrel_recording::writeCsv(
        stream, {},
        [&](std::string_view piece) {
            written += piece.size();
            return true;
        },
        [&](std::uint64_t bytes) {
            told = bytes;
            return false;
        });
    EXPECT_EQ(report.outcome.ending, Ending::Stopped);
    EXPECT_GE(told, 1024U * 1024U);
    EXPECT_LT(told, 2 * 1024U * 1024U);
    EXPECT_LT(report.rows, 20000U);
}
