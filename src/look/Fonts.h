#pragma once

#include <QFont>
#include <QStringList>

namespace Vk_DocQuery {

/// The font of all windows: a face with the widths of Arial at 8.25 point, for which the elements
/// of the windows are sized.
QFont WindowFont();

/// The same out of the given faces, the first that is installed. Where none is, the system font is
/// taken and narrowed until texts are no wider than in the faces above.
QFont WindowFontOutOf(const QStringList &aFaces);

}  // namespace Vk_DocQuery
