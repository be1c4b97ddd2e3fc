#include "windows/WheelLatch.h"

#include <cstdlib>

#include <QAbstractScrollArea>
#include <QScrollBar>
#include <QWheelEvent>

namespace Vk_DocQuery {

namespace {

constexpr quint64 thePause = 500;  // ms

class WheelLatch : public QObject {
public:
    explicit WheelLatch(QAbstractScrollArea &aArea) : QObject(&aArea), theArea(aArea) {
        theArea.viewport()->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *aWatched, QEvent *aEvent) override {
        if (aEvent->type() != QEvent::Wheel) return QObject::eventFilter(aWatched, aEvent);
        return Turn(static_cast<QWheelEvent &>(*aEvent));
    }

private:
    /// True if the wheel is kept from the area and from what is around it.
    bool Turn(QWheelEvent &aEvent) {
        const bool moves = Moves(aEvent.angleDelta());
        const bool goesOn = theIsTurned && aEvent.timestamp() - theLastTurn < thePause;
        theIsTurned = moves || goesOn;
        theLastTurn = aEvent.timestamp();
        if (moves || !goesOn) return false;
        aEvent.accept();
        return true;
    }

    /// Whether the area has something to show in that direction.
    bool Moves(QPoint aTurn) const {
        const bool across = std::abs(aTurn.x()) > std::abs(aTurn.y());
        const int turn = across ? aTurn.x() : aTurn.y();
        const QScrollBar *bar =
            across ? theArea.horizontalScrollBar() : theArea.verticalScrollBar();
        return turn > 0 ? bar->value() > bar->minimum() : bar->value() < bar->maximum();
    }

    QAbstractScrollArea &theArea;
    bool theIsTurned = false;
    quint64 theLastTurn = 0;
};

}  // namespace

void KeepWheel(QAbstractScrollArea &aArea) {
    new WheelLatch(aArea);
}

}  // namespace Vk_DocQuery
