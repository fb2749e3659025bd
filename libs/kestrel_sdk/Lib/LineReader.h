#pragma once

#include "NumberScan.h"

#include <cstring>

namespace KestrelSDK_Parse {

/// So many numbers into consecutive places.
struct NumberList {
    double* first;
    int count;
};

/// Reads the items of one data line in order; private to the library. Every item moves the caller's
/// position behind itself; one that cannot be read leaves the position where it was.
class LineReader {
public:
    explicit LineReader(char*& position)
        : m_position(position) {}

    bool number(int& value) { return moveTo(Numbers::scanAnyInt(m_position, value)); }
    bool number(unsigned int& value) { return moveTo(Numbers::scanAnyUnsigned(m_position, value)); }
    bool number(double& value) { return moveTo(Numbers::scanAnyDouble(m_position, value)); }

    /// The next block "[...]": its first numbers go to `items`, each an int, a double, an array
    /// of doubles or a NumberList; further numbers in the block are ignored.
    template <class... Items>
    bool block(Items&&... items) {
        const char* at = openBlock();
        if (at == nullptr || !(read(at, items) && ...)) {
            return false;
        }
        closeBlock(at);
        return true;
    }

    /// Position and rotation, the two blocks that most objects have in common.
    bool pose(double (&loc)[3], double (&rot)[9]) { return block(loc) && block(rot); }

private:
    bool moveTo(const char* end) {
        if (end != nullptr) {
            m_position += end - m_position;
        }
        return end != nullptr;
    }

    /// Start of the numbers of the next block; null when there is no complete one.
    const char* openBlock() {
        if (m_lastClose == nullptr) {
            findLastClose();
        }
        const char* open = *m_position == '[' ? m_position : std::strchr(m_position, '[');
        return open == nullptr || open >= m_lastClose ? nullptr : open + 1;
    }

    /// No number goes on over a "]", so the first one from `at` on is the block's own.
    void closeBlock(const char* at) {
        const char* close = *at == ']' ? at : std::strchr(at, ']');
        m_position += close + 1 - m_position;
    }

    void findLastClose() {
        const char* close = std::strrchr(m_position, ']');
        m_lastClose = close == nullptr ? m_position : close;
    }

    bool read(const char*& at, int& value) const {
        return (at = Numbers::scanInt(at, value)) != nullptr;
    }
    bool read(const char*& at, double& value) const {
        return (at = Numbers::scanDouble(at, value)) != nullptr;
    }
    template <std::size_t count>
    bool read(const char*& at, double (&values)[count]) const {
        return readAll(at, values, static_cast<int>(count));
    }
    bool read(const char*& at, const NumberList& list) const {
        return readAll(at, list.first, list.count);
    }

    bool readAll(const char*& at, double* values, int count) const {
        for (int i = 0; i < count; ++i) {
            if (!read(at, values[i])) {
                return false;
            }
        }
        return true;
    }

    char*& m_position;
    /// The last "]" of the line, or a position before all blocks; null until the first block.
    const char* m_lastClose = nullptr;
};

} // namespace KestrelSDK_Parse
