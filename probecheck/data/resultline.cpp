#include "probecheck/data/resultline.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

namespace {

constexpr double perSecond = 1e3;
constexpr double perOther = 1e4;
constexpr double mostDecimals = 1e9; // greater ones keep what they have

QJsonValue rounded(const QJsonValue& value, double steps) {
    if (value.isArray()) {
        QJsonArray all;
        const QJsonArray values = value.toArray();
        for (const QJsonValue& each : values) {
            all.append(rounded(each, steps));
        }
        return all;
    }
    const double number = value.toDouble();
    if (!value.isDouble() || !(std::abs(number) < mostDecimals)) {
        return value;
    }
    return std::round(number * steps) / steps + 0.0; // no minus before a zero
}

} // namespace

QByteArray resultLine(const QJsonObject& object) {
    QJsonObject line = object;
    for (auto it = line.begin(); it != line.end(); ++it) {
        it.value() =
            rounded(it.value(), it.key().endsWith(QLatin1String("_s")) ? perSecond : perOther);
    }
    return QJsonDocument(line).toJson(QJsonDocument::Compact);
}
