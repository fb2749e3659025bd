#pragma once

namespace looks {

/// Lets tip checks run to their ends, `runs` for each simulated probe, and prints how they ended.
/// 0 when they keep what docs/tip_check.md promises.
int printTable(int runs);

} // namespace looks
