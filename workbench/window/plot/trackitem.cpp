#include "workbench/window/plot/trackitem.h"

#include <QPainter>
#include <qwt_scale_map.h>

namespace workbench {

TrackItem::TrackItem(const QString& title)
    : QwtPlotItem(QwtText(title)) {}

void TrackItem::setPieces(const QVector<QPolygonF>& pieces) {
    m_pieces = pieces;
}

void TrackItem::setColour(const QColor& colour) {
    m_colour = colour;
}

void TrackItem::draw(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap,
                     const QRectF& /*canvas*/) const {
    painter->setPen(m_colour);
    painter->setRenderHint(QPainter::Antialiasing, false);
    for (const QPolygonF& piece : m_pieces) {
        QPolygonF points;
        points.reserve(piece.size());
        for (const QPointF& point : piece) {
            points << QPointF(xMap.transform(point.x()), yMap.transform(point.y()));
        }
        if (points.size() == 1) {
            painter->drawPoint(points.constFirst());
        } else {
            painter->drawPolyline(points);
        }
    }
}

} // namespace workbench
