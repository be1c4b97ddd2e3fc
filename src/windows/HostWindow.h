#pragma once

#include <qwindowdefs.h>

namespace Vk_DocQuery {

/// The window that the host has named by SetHostWindow; 0: none.
WId HostWindow();

}  // namespace Vk_DocQuery
