#include "workbench/outlets/igtl/igtlmessages.h"

#include "workbench/outlets/sending/frames/framejson.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>
#include <igtlPointMessage.h>
#include <igtlTimeStamp.h>
#include <igtlTransformMessage.h>
#include <iterator>

namespace workbench {

namespace {

constexpr std::int64_t millisecondsPerSecond = 1000;
constexpr std::int64_t nanosecondsPerMillisecond = 1000000;
constexpr int longestDeviceName = 19; // of the 20 bytes one is left for a NUL
constexpr int longestPointName = 63;

igtl::TimeStamp::Pointer timeStamp(kestrel_wire::UtcMilliseconds time) {
    igtl::TimeStamp::Pointer stamp = igtl::TimeStamp::New();
    stamp->SetTime(
        static_cast<igtlUint32>(time / millisecondsPerSecond),
        static_cast<igtlUint32>(time % millisecondsPerSecond * nanosecondsPerMillisecond));
    return stamp;
}

void append(igtl::MessageBase& message, std::string& messages) {
    message.Pack();
    messages.append(static_cast<const char*>(message.GetPackPointer()),
                    static_cast<std::size_t>(message.GetPackSize()));
}

template <std::size_t size>
bool areFinite(const double (&numbers)[size]) {
    return std::all_of(std::begin(numbers), std::end(numbers),
                       [](double number) { return std::isfinite(number); });
}

// Characters are cut whole.
std::string shortened(const QString& text, int mostBytes) {
    QString left = text;
    while (left.toUtf8().size() > mostBytes) {
        left.chop(1);
    }
    return left.toUtf8().toStdString();
}

bool readLength(const QJsonObject& object, const char* key, double* value) {
    const QJsonValue found = object.value(QLatin1String(key));
    *value = found.toDouble();
    return found.isDouble() && std::isfinite(*value);
}

} // namespace

void appendTransforms(const TrackedFrame& frame, std::string& messages) {
    igtl::TimeStamp::Pointer stamp = timeStamp(frame.arrival);
    for (const TrackedBody& body : frame.bodies) {
        if (!body.isTracked() || !areFinite(body.position) || !areFinite(body.rotation)) {
            continue;
        }
        igtl::Matrix4x4 matrix = {};
        for (std::size_t row = 0; row < 3; ++row) {
            for (std::size_t column = 0; column < 3; ++column) {
                matrix[row][column] = static_cast<float>(body.rotation[3 * column + row]);
            }
            matrix[row][3] = static_cast<float>(body.position[row]);
        }
        matrix[3][3] = 1.0F;
        igtl::TransformMessage::Pointer message = igtl::TransformMessage::New();
        message->SetDeviceName(bodyLabel(body.kind, body.number).c_str());
        message->SetTimeStamp(stamp);
        message->SetMatrix(matrix);
        append(*message, messages);
    }
}

void appendPoint(const ModuleResult& result, std::string& messages) {
    const QJsonObject object = QJsonDocument::fromJson(result.text.toUtf8()).object();
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    if (object.value(QLatin1String("type")).toString() != QLatin1String("point") ||
        !readLength(object, "x_mm", &x) || !readLength(object, "y_mm", &y) ||
        !readLength(object, "z_mm", &z)) {
        return;
    }
    double radius = 0.0;
    if (!readLength(object, "radius95_mm", &radius)) {
        radius = 0.0;
    }
    igtl::PointElement::Pointer point = igtl::PointElement::New();
    const std::string name =
        shortened(object.value(QLatin1String("name")).toString(), longestPointName);
    point->SetName(name.c_str());
    point->SetGroupName("captured");
    point->SetRGBA(255, 255, 255, 255);
    point->SetPosition(static_cast<float>(x), static_cast<float>(y), static_cast<float>(z));
    point->SetRadius(static_cast<float>(radius));
    igtl::PointMessage::Pointer message = igtl::PointMessage::New();
    const std::string tool =
        shortened(object.value(QLatin1String("tool")).toString(), longestDeviceName);
    message->SetDeviceName(tool.c_str());
    igtl::TimeStamp::Pointer stamp = timeStamp(result.time);
    message->SetTimeStamp(stamp);
    message->AddPointElement(point);
    append(*message, messages);
}

} // namespace workbench
