#include "simulator/words/version.h"

#include "simulator/words/text.h"

#include <array>

namespace kestrel_simulator {

bool Version::parse(std::string_view text, Version& version) {
    std::array<int, 3> numbers = {0, 0, -1};
    std::size_t count = 0;
    while (count < numbers.size()) {
        const std::size_t dot = text.find('.');
        const std::string_view number = text.substr(0, dot);
        const bool isUnknownPatch = count == 2 && number == "-1";
        if (!text::readInt(number, numbers[count]) || (numbers[count] < 0 && !isUnknownPatch)) {
            return false;
        }
        ++count;
        if (dot == std::string_view::npos) {
            text = {};
            break;
        }
        text.remove_prefix(dot + 1);
        if (text.empty()) {
            return false;
        }
    }
    if (count < 2 || !text.empty()) {
        return false;
    }
    version = {numbers[0], numbers[1], numbers[2]};
    return true;
}

std::string Version::toString() const {
    std::string text = std::to_string(major) + "." + std::to_string(minor);
    return patch < 0 ? text : text + "." + std::to_string(patch);
}

bool Version::atLeast(int wantedMajor, int wantedMinor) const {
    return major > wantedMajor || (major == wantedMajor && minor >= wantedMinor);
}

} // namespace kestrel_simulator
