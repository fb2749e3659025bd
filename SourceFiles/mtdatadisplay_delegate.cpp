#include "SourceFiles/mtdatadisplay_delegate.h"

#include <QEvent>
#include <QPainter>
#include <QTableWidget>

#include <cmath>

struct TrackingCellDelegate::Look {
    NumberGlyphs glyphs;
    int margin; ///< beside a text
};

TrackingCellDelegate::TrackingCellDelegate(QTableWidget* table)
    : QStyledItemDelegate(table)
    , m_table(table) {
    table->setItemDelegate(this);
    table->installEventFilter(this);
}

TrackingCellDelegate::~TrackingCellDelegate() = default;

bool TrackingCellDelegate::eventFilter(QObject* object, QEvent* event) {
    if (object != m_table) {
        return QStyledItemDelegate::eventFilter(object, event);
    }
    if (event->type() == QEvent::StyleChange || event->type() == QEvent::FontChange) {
        m_look.reset();
    }
    return false;
}

TrackingCellDelegate::Look& TrackingCellDelegate::look(const QFont& font) const {
    if (!m_look || m_look->glyphs.font() != font) {
        const QStyle* const style = m_table->style();
        const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, m_table) + 1;
        m_look = std::make_unique<Look>(Look{NumberGlyphs(font), margin});
    }
    return *m_look;
}

bool TrackingCellDelegate::isPlain(const QStyleOptionViewItem& option) const {
    return (option.state & ~QStyle::State_Active) == QStyle::State_Enabled &&
           option.direction == Qt::LeftToRight &&
           !m_table->parentWidget()->testAttribute(Qt::WA_StyleSheet);
}

void TrackingCellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
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
    const QSize size(static_cast<int>(std::ceil(extent.width)) + 2 * how.margin,
                     static_cast<int>(std::ceil(how.glyphs.height())));
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

    const int given = item->textAlignment();
    const Qt::Alignment alignment = given != 0 ? Qt::Alignment(given) : option.displayAlignment;
    const QRect box = option.showDecorationSelected
                          ? option.rect
                          : QStyle::alignedRect(Qt::LeftToRight, alignment, size, option.rect);
    const qreal free = box.width() - 2 * how.margin - extent.advance;
    qreal x = box.x() + how.margin;
    if (alignment.testFlag(Qt::AlignRight)) {
        x += free;
    } else if (alignment.testFlag(Qt::AlignHCenter)) {
        x += std::floor(free * 32.0) / 64.0; // a text layout halves in 64ths of a pixel
    }
    const QSize lineSize = QSizeF(extent.width, how.glyphs.height()).toSize();
    const int y = QStyle::alignedRect(Qt::LeftToRight, alignment, lineSize, box).top();

    const QBrush foreground = item->foreground();
    const auto group =
        option.state.testFlag(QStyle::State_Active) ? QPalette::Normal : QPalette::Inactive;
    const QPen before = painter->pen();
    painter->setPen(foreground.style() != Qt::NoBrush
                        ? foreground.color()
                        : option.palette.color(group, QPalette::Text));
    how.glyphs.draw(painter, QPointF(x, y), text);
    painter->setPen(before);
}
