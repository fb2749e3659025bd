#include "workbench/outlets/sending/frames/framebuffer.h"
#include "workbench/outlets/sending/frames/framedecoder.h"
#include "workbench/outlets/sending/frames/framejson.h"
#include "workbench/outlets/sending/outleturl.h"
#include "workbench/outlets/sending/resultmessage.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

namespace {

constexpr kestrel_wire::UtcMilliseconds arrival = 1795318812345;

void require(bool good) {
    if (!good) {
        std::abort();
    }
}

QJsonObject object(const std::string& text) {
    require(text.find('\n') == std::string::npos);
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromStdString(text), &error);
    require(error.error == QJsonParseError::NoError && document.isObject());
    return document.object();
}

std::vector<std::string_view> linesOf(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        lines.push_back(text.substr(0, text.find('\n')));
        text.remove_prefix(std::min(text.size(), lines.back().size() + 1));
    }
    return lines;
}

// The way of one datagram into another one.
void readFrame(std::string_view text) {
    workbench::FrameBuffer buffer;
    buffer.add(linesOf(text), arrival);
    buffer.end();
    workbench::FrameBuffer::Batch batch;
    buffer.take(batch);
    require(batch.frames.size() <= 1 && batch.isEnd);
    static workbench::FrameDecoder decoder; // its tables may be large
    decoder.begin(arrival);
    for (std::size_t at = 0; at < batch.text.size(); at = batch.text.find('\0', at) + 1) {
        decoder.add(batch.text.c_str() + at);
    }
    const workbench::TrackedFrame frame = decoder.end();
    std::string json;
    workbench::appendFrameJson(frame, workbench::FrameTimes::TimeStampAndUtc, json);
    const QJsonObject written = object(json);
    for (const workbench::TrackedBody& body : frame.bodies) {
        const QString name = QString::fromStdString(workbench::bodyLabel(body.kind, body.number));
        const QJsonObject entry = written.value(name).toObject();
        require(entry.value(QLatin1String("tracked")).toBool() == body.isTracked());
        require(entry.contains(QLatin1String("x")) == body.isTracked());
    }
}

void readResult(const QString& text) {
    const QJsonObject written = object(workbench::resultMessage({text, text, arrival}, "id", text));
    require(written.value(QLatin1String("id")).toString() == QLatin1String("id"));
    require(written.contains(QLatin1String("result")) != written.contains(QLatin1String("text")));
}

void readUrl(const QString& text) {
    workbench::OutletUrl url;
    QString error;
    if (!url.parse(text, &error)) {
        require(!error.isEmpty() && url.text.isEmpty());
        return;
    }
    require(error.isEmpty() && url.port > 0 && url.text == text.trimmed());
    require(url.kind == workbench::OutletUrl::Kind::Igtl || !url.host.isEmpty());
    const QString topic = url.prefix + url.station;
    require(!topic.contains(QLatin1Char('#')) && !topic.contains(QLatin1Char('+')) &&
            !topic.contains(QChar(0)));
    require(url.passwordFile.isEmpty() || url.passwordFile.startsWith(QLatin1Char('/')));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    readFrame(text);
    const QString words = QString::fromUtf8(text.data(), static_cast<int>(text.size()));
    readResult(words);
    readUrl(words);
    return 0;
}
