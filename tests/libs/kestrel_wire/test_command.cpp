#include "libs/kestrel_wire/command.h"

#include <gtest/gtest.h>
#include <string>

using kestrel_wire::Command;
using kestrel_wire::CommandKind;
using kestrel_wire::parseCommand;

namespace {

struct Row {
    const char* line;
    CommandKind kind;
    const char* text;
};

class WellFormed : public testing::TestWithParam<Row> {};
class Malformed : public testing::TestWithParam<std::string> {};

} // namespace

TEST_P(WellFormed, isReadIntoVerbAndText) {
    Command command;
    std::string reason = "untouched";
    ASSERT_TRUE(parseCommand(GetParam().line, command, reason)) << reason;
    EXPECT_EQ(command.kind, GetParam().kind);
    EXPECT_EQ(command.text, GetParam().text);
    EXPECT_EQ(reason, "untouched");
}

INSTANTIATE_TEST_SUITE_P(
    Command, WellFormed,
    testing::Values(Row{"kestrel2 get status active", CommandKind::Get, "status active"},
                    Row{"kestrel2 get cal step_pause measurementtool s01", CommandKind::Get,
                        "cal step_pause measurementtool s01"},
                    Row{"kestrel2 set measurementtool number_of_tools 4", CommandKind::Set,
                        "measurementtool number_of_tools 4"},
                    Row{"kestrel2 set data_port 40000", CommandKind::Set, "data_port 40000"},
                    Row{"kestrel2 tracking start", CommandKind::Action, "tracking start"},
                    Row{"kestrel2 cal measurementtool start_step s02", CommandKind::Action,
                        "cal measurementtool start_step s02"},
                    Row{"kestrel2 getaway", CommandKind::Action, "getaway"},
                    Row{"kestrel2  get   status  active  ", CommandKind::Get, "status  active"},
                    Row{"  kestrel2 tracking stop", CommandKind::Action, "tracking stop"}));

TEST_P(Malformed, isRefusedWithAReason) {
    Command command;
    std::string reason;
    EXPECT_FALSE(parseCommand(GetParam(), command, reason));
    EXPECT_FALSE(reason.empty());
}

INSTANTIATE_TEST_SUITE_P(Command, Malformed,
                         testing::Values("", "   ", "kestrel2", "kestrel2   ",
                                         "kestrel tracking start", "kestrel22 get a",
                                         "KESTREL2 get a", "get status active", "kestrel2 get",
                                         "kestrel2 set ", "kestrel2 get\tstatus",
                                         "kestrel2 get a\rb", std::string("kestrel2 get a\0b", 16),
                                         "kestrel2 get a\x7f"));

TEST(Command, comparesWithoutRegardToBlanks) {
    EXPECT_EQ(kestrel_wire::withSingleBlanks("kestrel2 tracking start"), "kestrel2 tracking start");
    EXPECT_EQ(kestrel_wire::withSingleBlanks("  kestrel2   tracking start "),
              "kestrel2 tracking start");
    EXPECT_EQ(kestrel_wire::withSingleBlanks(""), "");
    EXPECT_EQ(kestrel_wire::withSingleBlanks("   "), "");
}

TEST(Command, buildersAndReaderAgree) {
    Command command;
    std::string reason;
    EXPECT_EQ(kestrel_wire::getCommand("status err"), "kestrel2 get status err");
    ASSERT_TRUE(parseCommand(kestrel_wire::setCommand("data_port 5"), command, reason));
    EXPECT_EQ(command.kind, CommandKind::Set);
    EXPECT_EQ(command.text, "data_port 5");
}
