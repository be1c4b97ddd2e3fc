#include "controls/CaptionedMark.h"

#include <QFontInfo>
#include <QStyleOptionButton>
#include <QStylePainter>
#include <QTextLayout>

#include "look/Colours.h"

namespace Vk_DocQuery {

namespace {

/// Breaks the caption into lines, places them and tells the place of them all. Where the element is
/// lower than a font's lines are together, they stand closer than the font asks for.
QRect LayOut(const QWidget &aElement, const QRect &aRoom, QTextLayout &rCaption) {
    const int height = aElement.height();
    QTextOption option(Qt::AlignLeft);
    const bool wraps = height >= 2 * QFontInfo(aElement.font()).pixelSize();
    option.setWrapMode(wraps ? QTextOption::WordWrap : QTextOption::NoWrap);
    rCaption.setTextOption(option);
    rCaption.beginLayout();
    for (QTextLine line = rCaption.createLine(); line.isValid(); line = rCaption.createLine())
        line.setLineWidth(aRoom.width());
    rCaption.endLayout();

    const int lines = std::max(1, rCaption.lineCount());
    const int asked = aElement.fontMetrics().height();
    const int pitch = std::min(asked, std::max(1, height / lines));
    const int top = (height - lines * pitch) / 2;
    double width = 0;
    for (int i = 0; i < rCaption.lineCount(); ++i) {
        QTextLine line = rCaption.lineAt(i);
        const int above = top + i * pitch + (pitch - asked) / 2;
        line.setPosition(QPointF(0, above));
        width = std::max(width, line.naturalTextWidth());
    }
    return {aRoom.left(), top, qCeil(width), lines * pitch};
}

QRect MarkRect(const QRect &aByStyle, const QRect &aCaption, int aLineHeight, int aHeight) {
    const int side = qMin(aByStyle.height(), aHeight);
    const int middle = aCaption.top() + aLineHeight / 2;
    const int top = qBound(0, middle - side / 2, aHeight - side);
    return {aByStyle.left(), top, qMin(aByStyle.width(), side), side};
}

/// Styles draw the edge of a mark darker than the ground; on a dark ground it could not be seen,
/// and on a light one it is faint.
void PaintMarkEdge(QPainter &aPainter, const QPalette &aPalette, const QRect &aMark, bool aRound) {
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
    QTextLayout lines(aOption.text, aElement.font());
    const QRect caption = LayOut(aElement, room, lines);

    QStyleOptionButton mark = aOption;
    mark.rect = MarkRect(style.subElementRect(aStyle.MarkPlace, &aOption, &aElement), caption, line,
                         aElement.height());
    painter.drawPrimitive(aStyle.Mark, mark);
    PaintMarkEdge(painter, aOption.palette, mark.rect,
                  aStyle.Mark == QStyle::PE_IndicatorRadioButton);
    painter.setPen(aOption.palette.color(QPalette::WindowText));
    lines.draw(&painter, QPointF(room.left(), 0));

    if (!aOption.state.testFlag(QStyle::State_HasFocus)) return;
    QStyleOptionFocusRect focus;
    focus.QStyleOption::operator=(aOption);
    focus.rect = caption.adjusted(-1, -1, 1, 1).intersected(aElement.rect());
    painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
}

}  // namespace Vk_DocQuery
