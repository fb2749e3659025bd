#include "libs/kestrel_wire/lineframer.h"
#include "libs/kestrel_wire/recording.h"

#include <gtest/gtest.h>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

using kestrel_wire::ClockMark;
using kestrel_wire::Record;
using kestrel_wire::RecordingHeader;
using kestrel_wire::RecordingReader;
using Result = kestrel_wire::RecordingReader::Result;

namespace {

RecordingHeader someHeader() {
    RecordingHeader header;
    header.system = "3.1.0";
    header.protocol = "1.14.0";
    header.systemCt = "3.0.2";
    header.model = "SIM \\ 1";
    header.parameters = {{"measurementtool reference_of_tool b01", "b01"},
                         {"measurementtool output_6dmt", "no"},
                         {"a \"quoted\" name\\", "x"},
                         {"cal type_desc measurementtool", "\"a \"quoted\" text\"\n"}};
    return header;
}

struct ReadAll {
    RecordingHeader header;
    std::vector<Record> records;
    std::vector<std::optional<ClockMark>> clocks; // of each record
    std::uint64_t bytesTaken = 0;
    Result result = Result::Ok;
    bool truncated = false;
    std::size_t lineNumber = 0;
    std::string error;
};

ReadAll readAll(const std::string& text,
                RecordingReader::Contents contents = RecordingReader::Contents::Any) {
    std::istringstream stream(text);
    RecordingReader reader(stream, contents);
    ReadAll all;
    all.result = reader.readHeader(all.header);
    Record record;
    while (all.result == Result::Ok) {
        all.result = reader.next(record);
        if (all.result == Result::Ok) {
            all.records.push_back(record);
            all.clocks.push_back(reader.clock());
        }
    }
    all.truncated = reader.truncated();
    all.lineNumber = reader.lineNumber();
    all.error = reader.error();
    all.bytesTaken = reader.bytesTaken();
    return all;
}

const std::string smallHeader = kestrel_wire::formatRecordingHeader({"1", "2", "3", "m", {}});
constexpr std::size_t smallHeaderLines = 6;
const std::string datedHeader =
    kestrel_wire::formatRecordingHeader({"1", "2", "3", "m", {}, 1795318812345});

} // namespace

TEST(Recording, headerAndRecordsComeBackAsWritten) {
    const std::string garbled("6dmt2 \x01\xff\\ \"x\"\t\r\n\0 end", 22);
    std::string text = kestrel_wire::formatRecordingHeader(someHeader());
    text += kestrel_wire::formatRecord(0, "fr 1");
    text += kestrel_wire::formatRecord(0, "6dmtr 1 0");
    text += kestrel_wire::formatRecord(16667, garbled);
    text += kestrel_wire::formatRecord(18446744073709551615U, "");
    const ReadAll all = readAll(text);
    EXPECT_EQ(all.result, Result::End) << all.error;
    EXPECT_FALSE(all.truncated);
    EXPECT_EQ(all.header.system, "3.1.0");
    EXPECT_EQ(all.header.protocol, "1.14.0");
    EXPECT_EQ(all.header.systemCt, "3.0.2");
    EXPECT_EQ(all.header.model, "SIM \\ 1");
    EXPECT_EQ(all.header.parameters, someHeader().parameters);
    ASSERT_EQ(all.records.size(), 4U);
    EXPECT_EQ(all.records[1].microseconds, 0U);
    EXPECT_EQ(all.records[1].channel, "6dmtr");
    EXPECT_EQ(all.records[1].line, "6dmtr 1 0");
    EXPECT_EQ(all.records[2].microseconds, 16667U);
    EXPECT_EQ(all.records[2].channel, "6dmt2");
    EXPECT_EQ(all.records[2].line, garbled);
    EXPECT_EQ(all.records[3].channel, "-");
    EXPECT_EQ(all.records[3].line, "");
}

TEST(Recording, isPlainText) {
    EXPECT_EQ(kestrel_wire::formatRecord(7, std::string("6d\x80 \\\r\n\t\x1f\0", 10)),
              "7 6d\\x80 6d\\x80 \\\\\\r\\n\\t\\x1f\\x00\n");
    EXPECT_EQ(kestrel_wire::formatRecordingHeader(
                  {"3.1.0", "1.14.0", "3.1.0", "SIM", {{"measurementtool output_6dmt", "no"}}}),
              "kestrel-recording 1\n"
              "version system 3.1.0\n"
              "version protocol 1.14.0\n"
              "version system_ct 3.1.0\n"
              "version model SIM\n"
              "parameter \"measurementtool output_6dmt\" no\n"
              "records\n");
}

