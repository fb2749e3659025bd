#pragma once

#include <array>
#include <map>
#include <string>
#include <string_view>

namespace kestrel_simulator {

/// What can go wrong with a controller. Each is switched on by its name, alone or with others, and
/// takes one number N. Own commands ("sim ...") are always answered truthfully, so that every
/// misbehaviour can be ended.
enum class Misbehaviour {
    // replies; N: the first command concerned, counted from now on (default 1)
    Silent,             ///< "silent": no replies
    WrongReply,         ///< "wrong-reply": the answer to another question
    GarbledReply,       ///< "garbled-reply": a reply of which letters are replaced
    CutReply,           ///< "cut-reply": half a reply, without a line end
    Drop,               ///< "drop": the connection is dropped instead of a reply
    FirstTryUnanswered, ///< "first-try": the first time that a command comes it is not answered
    Slow,               ///< "slow": replies come N milliseconds late (default 500)
    // data lines
    GarbledData, ///< "garbled-data": N percent of the lines have characters replaced (default 100)
    LostData,    ///< "lost-data": N percent of the datagrams are not sent (default 50)
    LongData,    ///< "long-data": body lines of N characters (default 11000)
    // calibration
    CalStaleStatus,     ///< "cal-stale-status": the first N status queries of a run (default 1) get
                        ///< the final status of the run before
    CalLostStatus,      ///< "cal-lost-status": the N-th status query of a run (default 3) gets no
                        ///< reply
    CalDuplicateStatus, ///< "cal-duplicate-status": the N-th status query of a run (default 3) gets
                        ///< its reply twice
    CalError,           ///< "cal-error": the run fails at N percent (default 50)
    CalEndless,         ///< "cal-endless": progress stops at N percent (default 99)
    // calibration: the connection is dropped once, without a reply (N unused)
    CalDropStart,       ///< "cal-drop-start": at the start command, which is carried out
    CalDropStep1,       ///< "cal-drop-step1": at a status query in step 1
    CalDropPause,       ///< "cal-drop-pause": at a status query in the pause before step 2
    CalDropStep2,       ///< "cal-drop-step2": at a status query in step 2
    CalDropCalculating, ///< "cal-drop-calculating": at a status query at 100 %
    CalDropResult,      ///< "cal-drop-result": when the result is asked for
    CalDropAccept       ///< "cal-drop-accept": at the acceptance, which is carried out
};

struct MisbehaviourInfo {
    Misbehaviour id;
    std::string_view name;
    int defaultNumber;
    int maximum; ///< of N; the minimum is 0
    std::string_view help;

    bool allows(int number) const { return number >= 0 && number <= maximum; }
};

/// All of them, in the order of the enumeration.
const std::array<MisbehaviourInfo, 22>& allMisbehaviours();

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
