#pragma once

#include <algorithm>
#include <cmath>

#include <QColor>

namespace VkTests {

inline double Luminance(const QColor &aColour) {
    const auto linear = [](double aPart) {
        return aPart <= 0.04045 ? aPart / 12.92 : std::pow((aPart + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(aColour.redF()) + 0.7152 * linear(aColour.greenF()) +
           0.0722 * linear(aColour.blueF());
}

/// From 1, nothing to be seen, to 21, black on white.
inline double Contrast(const QColor &aOne, const QColor &aOther) {
    const double one = Luminance(aOne) + 0.05;
    const double other = Luminance(aOther) + 0.05;
    return std::max(one, other) / std::min(one, other);
}

}  // namespace VkTests
