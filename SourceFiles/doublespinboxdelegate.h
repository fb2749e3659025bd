#pragma once

#include <QItemDelegate>

/// Edits the cells of a column of millimetre values with a double spin box (0.0 to 40.0, one
/// decimal). Cell and spin box show a point whatever the locale; a typed comma means the same.
class DoubleSpinboxDelegate : public QItemDelegate {
    Q_OBJECT

public:
    explicit DoubleSpinboxDelegate(QObject* parent);

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override;

    /// The text of a cell with this value.
    static QString textOf(double value);

    /// The number in a cell's text; 0.0 when it is none or not finite.
    static double valueOf(const QString& text);
};