TEST(Recording, theChannelIsTheFirstWord) {
    EXPECT_EQ(kestrel_wire::channelOf("6dmt2 1 1"), "6dmt2");
    EXPECT_EQ(kestrel_wire::channelOf("6dmt2"), "6dmt2");
    EXPECT_EQ(kestrel_wire::channelOf(" 6dmt2"), "-");
    EXPECT_EQ(kestrel_wire::channelOf(""), "-");
}

TEST(Recording, aLastLineCutByACrashIsLeftOutAndReported) {
    const std::string whole = smallHeader + "5 fr fr 1\n6 fr fr 2\n";
    for (std::size_t cut = 1; cut <= 9; ++cut) {
        const ReadAll all = readAll(whole.substr(0, whole.size() - cut));
        EXPECT_EQ(all.result, Result::End) << cut << " bytes cut";
        EXPECT_TRUE(all.truncated) << cut << " bytes cut";
        EXPECT_EQ(all.records.size(), 1U) << cut << " bytes cut";
    }
}

TEST(Recording, aFileWithoutRecordsIsWellFormed) {
    const ReadAll all = readAll(smallHeader);
    EXPECT_EQ(all.result, Result::End);
    EXPECT_FALSE(all.truncated);
}

TEST(Recording, aFileThatEndsInsideItsHeaderIsRefused) {
    for (std::size_t size = 0; size < smallHeader.size(); ++size) {
        EXPECT_EQ(readAll(smallHeader.substr(0, size)).result, Result::Malformed) << size;
    }
}

namespace {

class MalformedHeader : public testing::TestWithParam<std::pair<const char*, std::size_t>> {};
class MalformedRecord : public testing::TestWithParam<const char*> {};

} // namespace

TEST_P(MalformedHeader, isRefusedWithItsLineNumber) {
    const ReadAll all = readAll(GetParam().first);
    EXPECT_EQ(all.result, Result::Malformed);
    EXPECT_EQ(all.lineNumber, GetParam().second);
    EXPECT_FALSE(all.error.empty());
}

INSTANTIATE_TEST_SUITE_P(
    Recording, MalformedHeader,
    testing::Values(std::pair("nonsense\n", 1U), std::pair("kestrel-recording 3\nrecords\n", 1U),
                    std::pair("kestrel-recording 2\nrecords\n", 2U),
                    std::pair("kestrel-recording 2\nstart\nrecords\n", 2U),
                    std::pair("kestrel-recording 2\nstart \nrecords\n", 2U),
                    std::pair("kestrel-recording 2\nstart 2026-11-22\nrecords\n", 2U),
                    std::pair("kestrel-recording 2\nstart 2026-11-22T03:40:12.345Z\n"
                              "start 2026-11-22T03:40:12.345Z\nrecords\n",
                              3U),
                    std::pair("kestrel-recording 1\nstart 2026-11-22T03:40:12.345Z\nrecords\n", 2U),
                    std::pair("kestrel-recording 1\nversion\n", 2U),
                    std::pair("kestrel-recording 1\nversion what 1\n", 2U),
                    std::pair("kestrel-recording 1\nversion model a\\q\n", 2U),
                    std::pair("kestrel-recording 1\nversion model a\nhello\n", 3U),
                    std::pair("kestrel-recording 1\nparameter a b\n", 2U),
                    std::pair("kestrel-recording 1\nparameter \"a b\n", 2U),
                    std::pair("kestrel-recording 1\nparameter \"\" b\n", 2U),
                    std::pair("kestrel-recording 1\nparameter \"a\"b\n", 2U),
                    std::pair("kestrel-recording 1\nparameter \"a\" \\x4\n", 2U)));

TEST_P(MalformedRecord, isRefusedWithItsLineNumber) {
    const ReadAll all = readAll(smallHeader + "5 fr fr 1\n" + GetParam() + "\n7 fr fr 3\n");
    EXPECT_EQ(all.result, Result::Malformed);
    EXPECT_EQ(all.records.size(), 1U);
    EXPECT_EQ(all.lineNumber, smallHeaderLines + 2);
    EXPECT_FALSE(all.error.empty());
}

INSTANTIATE_TEST_SUITE_P(Recording, MalformedRecord,
                         testing::Values("", "6", "6 ", "x fr fr 1", "-6 fr fr 1", "6x fr fr 1",
                                         "18446744073709551616 fr fr 1", "4 fr fr 1", "6 fr ts 1",
                                         "6 fr frx 1", "6  fr 1", "6 fr fr \\", "6 fr fr \\q",
                                         "6 fr fr \\x4", "6 fr fr \\xg0", "6 fr fr \\x-1",
                                         "6 \\f fr 1"));

