#include "controls/FocusInView.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QScrollArea>
#include <QScrollBar>

#include "lists/ListView.h"
#include "windows/mVkGraphLight.h"

namespace Vk_DocQuery {

namespace {

constexpr int theMarginTwips = 120;

/// Of what is larger than the area its left upper part.
void BringIntoView(const QRect &aPlace, QScrollArea &rArea) {
    const int margin = PixelsFromTwips(theMarginTwips);
    const QSize room = rArea.viewport()->size().shrunkBy(QMargins(margin, margin, margin, margin));
    const QRect part(aPlace.topLeft(), aPlace.size().boundedTo(room));
    rArea.ensureVisible(part.center().x(), part.center().y(), part.width() / 2 + margin,
                        part.height() / 2 + margin);
}

/// A list may be larger than the area.
void BringRowIntoView(const ListView &aList, QScrollArea &rArea) {
    if (!aList.SelectedItem()) return;
    const QRect row = aList.RowRect(aList.SelectedItem());
    const QPoint middle = aList.viewport()->mapTo(rArea.widget(), row.center());
    const int across = rArea.horizontalScrollBar()->value();
    rArea.ensureVisible(across, middle.y(), 0, row.height());
}

/// From the innermost area outwards: each one moves what the next one has to show.
void BringIntoView(QWidget &aElement) {
    for (QWidget *around = &aElement; !around->isWindow(); around = around->parentWidget()) {
        auto *area = qobject_cast<QScrollArea *>(around->parentWidget());
        if (!area) continue;
        BringIntoView(QRect(aElement.mapTo(area->widget(), QPoint(0, 0)), aElement.size()), *area);
        if (const auto *list = qobject_cast<ListView *>(&aElement)) BringRowIntoView(*list, *area);
    }
}

bool ComesByMouse(const QEvent &aEvent) {
    switch (static_cast<const QFocusEvent &>(aEvent).reason()) {
        case Qt::MouseFocusReason:
        case Qt::ActiveWindowFocusReason:  // it was there before
        case Qt::PopupFocusReason:
        case Qt::MenuBarFocusReason:
            return true;
        default:
            return false;
    }
}

/// A key that an element leaves alone may scroll the area, which is not to be undone.
bool IsForElement(const QObject &aElement, const QEvent &aEvent) {
    const QString text = static_cast<const QKeyEvent &>(aEvent).text();
    return qobject_cast<const ListView *>(&aElement) || (!text.isEmpty() && text.at(0).isPrint());
}

}  // namespace

FocusInView::FocusInView(QWidget &aWindow) : QObject(&aWindow), theWindow(aWindow) {
    aWindow.installEventFilter(this);
}

bool FocusInView::eventFilter(QObject *aWatched, QEvent *aEvent) {
    auto *element = static_cast<QWidget *>(aWatched);
    const auto type = aEvent->type();
    if (element == &theWindow) {
        if (type == QEvent::Show)
            for (QWidget *part : theWindow.findChildren<QWidget *>())
                part->installEventFilter(this);
    } else if (type == QEvent::FocusIn && !ComesByMouse(*aEvent)) {
        BringIntoView(*element);
    } else if (type == QEvent::KeyPress && element->hasFocus() && IsForElement(*element, *aEvent)) {
        QMetaObject::invokeMethod(
            element, [element] { BringIntoView(*element); }, Qt::QueuedConnection);
    }
    return QObject::eventFilter(aWatched, aEvent);
}

}  // namespace Vk_DocQuery
