#include "controls/Frame.h"

#include <QAccessibleWidget>
#include <QPainter>

#include "look/Colours.h"
#include "windows/mVkGraphLight.h"

namespace Vk_DocQuery {

namespace {

constexpr int theCaptionLeftTwips = 120;
constexpr int theCaptionMargin = 1;

/// A screen reader says the name of a group when the focus comes into it.
QAccessibleInterface *MadeInterface(const QString &aClass, QObject *aObject) {
    if (aClass != QLatin1String("Vk_DocQuery::Frame")) return nullptr;
    const auto *frame = qobject_cast<Frame *>(aObject);
    if (!frame || !frame->HasBorder()) return nullptr;
    return new QAccessibleWidget(qobject_cast<QWidget *>(aObject), QAccessible::Grouping);
}

}  // namespace

Frame::Frame(const QString &aCaption, QWidget *aParent) : QWidget(aParent), theCaption(aCaption) {
    static const bool theFactoryIsEntered = [] {
        QAccessible::installFactory(MadeInterface);
        return true;
    }();
    Q_UNUSED(theFactoryIsEntered)
}

void Frame::SetBorder(bool aBorder) {
    theBorder = aBorder;
    update();
}

void Frame::paintEvent(QPaintEvent * /*aEvent*/) {
    if (!theBorder) return;
    QPainter painter(this);
    const QFontMetrics metrics = fontMetrics();
    const int edge = metrics.height() / 2;
    const QRect text(PixelsFromTwips(theCaptionLeftTwips), 0, metrics.horizontalAdvance(theCaption),
                     metrics.height());

    if (!theCaption.isEmpty()) {
        const QRect gap = text.adjusted(-theCaptionMargin, 0, theCaptionMargin, 0);
        painter.setClipRegion(QRegion(rect()).subtracted(gap));
    }
    PaintEdges(painter, *this, rect().adjusted(0, edge, 0, 0));

    painter.setClipping(false);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, theCaption);
}

}  // namespace Vk_DocQuery
