#pragma once

#include <string>
#include <string_view>

namespace kestrel_wire {

/// How parameters and replies name the body with this number, from 1 on: "b01".
std::string bodyName(int number);

/// The number of a body's name, however many zeros it has; 0 when `name` is none.
int bodyNumber(std::string_view name);

} // namespace kestrel_wire
