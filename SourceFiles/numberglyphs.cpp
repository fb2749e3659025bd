#include "SourceFiles/numberglyphs.h"

#include <QPainter>
#include <QTextLayout>
#include <QVector>

namespace {

constexpr char alphabet[] = "0123456789.-MR";

// The one run of glyphs, one per character, that a text consists of; else an invalid one.
struct LaidOut {
    explicit LaidOut(const QString& text, const QFont& font)
        : layout(text, font) {
        layout.beginLayout();
        line = layout.createLine();
        line.setNumColumns(text.size());
        layout.endLayout();
        const QList<QGlyphRun> runs = line.glyphRuns();
        if (runs.size() == 1 && runs.first().glyphIndexes().size() == text.size()) {
            raw = runs.first().rawFont();
            indexes = runs.first().glyphIndexes();
            positions = runs.first().positions();
        }
    }

    bool isValid() const { return !indexes.isEmpty(); }

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
    switch (character.unicode()) {
    case '.':
        return 10;
    case '-':
        return 11;
    case 'M':
        return 12;
    case 'R':
        return 13;
    default:
        return character >= QLatin1Char('0') && character <= QLatin1Char('9')
                   ? character.unicode() - '0'
                   : -1;
    }
}

bool NumberGlyphs::learnGlyphs() {
    for (int i = 0; i < characters; ++i) {
        const LaidOut one(QString(QLatin1Char(alphabet[i])), m_font);
        if (!one.isValid() ||
            (i > 0 && (one.raw != m_run.rawFont() || one.positions.first().y() != m_baseline))) {
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
            const qreal step = pairs.positions.at(at + 1).x() - pairs.positions.at(at).x();
            glyph.plainBefore[static_cast<std::size_t>(second)] =
                pairs.indexes.at(at) == glyph.index && step == glyph.advance &&
                pairs.indexes.at(at + 1) == m_glyphs[static_cast<std::size_t>(second)].index &&
                pairs.positions.at(at).y() == m_baseline;
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
