#pragma once

#include <QStringList>

class QWidget;

/// What was looked at in a window that is shown, and what a user could not read whole, one line
/// each: texts of labels, buttons, tabs, headers, cells, editors and menus that need more room than
/// they have, widgets that lie on each other or outside of what they stand in.
struct TextFit {
    QStringList faults;
    int texts = 0;   ///< labels, spin boxes, tab bars, and buttons that are no push buttons
    int buttons = 0; ///< with a text, as the next two
    int headers = 0;
    int cells = 0;
};

/// Looks at a window, also at what has to be scrolled to in it. Left out are the texts that have no
/// bound: a line edit's own text, and cells, lines, tabs and placeholders that are elided but told
/// whole by a tool tip. A header of the live display is measured without the style's margins, which
/// its sheet takes away.
TextFit textFit(const QWidget& window);

/// The faults alone, line by line; empty when everything can be read.
QString cutOffTexts(const QWidget& window);
