#pragma once

#include <QColor>

class QEvent;
class QPainter;
class QPalette;
class QRect;
class QWidget;

namespace Vk_DocQuery {

/// Colour of the lines around frames, pages and fields: between ground and text, so far from the
/// ground of windows and from that of fields that weak eyes see it, on any desktop.
QColor EdgeColour(const QPalette &aPalette);

/// Draws those lines along the inner side of the place, equally wide and whole where the desktop's
/// scale puts the element on a fraction of a pixel.
void PaintEdges(QPainter &aPainter, const QWidget &aElement, const QRect &aPlace);

/// The same over the frame that the style draws around an area that scrolls, in the colour of the
/// selection while the area has the focus. It is called when the area has handled the event.
void PaintEdgesOver(QWidget &aArea, const QEvent &aEvent);

/// Takes care that the window can be read in any colours of the desktop as long as it lives.
/// Disabled text that is too faint gets a middle tone between ground and text; a selection on which
/// text is too faint gets darker or lighter; text boxes, combos, lists of files and what drops down
/// or comes up as a menu get an edge that can be seen, and so do buttons, tabs and the handles of
/// scroll bars where the style can draw none.
void KeepColoursReadable(QWidget &aWindow);

}  // namespace Vk_DocQuery
