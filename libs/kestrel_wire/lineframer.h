#pragma once

#include <cstddef>
#include <string>

namespace kestrel_wire {

/// Longest command, reply or data line that is taken, without its line end.
inline constexpr std::size_t maxLineLength = 64 * 1024;

/// Cuts a byte stream into lines ended by "\n"; a "\r" right before it is dropped. The pieces in
/// which the bytes arrive make no difference to the result.
///
/// A line longer than the limit, whether its end has arrived or not, is an overflow: the complete
/// lines before it can still be taken, everything from it on is dropped. There is no way to find
/// back into such a stream, so the owner closes it. Take all lines after each feed(): the framer
/// holds at most one unfinished line of the limit's length besides the lines not yet taken.
class LineFramer {
public:
    explicit LineFramer(std::size_t maxLength = maxLineLength);

    /// Appends received bytes. False when the stream has overflowed, now or earlier.
    bool feed(const char* data, std::size_t size);

    /// Moves the oldest complete line, without its end, into `line`. False (and `line` untouched)
    /// when there is none.
    bool takeLine(std::string& line);

    bool overflowed() const { return m_overflowed; }

    /// Number of bytes of the line that has no end yet.
    std::size_t pendingSize() const;

    /// Forgets everything, overflow included.
    void clear();

private:
    std::string m_buffer;
    std::size_t m_maxLength;
    std::size_t m_taken = 0;     // bytes of m_buffer that were handed out
    std::size_t m_lineStart = 0; // start of the line that has no end yet
    bool m_overflowed = false;
};

} // namespace kestrel_wire
