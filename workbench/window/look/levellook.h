#pragma once

#include <QColor>
#include <QStyle>

namespace workbench {

/// Told by a symbol and a word; the colour only repeats them.
enum class Severity { Information, Warning, Error };

/// How a level looks beside its word, on light and on dark palettes.
struct LevelLook {
    QStyle::StandardPixmap symbol;
    QColor hue;

    static LevelLook of(Severity level);

    /// The hue's share in a surface that words stand on.
    QColor tinted(const QColor& surface) const;
};

} // namespace workbench
