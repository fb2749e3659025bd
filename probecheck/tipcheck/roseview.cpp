#include "probecheck/tipcheck/roseview.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace {

constexpr double degreesPerSector = 360.0 / static_cast<double>(TiltRose::sectors);
constexpr double rimShare = 0.82;      // of the radius; outside are the triangles
constexpr double outermostTilt = 24.0; // degrees at the rim

double radiusOf(double tilt, double rim) {
    return rim * std::min(tilt / outermostTilt, 1.0);
}

double toolRadius(double radius) {
    return std::max(radius / 14.0, 4.0);
}

QPainterPath cell(std::size_t sector, std::size_t ring, double rim) {
    const double inner = radiusOf(TiltRose::ringBegins[ring], rim);
    const double outer =
        ring + 1 < TiltRose::rings ? radiusOf(TiltRose::ringBegins[ring + 1], rim) : rim;
    const double begin = (static_cast<double>(sector) - 0.5) * degreesPerSector;
    const QRectF innerBox(-inner, -inner, 2 * inner, 2 * inner);
    const QRectF outerBox(-outer, -outer, 2 * outer, 2 * outer);
    QPainterPath path;
    path.arcMoveTo(outerBox, begin);
    path.arcTo(outerBox, begin, degreesPerSector);
    path.arcTo(innerBox, begin + degreesPerSector, -degreesPerSector);
    path.closeSubpath();
    return path;
}

QList<double> anglesOf(TiltRose::Missing missing) {
    switch (missing) {
    case TiltRose::Missing::AllSides:
        return {0.0, 90.0, 180.0, 270.0};
    case TiltRose::Missing::LeftRight:
        return {0.0, 180.0};
    case TiltRose::Missing::FrontBack:
        return {90.0, 270.0};
    case TiltRose::Missing::FrontRightBackLeft:
        return {45.0, 225.0};
    case TiltRose::Missing::FrontLeftBackRight:
        return {135.0, 315.0};
    case TiltRose::Missing::Nothing:
        break;
    }
    return {};
}

} // namespace

RoseView::RoseView(QWidget* parent)
    : QWidget(parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setAccessibleName(tr("Directions of tilt"));
    setToolTip(tr("Directions in which the tool has been tilted, seen from above: filled ones are "
                  "reached, the triangles point to those that are missing, the ring is the tool."));
}

// Between two positions only the ring has moved, as a rule.
void RoseView::display(const TiltRose::View& view, bool isLive) {
    const bool hasSameCells = view.reached == m_view.reached;
    const bool isSamePicture = hasSameCells && view.missing == m_view.missing && isLive == m_isLive;
    const QRect before = toolArea();
    m_view = view;
    m_isLive = isLive;
    if (!hasSameCells) {
        m_cells = QPixmap();
    }
    if (!isSamePicture) {
        update();
    } else if (isLive && before != toolArea()) {
        update(before);
        update(toolArea());
    }
}

void RoseView::setGivingWay(bool isGivingWay) {
    if (isGivingWay != m_isGivingWay) {
        m_isGivingWay = isGivingWay;
        updateGeometry();
        update();
    }
}

QSize RoseView::sizeHint() const {
    return {leastSide(), m_isGivingWay ? 0 : leastSide()};
}

QSize RoseView::minimumSizeHint() const {
    return sizeHint();
}

int RoseView::comfortableSide() const {
    return 14 * fontMetrics().height();
}

int RoseView::leastSide() const {
    return 5 * fontMetrics().height();
}

double RoseView::radius() const {
    return std::min(width(), height()) / 2.0 - 1.0;
}

QPointF RoseView::toolPlace() const {
    const double tilt = std::hypot(m_view.current.right, m_view.current.front);
    const double scale = tilt > 0.0 ? radiusOf(tilt, radius() * rimShare) / tilt : 0.0;
    return {m_view.current.right * scale, -m_view.current.front * scale};
}

// With the width of its line, and a pixel for what is smoothed.
QRect RoseView::toolArea() const {
    const double reach = 1.5 * toolRadius(radius()) + 1.0;
    const QPointF place = toolPlace() + QPointF(width() / 2.0, height() / 2.0);
    return QRectF(place.x() - reach, place.y() - reach, 2.0 * reach, 2.0 * reach).toAlignedRect();
}

const QPixmap& RoseView::cells() {
    const double ratio = devicePixelRatioF();
    const QSize size = this->size() * ratio;
    if (m_cells.size() == size && m_cells.devicePixelRatio() == ratio) {
        return m_cells;
    }
    m_cells = QPixmap(size);
    m_cells.setDevicePixelRatio(ratio);
    m_cells.fill(Qt::transparent);
    QPainter painter(&m_cells);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(width() / 2.0, height() / 2.0);
    painter.setPen(QPen(palette().color(QPalette::WindowText), std::max(1.0, radius() / 120.0)));
    for (std::size_t sector = 0; sector < TiltRose::sectors; ++sector) {
        for (std::size_t ring = 0; ring < TiltRose::rings; ++ring) {
            painter.setBrush(m_view.reached[sector][ring] ? palette().brush(QPalette::Highlight)
                                                          : palette().brush(QPalette::Base));
            painter.drawPath(cell(sector, ring, radius() * rimShare));
        }
    }
    return m_cells;
}

void RoseView::paintMissing(QPainter& painter) const {
    painter.setPen(QPen(palette().color(QPalette::WindowText), std::max(1.0, radius() / 120.0)));
    painter.setBrush(palette().color(QPalette::WindowText));
    const double rim = radius();
    const double size = rim * (1.0 - rimShare) * 0.9;
    const auto angles = anglesOf(m_view.missing);
    for (const double angle : angles) {
        painter.save();
        painter.rotate(-angle);
        painter.drawPolygon(QPolygonF({QPointF(rim, 0.0), QPointF(rim - size, -size / 1.5),
                                       QPointF(rim - size, size / 1.5)}));
        painter.restore();
    }
}

void RoseView::paintTool(QPainter& painter) const {
    const double dot = toolRadius(radius());
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(palette().color(QPalette::Base), dot / 1.4));
    painter.drawEllipse(toolPlace(), dot, dot);
    painter.setPen(QPen(palette().color(QPalette::WindowText), dot / 2.5));
    painter.drawEllipse(toolPlace(), dot, dot);
}

void RoseView::paintEvent(QPaintEvent* /*event*/) {
    if (m_isGivingWay && height() < leastSide()) {
        return;
    }
    QPainter painter(this);
    painter.drawPixmap(0, 0, cells());
    if (!m_isLive) {
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(width() / 2.0, height() / 2.0);
    paintMissing(painter);
    paintTool(painter);
}

void RoseView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    m_cells = QPixmap(); // other colours, or greyed
}
