#pragma once

#include <QString>
#include <qwindowdefs.h>

#include <Vk_DocQuery/Object.h>

namespace Vk_DocQuery {

/// The host's common error window, optional. Class name "Vk_Errors.VkErrorHandler". Without it
/// failures are shown in a plain message box.
class VK_DOCQUERY_EXPORT VkErrorHandler : public Object {
public:
    ~VkErrorHandler() override;
    /// aText is the chain of entries and the text of the failure, aExtra is empty.
    virtual void ErrorMsgBox(const QString &aText, const QString &aSource, qint32 aNumber,
                             const QString &aExtra) = 0;
};

/// The host's splash window, optional. Class name "Vk_SplashWindow.SplashWindow". It is asked to go
/// before a failure is shown.
class VK_DOCQUERY_EXPORT SplashWindow : public Object {
public:
    ~SplashWindow() override;
    /// The window is to go before this returns. Called on the thread of the windows.
    virtual void CloseSplashImmediately() = 0;
};

/// Says that nobody sits before the screen: failures then go to the host's error window alone, and
/// without one to the error stream of the process. Off on start.
VK_DOCQUERY_EXPORT void SetRunningUnattended(bool aUnattended);
/// What SetRunningUnattended said last; false on start.
VK_DOCQUERY_EXPORT bool IsRunningUnattended();

/// For a host whose windows are none of Qt's: the native handle of the window on which the dialog,
/// the browser and the boxes shall stand, X11's id of it for example; 0, the value on start, takes
/// it back. A window of ours that is up stands under them all the same. May be called on any
/// thread; it counts for what comes up afterwards. The window belongs to the host, which takes the
/// handle back before it goes. On X11 what stands on the window then ends like a cancel; elsewhere
/// it stays until its user closes it.
VK_DOCQUERY_EXPORT void SetHostWindow(WId aHwnd);

}  // namespace Vk_DocQuery
