#pragma once

#include <QPalette>

namespace Vk_DocQuery {

/// Colour of the lines around frames and pages: between ground and text, so that it can be seen on
/// a light desktop and on a dark one.
inline QColor EdgeColour(const QPalette &aPalette) {
    const QColor ground = aPalette.color(QPalette::Window);
    const QColor text = aPalette.color(QPalette::WindowText);
    const auto between = [](int aFrom, int aTo) { return aFrom + (aTo - aFrom) * 3 / 10; };
    return {between(ground.red(), text.red()), between(ground.green(), text.green()),
            between(ground.blue(), text.blue())};
}

}  // namespace Vk_DocQuery
