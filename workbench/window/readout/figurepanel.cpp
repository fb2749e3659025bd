#include "workbench/window/readout/figurepanel.h"

#include "workbench/window/look/screenpixels.h"
#include "workbench/window/readout/readouttexts.h"

#include <QEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace workbench {

namespace {

constexpr int axes = 3;
constexpr int fewestDigits = 8; // "-1234.56": the letters do not jump with each digit
constexpr int margin = 4;       // pixels
constexpr int smallest = 9;     // letters that can be read at all
constexpr qreal measuringSize = 100.0;

// Shares of the figures' letters.
constexpr qreal headShare = 0.5;
constexpr qreal remarkShare = 0.35;
constexpr qreal unitShare = 0.4;
constexpr qreal lineShare = 1.18; // from one figure to the next
constexpr qreal gapShare = 0.25;
constexpr qreal columnGapShare = 0.7;
constexpr qreal heightOfHead = 0.8;
constexpr qreal heightOfRemark = 0.5;

constexpr qreal staleShare = 0.5; // of the letters' colour in what is not of this moment
constexpr int frozenDarker = 230; // percent

} // namespace

bool FigurePanel::Content::operator==(const Content& other) const {
    return tool == other.tool && word == other.word && age == other.age && remark == other.remark &&
           figures == other.figures && colour == other.colour && isLive == other.isLive &&
           withAngles == other.withAngles;
}

FigurePanel::FigurePanel(QWidget* parent)
    : QWidget(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    tell(ReadoutView(), false);
}

void FigurePanel::tell(const ReadoutView& view, bool withAngles) {
    Content content;
    content.tool = readouttexts::toolName(view.tool);
    content.word = readouttexts::word(view);
    content.age = readouttexts::age(view);
    content.colour = readouttexts::colour(view);
    content.isLive = view.isLive();
    content.isFrozen = view.isFrozen;
    content.withAngles = withAngles;
    QStringList remarks{readouttexts::reference(view), readouttexts::buttons(view)};
    remarks.removeAll(QString());
    content.remark = remarks.join(QStringLiteral("   "));
    for (int i = 0; i < (withAngles ? 2 * axes : axes); ++i) {
        const auto axis = static_cast<std::size_t>(i % axes);
        if (!view.figures) {
            content.figures += QStringLiteral("–");
        } else if (i < axes) {
            content.figures += readouttexts::figure(view.figures->position[axis]);
        } else {
            const auto& angles = view.figures->angles;
            const std::array<double, axes> values{angles.rx, angles.ry, angles.rz};
            content.figures += readouttexts::figure(values[axis]);
        }
    }
    if (content == m_content) {
        return;
    }
    int digits = fewestDigits;
    for (const QString& figure : qAsConst(content.figures)) {
        digits = std::max(digits, figure.size());
    }
    const bool isOtherRoom = digits != m_digits || withAngles != m_content.withAngles;
    Content alike = content;
    alike.figures = m_content.figures;
    const bool areFiguresAlone = !isOtherRoom && alike == m_content;
    const QStringList before = m_content.figures;
    m_content = content;
    m_digits = digits;
    if (isOtherRoom) {
        arrange();
    }
    setAccessibleDescription(readouttexts::sentence(view, withAngles));
    if (!areFiguresAlone) {
        update();
        return;
    }
    for (int i = 0; i < m_content.figures.size(); ++i) {
        if (m_content.figures.at(i) != before.at(i)) {
            update(areaOf(i));
        }
    }
}

int FigurePanel::letterHeight() const {
    return static_cast<int>(QFontMetricsF(scaled(1.0)).tightBoundingRect("8").height());
}

QSize FigurePanel::sizeHint() const {
    return {screenPixels(380, *this), screenPixels(220, *this)};
}

QSize FigurePanel::minimumSizeHint() const {
    return {screenPixels(150, *this), screenPixels(80, *this)};
}

QFont FigurePanel::scaled(qreal share) const {
    QFont scaledFont = font();
    scaledFont.setPixelSize(
        std::max(smallest, static_cast<int>(std::floor(m_layout.unit * share))));
    return scaledFont;
}

