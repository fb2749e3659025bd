#pragma once

#include "SourceFiles/numberglyphs.h"

#include <QStyledItemDelegate>

#include <memory>

class QTableWidget;

/// Paints the cells of a table whose items have a text in one line, an alignment and colours: the
/// same pixels as the stock delegate's, without its three text layouts and its questions to the
/// style. A cell that is anything else (selected, focused, elided, another text than a number or a
/// body name) and tables in a window with a style sheet are left to the stock delegate.
///
/// It says sizeHintChanged() for all cells when the table's font or style has changed.
class PlainCellDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    /// Becomes the table's delegate and its child.
    explicit PlainCellDelegate(QTableWidget* table);
    ~PlainCellDelegate() override;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    bool eventFilter(QObject* object, QEvent* event) override;

    /// The width that a cell of the table needs to show its text whole; 0 where there is no item.
    int widthOf(int row, int column) const;

private:
    struct Look;

    bool isPlain(const QStyleOptionViewItem& option) const;
    bool hostHasNoStyleSheet() const;
    Look& look(const QFont& font) const;

    QTableWidget* m_table;
    mutable std::unique_ptr<Look> m_look; ///< font and style as measured; null after they changed
};
