#include "workbench/controller/command/controlleraddress.h"

#include <QRegularExpression>

namespace workbench {

bool ControllerAddress::parse(const QString& text) {
    static const QRegularExpression pattern(
        QStringLiteral(R"(\A(?:\[([0-9A-Fa-f:.%\w]+)\]|([^\s:\[\]/]+))(?::([0-9]{1,5}))?\z)"));
    const QRegularExpressionMatch match = pattern.match(text.trimmed());
    if (!match.hasMatch()) {
        return false;
    }
    uint number = defaultPort;
    if (!match.captured(3).isEmpty()) {
        number = match.captured(3).toUInt();
        if (number == 0 || number > 0xffff) {
            return false;
        }
    }
    host = match.captured(1).isEmpty() ? match.captured(2) : match.captured(1);
    port = static_cast<quint16>(number);
    return true;
}

QString ControllerAddress::toString() const {
    const QString name =
        host.contains(QLatin1Char(':')) ? QLatin1Char('[') + host + QLatin1Char(']') : host;
    return name + QLatin1Char(':') + QString::number(port);
}

} // namespace workbench
