#pragma once

#include <QColor>
#include <QStyle>

namespace workbench {

enum class BannerLevel;

/// How a level looks beside its word, on light and on dark palettes.
struct LevelLook {
    QStyle::StandardPixmap symbol;
    QColor hue;

    static LevelLook of(BannerLevel level);

    /// The hue's share in a surface that words stand on.
    QColor tinted(const QColor& surface) const;
};

} // namespace workbench
