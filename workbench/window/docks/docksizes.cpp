#include "workbench/window/docks/docksizes.h"

#include <QDockWidget>
#include <QEvent>
#include <QLayout>
#include <QMainWindow>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace workbench {

namespace {

constexpr int mostSteps = 16;

} // namespace

DockSizes::DockSizes(QMainWindow& window)
    : QObject(&window)
    , m_window(window) {
    window.installEventFilter(this);
}

void DockSizes::watch(QDockWidget* dock) {
    m_places[dock] = {};
    dock->installEventFilter(this);
    connect(dock, &QDockWidget::topLevelChanged, this,
            [this, dock](bool isFloating) { onFloating(*dock, isFloating); });
    connect(dock, &QObject::destroyed, this, [this, dock] {
        m_places.erase(dock);
        m_layout.reset();
    });
}

void DockSizes::wish(QDockWidget* dock, int height) {
    m_places[dock].wished = height;
    if (dock->isVisible()) {
        giveWished(*dock);
    }
}

bool DockSizes::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    if (watched == &m_window) {
        // What of them reaches the window itself is for the borders between docks.
        if (type == QEvent::MouseButtonPress || type == QEvent::MouseButtonRelease) {
            onMouseButton(type == QEvent::MouseButtonPress);
        }
        return QObject::eventFilter(watched, event);
    }
    auto* const dock = qobject_cast<QDockWidget*>(watched);
    const auto found = m_places.find(dock);
    if (type == QEvent::Resize && found != m_places.end()) {
        onResized(*dock);
    }
    if (type == QEvent::Show && found != m_places.end() && found->second.wished > 0) {
        // The window gives it a size of its own first; what is hidden has none to be changed.
        QTimer::singleShot(0, dock, [this, dock] { giveWished(*dock); });
    }
    return QObject::eventFilter(watched, event);
}

void DockSizes::onResized(QDockWidget& dock) {
    if (!isInFront(dock)) {
        return;
    }
    const QList<QDockWidget*> all = m_window.tabifiedDockWidgets(&dock) << &dock;
    const Docked docked{dock.size(), m_window.dockWidgetArea(&dock), all.size() > 1};
    for (QDockWidget* const one : all) {
        const auto found = m_places.find(one);
        if (found != m_places.end() && !found->second.isReturning) {
            found->second.docked = docked;
        }
    }
}

void DockSizes::onFloating(QDockWidget& dock, bool isFloating) {
    Place& place = m_places[&dock];
    if (isFloating) {
        place.isReturning = false;
        if (m_layout == nullptr || m_layout->docks.count(&dock) == 0 || !isOnlyFloated(*m_layout)) {
            Layout layout{allDocked(), roomOfDocks()};
            layout.docks[&dock] = place.docked;
            m_layout = std::make_shared<const Layout>(std::move(layout));
        }
        place.before = m_layout;
        return;
    }
    if (place.before != nullptr &&
        m_window.dockWidgetArea(&dock) == place.before->docks.at(&dock).area) {
        place.isReturning = true;
        // The window gives the dock a size of its own first.
        QTimer::singleShot(0, &dock, [this, &dock] { putBack(dock); });
    } else {
        m_layout.reset();
    }
}

void DockSizes::onMouseButton(bool isPressed) {
    std::map<QDockWidget*, QSize> sizes;
    for (const auto& [dock, docked] : allDocked()) {
        sizes[dock] = docked.size;
    }
    if (isPressed) {
        m_sizesAtPress = std::move(sizes);
    } else if (sizes != m_sizesAtPress) {
        m_layout.reset();
        Q_EMIT movedByUser();
    }
}

DockSizes::ByName DockSizes::sizes() const {
    ByName found;
    for (const auto& [dock, place] : m_places) {
        if (isInFront(*dock)) {
            found[dock->objectName()] = dock->size();
        }
    }
    return found;
}

void DockSizes::give(const ByName& sizes) {
    m_window.layout()->activate();
    QList<QDockWidget*> docks;
    QList<int> widths;
    QList<int> heights;
    for (const auto& [dock, place] : m_places) {
        const QSize size = sizes.value(dock->objectName());
        if (size.isValid() && isInFront(*dock)) {
            docks << dock;
            widths << size.width();
            heights << size.height();
        }
    }
    resize(docks, heights, Qt::Vertical);
    resize(docks, widths, Qt::Horizontal);
}

