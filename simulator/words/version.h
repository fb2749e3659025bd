#pragma once

#include <string>
#include <string_view>

namespace kestrel_simulator {

/// A version of the controller's software or protocol. A patch number of -1 is an unknown one.
struct Version {
    int major = 0;
    int minor = 0;
    int patch = -1;

    /// Reads "1.14.2", or with an unknown patch "1.14" or "1.14.-1". False on anything else.
    static bool parse(std::string_view text, Version& version);

    std::string toString() const;

    /// True when this is at least major.minor.0; an unknown patch passes.
    bool atLeast(int wantedMajor, int wantedMinor) const;
};

} // namespace kestrel_simulator
