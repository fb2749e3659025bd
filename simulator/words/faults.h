#pragma once

#include "simulator/words/misbehaviour.h"

#include <cstdint>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace kestrel_simulator {

/// What is to be done with one reply.
struct ReplyPlan {
    std::string reply;
    int copies = 1; ///< 0: no reply at all
    int delayMilliseconds = 0;
    bool cut = false;            ///< sent without its line end
    bool dropConnection = false; ///< instead of a reply
};

/// Spoils true replies as the active misbehaviours say.
class ReplyFaults {
public:
    explicit ReplyFaults(Misbehaviours& misbehaviours)
        : m_misbehaviours(misbehaviours) {}

    /// `command` is the whole line, to know it again.
    ReplyPlan plan(std::string_view command, std::string reply);

private:
    // One more command has come: whether it is one that the misbehaviour concerns.
    bool countTowards(Misbehaviour id);
    // Whether the command comes for the first time; from now on it does not.
    bool isFirstTry(std::string_view command);

    Misbehaviours& m_misbehaviours;
    std::set<std::size_t> m_tried; // hashes: the commands themselves may be long
};

/// Spoils data lines as the active misbehaviours say.
class DataFaults {
public:
    DataFaults(const Misbehaviours& misbehaviours, std::uint64_t seed)
        : m_misbehaviours(misbehaviours)
        , m_random(seed) {}

    /// False when the frame is not to be sent.
    bool apply(std::vector<std::string>& lines);

private:
    bool happens(int percent);

    const Misbehaviours& m_misbehaviours;
    std::mt19937_64 m_random;
};

} // namespace kestrel_simulator
