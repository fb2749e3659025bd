#include "soak/mischief.h"

#include "workbench/controller/command/commandchannel.h"

#include <iterator>

namespace {

struct Range {
    const char* name;
    int lowest;
    int highest;
};

constexpr int timeoutMs = workbench::CommandChannel::defaultTimeoutMs;

// Replies that are a little late add up over the many questions of a dialog, which is nobody's
// fault; so they are very little late, or so late that the first one is one too many.
constexpr Range misbehaviours[] = {
    {"silent", 1, 30},
    {"wrong-reply", 1, 30},
    {"garbled-reply", 1, 30},
    {"cut-reply", 1, 30},
    {"drop", 1, 30},
    {"first-try", 1, 30},
    {"slow", 1, 5},
    {"slow", timeoutMs + 500, 2 * timeoutMs},
    {"garbled-data", 1, 100},
    {"lost-data", 1, 100},
    {"long-data", 1000, 20000},
    {"cal-stale-status", 1, 5},
    {"cal-lost-status", 1, 10},
    {"cal-duplicate-status", 1, 10},
    {"cal-error", 0, 100},
    {"cal-endless", 0, 99},
    {"cal-drop-start", 1, 1},
    {"cal-drop-step1", 1, 1},
    {"cal-drop-pause", 1, 1},
    {"cal-drop-step2", 1, 1},
    {"cal-drop-calculating", 1, 1},
    {"cal-drop-result", 1, 1},
    {"cal-drop-accept", 1, 1},
};

struct Condition {
    const char* bad;
    const char* good;
};

constexpr Condition conditions[] = {
    {"set sim sync no", "set sim sync yes"},
    {"set sim locked yes", "set sim locked no"},
    {"set sim measurementtool_available no", "set sim measurementtool_available yes"},
    {"set sim tracking_available no", "set sim tracking_available yes"},
    {"set sim cal_available no", "set sim cal_available yes"},
    {"set sim radio_available no", "set sim radio_available yes"},
    {"set sim occlusion no", "set sim occlusion yes"},
    {"set sim body_calibrated tool b01 no", "set sim body_calibrated tool b01 yes"},
    {"set sim body_calibrated reference b01 no", "set sim body_calibrated reference b01 yes"},
    {"set sim tip_calibrated b02 no", "set sim tip_calibrated b02 yes"},
    {"sim device add ACME PROBE 77", "sim device remove ACME PROBE 77"},
};

} // namespace

int Mischief::upTo(int highest) {
    return std::uniform_int_distribution<int>(0, highest)(m_random);
}

QByteArray Mischief::misbehaviour() {
    const Range& range = misbehaviours[upTo(int(std::size(misbehaviours)) - 1)];
    const int number = range.lowest + upTo(range.highest - range.lowest);
    return QByteArray("sim misbehave ") + range.name + ' ' + QByteArray::number(number);
}

QByteArray Mischief::condition() {
    return conditions[upTo(int(std::size(conditions)) - 1)].bad;
}

QList<QByteArray> Mischief::begin() {
    QList<QByteArray> commands;
    for (int count = 1 + upTo(2); count > 0; --count) {
        commands += chance(70) ? misbehaviour() : condition();
    }
    return commands;
}

QList<QByteArray> Mischief::end() {
    QList<QByteArray> commands{"sim behave"};
    for (const Condition& condition : conditions) {
        commands += condition.good;
    }
    return commands;
}

QList<QByteArray> Mischief::restore() {
    // The tools last: how many there may be depends on the references.
    return end() + QList<QByteArray>{"set measurementtool number_of_references 2",
                                     "set measurementtool number_of_tools 4"};
}
