#include "libs/kestrel_wire/lineframer.h"

#include <cstring>

namespace kestrel_wire {

LineFramer::LineFramer(std::size_t maxLength)
    : m_maxLength(maxLength) {}

bool LineFramer::feed(const char* data, std::size_t size) {
    const char* const end = data + size;
    while (data != end && !m_overflowed) {
        const auto* lineEnd =
            static_cast<const char*>(std::memchr(data, '\n', static_cast<std::size_t>(end - data)));
        const char* const pieceEnd = lineEnd ? lineEnd : end;
        const auto pieceSize = static_cast<std::size_t>(pieceEnd - data);
        const std::size_t lineSize = pendingSize() + pieceSize;
        // one byte more may still be the "\r" that does not count
        const char last = pieceSize > 0 ? pieceEnd[-1] : m_buffer.empty() ? '\0' : m_buffer.back();
        if (lineSize > m_maxLength + 1 || (lineSize == m_maxLength + 1 && last != '\r')) {
            m_overflowed = true;
            m_buffer.resize(m_lineStart);
            break;
        }
        m_buffer.append(data, pieceSize);
        data = pieceEnd;
        if (lineEnd) {
            m_buffer.push_back('\n');
            m_lineStart = m_buffer.size();
            ++data;
        }
    }
    return !m_overflowed;
}

bool LineFramer::takeLine(std::string& line) {
    if (m_taken == m_lineStart) {
        return false;
    }
    const std::size_t end = m_buffer.find('\n', m_taken);
    std::size_t size = end - m_taken;
    if (size > 0 && m_buffer[end - 1] == '\r') {
        --size;
    }
    line.assign(m_buffer, m_taken, size);
    m_taken = end + 1;
    if (m_taken == m_lineStart) {
        m_buffer.erase(0, m_taken);
        m_taken = 0;
        m_lineStart = 0;
    }
    return true;
}

std::size_t LineFramer::pendingSize() const {
    return m_buffer.size() - m_lineStart;
}

void LineFramer::clear() {
    m_buffer.clear();
    m_taken = 0;
    m_lineStart = 0;
    m_overflowed = false;
}

} // namespace kestrel_wire
