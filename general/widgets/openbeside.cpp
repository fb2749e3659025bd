#include "general/widgets/openbeside.h"

#include <QScreen>
#include <QWidget>

#include <algorithm>
#include <iterator>

QPoint placeBeside(const QSize& size, const QRect& other, const QRect& screen) {
    const auto onScreen = [&](int x, int y) {
        const int farthestX = std::max(screen.left(), screen.right() + 1 - size.width());
        const int farthestY = std::max(screen.top(), screen.bottom() + 1 - size.height());
        return QPoint(std::clamp(x, screen.left(), farthestX),
                      std::clamp(y, screen.top(), farthestY));
    };
    const auto covered = [&](const QPoint& place) {
        const QRect both = QRect(place, size).intersected(other);
        return both.isEmpty() ? 0 : both.width() * both.height();
    };
    const QPoint places[] = {
        onScreen(other.right() + 1, other.top()),
        onScreen(other.left() - size.width(), other.top()),
        onScreen(other.left(), other.bottom() + 1),
        onScreen(other.left(), other.top() - size.height()),
        onScreen(screen.right(), screen.bottom()),
        onScreen(screen.left(), screen.bottom()),
    };
    const auto beside = std::find_if(std::begin(places), std::end(places),
                                     [&](const QPoint& place) { return covered(place) == 0; });
    if (beside != std::end(places)) {
        return *beside;
    }
    return *std::min_element(std::begin(places), std::end(places),
                             [&](const QPoint& a, const QPoint& b) {
                                 const int first = covered(a);
                                 const int second = covered(b);
                                 return first != second ? first < second : a.y() > b.y();
                             });
}

void openBeside(QWidget& dialog) {
    const QWidget* const other =
        dialog.parentWidget() != nullptr ? dialog.parentWidget()->window() : nullptr;
    if (other == nullptr || !other->isVisible()) {
        return;
    }
    // The dialog's own frame is not known before it is seen; it will be that of the other window.
    const QSize frame = other->frameGeometry().size() - other->size();
    dialog.move(placeBeside(dialog.size() + frame, other->frameGeometry(),
                            other->screen()->availableGeometry()));
}
