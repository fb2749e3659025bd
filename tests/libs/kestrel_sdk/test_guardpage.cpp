#include "KestrelParse.h"
#include "tests/libs/kestrel_sdk/lines.h"

#include <array>
#include <cstring>
#include <gtest/gtest.h>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>

namespace {

/// A text whose last byte is the last one of its memory: a step behind it ends the program.
class TextAtTheEdge {
public:
    explicit TextAtTheEdge(std::string_view text)
        : m_page(static_cast<std::size_t>(sysconf(_SC_PAGESIZE)))
        , m_readable((text.size() + m_page) / m_page * m_page) {
        void* memory = mmap(nullptr, m_readable + m_page, PROT_READ | PROT_WRITE,
                            MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED) {
            throw std::bad_alloc();
        }
        m_memory = static_cast<char*>(memory);
        m_text = m_memory + m_readable - text.size();
        std::memcpy(m_text, text.data(), text.size());
        // Not to be written to, either.
        if (mprotect(m_memory, m_readable, PROT_READ) != 0 ||
            mprotect(m_memory + m_readable, m_page, PROT_NONE) != 0) {
            munmap(m_memory, m_readable + m_page);
            throw std::bad_alloc();
        }
    }
    ~TextAtTheEdge() { munmap(m_memory, m_readable + m_page); }
    TextAtTheEdge(const TextAtTheEdge&) = delete;
    TextAtTheEdge& operator=(const TextAtTheEdge&) = delete;

    char* data() { return m_text; }

private:
    std::size_t m_page;
    std::size_t m_readable;
    char* m_memory = nullptr;
    char* m_text = nullptr;
};

/// With its NUL as the last byte.
TextAtTheEdge terminated(const std::string& text) {
    return TextAtTheEdge(std::string_view(text.c_str(), text.size() + 1));
}

/// How many items the scanners find, each tried at every position of the text.
int itemsIn(char* text) {
    using namespace KestrelSDK_Parse;
    std::array<int, 4> ints{};
    std::array<float, 4> floats{};
    std::array<double, 4> doubles{};
    unsigned int number = 0;
    std::string item;
    int items = 0;
    const auto count = [&items](const char* end) { items += end == nullptr ? 0 : 1; };
    char* const end = text + std::strlen(text);
    for (char* at = text; at <= end; ++at) {
        count(string_get_i(at, ints.data()));
        count(string_get_ui(at, &number));
        count(string_get_d(at, doubles.data()));
        count(string_get_f(at, floats.data()));
        for (const char* format : {"idii", "dd", "f", "", "x"}) {
            count(string_get_block(at, format, ints.data(), floats.data(), doubles.data()));
        }
        count(string_get_word(at, item));
        count(string_get_quoted_text(at, item));
        for (const char* parameter : {"b01 x", "status  active", "0", ""}) {
            count(string_cmp_parameter(at, parameter));
        }
    }
    return items;
}

void expectTheSameAtTheEdge(std::string text) {
    TextAtTheEdge edge = terminated(text);
    EXPECT_EQ(itemsIn(edge.data()), itemsIn(text.data())) << text;
}

} // namespace

TEST(GuardPageDeathTest, aStepBehindTheTextEndsTheProgram) {
    TextAtTheEdge edge = terminated("x");
    const volatile char* text = edge.data();
    EXPECT_EQ(text[1], '\0');
    EXPECT_DEATH(static_cast<void>(text[2]), "");
}

TEST(GuardPage, noScannerReadsBehindTheNul) {
    // clang-format off
    for (const char* text :
         {"", "-", "+", "0", "0x", "0x1", "1e", "1e-", "1.", ".", ".5", "1.5e+3", "inf", "infinit",
          "nan(", "  ", "\t\n\v\f\r", "-00017", "12345678901234567890123456789", "1e400",
          "[", "[1", "[1 2", "[1 2.5 3 4]", "[]", "[nan(]", "word", " two words", "\"", "\"quoted\"",
          "b01", "b1 x", "b00", "b01 x   ", "status active", "status   active "}) {
        // clang-format on
        expectTheSameAtTheEdge(text);
    }
}

TEST(GuardPage, noScannerReadsBehindTheNulOfACutText) {
    const std::string whole =
        "b01 x \"quoted text\" [0 -1.25e-3 0x1F 7] 1234567890.123456 nan(1) -inf";
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        expectTheSameAtTheEdge(whole.substr(0, length));
    }
}

TEST(GuardPage, theNextLineIsSoughtInTheBufferAlone) {
    using KestrelSDK_Parse::string_nextline;
    struct Row {
        std::string_view buffer;
        int next; ///< where the next line begins; -1 when there is none
    };
    using namespace std::string_view_literals;
    for (const Row& row : {Row{"a"sv, -1}, Row{"a\n"sv, -1}, Row{"a\r\n\r\n"sv, -1},
                           Row{"a\nb"sv, 2}, Row{"a\n\0"sv, -1}, Row{"a\n\0b"sv, -1},
                           Row{"a\0b\nc"sv, 4}, Row{"\0\n\rb"sv, 3}, Row{"a\0"sv, -1}}) {
        TextAtTheEdge edge(row.buffer);
        const char* next =
            string_nextline(edge.data(), edge.data(), static_cast<int>(row.buffer.size()));
        EXPECT_EQ(next == nullptr ? -1 : next - edge.data(), row.next) << row.buffer;
    }
}

TEST(GuardPage, theParserReadsNothingBehindTheNul) {
    for (const std::string& whole :
         {join("6d 1 [0 0.5]", pose), join("6df2 1 1 [0 1.0 2 3]", pose, "[3 0.5 -0.5 1]"),
          join("6dmt2 1 1 [0 1.0 3 1.5]", pose, "[5][1 2 3 4 5 6]"),
          join("gl 1 [0 0.5 1 1]", pose, pose, "[0.5 10 1 20 2 30]"),
          join("6dj 1 1 [0 1][7 0.5][1 2 3 4 5 6]", rotation), join("3d 1 [4 0.5]", position),
          std::string("fr 12"), std::string("ts 1.25"), std::string("other")}) {
        for (std::size_t length = 0; length <= whole.size(); ++length) {
            TextAtTheEdge edge = terminated(whole.substr(0, length));
            KestrelParser parser;
            char* at = edge.data();
            const bool read = parser.parseLine(&at);
            EXPECT_TRUE(read || length < whole.size()) << whole;
            EXPECT_LE(at, edge.data() + length);
        }
    }
}
