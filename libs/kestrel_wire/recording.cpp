#include "libs/kestrel_wire/recording.h"

#include "libs/kestrel_wire/startswith.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <istream>

namespace kestrel_wire {

namespace {

constexpr std::string_view firstLines[] = {"kestrel-recording 1", "kestrel-recording 2"};
constexpr std::string_view lastHeaderLine = "records";
constexpr std::string_view startIntroduction = "start ";
constexpr std::string_view clockIntroduction = "utc ";
constexpr std::string_view versionIntroduction = "version ";
constexpr std::string_view parameterIntroduction = "parameter ";
constexpr std::array<std::pair<std::string_view, std::string RecordingHeader::*>, 4> versions = {
    {{"system", &RecordingHeader::system},
     {"protocol", &RecordingHeader::protocol},
     {"system_ct", &RecordingHeader::systemCt},
     {"model", &RecordingHeader::model}}};

// a data line whose every byte is escaped, twice (the channel may be the whole line)
constexpr std::size_t maxRecordLength = 8 * maxLineLength + 64;
constexpr std::size_t chunkSize = 64 * 1024;
constexpr std::string_view hexDigits = "0123456789abcdef";

std::string_view takeField(std::string_view& text) {
    const std::size_t blank = text.find(' ');
    const std::string_view word = text.substr(0, blank);
    text.remove_prefix(blank == std::string_view::npos ? text.size() : blank + 1);
    return word;
}

bool unescapeHeaderText(std::string_view text, std::string& result) {
    return unescape(text, result) && result.size() <= RecordingReader::maxHeaderText;
}

bool isSendable(const std::string& headerText) {
    return std::none_of(headerText.begin(), headerText.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < 0x20 || byte == 0x7f;
    });
}

bool isSendable(const std::pair<std::string, std::string>& parameter) {
    return isSendable(parameter.first) && isSendable(parameter.second);
}

bool isSendable(const RecordingHeader& header) {
    return std::all_of(versions.begin(), versions.end(),
                       [&](const auto& version) { return isSendable(header.*version.second); });
}

bool parseVersion(std::string_view text, RecordingHeader& header) {
    const std::string_view name = takeField(text);
    for (const auto& [known, member] : versions) {
        if (name == known) {
            return unescapeHeaderText(text, header.*member);
        }
    }
    return false;
}

// the name is quoted, for it holds blanks
bool parseParameter(std::string_view text, RecordingHeader& header) {
    const std::size_t nameEnd = text.find('"', 1);
    if (text.empty() || text.front() != '"' || nameEnd == std::string_view::npos ||
        text.substr(nameEnd, 2) != "\" ") {
        return false;
    }
    std::string name;
    std::string value;
    if (!unescapeHeaderText(text.substr(1, nameEnd - 1), name) || name.empty() ||
        !unescapeHeaderText(text.substr(nameEnd + 2), value)) {
        return false;
    }
    header.parameters.emplace_back(std::move(name), std::move(value));
    return true;
}

std::string quotedName(std::string_view name) {
    std::string text = "\"";
    for (const char c : escaped(name)) {
        text += c == '"' ? std::string("\\x22") : std::string(1, c);
    }
    return text + "\"";
}

bool isPlain(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x20 && byte < 0x7f && c != '\\';
}

void appendEscape(char c, std::string& text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '\\') {
        text += "\\\\";
    } else if (c == '\n') {
        text += "\\n";
    } else if (c == '\r') {
        text += "\\r";
    } else if (c == '\t') {
        text += "\\t";
    } else {
        text += "\\x";
        text += hexDigits[byte >> 4U];
        text += hexDigits[byte & 0xfU];
    }
}

bool parseHex(std::string_view digits, char& byte) {
    unsigned value = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, failure] = std::from_chars(digits.data(), end, value, 16);
    byte = static_cast<char>(static_cast<unsigned char>(value));
    return digits.size() == 2 && failure == std::errc() && stop == end;
}

} // namespace

