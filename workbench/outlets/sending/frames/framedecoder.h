#pragma once

#include "KestrelParser.h"
#include "workbench/outlets/sending/frames/trackedframe.h"

#include <string_view>

namespace workbench {

/// Makes tools and references of the data lines of frames. Nothing of an earlier frame shows in a
/// later one: a kind of body whose line is missing or malformed has no body in that frame. One
/// thread at a time.
class FrameDecoder {
public:
    /// More bodies of a kind than that are no scene of anybody's; the rest is left out.
    static constexpr int mostBodies = 1000;

    /// Whether decode() makes something of this data line.
    static bool isWanted(std::string_view line);

    void begin(kestrel_wire::UtcMilliseconds arrival);
    void add(const char* line);
    /// The frame of the lines since begin(). Radii and references of tools stay as the lines have
    /// them: of references they tell nothing.
    TrackedFrame end();

private:
    KestrelParser m_parser;
    kestrel_wire::UtcMilliseconds m_arrival = 0;
    bool m_hasCounter = false;
    bool m_hasTime = false;
    bool m_hasTools = false;
    bool m_hasRadii = false;
    bool m_hasReferences = false;
};

} // namespace workbench
