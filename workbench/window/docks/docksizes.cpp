#include "workbench/window/docks/docksizes.h"

#include <QDockWidget>
#include <QEvent>
#include <QLayout>
#include <QMainWindow>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>

#include <cstdlib>
#include <utility>

namespace workbench {

namespace {

constexpr int mostSteps = 16;

} // namespace

DockSizes::DockSizes(QMainWindow& window)
    : QObject(&window)
    , m_window(window) {}

void DockSizes::watch(QDockWidget* dock) {
    m_places[dock] = {};
    dock->installEventFilter(this);
    connect(dock, &QDockWidget::topLevelChanged, this,
            [this, dock](bool isFloating) { onFloating(*dock, isFloating); });
    connect(dock, &QObject::destroyed, this, [this, dock] { m_places.erase(dock); });
}

void DockSizes::wish(QDockWidget* dock, int height) {
    m_places[dock].wished = height;
    if (dock->isVisible()) {
        giveWished(*dock);
    }
}

bool DockSizes::eventFilter(QObject* watched, QEvent* event) {
    auto* const dock = qobject_cast<QDockWidget*>(watched);
    const auto found = m_places.find(dock);
    if (event->type() == QEvent::Resize && found != m_places.end()) {
        Place& place = found->second;
        if (!dock->isFloating() && dock->isVisible() && !place.isReturning) {
            place.docked = dock->size();
            place.area = m_window.dockWidgetArea(dock);
            place.hadTabs = hasTabs(*dock);
        }
    }
    if (event->type() == QEvent::Show && found != m_places.end() && found->second.wished > 0) {
        // The window gives it a size of its own first; what is hidden has none to be changed.
        QTimer::singleShot(0, dock, [this, dock] { giveWished(*dock); });
    }
    return QObject::eventFilter(watched, event);
}

void DockSizes::onFloating(QDockWidget& dock, bool isFloating) {
    Place& place = m_places[&dock];
    if (!isFloating) {
        if (!place.before.empty() && m_window.dockWidgetArea(&dock) == place.area) {
            place.isReturning = true;
            // The window gives the dock a size of its own first.
            QTimer::singleShot(0, &dock, [this, &dock] { putBack(dock); });
        }
        return;
    }
    place.isReturning = false;
    place.before.clear();
    place.room = roomOfDocks();
    for (const auto& [other, itsPlace] : m_places) {
        if (other == &dock || (!other->isFloating() && other->isVisible())) {
            place.before[other] = itsPlace.docked;
        }
    }
}

void DockSizes::putBack(QDockWidget& dock) {
    Place& place = m_places[&dock];
    if (!place.isReturning || dock.isFloating()) {
        return;
    }
    place.isReturning = false;
    dock.raise(); // it may have become a tab behind others
    const bool isAsBefore = place.room == roomOfDocks() && isCompany(place.before);
    QList<QDockWidget*> docks;
    QList<int> heights;
    QList<int> widths;
    for (const auto& [other, size] : place.before) {
        if (size.isValid() && (other == &dock || isAsBefore)) {
            docks << other;
            heights << size.height();
            widths << size.width();
        }
    }
    // The bar of tabs is no part of a dock's height.
    if (place.hadTabs == hasTabs(dock)) {
        resize(docks, heights, Qt::Vertical);
    }
    resize(docks, widths, Qt::Horizontal);
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
            if (docks.size() != 1 || wanted != sizes || std::abs(missing) != 1) {
                return; // there is no room for more
            }
            wanted.first() += missing; // half a pixel is none
        }
        before = extents();
        m_window.resizeDocks(docks, wanted, direction);
        m_window.layout()->activate();
    }
}

bool DockSizes::hasTabs(QDockWidget& dock) const {
    return !m_window.tabifiedDockWidgets(&dock).isEmpty();
}

// Those and no others are docked; none of them has been deleted then.
bool DockSizes::isCompany(const Sizes& docks) const {
    std::size_t docked = 0;
    for (const auto& [dock, place] : m_places) {
        if (dock->isVisible() && !dock->isFloating()) {
            ++docked;
            if (docks.count(dock) == 0) {
                return false;
            }
        }
    }
    return docked == docks.size();
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
