// How legible one colour is on another.
#pragma once

#include <QColor>
#include <algorithm>
#include <cmath>

/// The relative luminance of WCAG 2.
inline double luminance(const QColor &color)
{
    const auto linear = [](float share) {
        return share <= 0.04045F ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF())
        + 0.0722 * linear(color.blueF());
}

/// The contrast ratio of WCAG 2.
inline double contrast(const QColor &one, const QColor &other)
{
    const double first = luminance(one);
    const double second = luminance(other);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}
