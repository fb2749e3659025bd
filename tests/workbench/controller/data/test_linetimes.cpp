#include "workbench/controller/data/linetimes.h"

#include <chrono>
#include <gtest/gtest.h>
#include <set>
#include <string>

using workbench::BootClock;
using workbench::LineTimes;

namespace {

const BootClock::time_point begin = BootClock::now();

BootClock::time_point after(int milliseconds) {
    return begin + std::chrono::milliseconds(milliseconds);
}

bool anybody(std::string_view) {
    return true;
}

LineTimes::IsWanted only(const std::string& name) {
    return [name](std::string_view channel) { return channel == name; };
}

} // namespace

TEST(LineTimes, knowsNoLineThatHasNotCome) {
    LineTimes times;
    EXPECT_FALSE(times.oldest(anybody).has_value());
    EXPECT_TRUE(times.areAllIn({"fr 1"}, anybody));
    times.add("fr", 4, /*isRefused=*/true, begin);
    EXPECT_FALSE(times.oldest(anybody).has_value());
}

TEST(LineTimes, tellsTheLineThatHasNotComeForTheLongest) {
    LineTimes times;
    times.add("fr", 4, false, after(0));
    times.add("6dmtr", 8, false, after(0));
    times.add("6dmt2", 9, false, after(200));
    times.add("fr", 4, false, after(300));
    const auto oldest = times.oldest(anybody, after(1000));
    ASSERT_TRUE(oldest.has_value());
    EXPECT_EQ(oldest->channel, "6dmtr");
    EXPECT_DOUBLE_EQ(oldest->age, 1.0);
    EXPECT_FALSE(oldest->isRefused);
    const auto wanted = times.oldest(only("6dmt2"), after(1000));
    ASSERT_TRUE(wanted.has_value());
    EXPECT_EQ(wanted->channel, "6dmt2");
    EXPECT_DOUBLE_EQ(wanted->age, 0.8);
    EXPECT_FALSE(times.oldest(only("3d"), after(1000)).has_value());
}

TEST(LineTimes, takesBothFormatsOfTheToolsForOneLine) {
    LineTimes times;
    times.add("6dmt", 8, false, after(0));
    times.add("6dmt2", 9, false, after(500));
    const auto oldest = times.oldest(anybody, after(500));
    ASSERT_TRUE(oldest.has_value());
    EXPECT_EQ(oldest->channel, "6dmt2");
    EXPECT_DOUBLE_EQ(oldest->age, 0.0);
    EXPECT_TRUE(times.areAllIn({"fr 1", "6dmt 0 "}, anybody));
    EXPECT_FALSE(times.areAllIn({"fr 1", "6dmtr 0 "}, anybody));
    EXPECT_TRUE(times.areAllIn({"fr 1", "6dmtr 0 "}, only("fr")));
}

TEST(LineTimes, agesALineWhileItIsRefused) {
    LineTimes times;
    times.add("6dmt2", 100, false, after(0));
    times.add("6dmt2", 20000, true, after(100));
    times.add("6dmt2", 12000, true, after(200));
    const auto oldest = times.oldest(anybody, after(200));
    ASSERT_TRUE(oldest.has_value());
    EXPECT_TRUE(oldest->isRefused);
    EXPECT_DOUBLE_EQ(oldest->age, 0.2);
    const std::string tooLong = "6dmt2 " + std::string(12000 - 6, '0');
    const std::string shorter = "6dmt2 " + std::string(11999 - 6, '0');
    EXPECT_FALSE(times.areAllIn({tooLong}, anybody));
    EXPECT_TRUE(times.areAllIn({shorter}, anybody));
    times.add("6dmt2", 100, false, after(300));
    EXPECT_FALSE(times.oldest(anybody, after(300))->isRefused);
    EXPECT_TRUE(times.areAllIn({tooLong}, anybody));
}

// Why it was refused is not known: the next one may be taken.
TEST(LineTimes, awaitsALineOfUsualLengthThatWasRefused) {
    LineTimes times;
    times.add("6dmt2", 100, false, after(0));
    times.add("6dmt2", 90, true, after(100));
    const std::string line = "6dmt2 " + std::string(94, '0');
    EXPECT_TRUE(times.areAllIn({line}, anybody));
}

TEST(LineTimes, forgets) {
    LineTimes times;
    times.add("fr", 4, false, after(0));
    times.reset();
    EXPECT_FALSE(times.oldest(anybody).has_value());
}
