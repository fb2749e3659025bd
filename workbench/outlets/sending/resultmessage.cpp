#include "workbench/outlets/sending/resultmessage.h"

#include "workbench/outlets/sending/frames/framejson.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <QUuid>

#include <optional>

namespace workbench {

namespace {

void appendText(const char* key, const QString& value, std::string& text) {
    text.append(",\"").append(key).append("\":");
    appendJsonString(value.toStdString(), text);
}

std::optional<QJsonObject> objectOf(const ModuleResult& result) {
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(result.text.toUtf8(), &error);
    const bool isObject = error.error == QJsonParseError::NoError && document.isObject();
    return isObject ? std::make_optional(document.object()) : std::nullopt;
}

} // namespace

bool isResultCategory(std::string_view category) {
    return category == "result";
}

std::string resultId(const ModuleResult& result, const QString& station) {
    const auto object = objectOf(result);
    const bool tellsItsTime = object && !object->value(QLatin1String("time")).toString().isEmpty();
    QUuid id = QUuid::createUuid();
    if (tellsItsTime) {
        // The namespace is ours alone.
        static const QUuid results(QStringLiteral("{8d2f7c1e-6a50-4b8e-9c4d-51e0a7f3b926}"));
        const QStringList parts{station, result.source, result.text};
        id = QUuid::createUuidV5(results, parts.join(QChar()));
    }
    return id.toString(QUuid::WithoutBraces).toStdString();
}

std::string resultMessage(const ModuleResult& result, const std::string& id,
                          const QString& station) {
    std::string text = R"({"id":)";
    appendJsonString(id, text);
    appendText("station", station, text);
    appendText("source", result.source, text);
    text.append(R"(,"utc":")").append(kestrel_wire::formatUtc(result.time)).append("\"");
    if (const auto object = objectOf(result)) {
        // Written anew: what is read here is less strict than what other programs read.
        const QByteArray json = QJsonDocument(*object).toJson(QJsonDocument::Compact);
        text.append(",\"result\":").append(json.constData(), static_cast<std::size_t>(json.size()));
    } else {
        appendText("text", result.text, text);
    }
    text += '}';
    return text;
}

} // namespace workbench
