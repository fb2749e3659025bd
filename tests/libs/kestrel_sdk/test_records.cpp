#include "KestrelDatatypes.h"

#include <cstddef>
#include <gtest/gtest.h>
#include <type_traits>
#include <vector>

using namespace KestrelSDK_Datatypes;

namespace {

template <class... Records>
constexpr bool allPlain = ((std::is_trivially_copyable_v<Records> &&
                            std::is_standard_layout_v<Records> && std::is_trivial_v<Records>)&&...);

bool increasing(const std::vector<std::size_t>& offsets) {
    for (std::size_t i = 1; i < offsets.size(); ++i) {
        if (offsets[i - 1] >= offsets[i]) {
            return false;
        }
    }
    return offsets.front() == 0;
}

template <class Array>
constexpr std::size_t places = std::extent_v<Array>;

} // namespace

TEST(Records, arePlainValues) {
    static_assert(allPlain<Kestrel_Body_Type_d, Kestrel_Wand_Type_d, Kestrel_MeaTool_Type_d,
                           Kestrel_MeaRef_Type_d, Kestrel_Hand_Type_d, Kestrel_Human_Type_d,
                           Kestrel_Inertial_Type_d, Kestrel_Marker_Type_d>);
    const Kestrel_MeaTool_Type_d tool{};
    EXPECT_EQ(tool.quality, 0.0);
}

TEST(Records, holdTheirFieldsInOrder) {
    using Body = Kestrel_Body_Type_d;
    EXPECT_TRUE(increasing(
        {offsetof(Body, id), offsetof(Body, quality), offsetof(Body, loc), offsetof(Body, rot)}));
    using Wand = Kestrel_Wand_Type_d;
    EXPECT_TRUE(increasing({offsetof(Wand, id), offsetof(Wand, quality), offsetof(Wand, num_button),
                            offsetof(Wand, button), offsetof(Wand, num_joystick),
                            offsetof(Wand, joystick), offsetof(Wand, loc), offsetof(Wand, rot)}));
    using Tool = Kestrel_MeaTool_Type_d;
    EXPECT_TRUE(increasing({offsetof(Tool, id), offsetof(Tool, quality), offsetof(Tool, num_button),
                            offsetof(Tool, button), offsetof(Tool, loc), offsetof(Tool, rot),
                            offsetof(Tool, tipradius), offsetof(Tool, cov)}));
    using Reference = Kestrel_MeaRef_Type_d;
    EXPECT_TRUE(increasing({offsetof(Reference, id), offsetof(Reference, quality),
                            offsetof(Reference, loc), offsetof(Reference, rot)}));
    using Hand = Kestrel_Hand_Type_d;
    EXPECT_TRUE(increasing({offsetof(Hand, id), offsetof(Hand, quality), offsetof(Hand, lr),
                            offsetof(Hand, nfinger), offsetof(Hand, loc), offsetof(Hand, rot),
                            offsetof(Hand, finger)}));
    using Human = Kestrel_Human_Type_d;
    EXPECT_TRUE(
        increasing({offsetof(Human, id), offsetof(Human, num_joints), offsetof(Human, joint)}));
    using Inertial = Kestrel_Inertial_Type_d;
    EXPECT_TRUE(
        increasing({offsetof(Inertial, id), offsetof(Inertial, st), offsetof(Inertial, error),
                    offsetof(Inertial, loc), offsetof(Inertial, rot)}));
    using Marker = Kestrel_Marker_Type_d;
    EXPECT_TRUE(
        increasing({offsetof(Marker, id), offsetof(Marker, quality), offsetof(Marker, loc)}));
}

TEST(Records, partsOfHandsAndHumansHoldTheirFieldsInOrder) {
    using Finger = std::remove_reference_t<decltype(Kestrel_Hand_Type_d{}.finger[0])>;
    EXPECT_TRUE(
        increasing({offsetof(Finger, loc), offsetof(Finger, rot), offsetof(Finger, radiustip),
                    offsetof(Finger, lengthphalanx), offsetof(Finger, anglephalanx)}));
    using Joint = std::remove_reference_t<decltype(Kestrel_Human_Type_d{}.joint[0])>;
    EXPECT_TRUE(increasing({offsetof(Joint, id), offsetof(Joint, quality), offsetof(Joint, loc),
                            offsetof(Joint, ang), offsetof(Joint, rot)}));
}

TEST(Records, haveTheirPlaces) {
    EXPECT_EQ(places<decltype(Kestrel_Body_Type_d::loc)>, 3U);
    EXPECT_EQ(places<decltype(Kestrel_Body_Type_d::rot)>, 9U);
    EXPECT_EQ(places<decltype(Kestrel_Wand_Type_d::button)>, 16U);
    EXPECT_EQ(places<decltype(Kestrel_Wand_Type_d::joystick)>, 8U);
    EXPECT_EQ(places<decltype(Kestrel_MeaTool_Type_d::button)>, 16U);
    EXPECT_EQ(places<decltype(Kestrel_MeaTool_Type_d::cov)>, 6U);
    EXPECT_EQ(places<decltype(Kestrel_Hand_Type_d::finger)>, 5U);
    EXPECT_EQ(places<decltype(Kestrel_Human_Type_d::joint)>, 20U);
}
