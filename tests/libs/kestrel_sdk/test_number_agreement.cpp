#include "KestrelParse.h"
#include "KestrelPick.h"
#include "tests/libs/kestrel_sdk/agreement.h"

#include <array>
#include <cerrno>
#include <cfenv>
#include <clocale>
#include <cstdio>
#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

using namespace KestrelSDK_Parse;

namespace {

/// Sets the process's locale for one test.
class LocaleScope {
public:
    explicit LocaleScope(const char* name)
        : m_set(std::setlocale(LC_ALL, name) != nullptr) {}
    ~LocaleScope() { std::setlocale(LC_ALL, "C"); }
    LocaleScope(const LocaleScope&) = delete;
    LocaleScope& operator=(const LocaleScope&) = delete;
    bool set() const { return m_set; }

private:
    bool m_set;
};

std::string difference(std::string text) {
    return Agreement::difference(text.data());
}

const std::vector<std::string>& oddities() {
    static const std::vector<std::string> texts = {"",
                                                   " ",
                                                   "0",
                                                   "-0",
                                                   "+0",
                                                   "00",
                                                   "+-1",
                                                   "- 1",
                                                   "--1",
                                                   "1-",
                                                   "1+1",
                                                   "\t\n\v\f\r 1",
                                                   "\b1",
                                                   "0x",
                                                   "0X",
                                                   "0x1",
                                                   "-0x1",
                                                   "0xg",
                                                   "0x.8",
                                                   "0x1p",
                                                   "0x1p+",
                                                   "0x1p-3",
                                                   "0x1.8p1",
                                                   "0x1.fffffffffffffp1023",
                                                   "0x1p1024",
                                                   "0x1p-1074",
                                                   "0x1p-1075",
                                                   "0x.p1",
                                                   "0xABCDEFabcdef",
                                                   "0b1",
                                                   "0b",
                                                   "0o7",
                                                   "08",
                                                   "0777",
                                                   "-0777",
                                                   ".",
                                                   "-.",
                                                   "+.",
                                                   ".5",
                                                   "-.5",
                                                   "5.",
                                                   "5.e1",
                                                   ".e1",
                                                   "1.5.5",
                                                   "1..5",
                                                   "1,5",
                                                   "1.5,5",
                                                   "1'000",
                                                   "1_000",
                                                   "e5",
                                                   "1e",
                                                   "1e+",
                                                   "1e-",
                                                   "1e5",
                                                   "1E5",
                                                   "1e+05",
                                                   "1e-05",
                                                   "1e5.5",
                                                   "1ee5",
                                                   "1.e",
                                                   "1.5e1x",
                                                   "1e00000000005",
                                                   "1e22",
                                                   "1e23",
                                                   "1e-22",
                                                   "1e-23",
                                                   "123456789012345e22",
                                                   "9007199254740992e22",
                                                   "9007199254740993",
                                                   "9007199254740991e-22",
                                                   "1e308",
                                                   "1e309",
                                                   "-1e309",
                                                   "1.7976931348623157e308",
                                                   "1.7976931348623159e308",
                                                   "2.2250738585072014e-308",
                                                   "2.2250738585072011e-308",
                                                   "4.9e-324",
                                                   "2.4703282292062327e-324",
                                                   "2.4703282292062328e-324",
                                                   "1e-400",
                                                   "-1e-400",
                                                   "0e999999999999",
                                                   "1e999999999999",
                                                   "1e-999999999999",
                                                   "inf",
                                                   "-inf",
                                                   "+INF",
                                                   "infinity",
                                                   "INFINITYx",
                                                   "infinit",
                                                   "in",
                                                   "nan",
                                                   "-nan",
                                                   "NaN",
                                                   "nan()",
                                                   "nan(abc)",
                                                   "nan(123)",
                                                   "nan(0x7)",
                                                   "nan(abc",
                                                   "nan(a c)",
                                                   "nan(]",
                                                   "nans",
                                                   "2147483647",
                                                   "2147483648",
                                                   "-2147483648",
                                                   "-2147483649",
                                                   "4294967295",
                                                   "4294967296",
                                                   "-4294967295",
                                                   "9223372036854775807",
                                                   "9223372036854775808",
                                                   "-9223372036854775808",
                                                   "-9223372036854775809",
                                                   "18446744073709551615",
                                                   "18446744073709551616",
                                                   "-18446744073709551615",
                                                   "99999999999999999999999999",
                                                   "999999999",
                                                   "9999999999",
                                                   "999999999999999",
                                                   "9999999999999999",
                                                   "99999999999999999",
                                                   "999999999999999999",
                                                   "9999999999999999999",
                                                   "0.999999999999999",
                                                   "0.9999999999999999",
                                                   "0.99999999999999999",
                                                   "0.0000000000000001",
                                                   "0.00000000000000000000000000000000001",
                                                   "123456789012345.6",
                                                   "1234567.12345678",
                                                   "12345678.12345678",
                                                   "1.00000000000000011102230246251565",
                                                   "1.00000000000000011102230246251566",
                                                   "\xc2\xa0+1",
                                                   "1\xff",
                                                   "\xb2"};
    return texts;
}

/// Spellings as programs write them, with something behind them.
std::string spelledNumber(std::mt19937_64& random) {
    static constexpr std::array<const char*, 12> formats = {"%.3f",  "%.6f",  "%.17g", "%.15e",
                                                            "%g",    "%a",    "%.0f",  "%+.9f",
                                                            " %.4E", "%.12g", "%.20f", "%.40e"};
    static constexpr std::array<const char*, 8> tails = {"", " 1", "]", "e", "x1", ".", "e+", ",5"};
    double value = 0;
    const std::uint64_t bits = random();
    if (random() % 4 == 0) {
        std::memcpy(&value, &bits, sizeof value);
    } else {
        value = static_cast<double>(static_cast<std::int64_t>(bits)) / 4e15;
    }
    std::array<char, 400> text{};
    std::snprintf(text.data(), text.size(), formats[random() % formats.size()], value);
    return text.data() + std::string(tails[random() % tails.size()]);
}

/// Characters of numbers in any order.
std::string characterSoup(std::mt19937_64& random) {
    static const std::string letters = "00112233445566778899....--++eExXpPabcdfinty()_ \t,'[]8";
    std::string text(random() % 26, ' ');
    for (char& c : text) {
        c = letters[random() % letters.size()];
    }
    return text;
}

/// Numbers of the length that rotations have, and those a byte away from one.
std::vector<std::string> rotationNumbers() {
    static const std::string bytes = "0459.:/- +\t,eExX]a\x80\xb0\xff";
    std::vector<std::string> numbers;
    for (const std::string whole : {"0.123456", "-0.987654", "1.000000", "-0.000000", "9.999999"}) {
        numbers.push_back(whole);
        for (std::size_t at = 0; at < whole.size(); ++at) {
            numbers.push_back(whole.substr(0, at) + whole.substr(at + 1));
            for (const char c : bytes) {
                numbers.push_back(whole.substr(0, at) + c + whole.substr(at + 1));
                numbers.push_back(whole.substr(0, at) + c + whole.substr(at));
            }
        }
        for (const char c : bytes) {
            numbers.push_back(whole + c);
        }
    }
    return numbers;
}

/// Empty when a tool's rotation with that number among others is what the C library reads, one
/// number after the other up to the first "]", and is not read when that finds fewer.
std::string differenceOfRotation(const std::string& number, std::size_t place) {
    std::string numbers;
    for (std::size_t i = 0; i < 9; ++i) {
        numbers += (i > 0 ? " " : "") + (i == place ? number : "-0." + std::to_string(111111 * i));
    }
    const std::string block = numbers.substr(0, numbers.find(']'));
    std::array<double, 9> expected{};
    const char* at = block.c_str();
    std::size_t count = 0;
    for (; count < expected.size(); ++count) {
        char* end = nullptr;
        expected[count] = strtod_l(at, &end, Agreement::cLocale());
        if (end == at) {
            break;
        }
        at = end;
    }
    const std::string line = "6dmt2 1 1 [0 1 0 0][1 2 3][" + numbers + "][][0 0 0 0 0 0]";
    KestrelSDK_Datatypes::Kestrel_MeaTool_Type_d tool{};
    const bool isRead =
        KestrelSDK_Pick::meaTool(line.c_str(), 0, tool) == KestrelSDK_Pick::Found::Yes;
    const bool isSame = std::memcmp(tool.rot, expected.data(), sizeof expected) == 0;
    return isRead == (count == expected.size()) && (isSame || !isRead) ? "" : line;
}

void expectGeneratedTextsToAgree(int count) {
    std::mt19937_64 random(20261120);
    for (int i = 0; i < count && !testing::Test::HasFailure(); ++i) {
        EXPECT_EQ(difference(spelledNumber(random)), "");
        EXPECT_EQ(difference(characterSoup(random)), "");
    }
}

} // namespace

