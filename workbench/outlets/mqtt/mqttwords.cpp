#include "workbench/outlets/mqtt/mqttwords.h"

#include <QCoreApplication>

#include <cerrno>
#include <cstring>
#include <mosquitto.h>

namespace workbench {

namespace {

class MqttTexts {
    Q_DECLARE_TR_FUNCTIONS(workbench::MqttLink)
};

} // namespace

QString wordOfCode(int code) {
    switch (code) {
    case MOSQ_ERR_ERRNO:
        return QString::fromLocal8Bit(std::strerror(errno));
    case MOSQ_ERR_EAI:
    case MOSQ_ERR_LOOKUP:
        return MqttTexts::tr("its name is not known");
    case MOSQ_ERR_CONN_LOST:
    case MOSQ_ERR_NO_CONN:
        return MqttTexts::tr("the connection was ended there");
    case MOSQ_ERR_KEEPALIVE:
        return MqttTexts::tr("it has been silent for too long");
    case MOSQ_ERR_PROTOCOL:
    case MOSQ_ERR_MALFORMED_PACKET:
    case MOSQ_ERR_MALFORMED_UTF8:
    case MOSQ_ERR_OVERSIZE_PACKET:
        return MqttTexts::tr("what comes from there is no MQTT");
    case MOSQ_ERR_TLS:
        return MqttTexts::tr("the encryption has failed");
    default:
        return QString::fromUtf8(::mosquitto_strerror(code));
    }
}

QString wordOfAnswer(int answer) {
    switch (answer) {
    case 1:
        return MqttTexts::tr("it wants another version of MQTT");
    case 2:
        return MqttTexts::tr("it does not take the name of this station");
    case 3:
        return MqttTexts::tr("it is not available now");
    default:
        return QString::fromUtf8(::mosquitto_connack_string(answer));
    }
}

QString wordOfCertificates(const std::string& logged, int code) {
    const auto has = [&logged](const char* text) { return logged.find(text) != std::string::npos; };
    if (has("certificate required") || has("handshake failure") || has("bad certificate")) {
        return MqttTexts::tr("it does not take ours, or wants one");
    }
    if (has("verify failed") || has("verification failed")) {
        return MqttTexts::tr("its own is of an authority that is not trusted, made out to another "
                             "host, or not valid now");
    }
    if (has("wrong version number") || has("unknown protocol")) {
        return MqttTexts::tr("what comes from there is not encrypted");
    }
    return logged.empty() ? wordOfCode(code) : QString::fromStdString(logged);
}

} // namespace workbench
