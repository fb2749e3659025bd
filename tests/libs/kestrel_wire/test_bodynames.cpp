#include "libs/kestrel_wire/bodynames.h"

#include <gtest/gtest.h>

using kestrel_wire::bodyName;
using kestrel_wire::bodyNumber;

TEST(BodyNames, haveTwoDigitsAtLeast) {
    EXPECT_EQ(bodyName(1), "b01");
    EXPECT_EQ(bodyName(10), "b10");
    EXPECT_EQ(bodyName(999), "b999");
}

TEST(BodyNames, areReadWithAnyNumberOfZeros) {
    for (const char* name : {"b7", "b07", "b0007"}) {
        EXPECT_EQ(bodyNumber(name), 7) << name;
    }
    EXPECT_EQ(bodyNumber("b010"), 10);
}

TEST(BodyNames, anythingElseIsNone) {
    for (const char* name :
         {"", "b", "7", "none", "b-1", "b1 ", "b1x", "B1", " b1", "b+1", "b99999999999999999999"}) {
        EXPECT_EQ(bodyNumber(name), 0) << name;
    }
}
