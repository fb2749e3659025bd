#include "workbench/window/docks/dockroom.h"

#include "workbench/window/look/screenroom.h"

#include <QDockWidget>
#include <QEvent>
#include <QGuiApplication>
#include <QLayout>
#include <QMainWindow>
#include <QStyle>

#include <algorithm>
#include <functional>

namespace workbench {

namespace {

constexpr int dragMs = 100; // until it is looked again whether somebody still drags something

// Of the edges of two widgets, as seen along a direction.
struct Range {
    int begin;
    int end;
};

Range rangeOf(const QWidget& widget, Qt::Orientation direction) {
    const QRect place = widget.geometry();
    return direction == Qt::Horizontal ? Range{place.left(), place.right()}
                                       : Range{place.top(), place.bottom()};
}

bool overlap(const Range& a, const Range& b) {
    return a.begin <= b.end && b.begin <= a.end;
}

int distance(const Range& a, const Range& b) {
    return std::max({0, a.begin - b.end, b.begin - a.end});
}

} // namespace

DockRoom::DockRoom(QMainWindow& window)
    : QObject(&window)
    , m_window(window) {
    m_check.setSingleShot(true);
    m_check.setInterval(0); // when the window has laid itself out
    connect(&m_check, &QTimer::timeout, this, &DockRoom::check);
    window.installEventFilter(this);
}

void DockRoom::watch(QDockWidget* dock) {
    m_docks.push_back(dock);
    dock->installEventFilter(this);
    connect(dock, &QObject::destroyed, this, [this, dock] {
        m_docks.erase(std::remove(m_docks.begin(), m_docks.end(), dock), m_docks.end());
    });
}

void DockRoom::setMiddleOptional(bool isOptional) {
    if (m_isMiddleOptional != isOptional) {
        m_isMiddleOptional = isOptional;
        m_check.start();
    }
}

bool DockRoom::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &m_window) {
        if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::Show ||
            event->type() == QEvent::Resize) {
            m_check.start();
        }
    } else if (event->type() == QEvent::Show && !event->spontaneous()) {
        const auto found = std::find(m_docks.begin(), m_docks.end(), watched);
        if (found != m_docks.end()) {
            std::rotate(found, found + 1, m_docks.end());
        }
    }
    return QObject::eventFilter(watched, event);
}

void DockRoom::check() {
    const QSize room = screenRoom(m_window);
    if (!m_window.isVisible() || !room.isValid()) {
        return;
    }
    if (QGuiApplication::mouseButtons() != Qt::NoButton) {
        m_check.start(dragMs);
        return;
    }
    m_check.setInterval(0);
    if (m_isMiddleFolded && needed().height() + heightOfMiddle() <= room.height()) {
        foldMiddle(false);
    }
    if (!m_isMiddleFolded && m_isMiddleOptional && needed().height() > room.height()) {
        foldMiddle(true);
    }
    const auto fits = [this, &room](Qt::Orientation direction) {
        return direction == Qt::Horizontal ? needed().width() <= room.width()
                                           : needed().height() <= room.height();
    };
    for (const Qt::Orientation direction : {Qt::Horizontal, Qt::Vertical}) {
        while (!fits(direction) && foldOne(direction)) {
        }
    }
    if (m_window.size().boundedTo(room) != m_window.size()) {
        m_window.layout()->activate(); // what it can do with now
        m_window.resize(m_window.size().boundedTo(room));
    }
}

void DockRoom::foldMiddle(bool isFolded) {
    m_isMiddleFolded = isFolded;
    Q_EMIT middleMoved();
}

// Those that stand side by side need width together, those one above another height.
bool DockRoom::foldOne(Qt::Orientation direction) {
    const auto foldWith = [this, direction](const std::function<bool(const QDockWidget&)>& mayGo,
                                            bool atTheSameEdge) {
        for (auto dock = m_docks.rbegin(); dock != m_docks.rend(); ++dock) {
            if (!isDocked(**dock) || !mayGo(**dock)) {
                continue;
            }
            if (QDockWidget* const partner = partnerOf(**dock, direction, atTheSameEdge)) {
                makeTabsOf(*partner, **dock);
                return true;
            }
        }
        return false;
    };
    const auto standsTooWide = [this, direction](const QDockWidget& dock) {
        return direction == Qt::Vertical || widthOfRow(dock) > screenRoom(m_window).width();
    };
    const auto any = [](const QDockWidget&) { return true; };
    return foldWith(standsTooWide, true) || foldWith(any, true) || foldWith(any, false);
}

// The other tabs go along.
void DockRoom::makeTabsOf(QDockWidget& partner, QDockWidget& moved) {
    const auto behind = m_window.tabifiedDockWidgets(&moved);
    for (QDockWidget* const other : behind) {
        m_window.tabifyDockWidget(&partner, other);
    }
    m_window.tabifyDockWidget(&partner, &moved);
    moved.raise();
    m_window.layout()->activate();
}

// The least, of all that stands beside the dock.
int DockRoom::widthOfRow(const QDockWidget& dock) const {
    int width = 0;
    for (QDockWidget* const other : m_docks) {
        if (isDocked(*other) &&
            overlap(rangeOf(dock, Qt::Vertical), rangeOf(*other, Qt::Vertical))) {
            int least = other->minimumSizeHint().width();
            const auto behind = m_window.tabifiedDockWidgets(other);
            for (const QDockWidget* const tab : behind) {
                least = std::max(least, tab->minimumSizeHint().width());
            }
            width += least;
        }
    }
    return width;
}

// The nearest.
QDockWidget* DockRoom::partnerOf(const QDockWidget& dock, Qt::Orientation direction,
                                 bool atTheSameEdge) const {
    const Qt::Orientation across = direction == Qt::Horizontal ? Qt::Vertical : Qt::Horizontal;
    const auto area = [this](const QDockWidget& of) {
        return m_window.dockWidgetArea(const_cast<QDockWidget*>(&of));
    };
    const auto gap = [&dock, direction](const QDockWidget& to) {
        return distance(rangeOf(dock, direction), rangeOf(to, direction));
    };
    QDockWidget* nearest = nullptr;
    for (QDockWidget* const other : m_docks) {
        const bool isPartner = other != &dock && isDocked(*other) &&
                               (area(*other) == area(dock)) == atTheSameEdge &&
                               overlap(rangeOf(dock, across), rangeOf(*other, across)) &&
                               !overlap(rangeOf(dock, direction), rangeOf(*other, direction));
        if (isPartner && (nearest == nullptr || gap(*other) < gap(*nearest))) {
            nearest = other;
        }
    }
    return nearest;
}

// In a place of its own: of tabs, the one that is in front.
bool DockRoom::isDocked(const QDockWidget& dock) const {
    return dock.isVisible() && !dock.isFloating() && m_window.rect().intersects(dock.geometry());
}

QSize DockRoom::needed() const {
    return m_window.minimumSizeHint();
}

// With what separates it from the docks, and so much that it does not come and go.
int DockRoom::heightOfMiddle() const {
    const int separator =
        m_window.style()->pixelMetric(QStyle::PM_DockWidgetSeparatorExtent, nullptr, &m_window);
    return m_window.centralWidget()->minimumSizeHint().height() + 2 * separator;
}

} // namespace workbench
