#pragma once

#include <QRect>
#include <QSize>

class QWidget;

namespace workbench {

/// What of a screen is left for a window inside its frame, which window systems tell only after it
/// was shown: as much as a large one takes. `textHeight` is that of the window's letters.
QRect insideFrame(const QRect& screen, int textHeight);

/// Whether somebody looks at the screens; one that nobody looks at has no size that means anything.
bool areScreensSeen();

/// How large a window may become: what its screen has room for inside a frame, and not more than
/// its maximumSize(). Where nobody looks at the screen it is the maximumSize() alone, and an
/// invalid size without one.
QSize screenRoom(const QWidget& window);

} // namespace workbench
