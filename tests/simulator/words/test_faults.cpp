#include "tests/simulator/talk.h"

#include <gtest/gtest.h>
#include <map>
#include <set>

using kestrel_simulator::allMisbehaviours;
using kestrel_simulator::MisbehaviourInfo;
using kestrel_simulator::ReplyPlan;

namespace {

const std::string trueReply = "kestrel2 set measurementtool number_of_tools 4";
const std::string question = "get measurementtool number_of_tools";

} // namespace

TEST(Misbehaviours, haveDistinctNamesInTheOrderOfTheEnumeration) {
    std::set<std::string_view> names;
    int expected = 0;
    for (const MisbehaviourInfo& info : allMisbehaviours()) {
        EXPECT_EQ(static_cast<int>(info.id), expected++);
        EXPECT_TRUE(names.insert(info.name).second) << info.name;
        EXPECT_EQ(kestrel_simulator::findMisbehaviour(info.name), &info);
    }
    EXPECT_EQ(kestrel_simulator::findMisbehaviour("nonsense"), nullptr);
}

TEST(Misbehaviours, areNamedOnRequest) {
    std::string names;
    for (const MisbehaviourInfo& info : allMisbehaviours()) {
        names += (names.empty() ? "" : ", ") + std::string(info.name);
    }
    Talk talk;
    EXPECT_EQ(talk.get("sim misbehaviours"), names);
    EXPECT_EQ(talk.set("sim misbehaviours silent"), "err 6");
}

TEST(Misbehaviours, areSwitchedOnAndOffByCommand) {
    Talk talk;
    EXPECT_EQ(talk.get("sim misbehaviour"), "none");
    EXPECT_EQ(talk.act("sim misbehave slow"), "ok");
    EXPECT_EQ(talk.act("sim misbehave lost-data 20"), "ok");
    EXPECT_EQ(talk.get("sim misbehaviour"), "slow 500, lost-data 20");
    EXPECT_EQ(talk.act("sim behave slow"), "ok");
    EXPECT_EQ(talk.get("sim misbehaviour"), "lost-data 20");
    EXPECT_EQ(talk.act("sim behave"), "ok");
    EXPECT_EQ(talk.get("sim misbehaviour"), "none");
    for (const char* bad : {"sim misbehave", "sim misbehave nonsense", "sim misbehave slow x",
                            "sim misbehave slow -1", "sim misbehave slow 1 2", "sim behave x"}) {
        EXPECT_EQ(talk.act(bad), "err 4") << bad;
    }
}

TEST(Misbehaviours, takeNumbersUpToTheirMaximum) {
    Talk talk;
    const std::map<std::string_view, int> maxima = {{"slow", 3600000},  {"garbled-data", 100},
                                                    {"lost-data", 100}, {"long-data", 65000},
                                                    {"cal-error", 100}, {"cal-endless", 100}};
    for (const MisbehaviourInfo& info : allMisbehaviours()) {
        const auto found = maxima.find(info.name);
        const int maximum = found == maxima.end() ? 1000000 : found->second;
        const std::string command = "sim misbehave " + std::string(info.name) + " ";
        EXPECT_EQ(talk.act(command + std::to_string(maximum)), "ok") << info.name;
        EXPECT_EQ(talk.act(command + std::to_string(maximum + 1)), "err 4") << info.name;
        talk.act("sim behave");
    }
}

TEST(Misbehaviours, silentGivesNoReply) {
    Talk talk;
    talk.act("sim misbehave silent");
    EXPECT_EQ(talk.plan(question).copies, 0);
    EXPECT_EQ(talk.plan("tracking start").copies, 0);
    EXPECT_EQ(talk.act("sim behave"), "ok");
    EXPECT_EQ(talk.say(question), trueReply);
}

TEST(Misbehaviours, slowDelaysTheTrueReply) {
    Talk talk;
    talk.act("sim misbehave slow 70");
    const ReplyPlan plan = talk.plan(question);
    EXPECT_EQ(plan.delayMilliseconds, 70);
    EXPECT_EQ(plan.reply, trueReply);
}

TEST(Misbehaviours, firstTryLeavesEachCommandUnansweredOnce) {
    Talk talk;
    talk.act("sim misbehave first-try");
    EXPECT_EQ(talk.say(question), "");
    EXPECT_EQ(talk.say("get status active"), "");
    EXPECT_EQ(talk.say(question), trueReply);
    EXPECT_EQ(talk.say(question), trueReply);
    EXPECT_NE(talk.say("get status active"), "");
}

TEST(Misbehaviours, firstTryBeginsAnewWhenSwitchedOnAgain) {
    Talk talk;
    talk.act("sim misbehave first-try");
    EXPECT_EQ(talk.say(question), "");
    talk.act("sim behave");
    EXPECT_EQ(talk.say(question), trueReply);
    talk.act("sim misbehave first-try");
    EXPECT_EQ(talk.say(question), "");
}

