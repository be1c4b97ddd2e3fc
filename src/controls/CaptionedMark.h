#pragma once

#include <QStyle>

class QStyleOptionButton;
class QWidget;

namespace Vk_DocQuery {

/// The mark of a check box or an option, and which style elements tell its place.
struct MarkStyle {
    QStyle::PrimitiveElement Mark;
    QStyle::SubElement MarkPlace;
    QStyle::SubElement CaptionPlace;
};

/// Paints mark and caption. The mark is never higher than the element, and the caption wraps onto
/// as many lines as the element's height gives room for; the mark then stands at the first of them.
void PaintCaptionedMark(QWidget &aElement, const QStyleOptionButton &aOption,
                        const MarkStyle &aStyle);

}  // namespace Vk_DocQuery
