#pragma once

#include <QString>

namespace Vk_DocQuery {

/// Why no window can be shown here, as far as that can be told before Qt looks for a display: it
/// ends the process when it finds none. An empty text where one may be there. A display of another
/// machine and a platform that needs none are left to Qt.
QString ReasonNoDisplay();

}  // namespace Vk_DocQuery