TEST(Agreement, oddSpellingsAreReadAsTheCLibraryReadsThem) {
    for (const std::string& text : oddities()) {
        EXPECT_EQ(difference(text), "");
        EXPECT_EQ(difference(text + " 2"), "");
        EXPECT_EQ(difference(" -" + text), "");
    }
}

TEST(Agreement, generatedSpellingsAreReadAsTheCLibraryReadsThem) {
    expectGeneratedTextsToAgree(150000);
}

TEST(Agreement, everyNumberOfDigitsAndDecimalsIsReadAsTheCLibraryReadsIt) {
    const std::string digits = "9876543210123456789012345";
    for (std::size_t whole = 0; whole <= digits.size(); ++whole) {
        for (std::size_t decimals = 0; decimals <= digits.size(); ++decimals) {
            EXPECT_EQ(difference(digits.substr(0, whole) + '.' + digits.substr(0, decimals)), "");
        }
    }
}

TEST(Agreement, everyExponentIsReadAsTheCLibraryReadsIt) {
    for (int exponent = -400; exponent <= 400; ++exponent) {
        for (const char* digits : {"1", "-7.25", "9007199254740993", "123456789.123456789"}) {
            EXPECT_EQ(difference(digits + ("e" + std::to_string(exponent))), "");
        }
    }
}

