#pragma once

namespace Vk_DocQuery {

/// Makes a QApplication if the host has none; it lives to the end of the process. Raises a failure
/// if windows cannot be shown here: no display, or a host application without windows.
void EnsureApplication();

}  // namespace Vk_DocQuery
