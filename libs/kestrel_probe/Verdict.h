#pragma once

namespace kestrel_probe {

/// What may be said of a measured error against a tolerance.
enum class Verdict {
    Conforms,       ///< within the tolerance, whatever the truth within the region
    DoesNotConform, ///< outside it, whatever the truth within the region
    Undecided       ///< the uncertainty is too large to tell, or there is nothing to judge
};

/// The decision rule of ISO 14253-1: with `error` e, its uncertainty `radius95` U and `tolerance`
/// T, all in mm, e conforms when e + U <= T and does not when e - U > T. Anything negative or not
/// finite is undecided. May be called from any thread; never throws.
Verdict judge(double error, double radius95, double tolerance);

} // namespace kestrel_probe
