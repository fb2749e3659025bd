#include "probecheck/points/record/pointrecord.h"

#include "general/host/bodytexts.h"

#include <QCoreApplication>
#include <QDateTime>

#include <algorithm>
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
    return bodytexts::toolName(tool);
}

QString referenceLabel(int reference) {
    if (reference >= 0) {
        return bodytexts::referenceName(reference);
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
    if (!std::isfinite(value)) {
        return QStringLiteral("-");
    }
    const QString text = bodytexts::fixed(value, decimals);
    const bool isZero = std::all_of(text.begin(), text.end(), [](QChar character) {
        return character == QLatin1Char('-') || character == QLatin1Char('.') ||
               character == QLatin1Char('0');
    });
    return isZero && text.startsWith(QLatin1Char('-')) ? text.mid(1) : text;
}

QString utcText(qint64 utcMs) {
    return QDateTime::fromMSecsSinceEpoch(utcMs, Qt::UTC).toString(Qt::ISODateWithMs);
}

} // namespace points
