#include "recording/options.h"

#include <gtest/gtest.h>

using recording::Command;
using recording::Options;
using recording::ParsedOptions;
using Action = recording::ParsedOptions::Action;

namespace {

ParsedOptions parse(const std::vector<std::string>& arguments) {
    return recording::parseOptions(arguments, "1.2.3");
}

} // namespace

TEST(Options, chooseWhatIsDoneWithWhichFile) {
    for (const auto& [name, command] : {std::pair("info", Command::Info),
                                        {"check", Command::Check},
                                        {"csv", Command::Csv},
                                        {"cut", Command::Cut}}) {
        const ParsedOptions parsed = parse({name, "r"});
        EXPECT_EQ(parsed.action, Action::Run) << parsed.text;
        EXPECT_EQ(parsed.options.command, command);
        EXPECT_EQ(parsed.options.file, "r");
    }
    EXPECT_EQ(parse({"info", "-"}).options.file, "-");
    EXPECT_EQ(parse({"info", "--", "--help"}).options.file, "--help");
}

TEST(Options, haveTheirValuesBesideThemOrBehindThem) {
    const ParsedOptions parsed =
        parse({"csv", "--tool=2", "--tool", "3", "--channel", "6dmtr", "--from=1.5", "--to", "2e3",
               "-o", "out=1", "--force", "--quiet", "r"});
    ASSERT_EQ(parsed.action, Action::Run) << parsed.text;
    const Options& options = parsed.options;
    EXPECT_EQ(options.csv.tools, (std::vector<int>{2, 3}));
    EXPECT_EQ(options.csv.channels, (std::vector<std::string>{"6dmtr"}));
    EXPECT_EQ(options.csv.range.from, 1500000U);
    EXPECT_EQ(options.csv.range.to, 2000000000U);
    EXPECT_EQ(options.output, "out=1");
    EXPECT_TRUE(options.force);
    EXPECT_TRUE(options.quiet);
    EXPECT_EQ(parse({"cut", "r", "--output=x"}).options.output, "x");
}

TEST(Options, whatIsNotUnderstoodIsRefused) {
    const std::vector<std::vector<std::string>> rows = {
        {},
        {"info"},
        {"what", "r"},
        {"info", "r", "s"},
        {"info", ""},
        {"csv", "r", "--what"},
        {"csv", "r", "--tool"},
        {"csv", "r", "--tool", "0"},
        {"csv", "r", "--tool", "65536"},
        {"csv", "r", "--tool", "1x"},
        {"csv", "r", "--tool", "99999999999"},
        {"csv", "r", "--channel", "fr"},
        {"csv", "r", "--from", "-1"},
        {"csv", "r", "--from", "1,5"},
        {"csv", "r", "--from", ""},
        {"csv", "r", "--from", "nan"},
        {"csv", "r", "--to", "inf"},
        {"csv", "r", "--to", "1e13"},
        {"csv", "r", "--from", "2", "--to", "1"},
        {"csv", "r", "-o", ""},
        {"csv", "r", "--output="},
        {"csv", "r", "--force=yes"},
        {"cut", "r", "--tool", "1"},
        {"cut", "r", "--channel", "6d"},
        {"info", "r", "--from", "1"},
        {"check", "r", "-o", "x"},
        {"check", "r", "--force"},
    };
    for (const std::vector<std::string>& row : rows) {
        const ParsedOptions parsed = parse(row);
        EXPECT_EQ(parsed.action, Action::Refuse) << testing::PrintToString(row);
        EXPECT_FALSE(parsed.text.empty()) << testing::PrintToString(row);
    }
}

TEST(Options, theHelpNamesAllOfThem) {
    const ParsedOptions help = parse({"--help"});
    EXPECT_EQ(help.action, Action::ShowText);
    for (const char* word :
         {"info", "check", "csv", "cut", "--tool", "--channel", "--from", "--to", "--output",
          "--force", "--quiet", "--help", "--version", "6dmt2", "6dmtr", "6d"}) {
        EXPECT_NE(help.text.find(word), std::string::npos) << word;
    }
    EXPECT_EQ(parse({"--version"}).text, "kestrel-recording 1.2.3\n");
}
