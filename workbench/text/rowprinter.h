#pragma once

#include <QString>
#include <QStringList>

class QWidget;

namespace workbench {

/// The rows of all tables that are visible inside `widget`, one line each: the table's object name,
/// the row's number (from 0) and the cells' texts, separated by tabs. A cell with a background of
/// its own colour has the colour's name behind its text: "M1{#00ff00}". Control characters in a
/// text are written as blanks.
QStringList visibleRows(const QWidget& widget);

} // namespace workbench
