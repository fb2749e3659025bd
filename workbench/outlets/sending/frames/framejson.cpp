#include "workbench/outlets/sending/frames/framejson.h"

#include "KestrelAngles.h"
#include "libs/kestrel_recording/numbertext.h"
#include "libs/kestrel_recording/quaternion.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QString>

#include <cmath>

namespace workbench {

namespace {

using kestrel_recording::appendInteger;
using kestrel_recording::appendNumber;

constexpr int angleDecimals = 6;
constexpr int quaternionDecimals = 9;
constexpr double millisecondsPerSecond = 1000.0;

void appendKey(const char* key, std::string& text) {
    text.append(",\"").append(key).append("\":");
}

void appendValue(double number, std::string& text) {
    if (std::isfinite(number)) {
        appendNumber(number, text);
    } else {
        text += "null";
    }
}

void appendValue(double number, int decimals, std::string& text) {
    if (std::isfinite(number)) {
        appendNumber(number, decimals, text);
    } else {
        text += "null";
    }
}

void appendPose(const TrackedBody& body, std::string& text) {
    constexpr const char* positionKeys[] = {"x", "y", "z"};
    constexpr const char* angleKeys[] = {"rx", "ry", "rz"};
    constexpr const char* quaternionKeys[] = {"qw", "qx", "qy", "qz"};
    const auto angles = KestrelSDK_Angles::rotationAngles(body.rotation);
    const double degrees[] = {angles.rx, angles.ry, angles.rz};
    const auto quaternion = kestrel_recording::quaternionOf(body.rotation);
    for (std::size_t i = 0; i < 3; ++i) {
        appendKey(positionKeys[i], text);
        appendValue(body.position[i], text);
    }
    for (std::size_t i = 0; i < 3; ++i) {
        appendKey(angleKeys[i], text);
        appendValue(degrees[i], angleDecimals, text);
    }
    for (std::size_t i = 0; i < quaternion.size(); ++i) {
        appendKey(quaternionKeys[i], text);
        appendValue(quaternion[i], quaternionDecimals, text);
    }
}

void appendTool(const TrackedBody& tool, std::string& text) {
    appendKey("buttons", text);
    text += '[';
    for (int i = 0; i < tool.buttonCount; ++i) {
        text += i > 0 ? "," : "";
        text += (tool.pressedButtons >> static_cast<unsigned>(i) & 1U) != 0 ? '1' : '0';
    }
    text += ']';
    if (tool.radius) {
        appendKey("radius", text);
        appendValue(*tool.radius, text);
    }
    if (tool.reference) {
        appendKey("reference", text);
        text += '"';
        text += *tool.reference > 0 ? bodyLabel(TrackedBody::Kind::Reference, *tool.reference)
                                    : std::string("none");
        text += '"';
    }
}

} // namespace

std::string bodyLabel(TrackedBody::Kind kind, int number) {
    return (kind == TrackedBody::Kind::Tool ? "M" : "MR") + std::to_string(number);
}

void appendFrameJson(const TrackedFrame& frame, FrameTimes times, std::string& text) {
    text += "{\"timestamp\":";
    if (frame.seconds) {
        appendValue(*frame.seconds, text);
    } else {
        appendNumber(static_cast<double>(frame.arrival) / millisecondsPerSecond, text);
    }
    if (times == FrameTimes::TimeStampAndUtc) {
        appendKey("utc", text);
        text.append("\"").append(kestrel_wire::formatUtc(frame.arrival)).append("\"");
    }
    if (frame.counter) {
        appendKey("frame", text);
        appendInteger(*frame.counter, text);
    }
    for (const TrackedBody& body : frame.bodies) {
        appendKey(bodyLabel(body.kind, body.number).c_str(), text);
        text += body.isTracked() ? "{\"tracked\":true" : "{\"tracked\":false";
        if (body.isTracked()) {
            appendPose(body, text);
        }
        appendKey("quality", text);
        appendValue(body.quality, text);
        if (body.kind == TrackedBody::Kind::Tool) {
            appendTool(body, text);
        }
        text += '}';
    }
    text += '}';
}

// Qt's writer knows the escapes; it writes values in arrays and objects only.
void appendJsonString(const std::string& utf8, std::string& text) {
    const QByteArray array =
        QJsonDocument(QJsonArray{QString::fromUtf8(utf8.data(), static_cast<int>(utf8.size()))})
            .toJson(QJsonDocument::Compact);
    text.append(array.constData() + 1, static_cast<std::size_t>(array.size()) - 2);
}

} // namespace workbench
