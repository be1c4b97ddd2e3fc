#include "controls/Sheet.h"

#include <QEvent>

#include "windows/TouchScrolling.h"
#include "windows/WheelLatch.h"

namespace Vk_DocQuery {

Sheet::Sheet(QWidget *aParent) : QScrollArea(aParent) {
    setFrameShape(NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setWidgetResizable(true);
    setWidget(new QWidget);
    ScrollByTouch(*this);
    KeepWheel(*this);
}

void Sheet::Place(const QRect &aPlace) {
    setGeometry(aPlace);
    if (!isVisible()) Content()->resize(aPlace.size().expandedTo(Content()->minimumSize()));
}

bool Sheet::eventFilter(QObject *aWatched, QEvent *aEvent) {
    if (aWatched == Content() && aEvent->type() == QEvent::Resize) emit ContentResized();
    return QScrollArea::eventFilter(aWatched, aEvent);
}

}  // namespace Vk_DocQuery
