#pragma once

#include <QColor>
#include <QPen>

class QPalette;
class QWidget;

namespace Vk_DocQuery {

/// Colour of the lines around frames and pages: between ground and text, so that it can be seen on
/// a light desktop and on a dark one.
QColor EdgeColour(const QPalette &aPalette);

/// Draws those lines equally wide on all sides, which a fraction of a pixel would not be.
QPen EdgePen(const QWidget &aElement);

/// Takes care that what is disabled in the window can still be read: where the desktop's colours
/// leave it fainter than a middle tone between ground and text, it gets that tone.
void KeepDisabledReadable(QWidget &aWindow);

}  // namespace Vk_DocQuery
