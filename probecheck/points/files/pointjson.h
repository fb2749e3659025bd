#pragma once

#include "probecheck/points/record/pointrecord.h"

#include <QByteArray>
#include <QJsonObject>

#include <optional>

namespace points {

/// Words for files and other programs, the same in every language.
QByteArray referenceWord(int reference); ///< "MR1", "none" or "unknown"
QByteArray verdictWord(kestrel_probe::Verdict verdict);

/// A point with names and units in its keys: what the host's log and the session file get.
QJsonObject toJson(const PointRecord& point);

/// Reads what toJson() has made. Empty when something is missing or cannot be: nothing of a damaged
/// line is taken for a point.
std::optional<PointRecord> fromJson(const QJsonObject& object);

} // namespace points
