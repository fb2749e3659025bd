#include "probecheck/points/files/pointcsv.h"

#include "probecheck/points/files/pointjson.h"
#include "probecheck/points/record/pointdistance.h"

#include <charconv>
#include <cmath>

namespace points {

namespace {

constexpr const char* columns[] = {"number",
                                   "name",
                                   "x_mm",
                                   "y_mm",
                                   "z_mm",
                                   "sd_x_mm",
                                   "sd_y_mm",
                                   "sd_z_mm",
                                   "greatest_distance_mm",
                                   "samples",
                                   "duration_s",
                                   "tool",
                                   "reference",
                                   "time_utc",
                                   "tolerance_mm",
                                   "radius95_mm",
                                   "verdict",
                                   "distance_to_previous_mm",
                                   "distance_uncertainty95_mm"};

constexpr int pieceSize = 65536; // bytes, and some

/// The shortest text that is read back as the same number; empty for what is none.
QByteArray number(double value) {
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, value);
    return std::isfinite(value) ? QByteArray(digits, static_cast<int>(end.ptr - digits))
                                : QByteArray();
}

QByteArray number(const std::optional<double>& value) {
    return value ? number(*value) : QByteArray();
}

QByteArray plainName(const QString& name) {
    const QByteArray text = name.toUtf8();
    return !text.isEmpty() && QByteArray("=+-@\t").contains(text.at(0)) ? '\'' + text : text;
}

QList<QByteArray> fieldsOf(const PointRecord& point, const PointRecord* before) {
    const auto distance = before == nullptr ? std::nullopt : distanceOf(*before, point);
    QList<QByteArray> fields{QByteArray::number(point.number), plainName(point.name)};
    for (const double value : point.position) {
        fields << number(value);
    }
    for (const double value : point.deviation) {
        fields << number(value);
    }
    fields << number(point.greatestDistance) << QByteArray::number(point.samples)
           << number(point.duration) << toolLabel(point.tool).toUtf8()
           << referenceWord(point.reference) << utcText(point.utcMs).toUtf8()
           << number(point.tolerance) << number(radius95(point)) << verdictWord(verdictOf(point));
    if (distance) {
        fields << number(distance->length) << number(distance->uncertainty);
    } else {
        fields << QByteArray() << QByteArray();
    }
    return fields;
}

QByteArray csvField(QByteArray field) {
    if (field.contains('"') || field.contains(',') || field.contains('\n') ||
        field.contains('\r')) {
        return '"' + field.replace('"', "\"\"") + '"';
    }
    return field;
}

QByteArray tabField(QByteArray field) {
    return field.replace('\t', ' ').replace('\n', ' ').replace('\r', ' ');
}

struct Style {
    char separator;
    const char* lineEnd;
    QByteArray (*field)(QByteArray);
};

bool writeTable(const std::vector<PointRecord>& points, const Style& style, const TableSink& sink) {
    QByteArray text;
    const auto addLine = [&](const QList<QByteArray>& fields) {
        for (int i = 0; i < fields.size(); ++i) {
            if (i > 0) {
                text += style.separator;
            }
            text += style.field(fields.at(i));
        }
        text += style.lineEnd;
    };
    QList<QByteArray> header;
    for (const char* const column : columns) {
        header << column;
    }
    addLine(header);
    const PointRecord* before = nullptr;
    std::size_t done = 0;
    for (const PointRecord& point : points) {
        addLine(fieldsOf(point, before));
        before = &point;
        ++done;
        if (text.size() >= pieceSize) {
            if (!sink(text, done)) {
                return false;
            }
            text.clear();
        }
    }
    return sink(text, done);
}

} // namespace

bool writeCsv(const std::vector<PointRecord>& points, const TableSink& sink) {
    return writeTable(points, {',', "\r\n", csvField}, sink);
}

QString toTabSeparated(const std::vector<PointRecord>& points) {
    QByteArray text;
    writeTable(points, {'\t', "\n", tabField}, [&text](const QByteArray& piece, std::size_t) {
        text += piece;
        return true;
    });
    return QString::fromUtf8(text);
}

} // namespace points
