#pragma once

#include "workbench/window/readout/digitpictures.h"
#include "workbench/window/readout/readout.h"

#include <QStringList>
#include <QWidget>

namespace workbench {

/// A read-out in letters that are as large as the room allows: tool and state, the axes, and what
/// else there is to say. Paints only when another text or colour is to be seen.
class FigurePanel : public QWidget {
    Q_OBJECT

public:
    explicit FigurePanel(QWidget* parent = nullptr);

    void tell(const ReadoutView& view, bool withAngles);

    /// Height of the figures' letters in pixels.
    int letterHeight() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    /// All that is painted.
    struct Content {
        QString tool;
        QString word;
        QString age;
        QString remark; ///< reference and buttons
        QStringList figures;
        QColor colour;
        bool isLive = false;
        bool isFrozen = false;
        bool withAngles = false;

        bool operator==(const Content& other) const;
    };
    struct Layout {
        qreal unit = 0.0; ///< pixels of the figures' font
        int columns = 1;
    };
    struct Places {
        QRectF head;
        QRectF position;
        QRectF angles; ///< of a panel that shows them
        QRectF remark;
    };

    void arrange();
    qreal columnWidth(const QFontMetricsF& metrics, bool isAngles) const;
    qreal widthOf(const QFontMetricsF& metrics, int columns) const;
    Places places() const;
    qreal unitWidth() const;
    QRect areaOf(int figure) const;
    void paintHead(QPainter& painter, const QRectF& area) const;
    void paintFigures(QPainter& painter, const QRectF& area, bool isAngles);
    QFont scaled(qreal share) const;
    QColor figureColour() const;

    Content m_content;
    Layout m_layout;
    int m_digits = 8; // of the longest figure, signs and marks included
    DigitPictures m_pictures;
};

} // namespace workbench
