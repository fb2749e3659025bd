#pragma once

#include <QColor>
#include <QImage>

#include <algorithm>
#include <cmath>

/// How well colours are told apart, from 1 to 21, as WCAG counts it: text needs 4.5, a symbol 3.
inline double contrast(const QColor& one, const QColor& other) {
    const auto luminance = [](const QColor& colour) {
        const auto linear = [](double part) {
            return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
               0.0722 * linear(colour.blueF());
    };
    const double a = luminance(one);
    const double b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

/// The greatest one of a pixel to its ground.
inline double greatestContrast(const QImage& image, const QColor& ground) {
    double greatest = 1.0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            greatest = std::max(greatest, contrast(image.pixelColor(x, y), ground));
        }
    }
    return greatest;
}
