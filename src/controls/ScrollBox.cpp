#include "controls/ScrollBox.h"

#include <QEvent>
#include <QPainter>

#include "controls/Colours.h"

namespace Vk_DocQuery {

ScrollBox::ScrollBox(QWidget *aParent) : QScrollArea(aParent) {
    setFocusPolicy(Qt::NoFocus);
    setBackgroundRole(QPalette::Base);
    auto *content = new QWidget;
    content->setBackgroundRole(QPalette::Base);
    content->setForegroundRole(QPalette::Text);
    setWidget(content);
}

void ScrollBox::FitContent() {
    const QRect used = Content()->childrenRect();
    const QSize room = maximumViewportSize();
    Content()->resize(qMax(room.width(), used.right() + 1), qMax(room.height(), used.bottom() + 1));
}

/// The area itself paints nothing but the edge around what it scrolls.
bool ScrollBox::event(QEvent *aEvent) {
    const bool result = QScrollArea::event(aEvent);
    if (aEvent->type() == QEvent::Paint) {
        QPainter painter(this);
        PaintEdges(painter, *this, rect());
    }
    return result;
}

void ScrollBox::resizeEvent(QResizeEvent *aEvent) {
    QScrollArea::resizeEvent(aEvent);
    FitContent();
}

}  // namespace Vk_DocQuery
