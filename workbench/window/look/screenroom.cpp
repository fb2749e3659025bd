#include "workbench/window/look/screenroom.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace workbench {

QRect insideFrame(const QRect& screen, int textHeight) {
    constexpr int border = 4;
    return screen.adjusted(border, 2 * textHeight, -border, -border);
}

bool areScreensSeen() {
    return QGuiApplication::platformName() != QLatin1String("offscreen");
}

QSize screenRoom(const QWidget& window) {
    const QSize greatest = window.maximumSize();
    if (!areScreensSeen()) {
        const bool isBounded =
            greatest.width() < QWIDGETSIZE_MAX || greatest.height() < QWIDGETSIZE_MAX;
        return isBounded ? greatest : QSize();
    }
    const QScreen* const screen = window.screen();
    return screen == nullptr
               ? QSize()
               : insideFrame(screen->availableGeometry(), window.fontMetrics().height())
                     .size()
                     .boundedTo(greatest);
}

} // namespace workbench
