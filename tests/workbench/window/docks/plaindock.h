#pragma once

#include <QDockWidget>
#include <QMainWindow>
#include <QString>

/// A dock with a page that needs no more than 100 x 80 pixels; owned by the window.
inline QDockWidget* addPlainDock(QMainWindow& window, const QString& name,
                                 Qt::DockWidgetArea area) {
    auto* const dock = new QDockWidget(name, &window);
    dock->setObjectName(name);
    auto* const page = new QWidget;
    page->setMinimumSize(100, 80);
    dock->setWidget(page);
    window.addDockWidget(area, dock);
    return dock;
}