qreal FigurePanel::columnWidth(const QFontMetricsF& metrics, bool isAngles) const {
    return metrics.horizontalAdvance(isAngles ? QStringLiteral("rx") : QStringLiteral("x")) +
           metrics.horizontalAdvance(QLatin1Char('8')) * m_digits +
           metrics.horizontalAdvance(QStringLiteral("mm")) * unitShare +
           2.0 * gapShare * measuringSize;
}

// Of letters of the measuring size.
qreal FigurePanel::widthOf(const QFontMetricsF& metrics, int columns) const {
    qreal word = 0.0;
    const QStringList words = readouttexts::allWords();
    for (const QString& text : words) {
        word = std::max(word, metrics.horizontalAdvance(text));
    }
    const qreal head = headShare * (metrics.horizontalAdvance(QStringLiteral("M00  00.0 s")) +
                                    word + 4.0 * gapShare * measuringSize);
    qreal figures = columnWidth(metrics, false);
    if (m_content.withAngles) {
        const qreal angles = columnWidth(metrics, true);
        figures = columns == 2 ? figures + columnGapShare * measuringSize + angles
                               : std::max(figures, angles);
    }
    return std::max(head, figures);
}

// Angles stand beside the position or below it, wherever the letters are larger.
void FigurePanel::arrange() {
    QFont measuring = font();
    measuring.setPixelSize(static_cast<int>(measuringSize));
    const QFontMetricsF metrics(measuring);
    Layout best;
    for (int columns = 1; columns <= (m_content.withAngles ? 2 : 1); ++columns) {
        const int rows = m_content.withAngles && columns == 1 ? 2 * axes : axes;
        const qreal byWidth = (width() - 2 * margin) / widthOf(metrics, columns) * measuringSize;
        const qreal byHeight =
            (height() - 2 * margin) / (rows * lineShare + heightOfHead + heightOfRemark);
        const qreal unit = std::min(byWidth, byHeight);
        if (unit > best.unit) {
            best = {unit, columns};
        }
    }
    m_layout = best;
}

void FigurePanel::paintHead(QPainter& painter, const QRectF& area) const {
    painter.setFont(scaled(headShare));
    const QFontMetricsF metrics(painter.font());
    const qreal gap = gapShare * m_layout.unit;
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(area, Qt::AlignLeft | Qt::AlignVCenter, m_content.tool);
    painter.drawText(area, Qt::AlignRight | Qt::AlignVCenter, m_content.age);
    QRectF word = area;
    word.setLeft(area.left() + metrics.horizontalAdvance(m_content.tool) + gap);
    word.setWidth(metrics.horizontalAdvance(m_content.word) + gap);
    const qreal height = std::min(area.height(), metrics.height());
    word.setTop(area.center().y() - height / 2.0);
    word.setHeight(height);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_content.colour);
    painter.drawRoundedRect(word, gap / 2.0, gap / 2.0);
    painter.setPen(Qt::black);
    painter.drawText(word, Qt::AlignCenter, m_content.word);
}

// Figures that are not of this moment stand back; those that somebody wants to read have a colour
// of their own.
QColor FigurePanel::figureColour() const {
    const QColor ink = palette().color(QPalette::Active, QPalette::WindowText);
    const QColor ground = palette().color(QPalette::Active, QPalette::Window);
    if (m_content.isLive) {
        return ink;
    }
    const bool isDark = ground.lightness() < ink.lightness();
    if (m_content.isFrozen) {
        return isDark ? m_content.colour : m_content.colour.darker(frozenDarker);
    }
    const auto mix = [](qreal one, qreal other) {
        return one * (1.0 - staleShare) + other * staleShare;
    };
    return QColor::fromRgbF(mix(ground.redF(), ink.redF()), mix(ground.greenF(), ink.greenF()),
                            mix(ground.blueF(), ink.blueF()));
}

