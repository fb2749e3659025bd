#include "libs/kestrel_recording/numbertext.h"
#include "libs/kestrel_recording/quaternion.h"

#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>

using kestrel_recording::appendNumber;
using kestrel_recording::appendSeconds;
using kestrel_recording::quaternionOf;

namespace {

std::string shortest(double number) {
    std::string text;
    appendNumber(number, text);
    return text;
}

std::string fixed(double number, int decimals) {
    std::string text;
    appendNumber(number, decimals, text);
    return text;
}

// Column by column.
std::array<double, 9> matrixOf(const std::array<double, 4>& q) {
    const auto [w, x, y, z] = q;
    return {1 - 2 * (y * y + z * z), 2 * (x * y + w * z),     2 * (x * z - w * y),
            2 * (x * y - w * z),     1 - 2 * (x * x + z * z), 2 * (y * z + w * x),
            2 * (x * z + w * y),     2 * (y * z - w * x),     1 - 2 * (x * x + y * y)};
}

} // namespace

TEST(NumberText, isReadBackAsItWas) {
    EXPECT_EQ(shortest(12.345), "12.345");
    EXPECT_EQ(shortest(-0.1), "-0.1");
    EXPECT_EQ(shortest(100000), "100000");
    EXPECT_EQ(shortest(1e-7), "0.0000001");
    EXPECT_EQ(shortest(std::numeric_limits<double>::max()).size(), 309U);
    EXPECT_EQ(std::strtod(shortest(-5e-324).c_str(), nullptr), -5e-324);
    EXPECT_EQ(std::strtod(shortest(-2.2250738585072011e-308).c_str(), nullptr),
              -2.2250738585072011e-308);
    EXPECT_EQ(shortest(std::numeric_limits<double>::quiet_NaN()), "nan");
    EXPECT_EQ(shortest(-std::numeric_limits<double>::quiet_NaN()), "nan");
    EXPECT_EQ(shortest(-std::numeric_limits<double>::infinity()), "-inf");
}

TEST(NumberText, hasFixedDecimals) {
    EXPECT_EQ(fixed(1.0, 6), "1.000000");
    EXPECT_EQ(fixed(0.125, 2), "0.12");
    EXPECT_EQ(fixed(std::numeric_limits<double>::quiet_NaN(), 6), "nan");
    EXPECT_EQ(fixed(std::numeric_limits<double>::max(), 9).size(), 319U);
}

TEST(NumberText, secondsHaveSixDecimals) {
    for (const auto& [microseconds, expected] :
         {std::pair<std::uint64_t, const char*>(0, "0.000000"),
          {999999, "0.999999"},
          {1000000, "1.000000"},
          {61000007, "61.000007"},
          {UINT64_MAX, "18446744073709.551615"}}) {
        std::string text;
        appendSeconds(microseconds, text);
        EXPECT_EQ(text, expected);
    }
}

TEST(Quaternion, isThatOfTheRotation) {
    // All sixteen corners and the axes: each of the four numbers is the largest once.
    for (int i = 1; i < 3 * 3 * 3 * 3; ++i) {
        const auto digit = [i](int power) { return i / power % 3 - 1; };
        std::array<double, 4> q = {double(digit(1)), double(digit(3)), double(digit(9)),
                                   double(digit(27))};
        const double length = std::sqrt(q[0] * q[0] + q[1] * q[1] + q[2] * q[2] + q[3] * q[3]);
        if (length == 0.0) {
            continue;
        }
        for (double& number : q) {
            number /= length;
        }
        const std::array<double, 9> expected = matrixOf(q);
        double rot[9];
        std::copy(expected.begin(), expected.end(), rot);
        const std::array<double, 4> found = quaternionOf(rot);
        EXPECT_GE(found[0], 0.0);
        const std::array<double, 9> again = matrixOf(found);
        for (std::size_t k = 0; k < 9; ++k) {
            EXPECT_NEAR(again[k], expected[k], 1e-12) << i;
        }
    }
}

TEST(Quaternion, ofWhatIsNoRotationIsAUnitOneOrNone) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    for (const double number : {0.0, 1.0, -1.0, 1e300, -1e300, nan, inf, -inf}) {
        double rot[9];
        std::fill(std::begin(rot), std::end(rot), number);
        const std::array<double, 4> q = quaternionOf(rot);
        const double length = q[0] * q[0] + q[1] * q[1] + q[2] * q[2] + q[3] * q[3];
        const bool isNone =
            std::isnan(q[0]) && std::isnan(q[1]) && std::isnan(q[2]) && std::isnan(q[3]);
        EXPECT_TRUE(isNone || std::abs(length - 1.0) < 1e-12) << number;
    }
}
