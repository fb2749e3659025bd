#pragma once

#include <QSet>
#include <QString>

class QWidget;

/// All words that a window says to a user: titles, texts of widgets, headers, cells, tabs and
/// menus, tool tips, status tips, what's-this texts, names for assistive tools. Without the marks
/// of mnemonics; what has no two letters in a row (numbers, "<<") is left out.
QSet<QString> textsOf(const QWidget& window);
