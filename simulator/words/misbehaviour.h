#pragma once

#include <array>
#include <map>
#include <string>
#include <string_view>

namespace kestrel_simulator {

/// What can go wrong with a controller. Each is switched on by its name, alone or with others, and
/// takes one number N; allMisbehaviours() says what each does. Own commands ("sim ...") are always
/// answered truthfully, so that every misbehaviour can be ended.
enum class Misbehaviour {
    // of replies; N: the first command concerned, counted from the switching on
    Silent,
    WrongReply,
    GarbledReply,
    CutReply,
    Drop,
    FirstTryUnanswered,
    Slow, // N: milliseconds
    // of data lines
    GarbledData,
    LostData,
    LongData,
    // of calibrations
    CalStaleStatus,
    CalLostStatus,
    CalDuplicateStatus,
    CalError,
    CalEndless,
    // of calibrations: the connection is dropped once, without a reply; N is unused
    CalDropStart,
    CalDropStep1,
    CalDropPause,
    CalDropStep2,
    CalDropCalculating,
    CalDropResult,
    CalDropAccept
};

struct MisbehaviourInfo {
    Misbehaviour id;
    std::string_view name;
    int defaultNumber; ///< N when none is given
    int maximum;       ///< of N; the minimum is 0
    std::string_view help;

    bool allows(int number) const { return number >= 0 && number <= maximum; }
};

/// All of them, in the order of the enumeration.
const std::array<MisbehaviourInfo, 22>& allMisbehaviours();

/// All names: "silent, wrong-reply, ...".
std::string misbehaviourNames();

/// Null when there is none of that name.
const MisbehaviourInfo* findMisbehaviour(std::string_view name);

/// Those that are switched on, with their numbers.
class Misbehaviours {
public:
    void switchOn(Misbehaviour id, int number) { m_active[id] = number; }
    void switchOff(Misbehaviour id) { m_active.erase(id); }
    void clear() { m_active.clear(); }

    bool has(Misbehaviour id) const { return m_active.count(id) > 0; }

    /// The number of one that is on, 0 of one that is off.
    int number(Misbehaviour id) const;

    /// Whether it is on; switches it off.
    bool takeOnce(Misbehaviour id) { return m_active.erase(id) > 0; }

    /// "silent 1, slow 500"; "none".
    std::string toString() const;

private:
    std::map<Misbehaviour, int> m_active;
};

} // namespace kestrel_simulator
