#include "benchmarks/sdk/plainreaders.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>

namespace PlainReaders {
namespace {

char* getInt(char* text, int* value) {
    char* end = nullptr;
    *value = static_cast<int>(std::strtol(text, &end, 0));
    return end == text ? nullptr : end;
}

char* getDouble(char* text, double* value) {
    char* end = nullptr;
    *value = std::strtod(text, &end);
    return end == text ? nullptr : end;
}

char* getBlock(char* text, const char* format, int* ints, double* doubles) {
    char* at = std::strchr(text, '[');
    char* close = at == nullptr ? nullptr : std::strchr(at, ']');
    if (close == nullptr) {
        return nullptr;
    }
    *close = '\0';
    ++at;
    for (; *format != '\0' && at != nullptr; ++format) {
        at = *format == 'i' ? getInt(at, ints++) : getDouble(at, doubles++);
    }
    *close = ']';
    return at == nullptr ? nullptr : close + 1;
}

constexpr int mostButtons = 16;

void setButtons(KestrelSDK_Datatypes::Kestrel_MeaTool_Type_d& tool, int count, int word) {
    tool.num_button = std::min(count, mostButtons);
    std::fill(tool.button + tool.num_button, std::end(tool.button), 0);
    for (int i = 0; i < tool.num_button; ++i) {
        tool.button[i] = (word >> i) & 1;
    }
}

/// Reads numbers of a known spelling, one after another.
class KnownNumbers {
public:
    explicit KnownNumbers(const char* at)
        : m_at(at) {}

    /// Digits up to the next character, which is skipped.
    int integer() {
        int value = 0;
        for (; *m_at >= '0' && *m_at <= '9'; ++m_at) {
            value = value * 10 + (*m_at - '0');
        }
        ++m_at;
        return value;
    }

    /// [-]digits.digits with `decimals` decimals, and the one character behind.
    template <int decimals>
    double fixed() {
        constexpr double powers[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6};
        const bool negative = *m_at == '-';
        m_at += static_cast<int>(negative);
        int value = 0;
        for (; *m_at != '.'; ++m_at) {
            value = value * 10 + (*m_at - '0');
        }
        ++m_at;
        for (int i = 0; i < decimals; ++i) {
            value = value * 10 + (m_at[i] - '0');
        }
        m_at += decimals + 1;
        const auto magnitude = static_cast<double>(value);
        return (negative ? -magnitude : magnitude) / powers[decimals];
    }

    template <int decimals, std::size_t count>
    void block(double (&values)[count]) {
        skip();
        for (double& value : values) {
            value = fixed<decimals>();
        }
    }

    void skip() { ++m_at; }

private:
    const char* m_at;
};

} // namespace

bool readTools2(char* line, ToolTable& table) {
    int tools = 0;
    line = getInt(line, &tools);
    line = line == nullptr ? nullptr : getInt(line, &tools);
    for (int i = 0; i < tools && line != nullptr; ++i) {
        auto& tool = table[static_cast<std::size_t>(i)];
        int header[2] = {};
        double values[2] = {};
        int word = 0;
        if ((line = getBlock(line, "idid", header, values)) == nullptr || header[0] != i ||
            (line = getBlock(line, "ddd", nullptr, tool.loc)) == nullptr ||
            (line = getBlock(line, "ddddddddd", nullptr, tool.rot)) == nullptr ||
            (line = getBlock(line, "i", &word, nullptr)) == nullptr ||
            (line = getBlock(line, "dddddd", nullptr, tool.cov)) == nullptr) {
            return false;
        }
        tool.id = i;
        tool.quality = values[0];
        tool.tipradius = values[1];
        setButtons(tool, header[1], word);
    }
    return line != nullptr;
}

bool readBodies(char* line, BodyTable& table) {
    for (auto& body : table) {
        body.quality = -1.0;
    }
    int bodies = 0;
    line = getInt(line, &bodies);
    for (int i = 0; i < bodies && line != nullptr; ++i) {
        int id = 0;
        double quality = 0;
        if ((line = getBlock(line, "id", &id, &quality)) == nullptr ||
            id >= static_cast<int>(table.size())) {
            return false;
        }
        auto& body = table[static_cast<std::size_t>(id)];
        body.quality = quality;
        if ((line = getBlock(line, "ddd", nullptr, body.loc)) == nullptr ||
            (line = getBlock(line, "ddddddddd", nullptr, body.rot)) == nullptr) {
            return false;
        }
    }
    return line != nullptr;
}

bool readKnownTools2(const char* line, ToolTable& table) {
    KnownNumbers numbers(line);
    numbers.integer();
    const int tools = numbers.integer();
    for (int i = 0; i < tools; ++i) {
        auto& tool = table[static_cast<std::size_t>(i)];
        numbers.skip();
        tool.id = numbers.integer();
        tool.quality = numbers.fixed<3>();
        const int buttons = numbers.integer();
        tool.tipradius = numbers.fixed<3>();
        numbers.block<3>(tool.loc);
        numbers.block<6>(tool.rot);
        numbers.skip();
        setButtons(tool, buttons, numbers.integer());
        numbers.block<5>(tool.cov);
        numbers.skip();
    }
    return true;
}

bool readKnownBodies(const char* line, BodyTable& table) {
    for (auto& body : table) {
        body.quality = -1.0;
    }
    KnownNumbers numbers(line);
    const int bodies = numbers.integer();
    for (int i = 0; i < bodies; ++i) {
        numbers.skip();
        auto& body = table[static_cast<std::size_t>(numbers.integer())];
        body.quality = numbers.fixed<3>();
        numbers.block<3>(body.loc);
        numbers.block<6>(body.rot);
        numbers.skip();
    }
    return true;
}

} // namespace PlainReaders
