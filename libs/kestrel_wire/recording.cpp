#include "libs/kestrel_wire/recording.h"

#include "libs/kestrel_wire/lineframer.h"
#include "libs/kestrel_wire/startswith.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>

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

// The number of digits that `text` begins with; 0 where it may not fit, or does not begin with one.
std::size_t readDigits(std::string_view text, std::uint64_t& number) {
    number = 0;
    std::size_t count = 0;
    for (; count < text.size() && text[count] >= '0' && text[count] <= '9'; ++count) {
        number = number * 10 + static_cast<std::uint64_t>(text[count] - '0');
    }
    return count <= RecordingReader::plainDigits ? count : 0;
}

bool readNumber(std::string_view text, std::uint64_t& number) {
    const char* const end = text.data() + text.size();
    const auto [stop, failure] = std::from_chars(text.data(), end, number);
    return failure == std::errc() && stop == end;
}

// The number of bytes before the first blank in eight; 8 when there is none.
std::size_t beforeBlank(std::uint64_t eight) {
    constexpr std::uint64_t ones = 0x0101010101010101U;
    const std::uint64_t differences = eight ^ (ones * ' ');
    const std::uint64_t blanks = (differences - ones) & ~differences & (ones << 7U);
    return blanks == 0 ? 8 : static_cast<std::size_t>(__builtin_ctzll(blanks)) / 8;
}

// The bits of so many lowest bytes, up to eight.
std::uint64_t lowBytes(std::size_t count) {
    constexpr std::uint64_t all = ~std::uint64_t{0};
    return count == 0 ? 0 : all >> (8 * (sizeof all - count));
}

