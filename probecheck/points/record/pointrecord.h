#pragma once

#include "libs/kestrel_probe/PointCapture.h"
#include "libs/kestrel_probe/Verdict.h"

#include <QString>

#include <array>

namespace points {

inline constexpr int noReference = -1;
inline constexpr int unknownReference = -2; ///< the controller did not say

/// A captured point as the list keeps it. Lengths in mm.
struct PointRecord {
    int number = 0; ///< counts from 1; a session has each number once
    QString name;
    std::array<double, 3> position{};  ///< of the tip's centre; from the reference if there is one
    std::array<double, 3> deviation{}; ///< standard deviation of a sample, per axis
    double greatestDistance = 0.0;     ///< of a sample from the mean
    qint64 samples = 0;
    double duration = 0.0;       ///< s from the first sample to the last
    int tool = 0;                ///< counts from 0
    int reference = noReference; ///< counts from 0
    qint64 utcMs = 0;            ///< of the last sample, ms since 1970 in UTC
    double tolerance = 0.0;      ///< that was in force
};

/// A point of what was held still; number, name, tool, reference, time and tolerance stay as they
/// are by default.
PointRecord recordOf(const kestrel_probe::CapturedPoint& captured);

QString toolLabel(int tool); ///< "M1"

/// "MR1", "none" or "unknown", in the user's language for the words.
QString referenceLabel(int reference);

/// In the user's language: "conforms", "does not conform", "undecided".
QString verdictText(kestrel_probe::Verdict verdict);

/// With so many decimals and a point whatever the locale; what rounds to zero has no sign, what is
/// no number is "-".
QString fixedText(double value, int decimals);

/// "2026-11-22T04:15:00.123Z".
QString utcText(qint64 utcMs);

} // namespace points
