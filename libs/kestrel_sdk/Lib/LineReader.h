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

    bool number(int& value) { return moveTo(Numbers::scanInt(m_position, value)); }
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
        closeBlock();
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
        // As good as always it is here, or behind a blank.
        const char* open = m_position + (*m_position == ' ' ? 1 : 0);
        if (*open != '[') {
            open = std::strchr(open, '[');
        }
        m_close = open == nullptr ? nullptr : std::strchr(open, ']');
        return m_close == nullptr ? nullptr : open + 1;
    }

    /// No number goes on over a "]".
    void closeBlock() { m_position += m_close + 1 - m_position; }

    bool read(const char*& at, int& value) const {
        return (at = Numbers::scanInt(at, value)) != nullptr;
    }
    bool read(const char*& at, double& value) const {
        return (at = Numbers::scanDouble(at, value)) != nullptr;
    }
    bool read(const char*& at, double (&rotation)[9]) const {
        for (double& value : rotation) {
            if ((at = Numbers::scanFraction(at, m_close + 1, value)) == nullptr) {
                return false;
            }
        }
        return true;
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
    const char* m_close = nullptr; ///< "]" of the block in hand
};

} // namespace KestrelSDK_Parse
