#include "controls/Frame.h"

#include <QPainter>

#include "controls/Colours.h"

namespace Vk_DocQuery {

namespace {

constexpr int theCaptionLeft = 8;
constexpr int theCaptionMargin = 1;

}  // namespace

Frame::Frame(const QString &aCaption, QWidget *aParent) : QWidget(aParent), theCaption(aCaption) {}

void Frame::SetBorder(bool aBorder) {
    theBorder = aBorder;
    update();
}

void Frame::paintEvent(QPaintEvent * /*aEvent*/) {
    if (!theBorder) return;
    QPainter painter(this);
    const QFontMetrics metrics = fontMetrics();
    const int edge = metrics.height() / 2;
    const QRect text(theCaptionLeft, 0, metrics.horizontalAdvance(theCaption), metrics.height());

    if (!theCaption.isEmpty()) {
        const QRect gap = text.adjusted(-theCaptionMargin, 0, theCaptionMargin, 0);
        painter.setClipRegion(QRegion(rect()).subtracted(gap));
    }
    painter.setPen(EdgeColour(palette()));
    painter.drawRect(rect().adjusted(0, edge, -1, -1));

    painter.setClipping(false);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, theCaption);
}

}  // namespace Vk_DocQuery
