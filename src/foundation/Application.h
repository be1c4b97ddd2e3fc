#pragma once

namespace Vk_DocQuery {

/// Makes a QApplication if the host has none; it lives to the end of the process. Raises a failure
/// if windows cannot be shown here: no display, a host application without windows, or another
/// thread than that of the windows.
void EnsureApplication();

/// Raises a failure while the application is ending: no window could be shown then, as every event
/// loop ends at once. Works off what is waiting in the event queue, but for the user's input.
void EnsureEventLoops();

/// From now on the end of the process is seen in CanDestroyWindows.
void WatchForTheEnd();

/// False where Qt itself would fail at the end of a window: the application is gone, or the process
/// is ending and what Qt keeps for all windows may be gone. A window is left alone then.
bool CanDestroyWindows();

}  // namespace Vk_DocQuery
