#pragma once

namespace kestrel_probe {

constexpr double rounding = 1e-6; // s; times are differences of a clock's large numbers

} // namespace kestrel_probe
