#include "probecheck/points/files/pointjson.h"

#include "probecheck/points/record/pointdistance.h"

#include <QDateTime>
#include <QJsonValue>

#include <cmath>

namespace points {

namespace {

using kestrel_probe::Verdict;

constexpr const char* positionKeys[] = {"x_mm", "y_mm", "z_mm"};
constexpr const char* deviationKeys[] = {"sd_x_mm", "sd_y_mm", "sd_z_mm"};
constexpr double mostWhole = 2147483647.0;

/// Reads values as long as each is there; `isWhole` once one was not.
class Reader {
public:
    explicit Reader(const QJsonObject& object)
        : m_object(object) {}
    bool isWhole() const { return m_isWhole; }

    double number(const char* key) {
        const QJsonValue value = m_object.value(QLatin1String(key));
        require(value.isDouble() && std::isfinite(value.toDouble()));
        return value.toDouble();
    }
    double length(const char* key) {
        const double value = number(key);
        require(value >= 0.0);
        return value;
    }
    int count(const char* key, int least) {
        const double value = number(key);
        require(value >= least && value <= mostWhole && std::floor(value) == value);
        return m_isWhole ? static_cast<int>(value) : least;
    }
    QString text(const char* key) {
        const QJsonValue value = m_object.value(QLatin1String(key));
        require(value.isString());
        return value.toString();
    }
    /// 0-based number behind a prefix: "M1" is 0.
    int body(const QString& text, const QString& prefix) {
        bool isNumber = false;
        const int number = text.midRef(prefix.size()).toInt(&isNumber);
        require(text.startsWith(prefix) && isNumber && number >= 1);
        return number - 1;
    }
    void require(bool condition) { m_isWhole = m_isWhole && condition; }

private:
    const QJsonObject& m_object;
    bool m_isWhole = true;
};

} // namespace

QByteArray referenceWord(int reference) {
    if (reference >= 0) {
        return "MR" + QByteArray::number(reference + 1);
    }
    return reference == noReference ? "none" : "unknown";
}

QByteArray verdictWord(Verdict verdict) {
    switch (verdict) {
    case Verdict::Conforms:
        return "conforms";
    case Verdict::DoesNotConform:
        return "does not conform";
    case Verdict::Undecided:
        break;
    }
    return "undecided";
}

QJsonObject toJson(const PointRecord& point) {
    QJsonObject object;
    object.insert(QStringLiteral("type"), QStringLiteral("point"));
    object.insert(QStringLiteral("time"), utcText(point.utcMs));
    object.insert(QStringLiteral("tool"), toolLabel(point.tool));
    object.insert(QStringLiteral("reference"), QString::fromLatin1(referenceWord(point.reference)));
    object.insert(QStringLiteral("number"), point.number);
    object.insert(QStringLiteral("name"), point.name);
    for (std::size_t i = 0; i < 3; ++i) {
        object.insert(QLatin1String(positionKeys[i]), point.position[i]);
        object.insert(QLatin1String(deviationKeys[i]), point.deviation[i]);
    }
    object.insert(QStringLiteral("greatest_distance_mm"), point.greatestDistance);
    object.insert(QStringLiteral("samples"), point.samples);
    object.insert(QStringLiteral("duration_s"), point.duration);
    object.insert(QStringLiteral("tolerance_mm"), point.tolerance);
    const std::optional<double> radius = radius95(point);
    object.insert(QStringLiteral("radius95_mm"), radius ? QJsonValue(*radius) : QJsonValue());
    object.insert(QStringLiteral("verdict"), QString::fromLatin1(verdictWord(verdictOf(point))));
    return object;
}

std::optional<PointRecord> fromJson(const QJsonObject& object) {
    Reader reader(object);
    reader.require(reader.text("type") == QLatin1String("point"));
    PointRecord point;
    point.number = reader.count("number", 1);
    point.name = reader.text("name");
    for (std::size_t i = 0; i < 3; ++i) {
        point.position[i] = reader.number(positionKeys[i]);
        point.deviation[i] = reader.length(deviationKeys[i]);
    }
    point.greatestDistance = reader.length("greatest_distance_mm");
    point.samples = reader.count("samples", 1);
    point.duration = reader.length("duration_s");
    point.tolerance = reader.length("tolerance_mm");
    point.tool = reader.body(reader.text("tool"), QStringLiteral("M"));
    const QString reference = reader.text("reference");
    if (reference == QLatin1String("none")) {
        point.reference = noReference;
    } else if (reference == QLatin1String("unknown")) {
        point.reference = unknownReference;
    } else {
        point.reference = reader.body(reference, QStringLiteral("MR"));
    }
    const QDateTime time = QDateTime::fromString(reader.text("time"), Qt::ISODateWithMs);
    reader.require(time.isValid());
    point.utcMs = time.toMSecsSinceEpoch();
    return reader.isWhole() ? std::optional<PointRecord>(point) : std::nullopt;
}

} // namespace points
