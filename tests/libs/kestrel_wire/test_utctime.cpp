#include "libs/kestrel_wire/clockmarks.h"
#include "libs/kestrel_wire/utctime.h"

#include <gtest/gtest.h>
#include <string>

using kestrel_wire::ClockMark;
using kestrel_wire::ClockMarks;
using kestrel_wire::formatUtc;
using kestrel_wire::lastUtc;
using kestrel_wire::parseUtc;
using kestrel_wire::UtcMilliseconds;

TEST(UtcTime, isWrittenAndReadBack) {
    struct Row {
        UtcMilliseconds time;
        const char* text;
    };
    // date -u -d @SECONDS
    const Row rows[] = {{0, "1970-01-01T00:00:00.000Z"},
                        {951782400000, "2000-02-29T00:00:00.000Z"},
                        {951868799999, "2000-02-29T23:59:59.999Z"},
                        {951868800000, "2000-03-01T00:00:00.000Z"},
                        {1795318812345, "2026-11-22T03:40:12.345Z"},
                        {4107542400000, "2100-03-01T00:00:00.000Z"},
                        {lastUtc, "9999-12-31T23:59:59.999Z"}};
    for (const Row& row : rows) {
        EXPECT_EQ(formatUtc(row.time), row.text);
        UtcMilliseconds time = -1;
        EXPECT_TRUE(parseUtc(row.text, time)) << row.text;
        EXPECT_EQ(time, row.time);
    }
}

TEST(UtcTime, everyDayOfFiveCenturiesComesBack) {
    constexpr UtcMilliseconds day = 86400000;
    std::string last;
    for (UtcMilliseconds i = 0; i < 500 * 366; ++i) {
        const std::string text = formatUtc(i * day + 1);
        UtcMilliseconds time = 0;
        ASSERT_TRUE(parseUtc(text, time)) << text;
        ASSERT_EQ(time, i * day + 1);
        ASSERT_LT(last, text);
        last = text;
    }
}

TEST(UtcTime, whatItCannotWriteIsTheNearerEnd) {
    EXPECT_EQ(formatUtc(-1), "1970-01-01T00:00:00.000Z");
    EXPECT_EQ(formatUtc(lastUtc + 1), "9999-12-31T23:59:59.999Z");
}

TEST(UtcTime, otherTextsAreRefused) {
    for (const char* text : {"",
                             "2026-11-22",
                             "2026-11-22T03:40:12Z",
                             "2026-11-22T03:40:12.345",
                             "2026-11-22T03:40:12.345z",
                             "2026-11-22 03:40:12.345Z",
                             "2026-11-22T03:40:12.3456Z",
                             "2026-11-22T03:40:12,345Z",
                             " 2026-11-22T03:40:12.345Z",
                             "2026-11-22T03:40:12.345Z ",
                             "2026-02-29T00:00:00.000Z",
                             "2026-13-01T00:00:00.000Z",
                             "2026-00-01T00:00:00.000Z",
                             "2026-01-00T00:00:00.000Z",
                             "2026-01-32T00:00:00.000Z",
                             "2026-11-22T24:00:00.000Z",
                             "2026-11-22T03:60:00.000Z",
                             "2026-12-31T23:59:60.000Z",
                             "1969-12-31T23:59:59.999Z",
                             "+026-11-22T03:40:12.345Z",
                             "2026-11-22T-3:40:12.345Z"}) {
        UtcMilliseconds time = 7;
        EXPECT_FALSE(parseUtc(text, time)) << text;
        EXPECT_EQ(time, 7) << text;
    }
}

TEST(ClockMark, tellsTheWallClockOfLaterTimeStamps) {
    const ClockMark mark = {5000000, 1000000};
    EXPECT_EQ(mark.at(5000000), 1000000);
    EXPECT_EQ(mark.at(5000999), 1000000);
    EXPECT_EQ(mark.at(6500000), 1001500);
    EXPECT_EQ(mark.at(UINT64_MAX), lastUtc);
    EXPECT_EQ((ClockMark{0, lastUtc}.at(1000)), lastUtc);
}

TEST(ClockMarks, areDueOnceAMinute) {
    ClockMarks marks(1000000);
    EXPECT_FALSE(marks.isDue({0, 1000000}));
    EXPECT_FALSE(marks.isDue({59999999, 1060000}));
    EXPECT_TRUE(marks.isDue({60000000, 1060000}));
    EXPECT_FALSE(marks.isDue({60000000, 1060000}));
    EXPECT_FALSE(marks.isDue({119999999, 1120000}));
    EXPECT_TRUE(marks.isDue({600000000, 1600000})); // no frames for minutes: one mark
    EXPECT_FALSE(marks.isDue({600000001, 1600000}));
}

TEST(ClockMarks, areDueWhenTheClockGoesAnotherWay) {
    ClockMarks marks(1000000);
    EXPECT_FALSE(marks.isDue({1000000, 1001100}));
    EXPECT_FALSE(marks.isDue({1000000, 1000900}));
    EXPECT_TRUE(marks.isDue({1000000, 1001101})); // set forward, or asleep
    EXPECT_FALSE(marks.isDue({2000000, 1002101}));
    EXPECT_TRUE(marks.isDue({2000000, 1002000})); // set back
    EXPECT_TRUE(marks.isDue({2000001, 5}));
    EXPECT_FALSE(marks.isDue({3000001, 1005}));
}
