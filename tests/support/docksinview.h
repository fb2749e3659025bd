#pragma once

#include <QDockWidget>
#include <QList>
#include <QMainWindow>
#include <QString>
#include <QStringList>

#include <algorithm>

/// The docks beside or behind others in the window, by name.
inline QList<QDockWidget*> dockedIn(const QMainWindow& window) {
    QList<QDockWidget*> docked;
    const auto docks = window.findChildren<QDockWidget*>();
    for (QDockWidget* const dock : docks) {
        if (dock->isVisible() && !dock->isFloating()) {
            docked << dock;
        }
    }
    std::sort(docked.begin(), docked.end(), [](const QDockWidget* a, const QDockWidget* b) {
        return a->objectName() < b->objectName();
    });
    return docked;
}

/// Of those that are no tabs behind others, the names and sizes in pixels.
inline QString sizesInView(const QMainWindow& window) {
    QStringList sizes;
    const auto docks = dockedIn(window);
    for (const QDockWidget* const dock : docks) {
        if (window.rect().intersects(dock->geometry())) {
            sizes << QStringLiteral("%1 %2x%3")
                         .arg(dock->objectName())
                         .arg(dock->width())
                         .arg(dock->height());
        }
    }
    return sizes.join(QStringLiteral(", "));
}
