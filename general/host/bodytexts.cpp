#include "general/host/bodytexts.h"

#include <QTextDocument>

#include <array>
#include <charconv>

namespace bodytexts {

QString toolName(int index) {
    return QLatin1Char('M') + QString::number(index + 1);
}

QString referenceName(int index) {
    return QLatin1String("MR") + QString::number(index + 1);
}

int bodyNumber(const QString& reply, bool* ok) {
    bool good = false;
    const int number = reply.midRef(1).toInt(&good, 10);
    good = good && number >= 0;
    if (ok != nullptr) {
        *ok = good;
    }
    return good ? number : 0;
}

QString fixed(double value, int decimals) {
    // 309 digits before the point, the sign, the point and the decimals.
    std::array<char, 1024> text;
    // Neither QString::asprintf nor QString::number rounds and signs as C does.
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value,
                                   std::chars_format::fixed, decimals);
    return QString::fromLatin1(text.data(), static_cast<int>(end.ptr - text.data()));
}

QString toolTip(const QString& text) {
    return Qt::mightBeRichText(text) ? text.toHtmlEscaped() : text;
}

QString redMessage(const QString& text) {
    return QStringLiteral("<b><font color=red>%1</font></b>").arg(text);
}

} // namespace bodytexts