std::string_view channelOf(std::string_view line) {
    const std::string_view word = line.substr(0, line.find(' '));
    return word.empty() ? std::string_view("-") : word;
}

std::string escaped(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        // Data lines are plain from end to end: they go in one piece.
        const auto plainEnd = std::find_if_not(text.begin(), text.end(), isPlain);
        const auto plainSize = static_cast<std::size_t>(plainEnd - text.begin());
        result.append(text.substr(0, plainSize));
        text.remove_prefix(plainSize);
        if (!text.empty()) {
            appendEscape(text.front(), result);
            text.remove_prefix(1);
        }
    }
    return result;
}

bool unescape(std::string_view text, std::string& result) {
    result.clear();
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        // Data lines are plain from end to end: they go in one piece.
        const std::size_t backslash = std::min(text.find('\\', i), text.size());
        result.append(text.substr(i, backslash - i));
        i = backslash;
        if (i == text.size()) {
            break;
        }
        if (++i == text.size()) {
            return false;
        }
        char byte = '\0';
        switch (text[i]) {
        case '\\':
            byte = '\\';
            break;
        case 'n':
            byte = '\n';
            break;
        case 'r':
            byte = '\r';
            break;
        case 't':
            byte = '\t';
            break;
        case 'x':
            if (!parseHex(text.substr(i + 1, 2), byte)) {
                return false;
            }
            i += 2;
            break;
        default:
            return false;
        }
        result += byte;
    }
    return true;
}

std::string formatRecordingHeader(const RecordingHeader& header) {
    std::string text(firstLines[header.start ? 1 : 0]);
    text += '\n';
    if (header.start) {
        text.append(startIntroduction).append(formatUtc(*header.start)).append("\n");
    }
    for (const auto& [name, member] : versions) {
        text.append(versionIntroduction).append(name).append(" ");
        text.append(escaped(header.*member)).append("\n");
    }
    for (const auto& [name, value] : header.parameters) {
        text.append(parameterIntroduction).append(quotedName(name)).append(" ");
        text.append(escaped(value)).append("\n");
    }
    return text.append(lastHeaderLine).append("\n");
}

std::string formatRecord(std::uint64_t microseconds, std::string_view line) {
    std::string text = std::to_string(microseconds);
    text.append(" ").append(escaped(channelOf(line)));
    text.append(" ").append(escaped(line)).append("\n");
    return text;
}

RecordingReader::RecordingReader(std::istream& stream, Contents contents)
    : m_stream(stream)
    , m_contents(contents)
    , m_framer(maxRecordLength)
    , m_chunk(chunkSize) {}

std::string formatClockMark(const ClockMark& mark) {
    std::string text(clockIntroduction);
    text.append(std::to_string(mark.microseconds)).append(" ");
    return text.append(formatUtc(mark.utc)).append("\n");
}

RecordingReader::Result RecordingReader::readHeader(RecordingHeader& header) {
    header = RecordingHeader();
    Result result = readLine(m_line);
    const auto* const known = std::find(std::begin(firstLines), std::end(firstLines), m_line);
    if (result == Result::Ok && known == std::end(firstLines)) {
        return malformed("not a recording of a known format");
    }
    m_version = 1 + static_cast<int>(known - std::begin(firstLines));
    while (result == Result::Ok) {
        result = readLine(m_line);
        if (result != Result::Ok || m_line == lastHeaderLine) {
            break;
        }
        result = readHeaderLine(m_line, header);
    }
    if (result == Result::Ok && m_version > 1 && !header.start) {
        return malformed("the header has no start");
    }
    return result == Result::End ? malformed("the file ends inside its header") : result;
}