TEST(Recording, aTimeStampMayBeWrittenInAnyWay) {
    const ReadAll all = readAll(smallHeader + "5 fr fr 1\n05 fr fr 2\n5 fr fr 3\n" +
                                std::string(30, '0') + "7 fr fr 4\n7 fr fr 5\n5 fr fr 6\n");
    ASSERT_EQ(all.records.size(), 5U) << all.error;
    EXPECT_EQ(all.records[2].microseconds, 5U);
    EXPECT_EQ(all.records[3].microseconds, 7U);
    EXPECT_EQ(all.records[4].microseconds, 7U);
    EXPECT_EQ(all.error, "the time stamp goes backwards");
    EXPECT_EQ(readAll(smallHeader + std::string(30, '0') + "7 fr fr 1\n6 fr fr 2\n").result,
              Result::Malformed);
    EXPECT_EQ(readAll(smallHeader + "5 fr fr 1\n" + std::string(30, '0') + "7 fr fr 2\n5 fr fr 3\n")
                  .result,
              Result::Malformed);
}

TEST(Recording, aMalformedRecordingStaysMalformed) {
    std::istringstream stream(smallHeader + "bad\n5 fr fr 1\n");
    RecordingReader reader(stream);
    RecordingHeader header;
    Record record;
    ASSERT_EQ(reader.readHeader(header), Result::Ok);
    EXPECT_EQ(reader.next(record), Result::Malformed);
    EXPECT_EQ(reader.next(record), Result::Malformed);
    EXPECT_EQ(reader.lineNumber(), smallHeaderLines + 1);
}

TEST(Recording, aLineWithoutEndIsRefusedBeforeItFillsTheMemory) {
    const ReadAll all = readAll(smallHeader + "5 fr fr " + std::string(2 * 1024 * 1024, 'x'));
    EXPECT_EQ(all.result, Result::Malformed);
    EXPECT_EQ(all.lineNumber, smallHeaderLines + 1);
}

TEST(Recording, theLongestDataLineFitsHoweverItIsEscaped) {
    const std::string longest = "6d " + std::string(kestrel_wire::maxLineLength - 3, '\xff');
    ReadAll all = readAll(smallHeader + kestrel_wire::formatRecord(1, longest));
    ASSERT_EQ(all.records.size(), 1U) << all.error;
    EXPECT_EQ(all.records[0].line, longest);
    const std::string oneWord(kestrel_wire::maxLineLength, '\xff');
    all = readAll(smallHeader + kestrel_wire::formatRecord(1, oneWord));
    EXPECT_EQ(all.records.size(), 1U) << all.error;
    all = readAll(smallHeader + kestrel_wire::formatRecord(1, longest + "x"));
    EXPECT_EQ(all.result, Result::Malformed);
}

TEST(Recording, whatIsToBeSentAgainHasNoControlCharactersInItsHeader) {
    for (const char* line :
         {"version model a\\nkestrel2 ok", "version protocol 1.14.0\\r", "version system \\x00",
          "version system_ct a\\tb", "parameter \"a\" b\\nkestrel2 ok", "parameter \"a\\r\" b",
          "parameter \"a\" \\x7f", "parameter \"a\" \x1b"}) {
        const std::string text = std::string("kestrel-recording 1\n") + line + "\nrecords\n";
        const ReadAll all = readAll(text, RecordingReader::Contents::Sendable);
        EXPECT_EQ(all.result, Result::Malformed) << line;
        EXPECT_EQ(all.lineNumber, 2U) << line;
        EXPECT_EQ(readAll(text).result, Result::End) << line;
    }
    const std::string other = "kestrel-recording 1\nparameter \"a \\xe4\" \\xff \\\\n\nrecords\n";
    EXPECT_EQ(readAll(other, RecordingReader::Contents::Sendable).result, Result::End);
}

TEST(Recording, whatIsToBeSentAgainHasNoLineEndInsideALine) {
    for (const char* line : {"fr 1\r", "fr 1\n6dmt 0", "\n"}) {
        const std::string text = smallHeader + kestrel_wire::formatRecord(1, line);
        const ReadAll all = readAll(text, RecordingReader::Contents::Sendable);
        EXPECT_EQ(all.result, Result::Malformed) << line;
        EXPECT_EQ(all.lineNumber, smallHeaderLines + 1) << line;
        EXPECT_EQ(readAll(text).result, Result::End) << line;
    }
}

