#pragma once

#include "probecheck/points/record/pointrecord.h"

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <functional>
#include <vector>

namespace points {

/// Takes a piece of a table, with how many points that makes; false stops it.
using TableSink = std::function<bool(const QByteArray& piece, std::size_t points)>;

/// Points as comma-separated values in UTF-8 (RFC 4180): a header that names the units, a line for
/// each point, numbers with a point whatever the locale and with all their digits. The distance to
/// the one before is that of the list given. A name that a spreadsheet would take for a formula
/// begins with an apostrophe. Piece by piece; false when the sink has stopped it. Any thread.
bool writeCsv(const std::vector<PointRecord>& points, const TableSink& sink);

/// The same columns separated by tabs, to be pasted; lines end by a line feed.
QString toTabSeparated(const std::vector<PointRecord>& points);

} // namespace points
