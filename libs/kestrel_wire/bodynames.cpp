#include "libs/kestrel_wire/bodynames.h"

#include <charconv>

namespace kestrel_wire {

std::string bodyName(int number) {
    return (number < 10 ? "b0" : "b") + std::to_string(number);
}

int bodyNumber(std::string_view name) {
    int number = 0;
    const char* const end = name.data() + name.size();
    if (name.size() < 2 || name.front() != 'b' || name[1] == '-' ||
        std::from_chars(name.data() + 1, end, number).ptr != end) {
        return 0;
    }
    return number;
}

} // namespace kestrel_wire
