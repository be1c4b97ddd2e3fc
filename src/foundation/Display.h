#pragma once

#include <QString>

namespace Vk_DocQuery {

/// Why no window can be shown here, asked before Qt looks for a display: it ends the process when
/// it finds none. An empty text where one is there, and where Qt needs none or nobody can ask.
QString ReasonNoDisplay();

}  // namespace Vk_DocQuery
