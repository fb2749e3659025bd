#include "SourceFiles/numberglyphs.h"

#include <QPainter>
#include <QTextLayout>
#include <QVector>

#include <algorithm>

namespace {

constexpr char alphabet[] = "0123456789.-MR";

// The first run of glyphs of a text; valid when it is the whole text, one glyph per character.
struct LaidOut {
    explicit LaidOut(const QString& text, const QFont& font)
        : layout(text, font) {
        layout.beginLayout();
        line = layout.createLine();
        line.setNumColumns(text.size());
        layout.endLayout();
        const QGlyphRun run = line.glyphRuns().value(0);
        raw = run.rawFont();
        indexes = run.glyphIndexes();
        positions = run.positions();
    }

    bool isValid() const { return indexes.size() == layout.text().size(); }

    QTextLayout layout;
    QTextLine line;
    QRawFont raw;
    QVector<quint32> indexes;
    QVector<QPointF> positions;
};

} // namespace

NumberGlyphs::NumberGlyphs(const QFont& font)
    : m_font(font) {
    static_assert(sizeof(alphabet) == characters + 1);
    m_usable = !font.underline() && !font.overline() && !font.strikeOut() && learnGlyphs();
    if (m_usable) {
        learnNeighbours();
    }
}

int NumberGlyphs::place(QChar character) {
    const auto* const end = alphabet + characters;
    const auto* const found = std::find(alphabet, end, character.toLatin1());
    return found == end ? -1 : static_cast<int>(found - alphabet);
}

bool NumberGlyphs::learnGlyphs() {
    for (int i = 0; i < characters; ++i) {
        const LaidOut one(QString(QLatin1Char(alphabet[i])), m_font);
        if (!one.isValid() || (i > 0 && one.raw != m_run.rawFont())) {
            return false;
        }
        Glyph& glyph = m_glyphs[static_cast<std::size_t>(i)];
        glyph.index = one.indexes.first();
        glyph.advance = one.line.horizontalAdvance();
        glyph.overhang = one.line.naturalTextWidth() - glyph.advance;
        m_run.setRawFont(one.raw);
        m_baseline = one.positions.first().y();
        m_height = one.line.height();
    }
    return true;
}

void NumberGlyphs::learnNeighbours() {
    for (int first = 0; first < characters; ++first) {
        // "0011121314...": the first character beside each other one.
        QString text;
        for (int second = 0; second < characters; ++second) {
            text += QLatin1Char(alphabet[first]);
            text += QLatin1Char(alphabet[second]);
        }
        const LaidOut pairs(text, m_font);
        Glyph& glyph = m_glyphs[static_cast<std::size_t>(first)];
        for (int second = 0; pairs.isValid() && second < characters; ++second) {
            const int at = 2 * second;
            const auto beside = static_cast<std::size_t>(second);
            const QVector<quint32> plain{glyph.index, m_glyphs[beside].index};
            const QPointF step = pairs.positions.at(at + 1) - pairs.positions.at(at);
            glyph.plainBefore[beside] =
                pairs.indexes.mid(at, 2) == plain && step == QPointF(glyph.advance, 0.0);
        }
    }
}

bool NumberGlyphs::measure(const QString& text, Extent* extent) const {
    if (!m_usable || text.isEmpty() || text.size() > longest) {
        return false;
    }
    qreal advance = 0.0;
    qreal overhang = 0.0;
    const Glyph* before = nullptr;
    for (const QChar character : text) {
        const int at = place(character);
        if (at < 0 || (before != nullptr && !before->plainBefore[static_cast<std::size_t>(at)])) {
            return false;
        }
        before = &m_glyphs[static_cast<std::size_t>(at)];
        advance += before->advance;
        overhang = before->overhang;
    }
    *extent = {advance, advance + overhang};
    return true;
}

void NumberGlyphs::draw(QPainter* painter, const QPointF& topLeft, const QString& text) {
    std::array<quint32, longest> indexes{};
    std::array<QPointF, longest> positions;
    qreal x = 0.0;
    for (int i = 0; i < text.size(); ++i) {
        const Glyph& glyph = m_glyphs[static_cast<std::size_t>(place(text.at(i)))];
        const auto at = static_cast<std::size_t>(i);
        indexes[at] = glyph.index;
        positions[at] = QPointF(x, m_baseline);
        x += glyph.advance;
    }
    m_run.setRawData(indexes.data(), positions.data(), text.size());
    painter->drawGlyphRun(topLeft, m_run);
}
