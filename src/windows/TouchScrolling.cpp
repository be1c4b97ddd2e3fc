#include "windows/TouchScrolling.h"

#include <cmath>

#include <QAbstractScrollArea>
#include <QApplication>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QPointer>
#include <QScrollBar>
#include <QScroller>
#include <QStyleHints>
#include <QTouchEvent>

namespace Vk_DocQuery {

namespace {

class TouchScrolling : public QObject {
public:
    TouchScrolling(QAbstractScrollArea &aArea, std::function<int()> aStep)
        : QObject(&aArea), theArea(aArea), theStep(std::move(aStep)) {
        QWidget *viewport = theArea.viewport();
        viewport->setAttribute(Qt::WA_AcceptTouchEvents);
        viewport->installEventFilter(this);
        QScroller *scroller = QScroller::scroller(viewport);
        QScrollerProperties properties = scroller->scrollerProperties();
        for (const auto overshoot : {QScrollerProperties::HorizontalOvershootPolicy,
                                     QScrollerProperties::VerticalOvershootPolicy})
            properties.setScrollMetric(
                overshoot, QVariant::fromValue(QScrollerProperties::OvershootAlwaysOff));
        scroller->setScrollerProperties(properties);
    }

protected:
    bool eventFilter(QObject *aWatched, QEvent *aEvent) override {
        switch (aEvent->type()) {
            case QEvent::TouchBegin:
            case QEvent::TouchUpdate:
            case QEvent::TouchEnd:
            case QEvent::TouchCancel:
                return Touch(static_cast<QTouchEvent &>(*aEvent));
            case QEvent::ScrollPrepare:
                Prepare(static_cast<QScrollPrepareEvent &>(*aEvent));
                return true;
            case QEvent::Scroll:
                Scroll(static_cast<const QScrollEvent &>(*aEvent));
                return true;
            default:
                return QObject::eventFilter(aWatched, aEvent);
        }
    }

private:
    bool Touch(QTouchEvent &rEvent) {
        const bool begins = rEvent.type() == QEvent::TouchBegin;
        if (begins && !CanScroll()) return false;
        rEvent.accept();
        if (rEvent.points().isEmpty()) return true;
        QScroller *scroller = QScroller::scroller(theArea.viewport());
        const QPointF place = rEvent.points().first().position();
        const auto time = static_cast<qint64>(rEvent.timestamp());
        if (begins) {
            // A touch that stops what still moves is no tap.
            theTap = scroller->state() == QScroller::Inactive;
            scroller->handleInput(QScroller::InputPress, place, time);
        } else if (rEvent.type() == QEvent::TouchUpdate) {
            scroller->handleInput(QScroller::InputMove, place, time);
            if (rEvent.points().size() > 1 || scroller->state() != QScroller::Pressed)
                theTap = false;
        } else {
            scroller->handleInput(QScroller::InputRelease, place, time);
            // Later, when the touch is over for the window system: a click may open a window.
            if (theTap && rEvent.type() == QEvent::TouchEnd)
                QMetaObject::invokeMethod(
                    this, [this, place] { Tap(place.toPoint()); }, Qt::QueuedConnection);
        }
        return true;
    }

    bool CanScroll() const {
        const auto moves = [](const QScrollBar *aBar) { return aBar->maximum() > aBar->minimum(); };
        return moves(theArea.verticalScrollBar()) || moves(theArea.horizontalScrollBar());
    }

    int Step() const { return theStep ? std::max(1, theStep()) : 1; }

    void Prepare(QScrollPrepareEvent &rEvent) {
        const QScrollBar *across = theArea.horizontalScrollBar();
        const QScrollBar *down = theArea.verticalScrollBar();
        rEvent.setViewportSize(theArea.viewport()->size());
        rEvent.setContentPosRange(QRectF(0, 0, across->maximum(), down->maximum() * Step()));
        rEvent.setContentPos(QPointF(across->value(), down->value() * Step()));
        rEvent.accept();
    }

    void Scroll(const QScrollEvent &aEvent) {
        const auto nearest = [](double aPlace) { return static_cast<int>(std::lround(aPlace)); };
        theArea.horizontalScrollBar()->setValue(nearest(aEvent.contentPos().x()));
        theArea.verticalScrollBar()->setValue(nearest(aEvent.contentPos().y() / Step()));
    }

    /// The deepest element there gets a click; two quick taps are a double click.
    void Tap(QPoint aPoint) {
        QWidget *viewport = theArea.viewport();
        QWidget *hit = viewport->childAt(aPoint);
        const QPointer<QWidget> element(hit ? hit : viewport);
        const QPoint place = element->mapFrom(viewport, aPoint);
        const bool again =
            theLastTap.isValid() &&
            theLastTap.elapsed() < QGuiApplication::styleHints()->mouseDoubleClickInterval() &&
            (aPoint - theLastPlace).manhattanLength() < theReach;
        theLastTap.invalidate();
        if (!again) theLastTap.start();
        theLastPlace = aPoint;
        GiveFocus(element);
        Send(element, again ? QEvent::MouseButtonDblClick : QEvent::MouseButtonPress, place);
        if (element) Send(element, QEvent::MouseButtonRelease, place);
    }

    /// As a click does; the window system does it for its own events only.
    static void GiveFocus(QWidget *aElement) {
        for (QWidget *around = aElement; around; around = around->parentWidget()) {
            if (around->isEnabled() && (around->focusPolicy() & Qt::ClickFocus) != 0)
                return around->setFocus(Qt::MouseFocusReason);
            if (around->isWindow()) return;
        }
    }

    static void Send(QWidget *aElement, QEvent::Type aType, QPoint aPlace) {
        const QPoint global = aElement->mapToGlobal(aPlace);
        const Qt::MouseButtons held =
            aType == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
        QMouseEvent event(aType, aPlace, aElement->mapTo(aElement->window(), aPlace), global,
                          Qt::LeftButton, held, QGuiApplication::keyboardModifiers());
        QCoreApplication::sendEvent(aElement, &event);
    }

    static constexpr int theReach = 40;  // pixels; a finger does not hit the same place twice

    QAbstractScrollArea &theArea;
    std::function<int()> theStep;
    bool theTap = false;
    QElapsedTimer theLastTap;
    QPoint theLastPlace;
};

}  // namespace

void ScrollByTouch(QAbstractScrollArea &aArea, std::function<int()> aStep) {
    new TouchScrolling(aArea, std::move(aStep));
}

}  // namespace Vk_DocQuery
