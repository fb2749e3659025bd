#pragma once

#include <QPoint>
#include <QRect>

class QWidget;

/// Where a window of this size stands beside `other`, wholly on the screen: right, left, below or
/// above, whichever comes first; where none has room, where it covers the least of `other`, the
/// lower end rather than the upper one.
QPoint placeBeside(const QSize& size, const QRect& other, const QRect& screen);

/// Moves a dialog that is about to be seen beside the window it belongs to, so that both can be
/// read. Does nothing without such a window, or when it is hidden.
void openBeside(QWidget& dialog);
