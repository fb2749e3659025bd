#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iosfwd>
#include <string_view>
#include <vector>

namespace kestrel_wire {

/// Takes lines ended by "\n" from a stream that outlives it, a block at a time, and hands them out
/// where they lie. A "\r" right before the end is dropped. What cuts a stream of sockets is
/// LineFramer.
class BlockLines {
public:
    enum class Result {
        Line,
        End,       ///< see pendingSize() for a line without an end
        TooLong,   ///< the next line is, and stays so
        Unreadable ///< the stream cannot be read on
    };

    /// `maxLength` of a line without its end; of no longer one more than that is held.
    BlockLines(std::istream& stream, std::size_t maxLength);

    static constexpr std::size_t readableBehind = 16; ///< bytes behind a line, of any value

    /// The next line without its end, with a NUL behind it; valid until the next call.
    Result next(std::string_view& line) {
        // As good as always it is in the buffer, and no backslash before it.
        char* const text = m_buffer.data() + m_begin;
        const auto* const found =
            m_plainEnd > m_begin
                ? static_cast<const char*>(std::memchr(text, '\n', m_plainEnd - m_begin))
                : nullptr;
        const auto size = static_cast<std::size_t>(found - text);
        if (found == nullptr || size > m_maxLength) {
            return nextSlowly(line);
        }
        m_hasBackslash = false;
        handOut(text, size, line);
        return Result::Line;
    }

    /// Whether there is a backslash in the line that was handed out last.
    bool hasBackslash() const { return m_hasBackslash; }

    /// Number of bytes of a line without an end, after End.
    std::size_t pendingSize() const { return m_end - m_begin; }

    /// Bytes that were taken from the stream so far.
    std::uint64_t bytesTaken() const { return m_bytesTaken; }

    /// Where in the stream the next line begins.
    std::uint64_t offset() const { return m_bytesTaken - (m_end - m_begin); }

    /// Goes on at a place of the stream, which must be able to go back.
    void goTo(std::uint64_t offset);

private:
    bool isTooLong(std::size_t end) const;
    Result nextSlowly(std::string_view& line);
    void handOut(char* text, std::size_t size, std::string_view& line) {
        m_begin += size + 1;
        size -= size > 0 && text[size - 1] == '\r' ? 1 : 0;
        text[size] = '\0';
        line = std::string_view(text, size);
    }
    void findBackslash();
    Result fill();

    std::istream& m_stream;
    std::size_t m_maxLength;
    std::vector<char> m_buffer;
    std::size_t m_begin = 0;    // in the buffer, of the next line
    std::size_t m_end = 0;      // in the buffer, of what was taken
    std::size_t m_plainEnd = 0; // in the buffer: from the next line to there is no backslash
    std::uint64_t m_bytesTaken = 0;
    bool m_hasBackslash = false;
};

} // namespace kestrel_wire
