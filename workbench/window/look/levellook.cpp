#include "workbench/window/look/levellook.h"

namespace workbench {

namespace {

constexpr qreal tintShare = 0.14; // of the hue in the surface's own colour

}

LevelLook LevelLook::of(Severity level) {
    switch (level) {
    case Severity::Error:
        return {QStyle::SP_MessageBoxCritical, QColor(200, 30, 30)};
    case Severity::Warning:
        return {QStyle::SP_MessageBoxWarning, QColor(220, 150, 0)};
    case Severity::Information:
        break;
    }
    return {QStyle::SP_MessageBoxInformation, QColor(40, 110, 200)};
}

QColor LevelLook::tinted(const QColor& surface) const {
    const auto mix = [](qreal one, qreal other) {
        return one * (1.0 - tintShare) + other * tintShare;
    };
    return QColor::fromRgbF(mix(surface.redF(), hue.redF()), mix(surface.greenF(), hue.greenF()),
                            mix(surface.blueF(), hue.blueF()));
}

} // namespace workbench