TEST(Recording, namesAndValuesOfEnormousLengthAreRefused) {
    const auto result = [](std::size_t nameSize, std::size_t valueSize) {
        return readAll("kestrel-recording 1\nparameter \"" + std::string(nameSize, 'n') + "\" " +
                       std::string(valueSize, 'v') + "\nrecords\n");
    };
    constexpr std::size_t most = RecordingReader::maxHeaderText;
    EXPECT_EQ(result(most, most).result, Result::End);
    EXPECT_EQ(result(most + 1, 1).result, Result::Malformed);
    EXPECT_EQ(result(1, most + 1).result, Result::Malformed);
    EXPECT_EQ(result(1, most + 1).lineNumber, 2U);
}

TEST(Recording, tooManyParametersAreRefused) {
    std::string text = "kestrel-recording 1\n";
    for (std::size_t i = 0; i <= RecordingReader::maxParameters; ++i) {
        text += "parameter \"a\" b\n";
    }
    EXPECT_EQ(readAll(text + "records\n").result, Result::Malformed);
}

TEST(Recording, aStartMakesItVersionTwo) {
    EXPECT_EQ(datedHeader, "kestrel-recording 2\n"
                           "start 2026-11-22T03:40:12.345Z\n"
                           "version system 1\n"
                           "version protocol 2\n"
                           "version system_ct 3\n"
                           "version model m\n"
                           "records\n");
    EXPECT_EQ(kestrel_wire::formatClockMark({60000123, 1795318872346}),
              "utc 60000123 2026-11-22T03:41:12.346Z\n");
    EXPECT_EQ(readAll(datedHeader).header.start, 1795318812345);
    EXPECT_EQ(readAll(smallHeader).header.start, std::nullopt);
}

TEST(Recording, theWallClockIsThatOfTheLastMark) {
    const std::string text = datedHeader + kestrel_wire::formatRecord(5, "fr 1") +
                             kestrel_wire::formatClockMark({60000123, 1795318872346}) +
                             kestrel_wire::formatRecord(60000123, "fr 2") +
                             kestrel_wire::formatRecord(60000123, "6dmt 0") +
                             kestrel_wire::formatClockMark({60000124, 77}) +
                             kestrel_wire::formatClockMark({60000124, 78}) +
                             kestrel_wire::formatRecord(60000124, "fr 3");
    const ReadAll all = readAll(text, RecordingReader::Contents::Sendable);
    EXPECT_EQ(all.result, Result::End) << all.error;
    EXPECT_EQ(all.bytesTaken, text.size());
    EXPECT_EQ(all.lineNumber, 14U);
    ASSERT_EQ(all.records.size(), 4U);
    EXPECT_EQ(all.records[3].line, "fr 3");
    ASSERT_TRUE(all.clocks[0] && all.clocks[1] && all.clocks[2] && all.clocks[3]);
    EXPECT_EQ(all.clocks[0]->at(5), 1795318812345);
    EXPECT_EQ(all.clocks[1]->at(60000123), 1795318872346);
    EXPECT_EQ(all.clocks[2]->at(60000123), 1795318872346);
    EXPECT_EQ(all.clocks[3]->at(60000124), 78);
}

TEST(Recording, versionOneHasNoWallClock) {
    const ReadAll all = readAll(smallHeader + kestrel_wire::formatRecord(5, "fr 1"));
    ASSERT_EQ(all.clocks.size(), 1U);
    EXPECT_FALSE(all.clocks[0]);
    const ReadAll marked = readAll(smallHeader + kestrel_wire::formatClockMark({5, 7}));
    EXPECT_EQ(marked.result, Result::Malformed);
    EXPECT_EQ(marked.lineNumber, smallHeaderLines + 1);
}

TEST(Recording, aClockMarkThatIsNoneIsRefused) {
    for (const char* mark : {"utc", "utc ", "utc 6", "utc 6 ", "utc x 2026-11-22T03:41:12.346Z",
                             "utc  6 2026-11-22T03:41:12.346Z", "utc 6 2026-11-22T03:41:12.346Z ",
                             "utc 6 2026-02-30T03:41:12.346Z", "utc 4 2026-11-22T03:41:12.346Z"}) {
        const ReadAll all = readAll(datedHeader + "5 fr fr 1\n" + mark + "\n7 fr fr 3\n");
        EXPECT_EQ(all.result, Result::Malformed) << mark;
        EXPECT_EQ(all.lineNumber, 9U) << mark;
    }
    const ReadAll later = readAll(datedHeader + "utc 6 2026-11-22T03:41:12.346Z\n5 fr fr 1\n");
    EXPECT_EQ(later.error, "the time stamp goes backwards");
    EXPECT_EQ(later.lineNumber, 9U);
}

