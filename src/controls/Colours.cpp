#include "controls/Colours.h"

#include <algorithm>
#include <cmath>

#include <QWidget>

namespace Vk_DocQuery {

namespace {

constexpr double theEdge = 0.3;
constexpr double theMiddle = 0.55;

QColor Between(const QColor &aGround, const QColor &aText, double aShare) {
    const auto between = [aShare](int aFrom, int aTo) {
        return aFrom + static_cast<int>(std::lround((aTo - aFrom) * aShare));
    };
    return {between(aGround.red(), aText.red()), between(aGround.green(), aText.green()),
            between(aGround.blue(), aText.blue())};
}

int Distance(const QColor &aOne, const QColor &aOther) {
    return std::abs(qGray(aOne.rgb()) - qGray(aOther.rgb()));
}

}  // namespace

QColor EdgeColour(const QPalette &aPalette) {
    return Between(aPalette.color(QPalette::Window), aPalette.color(QPalette::WindowText), theEdge);
}

QPen EdgePen(const QWidget &aElement) {
    QPen pen(EdgeColour(aElement.palette()),
             std::max(1.0, std::floor(aElement.devicePixelRatioF())));
    pen.setCosmetic(true);
    return pen;
}

void KeepDisabledReadable(QWidget &aWindow) {
    const QPalette colours = aWindow.palette();
    QPalette palette;
    palette.setResolveMask(0);
    constexpr std::pair<QPalette::ColorRole, QPalette::ColorRole> theRoles[] = {
        {QPalette::WindowText, QPalette::Window},
        {QPalette::Text, QPalette::Base},
        {QPalette::ButtonText, QPalette::Button},
    };
    for (const auto &[text, ground] : theRoles) {
        const QColor under = colours.color(QPalette::Active, ground);
        const QColor readable = Between(under, colours.color(QPalette::Active, text), theMiddle);
        if (Distance(colours.color(QPalette::Disabled, text), under) < Distance(readable, under))
            palette.setColor(QPalette::Disabled, text, readable);
    }
    aWindow.setPalette(palette);
}

}  // namespace Vk_DocQuery
