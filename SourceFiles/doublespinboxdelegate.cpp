#include "SourceFiles/doublespinboxdelegate.h"

#include "general/host/bodytexts.h"
#include "general/widgets/spinboxes.h"

#include <cmath>

namespace {

constexpr int decimals = 1;
constexpr double minimum = 0.0;
constexpr double maximum = 40.0;
constexpr double step = 0.1;

} // namespace

DoubleSpinboxDelegate::DoubleSpinboxDelegate(QObject* parent)
    : QItemDelegate(parent) {}

QWidget* DoubleSpinboxDelegate::createEditor(QWidget* parent,
                                             const QStyleOptionViewItem& /*option*/,
                                             const QModelIndex& /*index*/) const {
    return new DecimalSpinBox(parent);
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
