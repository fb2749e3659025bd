#include "simulator/words/faults.h"

#include <functional>

namespace kestrel_simulator {

namespace {

constexpr std::size_t maxTried = 10000;
constexpr std::string_view wrongReply = "kestrel2 set sim another_question 42";

std::string garbled(std::string reply) {
    for (std::size_t i = 1; i < reply.size(); i += 3) {
        reply[i] = '#';
    }
    return reply;
}

void pad(std::string& line, std::size_t length) {
    while (line.size() < length) {
        line += " 0";
    }
    line.resize(length);
}

} // namespace

bool ReplyFaults::countTowards(Misbehaviour id) {
    if (!m_misbehaviours.has(id)) {
        return false;
    }
    const int number = m_misbehaviours.number(id);
    if (number > 1) {
        m_misbehaviours.switchOn(id, number - 1);
        return false;
    }
    return true;
}

bool ReplyFaults::isFirstTry(std::string_view command) {
    if (m_tried.size() >= maxTried) {
        m_tried.clear();
    }
    return m_tried.insert(std::hash<std::string_view>()(command)).second;
}

ReplyPlan ReplyFaults::plan(std::string_view command, std::string reply) {
    ReplyPlan plan;
    plan.reply = std::move(reply);
    if (!m_misbehaviours.has(Misbehaviour::FirstTryUnanswered)) {
        m_tried.clear();
    }
    if (countTowards(Misbehaviour::Drop)) {
        plan.dropConnection = true;
    }
    if (countTowards(Misbehaviour::Silent) ||
        (countTowards(Misbehaviour::FirstTryUnanswered) && isFirstTry(command))) {
        plan.copies = 0;
    }
    if (countTowards(Misbehaviour::WrongReply)) {
        plan.reply = wrongReply;
    }
    if (countTowards(Misbehaviour::GarbledReply)) {
        plan.reply = garbled(plan.reply);
    }
    if (countTowards(Misbehaviour::CutReply)) {
        plan.reply.resize(plan.reply.size() / 2);
        plan.cut = true;
    }
    plan.delayMilliseconds = m_misbehaviours.number(Misbehaviour::Slow);
    return plan;
}

bool DataFaults::happens(int percent) {
    return static_cast<int>(m_random() % 100U) < percent;
}

bool DataFaults::apply(std::vector<std::string>& lines) {
    const auto number = [&](Misbehaviour id) { return m_misbehaviours.number(id); };
    if (happens(number(Misbehaviour::LostData))) {
        return false;
    }
    for (std::string& line : lines) {
        if (line.rfind("6d", 0) == 0 && line.rfind("6dcal", 0) != 0) {
            pad(line,
                std::max(line.size(), static_cast<std::size_t>(number(Misbehaviour::LongData))));
        }
        if (!line.empty() && happens(number(Misbehaviour::GarbledData))) {
            for (std::size_t i = 0; i < 1 + line.size() / 8; ++i) {
                // any byte but those that end a line
                const auto byte = static_cast<char>(0x20 + m_random() % 0xdfU);
                line[m_random() % line.size()] = byte;
            }
        }
    }
    return true;
}

} // namespace kestrel_simulator
