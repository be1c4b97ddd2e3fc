#include "windows/mVkGraphLight.h"

#include <cmath>

#include <QApplication>
#include <QComboBox>
#include <QGuiApplication>
#include <QScreen>

#include "foundation/Application.h"

namespace Vk_DocQuery {

namespace {

constexpr double theTwipsPerInch = 1440.0;

double PixelsPerInch() {
    EnsureApplication();
    const QScreen *screen = QGuiApplication::primaryScreen();
    return screen ? screen->logicalDotsPerInchX() : 96.0;
}

}  // namespace

qint32 GetTwipsPerPixel() {
    static qint32 twips = 0;
    if (twips < 1) twips = static_cast<qint32>(std::nearbyint(theTwipsPerInch / PixelsPerInch()));
    return twips;
}

int PixelsFromTwips(int aTwips) {
    return static_cast<int>(std::lround(aTwips * PixelsPerInch() / theTwipsPerInch));
}

int TwipsFromPixels(int aPixels) {
    return static_cast<int>(std::lround(aPixels * theTwipsPerInch / PixelsPerInch()));
}

void EnableControl(QWidget &aControl, bool aEnabled, QWidget *aCompanion) {
    aControl.setEnabled(aEnabled);
    // The palette of the application, not that of the element, so that a change of the desktop's
    // colours is followed at the next call.
    const QPalette colours = QApplication::palette();
    const QColor ground = colours.color(aEnabled ? QPalette::Active : QPalette::Disabled,
                                        aEnabled ? QPalette::Base : QPalette::Button);
    QPalette palette;  // says nothing of the other colours, which the element inherits
    palette.setColor(QPalette::Base, ground);
    aControl.setPalette(palette);
    if (aCompanion) aCompanion->setEnabled(aEnabled);
}

void SelectComboByData(QComboBox &aCombo, qint32 aData, int aDefaultIndex) {
    const int index = aCombo.findData(aData);
    aCombo.setCurrentIndex(index >= 0 ? index : aDefaultIndex);
}

qint32 GetComboData(const QComboBox &aCombo, qint32 aDefault) {
    const QVariant data = aCombo.currentData();
    return data.isValid() ? data.toInt() : aDefault;
}

}  // namespace Vk_DocQuery
