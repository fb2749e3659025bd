#pragma once

#include "probecheck/points/pointrecord.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace points {

/// Points as comma-separated values in UTF-8 (RFC 4180): a header that names the units, a line for
/// each point, numbers with a point whatever the locale and with all their digits. The distance to
/// the one before is that of the list given. A name that a spreadsheet would take for a formula
/// begins with an apostrophe.
QByteArray toCsv(const std::vector<PointRecord>& points);

/// The same columns separated by tabs, to be pasted; lines end by a line feed.
QString toTabSeparated(const std::vector<PointRecord>& points);

} // namespace points
