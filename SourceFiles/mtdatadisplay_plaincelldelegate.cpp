#include "SourceFiles/mtdatadisplay_plaincelldelegate.h"

#include <QEvent>
#include <QPainter>
#include <QTableWidget>

#include <cmath>

struct PlainCellDelegate::Look {
    QSize sizeOf(const NumberGlyphs::Extent& text) const {
        return QSize(static_cast<int>(std::ceil(text.width)) + 2 * margin,
                     static_cast<int>(std::ceil(glyphs.height())));
    }

    // Where a text layout would begin the text of a cell, which is centred or aligned right.
    QPointF placeOf(const NumberGlyphs::Extent& text, Qt::Alignment alignment,
                    const QStyleOptionViewItem& cell) const {
        const QRect& box = cell.rect; // a table's style option leaves the whole cell to the text
        const qreal free = box.width() - 2 * margin - text.advance;
        // A text layout halves in 64ths of a pixel.
        const qreal indent =
            alignment.testFlag(Qt::AlignRight) ? free : std::floor(free * 32.0) / 64.0;
        const QSize line = QSizeF(text.width, glyphs.height()).toSize();
        return QPointF(box.x() + margin + indent,
                       QStyle::alignedRect(Qt::LeftToRight, alignment, line, box).top());
    }

    NumberGlyphs glyphs;
    int margin; ///< beside a text
};

PlainCellDelegate::PlainCellDelegate(QTableWidget* table)
    : QStyledItemDelegate(table)
    , m_table(table) {
    table->setItemDelegate(this);
    table->installEventFilter(this);
}

PlainCellDelegate::~PlainCellDelegate() = default;

// The table's events alone: its cells have no editors, whose events would also come here.
bool PlainCellDelegate::eventFilter(QObject* /*object*/, QEvent* event) {
    if (event->type() == QEvent::StyleChange || event->type() == QEvent::FontChange) {
        m_look.reset();
        Q_EMIT sizeHintChanged(QModelIndex());
    }
    return false;
}

PlainCellDelegate::Look& PlainCellDelegate::look(const QFont& font) const {
    if (!m_look || m_look->glyphs.font() != font) {
        const QStyle* const style = m_table->style();
        const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, m_table) + 1;
        m_look = std::make_unique<Look>(Look{NumberGlyphs(font), margin});
    }
    return *m_look;
}

int PlainCellDelegate::widthOf(int row, int column) const {
    const QTableWidgetItem* const item = m_table->item(row, column);
    if (item == nullptr) {
        return 0;
    }
    NumberGlyphs::Extent extent{0.0, 0.0};
    Look& how = look(m_table->font());
    if (hostHasNoStyleSheet() && how.glyphs.measure(item->text(), &extent)) {
        return how.sizeOf(extent).width();
    }
    return m_table->sizeHintForIndex(m_table->model()->index(row, column)).width();
}

bool PlainCellDelegate::hostHasNoStyleSheet() const {
    return !m_table->parentWidget()->testAttribute(Qt::WA_StyleSheet);
}

bool PlainCellDelegate::isPlain(const QStyleOptionViewItem& option) const {
    return (option.state & ~QStyle::State_Active) == QStyle::State_Enabled &&
           option.direction == Qt::LeftToRight && hostHasNoStyleSheet();
}

void PlainCellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const {
    const QTableWidgetItem* const item = m_table->item(index.row(), index.column());
    if (!isPlain(option)) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    if (item == nullptr) {
        return;
    }
    const QString text = item->text();
    Look& how = look(option.font);
    const bool blank = text.isEmpty() || (text == QLatin1String(" ") && how.glyphs.isUsable());
    NumberGlyphs::Extent extent{0.0, 0.0};
    if (!blank && !how.glyphs.measure(text, &extent)) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    const QSize size = how.sizeOf(extent);
    if (size.width() > option.rect.width() || size.height() > option.rect.height()) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }

    const QBrush background = item->background();
    if (background.style() != Qt::NoBrush && background != QBrush(Qt::transparent)) {
        painter->fillRect(option.rect, background);
    }
    if (blank) {
        return;
    }

    const Qt::Alignment alignment(item->textAlignment());
    const QBrush foreground = item->foreground();
    const auto group =
        option.state.testFlag(QStyle::State_Active) ? QPalette::Normal : QPalette::Inactive;
    const QPen before = painter->pen();
    painter->setPen(foreground.style() != Qt::NoBrush
                        ? foreground.color()
                        : option.palette.color(group, QPalette::Text));
    how.glyphs.draw(painter, how.placeOf(extent, alignment, option), text);
    painter->setPen(before);
}
