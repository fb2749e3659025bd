#include "general/widgets/spinboxes.h"

namespace {

bool isMark(QChar character) {
    return character == QLatin1Char('.') || character == QLatin1Char(',');
}

bool isPartOfANumber(QChar character) {
    return (character >= QLatin1Char('0') && character <= QLatin1Char('9')) ||
           character == QLatin1Char('-') || character == QLatin1Char('+');
}

} // namespace

DecimalSpinBox::DecimalSpinBox(QWidget* parent)
    : QDoubleSpinBox(parent) {
    setLocale(QLocale::c());
}

QValidator::State DecimalSpinBox::validate(QString& text, int& position) const {
    const int begin = text.startsWith(prefix()) ? prefix().size() : 0;
    const int end = text.size() - (text.endsWith(suffix()) ? suffix().size() : 0);
    for (int i = begin; i < end; ++i) {
        if (isMark(text.at(i))) {
            text[i] = locale().decimalPoint();
        } else if (!isPartOfANumber(text.at(i)) && !text.at(i).isSpace()) {
            return QValidator::Invalid;
        }
    }
    return QDoubleSpinBox::validate(text, position);
}

double DecimalSpinBox::valueFromText(const QString& text) const {
    QString number = text;
    int position = 0;
    validate(number, position);
    return QDoubleSpinBox::valueFromText(number);
}

WholeSpinBox::WholeSpinBox(QWidget* parent)
    : QSpinBox(parent) {
    setLocale(QLocale::c());
}

QValidator::State WholeSpinBox::validate(QString& text, int& position) const {
    if (text.isEmpty() || !isMark(text.at(text.size() - 1))) {
        return QSpinBox::validate(text, position);
    }
    QString number = text.chopped(1);
    const QValidator::State state = QSpinBox::validate(number, position);
    return number.isEmpty() || state == QValidator::Invalid ? QValidator::Invalid
                                                            : QValidator::Intermediate;
}

void WholeSpinBox::fixup(QString& text) const {
    if (!text.isEmpty() && isMark(text.at(text.size() - 1))) {
        text.chop(1);
    }
    QSpinBox::fixup(text);
}
