#pragma once

#include "probecheck/tipcheck/tiltrose.h"

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

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    TiltRose::View m_view;
    bool m_isLive = false;
};
