#pragma once

#include <QDoubleSpinBox>
#include <QSpinBox>

/// For decimal numbers. A point and a comma, typed or pasted, mean the same in every locale; shown
/// is a point, as everywhere else in the modules' windows. Neither is ever a thousands separator:
/// what does not fit a number with one mark is refused.
class DecimalSpinBox : public QDoubleSpinBox {
    Q_OBJECT

public:
    explicit DecimalSpinBox(QWidget* parent = nullptr);

    QValidator::State validate(QString& text, int& position) const override;
    double valueFromText(const QString& text) const override;
};

/// For whole numbers. A mark may be typed but nothing behind it, so that "10.5" ends as 10 and
/// never as 105.
class WholeSpinBox : public QSpinBox {
    Q_OBJECT

public:
    explicit WholeSpinBox(QWidget* parent = nullptr);

    QValidator::State validate(QString& text, int& position) const override;
    void fixup(QString& text) const override;
};
