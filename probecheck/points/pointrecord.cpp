#include "probecheck/points/pointrecord.h"

#include <QCoreApplication>
#include <QDateTime>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace points {

PointRecord recordOf(const kestrel_probe::CapturedPoint& captured) {
    PointRecord record;
    std::copy_n(captured.mean, 3, record.position.begin());
    std::copy_n(captured.deviation, 3, record.deviation.begin());
    record.greatestDistance = captured.greatestDistance;
    record.samples = static_cast<qint64>(captured.samples);
    record.duration = captured.duration;
    return record;
}

QString toolLabel(int tool) {
    return QStringLiteral("M%1").arg(tool + 1);
}

QString referenceLabel(int reference) {
    if (reference >= 0) {
        return QStringLiteral("MR%1").arg(reference + 1);
    }
    return reference == noReference ? QCoreApplication::translate("points", "none")
                                    : QCoreApplication::translate("points", "unknown");
}

QString verdictText(kestrel_probe::Verdict verdict) {
    switch (verdict) {
    case kestrel_probe::Verdict::Conforms:
        return QCoreApplication::translate("points", "conforms");
    case kestrel_probe::Verdict::DoesNotConform:
        return QCoreApplication::translate("points", "does not conform");
    case kestrel_probe::Verdict::Undecided:
        break;
    }
    return QCoreApplication::translate("points", "undecided");
}

QString fixedText(double value, int decimals) {
    char digits[400]; // the largest double has 309 before the point
    if (!std::isfinite(value)) {
        return QStringLiteral("-");
    }
    const auto end =
        std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, decimals);
    const char* begin = digits;
    if (*begin == '-' &&
        std::all_of(begin + 1, static_cast<const char*>(end.ptr),
                    [](char character) { return character == '0' || character == '.'; })) {
        ++begin;
    }
    return QString::fromLatin1(begin, static_cast<int>(end.ptr - begin));
}

QString utcText(qint64 utcMs) {
    return QDateTime::fromMSecsSinceEpoch(utcMs, Qt::UTC).toString(Qt::ISODateWithMs);
}

} // namespace points
