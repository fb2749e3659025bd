#include "general/host/replyreading.h"

#include "KestrelParse.h"

#include <QByteArray>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace replyreading {

QString textOf(int result, const hostlink::Reply& reply) {
    return result == 0 ? reply.toString() : QString();
}

QString wordOf(const QString& reply, int index) {
    return reply.section(QLatin1Char(' '), index, index);
}

int toInt(double value) {
    if (std::isnan(value)) {
        return 0;
    }
    using Limits = std::numeric_limits<int>;
    return static_cast<int>(std::clamp<double>(value, Limits::min(), Limits::max()));
}

void readDouble(const QString& text, double& value) {
    QByteArray bytes = text.toUtf8();
    double number = 0.0;
    if (KestrelSDK_Parse::string_get_d(bytes.data(), &number) != nullptr) {
        value = number;
    }
}

void readStepProgress(const QString& text, int& step, double& fraction) {
    const QByteArray bytes = text.toUtf8();
    char* end = nullptr;
    const long number = std::strtol(bytes.constData(), &end, 10);
    if (end == bytes.constData()) {
        return;
    }
    step = toInt(static_cast<double>(number));
    readDouble(QString::fromUtf8(end), fraction);
}

} // namespace replyreading
