#include "Verdict.h"

#include <cmath>

namespace kestrel_probe {

namespace {

bool isLength(double value) {
    return std::isfinite(value) && value >= 0.0;
}

} // namespace

Verdict judge(double error, double radius95, double tolerance) {
    if (!isLength(error) || !isLength(radius95) || !isLength(tolerance)) {
        return Verdict::Undecided;
    }
    if (error + radius95 <= tolerance) {
        return Verdict::Conforms;
    }
    return error - radius95 > tolerance ? Verdict::DoesNotConform : Verdict::Undecided;
}

} // namespace kestrel_probe
