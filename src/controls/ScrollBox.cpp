#include "controls/ScrollBox.h"

#include "look/Colours.h"
#include "windows/TouchScrolling.h"
#include "windows/WheelLatch.h"

namespace Vk_DocQuery {

ScrollBox::ScrollBox(QWidget *aParent) : QScrollArea(aParent) {
    setFocusPolicy(Qt::NoFocus);
    setBackgroundRole(QPalette::Base);
    auto *content = new QWidget;
    content->setBackgroundRole(QPalette::Base);
    content->setForegroundRole(QPalette::Text);
    setWidget(content);
    ScrollByTouch(*this);
    KeepWheel(*this);
}

void ScrollBox::FitContent() {
    const QRect used = Content()->childrenRect();
    const QSize room = maximumViewportSize();
    Content()->resize(qMax(room.width(), used.right() + 1), qMax(room.height(), used.bottom() + 1));
}

bool ScrollBox::event(QEvent *aEvent) {
    const bool result = QScrollArea::event(aEvent);
    PaintEdgesOver(*this, *aEvent);
    return result;
}

void ScrollBox::resizeEvent(QResizeEvent *aEvent) {
    QScrollArea::resizeEvent(aEvent);
    FitContent();
}

}  // namespace Vk_DocQuery
