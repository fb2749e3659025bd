#pragma once

#include <QWidget>

#include <algorithm>

namespace workbench {

/// Pixels for 96 dpi as pixels of the widget's screen; never fewer.
inline int screenPixels(int at96Dpi, const QWidget& widget) {
    constexpr int plainDpi = 96;
    return at96Dpi * std::max(widget.logicalDpiX(), plainDpi) / plainDpi;
}

} // namespace workbench
