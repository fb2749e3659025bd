#pragma once

#include <string_view>

namespace kestrel_wire {

inline bool startsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

} // namespace kestrel_wire
