#pragma once

#include "libs/kestrel_wire/blocklines.h"
#include "libs/kestrel_wire/clockmarks.h"

#include <array>
#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kestrel_wire {

/// What a recording says about the controller that it was taken from.
struct RecordingHeader {
    std::string system;   ///< "version system"
    std::string protocol; ///< "version protocol"
    std::string systemCt; ///< "version system_ct"
    std::string model;    ///< "version model"
    /// Name and value of each recorded parameter, in the order of the file.
    std::vector<std::pair<std::string, std::string>> parameters;
    /// The wall clock at the time stamp 0. Without one the recording is of version 1 and knows no
    /// wall clock at all.
    std::optional<UtcMilliseconds> start = std::nullopt;
};

/// One received data line. Lines of one datagram carry the same time stamp, later datagrams a
/// later one.
struct Record {
    std::uint64_t microseconds = 0; ///< monotonic; the zero is the writer's choice
    std::string channel;            ///< the line's first word, "-" when it has none
    std::string line;               ///< the whole line as received, first word included
};

/// The same where the reader holds it, until its next call. Behind `line` stands a NUL.
struct RecordView {
    std::uint64_t microseconds = 0;
    std::string_view channel;
    std::string_view line;
};

/// The data channel of a line: its first word, "-" for a line that is empty or begins with a blank.
std::string_view channelOf(std::string_view line);

/// `text` with "\\", "\n", "\r", "\t" and "\xHH" for backslashes, control characters and all bytes
/// from 127 on.
std::string escaped(std::string_view text);

/// The reverse of escaped(). False when `text` is not of that form.
bool unescape(std::string_view text, std::string& result);

/// The text of a file's beginning, up to and including the line after which the records follow. The
/// version of the format is 2 when the header has a start, else 1.
std::string formatRecordingHeader(const RecordingHeader& header);

/// One record with its line end; the channel is channelOf(line).
std::string formatRecord(std::uint64_t microseconds, std::string_view line);

/// A clock mark with its line end, for recordings of version 2. It stands between two frames and
/// its time stamp between theirs.
std::string formatClockMark(const ClockMark& mark);

/// Reads a recording of either version from a stream that outlives the reader. Holds one line at a
/// time, whatever the size of the file.
class RecordingReader {
public:
    enum class Result {
        Ok,
        End,      ///< no more records; truncated() tells whether a cut last line was left out
        Malformed ///< see error() and lineNumber(); the reader stays in this state
    };

    enum class Contents {
        Any,
        Sendable ///< malformed are a line end in a data line and a control character in the header:
                 ///< sent again they would be lines of their own
    };

    /// A place between two lines behind the header, to come back to.
    struct Place {
        std::uint64_t offset = 0;       ///< bytes from the stream's beginning
        std::uint64_t microseconds = 0; ///< the last time stamp before it
        std::size_t lineNumber = 0;     ///< of the line before it
        std::optional<ClockMark> clock; ///< see clock()
    };

    static constexpr std::size_t maxParameters = 10000;
    static constexpr std::size_t maxHeaderText = 4096; ///< bytes of a name or value, unescaped
    static constexpr std::size_t plainDigits = 19;     ///< of a time stamp that surely fits

    explicit RecordingReader(std::istream& stream, Contents contents = Contents::Any);

    /// To be called once, before next(). Never returns End: a file that ends inside its header is
    /// malformed, and so is a name or value of more than maxHeaderText.
    Result readHeader(RecordingHeader& header);

    /// The next record; clock marks on the way are taken. Time stamps that go backwards are
    /// malformed.
    Result next(RecordView& record);
    Result next(Record& record); ///< the same as a copy

    /// Where the next line begins. After readHeader(), in a stream that was read from its
    /// beginning.
    Place place() const;

    /// Goes on behind a place of the same stream, which must be able to go back; what came after
    /// it, also a fault, is as if it had not been read yet.
    void goTo(const Place& place);

    /// The last clock mark before the record that was read last, the header's start included. None
    /// in recordings of version 1.
    const std::optional<ClockMark>& clock() const { return m_clock; }

    /// Bytes that were taken from the stream so far; some of them may not have been read yet.
    std::uint64_t bytesTaken() const { return m_lines.bytesTaken(); }

    /// True once the file has turned out to end without a line end, as it does when its writer was
    /// killed. The cut line is not handed out.
    bool truncated() const { return m_truncated; }

    const std::string& error() const { return m_error; }

    /// 1-based number of the line that was read last.
    std::size_t lineNumber() const { return m_lineNumber; }

private:
    Result readLine(std::string_view& line);
    Result readHeaderLine(std::string_view text, RecordingHeader& header);
    Result readEscaped(std::string_view line, RecordView& record);
    Result takeClockMark(std::string_view text);
    bool hasLastTime(std::string_view text) const;
    Result takeTime(std::string_view& text, std::uint64_t& microseconds);
    Result takeNewTime(std::string_view& text, std::uint64_t& microseconds);
    void keepTimeText(std::string_view text);
    Result malformed(const char* reason);

    BlockLines m_lines;
    Contents m_contents;
    std::string m_error;
    std::size_t m_lineNumber = 0;
    Record m_unescaped; // of the record in hand, when it has escapes
    std::optional<ClockMark> m_clock;
    std::uint64_t m_lastTime = 0;
    // Its text with the blank behind it, and the bits that count of so many bytes; size 0: not
    // known.
    std::array<std::uint64_t, 2> m_lastTimeText{};
    std::array<std::uint64_t, 2> m_lastTimeMask{};
    std::size_t m_lastTimeSize = 0;
    int m_version = 0;
    bool m_truncated = false;
};

} // namespace kestrel_wire
