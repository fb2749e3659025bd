#include "general/widgets/dpiscaling.h"

#include <QPixmap>
#include <QWidget>

#include <algorithm>

namespace {

constexpr int plainDpi = 96;
constexpr int roomAroundALine = 2;

int dpiOf(const QWidget& widget) {
    return std::max(widget.logicalDpiX(), plainDpi);
}

int scaled(int pixels, int dpi) {
    return pixels == QWIDGETSIZE_MAX ? pixels : (pixels * dpi + plainDpi / 2) / plainDpi;
}

QSize scaled(const QSize& size, int dpi) {
    return {scaled(size.width(), dpi), scaled(size.height(), dpi)};
}

void scaleBounds(QWidget& widget, int dpi) {
    const QSize least = widget.minimumSize();
    widget.setMaximumSize(scaled(widget.maximumSize(), dpi));
    widget.setMinimumSize(scaled(least, dpi));
}

} // namespace

int scaledToDpi(int pixels, const QWidget& widget) {
    return scaled(pixels, dpiOf(widget));
}

QPixmap scaledToDpi(const QPixmap& picture, const QWidget& widget) {
    const QSize size = scaled(picture.size(), dpiOf(widget));
    return size == picture.size()
               ? picture
               : picture.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

void scaleFormToDpi(QWidget& window) {
    const int dpi = dpiOf(window);
    if (dpi == plainDpi) {
        return;
    }
    const QSize size = scaled(window.size(), dpi);
    scaleBounds(window, dpi);
    window.resize(size);
    const auto widgets = window.findChildren<QWidget*>();
    for (QWidget* widget : widgets) {
        // What is inside a widget of Qt's is that widget's own affair.
        const QString name = widget->objectName();
        if (!name.isEmpty() && !name.startsWith(QLatin1String("qt_"))) {
            scaleBounds(*widget, dpi);
        }
    }
}

int rowHeightFor(int pixels, const QWidget& table) {
    return std::max(scaledToDpi(pixels, table), table.fontMetrics().height() + roomAroundALine);
}