TEST(Misbehaviours, wrongReplyAnswersAnotherQuestion) {
    Talk talk;
    talk.act("sim misbehave wrong-reply");
    EXPECT_EQ(talk.get("measurementtool number_of_tools"), "malformed");
    EXPECT_EQ(talk.act("tracking start"), "malformed");
    EXPECT_EQ(talk.say(question).substr(0, 13), "kestrel2 set ");
}

TEST(Misbehaviours, garbledReplyIsNoReply) {
    Talk talk;
    talk.act("sim misbehave garbled-reply");
    EXPECT_EQ(talk.get("measurementtool number_of_tools"), "malformed");
    EXPECT_EQ(talk.act("tracking start"), "malformed");
    EXPECT_EQ(talk.say(question).size(), trueReply.size());
}

TEST(Misbehaviours, cutReplyIsHalfAReplyWithoutEnd) {
    Talk talk;
    talk.act("sim misbehave cut-reply");
    const ReplyPlan plan = talk.plan(question);
    EXPECT_TRUE(plan.cut);
    EXPECT_EQ(plan.reply, trueReply.substr(0, trueReply.size() / 2));
}

TEST(Misbehaviours, dropDropsTheConnection) {
    Talk talk;
    talk.act("sim misbehave drop");
    EXPECT_TRUE(talk.plan(question).dropConnection);
}

TEST(Misbehaviours, beginAtTheChosenCommand) {
    Talk talk;
    talk.act("sim misbehave silent 3");
    EXPECT_NE(talk.say(question), "");
    EXPECT_NE(talk.say(question), "");
    EXPECT_EQ(talk.say(question), "");
    EXPECT_EQ(talk.say(question), "");
}

TEST(Misbehaviours, leaveOwnCommandsAnsweredTruthfully) {
    Talk talk;
    for (const char* name :
         {"silent", "first-try", "wrong-reply", "garbled-reply", "cut-reply", "drop", "slow"}) {
        talk.act(std::string("sim misbehave ") + name);
    }
    EXPECT_EQ(talk.get("sim noise"), "0.05");
    EXPECT_EQ(talk.set("sim noise 0.1"), "ok");
    EXPECT_EQ(talk.plan("get sim noise").delayMilliseconds, 0);
    EXPECT_EQ(talk.act("sim behave"), "ok");
}

TEST(Misbehaviours, ofRepliesDoNotKeepCommandsFromBeingCarriedOut) {
    Talk talk;
    talk.act("sim misbehave silent");
    talk.act("tracking start");
    talk.act("sim behave");
    EXPECT_EQ(talk.get("status active"), "tracking");
}

TEST(Misbehaviours, theCommandsReceivedAreCounted) {
    Talk talk;
    EXPECT_EQ(talk.get("sim commands_received"), "0");
    talk.say(question);
    talk.say("nonsense");
    talk.say("");
    talk.act("sim misbehave silent");
    talk.say(question);
    EXPECT_EQ(talk.get("sim commands_received"), "4");
}

TEST(Misbehaviours, lostDataLeavesOutFramesButCountsThem) {
    Talk talk;
    talk.act("sim misbehave lost-data 40");
    talk.act("tracking start");
    int lost = 0;
    std::string last;
    for (int i = 0; i < 1000; ++i) {
        const auto lines = talk.nextFrame();
        lost += lines.empty() ? 1 : 0;
        last = lines.empty() ? last : lines[0];
    }
    EXPECT_GT(lost, 300);
    EXPECT_LT(lost, 500);
    EXPECT_GT(std::stoi(last.substr(3)), 950);
}

TEST(Misbehaviours, garbledDataChangesLinesButNotTheirNumber) {
    Talk talk;
    talk.set("output active chmon 6dmt2 yes");
    talk.act("tracking start");
    const std::string before = talk.nextLine("6dmt2");
    talk.act("sim misbehave garbled-data");
    int changed = 0;
    for (int i = 0; i < 50; ++i) {
        const auto lines = talk.nextFrame();
        ASSERT_EQ(lines.size(), 4U);
        for (const std::string& line : lines) {
            EXPECT_EQ(line.find_first_of(std::string("\r\n\0", 3)), std::string::npos);
        }
        changed += lines[3].substr(0, 10) != before.substr(0, 10) ? 1 : 0;
    }
    EXPECT_GT(changed, 0);
}

TEST(Misbehaviours, longDataMakesBodyLinesOfThatLength) {
    Talk talk;
    for (const char* channel : {"6d", "6dmt2", "6dmtr"}) {
        talk.set(std::string("output active chmon ") + channel + " yes");
    }
    talk.act("tracking start");
    talk.act("sim misbehave long-data");
    const auto lines = talk.nextFrame();
    ASSERT_EQ(lines.size(), 6U);
    EXPECT_LT(lines[2].size(), 20U);
    for (std::size_t i = 3; i < 6; ++i) {
        EXPECT_EQ(lines[i].size(), 11000U);
    }
}
