#include "probecheck/points/capturering.h"

#include "general/widgets/dpiscaling.h"

#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

CaptureRing::CaptureRing(QWidget* parent)
    : QWidget(parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void CaptureRing::setShare(double share) {
    const double bounded = std::clamp(share, 0.0, 1.0);
    if (bounded != m_share) {
        m_share = bounded;
        update();
    }
}

QSize CaptureRing::sizeHint() const {
    const int side = std::max(scaledToDpi(88, *this),
                              3 * fontMetrics().height() + fontMetrics().horizontalAdvance('0'));
    return {side, side};
}

void CaptureRing::paintEvent(QPaintEvent* /*event*/) {
    constexpr double full = 360.0 * 16.0; // QPainter counts in sixteenths of a degree
    constexpr double top = 90.0 * 16.0;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double width = height() / 10.0;
    const QRectF circle = QRectF(rect()).adjusted(width, width, -width, -width);
    // Half way to the text's colour: seen in a dark palette as in a light one.
    QColor empty = palette().color(QPalette::WindowText);
    empty.setAlphaF(0.4);
    painter.setPen(QPen(empty, width / 3.0));
    painter.drawEllipse(circle);
    if (m_share > 0.0) {
        QPen pen(palette().highlight(), width);
        pen.setCapStyle(Qt::FlatCap);
        painter.setPen(pen);
        painter.drawArc(circle, static_cast<int>(top), -static_cast<int>(m_share * full));
    }
    painter.setPen(palette().windowText().color());
    painter.drawText(circle, Qt::AlignCenter,
                     QStringLiteral("%1 %").arg(static_cast<int>(std::floor(m_share * 100.0))));
}
