#include "KestrelParse.h"
#include "KestrelParser.h"
#include "tests/libs/kestrel_sdk/agreement.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

namespace {

void require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "%s\n", what);
        std::abort();
    }
}

/// A text alone in its memory, so that the address sanitizer sees a step behind its NUL.
class LonelyText {
public:
    explicit LonelyText(std::string_view text)
        : m_before(text)
        , m_bytes(std::make_unique<char[]>(text.size() + 1)) {
        std::copy(text.begin(), text.end(), m_bytes.get());
    }

    char* data() { return m_bytes.get(); }
    bool isUnchanged() const {
        return m_before == std::string_view(m_bytes.get(), m_before.size()) &&
               m_bytes[m_before.size()] == '\0';
    }
    void requireWithin(const char* position, const char* what) const {
        require(position >= m_bytes.get() && position <= m_bytes.get() + m_before.size(), what);
    }
    void requireWithinOrNull(const char* position, const char* what) const {
        if (position != nullptr) {
            requireWithin(position, what);
        }
    }

private:
    std::string_view m_before;
    std::unique_ptr<char[]> m_bytes;
};

/// Numbers are read as the C library reads them; no scanner leaves the text or writes to it.
void checkScanners(std::string_view input) {
    using namespace KestrelSDK_Parse;
    const std::string_view bytes = input.substr(0, input.find('\0'));
    LonelyText text(bytes);
    const std::string difference = Agreement::difference(text.data());
    require(difference.empty(), difference.c_str());
    std::array<int, 4> ints{};
    std::array<float, 4> floats{};
    std::array<double, 4> doubles{};
    for (const char* format : {"idii", "dddd", "fd", "", "x"}) {
        text.requireWithinOrNull(
            string_get_block(text.data(), format, ints.data(), floats.data(), doubles.data()),
            "a block ends outside the text");
    }
    std::string item;
    text.requireWithinOrNull(string_get_word(text.data(), item), "a word ends outside the text");
    text.requireWithinOrNull(string_get_quoted_text(text.data(), item),
                             "a quoted text ends outside the text");
    for (const char* parameter : {"b01 x", "status active", "0", ""}) {
        text.requireWithinOrNull(string_cmp_parameter(text.data(), parameter),
                                 "a value begins outside the text");
    }
    text.requireWithinOrNull(
        string_nextline(text.data(), text.data(), static_cast<int>(bytes.size())),
        "a line begins outside the text");
    require(text.isUnchanged(), "a scanner wrote to the text");
}

bool isCount(int count, int most) {
    return count >= 0 && count <= most;
}

template <class Record>
using Getter = const Record* (KestrelParser::*)(int) const;

/// A table ends where its count says; gives its records to `check`.
template <class Record, class Check>
void checkNamed(const KestrelParser& parser, int count, Getter<Record> get, Check check) {
    require(isCount(count, 65535), "a count is out of bounds");
    require((parser.*get)(count) == nullptr, "there is a record behind the last one");
    for (int i = 0; i < count; ++i) {
        check(*(parser.*get)(i), i);
    }
}

/// As above, for a table whose ids choose the record.
template <class Record, class Check>
void checkTable(const KestrelParser& parser, int count, Getter<Record> get, Check check) {
    checkNamed(parser, count, get, [check](const auto& record, int index) {
        require(record.id == index, "a record has the id of another one");
        check(record);
    });
}

void checkTables(const KestrelParser& parser) {
    const auto any = [](const auto&) {};
    checkTable(parser, parser.getNumBody(), &KestrelParser::getBody, any);
    checkTable(parser, parser.getNumMeaRef(), &KestrelParser::getMeaRef, any);
    checkTable(parser, parser.getNumInertial(), &KestrelParser::getInertial, any);
    checkNamed(parser, parser.getNumMarker(), &KestrelParser::getMarker, [](const auto&, int) {});
    checkTable(parser, parser.getNumMeaTool(), &KestrelParser::getMeaTool,
               [](const auto& tool) { require(isCount(tool.num_button, 16), "too many buttons"); });
    checkTable(parser, parser.getNumWand(), &KestrelParser::getWand, [](const auto& wand) {
        require(isCount(wand.num_button, 8), "too many buttons");
        require(isCount(wand.num_joystick, 8), "too many joystick values");
    });
    checkTable(parser, parser.getNumHand(), &KestrelParser::getHand,
               [](const auto& hand) { require(isCount(hand.nfinger, 5), "too many fingers"); });
    checkTable(parser, parser.getNumHuman(), &KestrelParser::getHuman, [](const auto& human) {
        require(isCount(human.num_joints, 20), "too many joints");
    });
}

/// Whether the line asks for a big table: allowed, but it costs milliseconds and shows nothing that
/// a small one does not. What is beyond the parser's own bound is refused and costs nothing.
bool asksForMuch(char* line) {
    constexpr int parsersBound = 65535;
    int number = 0;
    const auto isMuch = [&](int allowed) { return number > 100 && number <= allowed; };
    char* at = std::strchr(line, ' ');
    for (int count = 0; count < 2 && at != nullptr; ++count) {
        at = KestrelSDK_Parse::string_get_i(at, &number);
        if (isMuch(parsersBound)) {
            return true;
        }
    }
    for (at = std::strchr(line, '['); at != nullptr; at = std::strchr(at + 1, '[')) {
        KestrelSDK_Parse::string_get_i(at + 1, &number);
        if (isMuch(parsersBound - 1)) { // an id
            return true;
        }
    }
    return false;
}

/// Each line of the input is a data line of one frame.
void checkFrame(std::string_view input) {
    KestrelParser parser;
    parser.startFrame();
    while (!input.empty()) {
        const std::size_t size = std::min(input.find('\n'), input.size());
        LonelyText line(input.substr(0, size));
        if (!asksForMuch(line.data())) {
            char* at = line.data();
            parser.parseLine(&at);
            line.requireWithin(at, "it read behind the line");
            require(line.isUnchanged(), "it wrote to the line");
        }
        input.remove_prefix(std::min(size + 1, input.size()));
    }
    checkTables(parser);
    parser.endFrame();
    checkTables(parser);
}

} // namespace

/// A text for the scanners behind a "=", else the lines of a frame.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    if (!input.empty() && input.front() == '=') {
        checkScanners(input.substr(1));
    } else {
        checkFrame(input);
    }
    return 0;
}
