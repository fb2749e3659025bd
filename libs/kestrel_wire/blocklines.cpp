#include "libs/kestrel_wire/blocklines.h"

#include <cstring>
#include <istream>

namespace kestrel_wire {

namespace {

constexpr std::size_t blockSize = 64 * 1024;

}

BlockLines::BlockLines(std::istream& stream, std::size_t maxLength)
    : m_stream(stream)
    , m_maxLength(maxLength)
    , m_buffer(2 * blockSize + readableBehind) {}

BlockLines::Result BlockLines::nextSlowly(std::string_view& line) {
    std::size_t searched = m_begin;
    for (;;) {
        char* const text = m_buffer.data();
        const void* const found = std::memchr(text + searched, '\n', m_end - searched);
        if (found != nullptr) {
            const auto lineEnd = static_cast<std::size_t>(static_cast<const char*>(found) - text);
            if (isTooLong(lineEnd)) {
                return Result::TooLong;
            }
            findBackslash();
            m_hasBackslash = m_plainEnd < lineEnd;
            handOut(text + m_begin, lineEnd - m_begin, line);
            return Result::Line;
        }
        if (isTooLong(m_end)) {
            return Result::TooLong;
        }
        searched = m_end - m_begin; // to be there after fill()
        const Result result = fill();
        if (result != Result::Line) {
            return result;
        }
    }
}

// There is hardly ever one: all that has been taken is looked through at once.
void BlockLines::findBackslash() {
    if (m_plainEnd <= m_begin) {
        const char* const text = m_buffer.data();
        const void* const found = std::memchr(text + m_begin, '\\', m_end - m_begin);
        m_plainEnd = found == nullptr
                         ? m_end
                         : static_cast<std::size_t>(static_cast<const char*>(found) - text);
    }
}

void BlockLines::goTo(std::uint64_t offset) {
    m_stream.clear();
    m_stream.seekg(static_cast<std::streamoff>(offset));
    m_begin = 0;
    m_end = 0;
    m_plainEnd = 0;
    m_bytesTaken = offset;
}

// One byte more may still be the "\r" that does not count.
bool BlockLines::isTooLong(std::size_t end) const {
    const std::size_t size = end - m_begin;
    return size > m_maxLength + 1 || (size == m_maxLength + 1 && m_buffer[end - 1] != '\r');
}

// Afterwards the line in hand begins the buffer.
BlockLines::Result BlockLines::fill() {
    std::memmove(m_buffer.data(), m_buffer.data() + m_begin, m_end - m_begin);
    m_end -= m_begin;
    m_begin = 0;
    m_plainEnd = 0;
    if (m_buffer.size() - m_end < blockSize + readableBehind) {
        m_buffer.resize(m_end + blockSize + readableBehind);
    }
    m_stream.read(m_buffer.data() + m_end, static_cast<std::streamsize>(blockSize));
    const auto size = static_cast<std::size_t>(m_stream.gcount());
    if (m_stream.bad()) {
        return Result::Unreadable;
    }
    m_end += size;
    m_bytesTaken += size;
    return size == 0 ? Result::End : Result::Line;
}

} // namespace kestrel_wire
