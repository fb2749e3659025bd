#include "benchmarks/sdk/samplelines.h"

#include <array>
#include <cstdio>
#include <random>

namespace {

/// About 1 MB of lines: more than the processor's branch history, less than its second cache.
constexpr std::size_t textBytes = 1000000;

class LineWriter {
public:
    explicit LineWriter(unsigned int seed)
        : m_random(seed) {}

    std::string text;

    template <class Value>
    void append(const char* format, Value value) {
        std::array<char, 64> buffer{};
        std::snprintf(buffer.data(), buffer.size(), format, value);
        text += buffer.data();
    }

    void position() { list(3, 1500.0, "%.3f"); }
    void rotation() { list(9, 1.0, "%.6f"); }
    void covariance() { list(6, 0.5, "%.5f"); }
    int button() { return static_cast<int>(m_random() % 16); }
    double quality() { return static_cast<double>(m_random() % 1001) / 1000.0; }

private:
    void list(int count, double range, const char* format) {
        std::uniform_real_distribution<double> values(-range, range);
        for (int i = 0; i < count; ++i) {
            text += i == 0 ? '[' : ' ';
            append(format, values(m_random));
        }
        text += ']';
    }

    std::mt19937 m_random;
};

template <class WriteLine>
std::vector<std::string> linesWrittenBy(WriteLine writeLine) {
    std::vector<std::string> lines;
    std::size_t bytes = 0;
    for (unsigned int seed = 1; bytes < textBytes || lines.size() < 8; ++seed) {
        LineWriter writer(seed);
        writeLine(writer);
        bytes += writer.text.size();
        lines.push_back(writer.text);
    }
    return lines;
}

} // namespace

SampleLines SampleLines::tools2(int tools) {
    return SampleLines(linesWrittenBy([tools](LineWriter& line) {
        line.append("6dmt2 %d ", tools);
        line.append("%d ", tools);
        for (int i = 0; i < tools; ++i) {
            line.append("[%d ", i);
            line.append("%.3f 4 ", line.quality());
            line.append("%.3f]", 1.5);
            line.position();
            line.rotation();
            line.append("[%d]", line.button());
            line.covariance();
            line.text += ' ';
        }
    }));
}

SampleLines SampleLines::bodies(int bodies) {
    return SampleLines(linesWrittenBy([bodies](LineWriter& line) {
        line.append("6d %d ", bodies);
        for (int i = 0; i < bodies; ++i) {
            line.append("[%d ", i);
            line.append("%.3f]", line.quality());
            line.position();
            line.rotation();
            line.text += ' ';
        }
    }));
}
