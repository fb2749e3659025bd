#include "libs/kestrel_wire/printftext.h"

#include <clocale>
#include <cstdarg>
#include <gtest/gtest.h>
#include <string>

namespace {

bool format(std::string& text, std::size_t maxLength, const char* pattern, ...) {
    std::va_list arguments;
    va_start(arguments, pattern);
    const bool good = kestrel_wire::printfText(text, maxLength, pattern, arguments);
    va_end(arguments);
    return good;
}

TEST(PrintfText, numbersHaveADecimalPointInEveryLocale) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    ASSERT_NE(std::setlocale(LC_ALL, "de_DE.UTF-8"), nullptr);
    std::string text;
    EXPECT_TRUE(format(text, 1000, "b%2.2d %.3f %s", 7, -0.125, "x"));
    std::setlocale(LC_ALL, before.c_str());
    EXPECT_EQ(text, "b07 -0.125 x");
}

TEST(PrintfText, lengthsAroundTheInnerBufferAndTheLimitAreExact) {
    std::string text;
    for (const std::size_t length : {0U, 1U, 198U, 199U, 200U, 201U, 1000U}) {
        const std::string input(length, 'x');
        EXPECT_TRUE(format(text, 1000, "%s", input.c_str())) << length;
        EXPECT_EQ(text, input);
    }
    EXPECT_FALSE(format(text, 1000, "%s", std::string(1001, 'x').c_str()));
    EXPECT_TRUE(text.empty());
    EXPECT_FALSE(format(text, 1000, nullptr));
}

} // namespace
