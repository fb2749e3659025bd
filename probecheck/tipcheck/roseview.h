#pragma once

#include "probecheck/tipcheck/tiltrose.h"

#include <QPixmap>
#include <QWidget>

/// Paints into which directions a tool has been tilted: what has been reached is filled, what has
/// not is an outline; a triangle points to where tilting is missing, a ring is the tool now. Filled
/// and empty differ without colours, too.
class RoseView : public QWidget {
    Q_OBJECT

public:
    explicit RoseView(QWidget* parent = nullptr);

    /// Live: with what is missing and where the tool is now.
    void display(const TiltRose::View& view, bool isLive);

    /// Giving way: it takes what others leave, and shows nothing where that is too little to read.
    void setGivingWay(bool isGivingWay);

    /// Such as it can still be read: it takes what room there is, and shrinks before others do.
    /// No height is needed while it gives way.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    int comfortableSide() const; ///< pixels

protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    int leastSide() const; ///< pixels; smaller ones cannot be read
    double radius() const;
    QPointF toolPlace() const; ///< from the middle
    QRect toolArea() const;
    const QPixmap& cells();
    void paintMissing(QPainter& painter) const;
    void paintTool(QPainter& painter) const;

    TiltRose::View m_view;
    bool m_isLive = false;
    bool m_isGivingWay = false;
    QPixmap m_cells; ///< as they were painted last; null when they have to be painted anew
};