RecordingReader::Result RecordingReader::readHeaderLine(std::string_view text,
                                                        RecordingHeader& header) {
    const bool isVersion = startsWith(text, versionIntroduction);
    const bool isParameter = startsWith(text, parameterIntroduction);
    if (m_version > 1 && startsWith(text, startIntroduction)) {
        UtcMilliseconds start = 0;
        if (header.start || !parseUtc(text.substr(startIntroduction.size()), start)) {
            return malformed("unreadable start");
        }
        header.start = start;
        m_clock = ClockMark{0, start};
        return Result::Ok;
    }
    if (!isVersion && !isParameter) {
        return malformed("unknown line in the header");
    }
    if (isVersion && !parseVersion(text.substr(versionIntroduction.size()), header)) {
        return malformed("unreadable version");
    }
    if (isParameter && !parseParameter(text.substr(parameterIntroduction.size()), header)) {
        return malformed("unreadable parameter");
    }
    if (m_contents == Contents::Sendable &&
        !(isVersion ? isSendable(header) : isSendable(header.parameters.back()))) {
        return malformed("a control character in a name or value");
    }
    if (header.parameters.size() > maxParameters) {
        return malformed("too many parameters");
    }
    return Result::Ok;
}

RecordingReader::Result RecordingReader::next(Record& record) {
    Result result = readLine(m_line);
    while (result == Result::Ok && m_version > 1 && startsWith(m_line, clockIntroduction)) {
        result = takeClockMark(std::string_view(m_line).substr(clockIntroduction.size()));
        if (result == Result::Ok) {
            result = readLine(m_line);
        }
    }
    if (result != Result::Ok) {
        return result;
    }
    std::string_view rest = m_line;
    result = takeTime(rest, record.microseconds);
    if (result != Result::Ok) {
        return result;
    }
    const std::string_view channel = takeField(rest);
    if (!unescape(channel, record.channel) || !unescape(rest, record.line)) {
        return malformed("unreadable escape");
    }
    if (record.channel != channelOf(record.line)) {
        return malformed("the channel is not that of the line");
    }
    if (m_contents == Contents::Sendable &&
        record.line.find_first_of("\r\n") != std::string::npos) {
        return malformed("a line end inside the line");
    }
    if (record.line.size() > maxLineLength) {
        return malformed("the line is too long");
    }
    return Result::Ok;
}

RecordingReader::Result RecordingReader::takeClockMark(std::string_view text) {
    ClockMark mark;
    const Result result = takeTime(text, mark.microseconds);
    if (result != Result::Ok) {
        return result;
    }
    if (!parseUtc(text, mark.utc)) {
        return malformed("unreadable wall clock");
    }
    m_clock = mark;
    return Result::Ok;
}

// Takes the first word.
RecordingReader::Result RecordingReader::takeTime(std::string_view& text,
                                                  std::uint64_t& microseconds) {
    const std::string_view number = takeField(text);
    const char* const numberEnd = number.data() + number.size();
    const auto [stop, failure] = std::from_chars(number.data(), numberEnd, microseconds);
    if (number.empty() || failure != std::errc() || stop != numberEnd) {
        return malformed("unreadable time stamp");
    }
    if (microseconds < m_lastTime) {
        return malformed("the time stamp goes backwards");
    }
    m_lastTime = microseconds;
    return Result::Ok;
}

RecordingReader::Result RecordingReader::readLine(std::string& line) {
    while (m_error.empty() && !m_framer.takeLine(line)) {
        if (m_framer.overflowed()) {
            ++m_lineNumber;
            return malformed("the line is too long");
        }
        m_stream.read(m_chunk.data(), static_cast<std::streamsize>(m_chunk.size()));
        const auto size = static_cast<std::size_t>(m_stream.gcount());
        if (m_stream.bad()) {
            ++m_lineNumber;
            return malformed("the file cannot be read on");
        }
        if (size == 0) {
            m_truncated = m_framer.pendingSize() > 0;
            return Result::End;
        }
        m_bytesTaken += size;
        m_framer.feed(m_chunk.data(), size);
    }
    if (!m_error.empty()) {
        return Result::Malformed;
    }
    ++m_lineNumber;
    return Result::Ok;
}

RecordingReader::Result RecordingReader::malformed(const char* reason) {
    m_error = reason;
    return Result::Malformed;
}

} // namespace kestrel_wire
