#include "workbench/text/elidedlabel.h"

#include "workbench/text/plaintip.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOption>

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

void ElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QStyleOption option;
    option.initFrom(this);
    const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width());
    const QString tip = shown == text() ? QString() : plainTip(text());
    if (toolTip() != tip) {
        setToolTip(tip);
    }
    style()->drawItemText(&painter, contentsRect(), int(Qt::AlignVCenter | Qt::AlignLeft),
                          option.palette, isEnabled(), shown, foregroundRole());
}

} // namespace workbench