TEST(Agreement, longRunsOfDigitsAreReadAsTheCLibraryReadsThem) {
    for (const std::size_t length : {100U, 1000U, 20000U}) {
        EXPECT_EQ(difference(std::string(length, '9')), "");
        EXPECT_EQ(difference("0." + std::string(length, '0') + "1"), "");
        EXPECT_EQ(difference("1." + std::string(length, '0') + "1e5"), "");
        EXPECT_EQ(difference(std::string(length, '0') + "7.5"), "");
        EXPECT_EQ(difference("1e" + std::string(length, '1')), "");
    }
}

TEST(Agreement, holdsInEveryRoundingMode) {
    for (const int mode : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO, FE_TONEAREST}) {
        ASSERT_EQ(std::fesetround(mode), 0);
        expectGeneratedTextsToAgree(5000);
        for (const std::string& text : oddities()) {
            EXPECT_EQ(difference(text), "") << "rounding mode " << mode;
        }
    }
    std::fesetround(FE_TONEAREST);
}

TEST(Agreement, holdsInALocaleWithADecimalComma) {
    const LocaleScope german("de_DE.UTF-8");
    ASSERT_TRUE(german.set()) << "the locale de_DE.UTF-8 is missing";
    ASSERT_EQ(std::strtod("1,5", nullptr), 1.5);
    expectGeneratedTextsToAgree(5000);
    for (const std::string& text : oddities()) {
        EXPECT_EQ(difference(text), "");
    }
}

TEST(Agreement, theNumbersOfARotationAreReadAsTheCLibraryReadsThem) {
    for (const int mode : {FE_UPWARD, FE_DOWNWARD, FE_TONEAREST}) {
        ASSERT_EQ(std::fesetround(mode), 0);
        for (const std::string& number : rotationNumbers()) {
            for (const std::size_t place : {0U, 4U, 8U}) {
                EXPECT_EQ(differenceOfRotation(number, place), "") << "rounding mode " << mode;
            }
        }
    }
}

TEST(Agreement, dependsNotOnErrnoAndLeavesItAlone) {
    for (const int before : {0, ERANGE, EINVAL}) {
        for (const char* number : {"1e999", "1e-999", "99999999999999999999", "abc", "1.5"}) {
            errno = before;
            EXPECT_EQ(difference(number), "");
            errno = before;
            std::string text = number;
            int i = 0;
            unsigned int ui = 0;
            double d = 0;
            string_get_i(text.data(), &i);
            string_get_ui(text.data(), &ui);
            string_get_d(text.data(), &d);
            EXPECT_EQ(errno, before) << number;
        }
    }
}
