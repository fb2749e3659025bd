#include "workbench/text/elidedlabel.h"

#include "workbench/text/plaintip.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOption>
#include <QToolTip>

namespace workbench {

namespace {

constexpr int smallestWidthInCharacters = 12;

}

ElidedLabel::ElidedLabel(QWidget* parent)
    : QLabel(parent) {
    setTextFormat(Qt::PlainText);
}

QSize ElidedLabel::minimumSizeHint() const {
    return {fontMetrics().averageCharWidth() * smallestWidthInCharacters,
            QLabel::minimumSizeHint().height()};
}

// Asked when it is wanted: the text may have changed since the last painting.
bool ElidedLabel::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) {
        return QLabel::event(event);
    }
    const QString tip = elided() == text() ? QString() : plainTip(text());
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), tip, this);
    return true;
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QStyleOption option;
    option.initFrom(this);
    style()->drawItemText(&painter, contentsRect(), int(Qt::AlignVCenter | Qt::AlignLeft),
                          option.palette, isEnabled(), elided(), foregroundRole());
}

QString ElidedLabel::elided() const {
    return fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width());
}

} // namespace workbench
