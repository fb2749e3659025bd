#pragma once

#include <QFont>
#include <QGlyphRun>
#include <QPointF>
#include <QString>

#include <array>

class QPainter;

/// Numbers and body names in one font, ready to be painted without a text layout: the same glyphs
/// at the same places as a QTextLayout of the text would have. GUI thread only.
class NumberGlyphs {
public:
    explicit NumberGlyphs(const QFont& font);

    const QFont& font() const { return m_font; }

    /// False for underlined fonts and their like, and for fonts without the glyphs.
    bool isUsable() const { return m_usable; }

    struct Extent {
        qreal advance; ///< the pen's way
        qreal width;   ///< with what the last glyph has beyond that
    };

    /// False when the text is empty, long, holds other characters, or two neighbours that the font
    /// does not simply set side by side.
    bool measure(const QString& text, Extent* extent) const;

    qreal height() const { return m_height; } ///< of a line

    /// Draws a text that was measured with success, in the painter's pen.
    void draw(QPainter* painter, const QPointF& topLeft, const QString& text);

private:
    static constexpr int longest = 32;
    static constexpr int characters = 14;

    struct Glyph {
        quint32 index = 0;
        qreal advance = 0.0;
        qreal overhang = 0.0;
        std::array<bool, characters> plainBefore{}; ///< by the character that follows
    };

    static int place(QChar character);
    bool learnGlyphs();
    void learnNeighbours();

    QFont m_font;
    QGlyphRun m_run;
    std::array<Glyph, characters> m_glyphs{};
    bool m_usable = false;
    qreal m_baseline = 0.0;
    qreal m_height = 0.0;
};
