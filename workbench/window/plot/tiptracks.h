#pragma once

#include "workbench/window/plot/tipring.h"

#include <QPolygonF>
#include <QVector>

#include <array>
#include <string>

namespace workbench {

/// Mean and spread of the positions in which a tool was seen.
struct TipStatistics {
    std::size_t count = 0;
    std::array<double, 3> mean{};      ///< mm; of no position: 0
    std::array<double, 3> deviation{}; ///< standard deviation, of a sample (n - 1); NaN below two
};

/// Of the samples of `seconds` and later.
TipStatistics tipStatistics(const TipRing& ring, double seconds);

/// Lines to be drawn: for each axis pieces without a gap, x in seconds, y in mm.
struct TipTracks {
    std::array<QVector<QPolygonF>, 3> axes;
};

/// The samples from `begin` to `end`, each position less `origin`, at `columns` places beside each
/// other: where there are more samples, the least and the greatest value of each column. A hidden
/// tool makes a gap, and so does a time without any samples: of half a second, or of three of the
/// usual intervals when that is longer.
TipTracks tipTracks(const TipRing& ring, double begin, double end,
                    const std::array<double, 3>& origin, int columns);

/// The samples of `seconds` and later as a table: names and units of the columns, then a row for
/// each sample, separated by commas, whatever the locale. The cells of a hidden tool's position are
/// empty.
std::string tipTable(const TipRing& ring, double seconds, int tool);

} // namespace workbench
