#pragma once

#include <QStringList>

class QWidget;

/// What a user could not read whole in a window that is shown, one line each: texts of labels,
/// buttons, tabs, headers, cells, editors and menus that need more room than they have, widgets
/// that lie on each other or outside of what they stand in.
///
/// Left out are the texts that have no bound: a line edit's own text and the last column of a
/// table, which elides what it can show in a tool tip.
QStringList cutOffTexts(const QWidget& window);
