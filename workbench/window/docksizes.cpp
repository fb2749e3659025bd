#include "workbench/window/docksizes.h"

#include <QDockWidget>
#include <QEvent>
#include <QMainWindow>
#include <QPointer>
#include <QTimer>

#include <utility>

namespace workbench {

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
    QList<QDockWidget*> docks;
    QList<int> heights;
    QList<int> widths;
    for (const auto& [other, size] : place.before) {
        if (m_places.count(other) > 0 && !other->isFloating() && size.isValid() &&
            (other == &dock || other->isVisible())) {
            docks << other;
            heights << size.height();
            widths << size.width();
        }
    }
    m_window.resizeDocks(docks, heights, Qt::Vertical);
    m_window.resizeDocks(docks, widths, Qt::Horizontal);
}

void DockSizes::giveWished(QDockWidget& dock) {
    if (!dock.isVisible() || dock.isFloating()) {
        return;
    }
    const int height = std::exchange(m_places[&dock].wished, 0);
    if (height > dock.height()) {
        m_window.resizeDocks({&dock}, {height}, Qt::Vertical);
    }
}

} // namespace workbench
