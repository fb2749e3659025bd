#pragma once

#include <string>
#include <vector>

/// Different data lines of one kind, as a controller writes them frame after frame: one line
/// repeated would let the processor learn it by heart.
class SampleLines {
public:
    static SampleLines tools2(int tools);  ///< "6dmt2"
    static SampleLines bodies(int bodies); ///< "6d"

    /// The next line, over and over; may be written to if it is restored.
    char* next() {
        m_next = (m_next + 1) % m_lines.size();
        return m_lines[m_next].data();
    }
    std::size_t count() const { return m_lines.size(); }

private:
    explicit SampleLines(std::vector<std::string> lines)
        : m_lines(std::move(lines)) {}

    std::vector<std::string> m_lines;
    std::size_t m_next = 0;
};
