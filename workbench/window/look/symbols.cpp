#include "workbench/window/look/symbols.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

#include <algorithm>

namespace workbench {

namespace {

constexpr double grid = 16.0; // of the square in which the shapes are given
constexpr double lineWidth = 1.6;

QPolygonF triangle(double left, double right) {
    return QPolygonF({{left, 3.0}, {right, 8.0}, {left, 13.0}});
}

void drawBars(QPainter& painter, double first, double second, double width) {
    painter.drawRect(QRectF(first, 3.0, width, 10.0));
    painter.drawRect(QRectF(second, 3.0, width, 10.0));
}

void drawLink(QPainter& painter) {
    painter.drawLine(QPointF(5.0, 8.0), QPointF(10.0, 8.0));
    painter.drawEllipse(QRectF(1.2, 5.5, 5.0, 5.0));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(QRectF(9.8, 5.5, 5.0, 5.0));
}

void drawFolder(QPainter& painter) {
    painter.drawPolygon(
        QPolygonF({{1.5, 13.0}, {1.5, 3.5}, {6.0, 3.5}, {7.5, 5.5}, {14.5, 5.5}, {14.5, 13.0}}));
    painter.drawLine(QPointF(1.5, 7.5), QPointF(14.5, 7.5));
}

void drawTick(QPainter& painter) {
    QPainterPath circle;
    circle.addEllipse(QRectF(1.5, 1.5, 13.0, 13.0));
    QPainterPath tick;
    tick.moveTo(4.5, 8.2);
    tick.lineTo(7.2, 11.0);
    tick.lineTo(11.7, 5.2);
    QPainterPathStroker stroker(QPen(Qt::black, 2.2));
    painter.setPen(Qt::NoPen);
    painter.drawPath(circle.subtracted(stroker.createStroke(tick)));
}

void drawAttention(QPainter& painter) {
    painter.setBrush(Qt::NoBrush);
    painter.drawPolygon(QPolygonF({{8.0, 1.5}, {14.8, 14.0}, {1.2, 14.0}}));
    painter.drawLine(QPointF(8.0, 6.0), QPointF(8.0, 9.5));
    painter.drawPoint(QPointF(8.0, 11.8));
}

// Pen and brush have the colour; what is an outline takes the brush away.
void draw(Symbol symbol, QPainter& painter) {
    switch (symbol) {
    case Symbol::Connect:
        return drawLink(painter);
    case Symbol::Open:
        painter.setBrush(Qt::NoBrush);
        return drawFolder(painter);
    case Symbol::Record:
        painter.drawEllipse(QRectF(5.0, 5.0, 6.0, 6.0));
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(QRectF(1.8, 1.8, 12.4, 12.4));
        return;
    case Symbol::Play:
        painter.drawPolygon(triangle(4.0, 13.0));
        return;
    case Symbol::Pause:
        return drawBars(painter, 4.0, 10.0, 2.5);
    case Symbol::Stop:
        painter.drawRect(QRectF(3.5, 3.5, 9.0, 9.0));
        return;
    case Symbol::Step:
        painter.drawPolygon(triangle(3.0, 10.0));
        painter.drawRect(QRectF(11.5, 3.0, 1.5, 10.0));
        return;
    case Symbol::Close:
        painter.drawLine(QPointF(3.5, 3.5), QPointF(12.5, 12.5));
        painter.drawLine(QPointF(12.5, 3.5), QPointF(3.5, 12.5));
        return;
    case Symbol::Yes:
        return drawTick(painter);
    case Symbol::No:
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(QRectF(2.0, 2.0, 12.0, 12.0));
        return;
    case Symbol::Attention:
        return drawAttention(painter);
    }
}

class SymbolEngine : public QIconEngine {
public:
    explicit SymbolEngine(Symbol symbol)
        : m_symbol(symbol) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const QPalette palette = QGuiApplication::palette();
        const QColor& colour = palette.color(
            mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active,
            mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::WindowText);
        const double size = std::min(rect.width(), rect.height());
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.center() + QPointF(0.5, 0.5) - QPointF(size, size) / 2.0);
        painter->scale(size / grid, size / grid);
        painter->setPen(QPen(colour, lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter->setBrush(colour);
        draw(m_symbol, *painter);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return pixmap;
    }

    QIconEngine* clone() const override { return new SymbolEngine(*this); }

private:
    Symbol m_symbol;
};

} // namespace

QIcon symbolIcon(Symbol symbol) {
    return QIcon(new SymbolEngine(symbol));
}

SymbolLabel::SymbolLabel(QWidget* parent)
    : QWidget(parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void SymbolLabel::setSymbol(Symbol symbol) {
    if (symbol != m_symbol) {
        m_symbol = symbol;
        update();
    }
}

QSize SymbolLabel::sizeHint() const {
    const int size = fontMetrics().ascent();
    return {size, size};
}

void SymbolLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    symbolIcon(m_symbol).paint(&painter, rect());
}

} // namespace workbench
