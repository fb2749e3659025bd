#include "simulator/words/misbehaviour.h"

#include <algorithm>

namespace kestrel_simulator {

namespace {

constexpr int maxPercent = 100;
constexpr int maxCount = 1000000;

} // namespace

const std::array<MisbehaviourInfo, 22>& allMisbehaviours() {
    static const std::array<MisbehaviourInfo, 22> all = {{
        {Misbehaviour::Silent, "silent", 1, maxCount, "no replies from the N-th command on"},
        {Misbehaviour::WrongReply, "wrong-reply", 1, maxCount,
         "the answer to another question from the N-th command on"},
        {Misbehaviour::GarbledReply, "garbled-reply", 1, maxCount,
         "replies with letters replaced from the N-th command on"},
        {Misbehaviour::CutReply, "cut-reply", 1, maxCount,
         "half replies without a line end from the N-th command on"},
        {Misbehaviour::Drop, "drop", 1, maxCount,
         "connection dropped instead of a reply from the N-th command on"},
        {Misbehaviour::FirstTryUnanswered, "first-try", 1, maxCount,
         "from the N-th command on a command is not answered the first time"},
        {Misbehaviour::Slow, "slow", 500, 3600000, "replies N milliseconds late"},
        {Misbehaviour::GarbledData, "garbled-data", 100, maxPercent,
         "characters replaced in N percent of the data lines"},
        {Misbehaviour::LostData, "lost-data", 50, maxPercent, "N percent of the datagrams lost"},
        {Misbehaviour::LongData, "long-data", 11000, 65000, "body lines of N characters"},
        {Misbehaviour::CalStaleStatus, "cal-stale-status", 1, maxCount,
         "the first N status queries get the last run's final status"},
        {Misbehaviour::CalLostStatus, "cal-lost-status", 3, maxCount,
         "the N-th status query of a run gets no reply"},
        {Misbehaviour::CalDuplicateStatus, "cal-duplicate-status", 3, maxCount,
         "the N-th status query of a run gets two replies"},
        {Misbehaviour::CalError, "cal-error", 50, maxPercent,
         "the calibration fails at N percent of the whole"},
        {Misbehaviour::CalEndless, "cal-endless", 99, maxPercent,
         "the calibration stands still at N percent of the whole"},
        {Misbehaviour::CalDropStart, "cal-drop-start", 1, maxCount,
         "connection dropped once at the start, which is carried out"},
        {Misbehaviour::CalDropStep1, "cal-drop-step1", 1, maxCount,
         "connection dropped once at a status query in step 1"},
        {Misbehaviour::CalDropPause, "cal-drop-pause", 1, maxCount,
         "connection dropped once at a status query in the pause before step 2"},
        {Misbehaviour::CalDropStep2, "cal-drop-step2", 1, maxCount,
         "connection dropped once at a status query in step 2"},
        {Misbehaviour::CalDropCalculating, "cal-drop-calculating", 1, maxCount,
         "connection dropped once at a status query while the result is computed"},
        {Misbehaviour::CalDropResult, "cal-drop-result", 1, maxCount,
         "connection dropped once when the result is asked for"},
        {Misbehaviour::CalDropAccept, "cal-drop-accept", 1, maxCount,
         "connection dropped once at the acceptance, which is carried out"},
    }};
    return all;
}

std::string misbehaviourNames() {
    std::string names;
    for (const MisbehaviourInfo& info : allMisbehaviours()) {
        names.append(names.empty() ? "" : ", ").append(info.name);
    }
    return names;
}

const MisbehaviourInfo* findMisbehaviour(std::string_view name) {
    const auto& all = allMisbehaviours();
    const auto* found = std::find_if(
        all.begin(), all.end(), [&](const MisbehaviourInfo& info) { return info.name == name; });
    return found == all.end() ? nullptr : found;
}

int Misbehaviours::number(Misbehaviour id) const {
    const auto found = m_active.find(id);
    return found == m_active.end() ? 0 : found->second;
}

std::string Misbehaviours::toString() const {
    std::string text;
    for (const MisbehaviourInfo& info : allMisbehaviours()) {
        if (has(info.id)) {
            text += (text.empty() ? "" : ", ") + std::string(info.name) + " " +
                    std::to_string(number(info.id));
        }
    }
    return text.empty() ? "none" : text;
}

} // namespace kestrel_simulator
