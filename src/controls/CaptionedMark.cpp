#include "controls/CaptionedMark.h"

#include <QStyleOptionButton>
#include <QStylePainter>

#include "controls/Colours.h"

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

/// Styles draw the edge of a mark darker than the ground; on a dark ground it could not be seen.
void PaintEdgeOnDark(QPainter &aPainter, const QPalette &aPalette, const QRect &aMark,
                     bool aRound) {
    const QColor ground = aPalette.color(QPalette::Window);
    if (ground.lightness() >= aPalette.color(QPalette::WindowText).lightness()) return;
    const QRectF edge = QRectF(aMark).adjusted(0.5, 0.5, -0.5, -0.5);
    aPainter.setRenderHint(QPainter::Antialiasing);
    aPainter.setBrush(Qt::NoBrush);
    aPainter.setPen(EdgeColour(aPalette));
    if (aRound)
        aPainter.drawEllipse(edge);
    else
        aPainter.drawRect(edge);
}

}  // namespace

void PaintCaptionedMark(QWidget &aElement, const QStyleOptionButton &aOption,
                        const MarkStyle &aStyle) {
    QStylePainter painter(&aElement);
    const QStyle &style = *aElement.style();
    const QRect room = style.subElementRect(aStyle.CaptionPlace, &aOption, &aElement);
    const int line = aElement.fontMetrics().height();
    const bool wraps = aElement.height() >= 2 * line - line / 4;
    const int lines = wraps ? Qt::TextWordWrap : Qt::TextSingleLine;
    const int flags = int(Qt::AlignLeft) | int(Qt::AlignVCenter) | lines;
    const QRect caption = CaptionRect(aElement, room, aOption.text, flags);

    QStyleOptionButton mark = aOption;
    mark.rect = MarkRect(style.subElementRect(aStyle.MarkPlace, &aOption, &aElement), caption, line,
                         aElement.height());
    painter.drawPrimitive(aStyle.Mark, mark);
    PaintEdgeOnDark(painter, aOption.palette, mark.rect,
                    aStyle.Mark == QStyle::PE_IndicatorRadioButton);
    painter.drawItemText(room, flags, aOption.palette, aElement.isEnabled(), aOption.text,
                         QPalette::WindowText);

    if (!aOption.state.testFlag(QStyle::State_HasFocus)) return;
    QStyleOptionFocusRect focus;
    focus.QStyleOption::operator=(aOption);
    focus.rect = caption.adjusted(-1, -1, 1, 1).intersected(aElement.rect());
    painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
}

}  // namespace Vk_DocQuery
