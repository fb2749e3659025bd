#pragma once

#include <QStringList>

class QWidget;

/// What a user could not read whole in a window that is shown, one line each: texts of labels,
/// buttons, tabs, headers, cells, editors and menus that need more room than they have, widgets
/// that lie on each other or outside of what they stand in.
///
/// Left out are the texts that have no bound: a line edit's own text, and cells and lines that are
/// elided but told whole by a tool tip. The live display's columns are measured without the
/// style's margins, and in the module's tables the height of the letters counts: their widths and
/// heights are fixed, whatever the language and the font.
QStringList cutOffTexts(const QWidget& window);
