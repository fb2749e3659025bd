#pragma once

#include "libs/kestrel_wire/lineframer.h"

#include <cstdint>
#include <iosfwd>
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
};

/// One received data line. Lines of one datagram carry the same time stamp, later datagrams a
/// later one.
struct Record {
    std::uint64_t microseconds = 0; ///< monotonic; the zero is the writer's choice
    std::string channel;            ///< the line's first word, "-" when it has none
    std::string line;               ///< the whole line as received, first word included
};

/// The data channel of a line: its first word, "-" for a line that is empty or begins with a blank.
std::string_view channelOf(std::string_view line);

/// `text` with "\\", "\n", "\r", "\t" and "\xHH" for backslashes, control characters and all bytes
/// from 127 on.
std::string escaped(std::string_view text);

/// The reverse of escaped(). False when `text` is not of that form.
bool unescape(std::string_view text, std::string& result);

/// The text of a file's beginning, up to and including the line after which the records follow.
std::string formatRecordingHeader(const RecordingHeader& header);

/// One record with its line end; the channel is channelOf(line).
std::string formatRecord(std::uint64_t microseconds, std::string_view line);

/// Reads a recording from a stream that outlives the reader. Holds one line at a time, whatever
/// the size of the file.
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

    static constexpr std::size_t maxParameters = 10000;
    static constexpr std::size_t maxHeaderText = 4096; ///< bytes of a name or value, unescaped

    explicit RecordingReader(std::istream& stream, Contents contents = Contents::Any);

    /// To be called once, before next(). Never returns End: a file that ends inside its header is
    /// malformed, and so is a name or value of more than maxHeaderText.
    Result readHeader(RecordingHeader& header);

    /// The next record. Records whose time stamps go backwards are malformed.
    Result next(Record& record);

    /// True once the file has turned out to end without a line end, as it does when its writer was
    /// killed. The cut line is not handed out.
    bool truncated() const { return m_truncated; }

    const std::string& error() const { return m_error; }

    /// 1-based number of the line that was read last.
    std::size_t lineNumber() const { return m_lineNumber; }

private:
    Result readLine(std::string& line);
    Result malformed(const char* reason);

    std::istream& m_stream;
    Contents m_contents;
    LineFramer m_framer;
    std::vector<char> m_chunk;
    std::string m_error;
    std::size_t m_lineNumber = 0;
    std::uint64_t m_lastTime = 0;
    bool m_truncated = false;
};

} // namespace kestrel_wire
