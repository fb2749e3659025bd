#pragma once

#include <QColor>
#include <QFont>
#include <QHash>
#include <QPixmap>
#include <QString>

class QPainter;

namespace workbench {

/// Figures in large letters: each character is drawn once and then copied, for Qt itself draws
/// letters of such sizes anew from their outlines each time. GUI thread only.
class DigitPictures {
public:
    /// What draw() uses from here on; `ratio` is the device's pixels for each of ours.
    void setLook(const QFont& font, const QColor& colour, qreal ratio);

    qreal widthOf(const QString& text) const;

    /// Draws the text so that it ends at `end`, on its baseline.
    void draw(QPainter& painter, const QPointF& end, const QString& text);

private:
    struct Picture {
        QPixmap pixmap;
        qreal advance = 0.0;
    };
    const Picture& pictureOf(QChar character);

    QFont m_font;
    QColor m_colour;
    qreal m_ratio = 0.0;
    QHash<QChar, Picture> m_pictures;
};

} // namespace workbench
