#pragma once

#include <QAction>
#include <QDockWidget>

namespace workbench {

/// Changes the title of a dock, but not the text of its menu entry, which follows it otherwise.
inline void setTitleAlone(QDockWidget& dock, const QString& title) {
    QAction* const entry = dock.toggleViewAction();
    const QString text = entry->text();
    dock.setWindowTitle(title);
    entry->setText(text);
}

} // namespace workbench
