#include "look/Colours.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

#include <QAbstractItemView>
#include <QApplication>
#include <QChildEvent>
#include <QComboBox>
#include <QCompleter>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QScrollBar>
#include <QStyleOptionSlider>
#include <QTabBar>
#include <QWidget>

namespace Vk_DocQuery {

namespace {

constexpr double theEdge = 0.3;
constexpr double theMiddle = 0.55;
constexpr double theLeastOfEdges = 3;  // contrasts as they are measured for people with weak eyes
constexpr double theLeastOfTexts = 4.5;

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

double Luminance(const QColor &aColour) {
    const auto linear = [](double aPart) {
        return aPart <= 0.04045 ? aPart / 12.92 : std::pow((aPart + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(aColour.redF()) + 0.7152 * linear(aColour.greenF()) +
           0.0722 * linear(aColour.blueF());
}

/// From 1, nothing to be seen, to 21, black on white.
double Contrast(const QColor &aOne, const QColor &aOther) {
    const double one = Luminance(aOne) + 0.05;
    const double other = Luminance(aOther) + 0.05;
    return std::max(one, other) / std::min(one, other);
}

/// The first colour on the way to another one that stands out from all the grounds.
QColor StandingOut(const QColor &aColour, const QColor &aTowards, double aLeast,
                   std::initializer_list<QColor> aGrounds) {
    constexpr int theSteps = 20;
    for (int step = 0; step < theSteps; ++step) {
        const QColor colour = Between(aColour, aTowards, double{1} * step / theSteps);
        if (std::ranges::all_of(aGrounds, [&](const QColor &aGround) {
                return Contrast(colour, aGround) >= aLeast;
            }))
            return colour;
    }
    return aTowards;
}

QColor EdgeOn(const QColor &aWindow, const QColor &aBase, const QColor &aText) {
    return StandingOut(Between(aWindow, aText, theEdge), aText, theLeastOfEdges, {aWindow, aBase});
}

QColor FocusColour(const QPalette &aPalette) {
    return StandingOut(aPalette.color(QPalette::Highlight), aPalette.color(QPalette::WindowText),
                       theLeastOfEdges,
                       {aPalette.color(QPalette::Window), aPalette.color(QPalette::Base)});
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

/// Where disabled text is too faint it gets a middle tone between ground and text, or what can be
/// read on the other ground that it has in disabled elements.
void StrengthenDisabled(const QPalette &aColours, QPalette &rPalette) {
    struct Writing {
        QPalette::ColorRole Text;
        QPalette::ColorRole Ground;
        QPalette::ColorRole OtherGround;
    };
    constexpr Writing theWritings[] = {
        {QPalette::WindowText, QPalette::Window, QPalette::Window},
        {QPalette::Text, QPalette::Base, QPalette::Button},
        {QPalette::ButtonText, QPalette::Button, QPalette::Button},
    };
    for (const Writing &writing : theWritings) {
        const QColor under = aColours.color(QPalette::Active, writing.Ground);
        const QColor other = aColours.color(QPalette::Disabled, writing.OtherGround);
        const QColor text = aColours.color(QPalette::Active, writing.Text);
        const QColor readable =
            StandingOut(Between(under, text, theMiddle), text, theLeastOfEdges, {under, other});
        const QColor faint = aColours.color(QPalette::Disabled, writing.Text);
        if (Distance(faint, under) < Distance(readable, under) ||
            Contrast(faint, other) < theLeastOfEdges)
            rPalette.setColor(QPalette::Disabled, writing.Text, readable);
    }
}

/// Where text cannot be read on the ground of the selection, that gets darker, or lighter under
/// dark text.
void StrengthenSelection(const QPalette &aColours, QPalette &rPalette) {
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        const QColor text = aColours.color(group, QPalette::HighlightedText);
        const QColor ground = aColours.color(group, QPalette::Highlight);
        const QColor away = Luminance(text) > Luminance(ground) ? Qt::black : Qt::white;
        const QColor readable = StandingOut(ground, away, theLeastOfTexts, {text});
        if (readable != ground) rPalette.setColor(group, QPalette::Highlight, readable);
    }
}

/// What of the desktop's colours is to be replaced. Those that the window has got before do not
/// count.
QPalette ReadableColours(const QWidget &aWindow) {
    const QPalette colours = QApplication::palette(&aWindow);
    QPalette palette;
    palette.setResolveMask(0);
    StrengthenDisabled(colours, palette);
    StrengthenSelection(colours, palette);
    return palette;
}

/// Styles draw the edge of a button darker than the window; on a black one there is none.
bool ButtonsNeedEdges(const QPalette &aPalette) {
    constexpr double theSame = 1.1;
    constexpr int theDarker = 140;
    const QColor window = aPalette.color(QPalette::Window);
    return Contrast(window, aPalette.color(QPalette::Button)) < theSame &&
           Contrast(window, window.darker(theDarker)) < theSame;
}

/// What drops down lies on the window as a field does, and has to be parted from it. The lists of
/// our own paint their edges themselves.
bool HasFieldEdges(const QWidget &aElement) {
    if (const auto *text = qobject_cast<const QLineEdit *>(&aElement)) return text->hasFrame();
    if (const auto *rows = qobject_cast<const QAbstractItemView *>(&aElement))
        return rows->frameWidth() > 0;
    return qobject_cast<const QComboBox *>(&aElement) || aElement.windowType() == Qt::Popup;
}

/// Tabs and the handles of scroll bars are drawn as buttons are.
bool IsDrawnAsButton(const QWidget &aElement) {
    return qobject_cast<const QPushButton *>(&aElement) ||
           qobject_cast<const QTabBar *>(&aElement) || qobject_cast<const QScrollBar *>(&aElement);
}

bool NeedsEdges(const QWidget &aElement) {
    return HasFieldEdges(aElement) ||
           (IsDrawnAsButton(aElement) && ButtonsNeedEdges(aElement.palette()));
}

/// The tab that is open is told from the others by the colour of text.
void PaintTabEdges(QTabBar &aBar) {
    QPainter painter(&aBar);
    const QPalette &palette = aBar.palette();
    for (int i = 0; i < aBar.count(); ++i)
        PaintEdges(
            painter, aBar, aBar.tabRect(i),
            i == aBar.currentIndex() ? palette.color(QPalette::WindowText) : EdgeColour(palette));
}

void PaintHandleEdges(QScrollBar &aBar) {
    QStyleOptionSlider option;
    option.initFrom(&aBar);
    option.subControls = QStyle::SC_All;
    option.orientation = aBar.orientation();
    option.minimum = aBar.minimum();
    option.maximum = aBar.maximum();
    option.sliderPosition = aBar.sliderPosition();
    option.sliderValue = aBar.value();
    option.singleStep = aBar.singleStep();
    option.pageStep = aBar.pageStep();
    option.upsideDown = aBar.invertedAppearance();
    if (option.orientation == Qt::Horizontal) option.state |= QStyle::State_Horizontal;
    QPainter painter(&aBar);
    PaintEdges(painter, aBar,
               aBar.style()->subControlRect(QStyle::CC_ScrollBar, &option,
                                            QStyle::SC_ScrollBarSlider, &aBar),
               EdgeColour(aBar.palette()));
}

void PaintFieldEdges(QWidget &aElement, bool aHasFocus) {
    if (auto *tabs = qobject_cast<QTabBar *>(&aElement)) return PaintTabEdges(*tabs);
    if (auto *bar = qobject_cast<QScrollBar *>(&aElement)) return PaintHandleEdges(*bar);
    QPainter painter(&aElement);
    const QPalette &palette = aElement.palette();
    PaintEdges(painter, aElement, aElement.rect(),
               aHasFocus ? FocusColour(palette) : EdgeColour(palette));
}

/// Lives as long as its window and goes with the desktop from light to dark and back.
class ColourKeeper : public QObject {
public:
    explicit ColourKeeper(QWidget &aWindow) : QObject(&aWindow), theWindow(aWindow) {
        aWindow.installEventFilter(this);
        Follow();
    }

protected:
    bool eventFilter(QObject *aObject, QEvent *aEvent) override {
        switch (aEvent->type()) {
            case QEvent::ApplicationPaletteChange:
                if (aObject == &theWindow) Follow();
                return false;
            case QEvent::Show:
                if (aObject == &theWindow) WatchAll();
                return false;
            case QEvent::ChildPolished:
                TakeLateOne(*static_cast<QChildEvent &>(*aEvent).child());
                return false;
            case QEvent::Paint:
                return PaintField(static_cast<QWidget &>(*aObject), *aEvent);
            default:
                return false;
        }
    }

private:
    void Follow() {
        QPalette colours = ReadableColours(theWindow);
        // Styles draw a light shade under what is disabled in a menu, which on dark makes it stand
        // out from the rest.
        if (theWindow.windowType() == Qt::Popup)
            colours.setColor(QPalette::Disabled, QPalette::Light,
                             QApplication::palette(&theWindow).color(QPalette::Base));
        theWindow.setPalette(colours);
    }

    void WatchAll() {
        for (QWidget *element : theWindow.findChildren<QWidget *>()) Watch(*element);
        for (const QCompleter *completer : theWindow.findChildren<QCompleter *>())
            KeepPopup(*completer->popup());
    }

    /// Menus and most of what drops down are made when they come up first.
    void TakeLateOne(QObject &aChild) {
        if (aChild.isWidgetType()) Watch(static_cast<QWidget &>(aChild));
    }

    void Watch(QWidget &aElement) {
        if (aElement.windowType() == Qt::Popup)
            KeepPopup(aElement);
        else if (aElement.window() == &theWindow)
            aElement.installEventFilter(this);
    }

    static void KeepPopup(QWidget &aPopup) {
        for (const QObject *child : aPopup.children())
            if (dynamic_cast<const ColourKeeper *>(child)) return;
        new ColourKeeper(aPopup);
    }

    /// The field paints itself before its edges, so that the event is used up.
    static bool PaintField(QWidget &aField, QEvent &aEvent) {
        if (!NeedsEdges(aField)) return false;
        static_cast<QObject &>(aField).event(&aEvent);
        PaintFieldEdges(aField, aField.hasFocus() && !aField.isWindow());
        return true;
    }

    QWidget &theWindow;
};

}  // namespace

/// Lists ask for every check box, so that the last answer is kept.
QColor EdgeColour(const QPalette &aPalette) {
    static QColor window;
    static QColor base;
    static QColor text;
    static QColor edge;
    const QColor colours[] = {aPalette.color(QPalette::Window), aPalette.color(QPalette::Base),
                              aPalette.color(QPalette::WindowText)};
    if (window != colours[0] || base != colours[1] || text != colours[2]) {
        window = colours[0];
        base = colours[1];
        text = colours[2];
        edge = EdgeOn(window, base, text);
    }
    return edge;
}

void PaintEdges(QPainter &aPainter, const QWidget &aElement, const QRect &aPlace) {
    PaintEdges(aPainter, aElement, aPlace, EdgeColour(aElement.palette()));
}

void PaintEdgesOver(QWidget &aArea, const QEvent &aEvent) {
    if (aEvent.type() == QEvent::FocusIn || aEvent.type() == QEvent::FocusOut) aArea.update();
    if (aEvent.type() == QEvent::Paint) PaintFieldEdges(aArea, aArea.hasFocus());
}

void KeepColoursReadable(QWidget &aWindow) {
    new ColourKeeper(aWindow);
}

}  // namespace Vk_DocQuery
