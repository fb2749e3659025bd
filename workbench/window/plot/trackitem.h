#pragma once

#include "workbench/window/plot/tiptracks.h"

#include <qwt_plot_item.h>

namespace workbench {

/// The lines of one axis in a plot, with their gaps.
class TrackItem : public QwtPlotItem {
public:
    explicit TrackItem(const QString& title);

    /// Both in the plot's own coordinates.
    void setPieces(const QVector<QPolygonF>& pieces);
    void setColour(const QColor& colour);

    void draw(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap,
              const QRectF& canvas) const override;

private:
    QVector<QPolygonF> m_pieces;
    QColor m_colour;
};

} // namespace workbench
