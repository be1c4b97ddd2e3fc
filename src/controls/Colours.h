#pragma once

#include <QColor>

class QEvent;
class QPainter;
class QPalette;
class QRect;
class QWidget;

namespace Vk_DocQuery {

/// Colour of the lines around frames and pages: between ground and text, so that it can be seen on
/// a light desktop and on a dark one.
QColor EdgeColour(const QPalette &aPalette);

/// Draws those lines along the inner side of the place, equally wide and whole where the desktop's
/// scale puts the element on a fraction of a pixel.
void PaintEdges(QPainter &aPainter, const QWidget &aElement, const QRect &aPlace);

/// The same over the frame that the style draws around an area that scrolls, in the colour of the
/// selection while the area has the focus. It is called when the area has handled the event.
void PaintEdgesOver(QWidget &aArea, const QEvent &aEvent);

/// Takes care that what is disabled in the window can be read as long as the window lives: where
/// the desktop's colours leave it fainter than a middle tone between ground and text, it gets that
/// tone.
void KeepDisabledReadable(QWidget &aWindow);

}  // namespace Vk_DocQuery
