#include "tests/simulator/talk.h"

#include "libs/kestrel_wire/recording.h"
#include "libs/kestrel_wire/reply.h"
#include "simulator/words/text.h"

#include <cmath>

using kestrel_wire::Reply;

namespace {

std::string shortForm(const Reply& reply) {
    switch (reply.kind) {
    case Reply::Kind::Ok:
        return "ok";
    case Reply::Kind::Value:
        return reply.value;
    case Reply::Kind::Error:
        return "err " + std::to_string(reply.errorNumber);
    case Reply::Kind::Malformed:
        break;
    }
    return "malformed";
}

} // namespace

Talk::Talk(const kestrel_simulator::ControllerSetup& setup)
    : controller(setup) {}

kestrel_simulator::ReplyPlan Talk::plan(const std::string& text) {
    return controller.execute("kestrel2 " + text, session, time);
}

std::string Talk::say(const std::string& text) {
    const kestrel_simulator::ReplyPlan plan = this->plan(text);
    return plan.copies > 0 && !plan.dropConnection ? plan.reply : std::string();
}

std::string Talk::get(const std::string& parameter) {
    return shortForm(kestrel_wire::parseReply(say("get " + parameter), parameter));
}

std::string Talk::set(const std::string& parameterAndValue) {
    return act("set " + parameterAndValue);
}

std::string Talk::act(const std::string& action) {
    return shortForm(kestrel_wire::parseReply(say(action), ""));
}

std::vector<double> Talk::numbers(const std::string& parameter) {
    std::vector<double> numbers;
    for (const std::string& word : kestrel_simulator::text::split(get(parameter))) {
        double number = 0.0;
        if (kestrel_simulator::text::readDouble(word, number)) {
            numbers.push_back(number);
        }
    }
    return numbers;
}

std::vector<std::string> Talk::nextFrame() {
    const double seconds = controller.secondsToNextFrame(time);
    std::vector<std::string> lines;
    if (!std::isinf(seconds)) {
        time += seconds;
        while (!controller.takeFrame(time, lines)) {
            time += 1e-9; // the sum was rounded
        }
    }
    return lines;
}

std::string Talk::nextLine(const std::string& channel) {
    for (const std::string& line : nextFrame()) {
        if (kestrel_wire::channelOf(line) == channel) {
            return line;
        }
    }
    return {};
}