// With the gap before it.
qreal FigurePanel::unitWidth() const {
    return QFontMetricsF(scaled(unitShare)).horizontalAdvance(QStringLiteral("mm")) +
           gapShare * m_layout.unit;
}

// What a figure may cover, without its name and unit.
QRect FigurePanel::areaOf(int figure) const {
    const Places where = places();
    const QRectF& block = figure < axes ? where.position : where.angles;
    const qreal line = lineShare * m_layout.unit;
    const qreal width = QFontMetricsF(scaled(1.0)).horizontalAdvance(QLatin1Char('8')) * m_digits;
    const qreal gap = gapShare * m_layout.unit / 2.0;
    return QRectF(block.right() - unitWidth() - width - gap, block.top() + figure % axes * line,
                  width + 2.0 * gap, line)
        .toAlignedRect();
}

void FigurePanel::paintFigures(QPainter& painter, const QRectF& area, bool isAngles) {
    const qreal line = lineShare * m_layout.unit;
    const QFont large = scaled(1.0);
    const QFont small = scaled(unitShare);
    const QString unit = isAngles ? QStringLiteral("°") : QStringLiteral("mm");
    const qreal unitWidth = this->unitWidth();
    const QFontMetricsF metrics(large);
    m_pictures.setLook(large, figureColour(), devicePixelRatioF());
    for (int axis = 0; axis < axes; ++axis) {
        const QRectF row(area.left(), area.top() + axis * line, area.width(), line);
        const qreal baseline = row.top() + (line + metrics.capHeight()) / 2.0;
        painter.setFont(large);
        painter.setPen(palette().color(QPalette::Active, QPalette::WindowText));
        painter.drawText(QPointF(row.left(), baseline), readouttexts::axisName(axis, isAngles));
        painter.setFont(small);
        painter.drawText(QPointF(row.right() - unitWidth + gapShare * m_layout.unit, baseline),
                         unit);
        m_pictures.draw(painter, QPointF(row.right() - unitWidth, baseline),
                        m_content.figures.at(axis + (isAngles ? axes : 0)));
    }
}

FigurePanel::Places FigurePanel::places() const {
    QRectF area = QRectF(rect()).adjusted(margin, margin, -margin, -margin);
    const int blocks = m_content.withAngles && m_layout.columns == 1 ? 2 : 1;
    const qreal used = (blocks * axes * lineShare + heightOfHead + heightOfRemark) * m_layout.unit;
    area.setTop(area.top() + std::max(0.0, (area.height() - used) / 2.0));
    Places places;
    places.head = area;
    places.head.setHeight(heightOfHead * m_layout.unit);
    const qreal block = axes * lineShare * m_layout.unit;
    places.position = QRectF(area.left(), places.head.bottom(), area.width(), block);
    places.angles = places.position;
    if (m_content.withAngles && m_layout.columns == 2) {
        const qreal half = (area.width() - columnGapShare * m_layout.unit) / 2.0;
        places.position.setWidth(half);
        places.angles.setLeft(area.right() - half);
    } else if (m_content.withAngles) {
        places.angles.moveTop(places.position.bottom());
    }
    places.remark =
        QRectF(area.left(), places.angles.bottom(), area.width(), heightOfRemark * m_layout.unit);
    return places;
}

void FigurePanel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Places where = places();
    paintHead(painter, where.head);
    paintFigures(painter, where.position, false);
    if (m_content.withAngles) {
        paintFigures(painter, where.angles, true);
    }
    painter.setFont(scaled(remarkShare));
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(where.remark, Qt::AlignLeft | Qt::AlignVCenter,
                     QFontMetricsF(painter.font())
                         .elidedText(m_content.remark, Qt::ElideRight, where.remark.width()));
    if (hasFocus()) {
        painter.setRenderHint(QPainter::Antialiasing, false);
        QPen pen(palette().color(QPalette::Highlight));
        painter.setPen(pen);
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
}

void FigurePanel::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    arrange();
}

void FigurePanel::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::LanguageChange) {
        arrange();
        update();
    }
}

} // namespace workbench