void DockSizes::putBack(QDockWidget& dock) {
    Place& place = m_places[&dock];
    if (!place.isReturning || dock.isFloating()) {
        return;
    }
    place.isReturning = false;
    dock.raise(); // it may have become a tab behind others
    const std::shared_ptr<const Layout> before = std::exchange(place.before, nullptr);
    const bool isAsBefore = before == m_layout && isOnlyFloated(*before);
    QList<QDockWidget*> docks;
    QList<int> widths;
    QList<QDockWidget*> likeTabs;
    QList<int> heights;
    const auto behind = m_window.tabifiedDockWidgets(&dock);
    for (const auto& [other, docked] : before->docks) {
        const bool isMeant =
            other == &dock || (isAsBefore && isInFront(*other) && !behind.contains(other));
        if (!isMeant || !docked.size.isValid()) {
            continue;
        }
        docks << other;
        widths << docked.size.width();
        // The bar of tabs is no part of a dock's height.
        if (docked.hasTabs == hasTabs(*other)) {
            likeTabs << other;
            heights << docked.size.height();
        }
    }
    resize(likeTabs, heights, Qt::Vertical);
    resize(docks, widths, Qt::Horizontal);
    for (const auto& [other, itsPlace] : m_places) {
        onResized(*other); // it may have been so all along
    }
    const auto floats = [](const auto& one) { return one.first->isFloating(); };
    if (isAsBefore && std::none_of(before->docks.begin(), before->docks.end(), floats)) {
        m_layout.reset();
    }
}

// Qt takes from one neighbour what it gives to another: each step halves what is missing.
void DockSizes::resize(const QList<QDockWidget*>& docks, const QList<int>& sizes,
                       Qt::Orientation direction) {
    const auto extents = [&docks, direction] {
        QList<int> found;
        for (const QDockWidget* const dock : docks) {
            found << (direction == Qt::Vertical ? dock->height() : dock->width());
        }
        return found;
    };
    QList<int> wanted = sizes;
    QList<int> before;
    for (int step = 0; step < mostSteps && extents() != sizes; ++step) {
        if (extents() == before) {
            const int missing = sizes.first() - before.first();
            if (docks.size() != 1 || wanted != sizes) {
                return; // there is no room for more
            }
            wanted.first() = std::max(1, sizes.first() + missing); // part of it went astray
        }
        before = extents();
        m_window.resizeDocks(docks, wanted, direction);
        m_window.layout()->activate();
    }
}

bool DockSizes::hasTabs(QDockWidget& dock) const {
    return !m_window.tabifiedDockWidgets(&dock).isEmpty();
}

bool DockSizes::isDocked(const QDockWidget& dock) const {
    return dock.isVisible() && !dock.isFloating();
}

// The tabs behind are laid out when they come to the front.
bool DockSizes::isInFront(const QDockWidget& dock) const {
    return isDocked(dock) && m_window.rect().intersects(dock.geometry());
}

std::map<QDockWidget*, DockSizes::Docked> DockSizes::allDocked() const {
    std::map<QDockWidget*, Docked> found;
    for (const auto& [dock, place] : m_places) {
        if (isDocked(*dock)) {
            found[dock] = place.docked;
        }
    }
    return found;
}

// The room is the same, its docks are where they were, or float, and there are no others.
bool DockSizes::isOnlyFloated(const Layout& layout) const {
    const auto stays = [this, &layout](QDockWidget* dock) {
        const auto found = layout.docks.find(dock);
        return found != layout.docks.end() && found->second.area == m_window.dockWidgetArea(dock);
    };
    for (const auto& [dock, place] : m_places) {
        const bool isMissing = !isDocked(*dock) && !dock->isFloating();
        if (isMissing ? layout.docks.count(dock) != 0 : isDocked(*dock) && !stays(dock)) {
            return false;
        }
    }
    return layout.room == roomOfDocks();
}

// What the bars of the window leave them.
QSize DockSizes::roomOfDocks() const {
    QSize room = m_window.size();
    const auto take = [&room](const QWidget* bar, bool isHorizontal) {
        if (bar != nullptr && bar->isVisible()) {
            room -= isHorizontal ? QSize(0, bar->height()) : QSize(bar->width(), 0);
        }
    };
    take(m_window.menuWidget(), true);
    take(m_window.findChild<QStatusBar*>(QString(), Qt::FindDirectChildrenOnly), true);
    const auto bars = m_window.findChildren<QToolBar*>(QString(), Qt::FindDirectChildrenOnly);
    for (const QToolBar* const bar : bars) {
        take(bar->isFloating() ? nullptr : bar, bar->orientation() == Qt::Horizontal);
    }
    return room;
}

void DockSizes::giveWished(QDockWidget& dock) {
    if (!dock.isVisible() || dock.isFloating()) {
        return;
    }
    const int height = std::exchange(m_places[&dock].wished, 0);
    if (height > dock.height()) {
        // One step: what its neighbours have to give is not all taken from them.
        m_window.resizeDocks({&dock}, {height}, Qt::Vertical);
    }
}

} // namespace workbench
