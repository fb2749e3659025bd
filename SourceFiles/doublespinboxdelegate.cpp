#include "SourceFiles/doublespinboxdelegate.h"

#include "SourceFiles/bodytexts.h"

#include <QDoubleSpinBox>

#include <cmath>

namespace {

constexpr int decimals = 1;
constexpr double minimum = 0.0;
constexpr double maximum = 40.0;
constexpr double step = 0.1;

class LenientSpinBox final : public QDoubleSpinBox {
public:
    using QDoubleSpinBox::QDoubleSpinBox;

    // The table shows a point, the user's keyboard may have a comma: without this the wrong one of
    // the two is swallowed and "1.5" becomes 15.
    QValidator::State validate(QString& text, int& position) const override {
        text.replace(QLatin1Char('.'), locale().decimalPoint());
        text.replace(QLatin1Char(','), locale().decimalPoint());
        return QDoubleSpinBox::validate(text, position);
    }
};

} // namespace

DoubleSpinboxDelegate::DoubleSpinboxDelegate(QObject* parent)
    : QItemDelegate(parent) {}

QWidget* DoubleSpinboxDelegate::createEditor(QWidget* parent,
                                             const QStyleOptionViewItem& /*option*/,
                                             const QModelIndex& /*index*/) const {
    return new LenientSpinBox(parent);
}

void DoubleSpinboxDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
    auto* const spinBox = qobject_cast<QDoubleSpinBox*>(editor);
    if (spinBox == nullptr) {
        return;
    }
    spinBox->setMinimum(minimum);
    spinBox->setMaximum(maximum);
    spinBox->setDecimals(decimals);
    spinBox->setSingleStep(step);
    spinBox->setValue(valueOf(index.data(Qt::DisplayRole).toString()));
}

void DoubleSpinboxDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                         const QModelIndex& index) const {
    auto* const spinBox = qobject_cast<QDoubleSpinBox*>(editor);
    if (spinBox == nullptr) {
        return;
    }
    spinBox->interpretText();
    model->setData(index, textOf(spinBox->value()), Qt::EditRole);
}

QString DoubleSpinboxDelegate::textOf(double value) {
    return bodytexts::fixed(value, decimals);
}

double DoubleSpinboxDelegate::valueOf(const QString& text) {
    bool ok = false;
    const double value = text.toDouble(&ok);
    return ok && std::isfinite(value) ? value : 0.0;
}
