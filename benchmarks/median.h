#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

/// The middle one of `values`, of which there has to be one; of an even number the greater.
inline double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}
