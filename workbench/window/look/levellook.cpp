#include "workbench/window/look/levellook.h"

#include "workbench/window/state/banner.h"

namespace workbench {

namespace {

constexpr qreal tintShare = 0.14; // of the hue in the surface's own colour

}

LevelLook LevelLook::of(BannerLevel level) {
    switch (level) {
    case BannerLevel::Error:
        return {QStyle::SP_MessageBoxCritical, QColor(200, 30, 30)};
    case BannerLevel::Warning:
        return {QStyle::SP_MessageBoxWarning, QColor(220, 150, 0)};
    case BannerLevel::Information:
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
