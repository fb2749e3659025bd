#include "workbench/text/rowprinter.h"

#include <QAbstractItemView>
#include <QBrush>
#include <QColor>
#include <QHeaderView>

namespace workbench {

namespace {

QString cellText(const QModelIndex& index) {
    QString text = index.data(Qt::DisplayRole).toString();
    for (QChar& c : text) {
        if (c.unicode() < 0x20) {
            c = QLatin1Char(' ');
        }
    }
    const QBrush brush = index.data(Qt::BackgroundRole).value<QBrush>();
    if (brush.style() != Qt::NoBrush && brush.color().alpha() != 0) {
        text += QLatin1Char('{') + brush.color().name() + QLatin1Char('}');
    }
    return text;
}

} // namespace

QStringList visibleRows(const QWidget& widget) {
    QStringList lines;
    const auto views = widget.findChildren<QAbstractItemView*>();
    for (const QAbstractItemView* view : views) {
        const QAbstractItemModel* const model = view->model();
        if (model == nullptr || !view->isVisible() ||
            qobject_cast<const QHeaderView*>(view) != nullptr) {
            continue;
        }
        for (int row = 0; row < model->rowCount(); ++row) {
            QStringList cells{view->objectName(), QString::number(row)};
            for (int column = 0; column < model->columnCount(); ++column) {
                cells += cellText(model->index(row, column));
            }
            lines += cells.join(QLatin1Char('\t'));
        }
    }
    return lines;
}

} // namespace workbench