TEST(Recording, aCutClockMarkIsACutLastLine) {
    const ReadAll all = readAll(datedHeader + "5 fr fr 1\nutc 6 2026-11");
    EXPECT_EQ(all.result, Result::End);
    EXPECT_TRUE(all.truncated);
    EXPECT_EQ(all.records.size(), 1U);
}

namespace {

// Reads some bytes and fails then, as a disk with a bad sector does.
class FailingBuffer : public std::stringbuf {
public:
    using std::stringbuf::stringbuf;

protected:
    std::streamsize xsgetn(char* bytes, std::streamsize size) override {
        const std::streamsize read = std::stringbuf::xsgetn(bytes, size);
        return read == size ? read : throw std::runtime_error("unreadable");
    }
};

} // namespace

TEST(Recording, aReaderComesBackToAnyPlace) {
    RecordingHeader header = someHeader();
    header.start = 1795318812345;
    std::string text = formatRecordingHeader(header);
    for (std::uint64_t i = 0; i < 3000; ++i) { // more than is taken from the stream at once
        if (i % 1000 == 500) {
            text += kestrel_wire::formatClockMark({i * 10, 1795318812345 + static_cast<int>(i)});
        }
        text +=
            kestrel_wire::formatRecord(i * 10, "6d " + std::to_string(i) + std::string(40, ' '));
    }
    text += "30000 fr"; // cut
    std::istringstream stream(text);
    RecordingReader reader(stream);
    ASSERT_EQ(reader.readHeader(header), Result::Ok);
    std::vector<RecordingReader::Place> places = {reader.place()};
    std::vector<Record> records;
    Record record;
    while (reader.next(record) == Result::Ok) {
        records.push_back(record);
        places.push_back(reader.place());
    }
    ASSERT_EQ(records.size(), 3000U);
    EXPECT_TRUE(reader.truncated());
    for (const std::size_t i : {2999U, 0U, 500U, 1U, 501U, 2500U}) {
        reader.goTo(places[i]);
        EXPECT_FALSE(reader.truncated());
        EXPECT_EQ(reader.place().offset, places[i].offset);
        ASSERT_EQ(reader.next(record), Result::Ok) << reader.error();
        EXPECT_EQ(record.microseconds, records[i].microseconds);
        EXPECT_EQ(record.line, records[i].line);
        EXPECT_EQ(reader.lineNumber(), places[i + 1].lineNumber);
        ASSERT_TRUE(reader.clock());
        EXPECT_EQ(reader.clock()->microseconds, i < 500 ? 0 : i < 1500 ? 5000 : 25000);
    }
}

TEST(Recording, aReaderComesBackFromAFault) {
    std::istringstream stream(formatRecordingHeader(someHeader()) +
                              kestrel_wire::formatRecord(5, "fr 1") + "nonsense\n");
    RecordingReader reader(stream);
    RecordingHeader header;
    Record record;
    ASSERT_EQ(reader.readHeader(header), Result::Ok);
    const RecordingReader::Place place = reader.place();
    EXPECT_EQ(reader.next(record), Result::Ok);
    EXPECT_EQ(reader.next(record), Result::Malformed);
    const std::size_t line = reader.lineNumber();
    reader.goTo(place);
    EXPECT_EQ(reader.error(), "");
    EXPECT_EQ(reader.next(record), Result::Ok);
    EXPECT_EQ(record.line, "fr 1");
    EXPECT_EQ(reader.next(record), Result::Malformed);
    EXPECT_EQ(reader.lineNumber(), line);
}

TEST(Recording, aFileThatCannotBeReadOnIsNotTakenForItsEnd) {
    std::string text = smallHeader;
    for (std::uint64_t i = 0; i < 20000; ++i) { // more than is read at once
        text += kestrel_wire::formatRecord(i, "fr 1");
    }
    FailingBuffer buffer(text);
    std::istream stream(&buffer);
    RecordingReader reader(stream);
    RecordingHeader header;
    Record record;
    ASSERT_EQ(reader.readHeader(header), Result::Ok);
    Result result = Result::Ok;
    while (result == Result::Ok) {
        result = reader.next(record);
    }
    EXPECT_EQ(result, Result::Malformed);
    EXPECT_GT(record.microseconds, 0U);
    EXPECT_EQ(reader.error(), "the file cannot be read on");
}
