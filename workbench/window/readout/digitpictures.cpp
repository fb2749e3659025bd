#include "workbench/window/readout/digitpictures.h"

#include <QFontMetricsF>
#include <QPainter>

#include <cmath>

namespace workbench {

namespace {

constexpr int overhang = 2; // for what a letter has beyond its advance and height
constexpr int mostPictures = 40;

} // namespace

void DigitPictures::setLook(const QFont& font, const QColor& colour, qreal ratio) {
    if (font != m_font || colour != m_colour || ratio != m_ratio) {
        m_font = font;
        m_colour = colour;
        m_ratio = ratio;
        m_pictures.clear();
    }
}

qreal DigitPictures::widthOf(const QString& text) const {
    const QFontMetricsF metrics(m_font);
    qreal width = 0.0;
    for (const QChar character : text) {
        width += metrics.horizontalAdvance(character);
    }
    return width;
}

const DigitPictures::Picture& DigitPictures::pictureOf(QChar character) {
    const auto known = m_pictures.constFind(character);
    if (known != m_pictures.constEnd()) {
        return *known;
    }
    if (m_pictures.size() >= mostPictures) {
        m_pictures.clear();
    }
    const QFontMetricsF metrics(m_font);
    Picture picture;
    picture.advance = metrics.horizontalAdvance(character);
    const QSizeF size(std::ceil(picture.advance) + 2 * overhang,
                      std::ceil(metrics.ascent()) + std::ceil(metrics.descent()) + 2 * overhang);
    picture.pixmap = QPixmap((size * m_ratio).toSize());
    picture.pixmap.setDevicePixelRatio(m_ratio);
    picture.pixmap.fill(Qt::transparent);
    QPainter painter(&picture.pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(m_font);
    painter.setPen(m_colour);
    painter.drawText(QPointF(overhang, overhang + std::ceil(metrics.ascent())), QString(character));
    painter.end();
    return *m_pictures.insert(character, picture);
}

void DigitPictures::draw(QPainter& painter, const QPointF& end, const QString& text) {
    const qreal top = end.y() - std::ceil(QFontMetricsF(m_font).ascent()) - overhang;
    qreal left = end.x() - widthOf(text) - overhang;
    const auto toPixel = [this](qreal place) { return std::round(place * m_ratio) / m_ratio; };
    for (const QChar character : text) {
        const Picture& picture = pictureOf(character);
        painter.drawPixmap(QPointF(toPixel(left), toPixel(top)), picture.pixmap);
        left += picture.advance;
    }
}

} // namespace workbench
