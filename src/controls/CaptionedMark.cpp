#include "controls/CaptionedMark.h"

#include <QStyleOptionButton>
#include <QStylePainter>

namespace Vk_DocQuery {

namespace {

QRect CaptionRect(const QWidget &aElement, const QRect &aRoom, const QString &aCaption,
                  int aFlags) {
    return aElement.fontMetrics().boundingRect(aRoom, aFlags, aCaption);
}

QRect MarkRect(const QRect &aByStyle, const QRect &aCaption, int aLineHeight, int aHeight) {
    const int side = qMin(aByStyle.height(), aHeight);
    const int middle = aCaption.top() + aLineHeight / 2;
    const int top = qBound(0, middle - side / 2, aHeight - side);
    return {aByStyle.left(), top, qMin(aByStyle.width(), side), side};
}

}  // namespace

void PaintCaptionedMark(QWidget &aElement, const QStyleOptionButton &aOption,
                        const MarkStyle &aStyle) {
    QStylePainter painter(&aElement);
    const QStyle &style = *aElement.style();
    const QRect room = style.subElementRect(aStyle.CaptionPlace, &aOption, &aElement);
    const int line = aElement.fontMetrics().height();
    const bool wraps = aElement.height() >= 2 * line;
    const int flags = Qt::AlignLeft | Qt::AlignVCenter | Qt::TextHideMnemonic |
                      (wraps ? Qt::TextWordWrap : Qt::TextSingleLine);
    const QRect caption = CaptionRect(aElement, room, aOption.text, flags);

    QStyleOptionButton mark = aOption;
    mark.rect = MarkRect(style.subElementRect(aStyle.MarkPlace, &aOption, &aElement), caption, line,
                         aElement.height());
    painter.drawPrimitive(aStyle.Mark, mark);
    painter.drawItemText(room, flags, aOption.palette, aElement.isEnabled(), aOption.text,
                         QPalette::WindowText);

    if (!aOption.state.testFlag(QStyle::State_HasFocus)) return;
    QStyleOptionFocusRect focus;
    focus.QStyleOption::operator=(aOption);
    focus.rect = caption.adjusted(-1, -1, 1, 1).intersected(aElement.rect());
    painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
}

}  // namespace Vk_DocQuery
