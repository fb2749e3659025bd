#pragma once

#include "libs/kestrel_wire/recording.h"

#include <cstdint>
#include <initializer_list>
#include <string>

/// Recordings as texts, made line by line.
namespace recordingtexts {

inline constexpr kestrel_wire::UtcMilliseconds start = 1795318812345; ///< 2026-11-22T03:40:12.345Z

inline kestrel_wire::RecordingHeader header() {
    kestrel_wire::RecordingHeader result = {"3.1.0", "1.14.0", "3.0.2", "MODEL", {}};
    result.start = start;
    return result;
}

inline std::string headerText() {
    return kestrel_wire::formatRecordingHeader(header());
}

/// All lines of one frame.
inline std::string frame(std::uint64_t microseconds, std::initializer_list<const char*> lines) {
    std::string text;
    for (const char* line : lines) {
        text += kestrel_wire::formatRecord(microseconds, line);
    }
    return text;
}

/// Two tools, the second one not tracked.
inline constexpr const char* twoTools =
    "6dmt2 2 2 [0 0.875 4 0.750][1.5 -2.25 1e-3][1 0 0 0 1 0 0 0 1][5][1 0 0 1 0 1]"
    " [1 -1.000 4 0.750][0 0 0][0 0 0 0 0 0 0 0 0][2][0 0 0 0 0 0]";

} // namespace recordingtexts
