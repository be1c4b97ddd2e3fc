#include <atomic>

#include <Vk_DocQuery/HostServices.h>

#include "windows/HostWindow.h"

namespace Vk_DocQuery {

namespace {

std::atomic<bool> theUnattended = false;
std::atomic<WId> theHostWindow = 0;

}  // namespace

VkErrorHandler::~VkErrorHandler() = default;
SplashWindow::~SplashWindow() = default;

void SetRunningUnattended(bool aUnattended) {
    theUnattended = aUnattended;
}

bool IsRunningUnattended() {
    return theUnattended;
}

void SetHostWindow(WId aHwnd) {
    theHostWindow = aHwnd;
}

WId HostWindow() {
    return theHostWindow;
}

}  // namespace Vk_DocQuery