// The size of the word that a line of BlockLines says twice, first alone, then as its beginning:
// "fr fr 1". 0 when it does not do so, and for long words. A search and a comparison as for long
// texts would take longer.
std::size_t repeatedWord(std::string_view text) {
    static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the first byte is the lowest");
    static_assert(BlockLines::readableBehind >= 2 * sizeof(std::uint64_t));
    std::uint64_t first = 0;
    std::memcpy(&first, text.data(), sizeof first);
    const std::size_t size = beforeBlank(first);
    const std::size_t end = 2 * size + 1;
    if (size == 0 || size == sizeof first || end > text.size() ||
        (end < text.size() && text[end] != ' ')) {
        return 0;
    }
    std::uint64_t second = 0;
    std::memcpy(&second, text.data() + size + 1, sizeof second);
    return ((first ^ second) & lowBytes(size)) == 0 ? size : 0;
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

std::string formatClockMark(const ClockMark& mark) {
    std::string text(clockIntroduction);
    text.append(std::to_string(mark.microseconds)).append(" ");
    return text.append(formatUtc(mark.utc)).append("\n");
}

RecordingReader::RecordingReader(std::istream& stream, Contents contents)
    : m_lines(stream, maxRecordLength)
    , m_contents(contents) {}

RecordingReader::Result RecordingReader::readHeader(RecordingHeader& header) {
    header = RecordingHeader();
    std::string_view line;
    Result result = readLine(line);
    const auto* const known = std::find(std::begin(firstLines), std::end(firstLines), line);
    if (result == Result::Ok && known == std::end(firstLines)) {
        return malformed("not a recording of a known format");
    }
    m_version = 1 + static_cast<int>(known - std::begin(firstLines));
    while (result == Result::Ok) {
        result = readLine(line);
        if (result != Result::Ok || line == lastHeaderLine) {
            break;
        }
        result = readHeaderLine(line, header);
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

[[gnu::flatten]] RecordingReader::Result RecordingReader::next(RecordView& record) {
    std::string_view rest;
    Result result = readLine(rest);
    while (result == Result::Ok && m_version > 1 && !rest.empty() &&
           rest.front() == clockIntroduction.front() && startsWith(rest, clockIntroduction)) {
        result = takeClockMark(rest.substr(clockIntroduction.size()));
        if (result == Result::Ok) {
            result = readLine(rest);
        }
    }
    if (result != Result::Ok || (result = takeTime(rest, record.microseconds)) != Result::Ok) {
        return result;
    }
    const std::size_t wordSize = repeatedWord(rest);
    if (wordSize > 0 && !m_lines.hasBackslash()) {
        // As good as always there is nothing to unescape.
        record.channel = rest.substr(0, wordSize);
        record.line = rest.substr(wordSize + 1);
    } else if ((result = readEscaped(rest, record)) != Result::Ok) {
        return result;
    }
    if (m_contents == Contents::Sendable &&
        record.line.find_first_of("\r\n") != std::string_view::npos) {
        return malformed("a line end inside the line");
    }
    return record.line.size() > maxLineLength ? malformed("the line is too long") : Result::Ok;
}

RecordingReader::Result RecordingReader::next(Record& record) {
    RecordView view;
    const Result result = next(view);
    if (result == Result::Ok) {
        record.microseconds = view.microseconds;
        record.channel.assign(view.channel);
        record.line.assign(view.line);
    }
    return result;
}

RecordingReader::Result RecordingReader::readEscaped(std::string_view line, RecordView& record) {
    const std::string_view channel = takeField(line);
    if (!unescape(channel, m_unescaped.channel) || !unescape(line, m_unescaped.line)) {
        return malformed("unreadable escape");
    }
    record.channel = m_unescaped.channel;
    record.line = m_unescaped.line;
    return record.channel == channelOf(record.line)
               ? Result::Ok
               : malformed("the channel is not that of the line");
}

RecordingReader::Place RecordingReader::place() const {
    return {m_lines.offset(), m_lastTime, m_lineNumber, m_clock};
}

void RecordingReader::goTo(const Place& place) {
    m_lines.goTo(place.offset);
    m_lastTime = place.microseconds;
    m_lastTimeSize = 0;
    m_lineNumber = place.lineNumber;
    m_clock = place.clock;
    m_truncated = false;
    m_error.clear();
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
    // Lines of one frame have the same.
    if (m_lastTimeSize > 0 && hasLastTime(text)) {
        text.remove_prefix(m_lastTimeSize);
        microseconds = m_lastTime;
        return Result::Ok;
    }
    return takeNewTime(text, microseconds);
}

// The text has no NUL and behind a line stands one, so a line that is shorter differs.
bool RecordingReader::hasLastTime(std::string_view text) const {
    std::array<std::uint64_t, 2> first{};
    static_assert(sizeof first <= BlockLines::readableBehind);
    std::memcpy(first.data(), text.data(), sizeof first);
    return (((first[0] ^ m_lastTimeText[0]) & m_lastTimeMask[0]) |
            ((first[1] ^ m_lastTimeText[1]) & m_lastTimeMask[1])) == 0;
}

RecordingReader::Result RecordingReader::takeNewTime(std::string_view& text,
                                                     std::uint64_t& microseconds) {
    m_lastTimeSize = 0;
    const std::size_t digits = readDigits(text, microseconds);
    if (digits > 0 && digits < text.size() && text[digits] == ' ') {
        keepTimeText(text.substr(0, digits + 1));
        text.remove_prefix(digits + 1);
    } else if (!readNumber(takeField(text), microseconds)) {
        return malformed("unreadable time stamp");
    }
    if (microseconds < m_lastTime) {
        return malformed("the time stamp goes backwards");
    }
    m_lastTime = microseconds;
    return Result::Ok;
}

void RecordingReader::keepTimeText(std::string_view text) {
    if (text.size() > sizeof m_lastTimeText) {
        return; // of more than thirty years
    }
    m_lastTimeSize = text.size();
    std::memcpy(m_lastTimeText.data(), text.data(), sizeof m_lastTimeText);
    constexpr std::size_t word = sizeof(std::uint64_t);
    m_lastTimeMask[0] = lowBytes(std::min(text.size(), word));
    m_lastTimeMask[1] = lowBytes(text.size() - std::min(text.size(), word));
}

RecordingReader::Result RecordingReader::readLine(std::string_view& line) {
    if (!m_error.empty()) {
        return Result::Malformed;
    }
    const BlockLines::Result result = m_lines.next(line);
    if (result == BlockLines::Result::End) {
        m_truncated = m_lines.pendingSize() > 0;
        return Result::End;
    }
    ++m_lineNumber;
    if (result == BlockLines::Result::Line) {
        return Result::Ok;
    }
    return malformed(result == BlockLines::Result::TooLong ? "the line is too long"
                                                           : "the file cannot be read on");
}

RecordingReader::Result RecordingReader::malformed(const char* reason) {
    m_error = reason;
    return Result::Malformed;
}

} // namespace kestrel_wire
