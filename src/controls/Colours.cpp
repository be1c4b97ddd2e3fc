#include "controls/Colours.h"

#include <algorithm>
#include <cmath>

#include <QApplication>
#include <QEvent>
#include <QPainter>
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

/// Filled places are rounded to pixels just as the elements themselves are; a drawn line may come
/// to lie beside them.
void PaintEdges(QPainter &aPainter, const QWidget &aElement, const QRect &aPlace,
                const QColor &aColour) {
    const double scale = aElement.devicePixelRatioF();
    const double width = std::max(1.0, std::floor(scale)) / scale;
    const QRectF place(aPlace);
    aPainter.fillRect(QRectF(place.left(), place.top(), place.width(), width), aColour);
    aPainter.fillRect(QRectF(place.left(), place.bottom() - width, place.width(), width), aColour);
    aPainter.fillRect(QRectF(place.left(), place.top(), width, place.height()), aColour);
    aPainter.fillRect(QRectF(place.right() - width, place.top(), width, place.height()), aColour);
}

/// The colours of the desktop, with what is too faint in them replaced. Those that the window has
/// got before do not count.
QPalette ReadableColours(const QWidget &aWindow) {
    const QPalette colours = QApplication::palette(&aWindow);
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
    return palette;
}

/// Lives as long as its window and goes with the desktop from light to dark and back.
class DisabledKeeper : public QObject {
public:
    explicit DisabledKeeper(QWidget &aWindow) : QObject(&aWindow), theWindow(aWindow) {
        aWindow.installEventFilter(this);
        Follow();
    }

protected:
    bool eventFilter(QObject * /*aObject*/, QEvent *aEvent) override {
        if (aEvent->type() == QEvent::ApplicationPaletteChange) Follow();
        return false;
    }

private:
    void Follow() { theWindow.setPalette(ReadableColours(theWindow)); }

    QWidget &theWindow;
};

}  // namespace

QColor EdgeColour(const QPalette &aPalette) {
    return Between(aPalette.color(QPalette::Window), aPalette.color(QPalette::WindowText), theEdge);
}

void PaintEdges(QPainter &aPainter, const QWidget &aElement, const QRect &aPlace) {
    PaintEdges(aPainter, aElement, aPlace, EdgeColour(aElement.palette()));
}

void PaintEdgesOver(QWidget &aArea, const QEvent &aEvent) {
    if (aEvent.type() == QEvent::FocusIn || aEvent.type() == QEvent::FocusOut) aArea.update();
    if (aEvent.type() != QEvent::Paint) return;
    QPainter painter(&aArea);
    const QPalette &palette = aArea.palette();
    PaintEdges(painter, aArea, aArea.rect(),
               aArea.hasFocus() ? palette.color(QPalette::Highlight) : EdgeColour(palette));
}

void KeepDisabledReadable(QWidget &aWindow) {
    new DisabledKeeper(aWindow);
}

}  // namespace Vk_DocQuery
