#pragma once

#include "KestrelParser.h"

#include <string>

/// Blocks that tests append to a header block: a position and a rotation matrix of nine different
/// numbers.
inline constexpr const char* position = "[1.5 -2.5 3.5]";
inline constexpr const char* rotation = "[11 12 13 14 15 16 17 18 19]";
inline constexpr const char* pose = "[1.5 -2.5 3.5][11 12 13 14 15 16 17 18 19]";

template <class... Parts>
std::string join(const Parts&... parts) {
    std::string all;
    (all.append(parts), ...);
    return all;
}

/// What parseLine() did with one line.
struct Parsed {
    bool accepted = false;
    std::string rest; ///< the text from where reading stopped
};

inline Parsed parse(KestrelParser& parser, std::string line) {
    char* at = line.data();
    Parsed parsed;
    parsed.accepted = parser.parseLine(&at);
    parsed.rest = at;
    return parsed;
}

/// Whether the record holds the numbers of `pose`.
template <class Record>
bool hasPose(const Record& record) {
    bool same = record.loc[0] == 1.5 && record.loc[1] == -2.5 && record.loc[2] == 3.5;
    for (int i = 0; i < 9; ++i) {
        same = same && record.rot[i] == 11 + i;
    }
    return same;
}

/// Whether position and rotation are all zero.
template <class Record>
bool hasNoPose(const Record& record) {
    bool zero = record.loc[0] == 0 && record.loc[1] == 0 && record.loc[2] == 0;
    for (const double number : record.rot) {
        zero = zero && number == 0;
    }
    return zero;
}

/// The parser with its fields in the open.
class OpenParser : public KestrelParser {
public:
    using KestrelParser::act_body;
    using KestrelParser::act_framecounter;
    using KestrelParser::act_hand;
    using KestrelParser::act_human;
    using KestrelParser::act_inertial;
    using KestrelParser::act_marker;
    using KestrelParser::act_mearef;
    using KestrelParser::act_meatool;
    using KestrelParser::act_num_body;
    using KestrelParser::act_num_hand;
    using KestrelParser::act_num_human;
    using KestrelParser::act_num_inertial;
    using KestrelParser::act_num_marker;
    using KestrelParser::act_num_mearef;
    using KestrelParser::act_num_meatool;
    using KestrelParser::act_num_wand;
    using KestrelParser::act_timestamp;
    using KestrelParser::act_wand;
    using KestrelParser::loc_num_bodycal;
    using KestrelParser::loc_num_handcal;
    using KestrelParser::loc_num_meatool;
    using KestrelParser::loc_num_wand1;
};
