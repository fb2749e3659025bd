#include "KestrelParse.h"
#include "tests/libs/kestrel_sdk/agreement.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

void require(bool holds, const std::string& what) {
    if (!holds) {
        std::fprintf(stderr, "%s\n", what.c_str());
        std::abort();
    }
}

bool isWithin(const char* position, const std::string& text) {
    return position == nullptr ||
           (position >= text.data() && position <= text.data() + text.size());
}

} // namespace

/// Numbers are read as the C library reads them; no scanner leaves the text or writes to it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace KestrelSDK_Parse;
    std::string text(data, data + size);
    text.resize(text.find('\0') == std::string::npos ? text.size() : text.find('\0'));
    text.shrink_to_fit();
    const std::string before = text;
    const std::string difference = Agreement::difference(text.data());
    require(difference.empty(), difference);
    std::array<int, 4> ints{};
    std::array<float, 4> floats{};
    std::array<double, 4> doubles{};
    for (const char* format : {"idii", "dddd", "fd", "", "x"}) {
        require(isWithin(string_get_block(text.data(), format, ints.data(), floats.data(),
                                          doubles.data()),
                         text),
                "a block ends outside the text");
    }
    std::string item;
    require(isWithin(string_get_word(text.data(), item), text), "a word ends outside the text");
    require(isWithin(string_get_quoted_text(text.data(), item), text),
            "a quoted text ends outside the text");
    for (const char* parameter : {"b01 x", "status active", "0", ""}) {
        require(isWithin(string_cmp_parameter(text.data(), parameter), text),
                "a value begins outside the text");
    }
    require(
        isWithin(string_nextline(text.data(), text.data(), static_cast<int>(text.size())), text),
        "a line begins outside the text");
    require(text == before, "a scanner wrote to the text");
    return 0;
}
